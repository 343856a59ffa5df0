// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/serialization/serialize_buffer.hpp>

#include <zolt/exceptions/exception.hpp>
#include <zolt/serialization/serialize_buffer_private.hpp>

namespace ZOLT_2_18::serialization {

serialize_buffer::~serialize_buffer() = default;

namespace _private {

/// The string gets its memory first, which at least doubles if there has to be more. Only a part of that is filled
/// at a time: it is in the cache when it is written.
void byte_content::enlarge(std::size_t length) {
    constexpr std::uint64_t least_capacity = 240;
    constexpr std::uint64_t filled_at_once = 4096;
    std::uint64_t const needed = std::uint64_t{m_length} + length;
    check_length(needed, append_site);
    m_bytes.reserve(static_cast<std::size_t>(std::max(needed, least_capacity)));
    std::uint64_t const most = std::min<std::uint64_t>(m_bytes.capacity(), longest_content());
    m_bytes.resize(static_cast<std::size_t>(std::min(m_length + filled_at_once, most)));
}

void byte_content::append_to_string(std::string_view bytes) {
    check_length(std::uint64_t{m_length} + bytes.size(), append_site);
    m_bytes.resize(m_length);
    m_bytes.append(bytes);
    m_length = m_bytes.size();
}

} // namespace _private

void _private::raise_too_long(raise_site const& at) {
    throw exceptions::length_error("content does not fit into a 32-bit length", at.line, at.file, at.function);
}

} // namespace ZOLT_2_18::serialization
