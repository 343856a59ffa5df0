// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_paths.hpp"

#include <zolt/strings/string_utility.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/system/io.hpp>

#include <algorithm>

namespace tools {
namespace {

bool is_catalog_file(ustring8 const& path) {
    if (path.size() < 4) return false;
    ustring8 const ending = zolt::strings::to_lower(ustring8(path.substr(path.size() - 4)));
    return ending == ".xmc" || ending == ".xml";
}

} // namespace

std::vector<ustring8> catalog_files(ustring8 const& path) {
    if (!zolt::system::io::is_directory(path)) return {path};
    ustring8 directory = path;
    while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
    std::vector<ustring8> files;
    zolt::system::get_directory_files(directory == "/" ? ustring8() : directory, files);
    std::erase_if(files, [](ustring8 const& file) { return !is_catalog_file(file); });
    std::sort(files.begin(), files.end());
    return files;
}

bool is_absolute_include(ustring8 const& path) {
    bool const has_drive = path.size() >= 3 && path[1] == ':';
    return has_drive || path.front() == '/' || path.front() == '\\';
}

ustring8 included_path(ustring8 const& including, ustring8 const& included) {
    if (is_absolute_include(included)) return included;
    auto const slash = including.find_last_of("/\\");
    return slash == ustring8::npos ? included : ustring8(including.substr(0, slash + 1) + included);
}

} // namespace tools
