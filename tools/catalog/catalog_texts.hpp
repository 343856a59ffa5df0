// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The messages of a catalog file in all languages, with the same items that the library makes of them,
// and the way back: a catalog file of which the library makes these items.
#pragma once

#include "catalog_sources.hpp"
#include "tools/program/library.hpp"

#include <zolt/i18n/message.hpp>

#include <cstddef>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace tools {

struct catalog_message {
    ustring8 catalog;
    zolt::i18n::message_t message; ///< with the language of its catalog, never an empty one
    std::size_t file;              ///< index within catalog_sources
    unsigned line;
    unsigned column;
    std::vector<ustring8> ignored{}; ///< rules that the comment "zolt-ignore ..." before it names
};

/// Appends the messages of a well-formed file, without those of its includes, in one pass. Returns 0, or
/// the line of the first element that the library would refuse; then nothing behind it was read. An argument of
/// type "value" is a value_argument.
unsigned read_messages(source_file const& file, std::vector<catalog_message>& messages);
/// The same from the tokens of a text that has the elements of the file.
unsigned read_messages(source_file const& file, zolt::parser::xml_token_stream const& tokens,
                       std::vector<catalog_message>& messages);

/// A message that stands alone, from "<msg" to "</msg>", without its language; an empty one when it is not valid.
zolt::i18n::message_t read_message(std::string_view text);

/// The name of a placeholder's argument, then its options' keys and values in turn.
std::vector<std::string_view> split_item_data(std::string_view data);

/// True for an item that can be a run of text: a literal that is not empty and stands behind no other one.
bool is_text(zolt::i18n::message_item const& item, bool is_after_text);

/// A catalog file, laid out. Catalogs stand in the order in which their first message came.
class catalog_writer {
public:
    /// The message's language is the catalog's. Rules to be ignored are named in a comment before it.
    void add(ustring8 const& catalog, zolt::i18n::message_t const& message,
             std::vector<ustring8> const& ignored = {});
    ustring8 text() const;

private:
    std::map<std::pair<ustring8, ustring8>, std::size_t> m_known; // by name and language
    std::vector<ustring8> m_catalogs;                             // all but their end tags
};

} // namespace tools
