// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
//     consumer EXAMPLES [MODULE...]
//
// A user's program: uses the library, catches what it throws across its border, and does the same through
// modules. With a module of its own series it shares classes and state; with one of another series neither,
// and both work side by side. Prints the versions that took part.
#include "use.hpp"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void check(bool as_expected, char const* what) {
    if (as_expected) return;
    std::fprintf(stderr, "consumer: not as expected: %s\n", what);
    std::exit(1);
}

template <typename Function>
Function* symbol(void* module, char const* name) {
    void* const address = ::dlsym(module, name);
    check(address, name);
    return reinterpret_cast<Function*>(address);
}

/// Whether the class as this program knows it catches what the function throws; the text has to be right then.
template <typename Exception, typename Function>
bool catches(Function const& function, char const* text) {
    try {
        function();
    } catch (Exception const& e) {
        check(std::strcmp(e.get_message(), text) == 0, text);
        return true;
    } catch (...) {
        return false;
    }
    check(false, "nothing was thrown");
    return false;
}

unsigned int asserted = 0;

void count(char const*, char const*, unsigned int&) { ++asserted; }

void use_module(char const* path, char const* examples) {
    namespace exceptions = zolt::exceptions;
    void* const module = ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
    check(module, path);
    char const* const version = symbol<char const*()>(module, "module_version")();
    bool const same = std::strcmp(version, zolt::version()) == 0;

    auto* const fail = symbol<void(bool)>(module, "module_fail");
    auto const in_library = [=] { fail(true); };
    auto const in_module = [=] { fail(false); };
    check(catches<exceptions::exception>(in_library, "Number value is to large") == same,
          "caught from the library");
    check(catches<exceptions::exception>(in_module, "the module is full") == same, "caught from the module");
    check(catches<exceptions::full_error>(in_module, "the module is full") == same, "caught by the class itself");
    check(!catches<exceptions::logic_error>(in_module, ""), "caught by a foreign class");

    asserted = 0;
    zolt::debug::set_assert_hook(zolt::debug::assert_hook(count));
    symbol<void()>(module, "module_assert")();
    zolt::debug::set_assert_hook(zolt::types::nil);
    check(asserted == (same ? 1 : 0), "the assertion hook");
    check((symbol<void const*()>(module, "module_nil")() == &zolt::generic::varg_list::nil_argument) == same,
          "the shared nil objects");

    char* const text = symbol<char*(char const*)>(module, "module_use")(examples);
    check(use_library(examples) == text, text);
    std::free(text);
    std::printf(" %s", version);
}

} // namespace

int main(int argc, char** argv) {
    check(argc > 1, "usage: consumer EXAMPLES [MODULE...]");
    check(zolt::version_number() == ZOLT_VERSION, "the version of library and headers");
    auto const fail = [] {
        zolt::generic::convert::str_to_int32("2147483648", 0, zolt::types::radix_t::decimal, true);
    };
    check(catches<zolt::exceptions::overflow_error>(fail, "Number value is to large"),
          "caught by the class itself");
    check(catches<zolt::exceptions::exception>(fail, "Number value is to large"), "caught by the base");
    std::string const used = use_library(argv[1]);
    check(used == "0x2A 42 5.00 GB in 1 hr 2 min 5 sec gesichert.\nNächster Lauf in 1d 0h 0m 0s. 1", used.c_str());

    std::printf("%s:", zolt::version());
    for (int i = 2; i < argc; ++i) use_module(argv[i], argv[1]);
    std::puts("");
}
