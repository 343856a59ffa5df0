// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "check_file_rules.hpp"

#include "catalog_paths.hpp"
#include "tools/program/files.hpp"
#include "tools/program/hexadecimal.hpp"
#include "tools/program/languages.hpp"
#include "tools/program/notation.hpp"

#include <zolt/i18n/format_value.hpp>
#include <zolt/strings/string_utility.hpp>
#include <zolt/system/io.hpp>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <compare>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <tuple>

namespace tools {
namespace {

using zolt::i18n::message_item;
using type_t = message_item::type_t;

constexpr char separator = '\1';

rule_set set_of(std::vector<std::string_view> const& words) {
    rule_set result = 0;
    for (std::string_view const word : words) result |= rule_set_of(word);
    return result;
}

// Bytes that are plain text wherever they stand.
constexpr std::array<bool, 256> make_plain_bytes() {
    std::array<bool, 256> plain{};
    for (std::size_t byte = 0x20; byte != 0x7F; ++byte) plain[byte] = true;
    for (char const c : {'\t', '\n', '\r'}) plain[static_cast<unsigned char>(c)] = true;
    return plain;
}
constexpr auto plain_bytes = make_plain_bytes();

// The length of the UTF-8 sequence above ASCII at the start of a text; 0 for what is none.
std::size_t sequence_length(std::string_view text) {
    auto const byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u; };
    unsigned const lead = byte(0);
    std::size_t const size = lead >= 0xC2 && lead <= 0xDF ? 2 : (lead & 0xF0) == 0xE0 ? 3 : lead >= 0xF0 ? 4 : 0;
    if (size == 0 || lead > 0xF4) return 0;
    unsigned const least = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned const most = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (byte(1) < least || byte(1) > most) return 0;
    for (std::size_t i = 2; i < size; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return 0;
    }
    return size;
}

bool is_unit(type_t type) { return type == message_item::memory_unit || type == message_item::metric_unit; }
type_t unit_of(type_t amount) { return static_cast<type_t>(amount + 1); }
// The names of options may be cut short.
bool fixes_unit(scanned_attribute const& option) {
    std::string_view const key = "target_unit";
    return key.substr(0, option.name.size()) == option.name && option.value != "any";
}
// What chooses the unit, as the library understands it: keys and "any" may be cut short, the last one counts, and
// "any" is what counts without one. The width does not matter, nor how many digits there are.
struct unit_choice {
    ustring8 target = "any";
    ustring8 base{};
    bool has_precision = false; // the amount of memory is a whole number without

    friend auto operator<=>(unit_choice const&, unit_choice const&) = default;
};

ustring8 unit_meaning(std::string_view unit, bool is_metric) {
    bool const is_memory_unit = unit.size() > 1 && unit[1] == 'B'; // of "KBytes" the rest is not looked at
    if (is_metric && std::string_view("base").starts_with(unit)) return {};
    if (!is_metric && is_memory_unit) unit = unit.substr(0, 2);
    bool const is_any = std::string_view("any").starts_with(unit) && !(is_metric && unit == "a");
    return is_any ? ustring8("any") : ustring8(std::string(unit));
}

// Behind the separator that the options begin with, up to the next one.
std::string_view take_field(std::string_view& options) {
    options.remove_prefix(std::min<std::size_t>(1, options.size()));
    std::string_view const field = options.substr(0, options.find(separator));
    options.remove_prefix(field.size());
    return field;
}

unit_choice read_unit_choice(std::string_view options, bool is_metric) {
    unit_choice result;
    if (!is_metric) result.base = "B";
    while (!options.empty()) {
        std::string_view const name = take_field(options);
        std::string_view const value = take_field(options);
        auto const is_key = [name](std::string_view key) { return key.starts_with(name); };
        if (is_key("target_unit")) {
            result.target = unit_meaning(value, is_metric);
        } else if (is_key("base_unit")) {
            result.base = is_metric ? unit_meaning(value, is_metric) : ustring8(std::string(value.substr(0, 2)));
        } else if (is_key("precision")) {
            result.has_precision = !is_metric;
        }
    }
    return result;
}

bool ends_in_blank_reference(scanned_message const& message) {
    if (message.text_references.empty() || message.pieces.empty()) return false; // of a fault there is no piece
    if (message.pieces.back().what != scanned_piece::kind::text) return false;
    scanned_reference const& last = message.text_references.back();
    std::string_view const text = message.pieces.back().text;
    return last.value == ' ' && last.text.data() + last.text.size() == text.data() + text.size();
}

bool has_formatter(type_t type) { return type == message_item::int_ || type == message_item::double_ || type >= 7; }
bool is_rendered(type_t type) {
    return type != message_item::number && type != message_item::time && type != message_item::date;
}

} // namespace

