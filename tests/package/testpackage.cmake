# Run as a script: install, configure the consumer against the install tree, build it, run it.

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}")
    endif()
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${prefix} ${WORK_DIR}/consumer)
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
run(${CMAKE_COMMAND} -G Ninja -S ${SOURCE_DIR}/consumer -B ${WORK_DIR}/consumer
    -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=${COMPILER}
    -DCMAKE_CXX_COMPILER_LAUNCHER=${COMPILER_LAUNCHER}
    -DCMAKE_PREFIX_PATH=${prefix} -DNODEBROWSER_QT=${NODEBROWSER_QT}
    -DINSTALLED_HEADERS=${prefix}/${HEADERS_DIR})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/consumer)
set(ENV{QT_QPA_PLATFORM} offscreen)
run(${WORK_DIR}/consumer/consumer)
