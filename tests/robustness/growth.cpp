// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The cost of every reader and writer at n, 2n and 4n, for check_growth.sh: run under callgrind, this program
// dumps the number of instructions of each task and size under the name "task size".
#include <zolt/zolt.hpp>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include <unistd.h>
#include <valgrind/callgrind.h>

namespace {

using namespace zolt;
using strings::ustring8;

std::string repeated(std::string const& text, std::size_t count) {
    std::string result;
    while (count-- > 0) result += text;
    return result;
}

std::string numbered(std::string const& before, std::string const& after, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) result += before + std::to_string(i) + after;
    return result;
}

// A program's own file, gone at its end.
ustring8 file_of(std::string const& content) {
    static ustring8 const name("/tmp/zolt_growth_" + std::to_string(::getpid()));
    static struct remover {
        ~remover() { std::remove(name.c_str()); }
    } const at_end;
    system::store_file(name, ustring8(content));
    return name;
}

using work = std::function<void()>;

struct task {
    char const* name;
    work (*prepare)(std::size_t n); // what is counted is the call of the result
};

// One that reads text: `make` gives the text of n units, `read` takes it.
template <auto Read>
work reading(std::string const& text) {
    return [given = ustring8(text)] { Read(given); };
}

void load_catalog(ustring8 const& elements) {
    i18n::_private::xmc_file_loader loader;
    loader.handle_language("en");
    loader.parse_string(ustring8("<?xml version='1.0'?><xmc version='1.1'><catalog name='c' lang='en'>" + elements +
                                 "</catalog></xmc>"),
                        "growth.xmc");
    i18n::_private::xmc_file_loader::catalog_map catalogs;
    loader.combine_data(catalogs);
}

void tokenize(ustring8 const& elements) {
    parser::xml_token_stream stream;
    stream.parse(ustring8("<?xml version='1.0'?><a>" + elements + "</a>"));
}

void load_configuration(ustring8 const& file) {
    config::file_item item(file);
    item.load();
}

void overlay(ustring8 const& form) {
    serialization::labeled_text_buffer target;
    target.overlay(serialization::labeled_text_buffer(form)).as_str();
}

template <typename Buffer>
work buffer_round_trip(std::size_t n) {
    return [n] {
        Buffer buffer;
        for (std::size_t i = 0; i < n; ++i) {
            buffer.append_int32(static_cast<long>(i * 7919));
            buffer.append_string("text");
        }
        while (!buffer.at_end()) {
            buffer.read_int32();
            buffer.read_string();
        }
    };
}

