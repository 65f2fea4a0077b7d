# Run as a script: installs into a folder, and builds and runs there what hosts would: by
# find_package, by pkg-config, and, with the sources among their own, by add_subdirectory.

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "failed: ${command}")
    endif()
endfunction()

# configure(name source_folder cmake_arguments...)
function(configure name source)
    file(REMOVE_RECURSE ${WORK_DIR}/${name})
    run(${CMAKE_COMMAND} -G Ninja -S ${source} -B ${WORK_DIR}/${name}
        -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=${COMPILER}
        -DCMAKE_CXX_COMPILER_LAUNCHER=${COMPILER_LAUNCHER}
        -DCMAKE_PREFIX_PATH=${prefix} -DNODEBROWSER_QT=${NODEBROWSER_QT} ${ARGN})
endfunction()

function(build name)
    configure(${name} ${ARGN})
    run(${CMAKE_COMMAND} --build ${WORK_DIR}/${name})
endfunction()

# run_example(name folder): with a picture, as it shows a window otherwise.
function(run_example name folder)
    set(picture ${WORK_DIR}/${folder}/window.png)
    run(${WORK_DIR}/${folder}/${name} ${picture})
    if(NOT EXISTS ${picture})
        message(FATAL_ERROR "the example ${name} rendered no picture")
    endif()
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${prefix})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
set(ENV{QT_QPA_PLATFORM} offscreen)

build(consumer ${SOURCE_DIR}/consumer -DINSTALLED_HEADERS=${prefix}/${HEADERS_DIR})
run(${WORK_DIR}/consumer/consumer)
configure(components ${SOURCE_DIR}/components)

foreach(example embedding fiftyitems)
    build(${example} ${SOURCE_DIR}/../../examples/${example} -DCMAKE_COMPILE_WARNING_AS_ERROR=ON)
    run_example(${example} ${example})
endforeach()

set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBRARIES_DIR}/pkgconfig)
run(pkg-config --print-errors --exists nodepalette-qt${NODEBROWSER_QT}
    nodebrowser-embeddedhost-qt${NODEBROWSER_QT})

# A host in a library of its own under a shared panel, which leaves the contract to it.
if(SHARED_PANEL)
    build(subdirectory ${SOURCE_DIR}/subdirectory -DNODEBROWSER_SOURCE=${SOURCE_DIR}/../..
        -DBUILD_SHARED_LIBS=ON -DCMAKE_UNITY_BUILD=ON)
    run_example(embedding subdirectory)
    run(python3 ${SOURCE_DIR}/checksymbols.py
        ${WORK_DIR}/subdirectory/nodebrowser/nodebrowser/libnodebrowser-qt${NODEBROWSER_QT}.so
        ${WORK_DIR}/subdirectory/nodebrowser/palette/libnodepalette-qt${NODEBROWSER_QT}.so)
endif()
