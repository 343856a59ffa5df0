// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The reader goes line by line. A comment or a keyword that cannot belong to the entry at hand ends it.
#include "po_file.hpp"

#include "tools/program/utf8.hpp"

#include <zolt/strings/code_page.hpp>
#include <zolt/strings/string_utility.hpp>
#include <zolt/strings/unicode.hpp>

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace tools {
namespace {

using zolt::strings::code_page;

struct named_escape {
    char letter;
    char byte;
};
constexpr named_escape named_escapes[] = {{'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'"', '"'}, {'\\', '\\'},
                                          {'a', '\a'}, {'b', '\b'}, {'f', '\f'}, {'v', '\v'}};

struct charset {
    std::string_view name; // as squeezed() leaves it
    code_page::encoding_type page;
};
// Where an Asian charset has a larger one in use today, that reads it.
constexpr charset charsets[] = {
    {"iso88591", code_page::iso_8859_1}, {"latin1", code_page::iso_8859_1},   {"iso88592", code_page::iso_8859_2},
    {"latin2", code_page::iso_8859_2},   {"iso88593", code_page::iso_8859_3}, {"latin3", code_page::iso_8859_3},
    {"iso88594", code_page::iso_8859_4}, {"latin4", code_page::iso_8859_4},   {"iso88595", code_page::iso_8859_5},
    {"iso88596", code_page::iso_8859_6}, {"iso88597", code_page::iso_8859_7}, {"iso88598", code_page::iso_8859_8},
    {"iso88599", code_page::iso_8859_9}, {"latin5", code_page::iso_8859_9},   {"iso885915", code_page::iso_8859_15},
    {"latin9", code_page::iso_8859_15},  {"cp1250", code_page::cp1250},       {"cp1251", code_page::cp1251},
    {"cp1252", code_page::cp1252},       {"cp1253", code_page::cp1253},       {"cp1254", code_page::cp1254},
    {"cp1255", code_page::cp1255},       {"cp1256", code_page::cp1256},       {"cp1257", code_page::cp1257},
    {"cp1258", code_page::cp1258},       {"koi8r", code_page::koi8_r},        {"koi8u", code_page::koi8_u},
    {"shiftjis", code_page::cp932},      {"sjis", code_page::cp932},          {"cp932", code_page::cp932},
    {"gb2312", code_page::cp936},        {"gbk", code_page::cp936},           {"cp936", code_page::cp936},
    {"euckr", code_page::cp949},         {"cp949", code_page::cp949},         {"big5", code_page::cp950},
    {"cp950", code_page::cp950},
};

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t\r\f\v";

void skip_blanks(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.size(), rest.find_first_not_of(blanks)));
}

std::string_view trimmed(std::string_view text) {
    skip_blanks(text);
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

int digit_value(char c, int base) {
    int const value = c >= '0' && c <= '9'   ? c - '0'
                      : c >= 'a' && c <= 'f' ? c - 'a' + 10
                      : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                             : base;
    return value < base ? value : -1;
}

// Up to three octal digits, or any number of hexadecimal ones behind an x. False for NUL and for more
// than a byte.
bool take_number(std::string_view& rest, ustring8& text) {
    int const base = take(rest, "x") ? 16 : 8;
    std::size_t const most = base == 8 ? 3 : rest.size();
    int number = 0;
    std::size_t size = 0;
    for (; size < std::min(most, rest.size()); ++size) {
        int const digit = digit_value(rest[size], base);
        if (digit < 0) break;
        number = std::min(256, number * base + digit);
    }
    rest.remove_prefix(size);
    if (number == 0 || number > 255) return false;
    text += static_cast<char>(number);
    return true;
}

// Behind the backslash.
bool take_escape(std::string_view& rest, ustring8& text) {
    if (rest.empty()) return false;
    for (auto const [letter, byte] : named_escapes) {
        if (rest.front() != letter) continue;
        rest.remove_prefix(1);
        text += byte;
        return true;
    }
    return take_number(rest, text);
}

// At the opening quote. On a problem the rest begins where it is.
std::optional<po_problem> take_string(std::string_view& rest, ustring8& text) {
    std::string_view const whole = rest;
    rest.remove_prefix(1);
    for (;;) {
        std::size_t const end = std::min(rest.size(), rest.find_first_of("\"\\"));
        text.append(rest.substr(0, end));
        rest.remove_prefix(end);
        if (rest.empty()) {
            rest = whole;
            return po_problem::open_string;
        }
        std::string_view const here = rest;
        rest.remove_prefix(1);
        if (here.front() == '"') return std::nullopt;
        if (!take_escape(rest, text)) {
            rest = here;
            return po_problem::bad_escape;
        }
    }
}

class po_reader {
public:
    po_file read(std::string_view text) {
        for (m_line = 1; !text.empty() && m_file.faults.size() < most_po_faults; ++m_line) {
            std::size_t const end = std::min(text.size(), text.find('\n'));
            m_whole_line = text.substr(0, end);
            read_line(m_whole_line);
            text.remove_prefix(std::min(text.size(), end + 1));
        }
        if (!text.empty()) m_file.unread_line = m_line;
        end_entry();
        return std::move(m_file);
    }

private:
    void read_line(std::string_view rest) {
        skip_blanks(rest);
        if (rest.empty()) return;
        if (rest.front() == '#') return read_comment(rest);
        while (!rest.empty()) {
            if (rest.front() != '"' && !read_keyword(rest)) return;
            if (!read_strings(rest)) return;
        }
    }

    // Obsolete entries and the ids that fuzzy entries had are passed over.
    void read_comment(std::string_view rest) {
        if (take(rest, "#~")) {
            end_entry();
            ++m_file.obsolete;
        } else if (take(rest, "#,")) {
            open_comment();
            for (auto const& flag : zolt::strings::split_string(ustring8(rest), ",")) {
                if (trimmed(flag) == "fuzzy") m_entry.is_fuzzy = true;
                if (trimmed(flag) == "python-brace-format") m_entry.is_brace_format = true;
            }
        } else if (take(rest, "#.")) {
            open_comment();
            m_entry.notes.emplace_back(trimmed(rest));
        } else if (!rest.starts_with("#|")) {
            open_comment();
        }
    }

    void open_comment() {
        if (m_part) end_entry();
    }

    // False when no string can follow.
    bool read_keyword(std::string_view& rest) {
        std::string_view const line = rest;
        if (take(rest, "msgctxt")) {
            if (m_part) end_entry();
            start_part(m_entry.context.emplace());
        } else if (take(rest, "msgid_plural")) {
            if (!m_has_id || m_entry.plural_id || !m_entry.texts.empty()) return fail(line, po_problem::misplaced);
            start_part(m_entry.plural_id.emplace());
        } else if (take(rest, "msgid")) {
            if (m_has_id) end_entry();
            m_has_id = true;
            start_part(m_entry.id);
        } else if (take(rest, "msgstr")) {
            if (!m_has_id || !take_form(rest)) return fail(line, po_problem::misplaced);
            start_part(m_entry.texts.emplace_back());
        } else {
            return fail(line, po_problem::no_keyword);
        }
        return true;
    }

    // The number of a plural form, which counts from 0, or none where there is no plural.
    bool take_form(std::string_view& rest) const {
        if (!m_entry.plural_id) return m_entry.texts.empty() && !rest.starts_with("[");
        return take(rest, "[" + std::to_string(m_entry.texts.size()) + "]");
    }

    void start_part(ustring8& part) {
        if (!m_part) m_entry.line = m_line;
        m_part = &part;
    }

    // At least one string. Takes all up to the end of the line or to what must be the next keyword; false on a
    // fault.
    bool read_strings(std::string_view& rest) {
        skip_blanks(rest);
        if (!m_part) return fail(rest, po_problem::misplaced);
        if (!rest.starts_with('"')) return fail(rest, po_problem::no_keyword);
        for (; rest.starts_with('"'); skip_blanks(rest)) {
            std::string_view const start = rest;
            std::size_t const size = m_part->size();
            if (auto const problem = take_string(rest, *m_part)) return fail(rest, *problem);
            if (std::string_view(*m_part).substr(size).find_first_of({"\0\4", 2}) != std::string_view::npos)
                return fail(start, po_problem::control_character);
        }
        return true;
    }

    void end_entry() {
        bool const is_whole = m_has_id && !m_entry.texts.empty();
        if (m_part && !is_whole) m_file.faults.push_back({m_entry.line, 1, po_problem::no_text});
        if (m_part && is_whole) keep_entry();
        m_entry = {};
        m_part = nullptr;
        m_has_id = false;
    }

    void keep_entry() {
        auto const is_good = [](ustring8 const& text) { return is_strict_utf8(text); };
        bool const is_text = is_good(m_entry.id) && is_good(m_entry.context.value_or("")) &&
                             is_good(m_entry.plural_id.value_or("")) &&
                             std::all_of(m_entry.texts.begin(), m_entry.texts.end(), is_good) &&
                             std::all_of(m_entry.notes.begin(), m_entry.notes.end(), is_good);
        if (!is_text) {
            m_file.faults.push_back({m_entry.line, 1, po_problem::not_utf8});
        } else if (m_entry.id.empty() && !m_entry.context) {
            if (m_file.header.empty()) m_file.header = m_entry.texts.front();
        } else {
            m_file.entries.push_back(std::move(m_entry));
        }
    }

    bool fail(std::string_view rest, po_problem problem) {
        auto const column = static_cast<std::size_t>(rest.data() - m_whole_line.data()) + 1;
        m_file.faults.push_back({m_line, column, problem});
        return false;
    }

    po_file m_file;
    po_entry m_entry;
    ustring8* m_part = nullptr; // of the entry: what further strings are added to; null: no keyword yet
    bool m_has_id = false;
    std::string_view m_whole_line;
    std::size_t m_line = 0;
};

// What the header says, found without reading the file: it is ASCII in every charset, and it is the first
// entry and has an empty msgid, or there is none.
ustring8 charset_of(std::string_view bytes) {
    constexpr std::string_view mark = "charset=";
    while (!bytes.empty() && std::string_view("# \t\r\n").find(bytes.front()) != std::string_view::npos)
        bytes.remove_prefix(std::min(bytes.size() - 1, bytes.find('\n')) + 1);
    std::size_t const text = std::min(bytes.size(), bytes.find("msgstr"));
    if (!take(bytes, "msgid") || bytes.substr(0, text - 5).find_first_not_of("\" \t\r\n") != std::string_view::npos)
        return ustring8();
    bytes = bytes.substr(text - 5);
    bytes = bytes.substr(0, bytes.find("\nmsg"));
    std::size_t const start = bytes.find(mark);
    if (start == std::string_view::npos) return ustring8();
    bytes.remove_prefix(start + mark.size());
    return zolt::strings::to_lower(ustring8(bytes.substr(0, bytes.find_first_of("\\\";\n \t"))));
}

// One charset has many spellings: "ISO-8859-1", "iso8859_1"; Windows' own ones have two names.
ustring8 squeezed(std::string_view charset) {
    if (take(charset, "windows")) return "cp" + squeezed(charset);
    ustring8 name(charset);
    std::erase_if(name, [](char c) { return c == '-' || c == '_'; });
    return name;
}

bool is_unicode(std::string_view charset) {
    constexpr std::string_view names[] = {"", "utf8", "usascii", "ascii", "ansix3.41968", "charset"};
    return std::find(std::begin(names), std::end(names), charset) != std::end(names);
}

po_file fault_at_start(po_problem problem) {
    po_file file;
    file.faults.push_back({1, 1, problem});
    return file;
}

// With a mark in front, which also tells the order of bytes.
po_file read_utf16(std::string_view bytes) {
    if (bytes.size() % 2 != 0) return fault_at_start(po_problem::not_charset);
    zolt::strings::ustring16 units;
    units.resize(bytes.size() / 2);
    std::memcpy(units.data(), bytes.data(), bytes.size());
    ustring8 const text = zolt::strings::utf16_to_utf8(units);
    if (!text.starts_with(byte_order_mark)) return fault_at_start(po_problem::not_charset);
    return read_po(text);
}

auto count_questions(std::string_view text) { return std::count(text.begin(), text.end(), '?'); }

void append_escaped(ustring8& line, char c) {
    for (auto const [letter, byte] : named_escapes) {
        if (c != byte) continue;
        line.append({'\\', letter});
        return;
    }
    auto const code = static_cast<unsigned char>(c);
    if (code >= 0x20 && code != 0x7F) {
        line += c;
    } else {
        auto const digit = [](unsigned value) { return static_cast<char>('0' + (value & 7)); };
        line.append({'\\', digit(code >> 6u), digit(code >> 3u), digit(code)});
    }
}

// The name of a file with blanks stands between two marks.
void append_reference(ustring8& file, std::string_view reference) {
    std::size_t const size = std::min(reference.size(), reference.rfind(':'));
    std::string_view const name = reference.substr(0, size);
    bool const has_blanks = name.find(' ') != std::string_view::npos;
    file.append("#: ").append(has_blanks ? "\u2068" : "").append(name).append(has_blanks ? "\u2069" : "");
    file.append(reference.substr(size)).append("\n");
}

// A text with line ends inside starts in a line of its own, as gettext writes it.
void append_string(ustring8& file, std::string_view keyword, std::string_view text) {
    file.append(keyword).append(" ");
    std::size_t const first_end = std::min(text.size(), text.find('\n'));
    bool const has_lines = first_end + 1 < text.size();
    if (has_lines || text.empty()) file += "\"\"\n";
    while (!text.empty()) {
        std::size_t const end = std::min(text.size(), text.find('\n'));
        std::size_t const size = std::min(text.size(), end + 1);
        file.append(quoted_po(text.substr(0, size))).append("\n");
        text.remove_prefix(size);
    }
}

} // namespace

ustring8 po_file::field(std::string_view name) const {
    for (ustring8 const& line : zolt::strings::split_string(header, "\n")) {
        std::string_view rest = line;
        if (take(rest, name) && take(rest, ":")) return ustring8(trimmed(rest));
    }
    return ustring8();
}

po_file read_po(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return read_utf16(bytes);
    ustring8 text;
    if (bytes.find('\n') == std::string_view::npos) { // lines may end in a carriage return alone
        text = bytes;
        std::replace(text.begin(), text.end(), '\r', '\n');
        bytes = text;
    }
    bool const has_mark = take(bytes, byte_order_mark); // only UTF-8 has it, whatever the header says
    ustring8 const name = has_mark ? ustring8() : squeezed(charset_of(bytes));
    if (is_unicode(name)) return po_reader().read(bytes);
    auto const known = std::find_if(std::begin(charsets), std::end(charsets),
                                    [&](charset const& candidate) { return candidate.name == name; });
    if (known == std::end(charsets)) return fault_at_start(po_problem::charset);
    ustring8 const converted = code_page(known->page).as_utf8(std::string(bytes));
    // What cannot be converted becomes a question mark.
    if (count_questions(converted) != count_questions(bytes)) return fault_at_start(po_problem::not_charset);
    return po_reader().read(converted);
}

void append_po(ustring8& file, po_entry const& entry) {
    for (ustring8 const& note : entry.notes) file.append("#. ").append(note).append("\n");
    for (ustring8 const& reference : entry.references) append_reference(file, reference);
    if (entry.is_fuzzy || entry.is_brace_format) {
        file.append("#, ").append(entry.is_fuzzy ? "fuzzy" : "");
        file.append(entry.is_fuzzy && entry.is_brace_format ? ", " : "");
        file.append(entry.is_brace_format ? "python-brace-format" : "").append("\n");
    }
    if (entry.context) append_string(file, "msgctxt", *entry.context);
    append_string(file, "msgid", entry.id);
    if (entry.plural_id) append_string(file, "msgid_plural", *entry.plural_id);
    for (std::size_t i = 0; i != entry.texts.size(); ++i) {
        append_string(file, entry.plural_id ? "msgstr[" + std::to_string(i) + "]" : "msgstr", entry.texts[i]);
    }
    file += '\n';
}

bool take(std::string_view& rest, std::string_view start) {
    if (!rest.starts_with(start)) return false;
    rest.remove_prefix(start.size());
    return true;
}

ustring8 quoted_po(std::string_view text) {
    ustring8 line = "\"";
    for (char const c : text) append_escaped(line, c);
    line += '"';
    return line;
}

std::optional<ustring8> take_quoted_po(std::string_view& rest) {
    ustring8 text;
    if (!rest.starts_with('"') || take_string(rest, text)) return std::nullopt;
    return text;
}

bool is_po_text(std::string_view text) {
    return text.find_first_of({"\0\4", 2}) == std::string_view::npos && is_strict_utf8(text);
}

} // namespace tools
