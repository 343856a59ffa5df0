// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The 8-bit forms do the work; the others convert what they are given and what they return. The walk
// through a tree reads a directory whole and closes it before it goes down, so that neither the call
// stack nor the file descriptors grow with the depth.
//
// Inodes and offsets have 64 bits on every build: the definition below has to stand first.
#define _FILE_OFFSET_BITS 64

#include <zolt/system/io.hpp>

#include <zolt/debug/assert.hpp>
#include <zolt/strings/unicode.hpp>
#include <zolt/system/io_private.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string_view>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZOLT_2_18::system {
namespace {

using strings::ustring16;
using strings::ustring32;
using strings::ustring8;

ustring8 narrow(ustring16 const& path) { return strings::utf16_to_utf8(path); }
ustring8 narrow(ustring32 const& path) { return strings::utf32_to_utf8(path); }

template <typename Convert>
auto convert_all(std::vector<ustring8> const& paths, Convert convert) {
    std::vector<decltype(convert(paths.front()))> converted;
    converted.reserve(paths.size());
    for (ustring8 const& path : paths) converted.push_back(convert(path));
    return converted;
}

_private::file_identity identity_of(struct stat const& status) noexcept {
    return {static_cast<unsigned long long>(status.st_dev), static_cast<unsigned long long>(status.st_ino)};
}

class open_directory {
public:
    explicit open_directory(ustring8 const& path)
        : m_directory(_private::is_whole_path(path) ? ::opendir(path.c_str()) : nullptr) {}
    ~open_directory() {
        if (m_directory) ::closedir(m_directory);
    }
    open_directory(open_directory const&) = delete;
    open_directory& operator=(open_directory const&) = delete;

    bool is_open() const noexcept { return m_directory != nullptr; }

    _private::file_identity identity() const noexcept {
        struct stat status = {};
        ::fstat(::dirfd(m_directory), &status);
        return identity_of(status);
    }

    /// The next name other than "." and ".."; null at the end.
    char const* next() noexcept {
        for (;;) {
            dirent const* const entry = ::readdir(m_directory);
            if (!entry) return nullptr;
            std::string_view const name = entry->d_name;
            if (name != "." && name != "..") return entry->d_name;
        }
    }

private:
    DIR* m_directory;
};

class file_walk {
public:
    explicit file_walk(std::vector<ustring8>& files) noexcept : m_files(files) {}

    void run(ustring8 const& directory) {
        m_path = directory;
        enter();
        while (!m_chain.empty()) {
            level& current = m_chain.back();
            m_path.resize(current.path_length);
            if (current.position == current.names.size()) {
                m_chain.pop_back();
            } else {
                visit(current);
            }
        }
    }

private:
    /// A directory on the way from the top to where the walk is.
    struct level {
        _private::file_identity identity;
        std::size_t path_length;
        std::string names; // each ended by a NUL
        std::size_t position = 0;
    };

    /// Takes the directory m_path up into the chain unless it is there already.
    void enter() {
        open_directory directory(m_path);
        if (!directory.is_open()) return;
        _private::file_identity const identity = directory.identity();
        for (level const& above : m_chain) {
            if (above.identity == identity) return;
        }
        std::string names;
        while (char const* const name = directory.next()) names.append(name).push_back('\0');
        m_chain.push_back({identity, m_path.size(), std::move(names)});
    }

    /// Deals with the next name. `current` is gone afterwards when a level was added.
    void visit(level& current) {
        std::string_view const name = current.names.c_str() + current.position;
        current.position += name.size() + 1;
        m_path.append("/").append(name);
        _private::file_status const status = _private::query_status(m_path);
        if (!status.is_owner_readable()) return;
        if (status.is_file()) {
            m_files.push_back(m_path);
        } else if (status.is_directory()) {
            enter();
        }
    }

    std::vector<ustring8>& m_files;
    std::vector<level> m_chain;
    ustring8 m_path;
};

} // namespace

_private::file_status _private::query_status(ustring8 const& path) noexcept {
    file_status result;
    struct stat status;
    if (!is_whole_path(path) || ::stat(path.c_str(), &status) != 0) return result;
    result.identity = identity_of(status);
    result.mode = status.st_mode;
    result.size = status.st_size;
    return result;
}

bool io::exists(ustring8 const& path) { return _private::query_status(path).exists(); }
bool io::exists(ustring16 const& path) { return exists(narrow(path)); }
bool io::exists(ustring32 const& path) { return exists(narrow(path)); }

