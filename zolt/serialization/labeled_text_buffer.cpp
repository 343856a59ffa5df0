// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Groups may be nested deeper than the stack is high, so whatever goes through all of them keeps a list of
// those that it has still to do.
//
// An external form contains those of its groups with their lengths in front. They are not written one into the
// other, which would copy the innermost once for each level: all lengths are measured first, from the leaves to
// the root, then everything is written to its final place. Reading goes through the nested forms where they
// stand.
#include <zolt/serialization/labeled_text_buffer.hpp>

#include <zolt/exceptions/exception.hpp>
#include <zolt/serialization/text_field_private.hpp>
#include <zolt/types/nil.hpp>
#include <zolt/types/variant_text_private.hpp>

#include <utility>

namespace ZOLT_2_18::serialization {
namespace {

using _private::append_field;
using _private::append_string_field;
using _private::byte_content;
using _private::field_length;
using _private::separator;
using types::variant;
using types::_private::text_access;

constexpr char group_mark = ' ';

// Early, for initialisers of other statics that look for groups.
labeled_text_buffer const empty_group __attribute__((init_priority(101)));

void check_label(std::string const& label, unsigned int line, char const* function) {
    if (label.find_first_of(" \n\r\t") == label.npos) return;
    throw exceptions::invalid_argument_value("a label must not hold a blank, LF, CR or TAB", line,
                                             "serialization/labeled_text_buffer", function);
}

std::uint64_t measured_string(std::uint64_t length) { return field_length(length) + length + sizeof separator; }

/// The label, marked as that of a group.
void append_group_label(byte_content& form, std::string const& label) {
    append_field(form, static_cast<unsigned long long>(label.size()) + sizeof group_mark);
    form.append(label);
    *form.append(sizeof group_mark) = group_mark;
    *form.append(sizeof separator) = separator;
}

labeled_text_buffer* on_heap(labeled_text_buffer* made) noexcept {
    made->heap_allocated = true;
    return made;
}

} // namespace

/// What goes through all groups below some entries.
struct labeled_text_buffer::tree {
    static labeled_text_buffer& group_of(entry& item) {
        if (!item.group) item.group = std::make_unique<labeled_text_buffer>();
        return *item.group;
    }

    static bool has_group(entry const& item) noexcept { return item.group && !item.group->m_entries.empty(); }

    /// Whether the external form shows the value; next to a group nil is left out.
    static bool shows_value(entry const& item) noexcept { return !has_group(item) || item.value != types::nil; }

    // ---- destruction -------------------------------------------------------------------------------

    struct any_order {
        bool operator()(std::string const&, std::string const&) const noexcept { return false; }
    };
    /// A destructor must do without memory, so the list of what is to be destroyed takes over map nodes.
    using discarded_entries = std::multimap<std::string, entry, any_order>;

    static void discard_groups(entry_map& entries, discarded_entries& discarded) noexcept {
        for (auto at = entries.begin(); at != entries.end();) {
            auto const current = at++;
            if (has_group(current->second)) discarded.insert(entries.extract(current));
        }
    }

    static void destroy_groups(entry_map& entries) noexcept {
        discarded_entries discarded;
        discard_groups(entries, discarded);
        while (!discarded.empty()) {
            auto const node = discarded.extract(discarded.begin());
            discard_groups(node.mapped().group->m_entries, discarded);
        }
    }

    // ---- copying and merging -----------------------------------------------------------------------

    static entry_map copied(entry_map const& original) {
        entry_map copy;
        std::vector<std::pair<entry_map const*, entry_map*>> pending{{&original, &copy}};
        while (!pending.empty()) {
            auto const [from, to] = pending.back();
            pending.pop_back();
            for (auto const& [label, item] : *from) {
                entry& made = to->try_emplace(to->end(), label, item.value)->second;
                if (has_group(item)) pending.emplace_back(&item.group->m_entries, &group_of(made).m_entries);
            }
        }
        return copy;
    }

