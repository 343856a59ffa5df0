// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A file is a row of statements, each read token by token: section headers and assignments. What tells
// statements and their parts apart are the recorded kinds of the tokens; everything else is text that is
// strung together, without the blanks between.
#include <zolt/config/config_file_reader_private.hpp>

#include <zolt/config/base_config_item.hpp>
#include <zolt/config/config_section_private.hpp>
#include <zolt/config/config_token.hpp>
#include <zolt/generic/varg_list.hpp>

#include <algorithm>
#include <optional>
#include <string_view>

namespace ZOLT_2_18::config {
namespace {

using strings::ustring8;
using kind_t = config_token::tok_types;

constexpr std::string_view array_mark = "[]";

bool is_blank(kind_t kind) { return kind == config_token::T_SPACE || kind == config_token::T_TABCHAR; }
bool is_layout(kind_t kind) { return is_blank(kind) || kind == config_token::T_NEWLINE; }
bool is_comment(kind_t kind) { return kind == config_token::T_POUND || kind == config_token::T_FSFS; }

class file_reader {
public:
    file_reader(ustring8 const& text, config_tree& tree) : m_text(text), m_tree(tree) { m_section.emplace(tree); }

    void read_statements() {
        while (find_statement()) {
            if (m_token.kind == config_token::T_SBRACKET) {
                read_section();
            } else {
                read_assignment();
            }
        }
    }

private:
    kind_t next() {
        base_config_item::get_token(m_text, m_position, m_token);
        return m_token.kind;
    }

    // Byte by byte, so that a quote in a comment opens no string.
    void skip_comment() {
        auto const line_end = std::min(m_text.find('\n', m_position), m_text.size());
        m_position = static_cast<unsigned int>(line_end);
    }

    /// Moves to the first token of the next statement; false when there is none.
    bool find_statement() {
        for (kind_t kind = next(); kind != config_token::T_END; kind = next()) {
            if (is_comment(kind)) {
                skip_comment();
            } else if (!is_layout(kind)) {
                return true;
            }
        }
        return false;
    }

    /// The texts of all tokens from the current one up to one of the kind. At the end of the file without
    /// one, there is no text.
    std::optional<ustring8> text_up_to(kind_t last) {
        ustring8 text;
        for (kind_t kind = m_token.kind; kind != last; kind = next()) {
            if (kind == config_token::T_END) return std::nullopt;
            if (!is_layout(kind)) text += m_token.text;
        }
        return text;
    }

    void read_section() {
        next();
        ustring8 prefix = text_up_to(config_token::T_EBRACKET).value_or(ustring8());
        if (!prefix.empty()) prefix += '.';
        m_section.emplace(m_tree, prefix);
    }

    void read_assignment() {
        std::optional<ustring8> key = text_up_to(config_token::T_EQ);
        if (!key) return;
        if (std::string_view(*key).ends_with(array_mark)) {
            key->resize(key->size() - array_mark.size());
            if (auto const values = read_array()) m_section->set_array(*key, *values);
        } else {
            ustring8 const value = read_scalar();
            if (!value.empty()) m_section->set_node(*key, value, 0);
        }
    }

    ustring8 read_scalar() {
        ustring8 value;
        for (kind_t kind = next(); kind != config_token::T_NEWLINE && kind != config_token::T_END; kind = next()) {
            if (is_comment(kind)) {
                skip_comment();
            } else if (!is_blank(kind)) {
                value += m_token.text;
            }
        }
        return value;
    }

    /// The elements; nothing when the last one is empty.
    std::optional<generic::varg_list> read_array() {
        generic::varg_list values;
        ustring8 item;
        bool after_comma = false; // and nothing but layout and comments since: line ends do not count
        for (kind_t kind = next(); kind != config_token::T_END; kind = next()) {
            if (kind == config_token::T_NEWLINE && !after_comma) break;
            if (is_comment(kind)) {
                skip_comment();
            } else if (!is_layout(kind)) {
                after_comma = kind == config_token::T_NON_ALPHA_NUM && m_token.text == ",";
                if (after_comma) {
                    values.push_back(types::variant(item));
                    item.clear();
                } else {
                    item += m_token.text;
                }
            }
        }
        if (item.empty()) return std::nullopt;
        values.push_back(types::variant(item));
        return values;
    }

    ustring8 const& m_text;
    config_tree& m_tree;
    std::optional<_private::config_section> m_section;
    unsigned int m_position = 0;
    config_token m_token;
};

} // namespace

namespace _private {

void read_config_text(ustring8 const& text, config_tree& tree) { file_reader(text, tree).read_statements(); }

} // namespace _private
} // namespace ZOLT_2_18::config
