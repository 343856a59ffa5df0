// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Any bytes as a configuration file, and as keys and values that an application sets: tokens cover the text;
// what was saved loads again to the same entries, but for those that unsaved() tells.
#include "input.hpp"

#include <zolt/config/file_item.hpp>
#include <zolt/types/nil.hpp>

#include <map>

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

} // namespace

void fuzz::run(input in) {
    static private_folder const folder;
    ustring8 const text = in.text();
    check_tokens(text);
    folder.write("cfg", text);
    file_item item(folder.path("cfg"));
    check(item.load(), "any text is valid");
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
