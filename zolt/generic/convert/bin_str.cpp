// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A value is first brought to the type that its image holds (int32_to_bin_str: long to 32 bits), then
// taken as the unsigned integer of the same size, whose bytes are swapped where the order asks for it.
#include <zolt/generic/convert/bin_str.hpp>

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace ZOLT_2_18::generic::convert {
namespace {

enum class order { native, most_significant_first };

inline std::uint16_t swap_bytes(std::uint16_t image) { return __builtin_bswap16(image); }
inline std::uint32_t swap_bytes(std::uint32_t image) { return __builtin_bswap32(image); }
inline std::uint64_t swap_bytes(std::uint64_t image) { return __builtin_bswap64(image); }

template <order Order, typename Image>
Image ordered(Image image) {
    if constexpr (Order == order::most_significant_first && std::endian::native == std::endian::little) {
        return swap_bytes(image);
    } else {
        return image;
    }
}

template <typename Stored>
using image_of = std::conditional_t<sizeof(Stored) == 2, std::uint16_t,
                                    std::conditional_t<sizeof(Stored) == 4, std::uint32_t, std::uint64_t>>;

template <order Order, typename Stored, typename T>
std::string pack(T const& value) {
    auto const image = ordered<Order>(std::bit_cast<image_of<Stored>>(static_cast<Stored>(value)));
    return std::string(reinterpret_cast<char const*>(&image), sizeof image);
}

template <order Order, typename Stored>
Stored unpack(char const* bytes) {
    image_of<Stored> image;
    std::memcpy(&image, bytes, sizeof image);
    return std::bit_cast<Stored>(ordered<Order>(image));
}

template <order Order, typename Stored>
Stored unpack(std::string const& bytes) {
    return bytes.size() < sizeof(Stored) ? Stored{0} : unpack<Order, Stored>(bytes.data());
}

} // namespace

#define ZOLT_BIN_STR(name, type, stored, order)                                                                    \
    std::string name##_to_bin_str(type const& value) { return pack<order, stored>(value); }                        \
    type bin_str_to_##name(char const* bytes) { return unpack<order, stored>(bytes); }                             \
    type bin_str_to_##name(std::string const& bytes) { return unpack<order, stored>(bytes); }

#define ZOLT_BIN_STR_FAMILY(order)                                                                                 \
    ZOLT_BIN_STR(int16, short, std::int16_t, order)                                                                \
    ZOLT_BIN_STR(int32, long, std::int32_t, order)                                                                 \
    ZOLT_BIN_STR(int64, long long, std::int64_t, order)                                                            \
    ZOLT_BIN_STR(uint16, unsigned short, std::uint16_t, order)                                                     \
    ZOLT_BIN_STR(uint32, unsigned long, std::uint32_t, order)                                                      \
    ZOLT_BIN_STR(uint64, unsigned long long, std::uint64_t, order)                                                 \
    ZOLT_BIN_STR(float, float, float, order)                                                                       \
    ZOLT_BIN_STR(double, double, double, order)

ZOLT_BIN_STR_FAMILY(order::native)

namespace little_endian {
ZOLT_BIN_STR_FAMILY(order::most_significant_first)
} // namespace little_endian

namespace big_endian {
ZOLT_BIN_STR_FAMILY(order::most_significant_first)
} // namespace big_endian

#undef ZOLT_BIN_STR_FAMILY
#undef ZOLT_BIN_STR

} // namespace ZOLT_2_18::generic::convert
