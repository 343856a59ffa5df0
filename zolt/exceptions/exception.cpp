// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The destructors stand here, out of line, so that each class's type information is emitted once, in
// the library, and a user's catch clause meets the same type.
#include <zolt/exceptions/exception.hpp>

#include <cstring>

namespace ZOLT_2_18::exceptions {
namespace {

void copy_bounded(char (&target)[256], char const* text) noexcept {
    std::size_t const length = text ? ::strnlen(text, sizeof target - 1) : 0;
    if (length) std::memcpy(target, text, length);
    std::memset(target + length, 0, sizeof target - length);
}

} // namespace

exception::state::state(unsigned int line_number, char const* file_text, char const* function_text) noexcept
    : line(line_number) {
    copy_bounded(file, file_text);
    copy_bounded(function, function_text);
}

exception::exception(unsigned int line, char const* file, char const* function) noexcept
    : where(line, file, function) {}

exception::exception(state const& place) noexcept : where(place) {}

exception::~exception() = default;

logic_error::logic_error(std::string const& message, unsigned int line, char const* file, char const* function)
    : exception(line, file, function), m_message(message) {}

logic_error::logic_error(std::string const& message, state const& place)
    : exception(place), m_message(message) {}

logic_error::~logic_error() = default;

char const* logic_error::get_message() const { return m_message.c_str(); }

runtime_error::runtime_error(std::string const& message, unsigned int line, char const* file,
                             char const* function)
    : exception(line, file, function), m_message(message) {}

runtime_error::runtime_error(std::string const& message, state const& place)
    : exception(place), m_message(message) {}

runtime_error::~runtime_error() = default;

char const* runtime_error::get_message() const { return m_message.c_str(); }

out_of_range::~out_of_range() = default;
length_error::~length_error() = default;
invalid_argument_value::~invalid_argument_value() = default;
overflow_error::~overflow_error() = default;
underflow_error::~underflow_error() = default;
empty_error::~empty_error() = default;
full_error::~full_error() = default;

} // namespace ZOLT_2_18::exceptions
