// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The payloads. The twenty types fall into four groups: nil, numbers (bool among them), narrow and wide
// text. A conversion has one function below for each kind of target, which picks the way by the group;
// the payload's operations only name their target.
#include <zolt/types/variant.hpp>

#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/generic/convert/x_to_str.hpp>
#include <zolt/strings/unicode.hpp>
#include <zolt/types/decimal_length_private.hpp>
#include <zolt/types/saturate_private.hpp>
#include <zolt/types/variant_text_private.hpp>

#include <ostream>
#include <string_view>
#include <utility>

// Beside the payloads' destructors, which run through them: three calls are a fifth of a number's life.
namespace ZOLT_2_18::generic::abilities {

alloc_detection_ability::~alloc_detection_ability() = default;
reference_count_pointer_ability_b::~reference_count_pointer_ability_b() = default;
clone_ability::~clone_ability() = default;

} // namespace ZOLT_2_18::generic::abilities

namespace ZOLT_2_18::types {
namespace {

namespace convert = generic::convert;

template <typename T>
constexpr bool is_text = !std::is_arithmetic_v<T> && !std::is_same_v<T, nil_t>;

template <typename Text, typename Unit>
constexpr bool has_units = std::is_same_v<typename Text::value_type, Unit>;

// ---- text to text --------------------------------------------------------------------------------

template <typename String, typename Text>
String transcoded(Text const& text) {
    if constexpr (has_units<String, typename Text::value_type>) {
        return String(text);
    } else if constexpr (has_units<Text, char>) {
        if constexpr (has_units<String, unsigned short>)
            return strings::utf8_to_utf16(text);
        else
            return strings::utf8_to_utf32(text);
    } else if constexpr (has_units<Text, unsigned short>) {
        if constexpr (has_units<String, char>)
            return strings::utf16_to_utf8(text);
        else
            return strings::utf16_to_utf32(text);
    } else {
        if constexpr (has_units<String, char>)
            return strings::utf32_to_utf8(text);
        else
            return strings::utf32_to_utf16(text);
    }
}

// ---- numbers to text -----------------------------------------------------------------------------

template <typename Integer, typename Unit>
void write_digits(Integer value, Unit* digits) {
    constexpr unsigned int radix = 10;
    if constexpr (std::is_same_v<Integer, long long>)
        convert::lltoa(value, digits, radix);
    else if constexpr (std::is_same_v<Integer, unsigned long long>)
        convert::ulltoa(value, digits, radix);
    else if constexpr (std::is_signed_v<Integer>)
        convert::ltoa(value, digits, radix);
    else
        convert::ultoa(value, digits, radix);
}

/// The text unit by unit: what a number is written with are single characters.
template <typename String>
String widened(strings::ustring8&& text) {
    if constexpr (has_units<String, char>) {
        return String(std::move(text));
    } else {
        String wide(text.size(), typename String::value_type());
        for (std::size_t i = 0; i < text.size(); ++i) wide[i] = static_cast<unsigned char>(text[i]);
        return wide;
    }
}

template <typename String, typename Number>
String number_text(Number value) {
    if constexpr (std::is_floating_point_v<Number> || std::is_same_v<Number, bool>) {
        return widened<String>(convert::to_str(value));
    } else {
        std::size_t const length = (value < Number{}) + _private::decimal_length(_private::magnitude(value));
        String digits(length, typename String::value_type());
        write_digits(value, digits.data()); // its terminating zero meets that of the text
        return digits;
    }
}

template <typename String, typename T>
String text(T const& value) {
    if constexpr (std::is_same_v<T, nil_t>)
        return String();
    else if constexpr (std::is_arithmetic_v<T>)
        return number_text<String>(value);
    else
        return transcoded<String>(value);
}

// ---- anything to numbers -------------------------------------------------------------------------

template <typename Target, typename T>
Target number(T const& value) {
    if constexpr (std::is_same_v<T, nil_t>)
        return Target();
    else if constexpr (std::is_floating_point_v<T> && std::is_integral_v<Target>)
        return _private::saturated<Target>(value);
    else
        return static_cast<Target>(value);
}

/// `parse` reads the units of a text. Its length of 0 would mean "up to the NUL", which for the empty
/// text is the same.
template <typename Target, typename T, typename Parser>
Target integer(T const& value, Parser parse) {
    if constexpr (is_text<T>)
        return parse(value.data(), static_cast<unsigned long>(value.size()));
    else
        return number<Target>(value);
}

template <typename Target, typename T, typename Parser>
Target floating(T const& value, Parser parse) {
    if constexpr (std::is_same_v<T, strings::ustring8>)
        return parse(value);
    else if constexpr (is_text<T>)
        return parse(transcoded<strings::ustring8>(value));
    else
        return number<Target>(value);
}

/// Only ASCII letters can lower to the letters that matter here, in every locale.
template <typename Text>
bool equal_lower_case(Text const& text, std::string_view word) noexcept {
    if (text.size() != word.size()) return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        auto const unit = text[i];
        auto const lower = unit >= 'A' && unit <= 'Z' ? unit - 'A' + 'a' : unit;
        if (lower != word[i]) return false;
    }
    return true;
}

template <typename T>
bool truth(T const& value) {
    if constexpr (std::is_same_v<T, nil_t>) {
        return false;
    } else if constexpr (is_text<T>) {
        for (std::string_view const word : {"yes", "on", "true"}) {
            if (equal_lower_case(value, word)) return true;
        }
        return convert::str_to_long(value.data(), static_cast<unsigned long>(value.size())) != 0;
    } else {
        return value != T();
    }
}

} // namespace

// Beside the destructors that call it.
variant_type::~variant_type() = default;

