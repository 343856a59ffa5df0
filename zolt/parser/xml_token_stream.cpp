// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/parser/xml_token_stream.hpp>

#include <zolt/functor/member_function.hpp>

#include <algorithm>
#include <new>

namespace ZOLT_2_18::parser {

namespace _private {

struct alignas(std::max_align_t) node_blocks::block {
    block* older;
};

node_blocks::~node_blocks() {
    while (m_newest) ::operator delete(std::exchange(m_newest, m_newest->older));
}

// Blocks double up to a size from which on larger ones would save nothing.
void node_blocks::add_block(std::size_t bytes) {
    std::size_t const smallest = 1 << 10, largest = 1 << 16;
    std::size_t const size = std::clamp(2 * m_size, smallest, largest);
    auto* const memory = static_cast<char*>(::operator new(sizeof(block) + std::max(size, bytes)));
    m_newest = new (memory) block{m_newest};
    m_size = size;
    m_free = memory + sizeof(block);
    m_end = m_free + std::max(size, bytes);
}

} // namespace _private

xml_token_stream::xml_token_stream() : m_tokens(token_list::allocator_type(m_blocks)) {
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
    m_tokens.emplace_back(token::start_tag_end);
    m_start_tag_closed = true;
}

} // namespace ZOLT_2_18::parser
