// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/parser/xml_parser.hpp>
#include <zolt/parser/xml_scan_private.hpp>

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using ZOLT_2_18::parser::xml_parser;
using ZOLT_2_18::strings::ustring8;
using parse_error = xml_parser::parse_error;

namespace {

// Writes down what is reported: "S:a|A:x=1|W: |T:text|C:comment|E:a|".
struct recorder {
    recorder() { bind_all(); }
    void bind_all() {
        for (std::size_t slot = 0; slot < slots; ++slot) bind(slot, [this](auto const& event) { add(event); });
    }

    // Slots have the numbers of the header's order. `hear` takes an event as it is written down.
    template <typename Hear>
    void bind(std::size_t slot, Hear const& hear) {
        if (slot == 2) {
            parser.on_attribute = [hear](ustring8 const& name, ustring8 const& value) {
                hear("A:" + name + "=" + value);
            };
        } else {
            *with_text[slot] = [hear, kind = "SEAWTC"[slot]](ustring8 const& text) {
                hear(std::string(1, kind) + ":" + text);
            };
        }
    }
    void clear(std::size_t slot) {
        if (slot == 2) {
            parser.on_attribute = decltype(parser.on_attribute)();
        } else {
            *with_text[slot] = decltype(parser.on_space)();
        }
    }
    void add(std::string const& event) { events.append(event).append("|"); }

    static constexpr std::size_t slots = 6;
    xml_parser parser;
    decltype(xml_parser::on_space)* with_text[slots] = {
        &parser.on_element_start, &parser.on_element_end, nullptr,
        &parser.on_space,         &parser.on_character,   &parser.on_comment};
    std::string events;
};

// "ok", or kind, line and text.
std::string result_text(parse_error const& result) {
    if (!result.kind) return "ok";
    return std::to_string(result.kind) + " " + std::to_string(result.line) + " '" + result.text + "'";
}

// The events and the result. The text is parsed alone and inside longer ones that would go on with it,
// so that reading past its end shows as a different outcome.
std::string outcome(std::string const& text) {
    std::string all;
    for (std::string const suffix : {"", ">", "-->a='", "amp;"}) {
        recorder record;
        ustring8 const whole = text + suffix;
        auto const result = record.parser.parse(whole.begin(), whole.end() - static_cast<long>(suffix.size()));
        std::string const one = record.events + result_text(result);
        EXPECT_TRUE(suffix.empty() || one == all) << one << " before " << suffix;
        all = one;
    }
    return all;
}

using rows = std::initializer_list<std::pair<std::string, std::vector<std::string>>>;

void expect_rows(std::string const& header, rows expected) {
    for (auto const& [result, inputs] : expected) {
        for (std::string const& input : inputs) EXPECT_EQ(outcome(header + input), result) << input;
    }
}

} // namespace

TEST(XmlParser, Header) {
    // Kept: any three bytes may stand where the byte order mark does.
    expect_rows(
        "", {{"ok", {"<?xml?>", "<?xmlx ? \?>", "\xEF\xBB\xBF<?xml?>", "any<?xml?>"}},
             {"3 0 ''", {"<?xml", "<?xml\n?"}},
             {"4 0 ''", {"", "<?xm", " <?xml?>", "<a/>", "<?xml >?>", "<?xml <?>", "\xEF\xBB\xBF<", "\xEF<?xml?>"}},
             {"W:\n|5 1 '>'", {"<?xml\n\n?>\n>"}}});
}

TEST(XmlParser, Events) {
    std::string const nul(1, '\0');
    expect_rows("<?xml?>", {{"S:a|E:a|ok", {"<a/>", "<a />", "<a></a>", "<a ></a \n>"}},
                            {"S:a|E:a|T:" + nul + "|ok", {"<a/>" + nul}},
                            {"S:a|A:x=1|A:y=<'>\n|T:t|E:a|ok", {"<a x='1'y = \"<'>\n\" >t</a>"}},
                            {"S:a|W: \t |T:b|W:\r\n|T:c]]|E:a|ok", {"<a> \t b\r\nc]]</a>"}},
                            {"T:x|C:1|S:a|E:a|W:\n|C:2|T:\xFF|ok", {"x<!--1--><a/>\n<!--2-->\xFF"}},
                            {"S:a1_b|A:x=|S:c|A:x=|E:c|C:|C: > -- <b>& |E:a1_b|ok",
                             {"<a1_b x=''><c x=''/><!----><!-- > -- <b>& --></a1_b>"}}});
}

