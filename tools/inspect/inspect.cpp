// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "inspect.hpp"

#include "stored_items.hpp"
#include "tools/program/files.hpp"
#include "tools/program/hexadecimal.hpp"
#include "tools/program/json.hpp"
#include "tools/program/utf8.hpp"

#include <zolt/strings/unicode.hpp>
#include <zolt/system/file_utility.hpp>

#include <algorithm>
#include <string>
#include <string_view>

namespace tools {
namespace {

constexpr std::size_t dump_width = 16;
constexpr std::size_t deepest_indentation = 30; // beyond it the depth is told in digits
constexpr std::size_t indentation_width = 2;

bool is_control(char c) { return static_cast<unsigned char>(c) < 0x20 || c == '\x7F'; }

/// Whether people can read it: UTF-8 without control characters other than those of plain text and the
/// separator of nested buffers.
bool is_readable(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        std::string_view const rest = text.substr(i, 4);
        unsigned long size = 0;
        zolt::strings::unichar(rest.data(), static_cast<unsigned long>(rest.size()), 0, size);
        if (size == zolt::strings::no_index) return false;
        if (is_control(rest.front()) && std::string_view("\t\n\r\1").find(rest.front()) == rest.npos) return false;
        i += size;
    }
    return true;
}

ustring8 shown_text(std::string_view text) {
    if (!is_readable(text)) return "hex " + hex(text);
    return '"' + printable(text) + '"';
}

ustring8 shown_label(std::string_view label) {
    bool const is_plain = !label.empty() && is_readable(label) && label.find_first_of(" \"=:") == label.npos;
    return is_plain ? printable(label) : shown_text(label);
}

ustring8 shown_content(stored_item const& item) {
    switch (item.kind) {
    case stored_item::number:
        return ustring8(std::string(item.content));
    case stored_item::bytes:
        return item.content.empty() ? "hex" : "hex " + hex(item.content);
    default:
        return shown_text(item.content);
    }
}

/// Writes a line for each item: its position, then blanks for the groups around it, then what it is.
class item_list {
public:
    item_list(session const& session, inspect_options::form_t form, std::size_t size)
        : m_session(session), m_form(form), m_width(std::to_string(size).size()) {}

    void show(stored_item const& item) const {
        switch (m_form) {
        case inspect_options::labeled:
            return labeled(item);
        case inspect_options::text:
            return line(item, shown_content(item));
        case inspect_options::binary:
            return line(item,
                        ustring8(std::string(item.name)).append(4 - item.name.size(), ' ') + shown_content(item));
        default:
            return dump(item);
        }
    }

private:
    void labeled(stored_item const& item) const {
        ustring8 text = shown_label(item.name);
        text += item.kind == stored_item::group ? ustring8(":") : " = " + shown_content(item);
        line(item, text);
    }

    void line(stored_item const& item, ustring8 const& text) const {
        std::string const position = std::to_string(item.position);
        ustring8 line(m_width - position.size(), ' ');
        line = m_session.out.paint(colour::place, line + position);
        line.append(2 + indentation_width * std::min(item.depth, deepest_indentation), ' ');
        if (item.depth > deepest_indentation) line.append("(" + std::to_string(item.depth) + ") ");
        m_session.out.line(line.append(text));
    }

    void dump(stored_item const& item) const {
        std::string_view const bytes = item.content;
        ustring8 line;
        for (unsigned shift = 32; shift != 0; shift -= 4) line += hex_digits[(item.position >> (shift - 4)) % 16];
        line.append("  ").append(hex(bytes)).append(3 * (dump_width - bytes.size()) + 2, ' ').append("|");
        for (char const byte : bytes) line += is_control(byte) || static_cast<signed char>(byte) < 0 ? '.' : byte;
        m_session.out.line(line.append("|"));
    }

    session const& m_session;
    inspect_options::form_t m_form;
    std::size_t m_width;
};

/// The same for other programs. The list is flat: buffers nest deeper than readers of JSON like it.
class item_records {
public:
    item_records(session const& session, inspect_options::form_t form, json_writer& json)
        : m_session(session),
          m_json(json),
          m_name_key(form == inspect_options::labeled  ? "label"
                     : form == inspect_options::binary ? "type"
                                                       : "") {}

