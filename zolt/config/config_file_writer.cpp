// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// One walk over the tree shows each entry that has a line of its own with the texts that go on the line: one
// for a scalar, as many as it has elements for an array. Texts are written bare where the grammar brings
// them back, else between double quotes. The grammar has no escapes, so some texts cannot be written.
#include <zolt/config/config_file_writer_private.hpp>

#include <zolt/config/config_children_private.hpp>

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>
#include <utility>

namespace ZOLT_2_18::config {
namespace {

using _private::child;
using _private::child_cursor;
using strings::ustring8;

constexpr unsigned int array_kind = 2;
constexpr std::string_view array_mark = "[]";
constexpr unsigned long long largest_file = 0x7FFFFFFF;

/// What one line holds.
struct line {
    ustring8 const& path; ///< the names of the nodes on the way, joined by "."
    bool is_array;
    bool has_quoted_path;        ///< whether a double quote is in the path
    bool has_head_value;         ///< whether the head of an array holds a value, for which there is no place
    std::vector<ustring8> texts; ///< the value, or the elements
};

/// The elements up to the first gap. An element that is an array itself is a gap, too.
void append_elements(config_tree const& head, std::vector<ustring8>& texts) {
    for (unsigned int i = 0;; ++i) {
        child const* const element = find_child(head, _private::key_path(std::to_string(i)));
        if (!element || element->is_nil() || element->kind() == array_kind) return;
        texts.push_back(element->value().as_utf8());
    }
}

/// Whether the name is that of one of the first `count` elements of an array.
bool is_element(std::string_view name, std::size_t count) {
    std::size_t index = 0;
    char const* const last = name.data() + name.size();
    auto const [end, error] = std::from_chars(name.data(), last, index);
    bool const has_leading_zero = name.size() > 1 && name.front() == '0';
    return error == std::errc() && end == last && !has_leading_zero && index < count;
}

/// Fills in what the line of a child would hold.
void show(child const& here, line& shown) {
    shown.is_array = here.kind() == array_kind;
    shown.has_head_value = shown.is_array && !here.is_nil();
    shown.texts.clear();
    if (shown.is_array) {
        append_elements(*here.node(), shown.texts);
    } else {
        shown.texts.push_back(here.value().as_utf8());
    }
}

struct walk_level {
    child_cursor rest;
    std::size_t path_size;
    std::size_t elements; ///< how many of the children are on the line of the node above
    bool has_quoted_path;
};

/// Calls visit(line const&) for every line, in the order of the tree.
template <typename Visitor>
void walk(config_tree const& tree, Visitor visit) {
    ustring8 path;
    line shown{path, false, false, false, {}};
    std::vector<walk_level> levels{{child_cursor(tree), 0, 0, false}};
    while (!levels.empty()) {
        walk_level& level = levels.back();
        if (level.rest.at_end()) {
            levels.pop_back();
            continue;
        }
        child const& here = level.rest.take();
        std::string_view const name = here.name();
        path.resize(level.path_size);
        path += name;
        shown.has_quoted_path = level.has_quoted_path || name.find('"') != name.npos;
        show(here, shown);
        if (here.has_entry() && !is_element(name, level.elements)) visit(std::as_const(shown));
        if (here.is_leaf()) continue;
        std::size_t const elements = shown.is_array ? shown.texts.size() : 0;
        path += '.';
        levels.push_back({child_cursor(*here.node()), path.size(), elements, shown.has_quoted_path});
    }
}

// What can be written.

/// A double quote ends a string unless a backslash stands before it.
bool is_quotable(std::string_view text) {
    for (auto at = text.find('"'); at != text.npos; at = text.find('"', at + 1)) {
        if (at == 0 || text[at - 1] != '\\') return false;
    }
    return true;
}

/// True for a path of several names the last of which is empty.
bool ends_empty(std::string_view path) { return path.ends_with('.'); }

bool is_writable(line const& shown) {
    // The key "a." is "a" for the array's head, but the elements' keys "a..0" go through an empty name.
    if (shown.is_array && ends_empty(shown.path)) return false;
    if (shown.has_quoted_path || shown.has_head_value) return false;
    // An empty text assigns nothing, be it a value or the last element.
    if (shown.texts.empty() || shown.texts.back().empty()) return false;
    return std::all_of(shown.texts.begin(), shown.texts.end(), is_quotable);
}

// How it is written.

bool contains_any(std::string_view text, std::string_view bytes) { return text.find_first_of(bytes) != text.npos; }

bool needs_quotes(std::string_view value, bool is_array) {
    return contains_any(value, is_array ? " \t\r\n\"#," : " \t\r\n\"#") || value.starts_with('=') ||
           value.find("//") != value.npos;
}

/// `mark` is what follows the key: "=", which makes one token with some bytes before it, or "[]=".
bool key_needs_quotes(std::string_view key, std::string_view mark) {
    char const first = key.empty() ? mark.front() : key.front();
    bool const merges = mark == "=" && !key.empty() && contains_any(key.substr(key.size() - 1), "+-*:<>");
    return merges || first == '#' || first == '[' || contains_any(key, " \t\r\n=");
}

/// Between quotes a backslash belongs to the byte after it. Of those before a quote only the last may do
/// so, and of those at the end none: the others go outside the quotes, where they are bytes like any other.
void append_quoted(ustring8& out, std::string_view text) {
    auto const content = text.substr(0, text.find_last_not_of('\\') + 1);
    out += '"';
    for (std::size_t at = 0; at < content.size();) {
        std::size_t const run = std::min(content.find('\\', at), content.size());
        std::size_t const run_end = std::min(content.find_first_not_of('\\', run), content.size());
        out.append(content, at, run - at);
        if (run_end - run > 1 && content[run_end] == '"') {
            out.append(1, '"').append(run_end - run - 1, '\\').append("\"\\");
        } else {
            out.append(content, run, run_end - run);
        }
        out.append(content, run_end, 1);
        at = run_end + 1;
    }
    out += '"';
    out.append(text, content.size());
}

void append(ustring8& out, std::string_view text, bool in_quotes) {
    if (in_quotes) {
        append_quoted(out, text);
    } else {
        out += text;
    }
}

void append_line(ustring8& out, line const& shown) {
    ustring8 key = shown.path;
    // A separator more, which is none to the tree, keeps the last name empty, and "[]" a part of the name.
    if (ends_empty(key) || (!shown.is_array && std::string_view(key).ends_with(array_mark))) key += '.';
    char const* const mark = shown.is_array ? "[]=" : "=";
    append(out, key, key_needs_quotes(key, mark));
    out += mark;
    for (ustring8 const& text : shown.texts) {
        if (&text != &shown.texts.front()) out += ',';
        append(out, text, needs_quotes(text, shown.is_array));
    }
    out += '\n';
}

/// Keys of nodes share their paths, so a text can be far longer than what the tree holds. This tells how
/// long it is at least, without making it.
unsigned long long least_size(config_tree const& tree) {
    unsigned long long size = 0;
    walk(tree, [&size](line const& shown) {
        if (!is_writable(shown)) return;
        size += shown.path.size() + 1;
        for (ustring8 const& text : shown.texts) size += text.size() + 1;
    });
    return size;
}

} // namespace

namespace _private {

std::optional<ustring8> write_config_text(config_tree const& tree) {
    unsigned long long const expected = least_size(tree);
    if (expected > largest_file) return std::nullopt;
    ustring8 text;
    text.reserve(static_cast<std::size_t>(expected));
    walk(tree, [&text](line const& shown) {
        if (is_writable(shown)) append_line(text, shown);
    });
    if (text.size() > largest_file) return std::nullopt;
    return text;
}

std::vector<ustring8> unwritable_keys(config_tree const& tree) {
    std::vector<ustring8> keys;
    walk(tree, [&keys](line const& shown) {
        if (is_writable(shown)) return;
        keys.push_back(ends_empty(shown.path) ? shown.path + "." : shown.path);
    });
    return keys;
}

} // namespace _private
} // namespace ZOLT_2_18::config
