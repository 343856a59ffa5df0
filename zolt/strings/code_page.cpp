// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Both directions are one routine with another pair of converter names and another row of raise sites.
//
// The converter stops at each problem and leaves its position there: output full means grow and go
// on, a bad byte means write "?", skip it and go on. Some converters (CP1255, CP1258) hold a letter
// back, because an accent may follow that joins it; it is fetched before a "?" is written and at the
// end, otherwise it would come out behind the "?" or not at all.
#include <zolt/strings/code_page.hpp>

#include <zolt/exceptions/exception.hpp>
#include <zolt/strings/unicode.hpp>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <utility>

#include <iconv.h>
#include <langinfo.h>

namespace ZOLT_2_18::strings {
namespace {

using std::size_t;

// ------------------------------------------------------------------------------------------------
// Names

struct name_row {
    code_page::encoding_type type;
    char const* name;
};

constexpr name_row names[] = {
    {code_page::utf_8, "UTF-8"},
    {code_page::cp932, "WINDOWS-31J"},
    {code_page::cp936, "GBK"},
    {code_page::cp949, "CP949"},
    {code_page::cp950, "BIG5"},
    {code_page::cp1250, "CP1250"},
    {code_page::cp1251, "CP1251"},
    {code_page::cp1252, "CP1252"},
    {code_page::cp1253, "CP1253"},
    {code_page::cp1254, "CP1254"},
    {code_page::cp1255, "CP1255"},
    {code_page::cp1256, "CP1256"},
    {code_page::cp1257, "CP1257"},
    {code_page::cp1258, "CP1258"},
    {code_page::koi8_r, "KOI8-R"},
    {code_page::koi8_u, "KOI8-U"},
    {code_page::iso_8859_1, "ISO-8859-1"},
    {code_page::iso_8859_2, "ISO-8859-2"},
    {code_page::iso_8859_3, "ISO-8859-3"},
    {code_page::iso_8859_4, "ISO-8859-4"},
    {code_page::iso_8859_5, "ISO-8859-5"},
    {code_page::iso_8859_6, "ISO-8859-6"},
    {code_page::iso_8859_7, "ISO-8859-7"},
    {code_page::iso_8859_8, "ISO-8859-8"},
    {code_page::iso_8859_9, "ISO-8859-9"},
    {code_page::iso_8859_15, "ISO-8859-15"},
    {code_page::ansi_x3_4_1968, "ANSI_X3.4-1968"},
};

bool is_system(code_page::encoding_type type) {
    return type == code_page::system_1 || type == code_page::system_2 || type == code_page::system_3;
}

// ------------------------------------------------------------------------------------------------
// Failures

constexpr char source_file[] = "strings/code_page";

// Where each direction raises its exceptions.
struct raise_sites {
    char const* function;
    unsigned int not_supported;
    unsigned int open_failed;
    unsigned int unknown_error;
    unsigned int close_failed;
};

constexpr raise_sites encode_sites{"encode", 221, 224, 304, 315};
constexpr raise_sites as_utf8_sites{"as_utf8", 369, 372, 451, 462};

[[noreturn]] void raise_invalid_type() {
    throw exceptions::invalid_argument_value("Not valid code_page type", 588, source_file, "to_system_type");
}

[[noreturn]] void raise(char const* message, unsigned int line, raise_sites const& sites) {
    throw exceptions::runtime_error(message, line, source_file, sites.function);
}

// ------------------------------------------------------------------------------------------------
// Conversion

// An open iconv descriptor.
class converter {
public:
    converter(char const* to, char const* from, raise_sites const& sites)
        : m_sites(sites), m_descriptor(iconv_open(to, from)) {
        if (m_descriptor != closed()) return;
        if (errno == EINVAL) raise("convertions not supported", m_sites.not_supported, m_sites);
        raise("Unknown failure on iconv open", m_sites.open_failed, m_sites);
    }

    ~converter() {
        if (m_descriptor != closed()) iconv_close(m_descriptor);
    }

    converter(converter const&) = delete;
    converter& operator=(converter const&) = delete;

    raise_sites const& sites() const { return m_sites; }

    void reset() { iconv(m_descriptor, nullptr, nullptr, nullptr, nullptr); }

