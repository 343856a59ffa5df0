// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Each load fills a fresh loader and merges what it read when there was no fault. The two forms of
// every load, with a catalog filter and without, differ in one call to the loader; they share the
// rest by passing the filter as a pointer that may be null. The wide forms stand at the end.
#include <zolt/i18n/message_catalogs.hpp>

#include <zolt/i18n/framed_text_private.hpp>
#include <zolt/strings/string_utility.hpp>
#include <zolt/strings/unicode.hpp>
#include <zolt/system/io.hpp>
#include <zolt/system/io_private.hpp>

#include <iterator>
#include <set>
#include <utility>
#include <vector>

namespace ZOLT_2_18::i18n {
namespace {

using strings::ustring16;
using strings::ustring32;
using strings::ustring8;
using result_type = message_catalogs::result_type;
using load_error = _private::xmc_file_loader::load_error;

constexpr char result_prefix[] = "message_catalogs::result_type - ";

// Indexed by error_type. The codes between have a text only together with a loader's fault.
constexpr _private::text_frame result_frames[] = {
    {"No Error"},
    {"No catalog was loaded in file: \"", "\""},
    {},
    {"File \"", "\" was not found on disk"},
    {"Directory \"", "\" was not found on disk"},
    {"Entity (file or directory) \"", "\" was not found on disk"},
};

/// What a loader's fault means to the user of a collection: the code and the first line of the text.
struct outcome {
    message_catalogs::error_type code;
    char const* first_line;
};

constexpr outcome invalid_file = {message_catalogs::xmc_not_valid, "XMC file is not valid\n "};
constexpr outcome unhandled = {message_catalogs::unexpected_error, "Unhandled case\n "};

// Indexed by the loader's error_type.
constexpr outcome outcomes[] = {
    {message_catalogs::no_error, "No Error\n "},
    {message_catalogs::no_catalog_loaded, "No catalog was loaded\n "},
    {message_catalogs::default_locale_unsupported, "Default locale lookup not supported yet\n "},
    {message_catalogs::file_not_found, "File was not found on disk\n "},
    {message_catalogs::xml_parse_error, "XML parse error, XML file not well formed\n "},
    invalid_file, // invalid_attribute
    invalid_file, // invalid_element
    invalid_file, // not_xmc_file
    invalid_file, // unsupported_version
    invalid_file, // br_end_missing
    invalid_file, // msg_end_missing
    invalid_file, // arg_end_missing
    invalid_file, // include_end_missing
    invalid_file, // catalog_end_missing
    {message_catalogs::unexpected_error, "Unexpected error happened during loading\n "},
};

outcome const& outcome_of(load_error const& fault) noexcept {
    return fault.code() < std::size(outcomes) ? outcomes[fault.code()] : unhandled;
}

bool is_catalog_file(ustring8 const& path) {
    if (path.size() < 4) return false;
    ustring8 const extension = strings::to_lower(path.substr(path.size() - 4));
    return extension == ".xmc" || extension == ".xml";
}

/// One load of a file or a directory into a collection's catalogs.
class load_request {
public:
    /// A null `catalog_id` is the form without a filter.
    load_request(message_catalogs::catalog_map& catalogs, ustring8 const& lang, ustring8 const* catalog_id)
        : m_catalogs(catalogs), m_lang(lang), m_catalog_id(catalog_id) {}

    result_type load(ustring8 const& path) {
        auto const status = system::_private::query_status(path);
        if (!status.is_file() && !status.is_directory()) {
            return result_type(message_catalogs::entity_not_found, path);
        }
        result_type result = status.is_file() ? load_file(path) : load_directory(path);
        if (result.code() == message_catalogs::no_error && m_catalogs.empty()) {
            return result_type(message_catalogs::no_catalog_loaded, path);
        }
        return result;
    }

    result_type load_file(ustring8 const& path) {
        _private::xmc_file_loader loader;
        load_error const fault =
            m_catalog_id ? loader.parse(path, m_lang, *m_catalog_id) : loader.parse(path, m_lang);
        if (fault.code() == _private::xmc_file_loader::no_error) loader.combine_data(m_catalogs);
        return result_type(fault);
    }

    // Depth first without recursion: a directory's entries go on top of those still to be seen.
    result_type load_directory(ustring8 const& path) {
        auto const top = system::_private::query_status(path);
        if (!top.exists()) return result_type(message_catalogs::directory_not_found, path);

        std::set<system::_private::file_identity> entered = {top.identity};
        std::vector<ustring8> waiting;
        push_entries(waiting, path);
        while (!waiting.empty()) {
            ustring8 const entry = std::move(waiting.back());
            waiting.pop_back();
            auto const status = system::_private::query_status(entry);
            if (status.is_file()) {
                if (!is_catalog_file(entry)) continue;
                result_type result = load_file(entry);
                if (result.code() != message_catalogs::no_error) return result;
            } else if (status.is_directory() && entered.insert(status.identity).second) {
                push_entries(waiting, entry);
            }
        }
        return result_type(message_catalogs::no_error, path);
    }

private:
    static void push_entries(std::vector<ustring8>& waiting, ustring8 const& directory) {
        std::vector<ustring8> entries = system::list_directory(directory);
        std::move(entries.rbegin(), entries.rend(), std::back_inserter(waiting));
    }

