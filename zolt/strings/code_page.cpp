// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Both directions are one routine with another pair of converter names and another row of raise sites.
//
// The converter stops at each problem and leaves its position there: output full means grow and go
// on, a bad byte means write "?", skip it and go on. Some converters (CP1255, CP1258) hold a letter
// back, because an accent may follow that joins it; it is fetched before a "?" is written and at the
// end, otherwise it would come out behind the "?" or not at all.
//
// In a single-byte page each byte stands for itself, whatever is around it. The first text that such a page
// converts goes through the converter as all do; then the converter is asked for every byte and every
// character alone, and what it answers is a table from which later texts are written. A page with any byte
// that waits for another, is held back or gives more than one character gets no table, and a text with a
// character outside the table goes through the converter from its start.
//
// The tables live in static storage, one for each name. They are constants that are not known before the
// program runs: a table is filled once, published by one atomic store and never changed or freed. Nobody
// waits for it: while one thread fills a table, the others use the converter. A code_page cannot hold its
// table, being a number that is copied about, and one for each thread would be read again in every thread.
#include <zolt/strings/code_page.hpp>

#include <zolt/exceptions/exception.hpp>
#include <zolt/strings/unicode.hpp>
#include <zolt/strings/unicode_private.hpp>

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <utility>

#include <iconv.h>
#include <immintrin.h>
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
        : m_sites(sites), m_passes_a2e8(std::strcmp(from, "CP949") == 0), m_descriptor(iconv_open(to, from)) {
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

    // How many bytes before its place in the input the refused ones begin. glibc's decoder of page 949 is behind
    // the bytes A2 E8 when it refuses them, at the end of the input even.
    size_t passed(char const* begin, char const* in) const {
        return m_passes_a2e8 && in - begin >= 2 && in[-2] == '\xA2' && in[-1] == '\xE8' ? 2 : 0;
    }

    void close() {
        if (iconv_close(std::exchange(m_descriptor, closed())) == 0) return;
        raise("iconv failed to close", m_sites.close_failed, m_sites);
    }

private:
    // NOLINTNEXTLINE(performance-no-int-to-ptr): what iconv_open returns when it fails
    static iconv_t closed() { return reinterpret_cast<iconv_t>(-1); }

    raise_sites const& m_sites;
    bool m_passes_a2e8;
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
        for (char const* begin = m_in; m_in_left > 0 && !step(&m_in, &m_in_left); begin = m_in) {
            replace_bad_input(begin);
        }
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

    // The converter has worked from the begin on.
    void replace_bad_input(char const* begin) {
        if (errno != EILSEQ && errno != EINVAL) fail();
        size_t const passed = errno == EILSEQ ? m_converter.passed(begin, m_in) : 0;
        m_in -= passed;
        m_in_left += passed;
        size_t const skipped = errno == EILSEQ ? std::min<size_t>(1, m_in_left) : m_in_left;
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

// ------------------------------------------------------------------------------------------------
// Tables of single-byte pages

// A character in UTF-8; of length 0 when there is none.
struct character {
    char bytes[3];
    unsigned char length;

    friend bool operator==(character const&, character const&) = default;
};

// What the conversion of this input alone gives, or none when that says nothing about it among others: it
// waits for more, is held back, or gives too much.
character convert_alone(converter& by, char const* input, size_t size) {
    char output[16];
    char* in = const_cast<char*>(input);
    char* out = output;
    size_t room = sizeof output;
    if (!by.convert(&in, &size, &out, &room)) {
        if (errno != EILSEQ || out != output) return {};
        *out++ = '?';
        --room;
    }
    size_t const length = static_cast<size_t>(out - output);
    bool const all_there = by.convert(nullptr, nullptr, &out, &room) && out == output + length;
    character result{};
    if (!all_there || length > sizeof result.bytes) return {};
    std::memcpy(result.bytes, output, length);
    result.length = static_cast<unsigned char>(length);
    return result;
}

constexpr unsigned int low_bits(char byte, unsigned int mask) { return static_cast<unsigned char>(byte) & mask; }

// The first 128 characters are those of ASCII, in UTF-8 and in the page.
struct page_table {
    character characters[256];        // what each byte stands for, "?" for a bad one
    unsigned char rows[0x10000 / 64]; // of a code point without its low six bits: its row of codes
    alignas(16) char codes[32][64];   // bytes of the code points from 0x80 on, 0 for none; row 0 is empty
    alignas(16) char two[2][128];     // the two bytes of what the bytes from 0x80 on stand for; 0 for others

    // False when the page is not one of those that a table can stand for; the table is useless then.
    bool read(char const* name) {
        try {
            converter decoder("UTF-8", name, as_utf8_sites);
            converter encoder(name, "UTF-8", encode_sites);
            return read_characters(decoder) && read_codes(encoder);
        } catch (...) { // they could be opened a moment ago; now the memory may be short
            return false;
        }
    }

    char code_of_two(char const* utf8) const {
        return codes[rows[low_bits(utf8[0], 0x1F)]][low_bits(utf8[1], 0x3F)];
    }

    char code_of_three(char const* utf8) const {
        return codes[rows[row_index_of_three(utf8)]][low_bits(utf8[2], 0x3F)];
    }

    static unsigned int row_index_of_three(char const* utf8) {
        return low_bits(utf8[0], 0x0F) << 6 | low_bits(utf8[1], 0x3F);
    }

private:
    bool read_characters(converter& decoder) {
        for (unsigned int byte = 0; byte < 256; ++byte) {
            char const input = static_cast<char>(byte);
            character const result = convert_alone(decoder, &input, 1);
            character const itself{{input}, 1};
            if (byte < 0x80 ? result != itself : !is_one(result)) return false;
            characters[byte] = result;
            for (int i = 0; i < 2 && result.length == 2; ++i) two[i][byte - 0x80] = result.bytes[i];
        }
        return true;
    }

    static bool is_one(character const& utf8) {
        unsigned int const lead = low_bits(utf8.bytes[0], 0xF0);
        return utf8.length == 1 || (utf8.length == 2 && lead < 0xE0 && lead >= 0xC0) ||
               (utf8.length == 3 && lead == 0xE0);
    }

    bool read_codes(converter& encoder) {
        unsigned char used = 0;
        for (character const& utf8 : characters) {
            character const code = convert_alone(encoder, utf8.bytes, utf8.length);
            if (code.length != 1 || characters[low_bits(code.bytes[0], 0xFF)] != utf8) return false;
            if (utf8.length == 1) continue;
            unsigned char& row =
                rows[utf8.length == 2 ? low_bits(utf8.bytes[0], 0x1F) : row_index_of_three(utf8.bytes)];
            if (row == 0) row = ++used;
            if (row == std::size(codes)) return false;
            codes[row][low_bits(utf8.bytes[utf8.length - 1], 0x3F)] = code.bytes[0];
        }
        return true;
    }
};

// The place of one page's table, there from the start and filled once.
class table_place {
public:
    page_table const* table() const {
        return m_state.load(std::memory_order_acquire) == filled ? &m_table : nullptr;
    }

    // Reads the table unless somebody has done so, or is about to.
    void read(char const* name) {
        state before = unknown;
        if (!m_state.compare_exchange_strong(before, reading, std::memory_order_relaxed)) return;
        m_state.store(m_table.read(name) ? filled : impossible, std::memory_order_release);
    }

private:
    enum state : int { unknown, reading, filled, impossible };

    std::atomic<state> m_state{unknown};
    page_table m_table{};
};

constinit table_place table_places[std::size(names)];

// Null for a system page with a name of its own.
table_place* place_of(code_page::encoding_type type, std::string const& name) {
    for (size_t i = 0; i < std::size(names); ++i) {
        if (is_system(type) ? name == names[i].name : type == names[i].type) return &table_places[i];
    }
    return nullptr;
}

// ------------------------------------------------------------------------------------------------
// Conversion by table
//
// The plain loops define what comes out. The others, of the same name with "_wide", take 32 bytes at once as
// long as they can and leave the rest to them.

// A way through a text. What is written never gets ahead of what is read when encoding.
struct walk {
    char const* in;
    char const* end;
    char* out;

    size_t left() const { return static_cast<size_t>(end - in); }
};

#define ZOLT_WIDE [[gnu::target("avx2,popcnt")]]

ZOLT_WIDE inline __m256i load(char const* from) {
    return _mm256_loadu_si256(reinterpret_cast<__m256i const*>(from));
}

ZOLT_WIDE inline void store(char* to, __m256i bytes) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), bytes); }

