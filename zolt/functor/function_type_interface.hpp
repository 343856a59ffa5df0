// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// function_type_interface<Sig>: the abstract callable that a delegate owns. The library brings
// member_function_t for an object's member function; delegate_t makes its own for free functions
// and lambdas. Derive from it to bind anything else.
#pragma once

#include <zolt/export.hpp>
#include <zolt/generic/abilities.hpp>
#include <zolt/traits/function_traits.hpp>

namespace ZOLT_2_18::functor {

template <typename Sig>
class function_type_interface;

/// The callable of a signature; others do not exist.
template <typename Result, typename... Arguments>
class ZOLT_API function_type_interface<Result(Arguments...)>
    : public traits::function_traits<Result(Arguments...)>, public generic::abilities::clone_ability {
public:
    ~function_type_interface() override = default;

    /// Calls the target.
    virtual Result invoke(Arguments... arguments) = 0;

    /// True when the other callable has the same target.
    virtual bool do_equal(function_type_interface const& other) const = 0;

    /// A new heap copy with the same target, owned by the caller.
    virtual function_type_interface* do_clone() const = 0;
};

} // namespace ZOLT_2_18::functor
