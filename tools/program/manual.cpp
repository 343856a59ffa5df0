// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "manual.hpp"

#include "command_line.hpp"

#include <cstdio>

namespace tools {

manual_command program_manual() {
    constexpr std::size_t any_width = 1'000'000; // the text is not wrapped
    program_messages const texts("en");
    output out(stdout);
    command_line line(out, out, texts, any_width);
    add_commands(line.root());
    return line.manual();
}

} // namespace tools