TEST(XmlParser, References) {
    // Kept: &nbsp; is a blank (which does not split the run), a leading zero means octal, numbers saturate.
    expect_rows("<?xml?>", {{"T:&'><\"|ok", {"&amp;&apos;&gt;&lt;&quot;"}},
                            {"T:a b|W: |T: |ok", {"a&nbsp;b &nbsp;"}},
                            {"S:a|A:x=\"'\n|E:a|ok", {"<a x='&quot;&apos;&#10;'/>"}},
                            {"T:AJ|ok", {"&#65;&#x4a;", "&#0101;&#x004A;"}},
                            {"T:\xFF\xFF|ok", {"&#300;&#xFFF41;"}},
                            {"T:" + std::string(1, '\0') + "|ok", {"&#0;", "&#08;", "&#x00;"}},
                            {"5 0 '&'",
                             {"&ap;", "&am\n", "&ampx", "&lt ;", "&n;", "&#;", "&#x;", "&#X41;", "&#4a;", "&#xg;",
                              "&#65 ;", "&#-1;", "&#x 1;"}},
                            {"7 0 ''", {"&x;", "&Amp;", "&;", "&&amp;", "& ", "&1;"}},
                            {"S:a|5 0 '&'", {"<a x='&ap;'/>", "<a x='&#65'/>"}}});
}

TEST(XmlParser, Faults) {
    expect_rows("<?xml?>", {{"1 0 ''", {"<", "<!-", "<!--\n--", "</", "&a", "&am", "&ap", "&#", "&#6", "&#x"}},
                            {"S:a|1 0 ''", {"<a", "<a>", "<a></a", "<a x= ", "<a x='\n"}},
                            {"W:\n|S:a|W:\n|1 2 ''", {"\n<a>\n"}},
                            {"2 0 'b'", {"</b>", "</b"}},
                            {"S:a|S:b|W:\n|2 1 'a'", {"<a><b>\n</a></b>", "<a><b>\n</a"}},
                            {"S:a|2 0 ''", {"<a></>", "<a></ a>", "<a></1>"}},
                            {"5 0 '<'", {"<1/>", "< a/>", "<!DOCTYPE a>", "<!-x", "<?pi?>", "<_a/>"}},
                            {"5 0 '>'", {">", "ab>c"}},
                            {"S:a|5 0 '<'", {"<a <b/>", "<a <!--c-->>"}},
                            {"S:a|5 0 '/'", {"<a / >", "<a/ >", "<a//>"}},
                            {"S:a|5 0 '-'", {"<a-b/>"}},
                            {"S:a|5 0 'x'", {"<a></a x>"}},
                            {"S:a|5 1 '='", {"<a\n='1'/>"}},
                            {"S:a|5 0 '\xE2\x82\xAC'", {"<a \xE2\x82\xAC>"}}, // whole when it is UTF-8
                            {"S:a|5 0 '\xE2'", {"<a \xE2\x82", "<a \xE2\x82>"}},
                            {"S:a|6 1 'x'", {"<a x=\n1>", "<a x\n=>"}},
                            {"S:a|8 0 'x'", {"<a x>", "<a x/>", "<a x-y='1'>"}},
                            {"S:a|A:x=1|9 0 'x'", {"<a x='1' x='2'>", "<a x='1' x=2>"}},
                            {"S:a|E:a|W:\n\n|10 2 ''", {"<a/>\n\n<b/>"}}});
}

TEST(XmlParser, EveryTruncationIsReported) {
    std::string const text = "\xEF\xBB\xBF<?xml x='1'?><a x='&apos;' y=\"\"><!--c--> t&#x41;\xC3\xA9 <b/></a>";
    for (std::size_t length = 0; length < text.size(); ++length) {
        auto const expected = length < 8 ? "4 0 ''" : length < 16 ? "3 0 ''" : length == 16 ? "ok" : "1 0 ''";
        EXPECT_TRUE(outcome(text.substr(0, length)).ends_with(expected)) << length;
    }
}

// All texts of up to four of these characters: what is accepted opens and closes elements in pairs.
TEST(XmlParser, SmallTextsExhaustively) {
    std::string const alphabet = "<>/a ='&!-;";
    std::size_t accepted = 0;
    for (unsigned int length = 0, count = 1; length <= 4; ++length, count *= 11) {
        for (unsigned int number = 0; number < count; ++number) {
            std::string text = "<?xml?>";
            for (unsigned int digits = number, i = 0; i < length; ++i, digits /= 11) text += alphabet[digits % 11];
            std::string const result = outcome(text);
            if (!result.ends_with("ok")) continue;
            ++accepted;
            auto const start = result.find("S:"), end = result.find("E:");
            ASSERT_TRUE(start == end || (start < end && end == result.rfind("E:"))) << text;
        }
    }
    EXPECT_EQ(accepted, 1u + 8 + 64 + 512 + 4096 + 1); // any text without "<", ">" and "&"; <a/>
}

