// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A conversion counts the units it will write, reserves them once and then works in pieces of about a
// thousand units: a core turns one piece into a block on the stack, and the block is appended. So the
// result is written once (no filling with zeros beforehand), and a core never asks whether its output
// has room.
//
// There is one core for each direction, all of the same form:
//
//     cursor<In, Out> core(cursor<In, Out> at, In const* stop, In const* end)
//
// It converts the characters that begin in [at.from, stop), reads no further than `end`, and returns
// where it has come to in its input and in its output, or `stuck` where the conversion gives up. It may
// run past `stop` by less than one machine word of input. A core for another instruction set is a
// function of this form too: it joins at `convert`.
#include <zolt/strings/unicode.hpp>

#include <zolt/debug/assert.hpp>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace ZOLT_2_18::strings {
namespace {

using std::size_t;
using std::uint32_t;
using std::uint64_t;

constexpr uint32_t code_end = 0x110000; // first value that is not Unicode's

// The byte order mark in each encoding.
constexpr char mark_8[] = {'\xEF', '\xBB', '\xBF'};
constexpr unsigned short mark_16[] = {0xFEFF};
constexpr wchar_t mark_32[] = {0xFEFF};
constexpr unsigned short reversed_mark = 0xFFFE;

constexpr unsigned long replacement = '?';

// ------------------------------------------------------------------------------------------------
// Units and characters

template <typename Unit>
constexpr uint32_t value(Unit unit) {
    return static_cast<std::make_unsigned_t<Unit>>(unit);
}

template <typename Unit>
constexpr bool is_ascii(Unit unit) {
    return value(unit) < 0x80;
}

template <typename Byte>
constexpr bool is_continuation(Byte byte) {
    return (value(byte) & 0xC0) == 0x80;
}

constexpr bool is_surrogate(uint32_t code) { return (code & 0xFFFFF800) == 0xD800; }
constexpr bool is_high_surrogate(uint32_t code) { return (code & 0xFFFFFC00) == 0xD800; }
constexpr bool is_low_surrogate(uint32_t code) { return (code & 0xFFFFFC00) == 0xDC00; }

struct character {
    uint32_t code;
    unsigned int length; // in units; 0 when no character starts here
};

constexpr character no_character{0, 0};

// The character that starts at p, where left > 0 bytes can be read. Overlong forms, surrogates and
// values beyond Unicode decode as written.
template <typename Byte>
constexpr character decode_utf8(Byte const* p, size_t left) {
    uint32_t const lead = value(p[0]);
    if (lead < 0x80) return {lead, 1};
    if (lead < 0xC0 || lead > 0xF7 || left < 2 || !is_continuation(p[1])) return no_character;
    uint32_t const second = value(p[1]) & 0x3F;
    if (lead < 0xE0) return {((lead & 0x1F) << 6) + second, 2};
    if (left < 3 || !is_continuation(p[2])) return no_character;
    uint32_t const third = value(p[2]) & 0x3F;
    if (lead < 0xF0) return {((lead & 0x0F) << 12) + (second << 6) + third, 3};
    if (left < 4 || !is_continuation(p[3])) return no_character;
    return {((lead & 0x07) << 18) + (second << 12) + (third << 6) + (value(p[3]) & 0x3F), 4};
}

// The same for UTF-16: a surrogate without its partner is no character.
constexpr character decode_utf16(unsigned short const* p, size_t left) {
    uint32_t const unit = p[0];
    if (!is_surrogate(unit)) return {unit, 1};
    if (!is_high_surrogate(unit) || left < 2 || !is_low_surrogate(p[1])) return no_character;
    return {((unit - 0xD800) << 10) + (p[1] - 0xDC00u) + 0x10000, 2};
}

constexpr char continuation(uint32_t code, unsigned int shift) {
    return static_cast<char>(0x80 | ((code >> shift) & 0x3F));
}

char* put_utf8(uint32_t code, char* to) {
    if (code < 0x80) {
        *to++ = static_cast<char>(code);
    } else if (code < 0x800) {
        *to++ = static_cast<char>(0xC0 | (code >> 6));
        *to++ = continuation(code, 0);
    } else if (code < 0x10000) {
        *to++ = static_cast<char>(0xE0 | (code >> 12));
        *to++ = continuation(code, 6);
        *to++ = continuation(code, 0);
    } else if (code < code_end) {
        *to++ = static_cast<char>(0xF0 | (code >> 18));
        *to++ = continuation(code, 12);
        *to++ = continuation(code, 6);
        *to++ = continuation(code, 0);
    }
    return to;
}

// The pair's formula kept to 16 bits, also for codes that have no pair.
unsigned short* put_pair(uint32_t high, uint32_t low, unsigned short* to) {
    to[0] = static_cast<unsigned short>(0xD800 + high);
    to[1] = static_cast<unsigned short>(0xDC00 + (low & 0x3FF));
    return to + 2;
}

// Where a core has come to.
template <typename In, typename Out>
struct cursor {
    In const* from;
    Out* to;

