// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// member_function_t<C, Sig>: an object of class C bound to one of its member functions. The object is
// not owned and has to outlive the binding. For const member functions write the class as `C const`.
//
//     functor::member_function_t<printer, void (strings::ustring8 const&)> line(&out, &printer::line);
//     line.invoke("text");
#pragma once

#include <zolt/export.hpp>
#include <zolt/functor/function_type_interface.hpp>

#include <type_traits>
#include <utility>

namespace ZOLT_2_18::functor {

template <typename C, typename Sig>
class member_function_t;

/// The binding of a signature; others do not exist.
template <typename C, typename Result, typename... Arguments>
class ZOLT_API member_function_t<C, Result(Arguments...)>
    : public function_type_interface<Result(Arguments...)> {
public:
    /// Pointer to a member function, const where the class is.
    using member_type = std::conditional_t<std::is_const_v<C>, Result (std::remove_const_t<C>::*)(Arguments...) const,
                                           Result (std::remove_const_t<C>::*)(Arguments...)>;

    /// Binds the object, which is not owned, to the member function.
    member_function_t(C* object, member_type member) noexcept : m_member(member), m_object(object) {}

    /// Virtual member functions dispatch through the object as usual. Both pointers must be set.
    Result invoke(Arguments... arguments) override {
        return (m_object->*m_member)(std::forward<Arguments>(arguments)...);
    }

    /// Same class and signature, same member and, unless the member is null, the same object.
    bool do_equal(function_type_interface<Result(Arguments...)> const& other) const override {
        auto const* const same = dynamic_cast<member_function_t const*>(&other);
        return same && same->m_member == m_member && (!m_member || same->m_object == m_object);
    }

    member_function_t* do_clone() const override { return new member_function_t(*this); }

private:
    member_type m_member;
    C* m_object;
};

} // namespace ZOLT_2_18::functor
