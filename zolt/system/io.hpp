// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Tests on paths, removal and renaming, creation and listing of directories.
//
//     system::create_directory(strings::ustring8("cache/en/new"));        // with its parents
//     for (auto const& path : system::list_directory(strings::ustring8("cache")))
//         if (system::io::is_file(path)) system::io::remove_file(path);
//
// Nothing here throws or reports why an operation failed: tests are false, listings hold what could
// be read, and the rest does what it can. Symbolic links are followed, except by remove_file, which
// removes the link, and by move, which renames it.
//
// Paths go to the operating system as UTF-8: a ustring8 as it is, the other two converted by
// utf16_to_utf8 and utf32_to_utf8 (a path that these cannot convert becomes "-1"). A path that is
// empty or holds a NUL names nothing. See <zolt/system/file_utility.hpp> for reading and writing.
#pragma once

#include <zolt/export.hpp>
#include <zolt/strings/ustring.hpp>

#include <vector>

namespace ZOLT_2_18::system {

/// Questions about paths, and what changes directories. It has no state.
class ZOLT_API io {
public:
    /// True when there is anything of that name.
    static bool exists(strings::ustring8 const& path);
    static bool exists(strings::ustring16 const& path);
    static bool exists(strings::ustring32 const& path);

    /// Kept: a test of mode bit 0x8000, so sockets pass as well as regular files.
    static bool is_file(strings::ustring8 const& path);
    static bool is_file(strings::ustring16 const& path);
    static bool is_file(strings::ustring32 const& path);

    /// Kept: a test of mode bit 0x4000, so block devices and sockets pass as well as directories.
    static bool is_directory(strings::ustring8 const& path);
    static bool is_directory(strings::ustring16 const& path);
    static bool is_directory(strings::ustring32 const& path);

    /// Removes a file, link or empty directory.
    static void remove_file(strings::ustring8 const& path);
    static void remove_file(strings::ustring16 const& path);
    static void remove_file(strings::ustring32 const& path);

    /// Removes a directory if it is empty.
    static void remove_dir(strings::ustring8 const& path);
    static void remove_dir(strings::ustring16 const& path);
    static void remove_dir(strings::ustring32 const& path);

    /// Renames `old_path` to `new_path`, replacing a file that is there.
    /// Kept: the new name comes first.
    static void move(strings::ustring8 const& new_path, strings::ustring8 const& old_path);
    static void move(strings::ustring16 const& new_path, strings::ustring16 const& old_path);
    static void move(strings::ustring32 const& new_path, strings::ustring32 const& old_path);

    /// Kept: creates nothing, it only fails an assertion. Use create_directory.
    static void mkdir(strings::ustring8 const& path);
    static void mkdir(strings::ustring16 const& path);
    static void mkdir(strings::ustring32 const& path);
};

/// True when the path exists and its owner may read it.
/// Kept: who is asking makes no difference; mode 0044 is false for members of the group, too.
ZOLT_API bool have_read_access(strings::ustring8 const& path);
ZOLT_API bool have_read_access(strings::ustring16 const& path);
ZOLT_API bool have_read_access(strings::ustring32 const& path);

/// Creates a directory of mode 0775 (less the process's umask) and the parents that are missing.
/// Returns 1 when the path is a directory afterwards (see io::is_directory), else 0.
///
/// Kept: in a path that begins with "." or "/" the part before the first "/" is never created, so
/// ".cache/en" needs an existing ".cache".
ZOLT_API unsigned int create_directory(strings::ustring8 const& path);
ZOLT_API unsigned int create_directory(strings::ustring16 const& path);
ZOLT_API unsigned int create_directory(strings::ustring32 const& path);

/// The entries of a directory except "." and "..", each as `directory` + "/" + name, in the order of
/// the file system; empty when the directory cannot be opened. A path that is not valid UTF-8 comes
/// out of the 16- and 32-bit forms as its conversion gives it.
ZOLT_API std::vector<strings::ustring8> list_directory(strings::ustring8 const& directory);
ZOLT_API std::vector<strings::ustring16> list_directory(strings::ustring16 const& directory);
ZOLT_API std::vector<strings::ustring32> list_directory(strings::ustring32 const& directory);

/// Appends the paths, made as in list_directory, of all files below a directory (as io::is_file
/// sees them) that pass have_read_access. Subdirectories that pass it are entered where they are
/// met. A directory that leads back to itself or to one above it is not entered; one that several
/// links lead to is listed under each of them.
ZOLT_API void get_directory_files(strings::ustring8 const& directory, std::vector<strings::ustring8>& files);
ZOLT_API void get_directory_files(strings::ustring16 const& directory, std::vector<strings::ustring16>& files);
ZOLT_API void get_directory_files(strings::ustring32 const& directory, std::vector<strings::ustring32>& files);

} // namespace ZOLT_2_18::system
