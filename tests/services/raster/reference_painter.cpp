#include "tests/services/raster/reference_painter.h"

#include <cmath>
#include <cstddef>
#include <utility>

namespace reference_painter {

using services::Colour;
using services::Surface;

namespace {

// Wide enough for every product, so that nothing here needs a thought about overflow.
__extension__ using Wide = __int128;

Wide edge(Wide logical, double pixelRatio) {
    return static_cast<Wide>(std::floor(static_cast<double>(logical) * pixelRatio + 0.5));
}

Wide floorOfQuotient(Wide dividend, Wide divisor) {
    Wide quotient = dividend / divisor;
    if (quotient * divisor > dividend) --quotient;
    return quotient;
}

std::uint32_t channels(int red, int green, int blue) {
    return 0xFF000000U + static_cast<std::uint32_t>(red * 65536 + green * 256 + blue);
}

std::uint32_t opaque(std::uint32_t, Colour colour) {
    return channels(services::red(colour), services::green(colour), services::blue(colour));
}

std::uint32_t halfTransparent(std::uint32_t old, Colour colour) {
    const int oldRed = static_cast<int>(old / 65536 % 256);
    const int oldGreen = static_cast<int>(old / 256 % 256);
    const int oldBlue = static_cast<int>(old % 256);
    return channels((services::red(colour) + 1) / 2 + oldRed / 2,
                    (services::green(colour) + 1) / 2 + oldGreen / 2,
                    (services::blue(colour) + 1) / 2 + oldBlue / 2);
}

template <typename Covers, typename Mix>
void paintWhere(Surface& surface, Colour colour, Covers covers, Mix mix) {
    for (int y = 0; y < surface.deviceHeight; ++y) {
        for (int x = 0; x < surface.deviceWidth; ++x) {
            if (!covers(Wide{x}, Wide{y})) continue;
            std::uint32_t& pixel = surface.pixels.at(
                static_cast<std::size_t>(y) * static_cast<std::size_t>(surface.deviceWidth) +
                static_cast<std::size_t>(x));
            pixel = mix(pixel, colour);
        }
    }
}

template <typename Mix>
void paintBox(Surface& surface, int x, int y, int width, int height, Colour colour, Mix mix) {
    if (width < 1 || height < 1) return;
    const double s = surface.pixelRatio;
    const auto covers = [=](Wide px, Wide py) {
        return px >= edge(x, s) && px < edge(Wide{x} + width, s) && py >= edge(y, s) &&
               py < edge(Wide{y} + height, s);
    };
    paintWhere(surface, colour, covers, mix);
}

}  // namespace

void fillSurface(Surface& surface, Colour colour) {
    paintWhere(
        surface, colour, [](Wide, Wide) { return true; }, opaque);
}

void fillBox(Surface& surface, int x, int y, int width, int height, Colour colour) {
    paintBox(surface, x, y, width, height, colour, opaque);
}

void blendBox(Surface& surface, int x, int y, int width, int height, Colour colour) {
    paintBox(surface, x, y, width, height, colour, halfTransparent);
}

void drawFrame(Surface& surface, int x, int y, int width, int height, Colour colour) {
    if (width < 1 || height < 1) return;
    const double s = surface.pixelRatio;
    const Wide thickness = static_cast<Wide>(std::floor(s + 0.5));
    const auto covers = [=](Wide px, Wide py) {
        const Wide fromLeft = px - edge(x, s);
        const Wide fromTop = py - edge(y, s);
        const Wide fromRight = edge(Wide{x} + width, s) - 1 - px;
        const Wide fromBottom = edge(Wide{y} + height, s) - 1 - py;
        if (fromLeft < 0 || fromTop < 0 || fromRight < 0 || fromBottom < 0) return false;
        return fromLeft < thickness || fromTop < thickness || fromRight < thickness ||
               fromBottom < thickness;
    };
    paintWhere(surface, colour, covers, opaque);
}

void drawHorizontalRule(Surface& surface, int x, int y, int length, Colour colour) {
    if (length < 1) return;
    const double s = surface.pixelRatio;
    const Wide thickness = static_cast<Wide>(std::floor(s + 0.5));
    const auto covers = [=](Wide px, Wide py) {
        return px >= edge(x, s) && px < edge(Wide{x} + length, s) && py >= edge(y, s) &&
               py < edge(y, s) + thickness;
    };
    paintWhere(surface, colour, covers, opaque);
}

void drawVerticalRule(Surface& surface, int x, int y, int length, Colour colour) {
    if (length < 1) return;
    const double s = surface.pixelRatio;
    const Wide thickness = static_cast<Wide>(std::floor(s + 0.5));
    const auto covers = [=](Wide px, Wide py) {
        return px >= edge(x, s) && px < edge(x, s) + thickness && py >= edge(y, s) &&
               py < edge(Wide{y} + length, s);
    };
    paintWhere(surface, colour, covers, opaque);
}

// A pixel is covered when one of the squares whose corner is less than their side before it, on
// both axes, is a step of the line.
void drawLine(Surface& surface, int x1, int y1, int x2, int y2, Colour colour) {
    const double s = surface.pixelRatio;
    const Wide side = static_cast<Wide>(std::ceil(s));
    const Wide dx = edge(x2, s) - edge(x1, s);
    const Wide dy = edge(y2, s) - edge(y1, s);
    const bool horizontal = (dx < 0 ? -dx : dx) >= (dy < 0 ? -dy : dy);
    Wide majorFirst = horizontal ? edge(x1, s) : edge(y1, s);
    Wide majorLast = horizontal ? edge(x2, s) : edge(y2, s);
    Wide minorFirst = horizontal ? edge(y1, s) : edge(x1, s);
    Wide minorLast = horizontal ? edge(y2, s) : edge(x2, s);
    if (majorFirst > majorLast) {
        std::swap(majorFirst, majorLast);
        std::swap(minorFirst, minorLast);
    }
    const auto minorAt = [=](Wide major) {
        if (majorFirst == majorLast) return minorFirst;
        // floor(exact position + 1/2)
        const Wide length = majorLast - majorFirst;
        const Wide rise = minorLast - minorFirst;
        return minorFirst + floorOfQuotient(2 * (major - majorFirst) * rise + length, 2 * length);
    };
    const auto covers = [=](Wide px, Wide py) {
        const Wide pixelMajor = horizontal ? px : py;
        const Wide pixelMinor = horizontal ? py : px;
        for (Wide major = pixelMajor - side + 1; major <= pixelMajor; ++major) {
            if (major < majorFirst || major > majorLast) continue;
            const Wide minor = minorAt(major);
            if (pixelMinor >= minor && pixelMinor < minor + side) return true;
        }
        return false;
    };
    paintWhere(surface, colour, covers, opaque);
}

void fillCircle(Surface& surface, int centreX, int centreY, int radius, Colour colour) {
    if (radius < 0) return;
    const double s = surface.pixelRatio;
    const Wide middleX = edge(2 * Wide{centreX} + 1, s);
    const Wide middleY = edge(2 * Wide{centreY} + 1, s);
    const double deviceRadius = static_cast<double>(2 * Wide{radius} + 1) * s;
    // A whole number is at most R^2 when it is at most floor(R^2).
    const Wide square = static_cast<Wide>(std::floor(deviceRadius * deviceRadius));
    const auto covers = [=](Wide px, Wide py) {
        const Wide u = 2 * px + 1 - middleX;
        const Wide v = 2 * py + 1 - middleY;
        return u * u + v * v <= square;
    };
    paintWhere(surface, colour, covers, opaque);
}

}  // namespace reference_painter
