// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Man pages in the macros of man(7). Text is escaped, and nothing of it is an argument of a macro, so that
// neither quotes nor blanks matter.
#include "manual.hpp"

#include "utf8.hpp"

#include <zolt/strings/string_utility.hpp>
#include <zolt/strings/unicode.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

namespace tools {
namespace {

struct escape {
    char character;
    std::string_view written;
};
constexpr escape escapes[] = {{'\\', "\\e"},  {'-', "\\-"},   {'\'', "\\(aq"},
                              {'`', "\\(ga"}, {'^', "\\(ha"}, {'~', "\\(ti"}};

// A character; nothing for a byte that is none.
std::string escaped_character(std::string_view character) {
    for (escape const& each : escapes) {
        if (character.front() == each.character) return std::string(each.written);
    }
    if (static_cast<unsigned char>(character.front()) < 0x80) return std::string(character);
    unsigned long size = 0;
    std::array<char, 32> name;
    std::snprintf(name.data(), name.size(), "\\[u%04lX]",
                  zolt::strings::unichar(character.data(), static_cast<unsigned long>(character.size()), 0, size));
    return name.data();
}

// Without what groff would take for its own, and in ASCII.
std::string escaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        std::size_t const size = utf8_size(text);
        if (size != 0) result += escaped_character(text.substr(0, size));
        text.remove_prefix(std::max<std::size_t>(size, 1));
    }
    return result;
}

std::string bold(std::string_view text) { return "\\fB" + escaped(text) + "\\fR"; }
std::string italic(std::string_view text) { return "\\fI" + escaped(text) + "\\fR"; }

bool is_option(std::string_view word) {
    return word.size() > 1 && word[0] == '-' && word.find_first_not_of('-') != word.npos;
}

