include_guard(GLOBAL)
include(CMakePackageConfigHelpers)

set(VELL_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/VellDocumentData")
configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/VellDocumentDataConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/VellDocumentDataConfig.cmake"
    INSTALL_DESTINATION "${VELL_PACKAGE_DIR}")
# Until 1.0 a minor version may change the interface.
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/VellDocumentDataConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/VellDocumentDataConfig.cmake"
    "${PROJECT_BINARY_DIR}/VellDocumentDataConfigVersion.cmake"
    DESTINATION "${VELL_PACKAGE_DIR}" COMPONENT Development)
install(EXPORT VellDocumentDataTargets
    NAMESPACE Vell::
    DESTINATION "${VELL_PACKAGE_DIR}" COMPONENT Development)
