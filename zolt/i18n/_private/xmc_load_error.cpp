// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The texts of load errors: tables of what stands before and after the value that a fault carries.
#include <zolt/i18n/_private/xmc_file_loader.hpp>

#include <zolt/i18n/framed_text_private.hpp>

#include <string>

namespace ZOLT_2_18::i18n::_private {
namespace {

using strings::ustring8;
using parse_error = parser::xml_parser::parse_error;

constexpr char error_prefix[] = "xmc_file_loader::load_error - ";

// Indexed by error_type. Code 4 has texts of its own and no frame.
constexpr text_frame error_frames[] = {
    {"No Error"},
    {"No catalog was loaded in file: \"", "\""},
    {"Default locale lookup not supported yet"},
    {"File \"", "\" was not found on disk"},
    {},
    {"Invalid attibute \"", "\""},
    {"Invalid element \"", "\""},
    {"Not XMC file, root element is not XMC but \"", "\""},
    {"XMC version \"", "\" is not supported"},
    {"Expected BR end tag not found"},
    {"Expected msg (message) end tag not found for message \"", "\""},
    {"Expected arg (argument) end tag not found for argument \"", "\""},
    {"Expected \"include\" end tag not found"},
    {"Expected catalog end tag not found for catalog \"", "\""},
    {"Unexpected parse error happen!"},
};

// Indexed by the kind of an XML parse error.
constexpr text_frame parse_error_frames[] = {
    {},
    {"Unexpected end of file during XML parsing"},
    {"Mismatched end element \"", "\" was found"},
    {"No root element was found"},
    {"Valid XML header not found"},
    {"Unexpected character \"", "\" found while parsing"},
    {"Missing \" while parsing attribute \"", "\""},
    {"Unknown enity being parsed"},
    {"Missing = sign for attribute \"", "\""},
    {"attribute \"", "\" is being redefined"},
    {"Data found after root element"},
};

// Indexed by append_type.
constexpr text_frame context_frames[] = {
    {},
    {"\n in message element: \"", "\""},
    {"\n in catalog element: \"", "\""},
    {"\n in file: \"", "\""},
    {"\n at line: \"", "\""},
};

} // namespace

using load_error = xmc_file_loader::load_error;

load_error::load_error(error_type code, ustring8 const& value) : m_message(format_msg(code, value)), m_code(code) {}

load_error::load_error(error_type code, parse_error const& fault) : m_message(format_msg(fault)), m_code(code) {}

void load_error::append_error_stack(append_type type, ustring8 const& value) {
    m_message.append(format_msg(type, value));
}

ustring8 load_error::format_msg(error_type code, ustring8 const& value) {
    ustring8 text;
    if (text_frame const* const frame = find_frame(error_frames, code)) {
        append_framed(text.append(error_prefix), *frame, value);
    } else {
        append_unknown(text, code, value);
    }
    return text;
}

ustring8 load_error::format_msg(parse_error const& fault) {
    ustring8 text(error_prefix);
    if (text_frame const* const frame = find_frame(parse_error_frames, fault.kind)) {
        append_framed(text, *frame, fault.text);
        append_framed(text, context_frames[at_line], ustring8(std::to_string(fault.line)));
    } else {
        text.append("Unknown Parse error");
    }
    return text;
}

ustring8 load_error::format_msg(append_type type, ustring8 const& value) {
    ustring8 text;
    if (text_frame const* const frame = find_frame(context_frames, type)) {
        append_framed(text, *frame, value);
    } else {
        append_unknown(text.append("\n "), type, value);
    }
    return text;
}

} // namespace ZOLT_2_18::i18n::_private
