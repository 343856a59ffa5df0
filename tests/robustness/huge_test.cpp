// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Texts and files around 2^31 and 2^32 bytes, where lengths of 32 bits end. Takes up to 6 GB and a minute, so it
// runs only where the environment variable ZOLT_TEST_HUGE is set.
#include "i18n/catalog_files.hpp"

#include <zolt/zolt.hpp>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>

namespace {

using namespace zolt;
using strings::ustring16;
using strings::ustring32;
using strings::ustring8;

constexpr unsigned long long two_to_31 = 0x80000000, two_to_32 = 0x100000000;

class huge : public testing::Test {
protected:
    void SetUp() override {
        if (!std::getenv("ZOLT_TEST_HUGE")) GTEST_SKIP() << "ZOLT_TEST_HUGE is not set";
    }
};

// Only 32 bits may have no room for a text.
template <typename Test>
void where_possible(Test test) {
    try {
        test();
    } catch (std::length_error const&) {
        EXPECT_EQ(sizeof(void*), 4u);
    } catch (std::bad_alloc const&) {
        EXPECT_EQ(sizeof(void*), 4u);
    }
}

std::size_t size_of(unsigned long long size) {
    if (size > std::string().max_size()) throw std::length_error("too long for this build");
    return static_cast<std::size_t>(size);
}

TEST_F(huge, conversions) {
    for (char const* const character : {"a", "\xE2\x82\xAC"}) { // four bytes for one, or two thirds of them
        where_possible([&] {
            std::size_t const length = std::string_view(character).size(), count = size_of(two_to_31 / 3 + 1000);
            ustring8 text(count * length, 'a');
            for (std::size_t i = 0; length == 3 && i < text.size(); ++i) text[i] = character[i % 3];
            {
                ustring16 const units = strings::utf8_to_utf16(text);
                ASSERT_EQ(units.size(), count);
                ASSERT_TRUE(strings::utf16_to_utf8(units) == text);
            }
            ustring32 const codes = strings::utf8_to_utf32(text);
            ASSERT_EQ(codes.size(), count);
            text = ustring8();
            ASSERT_EQ(strings::utf32_to_utf8(codes).size(), count * length);
        });
    }
}

TEST_F(huge, units_beyond_32_bits) {
    where_possible([] {
        ustring8 text(size_of(two_to_32 + 100), ' ');
        text.back() = '.';
        std::size_t const last = text.size() - 1;
        EXPECT_EQ(strings::character_index(text, static_cast<unsigned long>(last)), last);
        EXPECT_EQ(strings::character_index(text, static_cast<unsigned long>(last + 1)), strings::no_index);
        EXPECT_TRUE(strings::begin_with(text, 0xFFFFFFFF, " ") && !strings::begin_with(text, 0xFFFFFFFF, "."));
        unsigned long consumed = 0;
        EXPECT_EQ(strings::unichar(text.data(), static_cast<unsigned long>(text.size()),
                                   static_cast<unsigned long>(last), consumed),
                  static_cast<unsigned long>('.'));

        config::config_token token; // positions have 32 bits, and what they cannot reach does not exist
        unsigned int position = 5;
        EXPECT_EQ(config::base_config_item::get_token(text, position, token), config::config_token::T_SPACE);
        EXPECT_TRUE(position == 0xFFFFFFFF && token.end == position);
        EXPECT_EQ(config::base_config_item::get_token(text, position, token), config::config_token::T_END);
    });
}

TEST_F(huge, numbers) {
    where_possible([] {
        ustring8 text(size_of(two_to_31 + 100), '0');
        text.back() = '7';
        auto const size = static_cast<unsigned long>(text.size());
        EXPECT_EQ(generic::convert::str_to_int32(text.data(), size, types::radix_t::decimal), 7);
        EXPECT_EQ(generic::convert::str_to_double(text), 7);
        text[1] = '.';
        EXPECT_EQ(generic::convert::str_to_double(text), 0);
        text[1] = '1'; // times ten to a power beyond 32 bits
        EXPECT_EQ(generic::convert::str_to_double(text), 0);
    });
}

TEST_F(huge, elements) {
    where_possible([] {
        ustring8 text("<?xml version='1.0'?>\n<a x='");
        text.reserve(size_of(two_to_31 + 200));
        text.append(size_of(two_to_31), 'v').append("'>\n<!--c-->\n<b/></c>");
        parser::xml_parser parser;
        std::size_t value = 0;
        parser.on_attribute = [&value](ustring8 const&, ustring8 const& given) { value = given.size(); };
        auto const result = parser.parse(text);
        EXPECT_EQ(value, two_to_31);
        EXPECT_EQ(result.kind, parser::xml_parser::parse_error::mismatched_end);
        EXPECT_EQ(result.line, 3u);
    });
}

TEST_F(huge, code_pages) {
    auto const expect_encoded = [](strings::code_page const& page, unsigned long long size) {
        where_possible([&] {
            ustring8 const text(size_of(size), 'a');
            EXPECT_EQ(page.encode(text).size(), text.size());
        });
    };
    expect_encoded(strings::code_page::cp1252,
                   two_to_31 + 100); // by a table, and by a converter with twice the room
    expect_encoded(strings::code_page::cp932, two_to_31 / 2 + 100);
}

// Of a content of 2.5 GB with one string in it a text buffer reads as much as 32 bits with a sign can tell.
template <typename Buffer>
void read_and_append(std::string const& length, std::size_t readable) {
    where_possible([&] {
        Buffer buffer;
        {
            std::string form;
            form.reserve(2500000020);
            form.append(length).append(2500000000, 'a').append(1, '\1');
            buffer.assign(form);
        }
        EXPECT_EQ(buffer.read_string().size(), readable);
        EXPECT_FALSE(buffer.at_end());
        {
            std::string const more(1800000000, 'b');
            EXPECT_THROW(buffer.append_string(more), exceptions::length_error);
        }
        buffer.append_int8(7);
        buffer.read_int8(); // the rest of the string, or what ends it
        EXPECT_EQ(buffer.read_int8(), 7);
        EXPECT_TRUE(buffer.at_end());
    });
}

TEST_F(huge, buffers) {
    read_and_append<serialization::serialize_text_buf>("2500000000\1", 2147483647);
    read_and_append<serialization::serialize_binary_buf>(std::string("\x00\xF9\x02\x95", 4), 2500000000);
}

TEST_F(huge, files) {
    catalog_files::temporary_directory const files;
    ustring8 const name = files.write("sparse", ""), copy = files.path("copy");
    where_possible([&] {
        std::filesystem::resize_file(name.c_str(), two_to_31 - 1);
        ustring8 content;
        EXPECT_EQ(system::load_file(name, content), 0u);
        EXPECT_EQ(content.size(), two_to_31 - 1);
        content.append(2, 'x');
        EXPECT_EQ(system::store_file(copy, content), 0u);
        EXPECT_EQ(std::filesystem::file_size(copy.c_str()), two_to_31 + 1);
        EXPECT_THROW(system::load_file(copy, content), exceptions::runtime_error);
        EXPECT_FALSE(config::file_item(copy).load());
    });
    std::filesystem::resize_file(name.c_str(), two_to_32 + 5); // its low 32 bits would do
    ustring8 content;
    EXPECT_THROW(system::load_file(name, content), exceptions::runtime_error);
    EXPECT_FALSE(config::file_item(name).load());
}

// One file of 100 MB, included until a load has read a GiB.
TEST_F(huge, includes) {
    catalog_files::temporary_directory const files;
    files.write("part", catalog_files::document("<!--" + std::string(100 << 20, ' ') + "-->" +
                                                catalog_files::catalog("c", "en", "text")));
    auto const code = [&](int count) {
        std::string includes;
        while (count-- > 0) includes += "<include file='part'/>";
        i18n::_private::xmc_file_loader loader;
        return loader.parse(files.write("top", catalog_files::document(includes)), "en").code();
    };
    EXPECT_EQ(code(10), 0u);
    EXPECT_EQ(code(11), 14u);
}

} // namespace
