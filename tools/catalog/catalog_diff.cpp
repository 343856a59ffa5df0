// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_diff.hpp"

#include "catalog_tree.hpp"
#include "tools/program/json.hpp"
#include "tools/program/languages.hpp"
#include "tools/program/notation.hpp"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tools {
namespace {

enum class change { added, removed, changed };
constexpr std::string_view marks = "+-~";
constexpr std::string_view words[] = {"added", "removed", "changed"};

/// In quotes, so that blanks at the edges show, and in one line.
ustring8 quoted(std::string_view text) {
    ustring8 escaped = "\"";
    for (char const c : text) {
        if (c == '"' || c == '\\') escaped += '\\';
        c == '\n' ? escaped += "\\n" : escaped += c;
    }
    return printable(escaped += '"');
}

struct difference {
    message_key const* key;
    catalog_message const* before; // null for one that is added
    catalog_message const* after;  // null for one that is removed

    change kind() const { return !before ? change::added : !after ? change::removed : change::changed; }
    ustring8 const& language() const { return (after ? after : before)->message._orginal_locale(); }
    bool has_new_meta() const { return !before || !after || before->message.meta() != after->message.meta(); }
};

class catalog_diff {
public:
    explicit catalog_diff(session const& session) : m_session(session), m_old(session), m_new(session) {}

    exit_status run(ustring8 const& old_path, ustring8 const& new_path) {
        bool const has_old = m_old.read({old_path});
        if (!m_new.read({new_path}) || !has_old) return exit_failed;
        compare();
        if (m_session.is_json()) {
            print_json();
        } else if (!m_session.options.is_quiet) {
            for (difference const& found : m_differences) print(found);
        }
        return m_differences.empty() ? exit_good : exit_findings;
    }

private:
    // Both are sorted.
    void compare() {
        auto const& before = m_old.served();
        auto const& after = m_new.served();
        auto old_message = before.begin();
        auto new_message = after.begin();
        while (old_message != before.end() || new_message != after.end()) {
            bool const is_old = new_message == after.end() ||
                                (old_message != before.end() && old_message->first <= new_message->first);
            bool const is_new = old_message == before.end() ||
                                (new_message != after.end() && new_message->first <= old_message->first);
            add({is_old ? &old_message->first : &new_message->first, is_old ? old_message->second : nullptr,
                 is_new ? new_message->second : nullptr});
            if (is_old) ++old_message;
            if (is_new) ++new_message;
        }
    }

    void add(difference const& pair) {
        auto const& language = m_session.options.language;
        if (language && normalized_language(*language) != pair.key->language) return;
        if (pair.kind() != change::changed || !has_same_content(pair.before->message, pair.after->message))
            m_differences.push_back(pair);
    }

    void print(difference const& found) const {
        ustring8 line(1, marks[static_cast<std::size_t>(found.kind())]);
        line.append(" ").append(printable(found.language())).append(" ");
        line.append(printable(found.key->catalog)).append("/").append(printable(found.key->message));
        m_session.out.line(line);
        print_side(m_old, found.before, found.has_new_meta());
        print_side(m_new, found.after, found.has_new_meta());
    }

    void print_side(catalog_tree const& tree, catalog_message const* entry, bool with_meta) const {
        if (!entry) return;
        ustring8 const place = printable(tree.path_of(*entry)) + ":" + std::to_string(entry->line) + ":";
        ustring8 line = "    " + m_session.out.paint(colour::place, place) + " " + quoted(notation(entry->message));
        if (with_meta && !entry->message.meta().empty())
            line.append(" meta ").append(quoted(entry->message.meta()));
        m_session.out.line(line);
    }

    void print_json() const {
        json_writer json;
        json.begin_object();
        for (change const kind : {change::added, change::removed, change::changed}) {
            auto const count = std::count_if(m_differences.begin(), m_differences.end(),
                                             [kind](difference const& found) { return found.kind() == kind; });
            json.member(words[static_cast<std::size_t>(kind)], static_cast<std::size_t>(count));
        }
        json.begin_array("differences");
        for (difference const& found : m_differences) {
            json.begin_object();
            json.member("change", words[static_cast<std::size_t>(found.kind())]);
            json.member("language", found.language());
            json.member("catalog", found.key->catalog);
            json.member("message", found.key->message);
            append_side(json, "old", m_old, found.before);
            append_side(json, "new", m_new, found.after);
            json.end_object();
        }
        json.end_array();
        json.end_object();
        m_session.out.line(json.text());
    }

    static void append_side(json_writer& json, std::string_view name, catalog_tree const& tree,
                            catalog_message const* entry) {
        if (!entry) return;
        json.begin_object(name);
        json.member("file", tree.path_of(*entry));
        json.member("line", entry->line);
        json.member("text", notation(entry->message));
        json.member("meta", entry->message.meta());
        json.end_object();
    }

    session const& m_session;
    catalog_tree m_old;
    catalog_tree m_new;
    std::vector<difference> m_differences;
};

} // namespace

exit_status diff_catalogs(session const& session, ustring8 const& old_path, ustring8 const& new_path) {
    return catalog_diff(session).run(old_path, new_path);
}

} // namespace tools
