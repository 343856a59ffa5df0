// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The writer puts as references what the library would drop or read as something else: blanks beside
// blanks and at the start, tabs and other control characters. What options cannot say, such as one
// without a value, stands in the argument's name, which may hold the separators, too.
#include "catalog_texts.hpp"

#include "catalog_layout.hpp"
#include "catalog_scan.hpp"
#include "tools/program/files.hpp"
#include "tools/program/notation.hpp"
#include "tools/program/rules.hpp"

#include <zolt/i18n/_private/xmc_file_loader.hpp>
#include <zolt/parser/xml_token_stream.hpp>
#include <zolt/strings/string_utility.hpp>

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace tools {
namespace {

using zolt::i18n::message_item;
using zolt::i18n::message_t;
using zolt::parser::xml_token_stream;
using token = xml_token_stream::token;
using loader = zolt::i18n::_private::xmc_file_loader;

constexpr char separator = '\1';

/// A message's content, collected by the rules of the format.
class item_list {
public:
    void clear() {
        m_items.clear();
        m_text.clear();
        m_is_after_argument = false;
    }

    void add_characters(std::string_view text) {
        m_text.append(text);
        m_is_after_argument = false;
    }

    void add_space() {
        if (m_text.empty() ? m_is_after_argument : m_text.back() != ' ') m_text += ' ';
        m_is_after_argument = false;
    }

    void add_line_break() { m_text += '\n'; }

    void start_argument() {
        end_text();
        m_type = message_item::string;
    }

    void argument_attribute(ustring8 const& name, ustring8 const& value) {
        if (name == "name") {
            m_text = value;
        } else if (name == "type") {
            m_type = loader::parse_message_type(value);
        } else {
            ((m_text += separator).append(name) += separator).append(value);
        }
    }

    void end_argument() {
        m_items.emplace_back(m_text, m_type == message_item::value ? value_argument : m_type);
        m_text.clear();
        m_is_after_argument = true;
    }

    message_t::items_type const& finish() {
        end_text();
        return m_items;
    }

private:
    void end_text() {
        if (!m_text.empty()) m_items.emplace_back(m_text);
        m_text.clear();
    }

    message_t::items_type m_items;
    ustring8 m_text; // of a literal, or an argument's data
    message_item::type_t m_type = message_item::string;
    bool m_is_after_argument = false;
};

class message_reader {
public:
    message_reader(source_file const& file, std::vector<catalog_message>& messages)
        : m_file(file), m_messages(messages) {}

    // False at the first element that has no business there.
    bool take(token const& next) {
        switch (next.type()) {
        case token::element_start:
            if (m_count == m_file.elements.size()) return false; // the file has changed since
            m_line = m_file.elements[m_count].line;
            m_column = m_file.elements[m_count++].column;
            return start(next.value());
        case token::element_end:
            end();
            return true;
        case token::attribute_name:
            m_attribute = next.value();
            return true;
        case token::attribute_value:
            return attribute(next.value());
        case token::space:
            if (m_place == place::message) m_items.add_space();
            return true;
        case token::character:
            if (m_place == place::message) m_items.add_characters(next.value());
            return m_place != place::line_break;
        case token::comment:
            note_ignored(next.value());
            return true;
        default:
            return true;
        }
    }

    unsigned line() const { return m_line; }

private:
    // Each is a child of the one before, but for the last three.
    enum class place { document, root, catalog, message, argument, line_break, include };

    bool start(ustring8 const& name) {
        if (m_skipped != 0) return ++m_skipped, true;
        switch (m_place) {
        case place::document:
            return name == "xmc" && go(place::root);
        case place::root:
            m_catalog.clear();
            m_language.clear();
            m_ignored.clear();
            return go(name == "include" ? place::include : place::catalog) &&
                   (name == "catalog" || name == "include");
        case place::catalog:
            if (m_language.empty()) return ++m_skipped, true; // never read
            m_items.clear();
            m_name.clear();
            m_meta.clear();
            m_start = {m_line, m_column};
            m_ignored_here = std::exchange(m_ignored, {});
            return name == "msg" && go(place::message);
        case place::message:
            if (name == "br") return go(place::line_break);
            m_items.start_argument();
            return (name == "arg" || name == "argument") && go(place::argument);
        default:
            return false;
        }
    }

    bool attribute(ustring8 const& value) {
        if (m_skipped != 0) return true;
        switch (m_place) {
        case place::root:
            return m_attribute == "version" && (value == "1.0" || value == "1.1");
        case place::catalog:
            return set(value, m_catalog, "lang", m_language);
        case place::message:
            return set(value, m_name, "meta", m_meta);
        case place::argument:
            m_items.argument_attribute(m_attribute, value);
            return true;
        default:
            return m_place == place::include;
        }
    }

    bool set(ustring8 const& value, ustring8& name, std::string_view second, ustring8& other) const {
        if (m_attribute != "name" && m_attribute != second) return false;
        (m_attribute == "name" ? name : other) = value;
        return true;
    }

    void end() {
        if (m_skipped != 0) return void(--m_skipped);
        switch (m_place) {
        case place::message:
            m_messages.push_back({m_catalog, message_t(m_name, m_items.finish(), m_meta), m_file.index,
                                  m_start.first, m_start.second, std::move(m_ignored_here)});
            m_messages.back().message._orginal_locale(m_language);
            go(place::catalog);
            break;
        case place::argument:
            m_items.end_argument();
            go(place::message);
            break;
        case place::line_break:
            m_items.add_line_break();
            go(place::message);
            break;
        default:
            go(m_place == place::root ? place::document : place::root);
        }
    }

    // In a catalog, before a message.
    void note_ignored(ustring8 const& comment) {
        if (m_place != place::catalog || m_skipped != 0) return;
        std::vector<std::string_view> words;
        append_ignored(comment, words);
        m_ignored.insert(m_ignored.end(), words.begin(), words.end());
    }

    bool go(place where) {
        m_place = where;
        return true;
    }

    source_file const& m_file;
    std::vector<catalog_message>& m_messages;
    std::size_t m_count = 0;
    unsigned m_line = 1;
    unsigned m_column = 1;
    place m_place = place::document;
    std::size_t m_skipped = 0; // open elements that nobody looks into
    ustring8 m_attribute;
    ustring8 m_catalog;
    ustring8 m_language;
    ustring8 m_name;
    ustring8 m_meta;
    std::pair<unsigned, unsigned> m_start; // line and column of the message
    item_list m_items;
    std::vector<ustring8> m_ignored;      // for the next message
    std::vector<ustring8> m_ignored_here; // in this one
};

//--------------------------------------------------------------------------------------------------

void append_reference(ustring8& line, char c) {
    line.append("&#").append(std::to_string(static_cast<unsigned char>(c))).append(";");
}

void append_character(ustring8& line, char c) {
    switch (c) {
    case '<':
        line += "&lt;";
        break;
    case '>':
        line += "&gt;";
        break;
    case '&':
        line += "&amp;";
        break;
    case '"':
        line += "&quot;";
        break;
    default:
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) return append_reference(line, c);
        line += c;
    }
}

void append_attribute(ustring8& line, std::string_view name, std::string_view value) {
    line.append(" ").append(name).append("=\"");
    for (char const c : value) append_character(line, c);
    line += '"';
}

// `before` is what the library has read of this text so far; a blank that is no reference counts only
// behind something else.
void append_text(ustring8& line, std::string_view text, bool is_after_argument) {
    char before = is_after_argument ? '\0' : ' ';
    for (char const c : text) {
        if (c == '\n') {
            line += "<br/>";
        } else if (c == ' ' && before == ' ') {
            append_reference(line, c);
        } else if (c == '"') {
            line += c;
        } else {
            append_character(line, c);
        }
        before = c;
    }
}

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool is_name_part(char c) { return is_letter(c) || (c >= '0' && c <= '9') || c == '_'; }

// Key and value in turn, from the second piece on. False unless they can be attributes.
bool are_attributes(std::vector<std::string_view> const& pieces) {
    if (pieces.size() % 2 == 0) return false;
    std::set<std::string_view> keys{"name", "type"};
    for (std::size_t i = 1; i < pieces.size(); i += 2) {
        std::string_view const key = pieces[i];
        bool const is_name =
            !key.empty() && is_letter(key.front()) && std::all_of(key.begin(), key.end(), is_name_part);
        if (!is_name || !keys.insert(key).second) return false;
    }
    return true;
}

void append_argument(ustring8& line, message_item const& item) {
    ustring8 const data = item.data();
    std::vector<std::string_view> pieces = split_item_data(data);
    if (!are_attributes(pieces)) pieces = {data};
    line += "<arg";
    append_attribute(line, "name", pieces.front());
    if (item.type() != message_item::string) append_attribute(line, "type", type_keyword(item.type()));
    for (std::size_t i = 1; i < pieces.size(); i += 2) append_attribute(line, pieces[i], pieces[i + 1]);
    line += "/>";
}

} // namespace

