// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The `zolt` program: its command line is declared in the *_command_line sources, its commands are
// functions that take a session and their own arguments.
#include "tools/program/command_line.hpp"

#include <zolt/exceptions/exception.hpp>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace tools {
namespace {

exit_status run(output& out, output& err, program_messages const& texts, int argc, char** argv) {
    common_options const options;
    session const session{out, err, texts, options};
    try {
        command_line line(out, err, texts);
        add_commands(line.root());
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
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow further is an error like any other
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
