// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/i18n/message.hpp>

#include <gtest/gtest.h>

#include <locale>

using namespace ZOLT_2_18;
using generic::argument;
using generic::varg_list;
using i18n::message_t;
using item = i18n::message_item;
using strings::ustring8;

namespace {

varg_list const some_arguments(argument("n", 5), argument("text", "abc"), argument("size", 1536),
                               argument("low", -0.2), argument("", "unnamed"), argument("n\1base\1hex", 6));

// The tables below hold related rows on one line.
// clang-format off

TEST(message_item, takes_its_data_apart) {
    ustring8 const rows[][2] = {{"", ""}, {"n", "n"}, {"n\1", "n"}, {"n\1base\1hex", "n"}, {"\1x", ""}};
    for (auto const& [data, name] : rows) {
        item copy("replaced");
        EXPECT_EQ(copy.type(), item::value);
        copy = item(data, item::date);
        copy = static_cast<item&>(copy);
        EXPECT_TRUE(copy.type() == item::date && copy.data() == data && copy.name() == name) << data;
    }
}

TEST(message_item, renders_by_kind) {
    std::locale::global(std::locale::classic());
    struct {
        ustring8 data;
        item::type_t type;
        char const* expected;
    } const rows[] = {
        {"n\1 \xFF", item::value, "n\1 \xFF"}, {"n", item::string, "5"}, {"text\1precision", item::string, "abc"},
        {"n", item::int_, "5"}, {"n", item::double_, "5.00"}, {"n", item::duration, "5.00 sec"},
        {"size", item::memory, "1"}, {"size", item::memory_unit, "KB"}, {"n", item::metric_unit, ""},
        {"size\1precision\1\61", item::metric, "1.5"}, {"size", item::metric_unit, "kilo"},
        {"n\1base\1hex", item::int_, "0x5"}, // the argument with all of this for its name is another
        // Options that will not do, an empty last value among them, and a true "-0"
        {"n\1fieldsize\1", item::int_, "?invalid?"}, {"low\1precision\1\60", item::double_, "?invalid?"},
        // Kinds without a renderer
        {"n", item::number, "?invalid?"}, {"n", item::time, "?invalid?"}, {"n", item::date, "?invalid?"},
        {"n", static_cast<item::type_t>(12), "?invalid?"},
        // No such argument; the empty name is not the unnamed one's
        {"missing", item::string, "?invalid?"}, {"N", item::int_, "?invalid?"}, {"", item::string, "?invalid?"},
        {"\1precision\1\61", item::double_, "?invalid?"},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(item(row.data, row.type).as_string(some_arguments), row.expected) << row.data << " " << row.type;
    }
}

TEST(message, joins_its_items) {
    message_t const message("m", {{"Gr\xC3\xBC\xC3\x9F "}, {"n", item::int_}, {"!"}});
    EXPECT_EQ(message.as_string(some_arguments), "Gr\xC3\xBC\xC3\x9F 5!");
    EXPECT_EQ(message.as_utf8(varg_list()), "Gr\xC3\xBC\xC3\x9F ?invalid?!");
    EXPECT_EQ(message.as_ustring(some_arguments), message.as_utf8(some_arguments));
    EXPECT_EQ(message.as_wstring(some_arguments), L"Gr\u00FC\u00DF 5!");
    EXPECT_EQ(message.as_utf32(some_arguments), message.as_wstring(some_arguments));
    EXPECT_EQ(message.as_utf16(some_arguments)[2], 0xFC);
}

TEST(message, counts_and_checks_arguments) {
    message_t const message("m", {{"n", item::int_}, {" "}, {"n\1base\1hex", item::int_}, {"n", item::time}});
    EXPECT_TRUE(message.count() == 4 && message.argument_count() == 3);
    varg_list const placeholders = message.arguments();
    ASSERT_EQ(placeholders.count(), 2u); // the repeated "n" is left out
    EXPECT_EQ(placeholders.at(1).name(), "n\1base\1hex");
    EXPECT_TRUE(placeholders.at(1).value() == types::nil);

    argument const n("n", 1), x("x", 1), y("y", 1);
    EXPECT_TRUE(message.has_valid_args(varg_list(n, x, y)));
    EXPECT_FALSE(message.has_valid_args(varg_list(n, x))); // fewer than placeholders, though both find theirs
    EXPECT_FALSE(message.has_valid_args(varg_list(x, y, some_arguments.at(1))));
    EXPECT_FALSE(message_t("m", {{"", item::int_}}).has_valid_args(varg_list(types::variant(1))));
    EXPECT_TRUE(message_t("m", {{"text"}}).has_valid_args(varg_list()));
    EXPECT_FALSE(message_t().has_valid_args(varg_list(n)));
}

TEST(message, follows_the_empty_state_protocol) {
    message_t message("name", {{"text"}}, "meta");
    message._orginal_locale("de_DE");
    message_t copy;
    copy = message;
    EXPECT_EQ(copy.name() + copy.meta() + copy._orginal_locale() + copy.begin()->data(), "namemetade_DEtext");

    copy = types::nil;
    EXPECT_EQ(copy._orginal_locale(), "");
    copy._orginal_locale("de_DE");
    EXPECT_TRUE(copy == types::nil); // the locale is not looked at
    copy.meta("meta");
    EXPECT_TRUE(copy != types::nil);
    EXPECT_FALSE(message_t("name", {}) == types::nil || message_t("", {{"text"}}) == types::nil);
}

} // namespace
