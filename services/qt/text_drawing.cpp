#include "services/text_drawing.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include "services/qt/toolkit_state.h"

namespace services {

namespace {

constexpr int tallestLine = 20;  // services/text_drawing.h

// The desktop's font, in as large a size as keeps a line within its room.
QFont chartFont(const QFont& desktopFont) {
    QFont font = desktopFont;
    for (int size = QFontInfo(font).pixelSize() - 1;
         size > 0 && QFontMetrics(font).height() > tallestLine; --size) {
        font.setPixelSize(size);
    }
    return font;
}

// Follows the desktop when it changes its font.
qt::ChartTexts& chartTexts() {
    qt::ChartTexts& texts = qt::toolkit.chartTexts;
    const QFont desktopFont = QGuiApplication::font();
    if (texts.height == 0 || texts.desktopFont != desktopFont) {
        const QFont font = chartFont(desktopFont);
        texts = {desktopFont, font, QFontMetrics(font).height(), {}};
    }
    return texts;
}

}  // namespace

// A chart asks for the same texts over and over, and shaping one takes microseconds.
int textWidth(TextView text) {
    qt::ChartTexts& texts = chartTexts();
    constexpr std::size_t most = 4096;
    if (texts.widths.size() >= most) texts.widths.clear();
    const auto found = texts.widths.find(text);
    if (found != texts.widths.end()) return found->second;
    const int width = QFontMetrics(texts.font).horizontalAdvance(qt::toQString(text));
    texts.widths.emplace(text, width);
    return width;
}

int textHeight(TextView) {
    return chartTexts().height;
}

void drawText(Surface& surface, int x, int y, TextView text, Colour colour) {
    if (surface.pixels.empty()) return;
    // Letters may reach a little beyond their box.
    const int height = textHeight(text);
    if (x - height >= surface.width || y - height >= surface.height || y + 2 * height <= 0 ||
        x + textWidth(text) + height <= 0) {
        return;
    }
    // The painter writes into the surface's own pixels.
    QImage image(reinterpret_cast<uchar*>(surface.pixels.data()), surface.deviceWidth,
                 surface.deviceHeight, static_cast<qsizetype>(surface.deviceWidth) * 4,
                 QImage::Format_RGB32);
    image.setDevicePixelRatio(surface.pixelRatio);
    QPainter painter(&image);
    const QFont& font = chartTexts().font;
    painter.setFont(font);
    painter.setPen(QColor(red(colour), green(colour), blue(colour)));
    painter.drawText(QPointF(x, y + QFontMetrics(font).ascent()), qt::toQString(text));
}

}  // namespace services
