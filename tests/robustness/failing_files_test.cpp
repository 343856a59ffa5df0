// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Files that fail while they are used. The program's own read, pread, write and opendir stand in front of the C
// library's: they give or take a few bytes a call, are interrupted, end early, or find the disk full.
#include <zolt/zolt.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include <dirent.h>
#include <dlfcn.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

// What the calls do from now on; everything is let through at first.
struct behaviour {
    std::size_t bytes_a_call = SSIZE_MAX;
    bool interrupted = false;                                         // every second call fails with EINTR
    std::size_t ends_after = std::numeric_limits<std::size_t>::max(); // bytes, over all calls
    int end_error = 0;                                                // 0: end of the file
    bool opens_directories = true;
};

behaviour now;
bool interrupt_next = false;

// How many bytes the call may move; 0 with errno set or at the end, by `now`.
std::size_t allowed(std::size_t wanted) {
    interrupt_next = now.interrupted && !interrupt_next;
    errno = interrupt_next ? EINTR : now.end_error;
    if (interrupt_next) return 0;
    std::size_t const count = std::min({wanted, now.bytes_a_call, now.ends_after});
    now.ends_after -= count;
    return count;
}

// `call(count)` moves the bytes that are allowed.
template <typename Call>
ssize_t transfer(std::size_t size, Call call) {
    std::size_t const count = allowed(size);
    if (count == 0 && size > 0) return errno ? -1 : 0;
    return call(count);
}

// The C library's own function of that name.
template <typename Function>
Function* real(char const* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

class failing {
public:
    explicit failing(behaviour const& how) { now = how; }
    ~failing() { now = behaviour(); }
};

} // namespace

extern "C" {
ssize_t read(int descriptor, void* buffer, std::size_t size) {
    return transfer(size,
                    [=](std::size_t count) { return real<decltype(read)>("read")(descriptor, buffer, count); });
}

ssize_t pread(int descriptor, void* buffer, std::size_t size, off_t place) {
    return transfer(
        size, [=](std::size_t count) { return real<decltype(pread)>("pread")(descriptor, buffer, count, place); });
}

ssize_t pread64(int descriptor, void* buffer, std::size_t size, off64_t place) {
    return transfer(size, [=](std::size_t count) {
        return real<decltype(pread64)>("pread64")(descriptor, buffer, count, place);
    });
}

ssize_t write(int descriptor, void const* buffer, std::size_t size) {
    return transfer(size,
                    [=](std::size_t count) { return real<decltype(write)>("write")(descriptor, buffer, count); });
}

DIR* opendir(char const* name) {
    if (now.opens_directories) return real<decltype(opendir)>("opendir")(name);
    errno = EACCES;
    return nullptr;
}
}

namespace {

using namespace zolt;
using strings::ustring8;

class failing_files : public testing::Test {
protected:
    failing_files() {
        char name[] = "/tmp/zolt_failing_XXXXXX";
        m_directory = ::mkdtemp(name);
    }
    ~failing_files() override { std::filesystem::remove_all(m_directory); }

    ustring8 path(std::string const& name = "file") const { return ustring8(m_directory + "/" + name); }
    ustring8 file_of(std::string const& content) const {
        std::ofstream(path(), std::ios::binary) << content;
        return path();
    }

private:
    std::string m_directory;
};

std::string numbered_lines(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += "key" + std::to_string(i) + " = value " + std::to_string(i) + "\n";
    return text;
}

ustring8 load(ustring8 const& name) {
    ustring8 content;
    EXPECT_EQ(system::load_file(name, content), 0u);
    return content;
}

TEST_F(failing_files, small_steps_and_signals_lose_nothing) {
    std::string const text = numbered_lines(500);
    for (std::size_t const bytes : {1u, 7u, 4096u}) {
        failing const slow({.bytes_a_call = bytes, .interrupted = true});
        EXPECT_EQ(system::store_file(path(), ustring8(text)), 0u);
        EXPECT_EQ(load(path()), text) << bytes;
    }
}

TEST_F(failing_files, a_file_that_shrinks_or_fails_reads_as_zero_bytes_from_there) {
    std::string const text = numbered_lines(500);
    file_of(text);
    for (int const error : {0, EIO}) {
        for (std::size_t const end : {std::size_t{0}, std::size_t{1}, text.size() / 2, text.size() - 1}) {
            failing const shrinking({.ends_after = end, .end_error = error});
            EXPECT_EQ(load(path()), text.substr(0, end) + std::string(text.size() - end, '\0')) << end;
        }
    }
}

// Half a file is a catalog with a fault, which adds nothing, and a configuration with what was there.
TEST_F(failing_files, readers_take_a_cut_file_as_its_bytes) {
    std::string const document = "<?xml version='1.0'?><xmc version='1.1'><catalog name='c' lang='en'>"
                                 "<msg name='m'>text</msg></catalog></xmc>";
    for (std::size_t end = 0; end < document.size(); ++end) {
        i18n::message_catalogs catalogs;
        file_of(document);
        failing const shrinking({.ends_after = end});
        EXPECT_NE(catalogs.load_file(path(), "en").code(), i18n::message_catalogs::no_error) << end;
        EXPECT_EQ(catalogs.size(), 0u) << end;
    }
    file_of("a = 1\nb = 2\nc = 3\n");
    config::file_item item(path());
    failing const shrinking({.ends_after = 12});
    EXPECT_TRUE(item.load());
    ASSERT_TRUE(item.get_value("b"));
    EXPECT_EQ(item.get_value("b")->second.as_string(), "2");
    EXPECT_FALSE(item.get_value("c"));
}

TEST_F(failing_files, a_full_disk_cuts_the_file_and_nothing_else) {
    std::string const text = numbered_lines(500);
    config::file_item item(path("saved"));
    item.set("key", types::variant(text), 0);
    for (std::size_t const end : {std::size_t{0}, std::size_t{1}, std::size_t{5000}}) {
        failing const full({.ends_after = end, .end_error = ENOSPC});
        system::store_file(path(), ustring8(text));
        now = behaviour();
        EXPECT_EQ(load(path()), text.substr(0, end));
        now = {.ends_after = end, .end_error = ENOSPC};
        item.save();
        now = behaviour();
        EXPECT_EQ(load(path("saved")).size(), end);
    }
    EXPECT_EQ(item.get_value("key")->second.as_string(), text);
}

TEST_F(failing_files, a_directory_that_cannot_be_read_is_passed_over) {
    file_of("text");
    std::vector<ustring8> files;
    failing const closed({.opens_directories = false});
    system::get_directory_files(path("."), files);
    EXPECT_TRUE(files.empty());
    EXPECT_TRUE(system::list_directory(path(".")).empty());
    i18n::message_catalogs catalogs;
    EXPECT_NE(catalogs.load_directory(path("."), "en").code(), i18n::message_catalogs::unexpected_error);
    EXPECT_EQ(catalogs.size(), 0u);
}

} // namespace