std::vector<std::string_view> split_item_data(std::string_view data) {
    std::vector<std::string_view> pieces;
    for (;;) {
        std::size_t const end = data.find(separator);
        pieces.push_back(data.substr(0, end));
        if (end == std::string_view::npos) return pieces;
        data.remove_prefix(end + 1);
    }
}

bool is_text(message_item const& item, bool is_after_text) {
    return item.type() == message_item::value && !is_after_text && item.data() != "";
}

unsigned read_messages(source_file const& file, std::vector<catalog_message>& messages) {
    ustring8 text;
    xml_token_stream tokens;
    bool const is_read =
        load(file.path, text) && tokens.parse(text).kind == zolt::parser::xml_parser::parse_error::no_error;
    return is_read ? read_messages(file, tokens, messages) : 1;
}

unsigned read_messages(source_file const& file, xml_token_stream const& tokens,
                       std::vector<catalog_message>& messages) {
    message_reader reader(file, messages);
    for (token const& next : tokens) {
        if (!reader.take(next)) return reader.line();
    }
    return 0;
}

message_t read_message(std::string_view text) {
    ustring8 catalog = "<?xml version=\"1.0\"?><xmc version=\"1.0\"><catalog lang=\"en\">";
    catalog.append(text).append("</catalog></xmc>");
    source_file file;
    xml_token_stream tokens;
    read_elements(file, catalog, tokens);
    std::vector<catalog_message> messages;
    bool const is_read = file.is_well_formed && read_messages(file, tokens, messages) == 0;
    return is_read && !messages.empty() ? messages.front().message : message_t();
}

