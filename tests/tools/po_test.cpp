// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "tools/catalog/catalog_texts.hpp"
#include "tools/catalog/po_exchange.hpp"
#include "tools/catalog/po_file.hpp"
#include "tools/catalog/po_rules.hpp"
#include "tools/run_program.hpp"

#include <zolt/i18n/message_catalogs.hpp>

#include <glob.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <set>

namespace {

using namespace tools;
using zolt::i18n::message_catalogs;
using zolt::i18n::message_item;
using zolt::i18n::message_t;

#define HEADER "<?xml version='1.0'?>\n<xmc version='1.1'>\n"

// Everything that a program can see of a message.
std::string dump(message_t const& message) {
    std::string text = message._orginal_locale() + "|" + message.name() + "|" + message.meta();
    for (message_item const& item : message) text += "|" + std::to_string(item.type()) + ":" + item.data();
    return text;
}

std::vector<std::string> dump_file(std::string const& path, char const* language) {
    message_catalogs catalogs;
    auto const result = catalogs.load_file(path, language);
    std::vector<std::string> lines{result.code() == message_catalogs::no_error ? "" : result.message()};
    for (auto const& [name, catalog] : catalogs) {
        for (auto const& [key, message] : *catalog) lines.push_back(name + "/" + dump(message));
    }
    return lines;
}

bool has_msgfmt() { return std::system("msgfmt --version >/dev/null 2>&1") == 0; }

// What gettext's own check says.
std::string msgfmt(std::string const& path) {
    std::string const log = path + ".log";
    int const status = std::system(("msgfmt -c -o /dev/null '" + path + "' >'" + log + "' 2>&1").c_str());
    return status == 0 ? "" : content_of(log) + "failed";
}

//--------------------------------------------------------------------------------------------------

struct po_row {
    char const* text;
    char const*
        entries; // "context/id/plural:text;text!~" with "!" for fuzzy and "~" for braces, or "line:column problem"
};
constexpr po_row po_rows[] = {
    {"msgid \"a\"\nmsgstr \"b\"", "a:b "},
    {"\xEF\xBB\xBFmsgid\t\"a\"\"b\"\r\n \"c\"\r\nmsgstr\"\"\r\n", "abc: "},
    {"#, c-format,fuzzy , python-brace-format\n#~ msgid \"gone\"\n#, python-brace-format\n#| msgid \"old\"\n"
     "msgctxt \"c\"\nmsgid \"a\"\nmsgid_plural \"as\"\nmsgstr[0] \"b\"\nmsgstr[1] \"bs\"\n# next\nmsgid \"z\"\n"
     "msgstr \"\"\n#, fuzzy\n\nmsgid \"y\"\nmsgstr \"x\"\n",
     "c/a/as:b;bs~ z: y:x! "},
    {"msgid \"\"\nmsgstr \"Language: de\\n\"\n", ""},
    {"msgctxt \"\"\nmsgid \"\"\nmsgstr \"x\"\n", "/:x "},
    {R"(msgid "\n\t\"\\\a\101\x41\xc3\xa4\1")"
     "\nmsgstr \"\"",
     "\n\t\"\\\aAA\xC3\xA4\1: "},
    {"msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=ISO-8859-2\\n\"\nmsgid \"a\"\nmsgstr \"\xB1\"",
     "a:\xC4\x85 "},
    {"msgid \"\"\nmsgstr \"charset=Shift_JIS\\n\"\nmsgid \"\x95\\\"\nmsgstr \"b\"", "\xE8\xA1\xA8:b "},
    {"\xEF\xBB\xBFmsgid \"\"\nmsgstr \"charset=ISO-8859-1\\n\"\nmsgid \"a\"\nmsgstr \"\xC3\xA4\"", "a:\xC3\xA4 "},
    {"# msgid\n\nmsgid \"charset=Shift_JIS\"\nmsgstr \"\xC3\xA4\"", "charset=Shift_JIS:\xC3\xA4 "},
    {"msgid \"\"\nmsgstr \"charset=iso8859_1\\n\"\nmsgid \"a\"\nmsgstr \"\xE4\"", "a:\xC3\xA4 "},
    {"msgid \"\"\nmsgstr \"charset=Latin1\\n\"\nmsgid \"a\"\nmsgstr \"\xE4\"", "a:\xC3\xA4 "},
    {"msgctxt \"c\" msgid\"a\" \"b\" msgstr \"c\"msgid \"d\"\n\"e\" msgstr \"f\"", "c/ab:c de:f "},
    {"# \xC3\xA4\r#, fuzzy\rmsgid \"a\"\rmsgstr \"b\"\r", "a:b! "},
    // faults
    {"msgid \"a\rmsgstr \"b\"", "1:7 0 "},
    {"msgid \"a\" x msgstr \"b\"\nmsgstr \"\"  msgstr \"c\"", "1:11 4 2:12 5 "},
    {"msgid \"a\nmsgstr \"b\"", "1:7 0 "},
    {"msgid \"a\\", "1:9 1 1:1 6 "},
    {"msgid \"\\q\"\nmsgstr \"\\0\"\nmsgid \"\\400\"\nmsgstr \"\\x\"\nmsgid \"\\x100\"\nmsgstr \"\"",
     "1:8 1 2:9 1 3:8 1 4:9 1 5:8 1 "},
    {"msgid \"\\4\"\nmsgstr \"a\"", "1:7 2 "},
    {"msgid \"a\"\nmsgstr \"\\355\\240\\200\"\nmsgid \"b\"\nmsgstr \"\\300\\200\"\n", "1:1 3 3:1 3 "},
    {"msgid \"a\"\nmsgstr \"b\" c\nmsgid\n msg \"\"", "2:12 4 3:6 4 4:2 4 3:1 6 "},
    {"\"a\"\nmsgstr \"b\"\nmsgid \"a\"\nmsgstr[0] \"\"\nmsgstr \"b\"\nmsgstr \"c\"\nmsgid_plural \"d\"\n",
     "1:1 5 2:1 5 4:1 5 6:1 5 7:1 5 "},
    {"msgid \"a\"\nmsgid \"b\"\nmsgctxt \"c\"\n", "1:1 6 2:1 6 3:1 6 "},
    {"msgid \"\"\nmsgstr \"charset=EBCDIC\\n\"", "1:1 7 "},
    {"msgid \"\"\nmsgstr \"charset=gb2312\\n\"\nmsgid \"\xFF\xFF?\"\nmsgstr \"\"", "1:1 8 "},
};