bool io::is_file(ustring8 const& path) { return _private::query_status(path).is_file(); }
bool io::is_file(ustring16 const& path) { return is_file(narrow(path)); }
bool io::is_file(ustring32 const& path) { return is_file(narrow(path)); }

bool io::is_directory(ustring8 const& path) { return _private::query_status(path).is_directory(); }
bool io::is_directory(ustring16 const& path) { return is_directory(narrow(path)); }
bool io::is_directory(ustring32 const& path) { return is_directory(narrow(path)); }

void io::remove_file(ustring8 const& path) {
    if (_private::is_whole_path(path)) static_cast<void>(std::remove(path.c_str()));
}
void io::remove_file(ustring16 const& path) { remove_file(narrow(path)); }
void io::remove_file(ustring32 const& path) { remove_file(narrow(path)); }

void io::remove_dir(ustring8 const& path) {
    if (_private::is_whole_path(path)) ::rmdir(path.c_str());
}
void io::remove_dir(ustring16 const& path) { remove_dir(narrow(path)); }
void io::remove_dir(ustring32 const& path) { remove_dir(narrow(path)); }

void io::move(ustring8 const& new_path, ustring8 const& old_path) {
    if (!_private::is_whole_path(new_path) || !_private::is_whole_path(old_path)) return;
    [[maybe_unused]] int const ignored = std::rename(old_path.c_str(), new_path.c_str());
}
void io::move(ustring16 const& new_path, ustring16 const& old_path) { move(narrow(new_path), narrow(old_path)); }
void io::move(ustring32 const& new_path, ustring32 const& old_path) { move(narrow(new_path), narrow(old_path)); }

void io::mkdir(ustring8 const&) {
    debug::_private::____________________ASSERT____________________(
        "!\"io::mkdir creates nothing, use create_directory\"", "system/io", 181, __PRETTY_FUNCTION__);
}
void io::mkdir(ustring16 const& path) { mkdir(narrow(path)); }
void io::mkdir(ustring32 const& path) { mkdir(narrow(path)); }

bool have_read_access(ustring8 const& path) { return _private::query_status(path).is_owner_readable(); }
bool have_read_access(ustring16 const& path) { return have_read_access(narrow(path)); }
bool have_read_access(ustring32 const& path) { return have_read_access(narrow(path)); }

unsigned int create_directory(ustring8 const& path) {
    constexpr mode_t mode = 0775;
    if (!_private::is_whole_path(path)) return 0;
    if (io::is_directory(path)) return 1;

    ustring8 prefix = path; // cut at one separator after the other
    bool const skip_first = !path.empty() && (path.front() == '.' || path.front() == '/');
    std::size_t separator = path.find('/');
    if (skip_first && separator != ustring8::npos) separator = path.find('/', separator + 1);
    for (; separator != ustring8::npos; separator = path.find('/', separator + 1)) {
        prefix[separator] = '\0';
        ::mkdir(prefix.c_str(), mode);
        prefix[separator] = '/';
    }
    ::mkdir(path.c_str(), mode);
    return io::is_directory(path) ? 1 : 0;
}
unsigned int create_directory(ustring16 const& path) { return create_directory(narrow(path)); }
unsigned int create_directory(ustring32 const& path) { return create_directory(narrow(path)); }

std::vector<ustring8> list_directory(ustring8 const& directory) {
    std::vector<ustring8> paths;
    open_directory entries(directory);
    if (!entries.is_open()) return paths;
    while (char const* const name = entries.next()) {
        paths.emplace_back(directory);
        paths.back().append("/").append(name);
    }
    return paths;
}
std::vector<ustring16> list_directory(ustring16 const& directory) {
    return convert_all(list_directory(narrow(directory)), strings::utf8_to_utf16);
}
std::vector<ustring32> list_directory(ustring32 const& directory) {
    return convert_all(list_directory(narrow(directory)), strings::utf8_to_utf32);
}

void get_directory_files(ustring8 const& directory, std::vector<ustring8>& files) {
    file_walk(files).run(directory);
}
void get_directory_files(ustring16 const& directory, std::vector<ustring16>& files) {
    std::vector<ustring8> found;
    get_directory_files(narrow(directory), found);
    for (ustring8 const& path : found) files.push_back(strings::utf8_to_utf16(path));
}
void get_directory_files(ustring32 const& directory, std::vector<ustring32>& files) {
    std::vector<ustring8> found;
    get_directory_files(narrow(directory), found);
    for (ustring8 const& path : found) files.push_back(strings::utf8_to_utf32(path));
}

} // namespace ZOLT_2_18::system
