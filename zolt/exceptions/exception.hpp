// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The closed family of exceptions that the library throws.
//
// Each carries a text and the place where it was raised: line, source file (a path below the source
// root without extension, such as "strings/code_page") and a short label of the operation. The three
// are published constants of each raise site, so that a log line can be matched with the source of
// the release that wrote it.
//
//     try {
//         generic::convert::str_to_int32("2147483648", 0, types::radix_t::decimal, true);
//     } catch (exceptions::exception const& e) {
//         e.get_message();   // "Number value is to large"
//         e.where.function;  // "strtointx"
//     }
//
// None of these classes derives from std::exception: catch exceptions::exception for everything that
// the library raises itself. The C++ library's own failures (std::bad_alloc and, where an interface
// says so, std::out_of_range) pass through unchanged.
//
//     exception
//     ├── logic_error            the caller's mistake
//     │   ├── out_of_range           an index or key outside a container
//     │   ├── length_error           a size that cannot be
//     │   └── invalid_argument_value a bad argument or a text that cannot be read
//     └── runtime_error          a failure of the platform: files, converters
//         ├── overflow_error         a number too large for its type
//         ├── underflow_error        a number too small for its type
//         ├── empty_error            something taken from an empty container
//         └── full_error             something put into a full container
#pragma once

#include <zolt/export.hpp>

#include <string>

namespace ZOLT_2_18::exceptions {

/// Root of the family; abstract.
class ZOLT_API exception {
public:
    /// Where an exception was raised. The texts are held by value, so they outlive the strings that
    /// they were made from.
    struct ZOLT_API state {
        unsigned int line;  ///< in the release that raised it
        char file[256];     ///< NUL-terminated
        char function[256]; ///< NUL-terminated

        /// Texts longer than 255 characters are cut to 255; a null pointer reads as empty.
        state(unsigned int line, char const* file, char const* function) noexcept;
        state(state const&) noexcept = default;
        state& operator=(state const&) noexcept = default;
    };

    /// For the constructors of the subclasses.
    exception(unsigned int line, char const* file, char const* function) noexcept;
    exception(state const& where) noexcept;
    exception(exception const&) noexcept = default;
    exception& operator=(exception const&) noexcept = default;
    virtual ~exception();

    /// The message exactly as it was given; valid as long as the exception lives.
    virtual char const* get_message() const = 0;

    /// Where it was raised.
    state where;
};

/// The caller's mistake.
class ZOLT_API logic_error : public exception {
public:
    /// With the message and the place where it is raised.
    logic_error(std::string const& message, unsigned int line, char const* file, char const* function);
    logic_error(std::string const& message, state const& where);
    logic_error(logic_error const&) = default;
    logic_error& operator=(logic_error const&) = default;
    ~logic_error() override;

    char const* get_message() const override;

private:
    std::string m_message;
};

/// An index or key outside a container.
class ZOLT_API out_of_range : public logic_error {
public:
    using logic_error::logic_error;
    out_of_range(out_of_range const&) = default;
    out_of_range& operator=(out_of_range const&) = default;
    ~out_of_range() override;
};

/// A size that cannot be.
class ZOLT_API length_error : public logic_error {
public:
    using logic_error::logic_error;
    length_error(length_error const&) = default;
    length_error& operator=(length_error const&) = default;
    ~length_error() override;
};

/// A bad argument or a text that cannot be read.
class ZOLT_API invalid_argument_value : public logic_error {
public:
    using logic_error::logic_error;
    invalid_argument_value(invalid_argument_value const&) = default;
    invalid_argument_value& operator=(invalid_argument_value const&) = default;
    ~invalid_argument_value() override;
};

/// A failure of the platform: files, converters, empty pointers.
class ZOLT_API runtime_error : public exception {
public:
    /// With the message and the place where it is raised.
    runtime_error(std::string const& message, unsigned int line, char const* file, char const* function);
    runtime_error(std::string const& message, state const& where);
    runtime_error(runtime_error const&) = default;
    runtime_error& operator=(runtime_error const&) = default;
    ~runtime_error() override;

    char const* get_message() const override;

private:
    std::string m_message;
};

/// A number too large for its type.
class ZOLT_API overflow_error : public runtime_error {
public:
    using runtime_error::runtime_error;
    overflow_error(overflow_error const&) = default;
    overflow_error& operator=(overflow_error const&) = default;
    ~overflow_error() override;
};

/// A number too small for its type.
class ZOLT_API underflow_error : public runtime_error {
public:
    using runtime_error::runtime_error;
    underflow_error(underflow_error const&) = default;
    underflow_error& operator=(underflow_error const&) = default;
    ~underflow_error() override;
};

/// Something taken from an empty container.
class ZOLT_API empty_error : public runtime_error {
public:
    using runtime_error::runtime_error;
    empty_error(empty_error const&) = default;
    empty_error& operator=(empty_error const&) = default;
    ~empty_error() override;
};

/// Something put into a full container.
class ZOLT_API full_error : public runtime_error {
public:
    using runtime_error::runtime_error;
    full_error(full_error const&) = default;
    full_error& operator=(full_error const&) = default;
    ~full_error() override;
};

} // namespace ZOLT_2_18::exceptions
