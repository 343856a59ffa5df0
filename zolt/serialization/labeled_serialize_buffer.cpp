// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/serialization/labeled_serialize_buffer.hpp>

namespace ZOLT_2_18::serialization {

labeled_serialize_buffer::~labeled_serialize_buffer() = default;

} // namespace ZOLT_2_18::serialization
