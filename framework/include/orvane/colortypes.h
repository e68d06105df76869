// Colour and display-element values shared by the host utilities, the colour
// lookups and the themes.
//
// Kf::XColor is four bytes in the order red, green, blue, valid. Read as one
// little-endian 32-bit number a set colour is 0x01BBGGRR; the all-zero value
// means "no colour". It is a plain aggregate passed by value:
//
//   Kf::XColor orange{0xFF, 0x80, 0x00, 1};
//   Kf::XColor none{};
//
// Kf::DisplayElement numbers every coloured part of the user interface (0 to
// 83); Kf::ColorType is the older naming of colours; Kf::EdSyntaxTokenCategory
// numbers the editor's syntax-colouring categories. Callers use the numbers;
// the enumerators below only name the bounds.
//
// Threads: plain values; any thread.
#pragma once

#include <cstdint>
#include <type_traits>

namespace Kf {

struct XColor {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t valid = 0;  // 1 = a colour is set, 0 = no colour

  // Builds a colour from its 32-bit form 0xVVBBGGRR.
  static constexpr XColor FromUInt32(std::uint32_t value) {
    return XColor{static_cast<std::uint8_t>(value & 0xFF), static_cast<std::uint8_t>((value >> 8) & 0xFF),
                  static_cast<std::uint8_t>((value >> 16) & 0xFF), static_cast<std::uint8_t>(value >> 24)};
  }
  constexpr std::uint32_t ToUInt32() const {
    return static_cast<std::uint32_t>(red) | (static_cast<std::uint32_t>(green) << 8) |
           (static_cast<std::uint32_t>(blue) << 16) | (static_cast<std::uint32_t>(valid) << 24);
  }
  constexpr bool IsValid() const { return valid != 0; }

  friend constexpr bool operator==(const XColor&, const XColor&) = default;
};
static_assert(sizeof(XColor) == 4, "XColor is exactly four bytes");
static_assert(std::is_aggregate_v<XColor> && std::is_trivially_copyable_v<XColor>, "XColor is a plain structure");

enum DisplayElement : std::int32_t {
  kFirstDisplayElement = 0,
  kLastDisplayElement = 83,
  kDisplayElementCount = 84,
};

enum ColorType : std::int32_t {
  kFirstColorType = 0,
  kLastStandardColorType = 23,
  kFirstExtraColorType = 1000,
  kLastExtraColorType = 1002,
};

enum EdSyntaxTokenCategory : std::int32_t {
  kFirstSyntaxTokenCategory = 0,
  kLastSyntaxTokenCategory = 20,
  kSyntaxTokenCategoryCount = 21,
};

}  // namespace Kf
