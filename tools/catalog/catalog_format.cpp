// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_format.hpp"

#include "catalog_layout.hpp"
#include "catalog_paths.hpp"
#include "catalog_texts.hpp"
#include "catalog_tree.hpp"
#include "tools/program/files.hpp"
#include "tools/program/findings.hpp"
#include "tools/program/json.hpp"
#include "tools/program/result_file.hpp"

#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/parser/xml_token_stream.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <deque>
#include <filesystem>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

namespace tools {
namespace {

using zolt::i18n::message_catalogs;
using zolt::i18n::message_t;
using zolt::parser::xml_token_stream;
using token = xml_token_stream::token;

// Each is a load of both files; that all messages are the same is known without.
constexpr std::size_t most_languages = 8;

/// A text, parsed once.
struct parsed_catalog {
    xml_token_stream tokens{};
    std::vector<catalog_message> messages{};
};

/// What the library makes of a file in each of some languages.
using loaded_catalogs = std::deque<message_catalogs>;

bool is_same(message_t const& left, message_t const& right) {
    return left.name() == right.name() && left._orginal_locale() == right._orginal_locale() &&
           has_same_content(left, right);
}

bool has_same_messages(std::vector<catalog_message> const& left, std::vector<catalog_message> const& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](catalog_message const& a, catalog_message const& b) {
                          return a.catalog == b.catalog && is_same(a.message, b.message);
                      });
}

bool has_same_messages(message_catalogs const& left, message_catalogs const& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](auto const& a, auto const& b) {
        return a.first == b.first &&
               std::equal(a.second->begin(), a.second->end(), b.second->begin(), b.second->end(),
                          [](auto const& x, auto const& y) { return is_same(x.second, y.second); });
    });
}

std::vector<ustring8> some_languages_of(source_file const& file) {
    std::vector<ustring8> languages = languages_of(file);
    languages.resize(std::min(languages.size(), most_languages));
    return languages;
}

// Comments may differ in how their lines end.
bool has_same_value(token const& left, token const& right) {
    return left.value() == right.value() ||
           (left.type() == token::comment && with_line_feeds(left.value()) == with_line_feeds(right.value()));
}

// All but the blanks between elements and words, and whether an empty element has an end tag.
bool has_same_tokens(xml_token_stream const& left, xml_token_stream const& right) {
    auto const skip_space = [](auto& at, auto const& end) {
        while (at != end && (at->type() == token::space || at->type() == token::start_tag_end)) ++at;
        return at != end;
    };
    auto a = left.begin();
    auto b = right.begin();
    for (;; ++a, ++b) {
        bool const has_left = skip_space(a, left.end());
        if (skip_space(b, right.end()) != has_left) return false;
        if (!has_left) return true;
        if (a->type() != b->type() || !has_same_value(*a, *b)) return false;
    }
}

bool is_same_catalog(source_file const& file, parsed_catalog const& before, ustring8 const& text) {
    parsed_catalog after;
    return after.tokens.parse(text).kind == zolt::parser::xml_parser::parse_error::no_error &&
           has_same_tokens(before.tokens, after.tokens) && read_messages(file, after.tokens, after.messages) == 0 &&
           has_same_messages(before.messages, after.messages);
}

// False at the first language in which the library refuses the file; `refused` then names it.
bool load_all(ustring8 const& path, std::vector<ustring8> const& languages, loaded_catalogs& loaded,
              ustring8& refused) {
    for (ustring8 const& language : languages) {
        if (loaded.emplace_back().load_file(path, language).code() == message_catalogs::no_error) continue;
        refused = language;
        return false;
    }
    return true;
}

// The file is the one that was laid out.
bool loads_the_same(ustring8 const& path, std::vector<ustring8> const& languages, loaded_catalogs const& expected) {
    for (std::size_t i = 0; i != languages.size(); ++i) {
        message_catalogs loaded;
        bool const is_loaded = loaded.load_file(path, languages[i]).code() == message_catalogs::no_error;
        if (!is_loaded || !has_same_messages(expected[i], loaded)) return false;
    }
    return true;
}

class formatter {
public:
    formatter(session const& session, format_options const& options)
        : m_session(session), m_options(options), m_found(session) {}

    exit_status run() {
        std::vector<ustring8> const files = files_to_lay_out();
        if (files.empty() || !is_result_file_fit(files)) return exit_failed;
        progress_bar progress(m_session.err);
        for (std::size_t i = 0; i != files.size(); ++i) {
            if (!m_session.options.is_quiet) progress.show(i, files.size());
            bool const has_changed = format(files[i]);
            if (m_session.is_json()) m_report.emplace_back(files[i], has_changed);
            m_has_changes = m_has_changes || has_changed;
        }
        bool const is_report_lost = m_has_failed && m_session.options.has_result_file; // -o is for good ends
        if (m_session.is_json()) print_report();
        if (!m_session.is_json() || is_report_lost) m_found.print();
        if (m_has_failed) return exit_failed;
        return m_options.is_check && m_has_changes ? exit_findings : exit_good;
    }

private:
    void fail(phrase id, zolt::generic::varg_list const& arguments) {
        m_session.complain(m_session.texts.get(id, arguments));
        m_has_failed = true;
    }