std::string describe(po_file const& file) {
    std::string result;
    for (po_entry const& entry : file.entries) {
        if (entry.context) result += *entry.context + "/";
        result += entry.id + (entry.plural_id ? "/" + *entry.plural_id : std::string());
        for (std::size_t i = 0; i != entry.texts.size(); ++i) result += (i ? ";" : ":") + entry.texts[i];
        result += std::string(entry.is_fuzzy ? "!" : "") + (entry.is_brace_format ? "~ " : " ");
    }
    if (!file.faults.empty()) result.clear();
    for (po_fault const& fault : file.faults) {
        result += std::to_string(fault.line) + ":" + std::to_string(fault.column) + " " +
                  std::to_string(static_cast<int>(fault.problem)) + " ";
    }
    return result;
}

TEST(PoFile, ReadsEntriesAndFindsFaults) {
    for (auto const& [text, entries] : po_rows) EXPECT_EQ(entries, describe(read_po(text))) << text;
    EXPECT_EQ("1:7 2 ", describe(read_po({"msgid \"\0\"\nmsgstr \"a\"", 20})));
    std::string many;
    for (int i = 0; i != 100; ++i) many += "x\n";
    EXPECT_EQ(0u, read_po(many).unread_line);
    EXPECT_EQ(100u, read_po(many + "x\n").faults.size());
    EXPECT_EQ(101u, read_po(many + "x\n").unread_line);
    for (std::string wide : {"\xFF\xFE", "\xFE\xFF"}) { // UTF-16, up to its last unit
        bool const is_little = wide[0] == '\xFF';
        for (char16_t const c : std::u16string_view(u"msgid \"a\" msgstr \"\u00E4\xD83D\xDE00\""))
            for (int const shift : {is_little ? 0 : 8, is_little ? 8 : 0}) wide += static_cast<char>(c >> shift);
        EXPECT_EQ("a:\xC3\xA4\xF0\x9F\x98\x80 ", describe(read_po(wide)));
        EXPECT_EQ("1:1 8 ", describe(read_po(wide.substr(0, wide.size() - 1))));
        EXPECT_EQ("1:1 8 ", describe(read_po(wide.substr(0, wide.size() - 4))));
    }
    for (auto const& row : po_rows) { // every start of every file
        std::string_view const text = row.text;
        for (std::size_t size = 0; size != text.size(); ++size) {
            std::vector<char> const exact(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size));
            read_po({exact.data(), size});
        }
    }
}

//--------------------------------------------------------------------------------------------------

