// Tells a key that is held down from one that is pressed again.
#pragma once

#include <QKeyEvent>
#include <QObject>
#include <map>

namespace services::qt {

// Watches the keys of the whole application: a key that has closed one window goes on repeating in
// the next, where it must not count as pressed.
//
// X11 repeats a held key as a release and a press of the same time. The toolkit's own mark for
// repeats follows from what it sees of such pairs: it is missing where a pair arrives in two
// pieces, and it stays on where the key was let go over another program's window. So there the
// times tell, and the mark elsewhere.
class KeyRepeats : public QObject {
  public:
    explicit KeyRepeats(bool onX11) : markIsReliable(!onX11) {}

    // Whether the press that is being handled, the last one seen, is the repeat of a held key.
    bool pressRepeats() const { return repeats; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool isRepeat(const QKeyEvent& press) const;

    bool markIsReliable;
    bool repeats = false;
    std::map<int, quint64> releaseTimes;  // by key
};

}  // namespace services::qt
