#include "panel/Manual.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace orvel {

QString openManual()
{
    // The catalogue names the file, so that it always is of the language that the window shows.
    const QString name = QCoreApplication::translate("Manual", "manual.html");
    const QString path = QDir::cleanPath(QCoreApplication::applicationDirPath() +
                                         QStringLiteral("/../share/doc/orvel/") + name);
    // A browser would open without the file too, and show a page about its lack.
    if (QFileInfo::exists(path) && QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        return QString();
    }
    return QCoreApplication::translate("Manual",
                                       "The manual could not be opened; it should be here: %1")
        .arg(path);
}

} // namespace orvel
