// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Every subsystem with an allocation that fails: a script is run again and again, and in the n-th run the
// n-th allocation throws. Each run must end in std::bad_alloc or give the right answer, and give back all
// that it took. What was assigned to keeps its old value when the assignment fails.
#include <zolt/zolt.hpp>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <new>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

long blocks_held = 0;
long allocations = 0;
long failing_allocation = 0; // which one throws; 0: none

void* allocate(std::size_t size) {
    if (++allocations == failing_allocation) throw std::bad_alloc();
    void* const block = std::malloc(size ? size : 1);
    if (!block) throw std::bad_alloc();
    ++blocks_held;
    return block;
}

void release(void* block) {
    if (block) --blocks_held;
    std::free(block);
}

} // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }

namespace {

using namespace zolt;
using strings::ustring8;

// The runs of `attempt`, one for each allocation that it makes, until one needs no more: `attempt` returns
// its complaint, empty when all is well, and may throw std::bad_alloc.
void sweep(std::function<std::string()> const& attempt) {
    ASSERT_EQ(attempt(), ""); // what the C library allocates once is there now
    for (long failing = 1;; ++failing) {
        long const held_before = blocks_held;
        bool failed = false;
        std::string complaint;
        allocations = 0;
        failing_allocation = failing;
        try {
            complaint = attempt();
        } catch (std::bad_alloc const&) {
            failed = true;
        }
        failing_allocation = 0;
        ASSERT_EQ(complaint, "") << "allocation " << failing << " failed";
        complaint = std::string();
        ASSERT_EQ(blocks_held, held_before) << "allocation " << failing << " failed";
        if (!failed && allocations < failing) return;
    }
}

class temporary_file {
public:
    explicit temporary_file(std::string const& content) {
        int const descriptor = ::mkstemp(m_name);
        if (descriptor >= 0) ::close(descriptor);
        std::ofstream(m_name) << content;
    }
    ~temporary_file() { std::remove(m_name); }
    temporary_file(temporary_file const&) = delete;
    ustring8 name() const { return ustring8(m_name); }

private:
    char m_name[32] = "/tmp/zolt_memory_XXXXXX";
};

char const long_text[] = "a text that does not fit into the object, \xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";

struct script {
    char const* name;
    std::string (*answer)();
};

script const scripts[] = {
    {"conversions",
     []() -> std::string {
         ustring8 const text(long_text);
         return strings::utf32_to_utf8(strings::utf8_to_utf32(strings::utf16_to_utf8(
             strings::utf32_to_utf16(strings::utf16_to_utf32(strings::utf8_to_utf16(text))))));
     }},
    {"code pages",
     []() -> std::string {
         strings::code_page const page(strings::code_page::cp1252);
         return page.as_utf8(page.encode(ustring8("a text that does not fit into the object: \xC3\xA4")));
     }},
    {"string utilities",
     []() -> std::string {
         ustring8 text(long_text);
         strings::replace_all(text, ustring8(" "), ustring8(", "));
         std::string joined;
         for (auto const& part : strings::split_string(text, ustring8(","))) joined += strings::to_upper(part);
         return joined;
     }},
    {"values",
     []() -> std::string {
         types::variant const text(long_text);
         types::variant const number(1234.5);
         generic::varg_list list(generic::argument("text", text), generic::argument("number", number));
         generic::varg_list copy(list);
         copy.push_back("third", types::variant(7));
         copy.erase("text");
         return text.as_string() + number.as_string() + copy.at("third").value().as_string() +
                strings::utf32_to_utf8(text.as_utf32());
     }},
    {"number texts",
     []() -> std::string {
         return generic::convert::to_str(0.1) + generic::convert::to_str(1e300 * 10) +
                generic::convert::to_str(generic::convert::str_to_double(ustring8("  12.5e3")));
     }},
    {"tokens",
     []() -> std::string {
         parser::xml_token_stream stream;
         stream.parse(ustring8("<?xml version='1.0'?><root of='a value that is stored in full length'>"
                               "<!-- a comment that is stored in full length --><b/>text &amp; more</root>"));
         std::string all;
         for (auto const& token : stream) all += token.value() + "|";
         return all;
     }},
    {"catalogs",
     []() -> std::string {
         static temporary_file const file(
             "<?xml version='1.0'?><xmc version='1.1'><catalog name='a catalog with a long name' lang='en'>"
             "<msg name='a message with a long name' meta='with a long description beside it'>Copied "
             "<arg name='number' type='int'/> of <arg name='size' type='memory' precision='2'/>.<br/></msg>"
             "<msg name='another'>A second message that is stored in full length</msg></catalog></xmc>");
         i18n::message_catalogs catalogs;
         auto const result = catalogs.load(file.name(), "en_GB");
         i18n::message_catalogs const copy(catalogs);
         return result.message() +
                copy.message("a catalog with a long name", "a message with a long name")
                    .as_string(generic::varg_list(generic::argument("number", 3), generic::argument("size", 5e6)));
     }},
    {"configuration",
     []() -> std::string {
         static temporary_file const file(
             "[section_with_a_long_name]\nkey = value that is stored in full length\n"
             "list[] = 1, 2, \"three and the rest of it\"\nother.key.below = $reference\n");
         static char const* const arguments[] = {"/usr/bin/program", "--section.key=from the command line"};
         config::config_manager manager;
         manager.init(config::std_config_dispatch(2, arguments, nullptr, file.name(), ustring8()));
         manager.load();
         // A file for which there is no memory counts as one that cannot be read.
         if (!manager.value_exist("section_with_a_long_name.key")) throw std::bad_alloc();
         std::vector<std::pair<ustring8, types::variant>> pairs;
         manager.get_key_value_array("section_with_a_long_name", pairs, true);
         std::ostringstream dump;
         dump.exceptions(std::ios::badbit);
         manager.dump(dump);
         std::string all = dump.str();
         for (auto const& [key, value] : pairs) all += key + "=" + value.as_string() + ";";
         return all;
     }},
    {"saving a configuration",
     []() -> std::string {
         static temporary_file const file("a = 1\n");
         config::file_item item(file.name());
         item.set("a.key.of.some.length.that.is.allocated", types::variant(long_text), 0);
         item.save();
         ustring8 saved;
         system::load_file(file.name(), saved);
         return saved;
     }},
    {"buffers",
     []() -> std::string {
         serialization::serialize_text_buf text;
         serialization::serialize_binary_buf binary;
         for (serialization::serialize_buffer* buffer : {static_cast<serialization::serialize_buffer*>(&text),
                                                         static_cast<serialization::serialize_buffer*>(&binary)}) {
             buffer->append_string(long_text);
             buffer->append_double(1.25, 17);
             buffer->append_buffer(*buffer);
         }
         memory::pointers::rc_pointer<serialization::serialize_buffer> const copy(binary.clone());
         return text.as_str() + copy->as_str() + copy->read_string();
     }},
    {"labeled buffers",
     []() -> std::string {
         serialization::labeled_text_buffer buffer;
         buffer.create_group("a-group-with-a-long-name")
             .add_value("a-label-with-a-long-name", types::variant(long_text));
         serialization::labeled_text_buffer const read(buffer.as_str());
         serialization::labeled_text_buffer merged(read);
         merged.overlay(buffer);
         return merged.as_str();
     }},
    {"directories",
     []() -> std::string {
         std::vector<ustring8> names;
         std::string all;
         system::get_directory_files(ustring8("/proc/self/attr"), names);
         for (auto const& name : names) all += name;
         return all;
     }},
};

TEST(failing_memory, every_script_ends_in_an_exception_or_the_right_answer) {
    for (script const& each : scripts) {
        SCOPED_TRACE(each.name);
        std::string const expected = each.answer();
        ASSERT_FALSE(expected.empty());
        sweep([&] {
            std::string const answer = each.answer();
            return answer == expected ? std::string() : "a wrong answer: " + answer;
        });
    }
}

// Assigns `fresh` to a copy of `old`: after a failure the copy is as before, and it still takes the value.
template <typename Value, typename Text>
void assigns_wholly(Value const& old, Value const& fresh, Text text) {
    std::string const before = text(old);
    std::string const after = text(fresh);
    ASSERT_NE(before, after);
    sweep([&] {
        Value target(old);
        bool failed = false;
        try {
            target = fresh;
        } catch (std::bad_alloc const&) {
            failed = true;
        }
        std::string const now = text(target);
        if (failed) {
            target = fresh;
            if (text(target) != after) return std::string("unusable after a failure");
        }
        return now == (failed ? before : after) ? std::string() : "half assigned: " + now;
    });
}

TEST(failing_memory, a_failed_assignment_leaves_the_old_value) {
    std::string const text(long_text);
    assigns_wholly(types::variant("old"), types::variant(text), [](auto const& v) { return v.as_string(); });

    auto const of_list = [](generic::varg_list const& list) {
        std::string all;
        for (auto const& each : list) all += each.name() + "=" + each.value().as_string() + ";";
        return all;
    };
    assigns_wholly(
        generic::varg_list(generic::argument("a", 1)),
        generic::varg_list(generic::argument("a", text), generic::argument("the second argument's name", 2)),
        of_list);

    auto const of_message = [](i18n::message_t const& message) {
        std::string all = message.name();
        for (auto const& item : message) all += "|" + item.data();
        return all;
    };
    i18n::message_t const message(text, {i18n::message_item(text), i18n::message_item("x")}, text);
    assigns_wholly(i18n::message_t("old", {}), message, of_message);

    i18n::catalog_t old_catalog;
    i18n::catalog_t catalog;
    old_catalog.message("old", message);
    catalog.message(text, message);
    assigns_wholly(old_catalog, catalog, [&](i18n::catalog_t const& each) {
        return each.size() ? of_message(each.begin()->second) + each.begin()->first : std::string();
    });

    auto const dump = [](auto const& tree) {
        std::ostringstream stream;
        stream.exceptions(std::ios::badbit);
        tree.dump(stream, 0);
        return stream.str();
    };
    config::config_tree old_tree;
    config::config_tree tree;
    old_tree.set_node("a", types::variant(1), 0);
    tree.set_node("a.b.with a long component in the middle.c", types::variant(text), 0);
    tree.set_node("z", types::variant(text), 0);
    assigns_wholly(old_tree, tree, dump);

    auto const of_names = [](config::module_config_dispatch const& dispatch) {
        std::string all;
        for (auto const& each : dispatch.get_filenames()) all += each + ";";
        return all;
    };
    auto const names = [](char const* first, std::string const& second) {
        generic::varg_list const list(generic::argument("1", first), generic::argument("2", second));
        return config::module_config_dispatch(list, nullptr);
    };
    assigns_wholly(names("a", "b"), names("c", text), of_names);

    auto const of_buffer = [](auto const& buffer) { return buffer.as_str(); };
    serialization::serialize_text_buf text_buffer;
    serialization::serialize_binary_buf binary;
    serialization::labeled_text_buffer labeled;
    text_buffer.append_string(text);
    binary.append_string(text);
    labeled.create_group("group").add_value("a-label-with-a-long-name", types::variant(text));
    assigns_wholly(serialization::serialize_text_buf(), text_buffer, of_buffer);
    assigns_wholly(serialization::serialize_binary_buf(), binary, of_buffer);
    assigns_wholly(serialization::labeled_text_buffer(), labeled, of_buffer);
}

} // namespace
