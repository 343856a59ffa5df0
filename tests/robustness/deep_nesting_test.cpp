// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A million levels on a stack of 256 KiB: whatever can nest is built, copied, written, read and destroyed
// without recursion.
#include <zolt/zolt.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <streambuf>
#include <string>

#include <pthread.h>

namespace {

using namespace zolt;
using strings::ustring8;

constexpr std::size_t levels = 1000000;

void on_a_small_stack(std::function<void()> work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread;
    auto const run = [](void* given) -> void* {
        (*static_cast<std::function<void()>*>(given))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::string repeated(std::string const& text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    while (count-- > 0) result += text;
    return result;
}

class counting_buffer : public std::streambuf {
public:
    std::size_t count = 0;

protected:
    int_type overflow(int_type c) override { return ++count, traits_type::not_eof(c); }
    std::streamsize xsputn(char const*, std::streamsize size) override {
        return count += static_cast<std::size_t>(size), size;
    }
};

TEST(deep_nesting, elements) {
    on_a_small_stack([] {
        std::string const open = "<?xml version='1.0'?>" + repeated("<a>", levels);
        parser::xml_token_stream stream;
        EXPECT_EQ(stream.parse(ustring8(open + repeated("</a>", levels))).kind, 0u);
        EXPECT_EQ(stream.size(), 3 * levels);
        EXPECT_EQ(stream.parse(ustring8(open)).kind, parser::xml_parser::parse_error::unexpected_end);
        i18n::_private::xmc_file_loader loader;
        loader.handle_language("en");
        EXPECT_NE(loader.parse_string(ustring8(open), "deep.xmc").code(), 0u);
    });
}

TEST(deep_nesting, configuration_keys) {
    on_a_small_stack([] {
        ustring8 const key(repeated("a.", levels) + "a");
        config::config_tree tree;
        tree.set_node(key, types::variant(1), 0);
        config::config_tree copy(tree);
        tree = copy;
        ASSERT_TRUE(tree.get_node(key));
        config::config_tree::entry_list pairs;
        copy.get_value_pair_array("a", pairs, true);
        EXPECT_EQ(pairs.size(), 1u);
        tree.erase();
    });
    on_a_small_stack([] { // each line is indented, so the text of n levels has n^2 characters
        config::config_tree tree;
        tree.set_node(ustring8(repeated("a.", 5000) + "a"), types::variant(1), 0);
        counting_buffer counter;
        std::ostream stream(&counter);
        tree.dump(stream, 0);
        EXPECT_GT(counter.count, 5000u * 5000);
    });
}

TEST(deep_nesting, groups) {
    on_a_small_stack([] {
        serialization::labeled_text_buffer buffer;
        serialization::labeled_text_buffer* group = &buffer;
        for (std::size_t i = 0; i < levels; ++i) group = &group->create_group("g");
        group->add_value("v", types::variant(1));
        serialization::labeled_text_buffer const copy(buffer);
        buffer.overlay(copy);
        std::string const form = copy.as_str();
        serialization::labeled_text_buffer const read(form);
        EXPECT_EQ(read.as_str(), form);
    });
}

} // namespace
