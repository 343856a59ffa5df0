// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/i18n/catalog.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

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

/// Names that hash alike in their low bits, as far as the standard library's hash is used.
std::vector<std::string> colliding_names(std::size_t count) {
    std::vector<std::string> names;
    for (int i = 0; names.size() < count; ++i) {
        std::string const name = std::to_string(i);
        if (std::hash<std::string_view>()(name) % 1024 == 0) names.push_back(name);
    }
    return names;
}

// A look-up finds what is there and nothing else, whatever happened to the catalog.
TEST(catalog, finds_every_message_and_no_other) {
    std::size_t const count = 100;
    std::vector<std::string> short_names, long_names;
    for (std::size_t i = 0; i < count; ++i) {
        short_names.push_back("m" + std::to_string(i));
        long_names.push_back("a long name of a message that is kept on the heap " + std::to_string(i));
    }
    for (std::vector<std::string> const& names : {short_names, long_names, colliding_names(count)}) {
        auto const expect_first = [&](catalog_t const& catalog, std::size_t stored) {
            EXPECT_EQ(catalog.size(), stored);
            for (std::size_t i = 0; i < count; ++i) {
                EXPECT_EQ(catalog.has_message(names[i]), i < stored) << names[i] << " of " << stored;
                EXPECT_EQ(catalog.message(names[i]).name(), i < stored ? names[i] : "");
            }
        };
        catalog_t catalog, assigned;
        for (std::size_t i = 0; i < count; ++i) {
            expect_first(catalog, i);
            catalog.message(names[i], message_t(names[i], {{"text"}}));
        }
        assigned.message("gone", message_of("en"));
        assigned = catalog;
        catalog = types::nil;
        expect_first(catalog, 0);
        expect_first(assigned, count);
        expect_first(catalog_t(assigned), count);
    }
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
    message_t const kept = message_of(".");
    catalog.message("en", kept); // not moved, and after the list was asked for
    EXPECT_EQ(languages(), ".;de-AT;de_DE;");
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