    /// Merges the entries of a private copy, moving what is new.
    static void overlay(entry_map& upper, entry_map& lower) {
        std::vector<std::pair<entry_map*, entry_map*>> pending{{&upper, &lower}};
        while (!pending.empty()) {
            auto const [from, to] = pending.back();
            pending.pop_back();
            to->merge(*from);
            for (auto& [label, item] : *from) { // what is left of it is in both
                entry& here = to->find(label)->second;
                if (shows_value(item)) here.value = item.value;
                if (!has_group(item)) continue;
                if (here.group)
                    pending.emplace_back(&item.group->m_entries, &here.group->m_entries);
                else
                    here.group = std::move(item.group);
            }
        }
    }

    // ---- writing -----------------------------------------------------------------------------------

    struct measured_group {
        entry_map const* entries;
        std::size_t parent;
        std::size_t first_child; ///< its groups stand side by side, in the order of their labels
        std::uint64_t length;    ///< of the external form
    };

    /// All groups, level by level, beginning with the given one. Every group stands behind its parent.
    static std::vector<measured_group> measured(entry_map const& root) {
        std::vector<measured_group> groups{{&root, 0, 0, 0}};
        std::string text;
        for (std::size_t i = 0; i < groups.size(); ++i) {
            std::uint64_t length = 0;
            groups[i].first_child = groups.size();
            for (auto const& [label, item] : *groups[i].entries) {
                if (shows_value(item)) {
                    length += measured_string(label.size());
                    length += measured_string(text_access::narrow(item.value, text).size());
                }
                if (has_group(item)) {
                    length += measured_string(label.size() + sizeof group_mark);
                    groups.push_back({&item.group->m_entries, i, 0, 0});
                }
            }
            groups[i].length = length;
        }
        for (std::size_t i = groups.size(); --i > 0;) {
            groups[groups[i].parent].length += measured_string(groups[i].length);
        }
        return groups;
    }

    static std::string written(entry_map const& root) {
        std::vector<measured_group> const groups = measured(root);
        _private::check_length(groups.front().length, _private::labeled_form_site);
        byte_content form;
        form.reserve(static_cast<std::size_t>(groups.front().length));
        std::string text;

        struct open_group {
            entry_map::const_iterator next;
            entry_map::const_iterator end;
            std::size_t next_child;
        };
        std::vector<open_group> open;
        auto const enter = [&open](measured_group const& group) {
            open.push_back({group.entries->begin(), group.entries->end(), group.first_child});
        };
        enter(groups.front());
        while (true) {
            open_group& group = open.back();
            if (group.next == group.end) {
                open.pop_back();
                if (open.empty()) return form.take();
                *form.append(sizeof separator) = separator;
                continue;
            }
            auto const& [label, item] = *group.next++;
            if (shows_value(item)) {
                append_string_field(form, label);
                append_string_field(form, text_access::narrow(item.value, text));
            }
            if (has_group(item)) {
                measured_group const& child = groups[group.next_child++];
                append_group_label(form, label);
                append_field(form, child.length);
                enter(child);
            }
        }
    }

    // ---- reading -----------------------------------------------------------------------------------

    /// A form that is being read, and where it goes.
    struct open_form {
        std::string_view content;
        entry_map* entries;
        unsigned int position = 0;

        bool at_end() const noexcept { return _private::is_at_end(content, position); }
        std::string_view next_string() {
            long const length = _private::take_integer<int>(content, position, generic::convert::str_to_int32);
            return _private::take_string(content, position, length);
        }
    };

