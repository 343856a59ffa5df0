// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// program_messages: what the program says to people, in their language.
//
// The texts come from the catalog "zolt" in files named zolt.<language>.xmc. Directories are searched
// in this order: those in ZOLT_CATALOG_PATH (separated by colons), "catalogs" beside the program, and
// the data directory of the installation. English is built in for whatever is not found there.
#pragma once

#include "library.hpp"

#include <zolt/generic/varg_list.hpp>
#include <zolt/i18n/message_catalogs.hpp>

#include <cstddef>
#include <string_view>

namespace tools {

/// One enumerator for each text; program_messages.cpp has them in the same order.
enum class phrase : unsigned {
    program_about,
    help_option,
    version_option,
    catalog_about,
    list_about,
    list_notes,
    show_about,
    show_notes,
    render_about,
    render_notes,
    check_about,
    check_notes,
    path_argument,
    paths_argument,
    catalog_argument,
    message_argument,
    values_argument,
    lang_option,
    json_option,

    catalog_heading,
    language_heading,
    languages_heading,
    messages_heading,
    message_heading,
    note_heading,
    text_heading,

    no_catalog,
    no_message,
    missing_argument,
    bad_argument,
    bad_type,
    bad_value,
    repeated_argument,
    no_path,
    not_readable,
    no_files,
    write_failed,

    unknown_type,
    lost_option,
    no_language,
    duplicate_message,
    placeholder_unknown,
    placeholder_missing,
    missing_message,

    // For these the text for 1 is followed by the text for every other number.
    files_one,
    files_other,
    catalogs_one,
    catalogs_other,
    languages_one,
    languages_other,
    errors_one,
    errors_other,
    warnings_one,
    warnings_other,
    check_summary,

    config_about,
    config_show_about,
    config_show_notes,
    config_get_about,
    config_get_notes,
    config_set_about,
    config_set_notes,
    config_unset_about,
    config_unset_notes,
    config_check_about,
    config_check_notes,
    inspect_about,
    inspect_notes,
    key_argument,
    setting_values_argument,
    config_file_argument,
    config_files_argument,
    application_argument,
    buffer_argument,
    file_option,
    env_option,
    origin_option,
    default_option,
    labeled_option,
    text_option,
    binary_option,

    source_command_line,
    source_environment,
    buffer_labeled,
    buffer_text,
    buffer_binary,
    buffer_unknown,

    no_setting,
    file_not_written,
    bad_pattern,

    damaged_buffer,
    damage_length,
    damage_short,
    damage_separator,
    damage_label,
    damage_field,
    damage_open_field,
    damage_missing,
    damage_rest,

    config_bom,
    config_no_equals,
    config_no_value,
    config_open_array,
    config_open_string,
    config_open_section,
    config_joined_key,
    config_joined_array,

    // As above, the text for 1 and the text for every other number.
    bytes_one,
    bytes_other,
    config_check_summary,

    // zolt catalog check.
    list_rules_option,
    notes_one,
    notes_other,
    other_spelling,
    absolute_include,
    missing_include,
    include_is_cycle,
    type_not_rendered,
    bad_options,
    unit_differs,
    nbsp_in_text,
    reference_is_byte,
    byte_is_no_text,
    control_in_text,
    space_is_lost,
    line_end_is_space,
    space_is_added,
    space_is_missing,
    translation_is_empty,
    punctuation_differs,
    placeholder_type_differs,
    more_missing,
    about_arg_name_not_first,
    about_bad_option,
    about_byte_reference,
    about_catalog_without_lang,
    about_control_character,
    about_duplicate_lang_spelling,
    about_duplicate_message,
    about_edge_space,
    about_empty_translation,
    about_include_absolute,
    about_include_cycle,
    about_include_missing,
    about_invalid_utf8,
    about_load,
    about_missing_message,
    about_nbsp_is_blank,
    about_placeholder_set,
    about_placeholder_type,
    about_punctuation,
    about_unit_pair,
    about_unknown_type,
    about_unrendered_type,

    // The options of every command.
    common_options_heading,
    quiet_option,
    verbose_option,
    output_option,
    format_option,
    reference_option,
    fail_on_option,
    ignore_option,
    no_json,

