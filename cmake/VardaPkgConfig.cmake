# SPDX-License-Identifier: MIT
# Files for pkg-config, which find the rest from where they lie themselves: an installed tree may be
# moved.

# varda_install_pc(NAME LIBRARY DESCRIPTION [REQUIRES NAME...] [QT MODULE...] [PRIVATE_QT MODULE...]):
# what is private, an application needs only to link a static library.
function(varda_install_pc name library description)
    cmake_parse_arguments(PARSE_ARGV 3 arg "" "" "REQUIRES;QT;PRIVATE_QT")
    # libdir may be deeper than one folder (lib/x86_64-linux-gnu), and either may be absolute.
    file(RELATIVE_PATH pc_prefix
        "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
    string(REGEX REPLACE "/$" "" pc_prefix "${pc_prefix}")
    cmake_path(APPEND pc_libdir "\${prefix}" "${CMAKE_INSTALL_LIBDIR}")
    cmake_path(APPEND pc_includedir "\${prefix}" "${CMAKE_INSTALL_INCLUDEDIR}")
    foreach(list arg_QT arg_PRIVATE_QT)
        list(TRANSFORM ${list} REPLACE "(.+)" "Qt6\\1 >= 6.4")
    endforeach()
    # Below 1.0 another version of the core may be another interface.
    list(TRANSFORM arg_REQUIRES APPEND " = ${PROJECT_VERSION}")
    list(JOIN arg_PRIVATE_QT ", " pc_requires_private)
    set(pc_requires ${arg_REQUIRES} ${arg_QT})
    list(JOIN pc_requires ", " pc_requires)
    configure_file(
        "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/varda.pc.in" "${PROJECT_BINARY_DIR}/${name}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${name}.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endfunction()
