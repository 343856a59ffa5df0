// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What programs that were compiled before rely on: sizes, base classes, the order of fields, and the places of
// virtual functions in their tables. Compiled without access control, since most fields are private.
#include <zolt/i18n/_private/xmc_file_loader.hpp>
#include <zolt/zolt.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace {

using namespace ZOLT_2_18;
using generic::abilities::clone_ability;
using generic::abilities::create_ability;
using memory::pointers::rc_pointer;
using strings::ustring8;

constexpr std::size_t word = sizeof(void*);

/// On the 32-bit and on the 64-bit build.
template <typename T, std::size_t Narrow, std::size_t Wide>
constexpr bool has_size = sizeof(T) == (word == 4 ? Narrow : Wide);

template <typename Derived, typename... Bases>
constexpr bool derives = (std::is_base_of_v<Bases, Derived> && ...);

template <typename... Offsets>
constexpr bool in_order(Offsets... offsets) {
    std::size_t const all[] = {offsets...};
    for (std::size_t i = 1; i < sizeof...(offsets); ++i) {
        if (all[i - 1] >= all[i]) return false;
    }
    return true;
}

// ---- foundation

using exceptions::exception;
static_assert(sizeof(exception::state) == 516 && offsetof(exception::state, file) == 4 &&
              offsetof(exception::state, function) == 260);
static_assert(offsetof(exception, where) == word && has_size<exception, 520, 528>);
static_assert(has_size<exceptions::full_error, 544, 560>);
static_assert(derives<exceptions::logic_error, exception> && derives<exceptions::runtime_error, exception>);
static_assert(derives<exceptions::out_of_range, exceptions::logic_error> &&
              derives<exceptions::length_error, exceptions::logic_error> &&
              derives<exceptions::invalid_argument_value, exceptions::logic_error>);
static_assert(derives<exceptions::overflow_error, exceptions::runtime_error> &&
              derives<exceptions::underflow_error, exceptions::runtime_error> &&
              derives<exceptions::empty_error, exceptions::runtime_error> &&
              derives<exceptions::full_error, exceptions::runtime_error>);

using counted = generic::abilities::reference_count_pointer_ability_b;
static_assert(offsetof(counted, heap_allocated) == word && offsetof(counted, reference_count) == word + 4);
static_assert(has_size<counted, 12, 16> && derives<counted, generic::abilities::alloc_detection_ability>);
static_assert(sizeof(clone_ability) == word && sizeof(create_ability) == word);
static_assert(derives<generic::clone_interface, clone_ability>);
using memory::pointers::shared_count;
static_assert(offsetof(shared_count, heap_allocated) == 0 && offsetof(shared_count, reference_count) == 4);
static_assert(sizeof(rc_pointer<config::config_tree>) == word);
static_assert(sizeof(memory::pointers::shared_pointer<i18n::catalog_t>) == word);

using signature = void(ustring8 const&);
using callable = functor::function_type_interface<signature>;
using bound_member = functor::member_function_t<parser::xml_token_stream, signature>;
static_assert(sizeof(functor::delegate_t<signature>) == word && sizeof(callable) == word);
static_assert(derives<callable, traits::function_traits<signature>, clone_ability>);
static_assert(derives<bound_member, callable> && sizeof(bound_member) == 4 * word);
static_assert(offsetof(bound_member, m_member) == word && offsetof(bound_member, m_object) == 3 * word);

// ---- text and values

static_assert(sizeof(ustring8) == sizeof(std::string) && derives<ustring8, std::string>);
static_assert(derives<strings::ustring16, std::basic_string<unsigned short>> &&
              sizeof(strings::ustring16) == sizeof(ustring8));
static_assert(derives<strings::ustring32, std::wstring> && sizeof(strings::ustring32) == sizeof(ustring8));
static_assert(!std::is_polymorphic_v<ustring8> && !std::is_polymorphic_v<strings::code_page>);
static_assert(sizeof(strings::code_page) == 4);

using types::color_t;
static_assert(sizeof(color_t) == 4 && offsetof(color_t, m_red) == 0 && offsetof(color_t, m_green) == 1 &&
              offsetof(color_t, m_blue) == 2 && offsetof(color_t, m_alpha) == 3);
static_assert(has_size<types::device_unit, 8, 16> && offsetof(types::device_unit, m_count) == word);
static_assert(has_size<types::absolute_unit, 12, 16> && offsetof(types::absolute_unit, m_internal) == word);
static_assert(derives<types::basic_absolute_impl<8>, types::absolute_unit> &&
              sizeof(types::basic_absolute_impl<8>) == sizeof(types::absolute_unit));

