// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The new text goes to a file beside the old one, is read back by the library, and takes the old one's place
// only when it gives all the old settings but for the one.
#include "config_edit.hpp"

#include "config_statements.hpp"
#include "config_text_edit.hpp"
#include "tools/program/files.hpp"
#include "tools/program/json.hpp"
#include "tools/program/result_file.hpp"

#include <zolt/config/file_item.hpp>
#include <zolt/system/file_utility.hpp>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tools {
namespace {

using zolt::config::config_tree;
using zolt::config::file_item;

constexpr unsigned array_kind = 2;
constexpr std::string_view array_mark = "[]";

/// A configuration file whose tree can be changed in any way.
class open_file : public file_item {
public:
    using file_item::file_item;
    using file_item::own_tree;
};

void clear(config_tree& node) { node.set_entry(zolt::types::nil, 0); }

bool is_index(std::string_view name) { return name.find_first_not_of("0123456789") == name.npos && !name.empty(); }

/// The names of what the library takes for elements of an array at the key.
std::vector<ustring8> element_names(config_tree const& tree, ustring8 const& key) {
    std::vector<ustring8> names;
    config_tree const* const node = tree.get_node(key);
    if (!node) return names;
    for (auto const& [name, element] : *node) {
        if (is_index(name) && element->value() != zolt::types::nil) names.push_back(name);
    }
    return names;
}

bool has_same_entry(config_tree const& left, config_tree const* right) {
    return right && left.kind() == right->kind() && left.value().as_utf8() == right->value().as_utf8();
}

std::size_t line_at(config_tree const* lines) {
    return lines && lines->has_entry() ? static_cast<std::size_t>(lines->value().as_uint64()) : 0;
}

/// The line of an entry that another tree does not have alike, 0 when that is not known; nothing when there is
/// no such entry.
std::optional<std::size_t> find_difference(config_tree const& expected, config_tree const& found,
                                           config_tree const& lines) {
    static config_tree const nothing;
    struct place {
        config_tree const* expected;
        config_tree const* found;
        config_tree const* lines;
    };
    std::vector<place> pending{{&expected, &found, &lines}};
    while (!pending.empty()) {
        place const here = pending.back();
        pending.pop_back();
        for (auto const& [name, node] : *here.expected) {
            config_tree const* const other = here.found->get_node(name);
            config_tree const* const line = here.lines->get_node(name);
            if (node->has_entry() && !has_same_entry(*node, other)) return line_at(line);
            pending.push_back({node.get(), other ? other : &nothing, line ? line : &nothing});
        }
    }
    return std::nullopt;
}

/// A file that nobody else sees and that goes with this object.
class scratch_file {
public:
    scratch_file() : m_stream(std::tmpfile()) {}
    scratch_file(scratch_file const&) = delete;
    scratch_file& operator=(scratch_file const&) = delete;
    ~scratch_file() {
        if (m_stream) (void)std::fclose(m_stream);
    }
    std::FILE* stream() const { return m_stream; }
    ustring8 path() const { return "/proc/self/fd/" + std::to_string(::fileno(m_stream)); }

private:
    std::FILE* m_stream;
};

/// A lock that all wait for who change the same file. It ends with this object, or the process. Where the system
/// locks nothing this does not, either.
class file_lock {
public:
    file_lock() = default;
    file_lock(file_lock const&) = delete;
    file_lock& operator=(file_lock const&) = delete;
    ~file_lock() { release(); }

    /// Locks the file, or while there is none its directory.
    void acquire(ustring8 const& path);

private:
    bool is_held_on(ustring8 const& path) const;
    void release() {
        if (m_descriptor != -1) ::close(std::exchange(m_descriptor, -1));
    }

