#include "services/text_drawing.h"

#include <QColor>
#include <QRect>
#include <algorithm>
#include <cmath>
#include <random>

#include "tests/windows/window_test.h"

namespace {

using services::Colour;
using services::Surface;
using services::Text;

class TextDrawing : public WindowTest {
  protected:
    static constexpr int x = 21;
    static constexpr int y = 13;

    static Surface filled(double ratio, Colour background) {
        Surface surface;
        services::resizeSurface(surface, 400, 60, ratio);
        services::fillSurface(surface, background);
        return surface;
    }

    static Surface noise(double ratio) {
        Surface surface = filled(ratio, services::white);
        std::mt19937 random(7);  // NOLINT(cert-msc51-cpp): the same background on every run
        for (std::uint32_t& pixel : surface.pixels)
            pixel = 0xFF000000U | (random() & 0xFFFFFFU);
        return surface;
    }

    static std::uint32_t pixelAt(const Surface& surface, int column, int row) {
        const auto width = static_cast<std::size_t>(surface.deviceWidth);
        return surface
            .pixels[static_cast<std::size_t>(row) * width + static_cast<std::size_t>(column)];
    }

    // The smallest box of device pixels around all that differs; empty when nothing does.
    static QRect difference(const Surface& before, const Surface& after) {
        QRect box;
        for (int row = 0; row < before.deviceHeight; ++row) {
            for (int column = 0; column < before.deviceWidth; ++column) {
                if (pixelAt(before, column, row) != pixelAt(after, column, row))
                    box = box.united(QRect(column, row, 1, 1));
            }
        }
        return box;
    }

    // Where the text left ink, in device pixels.
    static QRect ink(const Text& text, double ratio, Colour colour = services::black) {
        const Surface before = filled(ratio, services::white);
        Surface after = before;
        services::drawText(after, x, y, text, colour);
        return difference(before, after);
    }

