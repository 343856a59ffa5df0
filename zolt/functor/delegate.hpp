// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// delegate_t<Sig>: an owning handle to any callable of a signature. Copying a delegate clones its
// target, so two delegates never share one.
//
//     functor::delegate_t<int (int)> twice([](int n) { return 2 * n; });
//     twice.invoke(21);                       // 42
//     functor::delegate_t<int (int)>().invoke(21);  // unbound: 0
#pragma once

#include <zolt/export.hpp>
#include <zolt/functor/function_type_interface.hpp>

#include <cstdint>
#include <type_traits>
#include <utility>

namespace ZOLT_2_18::functor {

template <typename Sig>
class delegate_t;

namespace _private {
template <typename Function, typename Sig>
class callable_t;
template <typename Sig>
class held_target;
}

/// The delegate of a signature; others do not exist.
template <typename Result, typename... Arguments>
class delegate_t<Result(Arguments...)> {
public:
    /// What a delegate owns.
    using target_type = function_type_interface<Result(Arguments...)>;

    /// Unbound.
    constexpr delegate_t() noexcept = default;
    /// Takes ownership of a target made with `new`; null leaves the delegate unbound.
    explicit delegate_t(target_type* target) noexcept : m_target(target) {}
    /// Binds a copy of a free function, lambda or other function object; a null function pointer
    /// leaves the delegate unbound.
    template <typename Function,
              typename = std::enable_if_t<!std::is_same_v<std::decay_t<Function>, delegate_t> &&
                                          !std::is_convertible_v<Function, target_type*> &&
                                          !std::is_base_of_v<target_type, std::decay_t<Function>> &&
                                          std::is_invocable_r_v<Result, std::decay_t<Function>&, Arguments...>>>
    delegate_t(Function&& function)
        : m_target(_private::callable_t<std::decay_t<Function>, Result(Arguments...)>::make(
              std::forward<Function>(function))) {}
    /// Binds a clone of the target.
    delegate_t(target_type const& target) : m_target(target.do_clone()) {}

    delegate_t(delegate_t const& other) : m_target(other.cloned_target()) {}
    delegate_t(delegate_t&& other) noexcept : m_target(other.give_target()) {}
    /// An exception that escapes the target's destructor ends the process.
    ~delegate_t() {
        if (!is_held()) delete std::exchange(m_target, nullptr);
    }

    delegate_t& operator=(delegate_t const& other) { return assign(other); }
    delegate_t& operator=(delegate_t&& other) noexcept {
        delegate_t moved(std::move(other));
        std::swap(m_target, moved.m_target);
        return *this;
    }
    delegate_t& assign(delegate_t const& other) {
        return this == &other ? *this : *this = delegate_t(other);
    }

    void swap(delegate_t& other) noexcept {
        delegate_t moved(std::move(other));
        other = std::move(*this);
        *this = std::move(moved);
    }

    /// Forwards to the target. An unbound delegate calls nothing and returns a value-initialised
    /// result, so a result cannot be a reference.
    Result invoke(Arguments... arguments) const {
        target_type* const bound = target();
        if (!bound) return Result();
        return bound->invoke(std::forward<Arguments>(arguments)...);
    }
    Result operator()(Arguments... arguments) const { return invoke(std::forward<Arguments>(arguments)...); }

    /// True when a target is bound.
    explicit operator bool() const noexcept { return m_target != nullptr; }

    /// Both unbound, or both bound to equal targets.
    bool equal(delegate_t const& other) const {
        if (!m_target || !other.m_target) return m_target == other.m_target;
        return target()->do_equal(*other.target());
    }
    friend bool operator==(delegate_t const& left, delegate_t const& right) { return left.equal(right); }
    friend bool operator!=(delegate_t const& left, delegate_t const& right) { return !left.equal(right); }

private:
    friend class _private::held_target<Result(Arguments...)>;

    // Somebody calls the target without this delegate, which leaves it to them when it drops it.
    static constexpr std::uintptr_t held_mark = 1; // within the pointer

    bool is_held() const noexcept { return (reinterpret_cast<std::uintptr_t>(m_target) & held_mark) != 0; }
    target_type* target() const noexcept {
        return is_held() ? reinterpret_cast<target_type*>(reinterpret_cast<std::uintptr_t>(m_target) - held_mark)
                         : m_target;
    }
    target_type* cloned_target() const { return m_target ? target()->do_clone() : nullptr; }
    // A held target stays with who holds it, and a clone goes, or nothing where there is no memory for one.
    target_type* give_target() noexcept {
        target_type* given = m_target;
        if (is_held()) {
            try {
                given = cloned_target();
            } catch (...) {
                given = nullptr;
            }
        }
        m_target = nullptr;
        return given;
    }

    target_type* m_target = nullptr;
};

//--------------------------------------------------------------------------------------------------

namespace _private {

/// Holds a function pointer or function object by value.
template <typename Function, typename Result, typename... Arguments>
class ZOLT_API callable_t<Function, Result(Arguments...)>
    : public function_type_interface<Result(Arguments...)> {
public:
    explicit callable_t(Function function) : m_function(std::move(function)) {}

    template <typename Source>
    static callable_t* make(Source&& source) {
        Function function(std::forward<Source>(source));
        if constexpr (std::is_pointer_v<Function>) {
            if (!function) return nullptr;
        }
        return new callable_t(std::move(function));
    }

    Result invoke(Arguments... arguments) override {
        if constexpr (std::is_void_v<Result>) {
            m_function(std::forward<Arguments>(arguments)...);
        } else {
            return m_function(std::forward<Arguments>(arguments)...);
        }
    }

    /// Function pointers compare by address, objects without state by type; others only equal
    /// themselves.
    bool do_equal(function_type_interface<Result(Arguments...)> const& other) const override {
        auto const* const same = dynamic_cast<callable_t const*>(&other);
        if constexpr (std::is_pointer_v<Function>) {
            return same && same->m_function == m_function;
        } else {
            return same && (std::is_empty_v<Function> || same == this);
        }
    }

    callable_t* do_clone() const override { return new callable_t(*this); }

private:
    Function m_function;
};

} // namespace _private
} // namespace ZOLT_2_18::functor
