// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "tools/run_program.hpp"

#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <utility>

namespace {

TEST(Program, Lists) {
    std::string const all = "Catalog  Language  Messages\n"
                            "app      de               5\n"
                            "app      de-AT            1\n"
                            "app      en               5\n"
                            "names    .                1\n"
                            "names    ja               2\n";
    expect_run("catalog list clean", 0, all);
    expect_run("catalog list clean/main.xmc", 0, all); // the other file is included
    expect_run("catalog list clean --lang de_AT.UTF-8@euro", 0,
               "Catalog  Languages  Messages\n"
               "app      de, de-AT         5\n"
               "names    .                 1\n");
    EXPECT_EQ(R"({"catalogs": [{"name": "app","messages": 5,"languages": [{"language": "en","messages": 5}]},)"
              R"({"name": "names","messages": 1,"languages": [{"language": ".","messages": 1}]}]})",
              compact(run_program("catalog list clean --lang POSIX --json").out));
    expect_run(
        "catalog list absent", 2, "",
        "zolt: message_catalogs::result_type - Entity (file or directory) \"absent\" was not found on disk\n");
    expect_run("catalog list faults/one_language_only.xmc", 2, "",
               "zolt: message_catalogs::result_type - XMC file is not valid\n"
               " xmc_file_loader::load_error - Invalid attibute \"style\"\n"
               " in message element: \"m\"\n"
               " in catalog element: \"a\"\n"
               " in file: \"faults/one_language_only.xmc\"\n");
}

TEST(Program, Shows) {
    expect_run("catalog show clean app --lang de_AT", 0,
               "Message   Language  Text\n"
               "greeting  de-AT     Servus {user:string}!\n"
               "loaded    de        {n:int} Dateien in {t:duration} geladen\n"
               "off       de        Aus\n"
               "size      de        {bytes:memory} {bytes:memory_unit}\n"
               "today     de        {day:date}\n");
    // notes, options, braces in the text, several lines
    expect_run("catalog show clean app greeting", 0,
               "Message   Language  Note            Text\n"
               "greeting  en        Shown at start  Hello, {user:string}!\n");
    expect_run("catalog show clean app loaded", 0,
               "Message  Language  Text\n"
               "loaded   en        Loaded {n:int} files\n"
               "                   in {{{t:duration short_form=true}}}\n");
    expect_run("catalog show clean names --lang ja", 0,
               "Message  Language  Text\n"
               "product  .         Zöltan\n"
               "x        ja        短い\n"
               "日本     ja        日本語 – にほんご\n");
    expect_run("catalog show clean none", 1, "", "zolt: there is no catalog \"none\" in \"clean\"\n");
    expect_run("catalog show clean app none", 1, "", "zolt: there is no message \"none\" in catalog \"app\"\n");
    EXPECT_EQ(2, run_program("catalog show faults/wrong_root.xmc app").status);
    EXPECT_EQ(R"({"catalog": "app","messages": [{"name": "greeting","language": "en","note": "Shown at start",)"
              R"("text": "Hello, {user:string}!","placeholders": [{"name": "user","type": "string"}]}]})",
              compact(run_program("catalog show clean app greeting --json").out));
    // what could be control sequences of a terminal
    expect_run("catalog show clean 'a\033[2J\nb'", 1, "",
               "zolt: there is no catalog \"a\\x1B[2J\nb\" in \"clean\"\n");
}

void render(std::string const& arguments, int status, std::string const& out, std::string const& err = "") {
    expect_run("catalog render clean app " + arguments, status, out, err.empty() ? "" : "zolt: " + err + "\n");
}

TEST(Program, Renders) {
    render("off", 0, "Off\n");
    render("greeting 'user=Ann=Bob: x'", 0, "Hello, Ann=Bob: x!\n");
    render("greeting user:bool=Yes", 0, "Hello, 1!\n");
    render("greeting user:double=2.5e3", 0, "Hello, 2500!\n");
    render("greeting user:int=-9223372036854775808 unused=1", 0, "Hello, -9223372036854775808!\n");
    render("greeting user:uint=0xFFFFFFFFFFFFFFFF", 0, "Hello, 18446744073709551615!\n");
    render("loaded n=0x10 t:double=3725 --lang en_GB", 0, "Loaded 16 files\nin {1h 2m 5.00s}\n");
    render("size bytes=5000", 0, "4 KB\n");
    render("loaded t=1", 1, "Loaded ?invalid? files\nin {1.00s}\n", "warning: argument \"n\" is missing");
    render("size", 1, "?invalid? ?invalid?\n", "warning: argument \"bytes\" is missing");
    render("today day=1", 0, "?invalid?\n"); // dates are never rendered
    render("off --json", 0, "{\n  \"text\": \"Off\",\n  \"missing\": []\n}\n");
    render("size --json", 1, "{\n  \"text\": \"?invalid? ?invalid?\",\n  \"missing\": [\n    \"bytes\"\n  ]\n}\n",
           "warning: argument \"bytes\" is missing");
    render("off n:int=1x", 2, "", "argument \"n\": \"1x\" is not a value of type int");
    render("off n:int=", 2, "", "argument \"n\": \"\" is not a value of type int");
    render("off n:uint=-1", 2, "", "argument \"n\": \"-1\" is not a value of type uint");
    render("off n:double=1,5", 2, "", "argument \"n\": \"1,5\" is not a value of type double");
    render("off n:bool=maybe", 2, "", "argument \"n\": \"maybe\" is not a value of type bool");
    render("off n:long=1", 2, "",
           "argument \"n\" has the unknown type \"long\"; there are int, uint, double, bool and string");
    render("off a:b:string=1 a:b:int=1", 2, "", "argument \"a:b\" is given twice");
    render("off n", 2, "", "\"n\" is not an argument: write name=value or name:type=value");
    render("off =1", 2, "", "\"=1\" is not an argument: write name=value or name:type=value");
}

TEST(Program, TakesItsLanguageFromTheEnvironment) {
    auto const off = [](variables const& environment) {
        return run_program("catalog render clean app off", {.environment = environment}).out;
    };
    EXPECT_EQ("Aus\n", off({{"LC_ALL", "de_DE.UTF-8"}, {"LANG", "en"}}));
    EXPECT_EQ("Aus\n", off({{"LC_ALL", ""}, {"LC_MESSAGES", "de"}, {"LANG", "en"}}));
    EXPECT_EQ("Aus\n", off({{"LC_ALL", ""}, {"LANG", "de_CH@x"}}));
    EXPECT_EQ("Off\n", off({{"LC_ALL", ""}}));
    EXPECT_EQ("Aus\n", run_program("catalog render clean app off --lang en --lang de").out);
    EXPECT_EQ("\n", run_program("config get --default= key").out); // no value is none, too
    EXPECT_EQ("Off\n", off({{"LC_ALL", "C.UTF-8"}, {"LANG", "de"}, {"LANGUAGE", "de"}}));
    EXPECT_EQ("Aus\n", off({{"LC_ALL", "en_US.UTF-8"}, {"LANGUAGE", "de_AT:en"}}));
    expect_run("catalog show clean none", 1, "", "zolt: in „clean“ gibt es keinen Katalog „none“\n",
               {.environment = {{"LC_ALL", "de_AT.UTF-8"}}});
}

// The program's messages: built in, from beside the program, from an installation, from a given place.
class ProgramCatalogs : public in_directory {
protected:
    // Stores a catalog with another word for "Katalog".
    void install(std::string const& place, std::string const& word) const {
        std::filesystem::create_directories(directory + "/" + place);
        std::string const text = content_of(ZOLT_SOURCE_DIR "/tools/catalogs/zolt.de.xmc");
        store(std::regex_replace(text, std::regex("Katalog"), word), place + "/zolt.de.xmc");
    }
    std::string heading(std::string const& path = "") const {
        program_options const options{
            .environment = {{"LC_ALL", "de"}, {"ZOLT_CATALOG_PATH", path}, {"LD_LIBRARY_PATH", ZOLT_LIBRARY_DIR}},
            .program = directory + "/bin/zolt"};
        return run_program("catalog list clean", options).out.substr(0, 9);
    }
};

TEST_F(ProgramCatalogs, AreFound) {
    std::filesystem::create_directory(directory + "/bin");
    std::filesystem::copy(ZOLT_PROGRAM, directory + "/bin/zolt");
    EXPECT_EQ("Catalog  ", heading());
    install("share/zolt-2.18/catalogs", "Katalog");
    EXPECT_EQ("Katalog  ", heading());
    install("bin/catalogs", "Beside");
    EXPECT_EQ("Beside  S", heading());
    install("other", "Given");
    EXPECT_EQ("Given  Sp", heading("/absent:" + directory + "/other"));
    store("broken", "other/zolt.de.xmc");
    EXPECT_EQ("Catalog  ", heading(directory + "/other"));
}

// --list-rules needs no arguments, and --ignore takes only what it lists.
TEST(Program, TellsWhatIsWrongWithItsCommandLine) {
    std::pair<char const*, char const*> const rows[] = {
        {"", "a command is required"},
        {"config foo", "\"foo\" is no command"},
        {"-x", "\"-x\" was not expected; what"},
        {"config set f", "KEY is required"},
        {"config set f k -x",
         "\"-x\" was not expected; what starts with \"-\" and is no option stands behind \"--\""},
        {"config set f k v --json -o ./f", "\"./f\" is what the command reads; the result needs another file"},
        {"catalog list --format=xml f", "--format: \"xml\" is unknown; there are text, json"},
        {"catalog check --ignore nope a b",
         "\"nope\" is no rule of this command; --list-rules shows those that are"},
        {"catalog list faults/wrong_root.xmc -o faults/wrong_root.xmc",
         "\"faults/wrong_root.xmc\" is what the command reads; the result needs another file"},
        {"catalog missing --allow-missing=-1 f", "--allow-missing: a whole number is expected, 0 or greater"},
        {"catalog missing --allow-missing=99999999999999999999 f", "--allow-missing: the number is too large"},
        {"catalog pseudo --style=[x f", "--style: \"[x\" is unknown; there are accent, bidi, xxx"},
        {"catalog check --format", "--format needs a value: text|json"},
        {"catalog pseudo --style xxx --style bidi f", "--style is given more than once"},
        {"catalog missing --lang= f", "--lang needs a value: LANGUAGE"},
        {"catalog check --ref '' f", "--ref needs a value: LANGUAGE"},
        {"catalog check --ignore edge-space: f", "--ignore needs a value: RULE[:SCOPE]"},
        {"catalog check --quiet=5 f", "--quiet takes no value"},
        {"catalog check --list-rules=x", "--list-rules takes no value"},
        {"catalog show a b c d", "\"d\" was not expected\n"},
        {"catalog schema --rng --xsd", "--rng and --xsd exclude each other"},
        {"config check [a,b]", "\"[a,b]\" cannot be read"}, // one name
    };
    for (auto const& [arguments, complaint] : rows) {
        program_run const ended = run_program(arguments);
        EXPECT_EQ(2, ended.status) << arguments;
        EXPECT_EQ(0u, ended.err.find(std::string("zolt: ") + complaint)) << arguments << '\n' << ended.err;
        if (std::string_view(complaint).starts_with("message_catalogs")) continue; // the library's own words
        EXPECT_NE(ended.err, run_program(arguments, {.environment = {{"LC_ALL", "de"}}}).err) << arguments;
    }
}

TEST(Program, ExplainsItsRules) {
    for (std::string const command : {"catalog check ", "catalog export-po --lang en ", "config check "}) {
        SCOPED_TRACE(command);
        std::string const listed = run_program(command + "--list-rules").out;
        std::string const first = listed.substr(0, listed.find(' '));
        std::string const json = compact(run_program(command + "--list-rules --json").out);
        EXPECT_EQ(0u, json.find("{\"rules\": [{\"rule\": \"" + first + "\",\"severity\": \""));
        EXPECT_EQ(2, run_program(command).status);
        EXPECT_NE(2, run_program(command + "clean/main.xmc --ignore=" + first).status);
        expect_run(command + "clean --ignore=" + first + "x:app/m", 2, "",
                   "zolt: \"" + first + "x\" is no rule of this command; --list-rules shows those that are\n");
    }
}

using ProgramResults = in_directory;

// -o: the whole result or none; with a report of findings, too.
TEST_F(ProgramResults, GoToAFile) {
    std::string const data = ZOLT_SOURCE_DIR "/tests/tools/data/";
    store("old");
    expect("catalog list " + data + "clean -o f", 0, "");
    EXPECT_EQ(run("catalog list " + data + "clean").out, content());
    store("old");
    expect("catalog show " + data + "clean none -o f", 1, "",
           "zolt: there is no catalog \"none\" in \"" + data + "clean\"\n");
    EXPECT_EQ(2, run("catalog check absent -o f").status);
    EXPECT_EQ("old", content());
    std::string const fault = "catalog check " + data + "faults/placeholder_names.xmc -o f --json ";
    EXPECT_EQ(1, run(fault).status);
    EXPECT_EQ(0u, content().find("{\n  \"files\": 1,"));
    EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(directory), {})); // nothing is left over
    expect("catalog list " + data + "clean -o absent/f", 2, "",
           "zolt: \"absent/f\" cannot be written: No such file or directory\n");
    expect("catalog list " + data + "clean -o /dev/full", 2, "",
           "zolt: \"/dev/full\" cannot be written: No space left on device\n");
    store("a = 1\n");
    EXPECT_EQ("one\na = 1\nthree\n",
              run("-c '(echo one; " ZOLT_PROGRAM " config list --file f -o /dev/stdout; echo three) >g; cat g'",
                  {.program = "/bin/sh"})
                  .out);
    EXPECT_EQ(2,
              run("-c 'ulimit -f 1; " ZOLT_PROGRAM " catalog schema --xsd -o f'", {.program = "/bin/sh"}).status);
    store("\1", "damaged");
    EXPECT_EQ(1, run("inspect --binary u4 damaged -o f").status);
    EXPECT_NE("a = 1\n", content());
    store("", "de");
    expect("catalog list " + data + "clean --lang de -o de", 0, ""); // a language that has the name of a file
    store("<xmc>", "f.xmc");
    EXPECT_EQ(1, run("catalog missing f.xmc -o f").status); // nothing could be reported
    EXPECT_NE("", content());
    expect("config list -- --a=", 0, "-a = \"\"\n"); // no option of ours
}

