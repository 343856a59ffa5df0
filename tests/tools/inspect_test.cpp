// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "tools/inspect/stored_items.hpp"
#include "tools/run_program.hpp"

#include <zolt/serialization/labeled_text_buffer.hpp>
#include <zolt/serialization/serialize_binary_buf.hpp>
#include <zolt/serialization/serialize_text_buf.hpp>

#include <algorithm>
#include <locale>
#include <memory>
#include <random>

namespace {

using namespace tools;
namespace serialization = zolt::serialization;

void ignore(stored_item const&) {}

// "|" ends a field.
std::string fields(std::string text) {
    std::replace(text.begin(), text.end(), '|', '\1');
    return text;
}

serialization::labeled_text_buffer sample() {
    serialization::labeled_text_buffer buffer;
    buffer.add_value("age", 41);
    buffer.add_value("name", "Zö l");
    buffer.create_group("colors").add_value("sky", "blue");
    buffer.create_group("colors").create_group("x").add_value("", "\xFF\1");
    buffer.add_value("colors", "a\nb");
    return buffer;
}

std::string text_sample() {
    serialization::serialize_text_buf buffer;
    buffer.append_int8(-5);
    buffer.append_double(1234567.0, 3);
    buffer.append_string("");
    buffer.append_string("two words");
    buffer.append_buffer(serialization::serialize_text_buf(buffer));
    buffer.append_uint32(7);
    return buffer.as_str();
}

std::string binary_sample() {
    serialization::serialize_binary_buf buffer;
    buffer.append_uint8(200);
    buffer.append_int8(-2);
    buffer.append_uint16(65535);
    buffer.append_int16(-3);
    buffer.append_uint32(4000000000);
    buffer.append_int32(-4);
    buffer.append_uint64(~0ull);
    buffer.append_int64(-5);
    buffer.append_float(0.1f, 0);
    buffer.append_double(0.1, 0);
    buffer.append_string("text");
    buffer.append_string("\1\xFF");
    return buffer.as_str();
}

class Inspect : public in_directory {
protected:
    void show(std::string const& content, std::string const& options, std::string const& out) const {
        store(content);
        expect("inspect f " + options, 0, out);
    }
    // Takes the items before the damage without their heading.
    void show_damage(std::string const& content, std::string const& form, std::string const& items,
                     std::string const& damage) const {
        store(content);
        std::string const size = std::to_string(content.size());
        expect("inspect f --" + form, 1, form.substr(0, form.find(' ')) + " buffer, " + size + " bytes\n" + items,
               "zolt: \"f\" is damaged at byte " + damage + "\n");
    }
};

TEST_F(Inspect, ShowsWhatIsThere) {
    std::locale::global(std::locale::classic());
    show(sample().as_str(), "",
         "labeled buffer, 84 bytes\n"
         " 0  age = \"41\"\n"
         "11  colors = \"a\\x0Ab\"\n"
         "26  colors:\n"
         "39    sky = \"blue\"\n"
         "52    x:\n"
         "59      \"\" = hex FF 01\n"
         "69  name = \"Zö l\"\n");
    show(text_sample(), "",
         "text buffer, 60 bytes\n"
         " 0  -5\n"
         " 3  1.23e+06\n"
         "12  \"\"\n"
         "15  \"two words\"\n"
         "27  \"-5\\x011.23e+06\\x010\\x01\\x019\\x01two words\\x01\"\n"
         "58  7\n");
    show(binary_sample(), "--binary 'u1i1,u2 i2 (u4 i4)*1 u8 i8 f4 f8 s b*'",
         "binary buffer, 56 bytes\n"
         " 0  u1  200\n"
         " 1  i1  -2\n"
         " 2  u2  65535\n"
         " 4  i2  -3\n"
         " 6  u4  4000000000\n"
         "10  i4  -4\n"
         "14  u8  18446744073709551615\n"
         "22  i8  -5\n"
         "30  f4  0.1\n"
         "34  f8  0.1\n"
         "42  s   \"text\"\n"
         "50  b   hex 01 FF\n");
    show("PK\x03|\xC3\xA4 0123456789", "",
         "unknown content, 17 bytes\n"
         "00000000  50 4B 03 7C C3 A4 20 30 31 32 33 34 35 36 37 38  |PK.|.. 012345678|\n"
         "00000010  39                                               |9|\n");
    show(fields("1|5|"), "--text", "text buffer, 4 bytes\n0  1\n2  5\n");
    show("", "", "labeled buffer, 0 bytes\n");
    expect("inspect absent", 2, "", "zolt: \"absent\" cannot be read: No such file or directory\n");
    EXPECT_EQ(2, run("inspect f --text --labeled").status);
}

TEST_F(Inspect, WritesJson) {
    struct {
        std::string content;
        char const* options;
        int status;
        char const* json;
    } const rows[] = {
        {sample().as_str().substr(26, 43), "", 0,
         R"({"form": "labeled","size": 43,"items": [{"position": 0,"depth": 0,"kind": "group","label": "colors"},)"
         R"({"position": 13,"depth": 1,"kind": "text","label": "sky","value": "blue"},)"
         R"({"position": 26,"depth": 1,"kind": "group","label": "x"},)"
         R"({"position": 33,"depth": 2,"kind": "text","label": "","hex": "FF 01"}]})"},
        {fields("2|\xC0\xAF|1|\2|"), "", 0,
         R"({"form": "labeled","size": 9,"items": )"
         R"([{"position": 0,"depth": 0,"kind": "text","label_hex": "C0 AF","value": "\u0002"}]})"},
        {fields("7|3|a\"b|"), "--text", 0,
         R"({"form": "text","size": 8,"items": [{"position": 0,"depth": 0,"kind": "number","value": "7"},)"
         R"({"position": 2,"depth": 0,"kind": "text","value": "a\"b"}]})"},
        {"\1\2\3", "--binary u1,u4", 1,
         R"({"form": "binary","size": 3,"items": [{"position": 0,"depth": 0,"kind": "number","type": "u1",)"
         R"("value": "1"}],"damage": {"position": 1,"text": "u4 takes 4 bytes, but 2 are left"}})"},
        {"PK\xFF", "", 0,
         R"({"form": "unknown","size": 3,"items": [{"position": 0,"depth": 0,"kind": "bytes","hex": "50 4B FF"}]})"},
    };
    for (auto const& [content, options, status, json] : rows) {
        store(content);
        program_run const shown = run(std::string("inspect f --json ") + options);
        EXPECT_EQ(status, shown.status);
        EXPECT_EQ(json, compact(shown.out));
    }
}

