// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Any bytes as a configuration file, and as keys and values that an application sets: tokens cover the text, and
// read one by one they make the same entries; what was saved loads again to the same entries, but for those that
// unsaved() tells.
#include "input.hpp"

#include <zolt/config/file_item.hpp>
#include <zolt/config/user_item.hpp>
#include <zolt/generic/varg_list.hpp>
#include <zolt/types/nil.hpp>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace zolt::config;
using fuzz::check;
using zolt::strings::ustring8;

void check_tokens(ustring8 const& text) {
    unsigned position = 0;
    config_token token;
    for (unsigned before = 0; base_config_item::get_token(text, position, token) != config_token::T_END;
         before = position) {
        bool const is_string = token.kind == config_token::T_STRING;
        bool const is_open = is_string && token.end == text.size() + 1;
        check(token.start == before && token.end == position && position > before, "tokens follow one another");
        check(position <= text.size() || is_open, "tokens end with the text");
        ustring8 covered = text.substr(before, position - before);
        if (covered == "\r\n") covered = "\n";
        if (is_string) covered = covered.substr(1, covered.size() - (is_open ? 1 : 2));
        check(token.kind == config_token::T_SPACE || token.text == covered, "a token's text");
    }
    check(position >= text.size(), "the tokens cover the text");
}

/// By full key: "=" and the value, or "[]" for the head of an array.
using entries = std::map<ustring8, ustring8>;

void collect(config_tree const& tree, ustring8 const& path, entries& found) {
    for (auto const& [name, node] : tree) {
        ustring8 const key = path + name;
        if (node->has_entry()) found[key] = node->kind() == 2 ? ustring8("[]") : "=" + node->value().as_utf8();
        collect(*node, key + ".", found);
    }
}

/// The entries that a file keeps: an array that it does not keep takes its elements along.
entries kept(file_item const& item) {
    entries all;
    collect(item.tree(), "", all);
    for (ustring8 key : item.unsaved()) {
        if (!key.empty() && key.back() == '.') key.pop_back(); // the one that keeps an empty last name
        auto entry = all.find(key);
        check(entry != all.end(), "unsaved() tells of entries");
        bool const array = entry->second == "[]";
        all.erase(entry);
        for (unsigned i = 0; array; ++i) {
            entry = all.find(key + "." + std::to_string(i));
            if (entry == all.end() || entry->second == "[]") break;
            all.erase(entry);
        }
    }
    return all;
}

/// The grammar read token by token, which is what it is defined by.
class token_reader {
public:
    explicit token_reader(ustring8 const& text) : m_text(text) {
        using token = config_token;
        for (unsigned kind = next(); kind != token::T_END; kind = next()) {
            if (is_comment() || is_layout()) continue;
            if (kind == token::T_SBRACKET) {
                next();
                m_prefix = text_up_to(token::T_EBRACKET);
                if (m_token.kind == token::T_END) m_prefix.clear();
                if (!m_prefix.empty()) m_prefix += ".";
                continue;
            }
            std::string key = text_up_to(token::T_EQ);
            if (m_token.kind == token::T_END) return;
            bool const is_array = key.ends_with("[]");
            if (is_array) key.resize(key.size() - 2);
            texts_t const texts = read_texts(is_array);
            if (texts.back().empty()) continue;
            zolt::generic::varg_list list;
            for (std::string const& each : texts) list.push_back(zolt::types::variant(ustring8(each)));
            if (is_array) item.set_array(ustring8(m_prefix + key), list, {});
            if (!is_array) item.set(ustring8(m_prefix + key), list[0].value(), 0);
        }
    }
    user_item item;

private:
    using texts_t = std::vector<std::string>;

    unsigned next() {
        base_config_item::get_token(m_text, m_position, m_token);
        return m_token.kind;
    }
    bool is_layout() const {
        return m_token.kind == m_token.T_SPACE || m_token.kind == m_token.T_TABCHAR ||
               m_token.kind == m_token.T_NEWLINE;
    }
    bool is_comment() {
        bool const is = m_token.kind == m_token.T_POUND || m_token.kind == m_token.T_FSFS;
        if (is) m_position = static_cast<unsigned>(std::min(m_text.find('\n', m_position), m_text.size()));
        return is;
    }
    std::string text_up_to(unsigned last) {
        std::string text;
        for (unsigned kind = m_token.kind; kind != last && kind != m_token.T_END; kind = next()) {
            if (!is_layout()) text += m_token.text;
        }
        return text;
    }
    texts_t read_texts(bool is_array) {
        texts_t texts(1);
        bool is_open = false;
        for (unsigned kind = next(); kind != m_token.T_END; kind = next()) {
            if (kind == m_token.T_NEWLINE && !is_open) break;
            if (is_comment() || is_layout()) continue;
            is_open = is_array && kind == m_token.T_NON_ALPHA_NUM && m_token.text == ",";
            if (is_open) texts.emplace_back();
            if (!is_open) texts.back() += m_token.text;
        }
        return texts;
    }

    ustring8 m_text;
    unsigned m_position = 0;
    config_token m_token;
    std::string m_prefix;
};

} // namespace

void fuzz::run(input in) {
    static private_folder const folder;
    ustring8 const text = in.text();
    check_tokens(text);
    folder.write("cfg", text);
    file_item item(folder.path("cfg"));
    check(item.load(), "any text is valid");
    entries read, read_by_token;
    collect(item.tree(), "", read);
    collect(token_reader(text).item.tree(), "", read_by_token);
    check(read == read_by_token, "the grammar, read token by token");
    while (!in.empty()) {
        unsigned const kind = in.below(4);
        ustring8 const key = in.text();
        ustring8 const value = in.text();
        if (kind == 3)
            item.set(value, 0);
        else
            item.set(key, kind == 2 ? zolt::types::variant() : zolt::types::variant(value), kind);
    }
    entries const expected = kept(item);
    item.save();
    std::string const saved = folder.read("cfg");

    file_item again(folder.path("cfg"));
    again.load();
    entries loaded;
    collect(again.tree(), "", loaded);
    check(loaded == expected, "what was saved loads again");
    check(again.unsaved().empty(), "what was loaded from a saved file can be saved");
    again.save();
    check(folder.read("cfg") == saved, "saved again, the file is the same");
}
