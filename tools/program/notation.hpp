// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Messages in one readable line of text: "Loaded {n:int} of {size:memory target_unit=KB}".
//
// A placeholder is its argument's name, a colon, its type and its options. Braces that belong to the
// text are doubled. An option's value stands in double quotes when it is empty or holds blanks, quotes
// or braces.
#pragma once

#include "tools/program/library.hpp"

#include <zolt/i18n/message.hpp>

#include <optional>
#include <string_view>

namespace tools {

/// An argument of type "value", for which the library makes a literal like that of a run of text; this keeps
/// them apart.
inline constexpr auto value_argument = static_cast<zolt::i18n::message_item::type_t>(0x100);

/// A type's word in catalogs: "int" for message_item::int_, also for the one above.
std::string_view type_keyword(zolt::i18n::message_item::type_t type);

/// The type of a catalog's type word in lower case; nothing for one that the library does not know.
std::optional<zolt::i18n::message_item::type_t> type_of_keyword(std::string_view word);

/// The message in the notation above.
ustring8 notation(zolt::i18n::message_t const& message);

/// The items of a text in the notation above, for texts of the program itself: without quoted options.
/// A type that is not known makes a text placeholder.
zolt::i18n::message_t::items_type parse_notation(std::string_view text);

} // namespace tools
