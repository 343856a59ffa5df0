// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The `zolt` program: its command line is declared in the *_command_line sources, its commands are
// functions that take a session and their own arguments.
#include "command_line.hpp"
#include "inspect.hpp"

#include <zolt/exceptions/exception.hpp>

#include <cerrno>
#include <cstring>
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
    command const inspect = root.add("inspect", phrase::inspect_about, phrase::inspect_notes).with_json();
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

namespace {

exit_status run(output& out, output& err, program_messages const& texts, int argc, char** argv) {
    common_options const options;
    session const session{out, err, texts, options};
    try {
        command_line line(out, err, texts);
        add_catalog_commands(line.root());
        add_config_commands(line.root());
        add_inspect_command(line.root());
        return line.run(argc, argv);
    } catch (zolt::exceptions::exception const& fault) {
        session.complain(fault.get_message());
    } catch (std::exception const& fault) {
        session.complain(fault.what());
    }
    return exit_failed;
}

} // namespace
} // namespace tools

int main(int argc, char** argv) {
    using namespace tools;
    output out(stdout);
    output err(stderr);
    program_messages const texts(language_of_environment());
    exit_status const status = run(out, err, texts, argc, argv);

    int const error = out.flush();
    if (error == 0) return status;
    // A reader that has gone away has seen enough; everything else is worth a word.
    if (error != EPIPE) {
        common_options const options;
        session const session{out, err, texts, options};
        session.complain(texts.get(phrase::write_failed, {{"reason", std::strerror(error)}}));
    }
    return exit_failed;
}
