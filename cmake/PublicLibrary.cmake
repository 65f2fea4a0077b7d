# public_headers(target folder file...)
#
# The headers of a library that others may include, always as <folder/file>. Where they are built,
# an include folder with a link to the sources and nothing else gives them this name; where they are
# installed, they lie in such a folder. So a name as common as journal.h is on nobody's include path.
function(public_headers target folder)
    set(includes ${PROJECT_BINARY_DIR}/include/${folder})
    file(MAKE_DIRECTORY ${includes})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${includes}/${folder} COPY_ON_ERROR SYMBOLIC)
    set(scope PUBLIC)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL INTERFACE_LIBRARY)
        set(scope INTERFACE)
    endif()
    target_include_directories(${target} ${scope}
        $<BUILD_INTERFACE:${includes}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/${NODEBROWSER_PACKAGE}>)
    foreach(file IN LISTS ARGN)
        set_property(GLOBAL APPEND PROPERTY NODEBROWSER_PUBLIC_HEADERS
            ${CMAKE_CURRENT_SOURCE_DIR}/${file})
        cmake_path(GET file PARENT_PATH parent)
        install(FILES ${file} COMPONENT development
                DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${NODEBROWSER_PACKAGE}/${folder}/${parent})
    endforeach()
endfunction()

# hide_private(target name): what is not marked as public is hidden in the objects of the target,
# which the shared library of that name is linked from.
function(hide_private target name)
    if(NOT BUILD_SHARED_LIBS AND NOT NODEBROWSER_SHARED_OBJECTS)
        return()
    endif()
    string(TOUPPER ${name} upper)
    target_compile_definitions(${target} PRIVATE ${upper}_SHARED ${name}_EXPORTS)
    set_target_properties(${target} PROPERTIES
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# public_library(target name): a library's file name, and for a shared one the version that is part
# of it.
function(public_library target name)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR})
    get_target_property(type ${target} TYPE)
    hide_private(${target} ${target})
    if(type STREQUAL SHARED_LIBRARY)
        string(TOUPPER ${target} upper)
        target_compile_definitions(${target} INTERFACE ${upper}_SHARED)
        if(APPLE)
            # The contract's functions are found when the program is started.
            target_link_options(${target} PRIVATE -undefined dynamic_lookup)
        elseif(UNIX)
            target_link_options(${target} PRIVATE
                -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/private.map)
        endif()
    endif()
endfunction()
