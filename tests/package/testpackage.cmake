# Run as a script: installs into folders, and builds and runs there what hosts would: by
# find_package, by pkg-config, and, with the sources among their own, by add_subdirectory; with
# static and shared libraries, and with both generations of the toolkit side by side.

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
        -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG= -DCMAKE_CXX_COMPILER=${COMPILER}
        -DCMAKE_CXX_COMPILER_LAUNCHER=${COMPILER_LAUNCHER}
        -DCMAKE_PREFIX_PATH=${prefix} -DNODEBROWSER_QT=${NODEBROWSER_QT} ${ARGN})
endfunction()

function(build name)
    configure(${name} ${ARGN})
    run(${CMAKE_COMMAND} --build ${WORK_DIR}/${name})
endfunction()

# install_to(folder name): what was built in the folder, into a prefix of that name, from which
# hosts take the libraries from now on.
macro(install_to folder name)
    set(prefix ${WORK_DIR}/${name})
    run(${CMAKE_COMMAND} --install ${folder} --prefix ${prefix})
    set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBRARIES_DIR}/pkgconfig)
endmacro()

# compile(name FLAGS flag... SOURCES file... PACKAGES package... PKGCONFIG flag...): without CMake.
function(compile name)
    cmake_parse_arguments(PARSE_ARGV 1 program "" "" "FLAGS;SOURCES;PACKAGES;PKGCONFIG")
    execute_process(
        COMMAND pkg-config --print-errors --cflags --libs ${program_PKGCONFIG} ${program_PACKAGES}
        OUTPUT_VARIABLE found COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(found UNIX_COMMAND ${found})
    # One unit, which takes less time.
    set(unit ${WORK_DIR}/${name}/unit.cpp)
    list(TRANSFORM program_SOURCES REPLACE "(.+)" "#include \"\\1\"\n")
    file(WRITE ${unit} ${program_SOURCES})
    run(${COMPILER} -std=c++17 -fPIC ${program_FLAGS} ${unit} ${found}
        -Wl,-rpath,${prefix}/${LIBRARIES_DIR} -o ${WORK_DIR}/${name}/${name})
endfunction()

# compile_consumer(name pkgconfig_flags...): with the flags of the project beside its source.
function(compile_consumer name)
    execute_process(COMMAND pkg-config --cflags-only-I Qt${NODEBROWSER_QT}Widgets
        OUTPUT_VARIABLE toolkit COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE "-I" "-isystem" toolkit "${toolkit}")
    separate_arguments(toolkit UNIX_COMMAND ${toolkit})
    compile(${name}
        FLAGS ${toolkit} -DQT_NO_KEYWORDS -DQT_NO_CAST_FROM_ASCII -DQT_NO_CAST_TO_ASCII
            -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
        SOURCES ${SOURCE_DIR}/consumer/main.cpp
        PACKAGES nodepalette-qt${NODEBROWSER_QT} nodebrowser-embeddedhost-qt${NODEBROWSER_QT}
        PKGCONFIG ${ARGN})
    run(${WORK_DIR}/${name}/${name})
endfunction()

# run_example(name folder): with a picture, as it shows a window otherwise.
function(run_example name folder)
    set(picture ${WORK_DIR}/${folder}/window.png)
    run(${WORK_DIR}/${folder}/${name} ${picture})
    if(NOT EXISTS ${picture})
        message(FATAL_ERROR "the example ${name} rendered no picture")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK_DIR}/prefix ${WORK_DIR}/shared-prefix)
set(root ${SOURCE_DIR}/../..)
set(ENV{QT_QPA_PLATFORM} offscreen)

install_to(${BUILD_DIR} prefix)
build(consumer ${SOURCE_DIR}/consumer -DINSTALLED_HEADERS=${prefix}/${HEADERS_DIR})
run(${WORK_DIR}/consumer/consumer :solver.png)
compile_consumer(consumer-by-pkgconfig --static)
configure(components ${SOURCE_DIR}/components)
build(fiftyitems ${root}/examples/fiftyitems -DCMAKE_COMPILE_WARNING_AS_ERROR=ON)
run_example(fiftyitems fiftyitems)

# The other generation comes into the same prefix: the panel and the kit alone, for which nothing
# may be needed that only the embedded host needs.
set(generations ${NODEBROWSER_QT})
math(EXPR other "11 - ${NODEBROWSER_QT}")
execute_process(COMMAND pkg-config --exists Qt${other}Widgets RESULT_VARIABLE is_missing)
if(NOT is_missing)
    list(APPEND generations ${other})
    build(other-generation ${root} -DNODEBROWSER_QT=${other} -DNODEBROWSER_EMBEDDEDHOST=OFF
        -DCMAKE_DISABLE_FIND_PACKAGE_nlohmann_json=ON -DCMAKE_DISABLE_FIND_PACKAGE_simdjson=ON
        -DCMAKE_UNITY_BUILD=ON)
    install_to(${WORK_DIR}/other-generation prefix)
endif()
set(embedding ${root}/examples/embedding)
foreach(generation IN LISTS generations)
    set(name embedding-qt${generation})
    build(${name} ${embedding} -DNODEBROWSER_QT=${generation} -DCMAKE_COMPILE_WARNING_AS_ERROR=ON)
    run_example(embedding ${name})
    set(name ${name}-by-pkgconfig)
    compile(${name}
        SOURCES ${embedding}/main.cpp ${embedding}/hostaccessors.cpp ${embedding}/hostlibrary.cpp
            ${embedding}/parts.cpp
        PACKAGES nodebrowser-qt${generation} nodebrowser-hostkit-qt${generation})
    run_example(${name} ${name})
endforeach()

# Shared libraries, built among a host's own sources, of the objects of the static ones where these
# are fit for it. Its host is a library, too, under a shared panel, which leaves the contract to it.
if(SHARED_PANEL)
    build(subdirectory ${SOURCE_DIR}/subdirectory -DNODEBROWSER_SOURCE=${root}
        -DBUILD_SHARED_LIBS=ON -DCMAKE_UNITY_BUILD=ON -DOBJECTS_FROM=${SHARED_OBJECTS})
    run_example(embedding subdirectory)
    install_to(${WORK_DIR}/subdirectory shared-prefix)
    build(shared-consumer ${SOURCE_DIR}/consumer)
    run(${WORK_DIR}/shared-consumer/consumer :solver.png)
    compile_consumer(shared-consumer-by-pkgconfig)
    file(GLOB libraries ${prefix}/${LIBRARIES_DIR}/*-qt${NODEBROWSER_QT}.so)
    list(LENGTH libraries count)
    if(NOT count EQUAL 3)
        message(FATAL_ERROR "these shared libraries are installed: ${libraries}")
    endif()
    file(GLOB archives ${WORK_DIR}/prefix/${LIBRARIES_DIR}/*.a)
    run(python3 ${SOURCE_DIR}/checksymbols.py ${libraries} ${archives})
endif()