// All texts of up to four of these, alone and between placeholders.
TEST(PoExchange, BringsBackEveryText) {
    constexpr std::string_view letters = "a \n\t{}<\"\\";
    std::vector<std::string> texts{""};
    for (std::size_t i = 0; i != texts.size() && texts[i].size() < 4; ++i) {
        for (char const letter : letters) texts.push_back(texts[i] + letter);
    }
    catalog_writer writer;
    po_importer importer("de", std::nullopt, false);
    std::map<std::string, std::string> expected;
    std::vector<po_message> imported;
    ustring8 file;
    for (std::size_t i = 0; i != texts.size(); ++i) {
        message_t::items_type items;
        if (i % 2) items.emplace_back("x\1base\1h\"e\n", message_item::int_);
        if (!texts[i].empty()) items.emplace_back(texts[i]);
        if (i % 3) items.emplace_back("x", message_item::string);
        message_t message(std::to_string(i), items, texts[i]);
        message._orginal_locale("de");
        append_po(file, to_po_entry("a/%", i % 5 ? &message : nullptr, &message));
        expected[message.name()] = dump(message);
    }
    po_file const read = read_po(file);
    ASSERT_EQ(texts.size(), read.entries.size());
    for (po_entry const& entry : read.entries)
        EXPECT_EQ(po_importer::result::imported, importer.add(entry, "", imported));
    for (po_message const& message : imported) writer.add(message.catalog, message.message);
    std::string const path = testing::TempDir() + "zolt_po_texts.xmc";
    std::ofstream(path) << writer.text();
    message_catalogs catalogs;
    ASSERT_EQ(message_catalogs::no_error, catalogs.load_file(path, "de").code());
    for (auto const& [name, text] : expected) EXPECT_EQ(text, dump(catalogs.message("a/%", ustring8(name))));
    EXPECT_EQ(texts.size(), catalogs.count("a/%"));
    std::filesystem::remove(path);
}

struct name_row {
    char const* entries; // of a foreign file
    char const* names;   // of the messages that come of them
};
constexpr name_row name_rows[] = {
    {"msgid \"Save %s\"\nmsgstr \"x\"\n", "Save %s=x"},
    {"msgctxt \"a|b\"\nmsgid \"c\"\nmsgstr \"x\"\nmsgctxt \"a\"\nmsgid \"b|c\"\nmsgstr \"y\"\n",
     "a|b|c=x a|b|c#2=y"},
    {"msgid \"f\"\nmsgid_plural \"fs\"\nmsgstr[0] \"x\"\nmsgstr[1] \"\"\nmsgstr[2] \"z\"\n", "f[0]=x f[2]=z"},
    {"#, fuzzy\nmsgid \"a\"\nmsgstr \"b\"\n#~ msgid \"c\"\n#~ msgstr \"d\"\nmsgid \"e\"\nmsgstr \"\"\n", ""},
    {"msgid \"{a}\"\nmsgstr \"{a}\"\n", "{a}={a}"},
    {"#, python-brace-format\nmsgid \"{a} {} {0}\"\nmsgstr \"{}{a}{{}}{}{b:>5}\"\n",
     "{a} {} {0}=?0??a?{}?1?{b:>5}"},
};

TEST(PoExchange, NamesForeignEntries) {
    for (auto const& [entries, names] : name_rows) {
        po_importer importer("de", "app", false);
        std::vector<po_message> messages;
        for (po_entry const& entry : read_po(entries).entries) importer.add(entry, "", messages);
        std::string result;
        for (po_message const& found : messages) {
            result += (result.empty() ? "" : " ") + found.message.name() + "=";
            for (message_item const& item : found.message)
                result += item.type() == message_item::value ? item.data() : "?" + item.data() + "?";
        }
        EXPECT_EQ(names, result) << entries;
    }
}

//--------------------------------------------------------------------------------------------------

using PoCommands = in_directory;

constexpr char two_languages[] = HEADER
    "<catalog name='app' lang='en'>\n"
    "<msg name='size' meta='shown at the end'>{<arg name='s' type='mem' precision='1'/> <arg name='s' "
    "type='mem_unit'"
    " precision='1'/>}<br/></msg>\n"
    "<msg name='new'>New &amp; &quot;good&quot;</msg>\n<msg name='edge'>End<br/></msg>\n<msg "
    "name='none'/>\n</catalog>\n"
    "<catalog name='app' lang='de'>\n"
    "<msg name='size'>{<arg name='s' type='mem' precision='2'/> <arg name='s' type='mem_unit' precision='1'/>}<br/>"
    "</msg>\n<msg name='edge'>Ende</msg>\n<msg name='none' meta='C:\\'> <!-- --></msg>\n"
    "<msg name='odd' meta='&quot;m&#10; '>a<arg name='x y' base='&quot;'/><arg name='v' type='value'/> b<arg "
    "type='int'/>"
    "<arg name='a&#1;b' type='date'/>&#32;&nbsp;&#9;c </msg>\n</catalog>\n</xmc>\n";

