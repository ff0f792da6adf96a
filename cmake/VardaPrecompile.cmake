# SPDX-License-Identifier: MIT
# A cold build spends most of its time on the headers of Qt; compiled once for many sources they cost
# much less. But ccache then keeps nothing, so it is for machines that begin with nothing.
option(VARDA_PRECOMPILE "Precompile the headers of Qt, for builds without ccache" OFF)

# varda_precompile(TARGET HEADER...): these headers for all sources of the target.
# varda_precompile(TARGET LIKE OTHER): those of the other target, which is compiled with the same flags.
function(varda_precompile target)
    if(NOT VARDA_PRECOMPILE)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "LIKE" "")
    if(arg_LIKE)
        target_precompile_headers(${target} REUSE_FROM ${arg_LIKE})
    else()
        target_precompile_headers(${target} PRIVATE ${arg_UNPARSED_ARGUMENTS})
    endif()
    # A source that the compiler cannot use them for takes longer, and that is all.
    set_target_properties(${target} PROPERTIES PCH_WARN_INVALID OFF)
endfunction()
