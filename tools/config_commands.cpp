// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "config_commands.hpp"

#include "config_statements.hpp"
#include "findings.hpp"
#include "json.hpp"

#include <zolt/config/config_tree.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/system/io.hpp>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

namespace tools {
namespace {

using zolt::config::config_tree;

// Words for other programs, the same in every language.
constexpr std::string_view source_words[] = {"command line", "file", "environment"};

bool is_loaded(session const& session, config_settings const& settings) {
    if (!settings.warnings().empty()) {
        ustring8 const& text = settings.warnings();
        session.complain(std::string_view(text).substr(0, text.find_last_not_of('\n') + 1));
    }
    if (settings.is_file_read()) return true;
    session.complain(session.texts.get(phrase::not_readable, {{"path", settings.file_name()}}));
    return false;
}

//--------------------------------------------------------------------------------------------------
// show

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
        config_tree const* const node = m_lines.get_node(which.key);
        return node && node->has_entry() ? static_cast<std::size_t>(node->value().as_uint64()) : 0;
    }
    /// For people.
    ustring8 describe(setting const& which) const {
        if (which.source == command_line_source) return m_session.texts.get(phrase::source_command_line);
        if (which.source == environment_source) return m_session.texts.get(phrase::source_environment);
        std::size_t const at = line(which);
        return at == 0 ? m_file : ustring8(m_file + ":" + std::to_string(at));
    }

private:
    session const& m_session;
    ustring8 m_file;
    config_tree m_lines;
};

/// As it would be written in a file, in quotes where these matter.
ustring8 written(ustring8 const& text, bool is_element) {
    bool const is_plain = !text.empty() && text.find_first_of(is_element ? " \t\r\n#," : " \t\r\n#") == text.npos &&
                          text.find("//") == text.npos;
    return printable(is_plain ? text : ustring8('"' + text + '"'));
}

void print_line(session const& session, setting const& which, origins const* from) {
    ustring8 line = printable(which.key);
    line += which.is_array ? "[] =" : " =";
    for (ustring8 const& value : which.values) {
        line.append(&value == &which.values.front() ? " " : ", ").append(written(value, which.is_array));
    }
    if (from) line.append("  ").append(session.out.paint(colour::place, "# " + printable(from->describe(which))));
    session.out.line(line);
}

void append_json(json_writer& json, setting const& which, origins const* from) {
    json.begin_object();
    json.member("key", which.key);
    if (which.is_array) {
        json.begin_array("values");
        for (ustring8 const& value : which.values) json.value(value);
        json.end_array();
    } else {
        json.member("value", which.values.front());
    }
    if (from) {
        json.member("source", source_words[which.source]);
        if (which.source == file_source) {
            json.member("file", from->file());
            if (std::size_t const line = from->line(which)) json.member("line", line);
        }
    }
    json.end_object();
}

void print_json(session const& session, config_settings const& settings, origins const* from) {
    json_writer json;
    json.begin_object();
    json.begin_array("settings");
    settings.for_each([&](setting const& which) {
        append_json(json, which, from);
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

struct fault_rule {
    phrase text;
    std::string_view rule;
};

constexpr fault_rule fault_rules[] = {
    {phrase::config_bom, "byte-order-mark"},          {phrase::config_no_equals, "key-without-value"},
    {phrase::config_no_value, "empty-value"},         {phrase::config_open_array, "array-lost"},
    {phrase::config_open_string, "unclosed-quote"},   {phrase::config_open_section, "unclosed-section"},
    {phrase::config_joined_key, "key-without-value"}, {phrase::config_joined_array, "array-runs-on"},
};

std::string_view rule_of(phrase text) {
    return std::find_if(std::begin(fault_rules), std::end(fault_rules),
                        [text](fault_rule const& entry) { return entry.text == text; })
        ->rule;
}

void check_text(session const& session, finding_list& found, ustring8 const& path, ustring8 const& text) {
    config_statements statements(text);
    while (statements.next()) {
        config_statement const& statement = statements.current();
        for (config_fault const& fault : statement.faults) {
            ustring8 const what = session.texts.get(fault.text, {{"key", statement.name}, {"part", fault.part}});
            found.add({path, fault.line, 1, severity::warning, rule_of(fault.text), what});
        }
    }
}

} // namespace

exit_status show_config(session const& session, config_show_options const& options) {
    config_settings const settings(options.sources);
    if (!is_loaded(session, settings)) return exit_failed;
    std::optional<origins> from;
    if (options.has_origin) from.emplace(session, settings);
    origins const* const shown = from ? &*from : nullptr;
    if (session.is_json()) {
        print_json(session, settings, shown);
    } else {
        settings.for_each([&](setting const& which) { print_line(session, which, shown); });
    }
    return exit_good;
}

exit_status get_config(session const& session, config_get_options const& options) {
    config_settings const settings(options.sources);
    if (!is_loaded(session, settings)) return exit_failed;
    zolt::config::config_manager const& manager = settings.manager();
    if (manager.is_array(options.key)) {
        std::vector<zolt::types::variant> values;
        manager.get_array(options.key, values);
        for (zolt::types::variant const& value : values) print_value(session, value.as_utf8());
    } else if (manager.value_exist(options.key)) {
        print_value(session, manager.get_value(options.key, zolt::types::variant()).as_utf8());
    } else if (options.default_value) {
        print_value(session, *options.default_value);
    } else {
        session.complain(session.texts.get(phrase::no_setting, {{"key", options.key}}));
        return exit_findings;
    }
    return exit_good;
}

exit_status check_config(session const& session, std::vector<ustring8> const& files) {
    finding_list found(session);
    std::size_t read = 0;
    for (ustring8 const& path : files) {
        ustring8 text;
        if (zolt::system::load_file(path, text) == 0) {
            check_text(session, found, path, text);
            ++read;
        } else {
            session.complain(session.texts.get(phrase::not_readable, {{"path", path}}));
        }
    }
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
            std::size_t const warnings = found.count(severity::warning);
            session.out.line(
                session.texts.get(phrase::config_check_summary,
                                  {{"files", session.texts.counted(phrase::files_one, read)},
                                   {"warnings", session.texts.counted(phrase::warnings_one, warnings)}}));
        }
    }
    return read == files.size() ? found.status() : exit_failed;
}

} // namespace tools
