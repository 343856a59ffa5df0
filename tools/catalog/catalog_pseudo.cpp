// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A message is taken apart into lines, and each line into texts and placeholders. Directions end with a line
// and brackets show where one is cut off, so a line is what gets a start and an end. What is added to a line stands
// before the punctuation at its end, which other programs compare with that of the reference.
#include "catalog_pseudo.hpp"

#include "catalog_tree.hpp"
#include "check_rules.hpp"
#include "message_json.hpp"
#include "text_words.hpp"
#include "tools/program/languages.hpp"
#include "tools/program/notation.hpp"
#include "tools/program/utf8.hpp"

#include <zolt/strings/unicode.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <utility>

namespace tools {
namespace {

using zolt::i18n::message_item;
using zolt::i18n::message_t;

constexpr std::string_view style_words[] = {"accent", "bidi", "xxx"};
constexpr std::string_view regions[] = {"_XA", "_XB", "_XC"};

constexpr std::string_view accents[] = {"å", "ƀ", "ç", "ð", "é", "ƒ", "ĝ", "ĥ", "î", "ĵ", "ķ", "ļ", "ɱ",
                                        "ñ", "ö", "þ", "ǫ", "ŕ", "š", "ţ", "û", "ṽ", "ŵ", "ẋ", "ý", "ž",
                                        "Å", "Ɓ", "Ç", "Ð", "É", "Ƒ", "Ĝ", "Ĥ", "Î", "Ĵ", "Ķ", "Ļ", "Ṁ",
                                        "Ñ", "Ö", "Þ", "Ǫ", "Ŕ", "Š", "Ţ", "Û", "Ṽ", "Ŵ", "Ẋ", "Ý", "Ž"};
constexpr std::string_view padding = "one two three four five six seven eight nine ten ";

constexpr std::string_view isolate_right_to_left = "\u2067";
constexpr std::string_view end_of_isolate = "\u2069";
constexpr std::string_view override_right_to_left = "\u202E";
constexpr std::string_view end_of_override = "\u202C";

bool is_small(char c) { return c >= 'a' && c <= 'z'; }
bool is_capital(char c) { return c >= 'A' && c <= 'Z'; }

void append_accented(ustring8& line, std::string_view text) {
    for (char const c : text) {
        if (is_small(c)) {
            line += accents[c - 'a'];
        } else if (is_capital(c)) {
            line += accents[26 + c - 'A'];
        } else {
            line += c;
        }
    }
}

std::size_t count_characters(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// True when a text begins with a letter. `size` becomes that of the character, for a byte that is none 1.
bool begins_with_letter(std::string_view text, unsigned long& size) {
    unsigned long const character = zolt::strings::unichar(
        text.data(), static_cast<unsigned long>(std::min<std::size_t>(text.size(), 4)), 0, size);
    bool const is_text = size != zolt::strings::no_index;
    if (!is_text) size = 1;
    return is_text && is_letter(character);
}

void append_crossed_out(ustring8& line, std::string_view text) {
    while (!text.empty()) {
        unsigned long size = 0;
        if (!begins_with_letter(text, size)) {
            line.append(text.substr(0, size));
        } else {
            line += is_capital(text.front()) ? 'X' : 'x';
        }
        text.remove_prefix(size);
    }
}

//--------------------------------------------------------------------------------------------------

/// A text, or a placeholder.
struct segment {
    std::string_view text;
    message_item const* placeholder = nullptr;
};

std::string_view take_blanks(std::string_view& text) {
    std::string_view const blanks = text.substr(0, text.find_first_not_of(" \t\r"));
    text.remove_prefix(blanks.size());
    return blanks;
}

std::string_view take_last_blanks(std::string_view& text) {
    std::size_t const size = text.find_last_not_of(" \t\r") + 1;
    std::string_view const blanks = text.substr(size);
    text = text.substr(0, size);
    return blanks;
}

// What stands behind the last letter or digit.
std::string_view take_last_marks(std::string_view& text) {
    std::size_t size = text.size();
    while (size != 0) {
        std::size_t start = size - 1;
        while (start != 0 && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) --start;
        bool const is_digit = text[start] >= '0' && text[start] <= '9';
        unsigned long character_size = 0;
        if (is_digit || begins_with_letter(text.substr(start, size - start), character_size)) break;
        size = start;
    }
    std::string_view const marks = text.substr(size);
    text = text.substr(0, size);
    return marks;
}

class message_maker {
public:
    explicit message_maker(pseudo_style style) : m_style(style) {}

    message_t make(message_t const& message) {
        std::vector<ustring8> texts; // which the segments look into
        texts.reserve(message.size());
        for (message_item const& item : message) {
            if (item.type() == message_item::value) {
                add_text(texts.emplace_back(item.data()));
            } else {
                m_line.push_back({{}, &item});
            }
        }
        end_line();
        end_text();
        return message_t(message.name(), std::move(m_items), message.meta());
    }

private:
    void add_text(std::string_view text) {
        for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
            if (end != 0) m_line.push_back({text.substr(0, end)});
            end_line();
            m_text += '\n';
            text.remove_prefix(end + 1);
        }
        if (!text.empty()) m_line.push_back({text});
    }

    void end_line() {
        std::string_view before;
        std::string_view after;
        if (!m_line.empty()) {
            before = take_blanks(m_line.front().text);
            after = take_last_blanks(m_line.back().text);
        }
        bool const is_blank =
            m_line.empty() || (m_line.size() == 1 && m_line[0].text.empty() && !m_line[0].placeholder);
        m_text.append(before);
        if (!is_blank) write_line();
        m_text.append(after);
        m_line.clear();
    }

    void write_line() {
        std::size_t characters = 0;
        std::string_view marks;
        if (m_style == pseudo_style::accent) {
            m_text += '[';
            marks = take_last_marks(m_line.back().text);
            characters += count_characters(marks);
        }
        if (m_style == pseudo_style::bidi) m_text += isolate_right_to_left;
        for (segment const& next : m_line) {
            if (next.placeholder) {
                end_text();
                m_items.push_back(*next.placeholder);
            } else {
                write_text(next.text);
                characters += count_characters(next.text);
            }
        }
        if (m_style == pseudo_style::accent) {
            lengthen(characters);
            m_text.append(marks) += ']';
        }
        if (m_style == pseudo_style::bidi) m_text += end_of_isolate;
    }

    void write_text(std::string_view text) {
        if (m_style == pseudo_style::accent) return append_accented(m_text, text);
        if (m_style == pseudo_style::xxx) return append_crossed_out(m_text, text);
        m_text.append(take_blanks(text));
        std::string_view const after = take_last_blanks(text);
        if (!text.empty()) m_text.append(override_right_to_left).append(text).append(end_of_override);
        m_text.append(after);
    }

    // By a third, with a blank before what is added.
    void lengthen(std::size_t characters) {
        bool const is_line_empty = !m_text.empty() && m_text.back() == '[';
        if (characters != 0 && !is_line_empty) m_text += ' ';
        for (std::size_t left = (characters + 2) / 3; left != 0;) {
            std::string_view const part = padding.substr(0, left);
            append_accented(m_text, part);
            left -= part.size();
        }
    }

    void end_text() {
        if (!m_text.empty()) m_items.emplace_back(std::exchange(m_text, {}));
    }

    pseudo_style m_style;
    message_t::items_type m_items;
    ustring8 m_text; // of the item that is being made
    std::vector<segment> m_line;
};

// References stand for any byte, but what is written here says that it is UTF-8.
bool is_utf8(catalog_message const& entry) {
    return is_strict_utf8(entry.catalog) && is_strict_utf8(entry.message.name()) &&
           is_strict_utf8(entry.message.meta()) &&
           std::all_of(entry.message.begin(), entry.message.end(),
                       [](message_item const& item) { return is_strict_utf8(item.data()); });
}

// What was not to be found in the reference is not to be found in what is made of it.
std::vector<ustring8> ignored_rules(catalog_message const& entry) {
    std::vector<ustring8> rules = entry.ignored;
    std::erase_if(rules, [](ustring8 const& rule) { return rule_set_of(rule) == 0; });
    return rules;
}

struct made_message {
    catalog_message const* reference;
    message_t message;
};

void print_catalog(session const& session, std::vector<made_message> const& made) {
    catalog_writer writer;
    for (auto const& [reference, message] : made)
        writer.add(reference->catalog, message, ignored_rules(*reference));
    session.out.write(writer.text());
}

// With findings the messages are left out.
void print_json(session const& session, ustring8 const& language, std::vector<made_message> const& made,
                finding_list& found) {
    json_writer json;
    json.begin_object();
    if (found.status() == exit_good) {
        std::map<ustring8, message_list> catalogs;
        for (auto const& [reference, message] : made) catalogs[reference->catalog].push_back(&message);
        json.member("language", language);
        append_catalogs(json, session.out, catalogs);
    }
    found.append_to(json);
    json.end_object();
    session.out.line(json.text());
}

} // namespace

std::optional<pseudo_style> parse_pseudo_style(std::string_view word) {
    auto const found = std::find(std::begin(style_words), std::end(style_words), word);
    if (found == std::end(style_words)) return std::nullopt;
    return static_cast<pseudo_style>(found - std::begin(style_words));
}

message_t pseudo_message(message_t const& message, pseudo_style style) {
    return message_maker(style).make(message);
}

exit_status make_pseudo_catalogs(session const& session, pseudo_options const& options) {
    catalog_tree tree(session);
    // What was made before is nothing to make more of.
    ustring8 const& own = session.options.result_file;
    if (!tree.read(options.paths, own == "-" ? ustring8() : own)) return exit_failed;
    ustring8 const reference = normalized_language(session.options.reference);
    ustring8 const language =
        session.options.language.value_or(reference + ustring8(regions[static_cast<std::size_t>(options.style)]));

    // Of a region's language also what the region takes from it.
    std::vector<ustring8> served_by{reference};
    for_each_base(reference, [&](std::string_view base) { served_by.emplace_back(base); });
    std::map<std::pair<ustring8, ustring8>, catalog_message const*> chosen;
    for (ustring8 const& part : served_by) {
        for (auto at = tree.served().lower_bound({part, {}, {}});
             at != tree.served().end() && at->first.language == part; ++at)
            chosen.try_emplace({at->first.catalog, at->first.message}, at->second);
    }
    if (chosen.empty()) {
        session.complain(session.texts.get(phrase::po_no_messages));
        return exit_failed;
    }
    finding_list found(session);
    std::vector<made_message> made;
    made.reserve(chosen.size());
    for (auto const& [key, entry] : chosen) {
        if (!is_utf8(*entry))
            found.add({tree.path_of(*entry), entry->line, entry->column, severity::error, "invalid-utf8",
                       session.texts.get(phrase::about_invalid_utf8),
                       entry->catalog + "/" + entry->message.name()});
        made.push_back({entry, pseudo_message(entry->message, options.style)});
        made.back().message._orginal_locale(language);
    }
    if (session.is_json()) {
        print_json(session, language, made, found);
    } else {
        found.print();
        if (found.status() == exit_good) print_catalog(session, made);
    }
    return found.status();
}

} // namespace tools
