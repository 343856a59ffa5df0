// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The words that configuration text is made of: config_token, the character classes, and quoting.
//
// Every configuration source cuts its text into tokens with base_config_item::get_token, whatever the text
// is: a file, a command-line argument or an environment entry. One token object is used over and over; its
// text is what the source puts together to keys and values:
//
//     strings::ustring8 const text("port = 80");
//     unsigned int position = 0;
//     config::config_token token;
//     while (config::base_config_item::get_token(text, position, token) != config::config_token::T_END) {
//         std::cout << token.CvtTokStr() << '\n';   // T_VAR :[port]  T_SPACE  T_EQ  T_SPACE  T_NUM
//     }
//
// Text is UTF-8 and read byte by byte; positions are byte indices of 32 bits.
#pragma once

#include <zolt/export.hpp>
#include <zolt/strings/ustring.hpp>

namespace ZOLT_2_18::config {

/// One word of configuration text.
class ZOLT_API config_token {
public:
    /// The kinds of tokens.
    enum tok_types : unsigned int {
        T_VAR = 0,           ///< a run of letters
        T_NUM = 1,           ///< a run of decimal digits
        T_NEWLINE = 2,       ///< LF, or CR LF
        T_TABCHAR = 3,       ///< TAB
        T_UNKNOWN = 4,       ///< a CR without LF
        T_END = 5,           ///< end of the text
        T_SPACE = 6,         ///< a run of blanks; keeps the text of the token before it
        T_EQ = 7,            ///< =
        T_EQEQ = 8,          ///< ==
        T_GT = 9,            ///< >
        T_GTEQ = 10,         ///< >=
        T_LT = 11,           ///< <
        T_LTEQ = 12,         ///< <=
        T_COLON = 13,        ///< :
        T_COLONEQ = 14,      ///< :=
        T_POUND = 15,        ///< #
        T_FSFS = 16,         ///< two slashes
        T_DOT = 17,          ///< .
        T_SBRACKET = 18,     ///< [
        T_EBRACKET = 19,     ///< ]
        T_PLUS = 20,         ///< +
        T_MINUS = 21,        ///< -
        T_PLUSEQ = 22,       ///< +=
        T_MINUSEQ = 23,      ///< -=
        T_STARSLASH = 24,    ///< a star and a slash; kept: get_token returns T_FSFS for it
        T_RESERVED25 = 25,   ///< never made
        T_TIMES = 26,        ///< *
        T_DIV = 27,          ///< a slash
        T_TIMESEQ = 28,      ///< *=
        T_DIVEQ = 29,        ///< /=
        T_STRING = 30,       ///< a double-quoted string, its text without the quotes
        T_NON_ALPHA_NUM = 31 ///< any other single byte, those from 0x80 on included
    };

    /// The kind's name for diagnostics, such as "T_EQ"; with the token's text for strings, single bytes
    /// and T_UNKNOWN ("T_STRING:[a b]") and for letters ("T_VAR :[a]"). The kinds 24, 25 and all above 31
    /// give "unknown type".
    strings::ustring8 CvtTokStr() const;

    /// The bytes of the token, those of a string without its quotes.
    strings::ustring8 text;
    unsigned int end = 0;   ///< position just after the token, one past the text's end for an open string
    unsigned int start = 0; ///< position of the token's first byte, a string's opening quote included
    tok_types kind = T_END; ///< as get_token tells it, but for "*/"
};

/// True for TAB, LF, CR and blank.
ZOLT_API bool isConfigWhite(char c);
/// True for the blank only.
ZOLT_API bool isConfigSpace(char c);
/// What the C library's isalpha says of the byte, under the locale in force.
ZOLT_API bool isConfigAlpha(char c);
/// What the C library's isdigit says of the byte.
ZOLT_API bool isConfigDigit(char c);
/// True for " +-*^/%=;(),<>~&|{}", LF, TAB, "[", "]", "?", "$" and CR. Kept: also for the zero byte.
ZOLT_API bool isConfigDelim(char c);
/// True for the separators of a key's components: ".", "/" and the backslash.
ZOLT_API bool isConfigDotSlash(char c);

/// The value between double quotes when it holds a blank, CR, TAB or LF, else the value itself. Quotes and
/// backslashes inside stay as they are, so a value that holds quotes does not always read back.
ZOLT_API strings::ustring8 quote_value(strings::ustring8 const& value);

} // namespace ZOLT_2_18::config
