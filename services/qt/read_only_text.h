// Several lines to read, in the fixed font that the user has set, and larger where the user wants
// it so; never smaller.
#pragma once

#include <QPlainTextEdit>

#include "services/controls.h"

namespace services::qt {

class ReadOnlyText : public QPlainTextEdit {
  public:
    // Letters grow as long as the view holds so many characters and lines; 0 for both: they don't.
    ReadOnlyText(TextExtent wanted, QWidget* parent);

  protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    bool holds(const QFont& font) const;
    int fittingSize() const;
    void enlarge(int pixels);
    void chooseFont();

    TextExtent extent;
    int enlargement = 0;  // by the user, in pixels
    int turned = 0;       // of the wheel, below one notch
    int chosenSize = 0;
};

}  // namespace services::qt