    message_catalogs::catalog_map& m_catalogs;
    ustring8 const& m_lang;
    ustring8 const* m_catalog_id;
};

ustring8 utf8(ustring16 const& text) { return strings::utf16_to_utf8(text); }
ustring8 utf8(ustring32 const& text) { return strings::utf32_to_utf8(text); }

} // namespace

// The priority lets the static objects of other sources use them, in whatever order they are made.
[[gnu::init_priority(101)]] catalog_t const message_catalogs::s_nil_catalog;
[[gnu::init_priority(101)]] message_t const message_catalogs::s_nil_message;

result_type::result_type(error_type code, ustring8 const& path) : m_code(code) {
    if (_private::text_frame const* const frame = _private::find_frame(result_frames, code)) {
        _private::append_framed(m_message.append(result_prefix), *frame, path);
    } else {
        _private::append_unknown(m_message, code, path);
    }
}

result_type::result_type(load_error const& fault) : m_code(outcome_of(fault).code), m_message(result_prefix) {
    m_message.append(outcome_of(fault).first_line).append(fault.message());
}

message_catalogs::message_catalogs() = default;
message_catalogs::message_catalogs(types::nil_t const&) {}
message_catalogs::message_catalogs(message_catalogs&& other) noexcept = default;
message_catalogs::~message_catalogs() = default;

message_catalogs::message_catalogs(message_catalogs const& other) {
    for (auto const& [name, catalog] : other.m_catalogs) {
        m_catalogs.emplace_hint(m_catalogs.end(), name, memory::pointers::make_shared_pointer<catalog_t>(*catalog));
    }
}

message_catalogs& message_catalogs::assign(message_catalogs const& other) {
    return assign(message_catalogs(other));
}

message_catalogs& message_catalogs::assign(message_catalogs&& other) noexcept {
    catalog_map taken(std::move(other.m_catalogs));
    m_catalogs.swap(taken);
    return *this;
}

message_catalogs& message_catalogs::assign(types::nil_t const&) {
    m_catalogs.clear();
    return *this;
}

result_type message_catalogs::load(ustring8 const& path, ustring8 const& lang) {
    return load_request(m_catalogs, lang, nullptr).load(path);
}

result_type message_catalogs::load(ustring8 const& path, ustring8 const& lang, ustring8 const& catalog_id) {
    return load_request(m_catalogs, lang, &catalog_id).load(path);
}

result_type message_catalogs::load_file(ustring8 const& path, ustring8 const& lang) {
    return load_request(m_catalogs, lang, nullptr).load_file(path);
}

result_type message_catalogs::load_file(ustring8 const& path, ustring8 const& lang, ustring8 const& catalog_id) {
    return load_request(m_catalogs, lang, &catalog_id).load_file(path);
}

result_type message_catalogs::load_directory(ustring8 const& path, ustring8 const& lang) {
    return load_request(m_catalogs, lang, nullptr).load_directory(path);
}

result_type message_catalogs::load_directory(ustring8 const& path, ustring8 const& lang,
                                             ustring8 const& catalog_id) {
    return load_request(m_catalogs, lang, &catalog_id).load_directory(path);
}

bool message_catalogs::has_catalog(ustring8 const& name) const { return m_catalogs.find(name) != m_catalogs.end(); }

bool message_catalogs::has_catalog(ustring8 const& name, ustring8 const& lang) const {
    return catalog(name).is_language_loaded(lang);
}

catalog_t const& message_catalogs::catalog(ustring8 const& name) const {
    auto const found = m_catalogs.find(name);
    return found == m_catalogs.end() ? s_nil_catalog : *found->second;
}

bool message_catalogs::has_message(ustring8 const& catalog_name, ustring8 const& message) const {
    return catalog(catalog_name).has_message(message);
}

message_t const& message_catalogs::message(ustring8 const& catalog_name, ustring8 const& message) const {
    auto const found = m_catalogs.find(catalog_name);
    return found == m_catalogs.end() ? s_nil_message : std::as_const(*found->second).message(message);
}

unsigned int message_catalogs::count(ustring8 const& name) const { return catalog(name).size(); }
unsigned int message_catalogs::size(ustring8 const& name) const { return catalog(name).size(); }

catalog_t::const_iterator message_catalogs::begin(ustring8 const& name) const { return catalog(name).begin(); }
catalog_t::const_iterator message_catalogs::end(ustring8 const& name) const { return catalog(name).end(); }

void message_catalogs::erase() { m_catalogs.clear(); }
void message_catalogs::erase(ustring8 const& name) { m_catalogs.erase(name); }

// The forms for UTF-16 and UTF-32 names.

result_type message_catalogs::load(ustring16 const& path, ustring16 const& lang) {
    return load(utf8(path), utf8(lang));
}
result_type message_catalogs::load(ustring32 const& path, ustring32 const& lang) {
    return load(utf8(path), utf8(lang));
}

result_type message_catalogs::load(ustring16 const& path, ustring16 const& lang, ustring16 const& catalog_id) {
    return load(utf8(path), utf8(lang), utf8(catalog_id));
}
result_type message_catalogs::load(ustring32 const& path, ustring32 const& lang, ustring32 const& catalog_id) {
    return load(utf8(path), utf8(lang), utf8(catalog_id));
}

result_type message_catalogs::load_file(ustring16 const& path, ustring16 const& lang) {
    return load_file(utf8(path), utf8(lang));
}
result_type message_catalogs::load_file(ustring32 const& path, ustring32 const& lang) {
    return load_file(utf8(path), utf8(lang));
}

result_type message_catalogs::load_file(ustring16 const& path, ustring16 const& lang, ustring16 const& catalog_id) {
    return load_file(utf8(path), utf8(lang), utf8(catalog_id));
}
result_type message_catalogs::load_file(ustring32 const& path, ustring32 const& lang, ustring32 const& catalog_id) {
    return load_file(utf8(path), utf8(lang), utf8(catalog_id));
}

result_type message_catalogs::load_directory(ustring16 const& path, ustring16 const& lang) {
    return load_directory(utf8(path), utf8(lang));
}
result_type message_catalogs::load_directory(ustring32 const& path, ustring32 const& lang) {
    return load_directory(utf8(path), utf8(lang));
}

result_type message_catalogs::load_directory(ustring16 const& path, ustring16 const& lang,
                                             ustring16 const& catalog_id) {
    return load_directory(utf8(path), utf8(lang), utf8(catalog_id));
}
result_type message_catalogs::load_directory(ustring32 const& path, ustring32 const& lang,
                                             ustring32 const& catalog_id) {
    return load_directory(utf8(path), utf8(lang), utf8(catalog_id));
}

bool message_catalogs::has_catalog(ustring16 const& name) const { return has_catalog(utf8(name)); }
bool message_catalogs::has_catalog(ustring32 const& name) const { return has_catalog(utf8(name)); }

bool message_catalogs::has_catalog(ustring16 const& name, ustring16 const& lang) const {
    return has_catalog(utf8(name), utf8(lang));
}
bool message_catalogs::has_catalog(ustring32 const& name, ustring32 const& lang) const {
    return has_catalog(utf8(name), utf8(lang));
}

catalog_t const& message_catalogs::catalog(ustring16 const& name) const { return catalog(utf8(name)); }
catalog_t const& message_catalogs::catalog(ustring32 const& name) const { return catalog(utf8(name)); }

bool message_catalogs::has_message(ustring16 const& catalog_name, ustring16 const& message_name) const {
    return has_message(utf8(catalog_name), utf8(message_name));
}
bool message_catalogs::has_message(ustring32 const& catalog_name, ustring32 const& message_name) const {
    return has_message(utf8(catalog_name), utf8(message_name));
}

message_t const& message_catalogs::message(ustring16 const& catalog_name, ustring16 const& message_name) const {
    return message(utf8(catalog_name), utf8(message_name));
}
message_t const& message_catalogs::message(ustring32 const& catalog_name, ustring32 const& message_name) const {
    return message(utf8(catalog_name), utf8(message_name));
}

unsigned int message_catalogs::count(ustring16 const& name) const { return count(utf8(name)); }
unsigned int message_catalogs::count(ustring32 const& name) const { return count(utf8(name)); }

unsigned int message_catalogs::size(ustring16 const& name) const { return size(utf8(name)); }
unsigned int message_catalogs::size(ustring32 const& name) const { return size(utf8(name)); }

catalog_t::const_iterator message_catalogs::begin(ustring16 const& name) const { return begin(utf8(name)); }
catalog_t::const_iterator message_catalogs::begin(ustring32 const& name) const { return begin(utf8(name)); }

catalog_t::const_iterator message_catalogs::end(ustring16 const& name) const { return end(utf8(name)); }
catalog_t::const_iterator message_catalogs::end(ustring32 const& name) const { return end(utf8(name)); }

void message_catalogs::erase(ustring16 const& name) { erase(utf8(name)); }
void message_catalogs::erase(ustring32 const& name) { erase(utf8(name)); }

} // namespace ZOLT_2_18::i18n
