// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "files.hpp"

#include <zolt/exceptions/exception.hpp>
#include <zolt/system/file_utility.hpp>

#include <cstdlib>
#include <memory>

namespace tools {

ustring8 real_path(ustring8 const& path) {
    std::unique_ptr<char, decltype(&std::free)> const real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? ustring8(real.get()) : path;
}

bool load(ustring8 const& path, ustring8& content) {
    try {
        return zolt::system::load_file(path, content) == 0;
    } catch (zolt::exceptions::exception const&) {
        return false;
    }
}

} // namespace tools