ZOLT_WIDE inline unsigned int high_bits(__m256i bytes) {
    return static_cast<unsigned int>(_mm256_movemask_epi8(bytes));
}

// Writes four bytes for each character; those behind it are overwritten by the next.
walk decode(page_table const& page, walk at, size_t count) {
    for (char const* const stop = at.in + count; at.in != stop; ++at.in) {
        character const& next = page.characters[low_bits(*at.in, 0xFF)];
        std::memcpy(at.out, &next, sizeof next);
        at.out += next.length;
    }
    return at;
}

// For each set of eight characters, which have a second byte, the indices of their bytes among pairs.
constexpr auto pair_indices = [] {
    std::array<std::array<unsigned char, 16>, 256> result{};
    for (unsigned int pairs = 0; pairs < 256; ++pairs) {
        size_t count = 0;
        for (unsigned char i = 0; i < 8; ++i) {
            result[pairs][count++] = static_cast<unsigned char>(2 * i);
            if ((pairs >> i & 1) != 0) result[pairs][count++] = static_cast<unsigned char>(2 * i + 1);
        }
    }
    return result;
}();

// Writes eight characters of one or two bytes, given as pairs; the place behind them.
ZOLT_WIDE inline char* store_characters(char* out, __m128i bytes, unsigned int pairs) {
    __m128i const indices = _mm_loadu_si128(reinterpret_cast<__m128i const*>(pair_indices[pairs].data()));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(bytes, indices));
    return out + 8 + std::popcount(pairs);
}

