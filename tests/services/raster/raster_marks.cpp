#include "tests/services/raster/raster_marks.h"

#include <cstddef>
#include <string_view>

#include "tests/services/raster/reference_painter.h"

namespace raster_tests {

using services::Surface;

namespace {

constexpr std::string_view kindNames[] = {
    "fillSurface",        "fillBox",          "blendBox", "drawFrame",
    "drawHorizontalRule", "drawVerticalRule", "drawLine", "fillCircle"};

}  // namespace

Surface surfaceOf(int width, int height, double pixelRatio) {
    Surface surface;
    resizeSurface(surface, width, height, pixelRatio);
    return surface;
}

std::string pictureOf(const Surface& surface) {
    std::string picture;
    std::size_t index = 0;
    for (int y = 0; y < surface.deviceHeight; ++y) {
        for (int x = 0; x < surface.deviceWidth; ++x, ++index) {
            const std::uint32_t pixel = surface.pixels.at(index);
            picture += pixel == 0xFF000000U ? '#' : pixel == 0xFFFFFFFFU ? '.' : '?';
        }
        picture += '\n';
    }
    return picture;
}

std::uint32_t pixelAt(const Surface& surface, int x, int y) {
    return surface.pixels.at(static_cast<std::size_t>(y) *
                                 static_cast<std::size_t>(surface.deviceWidth) +
                             static_cast<std::size_t>(x));
}

std::ostream& operator<<(std::ostream& stream, const Mark& mark) {
    return stream << kindNames[static_cast<std::size_t>(mark.kind)] << "(" << mark.a << ", "
                  << mark.b << ", " << mark.c << ", " << mark.d << ", colour " << mark.colour
                  << ")";
}

void paint(Surface& surface, const Mark& m) {
    switch (m.kind) {
        case Kind::surface:
            return fillSurface(surface, m.colour);
        case Kind::box:
            return fillBox(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::blendedBox:
            return blendBox(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::frame:
            return drawFrame(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::horizontalRule:
            return drawHorizontalRule(surface, m.a, m.b, m.c, m.colour);
        case Kind::verticalRule:
            return drawVerticalRule(surface, m.a, m.b, m.c, m.colour);
        case Kind::line:
            return drawLine(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::circle:
            return fillCircle(surface, m.a, m.b, m.c, m.colour);
    }
}

void paintSlowly(Surface& surface, const Mark& m) {
    namespace slow = reference_painter;
    switch (m.kind) {
        case Kind::surface:
            return slow::fillSurface(surface, m.colour);
        case Kind::box:
            return slow::fillBox(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::blendedBox:
            return slow::blendBox(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::frame:
            return slow::drawFrame(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::horizontalRule:
            return slow::drawHorizontalRule(surface, m.a, m.b, m.c, m.colour);
        case Kind::verticalRule:
            return slow::drawVerticalRule(surface, m.a, m.b, m.c, m.colour);
        case Kind::line:
            return slow::drawLine(surface, m.a, m.b, m.c, m.d, m.colour);
        case Kind::circle:
            return slow::fillCircle(surface, m.a, m.b, m.c, m.colour);
    }
}

}  // namespace raster_tests
