// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// code_page: text to and from legacy encodings, by way of the C library's iconv.
//
// A code_page is one number that names an encoding. Characters that the target lacks and bytes that
// cannot be read never stop a conversion: each byte that cannot be converted becomes one "?".
//
//     strings::code_page latin(strings::code_page::cp1252);
//     latin.encode("caf\xC3\xA9");      // "caf\xE9"
//     latin.as_utf8("caf\xE9");         // "caf\xC3\xA9"
//     latin.encode("\xE4\xB8\xAD");     // "???": U+4E2D has three bytes
//
// A conversion opens and closes a converter of its own, or uses what the C library has once told about
// a page of single bytes, which never changes; so one code_page may serve several threads at once.
// Exceptions carry "strings/code_page" as their file and "to_system_type", "encode" or "as_utf8" as
// their function.
#pragma once

#include <zolt/export.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/nil.hpp>

#include <string>

namespace ZOLT_2_18::strings {

class ZOLT_API code_page {
public:
    /// The encodings, by their customary numbers. Any other value can be stored but not converted with.
    enum encoding_type : int {
        none = 0, ///< no encoding; converting with it throws
        // The codeset of the locale in force at the time of the conversion; all three are alike.
        system_1 = 1,
        system_2 = 2,
        system_3 = 3,
        utf_8 = 4,
        cp932 = 932,
        cp936 = 936,
        cp949 = 949,
        cp950 = 950,
        cp1250 = 1250,
        cp1251 = 1251,
        cp1252 = 1252,
        cp1253 = 1253,
        cp1254 = 1254,
        cp1255 = 1255,
        cp1256 = 1256,
        cp1257 = 1257,
        cp1258 = 1258,
        koi8_r = 20866,
        koi8_u = 21866,
        iso_8859_1 = 28591,
        iso_8859_2 = 28592,
        iso_8859_3 = 28593,
        iso_8859_4 = 28594,
        iso_8859_5 = 28595,
        iso_8859_6 = 28596,
        iso_8859_7 = 28597,
        iso_8859_8 = 28598,
        iso_8859_9 = 28599,
        iso_8859_15 = 28605,
        ansi_x3_4_1968 = 125100 ///< plain ASCII
    };

    code_page() noexcept = default;
    code_page(types::nil_t const&) noexcept {}
    /// Of that type, which may be any number.
    code_page(encoding_type const& type) noexcept : m_type(type) {}
    code_page(code_page const&) noexcept = default;
    ~code_page() = default;

    code_page& operator=(types::nil_t const& nil) noexcept { return assign(nil); }
    code_page& operator=(code_page const& other) noexcept { return assign(other); }
    code_page& operator=(encoding_type const& type) noexcept { return assign(type); }

    code_page& assign(types::nil_t const&) noexcept;
    code_page& assign(code_page const& other) noexcept;
    /// Becomes of that type.
    code_page& assign(encoding_type const& type) noexcept;

    /// Kept: a code page equals nil when its type is negative, so one made from nil (type 0) does not.
    bool equal(types::nil_t const&) const noexcept;
    bool equal(code_page const& other) const noexcept;
    bool equal(encoding_type const& type) const noexcept;

    bool operator==(types::nil_t const& nil) const noexcept { return equal(nil); }
    bool operator==(code_page const& other) const noexcept { return equal(other); }
    bool operator==(encoding_type const& type) const noexcept { return equal(type); }
    bool operator!=(types::nil_t const& nil) const noexcept { return !equal(nil); }
    bool operator!=(code_page const& other) const noexcept { return !equal(other); }
    bool operator!=(encoding_type const& type) const noexcept { return !equal(type); }

    /// The type.
    encoding_type const& type() const noexcept { return m_type; }
    encoding_type& type() noexcept { return m_type; }
    void type(encoding_type const& type) noexcept { m_type = type; }

    /// The converter's name of a type, such as "ISO-8859-1"; for the three system values the codeset of
    /// the locale in force. Throws invalid_argument_value "Not valid code_page type" for a value that is
    /// not an enumerator, and for none.
    std::string to_system_type(encoding_type type) const;

    /// The text in this encoding. A byte that starts no convertible character becomes "?", so a
    /// character that the encoding lacks gives as many as its UTF-8 form has bytes; an incomplete
    /// character at the end gives one. UTF-16 and UTF-32 text is converted to UTF-8 first, with what
    /// utf16_to_utf8 and utf32_to_utf8 make of bad text.
    /// Throws what to_system_type throws, also for an empty text, and runtime_error:
    /// "convertions not supported" when the C library does not know the encoding, "Unknown failure on
    /// iconv open", "Unknown iconv error" and "iconv failed to close" when it fails otherwise.
    std::string encode(ustring8 const& text) const;
    std::string encode(ustring16 const& text) const;
    std::string encode(ustring32 const& text) const;

    /// The text that bytes in this encoding stand for. Each byte that cannot be read becomes one "?", an
    /// incomplete character at the end one for all of it. Throws as encode does.
    ustring8 as_utf8(std::string const& bytes) const;
    ustring16 as_utf16(std::string const& bytes) const;
    ustring32 as_utf32(std::string const& bytes) const;

    /// Another name of as_utf8.
    ustring8 as_ustring(std::string const& bytes) const;

private:
    encoding_type m_type = none;
};

} // namespace ZOLT_2_18::strings
