// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A short text is converted into a block on the stack and copied from there, so that the result has no room
// to spare. Of a longer one the first characters tell how much the rest is likely to give; that goes straight
// into the result's memory as long as the worst that may come has room, and what is then left over goes by
// the block again.
//
// The cores here are portable; unicode_private.hpp tells what a core is and chooses among them.
#include <zolt/strings/unicode.hpp>

#include <zolt/strings/overwrite_private.hpp>
#include <zolt/strings/unicode_private.hpp>

#include <zolt/debug/assert.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace ZOLT_2_18::strings {
namespace {

using namespace _private;
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
// The common frame

constexpr size_t piece = 512;
constexpr size_t sample = 128;

// The converted form of a text of up to `piece` units, or of the begin of a longer one.
template <typename In, typename Out>
struct converted_piece {
    alignas(64) Out block[growth<In, Out> * (piece + overrun) + spill];
    cursor<In, Out> at;

    converted_piece(In const* from, In const* end, core<In, Out> core) {
        at = core({from, block}, static_cast<size_t>(end - from) > piece ? from + sample : end, end);
    }

    size_t size() const { return static_cast<size_t>(at.to - block); }
};

// Converts as long as the worst that may come has room in front of `room_end`.
template <typename In, typename Out>
cursor<In, Out> convert_in_place(cursor<In, Out> at, Out const* room_end, In const* end, core<In, Out> core) {
    constexpr size_t least = 64;
    while (at.to && at.from < end) {
        auto const room = static_cast<size_t>(room_end - at.to);
        size_t const units = room > spill ? (room - spill) / growth<In, Out> : 0;
        if (at.left(end) <= units) return core(at, end, end);
        if (units < overrun + least) return at;
        at = core(at, at.from + (units - overrun), end);
    }
    return at;
}

// The size of the whole text where `from` units have given `to` and `left` are still to come: a sixteenth
// more than in proportion, but no more than they can give.
template <typename In, typename Out>
size_t estimate(std::basic_string<Out> const& out, size_t from, size_t left) {
    uint64_t const likely = static_cast<uint64_t>(left) * out.size() / from;
    uint64_t const most = static_cast<uint64_t>(left) * growth<In, Out>;
    uint64_t const size = out.size() + std::min(likely + likely / 16, most) + spill;
    return static_cast<size_t>(std::min<uint64_t>(std::max<uint64_t>(size, out.capacity()), out.max_size()));
}

// Appends the rest of a text to `out`, which has the begin; false, with `out` unfinished, when the core gives
// up.
template <typename In, typename Out>
[[gnu::noinline]] bool convert_rest(In const* begin, In const* from, In const* end, std::basic_string<Out>& out,
                                    core<In, Out> core) {
    cursor<In, Out> at{from, nullptr};
    while (at.from < end) {
        if (at.left(end) > piece) {
            size_t const size = estimate<In>(out, static_cast<size_t>(at.from - begin), at.left(end));
            overwrite(out, size, [&, done = out.size()](Out* data) {
                at = convert_in_place<In, Out>({at.from, data + done}, data + size, end, core);
                return at.to ? static_cast<size_t>(at.to - data) : 0;
            });
            if (!at.to) return false;
        }
        converted_piece<In, Out> const converted(at.from, end, core);
        if (!converted.at.to) return false;
        out.append(converted.block, converted.size());
        at.from = converted.at.from;
    }
    if (out.capacity() / 2 > out.size()) out.shrink_to_fit(); // its begin was not like the rest
    return true;
}

// Makes `out`, which is empty, the converted text; false, with `out` unfinished, when the core gives up.
template <typename In, typename Out>
bool convert(std::basic_string<In> const& text, std::basic_string<Out>& out, core<In, Out> core) {
    In const* const begin = text.data();
    In const* const end = begin + text.size();
    converted_piece<In, Out> const first(begin, end, core);
    if (!first.at.to) return false;
    out = std::basic_string<Out>(first.block, first.size());
    return first.at.from == end || convert_rest(begin, first.at.from, end, out, core);
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
    if (!convert(text, result, best_cores().utf16_to_utf8)) return failed<ustring8>();
    if (result.size() > 4 * text.size()) {
        debug::_private::____________________ASSERT____________________("k <= output.size()", "strings/unicode",
                                                                        226, __PRETTY_FUNCTION__);
    }
    return result;
}

ustring32 native_utf16_to_utf32(ustring16 const& text) {
    ustring32 result;
    if (!convert(text, result, best_cores().utf16_to_utf32)) return failed<ustring32>();
    return result;
}

template <typename Text, size_t Length>
Text without_mark(Text const& text, typename Text::value_type const (&mark)[Length]) {
    bool const marked = text.compare(0, Length, mark, Length) == 0;
    return marked ? Text(text, Length) : text;
}

} // namespace

core_set const _private::portable_cores{utf8_to_utf16_core,  utf8_to_utf32_core, utf16_to_utf8_core,
                                        utf16_to_utf32_core, utf32_to_utf8_core, utf32_to_utf16_core};

// ------------------------------------------------------------------------------------------------
// Whole texts

ustring16 utf8_to_utf16(ustring8 const& text) {
    ustring16 result;
    if (!convert(text, result, best_cores().utf8_to_utf16)) return failed<ustring16>();
    if (result.size() > text.size()) {
        debug::_private::____________________ASSERT____________________("k <= length", "strings/unicode", 353,
                                                                        __PRETTY_FUNCTION__);
    }
    return result;
}

ustring32 utf8_to_utf32(ustring8 const& text) {
    ustring32 result;
    convert(text, result, best_cores().utf8_to_utf32);
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
    if (!convert(text, result, best_cores().utf32_to_utf8)) return failed<ustring8>();
    return result;
}

ustring16 utf32_to_utf16(ustring32 const& text) {
    ustring16 result;
    if (!convert(text, result, best_cores().utf32_to_utf16)) return failed<ustring16>();
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
        constexpr size_t step = units_per_word<char>;
        while (n > step && text.size() - index > step && !(load_word(&text[index]) & non_ascii_bits<char>)) {
            index += step;
            n -= step;
        }
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
    constexpr size_t step = units_per_word<unsigned short>;
    constexpr uint64_t low_bytes = 0x00FF00FF00FF00FF;
    unsigned short* p = text.data();
    size_t left = text.size();
    for (; left >= step; left -= step, p += step) {
        uint64_t const word = load_word(p);
        uint64_t const swapped = (word & low_bytes) << 8 | (word >> 8 & low_bytes);
        std::memcpy(p, &swapped, sizeof swapped);
    }
    for (; left > 0; --left, ++p) *p = static_cast<unsigned short>(*p << 8 | *p >> 8);
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
