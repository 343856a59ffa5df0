// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// shared_pointer<T>: the counted pointer for plain classes without virtual functions.
//
// T begins with the two members that keep its count, a boolean `heap_allocated` and an unsigned
// 32-bit `reference_count`; deriving from shared_count provides them with the right copying. The
// last pointer destroys the object through T's own, non-virtual destructor, so T has to be the
// object's final class. For polymorphic classes see <zolt/memory/rc_pointer.hpp>.
//
// The count is not atomic: an object and all its pointers belong to one thread at a time.
#pragma once

#include <zolt/exceptions/exception.hpp>

#include <type_traits>
#include <utility>

namespace ZOLT_2_18::memory::pointers {

/// The two counting members. A copy starts unmarked with a count of 0; assignment leaves both alone.
struct shared_count {
    bool heap_allocated = false;      ///< made with `new`: the last pointer deletes it
    unsigned int reference_count = 0; ///< pointers that hold the object

    shared_count() noexcept = default;
    shared_count(shared_count const&) noexcept {}
    shared_count& operator=(shared_count const&) noexcept { return *this; }
};

template <typename T>
class shared_pointer {
public:
    /// What is pointed to.
    using element_type = T;

    constexpr shared_pointer() noexcept = default;
    /// Takes a share of the object: its count goes up by one. Null gives an empty pointer.
    shared_pointer(T* object) noexcept : m_object(object) { take(); }
    shared_pointer(shared_pointer const& other) noexcept : m_object(other.m_object) { take(); }
    shared_pointer(shared_pointer&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ~shared_pointer() { release(); }

    shared_pointer& operator=(shared_pointer const& other) noexcept { return assign(other.m_object); }
    shared_pointer& operator=(shared_pointer&& other) noexcept {
        shared_pointer(std::move(other)).swap(*this);
        return *this;
    }
    shared_pointer& operator=(T* object) noexcept { return assign(object); }

    /// Shares the new object first and releases the old one then; the same object changes nothing.
    shared_pointer& assign(T* object) noexcept {
        if (object != m_object) shared_pointer(object).swap(*this);
        return *this;
    }

    /// Gives up the share. A heap-allocated object goes with its last share; an exception that
    /// escapes its destructor ends the process.
    void reset() noexcept { release(); }
    void reset(T* object) noexcept { assign(object); }

    void swap(shared_pointer& other) noexcept { std::swap(m_object, other.m_object); }

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
        static_assert(!std::is_polymorphic_v<T>, "polymorphic classes are held by rc_pointer");
        T* const object = std::exchange(m_object, nullptr);
        if (object && --object->reference_count == 0 && object->heap_allocated) destroy(object);
    }

    T* checked(char const* operation) const {
        if (!m_object) {
            throw exceptions::runtime_error("shared_pointer is empty", 100, "memory/shared_pointer", operation);
        }
        return m_object;
    }

    T* m_object = nullptr;
};

/// Two pointers are equal when they hold the same object.
template <typename T>
bool operator==(shared_pointer<T> const& left, shared_pointer<T> const& right) noexcept {
    return left.get() == right.get();
}
template <typename T>
bool operator!=(shared_pointer<T> const& left, shared_pointer<T> const& right) noexcept {
    return left.get() != right.get();
}
template <typename T>
bool operator==(shared_pointer<T> const& left, std::remove_cv_t<T> const* right) noexcept {
    return left.get() == right;
}
template <typename T>
bool operator!=(shared_pointer<T> const& left, std::remove_cv_t<T> const* right) noexcept {
    return left.get() != right;
}
template <typename T>
bool operator==(std::remove_cv_t<T> const* left, shared_pointer<T> const& right) noexcept {
    return left == right.get();
}
template <typename T>
bool operator!=(std::remove_cv_t<T> const* left, shared_pointer<T> const& right) noexcept {
    return left != right.get();
}

/// A new object on the heap, marked as such, in its first pointer.
template <typename T, typename... Arguments>
shared_pointer<T> make_shared_pointer(Arguments&&... arguments) {
    T* const object = new T(std::forward<Arguments>(arguments)...);
    object->heap_allocated = true;
    return shared_pointer<T>(object);
}

} // namespace ZOLT_2_18::memory::pointers
