// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/exceptions/exception.hpp>

#include <gtest/gtest.h>

#include <exception>

namespace {

using namespace ZOLT_2_18::exceptions;

template <typename Thrown, typename Caught>
bool is_caught_as() {
    try {
        throw Thrown("text", 7, "strings/code_page", "encode");
    } catch (Caught const&) {
        return true;
    } catch (...) {
        return false;
    }
}

template <typename Leaf, typename Middle, typename Other>
void check_place_in_tree() {
    EXPECT_TRUE((is_caught_as<Leaf, Leaf>()));
    EXPECT_TRUE((is_caught_as<Leaf, Middle>()));
    EXPECT_TRUE((is_caught_as<Leaf, exception>()));
    EXPECT_FALSE((is_caught_as<Leaf, Other>()));
    EXPECT_FALSE((is_caught_as<Leaf, std::exception>()));
}

TEST(Exception, EachClassIsCaughtByItsBasesAlone) {
    check_place_in_tree<logic_error, logic_error, runtime_error>();
    check_place_in_tree<out_of_range, logic_error, length_error>();
    check_place_in_tree<length_error, logic_error, runtime_error>();
    check_place_in_tree<invalid_argument_value, logic_error, overflow_error>();
    check_place_in_tree<runtime_error, runtime_error, logic_error>();
    check_place_in_tree<overflow_error, runtime_error, underflow_error>();
    check_place_in_tree<underflow_error, runtime_error, overflow_error>();
    check_place_in_tree<empty_error, runtime_error, full_error>();
    check_place_in_tree<full_error, runtime_error, logic_error>();
}

TEST(Exception, KeepsMessageAndPlaceThroughThrowAndCopy) {
    for (std::string const message : {"", "Number value is to large"}) {
        try {
            std::string file = "generic/convert/str_to_x";
            overflow_error const original(message, 175, file.c_str(), "strtointx");
            file.assign(file.size(), '?'); // the texts are held by value
            throw overflow_error(original);
        } catch (exception const& e) {
            EXPECT_EQ(message, e.get_message());
            EXPECT_EQ(175u, e.where.line);
            EXPECT_STREQ("generic/convert/str_to_x", e.where.file);
            EXPECT_STREQ("strtointx", e.where.function);
            EXPECT_EQ(175u, full_error("", e.where).where.line);
        }
    }
}

TEST(Exception, PlaceTextsAreBounded) {
    std::string const longest(255, 'x');
    exception::state const cut(1, (longest + "yz").c_str(), longest.c_str());
    EXPECT_EQ(longest, cut.file);
    EXPECT_EQ(longest, cut.function);
    exception::state const null(2, nullptr, nullptr);
    EXPECT_STREQ("", null.file);
    EXPECT_STREQ("", null.function);
}

} // namespace