using types::variant_type;
static_assert(sizeof(types::variant) == word && has_size<variant_type, 16, 24>);
static_assert(
    derives<variant_type, clone_ability, generic::abilities::reference_count_pointer_ability<variant_type>>);
static_assert(offsetof(types::variant_value_t<int>, m_value) == sizeof(variant_type));
static_assert(in_order(offsetof(generic::argument, m_name), offsetof(generic::argument, m_value)));
static_assert(sizeof(generic::varg_list) == 3 * word);

// ---- services

using parser::xml_parser;
using parser::xml_token_stream;
static_assert(offsetof(xml_parser, on_element_start) == 0 && offsetof(xml_parser, on_element_end) == word &&
              offsetof(xml_parser, on_attribute) == 2 * word && offsetof(xml_parser, on_space) == 3 * word &&
              offsetof(xml_parser, on_character) == 4 * word && offsetof(xml_parser, on_comment) == 5 * word);
static_assert(offsetof(xml_parser::parse_error, kind) == 0 && offsetof(xml_parser::parse_error, line) == word &&
              offsetof(xml_parser::parse_error, text) == 2 * word);
static_assert(offsetof(xml_token_stream::token, m_type) == 0 && offsetof(xml_token_stream::token, m_value) == word);
static_assert(in_order(offsetof(xml_token_stream, m_start_tag_closed), offsetof(xml_token_stream, m_tokens),
                       offsetof(xml_token_stream, m_parser)));

using namespace system::date_time;
static_assert(sizeof(date) == 12 && offsetof(date, m_year) == 0 && offsetof(date, m_month) == 4 &&
              offsetof(date, m_day) == 8);
static_assert(sizeof(system::date_time::time) == 16 && offsetof(system::date_time::time, m_hour) == 0 &&
              offsetof(system::date_time::time, m_minute) == 4 &&
              offsetof(system::date_time::time, m_second) == 8 &&
              offsetof(system::date_time::time, m_millisecond) == 12);
static_assert(sizeof(date_time_t) == 28 && offsetof(date_time_t, m_time) == 0 &&
              offsetof(date_time_t, m_date) == 16);
static_assert(sizeof(date_duration) == 4 && sizeof(time_duration) == 8);

// ---- applications' face

using i18n::catalog_t;
using i18n::message_t;
using load_error = i18n::_private::xmc_file_loader::load_error;
using load_result = i18n::message_catalogs::result_type;
static_assert(in_order(offsetof(i18n::message_item, m_data), offsetof(i18n::message_item, m_type)));
static_assert(in_order(offsetof(message_t, m_items), offsetof(message_t, m_orginal_locale),
                       offsetof(message_t, m_name), offsetof(message_t, m_meta)));
static_assert(derives<catalog_t, shared_count> && offsetof(catalog_t, heap_allocated) == 0);
static_assert(in_order(offsetof(catalog_t, m_name), offsetof(catalog_t, m_messages),
                       offsetof(catalog_t, m_languages)));
static_assert(sizeof(i18n::message_catalogs) == 6 * word);
static_assert(in_order(offsetof(load_error, m_message), offsetof(load_error, m_code)));
static_assert(in_order(offsetof(load_result, m_code), offsetof(load_result, m_message)));

using config::base_config_item;
using config::config_token;
using config::module_config_dispatch;
using config::std_config_dispatch;
static_assert(offsetof(config_token, text) == 0 && offsetof(config_token, end) == sizeof(ustring8) &&
              offsetof(config_token, start) == sizeof(ustring8) + 4 &&
              offsetof(config_token, kind) == sizeof(ustring8) + 8);
static_assert(in_order(offsetof(config::config_tree::entry_type, first),
                       offsetof(config::config_tree::entry_type, second)));
static_assert(
    derives<config::config_tree, generic::abilities::reference_count_pointer_ability<config::config_tree>>);
static_assert(derives<base_config_item, clone_ability,
                      generic::abilities::reference_count_pointer_ability<base_config_item>>);
static_assert(in_order(offsetof(base_config_item, m_id), offsetof(base_config_item, m_tree)));
static_assert(derives<config::commandline_item, base_config_item> &&
              derives<config::enviroment_item, base_config_item> && derives<config::file_item, base_config_item> &&
              derives<config::user_item, base_config_item>);
