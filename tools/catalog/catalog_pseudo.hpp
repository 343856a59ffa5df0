// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// `zolt catalog pseudo`: a language that nobody speaks, made of the reference, in which a program shows what its
// translations will bring to light: texts that no catalog has, too little room, a wrong direction.
#pragma once

#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <zolt/i18n/message.hpp>

#include <optional>
#include <string_view>
#include <vector>

namespace tools {

enum class pseudo_style {
    accent, ///< [Šåvéð öñé]: letters with accents, a third more of them, brackets around each line
    bidi,   ///< each line and its texts from right to left
    xxx     ///< x and X for letters
};

std::optional<pseudo_style> parse_pseudo_style(std::string_view word);

/// The message in a style: name, meta text, line ends, placeholders and blanks at the edges of lines stay.
zolt::i18n::message_t pseudo_message(zolt::i18n::message_t const& message, pseudo_style style);

struct pseudo_options {
    std::vector<ustring8> paths;
    pseudo_style style = pseudo_style::accent;
};

/// Writes one catalog file. Without --lang its language is the reference's with a region that is nobody's, so
/// that what it lacks comes from the reference: en_XA, en_XB and en_XC for the three styles.
exit_status make_pseudo_catalogs(session const& session, pseudo_options const& options);

} // namespace tools
