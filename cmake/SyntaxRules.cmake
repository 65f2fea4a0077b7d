# Sources are read and not compiled, and what would be linked of them is an empty file. CMake itself
# compiles something to know the compiler.

# Not passed to the compiler, as if it looked there by itself.
list(APPEND CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES /usr/include)

get_property(is_trying GLOBAL PROPERTY IN_TRY_COMPILE)
if(NOT is_trying)
    set(CMAKE_CXX_COMPILE_OBJECT
        "<CMAKE_CXX_COMPILER> <DEFINES> <INCLUDES> <FLAGS> -fsyntax-only <SOURCE>"
        "${CMAKE_COMMAND} -E touch <OBJECT>")
    foreach(rule CREATE_STATIC_LIBRARY CREATE_SHARED_LIBRARY LINK_EXECUTABLE)
        set(CMAKE_CXX_${rule} "${CMAKE_COMMAND} -E touch <TARGET>")
    endforeach()
    # Libraries of this system have no import libraries.
    set(CMAKE_IMPORT_LIBRARY_SUFFIX "")
endif()