static_assert(derives<config::config_dispatch, clone_ability> && sizeof(config::config_dispatch) == word);
static_assert(in_order(offsetof(std_config_dispatch, m_argc), offsetof(std_config_dispatch, m_argv),
                       offsetof(std_config_dispatch, m_envp), offsetof(std_config_dispatch, m_file_name),
                       offsetof(std_config_dispatch, m_second_name)));
static_assert(in_order(offsetof(module_config_dispatch, m_file_names), offsetof(module_config_dispatch, m_envp)));
static_assert(in_order(offsetof(config::config_manager, m_items), offsetof(config::config_manager, m_dispatch)));

using serialization::labeled_serialize_buffer;
using serialization::serialize_binary_buf;
using serialization::serialize_buffer;
using serialization::serialize_text_buf;
static_assert(derives<serialize_buffer, create_ability, clone_ability,
                      generic::abilities::reference_count_pointer_ability<serialize_buffer>>);
static_assert(derives<labeled_serialize_buffer, create_ability, clone_ability,
                      generic::abilities::reference_count_pointer_ability<labeled_serialize_buffer>>);
static_assert(in_order(offsetof(serialize_text_buf, m_content), offsetof(serialize_text_buf, m_position)));
static_assert(in_order(offsetof(serialize_binary_buf, m_content), offsetof(serialize_binary_buf, m_position)));

// ---- virtual functions

/// The operation's place in the table of virtual functions, as its pointer holds it with 1 added.
template <typename Operation>
std::size_t slot(Operation operation) {
    std::uintptr_t offset;
    std::memcpy(&offset, &operation, sizeof offset);
    return (offset - 1) / sizeof(void*);
}

/// The operations take the places from the given one on; a destructor that is declared first takes 0 and 1.
template <typename... Operations>
void expect_slots(char const* name, std::size_t first, Operations... operations) {
    std::size_t expected = first;
    for (std::size_t const found : {slot(operations)...}) EXPECT_EQ(found, expected++) << name;
}

TEST(Layout, VirtualFunctionsStandInTheirPublishedSlots) {
    expect_slots("exception", 2, &exception::get_message);
    expect_slots("clone_interface", 2, &generic::clone_interface::clone);
    expect_slots("function_type_interface", 2, &callable::invoke, &callable::do_equal, &callable::do_clone);

    using device = types::device_unit;
    expect_slots("device_unit", 0, &device::do_type, &device::do_as_int32, &device::do_as_float,
                 &device::do_as_double);
    using absolute = types::absolute_unit;
    expect_slots("absolute_unit", 0, &absolute::do_type, &absolute::do_as_int32, &absolute::do_as_double);

    using v = variant_type;
    expect_slots("variant_type", 2, &v::convertible, &v::type, &v::clone, &v::ostream, &v::as_int, &v::as_short,
                 &v::as_long, &v::as_int8, &v::as_int16, &v::as_int32, &v::as_int64, &v::as_uint8, &v::as_uint16,
                 &v::as_uint32, &v::as_uint64, &v::as_bool, &v::as_string, &v::as_wstring, &v::as_ustring,
                 &v::as_utf8, &v::as_utf16, &v::as_utf32, &v::as_float, &v::as_double, &v::as_long_double);

    using item = base_config_item;
    using items = item::item_list const&;
    expect_slots("base_config_item", 2, static_cast<bool (item::*)(items)>(&item::load),
                 static_cast<bool (item::*)()>(&item::load), static_cast<void (item::*)(items)>(&item::save),
                 static_cast<void (item::*)()>(&item::save), &item::unload, &item::clone);
    using dispatch = config::config_dispatch;
    expect_slots("config_dispatch", 2, &dispatch::setup, &dispatch::load, &dispatch::unload, &dispatch::save,
                 &dispatch::clone);

    using b = serialize_buffer;
    expect_slots("serialize_buffer", 2, static_cast<b& (b::*)(b const&)>(&b::assign),
                 static_cast<b& (b::*)(std::string const&)>(&b::assign),
                 static_cast<b& (b::*)(char const*, int)>(&b::assign), &b::as_str, &b::append_int8,
                 &b::append_int16, &b::append_int32, &b::append_int64, &b::append_uint8, &b::append_uint16,
                 &b::append_uint32, &b::append_uint64, &b::append_float, &b::append_double, &b::append_string,
                 &b::append_buffer, &b::read_int8, &b::read_int16, &b::read_int32, &b::read_int64, &b::read_uint8,
                 &b::read_uint16, &b::read_uint32, &b::read_uint64, &b::read_float, &b::read_double,
                 &b::read_string, &b::read_buffer, &b::at_end, &b::reset_read, &b::create, &b::clone);
}

} // namespace
