// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A file is cut into tokens as a whole, then its tokens are walked once, one routine per kind of
// element. Faults are thrown as load_error and pick up their context lines on the way out.
//
// Includes do not recurse: `reading` keeps the chain of open files, each with its place in its own
// tokens, and always goes on with the innermost one. That bounds the stack whatever the files hold.
#include <zolt/i18n/_private/xmc_file_loader.hpp>

#include <zolt/exceptions/exception.hpp>
#include <zolt/i18n/catalog.hpp>
#include <zolt/i18n/locale_id_private.hpp>
#include <zolt/strings/string_utility.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/system/io_private.hpp>

#include <algorithm>
#include <cstddef>
#include <list>
#include <string_view>
#include <utility>

namespace ZOLT_2_18::i18n::_private {
namespace {

using strings::ustring8;
using token = parser::xml_token_stream::token;
using position = parser::xml_token_stream::const_iterator;
using load_error = xmc_file_loader::load_error;

constexpr std::size_t most_locale_parts = 64;
constexpr std::size_t most_open_files = 1001; // the file itself and 1,000 levels of includes
constexpr unsigned int most_files = 10000;
constexpr long long most_bytes = 1LL << 30;

bool is(token const& candidate, token::token_type type, std::string_view name) noexcept {
    return candidate.type() == type && candidate.value() == name;
}

bool is_argument_start(token const& candidate) noexcept {
    return is(candidate, token::element_start, "argument") || is(candidate, token::element_start, "arg");
}

[[noreturn]] void fail(xmc_file_loader::error_type code, ustring8 const& value = ustring8()) {
    throw load_error(code, value);
}

// Inside the root element there is always a next token; running out of them is a fault.
void advance(position& at, position const& end) {
    if (++at == end) fail(xmc_file_loader::unexpected_parse_error);
}

// Comments may stand in a start tag that is still pending.
void advance_in_tag(position& at, position const& end) {
    do advance(at, end);
    while (at->type() == token::comment);
}

// From an element's start to its start_tag_end, with every attribute handed to `use`.
template <typename Use>
void parse_attributes(position& at, position const& end, Use use) {
    advance_in_tag(at, end);
    while (at->type() != token::start_tag_end) {
        ustring8 const& name = at->value();
        advance(at, end);
        use(name, at->value());
        advance_in_tag(at, end);
    }
}

/// Cuts a message's content into items: collects text until an argument ends it.
class item_builder {
public:
    void add_characters(ustring8 const& text) {
        m_text += text;
        m_after_argument = false;
    }

    // Blanks at the start of a message go, other runs of them become one.
    void add_space() {
        if (m_text.empty() ? m_after_argument : m_text.back() != ' ') m_text += ' ';
        m_after_argument = false;
    }

    void add_line_break() { m_text += '\n'; }

    void add_argument(message_item argument) {
        end_text();
        m_items.push_back(std::move(argument));
        m_after_argument = true;
    }

    std::vector<message_item> finish() {
        end_text();
        return std::move(m_items);
    }

private:
    void end_text() {
        if (!m_text.empty()) m_items.emplace_back(std::exchange(m_text, ustring8()));
    }

    std::vector<message_item> m_items;
    ustring8 m_text;
    bool m_after_argument = false;
};

ustring8 directory_of(ustring8 const& path) {
    std::size_t const separator = path.find_last_of("/\\");
    return separator == ustring8::npos ? ustring8("./") : ustring8(path.substr(0, separator + 1));
}

bool is_absolute(ustring8 const& path) noexcept {
    return path.front() == '/' || path.front() == '\\' || (path.size() >= 3 && path[1] == ':');
}

} // namespace

/// One load: the file that was asked for and the includes that are open below it.
class xmc_file_loader::reading {
public:
    explicit reading(xmc_file_loader& loader) : m_loader(loader) {}

    load_error read_file(ustring8 const& path) {
        return read([&] { open(path); });
    }

    load_error read_text(ustring8 const& text, ustring8 const& path) {
        return read([&] {
            open_file& file = tokenize(text, path, m_loader.m_base_directory, {});
            if (file.at == file.end) {
                m_chain.pop_back();
                fail(unexpected_parse_error, "Nothing of interest in the file.");
            }
            begin(file);
        });
    }

private:
    struct open_file {
        ustring8 path;
        ustring8 directory;
        system::_private::file_identity identity;
        parser::xml_token_stream tokens;
        position at;
        position end;
        bool anything_read = false;
        bool inside_include = false;
    };