TEST_F(PoCommands, ExportsWhatTranslatorsNeed) {
    store(two_languages, "a b.xmc");
    std::string const head = "msgid \"\"\nmsgstr \"\"\n\"Project-Id-Version: \\n\"\n\"PO-Revision-Date: \\n\"\n"
                             "\"Last-Translator: \\n\"\n\"Language-Team: \\n\"\n\"Language: de\\n\"\n"
                             "\"MIME-Version: 1.0\\n\"\n\"Content-Type: text/plain; charset=UTF-8\\n\"\n"
                             "\"Content-Transfer-Encoding: 8bit\\n\"\n\"X-Source-Language: en\\n\"\n\n";
    std::string const entries = R"(#. {s} = s:memory precision=2
#. {s__mem_unit} = s:memory_unit precision=1
#. note: shown at the end
#: ⁨a b.xmc⁩:4
#, python-brace-format
msgctxt "app/size"
msgid "{{{s} {s__mem_unit}}}\n"
msgstr "{{{s} {s__mem_unit}}}\n"

#: ⁨a b.xmc⁩:5
msgctxt "app/new"
msgid "New & \"good\""
msgstr ""

#. zolt: kept
#: ⁨a b.xmc⁩:6
#, fuzzy
msgctxt "app/edge"
msgid "End\n"
msgstr "Ende"

#. meta: "C:\\"
#. zolt: empty
#: ⁨a b.xmc⁩:7
msgctxt "app/none"
msgid ""
msgstr ""

#. {x_y} = "x y":string base="\""
#. {v} = v:value
#. {_} = "":int
#. {a} = a:date b
#. meta: "\"m\n "
#. zolt: no reference
#: ⁨a b.xmc⁩:13
#, python-brace-format
msgctxt "app/odd"
msgid "a{x_y}{v} b{_}{a}  \tc "
msgstr "a{x_y}{v} b{_}{a}  \tc "
)";
    program_run const shown = run("catalog export-po --lang de 'a b.xmc'");
    EXPECT_EQ(0, shown.status);
    EXPECT_EQ(
        "a b.xmc:11:1: warning: message \"edge\" is marked as fuzzy: its placeholders or the line ends at its edges"
        " are not those of the reference [po-fuzzy]\n"
        "a b.xmc:13:1: note: message \"odd\" of language \"de\" has no reference text [po-reference]\n",
        shown.err);
    EXPECT_EQ(head + entries, shown.out);
}

// Export, gettext's check and copy, import: the same messages. So it is with the program's own catalogs, too.
TEST_F(PoCommands, BringBackEveryMessage) {
    bool const is_checked = has_msgfmt();
    store(two_languages, "two.xmc");
    std::string const sources[] = {directory + "/two.xmc", ZOLT_SOURCE_DIR "/tools/catalogs/zolt.de.xmc",
                                   ZOLT_SOURCE_DIR "/tests/tools/data/clean/main.xmc",
                                   ZOLT_SOURCE_DIR "/examples/catalogs/tidemark.xmc"};
    for (std::string const& source : sources) {
        SCOPED_TRACE(source);
        std::filesystem::create_directory(directory + "/po");
        EXPECT_EQ(0, run("catalog export-po --dir po " + source).status);
        std::string files;
        std::vector<std::string> languages;
        for (auto const& entry : std::filesystem::directory_iterator(directory + "/po")) {
            files += " " + entry.path().string();
            languages.push_back(entry.path().stem().string());
        }
        ASSERT_NE("", files);
        if (is_checked) {
            for (auto const& entry : words_of(files)) {
                EXPECT_EQ("", msgfmt(entry)) << entry;
                EXPECT_EQ(0, std::system(("msgcat -o '" + entry + "' '" + entry + "'").c_str()));
            }
        }
        program_run const imported = run("catalog import-po -o back.xmc" + files);
        EXPECT_EQ(0, imported.status) << imported.err;
        expect("catalog fmt --check back.xmc", 0, "");
        for (std::string const& language : languages)
            EXPECT_EQ(dump_file(source, language.c_str()), dump_file(directory + "/back.xmc", language.c_str()));
        std::filesystem::remove_all(directory + "/po");
    }
}

struct tree_row {
    char const* first; // the content of t/1.xmc
    char const* second;
    char const* finding; // the start of the only one
};
constexpr tree_row tree_rows[] = {
    // Of two messages the one that the library serves comes back.
    {"<catalog name='a' lang='en'><msg name='m'>first</msg></catalog>",
     "<catalog name='a' lang='en'><msg name='m'>second</msg></catalog>",
     "t/1.xmc:3:29: warning: message \"m\" of language \"en\" gives way to"},
    {"<catalog name='a' lang='en'><msg name='m'/>\n<msg name='n'>first</msg></catalog>",
     "<catalog name='a' lang='en'><msg name='m'>second</msg><msg name='o'/></catalog>", "t/1.xmc:3:29: warning: "},
    {"<include file='2.x'/>\n<catalog name='a' lang='en'><msg name='m'>first</msg></catalog>",
     "<catalog name='a' lang='en'><msg name='m'>second</msg></catalog>", "t/1.xmc:4:29: warning: "},
    {"<catalog name='a' lang='en'><msg name='m'>first</msg></catalog>\n<include file='2.x'/>",
     "\n<catalog name='a' lang='en'><msg name='m'>second</msg></catalog>", "t/2.x:4:29: warning: "},
    // What the library refuses is not exported.
    {"<catalog name='a' lang='en'><msg name='m'/></catalog>\n<include file='3.x'/>", "", "t/1.xmc:4:1: error: "},
    {"<catalog name='a' lang='de'><msg name='m'/></catalog>\n<include file='2.x'/>", "<include file='1.xmc'/>",
     "t/2.x:3:1: error: "},
    {"<catalog name='a' lang='en'><msg name='m'>\n<b/></msg></catalog>", "", "t/1.xmc:4:1: error: "},
    {"<catalog name='a' lang='en'>", "", "t/1.xmc:3:1: error: "},
};