// In the order of the folders.
task const tasks[] = {
    {"utf8",
     [](std::size_t n) {
         return reading<[](ustring8 const& t) {
             strings::utf16_to_utf8(strings::utf32_to_utf16(strings::utf8_to_utf32(t)));
             strings::utf32_to_utf8(strings::utf16_to_utf32(strings::utf8_to_utf16(t)));
         }>(repeated("a\xC3\xA4\xE2\x82\xAC", n));
     }},
    {"malformed utf8",
     [](std::size_t n) {
         return reading<[](ustring8 const& t) { strings::utf8_to_utf32(t); }>(repeated("\xE2\x82", n));
     }},
    {"character_index",
     [](std::size_t n) {
         return reading<[](ustring8 const& t) { strings::character_index(t, t.size() / 2 - 1); }>(
             repeated("\xC3\xA4", n));
     }},
    {"code page",
     [](std::size_t n) {
         return reading<[](ustring8 const& t) {
             strings::code_page const page(strings::code_page::cp932);
             page.as_utf8(page.encode(t));
         }>(repeated("a\xE2\x82\xAC\xFF", n));
     }},
    {"replace_all",
     [](std::size_t n) {
         return reading<[](ustring8 const& t) {
             ustring8 text(t);
             strings::replace_all(text, ustring8("a"), ustring8("bcd"));
             strings::split_string(text, ustring8("b"));
         }>(repeated("ab", n));
     }},
    {"integer",
     [](std::size_t n) {
         return reading<[](ustring8 const& t) { types::variant(t).as_int64(); }>(repeated("9", n));
     }},
    {"double",
     [](std::size_t n) {
         return reading<[](ustring8 const& t) { generic::convert::str_to_double(t); }>("0." + repeated("3", n));
     }},
    {"elements", [](std::size_t n) { return reading<tokenize>(repeated("<b c='d'>e &amp; f<!--g--></b>\n", n)); }},
    {"attributes", [](std::size_t n) { return reading<tokenize>("<b" + numbered(" a", "='&lt;'", n) + "/>"); }},
    {"nested elements", [](std::size_t n) { return reading<tokenize>(repeated("<b>", n)); }},
    {"unclosed comment", [](std::size_t n) { return reading<tokenize>(repeated("<!--", n)); }},
    {"bare references", [](std::size_t n) { return reading<tokenize>(repeated("&amp;&#x41;", n)); }},
    {"messages",
     [](std::size_t n) {
         return reading<load_catalog>(
             numbered("<msg name='m", "'>a <arg name='b' type='int' base='hex'/> c</msg>", n));
     }},
    {"one message",
     [](std::size_t n) { return reading<load_catalog>("<msg name='m'>" + repeated("a  <br/>", n) + "</msg>"); }},
    {"rendering",
     [](std::size_t n) -> work {
         i18n::message_t::items_type items;
         for (std::size_t i = 0; i < n; ++i) {
             items.emplace_back(ustring8("a\1base\1hex\1"), i18n::message_item::int_);
             items.emplace_back(ustring8(" and "));
         }
         return [message = i18n::message_t(ustring8("m"), items)] {
             message.as_utf8(generic::varg_list(generic::argument("a", 77)));
         };
     }},
    {"configuration",
     [](std::size_t n) -> work {
         std::string const text = numbered("[s", "]\nk = v\nl[] = 1, 2, \"3\"\n# c\n", n);
         return [text] { load_configuration(file_of(text)); };
     }},
    {"one array",
     [](std::size_t n) -> work {
         return [text = "a[] = " + numbered("x", ",", n)] { load_configuration(file_of(text)); };
     }},
    {"one key",
     [](std::size_t n) -> work {
         return [text = repeated("a.", n) + "a = 1"] { load_configuration(file_of(text)); };
     }},
    {"references",
     [](std::size_t n) -> work {
         std::string text;
         for (std::size_t i = 0; i < n; ++i)
             text += "k" + std::to_string(i) + " = $k" + std::to_string(i + 1) + "\n";
         return [text] {
             config::config_manager manager;
             manager.init(config::std_config_dispatch(0, nullptr, nullptr, file_of(text), ustring8()));
             manager.load();
             manager.get_value("k0", types::nil);
         };
     }},
    {"saving",
     [](std::size_t n) -> work {
         auto item = std::make_shared<config::file_item>(file_of(""));
         for (std::size_t i = 0; i < n; ++i) {
             item->set(ustring8("s.k" + std::to_string(i)), types::variant("a, b # c"), 0);
         }
         return [item] { item->save(); };
     }},
    {"command line",
     [](std::size_t n) -> work {
         return [texts = std::vector<std::string>(n, "--a.b=c,d"), n] {
             std::vector<char const*> arguments{"program"};
             for (auto const& text : texts) arguments.push_back(text.c_str());
             config::commandline_item(static_cast<unsigned>(n + 1), arguments.data()).load();
         };
     }},
    {"text buffer", buffer_round_trip<serialization::serialize_text_buf>},
    {"binary buffer", buffer_round_trip<serialization::serialize_binary_buf>},
    {"labeled entries",
     [](std::size_t n) -> work {
         serialization::labeled_text_buffer buffer;
         for (std::size_t i = 0; i < n; ++i) buffer.add_value("label" + std::to_string(i), types::variant("v"));
         return reading<overlay>(buffer.as_str());
     }},
    {"labeled groups",
     [](std::size_t n) -> work {
         serialization::labeled_text_buffer buffer;
         serialization::labeled_text_buffer* group = &buffer;
         for (std::size_t i = 0; i < n; ++i) group = &group->create_group("g");
         group->add_value("v", types::variant(1));
         return reading<overlay>(buffer.as_str());
     }},
};

} // namespace

int main() {
    std::list<std::string> names; // callgrind reads them at the end
    for (task const& each : tasks) {
        each.prepare(1)(); // binds the functions
        for (std::size_t const n : {1000, 2000, 4000}) {
            work const run = each.prepare(n);
            names.push_back(each.name + (" " + std::to_string(n)));
            CALLGRIND_START_INSTRUMENTATION;
            CALLGRIND_ZERO_STATS;
            run();
            CALLGRIND_DUMP_STATS_AT(names.back().c_str());
            CALLGRIND_STOP_INSTRUMENTATION;
        }
    }
}
