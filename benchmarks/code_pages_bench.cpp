// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Single-byte pages in both directions. ICU's converters are opened once and go from and to UTF-8 by
// ucnv_convertEx, its way without a copy in UTF-16; iconv is opened for each text, as a program does that
// has no place to keep the converter.
#include "bench.hpp"

#include <zolt/zolt.hpp>

#include <iconv.h>
#if PEER_ICU
#include <unicode/ucnv.h>
#endif

using namespace zolt;

namespace {

struct page_row {
    strings::code_page::encoding_type type;
    char const* name;
    char const* words; // in UTF-8
};

char const german[] = "Z\u00FCrich: \u00FCber f\u00FCnfzig gro\u00DFe \u00C4pfel w\u00E4ren sch\u00F6n, sagt er. ";
char const russian[] = "\u041C\u043E\u0441\u043A\u0432\u0430: \u0445\u043E\u0440\u043E\u0448\u043E "
                       "\u0431\u044B\u043B\u043E \u0431\u044B, \u0441\u043A\u0430\u0437\u0430\u043B "
                       "\u043E\u043D \u043F\u043E\u0442\u043E\u043C. ";

constexpr page_row pages[] = {
    {strings::code_page::iso_8859_1, "ISO-8859-1", german},
    {strings::code_page::cp1252, "CP1252", german},
    {strings::code_page::iso_8859_5, "ISO-8859-5", russian},
    {strings::code_page::koi8_r, "KOI8-R", russian},
};

std::string bytes_of(page_row const& page, std::size_t size) {
    std::string const unit = strings::code_page(page.type).encode(page.words);
    std::string bytes;
    while (bytes.size() < size) bytes += unit;
    bytes.resize(size);
    return bytes;
}

std::string by_iconv(char const* to, char const* from, std::string const& text) {
    iconv_t const converter = iconv_open(to, from);
    std::string output(3 * text.size(), '\0');
    char *in = const_cast<char*>(text.data()), *out = output.data();
    std::size_t left = text.size(), room = output.size();
    iconv(converter, &in, &left, &out, &room);
    output.resize(output.size() - room);
    iconv_close(converter);
    return output;
}

#if PEER_ICU
class icu_converter {
public:
    explicit icu_converter(char const* name) { m_converter = ucnv_open(name, &m_status); }
    UConverter* get() const { return m_converter; }

private:
    UErrorCode m_status = U_ZERO_ERROR;
    UConverter* m_converter; // open until the program ends
};

std::string by_icu(icu_converter to, icu_converter from, std::string const& text) {
    std::string output(3 * text.size(), '\0');
    char const* in = text.data();
    char* out = output.data();
    UErrorCode status = U_ZERO_ERROR;
    ucnv_convertEx(to.get(), from.get(), &out, out + output.size(), &in, in + text.size(), nullptr, nullptr,
                   nullptr, nullptr, true, true, &status);
    output.resize(static_cast<std::size_t>(out - output.data()));
    return output;
}
#endif

void add_page(page_row const& page, std::size_t size, std::string const& label) {
    strings::code_page const by(page.type);
    std::string const bytes = bytes_of(page, size);
    strings::ustring8 const text = by.as_utf8(bytes);
    char const* const name = page.name;
    bench::comparison decode("code_pages/as_utf8/" + std::string(name) + "/" + label, bytes.size());
    bench::comparison encode("code_pages/encode/" + std::string(name) + "/" + label, text.size());
    decode.side("zolt", [=] { return by.as_utf8(bytes); });
    encode.side("zolt", [=] { return by.encode(text); });
    decode.side("iconv", [=] { return by_iconv("UTF-8", name, bytes); });
    encode.side("iconv", [=] { return by_iconv(name, "UTF-8", text); });
#if PEER_ICU
    icu_converter const utf8("UTF-8"), legacy(name);
    decode.side("ICU", [=] { return by_icu(utf8, legacy, bytes); });
    encode.side("ICU", [=] { return by_icu(legacy, utf8, text); });
#endif
}

} // namespace

void add_benchmarks() {
    for (page_row const& page : pages) {
        add_page(page, 64, "64B");
        add_page(page, 4096, "4KB");
    }
    bench::growth("code_pages/as_utf8", 64, [](std::size_t size) {
        return [bytes = bytes_of(pages[3], size)] { return strings::code_page(pages[3].type).as_utf8(bytes); };
    });
    bench::growth("code_pages/encode", 64, [](std::size_t size) {
        strings::code_page const by(pages[3].type);
        return [by, text = by.as_utf8(bytes_of(pages[3], size))] { return by.encode(text); };
    });
}
