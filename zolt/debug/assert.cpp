// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// One slot holds the hook. While the hook runs it may replace or clear itself, so its target is held until
// the call has returned.
#include <zolt/debug/assert.hpp>

#include <zolt/functor/held_target_private.hpp>

#include <cstdarg>
#include <cstdio>

namespace ZOLT_2_18::debug {
namespace {

struct hook_slot {
    assert_hook installed;
    bool running = false;
};

constinit hook_slot slot;

struct running_mark {
    running_mark() noexcept { slot.running = true; }
    ~running_mark() { slot.running = false; }
    running_mark(running_mark const&) = delete;
    running_mark& operator=(running_mark const&) = delete;
};

} // namespace

void set_assert_hook(assert_hook const& hook) { slot.installed = hook; }

void set_assert_hook(types::nil_t const&) { slot.installed = assert_hook(); }

bool is_assert_hook_set() { return static_cast<bool>(slot.installed); }

namespace _private {

void ____________________ASSERT____________________(char const* expression, char const* file, unsigned int line,
                                                    char const* function) {
    if (!slot.installed) {
        native_assert(expression, file, line, function);
    } else if (!slot.running) {
        functor::_private::held_target hook(slot.installed); // which may replace or clear itself
        running_mark const mark;
        hook.get()->invoke(expression, file, line);
    }
}

// NOLINTNEXTLINE(cert-dcl50-cpp): published with the arguments of printf
void _______________CONTEXT__ASSERT________________(char const* expression, char const* file, unsigned int line,
                                                    char const* function, char const* format, ...) {
    char text[256] = {};
    int const written = std::snprintf(text, sizeof text, "%s : ", expression ? expression : "");
    if (written >= 1 && written < static_cast<int>(sizeof text) && format) {
        std::va_list arguments;
        va_start(arguments, format);
        static_cast<void>(
            std::vsnprintf(text + written, sizeof text - static_cast<std::size_t>(written), format, arguments));
        va_end(arguments);
    }
    ____________________ASSERT____________________(text, file, line, function);
}

void native_assert(char const*, char const*, unsigned int&, char const*) {}

} // namespace _private
} // namespace ZOLT_2_18::debug
