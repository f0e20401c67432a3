#pragma once

class QTranslator;

namespace orvel {

/// Loads the built-in Japanese catalogue into a translator and installs it in the application.
/// A catalogue that cannot be loaded leaves the texts English. The caller's program must link
/// orvel_catalogue and keep the translator alive.
void installJapanese(QTranslator &translator);

} // namespace orvel
