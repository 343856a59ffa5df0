// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// labeled_text_buffer: named values and groups, stored as text.
//
//     serialization::labeled_text_buffer settings;
//     settings.add_value("depth", 5);
//     settings.create_group("colors").add_value("sky", "blue");
//
//     serialization::labeled_text_buffer const read(settings.as_str());
//     read.retrieve_value("depth").as_int();                        // 5
//     read.retrieve_group("colors").retrieve_value("sky").as_utf8(); // "blue"
//
// The external form is that of a serialize_text_buf (<zolt/serialization/serialize_text_buf.hpp>) with strings
// in pairs, in byte order of the labels:
//
//     an entry without a group or with an empty one     label, value as text
//     an entry with a group                             label, value as text, if there is a value;
//                                                       label and one blank, external form of the group
//
// So values come back as text, whatever type they had, and the blank at the end of a label marks a group.
// Groups may be nested as deeply as memory allows. Writing and reading are linear in the external form.
//
// Any bytes can be read; what is no external form gives some entries or other.
// Kept: bytes without a length field that a separator ends give an entry with the empty label and text.
// Kept: an empty group is written as an empty text, and so reads back as one.
// Kept: labels are kept as they are read, also those that add_value does not accept.
#pragma once

#include <zolt/serialization/labeled_serialize_buffer.hpp>

#include <map>
#include <memory>
#include <vector>

namespace ZOLT_2_18::serialization {

class ZOLT_API labeled_text_buffer : public labeled_serialize_buffer {
public:
    labeled_text_buffer();
    /// Reads the external form, as assign does.
    explicit labeled_text_buffer(std::string const& form);
    /// Copies all groups. The values share their payloads, as copies of variants do.
    labeled_text_buffer(labeled_text_buffer const& other);
    ~labeled_text_buffer() override;

    labeled_text_buffer& operator=(labeled_text_buffer const& other) { return assign(other); }
    labeled_text_buffer& operator=(labeled_serialize_buffer const& other) { return assign(other); }

    void add_value(std::string const& label, types::variant const& value) override;
    labeled_text_buffer& create_group(std::string const& label) override;

    bool has_label(std::string const& label) const override;
    bool has_value(std::string const& label) const override;
    bool has_group(std::string const& label) const override;
    types::variant retrieve_value(std::string const& label) const override;
    labeled_text_buffer& retrieve_group(std::string const& label) override;
    labeled_text_buffer const& retrieve_group(std::string const& label) const override;
    /// The labels of all entries in byte order.
    std::vector<std::string> labels() const;

    /// Merges the other buffer into this one; entries that are only here stay. The value of an entry in both
    /// is replaced by the other's, and the groups are merged in the same way. The other buffer may be a group
    /// of this one or the other way round; it is then merged as it was before.
    /// Kept: a nil value replaces, too, where the other entry has no group or an empty one.
    labeled_text_buffer& overlay(labeled_text_buffer const& other);

    bool is_empty() const override;
    /// @throws exceptions::length_error when it would be longer than 4294967295 bytes.
    std::string as_str() const override;
    /// A group that occurs twice has the content of its last occurrence, a value likewise.
    labeled_text_buffer& assign(std::string const& form) override;
    labeled_text_buffer& assign(char const* form, int length) override;
    /// Values keep their types. Another kind of buffer comes through its external form.
    labeled_text_buffer& assign(labeled_serialize_buffer const& other) override;
    labeled_text_buffer& assign(labeled_text_buffer const& other);

    labeled_text_buffer* create() const override;
    labeled_text_buffer* clone() const override;

private:
    struct entry {
        entry() = default;
        explicit entry(types::variant const& initial) noexcept : value(initial) {}

        types::variant value;
        std::unique_ptr<labeled_text_buffer> group; ///< made when it is asked for
    };
    using entry_map = std::map<std::string, entry>;
    struct __attribute__((visibility("hidden"))) tree;

    entry_map m_entries;
};

} // namespace ZOLT_2_18::serialization
