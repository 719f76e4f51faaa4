#include "services/qt/read_only_text.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QKeyEvent>
#include <QTextLayout>
#include <QWheelEvent>
#include <algorithm>

namespace services::qt {

namespace {

QFont usersFont() {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

int usersSize() {
    return QFontInfo(usersFont()).pixelSize();
}

// The user's own size is the font as it is, whatever unit it is given in.
QFont fontOfSize(int pixels) {
    QFont font = usersFont();
    if (pixels != usersSize()) font.setPixelSize(pixels);
    return font;
}

}  // namespace

ReadOnlyText::ReadOnlyText(TextExtent wanted, QWidget* parent)
    : QPlainTextEdit(parent), extent(wanted) {
    const bool isMeasured = extent.columns > 0 || extent.lines > 0;
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setLineWrapMode(isMeasured ? QPlainTextEdit::NoWrap : QPlainTextEdit::WidgetWidth);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false);
    if (isMeasured) {
        // The box is measured for the text alone.
        setFrameShape(QFrame::NoFrame);
        document()->setDocumentMargin(0);
        // Or the toolkit scrolls lines that fit exactly: it counts a pixel more than they take.
        setViewportMargins(0, 0, 0, -1);
    }
    chooseFont();
}

// The toolkit lays a text out before it has its size, gives that small view both scroll bars, and
// afterwards each of them takes the room that keeps the other.
void ReadOnlyText::showEvent(QShowEvent* event) {
    QPlainTextEdit::showEvent(event);
    for (const auto policy : {Qt::ScrollBarAlwaysOff, Qt::ScrollBarAsNeeded}) {
        setHorizontalScrollBarPolicy(policy);
        setVerticalScrollBarPolicy(policy);
    }
}

void ReadOnlyText::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    chooseFont();
}

// As the toolkit lays lines out, which is not to the pixel what its metrics say.
bool ReadOnlyText::holds(const QFont& font) const {
    QTextLayout layout(QString(extent.columns, QLatin1Char('m')), font);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    return line.naturalTextWidth() < width() && line.height() * extent.lines <= height();
}

int ReadOnlyText::fittingSize() const {
    const int smallest = usersSize();
    if (extent.columns <= 0) return smallest;
    int size = smallest;
    while (size < 2 * smallest && holds(fontOfSize(size + 1)))
        ++size;
    return size;
}

void ReadOnlyText::chooseFont() {
    const int size = fittingSize() + enlargement;
    if (size == chosenSize) return;
    chosenSize = size;
    setFont(fontOfSize(size));
}

void ReadOnlyText::enlarge(int pixels) {
    enlargement = std::clamp(enlargement + pixels, 0, 3 * usersSize());
    chooseFont();
}

void ReadOnlyText::wheelEvent(QWheelEvent* event) {
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        QPlainTextEdit::wheelEvent(event);
        return;
    }
    // A touchpad turns by parts of a notch.
    constexpr int notch = 120;
    turned += event->angleDelta().y();
    enlarge(turned / notch);
    turned %= notch;
    event->accept();
}

void ReadOnlyText::keyPressEvent(QKeyEvent* event) {
    // Plus needs Shift on some keyboards, and is a key of its own on the number pad.
    const bool control = event->modifiers().testFlag(Qt::ControlModifier);
    if (control && (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Equal)) {
        enlarge(1);
    } else if (control && event->key() == Qt::Key_Minus) {
        enlarge(-1);
    } else {
        QPlainTextEdit::keyPressEvent(event);
    }
}

}  // namespace services::qt