    int m_descriptor = -1;
};

// Another process may have put a new file in the place of the one that was opened, so it is looked for again.
void file_lock::acquire(ustring8 const& path) {
    do {
        release();
        struct stat status {};
        bool const is_there = ::stat(path.c_str(), &status) == 0;
        if (is_there && !S_ISREG(status.st_mode)) return; // to open a pipe would wake who waits for a reader
        ustring8 const directory = path.substr(0, path.rfind('/') + 1) + "."; // npos + 1 is 0
        m_descriptor = ::open((is_there ? path : directory).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        if (m_descriptor == -1 && is_there && errno == ENOENT) continue;
        if (m_descriptor == -1) return;
        while (::flock(m_descriptor, LOCK_EX) != 0) {
            if (errno != EINTR) return;
        }
    } while (!is_held_on(path));
}

bool file_lock::is_held_on(ustring8 const& path) const {
    struct stat held {};
    struct stat named {};
    if (m_descriptor == -1 || ::fstat(m_descriptor, &held) != 0) return false;
    if (::stat(path.c_str(), &named) != 0) return S_ISDIR(held.st_mode);
    return held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

class config_edit {
public:
    config_edit(session const& session, ustring8 const& path) : m_session(session), m_path(path), m_item(path) {}

    /// Lets no other command change the file until this object is gone.
    void lock() { m_lock.acquire(m_path); }
    /// False, and a complaint, when the file cannot be read. One that is not there may count as empty.
    bool load(bool may_be_absent);
    file_item const& item() const { return m_item; }
    /// What is in the file, or would be.
    ustring8 const& text() const { return m_text; }
    /// Of a setting one, of an array its elements; none when there is no such key.
    std::vector<ustring8> values(ustring8 const& key) const;
    exit_status make(config_change change, bool is_dry_run);

private:
    void expect(config_change& change);
    bool gives_what_is_expected(ustring8 const& file, config_tree const& lines);
    std::optional<exit_status> replace_file(ustring8 const& text, config_tree const& lines);
    std::optional<exit_status> try_out(ustring8 const& text, config_tree const& lines);
    exit_status refuse(phrase reason, zolt::generic::varg_list const& arguments) const;
    exit_status fail(int error) const;

    session const& m_session;
    ustring8 m_path;
    file_lock m_lock;
    ustring8 m_text;
    open_file m_item;                  ///< what is read from the file, then what should be
    std::size_t m_difference_line = 0; ///< of what an edit did not leave, or not change, if known
};

bool config_edit::load(bool may_be_absent) {
    struct stat status {};
    bool const is_there = ::stat(m_path.c_str(), &status) == 0;
    if (!is_there && errno == ENOENT && may_be_absent) return true;
    bool const is_loaded =
        is_there && S_ISREG(status.st_mode) && zolt::system::load_file(m_path, m_text) == 0 && m_item.load();
    if (!is_loaded) m_session.complain(m_session.texts.get(phrase::not_readable, why_unreadable(m_path)));
    return is_loaded;
}

std::vector<ustring8> config_edit::values(ustring8 const& key) const {
    config_tree::entry_type const* const entry = m_item.get_value(key);
    if (!entry) return {};
    if (entry->first != array_kind) return {entry->second.as_utf8()};
    config_tree::entry_list elements;
    m_item.get_array(key, elements);
    std::vector<ustring8> found;
    for (auto const& [index, element] : elements) {
        if (element.second != zolt::types::nil) found.push_back(element.second.as_utf8());
    }
    return found;
}

void config_edit::expect(config_change& change) {
    config_tree& node = m_item.own_tree().make_node(change.key);
    if (node.kind() == array_kind || change.is_array) {
        change.elements = element_names(m_item.tree(), change.key);
    } else if (change.values.empty()) {
        change.elements = elements_from_arrays(m_text, change.key);
    }
    for (ustring8 const& name : change.elements) clear(node.make_node(name));
    clear(node);
    if (change.values.empty()) return;
    if (!change.is_array) return m_item.set(change.key, change.values.front(), 0);
    zolt::generic::varg_list elements;
    for (ustring8 const& value : change.values) elements.push_back(zolt::types::variant(value));
    m_item.set_array(change.key, elements, {});
}

bool config_edit::gives_what_is_expected(ustring8 const& file, config_tree const& lines) {
    file_item written(file);
    if (!written.load()) return false;
    auto const lost = find_difference(m_item.tree(), written.tree(), lines);
    if (lost) m_difference_line = *lost;
    return !lost && !find_difference(written.tree(), m_item.tree(), lines);
}

/// False when something went wrong, which the file's end tells.
bool write(std::FILE* stream, ustring8 const& text) {
    if (!stream) return false;
    std::size_t const written = std::fwrite(text.data(), 1, text.size(), stream);
    return std::fflush(stream) == 0 && written == text.size();
}

// Nothing when the text gives something else than it should.
std::optional<exit_status> config_edit::replace_file(ustring8 const& text, config_tree const& lines) {
    result_file file(m_path);
    bool const is_written = write(file.stream(), text);
    if (is_written && !gives_what_is_expected(file.temporary(), lines)) return std::nullopt;
    int const error = file.commit();
    return error == 0 ? exit_good : fail(error);
}

// The same without the file.
std::optional<exit_status> config_edit::try_out(ustring8 const& text, config_tree const& lines) {
    scratch_file file;
    if (!write(file.stream(), text)) return fail(errno);
    if (!gives_what_is_expected(file.path(), lines)) return std::nullopt;
    return exit_good;
}

exit_status config_edit::make(config_change change, bool is_dry_run) {
    config_tree lines;
    find_config_lines(m_text, lines);
    expect(change);
    for (edit_reach const reach : {edit_reach::one_statement, edit_reach::all_statements, edit_reach::further_up}) {
        config_text_edit const edit = edit_config_text(m_text, change, reach);
        if (edit.refusal) {
            auto const line = static_cast<unsigned long long>(edit.line);
            auto const other = static_cast<unsigned long long>(edit.other_line);
            return refuse(*edit.refusal, {{"path", m_path}, {"key", change.key}, {"line", line}, {"other", other}});
        }
        auto const status = is_dry_run ? try_out(edit.text, lines) : replace_file(edit.text, lines);
        if (!status) continue;
        m_text = edit.text;
        return *status;
    }
    auto const line = static_cast<unsigned long long>(m_difference_line);
    return refuse(line != 0 ? phrase::edit_changes_line : phrase::edit_not_alone,
                  {{"key", change.key}, {"path", m_path}, {"line", line}});
}

exit_status config_edit::refuse(phrase reason, zolt::generic::varg_list const& arguments) const {
    m_session.complain(m_session.texts.get(reason, arguments));
    return exit_findings;
}

exit_status config_edit::fail(int error) const {
    ustring8 const reason(std::strerror(error));
    m_session.complain(m_session.texts.get(phrase::file_not_written, {{"path", m_path}, {"reason", reason}}));
    return exit_failed;
}

bool is_array_key(std::string_view key) { return key.ends_with(array_mark); }

ustring8 plain_key(ustring8 const& key) {
    return key.substr(0, key.size() - (is_array_key(key) ? array_mark.size() : 0));
}

/// Whether nothing is to be done.
bool is_set(config_edit const& edit, config_change const& change) {
    config_tree::entry_type const* const entry = edit.item().get_value(change.key);
    return entry && (entry->first == array_kind) == change.is_array && edit.values(change.key) == change.values;
}

void append_values(json_writer& json, std::string_view name, std::vector<ustring8> const& values) {
    json.begin_array(name);
    for (ustring8 const& value : values) json.value(value);
    json.end_array();
}

ustring8 shown_values(std::vector<ustring8> const& values) {
    ustring8 text;
    for (ustring8 const& value : values) {
        text.append(&value == &values.front() ? "" : ", ");
        text.append(value.empty() ? ustring8("\"\"") : written_value(value, values.size() > 1));
    }
    return text;
}

/// What the change has been, for --verbose. The text is the one with the setting.
void tell(session const& session, ustring8 const& path, config_change const& change,
          std::vector<ustring8> const& before, ustring8 const& text) {
    config_tree lines;
    find_config_lines(text, lines);
    ustring8 const place = path + ":" + std::to_string(line_at(lines.get_node(change.key)));
    ustring8 const key = change.key + (change.is_array ? "[]" : "");
    phrase const what = change.values.empty()     ? phrase::setting_removed
                        : before == change.values ? phrase::setting_unchanged
                        : before.empty()          ? phrase::setting_added
                                                  : phrase::setting_changed;
    session.tell(session.texts.get(what, {{"place", place},
                                          {"key", key},
                                          {"setting", key + " = " + shown_values(change.values)},
                                          {"old", shown_values(before)}}));
}

/// Whether the new text goes elsewhere.
bool is_dry_run(session const& session) { return session.options.has_result_file && !session.is_json(); }

/// Makes the change unless there is nothing to do, and tells what has been done.
exit_status make(session const& session, config_edit& edit, ustring8 const& path, config_change const& change) {
    bool const is_changed = change.values.empty() || !is_set(edit, change);
    std::vector<ustring8> const before = edit.values(change.key);
    ustring8 const text_before = edit.text();
    if (is_changed) {
        exit_status const status = edit.make(change, is_dry_run(session));
        if (status != exit_good) return status;
    }
    if (session.options.is_verbose)
        tell(session, path, change, before, change.values.empty() ? text_before : edit.text());
    if (is_dry_run(session)) session.out.write(edit.text());
    if (!session.is_json()) return exit_good;
    json_writer json;
    json.begin_object();
    json.member("file", path);
    json.member("key", change.key);
    json.member("changed", is_changed);
    append_values(json, "old", before);
    append_values(json, "new", change.values);
    json.end_object();
    session.out.line(json.text());
    return exit_good;
}

} // namespace

exit_status set_config(session const& session, config_set_options const& options) {
    bool const is_array = is_array_key(options.key) || options.values.size() > 1;
    config_change const change{plain_key(options.key), is_array, options.values};
    if (auto const reason = why_unwritable(change)) {
        session.complain(session.texts.get(*reason, {{"key", change.key}}));
        return exit_failed;
    }
    config_edit edit(session, options.file);
    if (!is_dry_run(session)) edit.lock();
    if (!edit.load(true)) return exit_failed;
    return make(session, edit, options.file, change);
}

exit_status unset_config(session const& session, config_unset_options const& options) {
    ustring8 const key = plain_key(options.key);
    config_edit edit(session, options.file);
    if (!is_dry_run(session)) edit.lock();
    if (!edit.load(false)) return exit_failed;
    if (!edit.item().get_value(key)) {
        session.complain(session.texts.get(phrase::no_setting, {{"key", options.key}}));
        return exit_findings;
    }
    return make(session, edit, options.file, {key, false, {}});
}

} // namespace tools
