// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A file is read in one pass over the parser's events. What it holds is kept as a list of parts, its
// catalogs and includes in their order, and carried out when the text as a whole has proven to be
// well-formed. The first fault among the elements ends the list and is raised when its turn comes, with
// its context lines.
//
// Includes do not recurse: `reading` keeps the chain of open files, each with the parts still to be
// carried out, and always goes on with the innermost one. That bounds the stack whatever the files hold.
#include <zolt/i18n/_private/xmc_file_loader.hpp>

#include <zolt/exceptions/exception.hpp>
#include <zolt/i18n/_private/format.hpp>
#include <zolt/i18n/catalog.hpp>
#include <zolt/i18n/locale_id_private.hpp>
#include <zolt/strings/string_utility.hpp>
#include <zolt/strings/text_builder_private.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/system/io_private.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

namespace ZOLT_2_18::i18n::_private {
namespace {

using parser::xml_parser;
using std::string_view;
using strings::ustring8;
using load_error = xmc_file_loader::load_error;
using message_map = xmc_file_loader::message_map;

constexpr std::size_t most_locale_parts = 64;
constexpr std::size_t most_open_files = 1001; // the file itself and 1,000 levels of includes
constexpr unsigned int most_files = 10000;
constexpr long long most_bytes = 1LL << 30;

[[noreturn]] void fail(xmc_file_loader::error_type code, ustring8 const& value = ustring8()) {
    throw load_error(code, value);
}

/// Made for constant words: a comparison of lengths and of one or two machine words.
[[gnu::always_inline]] inline bool is(string_view text, string_view word) noexcept {
    return text.size() == word.size() && std::memcmp(text.data(), word.data(), word.size()) == 0;
}

ustring8 directory_of(ustring8 const& path) {
    std::size_t const separator = path.find_last_of("/\\");
    return separator == ustring8::npos ? ustring8("./") : ustring8(path.substr(0, separator + 1));
}

bool is_absolute(string_view path) noexcept {
    return path.front() == '/' || path.front() == '\\' || (path.size() >= 3 && path[1] == ':');
}

struct type_keyword {
    string_view text;
    message_item::type_t type;
};

// The usual ones first.
constexpr type_keyword type_keywords[] = {
    {"string", message_item::string},
    {"int", message_item::int_},
    {"double", message_item::double_},
    {"memory", message_item::memory},
    {"number", message_item::number},
    {"duration", message_item::duration},
    {"date", message_item::date},
    {"mem", message_item::memory},
    {"mem_unit", message_item::memory_unit},
    {"memory_unit", message_item::memory_unit},
    {"metric", message_item::metric},
    {"metric_unit", message_item::metric_unit},
    {"time", message_item::time},
    {"value", message_item::value},
};

type_keyword const* find_type(string_view text) noexcept {
    auto const found = std::find_if(std::begin(type_keywords), std::end(type_keywords),
                                    [text](type_keyword const& candidate) { return is(candidate.text, text); });
    return found == std::end(type_keywords) ? nullptr : found;
}

// As a rule the word is in lower case already.
message_item::type_t type_of(string_view text) {
    type_keyword const* known = find_type(text);
    if (!known) known = find_type(strings::to_lower(ustring8(text)));
    return known ? known->type : message_item::string;
}

} // namespace

/// Collects a message's content. The texts of all items stand one after the other in one buffer until the
/// message ends; then every item is made once, with no more room than it needs.
class __attribute__((visibility("hidden"))) item_builder {
public:
    void clear() noexcept {
        m_text.clear();
        m_pieces.clear();
        m_start = 0;
        m_after_argument = false;
    }

    void add_characters(string_view text) {
        m_text.add(text);
        m_after_argument = false;
    }

    // Blanks at the start of a message go, other runs of them become one.
    void add_space() {
        if (m_text.size() == m_start ? m_after_argument : m_text.back() != ' ') m_text.add(' ');
        m_after_argument = false;
    }

    void add_line_break() { m_text.add('\n'); }

    void start_argument() {
        end_text();
        m_type = message_item::string;
    }

    // Kept: the name replaces everything before it, so options written before it are lost.
    void argument_name(string_view name) {
        m_text.shorten(m_start);
        m_text.add(name);
    }

    void argument_type(message_item::type_t type) noexcept { m_type = type; }

    void argument_option(string_view key, string_view value) {
        m_text.add(option_separator);
        m_text.add(key);
        m_text.add(option_separator);
        m_text.add(value);
    }

    void end_argument() {
        end_piece(m_type);
        m_after_argument = true;
    }