TEST(Program, NoticesThatItsOutputIsLost) {
    program_options const shell{.program = "/bin/sh"};
    for (char const* const command :
         {"catalog list clean", "catalog check faults", "config check clean", "--help"}) {
        for (auto const& [to, reason] :
             {std::pair(">/dev/full", "No space left on device"), std::pair(">&-", "Bad file descriptor")}) {
            program_run const run = run_program(std::string("-c '" ZOLT_PROGRAM " ") + command + to + "'", shell);
            EXPECT_EQ(2, run.status) << command << to;
            EXPECT_EQ("", run.out);
            std::string const complaint = std::string("zolt: cannot write to standard output: ") + reason + "\n";
            EXPECT_TRUE(run.err.ends_with(complaint)) << command << to << run.err;
        }
    }
    expect_run("-c '" ZOLT_PROGRAM " catalog list absent 2>&-'", 2, "", "", shell);
}

// Any command with what is no file, or not the kind of file that it takes.
TEST_F(in_directory, NamesTheFileThatItCannotRead) {
    std::filesystem::create_directory(directory + "/folder");
    std::filesystem::create_symlink("self", directory + "/self");
    ::mkfifo((directory + "/pipe").c_str(), 0600);
    auto const expect_failure = [this](std::string command, std::string const& file) {
        command.replace(command.find('F'), 1, file);
        SCOPED_TRACE(command);
        program_run const failed = run(command);
        EXPECT_EQ(2, failed.status);
        EXPECT_EQ(0u, failed.err.find("zolt: ")) << failed.err;
        EXPECT_NE(std::string::npos, failed.err.find(file)) << failed.err;
    };
    for (char const* const command :
         {"catalog list F", "catalog show F c", "catalog render F c m", "catalog check F", "config show --file F",
          "config get k --file F", "config set F k v", "config unset F k", "config check F", "inspect F"}) {
        expect_failure(command, "self");
        if (command[1] == 'a') { // a pipe is no catalog; a configuration can come from one
            expect_failure(command, "pipe");
        } else {
            expect_failure(command, "folder");
        }
    }
    for (char const* const command : {"inspect F", "config set F k v"}) expect_failure(command, "pipe");
}

