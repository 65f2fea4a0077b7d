# Installs the libraries, their headers and the package config. All names carry the toolkit
# generation, so that both generations fit into one prefix.

include(CMakePackageConfigHelpers)

set(package_headers ${CMAKE_INSTALL_INCLUDEDIR}/${NODEBROWSER_PACKAGE})
set(package_config ${CMAKE_INSTALL_LIBDIR}/cmake/${NODEBROWSER_PACKAGE})

install(TARGETS hostapi EXPORT ${NODEBROWSER_PACKAGE}Targets
        PUBLIC_HEADER DESTINATION ${package_headers}/hostapi)
install(TARGETS nodebrowser EXPORT ${NODEBROWSER_PACKAGE}Targets
        PUBLIC_HEADER DESTINATION ${package_headers})
install(TARGETS palette EXPORT ${NODEBROWSER_PACKAGE}Targets
        PUBLIC_HEADER DESTINATION ${package_headers})
install(TARGETS hostkit EXPORT ${NODEBROWSER_PACKAGE}Targets
        PUBLIC_HEADER DESTINATION ${package_headers}/hostkit)
install(TARGETS embeddedhost EXPORT ${NODEBROWSER_PACKAGE}Targets
        PUBLIC_HEADER DESTINATION ${package_headers}/embeddedhost)
install(TARGETS icons EXPORT ${NODEBROWSER_PACKAGE}Targets
        OBJECTS DESTINATION ${CMAKE_INSTALL_LIBDIR}/${NODEBROWSER_PACKAGE})
install(EXPORT ${NODEBROWSER_PACKAGE}Targets
        NAMESPACE nodebrowser::
        DESTINATION ${package_config})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/PackageConfig.cmake.in
    ${PROJECT_BINARY_DIR}/${NODEBROWSER_PACKAGE}Config.cmake
    INSTALL_DESTINATION ${package_config}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/${NODEBROWSER_PACKAGE}ConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
            ${PROJECT_BINARY_DIR}/${NODEBROWSER_PACKAGE}Config.cmake
            ${PROJECT_BINARY_DIR}/${NODEBROWSER_PACKAGE}ConfigVersion.cmake
        DESTINATION ${package_config})

# The same files for both generations.
set(neutral_config ${CMAKE_INSTALL_LIBDIR}/cmake/nodebrowser)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/nodebrowserConfig.cmake DESTINATION ${neutral_config})
install(FILES ${PROJECT_BINARY_DIR}/${NODEBROWSER_PACKAGE}ConfigVersion.cmake
        DESTINATION ${neutral_config} RENAME nodebrowserConfigVersion.cmake)