TEST_F(PoCommands, ExportWhatTheLibraryServes) {
    for (auto const& [first, second, finding] : tree_rows) {
        SCOPED_TRACE(first);
        std::filesystem::create_directory(directory + "/t");
        store(std::string(HEADER) + first + "</xmc>", "t/1.xmc");
        bool const is_included = std::strstr(first, "include") != nullptr;
        store(std::string(HEADER) + second + "</xmc>", is_included ? "t/2.x" : "t/2.xmc");
        program_run const exported = run("catalog export-po --lang en -o en.po t");
        bool const is_refused = std::strstr(finding, ": error") != nullptr;
        EXPECT_EQ(is_refused ? 1 : 0, exported.status);
        EXPECT_EQ(finding, exported.err.substr(0, std::strlen(finding)));
        EXPECT_EQ(is_refused, !std::filesystem::exists(directory + "/en.po"));
        if (!is_refused) {
            EXPECT_EQ(0, run("catalog import-po -o back.xmc en.po").status);
            expect("catalog diff t back.xmc", 0, "");
        }
        std::filesystem::remove_all(directory + "/t");
        std::filesystem::remove(directory + "/en.po");
    }
    std::filesystem::create_directories(directory + "/po/en.po"); // all files or none
    expect("catalog export-po --dir po " ZOLT_SOURCE_DIR "/tools/catalogs", 2, "",
           "zolt: \"po/en.po\" cannot be written: Is a directory\n");
    EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(directory + "/po"), {}));
    // A directory is made, with those above it; it is gone again when a path becomes too long for a file.
    expect("catalog export-po --lang en --dir new/po " ZOLT_SOURCE_DIR "/tools/catalogs", 0, "");
    EXPECT_TRUE(std::filesystem::exists(directory + "/new/po/en.po"));
    std::string deep = "deep";
    while (deep.size() < 3900) deep += "/" + std::string(100, 'd');
    deep += "/" + std::string(4090 - deep.size(), 'd');
    EXPECT_EQ(2, run("catalog export-po --dir " + deep + " " ZOLT_SOURCE_DIR "/tools/catalogs").status);
    EXPECT_FALSE(std::filesystem::exists(directory + "/deep"));
}

struct json_row {
    char const* command;
    char const* text; // of the file f
    int status;
    char const* json;
};
constexpr json_row json_rows[] = {
    {"export-po --dir po f",
     HEADER "<catalog name='a' lang='de-AT'><msg name='m'/></catalog><catalog name='a' lang='en'>"
            "<msg name='m'>Hi <arg name='n' type='int'/></msg></catalog></xmc>",
     0,
     R"({"languages": [{"language": "de-AT","file": "po/de_AT.po","entries": [{"context": "a/m","id": "Hi {n}",)"
     R"("text": "","fuzzy": false,"references": ["f:3"],"comments": ["{n} = n:int","zolt: empty"]}]},)"
     R"({"language": "en","file": "po/en.po","entries": [{"context": "a/m","id": "Hi {n}","text": "Hi {n}",)"
     R"("fuzzy": false,"references": ["f:3"],"comments": ["{n} = n:int"]}]}],)"},
    {"export-po f",
     HEADER "<catalog lang='de'><msg name='m'>a</msg></catalog><catalog lang='en'><msg name='m'>"
            "<br/></msg></catalog></xmc>",
     0,
     R"({"languages": [{"language": "de","entries": [{"context": "/m","id": "\u000a","text": "a","fuzzy": true,)"
     R"("references": ["f:3"],"comments": ["zolt: kept"]}]},{"language": "en","entries": [{"context": "/m",)"
     R"("id": "\u000a","text": "\u000a","fuzzy": false,"references": ["f:3"],"comments": []}]}],"errors": 0,)"
     R"("warnings": 1,"notes": 0,"findings": [{"file": "f","line": 3,"column": 20,"severity": "warning",)"
     R"("rule": "po-fuzzy",)"},
    {"export-po f", HEADER "<b/></xmc>", 1,
     R"({"errors": 1,"warnings": 0,"notes": 0,"findings": [{"file": "f","line": 3,"column": 1,"severity": "error",)"
     R"("rule": "load",)"},
    {"import-po --lang de f",
     "#. {c} = c:int\n#, python-brace-format\nmsgctxt \"a/b\"\nmsgid \"{c}\"\nmsgstr \"x{c}\"\n", 0,
     R"({"languages": ["de"],"catalogs": [{"catalog": "a","messages": [{"name": "b","language": "de","text": )"
     R"("x{c:int}","placeholders": [{"name": "c","type": "int"}]}]}],)"},
    {"import-po --lang de f", "msgctxt \"a\"\nmsgid \"c\"\nmsgstr \"d\"\n", 1,
     R"({"errors": 1,"warnings": 0,"notes": 0,"findings": [{"file": "f","line": 1,"column": 1,"severity": "error",)"
     R"("rule": "po-context",)"},
    {"import-po --lang de f", "", 1, "{"},
};