template <typename T>
variant_value_t<T>::~variant_value_t() = default;

template <typename T>
bool variant_value_t<T>::convertible() const noexcept {
    return true;
}

template <typename T>
std::type_info const& variant_value_t<T>::type() const noexcept {
    return typeid(T);
}

template <typename T>
variant_type* variant_value_t<T>::clone() {
    auto* const copy = new variant_value_t(m_value);
    copy->heap_allocated = true;
    return copy;
}

template <typename T>
std::ostream& variant_value_t<T>::ostream(std::ostream& stream) const {
    if constexpr (std::is_same_v<T, nil_t>) {
        return stream << 0;
    } else if constexpr (std::is_same_v<T, std::wstring>) {
        void const* const address = &m_value;
        return stream << "< " << typeid(T).name() << " instance at " << address << " >";
    } else if constexpr (std::is_same_v<T, strings::ustring16> || std::is_same_v<T, strings::ustring32>) {
        return stream << transcoded<std::string>(m_value);
    } else {
        return stream << m_value;
    }
}

template <typename T>
int variant_value_t<T>::as_int() const {
    return integer<int>(m_value, [](auto units, auto length) { return convert::str_to_int(units, length); });
}

template <typename T>
short variant_value_t<T>::as_short() const {
    return integer<short>(m_value, [](auto units, auto length) { return convert::str_to_short(units, length); });
}

template <typename T>
long variant_value_t<T>::as_long() const {
    return integer<long>(m_value, [](auto units, auto length) { return convert::str_to_long(units, length); });
}

template <typename T>
signed char variant_value_t<T>::as_int8() const {
    return integer<signed char>(m_value,
                                [](auto units, auto length) { return convert::str_to_int8(units, length); });
}

template <typename T>
short variant_value_t<T>::as_int16() const {
    return integer<short>(m_value, [](auto units, auto length) { return convert::str_to_int16(units, length); });
}

template <typename T>
int variant_value_t<T>::as_int32() const {
    return integer<int>(m_value, [](auto units, auto length) { return convert::str_to_int32(units, length); });
}

template <typename T>
long long variant_value_t<T>::as_int64() const {
    return integer<long long>(m_value,
                              [](auto units, auto length) { return convert::str_to_int64(units, length); });
}

template <typename T>
unsigned char variant_value_t<T>::as_uint8() const {
    return integer<unsigned char>(m_value,
                                  [](auto units, auto length) { return convert::str_to_uint8(units, length); });
}

template <typename T>
unsigned short variant_value_t<T>::as_uint16() const {
    return integer<unsigned short>(m_value,
                                   [](auto units, auto length) { return convert::str_to_uint16(units, length); });
}

template <typename T>
unsigned int variant_value_t<T>::as_uint32() const {
    return integer<unsigned int>(m_value,
                                 [](auto units, auto length) { return convert::str_to_uint32(units, length); });
}

template <typename T>
unsigned long long variant_value_t<T>::as_uint64() const {
    return integer<unsigned long long>(
        m_value, [](auto units, auto length) { return convert::str_to_uint64(units, length); });
}

template <typename T>
bool variant_value_t<T>::as_bool() const {
    return truth(m_value);
}

template <typename T>
std::string variant_value_t<T>::as_string() const {
    return text<std::string>(m_value);
}

template <typename T>
std::wstring variant_value_t<T>::as_wstring() const {
    return text<std::wstring>(m_value);
}

template <typename T>
strings::ustring8 variant_value_t<T>::as_ustring() const {
    return text<strings::ustring8>(m_value);
}

template <typename T>
strings::ustring8 variant_value_t<T>::as_utf8() const {
    return text<strings::ustring8>(m_value);
}

template <typename T>
strings::ustring16 variant_value_t<T>::as_utf16() const {
    return text<strings::ustring16>(m_value);
}

template <typename T>
strings::ustring32 variant_value_t<T>::as_utf32() const {
    return text<strings::ustring32>(m_value);
}

template <typename T>
float variant_value_t<T>::as_float() const {
    return floating<float>(m_value, [](auto const& utf8) { return convert::str_to_float(utf8); });
}

template <typename T>
double variant_value_t<T>::as_double() const {
    return floating<double>(m_value, [](auto const& utf8) { return convert::str_to_double(utf8); });
}

template <typename T>
long double variant_value_t<T>::as_long_double() const {
    return floating<long double>(m_value, [](auto const& utf8) { return convert::str_to_long_double(utf8); });
}

std::string_view _private::text_access::narrow(variant const& value, std::string& made) {
    variant_type const& payload = *value.m_payload.get();
    std::type_info const& type = payload.type();
    if (type == typeid(std::string)) return static_cast<variant_value_t<std::string> const&>(payload).m_value;
    if (type == typeid(strings::ustring8)) {
        return static_cast<variant_value_t<strings::ustring8> const&>(payload).m_value;
    }
    made = payload.as_string();
    return made;
}

template class variant_value_t<nil_t>;
template class variant_value_t<bool>;
template class variant_value_t<signed char>;
template class variant_value_t<unsigned char>;
template class variant_value_t<short>;
template class variant_value_t<unsigned short>;
template class variant_value_t<int>;
template class variant_value_t<unsigned int>;
template class variant_value_t<long>;
template class variant_value_t<unsigned long>;
template class variant_value_t<long long>;
template class variant_value_t<unsigned long long>;
template class variant_value_t<float>;
template class variant_value_t<double>;
template class variant_value_t<long double>;
template class variant_value_t<std::string>;
template class variant_value_t<std::wstring>;
template class variant_value_t<strings::ustring8>;
template class variant_value_t<strings::ustring16>;
template class variant_value_t<strings::ustring32>;

} // namespace ZOLT_2_18::types
