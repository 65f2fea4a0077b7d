# Toolchain file of the preset `windows`: the cross compiler reads all sources as those of a Windows
# program, with what shared libraries would export and import. The toolkit and the other libraries
# are there for this system only, so their headers are read from here, and nothing is linked.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
# Once CMake has looked at the compiler, which is when it learns where that finds headers by itself.
set(CMAKE_PROJECT_INCLUDE ${CMAKE_CURRENT_LIST_DIR}/SyntaxRules.cmake)
set(NODEBROWSER_SYNTAX_ONLY ON)

# Where the packages of this system lie.
execute_process(COMMAND c++ -print-multiarch
                OUTPUT_VARIABLE CMAKE_LIBRARY_ARCHITECTURE OUTPUT_STRIP_TRAILING_WHITESPACE)
set(CMAKE_PREFIX_PATH /usr)

# The headers of the C library must not be found beside those of the libraries that are used, so
# these have a folder of their own.
set(headers ${CMAKE_BINARY_DIR}/headers)
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${headers})
file(MAKE_DIRECTORY ${headers})
foreach(name boost git2 git2.h nlohmann simdjson.h)
    file(CREATE_LINK /usr/include/${name} ${headers}/${name} SYMBOLIC)
endforeach()