TEST_F(Inspect, TellsDamage) {
    show_damage(fields("1|a|4000000000|x|"), "labeled", "", "4: a length of 4000000000 bytes, but 2 are left");
    show_damage(fields("1|a|1|b|2|c"), "labeled", " 0  a = \"b\"\n", "8: a length of 2 bytes, but 1 are left");
    show_damage(fields("2|g |4|x|y||"), "labeled", " 0  g:\n", "7: a length and the byte 01 are missing");
    show_damage(fields("1|a|01|x|"), "labeled", "", "4: a length and the byte 01 are missing");
    show_damage(fields("1|a|"), "labeled", "", "0: the label has no value");
    show_damage(fields("1|ab"), "labeled", "", "3: the byte 01 after a string is missing");
    show_damage(fields("7|5|abc|"), "text", "0  7\n2  5\n",
                "4: neither a number nor a string of the length before it");
    show_damage(fields("7|5|abc"), "text", "0  7\n2  5\n", "4: the byte 01 after the last field is missing");
    show_damage("\1\2\3", "binary u1,u4", "0  u1  1\n", "1: u4 takes 4 bytes, but 2 are left");
    show_damage("\1\2\3", "binary u1*2", "0  u1  1\n1  u1  2\n", "2: the pattern ends here, but 1 bytes are left");
    show_damage("\xFF\xFF\xFF\xFFx", "binary s", "", "0: a length of 4294967295 bytes, but 1 are left");
}