ZOLT_WIDE inline __m256i row_of(char const (&row)[128], int index) {
    return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<__m128i const*>(row) + index));
}

// Looks up both bytes of all characters of two and leaves 32 bytes with any of three, or bad ones, alone.
ZOLT_WIDE walk decode_wide(page_table const& page, walk at) {
    while (at.left() >= sizeof(__m256i)) {
        __m256i const bytes = load(at.in);
        unsigned int const beyond = high_bits(bytes);
        if (beyond == 0) {
            store(at.out, bytes);
            at.in += sizeof bytes;
            at.out += sizeof bytes;
            continue;
        }
        __m256i first = _mm256_setzero_si256(), second = first;
        for (int i = 0; i < 8; ++i) {
            __m256i const of_row = _mm256_xor_si256(bytes, _mm256_set1_epi8(static_cast<char>(0x80 + 0x10 * i)));
            __m256i const index = _mm256_adds_epu8(of_row, _mm256_set1_epi8(0x70)); // the others look up 0
            first = _mm256_or_si256(first, _mm256_shuffle_epi8(row_of(page.two[0], i), index));
            second = _mm256_or_si256(second, _mm256_shuffle_epi8(row_of(page.two[1], i), index));
        }
        if (high_bits(first) != beyond) {
            at = decode(page, at, sizeof bytes);
            continue;
        }
        first = _mm256_blendv_epi8(bytes, first, bytes);
        __m256i const low = _mm256_unpacklo_epi8(first, second), high = _mm256_unpackhi_epi8(first, second);
        at.out = store_characters(at.out, _mm256_castsi256_si128(low), beyond & 0xFF);
        at.out = store_characters(at.out, _mm256_castsi256_si128(high), beyond >> 8 & 0xFF);
        at.out = store_characters(at.out, _mm256_extracti128_si256(low, 1), beyond >> 16 & 0xFF);
        at.out = store_characters(at.out, _mm256_extracti128_si256(high, 1), beyond >> 24);
        at.in += sizeof bytes;
    }
    return at;
}

std::string decode(page_table const& page, std::string const& bytes) {
    constexpr size_t block = 4096;
    char buffer[3 * block + sizeof(__m256i)];
    bool const wide = _private::can_run_avx2();
    std::string text;
    for (size_t done = 0; done < bytes.size();) {
        size_t const count = std::min(block, bytes.size() - done);
        walk at{bytes.data() + done, bytes.data() + done + count, buffer};
        if (wide) at = decode_wide(page, at);
        at = decode(page, at, at.left());
        size_t const written = static_cast<size_t>(at.out - buffer);
        if (done == 0) text.reserve(written * ((bytes.size() - 1) / count + 1)); // as if the rest were alike
        text.append(buffer, written);
        done += count;
    }
    return text;
}