// With -o, too, since it is a report. Where a row tells of no finding there is none.
TEST_F(PoCommands, WriteJson) {
    for (auto const& [command, text, status, json] : json_rows) {
        SCOPED_TRACE(json);
        store(text);
        program_run const shown = run(std::string("catalog ") + command + " --format=json -o r");
        EXPECT_EQ(status, shown.status);
        std::string const start = json;
        std::string const written = compact(content("r"));
        bool const has_finding = start.find("\"findings\"") != std::string::npos;
        std::string const expected =
            has_finding ? start : start + R"("errors": 0,"warnings": 0,"notes": 0,"findings": []})";
        EXPECT_EQ(expected, has_finding ? written.substr(0, start.size()) : written);
        EXPECT_EQ(start == "{" ? "zolt: there are no translations to import; nothing is written\n" : "", shown.err);
    }
}

struct finding_row {
    char const* command;
    char const* text; // of the file f
    int status;
    char const* finding;
};
constexpr finding_row finding_rows[] = {
    {"export-po --dir . f",
     HEADER "<catalog lang='en'>\n  <msg name='n'/> <msg name='m'>\xFF</msg></catalog></xmc>", 1,
     "f:4:19: error: message \"m\": a PO file holds UTF-8 without NUL and U+0004 only [po-text]\n"},
    {"export-po --dir . f", HEADER "<catalog lang='e n'><msg name='m'/></catalog></xmc>", 1,
     "f:3:21: error: message \"m\": a PO file cannot name the language \"e n\" [po-language]\n"},
    {"export-po --dir . f", HEADER "<catalog lang='en'><msg name='m'/>\n<msg name='m'/></catalog></xmc>", 0,
     "f:4:1: warning: message \"m\" of language \"en\" gives way to another one of this name; it is left "
     "out [duplicate-message]\n"},
    {"export-po --dir . f",
     HEADER "<catalog lang='en'><!--zolt-ignore po-text: no text--><msg name='m'>\xFF</msg><!--zolt-ignore "
            "duplicate-message--><msg name='n'><!--zolt-ignore duplicate-message--></msg>\n<msg "
            "name='n'/></catalog></xmc>",
     0,
     "f:4:1: warning: message \"n\" of language \"en\" gives way to another one of this name; it is left "
     "out [duplicate-message]\n"},
    {"export-po f", HEADER "</xmc>", 2,
     "zolt: name a language with --lang, or with --dir a directory for all of them\n"},
    {"export-po --dir . g", "", 2, "zolt: there is no file or directory \"g\"\n"},
    {"import-po --lang de f", "msgctxt \"a/b\"\nmsgid \"c\"\nmsgstr \"d\"\n", 0, ""},
    {"import-po f", "msgctxt \"a/b\"\nmsgid \"c\"\nmsgstr \"d\"\n", 1,
     "f:1:1: error: the header names no language; give one with --lang [po-language]\n"},
    {"import-po --lang de f", "\nmsgctxt \"a\"\nmsgid \"c\"\nmsgstr \"d\"\n", 1,
     "f:2:1: error: msgctxt is not \"catalog/message\"; --catalog takes such entries [po-context]\n"},
    {"import-po --lang de --catalog a f", "msgid \"c\"\nmsgstr \"d\"\n\nmsgid \"c\"\nmsgstr \"e\"\n", 1,
     "f:4:1: error: there is such an entry already [duplicate-message]\n"},
    {"import-po --lang de --catalog a f", "#, python-brace-format\nmsgid \"{c}\"\nmsgstr \"{d}\"\n", 0,
     "f:2:1: warning: the placeholders of msgstr are not those of msgid [placeholder-set]\n"},
    {"import-po --lang de f",
     "#. {n} = num:int base=hex\n#, python-brace-format\nmsgctxt \"a/b\"\nmsgid \"x {n}\"\nmsgstr \"no\"\n", 0,
     "f:3:1: warning: the placeholders of msgstr are not those of msgid [placeholder-set]\n"},
    {"import-po --lang de f", "#, python-brace-format\nmsgctxt \"a/b\"\nmsgid \"{n}\"\nmsgstr \"{n}{n!r}\"\n", 0,
     "f:2:1: warning: a brace in msgstr becomes text: it belongs to no placeholder and is not doubled "
     "[po-brace]\n"},
    {"import-po --lang de f",
     "#. {n} = a:int 1x=5 b<c=5\n#, python-brace-format\nmsgctxt \"a/b\"\nmsgid \"{n}\"\nmsgstr \"{n}\"\n\n"
     "#. {n} = num:bogus\n#, python-brace-format\nmsgctxt \"a/c\"\nmsgid \"{n}\"\nmsgstr \"{n}\"\n",
     0,
     "f:3:1: warning: a line with \"#.\" does not describe a placeholder, which becomes a string of that name "
     "[po-note]\n"
     "f:9:1: warning: a line with \"#.\" does not describe a placeholder, which becomes a string of that name "
     "[po-note]\n"},
    {"import-po --lang de --catalog a f", // a program's own note, and a form for a number that it does not show
     "#. {n} = number\n#, python-brace-format\nmsgid \"{n} file\"\nmsgid_plural \"{n} files\"\nmsgstr[0] "
     "\"{{}}\"\n",
     0, ""},
    {"import-po --lang de f",
     "#, fuzzy\nmsgctxt \"a/b\"\nmsgid \"c\"\nmsgstr \"d\"\n\nmsgctxt \"a/e\"\nmsgid \"e\"\nmsgstr \"\"\n", 1,
     "zolt: there are no translations to import; nothing is written\n"},
    {"import-po --lang de f", "msgid \"c\"\nmsgstr \"d\n", 1,
     "f:2:8: error: the string is not closed in its line [po-syntax]\n"},
    {"import-po --lang de f", "#, python-brace-format\nmsgctxt \"a/b\"\nmsgid \"\"\nmsgstr \"{d}\"\n", 0, ""},
    {"import-po --lang ../de f", "", 2, "zolt: a PO file cannot name the language \"../de\"\n"},
    {"export-po --lang ../de --dir . f", HEADER "</xmc>", 2,
     "zolt: a PO file cannot name the language \"../de\"\n"},
    {"export-po --dir . -o g f", HEADER "</xmc>", 2,
     "zolt: this command writes its own file; -o takes only what --format=json tells\n"},
    {"export-po --dir . --ignore=load f", HEADER "<catalog/><b/></xmc>", 1,
     "zolt: there are no messages to write\n"},
    {"export-po --dir f/po f", HEADER "<catalog lang='en'><msg name='m'>a</msg></catalog></xmc>", 2,
     "zolt: the directory \"f/po\" cannot be made: Not a directory\n"},
    {"export-po --dir '' f", HEADER "<catalog lang='en'><msg name='m'>a</msg></catalog></xmc>", 2,
     "zolt: the directory \"\" cannot be made: No such file or directory\n"},
    {"import-po -v --lang de f", "msgctxt \"a/b\"\nmsgid \"c\"\nmsgstr \"d\"\n", 0,
     "zolt: f: 1 message, 0 untranslated, 0 fuzzy\n"},
    // --ignore by rule, catalog and message, and as far as there is one by msgctxt
    {"import-po --lang de --ignore=placeholder-set:a%/x/y f",
     "#, python-brace-format\nmsgctxt \"a%25/x/y\"\nmsgid \"{c}\"\nmsgstr \"d\"\n\n"
     "#, python-brace-format\nmsgctxt \"a/x\"\nmsgid \"{c}\"\nmsgstr \"d\"\n",
     0, "f:7:1: warning: the placeholders of msgstr are not those of msgid [placeholder-set]\n"},
    {"import-po --lang de --ignore=po-context:a f",
     "msgctxt \"a\"\nmsgid \"c\"\nmsgstr \"d\"\n\nmsgctxt \"a/b\"\nmsgid \"c\"\nmsgstr \"d\"\n", 0, ""},
    {"import-po --lang de --catalog x --ignore=duplicate-message:x/c f",
     "msgid \"c\"\nmsgstr \"d\"\n\nmsgid \"c\"\nmsgstr \"e\"\n", 0, ""},
    {"import-po --lang de g", "", 2, "zolt: \"g\" cannot be read: No such file or directory\n"},
};

