// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The library writes a file in place and does not report what goes wrong. So the new text goes to a file
// beside the old one, is read back, and takes the old one's place only when it holds what it should.
#include "config_edit.hpp"

#include "config_statements.hpp"

#include <zolt/config/file_item.hpp>
#include <zolt/system/file_utility.hpp>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <set>
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

/// Removes an entry, of an array the elements too, as far as they are written in one line.
void remove(config_tree& tree, ustring8 const& key) {
    config_tree& node = tree.make_node(key);
    bool const is_array = node.kind() == array_kind;
    clear(node);
    for (std::size_t i = 0; is_array; ++i) {
        ustring8 const index = std::to_string(i);
        config_tree const* const element = node.get_node(index);
        if (!element || element->value() == zolt::types::nil || element->kind() == array_kind) return;
        clear(node.make_node(index));
    }
}

bool has_same_entry(config_tree const& left, config_tree const* right) {
    return right && left.kind() == right->kind() && left.value().as_utf8() == right->value().as_utf8();
}

/// Whether all entries of a tree are in another one.
bool holds_all(config_tree const& found, config_tree const& expected) {
    static config_tree const nothing;
    std::vector<std::pair<config_tree const*, config_tree const*>> pending{{&expected, &found}};
    while (!pending.empty()) {
        auto const [left, right] = pending.back();
        pending.pop_back();
        for (auto const& [name, node] : *left) {
            config_tree const* const other = right->get_node(name);
            if (node->has_entry() && !has_same_entry(*node, other)) return false;
            pending.emplace_back(node.get(), other ? other : &nothing);
        }
    }
    return true;
}

class config_edit {
public:
    config_edit(session const& session, ustring8 const& path) : m_session(session), m_path(path), m_item(path) {}

    /// False, and a complaint, when the file cannot be read. One that is not there may count as empty.
    bool load(bool may_be_absent);
    file_item const& item() const { return m_item; }
    void set(ustring8 const& key, std::vector<ustring8> const& values, bool is_array);
    void unset(ustring8 const& key) { remove(m_item.own_tree(), key); }
    exit_status save(bool force);

private:
    bool is_writable() const;
    bool may_lose() const;
    std::vector<ustring8> losses() const;
    exit_status write();
    bool write_beside(std::string const& temporary) const;
    exit_status fail(std::string_view reason) const;

    session const& m_session;
    ustring8 m_path;
    ustring8 m_text;
    open_file m_item;
    std::set<ustring8> m_unsaved;        // entries of the old file that cannot be written
    std::optional<struct stat> m_status; // of the old file, if there is one
};

bool config_edit::load(bool may_be_absent) {
    struct stat status {};
    if (::stat(m_path.c_str(), &status) == 0) {
        m_status = status;
    } else if (errno == ENOENT && may_be_absent) {
        return true;
    }
    bool const is_loaded =
        m_status && S_ISREG(m_status->st_mode) && zolt::system::load_file(m_path, m_text) == 0 && m_item.load();
    if (!is_loaded) m_session.complain(m_session.texts.get(phrase::not_readable, {{"path", m_path}}));
    for (ustring8 const& key : m_item.unsaved()) m_unsaved.insert(key);
    return is_loaded;
}

void config_edit::set(ustring8 const& key, std::vector<ustring8> const& values, bool is_array) {
    remove(m_item.own_tree(), key);
    if (!is_array) return m_item.set(key, values.front(), 0);
    zolt::generic::varg_list elements;
    for (ustring8 const& value : values) elements.push_back(zolt::types::variant(value));
    m_item.set_array(key, elements, {});
}

exit_status config_edit::save(bool force) {
    if (!is_writable()) return exit_failed;
    if (!force && !may_lose()) return exit_findings;
    for (ustring8 const& key : m_unsaved) remove(m_item.own_tree(), key);
    return write();
}

/// False, and a complaint, when the change makes an entry that cannot be written.
bool config_edit::is_writable() const {
    for (ustring8 const& key : m_item.unsaved()) {
        if (m_unsaved.count(key) != 0) continue;
        m_session.complain(m_session.texts.get(phrase::unwritable_setting, {{"key", key}}));
        return false;
    }
    return true;
}

/// What is in the old file and would not be in the new one.
std::vector<ustring8> config_edit::losses() const {
    std::size_t sections = 0;
    std::size_t dropped = 0;
    config_statements statements(m_text);
    while (statements.next()) {
        bool const is_section = statements.current().kind == config_statement::section;
        sections += is_section ? 1 : 0;
        dropped += is_section || statements.current().has_effect ? 0 : 1;
    }
    std::pair<phrase, std::size_t> const counts[] = {{phrase::comments_one, statements.comments()},
                                                     {phrase::sections_one, sections},
                                                     {phrase::dropped_one, dropped},
                                                     {phrase::unwritable_one, m_unsaved.size()}};
    std::vector<ustring8> losses;
    for (auto const& [text, count] : counts) {
        if (count != 0) losses.push_back(m_session.texts.counted(text, count));
    }
    return losses;
}

