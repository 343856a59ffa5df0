// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// clone_interface, the abstract interface of objects that can copy themselves without their caller
// knowing their class.
#pragma once

#include <zolt/export.hpp>
#include <zolt/generic/abilities.hpp>

namespace ZOLT_2_18::generic {

class ZOLT_API clone_interface : public abilities::clone_ability {
public:
    clone_interface() noexcept = default;
    clone_interface(clone_interface const&) noexcept = default;
    clone_interface& operator=(clone_interface const&) noexcept = default;
    ~clone_interface() override;

    /// A new heap copy of the object, owned by the caller.
    virtual clone_interface* clone() const = 0;
};

} // namespace ZOLT_2_18::generic
