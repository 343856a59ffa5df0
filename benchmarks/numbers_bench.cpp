// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Text to number and back beside the C and C++ libraries, fast_float and {fmt}: batches of 1,000 numbers of
// every length, half of them negative. A peer that knows no radix prefix gets it sorted out in front of it. An
// istringstream is made for each text, as programs do.
#include "bench.hpp"

#include <zolt/generic/convert/bin_str.hpp>
#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/generic/convert/x_to_str.hpp>
#include <zolt/zolt.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>

#if __has_include(<fast_float/fast_float.h>)
#include <fast_float/fast_float.h>
#define PEER_FAST_FLOAT 1
#endif
#if PEER_FMT
#include <fmt/compile.h>
#endif

using namespace zolt;
namespace convert = generic::convert;
using radix_t = types::radix_t::base;
using texts_t = std::vector<strings::ustring8>;

namespace {

constexpr std::size_t batch = 1000;

// As many numbers of one bit as of any other count.
template <typename T>
std::vector<T> integers() {
    std::mt19937_64 random(7);
    std::vector<T> result(batch);
    for (T& value : result) {
        value =
            static_cast<T>(static_cast<std::make_unsigned_t<T>>(random()) >> (1 + random() % (sizeof(T) * 8 - 1)));
        if (random() % 2) value = static_cast<T>(-value);
    }
    return result;
}

strings::ustring8 text_of(long long value, int radix, char const* prefix = "") {
    char digits[72];
    char* const end = std::to_chars(digits, digits + sizeof digits, value < 0 ? -value : value, radix).ptr;
    return strings::ustring8((value < 0 ? "-" : "") + (prefix + std::string(digits, end)));
}

template <typename Numbers, typename Write>
texts_t texts(Numbers const& numbers, Write write) {
    texts_t result;
    for (auto number : numbers) result.push_back(write(number));
    return result;
}

// --- Text to number --------------------------------------------------------------------------------------

// Reads all texts one after the other; the answer is each number.
template <typename Read>
auto all(texts_t const& texts, Read read) {
    using number = decltype(read(texts[0]));
    return [&texts, read, numbers = std::vector<number>(texts.size())]() mutable {
        std::transform(texts.begin(), texts.end(), numbers.begin(), read);
        return static_cast<std::vector<number> const*>(&numbers);
    };
}

template <typename Read>
void side(bench::comparison& task, char const* who, texts_t const& texts, Read read) {
    auto run = all(texts, read);
    task.side(who, run, [run]() mutable { return *run(); });
}

template <typename T>
T by_zolt(strings::ustring8 const& text, radix_t radix) {
    auto const length = static_cast<unsigned long>(text.size());
    if constexpr (sizeof(T) <= sizeof(int)) {
        return convert::str_to_int32(text.data(), length, radix);
    } else {
        return convert::str_to_int64(text.data(), length, radix);
    }
}

template <typename T>
T by_from_chars(strings::ustring8 const& text, int radix) {
    T value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value, radix);
    return value;
}

// from_chars with the prefix taken off. A "-" stays in front of the digits that it reads.
template <typename T>
T by_from_chars_and_prefix(strings::ustring8 const& text) {
    char const* const end = text.data() + text.size();
    char const* at = text.data();
    bool const negative = *at == '-';
    at += negative;
    int radix = 10;
    if (*at == '0' && end - at > 1) {
        radix = at[1] == 'x' ? 16 : 8;
        at += radix == 16 ? 2 : 1;
    }
    std::make_unsigned_t<T> value = 0;
    std::from_chars(at, end, value, radix);
    return static_cast<T>(negative ? 0 - value : value);
}

template <typename T, int Radix>
void add_radix(bench::comparison& task, texts_t const& inputs) {
    side(task, "zolt", inputs, [](auto& text) { return by_zolt<T>(text, static_cast<radix_t>(Radix)); });
    side(task, "from_chars", inputs, [](auto& text) { return by_from_chars<T>(text, Radix); });
}

