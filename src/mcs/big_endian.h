// Numbers in files: high byte first.
#pragma once

#include <cstdint>

namespace grolof {

/// The signed 16-bit number in two bytes.
constexpr std::int16_t Get16(const std::uint8_t* bytes) {
    return static_cast<std::int16_t>(bytes[0] << 8 | bytes[1]);
}

/// Stores the low 16 bits of a number in two bytes.
constexpr void Put16(std::uint8_t* bytes, std::int64_t value) {
    bytes[0] = static_cast<std::uint8_t>(value >> 8);
    bytes[1] = static_cast<std::uint8_t>(value);
}

/// The signed 32-bit number in four bytes.
constexpr std::int32_t Get32(const std::uint8_t* bytes) {
    const auto high = static_cast<std::uint16_t>(Get16(bytes));
    const auto low = static_cast<std::uint16_t>(Get16(bytes + 2));
    return static_cast<std::int32_t>(std::uint32_t{high} << 16 | low);
}

/// Stores the low 32 bits of a number in four bytes.
constexpr void Put32(std::uint8_t* bytes, std::int64_t value) {
    Put16(bytes, value >> 16);
    Put16(bytes + 2, value);
}

} // namespace grolof
