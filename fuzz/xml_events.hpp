// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The events of an XML parse as a list, for the targets that look at them.
#pragma once

#include "input.hpp"

#include <zolt/parser/xml_parser.hpp>

#include <cstddef>
#include <vector>

namespace fuzz {

using zolt::parser::xml_parser;

struct event {
    char kind; ///< < start, > end, = attribute, b blanks, t text, ! comment
    ustring8 text;
    ustring8 value; ///< of an attribute
    bool operator==(event const&) const = default;
};

/// A parser that writes down what it reports, and may throw one of the events.
struct recorder {
    recorder() {
        parser.on_element_start = [this](ustring8 const& text) { add({'<', text, {}}); };
        parser.on_element_end = [this](ustring8 const& text) { add({'>', text, {}}); };
        parser.on_attribute = [this](ustring8 const& name, ustring8 const& value) { add({'=', name, value}); };
        parser.on_space = [this](ustring8 const& text) { add({'b', text, {}}); };
        parser.on_character = [this](ustring8 const& text) { add({'t', text, {}}); };
        parser.on_comment = [this](ustring8 const& text) { add({'!', text, {}}); };
    }

    xml_parser::parse_error parse(ustring8 const& text, std::size_t thrown = std::size_t(-1)) {
        events.clear();
        throw_at = thrown;
        return parser.parse(text);
    }

    void add(event reported) {
        if (events.size() == throw_at) throw reported;
        events.push_back(std::move(reported));
    }

    xml_parser parser;
    std::size_t throw_at = 0;
    std::vector<event> events;
};

} // namespace fuzz
