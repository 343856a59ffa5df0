// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Schemas for catalog files, by which editors complete and other programs check them.
//
// They describe the form that catalogs should have and are stricter than the library: they refuse what is
// loaded and lost, such as a catalog without a language, text outside of messages or an option that shows as
// ?invalid?, and names of options and types must be written in full and in lower case. What they let pass the
// library loads, unless it is XML that the library does not read, such as CDATA sections, or includes are missing.
#pragma once

#include "tools/program/session.hpp"

namespace tools {

enum class schema_kind {
    relax_ng,  ///< in the XML syntax
    xml_schema ///< of W3C, version 1.0, in which the options of an argument cannot depend on its type
};

/// `zolt catalog schema`
exit_status print_schema(session const& session, schema_kind kind);

} // namespace tools