// A line of running text, with options in bold.
std::string prose(std::string_view text) {
    std::string line = !text.empty() && text.front() == '.' ? "\\&" : "";
    while (!text.empty()) {
        std::size_t const end = std::min(text.find_first_of(" ,;:()\"'"), text.size());
        std::string_view word = text.substr(0, end);
        std::size_t const dots = word.size() - (word.find_last_not_of('.') + 1);
        word.remove_suffix(dots);
        line += is_option(word) ? bold(word) : escaped(word);
        line.append(dots, '.');
        if (end != text.size()) line += escaped(text.substr(end, 1));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return line + "\n";
}

// Lines that stay as they are.
std::string lines(std::string const& text) {
    std::string result;
    for (ustring8 const& line : zolt::strings::split_string(ustring8(text), "\n"))
        result += (line.starts_with('.') ? "\\&" : "") + escaped(line) + "\n";
    return result;
}

std::string sentence(std::string const& text) {
    return prose(text.empty() || text.back() == '.' ? text : text + ".");
}

void append_heading(std::string& page, std::string_view title) { page.append(".SH ").append(title).append("\n"); }

//--------------------------------------------------------------------------------------------------
// Notes

struct section {
    char const* label; ///< in the notes
    char const* title;
    std::vector<std::string> paragraphs{};
};

/// The first section is what has no label.
std::vector<section> sections_of(std::string const& notes) {
    std::vector<section> sections = {
        {"", "DESCRIPTION"}, {"Exit status:", "EXIT STATUS"}, {"Environment:", "ENVIRONMENT"},
        {"Files:", "FILES"}, {"Example:", "EXAMPLES"},        {"Examples:", "EXAMPLES"}};
    section* current = sections.data();
    for (ustring8 const& line : zolt::strings::split_string(ustring8(notes), "\n")) {
        std::string_view text = line;
        for (section& each : sections) {
            if (!*each.label || !text.starts_with(each.label)) continue;
            current = &each;
            text.remove_prefix(std::string_view(each.label).size());
        }
        text.remove_prefix(std::min(text.size(), text.find_first_not_of(' ')));
        if (!text.empty()) current->paragraphs.emplace_back(text);
    }
    return sections;
}

// Command lines stay as they are.
void append_paragraphs(std::string& page, section const& from) {
    for (std::string const& text : from.paragraphs) {
        bool const is_command = from.title == std::string_view("EXAMPLES") && text.starts_with("zolt ");
        if (&text != &from.paragraphs.front()) page += ".PP\n";
        page += is_command ? ".nf\n" + lines(text) + ".fi\n" : prose(text);
    }
}

//--------------------------------------------------------------------------------------------------
// Commands and options

void append_synopsis(std::string& page, manual_command const& command) {
    append_heading(page, "SYNOPSIS");
    std::vector<std::string> const forms =
        synopsis(command, {bold, italic, "[" + italic("OPTION") + "]...", "COMMAND"});
    for (std::string const& form : forms) page += (&form == &forms.front() ? "" : ".br\n") + form + "\n";
}

void append_commands(std::string& page, manual_command const& group, std::size_t depth) {
    for (manual_command const& each : group.commands) {
        append_commands(page, each, depth);
        if (!each.commands.empty()) continue;
        std::vector<std::string> const words(each.words.begin() + static_cast<std::ptrdiff_t>(depth),
                                             each.words.end());
        page += ".TP\n" + bold(join(words, " ")) + "\n" + sentence(each.about);
    }
}

void append_option(std::string& page, manual_option const& option) {
    page += ".TP\n";
    for (std::string const& name : option.names) {
        if (&name != &option.names.front()) page += ", ";
        page += bold(name);
    }
    if (!option.value.empty())
        page += " " + (option.value.find('|') == std::string::npos ? italic(option.value) : bold(option.value));
    page += "\n" + sentence(option.text);
    if (!option.excluded.empty()) page += sentence("Not with " + join(option.excluded, ", "));
}

// Of a group those of its commands.
std::vector<manual_option> common_options_of(manual_command const& command) {
    if (!command.commands.empty()) return common_options_of(command.commands.front());
    std::vector<manual_option> common = command.options;
    std::erase_if(common, [](manual_option const& option) { return !option.is_common; });
    return common;
}

void append_options(std::string& page, manual_command const& command) {
    if (!command.arguments.empty()) append_heading(page, "ARGUMENTS");
    for (manual_option const& argument : command.arguments)
        page += ".TP\n" + italic(argument.names.front()) + "\n" + sentence(argument.text);
    append_heading(page, "OPTIONS");
    for (manual_option const& option : command.options) {
        if (!option.is_common) append_option(page, option);
    }
    std::vector<manual_option> const common = common_options_of(command);
    if (!common.empty()) page += ".SS Options of every command\n";
    for (manual_option const& option : common) append_option(page, option);
}

void append_rules(std::string& page, manual_command const& command) {
    if (!command.rules.empty()) append_heading(page, "RULES");
    for (manual_rule const& each : command.rules) {
        page += ".TP\n" + bold(each.name) + " (" + each.level + ")\n" + sentence(each.about);
        page += ".nf\n" + lines(each.example) + ".fi\n";
    }
}

void append_all(std::vector<std::string>& pages, manual_command const& command) {
    for (manual_command const& each : command.commands) {
        pages.push_back(join(each.words, "-"));
        append_all(pages, each);
    }
}

// The groups that the command is in, what is in them beside it, and all below it.
void append_see_also(std::string& page, manual_command const& command, manual_command const& program) {
    std::vector<std::string> pages;
    for (manual_command const* group = &program; group && group->words.size() < command.words.size();) {
        pages.push_back(join(group->words, "-"));
        manual_command const* next = nullptr;
        for (manual_command const& each : group->commands) {
            bool const is_around = each.words.back() == command.words[group->words.size()];
            if (is_around) next = &each;
            if (!is_around) pages.push_back(join(each.words, "-"));
        }
        group = next;
    }
    append_all(pages, command);
    if (pages.empty()) return;
    std::sort(pages.begin(), pages.end());
    append_heading(page, "SEE ALSO");
    for (std::string const& each : pages) page += bold(each) + (&each == &pages.back() ? "(1)\n" : "(1),\n");
}

} // namespace

std::string join(std::vector<std::string> const& words, char const* separator) {
    std::string text;
    for (std::string const& word : words) text += (text.empty() ? "" : separator) + word;
    return text;
}

std::string man_page(manual_command const& command, manual_command const& program, std::string const& version) {
    std::string const name = join(command.words, "-");
    std::string title = name;
    std::transform(title.begin(), title.end(), title.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    std::string about = command.about.substr(0, command.about.find_last_not_of('.') + 1);
    if (about.size() > 1 && about[1] >= 'a' && about[1] <= 'z' && about[0] >= 'A' && about[0] <= 'Z')
        about[0] = static_cast<char>(about[0] - 'A' + 'a');

    std::string page = ".\\\" Made from the help of the program.\n";
    page += ".TH " + escaped(title) + " 1 \"\" \"zolt " + version + "\" \"User Commands\"\n";
    append_heading(page, "NAME");
    page += escaped(name) + " \\- " + escaped(about) + "\n";
    append_synopsis(page, command);
    std::vector<section> const sections = sections_of(command.notes);
    append_heading(page, "DESCRIPTION");
    page += sentence(command.about);
    if (!sections.front().paragraphs.empty()) page += ".PP\n";
    append_paragraphs(page, sections.front());
    if (!command.commands.empty()) append_heading(page, "COMMANDS");
    append_commands(page, command, command.words.size());
    append_options(page, command);
    append_rules(page, command);
    for (section const& each : sections) {
        if (!*each.label || each.paragraphs.empty()) continue;
        append_heading(page, each.title);
        append_paragraphs(page, each);
    }
    append_see_also(page, command, program);
    return page;
}

} // namespace tools
