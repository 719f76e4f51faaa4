// Calls of the raster's procedures as records, on surfaces that print themselves.
#pragma once

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>

#include "services/raster/raster.h"

namespace raster_tests {

inline constexpr int smallest = std::numeric_limits<int>::min();
inline constexpr int largest = std::numeric_limits<int>::max();

services::Surface surfaceOf(int width, int height, double pixelRatio = 1);

// One line per row: '#' black, '.' white, '?' any other colour.
std::string pictureOf(const services::Surface& surface);

std::uint32_t pixelAt(const services::Surface& surface, int x, int y);

enum class Kind {
    surface,
    box,
    blendedBox,
    frame,
    horizontalRule,
    verticalRule,
    line,
    circle,
};

// A call of a procedure with as many of a, b, c and d as it takes.
struct Mark {
    Kind kind;
    int a;
    int b;
    int c;
    int d;
    services::Colour colour;
};

std::ostream& operator<<(std::ostream& stream, const Mark& mark);

void paint(services::Surface& surface, const Mark& m);

// By the reference painter.
void paintSlowly(services::Surface& surface, const Mark& m);

}  // namespace raster_tests
