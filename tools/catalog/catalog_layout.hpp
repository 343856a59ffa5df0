// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// lay_out_catalog: a catalog file in the one layout that all should have.
//
//     <?xml version="1.0" encoding="UTF-8"?>
//     <!-- comments stay where they are -->
//     <xmc version="1.1">
//       <catalog name="app" lang="en">
//         <msg name="saved" meta="shown at the end">Saved <arg name="size" type="memory"/> in a text that is so
//         long
//           that it goes on in the next line.</msg> <!-- this one, too -->
//
//         <msg name="none"/>
//       </catalog>
//     </xmc>
//
// Every catalog, message and include begins a line, two blanks further in than what it is in. Lines have up to
// 116 columns, as far as there are blanks to break them at. Values stand in double quotes. Several empty lines
// become one; comments on the line of something else stay there.
//
// Only blanks change that mean nothing, and quotes: comments, references and unknown elements stay to the byte but
// for their line ends. All lines end in a line feed; in a value, where a carriage return would be part of the
// value, it becomes a reference.
#pragma once

#include "tools/program/library.hpp"

#include <string_view>

namespace tools {

/// The text has to be well-formed. A laid out text comes out as it is.
ustring8 lay_out_catalog(ustring8 const& text);

/// A text outside of tags whose lines end in line feeds.
ustring8 with_line_feeds(std::string_view text);

} // namespace tools
