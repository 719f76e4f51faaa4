// Colours: red + green * 256 + blue * 65536, each 0 to 255.
#pragma once

#include <cstdint>

namespace services {

using Colour = std::int32_t;

constexpr Colour rgb(int red, int green, int blue) {
    return red + green * 256 + blue * 65536;
}
constexpr int red(Colour colour) {
    return colour & 255;
}
constexpr int green(Colour colour) {
    return (colour >> 8) & 255;
}
constexpr int blue(Colour colour) {
    return (colour >> 16) & 255;
}

inline constexpr Colour black = rgb(0, 0, 0);
inline constexpr Colour white = rgb(255, 255, 255);

}  // namespace services