// In a directory that was named. Whoever may read everything finds the fault inside instead.
TEST_F(in_directory, NamesWhatItCannotReadBelowADirectory) {
    namespace fs = std::filesystem;
    char const* const broken =
        "<?xml version='1.0'?><xmc version='1.1'><catalog name='a' lang='en'><b/></catalog></xmc>";
    for (char const* const folder : {"linked", "file", "folder", "folder/closed"})
        fs::create_directory(directory + "/" + folder);
    for (char const* const folder : {"linked", "file", "folder"})
        fs::copy_file(ZOLT_SOURCE_DIR "/tests/tools/data/clean/more/german.xmc",
                      directory + "/" + folder + "/good.xmc");
    fs::create_symlink("absent", directory + "/linked/closed.xmc");
    fs::create_directory_symlink("..", directory + "/linked/up"); // without end
    store(broken, "file/closed.xmc");
    store(broken, "folder/closed/f.xmc");
    for (char const* const closed : {"file/closed.xmc", "folder/closed"})
        fs::permissions(directory + "/" + closed, {});
    for (std::string const command :
         {"check", "missing --ref=de", "stats --ref=de", "pseudo --ref=de", "fmt", "diff linked/good.xmc"}) {
        for (std::string const folder : {"linked", "file", "folder"}) {
            program_run const failed = run("catalog " + command + " " + folder);
            bool const is_read = ::geteuid() == 0 && folder != "linked";
            EXPECT_TRUE(failed.status == 2 || (is_read && failed.status == 1)) << command << " " << folder;
            EXPECT_NE(std::string::npos, failed.err.find(folder + "/closed")) << command << failed.err;
            EXPECT_EQ(is_read, failed.err.find("cannot be read") == std::string::npos) << failed.err;
        }
    }
    fs::permissions(directory + "/folder/closed", fs::perms::owner_all);
}

TEST_F(in_directory, KeepsTheOldFileWhenTheDiskIsFull) {
    store("a=1\nb=2\n");
    for (char const* const change : {"set f a 3", "unset f a"}) { // a process may write files of no bytes, here
        program_run const failed = run(std::string("-c '(trap \"\" XFSZ; ulimit -f 0; exec ") + ZOLT_PROGRAM +
                                           " config " + change + ") 2>&1 | cat'",
                                       {.program = "/bin/sh"});
        EXPECT_EQ(0u, failed.out.find("zolt: ")) << failed.out;
        EXPECT_EQ("a=1\nb=2\n", content());
    }
    run("-c '" ZOLT_PROGRAM " config set f a 3 >&- 2>&-'", {.program = "/bin/sh"});
    EXPECT_EQ("a=3\nb=2\n", content());
    EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(directory), {}));
}

} // namespace
