// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// argument, an optionally named value, and varg_list, an ordered list of them: how a variable number of
// typed values is passed, by position or by name.
//
//     generic::varg_list const list(generic::argument("user", "ann"), generic::argument("files", 3));
//     list["files"].value().as_int();               // 3
//     list.at(0).name();                            // "user"
//     list["size"] == types::nil;                   // true: there is none
//
// Names are UTF-8 and compared byte by byte, lengths included; the empty name means "unnamed" and is
// never found. Every look-up scans the list from the front and makes no strings.
#pragma once

#include <zolt/export.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/nil.hpp>
#include <zolt/types/variant.hpp>

#include <type_traits>
#include <vector>

namespace ZOLT_2_18::generic {

/// A value and its name, which may be empty. Copies share the value's payload as variants do.
class ZOLT_API argument {
public:
    /// Nil: no name, and nil for a value.
    argument();
    argument(types::nil_t const&);
    /// With a value, with or without a name.
    argument(types::variant const& value);
    argument(strings::ustring8 const& name, types::variant const& value);
    argument(argument const&) = default;
    /// The moved-from argument has no name and an unchanged value.
    argument(argument&& other) noexcept = default;

    /// The two parts and what replaces them.
    strings::ustring8 const& name() const noexcept { return m_name; }
    types::variant const& value() const noexcept { return m_value; }
    void name(strings::ustring8 const& name);
    void value(types::variant const& value) noexcept;
    /// True unless the name is empty.
    bool has_name() const noexcept { return !m_name.empty(); }

    argument& operator=(argument const& other) { return assign(other); }
    argument& operator=(argument&& other) noexcept { return assign(static_cast<argument&&>(other)); }
    argument& operator=(types::variant const& value) noexcept { return assign(value); }
    argument& operator=(types::nil_t const& tag) { return assign(tag); }
    argument& assign(argument const& other);
    argument& assign(argument&& other) noexcept;
    /// Replaces both parts.
    argument& assign(strings::ustring8 const& name, types::variant const& value);
    /// Replaces the value only; the name stays.
    argument& assign(types::variant const& value) noexcept;
    /// Makes the argument nil, its name included.
    argument& assign(types::nil_t const&);

    /// True when the argument is nil: it has no name and its value is nil.
    bool equal(types::nil_t const& tag) const noexcept { return m_name.empty() && m_value.equal(tag); }
    bool operator==(types::nil_t const& tag) const noexcept { return equal(tag); }
    bool operator!=(types::nil_t const& tag) const noexcept { return !equal(tag); }

private:
    strings::ustring8 m_name;
    types::variant m_value;
};

/// Arguments in order. No two that were appended share a name; unnamed ones may repeat.
///
/// Besides ustring8 a name may be a C string (null reads as empty), and besides unsigned long an index
/// may be any integer; a negative one is beyond every list.
class ZOLT_API varg_list {
public:
    /// Over the arguments in order.
    using iterator = std::vector<argument>::iterator;
    using const_iterator = std::vector<argument>::const_iterator;

    /// What a look-up by name returns when it finds nothing; nil, and usable from static initialisers.
    /// All lists share it, and copies of its value share its payload: copy that on one thread only.
    static argument const nil_argument;

    varg_list() noexcept = default;
    varg_list(types::nil_t const&) noexcept {}
    /// Appends the arguments up to the first nil one; that one and all after it are ignored, even if they
    /// are not nil. An argument whose name was there before is dropped, as push_back drops it.
    varg_list(
        argument const& a1, argument const& a2 = nil_argument, argument const& a3 = nil_argument,
        argument const& a4 = nil_argument, argument const& a5 = nil_argument, argument const& a6 = nil_argument,
        argument const& a7 = nil_argument, argument const& a8 = nil_argument, argument const& a9 = nil_argument,
        argument const& a10 = nil_argument, argument const& a11 = nil_argument, argument const& a12 = nil_argument,
        argument const& a13 = nil_argument, argument const& a14 = nil_argument, argument const& a15 = nil_argument,
        argument const& a16 = nil_argument, argument const& a17 = nil_argument, argument const& a18 = nil_argument,
        argument const& a19 = nil_argument, argument const& a20 = nil_argument, argument const& a21 = nil_argument,
        argument const& a22 = nil_argument, argument const& a23 = nil_argument, argument const& a24 = nil_argument,
        argument const& a25 = nil_argument, argument const& a26 = nil_argument);
    varg_list(varg_list const&) = default;
    varg_list(varg_list&&) noexcept = default;

