// Light and dark desktops: every window takes the theme's colours, and all but the chart is made of
// them. Themes arrive as palettes.
#include <QAbstractItemView>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "tests/windows/program_windows.h"

namespace {

QPalette theme(bool dark) {
    const QColor window = dark ? QColor(45, 45, 48) : QColor(239, 239, 239);
    const QColor base = dark ? QColor(30, 30, 32) : QColor(255, 255, 255);
    const QColor text = dark ? QColor(240, 240, 240) : QColor(20, 20, 20);
    QPalette palette(text, window, window.lighter(130), window.darker(200), window.darker(130),
                     text, base);
    palette.setColor(QPalette::AlternateBase, dark ? base.lighter(140) : base.darker(105));
    palette.setColor(QPalette::Highlight, QColor(20, 90, 150));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, text);
    return palette;
}

// From 1 (the same) to 21 (black and white), after the rules for accessible web content.
double brightness(const QColor& colour) {
    const auto part = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) +
           0.0722 * part(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const double lighter = std::max(brightness(a), brightness(b));
    const double darker = std::min(brightness(a), brightness(b));
    return (lighter + 0.05) / (darker + 0.05);
}

constexpr double readable = 4.5;

struct Colours {
    QColor background;     // the most frequent colour
    double strongest = 1;  // contrast of any pixel against it
};

Colours coloursOf(const QImage& grabbed) {
    const QImage picture = grabbed.convertToFormat(QImage::Format_RGB32);
    std::unordered_map<QRgb, int> counts;
    for (int y = 0; y < picture.height(); y += 2) {  // half the rows show as much
        const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x)
            ++counts[row[x]];
    }
    const auto most =
        std::max_element(counts.begin(), counts.end(),
                         [](const auto& a, const auto& b) { return a.second < b.second; });
    Colours colours{.background = QColor(most->first)};
    for (const auto& [colour, count] : counts)
        colours.strongest =
            std::max(colours.strongest, contrast(colours.background, QColor(colour)));
    return colours;
}

class Themes : public ProgramWindows, public testing::WithParamInterface<bool> {
  protected:
    void SetUp() override {
        before = QApplication::palette();
        QApplication::setPalette(theme(GetParam()));
        ProgramWindows::SetUp();
    }

    void TearDown() override {
        ProgramWindows::TearDown();
        QApplication::setPalette(before);
    }

    static void expectThemed(QWidget& widget, bool dark) {
        const Colours colours = coloursOf(widget.grab().toImage());
        EXPECT_EQ(dark, brightness(colours.background) < 0.2)
            << colours.background.name().toStdString();
        EXPECT_GE(colours.strongest, readable);
    }

  private:
    QPalette before;
};

INSTANTIATE_TEST_SUITE_P(OfTheDesktop, Themes, testing::Bool(),
                         [](const auto& dark) { return dark.param ? "Dark" : "Light"; });

TEST_P(Themes, EveryWindowButTheChartTakesTheirColours) {
    lookAtAll([](QWidget& window) {
        if (&window != widget()) expectThemed(window, GetParam());
    });
    expectThemed(*widget()->findChild<QMenuBar*>(), GetParam());
    for (QMenu* menu : widget()->findChildren<QMenu*>()) {
        menu->ensurePolished();
        menu->resize(menu->sizeHint());
        expectThemed(*menu, GetParam());
    }
}

TEST_P(Themes, TheChartStaysWhiteWithItsOwnColours) {
    const QColor background = coloursOf(imageWidget()->grab().toImage()).background;
    EXPECT_EQ(QColor(Qt::white).name(), background.name());
}

TEST_P(Themes, NoControlHasColoursOfItsOwn) {
    lookAtAll([](QWidget& window) {
        for (const QWidget* control : window.findChildren<QWidget*>()) {
            EXPECT_TRUE(control->styleSheet().isEmpty());
            for (const QPalette::ColorRole role :
                 {QPalette::Window, QPalette::WindowText, QPalette::Base, QPalette::Text,
                  QPalette::Button, QPalette::ButtonText, QPalette::Highlight}) {
                EXPECT_EQ(QApplication::palette(control).color(role),
                          control->palette().color(role))
                    << control->metaObject()->className();
            }
        }
    });
}

TEST_P(Themes, RowsOfTheListAreReadableChosenOrNot) {
    lookAt(
        "Trainingsdateien bearbeiten",
        [](QWidget& window) {
            auto* const list = window.findChild<QAbstractItemView*>();
            ASSERT_NE(nullptr, list);
            list->setCurrentIndex(list->model()->index(1, 0));
            const QImage rows = list->viewport()->grab().toImage();
            for (int row = 0; row < 3; ++row) {
                SCOPED_TRACE(row);
                const QRect cell = list->visualRect(list->model()->index(row, 1));
                const double scale = rows.devicePixelRatio();
                const Colours colours =
                    coloursOf(rows.copy(QRectF(cell.x() * scale, cell.y() * scale,
                                               cell.width() * scale, cell.height() * scale)
                                            .toAlignedRect()));
                EXPECT_GE(colours.strongest, readable);
            }
        },
        [] { files::openTrainingList(files::ListMode::edit, mainWidth(), mainHeight()); });
}

TEST_P(Themes, AChangeOfTheThemeReachesOpenWindows) {
    lookAtAll([](QWidget& window) {
        QApplication::setPalette(theme(!GetParam()));
        QCoreApplication::processEvents();
        if (&window != widget()) expectThemed(window, !GetParam());
        QApplication::setPalette(theme(GetParam()));
    });
}

}  // namespace
