// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// labeled_serialize_buffer, the interface of buffers whose values have names and may be grouped. The
// implementation, with its external form, is <zolt/serialization/labeled_text_buffer.hpp>; for a plain
// sequence of values see <zolt/serialization/serialize_buffer.hpp>.
//
// A buffer holds entries under labels. An entry has a value, a group (again a buffer), or both. Labels are
// byte strings; case counts, and the empty label is one like any other.
#pragma once

#include <zolt/export.hpp>
#include <zolt/generic/abilities.hpp>
#include <zolt/types/variant.hpp>

#include <string>

namespace ZOLT_2_18::serialization {

/// The order of the virtual operations is part of the binary interface.
class ZOLT_API labeled_serialize_buffer
    : public generic::abilities::create_ability,
      public generic::abilities::clone_ability,
      public generic::abilities::reference_count_pointer_ability<labeled_serialize_buffer> {
public:
    labeled_serialize_buffer() noexcept = default;
    labeled_serialize_buffer(labeled_serialize_buffer const&) noexcept = default;
    labeled_serialize_buffer& operator=(labeled_serialize_buffer const& other) { return assign(other); }
    ~labeled_serialize_buffer() override;

    /// Sets the value of the entry, which is created if missing; its group stays.
    /// @throws exceptions::invalid_argument_value for a label with a blank, LF, CR or TAB in it; nothing is
    /// stored then.
    virtual void add_value(std::string const& label, types::variant const& value) = 0;
    /// The group of the entry, which is created if missing; its value and what the group holds stay.
    /// @throws exceptions::invalid_argument_value as add_value does.
    virtual labeled_serialize_buffer& create_group(std::string const& label) = 0;

    virtual bool has_label(std::string const& label) const = 0; ///< there is an entry
    virtual bool has_value(std::string const& label) const = 0; ///< there is one with a value that is not nil
    virtual bool has_group(std::string const& label) const = 0; ///< there is one with a group that is not empty

    /// Nil when there is none.
    virtual types::variant retrieve_value(std::string const& label) const = 0;
    /// The group, created as by create_group if there is none. It lives until its buffer is destroyed or
    /// assigned to.
    virtual labeled_serialize_buffer& retrieve_group(std::string const& label) = 0;
    /// The group, or an empty buffer that all callers share.
    virtual labeled_serialize_buffer const& retrieve_group(std::string const& label) const = 0;

    /// True when there are no entries.
    virtual bool is_empty() const = 0;

    /// The external form.
    virtual std::string as_str() const = 0;
    /// Replaces the content by what the external form tells.
    virtual labeled_serialize_buffer& assign(std::string const& form) = 0;
    /// The same for `length` bytes. A null pointer or a negative length leaves the buffer empty.
    virtual labeled_serialize_buffer& assign(char const* form, int length) = 0;
    /// Replaces the content by a copy of the other's, which may be a group of this buffer or the other way
    /// round.
    virtual labeled_serialize_buffer& assign(labeled_serialize_buffer const& other) = 0;

    /// A new empty buffer of the same kind: count 0, marked as heap-allocated, for the caller to hand to a
    /// pointer.
    virtual labeled_serialize_buffer* create() const = 0;
    /// A copy with copies of all groups, made as create() makes its buffer.
    virtual labeled_serialize_buffer* clone() const = 0;
};

} // namespace ZOLT_2_18::serialization
