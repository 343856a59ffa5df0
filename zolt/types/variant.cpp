// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The handle: every constructor makes a payload, everything else asks it, which is always there. What the
// payloads answer is in variant_value.cpp.
#include <zolt/types/variant.hpp>

#include <utility>

namespace ZOLT_2_18::types {
namespace {

/// The value is made in the parameter of the payload's constructor, so a text is moved once.
template <typename T, typename... Arguments>
variant_type* payload(Arguments&&... arguments) {
    auto* const made = new variant_value_t<T>(T(std::forward<Arguments>(arguments)...));
    made->heap_allocated = true;
    return made;
}

template <typename Text>
variant_type* text_payload(typename Text::value_type const* text) {
    return text ? payload<Text>(text) : payload<Text>();
}

} // namespace

variant::variant() : m_payload(payload<nil_t>()) {}
variant::variant(nil_t const&) : variant() {}

variant::variant(int value) : m_payload(payload<int>(value)) {}
variant::variant(unsigned int value) : m_payload(payload<unsigned int>(value)) {}
variant::variant(bool value) : m_payload(payload<bool>(value)) {}
variant::variant(signed char const& value) : m_payload(payload<signed char>(value)) {}
variant::variant(unsigned char const& value) : m_payload(payload<unsigned char>(value)) {}
variant::variant(short const& value) : m_payload(payload<short>(value)) {}
variant::variant(unsigned short const& value) : m_payload(payload<unsigned short>(value)) {}
variant::variant(long const& value) : m_payload(payload<long>(value)) {}
variant::variant(unsigned long const& value) : m_payload(payload<unsigned long>(value)) {}
variant::variant(long long const& value) : m_payload(payload<long long>(value)) {}
variant::variant(unsigned long long const& value) : m_payload(payload<unsigned long long>(value)) {}
variant::variant(float const& value) : m_payload(payload<float>(value)) {}
variant::variant(double const& value) : m_payload(payload<double>(value)) {}
variant::variant(long double const& value) : m_payload(payload<long double>(value)) {}

variant::variant(char const* text) : m_payload(text_payload<strings::ustring8>(text)) {}
variant::variant(unsigned short const* text) : m_payload(text_payload<strings::ustring16>(text)) {}
variant::variant(wchar_t const* text) : m_payload(text_payload<strings::ustring32>(text)) {}

variant::variant(std::string const& text) : m_payload(payload<std::string>(text)) {}
variant::variant(std::wstring const& text) : m_payload(payload<std::wstring>(text)) {}
variant::variant(strings::ustring8 const& text) : m_payload(payload<strings::ustring8>(text)) {}
variant::variant(strings::ustring16 const& text) : m_payload(payload<strings::ustring16>(text)) {}
variant::variant(strings::ustring32 const& text) : m_payload(payload<strings::ustring32>(text)) {}
variant::variant(std::string&& text) : m_payload(payload<std::string>(std::move(text))) {}
variant::variant(std::wstring&& text) : m_payload(payload<std::wstring>(std::move(text))) {}
variant::variant(strings::ustring8&& text) : m_payload(payload<strings::ustring8>(std::move(text))) {}
variant::variant(strings::ustring16&& text) : m_payload(payload<strings::ustring16>(std::move(text))) {}
variant::variant(strings::ustring32&& text) : m_payload(payload<strings::ustring32>(std::move(text))) {}

variant& variant::assign(variant const& other) noexcept {
    m_payload = other.m_payload;
    return *this;
}

variant& variant::assign(nil_t const&) { return assign(variant()); }

std::type_info const& variant::type() const noexcept { return m_payload.get()->type(); }
bool variant::equal(nil_t const&) const noexcept { return type() == typeid(nil_t); }

int variant::as_int() const { return m_payload.get()->as_int(); }
short variant::as_short() const { return m_payload.get()->as_short(); }
long variant::as_long() const { return m_payload.get()->as_long(); }
signed char variant::as_int8() const { return m_payload.get()->as_int8(); }
short variant::as_int16() const { return m_payload.get()->as_int16(); }
int variant::as_int32() const { return m_payload.get()->as_int32(); }
long long variant::as_int64() const { return m_payload.get()->as_int64(); }
unsigned char variant::as_uint8() const { return m_payload.get()->as_uint8(); }
unsigned short variant::as_uint16() const { return m_payload.get()->as_uint16(); }
unsigned int variant::as_uint32() const { return m_payload.get()->as_uint32(); }
unsigned long long variant::as_uint64() const { return m_payload.get()->as_uint64(); }
bool variant::as_bool() const { return m_payload.get()->as_bool(); }
float variant::as_float() const { return m_payload.get()->as_float(); }
double variant::as_double() const { return m_payload.get()->as_double(); }
long double variant::as_long_double() const { return m_payload.get()->as_long_double(); }

std::string variant::as_string() const { return m_payload.get()->as_string(); }
std::wstring variant::as_wstring() const { return m_payload.get()->as_wstring(); }
strings::ustring8 variant::as_ustring() const { return m_payload.get()->as_ustring(); }
strings::ustring8 variant::as_utf8() const { return m_payload.get()->as_utf8(); }
strings::ustring16 variant::as_utf16() const { return m_payload.get()->as_utf16(); }
strings::ustring32 variant::as_utf32() const { return m_payload.get()->as_utf32(); }

// Applications rely on the unsigned accessors giving the bits of the signed ones.
int variant::as_signed() const { return as_int(); }
unsigned int variant::as_unsigned() const { return static_cast<unsigned int>(as_int()); }
unsigned int variant::as_uint() const { return static_cast<unsigned int>(as_int()); }
unsigned long variant::as_ulong() const { return static_cast<unsigned long>(as_long()); }
unsigned short variant::as_ushort() const { return static_cast<unsigned short>(as_short()); }

std::ostream& operator<<(std::ostream& stream, variant const& value) {
    return value.m_payload.get()->ostream(stream);
}

} // namespace ZOLT_2_18::types
