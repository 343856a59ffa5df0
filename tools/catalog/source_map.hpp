// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// source_map: line numbers for what the library's parser reports.
//
// The parser tells no positions, but its events come in document order. This reads the same text with
// just enough understanding of XML to find the n-th start tag and the line feeds that the parser does
// not count. Lines count from 1. On a text with a fault the map is right up to the fault.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace tools {

class source_map {
public:
    explicit source_map(std::string_view text);

    /// The line of the n-th start tag's "<", n counted from 0; 1 when there are not that many.
    unsigned element_line(std::size_t n) const;
    /// Its column, from 1, in bytes.
    unsigned element_column(std::size_t n) const;

    /// The line of a fault from parse_error::line, which leaves out the line feeds inside the header,
    /// comments and attribute values. `events` is the number of comments and attributes before it.
    unsigned fault_line(unsigned long counted, std::size_t events) const;

private:
    struct place {
        unsigned line = 1;
        unsigned column = 1;
    };
    place element_place(std::size_t n) const;

    std::vector<place> m_elements;
    std::vector<unsigned> m_uncounted; // line feeds left out up to the header, then up to each event
    unsigned m_last_line = 1;
};

} // namespace tools
