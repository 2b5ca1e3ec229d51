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

# vell_install_pkg_config(<target> <description>)
# Describes an installed library to programs that are built without CMake. What it requires and where its headers are
# comes from the target, so that both packages say the same.
function(vell_install_pkg_config target description)
    vell_refuse_unknown_arguments(vell_install_pkg_config ${ARGN})
    set(requires)
    get_target_property(links ${target} INTERFACE_LINK_LIBRARIES)
    foreach(link IN LISTS links)
        if(link MATCHES "^Qt5::(.+)$")
            list(APPEND requires "Qt5${CMAKE_MATCH_1} >= 5.15")
        elseif(link MATCHES "^Vell::")
            get_target_property(name ${link} ALIASED_TARGET)
            list(APPEND requires "${name} = ${PROJECT_VERSION}")
        else()
            message(FATAL_ERROR "${target} links ${link}, and pkg-config has no name for it")
        endif()
    endforeach()
    list(JOIN requires ", " requires)
    get_target_property(includes ${target} INTERFACE_INCLUDE_DIRECTORIES)
    if(NOT includes MATCHES "\\$<INSTALL_INTERFACE:([^>]+)>")
        message(FATAL_ERROR "${target} does not say where its installed headers are")
    endif()
    set(includeDir "${CMAKE_MATCH_1}")
    set(folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
    file(RELATIVE_PATH prefixFromHere "/${folder}" "/")
    string(REGEX REPLACE "/$" "" prefixFromHere "${prefixFromHere}")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/pkgconfig.pc.in" "${PROJECT_BINARY_DIR}/${target}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${target}.pc" DESTINATION "${folder}" COMPONENT Development)
endfunction()

vell_install_pkg_config(VellDocumentData "${PROJECT_DESCRIPTION}")
vell_install_pkg_config(VellClient "Sessions, operations, models and transfers on VellDocumentData")
vell_install_pkg_config(VellNetwork "HTTP requests and uploads for VellDocumentData")
vell_install_pkg_config(VellPublicFun "Dates, MD5 and entity links for VellDocumentData")
vell_install_pkg_config(VellSoftBase "The open project, the user and the settings for VellDocumentData")

if(TARGET vell-service)
    install(FILES "${PROJECT_SOURCE_DIR}/packaging/service/vell-service.8"
        DESTINATION "${CMAKE_INSTALL_MANDIR}/man8" COMPONENT Runtime)
endif()
