// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// translations: what `zolt catalog missing` and `stats` know of each message in each language, compared with the
// reference.
//
// A message counts as translated when the library serves it in the language itself, in its base or in ".", and when
// there is nothing to translate since the reference is empty. What the reference language has in this sense is to
// be translated; what another language has beyond that is obsolete.
#pragma once

#include "check_file_rules.hpp"
#include "check_input.hpp"
#include "check_lost_messages.hpp"
#include "check_tree.hpp"
#include "language_choice.hpp"
#include "text_words.hpp"
#include "tools/program/findings.hpp"
#include "tools/program/library.hpp"
#include "tools/program/session.hpp"

#include <zolt/i18n/message.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tools {

/// A language that is looked at.
struct target_language {
    ustring8 id;       ///< normalized
    ustring8 spelling; ///< as first written
    std::vector<serving_language> serving{};
    bool is_reference = false;
};

/// A message in a language. Messages are indexes in the tree, or none.
struct translation {
    std::size_t language; ///< in translations::languages
    std::uint32_t catalog;
    std::uint32_t reference;     ///< what there is to translate
    std::uint32_t own = none;    ///< of the language itself
    std::uint32_t served = none; ///< what a program gets that asks for the language
    bool is_translated = false;
    bool is_empty = false; ///< what is served, or what there is to translate
    bool is_same = false;  ///< own, with words, and still the text of the reference
    bool is_copy = false;  ///< the same where one expects another text
    std::size_t words = 0; ///< of the reference
};

class translations {
public:
    explicit translations(session const& session);

    /// Reads the files of the paths. What makes the library refuse a file becomes a finding. Without files, without
    /// the reference language, or with a great many languages at once, this says so and ends with another status
    /// than exit_good.
    exit_status read(std::vector<ustring8> const& paths);
    /// False when something could not be read.
    bool is_complete() const { return m_input.is_complete(); }

    /// Sorted by id: that of --lang alone, or all but ".".
    std::vector<target_language> const& languages() const { return m_languages; }
    check_tree& tree() { return m_tree; }
    finding_list& found() { return m_found; }

    /// Calls `visit` for each message in each language that has it or ought to have it: messages in the order in
    /// which they were read, of each the languages in theirs.
    void for_each(std::function<void(translation const&)> const& visit);
    /// Within a visit: translated with a text that export-po marks as fuzzy.
    bool is_fuzzy(translation const& entry);

private:
    exit_status choose_languages();
    void start(message_group const& group);
    void end();
    std::uint32_t served(std::vector<serving_language> const& serving, bool& is_fitting) const;
    void compare(translation& entry);
    bool is_seldom_copied();
    std::string_view source_of(std::uint32_t message) const;
    std::string const& text_of(std::uint32_t message);

    session const& m_session;
    check_tree m_tree;
    finding_list m_found;
    rule_report m_report;
    file_rules m_rules;
    check_input m_input;
    lost_messages m_lost;
    std::vector<target_language> m_languages;
    std::vector<serving_language> m_reference_serving;
    std::vector<char> m_may_copy; // a language of the tree: "." or of the reference's base, as en_GB is beside en

    // Of one message; vectors by language of the tree.
    std::vector<std::uint32_t> m_first;
    std::vector<std::uint32_t> m_ids; // the languages that have it
    std::vector<std::optional<std::string>> m_texts;
    std::uint32_t m_reference = none;
    std::optional<zolt::i18n::message_t> m_reference_message; // for is_fuzzy
    text_words m_words;
    std::optional<bool> m_is_seldom_copied;
};

} // namespace tools