std::uint32_t file_rules::plan(ustring8 const& path) {
    auto const entry = m_known.emplace(real_path(path), static_cast<std::uint32_t>(m_tree.files.size()));
    if (entry.second) m_tree.files.emplace_back().path = path;
    return entry.first->second;
}

void file_rules::check(std::uint32_t file) {
    checked_file& entry = m_tree.files[file];
    entry.is_readable = load(entry.path, entry.text);
    if (!entry.is_readable) return;
    m_file = file;
    m_text = entry.text;
    m_starts.clear();
    std::size_t const messages = m_tree.messages.size();
    std::size_t const arguments = m_tree.arguments.size();
    if (m_has_rules) find_byte_faults();
    entry.result = scan_catalog_file(m_text, entry.values, *this);
    report_bytes_before(m_text.size());
    if (entry.result == scan_result::not_well_formed) {
        m_tree.messages.resize(messages);
        m_tree.arguments.resize(arguments);
        return;
    }
    for (auto const& [catalog, start] : m_starts) m_tree.catalogs[catalog].languages.insert(start);
}

//--------------------------------------------------------------------------------------------------
// Catalogs and includes

void file_rules::start_catalog(scanned_element const& catalog) {
    ustring8 const name(std::string(catalog.value_of("name")));
    ustring8 const language(std::string(catalog.value_of("lang")));
    rule_set const ignored = set_of(catalog.ignored);
    m_language = none;
    reporter const add = [&](rule_id id, std::size_t offset, ustring8 const& text) {
        m_report.add(id, m_file, offset, ignored, name, text);
    };
    if (language.empty()) {
        if (!m_has_rules) return;
        m_report.add(rule_id::catalog_without_lang, m_file, catalog.offset, ignored, name,
                     m_report.texts().get(phrase::no_language, {{"catalog", shown(name)}}));
        return;
    }
    m_catalog = catalog_of(name);
    m_language = language_of(language);
    m_is_checked = m_has_rules && (m_wanted.empty() || m_tree.languages[m_language].id == m_wanted);
    if (m_is_checked) {
        check_ignored(catalog, add);
        check_spelling(catalog, ignored, name);
        check_name(catalog, add);
        check_references(catalog.references, add);
    }
    m_starts.push_back({m_catalog, {m_language, {m_file, catalog.offset, ignored, 0}}});
}