TEST(StoredItems, RefusePatterns) {
    std::pair<std::string, std::string> const rows[] = {
        {"", ""},    {"x", "x"},  {"u1 u3", "u3"},     {"u1*0", "*0"},   {"u1*4294967296", "*4294967296"},
        {"(u1", ""}, {"()", ")"}, {"((u1))", "(u1))"}, {"u1* u2", "u2"}, {"u1)", ")"},
        {"*", "*"}};
    for (auto const& [text, rest] : rows) {
        binary_pattern pattern;
        std::size_t fault = 0;
        EXPECT_FALSE(pattern.parse(text, fault)) << text;
        EXPECT_EQ(rest, text.substr(fault)) << text;
    }
}

// The number of truncations that are whole; every other one is told, at a place within what is left.
template <typename Reader>
int intact_truncations(std::string const& whole, Reader read) {
    int intact = 0;
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        auto const exact = std::make_unique<char[]>(size);
        std::copy_n(whole.data(), size, exact.get());
        auto const damage = read(std::string_view(exact.get(), size), ignore);
        EXPECT_LE(damage ? damage->position : 0, size);
        intact += damage ? 0 : 1;
    }
    EXPECT_FALSE(read(whole, ignore));
    return intact;
}

TEST(StoredItems, NoticeTruncation) {
    binary_pattern pattern;
    std::size_t fault = 0;
    ASSERT_TRUE(pattern.parse("u1 i1 u2 i2 u4 i4 u8 i8 f4 f8 s b", fault));
    auto const read_binary = [&](auto content, auto visit) { return pattern.read(content, visit); };
    // Cut between entries it is whole; in text also where the length of a string can be a number.
    EXPECT_EQ(5, intact_truncations(sample().as_str(), read_labeled_items));
    EXPECT_EQ(16, intact_truncations(text_sample(), read_text_items));
    EXPECT_EQ(1, intact_truncations(binary_sample(), read_binary));
}

// Whatever the library writes is whole, and texts that cannot be numbers are found again.
TEST(StoredItems, ReadWhatTheLibraryWrites) {
    std::mt19937 random(1);
    for (int round = 0; round != 300; ++round) {
        serialization::serialize_text_buf buffer;
        std::vector<std::string> expected;
        for (int i = 0; i != 8; ++i) {
            auto const choice = random() % 4;
            if (choice == 0) buffer.append_int32(static_cast<long>(random() % 20) - 10);
            if (choice == 1) buffer.append_double(static_cast<double>(random()) / 7, 8);
            if (choice != 2) continue;
            expected.push_back("<" + std::string(random() % 12, "ab\1 "[random() % 4]));
            buffer.append_string(expected.back());
        }
        std::vector<std::string> found;
        auto const collect = [&found](stored_item const& item) {
            if (item.kind == stored_item::text) found.emplace_back(item.content);
        };
        EXPECT_FALSE(read_text_items(buffer.as_str(), collect));
        EXPECT_EQ(expected, found);
        serialization::serialize_text_buf nesting;
        nesting.append_buffer(buffer);
        EXPECT_FALSE(read_text_items(nesting.as_str(), ignore));
    }
    EXPECT_FALSE(read_text_items(fields("3|inf|-inf|nan|1,5e-05|"), ignore));
}

TEST(StoredItems, SurviveDeepGroups) {
    constexpr std::size_t depth = 200000;
    std::string reversed = fields("|x|1|v|1"); // the start of groups in groups, from its end
    std::size_t size = reversed.size();
    for (std::size_t i = 0; i != depth; ++i) {
        std::string const head = fields("2|g |") + std::to_string(size) + "\1";
        reversed.append(head.rbegin(), head.rend());
        size += head.size() + 1;
    }
    std::string const content = std::string(reversed.rbegin(), reversed.rend()) + std::string(depth, '\1');
    std::size_t deepest = 0;
    auto const visit = [&deepest](stored_item const& item) { deepest = std::max(deepest, item.depth); };
    EXPECT_FALSE(read_labeled_items(content, visit));
    EXPECT_EQ(depth, deepest);
}

} // namespace
