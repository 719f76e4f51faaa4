// What the toolkit would write beside the start settings.
#include <QFile>
#include <QFileDialog>
#include <QSettings>

#include "tests/windows/window_test.h"

namespace {

class NoNotes : public WindowTest {};

TEST_F(NoNotes, OfTheRequestersReachTheDisk) {
    {
        // Its end is when a requester notes where it was.
        QFileDialog dialog;
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        dialog.setDirectory(QStringLiteral("/"));
    }
    QSettings notes(QSettings::UserScope, QStringLiteral("QtProject"));
    notes.sync();
    EXPECT_TRUE(notes.fileName().startsWith(QLatin1String("/dev/null/")));
    EXPECT_FALSE(QFile::exists(notes.fileName()));
}

}  // namespace
