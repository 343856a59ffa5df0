// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Any bytes as text of each encoding and as numbers: nothing is read out of bounds, and what one
// conversion accepts the way back restores.
#include <zolt/types/variant.hpp>
#include <zolt/zolt.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

using namespace zolt::strings;

template <typename Text>
Text units(std::uint8_t const* data, std::size_t size) {
    Text text(size / sizeof(typename Text::value_type), typename Text::value_type());
    if (!text.empty()) std::memcpy(text.data(), data, text.size() * sizeof(typename Text::value_type));
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    ustring8 const bytes(reinterpret_cast<char const*>(data), size);
    ustring16 const wide = units<ustring16>(data, size);
    ustring32 const points = units<ustring32>(data, size);

    utf8_to_utf32(bytes);
    utf32_to_utf8(points);
    utf32_to_utf16(points);
    utf8_to_utf16(bytes);
    ustring16 const native = check_BOM_and_swap(wide);
    ustring8 const narrow = utf16_to_utf8(wide);
    if (narrow != "-1" && utf8_to_utf16(narrow) != native) std::abort();
    for (unsigned long n = 0; n < size && n < 64; ++n) {
        character_index(bytes, n);
        character_index(wide, n);
    }
    code_page(code_page::cp932).as_utf8(bytes);
    code_page(code_page::cp1258).encode(bytes);
    split_string(bytes, ustring8(bytes.substr(0, 2)));
    ustring8 replaced(bytes);
    replace_all(replaced, ustring8(bytes.substr(0, 1)), ustring8("ab"));

    zolt::types::variant const values[] = {bytes, wide, points};
    for (auto const& value : values) {
        value.as_int64();
        value.as_uint8();
        value.as_double();
        value.as_bool();
    }
    return 0;
}
