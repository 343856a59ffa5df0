// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "files.hpp"

#include <zolt/exceptions/exception.hpp>
#include <zolt/system/file_utility.hpp>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <system_error>

namespace tools {

ustring8 real_path(ustring8 const& path) {
    std::unique_ptr<char, decltype(&std::free)> const real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? ustring8(real.get()) : path;
}

bool is_same_file(ustring8 const& left, ustring8 const& right) {
    std::error_code none; // what is no path is not the same file
    if (std::filesystem::equivalent(left.c_str(), right.c_str(), none)) return true;
    auto const whole = [&none](ustring8 const& path) {
        return std::filesystem::weakly_canonical(std::filesystem::absolute(path.c_str(), none), none);
    };
    return !whole(left).empty() && whole(left) == whole(right);
}

bool load(ustring8 const& path, ustring8& content) {
    try {
        return zolt::system::load_file(path, content) == 0;
    } catch (zolt::exceptions::exception const&) {
        return false;
    }
}

namespace {

// The number of the error. What can be read in spite of all is of a kind that is not supported, or too large.
int reading_error(int descriptor, ustring8 const& path) {
    struct stat status {};
    char byte = 0;
    if (descriptor == -1 || ::fstat(descriptor, &status) != 0) return errno;
    if (S_ISDIR(status.st_mode)) return ::access(path.c_str(), R_OK | X_OK) == 0 ? EISDIR : errno;
    if (!S_ISREG(status.st_mode)) return ENOTSUP;
    if (status.st_size > std::numeric_limits<std::int32_t>::max()) return EFBIG;
    return ::read(descriptor, &byte, 1) == -1 ? errno : EIO;
}

} // namespace

zolt::generic::varg_list why_unreadable(ustring8 const& path) {
    int const descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ustring8 const reason(std::strerror(reading_error(descriptor, path)));
    if (descriptor != -1) ::close(descriptor);
    return {{"path", path}, {"reason", reason}};
}

} // namespace tools