    // Without those that are not there.
    std::vector<ustring8> files_to_lay_out() {
        std::vector<ustring8> files;
        std::set<ustring8> known;
        for (ustring8 const& path : m_options.paths) {
            auto const found = files_to_read(m_session, {path});
            m_has_failed = m_has_failed || !found;
            for (ustring8 const& file : found.value_or(std::vector<ustring8>())) {
                if (known.insert(file).second) files.push_back(file);
            }
        }
        return files;
    }

    // -o takes the text of one file, which may be its own place, or what is told about all of them.
    bool is_result_file_fit(std::vector<ustring8> const& files) {
        common_options const& given = m_session.options;
        m_has_result_file = given.has_result_file && !m_options.is_check && !m_session.is_json();
        if (m_has_result_file && files.size() != 1) return fail(phrase::fmt_one_file, {}), false;
        return m_has_result_file || std::none_of(files.begin(), files.end(), [this](ustring8 const& file) {
                   return is_target(m_session, file);
               });
    }

    // The text may take the place of the file itself, not of one that it includes.
    bool includes_target(ustring8 const& path) const {
        if (m_session.options.result_file == "-") return false;
        catalog_sources sources;
        sources.add(path);
        sources.read_next();
        while (source_file const* const included = sources.read_next()) {
            if (is_target(m_session, included->path)) return true;
        }
        return false;
    }

    // True when the file has another layout than it should have, and nothing speaks against it.
    bool format(ustring8 const& path) {
        ustring8 text;
        if (!load(path, text)) return fail(phrase::not_readable, why_unreadable(path)), false;
        if (includes_target(path)) return m_has_failed = true, false;
        source_file file{.path = path, .is_readable = true};
        parsed_catalog before;
        read_elements(file, text, before.tokens);
        loaded_catalogs loaded;
        if (!is_valid(file, before, loaded)) return m_has_failed = true, false;
        ustring8 const laid_out = lay_out_catalog(text);
        bool const is_changed = laid_out != text;
        if (is_changed && !is_same_catalog(file, before, laid_out)) return refuse(path);
        if (m_has_result_file) return m_session.out.write(laid_out), is_changed;
        if (is_changed && m_options.is_check && !m_session.is_json()) m_session.out.line(printable(path));
        if (!is_changed || m_options.is_check) return is_changed;
        m_session.tell(path);
        return replace(file, text, laid_out, loaded);
    }

    bool is_valid(source_file const& file, parsed_catalog& content, loaded_catalogs& loaded) {
        unsigned const fault =
            file.is_well_formed ? read_messages(file, content.tokens, content.messages) : file.fault_line;
        if (fault != 0) return add_element_fault(m_session, m_found, file, fault), false;
        ustring8 refused;
        return load_all(file.path, some_languages_of(file), loaded, refused) ||
               !add_load_fault(m_session, m_found, file, {refused});
    }

    // The new file stands beside the old one, so that both include the same.
    bool replace(source_file const& file, ustring8 const& before, ustring8 const& after, loaded_catalogs& loaded) {
        result_file target(file.path);
        std::vector<ustring8> const languages = some_languages_of(file);
        ustring8 refused;
        if (target.stream()) {
            target.write(after);
            (void)std::fflush(target.stream());
            bool const is_whole = std::ferror(target.stream()) == 0 && !target.temporary().empty();
            std::error_code no_link;
            if (is_whole && std::filesystem::is_symlink(file.path.c_str(), no_link)) {
                loaded.clear();
                if (!load_all(real_path(file.path), languages, loaded, refused)) return refuse(file.path);
            }
            if (is_whole && !loads_the_same(target.temporary(), languages, loaded)) return refuse(file.path);
        }
        // Nobody else's change is to be lost.
        ustring8 now;
        if (target.stream() && (!load(file.path, now) || now != before)) return refuse(file.path);
        int const error = target.commit();
        if (error != 0) fail(phrase::file_not_written, {{"path", file.path}, {"reason", std::strerror(error)}});
        return error == 0;
    }

    bool refuse(ustring8 const& path) {
        m_found.add({path, 1, 1, severity::error, "layout", m_session.texts.get(phrase::fmt_not_same)});
        m_has_failed = true;
        return false;
    }

    void print_report() {
        json_writer json;
        json.begin_object();
        json.begin_array("files");
        for (auto const& [path, has_changed] : m_report) {
            json.begin_object();
            json.member("file", path);
            json.member("changed", has_changed);
            json.end_object();
        }
        json.end_array();
        m_found.append_to(json);
        json.end_object();
        m_session.out.line(json.text());
    }

    session const& m_session;
    format_options const& m_options;
    finding_list m_found;
    std::vector<std::pair<ustring8, bool>> m_report;
    bool m_has_result_file = false; // for the text of a file
    bool m_has_changes = false;
    bool m_has_failed = false;
};

} // namespace

exit_status format_catalogs(session const& session, format_options const& options) {
    return formatter(session, options).run();
}

bool is_same_catalog(source_file const& file, ustring8 const& before, ustring8 const& after) {
    parsed_catalog content;
    return content.tokens.parse(before).kind == zolt::parser::xml_parser::parse_error::no_error &&
           read_messages(file, content.tokens, content.messages) == 0 && is_same_catalog(file, content, after);
}

} // namespace tools
