// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The rules of `zolt catalog export-po` and `import-po`. What is ignored is left out as far as it cannot be
// written: a message, an entry or a file.
#pragma once

#include "tools/program/rules.hpp"

namespace tools {

rule_table export_po_rules();
rule_table import_po_rules();

} // namespace tools
