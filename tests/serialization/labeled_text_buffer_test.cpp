// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/exceptions/exception.hpp>
#include <zolt/serialization/labeled_text_buffer.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <locale>
#include <sstream>
#include <utility>
#include <vector>

namespace {

using namespace ZOLT_2_18;
using memory::pointers::rc_pointer;
using serialization::labeled_serialize_buffer;
using serialization::labeled_text_buffer;

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
    std::locale::global(std::locale::classic());
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

TEST(LabeledTextBuffer, ReadsForeignBytes) {
    std::pair<char const*, char const*> const rows[] = {{"garbage", "0||0||"},
                                                        {"1|a", "1|a|0||"},
                                                        {"-1|1|b|", "0||1|b|"},
                                                        {"2|g |99|1|b|1|x|", "2|g |8|1|b|1|x||"},
                                                        {"1| |8|1|b|1|x||", "1| |8|1|b|1|x||"},
                                                        {"3|g  |8|1|b|1|x||", "3|g  |8|1|b|1|x||"},
                                                        {"1|a|1|1|1|a|1|2|", "1|a|1|2|"},
                                                        {"2|g |8|1|a|1|1||2|g |8|1|b|1|2||", "2|g |8|1|b|1|2||"},
                                                        {"2|g |8|1|a|1|1||2|g |0||", "1|g|0||"},
                                                        {"2|g |4294967295|", "1|g|0||"},
                                                        {"1|b|1|1|1|a|1|2|", "1|a|1|2|1|b|1|1|"}};
    for (auto const& [bytes, text] : rows) {
        EXPECT_EQ(labeled_text_buffer(form(bytes)).as_str(), form(text)) << bytes;
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

TEST(LabeledTextBuffer, RefusesAFormBeyondThirtyTwoBits) {
    labeled_text_buffer buffer;
    types::variant const megabyte(std::string(1 << 20, 'x'));
    labeled_text_buffer& group = buffer.create_group("g");
    for (int i = 0; i < 4096; ++i) group.add_value(std::to_string(i), megabyte); // all share the one text
    EXPECT_THROW(buffer.as_str(), exceptions::length_error);
}

} // namespace