    std::vector<message_item> finish() {
        end_text();
        std::vector<message_item> items;
        items.reserve(m_pieces.size());
        char const* text = m_text.data();
        for (piece const& next : m_pieces) {
            string_view const data(text, next.size);
            items.push_back(message_item(data, next.type, size_of_name(data, next.type)));
            text += next.size;
        }
        return items;
    }

private:
    struct piece {
        std::size_t size;
        message_item::type_t type;
    };

    static unsigned int size_of_name(string_view data, message_item::type_t type) noexcept {
        if (type == message_item::value) return message_item::unknown_size;
        std::size_t const size = std::min(data.find(option_separator), data.size());
        return static_cast<unsigned int>(std::min<std::size_t>(size, message_item::unknown_size));
    }

    void end_text() {
        if (m_text.size() != m_start) end_piece(message_item::value);
    }

    void end_piece(message_item::type_t type) {
        m_pieces.push_back({m_text.size() - m_start, type});
        m_start = m_text.size();
    }

    strings::_private::text_builder m_text;
    std::vector<piece> m_pieces;
    std::size_t m_start = 0; ///< of the piece that is being read
    message_item::type_t m_type = message_item::string;
    bool m_after_argument = false;
};

namespace {

/// What is to be done for one element below the root: to read an included file or to keep messages.
struct file_part {
    ustring8 include; ///< the path, empty for a catalog
    ustring8 catalog;
    message_map messages;
};

/// What a file holds, in its order.
struct file_content {
    std::vector<file_part> parts;
    std::optional<load_error> fault; ///< found behind the parts
    bool is_empty = true;            ///< holds nothing but a header
    bool has_elements = false;       ///< catalogs or includes, wanted or not
};

/// Follows the parser's events through the grammar. Every event is met by the place where it happens;
/// from a fault on all are passed over, since the text may still turn out not to be well-formed.
class file_reader {
public:
    file_reader(xmc_file_loader const& loader, ustring8 const& directory)
        : m_loader(loader), m_directory(directory) {}

    file_content read(ustring8 const& text) {
        xml_parser parser;
        parser.on_element_start = [this](ustring8 const& name) { element_start(name); };
        parser.on_element_end = [this](ustring8 const& name) { element_end(name); };
        parser.on_attribute = [this](ustring8 const& name, ustring8 const& value) { attribute(name, value); };
        parser.on_space = [this](ustring8 const&) { space(); };
        parser.on_character = [this](ustring8 const& run) { characters(run); };
        parser.on_comment = [this](ustring8 const&) { m_content.is_empty = false; };

        xml_parser::parse_error const fault = parser.parse(text);
        if (fault.kind != xml_parser::parse_error::no_error)
            throw load_error(xmc_file_loader::xml_parse_error, fault);
        if (m_place == place::document) fault_here(xmc_file_loader::not_xmc_file, "Value Not Defined");
        return std::move(m_content);
    }

private:
    // In the order that the questions below ask for.
    enum class place {
        document,
        root,
        foreign_catalog, // passed over up to its end
        include_end,
        done, // behind the root or a fault: nothing counts any more
        root_tag,
        root_tag_end, // behind the version
        catalog_tag,
        include_tag,
        message_tag,
        break_tag,
        argument_tag,
        message,
        break_end,
        argument, // passed over up to its end
        catalog,
    };

    bool is_in_tag() const noexcept { return m_place >= place::root_tag && m_place <= place::argument_tag; }
    bool is_in_message() const noexcept { return m_place >= place::message_tag && m_place <= place::argument; }
    bool is_in_catalog() const noexcept { return m_place >= place::message_tag; }

    void element_start(string_view name) {
        if (is_in_tag()) tag_end();
        m_content.is_empty = false;
        switch (m_place) {
        case place::document:
            if (!is(name, "xmc")) return fault_here(xmc_file_loader::not_xmc_file, name);
            m_place = place::root_tag;
            break;
        case place::root:
            start_in_root(name);
            break;
        case place::catalog:
            if (!is(name, "msg")) return fault_here(xmc_file_loader::catalog_end_missing, m_catalog);
            start_message();
            break;
        case place::message:
            start_in_message(name);
            break;
        default:
            content_in_empty_element();
        }
    }

    void start_in_root(string_view name) {
        if (is(name, "catalog")) {
            m_catalog.clear();
            m_language.clear();
            m_place = place::catalog_tag;
        } else if (is(name, "include")) {
            m_include.clear();
            m_place = place::include_tag;
        } else {
            return fault_here(xmc_file_loader::invalid_element, name);
        }
        m_content.has_elements = true;
    }

    void start_message() {
        m_message.clear();
        m_meta.clear();
        m_items.clear();
        m_place = place::message_tag;
    }

