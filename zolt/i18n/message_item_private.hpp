// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The parts of message_item that messages use without copying an item's data.
#pragma once

#include <zolt/generic/varg_list.hpp>
#include <zolt/i18n/message_item.hpp>
#include <zolt/strings/ustring.hpp>

#include <string>

namespace ZOLT_2_18::i18n::_private {

/// The argument named by a placeholder with this data, null when there is none.
generic::argument const* find_argument(generic::varg_list const& args, strings::ustring8 const& data);

/// Appends what an item of this kind and data shows.
void append_rendered(std::string& result, message_item::type_t type, strings::ustring8 const& data,
                     generic::varg_list const& args);

} // namespace ZOLT_2_18::i18n::_private