TEST_F(PoCommands, FindFaults) {
    std::set<std::string> found[2]; // by export and import
    for (auto const& [command, text, status, finding] : finding_rows) {
        SCOPED_TRACE(text);
        store(text);
        program_run const shown = run(std::string("catalog ") + command);
        EXPECT_EQ(status, shown.status);
        EXPECT_EQ(finding, shown.err);
        EXPECT_EQ(status == 0 && command[0] == 'i', !shown.out.empty());
        EXPECT_EQ(status == 0 && command[0] == 'e', std::filesystem::remove(directory + "/en.po"));
        std::string const rule = shown.err.substr(shown.err.rfind('[') + 1);
        if (rule.ends_with("]\n")) found[command[0] == 'i'].insert(rule.substr(0, rule.size() - 2));
    }
    found[0].insert({"load", "po-fuzzy", "po-reference"}); // in other tests
    for (bool const is_import : {false, true}) {
        std::set<std::string> listed;
        for (rule const& each : is_import ? import_po_rules() : export_po_rules()) listed.emplace(each.name);
        EXPECT_EQ(listed, found[is_import]);
    }
    // A hundred faults of a file and a word about the others, unless they are of no interest.
    std::string lines;
    std::string entries;
    for (int i = 0; i != 102; ++i) {
        lines += "x\n";
        entries += "msgctxt \"" + std::to_string(i) + "\" msgid \"\" msgstr \"x\"\n";
    }
    std::string const last =
        "f:101:1: error: these are 100 faults already; the rest of the file is not looked at [po-syntax]\n";
    for (std::string const& text : {lines, entries}) {
        store(text);
        std::string const shown = run("catalog import-po --lang de f").err;
        EXPECT_EQ(101, std::count(shown.begin(), shown.end(), '\n')) << shown;
        EXPECT_TRUE(shown.ends_with(last)) << shown;
    }
    EXPECT_EQ("zolt: there are no translations to import; nothing is written\n",
              run("catalog import-po --lang de --ignore=po-context f").err);
}