    void start_in_message(string_view name) {
        if (is(name, "arg") || is(name, "argument")) {
            m_items.start_argument();
            m_place = place::argument_tag;
        } else if (is(name, "br")) {
            m_place = place::break_tag;
        } else {
            fault_here(xmc_file_loader::invalid_element, name);
        }
    }

    void attribute(string_view name, string_view value) {
        switch (m_place) {
        case place::root_tag:
            if (!is(name, "version")) return fault_here(xmc_file_loader::invalid_attribute, name);
            if (!is(value, "1.0") && !is(value, "1.1"))
                return fault_here(xmc_file_loader::unsupported_version, value);
            m_place = place::root_tag_end;
            break;
        case place::root_tag_end: // Kept: told by its value
            fault_here(xmc_file_loader::invalid_element, value);
            break;
        case place::catalog_tag:
            read_attribute(name, value, m_catalog, "lang", m_language);
            break;
        case place::message_tag:
            read_attribute(name, value, m_message, "meta", m_meta);
            break;
        case place::break_tag:
            fault_here(xmc_file_loader::invalid_attribute, name);
            break;
        case place::argument_tag:
            argument_attribute(name, value);
            break;
        case place::include_tag:
            if (is(name, "file")) include_file(value);
            break;
        default:
            break;
        }
    }

    // The one or the other of an element's two attributes.
    void read_attribute(string_view name, string_view value, ustring8& its_name, string_view second,
                        ustring8& other) {
        if (is(name, "name")) {
            its_name.assign(value);
        } else if (name == second) {
            other.assign(value);
        } else {
            fault_here(xmc_file_loader::invalid_attribute, name);
        }
    }

    void argument_attribute(string_view name, string_view value) {
        if (is(name, "name")) {
            m_items.argument_name(value);
        } else if (is(name, "type")) {
            m_items.argument_type(type_of(value));
        } else {
            m_items.argument_option(name, value);
        }
    }

    void include_file(string_view path) {
        if (path.empty()) return fault_here(xmc_file_loader::file_not_found);
        if (!is_absolute(path)) m_include = m_directory;
        m_include += path;
    }

    // Whatever follows a start tag ends it, but for comments.
    void tag_end() {
        switch (m_place) {
        case place::root_tag:
            fault_here(xmc_file_loader::invalid_attribute);
            break;
        case place::root_tag_end:
            m_place = place::root;
            break;
        case place::catalog_tag: {
            bool const is_wanted = m_loader.is_catalog_matched(m_catalog) && m_loader.is_lang_id_good(m_language);
            m_place = is_wanted ? place::catalog : place::foreign_catalog;
            m_next_place = m_messages.end();
            break;
        }
        case place::include_tag:
            if (!m_include.empty()) m_content.parts.push_back({m_include, {}, {}});
            m_place = place::include_end;
            break;
        case place::message_tag:
            m_place = place::message;
            break;
        case place::break_tag:
            m_place = place::break_end;
            break;
        default: // place::argument_tag
            m_place = place::argument;
        }
    }

    void space() {
        if (is_in_tag()) tag_end();
        m_content.is_empty = false;
        if (m_place == place::message) {
            m_items.add_space();
        } else {
            content_in_empty_element();
        }
    }

    void characters(string_view text) {
        if (is_in_tag()) tag_end();
        m_content.is_empty = false;
        if (m_place == place::message) {
            m_items.add_characters(text);
        } else {
            content_in_empty_element();
        }
    }

    // Anything but the end tag. Elsewhere text between elements is ignored.
    void content_in_empty_element() {
        if (m_place == place::break_end) fault_here(xmc_file_loader::br_end_missing);
        if (m_place == place::include_end) fault_here(xmc_file_loader::include_end_missing);
    }

    // Elements come in pairs, and a catalog, an include and a break hold none that they must not, so an end that
    // is met in one of these is its own.
    void element_end(string_view name) {
        if (is_in_tag()) tag_end();
        switch (m_place) {
        case place::root:
            if (!is(name, "xmc")) return fault_here(xmc_file_loader::invalid_element, name);
            m_place = place::done;
            break;
        case place::catalog:
            keep_messages();
            m_place = place::root;
            break;
        case place::foreign_catalog: // Kept: an inner element of that name ends it, too
            if (is(name, "catalog")) m_place = place::root;
            break;
        case place::include_end:
            m_place = place::root;
            break;
        case place::message:
            if (!is(name, "msg")) return fault_here(xmc_file_loader::msg_end_missing, m_message);
            keep_message();
            m_place = place::catalog;
            break;
        case place::break_end:
            m_items.add_line_break();
            m_place = place::message;
            break;
        case place::argument: // Kept: an element inside ends it, too, so that the message finds no end
            m_items.end_argument();
            m_place = place::message;
            break;
        default:
            break;
        }
    }

