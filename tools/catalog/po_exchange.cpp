// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "po_exchange.hpp"

#include "catalog_texts.hpp"
#include "tools/program/notation.hpp"

#include <zolt/i18n/_private/xmc_file_loader.hpp>

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace tools {
namespace {

using zolt::i18n::message_item;
using zolt::i18n::message_t;

constexpr char separator = '\1';
constexpr std::string_view empty_mark = "zolt: empty";
constexpr std::string_view kept_mark = "zolt: kept";
constexpr std::string_view no_reference_mark = "zolt: no reference";
constexpr std::string_view meta_mark = "meta: ";
constexpr std::string_view note_mark = "note: ";

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool is_identifier_part(char c) { return is_letter(c) || (c >= '0' && c <= '9'); }

// One underscore for each character that cannot stand there, and before a digit at the start.
ustring8 identifier_of(std::string_view name) {
    ustring8 result;
    if (name.empty() || (name.front() >= '0' && name.front() <= '9')) result = "_";
    for (char const c : name) {
        bool const continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
        if (!continues) result += is_identifier_part(c) ? c : '_';
    }
    return result;
}

std::string_view suffix_of(message_item::type_t type) {
    return type == message_item::memory_unit ? "mem_unit" : type_keyword(type);
}

struct definition {
    ustring8 identifier;
    message_item item;
};

/// The placeholders of one entry. The reference comes first and alone decides on its identifiers, so that
/// they are the same in every language.
class placeholder_names {
public:
    /// These return the identifiers of all placeholders in their order.
    std::vector<ustring8> add_reference(message_t const& message) {
        std::vector<ustring8> result;
        for (message_item const* const item : placeholders(message)) {
            auto const [known, is_new] = m_same.try_emplace({item->type(), item->data()}, m_definitions.size());
            if (is_new) {
                m_like[{item->type(), item->name()}].indexes.push_back(known->second);
                m_definitions.push_back({unused(*item), *item});
            }
            result.push_back(m_definitions[known->second].identifier);
        }
        return result;
    }

    // Those that are as in the reference keep their identifiers; then one that differs in its options
    // alone takes the place of one that is left.
    std::vector<ustring8> add_translation(message_t const& message) {
        std::vector<message_item const*> const items = placeholders(message);
        std::vector<char> is_taken(m_definitions.size());
        for (message_item const* const item : items) {
            auto const known = m_same.find({item->type(), item->data()});
            if (known != m_same.end()) is_taken[known->second] = true;
        }
        std::vector<ustring8> result;
        for (message_item const* const item : items) {
            auto const [known, is_new] = m_same.try_emplace({item->type(), item->data()}, m_definitions.size());
            if (is_new) known->second = place_for(*item, is_taken);
            result.push_back(m_definitions[known->second].identifier);
        }
        return result;
    }

    std::vector<definition> const& definitions() const { return m_definitions; }

private:
    using kind = std::pair<message_item::type_t, ustring8>;
    struct variants {
        std::vector<std::size_t> indexes;
        std::size_t next = 0;
    };

    static std::vector<message_item const*> placeholders(message_t const& message) {
        std::vector<message_item const*> items;
        bool is_after_text = false;
        for (message_item const& item : message) {
            is_after_text = is_text(item, is_after_text);
            if (!is_after_text) items.push_back(&item);
        }
        return items;
    }

    std::size_t place_for(message_item const& item, std::vector<char> const& is_taken) {
        variants& like = m_like[{item.type(), item.name()}];
        while (like.next != like.indexes.size()) {
            std::size_t const index = like.indexes[like.next++];
            if (is_taken[index]) continue;
            m_definitions[index].item = item;
            return index;
        }
        m_definitions.push_back({unused(item), item});
        return m_definitions.size() - 1;
    }

    ustring8 unused(message_item const& item) {
        ustring8 name = identifier_of(item.name());
        if (m_used.insert(name).second) return name;
        ustring8 typed = name + "__" + std::string(suffix_of(item.type()));
        if (m_used.insert(typed).second) return typed;
        for (std::size_t& number = m_numbers.try_emplace(typed, 1).first->second;;) {
            ustring8 numbered = typed + "_" + std::to_string(++number);
            if (m_used.insert(numbered).second) return numbered;
        }
    }

    std::vector<definition> m_definitions;
    std::map<kind, std::size_t> m_same; // by type and data
    std::map<kind, variants> m_like;    // by type and argument
    std::set<ustring8> m_used;
    std::map<ustring8, std::size_t> m_numbers;
};

ustring8 encode_text(message_t const& message, std::vector<ustring8> const& identifiers) {
    ustring8 text;
    auto identifier = identifiers.begin();
    bool is_after_text = false;
    for (message_item const& item : message) {
        is_after_text = is_text(item, is_after_text);
        if (is_after_text) {
            for (char const c : item.data()) text.append(c == '{' || c == '}' ? 2 : 1, c);
        } else {
            text.append("{").append(*identifier++).append("}");
        }
    }
    return text;
}

//--------------------------------------------------------------------------------------------------
// Notes

bool is_plain(char c) {
    return is_identifier_part(c) || c == '.' || c == '-' || c == '+' || static_cast<unsigned char>(c) >= 0x80;
}

ustring8 token_of(std::string_view text) {
    bool const is_bare = !text.empty() && std::all_of(text.begin(), text.end(), is_plain);
    return is_bare ? ustring8(text) : quoted_po(text);
}

std::optional<ustring8> take_token(std::string_view& rest) {
    if (rest.starts_with('"')) return take_quoted_po(rest);
    auto const end = std::find_if_not(rest.begin(), rest.end(), is_plain);
    auto const size = static_cast<std::size_t>(end - rest.begin());
    if (size == 0) return std::nullopt;
    ustring8 const token(rest.substr(0, size));
    rest.remove_prefix(size);
    return token;
}

ustring8 definition_note(definition const& placeholder) {
    ustring8 const data = placeholder.item.data();
    std::vector<std::string_view> const pieces = split_item_data(data);
    ustring8 note = "{" + placeholder.identifier + "} = " + token_of(pieces.front()) + ":";
    note.append(type_keyword(placeholder.item.type()));
    for (std::size_t i = 1; i < pieces.size(); ++i) note.append(i % 2 ? " " : "=").append(token_of(pieces[i]));
    return note;
}

bool needs_definition(definition const& placeholder) {
    return placeholder.item.type() != message_item::string || placeholder.item.data() != placeholder.identifier;
}

std::optional<definition> read_definition(std::string_view note) {
    if (!take(note, "{")) return std::nullopt;
    ustring8 const identifier(note.substr(0, note.find('}')));
    note.remove_prefix(identifier.size());
    std::optional<ustring8> data;
    if (take(note, "} = ")) data = take_token(note);
    if (!data || !take(note, ":")) return std::nullopt;
    std::optional<ustring8> const type = take_token(note);
    for (char mark = ' '; !note.empty(); mark = mark == ' ' ? '=' : ' ') {
        if (!take(note, {&mark, 1})) return std::nullopt;
        std::optional<ustring8> const piece = take_token(note);
        if (!piece) return std::nullopt;
        (*data += separator) += *piece;
    }
    if (!type) return std::nullopt;
    message_item::type_t const known = zolt::i18n::_private::xmc_file_loader::parse_message_type(*type);
    if (type_keyword(known) != *type) return std::nullopt;
    return definition{identifier, message_item(*data, known == message_item::value ? value_argument : known)};
}

bool is_like_definition(std::string_view note) {
    if (!take(note, "{")) return false;
    auto const end = std::find_if_not(note.begin(), note.end(), is_identifier_part);
    note.remove_prefix(static_cast<std::size_t>(end - note.begin()));
    return note.starts_with("} =");
}

// In quotes unless it can stand in one line as it is; to a backslash at the end gettext appends the next line.
ustring8 free_text(ustring8 const& text) {
    bool const is_bare = text.front() != '"' && text.front() != ' ' && text.back() != ' ' && text.back() != '\\' &&
                         std::none_of(text.begin(), text.end(),
                                      [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
    return is_bare ? text : quoted_po(text);
}

ustring8 read_free_text(std::string_view note) {
    std::string_view rest = note;
    std::optional<ustring8> const text = take_quoted_po(rest);
    return text && rest.empty() ? *text : ustring8(note);
}

std::optional<ustring8> meta_of(po_entry const& entry) {
    for (ustring8 const& note : entry.notes) {
        std::string_view rest = note;
        if (take(rest, meta_mark)) return read_free_text(rest);
    }
    return std::nullopt;
}

bool has_note(po_entry const& entry, std::string_view note) {
    return std::find(entry.notes.begin(), entry.notes.end(), note) != entry.notes.end();
}

//--------------------------------------------------------------------------------------------------
// Texts of entries

/// What notes tell about an entry's placeholders, by their identifiers.
using definition_map = std::map<ustring8, message_item>;

definition_map read_definitions(po_entry const& entry) {
    definition_map result;
    for (ustring8 const& note : entry.notes) {
        if (auto const found = read_definition(note)) result.insert_or_assign(found->identifier, found->item);
    }
    return result;
}

/// Cuts a text with braces into items.
class text_reader {
public:
    explicit text_reader(definition_map const& definitions) : m_definitions(definitions) {}

    message_t::items_type read(std::string_view text) {
        while (!text.empty()) {
            std::size_t const size = std::min(text.size(), text.find_first_of("{}"));
            m_literal.append(text.substr(0, size));
            text.remove_prefix(size);
            if (!text.empty()) read_brace(text);
        }
        end_literal();
        return std::move(m_items);
    }

    /// The identifiers that were met.
    std::set<ustring8> const& identifiers() const { return m_identifiers; }
    /// A brace became text though it is not doubled.
    bool has_stray_brace() const { return m_has_stray_brace; }

private:
    // What is no placeholder is text.
    void read_brace(std::string_view& text) {
        bool const is_doubled = text.size() > 1 && text[1] == text.front();
        std::size_t const size = is_doubled || text.front() == '}' ? 0 : read_placeholder(text);
        if (size == 0) m_literal += text.front();
        m_has_stray_brace = m_has_stray_brace || (size == 0 && !is_doubled);
        text.remove_prefix(is_doubled ? 2 : std::max<std::size_t>(size, 1));
    }

    // Bytes of the placeholder, 0 when it is none. Those without a name count from 0.
    std::size_t read_placeholder(std::string_view text) {
        std::size_t size = 1;
        while (size != text.size() && is_identifier_part(text[size])) ++size;
        if (size == text.size() || text[size] != '}') return 0;
        ustring8 name(text.substr(1, size - 1));
        if (name.empty()) name = std::to_string(m_unnamed++);
        end_literal();
        auto const known = m_definitions.find(name);
        m_items.push_back(known == m_definitions.end() ? message_item(name, message_item::string) : known->second);
        m_identifiers.insert(name);
        return size + 1;
    }

    void end_literal() {
        if (!m_literal.empty()) m_items.emplace_back(m_literal);
        m_literal.clear();
    }

    definition_map const& m_definitions;
    message_t::items_type m_items;
    ustring8 m_literal;
    std::set<ustring8> m_identifiers;
    std::size_t m_unnamed = 0;
    bool m_has_stray_brace = false;
};

message_t::items_type plain_items(ustring8 const& text) {
    return text.empty() ? message_t::items_type() : message_t::items_type{message_item(text)};
}

bool is_same_edge(std::string_view one, std::string_view other) {
    return one.starts_with('\n') == other.starts_with('\n') && one.ends_with('\n') == other.ends_with('\n');
}

ustring8 context_of(ustring8 const& catalog, ustring8 const& message) {
    ustring8 context;
    for (char const c : catalog)
        c == '%' ? context.append("%25") : c == '/' ? context.append("%2F") : context.append(1, c);
    return context.append("/").append(message), context;
}

std::optional<std::pair<ustring8, ustring8>> names_of(std::string_view context) {
    std::size_t const slash = context.find('/');
    if (slash == std::string_view::npos) return std::nullopt;
    std::string_view rest = context.substr(0, slash);
    ustring8 catalog;
    while (!rest.empty()) {
        if (take(rest, "%25")) {
            catalog += '%';
        } else if (take(rest, "%2F")) {
            catalog += '/';
        } else {
            catalog += rest.front();
            rest.remove_prefix(1);
        }
    }
    return std::pair(catalog, ustring8(context.substr(slash + 1)));
}

} // namespace

po_entry po_header(ustring8 const& language, ustring8 const& reference_language) {
    po_entry header;
    ustring8& text = header.texts.emplace_back("Project-Id-Version: \nPO-Revision-Date: \nLast-Translator: \n"
                                               "Language-Team: \n");
    text.append("Language: ").append(language).append("\n");
    text.append("MIME-Version: 1.0\nContent-Type: text/plain; charset=UTF-8\nContent-Transfer-Encoding: 8bit\n");
    text.append("X-Source-Language: ").append(reference_language).append("\n");
    return header;
}

po_entry to_po_entry(ustring8 const& catalog, message_t const* reference, message_t const* translation) {
    if (!translation && !reference) return {};
    message_t const& named = translation ? *translation : *reference;
    message_t const& source = reference ? *reference : *translation;
    placeholder_names names;
    po_entry entry;
    entry.context = context_of(catalog, named.name());
    std::vector<ustring8> const expected = names.add_reference(source);
    entry.id = encode_text(source, expected);
    ustring8& text = entry.texts.emplace_back();
    std::vector<ustring8> used = expected;
    if (translation) {
        used = names.add_translation(*translation);
        text = encode_text(*translation, used);
    }

    for (definition const& placeholder : names.definitions()) {
        if (needs_definition(placeholder)) entry.notes.push_back(definition_note(placeholder));
    }
    if (translation && !translation->meta().empty())
        entry.notes.push_back(std::string(meta_mark) + free_text(translation->meta()));
    bool const has_other_meta = !translation || source.meta() != translation->meta();
    if (has_other_meta && !source.meta().empty())
        entry.notes.push_back(std::string(note_mark) + free_text(source.meta()));
    if (!reference) entry.notes.emplace_back(std::string(no_reference_mark));

    bool const has_braces = (entry.id + text).find_first_of("{}") != ustring8::npos;
    entry.is_brace_format = has_braces;
    if (translation && text.empty()) {
        entry.notes.emplace_back(std::string(empty_mark));
    } else if (!text.empty() && !entry.id.empty()) {
        bool const is_good =
            std::set<ustring8>(expected.begin(), expected.end()) == std::set<ustring8>(used.begin(), used.end()) &&
            is_same_edge(entry.id, text);
        entry.is_fuzzy = !is_good;
        if (!is_good) entry.notes.emplace_back(std::string(kept_mark));
    }
    return entry;
}

bool is_kept(po_entry const& entry) { return entry.is_fuzzy && has_note(entry, kept_mark); }

bool fits_po(ustring8 const& catalog, message_t const& message) {
    return is_po_text(catalog) && is_po_text(message.name()) && is_po_text(message.meta()) &&
           std::all_of(message.begin(), message.end(),
                       [](message_item const& item) { return is_po_text(item.data()); });
}

std::vector<po_doubt> doubts_about(po_entry const& entry) {
    if (!entry.is_brace_format) return {};
    std::vector<po_doubt> doubts;
    definition_map const none;
    text_reader source(none);
    source.read(entry.id + entry.plural_id.value_or(""));
    std::set<ustring8> const& expected = source.identifiers();
    bool has_same = true;
    bool has_stray = false;
    for (ustring8 const& text : entry.texts) {
        if (text.empty()) continue;
        text_reader reader(none);
        reader.read(text);
        std::set<ustring8> const& met = reader.identifiers();
        has_same =
            has_same && (entry.plural_id ? std::includes(expected.begin(), expected.end(), met.begin(), met.end())
                                         : expected == met);
        has_stray = has_stray || reader.has_stray_brace();
    }
    bool const is_compared = !entry.id.empty(); // gettext sees nothing to compare with in an empty one
    if (is_compared && !has_same && !is_kept(entry)) doubts.push_back(po_doubt::placeholders);
    if (has_stray) doubts.push_back(po_doubt::brace);
    if (std::any_of(entry.notes.begin(), entry.notes.end(),
                    [](ustring8 const& note) { return is_like_definition(note) && !read_definition(note); }))
        doubts.push_back(po_doubt::note);
    return doubts;
}

//--------------------------------------------------------------------------------------------------

po_importer::po_importer(ustring8 language, std::optional<ustring8> catalog, bool takes_fuzzy)
    : m_language(std::move(language)), m_catalog(std::move(catalog)), m_takes_fuzzy(takes_fuzzy) {}

po_importer::result po_importer::add(po_entry const& entry, ustring8 const& plural_rule,
                                     std::vector<po_message>& messages) {
    auto const names = name_of(entry);
    if (!names) return result::no_name;
    auto const key = m_catalog ? std::pair(entry.context ? *entry.context + "\4" : ustring8(), entry.id) : *names;
    if (!m_entries.insert(key).second) return result::duplicate;
    if (entry.is_fuzzy && !m_takes_fuzzy && !is_kept(entry)) return result::fuzzy;
    auto const is_empty = [](ustring8 const& text) { return text.empty(); };
    bool const is_empty_message = !entry.plural_id && has_note(entry, empty_mark);
    bool const has_text = !std::all_of(entry.texts.begin(), entry.texts.end(), is_empty);
    if (!has_text && !is_empty_message) return result::untranslated;

    definition_map const definitions = read_definitions(entry);
    ustring8 const meta = meta_of(entry).value_or(entry.plural_id ? plural_rule : ustring8());
    for (std::size_t form = 0; form != entry.texts.size(); ++form) {
        ustring8 const& text = entry.texts[form];
        if (text.empty() && !is_empty_message) continue;
        ustring8 name = names->second;
        if (entry.plural_id) name.append("[").append(std::to_string(form)).append("]");
        text_reader reader(definitions);
        message_t::items_type const items = entry.is_brace_format ? reader.read(text) : plain_items(text);
        message_t message(unique(names->first, name), items, meta);
        message._orginal_locale(m_language);
        messages.push_back({names->first, message});
    }
    return result::imported;
}

std::optional<std::pair<ustring8, ustring8>> po_importer::name_of(po_entry const& entry) const {
    if (m_catalog)
        return std::pair(*m_catalog, entry.context ? ustring8(*entry.context + "|" + entry.id) : entry.id);
    return entry.context ? names_of(*entry.context) : std::nullopt;
}

ustring8 po_importer::unique(ustring8 const& catalog, ustring8 const& name) {
    std::size_t& number = m_names[{catalog, name}];
    if (number == 0) {
        number = 1;
        return name;
    }
    ustring8 other;
    do other = name + "#" + std::to_string(++number);
    while (!m_names.try_emplace({catalog, other}, 1).second);
    return other;
}

} // namespace tools
