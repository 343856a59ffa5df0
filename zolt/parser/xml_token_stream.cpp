// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/parser/xml_token_stream.hpp>

#include <zolt/functor/member_function.hpp>

namespace ZOLT_2_18::parser {

xml_token_stream::xml_token_stream() {
    using text_member = functor::member_function_t<xml_token_stream, void(strings::ustring8 const&)>;
    using attribute_member =
        functor::member_function_t<xml_token_stream, void(strings::ustring8 const&, strings::ustring8 const&)>;

    m_parser.on_element_start = text_member(this, &xml_token_stream::on_element_start);
    m_parser.on_element_end = text_member(this, &xml_token_stream::on_element_end);
    m_parser.on_attribute = attribute_member(this, &xml_token_stream::on_attribute);
    m_parser.on_space = text_member(this, &xml_token_stream::on_space);
    m_parser.on_character = text_member(this, &xml_token_stream::on_character);
    m_parser.on_comment = text_member(this, &xml_token_stream::on_comment);
}

xml_token_stream::~xml_token_stream() = default;

xml_parser::parse_error xml_token_stream::parse(strings::ustring8 const& text) {
    return parse(text.begin(), text.end());
}

xml_parser::parse_error xml_token_stream::parse(strings::ustring8::const_iterator first,
                                                strings::ustring8::const_iterator last) {
    m_start_tag_closed = true;
    return m_parser.parse(first, last);
}

void xml_token_stream::on_element_start(strings::ustring8 const& name) {
    close_start_tag();
    m_tokens.emplace_back(token::element_start, name);
    m_start_tag_closed = false;
}

void xml_token_stream::on_element_end(strings::ustring8 const& name) {
    close_start_tag();
    m_tokens.emplace_back(token::element_end, name);
}

void xml_token_stream::on_attribute(strings::ustring8 const& name, strings::ustring8 const& value) {
    m_tokens.emplace_back(token::attribute_name, name);
    m_tokens.emplace_back(token::attribute_value, value);
}

void xml_token_stream::on_space(strings::ustring8 const& text) {
    close_start_tag();
    m_tokens.emplace_back(token::space, text);
}

void xml_token_stream::on_character(strings::ustring8 const& text) {
    close_start_tag();
    m_tokens.emplace_back(token::character, text);
}

void xml_token_stream::on_comment(strings::ustring8 const& text) { m_tokens.emplace_back(token::comment, text); }

void xml_token_stream::close_start_tag() {
    if (m_start_tag_closed) return;
    m_tokens.emplace_back(token::start_tag_end, strings::ustring8());
    m_start_tag_closed = true;
}

} // namespace ZOLT_2_18::parser