// A run of every kind with every byte behind it, at lengths and places on both sides of 16 and 64 bytes.
TEST(XmlParser, RunsEndAtTheRightByte) {
    auto const count = [](char const* bytes, int c) { return c && std::strchr(bytes, c) != nullptr; };
    for (unsigned int length :
         {1u, 2u, 3u, 7u, 8u, 15u, 16u, 17u, 47u, 48u, 63u, 64u, 65u, 127u, 128u, 129u, 200u}) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string const end(1, static_cast<char>(byte)), run(length, 'x'), white(length, ' ');
            bool const is_white = count(" \t\r\n", byte),
                       is_name = byte < 0x80 && (std::isalnum(byte) || byte == '_');
            std::string const line = byte == '\n' ? "1" : "0";
            auto const expect = [&](std::string const& input, std::string const& expected) {
                EXPECT_EQ(outcome("<?xml?>" + input), expected) << length << " then byte " << byte;
            };
            expect(run + end, byte == '<'   ? "T:" + run + "|1 0 ''"
                              : byte == '>' ? "5 0 '>'"
                              : byte == '&' ? "1 0 ''"
                              : is_white    ? "T:" + run + "|W:" + end + "|ok"
                                            : "T:" + run + end + "|ok");
            if (!count("<>&", byte)) {
                expect(white + end, is_white ? "W:" + white + end + "|ok" : "W:" + white + "|T:" + end + "|ok");
                expect("<a x='" + run + end + "'/>" + line, // the closing quote may be the byte itself
                       byte == '\'' ? "S:a|A:x=" + run + "|5 0 '\''"
                                    : "S:a|A:x=" + run + end + "|E:a|T:" + line + "|ok");
            }
            if (is_name) expect("<" + run + end + "/>", "S:" + run + end + "|E:" + run + end + "|ok");
            if (byte < 0x80 && !is_name && !is_white && !count("/>", byte)) {
                expect("<" + run + end + "/>", "S:" + run + "|5 0 '" + end + "'");
            }
            expect("<!--" + run + end + "-->\n>", "C:" + run + end + "|W:\n|5 1 '>'");
        }
    }
}

TEST(XmlParser, WidthIsUnlimited) {
    ustring8 wide("<?xml?><a");
    for (int i = 0; i < 100000; ++i) wide += " x" + std::to_string(i) + "=''";
    xml_parser parser;
    EXPECT_EQ(result_text(parser.parse(wide + "/>")), "ok");
    EXPECT_EQ(result_text(parser.parse(wide + "><b x3='' x777777='&lt;'/>&lt;</a>")), "ok"); // names of its own
    std::string own(" x99999=''");
    for (int i = 0; i < 20; ++i) own.insert(0, " y" + std::to_string(i) + "=''");
    EXPECT_EQ(result_text(parser.parse(wide + "><b" + own + "/></a>")), "ok");
    EXPECT_EQ(result_text(parser.parse(wide + " x3=''/>")), "9 0 'x3'");
    EXPECT_EQ(result_text(parser.parse(wide + " x77777=''/>")), "9 0 'x77777'");
}

// Each slot is told of its first event by a callback that does something to the parser, and then uses what it
// owns. Behind it the parser is as before.
class XmlParserCallbacks : public testing::TestWithParam<std::size_t> {
protected:
    using action = std::function<void(recorder&)>;
    using event_list = std::vector<std::string>;

    ustring8 const text = "<?xml?><a x='1'>t <b/><!--c--></a><!--d-->\n!";
    event_list const all = {"S:a", "A:x=1", "T:t", "W: ", "S:b", "E:b", "C:c", "E:a", "C:d", "W:\n", "T:!"};
    static constexpr int first_of[] = {0, 5, 1, 3, 2, 6}; // by slot, in that list

    std::size_t const slot = GetParam();
    event_list const before{all.begin(), all.begin() + first_of[slot]};
    event_list const rest{all.begin() + first_of[slot], all.end()};

