// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "catalog_format.hpp"

#include "catalog_layout.hpp"
#include "catalog_texts.hpp"
#include "catalog_tree.hpp"
#include "tools/program/files.hpp"
#include "tools/program/findings.hpp"
#include "tools/program/result_file.hpp"

#include <zolt/i18n/message_catalogs.hpp>
#include <zolt/parser/xml_token_stream.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>
#include <system_error>

namespace tools {
namespace {

using zolt::i18n::message_catalogs;
using zolt::i18n::message_t;
using zolt::parser::xml_token_stream;
using token = xml_token_stream::token;

// Each is a load of both files; that all messages are the same is known without.
constexpr std::size_t most_languages = 8;

bool is_same(message_t const& left, message_t const& right) {
    return left.name() == right.name() && left._orginal_locale() == right._orginal_locale() &&
           has_same_content(left, right);
}

std::vector<ustring8> some_languages_of(source_file const& file) {
    std::vector<ustring8> languages = languages_of(file);
    languages.resize(std::min(languages.size(), most_languages));
    return languages;
}

// All but the blanks between elements and words, and whether an empty element has an end tag.
bool has_same_tokens(ustring8 const& before, ustring8 const& after) {
    xml_token_stream left;
    xml_token_stream right;
    left.parse(before);
    if (right.parse(after).kind != zolt::parser::xml_parser::parse_error::no_error) return false;
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
        if (a->type() != b->type() || a->value() != b->value()) return false;
    }
}

// What the library itself makes of two files side by side.
bool loads_the_same(ustring8 const& before, ustring8 const& after, std::vector<ustring8> const& languages) {
    for (ustring8 const& language : languages) {
        message_catalogs left;
        message_catalogs right;
        if (left.load_file(before, language).code() != right.load_file(after, language).code()) return false;
        bool const has_same_messages =
            std::equal(left.begin(), left.end(), right.begin(), right.end(), [](auto const& a, auto const& b) {
                return a.first == b.first &&
                       std::equal(a.second->begin(), a.second->end(), b.second->begin(), b.second->end(),
                                  [](auto const& x, auto const& y) { return is_same(x.second, y.second); });
            });
        if (!has_same_messages) return false;
    }
    return true;
}

class formatter {
public:
    formatter(session const& session, format_options const& options)
        : m_session(session), m_options(options), m_found(session) {}

    exit_status run() {
        std::optional<std::vector<ustring8>> const files = files_to_read(m_session, m_options.paths);
        if (!files) return exit_failed;
        m_has_result_file = m_session.options.has_result_file && !m_options.is_check;
        if (m_has_result_file && files->size() != 1) return fail(phrase::fmt_one_file, {}), exit_failed;
        progress_bar progress(m_session.err);
        for (std::size_t i = 0; i != files->size(); ++i) {
            if (!m_session.options.is_quiet) progress.show(i, files->size());
            format((*files)[i]);
        }
        m_found.print();
        if (m_has_failed) return exit_failed;
        return m_options.is_check && m_has_changes ? exit_findings : exit_good;
    }

private:
    void fail(phrase id, zolt::generic::varg_list const& arguments) {
        m_session.complain(m_session.texts.get(id, arguments));
        m_has_failed = true;
    }

    void format(ustring8 const& path) {
        catalog_sources sources;
        sources.add(path);
        source_file const& file = *sources.read_next();
        ustring8 text;
        if (!file.is_readable || !load(path, text)) return fail(phrase::not_readable, why_unreadable(path));
        if (!is_valid(file)) return void(m_has_failed = true);
        ustring8 const laid_out = lay_out_catalog(text);
        if (laid_out != text && !is_same_catalog(file, text, laid_out)) return refuse(path);
        if (m_has_result_file) return m_session.out.write(laid_out);
        if (laid_out == text) return;
        m_has_changes = true;
        if (m_options.is_check) return m_session.out.line(printable(path));
        m_session.tell(path);
        replace(file, laid_out);
    }

    bool is_valid(source_file const& file) {
        std::vector<catalog_message> messages;
        unsigned const fault = file.is_well_formed ? read_messages(file, messages) : file.fault_line;
        if (fault == 0) return !add_load_fault(m_found, file, some_languages_of(file));
        add_element_fault(m_session, m_found, file, fault);
        return false;
    }

    // The new file stands beside the old one, so that both include the same.
    void replace(source_file const& file, ustring8 const& text) {
        result_file target(file.path);
        std::error_code no_path;
        ustring8 const old_file = std::filesystem::canonical(file.path.c_str(), no_path).native();
        if (target.stream()) {
            target.write(text);
            (void)std::fflush(target.stream());
            bool const is_whole = std::ferror(target.stream()) == 0;
            if (is_whole && !target.temporary().empty() &&
                !loads_the_same(old_file, target.temporary(), some_languages_of(file)))
                return refuse(file.path);
        }
        int const error = target.commit();
        if (error != 0) fail(phrase::file_not_written, {{"path", file.path}, {"reason", std::strerror(error)}});
    }

    void refuse(ustring8 const& path) {
        m_found.add({path, 1, 1, severity::error, "layout", m_session.texts.get(phrase::fmt_not_same)});
        m_has_failed = true;
    }

    session const& m_session;
    format_options const& m_options;
    finding_list m_found;
    bool m_has_result_file = false;
    bool m_has_changes = false;
    bool m_has_failed = false;
};

} // namespace

exit_status format_catalogs(session const& session, format_options const& options) {
    return formatter(session, options).run();
}

bool is_same_catalog(source_file const& file, ustring8 const& before, ustring8 const& after) {
    if (!has_same_tokens(before, after)) return false;
    std::vector<catalog_message> left;
    std::vector<catalog_message> right;
    if (read_messages(file, before, left) != read_messages(file, after, right)) return false;
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](catalog_message const& a, catalog_message const& b) {
                          return a.catalog == b.catalog && is_same(a.message, b.message);
                      });
}

} // namespace tools
