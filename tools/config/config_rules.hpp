// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The rules of `zolt config check`. What they find is in config_statements, of which each fault belongs to one
// of them.
#pragma once

#include "tools/program/rules.hpp"

namespace tools {

rule_table config_rules();

/// The rule whose finding the phrase is.
rule const& config_rule_of(phrase fault);

} // namespace tools