    size_t left(In const* end) const { return static_cast<size_t>(end - from); }
};

template <typename In, typename Out>
constexpr cursor<In, Out> stuck{nullptr, nullptr};

// ------------------------------------------------------------------------------------------------
// Runs of ASCII, a word of 64 bits at a time

template <typename Unit>
constexpr size_t units_per_word = sizeof(uint64_t) / sizeof(Unit);

// In each unit of a word the bits that an ASCII unit has not.
template <typename Unit>
constexpr uint64_t non_ascii_bits = sizeof(Unit) == 1   ? 0x8080808080808080
                                    : sizeof(Unit) == 2 ? 0xFF80FF80FF80FF80
                                                        : 0xFFFFFF80FFFFFF80;

uint64_t load_word(void const* p) {
    uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

template <typename In, typename Out>
cursor<In, Out> copy_ascii(cursor<In, Out> at, In const* stop, In const* end) {
    constexpr size_t step = units_per_word<In>;
    while (at.from < stop && at.left(end) >= step && !(load_word(at.from) & non_ascii_bits<In>)) {
#pragma GCC unroll 8
        for (size_t i = 0; i < step; ++i) at.to[i] = static_cast<Out>(value(at.from[i]));
        at.from += step;
        at.to += step;
    }
    while (at.from < stop && is_ascii(*at.from)) *at.to++ = static_cast<Out>(value(*at.from++));
    return at;
}

// ------------------------------------------------------------------------------------------------
// The cores

using from_8_to_16 = cursor<char, unsigned short>;
using from_8_to_32 = cursor<char, wchar_t>;
using from_16_to_8 = cursor<unsigned short, char>;
using from_16_to_32 = cursor<unsigned short, wchar_t>;
using from_32_to_8 = cursor<wchar_t, char>;
using from_32_to_16 = cursor<wchar_t, unsigned short>;

from_8_to_16 utf8_to_utf16_core(from_8_to_16 at, char const* stop, char const* end) {
    for (;;) {
        at = copy_ascii(at, stop, end);
        if (at.from >= stop) return at;
        character const c = decode_utf8(at.from, at.left(end));
        if (!c.length) return stuck<char, unsigned short>;
        at.from += c.length;
        if (c.length < 4) {
            *at.to++ = static_cast<unsigned short>(c.code);
        } else {
            at.to = put_pair((c.code - 0x10000) >> 10, c.code, at.to);
        }
    }
}

from_8_to_32 utf8_to_utf32_core(from_8_to_32 at, char const* stop, char const* end) {
    for (;;) {
        at = copy_ascii(at, stop, end);
        if (at.from >= stop) return at;
        character const c = decode_utf8(at.from, at.left(end));
        *at.to++ = c.length ? static_cast<wchar_t>(c.code) : static_cast<wchar_t>(replacement);
        at.from += c.length ? c.length : 1;
    }
}

from_16_to_8 utf16_to_utf8_core(from_16_to_8 at, unsigned short const* stop, unsigned short const* end) {
    for (;;) {
        at = copy_ascii(at, stop, end);
        if (at.from >= stop) return at;
        character const c = decode_utf16(at.from, at.left(end));
        if (!c.length) return stuck<unsigned short, char>;
        at.from += c.length;
        at.to = put_utf8(c.code, at.to);
    }
}

from_16_to_32 utf16_to_utf32_core(from_16_to_32 at, unsigned short const* stop, unsigned short const* end) {
    while (at.from < stop) {
        character const c = decode_utf16(at.from, at.left(end));
        if (!c.length) return stuck<unsigned short, wchar_t>;
        at.from += c.length;
        *at.to++ = static_cast<wchar_t>(c.code);
    }
    return at;
}

from_32_to_8 utf32_to_utf8_core(from_32_to_8 at, wchar_t const* stop, wchar_t const* end) {
    for (;;) {
        at = copy_ascii(at, stop, end);
        if (at.from >= stop) return at;
        uint32_t const code = value(*at.from++);
        if (is_surrogate(code)) return stuck<wchar_t, char>;
        at.to = put_utf8(code, at.to);
    }
}

from_32_to_16 utf32_to_utf16_core(from_32_to_16 at, wchar_t const* stop, wchar_t const*) {
    while (at.from < stop) {
        uint32_t const code = value(*at.from++);
        if (is_surrogate(code) || code >= code_end) return stuck<wchar_t, unsigned short>;
        if (code < 0xFFFF) {
            *at.to++ = static_cast<unsigned short>(code);
        } else {
            at.to = put_pair(code >> 10, code, at.to);
        }
    }
    return at;
}

// ------------------------------------------------------------------------------------------------
// How long a result will be. A hint for the allocation: malformed text may take more or less.

constexpr uint64_t low_bits = 0x0101010101010101; // the lowest bit of each byte

// Characters are counted by the bytes that are no continuation; a four-byte sequence counts as
// `units_of_four` units.
size_t count_characters(ustring8 const& text, unsigned int units_of_four) {
    auto const count_word = [units_of_four](uint64_t word) {
        uint64_t const starts = (~(word >> 7) | (word >> 6)) & low_bits;
        uint64_t const fours = (word >> 7) & (word >> 6) & (word >> 5) & (word >> 4) & low_bits;
        uint64_t const in_each_byte = starts + fours * (units_of_four - 1);
        return static_cast<size_t>((in_each_byte * low_bits) >> 56);
    };
    char const* p = text.data();
    size_t left = text.size();
    size_t count = 0;
    for (; left >= sizeof(uint64_t); p += sizeof(uint64_t), left -= sizeof(uint64_t)) {
        count += count_word(load_word(p));
    }
    uint64_t last = low_bits << 7; // continuation bytes, which count nothing
    std::memcpy(&last, p, left);
    return count + count_word(last);
}

// The bytes of UTF-8 that a unit stands for; each half of a pair has two of its four.
constexpr unsigned int utf8_share(unsigned short unit) {
    return 1u + (unit >= 0x80) + (unit >= 0x800) - is_surrogate(unit);
}

constexpr unsigned int utf8_share(wchar_t unit) {
    uint32_t const code = value(unit);
    return code < code_end ? 1u + (code >= 0x80) + (code >= 0x800) + (code >= 0x10000) : 0;
}

template <typename Unit>
size_t count_utf8(std::basic_string<Unit> const& text) {
    constexpr size_t step = units_per_word<Unit>;
    Unit const* p = text.data();
    size_t left = text.size();
    size_t count = 0;
    for (; left >= step; p += step, left -= step) {
        if (load_word(p) & non_ascii_bits<Unit>) {
            for (size_t i = 0; i < step; ++i) count += utf8_share(p[i]);
        } else {
            count += step;
        }
    }
    for (; left > 0; --left) count += utf8_share(*p++);
    return count;
}

// ------------------------------------------------------------------------------------------------
// The common frame

// The units of output that one unit of input may need.
template <typename In, typename Out>
constexpr size_t growth = sizeof(In) <= sizeof(Out) ? 1
                          : sizeof(Out) == 2        ? 2
                          : sizeof(In) == 2         ? 3
                                                    : 4;

// Appends the converted text to `out`; false, with `out` unfinished, when the core gives up.
template <typename In, typename Out>
bool convert(std::basic_string<In> const& text, std::basic_string<Out>& out, size_t expected,
             cursor<In, Out> (*core)(cursor<In, Out>, In const*, In const*)) {
    constexpr size_t piece = 1024;
    Out block[growth<In, Out> * (piece + units_per_word<char>)];
    out.reserve(expected);
    In const* const end = text.data() + text.size();
    for (cursor<In, Out> at{text.data(), block}; at.from < end;) {
        at.to = block;
        at = core(at, at.left(end) > piece ? at.from + piece : end, end);
        if (!at.to) return false;
        out.append(block, static_cast<size_t>(at.to - block));
    }
    return true;
}

template <typename Text>
Text failed() {
    typename Text::value_type const text[] = {'-', '1'};
    return Text(text, 2);
}

bool is_reversed(ustring16 const& text) { return !text.empty() && text[0] == reversed_mark; }

// These two take text in the machine's byte order.
ustring8 native_utf16_to_utf8(ustring16 const& text) {
    ustring8 result;
    if (!convert(text, result, count_utf8<unsigned short>(text), utf16_to_utf8_core)) return failed<ustring8>();
    if (result.size() > 4 * text.size()) {
        debug::_private::____________________ASSERT____________________("k <= output.size()", "strings/unicode",
                                                                        226, __PRETTY_FUNCTION__);
    }
    return result;
}

ustring32 native_utf16_to_utf32(ustring16 const& text) {
    ustring32 result;
    if (!convert(text, result, text.size(), utf16_to_utf32_core)) return failed<ustring32>();
    return result;
}

template <typename Text, size_t Length>
Text without_mark(Text const& text, typename Text::value_type const (&mark)[Length]) {
    bool const marked = text.compare(0, Length, mark, Length) == 0;
    return marked ? Text(text, Length) : text;
}

} // namespace

// ------------------------------------------------------------------------------------------------
// Whole texts

ustring16 utf8_to_utf16(ustring8 const& text) {
    ustring16 result;
    if (!convert(text, result, count_characters(text, 2), utf8_to_utf16_core)) return failed<ustring16>();
    if (result.size() > text.size()) {
        debug::_private::____________________ASSERT____________________("k <= length", "strings/unicode", 353,
                                                                        __PRETTY_FUNCTION__);
    }
    return result;
}

ustring32 utf8_to_utf32(ustring8 const& text) {
    ustring32 result;
    convert(text, result, count_characters(text, 1), utf8_to_utf32_core);
    return result;
}

ustring8 utf16_to_utf8(ustring16 const& text) {
    if (is_reversed(text)) return native_utf16_to_utf8(swap_string_bytes_order(text));
    return native_utf16_to_utf8(text);
}

ustring32 utf16_to_utf32(ustring16 const& text) {
    if (is_reversed(text)) return native_utf16_to_utf32(swap_string_bytes_order(text));
    return native_utf16_to_utf32(text);
}

ustring8 utf32_to_utf8(ustring32 const& text) {
    ustring8 result;
    if (!convert(text, result, count_utf8<wchar_t>(text), utf32_to_utf8_core)) return failed<ustring8>();
    return result;
}

ustring16 utf32_to_utf16(ustring32 const& text) {
    ustring16 result;
    if (!convert(text, result, text.size(), utf32_to_utf16_core)) return failed<ustring16>();
    return result;
}

// ------------------------------------------------------------------------------------------------
// Single characters

namespace {

unsigned long report(character const& c, unsigned long& consumed) {
    consumed = c.length ? c.length : no_index;
    return c.length ? c.code : replacement;
}

} // namespace

unsigned long unichar(char const* text, unsigned long length, unsigned long index, unsigned long& consumed) {
    return report(index < length ? decode_utf8(text + index, length - index) : no_character, consumed);
}

unsigned long unichar(unsigned short const* text, unsigned long length, unsigned long index,
                      unsigned long& consumed) {
    return report(index < length ? decode_utf16(text + index, length - index) : no_character, consumed);
}

unsigned long unichar(wchar_t const* text, unsigned long length, unsigned long index, unsigned long& consumed) {
    return report(index < length ? character{value(text[index]), 1} : no_character, consumed);
}

unsigned long character_index(ustring8 const& text, unsigned long n) {
    if (n >= text.size()) return no_index;
    size_t index = 0;
    for (; n > 0; --n) {
        if (index >= text.size()) return no_index;
        unsigned int const length = decode_utf8(text.data() + index, text.size() - index).length;
        if (!length) return no_index;
        index += length;
    }
    return index;
}

unsigned long character_index(ustring16 const& text, unsigned long n) {
    if (n >= text.size()) return no_index;
    if (n > 0 && is_low_surrogate(text[0])) return no_index;
    size_t index = 0;
    for (; n > 0; --n) {
        if (index >= text.size()) return no_index;
        if (!is_high_surrogate(text[index])) {
            index += 1;
        } else if (index + 1 < text.size() && is_low_surrogate(text[index + 1])) {
            index += 2;
        } else {
            return no_index;
        }
    }
    return index;
}

// ------------------------------------------------------------------------------------------------
// Byte order

ustring8 remove_BOM(ustring8 const& text) { return without_mark(text, mark_8); }
ustring16 remove_BOM(ustring16 const& text) { return without_mark(text, mark_16); }
ustring32 remove_BOM(ustring32 const& text) { return without_mark(text, mark_32); }

ustring16 swap_string_bytes_order(ustring16 const& text) {
    ustring16 result(text);
    modify_swap_string_bytes_order(result);
    return result;
}

void modify_swap_string_bytes_order(ustring16& text) {
    for (unsigned short& unit : text) unit = static_cast<unsigned short>(unit << 8 | unit >> 8);
}

ustring16 check_BOM_and_swap(ustring16 const& text) {
    ustring16 result(text);
    check_BOM_and_modify_swap(result);
    return result;
}

void check_BOM_and_modify_swap(ustring16& text) {
    if (is_reversed(text)) modify_swap_string_bytes_order(text);
}

// ------------------------------------------------------------------------------------------------
// Checks on one sequence

namespace gh2 {

unsigned int get_utf8_length(unsigned char const* p, unsigned int size) {
    if (size == 0 || !p) return 0;
    unsigned int const lead = *p;
    if (lead < 0x80) return 1;
    if (lead < 0xC0 || lead > 0xF7) return 0;
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

unsigned int get_utf8_length(char const* p, unsigned int size) {
    return get_utf8_length(reinterpret_cast<unsigned char const*>(p), size);
}

bool validate_utf8(unsigned char const* p, unsigned int size) {
    return size != 0 && p && decode_utf8(p, size).length != 0;
}

bool validate_utf8(char const* p, unsigned int size) {
    return validate_utf8(reinterpret_cast<unsigned char const*>(p), size);
}

} // namespace gh2
} // namespace ZOLT_2_18::strings
