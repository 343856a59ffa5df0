# SPDX-FileCopyrightText: 2026 the zolt authors
# SPDX-License-Identifier: BSL-1.0
#
# check_first_program.cmake, with ROOT: the README's first program and its catalog are those that are built and run.
file(READ ${ROOT}/README.md readme)
file(READ ${ROOT}/examples/first_program/app.xmc catalog)
file(READ ${ROOT}/examples/first_program/app.cpp program)
string(REGEX REPLACE "^(//[^\n]*\n)*\n" "" program "${program}")
foreach(block IN ITEMS "xml\n${catalog}" "cpp\n${program}")
    string(FIND "${readme}" "```${block}```\n" place)
    if(place EQUAL -1)
        message(FATAL_ERROR "the README does not hold this as one block:\n${block}")
    endif()
endforeach()
