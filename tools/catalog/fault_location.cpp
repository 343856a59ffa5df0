// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A load error's text has one line for what is wrong, then context lines from the inside out: message,
// catalog, and one file for each file being read. The text gives the scope to search; a table says for
// each kind of fault which element in it is at fault. The first such element in document order is what
// the loader met first.
#include "fault_location.hpp"

#include "tools/program/languages.hpp"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

namespace tools {
namespace {

/// What a text says.
struct fault {
    std::size_t kind = 0; // index into kinds
    ustring8 value;
    std::optional<ustring8> message;
    std::optional<ustring8> catalog;
    std::vector<ustring8> files; // innermost first
};

struct context {
    fault const& what;
    source_file const& file;
    catalog_sources const& sources;
};

using test = bool (*)(context const&, element const&);

constexpr std::string_view attributes_of_xmc[] = {"version"};
constexpr std::string_view attributes_of_catalog[] = {"name", "lang"};
constexpr std::string_view attributes_of_msg[] = {"name", "meta"};
constexpr std::string_view children_of_xmc[] = {"catalog", "include"};
constexpr std::string_view children_of_catalog[] = {"msg"};
constexpr std::string_view children_of_msg[] = {"br", "arg", "argument"};

template <std::size_t Size>
bool is_in(std::string_view const (&names)[Size], std::string_view name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

bool takes_attribute(std::string_view element, std::string_view name) {
    if (element == "xmc") return is_in(attributes_of_xmc, name);
    if (element == "catalog") return is_in(attributes_of_catalog, name);
    if (element == "msg") return is_in(attributes_of_msg, name);
    return element != "br";
}

bool takes_child(std::string_view parent, std::string_view name) {
    if (parent == "xmc") return is_in(children_of_xmc, name);
    if (parent == "catalog") return is_in(children_of_catalog, name);
    return parent != "msg" || is_in(children_of_msg, name);
}

bool is_argument(std::string_view name) { return name == "arg" || name == "argument"; }

bool has_bad_attribute(context const& in, element const& element) {
    return element.attribute(in.what.value) && !takes_attribute(element.name, in.what.value);
}

bool is_bad_element(context const& in, element const& element) {
    return element.name == in.what.value && !takes_child(in.file.parent_name(element), element.name);
}

bool is_bad_child_of_catalog(context const& in, element const& element) {
    return in.file.parent_name(element) == "catalog" && !takes_child("catalog", element.name);
}

bool is_filled_br(context const&, element const& element) { return element.name == "br" && element.has_content; }

bool is_inside_argument(context const& in, element const& element) {
    return is_argument(in.file.parent_name(element));
}

bool is_filled_include(context const&, element const& element) {
    return element.name == "include" && element.has_content;
}

// The library puts "./" in front of a path without a directory.
bool is_same_path(std::string_view left, std::string_view right) {
    auto const plain = [](std::string_view path) { return path.substr(path.substr(0, 2) == "./" ? 2 : 0); };
    return plain(left) == plain(right);
}

bool includes_missing(context const& in, element const& element) {
    std::optional<ustring8> const path = in.file.included_path(element);
    return path && is_same_path(*path, in.what.value);
}

bool includes_a_reader(context const& in, element const& element) {
    std::optional<ustring8> const path = in.file.included_path(element);
    source_file const* const included = path ? in.sources.find(*path) : nullptr;
    return included && std::any_of(in.what.files.begin(), in.what.files.end(),
                                   [&](ustring8 const& file) { return in.sources.find(file) == included; });
}

struct kind {
    std::string_view text;
    test is_at_fault; // null: the innermost element that the text names
};

constexpr kind kinds[] = {
    {"", nullptr},
    {"xmc_file_loader::load_error - Invalid attibute \"", has_bad_attribute},
    {"xmc_file_loader::load_error - Invalid element \"", is_bad_element},
    {"xmc_file_loader::load_error - Expected BR end tag", is_filled_br},
    {"xmc_file_loader::load_error - Expected msg (message) end tag", is_inside_argument},
    {"xmc_file_loader::load_error - Expected \"include\" end tag", is_filled_include},
    {"xmc_file_loader::load_error - Expected catalog end tag", is_bad_child_of_catalog},
    {"xmc_file_loader::load_error - File \"", includes_missing},
    {"xmc_file_loader::load_error - Unexpected parse error", includes_a_reader},
};

// What follows `start`, up to the next double quote.
bool take_value(std::string_view line, std::string_view start, ustring8& value) {
    if (line.substr(0, start.size()) != start) return false;
    line.remove_prefix(start.size());
    value.assign(line.substr(0, std::min(line.size(), line.find('"'))));
    return true;
}

// As take_value for the context lines, whose value runs up to the quote at the line's end.
bool take_context(std::string_view line, std::string_view start, ustring8& value) {
    if (line.substr(0, start.size()) != start || line.back() != '"') return false;
    value.assign(line.substr(start.size(), line.size() - 1 - start.size()));
    return true;
}

fault read_fault(std::string_view text) {
    fault result;
    ustring8 value;
    while (!text.empty()) {
        auto const end = std::min(text.size(), text.find('\n'));
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(text.size(), end + 1));
        line.remove_prefix(std::min(line.size(), line.find_first_not_of(' ')));
        for (std::size_t i = 1; i < std::size(kinds) && result.kind == 0; ++i) {
            if (take_value(line, kinds[i].text, result.value)) result.kind = i;
        }
        if (!result.message && take_context(line, "in message element: \"", value)) result.message = value;
        if (!result.catalog && take_context(line, "in catalog element: \"", value)) result.catalog = value;
        if (take_context(line, "in file: \"", value)) result.files.push_back(value);
    }
    return result;
}

/// The search for one fault in one file.
class search {
public:
    search(context const& in, ustring8 const& language) : m_in(in), m_language(normalized_language(language)) {}

