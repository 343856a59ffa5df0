// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Any bytes as XML: on success every start has its end and every attribute name its value.
#include <zolt/parser/xml_token_stream.hpp>
#include <zolt/zolt.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using token = zolt::parser::xml_token_stream::token;
    zolt::parser::xml_token_stream stream;
    auto const result = stream.parse(zolt::strings::ustring8(reinterpret_cast<char const*>(data), size));
    long open = 0;
    bool name_before = false;
    for (token const& next : stream) {
        if (name_before != (next.type() == token::attribute_value)) std::abort();
        name_before = next.type() == token::attribute_name;
        open += next.type() == token::element_start;
        open -= next.type() == token::element_end;
        if (open < 0) std::abort();
    }
    if (result.kind == 0 && open != 0) std::abort();
    return 0;
}
