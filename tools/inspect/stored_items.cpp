// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "stored_items.hpp"

#include <zolt/generic/convert/bin_str.hpp>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string>

namespace tools {
namespace {

constexpr char separator = '\1';
constexpr unsigned long long largest_length = 0xFFFFFFFF;

bool is_digit(char c) { return c >= '0' && c <= '9'; }

std::string_view digits_at(std::string_view text) {
    return text.substr(
        0, static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), is_digit) - text.begin()));
}

/// A length as it is written: decimal, without leading zeros, of 32 bits.
std::optional<unsigned long long> length_of(std::string_view field) {
    unsigned long long length = 0;
    auto const [end, error] = std::from_chars(field.data(), field.data() + field.size(), length);
    bool const is_whole = !field.empty() && end == field.data() + field.size() && error == std::errc();
    bool const has_leading_zero = field.size() > 1 && field.front() == '0';
    if (!is_whole || has_leading_zero || length > largest_length) return std::nullopt;
    return length;
}

//--------------------------------------------------------------------------------------------------
// labeled

/// The string at the position, which moves behind it, within a content that ends at `end`.
std::optional<stored_damage> read_string(std::string_view content, std::size_t end, std::size_t& position,
                                         std::string_view& text) {
    std::string_view const rest = content.substr(position, end - position);
    std::string_view const field = digits_at(rest);
    auto const length = length_of(field);
    if (!length || field.size() == rest.size() || rest[field.size()] != separator) {
        return stored_damage{position, phrase::damage_length};
    }
    std::string_view const behind = rest.substr(field.size() + 1);
    if (*length > behind.size()) return stored_damage{position, phrase::damage_short, *length, behind.size()};
    auto const size = static_cast<std::size_t>(*length);
    std::size_t const start = position + field.size() + 1;
    if (size == behind.size() || behind[size] != separator) {
        return stored_damage{start + size, phrase::damage_separator};
    }
    text = behind.substr(0, size);
    position = start + size + 1;
    return std::nullopt;
}

//--------------------------------------------------------------------------------------------------
// text

/// A number as streams and the library's own conversions write it.
bool is_number(std::string_view field) {
    if (field.starts_with('-')) field.remove_prefix(1);
    if (field == "inf" || field == "nan") return true;
    if (field.empty() || !is_digit(field.front())) return false;
    field.remove_prefix(std::min(field.size(), field.find_first_not_of("0123456789.,")));
    if (field.empty()) return true;
    bool const has_exponent = field.size() > 2 && field[0] == 'e' && (field[1] == '+' || field[1] == '-');
    return has_exponent && digits_at(field.substr(2)).size() == field.size() - 2;
}

/// The fields of a text buffer, and where from each one the next item may start.
class text_fields {
public:
    explicit text_fields(std::string_view content) : m_content(content), m_starts{0} {
        for (auto at = content.find(separator); at != content.npos; at = content.find(separator, at + 1)) {
            m_starts.push_back(static_cast<unsigned>(at + 1));
        }
    }

    /// The number of fields that a separator ends; what is behind the last one has this index.
    std::size_t count() const { return m_starts.size() - 1; }
    std::size_t start(std::size_t index) const { return m_starts[index]; }
    std::string_view field(std::size_t index) const {
        return m_content.substr(m_starts[index], m_starts[index + 1] - 1 - m_starts[index]);
    }
    /// The index behind the string whose length the field may be, or 0.
    std::size_t behind_string(std::size_t index) const {
        auto const length = length_of(field(index));
        if (!length || *length >= m_content.size() - m_starts[index + 1]) return 0;
        std::size_t const end = m_starts[index + 1] + static_cast<std::size_t>(*length);
        if (m_content[end] != separator) return 0;
        return static_cast<std::size_t>(std::lower_bound(m_starts.begin(), m_starts.end(), end + 1) -
                                        m_starts.begin());
    }

private:
    std::string_view m_content;
    std::vector<unsigned> m_starts;
};

