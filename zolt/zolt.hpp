// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The umbrella: every public header, and the short name `zolt` for the versioned namespace.
#pragma once

#include <zolt/config/base_config_item.hpp>
#include <zolt/config/commandline_item.hpp>
#include <zolt/config/config_dispatch.hpp>
#include <zolt/config/config_manager.hpp>
#include <zolt/config/config_token.hpp>
#include <zolt/config/config_tree.hpp>
#include <zolt/config/enviroment_item.hpp>
#include <zolt/config/file_item.hpp>
#include <zolt/config/user_item.hpp>
#include <zolt/debug/assert.hpp>
#include <zolt/exceptions/exception.hpp>
#include <zolt/functor/delegate.hpp>
#include <zolt/functor/function_type_interface.hpp>
#include <zolt/functor/member_function.hpp>
#include <zolt/fwd.hpp>
#include <zolt/generic/abilities.hpp>
#include <zolt/generic/clone_interface.hpp>
#include <zolt/generic/convert/bin_str.hpp>
#include <zolt/generic/convert/str_to_x.hpp>
#include <zolt/generic/convert/x_to_str.hpp>
#include <zolt/generic/varg_list.hpp>
#include <zolt/i18n/catalog.hpp>
#include <zolt/i18n/format_value.hpp>
#include <zolt/i18n/message.hpp>
#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/i18n/message_item.hpp>
#include <zolt/memory/rc_pointer.hpp>
#include <zolt/memory/shared_pointer.hpp>
#include <zolt/parser/xml_parser.hpp>
#include <zolt/parser/xml_token_stream.hpp>
#include <zolt/serialization/labeled_serialize_buffer.hpp>
#include <zolt/serialization/labeled_text_buffer.hpp>
#include <zolt/serialization/serialize_binary_buf.hpp>
#include <zolt/serialization/serialize_buffer.hpp>
#include <zolt/serialization/serialize_text_buf.hpp>
#include <zolt/strings/code_page.hpp>
#include <zolt/strings/string_utility.hpp>
#include <zolt/strings/unicode.hpp>
#include <zolt/strings/ustring.hpp>
#include <zolt/system/date_time/date.hpp>
#include <zolt/system/date_time/date_time.hpp>
#include <zolt/system/date_time/duration.hpp>
#include <zolt/system/date_time/time.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/system/io.hpp>
#include <zolt/traits/function_traits.hpp>
#include <zolt/types/color.hpp>
#include <zolt/types/nil.hpp>
#include <zolt/types/radix.hpp>
#include <zolt/types/unit.hpp>
#include <zolt/types/variant.hpp>
#include <zolt/version.hpp>

namespace zolt = ZOLT_2_18;
