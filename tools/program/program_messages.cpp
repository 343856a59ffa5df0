// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "program_messages.hpp"

#include "languages.hpp"
#include "notation.hpp"

#include <zolt/exceptions/exception.hpp>
#include <zolt/strings/string_utility.hpp>
#include <zolt/system/io.hpp>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <vector>

namespace tools {
namespace {

constexpr char catalog[] = "zolt";

constexpr program_messages::built_in texts[] = {
    {phrase::program_about, "program.about",
     "Works with message catalogs, configuration files and stored buffers."},
    {phrase::help_option, "option.help", "Print this help and exit"},
    {phrase::version_option, "option.version", "Print the version and exit"},
    {phrase::catalog_about, "catalog.about", "Message catalogs (.xmc files): list, show, render and check them"},
    {phrase::list_about, "list.about", "Lists catalogs with their languages and message counts"},
    {phrase::list_notes, "list.notes",
     "Without --lang, every language that occurs is listed with the number of its messages. With --lang, the "
     "messages are counted that an application gets for this language, and the languages that they come from are "
     "named.\nExit status: 0, or 2 when the path cannot be loaded.\nExample: zolt catalog list --lang=de_AT "
     "catalogs/"},
    {phrase::show_about, "show.about", "Shows messages with their placeholders and languages"},
    {phrase::show_notes, "show.notes",
     "A placeholder is written {{name:type option=value}}; braces that belong to the text are doubled. In JSON "
     "every message has a list of its placeholders, too.\nExit status: 0; 1 when there is no such catalog or "
     "message; 2 when the path cannot be loaded.\nExample: zolt catalog show --lang=de_AT catalogs/ app greeting"},
    {phrase::render_about, "render.about", "Renders one message with the given arguments"},
    {phrase::render_notes, "render.notes",
     "An argument that is missing shows as ?invalid?; in JSON \"missing\" lists all of them.\nExit status: 0; 1 "
     "when an argument is missing or there is no such catalog or message; 2 when the path cannot be loaded or an "
     "argument does not fit.\nExample: zolt catalog render app.xmc app saved size:uint=5368709120 "
     "t:double=93784.5"},
    {phrase::check_about, "check.about", "Checks catalog files and reports faults and gaps"},
    {phrase::check_notes, "check.notes",
     "Files are checked together with those that they include; --list-rules explains what is looked for. With "
     "--lang only catalogs in that language are looked at. Messages are compared with those of --ref, by default "
     "English, as far as there are any. --ignore silences a rule, and so does a comment \"zolt-ignore RULE\" "
     "before "
     "a message. A finding is written as file:line:column: error: text [rule] (or warning, or note).\nExit status: "
     "0 "
     "without findings as bad as --fail-on says; 1 with such; 2 when something could not be read, or there is "
     "nothing "
     "in the language that --ref names.\nExample: zolt catalog check --fail-on=warning --ignore=punctuation "
     "catalogs/"},
    {phrase::path_argument, "argument.path", "Catalog file, or directory of .xmc and .xml files"},
    {phrase::paths_argument, "argument.paths", "Catalog files, or directories of .xmc and .xml files"},
    {phrase::catalog_argument, "argument.catalog", "Name of the catalog"},
    {phrase::message_argument, "argument.message", "Name of the message"},
    {phrase::values_argument, "argument.values",
     "Values for the placeholders: name=value for a text, or name:type=value with one of the types int, uint, "
     "double, bool and string"},
    {phrase::lang_option, "option.lang", "Language of messages, such as de_AT; by default that of the environment, or all"},
    {phrase::json_option, "option.json", "Short for --format=json"},

    {phrase::catalog_heading, "heading.catalog", "Catalog"},
    {phrase::language_heading, "heading.language", "Language"},
    {phrase::languages_heading, "heading.languages", "Languages"},
    {phrase::messages_heading, "heading.messages", "Messages"},
    {phrase::message_heading, "heading.message", "Message"},
    {phrase::note_heading, "heading.note", "Note"},
    {phrase::text_heading, "heading.text", "Text"},

    {phrase::no_catalog, "error.no_catalog", "there is no catalog \"{catalog:string}\" in \"{path:string}\""},
    {phrase::no_message, "error.no_message",
     "there is no message \"{message:string}\" in catalog \"{catalog:string}\""},
    {phrase::missing_argument, "warning.missing_argument", "warning: argument \"{name:string}\" is missing"},
    {phrase::bad_argument, "error.bad_argument",
     "\"{argument:string}\" is not an argument: write name=value or name:type=value"},
    {phrase::bad_type, "error.bad_type",
     "argument \"{name:string}\" has the unknown type \"{type:string}\"; there are int, uint, double, bool and "
     "string"},
    {phrase::bad_value, "error.bad_value",
     "argument \"{name:string}\": \"{value:string}\" is not a value of type {type:string}"},
    {phrase::repeated_argument, "error.repeated_argument", "argument \"{name:string}\" is given twice"},
    {phrase::no_path, "error.no_path", "there is no file or directory \"{path:string}\""},
    {phrase::not_readable, "error.not_readable", "\"{path:string}\" cannot be read: {reason:string}"},
    {phrase::no_files, "error.no_files", "there are no .xmc or .xml files in \"{path:string}\""},
    {phrase::write_failed, "error.write_failed", "cannot write to standard output: {reason:string}"},

    {phrase::unknown_type, "finding.unknown_type",
     "argument \"{argument:string}\" has the unknown type \"{type:string}\" and is shown as text"},
    {phrase::lost_option, "finding.lost_option", "option \"{option:string}\" stands before \"name\" and is lost"},
    {phrase::no_language, "finding.no_language",
     "catalog \"{catalog:string}\" has no language and is never loaded"},
    {phrase::duplicate_message, "finding.duplicate_message",
     "message \"{message:string}\" is defined twice in language \"{language:string}\"; the one in line {line:int} "
     "is used"},
    {phrase::placeholder_unknown, "finding.placeholder_unknown",
     "message \"{message:string}\": placeholder \"{name:string}\" does not occur in language "
     "\"{language:string}\""},
    {phrase::placeholder_missing, "finding.placeholder_missing",
     "message \"{message:string}\": placeholder \"{name:string}\" of language \"{language:string}\" is missing"},
    {phrase::missing_message, "finding.missing_message",
     "catalog \"{catalog:string}\" has no message \"{message:string}\" in language \"{language:string}\""},

    {phrase::files_one, "count.files.one", "{n:int} file"},
    {phrase::files_other, "count.files.other", "{n:int} files"},
    {phrase::catalogs_one, "count.catalogs.one", "{n:int} catalog"},
    {phrase::catalogs_other, "count.catalogs.other", "{n:int} catalogs"},
    {phrase::languages_one, "count.languages.one", "{n:int} language"},
    {phrase::languages_other, "count.languages.other", "{n:int} languages"},
    {phrase::errors_one, "count.errors.one", "{n:int} error"},
    {phrase::errors_other, "count.errors.other", "{n:int} errors"},
    {phrase::warnings_one, "count.warnings.one", "{n:int} warning"},
    {phrase::warnings_other, "count.warnings.other", "{n:int} warnings"},
    {phrase::check_summary, "check.summary",
     "{files:string}, {catalogs:string}, {languages:string}: {errors:string}, {warnings:string}, {notes:string}"},

    {phrase::config_about, "config.about", "Configuration: show, list, get, set, unset and check settings"},
    {phrase::config_show_about, "config.show.about", "Shows the settings that an application gets"},
    {phrase::config_show_notes, "config.show.notes",
     "The sources are those of an application: its command line (ARGUMENT), a file and the environment, each of "
     "which hides those after it; an array hides all of another one. As in an application, -cfg_file=FILE among "
     "the arguments chooses the file. Values are in quotes where a file needs them.\nExit status: 0, or 2 when the "
     "file cannot be read.\nExample: zolt config show --file app.cfg --env -- -backup.level=3"},
    {phrase::config_get_about, "config.get.about", "Prints the value of one setting"},
    {phrase::config_get_notes, "config.get.notes",
     "The sources are those of \"zolt config show\". An array is printed with one element in each line; in JSON it "
     "has \"values\", another setting has a \"value\".\nExit status: 0; 1 when there is no such setting and no "
     "default; 2 when the file cannot be read.\nExample: zolt config get net.port --file app.cfg --default 80"},
    {phrase::config_set_about, "config.set.about", "Sets one key of a file"},
    {phrase::config_set_notes, "config.set.notes",
     "KEY[] or several values make an array; a file that is not there is made. The statement that sets the key is "
     "changed where it stands, a new one goes to the end of its section; every other byte stays, comments "
     "included but for those in lines that go, of elements or of other statements for the key. The file is "
     "replaced only when reading the new one gives all other settings as they were. The new one has the mode of "
     "the old one, and its owner and group as far as you may set them; a hard link keeps the old text. Commands "
     "at the same time wait for one another (flock).\nWith -o the new text goes there, \"-\" being standard "
     "output, and FILE stays as it is. With --format=json FILE is changed, and what is told, to -o, has the lists "
     "\"old\" and \"new\" of the values before and after; \"changed\" tells whether these differ. -v tells the "
     "line and both values.\nExit status: 0; 1 when other statements do not let the key alone be changed; 2 when "
     "the file cannot be read or written, or no written form holds the value.\nExample: zolt config set app.cfg "
     "net.port 8080"},
    {phrase::config_unset_about, "config.unset.about", "Removes one key or array from a file"},
    {phrase::config_unset_notes, "config.unset.notes",
     "The lines that set the key are removed, with the comments in them; every other byte stays. The file is "
     "replaced as \"zolt config set\" does it, with the same -o, -v and JSON.\nExit status: 0; 1 when there is no "
     "such key or the file was left as it is; 2 when it cannot be read or written.\nExample: zolt config unset "
     "app.cfg net.port"},
    {phrase::config_check_about, "config.check.about",
     "Checks files for lines that do not mean what they seem to mean"},
    {phrase::config_check_notes, "config.check.notes",
     "For the application that reads it a file has no errors; the rules find what does not mean what it seems to "
     "mean. --list-rules explains each with an example, --ignore silences it, everywhere or for the KEY behind a "
     "colon. So does a comment \"zolt-ignore RULE\" before a statement, for that one. A finding is written as "
     "file:line:column: error: text [rule] (or warning).\nExit status: 0 without findings as bad as --fail-on "
     "says; 1 with such; 2 when a file cannot be read.\nExample: zolt config check "
     "--ignore=blank-dropped:net.limit tool.cfg"},
    {phrase::inspect_about, "inspect.about", "Shows what a stored buffer holds"},
    {phrase::inspect_notes, "inspect.notes",
     "Every line starts with a position in bytes. Without an option, a labeled buffer is known by its whole "
     "content and a text buffer by its first number; all else is shown in hexadecimal. A text buffer does not tell "
     "numbers from the lengths of strings: what can be a number is shown as one.\nA PATTERN says what a binary "
     "buffer holds: u1, u2, u4, u8 are unsigned and i1, i2, i4, i8 signed numbers of so many bytes, f4, f8 "
     "floating-point numbers, s strings, b buffers. \"*\" repeats an item, or several in parentheses, up to the "
     "end, \"*3\" three times: \"u4 (i2 s)*\".\nIn JSON the items of groups follow their group, with a greater "
     "\"depth\". Numbers are texts, since others may not hold 64 bits; what is no UTF-8 comes as hexadecimal "
     "digits in \"hex\", or \"label_hex\".\nExit status: 0; 1 when the content is damaged; 2 when it cannot be "
     "read.\nExample: zolt inspect --binary \"u4 (i2 s)*\" record.bin"},
    {phrase::key_argument, "argument.key", "Key of the setting, such as net.port"},
    {phrase::setting_values_argument, "argument.setting_values", "The value; several make an array"},
    {phrase::config_file_argument, "argument.config_file", "Configuration file"},
    {phrase::config_files_argument, "argument.config_files", "Configuration files"},
    {phrase::application_argument, "argument.application", "The application's arguments, after --"},
    {phrase::buffer_argument, "argument.buffer", "File with the buffer"},
    {phrase::file_option, "option.file", "Configuration file of the application"},
    {phrase::env_option, "option.env", "Take the environment, too"},
    {phrase::origin_option, "option.origin", "Tell where each setting comes from"},
    {phrase::default_option, "option.default", "What to print when there is no such setting"},
    {phrase::labeled_option, "option.labeled", "Read a labeled buffer"},
    {phrase::text_option, "option.text", "Read a text buffer"},
    {phrase::binary_option, "option.binary", "Read a binary buffer of this layout"},

    {phrase::source_command_line, "source.command_line", "command line"},
    {phrase::source_environment, "source.environment", "environment"},
    {phrase::buffer_labeled, "buffer.labeled", "labeled buffer, {size:string}"},
    {phrase::buffer_text, "buffer.text", "text buffer, {size:string}"},
    {phrase::buffer_binary, "buffer.binary", "binary buffer, {size:string}"},
    {phrase::buffer_unknown, "buffer.unknown", "unknown content, {size:string}"},

    {phrase::no_setting, "error.no_setting", "there is no setting \"{key:string}\""},
    {phrase::file_not_written, "error.file_not_written", "\"{path:string}\" cannot be written: {reason:string}"},
    {phrase::bad_pattern, "error.bad_pattern",
     "\"{pattern:string}\" is no pattern: it breaks at \"{rest:string}\""},

    {phrase::damaged_buffer, "error.damaged_buffer",
     "\"{path:string}\" is damaged at byte {position:int}: {reason:string}"},
    {phrase::damage_length, "damage.length", "a length and the byte 01 are missing"},
    {phrase::damage_short, "damage.short", "a length of {length:int} bytes, but {left:int} are left"},
    {phrase::damage_separator, "damage.separator", "the byte 01 after a string is missing"},
    {phrase::damage_label, "damage.label", "the label has no value"},
    {phrase::damage_field, "damage.field", "neither a number nor a string of the length before it"},
    {phrase::damage_open_field, "damage.open_field", "the byte 01 after the last field is missing"},
    {phrase::damage_missing, "damage.missing", "{type:string} takes {length:int} bytes, but {left:int} are left"},
    {phrase::damage_rest, "damage.rest", "the pattern ends here, but {left:int} bytes are left"},

    {phrase::config_bom, "finding.config_bom", "a byte order mark is a part of what follows it"},
    {phrase::config_no_equals, "finding.config_no_equals", "\"{part:string}\" has no \"=\" and sets nothing"},
    {phrase::config_no_value, "finding.config_no_value", "\"{key:string}\" has no value and is not set"},
    {phrase::config_open_array, "finding.config_open_array",
     "array \"{key:string}\" ends in a comma or an empty element and is not set"},
    {phrase::config_open_string, "finding.config_open_string",
     "the string is not closed and takes the rest of the file"},
    {phrase::config_open_section, "finding.config_open_section",
     "section \"{part:string}\" is not closed in its line"},
    {phrase::config_joined_key, "finding.config_joined_key",
     "\"{part:string}\" has no \"=\" and becomes a part of the key \"{key:string}\""},
    {phrase::config_joined_array, "finding.config_joined_array",
     "the comma before makes this line a part of array \"{key:string}\""},

    {phrase::bytes_one, "count.bytes.one", "{n:int} byte"},
    {phrase::bytes_other, "count.bytes.other", "{n:int} bytes"},
    {phrase::config_check_summary, "config.check.summary", "{files:string}: {errors:string}, {warnings:string}"},

    // zolt catalog check.
    {phrase::list_rules_option, "option.list_rules", "Explain every rule with an example"},
    {phrase::notes_one, "count.notes.one", "{n:int} note"},
    {phrase::notes_other, "count.notes.other", "{n:int} notes"},
    {phrase::other_spelling, "finding.other_spelling",
     "language \"{language:string}\" is written \"{other:string}\" in {place:string}"},
    {phrase::absolute_include, "finding.absolute_include",
     "\"{path:string}\" is an absolute path, which other machines may not have"},
    {phrase::missing_include, "finding.missing_include", "there is no file \"{path:string}\" that can be read"},
    {phrase::include_is_cycle, "finding.include_is_cycle",
     "\"{path:string}\" is still being read and cannot be included again"},
    {phrase::type_not_rendered, "finding.type_not_rendered",
     "argument \"{argument:string}\" has the type \"{type:string}\", for which ?invalid? is always shown"},
    {phrase::bad_options, "finding.bad_options",
     "argument \"{argument:string}\" shows as ?invalid? whatever its value: {options:string}"},
    {phrase::unit_differs, "finding.unit_differs",
     "the unit of argument \"{argument:string}\" has other options than its amount and may not fit it"},
    {phrase::nbsp_in_text, "finding.nbsp_in_text",
     "\"&nbsp;\" is an ordinary blank here; write the character U+00A0 itself"},
    {phrase::reference_is_byte, "finding.reference_is_byte",
     "\"{reference:string}\" is the byte {byte:string} and no character; write the character itself"},
    {phrase::byte_is_no_text, "finding.byte_is_no_text", "byte {byte:string} is no UTF-8"},
    {phrase::control_in_text, "finding.control_in_text", "control character {byte:string} in the text"},
    {phrase::space_is_lost, "finding.space_is_lost", "the blank at the start of the message is lost"},
    {phrase::line_end_is_space, "finding.line_end_is_space", "the line end here is a blank of the text"},
    {phrase::space_is_added, "finding.space_is_added",
     "message \"{message:string}\" ends in a blank, in language \"{language:string}\" it does not"},
    {phrase::space_is_missing, "finding.space_is_missing",
     "message \"{message:string}\" ends in a blank in language \"{language:string}\", here it does not"},
    {phrase::translation_is_empty, "finding.translation_is_empty",
     "message \"{message:string}\" is empty, in language \"{language:string}\" it is not"},
    {phrase::punctuation_differs, "finding.punctuation_differs",
     "message \"{message:string}\" ends in \"{mark:string}\", in language \"{language:string}\" in "
     "\"{other:string}\""},
    {phrase::placeholder_type_differs, "finding.placeholder_type_differs",
     "message \"{message:string}\": placeholder \"{name:string}\" is shown as {types:string}, in language "
     "\"{language:string}\" as {others:string}"},
    {phrase::more_missing, "finding.more_missing",
     "catalog \"{catalog:string}\" lacks {n:int} more messages in language \"{language:string}\""},
    {phrase::about_arg_name_not_first, "rule.arg_name_not_first",
     "The name of an argument wipes out the options before it."},
    {phrase::about_bad_option, "rule.bad_option",
     "With an option that its type does not know, or a wrong value of one, an argument always shows as "
     "?invalid?."},
    {phrase::about_byte_reference, "rule.byte_reference",
     "A numeric reference is one byte and no character; above 127 the text is broken, and a leading zero "
     "makes it octal."},
    {phrase::about_catalog_without_lang, "rule.catalog_without_lang",
     "A catalog without a language is never loaded."},
    {phrase::about_control_character, "rule.control_character",
     "Control characters in a text do on a terminal what nobody expects; a name with a line end is seldom found."},
    {phrase::about_duplicate_lang_spelling, "rule.duplicate_lang_spelling",
     "In several spellings a language is not found as loaded, or not at all where upper and lower case differ."},
    {phrase::about_duplicate_message, "rule.duplicate_message",
     "Of two messages of one name in a file and those that it includes the second is lost, of two in the files of "
     "a directory the first."},
    {phrase::about_edge_space, "rule.edge_space",
     "Blanks at the start of a message are lost, a blank or line end at its end or behind br stays; both "
     "should be as in the reference."},
    {phrase::about_empty_translation, "rule.empty_translation",
     "A message that is empty hides the text of other languages."},
    {phrase::about_include_absolute, "rule.include_absolute", "An absolute path is right on one machine only."},
    {phrase::about_include_cycle, "rule.include_cycle",
     "A file that includes itself, straight or through others, is not loaded at all."},
    {phrase::about_include_missing, "rule.include_missing",
     "Without a file that it includes a file is not loaded at all."},
    {phrase::about_invalid_utf8, "rule.invalid_utf8", "Bytes that are no UTF-8 reach the user as they are."},
    {phrase::about_load, "rule.load", "What the library refuses: one fault, and nothing of the file is loaded."},
    {phrase::about_missing_message, "rule.missing_message",
     "A message of the reference that a language and its base lack is shown in another language."},
    {phrase::about_nbsp_is_blank, "rule.nbsp_is_blank",
     "The reference for a no-break space gives an ordinary blank, at which lines may break."},
    {phrase::about_placeholder_set, "rule.placeholder_set",
     "A translation needs the same arguments as the reference, in any order and number."},
    {phrase::about_placeholder_type, "rule.placeholder_type",
     "An argument is to be shown in the same ways as in the reference."},
    {phrase::about_punctuation, "rule.punctuation",
     "A translation should end in the same punctuation as the reference."},
    {phrase::about_unit_pair, "rule.unit_pair",
     "A size and its unit choose the unit each for itself, so they need the same options."},
    {phrase::about_unknown_type, "rule.unknown_type", "An argument of a type that is not known is shown as text."},
    {phrase::about_unrendered_type, "rule.unrendered_type",
     "The types number, time and date always show as ?invalid?."},

    // The options of every command.
    {phrase::common_options_heading, "heading.common_options", "Options of every command"},
    {phrase::quiet_option, "option.quiet", "Findings and failures only"},
    {phrase::verbose_option, "option.verbose", "Tell what is being done"},
    {phrase::output_option, "option.output", "Where results go; \"-\" is standard output"},
    {phrase::format_option, "option.format", "Form of the results"},
    {phrase::reference_option, "option.reference", "Language that others are compared with, by default en"},
    {phrase::fail_on_option, "option.fail_on", "Least finding that makes the exit status 1, by default error"},
    {phrase::ignore_option, "option.ignore",
     "Silence a rule, everywhere or in one SCOPE, which is CATALOG/MESSAGE or the KEY of a setting; may be "
     "repeated"},

    // Export and import of PO files.
    {phrase::export_po_about, "catalog.export_po.about", "Writes PO files for translators"},
    {phrase::export_po_notes, "catalog.export_po.notes",
     "Every message is an entry with msgctxt \"catalog/message\" and the reference text as msgid. Placeholders are "
     "{{name}}, and \"#.\" tells their types and options. With --lang one language goes to the output, also one "
     "that has no catalog yet. --dir makes its directory; all files are written or none. JSON holds the entries of "
     "one language or of all.\nA translation that gettext would refuse is marked as fuzzy, but import-po keeps "
     "it. A text that a PO file cannot hold is an error, and nothing is written; with --ignore=po-text, "
     "or a comment \"zolt-ignore po-text\" before the message, it is left out.\nExit status: 0; 1 with findings; "
     "2 when a file cannot be read or written.\nExample: zolt catalog export-po --dir po/ catalogs/"},
    {phrase::import_po_about, "catalog.import_po.about", "Makes a catalog file of PO files"},
    {phrase::import_po_notes, "catalog.import_po.notes",
     "Entries need msgctxt \"catalog/message\"; for files of other programs give --catalog. The language is that "
     "of --lang, else that of the file. Untranslated, fuzzy and obsolete entries are left out. Each plural form "
     "becomes a message of its own: name[0], name[1] and so on, with the file's rule for plurals as meta "
     "text. JSON holds the messages as \"catalog show\" writes them.\nExit status: 0; 1 with findings; 2 when a "
     "file cannot be read or written.\nExample: zolt catalog "
     "import-po po/de.po -o catalogs/app.de.xmc"},
    {phrase::po_files_argument, "argument.po_files", "PO files"},
    {phrase::po_directory_option, "option.po_directory", "Write LANGUAGE.po of every language into this directory"},
    {phrase::po_catalog_option, "option.po_catalog", "Catalog for all entries, which are named after their msgid"},
    {phrase::use_fuzzy_option, "option.use_fuzzy", "Take entries that are marked as fuzzy, too"},
    {phrase::po_one_language, "error.po_one_language",
     "name a language with --lang, or with --dir a directory for all of them"},
    {phrase::po_no_messages, "error.po_no_messages", "there are no messages to write"},
    {phrase::po_faulty_catalog, "finding.po_faulty_catalog",
     "this is no valid catalog file; \"zolt catalog check\" tells more"},
    {phrase::po_bad_language, "finding.po_bad_language",
     "message \"{message:string}\": a PO file cannot name the language \"{lang:string}\""},
    {phrase::po_bad_text, "finding.po_bad_text",
     "message \"{message:string}\": a PO file holds UTF-8 without NUL and U+0004 only"},
    {phrase::po_second_message, "finding.po_second_message",
     "message \"{message:string}\" of language \"{lang:string}\" gives way to another one of this name; it is "
     "left out"},
    {phrase::po_refused_text, "finding.po_refused_text",
     "message \"{message:string}\" is marked as fuzzy: its placeholders or the line ends at its edges are not "
     "those of the reference"},
    {phrase::po_no_reference, "finding.po_no_reference",
     "message \"{message:string}\" of language \"{lang:string}\" has no reference text"},
    {phrase::po_open_string, "finding.po_open_string", "the string is not closed in its line"},
    {phrase::po_bad_escape, "finding.po_bad_escape", "this is no escape for a byte other than NUL"},
    {phrase::po_control_character, "finding.po_control_character", "the string holds NUL or U+0004"},
    {phrase::po_not_utf8, "finding.po_not_utf8", "the entry is not UTF-8"},
    {phrase::po_no_keyword, "finding.po_no_keyword", "neither a keyword nor a string stands here"},
    {phrase::po_misplaced, "finding.po_misplaced", "this cannot stand here"},
    {phrase::po_no_text, "finding.po_no_text", "the entry has no msgid or no msgstr"},
    {phrase::po_charset, "finding.po_charset", "the charset of the file is not known; msgconv makes UTF-8 of it"},
    {phrase::po_not_charset, "finding.po_not_charset", "the file holds bytes that its charset does not have"},
    {phrase::po_many_faults, "finding.po_many_faults",
     "these are {n:int} faults already; the rest of the file is not looked at"},
    {phrase::po_no_language, "finding.po_no_language", "the header names no language; give one with --lang"},
    {phrase::po_no_name, "finding.po_no_name", "msgctxt is not \"catalog/message\"; --catalog takes such entries"},
    {phrase::po_duplicate, "finding.po_duplicate", "there is such an entry already"},
    {phrase::po_placeholders, "finding.po_placeholders", "the placeholders of msgstr are not those of msgid"},
    {phrase::po_imported, "po.imported",
     "{path:string}: {messages:string}, {untranslated:int} untranslated, {fuzzy:int} fuzzy"},
    {phrase::messages_one, "count.messages.one", "{n:int} message"},
    {phrase::messages_other, "count.messages.other", "{n:int} messages"},
    {phrase::po_language_refused, "error.po_language", "a PO file cannot name the language \"{lang:string}\""},
    {phrase::directory_not_made, "error.directory_not_made",
     "the directory \"{path:string}\" cannot be made: {reason:string}"},
    {phrase::about_po_second_message, "rule.po_second_message",
     "Of several messages of one name only the one that the library serves is written."},
    {phrase::about_po_fuzzy, "rule.po_fuzzy",
     "gettext refuses a translation whose placeholders, or line ends at its edges, are not those of the reference; "
     "marked as fuzzy it passes, and import-po keeps it."},
    {phrase::about_po_bad_language, "rule.po_bad_language",
     "A PO file and its name can hold languages of up to 64 letters, digits and the characters . - _ @ only; a "
     "message of another one is not written."},
    {phrase::about_po_reference, "rule.po_reference",
     "A message that the reference language lacks has its own text as msgid, which tells translators nothing."},
    {phrase::about_po_text, "rule.po_text",
     "NUL, U+0004 and bytes that are no UTF-8 cannot be in a PO file; a message with one of them is not written."},
    {phrase::about_po_duplicate, "rule.po_duplicate",
     "Of several entries with the same msgctxt, and with --catalog the same msgid, only the first becomes a "
     "message."},
    {phrase::about_po_placeholders, "rule.po_placeholders",
     "A translation needs the same placeholders as msgid; a plural form may lack some."},
    {phrase::about_po_brace, "rule.po_brace",
     "Beside placeholders a brace is written twice; a single one becomes text, but other programs stumble over "
     "it."},
    {phrase::about_po_context, "rule.po_context",
     "msgctxt names the catalog and the message, with \"/\" between; with --catalog it may be anything. Another "
     "entry is not imported."},
    {phrase::about_po_no_language, "rule.po_no_language",
     "The header names the language of a file unless --lang does; without one the file is not imported."},
    {phrase::about_po_note, "rule.po_note",
     "A note tells what a placeholder stands for; when it cannot be read, or names a type that is none, the "
     "placeholder becomes a string."},
    {phrase::about_po_syntax, "rule.po_syntax",
     "One fault in the form of a PO file, and nothing of the file is imported."},
    // Lists, edits and checks of configuration.
    {phrase::config_list_about, "config.list.about", "Lists settings with the places that they come from"},
    {phrase::config_list_notes, "config.list.notes",
     "The sources are those of \"zolt config show\". Of one key the setting that counts comes first; --all shows "
     "those after it that it hides, and what the file says of it further up. In JSON, bytes that are no UTF-8 are "
     "hexadecimal digits, as \"value_hex\", \"values_hex\" or \"key_hex\". With -z a record is the key, a line "
     "feed, the value as it is and a NUL; "
     "within, a NUL is \\x00, and a line feed in a key \\x0A; elements of an array are records of their own. "
     "Before the key come, each with a NUL, the origin (\"command line\", \"environment\" or \"file:NAME:LINE\") "
     "with --show-origin, and \"effective\" or \"overridden\" with --all.\nExit status: 0, or 2 when the file "
     "cannot be read.\nExample: zolt config list --file app.cfg --env --show-origin --all --mask=password"},
    {phrase::all_option, "option.all", "Show overridden settings, too"},
    {phrase::nul_option, "option.nul", "End records with NUL, for other programs"},
    {phrase::mask_option, "option.mask",
     "Hide the values of keys that contain PATTERN, in which * is any text and ? any byte; may be repeated"},
    {phrase::setting_overridden, "setting.overridden", "overridden"},
    {phrase::origin_overridden, "source.overridden", "{origin:string}, overridden"},
    {phrase::unwritable_empty, "error.unwritable_empty",
     "\"{key:string}\" cannot be set to nothing: a file has no empty values; \"zolt config unset\" removes it"},
    {phrase::unwritable_last, "error.unwritable_last",
     "array \"{key:string}\" cannot end in an empty element: no array is read from such a line"},
    {phrase::unwritable_quote, "error.unwritable_quote",
     "\"{key:string}\" cannot hold a double quote without a backslash before it: a file has no way to write one"},
    {phrase::unwritable_key, "error.unwritable_key", "a key with a double quote cannot be written"},
    {phrase::unwritable_no_key, "error.unwritable_no_key", "a key needs a name"},
    {phrase::key_in_array, "error.key_in_array",
     "\"{key:string}\" is an element of the array in line {line:int}; set the array anew"},
    {phrase::edit_not_alone, "error.edit_not_alone",
     "\"{path:string}\" is left as it is: its other statements do not let \"{key:string}\" alone be changed; "
     "\"zolt config check\" may tell why"},
    {phrase::edit_in_string, "error.edit_in_string",
     "\"{path:string}\" is left as it is: the string that begins in line {line:int} swallows line {other:int}; "
     "close it first"},
    {phrase::edit_in_array, "error.edit_in_array",
     "\"{path:string}\" is left as it is: the array that begins in line {line:int} swallows line {other:int}, "
     "since a comma stands before it; remove that first"},
    {phrase::edit_in_key, "error.edit_in_key",
     "\"{path:string}\" is left as it is: the key that begins in line {line:int} swallows line {other:int}, since "
     "no \"=\" stands before it; mend that first"},
    {phrase::edit_changes_line, "error.edit_changes_line",
     "\"{path:string}\" is left as it is: what line {line:int} sets does not let \"{key:string}\" alone be "
     "changed"},
    {phrase::setting_changed, "setting.changed", "{place:string}: {setting:string}, was {old:string}"},
    {phrase::setting_added, "setting.added", "{place:string}: {setting:string}, was not set"},
    {phrase::setting_removed, "setting.removed", "{place:string}: {key:string} is removed, was {old:string}"},
    {phrase::setting_unchanged, "setting.unchanged", "{place:string}: {setting:string}, unchanged"},
    {phrase::config_escaped_quote, "finding.config_escaped_quote",
     "the quote at a line's end has a backslash before it and does not close the string"},
    {phrase::config_split_string, "finding.config_split_string",
     "the string is closed in line {line:int} only, where more text follows"},
    {phrase::config_blank, "finding.config_blank", "the blank before \"{part:string}\" is lost; quotes keep it"},
    {phrase::config_cut, "finding.config_cut",
     "\"{part:string}\" begins a comment and cuts the value of \"{key:string}\"; quotes keep it"},
    {phrase::config_duplicate_key, "finding.config_duplicate_key",
     "\"{key:string}\" is set in line {line:int} already; this one counts"},
    {phrase::config_array_stays, "finding.config_array_stays",
     "\"{key:string}\" is an array in line {line:int} already; its elements that are not set here stay"},
    {phrase::config_case_difference, "finding.config_case_difference",
     "\"{key:string}\" is the key of line {line:int} but for upper and lower case; this one counts"},
    // zolt catalog missing and stats.
    {phrase::missing_about, "catalog.missing.about",
     "Tells what languages lack, have too much or left untranslated"},
    {phrase::missing_notes, "catalog.missing.notes",
     "Every message of the reference language (--ref) is looked up as a program would that asks for the "
     "language: in the language, in its base and in \".\". What comes from elsewhere, or from nowhere, is "
     "missing and reported where the reference has it; --allow-missing=N lets each language lack N messages. "
     "What is empty in the reference is never missing. A message that the reference does not have is obsolete. A "
     "text with words that is still that of the reference is a copy. It is a note when it may be a name: a single "
     "word, or words none of which is written small, unless most other languages have another text.\n"
     "Each language ends in a line that also tells from which languages its texts come. With --lang only one "
     "is looked at, also one that has no catalog yet. --ignore and a comment \"zolt-ignore RULE\" before a "
     "message silence the rules missing-translation (before that of the reference), obsolete-message and "
     "untranslated-copy.\n"
     "Exit status: 0 without findings as bad as --fail-on says; 1 with such; 2 when something could not be "
     "read.\n"
     "Example: zolt catalog missing --lang de --allow-missing=5 texts"},
    {phrase::stats_about, "catalog.stats.about", "Counts how far each language is translated"},
    {phrase::stats_notes, "catalog.stats.notes",
     "A row for each catalog of a language, and one for all of them: messages of the reference language (--ref) "
     "in all, those that are translated or missing, messages that the reference does not have, texts that are "
     "still those of the reference, which count as translated, too, and the words of the reference in what is "
     "translated. What counts as which is told by \"zolt catalog missing --help\". The per cent are rounded down, "
     "so that 100 means all; they are "
     "100, too, where there is nothing to translate.\n--gettext writes for each language the sentence of msgfmt "
     "--statistics: fuzzy are texts with other placeholders, or other line ends at their edges, than the "
     "reference; empty texts are untranslated. --svg draws a bar for each language.\nExit status: 0; 1 when a "
     "file is faulty, and 2 when one cannot be read or written; then the others are counted, and --svg draws into "
     "no file.\nExample: zolt catalog stats --svg languages.svg texts"},
    {phrase::allow_missing_option, "option.allow_missing",
     "Up to N missing messages of a language are warnings, no errors"},
    {phrase::gettext_option, "option.gettext", "Write the sentence of msgfmt --statistics for each language"},
    {phrase::svg_option, "option.svg",
     "Draw the languages into this file; \"-\" is the output, in place of the table"},
    {phrase::no_reference, "error.no_reference",
     "there is no catalog in the reference language \"{language:string}\"; --ref names another"},
    {phrase::too_many_languages, "error.too_many_languages",
     "{n:int} languages are too many to be looked at together; name one with --lang"},
    {phrase::translation_is_missing, "finding.translation_is_missing",
     "message \"{message:string}\" of catalog \"{catalog:string}\" is missing in language "
     "\"{language:string}\"; nothing is shown"},
    {phrase::translation_is_served, "finding.translation_is_served",
     "message \"{message:string}\" of catalog \"{catalog:string}\" is missing in language "
     "\"{language:string}\"; it is shown in \"{served:string}\""},
    {phrase::more_translations_missing, "finding.more_translations_missing",
     "{n:int} more messages are missing in language \"{language:string}\"; --lang lists more of them"},
    {phrase::message_is_obsolete, "finding.message_is_obsolete",
     "message \"{message:string}\" of catalog \"{catalog:string}\" in language \"{language:string}\" is not "
     "in the reference language \"{reference:string}\""},
    {phrase::message_is_copy, "finding.message_is_copy",
     "message \"{message:string}\" of catalog \"{catalog:string}\" in language \"{language:string}\" is "
     "still the text of the reference language \"{reference:string}\""},
    {phrase::message_may_be_copy, "finding.message_may_be_copy",
     "message \"{message:string}\" of catalog \"{catalog:string}\" in language \"{language:string}\" is the "
     "text of the reference language \"{reference:string}\", which may be a name"},
    {phrase::served_by_none, "missing.served_by_none", "none"},
    {phrase::missing_summary, "missing.summary",
     "{language:string}: missing {missing:int}, obsolete {obsolete:int}, same {copies:int}; texts from "
     "{served:string}"},
    {phrase::total_heading, "heading.total", "Total"},
    {phrase::translated_heading, "heading.translated", "Translated"},
    {phrase::missing_heading, "heading.missing", "Missing"},
    {phrase::obsolete_heading, "heading.obsolete", "Obsolete"},
    {phrase::copies_heading, "heading.copies", "Same"},
    {phrase::words_heading, "heading.words", "Words"},
    {phrase::all_catalogs, "stats.all_catalogs", "(all)"},
    {phrase::chart_title, "chart.title", "Translated messages"},
    {phrase::chart_copies, "chart.copies", "Same as the reference"},
    {phrase::about_missing_translation, "rule.missing_translation",
     "A message of the reference that neither a language nor its base has."},
    {phrase::about_obsolete_message, "rule.obsolete_message",
     "A message that the reference does not have is never shown where its program follows the reference."},
    {phrase::about_untranslated_copy, "rule.untranslated_copy",
     "A text that is still that of the reference was forgotten, unless it is a name."},

    // Rules of configuration files, and what pages and other programs read.
    {phrase::about_array_lost, "rule.array_lost", "An array that ends in a comma or an empty element is not set."},
    {phrase::about_array_runs_on, "rule.array_runs_on",
     "A comma at the end of a line makes the next line a part of the array."},
    {phrase::about_blank_dropped, "rule.blank_dropped", "Blanks inside a value are lost unless quotes keep them."},
    {phrase::about_byte_order_mark, "rule.byte_order_mark", "A byte order mark becomes a part of the first key."},
    {phrase::about_case_only_difference, "rule.case_only_difference",
     "Keys that differ in upper and lower case only are one key, of which the last line counts."},
    {phrase::about_comment_cut, "rule.comment_cut",
     "A comment begins anywhere in a value and cuts it; quotes keep what was meant."},
    {phrase::about_duplicate_key, "rule.duplicate_key",
     "Of several lines that set one key the last one counts, but the elements of a longer array stay."},
    {phrase::about_empty_value, "rule.empty_value",
     "A key without a value is not set: a file has no empty values."},
    {phrase::about_key_without_value, "rule.key_without_value",
     "A line without \"=\" sets nothing and becomes a part of the next key."},
    {phrase::about_unclosed_quote, "rule.unclosed_quote",
     "A string that is not closed takes what follows, line ends included."},
    {phrase::about_unclosed_section, "rule.unclosed_section",
     "A section that is not closed in its line takes what follows into its name."},
    {phrase::unknown_rule, "error.unknown_rule",
     "\"{rule:string}\" is no rule of this command; --list-rules shows those that are"},
    {phrase::program_notes, "program.notes",
     "\"zolt catalog\" has what translators need, \"zolt config\" what administrators need, and \"zolt inspect\" "
     "shows what a stored buffer holds. Every command describes itself with --help. Results go to standard output "
     "or to the file of --output; findings and complaints go to standard error. With --format=json most commands "
     "write for other programs, in UTF-8 and in an order that does not change.\nExit status: 0 when all is well; 1 "
     "when there is something to report, such as a fault that a check has found or a name that is not there; 2 "
     "when something cannot be read or written or the command line is wrong.\nEnvironment: LC_ALL, LC_MESSAGES or "
     "LANG and, when these name a language, LANGUAGE before them choose the language of the program (English or "
     "German) and, without --lang, that of the messages that "
     "it shows.\nZOLT_CATALOG_PATH names directories, separated by colons, in which catalogs with the texts of the "
     "program itself are looked for first.\nWith NO_COLOR, unless it is empty, and with TERM=dumb nothing is in "
     "colour.\nExample: zolt catalog check catalogs/\nzolt catalog render app.xmc app saved size:uint=5368709120 "
     "t:double=93784.5\nzolt config list --file app.cfg --env --show-origin -- -backup.level=3\nzolt inspect "
     "--binary \"u4 (i2 s)*\" record.bin"},
    // Comparing, laying out, test languages and schemas.
    {phrase::diff_about, "catalog.diff.about", "Compares the messages of two catalog files or directories"},
    {phrase::diff_notes, "catalog.diff.notes",
     "Compared is what a program is served of OLD and NEW, by language, catalog and message: the text, its "
     "placeholders with their types and options, and the meta text. Layout, comments, the order of messages "
     "and the files that hold them make no difference. A line \"+ LANGUAGE CATALOG/MESSAGE\" tells of a "
     "message that is new, \"-\" of one that is gone and \"~\" of one that has changed; file, line and text of "
     "the old and of the new one follow. With --lang only that language is compared, with -q only the exit "
     "status tells.\nExample: zolt catalog diff --lang de old/ new/\nExit status: 0 without differences; 1 "
     "with differences; 2 when something cannot be loaded."},
    {phrase::old_argument, "argument.old", "Catalog file or directory before the change"},
    {phrase::new_argument, "argument.new", "Catalog file or directory after it"},
    {phrase::fmt_about, "catalog.fmt.about", "Rewrites catalog files in one layout"},
    {phrase::fmt_notes, "catalog.fmt.notes",
     "Every catalog, message and include begins a line, two blanks further in than what it stands in; lines have "
     "up to 116 columns and end in a line feed, values stand in double quotes. Comments, the order and every text "
     "stay: the new file is loaded and compared with the old one before it takes its place. With -o the text of "
     "one file goes there, with \"-o -\" to standard output, and the file itself stays. A file that cannot be "
     "loaded is reported and left alone, and the others go on. --format=json tells of each file whether it has "
     "changed or, with --check, would change; -o is for this report then.\nExample: zolt catalog fmt --check "
     "catalogs/\nExit status: 0; 1 with --check when files would change; 2 when a file cannot be loaded or "
     "written."},
    {phrase::fmt_check_option, "option.fmt_check", "Write nothing, but list the files that would change"},
    {phrase::fmt_one_file, "error.fmt_one_file", "-o takes the text of a single file, and here are several"},
    {phrase::fmt_not_same, "finding.fmt_not_same",
     "the file stays as it is: in the new layout it would not mean the same"},
    {phrase::pseudo_about, "catalog.pseudo.about", "Makes a test language of the reference"},
    {phrase::pseudo_notes, "catalog.pseudo.notes",
     "With it a program shows before there are translations what is not ready for them. accent puts accents on "
     "ASCII letters, brackets around each line and a third more text between them: what has no accents comes from "
     "no catalog, and where a bracket is missing there is too little room. bidi writes every line from right to "
     "left. xxx writes x for letters and keeps digits. Placeholders, line ends, punctuation and blanks at the "
     "edges of lines stay, and zolt-ignore comments.\nThe messages are those of --ref; one catalog file of them "
     "goes to the output, or with --format=json the messages as \"zolt catalog show\" writes them. The language "
     "is that of --lang, otherwise the reference's with a region that no country has, so that what it lacks is "
     "shown in the reference: en_XA for accent, en_XB for bidi and en_XC for xxx.\nExample: zolt catalog pseudo "
     "--style=accent -o catalogs/en_XA.xmc catalogs/\nExit status: 0; 1 when a text is no UTF-8; 2 when something "
     "cannot be loaded or there are no messages."},
    {phrase::style_option, "option.style", "How texts change, by default accent"},
    {phrase::schema_about, "catalog.schema.about", "Prints a schema for catalog files"},
    {phrase::schema_notes, "catalog.schema.notes",
     "Editors complete and check catalogs by it, and so does xmllint. The schema describes the form that "
     "catalogs should have. It also refuses what the library loads and then loses: a catalog without lang, "
     "text outside of messages, an option that shows as ?invalid?. Types, options and their keywords are to be "
     "written in full and in lower case. An XML Schema does not know which options belong to which type.\nThe "
     "editor's settings or the command line have to name the schema: with a document type, a processing "
     "instruction or a second attribute of the root a catalog cannot be loaded. Of the references of catalogs "
     "&nbsp; is not known to other programs.\nExample: zolt catalog schema --rng -o xmc.rng; xmllint --noout "
     "--relaxng xmc.rng app.xmc\nExit status: 0, or 2 when it cannot be written."},
    {phrase::rng_option, "option.rng", "RELAX NG, in its XML syntax"},
    {phrase::xsd_option, "option.xsd", "W3C XML Schema"},

    // The command line itself.
    {phrase::usage_heading, "heading.usage", "Usage"},
    {phrase::options_place, "place.options", "OPTIONS"},
    {phrase::command_place, "place.command", "COMMAND"},
    {phrase::arguments_heading, "heading.arguments", "Arguments"},
    {phrase::options_heading, "heading.options", "Options"},
    {phrase::commands_heading, "heading.commands", "Commands"},
    {phrase::required_mark, "mark.required", "REQUIRED"},
    {phrase::excludes_mark, "mark.excludes", "not with"},
    {phrase::command_required, "error.command_required", "a command is required"},
    {phrase::unknown_command, "error.unknown_command", "\"{command:string}\" is no command"},
    {phrase::argument_required, "error.argument_required", "{argument:string} is required"},
    {phrase::unexpected_argument, "error.unexpected_argument",
     "\"{argument:string}\" was not expected; what starts with \"-\" and is no option stands behind \"--\""},
    {phrase::see_help, "error.see_help", "--help tells more"},
    {phrase::no_result, "error.no_result",
     "this command writes its own file; -o takes only what --format=json tells"},
    {phrase::not_a_number, "error.not_a_number", "a whole number is expected, 0 or greater"},
    {phrase::result_is_input, "error.result_is_input",
     "\"{path:string}\" is what the command reads; the result needs another file"},
    // Doubts about PO files.
    {phrase::po_stray_brace, "finding.po_stray_brace",
     "a brace in msgstr becomes text: it belongs to no placeholder and is not doubled"},
    {phrase::po_bad_note, "finding.po_bad_note",
     "a line with \"#.\" does not describe a placeholder, which becomes a string of that name"},
    {phrase::po_no_translations, "error.po_no_translations",
     "there are no translations to import; nothing is written"},
    // Catalog rules across files, and further faults of the command line.
    {phrase::message_gives_way, "finding.message_gives_way",
     "message \"{message:string}\" in language \"{language:string}\" gives way to the one in {place:string} when "
     "\"{path:string}\" is loaded"},
    {phrase::value_required, "error.value_required", "{option:string} needs a value: {other:string}"},
    {phrase::given_twice, "error.given_twice", "{option:string} is given more than once"},
    {phrase::options_exclude, "error.options_exclude", "{option:string} and {other:string} exclude each other"},
    {phrase::takes_no_value, "error.takes_no_value", "{option:string} takes no value"},
    {phrase::not_a_choice, "error.not_a_choice", "\"{value:string}\" is unknown; there are {words:string}"},
    {phrase::number_too_large, "error.number_too_large", "the number is too large"},
    {phrase::unexpected_word, "error.unexpected_word", "\"{argument:string}\" was not expected"},
    {phrase::choice_required, "error.choice_required", "one of {options:string} is required"},
    // Catalog rules: the start of messages, names, references; and files that are written.
    {phrase::space_is_added_at_start, "finding.space_is_added_at_start",
     "message \"{message:string}\" starts with a blank, in language \"{language:string}\" it does not"},
    {phrase::space_is_missing_at_start, "finding.space_is_missing_at_start",
     "message \"{message:string}\" starts with a blank in language \"{language:string}\", here it does not"},
    {phrase::control_in_name, "finding.control_in_name", "control character {byte:string} in the name"},
    {phrase::about_unknown_rule, "rule.unknown_rule",
     "What no rule is called cannot be silenced; the reason stands behind a colon."},
    {phrase::no_comparison, "note.no_comparison",
     "there is no catalog in the reference language \"{language:string}\": languages are not compared; --ref names "
     "another"},
    {phrase::same_result, "error.same_result", "\"{path:string}\" is named by both --svg and -o"},
    // What the commands of a group share.
    {phrase::catalog_notes, "catalog.notes",
     "What these commands share: PATH is a catalog file, or a directory, of which every .xmc and .xml file is "
     "taken, those further below, too, in the order of their names. A file comes with those that it includes. Of "
     "several messages of one name, catalog and language it is the first that counts within a file and what it "
     "includes, and the last across files. Findings stand on standard error as file:line:column: error: text "
     "[rule] (or warning, or note); --ignore silences a rule, --fail-on says which findings make the exit status "
     "1, and --ref which language others are compared with.\nExit status: 0 when all is well; 1 when there is "
     "something to report; 2 when something cannot be read or written or the command line is wrong.\nExample: zolt "
     "catalog check --fail-on=warning catalogs/\nzolt catalog missing --lang=de catalogs/\nzolt catalog show "
     "--lang=de_AT catalogs/ app greeting"},
    {phrase::config_notes, "config.notes",
     "What these commands share: show, list and get read what an application would: its own command line "
     "(ARGUMENT, behind \"--\"), a file (--file) and the environment (--env), each of which hides those after it. "
     "check, set and unset take a FILE itself; set and unset change one line of it, keep every other byte, and put "
     "the new file in the place of the old one only when it is whole. Keys are written with dots, such as "
     "backup.level.\nExit status: 0 when all is well; 1 when there is something to report, such as a key that is "
     "not there; 2 when something cannot be read or written or the command line is wrong.\nExample: zolt config "
     "list --show-origin --file app.cfg --env -- -backup.level=3\nzolt config set app.cfg backup.level 4\nzolt "
     "config check app.cfg"},
    // Lines of configuration files that are lost.
    {phrase::config_no_key, "finding.config_no_key", "nothing stands before \"=\": the value has no key"},
    {phrase::config_empty_name, "finding.config_empty_name",
     "a separator too many makes an empty name in \"{key:string}\""},
    {phrase::config_lone_return, "finding.config_lone_return",
     "a carriage return without a line feed ends no line"},
    {phrase::config_invisible, "finding.config_invisible",
     "{part:string} is text here, neither a blank nor a line end"},
    {phrase::config_inner_quote, "finding.config_inner_quote",
     "a quote within the text opens a string that is closed in line {line:int} only"},
    {phrase::about_carriage_return, "rule.carriage_return",
     "Lines that end in carriage returns alone are one line, or one comment."},
    {phrase::about_empty_name, "rule.empty_name",
     "A separator too many, as at the end of a section's name, makes another key."},
    {phrase::about_invisible_character, "rule.invisible_character",
     "A no-break space or control character looks like nothing and is a part of the key or value."},
    {phrase::about_value_without_key, "rule.value_without_key",
     "A line that begins with \"=\" sets its section's own name, or the empty key."},
    {phrase::config_lost_quotes, "finding.config_lost_quotes",
     "quotes in the middle of a value vanish, and what is between them is text"},
    {phrase::config_kept_backslash, "finding.config_kept_backslash",
     "the backslash before a quote stays in the value; no written form gives the quote alone"},
    {phrase::about_backslash_kept, "rule.backslash_kept",
     "A backslash lets a quote be a part of a string, and stays in the value itself."},
    {phrase::about_quote_dropped, "rule.quote_dropped", "Quotes that do not begin and end a value vanish from it."},
    {phrase::config_joined_mark, "finding.config_joined_mark",
     "\"{part:string}\" becomes a part of the key \"{key:string}\": \"{mark:string}\" is text and does not "
     "separate"},
    {phrase::config_no_separator, "finding.config_no_separator",
     "\"{part:string}\" sets nothing: \"{mark:string}\" is text and does not separate"},
    {phrase::config_swallowed_line, "finding.config_swallowed_line",
     "the string takes in line {line:int}, which looks like a statement, a section or a comment"},
};

constexpr bool are_in_order() {
    for (std::size_t i = 0; i != std::size(texts); ++i) {
        if (static_cast<std::size_t>(texts[i].id) != i) return false;
    }
    return std::size(texts) == static_cast<std::size_t>(phrase::count_of_texts);
}
static_assert(are_in_order());

ustring8 program_directory() {
    std::array<char, 4096> buffer;
    ssize_t const size = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
    if (size <= 0 || static_cast<std::size_t>(size) == buffer.size()) return "";
    ustring8 const path(buffer.data(), static_cast<std::size_t>(size));
    return path.substr(0, path.find_last_of('/'));
}

std::vector<ustring8> catalog_directories() {
    std::vector<ustring8> directories;
    char const* const configured = std::getenv("ZOLT_CATALOG_PATH");
    if (configured) directories = zolt::strings::split_string(ustring8(configured), ":");
    ustring8 const program = program_directory();
    if (!program.empty()) {
        directories.push_back(program + "/catalogs");
        directories.push_back(program + "/" ZOLT_TOOL_CATALOGS);
    }
    return directories;
}

// English and each part of the language: en, de, de_AT. What cannot be part of a file name is left out.
std::vector<ustring8> file_languages(ustring8 const& language) {
    std::vector<ustring8> result;
    ustring8 const id = normalized_language(language);
    if (id.find_first_of(std::string("/\0", 2)) == ustring8::npos) {
        result.push_back(id);
        for_each_base(id, [&](std::string_view base) { result.emplace_back(std::string(base)); });
    }
    result.emplace_back("en");
    std::reverse(result.begin(), result.end());
    return result;
}

} // namespace

program_messages::built_in const& program_messages::find(phrase id) { return texts[static_cast<std::size_t>(id)]; }

program_messages::program_messages(ustring8 const& language) {
    std::vector<ustring8> const directories = catalog_directories();
    for (ustring8 const& part : file_languages(language)) {
        for (ustring8 const& directory : directories) {
            ustring8 const path = directory + "/zolt." + part + ".xmc";
            if (!zolt::system::io::is_file(path)) continue;
            m_catalogs.load_file(path, language, catalog);
            break;
        }
    }
}

ustring8 program_messages::get(phrase id, zolt::generic::varg_list const& arguments) const {
    built_in const& entry = find(id);
    zolt::i18n::message_t const& message = m_catalogs.message(catalog, ustring8(std::string(entry.name)));
    if (message.size() != 0) return message.as_utf8(arguments);
    return zolt::i18n::message_t(ustring8(), parse_notation(entry.english)).as_utf8(arguments);
}

ustring8 program_messages::counted(phrase one, std::size_t number) const {
    phrase const id = number == 1 ? one : static_cast<phrase>(static_cast<unsigned>(one) + 1);
    return get(id, {{"n", static_cast<unsigned long long>(number)}});
}

} // namespace tools
