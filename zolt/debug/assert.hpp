// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Assertions and the hook that hears of them.
//
// A failed assertion never ends the process: without a hook it does nothing, with one it calls the
// hook, and in both cases execution goes on after the assertion. Assertions are active in every
// build.
//
//     debug::set_assert_hook([](char const* expression, char const* file, unsigned int& line) {
//         std::fprintf(stderr, "%s:%u: %s\n", file, line, expression);
//     });
//     ZOLT_ASSERT(count <= limit);
//     ZOLT_ASSERT_CONTEXT(count <= limit, "%d of %d", count, limit);  // "count <= limit : 7 of 5"
//     debug::set_assert_hook(types::nil);
//
// The hook is one unlocked slot for the whole process: install it before threads start.
#pragma once

#include <zolt/export.hpp>
#include <zolt/functor/delegate.hpp>
#include <zolt/types/nil.hpp>

namespace ZOLT_2_18::debug {

/// Expression text, source file, line. The line is a copy that the hook may change without effect.
using assert_hook = functor::delegate_t<void(char const*, char const*, unsigned int&)>;

/// Destroys the installed hook and stores a clone of the given one; an unbound delegate leaves no
/// hook installed. A hook that replaces or clears itself lives until its call returns. A hook that
/// asserts is not entered again, one that throws lets its exception pass to the asserting code.
ZOLT_API void set_assert_hook(functor::delegate_t<void(char const*, char const*, unsigned int&)> const& hook);

/// Destroys the installed hook, if any.
ZOLT_API void set_assert_hook(types::nil_t const&);

/// True while a hook is installed.
ZOLT_API bool is_assert_hook_set();

namespace _private {

/// Reports a failed assertion: to the hook, else to native_assert.
ZOLT_API void ____________________ASSERT____________________(char const* expression, char const* file,
                                                             unsigned int line, char const* function);

/// As above, with a printf-style context appended to the expression: "expression : context", cut to
/// 255 bytes. A null format leaves "expression : ".
ZOLT_API void _______________CONTEXT__ASSERT________________(char const* expression, char const* file,
                                                             unsigned int line, char const* function,
                                                             char const* format, ...);

/// What happens without a hook: nothing.
ZOLT_API void native_assert(char const* expression, char const* file, unsigned int& line, char const* function);

} // namespace _private
} // namespace ZOLT_2_18::debug

/// Reports the expression when it is false.
#define ZOLT_ASSERT(...)                                                                                         \
    ((__VA_ARGS__) ? static_cast<void>(0)                                                                        \
                   : ::ZOLT_2_18::debug::_private::____________________ASSERT____________________(               \
                         #__VA_ARGS__, __FILE__, __LINE__, __PRETTY_FUNCTION__))

/// Reports the expression with a printf-style text when it is false:
/// ZOLT_ASSERT_CONTEXT(expression, format, arguments...).
#define ZOLT_ASSERT_CONTEXT(expression, ...)                                                                     \
    ((expression) ? static_cast<void>(0)                                                                         \
                  : ::ZOLT_2_18::debug::_private::_______________CONTEXT__ASSERT________________(                \
                        #expression, __FILE__, __LINE__, __PRETTY_FUNCTION__, __VA_ARGS__))
