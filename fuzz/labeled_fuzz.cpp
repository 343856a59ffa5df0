// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Random programs on a labeled buffer beside nested maps that do the same: values, groups, copies, overlays.
// Any bytes as an external form, beside a plain reader and writer.
#include "input.hpp"

#include <zolt/serialization/labeled_text_buffer.hpp>
#include <zolt/serialization/serialize_text_buf.hpp>

#include <map>
#include <optional>

namespace {

using fuzz::check;
using zolt::serialization::labeled_text_buffer;
using zolt::serialization::serialize_text_buf;

struct model {
    std::optional<std::string> value;
    std::map<std::string, model> entries;

    void overlay(model const& other) {
        for (auto const& [label, theirs] : other.entries) {
            model& own = entries[label];
            if (theirs.value || theirs.entries.empty()) own.value = theirs.value;
            own.overlay(theirs);
        }
    }

    /// What the external form keeps: groups without entries and without a value are empty texts.
    void store() {
        for (auto& [label, entry] : entries) {
            entry.store();
            if (entry.entries.empty() && !entry.value) entry.value = "";
        }
    }

    std::size_t size() const {
        std::size_t count = entries.size();
        for (auto const& entry : entries) count += entry.second.size();
        return count;
    }
};

void check_same(labeled_text_buffer const& buffer, model const& expected) {
    check(buffer.labels().size() == expected.entries.size(), "as many labels");
    for (auto const& [label, entry] : expected.entries) {
        check(buffer.has_label(label) && buffer.has_value(label) == entry.value.has_value(), "an entry");
        check(buffer.retrieve_value(label).as_string() == entry.value.value_or(""), "a value");
        check(buffer.has_group(label) == !entry.entries.empty(), "a group");
        check_same(buffer.retrieve_group(label), entry);
    }
}

/// A label without what labels must not hold.
std::string label_of(fuzz::input& in) {
    std::string label = in.text().substr(0, 3);
    std::erase_if(label, [](char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; });
    return label;
}

void run_step(fuzz::input& in, labeled_text_buffer& root, model& expected) {
    labeled_text_buffer* group = &root;
    model* here = &expected;
    for (unsigned levels = in.below(4); levels > 0; --levels) {
        std::string const label = label_of(in);
        group = &group->retrieve_group(label);
        here = &here->entries[label];
    }
    model const whole = expected;
    model const part = *here;
    switch (in.below(6)) {
    case 0:
        group->overlay(root);
        here->overlay(whole);
        break;
    case 1:
        root.overlay(*group);
        expected.overlay(part);
        break;
    case 2:
        root.assign(*group);
        expected = part;
        break;
    default: {
        std::string const label = label_of(in);
        here->entries[label].value = in.text();
        group->add_value(label, *here->entries[label].value);
    }
    }
}

/// An external form read and written plainly, with a substring for each group.
struct plain_form {
    std::optional<std::string> value;
    std::map<std::string, plain_form> entries;

    void parse(std::string const& text) {
        entries.clear();
        serialize_text_buf buffer;
        for (buffer.assign(text); !buffer.at_end();) {
            std::string label = buffer.read_string();
            bool const is_group = !label.empty() && label.back() == ' ';
            if (is_group) label.pop_back();
            plain_form& item = entries[label];
            if (is_group)
                item.parse(buffer.read_string());
            else
                item.value = buffer.read_string();
        }
    }
    std::string as_str() const {
        serialize_text_buf buffer;
        auto const append = [&buffer](std::string const& label, std::string const& text) {
            buffer.append_string(label);
            buffer.append_string(text);
        };
        for (auto const& [label, item] : entries) {
            if (item.value || item.entries.empty()) append(label, item.value.value_or(""));
            if (!item.entries.empty()) append(label + ' ', item.as_str());
        }
        return buffer.as_str();
    }
};

} // namespace

void fuzz::run(input in) {
    labeled_text_buffer root;
    model expected;
    for (unsigned steps = in.below(30); steps > 0 && expected.size() < 500; --steps) run_step(in, root, expected);
    check_same(root, expected);
    check_same(labeled_text_buffer(root), expected);
    expected.store();
    check_same(labeled_text_buffer(root.as_str()), expected);

    std::string bytes = in.rest();
    for (char const* const what : {"any bytes, read plainly", "an external form, read plainly"}) {
        std::string const form = labeled_text_buffer(bytes).as_str();
        plain_form plain;
        plain.parse(bytes);
        check(form == plain.as_str(), what);
        bytes = form; // read again it is the same, but for a label that ends in a blank and has lost its group
    }
}
