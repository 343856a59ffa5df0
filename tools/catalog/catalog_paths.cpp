// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_paths.hpp"

#include <zolt/strings/string_utility.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/system/io.hpp>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tools {
namespace {

bool is_catalog_file(ustring8 const& path) {
    if (path.size() < 4) return false;
    ustring8 const ending = zolt::strings::to_lower(ustring8(path.substr(path.size() - 4)));
    return ending == ".xmc" || ending == ".xml";
}

using file_identity = std::pair<dev_t, ino_t>;

// Links are followed, but for those to a directory that `around` has already.
void add_files(ustring8 const& directory, std::vector<file_identity>& around, std::vector<ustring8>& files) {
    struct stat status = {};
    if (::access(directory.c_str(), R_OK | X_OK) != 0 || ::stat(directory.c_str(), &status) != 0)
        return files.push_back(directory);
    file_identity const identity(status.st_dev, status.st_ino);
    if (std::find(around.begin(), around.end(), identity) != around.end()) return;
    around.push_back(identity);
    for (ustring8 const& file : zolt::system::list_directory(directory)) {
        bool const is_there = ::stat(file.c_str(), &status) == 0;
        if (is_there && S_ISDIR(status.st_mode)) {
            add_files(file, around, files);
        } else if (is_catalog_file(file) && (!is_there || S_ISREG(status.st_mode))) {
            files.push_back(file);
        }
    }
    around.pop_back();
}

} // namespace

std::vector<ustring8> catalog_files(ustring8 const& path) {
    if (!zolt::system::io::is_directory(path)) return {path};
    ustring8 directory = path;
    while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
    std::vector<ustring8> files;
    std::vector<file_identity> around;
    add_files(directory, around, files);
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

bool is_target(session const& session, ustring8 const& target, ustring8 const& path) {
    std::error_code none; // what is not there is not the same file
    if (target == "-" || !std::filesystem::equivalent(target.c_str(), path.c_str(), none)) return false;
    session.complain(session.texts.get(phrase::result_is_input, {{"path", target}}));
    return true;
}

} // namespace tools