template <typename T>
void add_text_to_integer(std::string const& name) {
    static std::vector<T> const numbers = integers<T>();
    struct form {
        char const* name;
        int radix;
        texts_t texts;
    };
    static std::vector<form> forms;
    for (auto [label, radix] : {std::pair("decimal", 10), {"hexadecimal", 16}, {"binary", 2}, {"base_36", 36}}) {
        forms.push_back({label, radix, texts(numbers, [=](T value) { return text_of(value, radix); })});
    }
    forms.push_back({"automatic", 0, texts(numbers, [i = 0](T value) mutable {
                         bool const is_hexadecimal = ++i % 4 == 0;
                         return text_of(value, is_hexadecimal ? 16 : 10, is_hexadecimal ? "0x" : "");
                     })});
    for (auto const& [label, base, inputs] : forms) {
        bench::comparison task("numbers/" + name + "/" + label, batch);
        switch (base) { // both are inline functions: they get their radix as the constant it is
        case 0:
            side(task, "zolt", inputs, [](auto& text) { return by_zolt<T>(text, radix_t::automatic); });
            side(task, "from_chars", inputs, [](auto& text) { return by_from_chars_and_prefix<T>(text); });
            break;
        case 2:
            add_radix<T, 2>(task, inputs);
            break;
        case 10:
            add_radix<T, 10>(task, inputs);
            break;
        case 16:
            add_radix<T, 16>(task, inputs);
            break;
        default:
            add_radix<T, 36>(task, inputs);
        }
        side(task, "strtol", inputs, [radix = base](strings::ustring8 const& text) {
            if constexpr (sizeof(T) <= sizeof(long))
                return static_cast<T>(std::strtol(text.c_str(), nullptr, radix));
            return static_cast<T>(std::strtoll(text.c_str(), nullptr, radix));
        });
        if (base == 2 || base == 36) continue; // no stream reads these
        side(task, "istringstream", inputs, [radix = base](strings::ustring8 const& text) {
            T value = 0;
            std::istringstream stream(text);
            stream.setf(radix == 10   ? std::ios::dec
                        : radix == 16 ? std::ios::hex
                                      : std::ios::fmtflags(),
                        std::ios::basefield);
            stream >> value;
            return value;
        });
    }
}

void add_c_strings() {
    static texts_t const inputs = texts(integers<int>(), [](int value) { return text_of(value, 10); });
    bench::comparison task("numbers/text_to_int32/c_string", batch);
    side(task, "zolt", inputs, [](auto& text) { return convert::str_to_int32(text.c_str(), 0, radix_t::decimal); });
    side(task, "strtol", inputs,
         [](auto& text) { return static_cast<int>(std::strtol(text.c_str(), nullptr, 10)); });
}

void add_text_to_double() {
    std::mt19937_64 random(8);
    static std::vector<std::pair<char const*, texts_t>> forms;
    std::vector<double> numbers(batch);
    for (double& number : numbers) number = static_cast<double>(random() >> (20 + random() % 43)) / 100;
    forms.emplace_back("hundredths", texts(numbers, [](double number) {
                           char text[40];
                           return strings::ustring8(text, text + std::snprintf(text, sizeof text, "%.2f", number));
                       }));
    for (double& number : numbers) {
        number =
            std::ldexp(static_cast<double>(random() >> (random() % 60)), static_cast<int>(random() % 200) - 120);
    }
    forms.emplace_back("shortest", texts(numbers, [](double number) {
                           char text[40];
                           return strings::ustring8(text, std::to_chars(text, text + sizeof text, -number).ptr);
                       }));
    for (auto const& [label, inputs] : forms) {
        bench::comparison task(std::string("numbers/text_to_double/") + label, batch);
        side(task, "zolt", inputs, [](auto& text) { return convert::str_to_double(text); });
#if PEER_FAST_FLOAT
        side(task, "fast_float", inputs, [](auto& text) {
            double value = 0;
            fast_float::from_chars(text.data(), text.data() + text.size(), value);
            return value;
        });
#endif
        side(task, "from_chars", inputs, [](auto& text) {
            double value = 0;
            std::from_chars(text.data(), text.data() + text.size(), value);
            return value;
        });
        side(task, "istringstream", inputs, [](auto& text) {
            double value = 0;
            std::istringstream stream(text);
            stream >> value;
            return value;
        });
    }
}

// --- Number to text --------------------------------------------------------------------------------------

// Writes all numbers with a NUL behind each; the answer is what was written.
template <typename T, typename Write>
void side(bench::comparison& task, char const* who, std::vector<T> const& numbers, Write write) {
    constexpr std::size_t room = 72;
    auto run = [&numbers, write, buffer = std::string(batch * room, '\0')]() mutable {
        char* at = buffer.data();
        for (T number : numbers) write(number, at), at += room;
        return static_cast<std::string const*>(&buffer);
    };
    task.side(who, run, [run]() mutable { return *run(); });
}

template <int Radix, typename T>
void add_radix(bench::comparison& task, std::vector<T> const& numbers) {
    side(task, "zolt", numbers, [](T value, char* to) {
        if constexpr (sizeof(T) <= sizeof(int)) return convert::ltoa(value, to, Radix);
        return convert::lltoa(value, to, Radix);
    });
    side(task, "to_chars", numbers, [](T n, char* to) { *std::to_chars(to, to + 71, n, Radix).ptr = 0; });
}