    static entry_map parsed(std::string_view form) {
        _private::check_length(form.size(), _private::assign_site);
        entry_map root;
        std::vector<open_form> open{{form, &root}};
        while (!open.empty()) {
            open_form& at = open.back();
            if (at.at_end()) {
                open.pop_back();
                continue;
            }
            std::string_view label = at.next_string();
            bool const is_group = !label.empty() && label.back() == group_mark;
            if (is_group) label.remove_suffix(1);
            std::string_view const text = at.next_string();

            variant const value = is_group ? variant() : variant(std::string(text));
            entry& item = at.entries->try_emplace(at.entries->end(), std::string(label), value)->second;
            if (is_group) {
                entry_map& nested = group_of(item).m_entries;
                nested.clear();
                open.push_back({text, &nested});
            } else {
                item.value = value;
            }
        }
        return root;
    }
};

labeled_text_buffer::labeled_text_buffer() = default;
labeled_text_buffer::labeled_text_buffer(std::string const& form) : m_entries(tree::parsed(form)) {}
labeled_text_buffer::labeled_text_buffer(labeled_text_buffer const& other)
    : labeled_serialize_buffer(other), m_entries(tree::copied(other.m_entries)) {}
labeled_text_buffer::~labeled_text_buffer() { tree::destroy_groups(m_entries); }

void labeled_text_buffer::add_value(std::string const& label, variant const& value) {
    check_label(label, 74, "add_value");
    m_entries[label].value = value;
}

labeled_text_buffer& labeled_text_buffer::create_group(std::string const& label) {
    check_label(label, 81, "create_group");
    return tree::group_of(m_entries[label]);
}

bool labeled_text_buffer::has_label(std::string const& label) const { return m_entries.count(label) != 0; }

bool labeled_text_buffer::has_value(std::string const& label) const {
    auto const found = m_entries.find(label);
    return found != m_entries.end() && found->second.value != types::nil;
}

bool labeled_text_buffer::has_group(std::string const& label) const {
    auto const found = m_entries.find(label);
    return found != m_entries.end() && tree::has_group(found->second);
}

variant labeled_text_buffer::retrieve_value(std::string const& label) const {
    auto const found = m_entries.find(label);
    return found == m_entries.end() ? variant() : found->second.value;
}

labeled_text_buffer& labeled_text_buffer::retrieve_group(std::string const& label) {
    auto const found = m_entries.find(label); // perhaps under a label that was read and could not be created
    return found == m_entries.end() ? create_group(label) : tree::group_of(found->second);
}

labeled_text_buffer const& labeled_text_buffer::retrieve_group(std::string const& label) const {
    auto const found = m_entries.find(label);
    return found == m_entries.end() || !found->second.group ? empty_group : *found->second.group;
}

std::vector<std::string> labeled_text_buffer::labels() const {
    std::vector<std::string> labels;
    labels.reserve(m_entries.size());
    for (auto const& [label, item] : m_entries) labels.push_back(label);
    return labels;
}

labeled_text_buffer& labeled_text_buffer::overlay(labeled_text_buffer const& other) {
    entry_map copy = tree::copied(other.m_entries);
    tree::overlay(copy, m_entries);
    return *this;
}

bool labeled_text_buffer::is_empty() const { return m_entries.empty(); }
std::string labeled_text_buffer::as_str() const { return tree::written(m_entries); }

labeled_text_buffer& labeled_text_buffer::assign(std::string const& form) {
    m_entries = tree::parsed(form);
    return *this;
}

labeled_text_buffer& labeled_text_buffer::assign(char const* form, int length) {
    m_entries = tree::parsed(_private::bytes_or_none(form, length));
    return *this;
}

labeled_text_buffer& labeled_text_buffer::assign(labeled_serialize_buffer const& other) {
    auto const* const same_kind = dynamic_cast<labeled_text_buffer const*>(&other);
    return same_kind ? assign(*same_kind) : assign(other.as_str());
}

labeled_text_buffer& labeled_text_buffer::assign(labeled_text_buffer const& other) {
    if (this != &other) m_entries = tree::copied(other.m_entries);
    return *this;
}

labeled_text_buffer* labeled_text_buffer::create() const { return on_heap(new labeled_text_buffer); }
labeled_text_buffer* labeled_text_buffer::clone() const { return on_heap(new labeled_text_buffer(*this)); }

} // namespace ZOLT_2_18::serialization
