// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Forward declarations of every public class, for headers that only name them.
#pragma once

namespace ZOLT_2_18 {

namespace exceptions {
class exception;
class logic_error;
class out_of_range;
class length_error;
class invalid_argument_value;
class runtime_error;
class overflow_error;
class underflow_error;
class empty_error;
class full_error;
} // namespace exceptions

namespace memory::pointers {
template <typename T>
class rc_pointer;
template <typename T>
class shared_pointer;
} // namespace memory::pointers

namespace functor {
template <typename Sig>
class function_type_interface;
template <typename C, typename Sig>
class member_function_t;
template <typename Sig>
class delegate_t;
} // namespace functor

namespace strings {
class ustring8;
class ustring16;
class ustring32;
class code_page;
} // namespace strings

namespace types {
struct nil_t;
struct radix_t;
class color_t;
class device_unit;
class absolute_unit;
template <int N>
class basic_absolute_impl;
class variant_type;
template <typename T>
class variant_value_t;
class variant;
} // namespace types

namespace generic {
class clone_interface;
class argument;
class varg_list;
} // namespace generic

namespace parser {
class xml_parser;
class xml_token_stream;
} // namespace parser

namespace system {
class io;
namespace date_time {
class date;
class time;
class date_time_t;
class date_duration;
class time_duration;
} // namespace date_time
} // namespace system

namespace i18n {
class message_item;
class message_t;
class catalog_t;
class message_catalogs;
} // namespace i18n

namespace config {
class config_token;
class config_tree;
class base_config_item;
class commandline_item;
class enviroment_item;
class file_item;
class user_item;
class config_dispatch;
class std_config_dispatch;
class module_config_dispatch;
class config_manager;
struct config_origin;
} // namespace config

namespace serialization {
class serialize_buffer;
class serialize_text_buf;
class serialize_binary_buf;
class labeled_serialize_buffer;
class labeled_text_buffer;
} // namespace serialization

} // namespace ZOLT_2_18
