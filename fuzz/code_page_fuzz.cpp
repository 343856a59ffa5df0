// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Text to and from every code page, against iconv called for the whole text where that has no complaint and
// character by character where the page keeps no state; single bytes go round.
#include "input.hpp"

#include <zolt/exceptions/exception.hpp>
#include <zolt/strings/code_page.hpp>
#include <zolt/strings/unicode.hpp>

#include <algorithm>
#include <iconv.h>
#include <map>

namespace {

using namespace zolt::strings;
using fuzz::check;

constexpr int pages[] = {0,     1,     4,     932,   936,   949,   950,   1250,  1251,   1252,
                         1253,  1254,  1255,  1256,  1257,  1258,  20866, 21866, 28591,  28592,
                         28593, 28594, 28595, 28596, 28597, 28598, 28599, 28605, 125100, -1};

/// The C library's converter, kept open.
iconv_t converter(std::string const& to, std::string const& from) {
    static auto& opened = *new std::map<std::string, iconv_t>; // for the whole program
    auto const [found, added] = opened.emplace(to + '\n' + from, nullptr);
    if (added) found->second = iconv_open(to.c_str(), from.c_str());
    return found->second;
}

/// What iconv writes of all the bytes at once; false when it does not take all of them.
bool convert(iconv_t by, std::string bytes, std::string& result) {
    result.assign(bytes.size() * 4 + 16, '\0');
    char* in = bytes.data();
    char* out = result.data();
    std::size_t left = bytes.size();
    std::size_t room = result.size();
    iconv(by, nullptr, nullptr, nullptr, nullptr);
    bool const taken = iconv(by, &in, &left, &out, &room) != std::size_t(-1);
    if (taken) iconv(by, nullptr, nullptr, &out, &room);
    result.resize(result.size() - room);
    return taken;
}

/// One "?" for each byte that begins no character, one for a cut off character at the end.
std::string plain(iconv_t by, std::string const& bytes) {
    std::string result;
    for (std::size_t at = 0; at < bytes.size();) {
        std::string character;
        std::size_t length = 0;
        bool taken = false;
        errno = EINVAL;
        while (!taken && errno == EINVAL && at + length < bytes.size()) {
            taken = convert(by, bytes.substr(at, ++length), character);
        }
        result += taken ? character : "?";
        at = taken ? at + length : errno == EINVAL ? bytes.size() : at + 1;
    }
    return result;
}

void check_conversion(iconv_t by, std::string const& bytes, std::string const& given, bool keeps_state) {
    std::string expected;
    if (!convert(by, bytes, expected)) expected = keeps_state ? given : plain(by, bytes);
    check(given == expected, "what iconv makes of it, with a mark for each byte that it refuses");
}

void check_page(code_page const& page, ustring8 const& text) {
    std::string const name = page.to_system_type(page.type());
    bool const composes = page == code_page::cp1255 || page == code_page::cp1258;
    ustring8 const decoded = page.as_utf8(text);
    check_conversion(converter(name, "UTF-8"), text, page.encode(text), false);
    check_conversion(converter("UTF-8", name), text, decoded, composes);

    auto const marks = [](std::string const& of) { return std::count(of.begin(), of.end(), '?'); };
    bool const single = page.type() > 1000 && !composes;
    if (single && marks(decoded) == marks(text)) check(page.encode(decoded) == text, "single bytes go round");
    check(page.encode(utf8_to_utf16(text)) == page.encode(utf16_to_utf8(utf8_to_utf16(text))), "UTF-16");
    check(page.encode(utf8_to_utf32(text)) == page.encode(utf32_to_utf8(utf8_to_utf32(text))), "UTF-32");
    check(page.as_utf16(text) == utf8_to_utf16(decoded), "as_utf16");
    check(page.as_utf32(text) == utf8_to_utf32(decoded), "as_utf32");
}

} // namespace

void fuzz::run(input in) {
    auto const type = static_cast<code_page::encoding_type>(pages[in.below(std::size(pages))]);
    try {
        check_page(type, in.rest());
        check(type > 0, "no encoding converts nothing");
    } catch (zolt::exceptions::invalid_argument_value const&) {
        check(type <= 0, "a code page converts");
    } catch (zolt::exceptions::runtime_error const&) {
        check(converter(code_page().to_system_type(type), "UTF-8") == iconv_t(-1), "the C library knows the page");
    }
}
