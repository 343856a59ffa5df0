// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "tools/run_program.hpp"

#include <algorithm>

namespace {

#define NOT_VALID "error: message_catalogs::result_type - XMC file is not valid: xmc_file_loader::load_error - "
#define NOT_FORMED                                                                                                 \
    "error: message_catalogs::result_type - XML parse error, XML file not well formed: "                           \
    "xmc_file_loader::load_error - "
#define NOT_FOUND                                                                                                  \
    "error: message_catalogs::result_type - File was not found on disk: xmc_file_loader::load_error - "

// Files in data/faults, and the first line of output behind the name.
constexpr std::pair<char const*, char const*> fault_rows[] = {
    // not well-formed: the line is the file's, not the parser's count
    {"no_header", ".xmc:1:1: " NOT_FORMED "Valid XML header not found"},
    {"mismatched_end", ".xmc:10:1: " NOT_FORMED "Mismatched end element \"mgs\" was found"},
    {"unknown_entity", ".xmc:4:1: " NOT_FORMED "Unknown enity being parsed"},
    {"unterminated_comment", ".xmc:3:1: " NOT_FORMED "Unexpected end of file during XML parsing"},
    {"unclosed_element", ".xmc:4:1: " NOT_FORMED "Unexpected end of file during XML parsing"},
    // no catalog file
    {"wrong_root", ".xmc:4:1: " NOT_VALID "Not XMC file, root element is not XMC but \"catalogs\""},
    {"wrong_version", ".xmc:3:1: " NOT_VALID "XMC version \"2.0\" is not supported"},
    {"no_catalog",
     ".xmc:2:1: error: message_catalogs::result_type - No catalog was loaded: xmc_file_loader::load_error "
     "- No catalog was loaded in file: \"faults/no_catalog.xmc\""},
    {"bad_root_child", ".xmc:6:1: " NOT_VALID "Invalid element \"msg\""},
    {"bad_catalog_attribute", ".xmc:4:1: " NOT_VALID "Invalid attibute \"language\""},
    {"bad_catalog_child", ".xmc:5:1: " NOT_VALID "Expected catalog end tag not found for catalog \"a\""},
    {"bad_message_attribute", ".xmc:5:1: " NOT_VALID "Invalid attibute \"note\""},
    {"bad_message_child", ".xmc:6:1: " NOT_VALID "Invalid element \"b\""},
    {"br_attribute", ".xmc:5:1: " NOT_VALID "Invalid attibute \"clear\""},
    {"br_text", ".xmc:5:1: " NOT_VALID "Expected BR end tag not found"},
    {"element_in_argument", ".xmc:6:1: " NOT_VALID "Expected msg (message) end tag not found for message \"m\""},
    {"one_language_only", ".xmc:7:1: " NOT_VALID "Invalid attibute \"style\""},
    // includes
    {"include_missing", ".xmc:4:1: " NOT_FOUND "File \"faults/absent.xmc\" was not found on disk"},
    {"include_empty", ".xmc:4:1: " NOT_FOUND "File \"\" was not found on disk"},
    {"include_filled", ".xmc:3:1: " NOT_VALID "Expected \"include\" end tag not found"},
    {"include_itself", ".xmc:4:1: error: message_catalogs::result_type - Unexpected error happened during loading: "
                       "xmc_file_loader::load_error - Unexpected parse error happen!"},
    // what the library accepts
    {"unknown_type", ".xmc:5:1: warning: argument \"x\" has the unknown type \"integer\" and is shown as text"},
    {"lost_option", ".xmc:5:1: warning: option \"fieldsize\" stands before \"name\" and is lost"},
    {"no_language", ".xmc:3:1: warning: catalog \"a\" has no language and is never loaded"},
    {"duplicate_message",
     ".xmc:7:1: warning: message \"m\" is defined twice in language \"en\"; the one in line 4 is used"},
    {"placeholder_names", ".xmc:4:1: error: message \"m\": placeholder \"n\" of language \"en\" is missing"},
    {"missing_message", ".xmc:3:1: warning: catalog \"a\" has no message \"german\" in language \"en\""},
};

TEST(CatalogCheck, FindsEachFaultInItsLine) {
    for (auto const& [file, finding] : fault_rows) {
        std::string const path = std::string("faults/") + file;
        SCOPED_TRACE(path);
        program_run const run = run_program("catalog check " + path + ".xmc");
        std::string const found = run.err.substr(0, run.err.find('\n'));
        EXPECT_EQ(found.find(": error: ") == std::string::npos ? 0 : 1, run.status);
        EXPECT_EQ(path + finding, found.substr(0, found.rfind(" [")));
    }
}

TEST(CatalogCheck, FindsNothingInWhatIsRight) {
    expect_run("catalog check clean", 0, "2 files, 2 catalogs, 5 languages: 0 errors, 0 warnings\n");
}

TEST(CatalogCheck, FollowsIncludesAndReportsTheirFaultsOnce) {
    std::string const expected = "faults/sub/faulty.xmc:5:1: " NOT_VALID "Invalid element \"i\" [load]\n"
                                 "    in message element: \"m\"\n"
                                 "    in catalog element: \"sub\"\n"
                                 "    in file: \"faults/sub/faulty.xmc\"\n"
                                 "    in file: \"faults/include_faulty.xmc\"\n";
    std::string const summary = "2 files, 1 catalog, 1 language: 1 error, 0 warnings\n";
    std::string const command = "catalog check faults/include_faulty.xmc";
    expect_run(command, 1, summary, expected);
    expect_run(command + " faults/sub/faulty.xmc ./faults/sub/../include_faulty.xmc", 1, summary, expected);
}

TEST(CatalogCheck, ExpectsFromARegionOnlyWhatItsLanguageLacks) {
    expect_run("catalog check faults/missing_message.xmc --fail-on=warning", 1,
               "1 file, 1 catalog, 3 languages: 0 errors, 5 warnings\n",
               "faults/missing_message.xmc:3:1: warning: catalog \"a\" has no message \"german\" in language "
               "\"en\" [missing-message]\n"
               "faults/missing_message.xmc:3:1: warning: catalog \"a\" has no message \"swiss\" in language \"en\" "
               "[missing-message]\n"
               "faults/missing_message.xmc:7:1: warning: catalog \"a\" has no message \"english\" in language "
               "\"de\" [missing-message]\n"
               "faults/missing_message.xmc:7:1: warning: catalog \"a\" has no message \"swiss\" in language \"de\" "
               "[missing-message]\n"
               "faults/missing_message.xmc:11:1: warning: catalog \"a\" has no message \"english\" in language "
               "\"de_CH\" [missing-message]\n");
}

TEST(CatalogCheck, WritesJson) {
    std::string const place =
        R"({"file": "faults/placeholder_names.xmc","line": 4,"column": 1,"severity": "error","rule": "placeholder-names",)";
    program_run const run = run_program("catalog check --json faults/placeholder_names.xmc");
    EXPECT_EQ(1, run.status);
    EXPECT_EQ(
        R"({"files": 1,"catalogs": 1,"languages": ["de","en"],"errors": 2,"warnings": 0,"notes": 0,"findings": [)" +
            place + R"("text": "message \"m\": placeholder \"n\" of language \"en\" is missing"},)" + place +
            R"("text": "message \"m\": placeholder \"zahl\" does not occur in language \"en\""}]})",
        compact(run.out));
}