    // The first message of a name wins within its catalog. In most files a message stands, in the order of
    // names, behind the one before it, which saves the search for its place.
    void keep_message() {
        if (m_message.empty()) return keep_unnamed_message();
        auto const kept = m_messages.emplace_hint(m_next_place, std::piecewise_construct, std::tie(m_message),
                                                  std::forward_as_tuple(m_message, m_items.finish(), m_meta));
        kept->second._orginal_locale(m_language);
        m_next_place = std::next(kept);
    }

    // Only without a name a message can be nil, which gives way to the next one.
    void keep_unnamed_message() {
        message_t& present = m_messages[m_message];
        if (present != types::nil) return;
        present = message_t(m_message, m_items.finish(), m_meta);
        present._orginal_locale(m_language);
    }

    void keep_messages() {
        if (!m_messages.empty()) m_content.parts.push_back({{}, m_catalog, std::exchange(m_messages, {})});
    }

    void fault_here(xmc_file_loader::error_type code, string_view value = {}) {
        load_error& fault = m_content.fault.emplace(code, ustring8(value));
        if (is_in_message()) fault.append_error_stack(load_error::in_message, m_message);
        if (is_in_catalog()) fault.append_error_stack(load_error::in_catalog, m_catalog);
        keep_messages();
        m_place = place::done;
    }

    xmc_file_loader const& m_loader;
    ustring8 const& m_directory;
    file_content m_content;
    place m_place = place::document;

    // Of the element that is being read
    ustring8 m_include;
    ustring8 m_catalog;
    ustring8 m_language;
    message_map m_messages;
    message_map::iterator m_next_place;
    ustring8 m_message;
    ustring8 m_meta;
    item_builder m_items;
};

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
            open_file& file = start(path, m_loader.m_base_directory, {});
            file.content = file_reader(m_loader, file.directory).read(text);
            if (file.content.is_empty) {
                m_chain.pop_back();
                fail(unexpected_parse_error, "Nothing of interest in the file.");
            }
        });
    }

private:
    struct open_file {
        ustring8 path;
        ustring8 directory;
        system::_private::file_identity identity;
        file_content content;
        std::size_t next_part = 0;
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
        ustring8 const text = load_text(path, status.size);
        open_file& file = start(path, directory_of(path), status.identity);
        file.content = file_reader(m_loader, file.directory).read(text);
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
        throw load_error(fault);
    }

    open_file& start(ustring8 const& path, ustring8 const& directory,
                     system::_private::file_identity const& identity) {
        m_loader.m_base_directory = directory;
        return m_chain.emplace_back(open_file{path, directory, identity, {}, 0});
    }

    void go_on() {
        open_file& file = m_chain.back();
        if (file.next_part == file.content.parts.size()) return close();
        file_part part = std::move(file.content.parts[file.next_part++]);
        if (part.include.empty()) {
            m_loader.keep_messages(part.catalog, std::move(part.messages));
        } else {
            open(part.include);
        }
    }

    void close() {
        file_content const& content = m_chain.back().content;
        if (content.fault) throw load_error(*content.fault);
        bool const has_elements = content.has_elements;
        ustring8 const path = std::move(m_chain.back().path);
        m_chain.pop_back();
        if (!has_elements) fail(no_catalog_loaded, path);
        if (!m_chain.empty()) m_loader.m_base_directory = m_chain.back().directory;
    }

    xmc_file_loader& m_loader;
    std::vector<open_file> m_chain;
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
        catalog.take(messages);
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

message_item::type_t xmc_file_loader::parse_message_type(ustring8 const& text) { return type_of(text); }

void xmc_file_loader::set_message(message_t message, ustring8 const& catalog) {
    message_t& present = m_data[catalog][message.name()];
    keep_better(present, std::move(message));
}

// The messages of one catalog element, among which each name stands once.
void xmc_file_loader::keep_messages(ustring8 const& catalog, message_map&& messages) {
    message_map& present = m_data[catalog];
    if (present.empty()) {
        present = std::move(messages);
        return;
    }
    present.merge(messages); // leaves those whose names are there already
    for (auto& [name, message] : messages) keep_better(present.find(name)->second, std::move(message));
}

void xmc_file_loader::keep_better(message_t& present, message_t&& message) const {
    if (present == types::nil ||
        get_locale_weight(message._orginal_locale()) > get_locale_weight(present._orginal_locale())) {
        present = std::move(message);
    }
}

} // namespace ZOLT_2_18::i18n::_private
