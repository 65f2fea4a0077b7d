# Run as a script: install, then configure the consumer and the examples against the install
# tree, build them, run them.

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}")
    endif()
endfunction()

# build_against_prefix(name source_folder cmake_arguments...)
function(build_against_prefix name source)
    file(REMOVE_RECURSE ${WORK_DIR}/${name})
    run(${CMAKE_COMMAND} -G Ninja -S ${source} -B ${WORK_DIR}/${name}
        -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=${COMPILER}
        -DCMAKE_CXX_COMPILER_LAUNCHER=${COMPILER_LAUNCHER}
        -DCMAKE_PREFIX_PATH=${prefix} -DNODEBROWSER_QT=${NODEBROWSER_QT} ${ARGN})
    run(${CMAKE_COMMAND} --build ${WORK_DIR}/${name})
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${prefix})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
set(ENV{QT_QPA_PLATFORM} offscreen)

build_against_prefix(consumer ${SOURCE_DIR}/consumer -DINSTALLED_HEADERS=${prefix}/${HEADERS_DIR})
run(${WORK_DIR}/consumer/consumer)

foreach(example embedding fiftyitems)
    build_against_prefix(${example} ${SOURCE_DIR}/../../examples/${example}
        -DCMAKE_COMPILE_WARNING_AS_ERROR=ON)
    set(picture ${WORK_DIR}/${example}/window.png)
    run(${WORK_DIR}/${example}/${example} ${picture})
    if(NOT EXISTS ${picture})
        message(FATAL_ERROR "the example ${example} rendered no picture")
    endif()
endforeach()
