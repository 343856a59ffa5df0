// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// result_file: a file that is there as a whole or not at all. What is written goes to a temporary file
// beside it, which takes its place at the end; until then, and without an end, the old one stays.
//
//     result_file file("a.po");
//     file.write("text");
//     int const error = file.commit();    // 0, or an error number
//
// Links are followed, also to a file that is not there yet; the file's permissions stay, and as far as this
// process may give files away, its owner and group; the rights of a group that does not stay are dropped. What is
// no regular file, such as a pipe, is written at once, and so is what is open already, such as /dev/stdout.
#pragma once

#include "library.hpp"

#include <cstdio>
#include <string_view>

namespace tools {

class result_file {
public:
    explicit result_file(ustring8 const& path);
    result_file(result_file const&) = delete;
    result_file& operator=(result_file const&) = delete;
    /// Removes what was not committed.
    ~result_file();

    /// Null when it cannot be written, or is finished; commit() tells why.
    std::FILE* stream() const { return m_stream; }
    void write(std::string_view text);
    /// The file that holds what has been flushed; empty when it is the file itself.
    ustring8 const& temporary() const { return m_temporary; }
    /// Brings everything to the disk, but not to its place. Returns 0 or the number of the first error.
    int finish();
    /// Brings everything to its place. Returns 0 or the number of the first error.
    int commit();

private:
    void keep_error();

    ustring8 m_path;
    ustring8 m_temporary; // empty: the file itself is written
    std::FILE* m_stream = nullptr;
    int m_error = 0;
};

} // namespace tools
