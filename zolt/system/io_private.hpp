// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What the operating system says about a path, for the library's own sources. Not installed.
#pragma once

#include <zolt/strings/ustring.hpp>

namespace ZOLT_2_18::system::_private {

/// Tells two files or directories apart, however their paths are spelled.
struct file_identity {
    unsigned long long device = 0;
    unsigned long long inode = 0;

    friend bool operator==(file_identity const& left, file_identity const& right) noexcept {
        return left.device == right.device && left.inode == right.inode;
    }
    friend bool operator!=(file_identity const& left, file_identity const& right) noexcept {
        return !(left == right);
    }
    friend bool operator<(file_identity const& left, file_identity const& right) noexcept {
        return left.device != right.device ? left.device < right.device : left.inode < right.inode;
    }
};

struct file_status {
    file_identity identity;
    unsigned int mode = 0; ///< type and permission bits; 0 when there is nothing of that name
    long long size = 0;    ///< in bytes

    bool exists() const noexcept { return mode != 0; }
    bool is_regular_file() const noexcept { return (mode & 0xF000) == 0x8000; } ///< no socket, no device
    bool is_file() const noexcept { return (mode & 0x8000) != 0; }              ///< as io::is_file
    bool is_directory() const noexcept { return (mode & 0x4000) != 0; }         ///< as io::is_directory
    bool is_owner_readable() const noexcept { return (mode & 0400) != 0; }      ///< as have_read_access
};

/// Follows links. A path that is empty, holds a NUL or cannot be reached does not exist.
file_status query_status(strings::ustring8 const& path) noexcept;

/// False for a path with a NUL inside: the operating system would see only what stands before it.
inline bool is_whole_path(strings::ustring8 const& path) noexcept {
    return path.find('\0') == strings::ustring8::npos;
}

} // namespace ZOLT_2_18::system::_private
