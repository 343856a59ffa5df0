# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# zolt_warnings(target): the warnings that this project's own sources are held to. They are errors
# with ZOLT_WERROR, which the test script sets; users who build the library never see them.
option(ZOLT_WERROR "Treat warnings as errors" OFF)
mark_as_advanced(ZOLT_WERROR)

function(zolt_warnings target)
    if(NOT PROJECT_IS_TOP_LEVEL)
        return()
    endif()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
    if(ZOLT_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()