// One language in several spellings, of which the library may find one only.
void file_rules::check_spelling(scanned_element const& catalog, rule_set ignored, ustring8 const& name) {
    ustring8 const language(std::string(catalog.value_of("lang")));
    ustring8 folded = zolt::strings::to_lower(normalized_language(language));
    std::erase_if(folded, [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    auto const first = m_spellings.emplace(folded, spelling{language, m_file, catalog.offset}).first;
    spelling const& other = first->second;
    if (other.text == language) return;
    checked_file& file = m_tree.files[other.file];
    ustring8 const where = file.path + ":" + std::to_string(place_of(file, other.offset).line);
    m_report.add(
        rule_id::duplicate_lang_spelling, m_file, catalog.find("lang")->offset, ignored, name,
        m_report.texts().get(phrase::other_spelling,
                             {{"language", shown(language)}, {"other", shown(other.text)}, {"place", where}}));
}

std::uint32_t file_rules::language_of(ustring8 const& written) {
    ustring8 const id = normalized_language(written);
    auto const entry = m_languages.emplace(id, static_cast<std::uint32_t>(m_tree.languages.size()));
    if (entry.second) m_tree.languages.push_back({id, written});
    return entry.first->second;
}

std::uint32_t file_rules::catalog_of(ustring8 const& name) {
    auto const entry = m_catalogs.emplace(name, static_cast<std::uint32_t>(m_tree.catalogs.size()));
    if (entry.second) m_tree.catalogs.push_back({name, {}});
    return entry.first->second;
}

void file_rules::include(scanned_element const& include) {
    scanned_attribute const* const attribute = include.find("file");
    if (!attribute) return;
    ustring8 const given(std::string(attribute->value));
    rule_set const ignored = set_of(include.ignored);
    checked_file& file = m_tree.files[m_file];
    ustring8 const path = given.empty() ? given : included_path(file.path, given);
    reporter const add_at = [&](rule_id id, std::size_t offset, ustring8 const& text) {
        m_report.add(id, m_file, offset, ignored, {}, text);
    };
    auto const add = [&](rule_id id, phrase text, ustring8 const& shown_path) {
        add_at(id, attribute->offset, m_report.texts().get(text, {{"path", shown_path}}));
    };
    if (m_has_rules) {
        check_ignored(include, add_at);
        check_references(include.references, add_at);
    }
    if (m_has_rules && !given.empty() && is_absolute_include(given))
        add(rule_id::include_absolute, phrase::absolute_include, given);
    bool const has_nul = given.find('\0') != ustring8::npos;
    if (given.empty() || has_nul || !zolt::system::io::is_file(path) || ::access(path.c_str(), R_OK) != 0) {
        add(rule_id::include_missing, phrase::missing_include, path);
        return;
    }
    file.includes.push_back({include.offset, plan(path), ignored});
}

//--------------------------------------------------------------------------------------------------
// Messages

void file_rules::message(scanned_message const& message) {
    report_bytes_before(message.offset);
    if (m_language == none) return;
    bool const has_space = message.space_at_end != no_offset && !has_line_end(message.space_at_end);
    checked_message kept{.name = message.value_of("name"),
                         .file = m_file,
                         .catalog = m_catalog,
                         .language = m_language,
                         .next = none,
                         .offset = message.offset,
                         .end = message.end,
                         .first_argument = m_tree.arguments.size(),
                         .argument_count = 0,
                         .last_text = message.last_text,
                         .ignored = message.ignored.empty() ? 0 : set_of(message.ignored),
                         .is_empty = message.is_empty,
                         .starts_with_blank = message.starts_with_blank,
                         .ends_in_blank = has_space || ends_in_blank_reference(message)};
    m_arguments.clear();
    for (std::size_t i = 0; i != message.argument_count; ++i) check_argument(kept, message.arguments[i]);
    if (m_is_checked) {
        if (m_arguments.size() > 1) check_units(kept);
        check_bytes(kept, message);
        check_markup(kept, message);
        check_spaces(kept, message);
    }
    keep_arguments(kept);
    m_tree.messages.push_back(kept);
}

// An amount in a fixed unit counts as if the unit were shown: the text may well name it itself.
void file_rules::keep_arguments(checked_message& kept) {
    std::vector<checked_argument>& all = m_tree.arguments;
    for (argument const& each : m_arguments) {
        all.push_back(each.kept);
        if (!each.has_fixed_unit) continue;
        all.push_back(each.kept);
        all.back().type = unit_of(each.kept.type);
    }
    auto const first = all.begin() + static_cast<std::ptrdiff_t>(kept.first_argument);
    std::sort(first, all.end(), [](checked_argument const& a, checked_argument const& b) {
        return std::tie(a.name, a.type, a.offset) < std::tie(b.name, b.type, b.offset);
    });
    all.erase(std::unique(first, all.end()), all.end());
    kept.argument_count = all.size() - kept.first_argument;
}

// Of the type "value" it is text and shows no argument.
void file_rules::check_argument(checked_message const& kept, scanned_element const& element) {
    type_t const type = check_type(kept, element);
    std::string_view const name = element.value_of("name");
    ustring8 const options = check_order(kept, element);
    if (type == message_item::value) return;
    if (m_is_checked && !options.empty() && has_formatter(type) && !is_usable(type, "x" + options)) {
        ustring8 options_text;
        for (scanned_attribute const& each : element.attributes) {
            if (each.name == "name" || each.name == "type") continue;
            options_text.append(options_text.empty() ? "" : " ").append(each.name).append("=").append(each.value);
        }
        m_report.add(rule_id::bad_option, kept, element.offset,
                     m_report.texts().get(phrase::bad_options,
                                          {{"argument", shown(name)}, {"options", shown(options_text)}}));
    }
    bool const is_amount = type == message_item::memory || type == message_item::metric;
    bool const has_fixed_unit =
        is_amount && std::any_of(element.attributes.begin(), element.attributes.end(), fixes_unit);
    m_arguments.push_back({{name, type, element.offset}, options, has_fixed_unit});
}

type_t file_rules::check_type(checked_message const& kept, scanned_element const& element) {
    scanned_attribute const* const attribute = element.find("type");
    if (!attribute) return message_item::string;
    std::optional<type_t> type = type_of_keyword(attribute->value);
    if (!type) type = type_of_keyword(zolt::strings::to_lower(ustring8(std::string(attribute->value))));
    if (m_is_checked && (!type || !is_rendered(*type))) {
        m_report.add(type ? rule_id::unrendered_type : rule_id::unknown_type, kept, attribute->offset,
                     m_report.texts().get(
                         type ? phrase::type_not_rendered : phrase::unknown_type,
                         {{"argument", shown(element.value_of("name"))}, {"type", shown(attribute->value)}}));
    }
    return type.value_or(message_item::string);
}

// Returns the options that count: those behind the name.
ustring8 file_rules::check_order(checked_message const& kept, scanned_element const& element) {
    ustring8 options;
    scanned_attribute const* const name = element.find("name");
    for (scanned_attribute const& each : element.attributes) {
        if (&each == name || each.name == "type") continue;
        if (name && each.offset < name->offset) {
            if (!m_is_checked) continue;
            m_report.add(rule_id::arg_name_not_first, kept, each.offset,
                         m_report.texts().get(phrase::lost_option, {{"option", shown(each.name)}}));
        } else {
            (options += separator).append(each.name);
            (options += separator).append(each.value);
        }
    }
    return options;
}

// No value at all can be written: neither a small nor a large one, whole or not.
bool file_rules::is_usable(type_t type, ustring8 const& data) {
    auto const entry = m_usable.emplace(std::to_string(type) + data, false);
    if (!entry.second) return entry.first->second;
    zolt::types::variant const samples[] = {zolt::types::variant(1), zolt::types::variant(2000000.5)};
    bool const is_good =
        std::any_of(std::begin(samples), std::end(samples), [&](zolt::types::variant const& value) {
            return zolt::i18n::format_value(type, value, data) != "-0";
        });
    return entry.first->second = is_good;
}

// An amount and a unit choose the unit by their own options.
void file_rules::check_units(checked_message const& kept) {
    bool const has_units = std::any_of(m_arguments.begin(), m_arguments.end(),
                                       [](argument const& each) { return is_unit(each.kept.type); });
    if (!has_units) return;
    auto const choice_of = [](argument const& each, type_t unit) {
        return read_unit_choice(each.options, unit == message_item::metric_unit);
    };
    using key = std::tuple<std::string_view, unsigned, std::optional<unit_choice>>;
    std::set<key> amounts;
    for (argument const& each : m_arguments) {
        if (is_unit(each.kept.type)) continue;
        type_t const unit = unit_of(each.kept.type);
        amounts.insert({each.kept.name, unit, choice_of(each, unit)});
    }
    for (argument const& each : m_arguments) {
        type_t const unit = each.kept.type;
        if (!is_unit(unit)) continue;
        auto const next = amounts.lower_bound({each.kept.name, unit, std::nullopt});
        bool const has_amount =
            next != amounts.end() && std::get<0>(*next) == each.kept.name && std::get<1>(*next) == unit;
        if (!has_amount || amounts.count({each.kept.name, unit, choice_of(each, unit)}) != 0) continue;
        m_report.add(rule_id::unit_pair, kept, each.kept.offset,
                     m_report.texts().get(phrase::unit_differs, {{"argument", shown(each.kept.name)}}));
    }
}

//--------------------------------------------------------------------------------------------------
// Bytes and blanks

void file_rules::find_byte_faults() {
    m_byte_faults.clear();
    m_next_fault = 0;
    bool const has_mark = m_text.substr(0, 3) == "\xEF\xBB\xBF";
    for (std::size_t at = has_mark ? 3 : 0; at < m_text.size();) {
        auto const byte = static_cast<unsigned char>(m_text[at]);
        if (plain_bytes[byte]) {
            ++at;
            continue;
        }
        std::size_t const length = byte < 0x80 ? 1 : sequence_length(m_text.substr(at, 4));
        bool const is_control =
            byte < 0x80 || (byte == 0xC2 && length == 2 && static_cast<unsigned char>(m_text[at + 1]) < 0xA0);
        if (is_control || length == 0) m_byte_faults.push_back({at, is_control});
        // One wrong byte seldom comes alone: the first of a line stands for all.
        at = length != 0 ? at + length : std::min(m_text.find('\n', at), m_text.size());
    }
}

ustring8 file_rules::text_of_control(std::size_t offset) const {
    auto const byte = static_cast<unsigned char>(m_text[offset]);
    return hex(byte < 0x80 ? m_text[offset] : m_text[offset + 1]);
}

// Outside of messages control characters do no harm.
void file_rules::report_bytes_before(std::size_t offset) {
    for (; m_next_fault != m_byte_faults.size() && m_byte_faults[m_next_fault].offset < offset; ++m_next_fault) {
        byte_fault const& fault = m_byte_faults[m_next_fault];
        if (fault.is_control) continue;
        ustring8 const byte = hex(m_text[fault.offset]);
        m_report.add(rule_id::invalid_utf8, m_file, fault.offset, 0, {},
                     m_report.texts().get(phrase::byte_is_no_text, {{"byte", byte}}));
    }
}

void file_rules::check_bytes(checked_message const& kept, scanned_message const& message) {
    for (; m_next_fault != m_byte_faults.size() && m_byte_faults[m_next_fault].offset < message.end;
         ++m_next_fault) {
        byte_fault const& fault = m_byte_faults[m_next_fault];
        ustring8 const byte = fault.is_control ? text_of_control(fault.offset) : hex(m_text[fault.offset]);
        m_report.add(fault.is_control ? rule_id::control_character : rule_id::invalid_utf8, kept, fault.offset,
                     m_report.texts().get(fault.is_control ? phrase::control_in_text : phrase::byte_is_no_text,
                                          {{"byte", byte}}));
    }
}

// A number stands for one byte, and one with a leading zero is octal.
void file_rules::check_references(std::vector<scanned_reference> const& references, reporter const& add) {
    for (scanned_reference const& each : references) {
        if (each.text == "&nbsp;")
            add(rule_id::nbsp_is_blank, each.offset, m_report.texts().get(phrase::nbsp_in_text));
        if (each.text[1] != '#') continue;
        bool const is_hexadecimal = each.text[2] == 'x';
        std::string const digits(each.text.substr(is_hexadecimal ? 3 : 2));
        unsigned long const value = std::strtoul(digits.c_str(), nullptr, is_hexadecimal ? 16 : 10);
        bool const is_octal = !is_hexadecimal && digits.size() > 2 && digits[0] == '0';
        ustring8 const byte = hex(each.value);
        if (value >= 0x80 || is_octal) {
            add(rule_id::byte_reference, each.offset,
                m_report.texts().get(phrase::reference_is_byte, {{"reference", shown(each.text)}, {"byte", byte}}));
        } else if (!plain_bytes[value] || value == '\r') {
            add(rule_id::control_character, each.offset,
                m_report.texts().get(phrase::control_in_text, {{"byte", byte}}));
        }
    }
}

// Line ends and tabs, which are text elsewhere. Who looks for the name writes a blank at best.
void file_rules::check_name(scanned_element const& element, reporter const& add) {
    scanned_attribute const* const name = element.find("name");
    std::size_t const at = name ? name->value.find_first_of("\t\n") : std::string_view::npos;
    if (at == std::string_view::npos) return;
    ustring8 const byte = hex(name->value[at]);
    add(rule_id::control_character, name->offset, m_report.texts().get(phrase::control_in_name, {{"byte", byte}}));
}

// The comment before a message, its names and its references.
void file_rules::check_markup(checked_message const& kept, scanned_message const& message) {
    reporter const add = [&](rule_id id, std::size_t offset, ustring8 const& text) {
        m_report.add(id, kept, offset, text);
    };
    check_ignored(message, add);
    check_name(message, add);
    check_references(message.references, add);
    check_references(message.text_references, add);
    for (std::size_t i = 0; i != message.argument_count; ++i) {
        check_name(message.arguments[i], add);
        check_references(message.arguments[i].references, add);
    }
}

// The first word of a comment that names no rule: more may follow of a sentence. Those of PO files are known to
// export-po alone.
void file_rules::check_ignored(scanned_element const& element, reporter const& add) {
    auto const word = std::find_if(element.ignored.begin(), element.ignored.end(), [](std::string_view each) {
        return rule_set_of(each) == 0 && !each.starts_with("po-");
    });
    if (word == element.ignored.end()) return;
    add(rule_id::unknown_rule, static_cast<std::size_t>(word->data() - m_text.data()),
        m_report.texts().get(phrase::unknown_rule, {{"rule", shown(*word)}}));
}

bool file_rules::has_line_end(std::size_t offset) const {
    auto const end = m_text.find_first_not_of(" \t\r\n", offset);
    return m_text.substr(offset, end - offset).find('\n') != std::string_view::npos;
}

// At the start of a message blanks go, which is a surprise in the line of the text only; elsewhere a line end
// is a blank.
void file_rules::check_spaces(checked_message const& kept, scanned_message const& message) {
    if (message.is_empty) return;
    auto const add = [&](std::size_t offset, phrase text) {
        m_report.add(rule_id::edge_space, kept, offset, m_report.texts().get(text));
    };
    if (message.space_at_start != no_offset && !has_line_end(message.space_at_start))
        add(message.space_at_start, phrase::space_is_lost);
    if (message.space_at_end != no_offset && has_line_end(message.space_at_end))
        add(message.space_at_end, phrase::line_end_is_space);
    for (std::size_t const offset : message.spaces_after_br) {
        if (offset != message.space_at_end && has_line_end(offset)) add(offset, phrase::line_end_is_space);
    }
}

} // namespace tools
