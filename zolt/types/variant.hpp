// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// variant: one value of any of twenty types, converted on request to any of them.
//
// A variant is a handle to a counted payload, variant_value_t<T>. Making one from a value costs one
// allocation; copying one costs none, since copies share the payload, and assigning one never clones.
// A payload is never changed, so copies do not notice each other. The count is not atomic: a variant
// and its copies belong to one thread at a time.
//
//     types::variant const number("0x1F");
//     number.as_int();                        // 31
//     types::variant(1.5).as_int();           // 1
//     types::variant(1.0 / 3).as_string();    // "0.333333"
//     types::variant() == types::nil;         // true
//
// What the conversions give, by the type held:
//
//   nil        0, false, the empty text. Kept: streamed it is the digit 0.
//   bool       1 or 0, also as text.
//   integers   the language's cast for numbers, unchecked: int -1 is 4294967295 as uint32. Decimal text.
//   floating   truncated toward zero for integers; what is outside the type gives the nearest limit,
//              not-a-number gives 0. Six significant digits as text, as a stream in the global locale
//              writes them.
//   text       numbers are read by the function of generic/convert with the name of the target, the
//              radix taken from the prefix, without exception on overflow: as_uint8() is str_to_uint8,
//              as_long() str_to_long, with 32-bit limits on every build. Text for text goes through the
//              conversions of <zolt/strings/unicode.hpp>, narrow text being UTF-8, with "-1" or "?" for
//              what is malformed there. Bytes of the same encoding stay as they are.
//
// as_bool() of a number tells whether it is not 0. Of a text it is true for "yes", "on" and "true" in
// any case, otherwise it tells whether as_long() is not 0. Kept: there is no rule for "no", "off" and
// "false"; they are false because a text without digits reads as 0, and so is any other word.
#pragma once

#include <zolt/export.hpp>
#include <zolt/generic/abilities.hpp>
#include <zolt/memory/rc_pointer.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/types/nil.hpp>

#include <cstddef>
#include <iosfwd>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace ZOLT_2_18::types {

namespace _private {
struct text_access;
}

/// What a variant points to. The order of the virtual operations is part of the binary interface.
class ZOLT_API variant_type : public generic::abilities::clone_ability,
                              public generic::abilities::reference_count_pointer_ability<variant_type> {
public:
    ~variant_type() override;

    /// True for every payload of the library.
    virtual bool convertible() const noexcept = 0;
    /// The type of the value held.
    virtual std::type_info const& type() const noexcept = 0;
    /// A new payload with a copy of the value: count 0, marked as heap-allocated, for the caller to hand
    /// to a pointer.
    virtual variant_type* clone() = 0;
    /// Writes the value and returns the stream.
    virtual std::ostream& ostream(std::ostream& stream) const = 0;

    /// The value as that type, by the rules at the top.
    virtual int as_int() const = 0;
    virtual short as_short() const = 0;
    virtual long as_long() const = 0;
    virtual signed char as_int8() const = 0;
    virtual short as_int16() const = 0;
    virtual int as_int32() const = 0;
    virtual long long as_int64() const = 0;
    virtual unsigned char as_uint8() const = 0;
    virtual unsigned short as_uint16() const = 0;
    virtual unsigned int as_uint32() const = 0;
    virtual unsigned long long as_uint64() const = 0;
    virtual bool as_bool() const = 0;

    /// The value as text, by the rules at the top.
    virtual std::string as_string() const = 0;
    virtual std::wstring as_wstring() const = 0;
    virtual strings::ustring8 as_ustring() const = 0;
    virtual strings::ustring8 as_utf8() const = 0;
    virtual strings::ustring16 as_utf16() const = 0;
    virtual strings::ustring32 as_utf32() const = 0;

    /// The value as that type, by the rules at the top.
    virtual float as_float() const = 0;
    virtual double as_double() const = 0;
    virtual long double as_long_double() const = 0;
};

/// The payload that holds a T by value. It exists for the twenty types listed below the class.
template <typename T>
class ZOLT_API variant_value_t final : public variant_type {
public:
    /// Holds the value.
    explicit variant_value_t(T value) : m_value(std::move(value)) {}
    ~variant_value_t() override;

    bool convertible() const noexcept override;
    std::type_info const& type() const noexcept override;
    variant_type* clone() override;
    std::ostream& ostream(std::ostream& stream) const override;

    int as_int() const override;
    short as_short() const override;
    long as_long() const override;
    signed char as_int8() const override;
    short as_int16() const override;
    int as_int32() const override;
    long long as_int64() const override;
    unsigned char as_uint8() const override;
    unsigned short as_uint16() const override;
    unsigned int as_uint32() const override;
    unsigned long long as_uint64() const override;
    bool as_bool() const override;

    std::string as_string() const override;
    std::wstring as_wstring() const override;
    strings::ustring8 as_ustring() const override;
    strings::ustring8 as_utf8() const override;
    strings::ustring16 as_utf16() const override;
    strings::ustring32 as_utf32() const override;

    float as_float() const override;
    double as_double() const override;
    long double as_long_double() const override;

private:
    friend struct _private::text_access;

    T m_value;
};

