// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/exceptions/exception.hpp>
#include <zolt/serialization/labeled_text_buffer.hpp>
#include <zolt/serialization/serialize_text_buf.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <random>
#include <sstream>

namespace {

using namespace ZOLT_2_18;
using memory::pointers::rc_pointer;
using serialization::labeled_serialize_buffer;
using serialization::labeled_text_buffer;
using serialization::serialize_text_buf;

/// "|" stands for the separator.
std::string form(std::string text) {
    std::replace(text.begin(), text.end(), '|', '\1');
    return text;
}

/// A buffer of the entries in a text such as "a=1 g.b=x empty_group.".
labeled_text_buffer buffer_of(std::string const& entries) {
    labeled_text_buffer root;
    std::istringstream words(entries);
    for (std::string word; words >> word;) {
        labeled_text_buffer* group = &root;
        for (std::size_t dot; (dot = word.find('.')) != word.npos; word.erase(0, dot + 1)) {
            group = &group->create_group(word.substr(0, dot));
        }
        std::size_t const mark = word.find('=');
        if (mark != word.npos) group->add_value(word.substr(0, mark), form(word.substr(mark + 1)));
    }
    return root;
}

TEST(LabeledTextBuffer, HoldsValuesAndGroups) {
    labeled_text_buffer buffer = buffer_of("b=2 B=1 \xC3=3 g.x=1 both=5 both.y=6 none.");
    labeled_text_buffer const& constant = buffer;
    EXPECT_EQ(buffer.labels(), (std::vector<std::string>{"B", "b", "both", "g", "none", "\xC3"}));
    std::string found;
    for (char const* label : {"b", "g", "both", "none", "missing"}) {
        found += label;
        if (buffer.has_label(label)) found += " label";
        if (buffer.has_value(label)) found += " value";
        if (buffer.has_group(label)) found += " group";
        found += buffer.retrieve_value(label) != types::nil ? " +" : " -";
        found += constant.retrieve_group(label).is_empty() ? "- " : "+ ";
    }
    EXPECT_EQ(found, "b label value +- g label group -+ both label value group ++ none label -- missing -- ");
    EXPECT_EQ(&constant.retrieve_group("b"), &constant.retrieve_group("missing"));
    EXPECT_EQ(&buffer.retrieve_group("missing"), &buffer.create_group("missing"));
    EXPECT_EQ(buffer.create_group("both").retrieve_value("y").as_int(), 6);
}

TEST(LabeledTextBuffer, RefusesLabelsWithBlanks) {
    for (char const* label : {" ", "a b", "a ", "\n", "a\rb", "\ta"}) {
        labeled_text_buffer buffer;
        EXPECT_THROW(buffer.add_value(label, 1), exceptions::invalid_argument_value);
        EXPECT_THROW(buffer.create_group(label), exceptions::invalid_argument_value);
        EXPECT_THROW(buffer.retrieve_group(label), exceptions::invalid_argument_value);
        EXPECT_TRUE(buffer.is_empty());
    }
}

TEST(LabeledTextBuffer, WritesItsExternalForm) {
    std::pair<char const*, char const*> const rows[] = {
        {"", ""},
        {"= a=1|2", "0||0||1|a|3|1|2|"},
        {"a=5 g.b=x", "1|a|1|5|2|g |8|1|b|1|x||"},
        {"g=v g.h.b=x g.h.c= z=1", "1|g|1|v|2|g |24|2|h |15|1|b|1|x|1|c|0||||1|z|1|1|"}};
    for (auto const& [entries, text] : rows) {
        EXPECT_EQ(buffer_of(entries).as_str(), form(text));
        EXPECT_EQ(labeled_text_buffer(form(text)).as_str(), form(text));
    }
    labeled_text_buffer typed = buffer_of("empty.");
    typed.add_value("number", 5LL);
    typed.add_value("real", 0.5);
    labeled_text_buffer const read(typed.as_str());
    EXPECT_TRUE(read.retrieve_value("number").type() == typeid(std::string));
    EXPECT_EQ(read.as_str(), form("5|empty|0||6|number|1|5|4|real|3|0.5|"));
    EXPECT_TRUE(read.has_value("empty")) << "an empty group comes back as an empty text";
}

/// Plainly, with a substring for each group.
struct reference {
    std::optional<std::string> value;
    std::map<std::string, reference> entries;

