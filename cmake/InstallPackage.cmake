# Installs the libraries and the package files. All names carry the toolkit generation, so that both
# generations fit into one prefix.

include(CMakePackageConfigHelpers)

set(package_config ${CMAKE_INSTALL_LIBDIR}/cmake/${NODEBROWSER_PACKAGE})

# install_component(name target...): what find_package gives for the component of that name.
function(install_component name)
    install(TARGETS ${ARGN} EXPORT ${name}Targets
        RUNTIME COMPONENT runtime
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development
        OBJECTS COMPONENT development DESTINATION ${CMAKE_INSTALL_LIBDIR}/${NODEBROWSER_PACKAGE})
    install(EXPORT ${name}Targets
        FILE ${NODEBROWSER_PACKAGE}-${name}.cmake
        NAMESPACE nodebrowser::
        DESTINATION ${package_config}
        COMPONENT development)
endfunction()

install_component(nodebrowser hostapi nodebrowser)
install_component(icons icons)
install_component(hostkit hostkit)
install_component(palette palette)
if(NODEBROWSER_EMBEDDEDHOST)
    install_component(embeddedhost embeddedhost)
endif()

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/PackageConfig.cmake.in
    ${PROJECT_BINARY_DIR}/${NODEBROWSER_PACKAGE}Config.cmake
    INSTALL_DESTINATION ${package_config}
    NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/${NODEBROWSER_PACKAGE}ConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
            ${PROJECT_BINARY_DIR}/${NODEBROWSER_PACKAGE}Config.cmake
            ${PROJECT_BINARY_DIR}/${NODEBROWSER_PACKAGE}ConfigVersion.cmake
        DESTINATION ${package_config}
        COMPONENT development)

# The same files for both generations.
set(neutral_config ${CMAKE_INSTALL_LIBDIR}/cmake/nodebrowser)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/nodebrowserConfig.cmake
        DESTINATION ${neutral_config} COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/${NODEBROWSER_PACKAGE}ConfigVersion.cmake
        DESTINATION ${neutral_config} RENAME nodebrowserConfigVersion.cmake COMPONENT development)

# install_pkgconfig(name LINK what... DESCRIPTION text REQUIRES package... PRIVATE package...)
#
# A pkg-config file of that name, for hosts that do not build with CMake. PRIVATE is what a static
# library leaves to be linked.
function(install_pkgconfig name)
    cmake_parse_arguments(PARSE_ARGV 1 pc "" DESCRIPTION "LINK;REQUIRES;PRIVATE")
    list(JOIN pc_LINK " " pc_LINK)
    list(JOIN pc_REQUIRES ", " pc_REQUIRES)
    if(BUILD_SHARED_LIBS)
        set(pc_PRIVATE "")
    endif()
    list(JOIN pc_PRIVATE ", " pc_PRIVATE)
    configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/package.pc.in ${PROJECT_BINARY_DIR}/${name}.pc
                   @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
            DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

# The folder of the package files may lie deeper or not; they find the prefix from where they lie.
file(RELATIVE_PATH pc_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
install_pkgconfig(${NODEBROWSER_PACKAGE}
    DESCRIPTION "Panel that lists, searches and manages the item library of a node-graph editor"
    LINK -l${NODEBROWSER_PACKAGE}
    REQUIRES Qt${NODEBROWSER_QT}Widgets)
install(FILES $<TARGET_OBJECTS:icons> RENAME icons.o
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/${NODEBROWSER_PACKAGE} COMPONENT development)
install_pkgconfig(nodebrowser-icons-qt${NODEBROWSER_QT}
    DESCRIPTION "The images of the rows of the node browser"
    LINK \${libdir}/${NODEBROWSER_PACKAGE}/icons.o
    REQUIRES Qt${NODEBROWSER_QT}Core)
install_pkgconfig(nodepalette-qt${NODEBROWSER_QT}
    DESCRIPTION "The node browser for daily use: keys, screen readers, an order by name"
    LINK -lnodepalette-qt${NODEBROWSER_QT}
    REQUIRES ${NODEBROWSER_PACKAGE})
install_pkgconfig(nodebrowser-hostkit-qt${NODEBROWSER_QT}
    DESCRIPTION "The part of the node browser's contract that is the same in every host"
    LINK -lnodebrowser-hostkit-qt${NODEBROWSER_QT}
    REQUIRES Qt${NODEBROWSER_QT}Gui)
if(NODEBROWSER_EMBEDDEDHOST)
    install_pkgconfig(nodebrowser-embeddedhost-qt${NODEBROWSER_QT}
        DESCRIPTION "A host for the node browser over a folder of files or a list of items"
        LINK -lnodebrowser-embeddedhost-qt${NODEBROWSER_QT}
        REQUIRES nodebrowser-hostkit-qt${NODEBROWSER_QT} Qt${NODEBROWSER_QT}Widgets
        PRIVATE libgit2 simdjson)
endif()

install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/LICENSE
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${NODEBROWSER_PACKAGE}
        COMPONENT development)

# Removes what the last install wrote, as its list says.
if(PROJECT_IS_TOP_LEVEL)
    add_custom_target(uninstall
        COMMAND ${CMAKE_COMMAND} -P ${CMAKE_CURRENT_LIST_DIR}/Uninstall.cmake
        WORKING_DIRECTORY ${PROJECT_BINARY_DIR})
endif()
