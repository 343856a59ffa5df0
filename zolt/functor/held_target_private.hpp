// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// For who calls a delegate that belongs to somebody else: a call may have the owner clear or replace the
// delegate, and the target has to live until it has returned. Not installed.
#pragma once

#include <zolt/functor/delegate.hpp>

#include <utility>

namespace ZOLT_2_18::functor::_private {

/// Holds the target that the delegate had when it was last asked for. The delegate has to outlive it. Of several
/// that hold one target the first owns it if the delegate drops it.
template <typename Sig>
class held_target {
    using delegate = delegate_t<Sig>;

public:
    using target_type = typename delegate::target_type;

    explicit held_target(delegate& from) noexcept : m_delegate(from) {}
    ~held_target() {
        target_type* const held = m_held;
        if (!held || !m_is_owner) return;
        if (m_delegate.m_target == marked(held)) {
            m_delegate.m_target = held;
        } else {
            delete held;
        }
    }
    held_target(held_target const&) = delete;
    held_target& operator=(held_target const&) = delete;

    /// What the delegate holds now, null when it is unbound. Lives at least until the next call.
    [[gnu::always_inline]] target_type* get() noexcept {
        if (m_delegate.m_target != m_seen) [[unlikely]]
            look_again();
        return m_held;
    }

private:
    static target_type* marked(target_type* target) noexcept {
        return reinterpret_cast<target_type*>(reinterpret_cast<std::uintptr_t>(target) | delegate::held_mark);
    }

    [[gnu::noinline]] void look_again() noexcept {
        target_type* const dropped = m_is_owner ? m_held : nullptr;
        m_held = m_delegate.target();
        m_is_owner = m_held && !m_delegate.is_held();
        m_seen = m_delegate.m_target = m_held ? marked(m_held) : nullptr;
        delete dropped; // which may run anything
    }

    delegate& m_delegate;
    target_type* m_seen = nullptr; // what the delegate's pointer was then
    target_type* m_held = nullptr;
    bool m_is_owner = false;
};

} // namespace ZOLT_2_18::functor::_private
