// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_sources.hpp"

#include "catalog_paths.hpp"
#include "source_map.hpp"
#include "tools/program/files.hpp"
#include "tools/program/languages.hpp"

#include <zolt/parser/xml_token_stream.hpp>
#include <zolt/strings/string_utility.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/system/io.hpp>

#include <algorithm>

namespace tools {
namespace {

using zolt::parser::xml_parser;
using zolt::parser::xml_token_stream;
using token = xml_token_stream::token;

/// Turns the tokens of one file into elements.
class element_reader {
public:
    element_reader(source_file& file, source_map const& map) : m_file(file), m_map(map) {}

    void take(token const& next) {
        switch (next.type()) {
        case token::element_start: {
            mark_content();
            std::size_t const n = m_file.elements.size();
            m_file.elements.push_back({next.value(), m_map.element_line(n), m_map.element_column(n), current()});
            m_open.push_back(n);
            break;
        }
        case token::element_end:
            if (!m_open.empty()) m_open.pop_back();
            break;
        case token::attribute_name:
            ++m_events;
            m_file.elements[current()].attributes.emplace_back(next.value(), ustring8());
            break;
        case token::attribute_value:
            m_file.elements[current()].attributes.back().second = next.value();
            break;
        case token::comment:
            ++m_events;
            break;
        case token::space:
        case token::character:
            mark_content();
            break;
        case token::start_tag_end:
            break;
        }
    }

    /// Number of comments and attributes so far.
    std::size_t events() const { return m_events; }

private:
    std::size_t current() const { return m_open.empty() ? no_element : m_open.back(); }

    void mark_content() {
        if (!m_open.empty()) m_file.elements[current()].has_content = true;
    }

    source_file& m_file;
    source_map const& m_map;
    std::vector<std::size_t> m_open;
    std::size_t m_events = 0;
};

void read(source_file& file) {
    ustring8 text;
    file.is_readable = load(file.path, text);
    xml_token_stream tokens;
    if (file.is_readable) read_elements(file, text, tokens);
}

bool is_catalog(source_file const& file, element const& element) {
    return element.name == "catalog" && file.parent_name(element) == "xmc";
}

ustring8 text_of(element const& element, std::string_view attribute) {
    ustring8 const* const value = element.attribute(attribute);
    return value ? *value : ustring8();
}

} // namespace

ustring8 const* element::attribute(std::string_view attribute_name) const {
    auto const found = std::find_if(attributes.begin(), attributes.end(),
                                    [&](auto const& attribute) { return attribute.first == attribute_name; });
    return found == attributes.end() ? nullptr : &found->second;
}

std::string_view source_file::parent_name(element const& child) const {
    return child.parent == no_element ? std::string_view() : std::string_view(elements[child.parent].name);
}

std::optional<ustring8> source_file::included_path(element const& element) const {
    ustring8 const* const file = element.attribute("file");
    if (element.name != "include" || parent_name(element) != "xmc" || !file) return std::nullopt;
    return file->empty() ? ustring8() : tools::included_path(path, *file);
}

std::map<ustring8, ustring8> source_file::languages() const {
    std::map<ustring8, ustring8> result;
    for (element const& element : elements) {
        if (!is_catalog(*this, element)) continue;
        ustring8 const language = text_of(element, "lang");
        if (!language.empty()) result.emplace(normalized_language(language), language);
    }
    return result;
}

void read_elements(source_file& file, ustring8 const& text, xml_token_stream& tokens) {
    source_map const map(text);
    xml_parser::parse_error const fault = tokens.parse(text);
    element_reader reader(file, map);
    for (token const& next : tokens) reader.take(next);
    file.is_well_formed = fault.kind == xml_parser::parse_error::no_error;
    file.fault_line = map.fault_line(fault.line, reader.events());
}

std::size_t catalog_sources::add(ustring8 const& path) {
    std::vector<ustring8> const files = catalog_files(path);
    for (ustring8 const& file : files) plan(file);
    return files.size();
}

source_file const* catalog_sources::read_next() {
    if (m_files.size() == m_paths.size()) return nullptr;
    source_file& file = m_files.emplace_back();
    file.index = m_files.size() - 1;
    file.path = m_paths[file.index];
    read(file);
    for (element const& element : file.elements) {
        std::optional<ustring8> const path = file.included_path(element);
        if (path && zolt::system::io::is_file(*path)) plan(*path);
    }
    return &file;
}

source_file const* catalog_sources::find(ustring8 const& path) const {
    auto const found = m_known.find(real_path(path));
    return found == m_known.end() || found->second >= m_files.size() ? nullptr : &m_files[found->second];
}

void catalog_sources::plan(ustring8 const& path) {
    if (m_known.emplace(real_path(path), m_paths.size()).second) m_paths.push_back(path);
}

} // namespace tools
