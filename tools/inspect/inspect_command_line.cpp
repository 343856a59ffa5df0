// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The command line of `zolt inspect`.
#include "inspect.hpp"
#include "tools/program/command_line.hpp"

#include <optional>
#include <string>

namespace tools {

void add_inspect_command(command const& root) {
    struct values {
        std::string path;
        bool is_labeled = false;
        bool is_text = false;
        std::optional<std::string> pattern;
    };
    command const inspect = root.add("inspect", phrase::inspect_about, phrase::inspect_notes).with_report();
    values& given = inspect.keep<values>();
    inspect.argument("FILE", given.path, phrase::buffer_argument).required();
    parameter const labeled = inspect.flag("--labeled", given.is_labeled, phrase::labeled_option);
    parameter const text = inspect.flag("--text", given.is_text, phrase::text_option);
    parameter const binary = inspect.option("--binary", given.pattern, phrase::binary_option, "PATTERN");
    text.excludes(labeled);
    binary.excludes(labeled).excludes(text);
    inspect.runs([&given](session const& session) {
        auto const form = given.is_labeled ? inspect_options::labeled
                          : given.is_text  ? inspect_options::text
                          : given.pattern  ? inspect_options::binary
                                           : inspect_options::automatic;
        return inspect_buffer(session, {given.path, form, given.pattern.value_or("")});
    });
}

} // namespace tools
