// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// rc_pointer<T>: a smart pointer the size of a raw one, whose count lives inside the object.
//
// T derives from generic::abilities::reference_count_pointer_ability<T>. The last pointer deletes
// the object through its virtual destructor if the object is marked as heap-allocated; locals and
// statics may be pointed to as well and are never deleted. For plain classes without virtual
// functions see <zolt/memory/shared_pointer.hpp>.
//
//     auto first = memory::pointers::make_rc<node>("root");   // count 1
//     memory::pointers::rc_pointer<node> second = first;      // count 2
//     first.reset();                                          // count 1
//
// The count is not atomic: an object and all its pointers belong to one thread at a time.
#pragma once

#include <zolt/exceptions/exception.hpp>

#include <type_traits>
#include <utility>

namespace ZOLT_2_18::memory::pointers {

template <typename T>
class rc_pointer {
public:
    /// What is pointed to.
    using element_type = T;

    constexpr rc_pointer() noexcept = default;
    /// Takes a share of the object: its count goes up by one. Null gives an empty pointer.
    rc_pointer(T* object) noexcept : m_object(object) { take(); }
    rc_pointer(rc_pointer const& other) noexcept : m_object(other.m_object) { take(); }
    rc_pointer(rc_pointer&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    template <typename Derived, typename = std::enable_if_t<std::is_convertible_v<Derived*, T*>>>
    rc_pointer(rc_pointer<Derived> const& other) noexcept : m_object(other.get()) {
        take();
    }
    ~rc_pointer() { release(); }

    rc_pointer& operator=(rc_pointer const& other) noexcept { return assign(other.m_object); }
    rc_pointer& operator=(rc_pointer&& other) noexcept {
        rc_pointer(std::move(other)).swap(*this);
        return *this;
    }
    rc_pointer& operator=(T* object) noexcept { return assign(object); }

    /// Shares the new object first and releases the old one then; the same object changes nothing.
    rc_pointer& assign(T* object) noexcept {
        if (object != m_object) rc_pointer(object).swap(*this);
        return *this;
    }

    /// Gives up the share. A heap-allocated object goes with its last share; an exception that
    /// escapes its destructor ends the process.
    void reset() noexcept { release(); }
    void reset(T* object) noexcept { assign(object); }

    void swap(rc_pointer& other) noexcept { std::swap(m_object, other.m_object); }

    /// The raw pointer, null when empty.
    T* get() const noexcept { return m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// @throws exceptions::runtime_error when empty.
    T& operator*() const { return *checked("operator*"); }
    /// @throws exceptions::runtime_error when empty.
    T* operator->() const { return checked("operator->"); }

private:
    void take() const noexcept {
        if (m_object) ++m_object->reference_count;
    }

    /// Out of the callers' sight: g++ would warn that a local, or a pointer still looked at, is deleted.
    __attribute__((noinline)) static void destroy(T* object) noexcept { delete object; }

    void release() noexcept {
        T* const object = std::exchange(m_object, nullptr);
        if (object && --object->reference_count == 0 && object->heap_allocated) destroy(object);
    }

    T* checked(char const* operation) const {
        if (!m_object) {
            throw exceptions::runtime_error("rc_pointer is empty", 100, "memory/rc_pointer", operation);
        }
        return m_object;
    }

    T* m_object = nullptr;
};

/// Two pointers are equal when they hold the same object.
template <typename T, typename U>
bool operator==(rc_pointer<T> const& left, rc_pointer<U> const& right) noexcept {
    return left.get() == right.get();
}
template <typename T, typename U>
bool operator!=(rc_pointer<T> const& left, rc_pointer<U> const& right) noexcept {
    return left.get() != right.get();
}
template <typename T>
bool operator==(rc_pointer<T> const& left, std::remove_cv_t<T> const* right) noexcept {
    return left.get() == right;
}
template <typename T>
bool operator!=(rc_pointer<T> const& left, std::remove_cv_t<T> const* right) noexcept {
    return left.get() != right;
}
template <typename T>
bool operator==(std::remove_cv_t<T> const* left, rc_pointer<T> const& right) noexcept {
    return left == right.get();
}
template <typename T>
bool operator!=(std::remove_cv_t<T> const* left, rc_pointer<T> const& right) noexcept {
    return left != right.get();
}

/// A new object on the heap, marked as such, in its first pointer.
template <typename T, typename... Arguments>
rc_pointer<T> make_rc(Arguments&&... arguments) {
    T* const object = new T(std::forward<Arguments>(arguments)...);
    object->heap_allocated = true;
    return rc_pointer<T>(object);
}

} // namespace ZOLT_2_18::memory::pointers
