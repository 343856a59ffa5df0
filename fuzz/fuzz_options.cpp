// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Any bytes as the options of a placeholder: the first eight are the value, the ninth the kind.
#include <zolt/i18n/format_value.hpp>
#include <zolt/i18n/message_item.hpp>
#include <zolt/types/variant.hpp>
#include <zolt/zolt.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 9) return 0;
    double number;
    std::memcpy(&number, data, sizeof number);
    auto const kind = static_cast<zolt::i18n::message_item::type_t>(data[8] % 14);
    zolt::strings::ustring8 options("n\1");
    options.append(reinterpret_cast<char const*>(data + 9), size - 9);
    // The widest result: a field or a precision of 4096 with the digits of the largest double.
    if (zolt::i18n::format_value(kind, number, options).size() > 3 * 4096) std::abort();
    long long integer;
    std::memcpy(&integer, data, sizeof integer);
    zolt::i18n::format_value(kind, integer, options);
    return 0;
}
