// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/debug/assert.hpp>
#include <zolt/strings/unicode.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/system/io.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace ZOLT_2_18::system;
using namespace ZOLT_2_18::strings;
using paths = std::vector<ustring8>;

namespace {

// Each test runs inside a fresh directory, so that paths can be short and relative.
class Io : public testing::Test {
protected:
    Io() { fs::current_path(::mkdtemp(m_directory.data())); }
    ~Io() override {
        fs::current_path("/");
        fs::remove_all(m_directory);
    }

private:
    std::string m_directory = "/tmp/zolt_io_XXXXXX";
};

paths files_below(ustring8 const& directory) {
    paths files;
    get_directory_files(directory, files);
    return files;
}

paths sorted(paths list) {
    std::sort(list.begin(), list.end());
    return list;
}

ustring8 const with_nul(std::string("file\0tail", 9));

} // namespace

TEST_F(Io, Tests) {
    store_file("file", "");
    fs::create_directory_symlink(".", "link");
    fs::create_symlink("nowhere", "dangling");
    int const endpoint = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un const address = {AF_UNIX, "socket"};
    ASSERT_EQ(::bind(endpoint, reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
    ::close(endpoint);
    auto const seen = [](ustring8 const& path) {
        return std::string(io::exists(path) ? "there" : "") + (io::is_file(path) ? " file" : "") +
               (io::is_directory(path) ? " directory" : "");
    };
    for (ustring8 const& path : paths{"dangling", "file/", "", with_nul}) EXPECT_EQ(seen(path), "") << path;
    EXPECT_EQ(seen("file"), "there file");
    EXPECT_EQ(seen("link"), "there directory");
    EXPECT_EQ(seen("/dev/null"), "there");
    EXPECT_EQ(seen("socket"), "there file directory");  // kept: a socket's mode has both bits
    for (unsigned const mode : {0400u, 0044u, 0377u}) { // kept: nobody else's bits count
        ::chmod("file", mode);
        EXPECT_EQ(have_read_access("file"), mode == 0400);
    }
}

template <typename Convert>
void expect_every_operation(Convert convert) {
    auto const top = convert("\xC3\xA4"), file = convert("\xC3\xA4/\xE2\x82\xAC"), moved = convert("\xC3\xA4/m");
    int failures = 0;
    ZOLT_2_18::debug::set_assert_hook([&failures](char const*, char const*, unsigned int&) { ++failures; });
    io::mkdir(top);
    ZOLT_2_18::debug::set_assert_hook(ZOLT_2_18::types::nil);
    EXPECT_TRUE(failures == 1 && !io::exists(top));
    EXPECT_EQ(create_directory(top), 1u);
    store_file(file, "");
    EXPECT_TRUE(io::is_directory(top) && io::exists(file) && io::is_file(file) && have_read_access(file));
    EXPECT_FALSE(io::is_directory(file) || io::is_file(top) || have_read_access(moved));
    EXPECT_TRUE(list_directory(top) == std::vector{file});
    std::vector files = {top};
    get_directory_files(top, files);
    EXPECT_TRUE(files == (std::vector{top, file})) << "added to what is there";
    io::move(moved, file); // kept: the new name first
    EXPECT_TRUE(io::exists(moved) && !io::exists(file));
    io::remove_file(moved);
    io::remove_dir(top);
    EXPECT_FALSE(io::exists(top));
}

TEST_F(Io, OperationsTakeNamesOfEveryWidth) {
    expect_every_operation([](ustring8 const& name) { return name; });
    expect_every_operation(utf8_to_utf16);
    expect_every_operation(utf8_to_utf32);
}

TEST_F(Io, OnlyWhatWasMeantIsMovedOrRemoved) {
    fs::create_directories("full/inner");
    store_file("file", "");
    io::move(with_nul, "file");
    io::move("d", with_nul);
    io::remove_file(with_nul);
    io::remove_dir("file");
    io::remove_dir("full");
    io::remove_file("full");
    EXPECT_TRUE(io::exists("file") && io::exists("full/inner"));
    io::remove_file("full/inner"); // an empty directory goes, too
    EXPECT_FALSE(io::exists("full/inner"));
}

TEST_F(Io, CreateDirectory) {
    mode_t const mask = ::umask(0);
    for (char const* const path : {"a", "a/b/c", "./d/e", "h//i/", ".hidden", ".hidden/x/y", "."}) {
        EXPECT_EQ(create_directory(path), 1u) << path;
        EXPECT_TRUE(fs::is_directory(path)) << path;
    }
    ::umask(mask);
    EXPECT_EQ(fs::status("a/b").permissions(), fs::perms(0775));
    EXPECT_EQ(create_directory(fs::current_path().string() + "/j/k"), 1u);
    store_file("file", "");
    // Kept in the first: what stands before the first "/" is not created.
    for (ustring8 const& path : paths{".other/x", "file/x", "file", "", with_nul}) {
        EXPECT_EQ(create_directory(path), 0u) << path;
    }
}

TEST_F(Io, ListingsKeepTheOrderOfTheFileSystem) {
    EXPECT_EQ(list_directory("missing"), paths());
    EXPECT_EQ(files_below("missing"), paths());
    for (std::string const name : {"a", "b", "c", "d", "\xFF"}) { // the last is no UTF-8
        fs::create_directories("top/" + name);
        store_file("top/." + name, "");
        store_file("top/" + name + "/x", "");
    }
    EXPECT_EQ(sorted(list_directory("top/")), (paths{"top//.a", "top//.b", "top//.c", "top//.d", "top//.\xFF",
                                                     "top//a", "top//b", "top//c", "top//d", "top//\xFF"}));
    paths expected = list_directory("top");
    for (ustring8& path : expected) path += io::is_directory(path) ? "/x" : "";
    EXPECT_EQ(files_below("top"), expected);
}

TEST_F(Io, FilesFollowLinksButNoCyclesAndSkipWhatTheOwnerMayNotRead) {
    fs::create_directories("top/a/closed");
    fs::create_directories("other");
    for (char const* const file : {"top/a/file", "top/a/secret", "top/a/closed/file", "other/x"})
        store_file(file, "");
    for (char const* const link : {"top/a/up", "top/loop", "other/back"})
        fs::create_directory_symlink("../top", link);
    for (char const* const link : {"top/one", "top/two"}) fs::create_directory_symlink("../other", link);
    fs::create_directory_symlink(".", "top/a/self");
    ::chmod("top/a/secret", 0044);
    ::chmod("top/a/closed", 0300);
    EXPECT_EQ(sorted(files_below("top")), (paths{"top/a/file", "top/one/x", "top/two/x"}));
    ::chmod("top/a/closed", 0700);
}

TEST_F(Io, DeepTreesNeedFewDescriptors) {
    ustring8 path = "d";
    while (path.size() < 1000) path += "/d";
    ASSERT_EQ(create_directory(path), 1u);
    store_file(path + "/file", "");
    rlimit before = {};
    ::getrlimit(RLIMIT_NOFILE, &before);
    rlimit const few = {64, before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
    EXPECT_EQ(files_below("d"), paths{path + "/file"});
    ::setrlimit(RLIMIT_NOFILE, &before);
}
