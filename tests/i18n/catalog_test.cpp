// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/i18n/catalog.hpp>

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace ZOLT_2_18;
using i18n::catalog_t;
using i18n::message_t;

message_t message_of(char const* lang, char const* text = "text") {
    message_t message("m", {{text}});
    message._orginal_locale(lang);
    return message;
}

TEST(catalog, messages_by_name) {
    catalog_t catalog;
    for (char const* name : {"b", "\xC3", "B", "b"}) catalog.message(name, message_of("en", name));
    catalog.message("b", message_of("en", "2"));
    EXPECT_EQ(catalog.size(), 3u);
    EXPECT_TRUE(catalog.has_message("b") && !catalog.has_message("c"));
    std::string order;
    for (auto const& [name, message] : catalog) order += name + message.begin()->data();
    EXPECT_EQ(order, "BBb2\xC3\xC3");
}

TEST(catalog, languages_follow_the_messages) {
    catalog_t catalog;
    auto const languages = [&] {
        std::string text;
        for (auto at = catalog.languages_begin(); at != catalog.languages_end(); ++at) text += *at + ";";
        return text;
    };
    for (char const* lang : {"en", "de_DE", "de-AT"}) catalog.message(lang, message_of(lang));
    EXPECT_EQ(languages(), "de-AT;de_DE;en;");
    for (char const* lang : {"en", "de.DE", "de-DE"}) EXPECT_TRUE(catalog.is_language_loaded(lang)) << lang;
    for (char const* lang : {"de", "de-AT", "de_AT"}) EXPECT_FALSE(catalog.is_language_loaded(lang)) << lang;
    catalog.message("en", message_of("."));
    catalog.message("x", message_of(""));
    EXPECT_EQ(languages(), ";.;de-AT;de_DE;");
    EXPECT_TRUE(catalog.is_language_loaded("."));
}

TEST(catalog, copies_are_values) {
    catalog_t original(types::nil);
    original._name("n");
    EXPECT_TRUE(original != types::nil);
    original.message("m", message_of("en"));
    original.heap_allocated = true;
    original.reference_count = 7;
    catalog_t copy(original);
    EXPECT_TRUE(!copy.heap_allocated && copy.reference_count == 0);
    original = types::nil;
    EXPECT_TRUE(original == types::nil);
    copy = *&copy;
    original = copy;
    EXPECT_TRUE(original.name() == "n" && original.has_message("m") && original.is_language_loaded("en"));
    EXPECT_TRUE(original.heap_allocated && original.reference_count == 7);
}

} // namespace