    unsigned line() const {
        element const* named = nullptr; // the first element that the text names
        bool is_in_scope = false;
        for (element const& element : m_in.file.elements) {
            bool const is_top = element.parent == no_element || m_in.file.parent_name(element) == "xmc";
            if (is_top) is_in_scope = m_in.what.catalog && is_catalog(element);
            if (m_in.what.catalog ? !is_in_scope : !is_top) continue;
            if (!named || (is_message(element) && !is_message(*named))) named = &element;
            test const is_at_fault = kinds[m_in.what.kind].is_at_fault;
            if (is_at_fault && is_at_fault(m_in, element)) return element.line;
        }
        return named ? named->line : 1;
    }

private:
    bool is_catalog(element const& element) const {
        ustring8 const* const name = element.attribute("name");
        ustring8 const* const language = element.attribute("lang");
        return element.name == "catalog" && (name ? *name : ustring8()) == *m_in.what.catalog && language &&
               is_read(normalized_language(*language));
    }

    // A load takes catalogs in the language, its shorter forms, "en" and ".".
    bool is_read(ustring8 const& language) const {
        bool found = language == m_language || language == "en" || language == ".";
        for_each_base(m_language, [&](std::string_view base) { found = found || language == base; });
        return found;
    }

    bool is_message(element const& element) const {
        ustring8 const* const name = element.attribute("name");
        return m_in.what.message && element.name == "msg" && (name ? *name : ustring8()) == *m_in.what.message;
    }

    context const& m_in;
    ustring8 m_language;
};

} // namespace

fault_location locate_fault(ustring8 const& text, ustring8 const& language, source_file const& loaded,
                            catalog_sources const& sources) {
    fault const what = read_fault(text);
    source_file const* const innermost = what.files.empty() ? nullptr : sources.find(what.files.front());
    source_file const& file = innermost ? *innermost : loaded;
    if (!file.is_well_formed) return {&file, file.fault_line};
    return {&file, search({what, file, sources}, language).line()};
}

ustring8 text_of_fault(session const& session, ustring8 const& text) {
    if (session.options.is_verbose) return text;
    constexpr std::string_view places[] = {"in message element: \"", "in catalog element: \"", "in file: \"",
                                           "at line: \""};
    ustring8 result;
    std::string_view rest = text;
    while (!rest.empty()) {
        std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        line.remove_prefix(std::min(line.size(), line.find_first_not_of(' ')));
        if (std::any_of(std::begin(places), std::end(places),
                        [line](std::string_view place) { return line.starts_with(place); }))
            break;
        result.append(result.empty() ? "" : "; ").append(line);
    }
    return result;
}

std::size_t place_in_line(std::string_view text, std::size_t start) {
    std::size_t const end = std::min(text.find('\n', start), text.size());
    std::size_t const tag = text.find('<', start);
    return tag < end ? tag : start;
}

} // namespace tools
