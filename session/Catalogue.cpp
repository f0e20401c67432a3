#include "session/Catalogue.h"

#include <QCoreApplication>
#include <QTranslator>

namespace orvel {

void installJapanese(QTranslator &translator)
{
    translator.load(QStringLiteral(":klyv_ja_JP"), QCoreApplication::applicationDirPath(),
                    QStringLiteral(""), QStringLiteral(""));
    QCoreApplication::installTranslator(&translator);
}

} // namespace orvel