/// Says what would be lost and asks whoever is there.
bool config_edit::may_lose() const {
    ustring8 list;
    for (ustring8 const& loss : losses()) list.append(list.empty() ? "" : ", ").append(loss);
    if (list.empty()) return true;
    program_messages const& texts = m_session.texts;
    output& err = m_session.err;
    ustring8 const warning = texts.get(phrase::rewrite_loses, {{"path", m_path}, {"list", list}});
    if (::isatty(STDIN_FILENO) != 1 || !err.is_terminal()) {
        m_session.complain(warning + "\n" + texts.get(phrase::rewrite_refused));
        return false;
    }
    m_session.complain(warning);
    ustring8 const yes = texts.get(phrase::yes_letter);
    err.write(texts.get(phrase::rewrite_question) + " [" + yes + "/N] ");
    err.flush();
    int const answer = std::getchar();
    return answer == yes.front() || answer == std::toupper(static_cast<unsigned char>(yes.front()));
}

exit_status config_edit::write() {
    std::unique_ptr<char, void (*)(void*)> const resolved(::realpath(m_path.c_str(), nullptr), std::free);
    std::string const target = resolved ? resolved.get() : m_path;
    std::string temporary = target + ".XXXXXX";
    int const descriptor = ::mkstemp(temporary.data());
    if (descriptor == -1) return fail(std::strerror(errno));
    ::close(descriptor);
    bool const is_complete = write_beside(temporary);
    if (is_complete && std::rename(temporary.c_str(), target.c_str()) == 0) return exit_good;
    std::string const reason =
        is_complete ? std::string(std::strerror(errno)) : m_session.texts.get(phrase::written_incompletely);
    ::unlink(temporary.c_str());
    return fail(reason);
}

/// Writes the temporary file, with the rights of the old one; false when it does not hold all entries.
bool config_edit::write_beside(std::string const& temporary) const {
    mode_t const mask = ::umask(0);
    ::umask(mask);
    open_file file(temporary);
    file.own_tree() = m_item.tree();
    file.save();
    file_item written{ustring8(temporary)};
    if (!written.load() || !holds_all(written.tree(), m_item.tree())) return false;
    if (!m_status) return ::chmod(temporary.c_str(), 0666 & ~mask) == 0;
    // Only the superuser can give it to somebody else; for everybody else it is their own from now on.
    [[maybe_unused]] int const is_not_given = ::chown(temporary.c_str(), m_status->st_uid, m_status->st_gid);
    return ::chmod(temporary.c_str(), m_status->st_mode & 07777) == 0;
}

exit_status config_edit::fail(std::string_view reason) const {
    m_session.complain(m_session.texts.get(phrase::file_not_written,
                                           {{"path", m_path}, {"reason", ustring8(std::string(reason))}}));
    return exit_failed;
}

bool is_array_key(std::string_view key) { return key.ends_with(array_mark); }

ustring8 plain_key(ustring8 const& key) {
    return key.substr(0, key.size() - (is_array_key(key) ? array_mark.size() : 0));
}

/// Whether nothing is to be done.
bool is_set(file_item const& item, ustring8 const& key, std::vector<ustring8> const& values, bool is_array) {
    config_tree::entry_type const* const entry = item.get_value(key);
    if (!entry || (entry->first == array_kind) != is_array) return false;
    if (!is_array) return entry->second.as_utf8() == values.front();
    config_tree::entry_list elements;
    item.get_array(key, elements);
    return std::equal(
        values.begin(), values.end(), elements.begin(), elements.end(),
        [](ustring8 const& value, auto const& element) { return element.second.second.as_utf8() == value; });
}

} // namespace

exit_status set_config(session const& session, config_set_options const& options) {
    bool const is_array = is_array_key(options.key) || options.values.size() > 1;
    ustring8 const key = plain_key(options.key);
    config_edit edit(session, options.file);
    if (!edit.load(true)) return exit_failed;
    if (is_set(edit.item(), key, options.values, is_array)) return exit_good;
    edit.set(key, options.values, is_array);
    return edit.save(options.force);
}

exit_status unset_config(session const& session, config_unset_options const& options) {
    ustring8 const key = plain_key(options.key);
    config_edit edit(session, options.file);
    if (!edit.load(false)) return exit_failed;
    if (!edit.item().get_value(key)) {
        session.complain(session.texts.get(phrase::no_setting, {{"key", options.key}}));
        return exit_findings;
    }
    edit.unset(key);
    return edit.save(options.force);
}

} // namespace tools
