# SPDX-License-Identifier: MIT
# What the compiler and the linker can do against a stranger's bytes, for what gets installed: a
# mistake of ours that they reach then ends the program instead of being used. Not inside another
# project, whose flags are its own, nor under the sanitizers, which see more.

option(VARDA_HARDENING "Build with the compiler's and linker's protections" ${PROJECT_IS_TOP_LEVEL})

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

function(varda_harden target)
    if(NOT VARDA_HARDENING)
        return()
    endif()
    foreach(flag IN ITEMS
            -fstack-protector-strong -fstack-clash-protection -fcf-protection
            -ftrivial-auto-var-init=zero)
        string(MAKE_C_IDENTIFIER "VARDA_HAS${flag}" has)
        check_cxx_compiler_flag(${flag} ${has})
        if(${has})
            target_compile_options(${target} PRIVATE ${flag})
        endif()
    endforeach()
    target_compile_definitions(${target} PRIVATE _GLIBCXX_ASSERTIONS)
    # The C library's checks need an optimizer; a package's own choice of them is replaced.
    if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang" AND
       (NOT CMAKE_BUILD_TYPE STREQUAL "Debug" OR CMAKE_CXX_FLAGS_DEBUG MATCHES "-O[1-3s]"))
        target_compile_options(${target} PRIVATE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    endif()
    foreach(flag IN ITEMS relro now noexecstack)
        check_linker_flag(CXX LINKER:-z,${flag} VARDA_LINKS_${flag})
        if(VARDA_LINKS_${flag})
            target_link_options(${target} PRIVATE LINKER:-z,${flag})
        endif()
    endforeach()
endfunction()
