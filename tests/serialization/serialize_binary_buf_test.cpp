// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/serialization/serialize_binary_buf.hpp>
#include <zolt/serialization/serialize_text_buf.hpp>

#include <gtest/gtest.h>

#include <limits>
#include <locale>

namespace {

using namespace ZOLT_2_18;
using namespace std::string_literals;
using memory::pointers::rc_pointer;
using serialization::serialize_binary_buf;
using serialization::serialize_buffer;
using serialization::serialize_text_buf;

// ---- both kinds ----------------------------------------------------------------------------------

template <typename Buffer>
struct AnyBuffer : testing::Test {};
using buffer_kinds = testing::Types<serialize_text_buf, serialize_binary_buf>;
TYPED_TEST_SUITE(AnyBuffer, buffer_kinds);

std::string const text_form = "-128\001-2\001-5\001-9223372036854775808\001200\00165534\0014294967294\001"
                              "9295995896645158664\0011\0010.1\0013\001a\001\000\001"s;
std::string const binary_form =
    "\x80\xFE\xFF\xFB\xFF\xFF\xFF\0\0\0\0\0\0\0\x80\xC8\xFE\xFF\xFE\xFF\xFF\xFF"
    "\x08\x07\x06\x05\x04\x03\x02\x81\0\0\x80\x3F\x9A\x99\x99\x99\x99\x99\xB9\x3F\x03\0\0\0a\1\0"s;

TYPED_TEST(AnyBuffer, KeepsEveryByteAsItGrows) {
    constexpr std::size_t lengths[] = {0, 1, 14, 15, 16, 230, 240, 241, 4080, 4096, 4100, 70000};
    for (std::size_t const first : lengths) {
        TypeParam buffer;
        std::string expected;
        for (std::size_t const length : lengths) {
            std::string const text(first + length, static_cast<char>('a' + length % 26));
            buffer.append_string(text);
            buffer.append_int16(-300);
            if constexpr (std::is_same_v<TypeParam, serialize_text_buf>) {
                expected += std::to_string(text.size()) + '\1' + text + "\1-300\1";
            } else {
                for (int shift = 0; shift < 32; shift += 8) expected += static_cast<char>(text.size() >> shift);
                expected += text + "\xD4\xFE";
            }
        }
        EXPECT_TRUE(buffer.as_str() == expected && TypeParam(buffer).as_str() == expected) << first;
        for (std::size_t const length : lengths) {
            EXPECT_TRUE(buffer.read_string().size() == first + length && buffer.read_int16() == -300) << length;
        }
        EXPECT_TRUE(buffer.at_end());
    }
}

TYPED_TEST(AnyBuffer, WritesAndReadsValues) {
    std::locale::global(std::locale::classic());
    TypeParam buffer;
    buffer.append_int8(-128);
    buffer.append_int16(-2);
    buffer.append_int32(static_cast<long>(0x1FFFFFFFBLL)); // the low 32 bits
    buffer.append_int64(std::numeric_limits<long long>::min());
    buffer.append_uint8(200);
    buffer.append_uint16(65534);
    buffer.append_uint32(4294967294UL);
    buffer.append_uint64(0x8102030405060708ULL);
    buffer.append_float(1, 2);
    buffer.append_double(0.1, 3);
    buffer.append_string("a\1\0"s);
    EXPECT_EQ(buffer.as_str(), (std::is_same_v<TypeParam, serialize_text_buf> ? text_form : binary_form));

    serialize_buffer const& from = buffer;
    auto const read = [&from] {
        return std::tuple{from.read_int8(),  from.read_int16(),  from.read_int32(),  from.read_int64(),
                          from.read_uint8(), from.read_uint16(), from.read_uint32(), from.read_uint64(),
                          from.read_float(), from.read_double(), from.read_string()};
    };
    for (int round = 0; round < 2; ++round, from.reset_read()) {
        EXPECT_EQ(read(), std::tuple(-128, -2, -5, std::numeric_limits<long long>::min(), 200, 65534, 4294967294UL,
                                     0x8102030405060708ULL, 1.0F, 0.1, "a\1\0"s));
        EXPECT_TRUE(from.at_end());
        EXPECT_EQ(read(), decltype(read())()) << "past the end";
    }
}

TYPED_TEST(AnyBuffer, IsCreatedClonedAndAssignedThroughTheInterface) {
    rc_pointer<serialize_buffer> const written(TypeParam().create());
    for (int i = 0; i < 1000000; ++i) written->append_int32(i);
    written->read_int32();
    rc_pointer<serialize_buffer> const copy(written->clone());
    for (auto const& buffer : {written, copy}) {
        EXPECT_TRUE(buffer->heap_allocated && dynamic_cast<TypeParam const*>(buffer.get()));
        int equal = 0;
        for (int i = buffer == written; i < 1000000; ++i) equal += buffer->read_int32() == i;
        EXPECT_EQ(equal, 1000000 - (buffer == written)) << "copies are read from their start";
        EXPECT_TRUE(buffer->at_end());
    }
    EXPECT_EQ(serialize_text_buf(*written).as_str(), serialize_binary_buf(*written).as_str());
    TypeParam shorter;
    for (int value : {3, 4}) shorter.append_int32(value);
    copy->reset_read();
    copy->read_int32();
    *copy = *copy;
    EXPECT_EQ(copy->read_int32(), 1) << "assigning leaves the position";
    copy->reset_read();
    copy->read_int32();
    *copy = shorter;
    EXPECT_EQ(copy->read_int32(), 4);
    EXPECT_EQ(copy->assign("a\0b", 3).as_str() + copy->assign("c\0d"s).as_str(), "a\0bc\0d"s);
    EXPECT_EQ(copy->assign("abc", -1).as_str() + copy->assign(nullptr, 3).as_str(), "");
}

TYPED_TEST(AnyBuffer, NestsBuffersAndItself) {
    TypeParam inner, outer;
    inner.append_double(1.5, 6);
    outer.append_buffer(inner);
    std::string const before = outer.as_str();
    outer.append_buffer(outer);
    rc_pointer<serialize_buffer> const read = outer.read_buffer();
    EXPECT_TRUE(read->heap_allocated && dynamic_cast<TypeParam const*>(read.get()));
    EXPECT_EQ(read->read_double(), 1.5);
    EXPECT_EQ(outer.read_buffer()->as_str(), before);
    EXPECT_TRUE(outer.at_end());
    EXPECT_EQ(outer.read_buffer()->as_str(), "") << "at the end there is still a buffer";
}

// ---- binary only ---------------------------------------------------------------------------------

TEST(SerializeBinaryBuf, DecodesTruncatedValuesAsIfZerosFollowed) {
    std::string const content = "\x81\x92\xA3\xB4\xC5\xD6\xE7\xF8"s;
    for (std::size_t length = 1; length <= content.size(); ++length) {
        auto const compare = [&](auto read) {
            SCOPED_TRACE(length);
            serialize_binary_buf truncated, padded;
            truncated.assign(std::string(32, '\0') + content.substr(0, length)); // fills its heap block
            padded.assign(truncated.as_str() + std::string(8, '\0'));
            for (int i = 0; i < 4; ++i) truncated.read_int64(), padded.read_int64();
            auto const value = (truncated.*read)();
            EXPECT_EQ(value, (padded.*read)());
            EXPECT_EQ(truncated.at_end(), length <= sizeof value);
        };
        compare(&serialize_buffer::read_int8);
        compare(&serialize_buffer::read_uint16);
        compare(&serialize_buffer::read_float);
        compare(&serialize_buffer::read_int64);
        compare(&serialize_buffer::read_double);
    }
}

TEST(SerializeBinaryBuf, SurvivesLyingLengths) {
    struct {
        std::string content, text;
        int next; ///< the byte behind
        // clang-format off
    } const rows[] = {
        {"", "", 0}, {"\x02\0\0\0abc"s, "ab", 'c'}, {"\x04\0\0\0abc"s, "abc", 0},
        {"\xFF\xFF\xFF\xFF\141bc"s, "abc", 0}, {"\0\0\0\x80\141bc"s, "abc", 0}, {"\x02\0\0"s, "", 0},
        {"\0\0\0\0c"s, "", 'c'}};
    // clang-format on
    for (auto const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.content));
        serialize_binary_buf const buffer = serialize_binary_buf().assign(row.content);
        EXPECT_EQ(buffer.read_string(), row.text);
        EXPECT_EQ(buffer.read_int8(), row.next);
        EXPECT_TRUE(buffer.at_end());
    }
}

TEST(SerializeBinaryBuf, AsksForTheEndVirtually) {
    struct : serialize_binary_buf {
        bool at_end() const override { return closed; }
        bool closed = true;
    } buffer;
    buffer.append_int8(5);
    EXPECT_EQ(buffer.read_int8(), 0);
    buffer.closed = false;
    EXPECT_EQ(buffer.read_int8(), 5) << "the position had not moved";
    EXPECT_EQ(buffer.read_int32(), 0) << "nothing outside the content is read";
    EXPECT_EQ(buffer.read_string(), "");
}

} // namespace
