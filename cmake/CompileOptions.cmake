# What every target of the tree is compiled with.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)

add_compile_options(-Wall -Wextra)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    # Position-independent code would leave each function open to replacement at run time, and
    # inline none.
    add_compile_options(-fno-semantic-interposition)
endif()
add_compile_definitions(QT_NO_KEYWORDS)

if(NODEBROWSER_WERROR)
    add_compile_options(-Werror)
endif()

if(CMAKE_UNITY_BUILD)
    # One unit for each target: what most time goes to are the headers.
    set(CMAKE_UNITY_BUILD_BATCH_SIZE 0)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # The warning takes a unit's sources for headers. Below that many KiB the compiler does not
        # look for memory that it no longer needs, which takes a sixth of its time.
        add_compile_options(-Wno-subobject-linkage --param=ggc-min-heapsize=786432)
    endif()
endif()

if(NODEBROWSER_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

if(NODEBROWSER_SANITIZE_THREADS)
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
endif()

if(NODEBROWSER_FUZZERS)
    # What is run has to report where it was; the fuzzers alone bring the main function.
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_link_options(-fsanitize=fuzzer-no-link)
endif()

# Links all programs of the tree in a quarter of the time of the default linker, but for ELF only,
# and does not read what the GNU compiler leaves for the optimization of whole programs.
if(UNIX AND NOT APPLE AND PROJECT_IS_TOP_LEVEL
   AND NOT (CMAKE_INTERPROCEDURAL_OPTIMIZATION AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU"))
    find_program(NODEBROWSER_LLD ld.lld)
    if(NODEBROWSER_LLD)
        add_link_options(-fuse-ld=lld)
    endif()
endif()

find_program(NODEBROWSER_CCACHE ccache)
if(NODEBROWSER_CCACHE AND PROJECT_IS_TOP_LEVEL)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${NODEBROWSER_CCACHE})
endif()
