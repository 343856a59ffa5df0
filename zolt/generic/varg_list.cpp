// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Lists are short, so a look-up scans them; all forms of a name meet in one scan over a string_view.
#include <zolt/generic/varg_list.hpp>

#include <algorithm>
#include <string_view>
#include <utility>

namespace ZOLT_2_18::generic {
namespace {

std::string_view view(char const* name) noexcept { return name ? name : std::string_view(); }

/// The first argument of that name in the range, or its end. Nothing has the empty name.
template <typename Iterator>
Iterator find_name(Iterator first, Iterator last, std::string_view name) noexcept {
    if (name.empty()) return last;
    return std::find_if(first, last, [name](argument const& item) { return item.name() == name; });
}

} // namespace

argument::argument() = default;
argument::argument(types::nil_t const&) {}
argument::argument(types::variant const& value) : m_value(value) {}
argument::argument(strings::ustring8 const& name, types::variant const& value) : m_name(name), m_value(value) {}

void argument::name(strings::ustring8 const& name) { m_name = name; }
void argument::value(types::variant const& value) noexcept { m_value = value; }

argument& argument::assign(argument const& other) { return assign(other.m_name, other.m_value); }

argument& argument::assign(argument&& other) noexcept {
    if (this != &other) {
        m_name = std::move(other.m_name);
        m_value = other.m_value;
    }
    return *this;
}

argument& argument::assign(strings::ustring8 const& name, types::variant const& value) {
    m_name = name; // may fail, so it comes first
    return assign(value);
}

argument& argument::assign(types::variant const& value) noexcept {
    m_value = value;
    return *this;
}

argument& argument::assign(types::nil_t const&) { return assign(argument()); }

// Early, for initialisers of other statics that pass arguments or look some up.
argument const varg_list::nil_argument __attribute__((init_priority(101)));

varg_list::varg_list(argument const& a1, argument const& a2, argument const& a3, argument const& a4,
                     argument const& a5, argument const& a6, argument const& a7, argument const& a8,
                     argument const& a9, argument const& a10, argument const& a11, argument const& a12,
                     argument const& a13, argument const& a14, argument const& a15, argument const& a16,
                     argument const& a17, argument const& a18, argument const& a19, argument const& a20,
                     argument const& a21, argument const& a22, argument const& a23, argument const& a24,
                     argument const& a25, argument const& a26) {
    for (argument const* item : {&a1,  &a2,  &a3,  &a4,  &a5,  &a6,  &a7,  &a8,  &a9,  &a10, &a11, &a12, &a13,
                                 &a14, &a15, &a16, &a17, &a18, &a19, &a20, &a21, &a22, &a23, &a24, &a25, &a26}) {
        if (item->equal(types::nil)) break;
        push_back(*item);
    }
}

varg_list& varg_list::assign(varg_list const& other) {
    if (this != &other) assign(varg_list(other));
    return *this;
}

varg_list& varg_list::assign(varg_list&& other) noexcept {
    if (this != &other) m_arguments = std::move(other.m_arguments);
    return *this;
}

varg_list& varg_list::assign(types::nil_t const&) noexcept {
    clear();
    return *this;
}

bool varg_list::push_back(argument const& item) {
    if (has_argument(item.name())) return false;
    m_arguments.push_back(item);
    return true;
}

bool varg_list::push_back(strings::ustring8 const& name, types::variant const& value) {
    if (has_argument(name)) return false;
    m_arguments.emplace_back(name, value);
    return true;
}

bool varg_list::has_argument(strings::ustring8 const& name) const noexcept { return find(name) != end(); }
bool varg_list::has_argument(char const* name) const noexcept { return find(name) != end(); }

varg_list::const_iterator varg_list::find(strings::ustring8 const& name) const noexcept {
    return find_name(begin(), end(), name);
}

varg_list::const_iterator varg_list::find(char const* name) const noexcept {
    return find_name(begin(), end(), view(name));
}

varg_list::iterator varg_list::find(strings::ustring8 const& name) noexcept {
    return find_name(begin(), end(), name);
}

varg_list::iterator varg_list::find(char const* name) noexcept { return find_name(begin(), end(), view(name)); }

argument const& varg_list::at(strings::ustring8 const& name) const noexcept {
    const_iterator const found = find(name);
    return found != end() ? *found : nil_argument;
}

argument const& varg_list::at(char const* name) const noexcept {
    const_iterator const found = find(name);
    return found != end() ? *found : nil_argument;
}

argument const& varg_list::at(unsigned long index) const { return m_arguments.at(index); }
argument& varg_list::at(unsigned long index) { return m_arguments.at(index); }

varg_list::iterator varg_list::erase(const_iterator position) {
    return erase(position, position != end() ? position + 1 : position);
}

varg_list::iterator varg_list::erase(const_iterator first, const_iterator last) {
    return m_arguments.erase(first, last);
}

void varg_list::erase(unsigned long index) {
    if (index < count()) erase(begin() + static_cast<std::ptrdiff_t>(index));
}

void varg_list::erase(strings::ustring8 const& name) { erase(find(name)); }
void varg_list::erase(char const* name) { erase(find(name)); }
void varg_list::erase() noexcept { clear(); }
void varg_list::clear() noexcept { m_arguments.clear(); }

} // namespace ZOLT_2_18::generic
