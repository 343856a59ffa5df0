// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// xml_parser: an event parser for the XML subset of the library's own files.
//
// It walks a UTF-8 text once and reports what it meets through six callbacks, in document order; it
// builds no tree. A fault ends the parse with a parse_error value, everything before it has been
// reported by then. xml_token_stream stores the same events in a list.
//
//     parser::xml_parser parser;
//     parser.on_element_start = [](strings::ustring8 const& name) { std::puts(name.c_str()); };
//     auto const result = parser.parse("<?xml version='1.0'?><a><b/></a>");   // prints a, b
//     if (result.kind != parser::xml_parser::parse_error::no_error) return result.line;
//
// The subset: a header "<?xml ... ?>", then elements, attributes, comments and text. A name is a
// letter followed by letters, digits and "_" (the C library's classes in the locale in force). Blank,
// tab, carriage return and line feed are whitespace. References stand for one byte each: &amp; &apos;
// &gt; &lt; &quot; &nbsp; &#decimal; &#xhex;. There are no document types, processing instructions or
// CDATA sections. Bytes are not checked for valid UTF-8, and a NUL is text like any other.
#pragma once

#include <zolt/export.hpp>
#include <zolt/functor/delegate.hpp>
#include <zolt/strings/ustring.hpp>

namespace ZOLT_2_18::parser {

class ZOLT_API xml_parser {
public:
    /// Over the bytes of a text.
    using const_iterator = strings::ustring8::const_iterator;

    /// How a parse ended.
    struct ZOLT_API parse_error {
        /// The kinds of faults.
        enum error_type : unsigned int {
            no_error = 0,
            unexpected_end = 1,       ///< the input ends inside a construct or with elements open
            mismatched_end = 2,       ///< an end tag that closes nothing; text: its name
            no_root_element = 3,      ///< the input ends inside the header
            header_missing = 4,       ///< the input does not begin with a header
            unexpected_character = 5, ///< text: the character
            missing_quote = 6,        ///< an attribute value without quotes; text: the attribute's name
            unknown_entity = 7,       ///< a reference that begins like none of the known ones
            missing_equal_sign = 8,   ///< an attribute without "="; text: the attribute's name
            attribute_redefined = 9,  ///< an attribute given twice; text: its name
            data_after_root = 10      ///< an element after the root element
        };

        /// Of the three fields.
        parse_error(error_type error_kind, unsigned long error_line, strings::ustring8 const& error_text)
            : kind(error_kind), line(error_line), text(error_text) {}

        /// no_error on success.
        error_type kind;
        /// The line feeds before the fault, less those inside the header, comments and attribute values:
        /// 0 in the first line. 0 on success.
        unsigned long line;
        /// The character or name at fault, else empty. A character is one byte, or all bytes of a
        /// valid UTF-8 sequence.
        strings::ustring8 text;
    };

    /// Parses a whole text, which has to stay unchanged meanwhile. A parser remembers nothing between
    /// two parses.
    ///
    /// What a callback throws leaves this function, except a parse_error, which becomes the result. A
    /// callback may call parse on the same parser, and clear or replace any slot: what is bound there
    /// hears of the next event, and a callback that has lost its own slot lives until it has returned.
    /// It must not destroy the parser.
    /// Time and memory grow with the length of the text; elements may be nested to any depth.
    ///
    /// Kept: when the fourth byte is "<", the three bytes before it are skipped unseen, a byte order
    /// mark or not.
    /// Kept: &nbsp; is a plain blank, not U+00A0.
    /// Kept: the number in a reference is read by str_to_uint8, so "&#300;" is byte 255, and "&#010;"
    /// is read as octal and gives byte 8.
    parse_error parse(strings::ustring8 const& text);

    /// Parses a part of a text.
    parse_error parse(const_iterator first, const_iterator last);

    // The callbacks, reported to in document order; an unbound one is passed over. The texts that they
    // are given live for the call only. A run of text that holds a fault is not reported.

    functor::delegate_t<void(strings::ustring8 const&)> on_element_start; ///< name
    functor::delegate_t<void(strings::ustring8 const&)> on_element_end;   ///< name; also for "<a/>"
    functor::delegate_t<void(strings::ustring8 const&, strings::ustring8 const&)> on_attribute; ///< name, value
    functor::delegate_t<void(strings::ustring8 const&)> on_space;     ///< a run of whitespace outside tags
    functor::delegate_t<void(strings::ustring8 const&)> on_character; ///< text up to whitespace or markup
    functor::delegate_t<void(strings::ustring8 const&)> on_comment;   ///< what stands between "<!--" and "-->"
};

} // namespace ZOLT_2_18::parser