TEST(CatalogCheck, GoesOnAfterAPathThatIsNotThereAndFailsAtTheEnd) {
    expect_run(
        "catalog check absent.xmc faults/no_language.xmc", 2,
        "1 file, 0 catalogs, 0 languages: 0 errors, 2 warnings\n",
        "zolt: there is no file or directory \"absent.xmc\"\n"
        "faults/no_language.xmc:3:1: warning: catalog \"a\" has no language and is never loaded [no-language]\n"
        "faults/no_language.xmc:4:1: warning: catalog \"b\" has no language and is never loaded [no-language]\n");
    EXPECT_EQ(1, run_program("catalog check ..").status);
    expect_run("catalog check /dev/null", 2, "", "zolt: \"/dev/null\" cannot be read\n");
}

TEST(CatalogCheck, ColoursFindingsOnATerminal) {
    std::string const command = "catalog check faults/no_language.xmc";
    auto const shown = [&](variables const& environment) {
        return run_program(command, {.environment = environment, .terminal = 2}).err;
    };
    EXPECT_EQ(0u, shown({}).find("\033[1mfaults/no_language.xmc:3:1:\033[0m \033[1;33mwarning:\033[0m catalog"));
    EXPECT_EQ(std::string::npos, shown({{"NO_COLOR", "1"}}).find('\033'));
    EXPECT_EQ(std::string::npos, shown({{"TERM", "dumb"}}).find('\033'));
}

using CatalogCheckOfManyFiles = in_directory;

TEST_F(CatalogCheckOfManyFiles, ShowsABarOnATerminal) {
    for (int i = 0; i != 201; ++i)
        store("<?xml version='1.0'?><xmc version='1.1'><catalog name='a' lang='en'/></xmc>",
              std::to_string(i) + ".xmc");
    EXPECT_EQ("", run("catalog check .").err);
    program_run const watched = run("catalog check .", {.terminal = 2});
    EXPECT_EQ(0, watched.status);
    EXPECT_EQ(0u, watched.err.find("\r\033[K[........................................] 0/201"));
    EXPECT_EQ("\r\033[K", watched.err.substr(watched.err.size() - 4)); // and takes it away
    EXPECT_EQ("", run("catalog check 1.xmc", {.terminal = 2}).err);
}

} // namespace
