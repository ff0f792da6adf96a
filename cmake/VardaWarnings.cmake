# SPDX-License-Identifier: MIT
# The warnings every target of ours is built with; they stop the build where
# VARDA_WARNINGS_AS_ERRORS is on (development), never in somebody else's build.

function(varda_set_warnings target)
    set(gnu_like "$<CXX_COMPILER_ID:GNU,Clang,AppleClang>")
    set(warnings
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
        -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wundef)
    if(VARDA_WARNINGS_AS_ERRORS)
        list(APPEND warnings -Werror)
    endif()
    target_compile_options(${target} PRIVATE "$<${gnu_like}:${warnings}>")
endfunction()