    // The device pixels that the text's box reaches into. Letters may hang over its sides by a
    // pixel, such as the bar of a T.
    static QRect boxOf(const Text& text, double ratio) {
        const auto first = [ratio](int edge) { return static_cast<int>(std::floor(edge * ratio)); };
        const auto last = [ratio](int edge) {
            return static_cast<int>(std::ceil(edge * ratio)) - 1;
        };
        return {QPoint(first(x) - 1, first(y)), QPoint(last(x + services::textWidth(text)) + 1,
                                                       last(y + services::textHeight(text)))};
    }
};

TEST_F(TextDrawing, InkLiesInsideTheTextsBox) {
    for (const double ratio : {1.0, 1.5, 2.0}) {
        for (const Text text : {"Ag", "Trainings: 12,5 km",
                                "gr\xFC\xDF"
                                "e",
                                "H"}) {
            SCOPED_TRACE(testing::Message() << text << " at " << ratio);
            const QRect found = ink(text, ratio);
            ASSERT_FALSE(found.isEmpty());
            const QRect box = boxOf(text, ratio);
            EXPECT_TRUE(box.contains(found))
                << found.left() << ' ' << found.top() << ' ' << found.right() << ' '
                << found.bottom() << " in " << box.left() << ' ' << box.top() << ' ' << box.right()
                << ' ' << box.bottom();
        }
    }
}

TEST_F(TextDrawing, InkFillsTheTextsBox) {
    // No box that is far too large: capitals and descenders come close to its edges.
    for (const double ratio : {1.0, 1.5, 2.0}) {
        SCOPED_TRACE(ratio);
        const QRect found = ink("\xC4g\xC4g\xC4g\xC4g", ratio);
        const QRect box = boxOf("\xC4g\xC4g\xC4g\xC4g", ratio);
        EXPECT_GT(found.width(), box.width() * 9 / 10);
        EXPECT_GT(found.height(), box.height() * 7 / 10);
    }
}

TEST_F(TextDrawing, AscentAndDescentAreWithinTheHeight) {
    const QRect capital = ink("A", 1.0);
    const QRect descender = ink("g", 1.0);
    EXPECT_GT(descender.bottom(), capital.bottom());
    EXPECT_GE(capital.top(), y);
    EXPECT_LT(descender.bottom(), y + services::textHeight("Ag"));
    EXPECT_EQ(services::textHeight("A"), services::textHeight("g"));
    EXPECT_EQ(services::textHeight(""), services::textHeight("Ag"));
}

TEST_F(TextDrawing, InkHasTheColourAskedFor) {
    // Red and blue must not change places, nor may green be lost.
    const Colour colour = services::rgb(200, 90, 10);
    for (const double ratio : {1.0, 1.5, 2.0}) {
        SCOPED_TRACE(ratio);
        Surface surface = filled(ratio, services::white);
        services::drawText(surface, x, y, "MMMM||||____", colour);
        int full = 0;
        for (const std::uint32_t pixel : surface.pixels) {
            const QColor shown = QColor::fromRgb(pixel);
            EXPECT_EQ(0xFF000000U, pixel & 0xFF000000U);
            // Between paper and ink everywhere, whatever the smoothing.
            EXPECT_GE(shown.red(), 200);
            EXPECT_GE(shown.green(), 90);
            EXPECT_GE(shown.blue(), 10);
            if (std::abs(shown.red() - 200) < 8 && std::abs(shown.green() - 90) < 8 &&
                std::abs(shown.blue() - 10) < 8)
                ++full;
        }
        EXPECT_GT(full, 10);
    }
}

TEST_F(TextDrawing, TheBackgroundStaysAsItIs) {
    for (const double ratio : {1.0, 1.5, 2.0}) {
        SCOPED_TRACE(ratio);
        const Surface before = noise(ratio);
        Surface after = before;
        services::drawText(after, x, y, "          ", services::black);
        EXPECT_EQ(before.pixels, after.pixels);
        services::drawText(after, x, y, "Ag", services::black);
        const QRect found = difference(before, after);
        EXPECT_TRUE(boxOf("Ag", ratio).contains(found));
        // Beside the strokes, inside the box as well.
        int kept = 0;
        for (int row = found.top(); row <= found.bottom(); ++row) {
            for (int column = found.left(); column <= found.right(); ++column) {
                kept += pixelAt(before, column, row) == pixelAt(after, column, row) ? 1 : 0;
            }
        }
        EXPECT_GT(kept, found.width() * found.height() / 4);
    }
}

TEST_F(TextDrawing, MarkupAndAmpersandsAreTextLikeAnyOther) {
    EXPECT_GT(services::textWidth("<b>x</b>"), services::textWidth("bxb"));
    // Within the rounding of each to whole pixels.
    EXPECT_NEAR(3 * services::textWidth("&"), services::textWidth("&&&"), 2);
    EXPECT_NEAR(services::textWidth("ab") + services::textWidth("&"), services::textWidth("a&b"),
                2);
    // What is drawn is as wide as what was measured, but for the room around a letter.
    const int room = services::textWidth("i");
    for (const Text text : {"<b>HHH</b>", "H&H", "&H", "&&&&H"}) {
        SCOPED_TRACE(text);
        EXPECT_GT(ink(text, 1.0).width(), services::textWidth(text) - room);
        EXPECT_LE(ink(text, 1.0).width(), services::textWidth(text) + 1);
    }
    // A mnemonic would be underlined.
    EXPECT_EQ(ink("H", 1.0).height(), ink("HH", 1.0).height());
    EXPECT_LE(ink("&H", 1.0).bottom(), ink("HH", 1.0).bottom() + 1);
}

TEST_F(TextDrawing, WidthsAreThoseOfLatin1Texts) {
    EXPECT_EQ(0, services::textWidth(""));
    EXPECT_GT(services::textWidth("\xDC\xDC"), services::textWidth("\xDC"));
    // One character a byte: read as UTF-8 these would be one letter.
    EXPECT_GT(services::textWidth("\xC3\xBC"), services::textWidth("\xFC"));
}

TEST_F(TextDrawing, OutsideTheSurfaceNothingIsDrawn) {
    const Surface before = filled(1.0, services::white);
    Surface after = before;
    services::drawText(after, -1000, -1000, "Ag", services::black);
    services::drawText(after, 100000, 5, "Ag", services::black);
    EXPECT_EQ(before.pixels, after.pixels);
    Surface nothing;
    services::drawText(nothing, 0, 0, "Ag", services::black);
    EXPECT_TRUE(nothing.pixels.empty());
}

}  // namespace
