// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The UTF conversions into fresh strings. ICU, GLib and iconv get their direct calls over a buffer that is
// large enough from the start; the macro loops of ICU write into a string of the largest size and cut it.
// "copy" is the memory traffic that any conversion has: a fresh string of the larger of the two texts, its
// input or its result, by memcpy.
#include "bench.hpp"

#include <zolt/zolt.hpp>

#include <cstring>
#include <iconv.h>
#include <random>
#if PEER_ICU
#include <unicode/unistr.h>
#include <unicode/ustring.h>
#include <unicode/utf.h>
#endif
#if PEER_GLIB
#include <glib.h>
#include <memory>
#endif

using namespace zolt;
using strings::ustring16;
using strings::ustring32;
using strings::ustring8;

namespace {

struct language {
    char const* name;
    char const* sample;
};

constexpr language languages[] = {
    {"ascii", "The quick brown fox jumps over the lazy dog, and then it sleeps. "},
    {"latin", "Le c\u0153ur d\u00e9\u00e7u mais l'\u00e2me plut\u00f4t na\u00efve, Lou\u00ffs r\u00eava de "
              "crapa\u00fcter en cano\u00eb. "},
    {"cyrillic",
     "\u0421\u044a\u0435\u0448\u044c \u0435\u0449\u0451 \u044d\u0442\u0438\u0445 "
     "\u043c\u044f\u0433\u043a\u0438\u0445 "
     "\u0444\u0440\u0430\u043d\u0446\u0443\u0437\u0441\u043a\u0438\u0445 \u0431\u0443\u043b\u043e\u043a. "},
    {"cjk",
     "\u5929\u5730\u7384\u9ec4\u5b87\u5b99\u6d2a\u8352\u65e5\u6708\u76c8\u6603\u8fb0\u5bbf\u5217\u5f20\u3002"},
    {"emoji", "\U0001F600\U0001F680\U0001F30D\U0001F389\U0001F914"},
    {"mixed",
     "plain text, d\u00e9j\u00e0 vu, \u043f\u0440\u0438\u0432\u0435\u0442, \u65e5\u672c\u8a9e, \U0001F600 (100%) "},
};

// Whole characters of the sample in a random order of its pieces of up to 40, to `size` bytes at most.
ustring8 make_text(ustring8 const& sample, std::size_t size) {
    std::mt19937 random(5);
    ustring32 const characters = strings::utf8_to_utf32(sample);
    ustring8 text;
    for (;;) {
        std::size_t const from = random() % characters.size();
        ustring8 const part = strings::utf32_to_utf8(characters.substr(from, 1 + random() % 40));
        if (text.size() + part.size() > size) break;
        text += part;
    }
    return text;
}

template <typename Answer, typename Other>
void add_copy(bench::comparison& task, Answer const& answer, Other const& other) {
    auto const copy = [](auto const& text) {
        return [&text] { return std::basic_string(text.data(), text.size()); };
    };
    if (answer.size() * sizeof answer[0] > other.size() * sizeof other[0]) return task.side("copy", copy(answer));
    task.side("copy", copy(other), copy(answer));
}

// A converter that stays open; the result's largest size is known.
template <typename Out, typename In>
auto by_iconv(char const* to, char const* from, In const& text, std::size_t largest) {
    iconv_t const converter = iconv_open(to, from);
    return [converter, &text, largest] {
        Out result(largest, 0);
        char* in = reinterpret_cast<char*>(const_cast<typename In::value_type*>(text.data()));
        char* out = reinterpret_cast<char*>(result.data());
        std::size_t in_left = text.size() * sizeof text[0], out_left = largest * sizeof result[0];
        iconv(converter, &in, &in_left, &out, &out_left);
        result.resize(largest - out_left / sizeof result[0]);
        return result;
    };
}

#if PEER_GLIB
template <typename Unit>
struct glib_text {
    using value_type = Unit;
    std::unique_ptr<Unit, void (*)(void*)> units{nullptr, g_free};
    long length = 0;
    Unit const* data() const { return units.get(); }
    std::size_t size() const { return static_cast<std::size_t>(length); }
};

template <typename Unit, typename From, typename In>
auto by_glib(From* convert, In const& text) {
    return [convert, &text] {
        glib_text<Unit> result;
        result.units.reset(reinterpret_cast<Unit*>(
            convert(text.data(), static_cast<glong>(text.size()), nullptr, &result.length, nullptr)));
        return result;
    };
}
#endif

#if PEER_ICU
#pragma GCC diagnostic ignored "-Wconversion" // inside ICU's macros

UChar const* units(ustring16 const& text) { return reinterpret_cast<UChar const*>(text.data()); }
int32_t length(std::size_t size) { return static_cast<int32_t>(size); }

std::string as_bytes(icu::UnicodeString const& text) {
    return std::string(reinterpret_cast<char const*>(text.getBuffer()),
                       static_cast<std::size_t>(text.length()) * 2);
}

std::string icu_utf8(ustring16 const& text) {
    static std::vector<char> buffer;
    buffer.resize(text.size() * 3);
    int32_t written = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strToUTF8(buffer.data(), length(buffer.size()), &written, units(text), length(text.size()), &error);
    return std::string(buffer.data(), static_cast<std::size_t>(written));
}

ustring32 macros_8_to_32(ustring8 const& text) {
    ustring32 result(text.size(), 0);
    int32_t const size = length(text.size());
    std::size_t count = 0;
    for (int32_t i = 0; i < size;) {
        UChar32 c;
        U8_NEXT(text.data(), i, size, c);
        result[count++] = static_cast<wchar_t>(c < 0 ? '?' : c);
    }
    result.resize(count);
    return result;
}

ustring8 macros_32_to_8(ustring32 const& text) {
    ustring8 result(text.size() * 4, 0);
    int32_t count = 0;
    for (wchar_t c : text) U8_APPEND_UNSAFE(result.data(), count, c);
    result.resize(static_cast<std::size_t>(count));
    return result;
}

ustring32 macros_16_to_32(ustring16 const& text) {
    ustring32 result(text.size(), 0);
    int32_t const size = length(text.size());
    std::size_t count = 0;
    for (int32_t i = 0; i < size;) {
        UChar32 c;
        U16_NEXT(text.data(), i, size, c);
        result[count++] = c;
    }
    result.resize(count);
    return result;
}

ustring16 macros_32_to_16(ustring32 const& text) {
    ustring16 result(text.size() * 2, 0);
    int32_t count = 0;
    for (wchar_t c : text) U16_APPEND_UNSAFE(result.data(), count, c);
    result.resize(static_cast<std::size_t>(count));
    return result;
}

ustring16 macros_8_to_16(ustring8 const& text) {
    ustring16 result(text.size(), 0);
    int32_t const size = length(text.size());
    int32_t count = 0;
    for (int32_t i = 0; i < size;) {
        UChar32 c;
        U8_NEXT(text.data(), i, size, c);
        U16_APPEND_UNSAFE(result.data(), count, c);
    }
    result.resize(static_cast<std::size_t>(count));
    return result;
}

ustring8 macros_16_to_8(ustring16 const& text) {
    ustring8 result(text.size() * 3, 0);
    int32_t const size = length(text.size());
    int32_t count = 0;
    for (int32_t i = 0; i < size;) {
        UChar32 c;
        U16_NEXT(text.data(), i, size, c);
        U8_APPEND_UNSAFE(result.data(), count, c);
    }
    result.resize(static_cast<std::size_t>(count));
    return result;
}
#endif

// utf32_to_utf16 leaves 0x10000 in the high halves of its pairs, up to plane 15 for certain.
[[maybe_unused]] ustring16 with_standard_pairs(ustring16 text) {
    for (unsigned short& unit : text) {
        if (unit >= 0xD840 && unit < 0xDC00) unit = static_cast<unsigned short>(unit - 0x40);
    }
    return text;
}

struct texts {
    ustring8 bytes;
    ustring16 units;
    ustring32 codes;
};

void add_8_and_16(std::string const& input, texts const& t) {
    bench::comparison decode("utf8_to_utf16/" + input, t.bytes.size());
    decode.side("zolt", [&t] { return strings::utf8_to_utf16(t.bytes); });
    add_copy(decode, t.units, t.bytes);
    decode.side("iconv", by_iconv<ustring16>("UTF-16LE", "UTF-8", t.bytes, t.bytes.size()));
    bench::comparison encode("utf16_to_utf8/" + input, t.bytes.size());
    encode.side("zolt", [&t] { return strings::utf16_to_utf8(t.units); });
    add_copy(encode, t.bytes, t.units);
    encode.side("iconv", by_iconv<ustring8>("UTF-8", "UTF-16LE", t.units, t.units.size() * 3));
#if PEER_ICU
    auto const from_utf8 = [&t] {
        return icu::UnicodeString::fromUTF8(icu::StringPiece(t.bytes.data(), length(t.bytes.size())));
    };
    decode.side("ICU", from_utf8, [=] { return as_bytes(from_utf8()); });
    encode.side("ICU", [&t] { return icu_utf8(t.units); });
#endif
#if PEER_GLIB
    decode.side("GLib", by_glib<unsigned short>(g_utf8_to_utf16, t.bytes));
    encode.side("GLib", [&t] {
        glib_text<char> result;
        result.units.reset(
            g_utf16_to_utf8(t.units.data(), static_cast<glong>(t.units.size()), nullptr, &result.length, nullptr));
        return result;
    });
#endif
}

void add_32([[maybe_unused]] std::string const& input, [[maybe_unused]] texts const& t,
            [[maybe_unused]] bool small) {
#if PEER_ICU
    std::string const who = small ? "macros" : "ICU";
    bench::comparison from_8("utf8_to_utf32/" + input, t.bytes.size());
    from_8.side("zolt", [&t] { return strings::utf8_to_utf32(t.bytes); });
    from_8.side(who, [&t] { return macros_8_to_32(t.bytes); });
    bench::comparison to_8("utf32_to_utf8/" + input, t.bytes.size());
    to_8.side("zolt", [&t] { return strings::utf32_to_utf8(t.codes); });
    to_8.side(who, [&t] { return macros_32_to_8(t.codes); });
    bench::comparison from_16("utf16_to_utf32/" + input, t.bytes.size());
    from_16.side("zolt", [&t] { return strings::utf16_to_utf32(t.units); });
    from_16.side(who, [&t] { return macros_16_to_32(t.units); });
    bench::comparison to_16("utf32_to_utf16/" + input, t.bytes.size());
    auto const to_units = [&t] { return strings::utf32_to_utf16(t.codes); };
    to_16.side("zolt", to_units, [=] { return with_standard_pairs(to_units()); });
    to_16.side(who, [&t] { return macros_32_to_16(t.codes); });
    if (!small) return;
    bench::comparison decode("utf8_to_utf16/" + input, t.bytes.size());
    decode.side("zolt", [&t] { return strings::utf8_to_utf16(t.bytes); });
    decode.side(who, [&t] { return macros_8_to_16(t.bytes); });
    bench::comparison encode("utf16_to_utf8/" + input, t.bytes.size());
    encode.side("zolt", [&t] { return strings::utf16_to_utf8(t.units); });
    encode.side(who, [&t] { return macros_16_to_8(t.units); });
#endif
}

texts const& make_texts(language const& of, std::size_t size) {
    static std::vector<std::unique_ptr<texts>> kept;
    auto t = std::make_unique<texts>();
    t->bytes = make_text(of.sample, size);
    t->units = strings::utf8_to_utf16(t->bytes);
    t->codes = strings::utf8_to_utf32(t->bytes);
    return *kept.emplace_back(std::move(t));
}

} // namespace

void add_benchmarks() {
    for (language const& of : languages) {
        std::string const name = of.name;
        add_32(name + "/64B", make_texts(of, 64), true);
        for (auto const& [label, size] : {std::pair("/4KB", 4096u), std::pair("/1MB", 1u << 20)}) {
            texts const& t = make_texts(of, size);
            add_8_and_16(name + label, t);
            add_32(name + label, t, false);
        }
    }
    bench::growth("utf8_to_utf16", 1000, [](std::size_t n) {
        texts const& t = make_texts(languages[5], n);
        return [&t] { return strings::utf8_to_utf16(t.bytes); };
    });
}
