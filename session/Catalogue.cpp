#include "session/Catalogue.h"

#include <QCoreApplication>

namespace orvel {

void installJapanese(Translators &translators)
{
    const auto install = [](QTranslator &translator, const QString &catalogue) {
        translator.load(catalogue, QCoreApplication::applicationDirPath(), QStringLiteral(""),
                        QStringLiteral(""));
        QCoreApplication::installTranslator(&translator);
    };
    install(translators.later, QStringLiteral(":orvel_ja"));
    install(translators.fixed, QStringLiteral(":klyv_ja_JP")); // asked first
}

} // namespace orvel
