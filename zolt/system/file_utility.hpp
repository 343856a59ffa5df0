// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Whole files in and out of memory, byte for byte: no conversion, no line-end translation, and byte
// order marks are neither written nor removed (strings::remove_BOM removes one from a text).
//
//     strings::ustring8 text;
//     if (system::load_file(strings::ustring8("notes.txt"), text) != 0) return;   // cannot be opened
//     text += "\n";
//     system::store_file(strings::ustring8("notes.txt"), text);
//
// File names go to the operating system as UTF-8: a ustring8 as it is, the other two converted by
// utf16_to_utf8 and utf32_to_utf8 (a name that these cannot convert becomes "-1"). A name that is
// empty or holds a NUL cannot be opened.
#pragma once

#include <zolt/export.hpp>
#include <zolt/strings/ustring.hpp>

#include <string>

namespace ZOLT_2_18::system {

/// Replaces the content by the bytes of the file. Returns 0, or 1 when the file cannot be opened or
/// is a directory; the content is untouched then.
///
/// The content gets the size that a seek to the end of the file tells, which is 0 for some pseudo
/// files. A file that cannot be seeked, such as a pipe, is read to its end. A named pipe that nobody opens
/// for writing within half a second cannot be opened.
///
/// Kept: read errors are not reported. Where fewer bytes than that size can be read, the content has
/// the full size and ends in zero bytes.
///
/// Throws exceptions::runtime_error for a file of more than 2147483647 bytes: the size in decimal,
/// followed by " is large than a string can hold". When memory cannot hold the file, std::bad_alloc or
/// std::length_error passes through. The content is untouched in each case.
ZOLT_API unsigned int load_file(strings::ustring8 const& name, strings::ustring8& content);
ZOLT_API unsigned int load_file(strings::ustring16 const& name, strings::ustring8& content);
ZOLT_API unsigned int load_file(strings::ustring32 const& name, strings::ustring8& content);
ZOLT_API unsigned int load_file(strings::ustring8 const& name, std::string& content);
ZOLT_API unsigned int load_file(strings::ustring16 const& name, std::string& content);
ZOLT_API unsigned int load_file(strings::ustring32 const& name, std::string& content);

/// Makes the file hold exactly the bytes of the content; creates it when it is missing. Returns 0,
/// or 1 when the file cannot be opened for writing.
///
/// Kept: once the file is open the result is 0, even when the bytes cannot be written.
ZOLT_API unsigned int store_file(strings::ustring8 const& name, strings::ustring8 const& content);
ZOLT_API unsigned int store_file(strings::ustring16 const& name, strings::ustring8 const& content);
ZOLT_API unsigned int store_file(strings::ustring32 const& name, strings::ustring8 const& content);

} // namespace ZOLT_2_18::system
