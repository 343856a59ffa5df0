// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/parser/xml_token_stream.hpp>

#include <gtest/gtest.h>

#include <string>

using ZOLT_2_18::parser::xml_token_stream;
using ZOLT_2_18::strings::ustring8;

namespace {

// Each token as its number, its value and a bar.
std::string listed(xml_token_stream const& stream) {
    std::string text;
    for (auto const& token : stream) text += std::to_string(token.type()) + token.value() + "|";
    return text;
}

} // namespace

TEST(XmlTokenStream, EveryElementHasTheSameShape) {
    std::string const rows[][2] = {
        {"", ""},
        {"<a/>", "0a|4|1a|"},
        {"<a x='1' y='&lt;'/>", "0a|2x|31|2y|3<|4|1a|"},
        {"<a> t<b/></a>", "0a|4|6 |7t|0b|4|1b|1a|"},
        {"<a><b>t</b></a>", "0a|4|0b|4|7t|1b|1a|"},
        {"<!--0--><a><!--1--><b/></a>", "50|0a|51|4|0b|4|1b|1a|"}, // a comment leaves the start tag open
    };
    for (auto const& [input, expected] : rows) {
        xml_token_stream stream;
        EXPECT_EQ(stream.parse("<?xml?>" + input).kind, 0u) << input;
        EXPECT_EQ(listed(stream), expected) << input;
    }
}

TEST(XmlTokenStream, LaterParsesAppendAndFaultsAreReturnedUnchanged) {
    xml_token_stream stream;
    auto const fault = stream.parse("<?xml?>\n<a x='1' x='2'/>");
    EXPECT_TRUE(fault.kind == fault.attribute_redefined && fault.line == 1 && fault.text == "x");
    xml_token_stream::const_iterator const first = stream.begin();
    ustring8 const text = "..<?xml?><b/>..";
    EXPECT_EQ(stream.parse(text.begin() + 2, text.end() - 2).kind, 0u);
    EXPECT_EQ(listed(stream), "6\n|0a|2x|31|0b|4|1b|"); // the start tag that the fault left open stays so
    EXPECT_EQ(stream.size(), 7u);
    EXPECT_EQ(first->value(), "\n");
}