void catalog_writer::add(ustring8 const& catalog, message_t const& message, std::vector<ustring8> const& ignored) {
    auto const [known, is_new] = m_known.try_emplace({catalog, message._orginal_locale()}, m_catalogs.size());
    if (is_new) {
        ustring8& start = m_catalogs.emplace_back("  <catalog");
        append_attribute(start, "name", catalog);
        append_attribute(start, "lang", message._orginal_locale());
        start += ">\n";
    }
    ustring8& text = m_catalogs[known->second];
    if (!ignored.empty()) text += "    <!-- zolt-ignore";
    for (ustring8 const& rule : ignored) text.append(" ").append(rule);
    if (!ignored.empty()) text += " -->\n";
    text += "    <msg";
    append_attribute(text, "name", message.name());
    if (!message.meta().empty()) append_attribute(text, "meta", message.meta());
    text += '>';
    bool is_after_text = false;
    for (auto item = message.begin(); item != message.end(); ++item) {
        is_after_text = is_text(*item, is_after_text);
        is_after_text ? append_text(text, item->data(), item != message.begin()) : append_argument(text, *item);
    }
    text += "</msg>\n";
}

ustring8 catalog_writer::text() const {
    ustring8 text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xmc version=\"1.1\">\n";
    for (ustring8 const& catalog : m_catalogs) text.append(catalog).append("  </catalog>\n");
    return lay_out_catalog(text += "</xmc>\n");
}

} // namespace tools