extern template class ZOLT_API variant_value_t<nil_t>;
extern template class ZOLT_API variant_value_t<bool>;
extern template class ZOLT_API variant_value_t<signed char>;
extern template class ZOLT_API variant_value_t<unsigned char>;
extern template class ZOLT_API variant_value_t<short>;
extern template class ZOLT_API variant_value_t<unsigned short>;
extern template class ZOLT_API variant_value_t<int>;
extern template class ZOLT_API variant_value_t<unsigned int>;
extern template class ZOLT_API variant_value_t<long>;
extern template class ZOLT_API variant_value_t<unsigned long>;
extern template class ZOLT_API variant_value_t<long long>;
extern template class ZOLT_API variant_value_t<unsigned long long>;
extern template class ZOLT_API variant_value_t<float>;
extern template class ZOLT_API variant_value_t<double>;
extern template class ZOLT_API variant_value_t<long double>;
extern template class ZOLT_API variant_value_t<std::string>;
extern template class ZOLT_API variant_value_t<std::wstring>;
extern template class ZOLT_API variant_value_t<strings::ustring8>;
extern template class ZOLT_API variant_value_t<strings::ustring16>;
extern template class ZOLT_API variant_value_t<strings::ustring32>;

namespace _private {

/// True for the pointers that are no text and would turn into a bool on their way into a variant.
template <typename T, typename Target = std::remove_const_t<std::remove_pointer_t<T>>>
inline constexpr bool is_foreign_pointer_v = std::is_member_pointer_v<T> || std::is_same_v<T, std::nullptr_t> ||
                                             (std::is_pointer_v<T> && !std::is_same_v<Target, char> &&
                                              !std::is_same_v<Target, unsigned short> &&
                                              !std::is_same_v<Target, wchar_t>);

} // namespace _private

class ZOLT_API variant {
public:
    /// Holds nil.
    variant();
    variant(nil_t const&);

    /// Holds the number. A plain char is promoted by the language and held as an int, so variant('a')
    /// reads as 97; so are the other types that promote, unscoped enumerations among them.
    variant(int value);
    variant(unsigned int value);
    variant(bool value);
    variant(signed char const& value);
    variant(unsigned char const& value);
    variant(short const& value);
    variant(unsigned short const& value);
    variant(long const& value);
    variant(unsigned long const& value);
    variant(long long const& value);
    variant(unsigned long long const& value);
    variant(float const& value);
    variant(double const& value);
    variant(long double const& value);

    /// Holds the text up to its first zero unit as a ustring8, ustring16 or ustring32, never as a
    /// std::string; a null pointer reads as the empty text.
    variant(char const* text);
    variant(unsigned short const* text);
    variant(wchar_t const* text);
    /// Any other pointer would silently become a bool.
    template <typename Pointer, typename = std::enable_if_t<_private::is_foreign_pointer_v<std::decay_t<Pointer>>>>
    variant(Pointer&&) = delete;

    /// Holds the text under its own type, embedded zero units included.
    variant(std::string const& text);
    variant(std::wstring const& text);
    variant(strings::ustring8 const& text);
    variant(strings::ustring16 const& text);
    variant(strings::ustring32 const& text);
    variant(std::string&& text);
    variant(std::wstring&& text);
    variant(strings::ustring8&& text);
    variant(strings::ustring16&& text);
    variant(strings::ustring32&& text);

    /// Shares the payload. Moving does the same, so a moved-from variant is unchanged.
    variant(variant const& other) noexcept = default;
    ~variant() = default;

    variant& operator=(variant const& other) noexcept { return assign(other); }
    variant& operator=(nil_t const& tag) { return assign(tag); }
    /// Shares the other payload and releases the own one.
    variant& assign(variant const& other) noexcept;
    /// Holds nil from now on.
    variant& assign(nil_t const&);

    /// The type of the value held, one of the twenty.
    std::type_info const& type() const noexcept;
    /// True when nil is held. Two variants cannot be compared with each other.
    bool equal(nil_t const&) const noexcept;
    bool operator==(nil_t const& tag) const noexcept { return equal(tag); }
    bool operator!=(nil_t const& tag) const noexcept { return !equal(tag); }

    /// The value as that type, by the rules at the top; docs/variant_conversions.md shows what that gives.
    int as_int() const;
    short as_short() const;
    long as_long() const;
    signed char as_int8() const;
    short as_int16() const;
    int as_int32() const;
    long long as_int64() const;
    unsigned char as_uint8() const;
    unsigned short as_uint16() const;
    unsigned int as_uint32() const;
    unsigned long long as_uint64() const;
    bool as_bool() const;
    float as_float() const;
    double as_double() const;
    long double as_long_double() const;

    /// The value as text.
    std::string as_string() const;
    std::wstring as_wstring() const;
    /// The same as as_utf8().
    strings::ustring8 as_ustring() const;
    strings::ustring8 as_utf8() const;
    strings::ustring16 as_utf16() const;
    strings::ustring32 as_utf32() const;

    /// Kept: these five go through the signed conversion of their width, not the unsigned one, so the
    /// text "3000000000" gives 2147483647 as as_uint() and the text "-1" gives 4294967295.
    int as_signed() const;            ///< as_int()
    unsigned int as_unsigned() const; ///< as_int()
    unsigned int as_uint() const;     ///< as_int()
    unsigned long as_ulong() const;   ///< as_long()
    unsigned short as_ushort() const; ///< as_short()

private:
    friend ZOLT_API std::ostream& operator<<(std::ostream& stream, variant const& value);
    friend struct _private::text_access;

    memory::pointers::rc_pointer<variant_type> m_payload;
};

/// Inserts the value as the stream inserts its type, so signed and unsigned char are characters; wide
/// Unicode text is inserted as UTF-8.
/// Kept: nil is the digit 0, a std::wstring is not its text but "< ", the type's name, " instance at ",
/// the address of the value and " >".
ZOLT_API std::ostream& operator<<(std::ostream& stream, variant const& value);

} // namespace ZOLT_2_18::types
