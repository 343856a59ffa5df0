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
using ZOLT_2_18::strings::ustring8;
using ZOLT_2_18::strings::utf8_to_utf16;
using ZOLT_2_18::strings::utf8_to_utf32;
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

// The common result of the three forms of an operation.
template <typename Operation>
auto each_width(Operation operation, ustring8 const& path) {
    auto const result = operation(path);
    EXPECT_EQ(operation(utf8_to_utf16(path)), result) << path;
    EXPECT_EQ(operation(utf8_to_utf32(path)), result) << path;
    return result;
}

// What the 8-bit form of a listing gives; the wider ones give the same, converted.
template <typename Listing>
paths listed(Listing list, ustring8 const& directory) {
    paths const found = list(directory);
    auto const found16 = list(utf8_to_utf16(directory));
    auto const found32 = list(utf8_to_utf32(directory));
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_TRUE(found16.at(i) == utf8_to_utf16(found[i]) && found32.at(i) == utf8_to_utf32(found[i]));
    }
    EXPECT_TRUE(found16.size() == found.size() && found32.size() == found.size());
    return found;
}

paths entries(ustring8 const& directory) {
    return listed([](auto const& d) { return list_directory(d); }, directory);
}

paths files_below(ustring8 const& directory) {
    auto const append_files = [](auto const& d) {
        std::vector files = {d};
        get_directory_files(d, files);
        return files;
    };
    paths files = listed(append_files, directory);
    EXPECT_EQ(files.front(), directory); // still there
    files.erase(files.begin());
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
    auto const seen = [](auto const& path) {
        return std::string(io::exists(path) ? "there" : "") + (io::is_file(path) ? " file" : "") +
               (io::is_directory(path) ? " directory" : "");
    };
    for (char const* const path : {"dangling", "file/", ""}) EXPECT_EQ(each_width(seen, path), "") << path;
    EXPECT_EQ(each_width(seen, with_nul), "");
    EXPECT_EQ(each_width(seen, "file"), "there file");
    EXPECT_EQ(each_width(seen, "link"), "there directory");
    EXPECT_EQ(each_width(seen, "/dev/null"), "there");
    EXPECT_EQ(each_width(seen, "socket"), "there file directory"); // kept: a socket's mode has both bits
    for (unsigned const mode : {0400u, 0044u, 0377u}) {            // kept: nobody else's bits count
        ::chmod("file", mode);
        EXPECT_EQ(each_width([](auto const& p) { return have_read_access(p); }, "file"), mode == 0400);
    }
}

TEST_F(Io, RemoveMoveAndMkdir) {
    auto const there = [](ustring8 const& path) { return io::exists(path); };
    fs::create_directories("full/inner");
    store_file("a", "");
    io::move("b", ustring8("a")); // kept: the new name first
    io::move(utf8_to_utf16("c"), utf8_to_utf16("b"));
    io::move(utf8_to_utf32("file"), utf8_to_utf32("c"));
    io::move(with_nul, "file");
    io::move("d", with_nul);
    io::remove_file(with_nul);
    io::remove_dir("file");
    io::remove_dir("full");
    io::remove_file("full");
    EXPECT_TRUE(there("file") && there("full/inner"));
    io::remove_file(utf8_to_utf16("file"));
    io::remove_file(utf8_to_utf32("full/inner")); // an empty directory goes, too
    EXPECT_FALSE(there("file") || there("full/inner"));
    io::remove_dir(utf8_to_utf16("full"));
    int failures = 0;
    ZOLT_2_18::debug::set_assert_hook([&failures](char const*, char const*, unsigned int&) { ++failures; });
    each_width([](auto const& p) { return io::mkdir(p), 0; }, "full");
    ZOLT_2_18::debug::set_assert_hook(ZOLT_2_18::types::nil);
    EXPECT_EQ(failures, 3);
    EXPECT_FALSE(there("full"));
}

TEST_F(Io, CreateDirectory) {
    mode_t const mask = ::umask(0);
    for (char const* const path : {"a", "a/b/c", "./d/e", "h//i/", ".hidden", ".hidden/x/y", "."}) {
        EXPECT_EQ(each_width([](auto const& p) { return create_directory(p); }, path), 1u) << path;
        EXPECT_TRUE(fs::is_directory(path)) << path;
    }
    ::umask(mask);
    EXPECT_EQ(fs::status("a/b").permissions(), fs::perms(0775));
    EXPECT_EQ(create_directory(fs::current_path().string() + "/j/k"), 1u);
    store_file("file", "");
    // Kept in the first: what stands before the first "/" is not created.
    for (ustring8 const& path :
         {ustring8(".other/x"), ustring8("file"), ustring8("file/x"), ustring8(), with_nul}) {
        EXPECT_EQ(create_directory(path), 0u) << path;
    }
}

TEST_F(Io, ListingsKeepTheOrderOfTheFileSystem) {
    EXPECT_EQ(entries("missing"), paths());
    EXPECT_EQ(files_below("missing"), paths());
    for (std::string const name : {"a", "b", "c", "d", "\xFF"}) { // the last is no UTF-8
        fs::create_directories("top/" + name);
        store_file("top/." + name, "");
        store_file("top/" + name + "/x", "");
    }
    EXPECT_EQ(sorted(entries("top/")), (paths{"top//.a", "top//.b", "top//.c", "top//.d", "top//.\xFF", "top//a",
                                              "top//b", "top//c", "top//d", "top//\xFF"}));
    paths expected = entries("top");
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