    template <typename Start>
    load_error read(Start start_first) {
        try {
            start_first();
            while (!m_chain.empty()) go_on();
        } catch (load_error& fault) {
            for (auto file = m_chain.rbegin(); file != m_chain.rend(); ++file) {
                fault.append_error_stack(load_error::in_file, file->path);
            }
            return fault;
        }
        return load_error(no_error, ustring8());
    }

    void open(ustring8 const& path) {
        auto const status = system::_private::query_status(path);
        if (!status.is_regular_file()) fail(file_not_found, path);
        if (m_chain.size() == most_open_files || m_files_opened == most_files || is_open(status.identity)) {
            fail(unexpected_parse_error);
        }
        ++m_files_opened;
        begin(tokenize(load_text(path, status.size), path, directory_of(path), status.identity));
    }

    bool is_open(system::_private::file_identity const& identity) const noexcept {
        return std::any_of(m_chain.begin(), m_chain.end(),
                           [&](open_file const& file) { return file.identity == identity; });
    }

    ustring8 load_text(ustring8 const& path, long long size) {
        ustring8 text;
        if (size > most_bytes - m_bytes_read) fail_too_large(path);
        try {
            if (system::load_file(path, text) != 0) fail(file_not_found, path);
        } catch (exceptions::runtime_error const&) {
            fail_too_large(path);
        }
        m_bytes_read += static_cast<long long>(text.size());
        if (m_bytes_read > most_bytes) fail_too_large(path);
        return text;
    }

    [[noreturn]] static void fail_too_large(ustring8 const& path) {
        load_error fault(unexpected_parse_error, ustring8());
        fault.append_error_stack(load_error::in_file, path);
        throw fault;
    }

    open_file& tokenize(ustring8 const& text, ustring8 const& path, ustring8 const& directory,
                        system::_private::file_identity const& identity) {
        open_file& file = m_chain.emplace_back();
        file.path = path;
        file.directory = directory;
        file.identity = identity;
        m_loader.m_base_directory = directory;

        auto const fault = file.tokens.parse(text);
        if (fault.kind != parser::xml_parser::parse_error::no_error) throw load_error(xml_parse_error, fault);
        file.at = std::as_const(file.tokens).begin();
        file.end = std::as_const(file.tokens).end();
        return file;
    }

    void begin(open_file& file) {
        m_loader.parse_ignorable(file.at, file.end);
        m_loader.parse_xmc_header(file.at, file.end);
        m_loader.parse_ignorable(file.at, file.end);
    }

    void go_on() {
        open_file& file = m_chain.back();
        if (file.inside_include) {
            m_loader.parse_include_end(file.at, file.end);
            m_loader.parse_ignorable(file.at, file.end);
            file.inside_include = false;
        } else if (file.at == file.end || is(*file.at, token::element_end, "xmc")) {
            close();
        } else {
            read_element(file);
        }
    }

    void read_element(open_file& file) {
        if (is(*file.at, token::element_start, "catalog")) {
            m_loader.parse_catalog(file.at, file.end);
            m_loader.parse_ignorable(file.at, file.end);
        } else if (is(*file.at, token::element_start, "include")) {
            ustring8 const path = m_loader.parse_include(file.at, file.end);
            file.inside_include = true;
            if (!path.empty()) open(path);
        } else {
            fail(invalid_element, file.at->value());
        }
        file.anything_read = true;
    }

    void close() {
        ustring8 const path = std::move(m_chain.back().path);
        bool const anything_read = m_chain.back().anything_read;
        m_chain.pop_back();
        if (!anything_read) fail(no_catalog_loaded, path);
        if (!m_chain.empty()) m_loader.m_base_directory = m_chain.back().directory;
    }

