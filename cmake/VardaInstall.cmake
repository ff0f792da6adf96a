# SPDX-License-Identifier: MIT
# What `cmake --install` puts in place, for find_package(Varda) and for pkg-config. Both find
# the rest from where they lie themselves, so an installed tree may be moved.

include(CMakePackageConfigHelpers)
include(VardaPkgConfig)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Varda")

install(TARGETS Varda EXPORT VardaTargets
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(EXPORT VardaTargets NAMESPACE Varda:: DESTINATION "${package_dir}")

if(VARDA_BUILD_SIMULATOR)
    install(TARGETS varda-simulatorprocess EXPORT VardaSimulatorProcessTargets
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
        FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
    install(EXPORT VardaSimulatorProcessTargets NAMESPACE Varda:: DESTINATION "${package_dir}")
endif()

# A static library leaves the linking of what it uses to the application.
set(VARDA_CONFIG_QT ${VARDA_QT})
set(private_qt "")
set(VARDA_STATIC_SQL "")
if(NOT BUILD_SHARED_LIBS)
    set(VARDA_STATIC_SQL Sql)
    set(private_qt ${VARDA_PRIVATE_QT})
    list(APPEND VARDA_CONFIG_QT ${private_qt})
endif()
list(JOIN VARDA_CONFIG_QT " " VARDA_CONFIG_QT)
if(NOT DEFINED VARDA_INSTALL_QMLDIR)
    set(VARDA_INSTALL_QMLDIR "${CMAKE_INSTALL_LIBDIR}/qt6/qml") # nothing is there
endif()
configure_package_config_file(
    "${CMAKE_CURRENT_LIST_DIR}/VardaConfig.cmake.in" "${PROJECT_BINARY_DIR}/VardaConfig.cmake"
    INSTALL_DESTINATION "${package_dir}"
    PATH_VARS CMAKE_INSTALL_BINDIR VARDA_INSTALL_QMLDIR)
# Below 1.0 a new minor version may break what was built against the one before.
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/VardaConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/VardaConfig.cmake"
    "${PROJECT_BINARY_DIR}/VardaConfigVersion.cmake"
    DESTINATION "${package_dir}")

varda_install_pc(varda varda "${PROJECT_DESCRIPTION}" QT ${VARDA_QT} PRIVATE_QT ${private_qt})
