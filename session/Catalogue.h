#pragma once

#include <QTranslator>

namespace orvel {

/// The translators of a program that speaks Japanese; they must live as long as it does.
struct Translators {
    QTranslator fixed; ///< the texts that every version has had, klyv_ja_JP
    QTranslator later; ///< all others, orvel_ja
};

/// Loads the built-in Japanese catalogues and installs them in the application. A catalogue that
/// cannot be loaded leaves its texts English. The caller's program must link orvel_catalogue.
void installJapanese(Translators &translators);

} // namespace orvel