    // Export and import of PO files.
    export_po_about,
    export_po_notes,
    import_po_about,
    import_po_notes,
    po_files_argument,
    po_directory_option,
    po_catalog_option,
    use_fuzzy_option,
    po_one_language,
    po_no_messages,
    po_faulty_catalog,
    po_bad_language,
    po_bad_text,
    po_second_message,
    po_refused_text,
    po_no_reference,
    po_open_string,
    po_bad_escape,
    po_control_character,
    po_not_utf8,
    po_no_keyword,
    po_misplaced,
    po_no_text,
    po_charset,
    po_not_charset,
    po_no_language,
    po_no_name,
    po_duplicate,
    po_placeholders,
    po_imported,
    messages_one,
    messages_other,
    po_language_refused,
    directory_not_made,
    about_po_second_message,
    about_po_fuzzy,
    about_po_bad_language,
    about_po_reference,
    about_po_text,
    about_po_duplicate,
    about_po_placeholders,
    about_po_brace,
    about_po_context,
    about_po_no_language,
    about_po_note,
    about_po_syntax,
    // Lists, edits and checks of configuration.
    config_list_about,
    config_list_notes,
    all_option,
    nul_option,
    mask_option,
    setting_overridden,
    origin_overridden,
    unwritable_empty,
    unwritable_last,
    unwritable_quote,
    unwritable_key,
    unwritable_no_key,
    key_in_array,
    edit_not_alone,
    edit_in_string,
    edit_in_array,
    config_escaped_quote,
    config_split_string,
    config_blank,
    config_cut,
    config_duplicate_key,
    config_array_stays,
    config_case_difference,
    // zolt catalog missing and stats.
    missing_about,
    missing_notes,
    stats_about,
    stats_notes,
    allow_missing_option,
    gettext_option,
    svg_option,
    no_reference,
    too_many_languages,
    translation_is_missing,
    translation_is_served,
    more_translations_missing,
    message_is_obsolete,
    message_is_copy,
    served_by_none,
    missing_summary,
    total_heading,
    translated_heading,
    missing_heading,
    obsolete_heading,
    copies_heading,
    words_heading,
    all_catalogs,
    chart_title,
    chart_copies,
    about_missing_translation,
    about_obsolete_message,
    about_untranslated_copy,

    // Rules of configuration files, and what pages and other programs read.
    about_array_lost,
    about_array_runs_on,
    about_blank_dropped,
    about_byte_order_mark,
    about_case_only_difference,
    about_comment_cut,
    about_duplicate_key,
    about_empty_value,
    about_key_without_value,
    about_unclosed_quote,
    about_unclosed_section,
    unknown_rule,
    program_notes,

    // Comparing, laying out, test languages and schemas.
    diff_about,
    diff_notes,
    old_argument,
    new_argument,
    fmt_about,
    fmt_notes,
    fmt_check_option,
    fmt_one_file,
    fmt_not_same,
    pseudo_about,
    pseudo_notes,
    style_option,
    schema_about,
    schema_notes,
    rng_option,
    xsd_option,

    // The command line itself.
    usage_heading,
    options_place,
    command_place,
    arguments_heading,
    options_heading,
    commands_heading,
    required_mark,
    excludes_mark,
    command_required,
    unknown_command,
    argument_required,
    unexpected_argument,
    see_help,
    no_result,
    not_a_number,
    result_is_input,

    // Doubts about PO files.
    po_stray_brace,
    po_bad_note,
    po_no_translations,

    // Catalog rules across files, and further faults of the command line.
    message_gives_way,
    value_required,
    given_twice,
    options_exclude,
    takes_no_value,
    not_a_choice,
    number_too_large,
    unexpected_word,
    choice_required,

    // What the commands of a group share.
    catalog_notes,
    config_notes,
    // Lines of configuration files that are lost.
    config_no_key,
    config_empty_name,
    config_lone_return,
    config_invisible,
    config_inner_quote,
    about_carriage_return,
    about_empty_name,
    about_invisible_character,
    about_value_without_key,

    count_of_texts
};

class program_messages {
public:
    /// A text's name in the catalogs, and its built-in English in the notation of notation.hpp.
    struct built_in {
        phrase id;
        std::string_view name;
        std::string_view english;
    };
    static built_in const& find(phrase id);

    /// Loads what there is for the language.
    explicit program_messages(ustring8 const& language);

    ustring8 get(phrase id, zolt::generic::varg_list const& arguments = {}) const;
    /// The text for a number of things; `one` is the text for a single one.
    ustring8 counted(phrase one, std::size_t number) const;

private:
    zolt::i18n::message_catalogs m_catalogs;
};

} // namespace tools