template <typename T>
void add_integer_to_text(std::string const& name) {
    static std::vector<T> const numbers = integers<T>();
    for (auto [label, radix] : {std::pair("decimal", 10u), {"hexadecimal", 16u}, {"base_36", 36u}}) {
        bench::comparison task("numbers/" + name + "/" + label, batch);
        switch (radix) { // as for the readers
        case 10:
            add_radix<10>(task, numbers);
            break;
        case 16:
            add_radix<16>(task, numbers);
            break;
        default:
            add_radix<36>(task, numbers);
        }
#if PEER_FMT
        if (radix == 10) {
            side(task, "fmt", numbers, [](T n, char* to) { *fmt::format_to(to, FMT_COMPILE("{}"), n) = 0; });
        } else if (radix == 16) {
            side(task, "fmt", numbers, [](T n, char* to) { *fmt::format_to(to, FMT_COMPILE("{:x}"), n) = 0; });
        }
#endif
    }
}

template <typename T>
void add_to_str(std::string const& name, std::vector<T> const& numbers) {
    auto const by = [&numbers](auto write) {
        return [&numbers, write] {
            std::string result;
            for (T number : numbers) result += write(number);
            return result;
        };
    };
    bench::comparison task("numbers/to_str/" + name, batch);
    task.side("zolt", by([](T value) { return convert::to_str(value); }));
    task.side("ostringstream", by([](T value) {
                  static std::ostringstream stream;
                  stream.str("");
                  stream << value;
                  return stream.str();
              }));
    if constexpr (std::is_integral_v<T>) task.side("to_string", by([](T value) { return std::to_string(value); }));
#if PEER_FMT
    if constexpr (std::is_integral_v<T>)
        task.side("fmt", by([](T value) { return fmt::to_string(value); }));
    else
        task.side("fmt", by([](T value) { return fmt::format(FMT_COMPILE("{:g}"), value); }));
#endif
}

// --- Binary strings --------------------------------------------------------------------------------------

void add_binary() {
    static std::vector<int> const numbers = integers<int>();
    static std::vector<std::string> images;
    for (int number : numbers) images.push_back(convert::big_endian::int32_to_bin_str(number));
    auto const pack = [](auto packed) {
        return [packed] {
            std::string result;
            for (int number : numbers) result += packed(number);
            return result;
        };
    };
    auto const unpack = [](auto unpacked) {
        return [unpacked] {
            long sum = 0;
            for (std::string const& image : images) sum += unpacked(image);
            return sum;
        };
    };
    bench::comparison writers("numbers/int32_to_bin_str/big_endian", batch);
    writers.side("zolt", pack([](int value) { return convert::big_endian::int32_to_bin_str(value); }));
    writers.side("memcpy", pack([](int value) {
                     auto const image = __builtin_bswap32(static_cast<std::uint32_t>(value));
                     return std::string(reinterpret_cast<char const*>(&image), sizeof image);
                 }));
    bench::comparison readers("numbers/bin_str_to_int32/big_endian", batch);
    readers.side("zolt",
                 unpack([](std::string const& image) { return convert::big_endian::bin_str_to_int32(image); }));
    readers.side("memcpy", unpack([](std::string const& image) {
                     std::uint32_t value = 0;
                     if (image.size() >= sizeof value) std::memcpy(&value, image.data(), sizeof value);
                     return static_cast<long>(static_cast<int>(__builtin_bswap32(value)));
                 }));
}

} // namespace

void add_benchmarks() {
    add_text_to_integer<int>("text_to_int32");
    add_text_to_integer<long long>("text_to_int64");
    add_c_strings();
    add_text_to_double();
    add_integer_to_text<int>("int32_to_text");
    add_integer_to_text<long long>("int64_to_text");
    static std::vector<int> const integer_values = integers<int>();
    static std::vector<double> const floating_values(integer_values.begin(), integer_values.end());
    add_to_str("int32", integer_values);
    add_to_str("double", floating_values);
    add_binary();
    bench::growth("numbers/leading_zeros_to_int64", 1000, [](std::size_t digits) {
        return [text = std::string(digits, '0') + "7"] {
            return convert::str_to_int64(text.data(), static_cast<unsigned long>(text.size()), radix_t::decimal);
        };
    });
    bench::growth("numbers/digits_to_double", 1000, [](std::size_t digits) {
        return [text = strings::ustring8("0." + std::string(digits, '7'))] { return convert::str_to_double(text); };
    });
}
