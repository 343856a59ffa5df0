// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Strings that are written straight into their memory. Zeros are not written first where the C++ library has
// the means (C++23); sources that gain by it are compiled so.
#pragma once

#include <cstddef>
#include <string>

namespace ZOLT_2_18::strings::_private {

/// Makes the string `size` units long and has `write(data)` write all behind those that it had; what it
/// returns becomes the number of its units.
template <typename Text, typename Write>
void overwrite(Text& text, std::size_t size, Write write) {
#ifdef __cpp_lib_string_resize_and_overwrite
    // g++ 12 passes a size of its own.
    text.resize_and_overwrite(size, [&write](auto* data, std::size_t) { return write(data); });
#else
    text.resize(size);
    text.resize(write(text.data()));
#endif
}

} // namespace ZOLT_2_18::strings::_private
