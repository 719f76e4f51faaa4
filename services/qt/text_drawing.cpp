#include "services/text_drawing.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include "services/qt/toolkit_state.h"

namespace services {

int textWidth(TextView text) {
    return QFontMetrics(QGuiApplication::font()).horizontalAdvance(qt::toQString(text));
}

int textHeight(TextView) {
    return QFontMetrics(QGuiApplication::font()).height();
}

void drawText(Surface& surface, int x, int y, TextView text, Colour colour) {
    if (surface.pixels.empty()) return;
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