    void show(stored_item const& item) const {
        constexpr std::string_view kinds[] = {"number", "text", "bytes", "group"};
        m_json.begin_object();
        m_json.member("position", item.position);
        m_json.member("depth", item.depth);
        m_json.member("kind", kinds[item.kind]);
        if (!m_name_key.empty()) add(m_name_key, m_name_key + "_hex", item.name);
        if (item.kind == stored_item::bytes) m_json.member("hex", hex(item.content));
        if (item.kind == stored_item::number || item.kind == stored_item::text) add("value", "hex", item.content);
        m_json.end_object();
        m_session.out.write(m_json.take());
    }

private:
    // JSON holds UTF-8 only.
    void add(std::string_view key, std::string_view key_of_bytes, std::string_view bytes) const {
        is_strict_utf8(bytes) ? m_json.member(key, bytes) : m_json.member(key_of_bytes, hex(bytes));
    }

    session const& m_session;
    json_writer& m_json;
    std::string m_name_key;
};

inspect_options::form_t detected(std::string_view content) {
    if (!read_labeled_items(content, [](stored_item const&) {})) return inspect_options::labeled;
    return looks_like_text_items(content) ? inspect_options::text : inspect_options::automatic;
}

phrase heading_of(inspect_options::form_t form) {
    constexpr phrase headings[] = {phrase::buffer_unknown, phrase::buffer_labeled, phrase::buffer_text,
                                   phrase::buffer_binary};
    return headings[form];
}

// What is known of no form comes in rows of bytes.
std::optional<stored_damage> read_items(inspect_options::form_t form, binary_pattern const& pattern,
                                        std::string_view content, item_visitor const& visit) {
    switch (form) {
    case inspect_options::labeled:
        return read_labeled_items(content, visit);
    case inspect_options::text:
        return read_text_items(content, visit);
    case inspect_options::binary:
        return pattern.read(content, visit);
    default:
        for (std::size_t start = 0; start < content.size(); start += dump_width)
            visit({start, stored_item::bytes, content.substr(start, dump_width)});
        return std::nullopt;
    }
}

zolt::types::variant number(std::size_t value) {
    return zolt::types::variant(static_cast<unsigned long long>(value));
}

ustring8 describe(session const& session, stored_damage const& damage) {
    return session.texts.get(
        damage.reason,
        {{"length", damage.length}, {"left", number(damage.left)}, {"type", ustring8(std::string(damage.type))}});
}

std::optional<stored_damage> show_text(session const& session, inspect_options::form_t form,
                                       binary_pattern const& pattern, std::string_view content) {
    program_messages const& texts = session.texts;
    session.out.line(texts.get(heading_of(form), {{"size", texts.counted(phrase::bytes_one, content.size())}}));
    item_list const list(session, form, content.size());
    return read_items(form, pattern, content, [&](stored_item const& item) { list.show(item); });
}

std::optional<stored_damage> show_json(session const& session, inspect_options::form_t form,
                                       binary_pattern const& pattern, std::string_view content) {
    constexpr std::string_view forms[] = {"unknown", "labeled", "text", "binary"};
    json_writer json;
    item_records const records(session, form, json);
    json.begin_object();
    json.member("form", forms[form]);
    json.member("size", content.size());
    json.begin_array("items");
    auto const damage = read_items(form, pattern, content, [&](stored_item const& item) { records.show(item); });
    json.end_array();
    if (damage) {
        json.begin_object("damage");
        json.member("position", damage->position);
        json.member("text", describe(session, *damage));
        json.end_object();
    }
    json.end_object();
    session.out.line(json.text());
    return damage;
}

} // namespace

exit_status inspect_buffer(session const& session, inspect_options const& options) {
    program_messages const& texts = session.texts;
    binary_pattern pattern;
    std::size_t fault = 0;
    if (options.form == inspect_options::binary && !pattern.parse(options.pattern, fault)) {
        ustring8 const rest = options.pattern.substr(fault);
        session.complain(texts.get(phrase::bad_pattern, {{"pattern", options.pattern}, {"rest", rest}}));
        return exit_failed;
    }
    ustring8 content;
    if (zolt::system::load_file(options.path, content) != 0) {
        session.complain(texts.get(phrase::not_readable, why_unreadable(options.path)));
        return exit_failed;
    }
    auto const form = options.form == inspect_options::automatic ? detected(content) : options.form;
    auto const show = session.is_json() ? show_json : show_text;
    auto const damage = show(session, form, pattern, content);
    if (!damage) return exit_good;
    session.complain(texts.get(
        phrase::damaged_buffer,
        {{"path", options.path}, {"position", number(damage->position)}, {"reason", describe(session, *damage)}}));
    return exit_findings;
}

} // namespace tools
