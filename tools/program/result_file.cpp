// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "result_file.hpp"

#include "files.hpp"

#include <zolt/generic/convert/str_to_x.hpp>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tools {
namespace {

constexpr mode_t permission_bits = 07777;
constexpr mode_t plain_permission_bits = 0777;
constexpr mode_t group_bits = 0070;
constexpr int most_links = 40;

// The mode of a new file. The mask can only be read by setting it; the program has one thread.
mode_t mode_of_new_file() {
    mode_t const mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

// The file that links lead to. One that is there may be no file that a link can name, such as a pipe.
ustring8 target_of(ustring8 const& path) {
    std::filesystem::path target(path.c_str());
    std::error_code error;
    if (std::filesystem::exists(target, error)) return real_path(path);
    for (int i = 0; i != most_links && std::filesystem::is_symlink(target, error); ++i) {
        target = target.parent_path() / std::filesystem::read_symlink(target, error);
    }
    return ustring8(target.native());
}

// The number that a path such as /dev/stdout or /dev/fd/3 stands for, else -1.
int open_descriptor(ustring8 const& path) {
    std::error_code error;
    std::filesystem::path target(path.c_str());
    for (int i = 0; i != most_links && std::filesystem::is_symlink(target, error); ++i) {
        if (std::filesystem::equivalent(target.parent_path(), "/proc/self/fd", error))
            return zolt::generic::convert::str_to_int32(target.filename().c_str());
        target = target.parent_path() / std::filesystem::read_symlink(target, error);
    }
    return -1;
}

// Gives a new file owner, group and mode of the old one. A file that stays one's own gets no rights to act as
// somebody else, and another group gets none that were not meant for it.
bool take_over(int descriptor, struct stat const& old) {
    constexpr uid_t same_owner = static_cast<uid_t>(-1);
    struct stat now {};
    [[maybe_unused]] bool const is_given =
        ::fchown(descriptor, old.st_uid, old.st_gid) == 0 || ::fchown(descriptor, same_owner, old.st_gid) == 0;
    if (::fstat(descriptor, &now) != 0) return false;
    bool const has_group = now.st_gid == old.st_gid;
    bool const has_both = has_group && now.st_uid == old.st_uid;
    mode_t const kept = has_both ? permission_bits : plain_permission_bits;
    return ::fchmod(descriptor, old.st_mode & (has_group ? kept : kept & ~group_bits)) == 0;
}

// A name is in its directory for good only when that is on the disk, too. Where the system cannot do that for a
// directory, the new file is in its place all the same.
int sync_directory_of(ustring8 const& path) {
    ustring8::size_type const slash = path.rfind('/');
    ustring8 const directory = slash == ustring8::npos ? ustring8(".") : ustring8(path.substr(0, slash + 1));
    int const descriptor = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor == -1) return 0;
    int const error = ::fsync(descriptor) != 0 && errno == EIO ? EIO : 0;
    ::close(descriptor);
    return error;
}

} // namespace

result_file::result_file(ustring8 const& path) : m_path(target_of(path)) {
    if (int const descriptor = open_descriptor(path); descriptor != -1) {
        m_stream = ::fdopen(::dup(descriptor), "wb");
        keep_error();
        return;
    }
    struct stat old {};
    bool const is_there = ::stat(m_path.c_str(), &old) == 0;
    if (is_there && !S_ISREG(old.st_mode)) {
        m_stream = std::fopen(m_path.c_str(), "wb");
        keep_error();
        return;
    }
    m_temporary = m_path + ".XXXXXX";
    int const descriptor = ::mkstemp(m_temporary.data());
    if (descriptor != -1) {
        bool const is_set_up =
            is_there ? take_over(descriptor, old) : ::fchmod(descriptor, mode_of_new_file()) == 0;
        m_stream = is_set_up ? ::fdopen(descriptor, "wb") : nullptr;
        keep_error();
        if (!m_stream) ::close(descriptor);
    } else {
        keep_error();
        m_temporary.clear();
    }
}

result_file::~result_file() {
    if (m_stream) std::fclose(m_stream);
    if (!m_temporary.empty()) ::unlink(m_temporary.c_str());
}

void result_file::write(std::string_view text) {
    if (m_stream) (void)std::fwrite(text.data(), 1, text.size(), m_stream); // finish() looks for errors
}

int result_file::finish() {
    if (!m_stream) return m_error;
    bool const has_failed = std::ferror(m_stream) != 0;
    if (std::fflush(m_stream) != 0 || has_failed) m_error = errno == 0 ? EIO : errno;
    if (m_error == 0 && !m_temporary.empty() && ::fsync(::fileno(m_stream)) != 0) m_error = errno;
    if (std::fclose(std::exchange(m_stream, nullptr)) != 0 && m_error == 0) m_error = errno;
    return m_error;
}

int result_file::commit() {
    if (finish() != 0 || m_temporary.empty()) return m_error;
    if (std::rename(m_temporary.c_str(), m_path.c_str()) != 0) return m_error = errno;
    m_temporary.clear();
    return m_error = sync_directory_of(m_path);
}

void result_file::keep_error() {
    if (!m_stream) m_error = errno;
}

} // namespace tools