    static std::string joined(std::initializer_list<event_list> lists) {
        std::string result;
        for (event_list const& list : lists)
            for (std::string const& event : list) result += event + "|";
        return result;
    }

    void expect(std::string const& events, std::string const& result, action const& act) const {
        recorder record;
        bool is_first = true;
        record.bind(slot, [&, owned = std::string(100, 'o')](auto const& event) {
            if (std::exchange(is_first, false)) act(record);
            record.add(owned.size() == 100 ? event : "lost");
        });
        std::string told;
        try {
            told = result_text(record.parser.parse(text));
        } catch (std::runtime_error const& thrown) {
            told = thrown.what();
        }
        EXPECT_EQ(told, result) << slot;
        EXPECT_EQ(record.events, events) << slot;
        record.events.clear();
        record.bind_all();
        EXPECT_EQ(result_text(record.parser.parse(text)), "ok");
        EXPECT_EQ(record.events, joined({all}));
    }
};

TEST_P(XmlParserCallbacks, MayThrow) {
    expect(joined({before}), "thrown", [](recorder&) { throw std::runtime_error("thrown"); });
    expect(joined({before}), "10 77 'mine'",
           [](recorder&) { throw parse_error(parse_error::data_after_root, 77, "mine"); });
    expect(joined({before}), "thrown", [](recorder& record) {
        for (std::size_t each = 0; each < recorder::slots; ++each) record.clear(each);
        throw std::runtime_error("thrown");
    });
}

TEST_P(XmlParserCallbacks, MayMoveTheirSlot) {
    auto const there_and_back = [](auto& own) {
        auto moved(std::move(own));
        EXPECT_FALSE(own);
        moved.swap(own);
        own.swap(moved);
        own = std::move(moved);
        EXPECT_TRUE(own);
    };
    expect(joined({all}), "ok", [&](recorder& record) {
        if (slot == 2) return there_and_back(record.parser.on_attribute);
        there_and_back(*record.with_text[slot]);
    });
}

TEST_P(XmlParserCallbacks, MayStartAnotherParse) {
    expect(joined({before, all, rest}), "ok", [this](recorder& record) { record.parser.parse(text); });
    expect(joined({before, {"W: "}, rest}), "ok", [](recorder& record) { // the inner parse changes the slots
        record.bind(3, [&record](auto const& event) {
            record.add(event);
            record.bind_all();
        });
        for (std::size_t each = 0; each < recorder::slots; ++each)
            if (each != 3) record.clear(each);
        EXPECT_EQ(result_text(record.parser.parse("<?xml?> <")), "1 0 ''");
    });
}

TEST_P(XmlParserCallbacks, MayClearAndReplaceAnySlot) {
    for (std::size_t other = 0; other < recorder::slots; ++other) {
        auto const changed = [&](bool is_replaced) {
            event_list result = {rest.front()};
            for (auto event = rest.begin() + 1; event != rest.end(); ++event) {
                bool const is_other = event->front() == "SEAWTC"[other];
                if (!is_other || is_replaced) result.push_back((is_other ? "new " : "") + *event);
            }
            return joined({before, result});
        };
        expect(changed(false), "ok", [other](recorder& record) { record.clear(other); });
        expect(changed(true), "ok", [other](recorder& record) {
            record.bind(other, [](auto const&) {}); // which goes unheard
            record.bind(other, [&record, other, owned = std::string(100, 'o')](auto const& event) {
                record.bind(other, [&record](auto const& later) { record.add("new " + later); });
                record.add(owned.size() == 100 ? "new " + event : "lost");
            });
        });
    }
}

INSTANTIATE_TEST_SUITE_P(Slots, XmlParserCallbacks, testing::Range<std::size_t>(0, recorder::slots));

// The forms for particular processors against the plain one: every byte in every place of a block.
TEST(XmlParser, FormsOfABlockAgree) {
    using namespace ZOLT_2_18::parser::_private;
    char block[64];
    for (unsigned first = 0; first < 256; ++first) {
        for (unsigned i = 0; i < sizeof block; ++i) block[i] = static_cast<char>(first + i * (first % 7 + 1));
        run_ends plain, common, best;
        find_run_ends_portably(block, plain);
        find_run_ends(block, common);
        best_run_end_finder()(block, best);
        for (auto const kind : {&run_ends::text, &run_ends::white_space, &run_ends::name, &run_ends::value}) {
            EXPECT_EQ(common.*kind, plain.*kind) << first;
            EXPECT_EQ(best.*kind, plain.*kind) << first;
        }
    }
}
