// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Messages as JSON, in the one shape that every command writes:
//
//     {"name": "saved", "language": "en", "note": "...", "text": "Saved {n:int}", "placeholders": [...]}
//
// They go to the output piece by piece, since a tree may have a hundred thousand.
#pragma once

#include "tools/program/json.hpp"
#include "tools/program/library.hpp"
#include "tools/program/terminal.hpp"

#include <zolt/i18n/message.hpp>

#include <map>
#include <vector>

namespace tools {

using message_list = std::vector<zolt::i18n::message_t const*>;

/// Members "catalog" and "messages" of the object that is open, written to `out` in part.
void append_messages(json_writer& json, output& out, ustring8 const& catalog, message_list const& messages);

/// Member "catalogs" of the object that is open: an object as above for each catalog, by name.
void append_catalogs(json_writer& json, output& out, std::map<ustring8, message_list> const& catalogs);

} // namespace tools