//--------------------------------------------------------------------------------------------------

// Compiled catalogs of other programs: the pairs of texts that they hold.
std::vector<std::pair<std::string, std::string>> read_compiled(std::string const& content) {
    auto const number = [&](std::size_t at) {
        std::uint32_t value = 0;
        if (at + 4 <= content.size()) std::memcpy(&value, content.data() + at, 4);
        return static_cast<std::size_t>(value);
    };
    auto const text = [&](std::size_t table, std::size_t i) {
        return content.substr(std::min(content.size(), number(table + 8 * i + 4)), number(table + 8 * i));
    };
    std::vector<std::pair<std::string, std::string>> pairs;
    if (number(0) != 0x950412de) return pairs;
    for (std::size_t i = 0; i != number(8); ++i) pairs.emplace_back(text(number(12), i), text(number(16), i));
    return pairs;
}

// The compiled catalogs in UTF-8 of the program here that has five with over a thousand messages.
std::vector<std::string> installed_catalogs() {
    std::map<std::string, std::vector<std::string>> programs;
    for (char const* const pattern :
         {"/usr/share/locale/*/LC_MESSAGES/*.mo", "/usr/share/vim/*/lang/*/LC_MESSAGES/*.mo"}) {
        glob_t found{};
        if (::glob(pattern, 0, nullptr, &found) == 0) {
            for (std::size_t i = 0; i != found.gl_pathc; ++i) {
                std::filesystem::path const path = found.gl_pathv[i];
                if (std::filesystem::is_regular_file(path) && std::filesystem::file_size(path) > 100000)
                    programs[path.filename()].push_back(path);
            }
        }
        ::globfree(&found);
    }
    for (auto const& [name, paths] : programs) {
        std::vector<std::string> usable;
        for (std::string const& path : paths) {
            auto const pairs = read_compiled(content_of(path));
            bool const is_usable =
                pairs.size() > 1000 && pairs[0].second.find("charset=UTF-8") != std::string::npos;
            if (is_usable) usable.push_back(path);
            if (usable.size() == 5) return usable;
        }
    }
    return {};
}

TEST_F(PoCommands, BringBackTheCatalogsOfOtherPrograms) {
    std::vector<std::string> const paths = installed_catalogs();
    if (paths.empty() || !has_msgfmt())
        GTEST_SKIP() << "no program with five large catalogs is installed, or no gettext";
    std::filesystem::create_directory(directory + "/xmc");
    std::filesystem::create_directory(directory + "/po");
    std::size_t found = 0;
    std::size_t missed = 0;
    for (std::size_t i = 0; i != paths.size(); ++i) {
        SCOPED_TRACE(paths[i]);
        std::string const language = "l" + std::to_string(i);
        std::string const plain = directory + "/" + language;
        ASSERT_EQ(0, std::system(("msgunfmt '" + paths[i] + "' >'" + plain + "'").c_str()));
        program_run const run_of_it =
            run("catalog import-po --lang " + language + " --catalog app -o xmc/" + language + ".xmc " + plain);
        ASSERT_EQ(0, run_of_it.status) << run_of_it.err;
        message_catalogs catalogs;
        catalogs.load(directory + "/xmc/" + language + ".xmc", language);
        for (auto const& [id, text] : read_compiled(content_of(paths[i]))) {
            bool const is_plural = id.find('\0') != std::string::npos;
            std::string name = id.substr(0, id.find('\0'));
            if (name.empty()) continue;
            std::replace(name.begin(), name.end(), '\4', '|');
            if (is_plural) name += "[0]";
            std::string const expected = text.substr(0, text.find('\0'));
            bool const is_there = catalogs.message("app", ustring8(name)).as_string({}) == expected;
            ++(is_there ? found : missed);
        }
    }
    EXPECT_EQ(0u, missed);
    EXPECT_LT(5000u, found);
    EXPECT_EQ(0, run("catalog export-po --dir po --ref l0 xmc").status);
    for (std::size_t i = 0; i != paths.size(); ++i)
        EXPECT_EQ("", msgfmt(directory + "/po/l" + std::to_string(i) + ".po"));
}

} // namespace