    xmc_file_loader& m_loader;
    std::list<open_file> m_chain; // tokens and places in them stay where they are
    unsigned int m_files_opened = 0;
    long long m_bytes_read = 0;
};

xmc_file_loader::xmc_file_loader() = default;
xmc_file_loader::~xmc_file_loader() = default;

load_error xmc_file_loader::parse(ustring8 const& file, ustring8 const& lang) {
    if (lang.empty()) return load_error(default_locale_unsupported, ustring8());
    handle_language(lang);
    return parse_file(file);
}

load_error xmc_file_loader::parse(ustring8 const& file, ustring8 const& lang, ustring8 const& catalog_id) {
    m_catalog_filter = catalog_id;
    handle_language(lang);
    return parse(file);
}

load_error xmc_file_loader::parse(ustring8 const& file) {
    handle_language(ustring8());
    return parse_file(file);
}

unsigned int xmc_file_loader::combine_data(catalog_map& catalogs) {
    auto data = std::exchange(m_data, {});
    unsigned int stored = 0;
    for (auto& [name, messages] : data) {
        auto found = catalogs.find(name);
        if (found == catalogs.end()) {
            found = catalogs.emplace(name, memory::pointers::make_shared_pointer<catalog_t>()).first;
            found->second->_name(name);
        }
        stored += combine_messages(*found->second, messages);
    }
    return stored;
}

unsigned int xmc_file_loader::combine_messages(catalog_t& catalog, message_map& messages) const {
    if (catalog.m_messages.empty()) { // as a rule: the catalog takes over the map as it is
        catalog.m_messages.swap(messages);
        return catalog.size();
    }
    unsigned int stored = 0;
    for (auto& [name, message] : messages) {
        message_t const& present = std::as_const(catalog).message(name);
        if (present == types::nil ||
            get_locale_weight(message._orginal_locale()) >= get_locale_weight(present._orginal_locale())) {
            catalog.message(name, std::move(message));
            ++stored;
        }
    }
    return stored;
}

unsigned int xmc_file_loader::get_locale_weight(ustring8 const& locale) const {
    if (locale.empty()) return 0;
    auto const found = std::find(m_languages.begin(), m_languages.end(), normalized_locale(locale));
    return found == m_languages.end() ? 0 : static_cast<unsigned int>(found - m_languages.begin()) + 1;
}

void xmc_file_loader::handle_language(ustring8 const& lang) {
    m_languages.push_back(".");
    m_languages.push_back("en");

    std::vector<ustring8> const parts = strings::split_string(normalized_locale(lang), "_");
    ustring8 prefix;
    for (std::size_t i = 0; i < parts.size() && i < most_locale_parts; ++i) {
        if (i > 0) prefix += '_';
        prefix += parts[i];
        if (i > 0 || prefix != "en") m_languages.push_back(prefix);
    }
}

bool xmc_file_loader::is_catalog_matched(ustring8 const& name) const {
    return !is_cat_id_set() || name == m_catalog_filter;
}

load_error xmc_file_loader::parse_file(ustring8 const& path) { return reading(*this).read_file(path); }

load_error xmc_file_loader::parse_string(ustring8 const& text, ustring8 const& path) {
    return reading(*this).read_text(text, path);
}

message_item::type_t xmc_file_loader::parse_message_type(ustring8 const& text) {
    struct keyword {
        std::string_view text;
        message_item::type_t type;
    };
    static constexpr keyword keywords[] = {
        {"date", message_item::date},
        {"duration", message_item::duration},
        {"memory", message_item::memory},
        {"mem", message_item::memory},
        {"mem_unit", message_item::memory_unit},
        {"memory_unit", message_item::memory_unit},
        {"metric", message_item::metric},
        {"metric_unit", message_item::metric_unit},
        {"number", message_item::number},
        {"int", message_item::int_},
        {"double", message_item::double_},
        {"string", message_item::string},
        {"time", message_item::time},
        {"value", message_item::value},
    };
    ustring8 const lower = strings::to_lower(text);
    for (keyword const& candidate : keywords) {
        if (candidate.text == lower) return candidate.type;
    }
    return message_item::string;
}

void xmc_file_loader::set_message(message_t message, ustring8 const& catalog) {
    message_t& present = m_data[catalog][message.name()];
    if (present == types::nil ||
        get_locale_weight(message._orginal_locale()) > get_locale_weight(present._orginal_locale())) {
        present = std::move(message);
    }
}

void xmc_file_loader::parse_ignorable(position& at, position const& end) {
    auto const is_ignorable = [](token const& candidate) {
        return candidate.type() == token::comment || candidate.type() == token::space ||
               candidate.type() == token::character;
    };
    while (at != end && is_ignorable(*at)) ++at;
}

// Kept: exactly one attribute is passed over, so a second one stops the caller with its value.
void xmc_file_loader::parse_xmc_header(position& at, position const& end) {
    if (at == end) fail(not_xmc_file, "Value Not Defined");
    if (!is(*at, token::element_start, "xmc")) fail(not_xmc_file, at->value());
    advance_in_tag(at, end);
    if (!is(*at, token::attribute_name, "version")) fail(invalid_attribute, at->value());
    advance(at, end);
    if (at->value() != "1.0" && at->value() != "1.1") fail(unsupported_version, at->value());
    advance_in_tag(at, end);
    ++at;
}

void xmc_file_loader::parse_catalog(position& at, position const& end) {
    ustring8 catalog;
    ustring8 lang;
    parse_attributes(at, end, [&](ustring8 const& name, ustring8 const& value) {
        if (name == "name") {
            catalog = value;
        } else if (name == "lang") {
            lang = value;
        } else {
            fail(invalid_attribute, name);
        }
    });
    try {
        parse_catalog_content(at, end, catalog, lang);
    } catch (load_error& fault) {
        fault.append_error_stack(load_error::in_catalog, catalog);
        throw;
    }
}

// Kept: a catalog that is not wanted ends at the first end tag of that name, an inner one's too.
void xmc_file_loader::parse_catalog_content(position& at, position const& end, ustring8 const& name,
                                            ustring8 const& lang) {
    advance(at, end);
    if (is_catalog_matched(name) && is_lang_id_good(lang)) {
        parse_ignorable(at, end);
        while (at != end && is(*at, token::element_start, "msg")) {
            message_t message = parse_message(at, end);
            message._orginal_locale(lang);
            set_message(std::move(message), name);
            parse_ignorable(at, end);
        }
        if (at == end) fail(unexpected_parse_error);
    } else {
        at = std::find_if(at, end, [](token const& next) { return is(next, token::element_end, "catalog"); });
    }
    if (at == end || !is(*at, token::element_end, "catalog")) fail(catalog_end_missing, name);
    ++at;
}

message_t xmc_file_loader::parse_message(position& at, position const& end) {
    ustring8 message;
    ustring8 meta;
    try {
        parse_attributes(at, end, [&](ustring8 const& name, ustring8 const& value) {
            if (name == "name") {
                message = value;
            } else if (name == "meta") {
                meta = value;
            } else {
                fail(invalid_attribute, name);
            }
        });
        advance(at, end);
        std::vector<message_item> items = parse_message_content(at, end);
        if (!is(*at, token::element_end, "msg")) fail(msg_end_missing, message);
        ++at;
        return message_t(std::move(message), std::move(items), std::move(meta));
    } catch (load_error& fault) {
        fault.append_error_stack(load_error::in_message, message);
        throw;
    }
}

// Up to the next end tag that is not a `br`'s or an argument's own.
std::vector<message_item> xmc_file_loader::parse_message_content(position& at, position const& end) {
    item_builder items;
    while (at->type() != token::element_end) {
        if (at->type() == token::character) {
            items.add_characters(at->value());
            advance(at, end);
        } else if (at->type() == token::space) {
            items.add_space();
            advance(at, end);
        } else if (at->type() == token::comment) {
            advance(at, end);
        } else if (is(*at, token::element_start, "br")) {
            parse_br(at, end);
            items.add_line_break();
        } else if (is_argument_start(*at)) {
            items.add_argument(parse_message_arg(at, end));
        } else {
            fail(invalid_element, at->value());
        }
    }
    return items.finish();
}

void xmc_file_loader::parse_br(position& at, position const& end) {
    advance_in_tag(at, end);
    if (at->type() != token::start_tag_end) fail(invalid_attribute, at->value());
    advance(at, end);
    if (!is(*at, token::element_end, "br")) fail(br_end_missing);
    advance(at, end);
}

// Kept: `name` replaces everything before it, so options written before it are lost. Kept: the first
// end tag inside ends the argument, so an element in there leaves the message without its own end tag.
message_item xmc_file_loader::parse_message_arg(position& at, position const& end) {
    ustring8 data;
    message_item::type_t type = message_item::string;
    parse_attributes(at, end, [&](ustring8 const& name, ustring8 const& value) {
        if (name == "name") {
            data = value;
        } else if (name == "type") {
            type = parse_message_type(value);
        } else {
            data.append(1, '\1').append(name).append(1, '\1').append(value);
        }
    });
    at = std::find_if(at, end, [](token const& next) { return next.type() == token::element_end; });
    if (at == end) fail(arg_end_missing, data);
    advance(at, end);
    return message_item(std::move(data), type);
}

// Returns the path of the file to read, empty when none is named, and stops in front of the end tag.
ustring8 xmc_file_loader::parse_include(position& at, position const& end) {
    ustring8 path;
    parse_attributes(at, end, [&](ustring8 const& name, ustring8 const& value) {
        if (name != "file") return;
        if (value.empty()) fail(file_not_found);
        if (!is_absolute(value)) path = m_base_directory;
        path += value;
    });
    return path;
}

void xmc_file_loader::parse_include_end(position& at, position const& end) {
    advance(at, end);
    if (!is(*at, token::element_end, "include")) fail(include_end_missing);
    ++at;
}

} // namespace ZOLT_2_18::i18n::_private
