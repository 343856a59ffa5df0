// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Straight system calls, and no more of them than needed: a file of a few pages costs less to read than two of
// them. Such a one goes into a new string, since only reading tells a directory and the content must not be
// touched then; a longer one is asked what it is and goes into the content. Either has one allocation and, where
// the C++ library lets it, no zeros written first. File offsets have 64 bits on every build: the definition below
// has to stand first.
#define _FILE_OFFSET_BITS 64

#include <zolt/system/file_utility.hpp>

#include <zolt/exceptions/exception.hpp>
#include <zolt/generic/convert/x_to_str.hpp>
#include <zolt/strings/overwrite_private.hpp>
#include <zolt/strings/unicode.hpp>
#include <zolt/system/io_private.hpp>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZOLT_2_18::system {
namespace {

constexpr long long max_size = 0x7FFFFFFF;

// The call's result, after as many repetitions as signals interrupt it.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

class open_file {
public:
    open_file(strings::ustring8 const& name, int flags) {
        if (!_private::is_whole_path(name)) return;
        m_descriptor = uninterrupted([&] { return ::open(name.c_str(), flags | O_CLOEXEC, 0666); });
    }
    ~open_file() {
        if (is_open()) ::close(m_descriptor);
    }
    open_file(open_file const&) = delete;
    open_file& operator=(open_file const&) = delete;

    bool is_open() const noexcept { return m_descriptor >= 0; }

    bool is_directory() const noexcept {
        struct stat status;
        return ::fstat(m_descriptor, &status) == 0 && S_ISDIR(status.st_mode);
    }

    /// For what was opened without waiting and is no file. False for a pipe that nobody opens for writing within
    /// half a second: whoever has it open is waited for as long as it takes.
    bool wait_for_writer() const noexcept {
        constexpr int half_a_second = 500;
        struct stat status;
        ::fcntl(m_descriptor, F_SETFL, 0);
        if (::fstat(m_descriptor, &status) != 0 || !S_ISFIFO(status.st_mode)) return true;
        pollfd pipe = {m_descriptor, POLLIN, 0};
        return uninterrupted([&] { return ::poll(&pipe, 1, half_a_second); }) > 0;
    }

    /// Where seeking finds the end; negative when the file cannot be seeked.
    long long size() const noexcept { return ::lseek(m_descriptor, 0, SEEK_END); }

    /// The number of bytes read from where the file stands: less than asked for at its end and after an error.
    std::size_t read(char* target, std::size_t size) const noexcept {
        return fill(target, size,
                    [this](char* rest, std::size_t left, std::size_t) { return ::read(m_descriptor, rest, left); });
    }

    /// The same from a place in a file that can be seeked.
    std::size_t read_at(std::size_t place, char* target, std::size_t size) const noexcept {
        return fill(target, size, [this, place](char* rest, std::size_t left, std::size_t done) {
            return ::pread(m_descriptor, rest, left, static_cast<off_t>(place + done));
        });
    }

    void write(char const* source, std::size_t size) const noexcept {
        while (size > 0) {
            ssize_t const written = uninterrupted([&] { return ::write(m_descriptor, source, size); });
            if (written <= 0) return;
            source += written;
            size -= static_cast<std::size_t>(written);
        }
    }

private:
    template <typename Read>
    static std::size_t fill(char* target, std::size_t size, Read read) noexcept {
        std::size_t done = 0;
        while (done < size) {
            ssize_t const got = uninterrupted([&] { return read(target + done, size - done, done); });
            if (got <= 0) break;
            done += static_cast<std::size_t>(got);
        }
        return done;
    }

    int m_descriptor = -1;
};

[[noreturn]] void raise_too_large(long long size, unsigned int raise_line) {
    char digits[66];
    generic::convert::lltoa(size, digits, 10);
    throw exceptions::runtime_error(std::string(digits) + " is large than a string can hold", raise_line,
                                    "system/file_utility", "load_file");
}

/// Fills the string with the first `size` bytes of the file, and tells how many there were.
std::size_t read_beginning(open_file const& file, std::size_t size, std::string& content) {
    std::size_t got = 0;
    strings::_private::overwrite(content, size, [&](char* data) {
        got = file.read_at(0, data, size);
        std::memset(data + got, 0, size - got); // it has become shorter, or cannot be read
        return size;
    });
    return got;
}

/// False for a directory.
bool load_known_size(open_file const& file, std::size_t size, std::string& content) {
    constexpr std::size_t few_pages = 0x2000;
    if (size > few_pages) {
        if (file.is_directory()) return false;
        read_beginning(file, size, content);
        return true;
    }
    std::string bytes;
    if (read_beginning(file, size, bytes) == 0 && file.is_directory()) return false;
    content.swap(bytes);
    return true;
}

/// False for a pipe without a writer. One who is there but has written nothing so far shows when the file is read,
/// which ends at once if nobody is.
bool load_to_end(open_file const& file, std::string& content, unsigned int raise_line) {
    constexpr std::size_t first_block = 0x10000;
    bool const is_written = file.wait_for_writer();
    std::string bytes;
    std::size_t filled = 0;
    while (filled < max_size) {
        bytes.resize(std::clamp<std::size_t>(2 * filled, first_block, max_size));
        filled += file.read(bytes.data() + filled, bytes.size() - filled);
        if (filled < bytes.size()) break;
    }
    char one_more;
    if (filled == max_size && file.read(&one_more, 1) == 1) raise_too_large(max_size + 1, raise_line);
    bytes.resize(filled);
    if (!is_written && filled == 0) return false;
    content.swap(bytes);
    return true;
}

unsigned int load(strings::ustring8 const& name, std::string& content, unsigned int raise_line) {
    open_file const file(name, O_RDONLY | O_NONBLOCK);
    if (!file.is_open()) return 1;
    long long const size = file.size();
    if (size > 0 && size <= max_size) return load_known_size(file, static_cast<std::size_t>(size), content) ? 0 : 1;
    if (file.is_directory()) return 1;
    if (size > max_size) raise_too_large(size, raise_line);
    if (size < 0) return load_to_end(file, content, raise_line) ? 0 : 1;
    content.clear();
    return 0;
}

} // namespace

// Each overload has its own published raise line.

unsigned int load_file(strings::ustring8 const& name, strings::ustring8& content) {
    return load(name, content, 99);
}

unsigned int load_file(strings::ustring16 const& name, strings::ustring8& content) {
    return load(strings::utf16_to_utf8(name), content, 131);
}

unsigned int load_file(strings::ustring32 const& name, strings::ustring8& content) {
    return load(strings::utf32_to_utf8(name), content, 162);
}

unsigned int load_file(strings::ustring8 const& name, std::string& content) { return load(name, content, 226); }

unsigned int load_file(strings::ustring16 const& name, std::string& content) {
    return load(strings::utf16_to_utf8(name), content, 258);
}

unsigned int load_file(strings::ustring32 const& name, std::string& content) {
    return load(strings::utf32_to_utf8(name), content, 289);
}

unsigned int store_file(strings::ustring8 const& name, strings::ustring8 const& content) {
    open_file const file(name, O_WRONLY | O_CREAT | O_TRUNC);
    if (!file.is_open()) return 1;
    file.write(content.data(), content.size());
    return 0;
}

unsigned int store_file(strings::ustring16 const& name, strings::ustring8 const& content) {
    return store_file(strings::utf16_to_utf8(name), content);
}

unsigned int store_file(strings::ustring32 const& name, strings::ustring8 const& content) {
    return store_file(strings::utf32_to_utf8(name), content);
}

} // namespace ZOLT_2_18::system
