// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// xml_token_stream: one XML text as a flat list of tokens, to be walked with list iterators.
//
// It stores what xml_parser reports and adds one kind of token of its own, start_tag_end, so that
// every element has the same shape: element_start, its attributes as pairs of attribute_name and
// attribute_value, one start_tag_end, the content, element_end.
//
//     parser::xml_token_stream stream;
//     stream.parse("<?xml?><a x='1'/>");
//     // element_start a, attribute_name x, attribute_value 1, start_tag_end, element_end a
//
// A comment does not end the start tag before it: in "<a><!--c--></a>" the comment stands between
// element_start and start_tag_end. Readers of the list pass over comments there.
#pragma once

#include <zolt/export.hpp>
#include <zolt/parser/xml_parser.hpp>
#include <zolt/strings/ustring.hpp>

#include <cstddef>
#include <list>
#include <utility>

namespace ZOLT_2_18::parser {

namespace _private {

/// Memory that is taken piece by piece and given back as a whole.
class ZOLT_API node_blocks {
public:
    node_blocks() = default;
    node_blocks(node_blocks const&) = delete;
    node_blocks& operator=(node_blocks const&) = delete;
    ~node_blocks();

    /// Every piece of a size that suits its alignment.
    void* take(std::size_t bytes) {
        if (bytes > static_cast<std::size_t>(m_end - m_free)) add_block(bytes);
        return std::exchange(m_free, m_free + bytes);
    }

private:
    struct block;

    void add_block(std::size_t bytes);

    block* m_newest = nullptr;
    char* m_free = nullptr; // in the newest block
    char* m_end = nullptr;
    std::size_t m_size = 0; // of the newest block
};

/// For a list that only grows and does not outlive its blocks.
template <typename T>
struct node_allocator {
    using value_type = T;

    explicit node_allocator(node_blocks& from) noexcept : blocks(&from) {}
    template <typename Other>
    node_allocator(node_allocator<Other> const& other) noexcept : blocks(other.blocks) {}

    T* allocate(std::size_t count) { return static_cast<T*>(blocks->take(count * sizeof(T))); }
    void deallocate(T*, std::size_t) noexcept {}

    friend bool operator==(node_allocator left, node_allocator right) noexcept {
        return left.blocks == right.blocks;
    }
    friend bool operator!=(node_allocator left, node_allocator right) noexcept {
        return left.blocks != right.blocks;
    }

    node_blocks* blocks;
};

} // namespace _private

class ZOLT_API xml_token_stream {
public:
    /// One piece of the text: its kind and value.
    class token {
    public:
        /// The kinds of tokens.
        enum token_type : unsigned int {
            element_start = 0,   ///< value: the element's name
            element_end = 1,     ///< value: the element's name
            attribute_name = 2,  ///< always followed by its attribute_value
            attribute_value = 3, ///< value: decoded, without the quotes
            start_tag_end = 4,   ///< value: empty
            comment = 5,         ///< value: the comment without its marks
            space = 6,           ///< value: a run of whitespace
            character = 7        ///< value: a run of decoded text without whitespace around it
        };

        /// A token with that value or without one.
        token(token_type type, strings::ustring8 const& value) : m_type(type), m_value(value) {}
        explicit token(token_type type) noexcept : m_type(type) {}

        /// The kind.
        token_type type() const noexcept { return m_type; }
        /// The value, as the kind tells it.
        strings::ustring8 const& value() const noexcept { return m_value; }

    private:
        token_type m_type;
        strings::ustring8 m_value;
    };

    /// A list whose nodes lie side by side in memory that the stream owns.
    using token_list = std::list<token, _private::node_allocator<token>>;
    using iterator = token_list::iterator;
    using const_iterator = token_list::const_iterator;

    xml_token_stream();
    /// The parser's callbacks are bound to the stream itself, so it stays where it is.
    xml_token_stream(xml_token_stream const&) = delete;
    xml_token_stream& operator=(xml_token_stream const&) = delete;
    ~xml_token_stream();

    /// Appends the tokens of a whole text and returns the parser's result unchanged: kind 0 on
    /// success, else the tokens before the fault have been appended. Tokens of earlier calls stay,
    /// and iterators stay valid.
    xml_parser::parse_error parse(strings::ustring8 const& text);

    /// The same for a part of a text.
    xml_parser::parse_error parse(strings::ustring8::const_iterator first, strings::ustring8::const_iterator last);

    /// Over the tokens in order.
    iterator begin() noexcept { return m_tokens.begin(); }
    iterator end() noexcept { return m_tokens.end(); }
    const_iterator begin() const noexcept { return m_tokens.begin(); }
    const_iterator end() const noexcept { return m_tokens.end(); }

    /// Number of tokens.
    std::size_t size() const noexcept { return m_tokens.size(); }

    /// Bound to the parser; not meant to be called by users.
    void on_element_start(strings::ustring8 const& name);
    void on_element_end(strings::ustring8 const& name);
    void on_attribute(strings::ustring8 const& name, strings::ustring8 const& value);
    void on_space(strings::ustring8 const& text);
    void on_character(strings::ustring8 const& text);
    void on_comment(strings::ustring8 const& text);

private:
    void close_start_tag();

    bool m_start_tag_closed = false;
    _private::node_blocks m_blocks;
    token_list m_tokens;
    xml_parser m_parser;
};

} // namespace ZOLT_2_18::parser