/// Marks the fields at which an item may start, from the first one on; returns the last of them.
std::size_t find_starts(text_fields const& fields, std::vector<bool>& is_start) {
    std::size_t last = 0;
    is_start[0] = true;
    for (std::size_t i = 0; i != fields.count(); ++i) {
        if (!is_start[i]) continue;
        last = std::max(last, i);
        if (is_number(fields.field(i))) is_start[i + 1] = true;
        if (std::size_t const behind = fields.behind_string(i)) is_start[behind] = true;
    }
    return is_start[fields.count()] ? fields.count() : last;
}

/// Leaves only those marks from which items lead to the target.
void keep_ways_to(std::size_t target, text_fields const& fields, std::vector<bool>& is_start) {
    for (std::size_t i = target; i-- != 0;) {
        if (!is_start[i]) continue;
        std::size_t const behind = fields.behind_string(i);
        bool const is_way = (is_number(fields.field(i)) && is_start[i + 1]) ||
                            (behind != 0 && behind <= target && is_start[behind]);
        is_start[i] = is_way;
    }
}

//--------------------------------------------------------------------------------------------------
// binary

namespace convert = zolt::generic::convert;

template <typename T>
std::string shortest(T value) {
    char buffer[64];
    return std::string(buffer, std::to_chars(buffer, std::end(buffer), value).ptr);
}

template <auto Decode>
std::string decoded(char const* bytes) {
    return shortest(Decode(bytes));
}

unsigned byte(char const* bytes) { return static_cast<unsigned char>(*bytes); }
int signed_byte(char const* bytes) { return static_cast<signed char>(*bytes); }

template <typename T>
using decoder = T (*)(char const*);

constexpr binary_pattern::type types[] = {
    {"u1", 1, decoded<byte>, stored_item::number},
    {"u2", 2, decoded<decoder<unsigned short>(convert::bin_str_to_uint16)>, stored_item::number},
    {"u4", 4, decoded<decoder<unsigned long>(convert::bin_str_to_uint32)>, stored_item::number},
    {"u8", 8, decoded<decoder<unsigned long long>(convert::bin_str_to_uint64)>, stored_item::number},
    {"i1", 1, decoded<signed_byte>, stored_item::number},
    {"i2", 2, decoded<decoder<short>(convert::bin_str_to_int16)>, stored_item::number},
    {"i4", 4, decoded<decoder<long>(convert::bin_str_to_int32)>, stored_item::number},
    {"i8", 8, decoded<decoder<long long>(convert::bin_str_to_int64)>, stored_item::number},
    {"f4", 4, decoded<decoder<float>(convert::bin_str_to_float)>, stored_item::number},
    {"f8", 8, decoded<decoder<double>(convert::bin_str_to_double)>, stored_item::number},
    {"s", 4, nullptr, stored_item::text},
    {"b", 4, nullptr, stored_item::bytes},
};

binary_pattern::type const* type_at(std::string_view text) {
    auto const* const found =
        std::find_if(std::begin(types), std::end(types),
                     [text](binary_pattern::type const& t) { return text.starts_with(t.name); });
    return found == std::end(types) ? nullptr : found;
}

std::optional<stored_damage> read_binary_item(std::string_view content, binary_pattern::type const& type,
                                              std::size_t& position, item_visitor const& visit) {
    std::size_t const start = position;
    std::size_t const left = content.size() - start;
    if (left < type.size) return stored_damage{start, phrase::damage_missing, type.size, left, type.name};
    position += type.size;
    if (type.decode) {
        std::string const number = type.decode(content.data() + start);
        visit({start, type.kind, number, type.name});
        return std::nullopt;
    }
    auto const length = static_cast<std::size_t>(convert::bin_str_to_uint32(content.data() + start));
    if (length > left - type.size) return stored_damage{start, phrase::damage_short, length, left - type.size};
    visit({start, type.kind, content.substr(position, length), type.name});
    position += length;
    return std::nullopt;
}

} // namespace

