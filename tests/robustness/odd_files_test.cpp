// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Whatever stands where a file is expected: links and cycles of them, pipes, sockets, devices, directories. Every
// reader gives an answer, and soon.
#include "i18n/catalog_files.hpp"

#include <zolt/zolt.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace zolt;
using catalog_files::catalog;
using catalog_files::document;
using strings::ustring8;
namespace fs = std::filesystem;

// Inside a directory of its own, so that paths are relative.
class odd_files : public testing::Test {
protected:
    odd_files() {
        fs::current_path(std::string(m_files.path("")));
        m_files.write("good", document(catalog("c", "en", "text")));
        fs::create_hard_link("good", "hard");
        fs::create_symlink("good", "link");
        fs::create_symlink("link", "link to link");
        fs::create_symlink("dangling", "nothing");
        fs::create_symlink("self", "self");
        fs::create_symlink("ring 2", "ring 1");
        fs::create_symlink("ring 1", "ring 2");
        fs::create_directory("directory");
        fs::create_directory_symlink("../directory", "directory/loop");
        fs::create_directory_symlink("directory", "to directory");
        ::mkfifo("pipe", 0600);
        fs::create_symlink("pipe", "to pipe");
        int const endpoint = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un const address = {AF_UNIX, "socket"};
        EXPECT_EQ(::bind(endpoint, reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
        ::close(endpoint);
    }
    ~odd_files() override { fs::current_path("/"); }

    catalog_files::temporary_directory m_files;
};

using answer = std::string (*)(ustring8 const& path);

std::string load(ustring8 const& path) {
    ustring8 content;
    unsigned int const result = system::load_file(path, content);
    return std::to_string(result) + (content.empty() ? "" : " text");
}

std::string configure(ustring8 const& path) { return config::file_item(path).load() ? "read" : "no file"; }

std::string configure_by_key(ustring8 const& path) {
    auto const user = memory::pointers::make_rc<config::user_item>();
    user->set("cfg_file", types::variant(path), 0);
    return config::file_item("").load({user}) ? "read" : "no file";
}

template <auto Load>
std::string collect(ustring8 const& path) {
    i18n::message_catalogs catalogs;
    auto const code = (catalogs.*Load)(path, "en").code();
    return std::to_string(code) + (catalogs.size() == 0 ? "" : " text");
}

using load_call = i18n::message_catalogs::result_type (i18n::message_catalogs::*)(ustring8 const&, ustring8 const&);
constexpr load_call load_any = &i18n::message_catalogs::load;
constexpr load_call load_file = &i18n::message_catalogs::load_file;
constexpr load_call load_directory = &i18n::message_catalogs::load_directory;

std::string include(ustring8 const& path) {
    i18n::_private::xmc_file_loader loader;
    loader.handle_language("en");
    auto const fault = loader.parse_string(ustring8(document("<include file='" + path + "'/>")), "top");
    return std::to_string(fault.code());
}

std::string list(ustring8 const& path) {
    std::vector<ustring8> files;
    system::get_directory_files(path, files);
    return std::to_string(system::list_directory(path).size()) + " " + std::to_string(files.size());
}

TEST_F(odd_files, every_reader_answers_at_once) {
    constexpr answer answers[] = {
        load,    configure, configure_by_key, collect<load_any>, collect<load_file>, collect<load_directory>,
        include, list};
    using row = std::vector<std::string>;
    row const file = {"0 text", "read", "read", "0 text", "0 text", "0", "0", "0 0"};
    row const absent = {"1", "no file", "no file", "5", "3", "4", "3", "0 0"};
    row const no_file = {"1", "no file", "no file", "5", "3", "0", "3", "0 0"}; // a directory without entries
    row const empty_device = {"0", "read", "read", "5", "3", "0", "3", "0 0"};
    row const directory = {"1", "no file", "no file", "1", "3", "0", "3", "1 0"};
    row const socket = {"1", "no file", "no file", "3", "3", "0", "3", "0 0"}; // kept: counts as a file, too
    struct {
        std::vector<std::string> paths;
        row const& expected;
    } const rows[] = {
        {{"good", "hard", "link", "link to link", "directory/loop/../good"}, file},
        {{"nothing", "self", "ring 1", "good/x", "self/x", std::string(300, 'n'), std::string(5000, '/') + "x"},
         absent},
        {{"to pipe"}, no_file},
        {{"socket"}, socket},
        {{"/dev/null", "/dev/zero", "/dev/full"}, empty_device},
        {{"directory", "to directory", "directory/loop/loop/loop"}, directory},
    };
    for (auto const& [paths, expected] : rows) {
        for (std::string const& path : paths) {
            row told;
            for (answer const ask : answers) {
                auto const start = std::chrono::steady_clock::now();
                told.push_back(ask(ustring8(path)));
                EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1)) << path;
            }
            EXPECT_EQ(told, expected) << path.substr(0, 30);
        }
    }
}

TEST_F(odd_files, scans_pass_them_over) {
    std::vector<ustring8> files;
    system::get_directory_files(".", files);
    std::sort(files.begin(), files.end());
    EXPECT_EQ(files, (std::vector<ustring8>{"./good", "./hard", "./link", "./link to link", "./socket"}));
    for (char const* const name : {"good", "pipe", "ring 1", "self", "nothing"}) {
        fs::rename(name, std::string("directory/") + name + ".xmc");
    }
    EXPECT_EQ(collect<load_any>("."), "0 text");
}

TEST_F(odd_files, whoever_has_a_pipe_open_is_waited_for) {
    int const end = ::open("pipe", O_RDWR);
    pid_t const writer = ::fork();
    if (writer == 0) {
        ::usleep(600000); // longer than anybody is waited for who has not
        ::_exit(::write(end, "text", 4) != 4);
    }
    ::close(end);
    EXPECT_EQ(load("pipe"), "0 text");
    ::waitpid(writer, nullptr, 0);
}

} // namespace
