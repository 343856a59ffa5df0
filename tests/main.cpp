// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The main function of the test programs. Where the environment variable ZOLT_TEST_LOCALE is set, every test begins
// with the locale of that name as the global one of the C and C++ libraries. An empty name stands for the locale of
// the environment and, as in most programs, for the classic one if there is none of its name. scripts/locales.sh
// uses it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <locale>
#include <stdexcept>
#include <string>

namespace {

class locale_of_every_test : public testing::EmptyTestEventListener {
public:
    explicit locale_of_every_test(std::locale const& locale) : m_locale(locale) {}

private:
    void OnTestStart(testing::TestInfo const&) override { std::locale::global(m_locale); }

    std::locale m_locale;
};

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (char const* const name = std::getenv("ZOLT_TEST_LOCALE")) {
        try {
            testing::UnitTest::GetInstance()->listeners().Append(new locale_of_every_test(std::locale(name)));
        } catch (std::runtime_error const&) {
            if (*name) {
                std::cerr << "there is no locale " << name << "\n";
                return EXIT_FAILURE;
            }
        }
    }
    return RUN_ALL_TESTS();
}
