// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "config_commands.hpp"

#include "config_rules.hpp"
#include "config_statements.hpp"
#include "config_text_edit.hpp"
#include "tools/program/files.hpp"
#include "tools/program/findings.hpp"
#include "tools/program/hexadecimal.hpp"
#include "tools/program/json.hpp"
#include "tools/program/utf8.hpp"

#include <zolt/config/config_tree.hpp>
#include <zolt/config/file_item.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/system/io.hpp>

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tools {
namespace {

using zolt::config::config_tree;
using zolt::config::file_item;

// Words for other programs, the same in every language.
constexpr std::string_view source_words[] = {"command line", "file", "environment"};

char to_lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char to_separator(char c) { return c == '/' || c == '\\' ? '.' : c; }

/// The key of a value, which for an array is that of an element.
ustring8 key_of_value(setting const& which, std::size_t index) {
    if (!which.is_array) return which.key;
    return which.key + (which.key.ends_with('.') ? "" : ".") + which.indices[index];
}

/// With stars in the place of arguments that are no settings; one may be meant to be a secret.
ustring8 without_arguments(ustring8 const& text) {
    constexpr std::string_view begin = "unknown key:";
    constexpr std::string_view end = "\nIgnoring key and continuing";
    ustring8 masked;
    std::size_t at = 0;
    for (auto found = text.find(begin); found != text.npos; found = text.find(begin, at)) {
        masked.append(text, at, found + begin.size() - at).append("***");
        at = std::min(text.find(end, found), text.size());
    }
    return masked.append(text, at, text.npos);
}

bool is_loaded(session const& session, config_settings const& settings, bool has_masks = false) {
    if (!settings.warnings().empty()) {
        ustring8 const text = has_masks ? without_arguments(settings.warnings()) : settings.warnings();
        session.complain(std::string_view(text).substr(0, text.find_last_not_of('\n') + 1));
    }
    if (settings.is_file_read()) return true;
    session.complain(session.texts.get(phrase::not_readable, why_unreadable(settings.file_name())));
    return false;
}

//--------------------------------------------------------------------------------------------------
// show and list

/// Where settings come from.
class origins {
public:
    origins(session const& session, config_settings const& settings)
        : m_session(session), m_file(settings.file_name()) {
        ustring8 text;
        // A pipe has been read, and cannot be read again.
        if (zolt::system::io::is_file(m_file) && zolt::system::load_file(m_file, text) == 0) {
            find_config_lines(text, m_lines);
        }
    }

    ustring8 const& file() const { return m_file; }
    /// 0 when it is not known.
    std::size_t line(setting const& which) const {
        return which.line != 0 ? which.line : line_at(m_lines.get_node(which.key));
    }
    /// Of each value: elements of an array may come from several statements.
    std::vector<std::size_t> lines(setting const& which) const {
        if (which.line != 0) return std::vector<std::size_t>(which.values.size(), which.line);
        config_tree const* const node = m_lines.get_node(which.key);
        std::vector<std::size_t> found(which.values.size(), line_at(node));
        for (std::size_t i = 0; node && i != which.indices.size(); ++i) {
            if (std::size_t const line = line_at(node->get_node(which.indices[i]))) found[i] = line;
        }
        return found;
    }
    /// For people: one place, or one for each element where they differ.
    ustring8 describe(setting const& which) const {
        if (which.source == command_line_source) return m_session.texts.get(phrase::source_command_line);
        if (which.source == environment_source) return m_session.texts.get(phrase::source_environment);
        std::vector<std::size_t> all = lines(which);
        bool const is_one = std::adjacent_find(all.begin(), all.end(), std::not_equal_to<>()) == all.end();
        if (is_one) all = {all.empty() ? line(which) : all.front()};
        ustring8 places;
        for (std::size_t const each : all) places.append(places.empty() ? "" : ", ").append(place(each));
        return places;
    }
    /// For other programs.
    ustring8 name(setting const& which, std::size_t line) const {
        ustring8 const word{std::string(source_words[which.source])};
        return which.source == file_source ? ustring8(word + ":" + place(line)) : word;
    }

private:
    static std::size_t line_at(config_tree const* node) {
        return node && node->has_entry() ? static_cast<std::size_t>(node->value().as_uint64()) : 0;
    }
    ustring8 place(std::size_t line) const {
        return line == 0 ? m_file : ustring8(m_file + ":" + std::to_string(line));
    }

    session const& m_session;
    ustring8 m_file;
    config_tree m_lines;
};

/// What a file assigns to each key before the assignment that counts.
class earlier_assignments {
public:
    explicit earlier_assignments(ustring8 const& file) {
        if (!zolt::system::io::is_file(file) || zolt::system::load_file(file, m_text) != 0) return;
        config_places places(m_tree);
        config_statements statements(m_text);
        while (statements.next()) {
            config_statement const& statement = statements.current();
            config_tree const* const node = places.find(statement);
            bool const is_array = statement.kind == config_statement::array;
            if (node && statement.has_effect)
                m_found[node].push_back({statement.place.line, is_array, statement.values});
        }
    }

    /// As overridden settings, the last one first.
    void for_each(setting const& last, std::function<void(setting const&)> const& visit) const {
        auto const found = m_found.find(m_tree.get_node(last.key));
        if (found == m_found.end()) return;
        for (auto each = found->second.rbegin() + 1; each < found->second.rend(); ++each) {
            setting earlier{last.key, file_source, each->is_array, {}, true, {}, each->line};
            for (std::size_t i = 0; i != each->values.size(); ++i) {
                earlier.values.push_back(value_of(each->values[i].in(m_text)));
                if (each->is_array) earlier.indices.push_back(std::to_string(i));
            }
            visit(earlier);
        }
    }

private:
    struct assignment {
        std::size_t line;
        bool is_array;
        std::vector<text_range> values;
    };

    static ustring8 value_of(std::string_view written) {
        // The blank keeps the mark apart from what might make a pair with it.
        ustring8 const assignment = ustring8("= ").append(written);
        return file_item::make_key_value(assignment, zolt::config::config_token::T_EQ).second.as_utf8();
    }

    ustring8 m_text;
    config_tree m_tree;
    std::unordered_map<config_tree const*, std::vector<assignment>> m_found;
};

/// Calls `visit` for all settings that are to be shown.
void for_each_setting(config_settings const& settings, bool has_overridden,
                      std::function<void(setting const&)> const& visit) {
    if (!has_overridden) return settings.for_each(shown_settings::effective, visit);
    earlier_assignments const earlier(settings.file_name());
    settings.for_each(shown_settings::all, [&](setting const& which) {
        visit(which);
        if (which.source == file_source) earlier.for_each(which, visit);
    });
}

/// Whether the pattern occurs in the key; "*" is any text, "?" any byte. Letters count as small ones, and all
/// separators as one.
bool occurs(std::string_view pattern, std::string_view text) {
    auto const fits = [](char wanted, char met) {
        return wanted == '?' || to_lower(to_separator(wanted)) == to_lower(met);
    };
    // What follows a "*" is found as early as possible; only the last one is ever taken back.
    std::size_t next = 0;       // in the pattern
    std::size_t after_star = 0; // the pattern begins with one, as it were
    std::size_t restart = 0;    // in the text, for what follows the star
    for (std::size_t at = 0; next != pattern.size();) {
        if (pattern[next] == '*') {
            after_star = ++next;
            restart = at;
        } else if (at == text.size()) {
            return false;
        } else if (fits(pattern[next], text[at])) {
            ++next;
            ++at;
        } else {
            next = after_star;
            at = ++restart;
        }
    }
    return true;
}

/// What is to be shown of settings.
struct shown_parts {
    origins const* from = nullptr;
    bool has_state = false; ///< whether they count, in forms for other programs; then all are shown
    std::vector<ustring8> const* masks = nullptr;
};

/// A setting with stars in the place of the values that a mask hides.
setting masked(setting which, shown_parts const& parts) {
    constexpr char mask[] = "***";
    if (!parts.masks || parts.masks->empty()) return which;
    for (std::size_t i = 0; i != which.values.size(); ++i) {
        // A separator at the end of a key counts for nothing.
        ustring8 const key = key_of_value(which, i) + ".";
        bool const is_hidden = std::any_of(parts.masks->begin(), parts.masks->end(), [&](ustring8 const& each) {
            return occurs(each, key) || (which.is_array && occurs(each, which.key + "[]"));
        });
        if (is_hidden) which.values[i] = mask;
    }
    return which;
}

/// As it would be written in a file, in quotes where these matter.
ustring8 written(ustring8 const& text, bool is_element) {
    return printable(text.empty() ? ustring8("\"\"") : written_value(text, is_element));
}

void print_line(session const& session, setting const& which, origins const* from) {
    ustring8 line = printable(which.key);
    line += which.is_array ? "[] =" : " =";
    for (ustring8 const& value : which.values) {
        line.append(&value == &which.values.front() ? " " : ", ").append(written(value, which.is_array));
    }
    ustring8 note = from ? from->describe(which) : ustring8();
    if (which.is_overridden) {
        note = from ? session.texts.get(phrase::origin_overridden, {{"origin", note}})
                    : session.texts.get(phrase::setting_overridden);
    }
    if (!note.empty()) line.append("  ").append(session.out.paint(colour::place, "# " + printable(note)));
    session.out.line(line);
}

/// The bytes that end a part of a record are written as escapes within it. A key has no backslash of its own.
ustring8 without(std::string_view ends, ustring8 const& text) {
    ustring8 result;
    std::size_t at = 0;
    for (auto end = text.find_first_of(ends); end != text.npos; end = text.find_first_of(ends, at)) {
        result.append(text, at, end - at).append(text[end] == '\n' ? "\\x0A" : "\\x00");
        at = end + 1;
    }
    return result.append(text, at, text.npos);
}

std::string_view state_of(setting const& which) { return which.is_overridden ? "overridden" : "effective"; }

/// For other programs: every value is a record of its own.
void print_record(session const& session, setting const& which, shown_parts const& parts) {
    constexpr std::string_view nul("\0", 1);
    std::vector<std::size_t> const lines = parts.from ? parts.from->lines(which) : std::vector<std::size_t>();
    for (std::size_t i = 0; i != which.values.size(); ++i) {
        if (parts.from) {
            session.out.write(parts.from->name(which, lines[i]));
            session.out.write(nul);
        }
        if (parts.has_state) {
            session.out.write(state_of(which));
            session.out.write(nul);
        }
        session.out.write(without(std::string_view("\0\n", 2), key_of_value(which, i)) + "\n");
        session.out.write(without(nul, which.values[i]));
        session.out.write(nul);
    }
}

// Texts that are no UTF-8 have no place in JSON; what is written instead has another name.
void append_values(json_writer& json, ustring8 const& key, std::vector<ustring8> const& values, bool is_array) {
    is_strict_utf8(key) ? json.member("key", key) : json.member("key_hex", hex(key));
    bool const is_text = std::all_of(values.begin(), values.end(), is_strict_utf8);
    auto const shown = [is_text](ustring8 const& value) { return is_text ? value : hex(value); };
    if (!is_array) return json.member(is_text ? "value" : "value_hex", shown(values.front()));
    json.begin_array(is_text ? "values" : "values_hex");
    for (ustring8 const& value : values) json.value(shown(value));
    json.end_array();
}

/// Of elements, by their indices.
void append_lines(json_writer& json, setting const& which, std::vector<std::size_t> const& lines) {
    if (std::find(lines.begin(), lines.end(), 0u) != lines.end()) return; // not known
    json.begin_object("lines");
    for (std::size_t i = 0; i != lines.size(); ++i) json.member(which.indices[i], lines[i]);
    json.end_object();
}

void append_json(json_writer& json, setting const& which, shown_parts const& parts) {
    json.begin_object();
    append_values(json, which.key, which.values, which.is_array);
    if (parts.has_state) json.member("state", state_of(which));
    if (origins const* const from = parts.from) {
        json.member("source", source_words[which.source]);
        if (which.source == file_source) {
            json.member("file", from->file());
            if (std::size_t const line = from->line(which)) json.member("line", line);
            if (which.is_array) append_lines(json, which, from->lines(which));
        }
    }
    json.end_object();
}

void print_json(session const& session, config_settings const& settings, shown_parts const& parts) {
    json_writer json;
    json.begin_object();
    json.begin_array("settings");
    for_each_setting(settings, parts.has_state, [&](setting const& which) {
        append_json(json, masked(which, parts), parts);
        session.out.write(json.take());
    });
    json.end_array();
    json.end_object();
    session.out.line(json.text());
}

//--------------------------------------------------------------------------------------------------
// get

// As it is for other programs, harmless for a terminal.
void print_value(session const& session, ustring8 const& value) {
    session.out.line(session.out.is_terminal() ? printable(value, line_feeds::keep) : value);
}

//--------------------------------------------------------------------------------------------------
// check

// In the one spelling of a key that others are compared in.
ustring8 plain_spelling(std::string_view key) {
    ustring8 plain(key.substr(0, key.size() - (key.ends_with("[]") ? 2 : 0)));
    std::transform(plain.begin(), plain.end(), plain.begin(), [](char c) { return to_lower(to_separator(c)); });
    if (plain.ends_with('.')) plain.pop_back();
    return plain;
}

bool has_key(found_config_fault const& found, std::string_view key) {
    std::size_t const section_size = found.section ? found.section->size() + 1 : 0;
    if (section_size + found.key->size() > key.size() + 1) return false; // a long section is not copied each time
    ustring8 const name = found.section ? ustring8(*found.section + "." + *found.key) : *found.key;
    return plain_spelling(name) == plain_spelling(key);
}

// With --ignore=RULE:KEY.
bool is_ignored(session const& session, rule const& rule, found_config_fault const& found) {
    std::vector<ignored_rule> const& ignored = session.options.ignored;
    return std::any_of(ignored.begin(), ignored.end(), [&](ignored_rule const& each) {
        return !each.scope.empty() && std::string_view(each.rule) == rule.name && has_key(found, each.scope);
    });
}

/// The begin of the first line, as a name that is not closed may take in a whole file, with all its secrets.
ustring8 quoted(std::string_view text) {
    constexpr std::size_t most_characters = 60;
    std::string_view const line = text.substr(0, text.find('\n'));
    std::size_t size = 0;
    for (std::size_t count = 0; count != most_characters && size < line.size(); ++count) {
        size += std::max<std::size_t>(utf8_size(line.substr(size)), 1);
    }
    return printable(line.substr(0, size)) + (size < text.size() ? "…" : "");
}

void check_text(session const& session, finding_list& found, ustring8 const& path, ustring8 const& text) {
    for (found_config_fault const& each : find_config_faults(text)) {
        auto const& [key, fault, section] = each;
        rule const& rule = config_rule_of(fault.text);
        if (is_ignored(session, rule, each)) continue;
        auto const line = static_cast<unsigned long long>(fault.line);
        ustring8 const what = session.texts.get(
            fault.text,
            {{"key", quoted(*key)}, {"part", quoted(fault.part)}, {"line", line}, {"mark", fault.mark}});
        found.add({path, fault.place.line, fault.place.column, rule.level, rule.name, what});
    }
}

/// Returns how many of the files could be read.
std::size_t check_files(session const& session, std::vector<ustring8> const& files, finding_list& found) {
    std::vector<ustring8> complaints; // which would break into the bar
    std::size_t done = 0;
    {
        progress_bar progress(session.err);
        for (ustring8 const& path : files) {
            if (!session.options.is_quiet) progress.show(done++, files.size());
            ustring8 text;
            if (zolt::system::load_file(path, text) == 0) {
                check_text(session, found, path, text);
            } else {
                complaints.push_back(session.texts.get(phrase::not_readable, why_unreadable(path)));
            }
        }
    }
    for (ustring8 const& each : complaints) session.complain(each);
    return files.size() - complaints.size();
}

} // namespace

exit_status show_config(session const& session, config_show_options const& options) {
    return list_config(session, {options.sources, options.has_origin, false, false, {}});
}

exit_status list_config(session const& session, config_list_options const& options) {
    if (options.has_records && session.is_json()) {
        session.complain(session.texts.get(phrase::options_exclude,
                                           {{"option", ustring8("-z")}, {"other", ustring8("--format=json")}}));
        return exit_failed;
    }
    config_settings const settings(options.sources);
    if (!is_loaded(session, settings, !options.masks.empty())) return exit_failed;
    std::optional<origins> from;
    if (options.has_origin) from.emplace(session, settings);
    shown_parts const parts{from ? &*from : nullptr, options.has_overridden, &options.masks};
    if (session.is_json()) {
        print_json(session, settings, parts);
        return exit_good;
    }
    for_each_setting(settings, options.has_overridden, [&](setting const& which) {
        setting const visible = masked(which, parts);
        options.has_records ? print_record(session, visible, parts) : print_line(session, visible, parts.from);
    });
    return exit_good;
}

exit_status get_config(session const& session, config_get_options const& options) {
    config_settings const settings(options.sources);
    if (!is_loaded(session, settings)) return exit_failed;
    zolt::config::config_manager const& manager = settings.manager();
    bool const is_array = manager.is_array(options.key);
    std::vector<ustring8> values;
    if (is_array) {
        std::vector<zolt::types::variant> elements;
        manager.get_array(options.key, elements);
        for (zolt::types::variant const& element : elements) values.push_back(element.as_utf8());
    } else if (manager.value_exist(options.key)) {
        values.push_back(manager.get_value(options.key, zolt::types::variant()).as_utf8());
    } else if (options.default_value) {
        values.push_back(*options.default_value);
    } else {
        session.complain(session.texts.get(phrase::no_setting, {{"key", options.key}}));
        return exit_findings;
    }
    if (!session.is_json()) {
        for (ustring8 const& value : values) print_value(session, value);
        return exit_good;
    }
    json_writer json;
    json.begin_object();
    append_values(json, options.key, values, is_array);
    json.end_object();
    session.out.line(json.text());
    return exit_good;
}

exit_status check_config(session const& session, std::vector<ustring8> const& files) {
    finding_list found(session);
    std::size_t const read = check_files(session, files, found);
    if (session.is_json()) {
        json_writer json;
        json.begin_object();
        json.member("files", read);
        found.append_to(json);
        json.end_object();
        session.out.line(json.text());
    } else {
        found.print();
        if (!session.options.is_quiet) {
            auto const counted = [&](phrase one, std::size_t number) { return session.texts.counted(one, number); };
            session.out.line(
                session.texts.get(phrase::config_check_summary,
                                  {{"files", counted(phrase::files_one, read)},
                                   {"errors", counted(phrase::errors_one, found.count(severity::error))},
                                   {"warnings", counted(phrase::warnings_one, found.count(severity::warning))}}));
        }
    }
    return read == files.size() ? found.status() : exit_failed;
}

} // namespace tools
