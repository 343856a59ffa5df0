// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// For who calls a delegate that belongs to somebody else: a call may have the owner clear or replace the
// delegate, and the target has to live until it has returned. Not installed.
#pragma once

#include <zolt/functor/delegate.hpp>

#include <utility>

namespace ZOLT_2_18::functor::_private {

/// Holds the target that the delegate had when it was last asked for. The delegate has to outlive it.
template <typename Sig>
class held_target {
public:
    using target_type = typename delegate_t<Sig>::target_type;

    explicit held_target(delegate_t<Sig> const& delegate) noexcept : m_delegate(delegate) {}
    ~held_target() { replace(nullptr); }
    held_target(held_target const&) = delete;
    held_target& operator=(held_target const&) = delete;

    /// What the delegate holds now, null when it is unbound. Lives at least until the next call.
    [[gnu::always_inline]] target_type* get() noexcept {
        if (m_delegate.m_target != m_held) [[unlikely]]
            replace(m_delegate.m_target);
        return m_held;
    }

private:
    [[gnu::noinline]] void replace(target_type* target) noexcept {
        if (target) ++target->m_other_holders;
        target_type* const before = std::exchange(m_held, target);
        if (before) before->let_go(); // which may run anything
    }

    delegate_t<Sig> const& m_delegate;
    target_type* m_held = nullptr;
};

} // namespace ZOLT_2_18::functor::_private