    // iconv itself: true when it got to the end of its input, else the cause is in errno.
    bool convert(char** in, size_t* in_left, char** out, size_t* room) {
        return iconv(m_descriptor, in, in_left, out, room) != static_cast<size_t>(-1);
    }

    void close() {
        if (iconv_close(std::exchange(m_descriptor, closed())) == 0) return;
        raise("iconv failed to close", m_sites.close_failed, m_sites);
    }

private:
    static iconv_t closed() { return reinterpret_cast<iconv_t>(-1); }

    raise_sites const& m_sites;
    iconv_t m_descriptor;
};

// One input on its way through a converter, with the output that grows under it.
class conversion {
public:
    conversion(converter& by, std::string const& input)
        : m_converter(by),
          m_in(const_cast<char*>(input.data())),
          m_in_left(input.size()),
          m_output(input.size(), '\0') {}

    std::string run() {
        m_converter.reset();
        while (m_in_left > 0 && !step(&m_in, &m_in_left)) replace_bad_input();
        fetch_held_back();
        m_output.resize(m_written);
        return std::move(m_output);
    }

private:
    // Lets the converter work until it needs something other than room in the output.
    bool step(char** in, size_t* in_left) {
        for (;;) {
            char* out = m_output.data() + m_written;
            size_t room = m_output.size() - m_written;
            bool const done = m_converter.convert(in, in_left, &out, &room);
            m_written = m_output.size() - room;
            if (done || errno != E2BIG) return done;
            grow();
        }
    }

    void replace_bad_input() {
        if (errno != EILSEQ && errno != EINVAL) fail();
        size_t const skipped = errno == EILSEQ ? 1 : m_in_left;
        fetch_held_back();
        if (m_written == m_output.size()) grow();
        m_output[m_written++] = '?';
        m_in += skipped;
        m_in_left -= skipped;
    }

    void fetch_held_back() {
        if (!step(nullptr, nullptr)) fail();
    }

    void grow() {
        size_t const least = 16;
        m_output.append(std::max(2 * m_in_left, least), '\0'); // checks the sum, which may not fit 32 bits
    }

    [[noreturn]] void fail() const {
        raise("Unknown iconv error", m_converter.sites().unknown_error, m_converter.sites());
    }

    converter& m_converter;
    char* m_in; // iconv's parameter is not const, but it does not write there
    size_t m_in_left;
    std::string m_output;
    size_t m_written = 0;
};

std::string convert(char const* to, char const* from, std::string const& input, raise_sites const& sites) {
    converter opened(to, from, sites);
    std::string output = conversion(opened, input).run();
    opened.close();
    return output;
}

} // namespace

code_page& code_page::assign(types::nil_t const&) noexcept {
    m_type = none;
    return *this;
}

code_page& code_page::assign(code_page const& other) noexcept {
    m_type = other.m_type;
    return *this;
}

code_page& code_page::assign(encoding_type const& type) noexcept {
    m_type = type;
    return *this;
}

bool code_page::equal(types::nil_t const&) const noexcept { return m_type < 0; }

bool code_page::equal(code_page const& other) const noexcept { return m_type == other.m_type; }

bool code_page::equal(encoding_type const& type) const noexcept { return m_type == type; }

std::string code_page::to_system_type(encoding_type type) const {
    if (is_system(type)) return nl_langinfo(CODESET);
    for (name_row const& row : names) {
        if (row.type == type) return row.name;
    }
    raise_invalid_type();
}

std::string code_page::encode(ustring8 const& text) const {
    std::string const name = to_system_type(m_type);
    return convert(name.c_str(), "UTF-8", text, encode_sites);
}

std::string code_page::encode(ustring16 const& text) const { return encode(utf16_to_utf8(text)); }

std::string code_page::encode(ustring32 const& text) const { return encode(utf32_to_utf8(text)); }

ustring8 code_page::as_utf8(std::string const& bytes) const {
    std::string const name = to_system_type(m_type);
    return convert("UTF-8", name.c_str(), bytes, as_utf8_sites);
}

ustring16 code_page::as_utf16(std::string const& bytes) const { return utf8_to_utf16(as_utf8(bytes)); }

ustring32 code_page::as_utf32(std::string const& bytes) const { return utf8_to_utf32(as_utf8(bytes)); }

ustring8 code_page::as_ustring(std::string const& bytes) const { return as_utf8(bytes); }

} // namespace ZOLT_2_18::strings
