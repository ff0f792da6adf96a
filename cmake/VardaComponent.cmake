# SPDX-License-Identifier: MIT
# Libraries beside the core, each a component of its own: find_package(Varda COMPONENTS Profile).

include(VardaPkgConfig)

# varda_add_component(NAME SOURCE... DESCRIPTION TEXT QT MODULE... [PRIVATE_QT MODULE...]): the
# library Varda::NAME, for pkg-config varda-name, from the sources of this folder and its public
# headers in include/varda. An application needs what is private only to link a static one.
function(varda_add_component name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "DESCRIPTION" "QT;PRIVATE_QT")
    string(TOLOWER ${name} lower)
    string(TOUPPER ${name} upper)
    find_package(Qt6 6.4 REQUIRED COMPONENTS ${arg_QT} ${arg_PRIVATE_QT})
    file(GLOB headers CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/include/varda/*.h")

    set(target varda-${lower})
    set(pc_qt ${arg_QT})
    set(pc_private_qt "")
    if(NOT BUILD_SHARED_LIBS)
        set(pc_private_qt ${arg_PRIVATE_QT})
    endif()
    add_library(${target} ${arg_UNPARSED_ARGUMENTS})
    add_library(Varda::${name} ALIAS ${target})
    target_sources(${target} PUBLIC
        FILE_SET HEADERS
        BASE_DIRS "${CMAKE_CURRENT_SOURCE_DIR}/include"
        FILES ${headers})
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${name}
        OUTPUT_NAME varda${lower}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${VARDA_SOVERSION}
        POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        # Installed, it finds the core beside itself.
        INSTALL_RPATH "$ORIGIN")
    target_compile_features(${target} PUBLIC cxx_std_17 PRIVATE cxx_std_20)
    target_compile_definitions(${target} PRIVATE
        VARDA_${upper}_LIBRARY VARDA_VERSION="${PROJECT_VERSION}"
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)
    list(TRANSFORM arg_QT PREPEND Qt6::)
    list(TRANSFORM arg_PRIVATE_QT PREPEND Qt6::)
    target_link_libraries(${target} PUBLIC Varda::Varda ${arg_QT} PRIVATE ${arg_PRIVATE_QT})
    # The core's Bluetooth is no library that this one uses itself.
    if(VARDA_LINKS_as_needed)
        target_link_options(${target} PRIVATE LINKER:--as-needed)
    endif()
    varda_set_warnings(${target})
    varda_harden(${target})

    if(VARDA_INSTALL)
        install(TARGETS ${target} EXPORT Varda${name}Targets
            RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
            LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
            ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
            INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
            FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
        install(EXPORT Varda${name}Targets NAMESPACE Varda::
            DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/Varda")
        varda_install_pc(${target} varda${lower} "${arg_DESCRIPTION}"
            REQUIRES varda QT ${pc_qt} PRIVATE_QT ${pc_private_qt})
    endif()
endfunction()
