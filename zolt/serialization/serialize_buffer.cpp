// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/serialization/serialize_buffer.hpp>

#include <zolt/exceptions/exception.hpp>
#include <zolt/serialization/serialize_buffer_private.hpp>

namespace ZOLT_2_18::serialization {

serialize_buffer::~serialize_buffer() = default;

void _private::raise_too_long(raise_site const& at) {
    throw exceptions::length_error("content does not fit into a 32-bit length", at.line, at.file, at.function);
}

} // namespace ZOLT_2_18::serialization