    varg_list& operator=(varg_list const& other) { return assign(other); }
    varg_list& operator=(varg_list&& other) noexcept { return assign(static_cast<varg_list&&>(other)); }
    varg_list& operator=(types::nil_t const& tag) noexcept { return assign(tag); }
    varg_list& assign(varg_list const& other);
    varg_list& assign(varg_list&& other) noexcept;
    varg_list& assign(types::nil_t const&) noexcept;

    /// Appends; false, leaving the list unchanged, when an argument of the same name is in it. What is
    /// unnamed is always appended, nil included.
    bool push_back(argument const& item);
    bool push_back(strings::ustring8 const& name, types::variant const& value);

    /// True when an argument has that name.
    bool has_argument(strings::ustring8 const& name) const noexcept;
    bool has_argument(char const* name) const noexcept;

    /// The first argument of that name, or end().
    const_iterator find(strings::ustring8 const& name) const noexcept;
    const_iterator find(char const* name) const noexcept;
    iterator find(strings::ustring8 const& name) noexcept;
    iterator find(char const* name) noexcept;

    /// The first argument of that name, or nil_argument.
    argument const& at(strings::ustring8 const& name) const noexcept;
    argument const& at(char const* name) const noexcept;
    argument const& operator[](strings::ustring8 const& name) const noexcept { return at(name); }
    argument const& operator[](char const* name) const noexcept { return at(name); }

    /// The argument at that position, counted from 0.
    /// @throws std::out_of_range when the index is not below count(); operator[] checks, too.
    argument const& at(unsigned long index) const;
    argument& at(unsigned long index);
    argument const& operator[](unsigned long index) const { return at(index); }
    argument& operator[](unsigned long index) { return at(index); }

    /// The number of arguments.
    unsigned long count() const noexcept { return static_cast<unsigned long>(m_arguments.size()); }
    /// True without arguments.
    bool empty() const noexcept { return m_arguments.empty(); }
    /// Over the arguments in order.
    const_iterator begin() const noexcept { return m_arguments.begin(); }
    const_iterator end() const noexcept { return m_arguments.end(); }
    iterator begin() noexcept { return m_arguments.begin(); }
    iterator end() noexcept { return m_arguments.end(); }

    /// True when the list is empty.
    bool equal(types::nil_t const&) const noexcept { return empty(); }
    bool operator==(types::nil_t const& tag) const noexcept { return equal(tag); }
    bool operator!=(types::nil_t const& tag) const noexcept { return !equal(tag); }

    /// Removes by position and returns the position after what was removed; end() removes nothing.
    iterator erase(const_iterator position);
    iterator erase(const_iterator first, const_iterator last);
    /// Removes the argument at that index; nothing when the index is not below count().
    void erase(unsigned long index);
    /// Removes the first argument of that name; nothing when there is none.
    void erase(strings::ustring8 const& name);
    void erase(char const* name);
    /// Removes all arguments, as clear() does.
    void erase() noexcept;
    void clear() noexcept;

    /// An index of any other integer type; with these a literal 0 is an index, never a null name.
    template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    argument const& at(Integer index) const {
        return at(to_index(index));
    }
    template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    argument& at(Integer index) {
        return at(to_index(index));
    }
    template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    argument const& operator[](Integer index) const {
        return at(to_index(index));
    }
    template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    argument& operator[](Integer index) {
        return at(to_index(index));
    }
    template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    void erase(Integer index) {
        erase(to_index(index));
    }

private:
    /// The index; what unsigned long cannot hold becomes its largest value, which no list reaches.
    template <typename Integer>
    static constexpr unsigned long to_index(Integer index) noexcept {
        unsigned long const narrowed = static_cast<unsigned long>(index);
        bool const negative = std::is_signed_v<Integer> && index < Integer{};
        bool const same = static_cast<unsigned long long>(index) == narrowed;
        return same && !negative ? narrowed : ~0UL;
    }

    std::vector<argument> m_arguments;
};

} // namespace ZOLT_2_18::generic