    void parse(std::string const& text) {
        entries.clear();
        serialize_text_buf buffer;
        for (buffer.assign(text); !buffer.at_end();) {
            std::string label = buffer.read_string();
            bool const is_group = !label.empty() && label.back() == ' ';
            if (is_group) label.pop_back();
            reference& item = entries[label];
            if (is_group)
                item.parse(buffer.read_string());
            else
                item.value = buffer.read_string();
        }
    }
    std::string as_str() const {
        serialize_text_buf buffer;
        auto const append = [&buffer](std::string const& label, std::string const& text) {
            buffer.append_string(label);
            buffer.append_string(text);
        };
        for (auto const& [label, item] : entries) {
            if (item.value || item.entries.empty()) append(label, item.value.value_or(""));
            if (!item.entries.empty()) append(label + ' ', item.as_str());
        }
        return buffer.as_str();
    }
};

TEST(LabeledTextBuffer, ReadsForeignBytesLikeTheReference) {
    auto const compare = [](std::string const& bytes) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        std::vector<char> const block(bytes.begin(), bytes.end());
        reference expected;
        expected.parse(bytes);
        EXPECT_EQ(labeled_text_buffer().assign(block.data(), static_cast<int>(block.size())).as_str(),
                  expected.as_str());
    };
    // clang-format off
    for (char const* text :
         {"garbage", "1|a|", "1|a", "-1|1|b|", "2|g |99|1|b|1|x|", "1| |8|1|b|1|x||", "3|g  |8|1|b|1|x||",
          "1|a|1|1|1|a|1|2|", "2|g |8|1|a|1|1||2|g |8|1|b|1|2||", "2|g |8|1|a|1|1||2|g |0||", "2|g |4294967295|",
          "1|b|1|1|1|a|1|2|"})
        compare(form(text));
    // clang-format on
    std::string const nested = buffer_of("a=1 g.b=two g.h.c=three g.h.d= z=26").as_str();
    for (std::size_t length = 0; length <= nested.size(); ++length) compare(nested.substr(0, length));
    std::mt19937 random(18);
    for (int round = 0; round < 20000; ++round) {
        std::string bytes = nested;
        for (auto changes = 1 + random() % 6; changes; --changes)
            bytes[random() % bytes.size()] = "0123789- ag\1\1"[random() % 13];
        compare(bytes);
    }
}

TEST(LabeledTextBuffer, Overlays) {
    struct {
        char const *lower, *upper, *result;
    } const rows[] = {{"a=1 c=3", "a=2", "a=2 c=3"},
                      {"g=1", "g.b=2", "g=1 g.b=2"},
                      {"g.a=1 g.h.b=1", "g.a=2 g.h.c=3 i.x=4", "g.a=2 g.h.b=1 g.h.c=3 i.x=4"},
                      {"g=1 g.a=1", "g.b=2", "g=1 g.a=1 g.b=2"},
                      {"g.a=1", "g=2", "g=2 g.a=1"},
                      {"g=1 g.a=1", "g.", "g.a=1"}}; // nil replaces
    for (auto const& row : rows) {
        labeled_text_buffer buffer = buffer_of(row.lower);
        EXPECT_EQ(buffer.overlay(buffer_of(row.upper)).as_str(), buffer_of(row.result).as_str());
        EXPECT_EQ(buffer.overlay(buffer).as_str(), buffer_of(row.result).as_str()) << "overlaid with itself";
    }
}

TEST(LabeledTextBuffer, TakesPartsOfItself) {
    auto const expect = [](char const* result, auto change) {
        labeled_text_buffer buffer = buffer_of("a=1 g.a=2 g.g.b=3");
        change(buffer, buffer.retrieve_group("g"));
        EXPECT_EQ(buffer.as_str(), buffer_of(result).as_str());
    };
    expect("a=2 g.a=2 g.b=3 g.g.b=3", [](auto& whole, auto& group) { whole.overlay(group); });
    expect("a=1 g.a=1 g.g.a=2 g.g.b=3 g.g.g.b=3", [](auto& whole, auto& group) { group.overlay(whole); });
    expect("a=2 g.b=3", [](auto& whole, auto& group) { whole = group; });
    expect("a=1 g.a=1 g.g.a=2 g.g.g.b=3", [](auto& whole, auto& group) { group = whole; });
    expect("a=1 g.a=2 g.g.b=3", [](auto& whole, auto&) { whole = *&whole; });
}

TEST(LabeledTextBuffer, IsCreatedClonedAndAssignedThroughTheInterface) {
    rc_pointer<labeled_serialize_buffer> const buffer(labeled_text_buffer().create());
    buffer->create_group("g").add_value("n", 5);
    rc_pointer<labeled_serialize_buffer> const copy(buffer->clone());
    EXPECT_TRUE(buffer->heap_allocated && copy->heap_allocated);
    buffer->retrieve_group("g").add_value("n", 6);
    labeled_text_buffer target;
    target = *copy;
    EXPECT_EQ(target.retrieve_group("g").retrieve_value("n").type(), typeid(int));
    EXPECT_EQ(target.retrieve_group("g").retrieve_value("n").as_int(), 5) << "nothing is shared";
    EXPECT_TRUE(copy->assign(nullptr, 5).is_empty() && target.assign("x", -1).is_empty());
}

TEST(LabeledTextBuffer, NestsAMillionGroups) {
    labeled_text_buffer deep;
    labeled_text_buffer* group = &deep;
    for (int level = 0; level < 1000000; ++level) group = &group->create_group("g");
    group->add_value("bottom", 1);
    std::string const text = deep.as_str();
    labeled_text_buffer read(text);
    read.overlay(deep);
    labeled_text_buffer const copy = read;
    EXPECT_TRUE(copy.as_str() == text);
}

TEST(LabeledTextBuffer, RefusesAFormBeyondThirtyTwoBits) {
    labeled_text_buffer buffer;
    types::variant const megabyte(std::string(1 << 20, 'x'));
    labeled_text_buffer& group = buffer.create_group("g");
    for (int i = 0; i < 4096; ++i) group.add_value(std::to_string(i), megabyte); // all share the one text
    EXPECT_THROW(buffer.as_str(), exceptions::length_error);
}

} // namespace