bool continues(char byte) { return low_bits(byte, 0xC0) == 0x80; }

// False when the next character is not in the table, or none at all.
bool encode_next(page_table const& page, walk& at) {
    unsigned int const lead = low_bits(*at.in, 0xFF);
    if (lead < 0x80) {
        *at.out++ = *at.in++;
        return true;
    }
    char code = 0;
    size_t const length = lead < 0xE0 ? 2 : 3;
    if (lead < 0xC0 || lead >= 0xF0 || at.left() < length || !continues(at.in[1])) return false;
    if (length == 2) {
        code = page.code_of_two(at.in);
    } else if (continues(at.in[2]) && page_table::row_index_of_three(at.in) >= 0x800 / 64) {
        code = page.code_of_three(at.in);
    }
    if (code == 0) return false;
    *at.out++ = code;
    at.in += length;
    return true;
}

// The codes of the characters of two bytes with one lead byte.
struct lead_codes {
    __m256i lead;
    __m256i rows[4]; // 16 codes twice
};

ZOLT_WIDE inline lead_codes codes_of(page_table const& page, char lead) {
    lead_codes result;
    result.lead = _mm256_set1_epi8(lead);
    char const* const codes = page.codes[page.rows[low_bits(lead, 0x1F)]];
    for (int i = 0; i < 4; ++i) {
        __m128i const row = _mm_load_si128(reinterpret_cast<__m128i const*>(codes) + i);
        result.rows[i] = _mm256_broadcastsi128_si256(row);
    }
    return result;
}

// 32 bytes of text and, for each, the byte behind it as an index into each row: with its high bit set, for
// which the look-up gives 0, where it is not of this row.
struct window {
    __m256i text;
    __m256i index[4];
    __m256i found;
};

ZOLT_WIDE inline window open_window(char const* from) {
    window result;
    result.text = load(from);
    result.found = _mm256_setzero_si256();
    __m256i const behind = load(from + 1);
    for (int i = 0; i < 4; ++i) {
        __m256i const of_row = _mm256_xor_si256(behind, _mm256_set1_epi8(static_cast<char>(0x80 + 0x10 * i)));
        result.index[i] = _mm256_adds_epu8(of_row, _mm256_set1_epi8(0x70));
    }
    return result;
}

// Looks up the characters with this lead byte; their places.
ZOLT_WIDE inline unsigned int look_up(window& by, lead_codes const& codes) {
    __m256i found = _mm256_setzero_si256();
    for (int i = 0; i < 4; ++i) {
        found = _mm256_or_si256(found, _mm256_shuffle_epi8(codes.rows[i], by.index[i]));
    }
    __m256i const here = _mm256_cmpeq_epi8(by.text, codes.lead);
    by.found = _mm256_or_si256(by.found, _mm256_and_si256(found, here));
    return high_bits(here);
}

// For each set of eight bytes, which are kept, their indices side by side.
constexpr auto kept_indices = [] {
    std::array<std::array<unsigned char, 8>, 256> result{};
    for (unsigned int kept = 0; kept < 256; ++kept) {
        size_t count = 0;
        for (unsigned char i = 0; i < 8; ++i) {
            if ((kept >> i & 1) != 0) result[kept][count++] = i;
        }
    }
    return result;
}();

// Writes eight bytes, the kept ones first; the place behind these.
ZOLT_WIDE inline char* store_kept(char* out, __m128i bytes, unsigned int kept) {
    __m128i const indices = _mm_loadl_epi64(reinterpret_cast<__m128i const*>(kept_indices[kept].data()));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(bytes, indices));
    return out + std::popcount(kept);
}

ZOLT_WIDE inline char* store_kept(char* out, __m256i bytes, unsigned int kept) {
    __m128i const low = _mm256_castsi256_si128(bytes), high = _mm256_extracti128_si256(bytes, 1);
    out = store_kept(out, low, kept & 0xFF);
    out = store_kept(out, _mm_srli_si128(low, 8), kept >> 8 & 0xFF);
    out = store_kept(out, high, kept >> 16 & 0xFF);
    return store_kept(out, _mm_srli_si128(high, 8), kept >> 24);
}

