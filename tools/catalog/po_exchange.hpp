// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Messages of catalogs as entries of PO files, and back.
//
//     msgctxt   "catalog/message"; in the catalog's name "%" is written %25 and "/" %2F
//     msgid     the reference text: a line end for each br, placeholders as {name}, braces doubled
//     msgstr    the translation in the same form
//     #,        python-brace-format when there is a brace, so that gettext compares the placeholders
//     #.        what the texts do not tell, in the lines below
//
// A placeholder is called after its argument. Another one for the same argument with another type is
// {size__mem_unit}, and what is not an identifier becomes one. Lines of notes:
//
//     {size__mem_unit} = size:memory_unit precision=1    argument, type and options; without it {n} is n:string
//     meta: TEXT            the message's meta text
//     note: TEXT            that of the reference, where it differs
//     zolt: empty           the translation is the empty text, which PO files do not tell from none
//     zolt: kept            fuzzy for gettext, which would refuse it, but in use: the placeholders or the
//                           line ends at the edges are not those of the reference
//     zolt: no reference    msgid is the text itself
//
// Names, values and texts that are not plain stand in quotes with the escapes of PO files.
#pragma once

#include "po_file.hpp"
#include "tools/program/library.hpp"

#include <zolt/i18n/message.hpp>

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace tools {

/// The header of a file in a language, as its first entry.
po_entry po_header(ustring8 const& language, ustring8 const& reference_language);

/// An entry for a message of a catalog. Without a reference the translation is its own; without a
/// translation it is one to be made; without both it is empty.
po_entry to_po_entry(ustring8 const& catalog, zolt::i18n::message_t const* reference,
                     zolt::i18n::message_t const* translation);
/// The entry is fuzzy, but in use.
bool is_kept(po_entry const& entry);

/// False when NUL, U+0004 or bytes that are not UTF-8 keep it out of PO files.
bool fits_po(ustring8 const& catalog, zolt::i18n::message_t const& message);

/// What may be wrong with an entry that is imported all the same.
enum class po_doubt {
    placeholders, ///< those of a text are not those of msgid; a plural form may lack some
    brace,        ///< one that is no placeholder's, and not doubled either, becomes text
    note,         ///< one that looks like the description of a placeholder is none
};
std::vector<po_doubt> doubts_about(po_entry const& entry);

struct po_message {
    ustring8 catalog;
    zolt::i18n::message_t message;
};

/// Makes messages of entries, each for one file.
class po_importer {
public:
    /// With a catalog all entries go there, named after their msgid; with msgctxt before it and "|"
    /// between. A name that is taken gets "#2", "#3"... A plural entry makes a message for each form, with
    /// "[0]", "[1]"... behind the name and the file's rule for plurals as meta text.
    po_importer(ustring8 language, std::optional<ustring8> catalog, bool takes_fuzzy);

    enum class result {
        imported,
        untranslated,
        fuzzy,
        no_name,   ///< msgctxt is not "catalog/message"
        duplicate, ///< the same msgctxt and msgid once more
    };
    /// The rule for plurals is the header field "Plural-Forms".
    result add(po_entry const& entry, ustring8 const& plural_rule, std::vector<po_message>& messages);
    /// Catalog and message, before anything is added to the name.
    std::optional<std::pair<ustring8, ustring8>> name_of(po_entry const& entry) const;

private:
    ustring8 unique(ustring8 const& catalog, ustring8 const& name);

    ustring8 m_language;
    std::optional<ustring8> m_catalog;
    bool m_takes_fuzzy;
    std::set<std::pair<ustring8, ustring8>> m_entries;            // by msgctxt and msgid, or by catalog and message
    std::map<std::pair<ustring8, ustring8>, std::size_t> m_names; // with the last number given to one
};

} // namespace tools