std::optional<stored_damage> read_labeled_items(std::string_view content, item_visitor const& visit) {
    std::vector<std::size_t> ends{content.size()}; // of the open groups, the innermost last
    std::size_t position = 0;
    while (true) {
        while (position == ends.back()) {
            ends.pop_back();
            if (ends.empty()) return std::nullopt;
            ++position; // the separator that closes the group
        }
        std::size_t const start = position;
        std::string_view label;
        std::string_view text;
        if (auto const damage = read_string(content, ends.back(), position, label)) return damage;
        if (position == ends.back()) return stored_damage{start, phrase::damage_label};
        if (auto const damage = read_string(content, ends.back(), position, text)) return damage;
        bool const is_group = label.ends_with(' ');
        if (is_group) label.remove_suffix(1);
        visit({start, is_group ? stored_item::group : stored_item::text, text, label, ends.size() - 1});
        if (!is_group) continue;
        ends.push_back(position - 1);
        position = ends.back() - text.size();
    }
}

std::optional<stored_damage> read_text_items(std::string_view content, item_visitor const& visit) {
    text_fields const fields(content);
    std::vector<bool> is_start(fields.count() + 1);
    std::size_t const last = find_starts(fields, is_start);
    keep_ways_to(last, fields, is_start);
    for (std::size_t i = 0; i != last;) {
        if (is_number(fields.field(i)) && is_start[i + 1]) {
            visit({fields.start(i), stored_item::number, fields.field(i)});
            ++i;
        } else {
            auto const length = static_cast<std::size_t>(*length_of(fields.field(i)));
            visit({fields.start(i), stored_item::text, content.substr(fields.start(i + 1), length)});
            i = fields.behind_string(i);
        }
    }
    std::size_t const end = fields.start(last);
    if (last != fields.count()) return stored_damage{end, phrase::damage_field};
    if (end != content.size()) return stored_damage{end, phrase::damage_open_field};
    return std::nullopt;
}

bool looks_like_text_items(std::string_view content) {
    auto const end = content.find(separator);
    return end != content.npos && is_number(content.substr(0, end));
}

bool binary_pattern::parse(std::string_view text, std::size_t& fault) {
    std::string_view rest = text;
    bool in_group = false;
    m_groups.clear();
    auto const skip_blanks = [&rest] { rest.remove_prefix(std::min(rest.size(), rest.find_first_not_of(" ,"))); };
    for (skip_blanks(); !rest.empty(); skip_blanks()) {
        fault = text.size() - rest.size();
        if (!m_groups.empty() && m_groups.back().count == 0) return false; // nothing is left for more
        if (rest.front() == '(' && !in_group) {
            rest.remove_prefix(1);
            in_group = true;
            m_groups.push_back({{}, 1});
            continue;
        }
        if (rest.front() == ')' && in_group && !m_groups.back().items.empty()) {
            rest.remove_prefix(1);
            in_group = false;
        } else if (type const* const found = type_at(rest)) {
            rest.remove_prefix(found->name.size());
            if (!in_group) m_groups.push_back({{}, 1});
            m_groups.back().items.push_back(found);
        } else {
            return false;
        }
        if (in_group || !rest.starts_with('*')) continue;
        fault = text.size() - rest.size();
        rest.remove_prefix(1);
        std::string_view const digits = digits_at(rest);
        auto const count = length_of(digits);
        if (!digits.empty() && (!count || *count == 0)) return false;
        m_groups.back().count = count.value_or(0);
        rest.remove_prefix(digits.size());
    }
    fault = text.size();
    return !in_group && !m_groups.empty();
}

std::optional<stored_damage> binary_pattern::read(std::string_view content, item_visitor const& visit) const {
    std::size_t position = 0;
    for (group const& part : m_groups) {
        bool const is_rest = part.count == 0;
        for (unsigned long long i = 0; is_rest ? position != content.size() : i != part.count; ++i) {
            for (type const* const item : part.items) {
                if (auto const damage = read_binary_item(content, *item, position, visit)) return damage;
            }
        }
    }
    if (position == content.size()) return std::nullopt;
    return stored_damage{position, phrase::damage_rest, 0, content.size() - position};
}

} // namespace tools
