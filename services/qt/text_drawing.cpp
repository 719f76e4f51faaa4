#include "services/text_drawing.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include "services/qt/toolkit_state.h"

namespace services {

// A chart asks for the same texts over and over, and shaping one takes microseconds.
int textWidth(TextView text) {
    qt::TextWidths& known = qt::toolkit.textWidths;
    const QFont font = QGuiApplication::font();
    constexpr std::size_t most = 4096;
    if (known.font != font || known.widths.size() >= most) known = {font, {}};
    const auto found = known.widths.find(text);
    if (found != known.widths.end()) return found->second;
    const int width = QFontMetrics(font).horizontalAdvance(qt::toQString(text));
    known.widths.emplace(text, width);
    return width;
}

int textHeight(TextView) {
    return QFontMetrics(QGuiApplication::font()).height();
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
    painter.setFont(QGuiApplication::font());
    painter.setPen(QColor(red(colour), green(colour), blue(colour)));
    painter.drawText(QPointF(x, y + QFontMetrics(QGuiApplication::font()).ascent()),
                     qt::toQString(text));
}

}  // namespace services