// Takes characters of one and two bytes. The code of a character is put in place of its first byte, then the
// second bytes are left out. A text has few different first bytes: the last two stay at hand.
ZOLT_WIDE walk encode_wide(page_table const& page, walk at) {
    __m256i const last_continuation = _mm256_set1_epi8(static_cast<char>(0xBF));
    lead_codes known[2] = {codes_of(page, '\xC2'), codes_of(page, '\xC3')};
    while (at.left() > sizeof(__m256i)) {
        window by = open_window(at.in);
        unsigned int const beyond = high_bits(by.text);
        if (beyond == 0) {
            store(at.out, by.text);
            at.in += sizeof by.text;
            at.out += sizeof by.text;
            continue;
        }
        __m256i const starts = _mm256_cmpgt_epi8(by.text, last_continuation); // signed, so ASCII is greater
        unsigned int const kept = high_bits(starts), leads = kept & beyond;
        if (~kept != leads << 1) break;

        unsigned int unknown = leads & ~look_up(by, known[1]);
        if (unknown != 0) unknown &= ~look_up(by, known[0]);
        while (unknown != 0) {
            char const lead = at.in[std::countr_zero(unknown)];
            if (low_bits(lead, 0xFF) >= 0xE0) return at;
            known[0] = known[1];
            known[1] = codes_of(page, lead);
            unknown &= ~look_up(by, known[1]);
        }
        __m256i const is_lead = _mm256_and_si256(starts, by.text); // in the high bits
        if ((high_bits(_mm256_cmpeq_epi8(by.found, _mm256_setzero_si256())) & leads) != 0) break;

        unsigned int const cut = leads >> 31; // a character that goes on behind the 32 bytes comes next time
        store_kept(at.out, _mm256_blendv_epi8(by.text, by.found, is_lead), kept);
        at.in += sizeof by.text - cut;
        at.out += static_cast<unsigned int>(std::popcount(kept)) - cut;
    }
    return at;
}

// False when the text holds anything that is not in the table.
bool encode(page_table const& page, std::string const& text, std::string& bytes) {
    constexpr int some = 16; // characters, before the next attempt with many at once
    bool const wide = _private::can_run_avx2();
    bytes.resize(text.size());
    walk at{text.data(), text.data() + text.size(), bytes.data()};
    while (at.in != at.end) {
        if (wide) at = encode_wide(page, at);
        for (int i = 0; i < some && at.in != at.end; ++i) {
            if (!encode_next(page, at)) return false;
        }
    }
    bytes.resize(static_cast<size_t>(at.out - bytes.data()));
    return true;
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
    table_place* const place = place_of(m_type, name);
    page_table const* const table = place ? place->table() : nullptr;
    std::string bytes;
    if (table && strings::encode(*table, text, bytes)) return bytes;
    bytes = convert(name.c_str(), "UTF-8", text, encode_sites);
    if (place) place->read(name.c_str());
    return bytes;
}

std::string code_page::encode(ustring16 const& text) const { return encode(utf16_to_utf8(text)); }

std::string code_page::encode(ustring32 const& text) const { return encode(utf32_to_utf8(text)); }

ustring8 code_page::as_utf8(std::string const& bytes) const {
    std::string const name = to_system_type(m_type);
    table_place* const place = place_of(m_type, name);
    page_table const* const table = place ? place->table() : nullptr;
    if (table && bytes.size() < bytes.max_size() / 64) return decode(*table, bytes); // what fits any memory
    ustring8 text = convert("UTF-8", name.c_str(), bytes, as_utf8_sites);
    if (place) place->read(name.c_str());
    return text;
}

ustring16 code_page::as_utf16(std::string const& bytes) const { return utf8_to_utf16(as_utf8(bytes)); }

ustring32 code_page::as_utf32(std::string const& bytes) const { return utf8_to_utf32(as_utf8(bytes)); }

ustring8 code_page::as_ustring(std::string const& bytes) const { return as_utf8(bytes); }

} // namespace ZOLT_2_18::strings
