// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Buffers that one build stores, another one loads: each build leaves its files in a folder that the
// builds share, and reads all that are there, its own and those of other widths and compilers.
#include <zolt/serialization/labeled_text_buffer.hpp>
#include <zolt/serialization/serialize_binary_buf.hpp>
#include <zolt/serialization/serialize_text_buf.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/system/io.hpp>

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using namespace ZOLT_2_18;
using strings::ustring8;

std::string const bytes("a\0\1\xFF", 4);

void append_all(serialization::serialize_buffer& buffer) {
    buffer.append_int8(-128);
    buffer.append_int16(-32768);
    buffer.append_int32(-2147483647L - 1);
    buffer.append_int64(std::numeric_limits<long long>::min());
    buffer.append_uint8(255);
    buffer.append_uint16(65535);
    buffer.append_uint32(4294967295UL);
    buffer.append_uint64(std::numeric_limits<unsigned long long>::max());
    buffer.append_float(0.1f, 9);
    buffer.append_double(-1.0 / 3, 17);
    buffer.append_string(bytes);
}

void read_all(serialization::serialize_buffer const& buffer) {
    EXPECT_EQ(-128, buffer.read_int8());
    EXPECT_EQ(-32768, buffer.read_int16());
    EXPECT_EQ(-2147483647L - 1, buffer.read_int32());
    EXPECT_EQ(std::numeric_limits<long long>::min(), buffer.read_int64());
    EXPECT_EQ(255, buffer.read_uint8());
    EXPECT_EQ(65535, buffer.read_uint16());
    EXPECT_EQ(4294967295UL, buffer.read_uint32());
    EXPECT_EQ(std::numeric_limits<unsigned long long>::max(), buffer.read_uint64());
    EXPECT_EQ(0.1f, buffer.read_float());
    EXPECT_EQ(-1.0 / 3, buffer.read_double());
    EXPECT_EQ(bytes, buffer.read_string());
    EXPECT_TRUE(buffer.at_end());
}

void store(std::string const& name, std::string const& content) {
    std::string const path = std::string(ZOLT_EXCHANGE_DIR) + "/" + ZOLT_EXCHANGE_BUILD + "." + name;
    ASSERT_EQ(0u, system::store_file(ustring8(path + "~"), ustring8(content)));
    system::io::move(ustring8(path), ustring8(path + "~"));
}

TEST(Exchange, LoadsWhatEveryBuildStored) {
    ASSERT_EQ(1u, system::create_directory(ustring8(ZOLT_EXCHANGE_DIR)));
    serialization::serialize_text_buf text;
    append_all(text);
    store("text", text.as_str());
    serialization::serialize_binary_buf binary;
    append_all(binary);
    store("binary", binary.as_str());
    serialization::labeled_text_buffer labeled;
    labeled.create_group("numbers").add_value("largest", std::numeric_limits<unsigned long long>::max());
    store("labeled", labeled.as_str());

    int read = 0;
    for (ustring8 const& path : system::list_directory(ustring8(ZOLT_EXCHANGE_DIR))) {
        SCOPED_TRACE(path);
        std::string content;
        if (path.back() == '~' || system::load_file(path, content) != 0) continue;
        if (path.ends_with(".text")) {
            text.assign(content);
            text.reset_read();
            read_all(text);
        } else if (path.ends_with(".binary")) {
            binary.assign(content);
            binary.reset_read();
            read_all(binary);
        } else {
            labeled.assign(content);
            EXPECT_EQ(std::numeric_limits<unsigned long long>::max(),
                      labeled.retrieve_group("numbers").retrieve_value("largest").as_uint64());
        }
        ++read;
    }
    EXPECT_LE(3, read);
}

} // namespace
