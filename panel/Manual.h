#pragma once

#include <QString>

namespace orvel {

/// Opens the manual in the language of the interface, in the user's browser. It lies beside the
/// program, in ../share/doc/orvel, in build trees as well as where it was installed.
///
/// Empty when that worked, else a translated line that says where the manual should be.
QString openManual();

} // namespace orvel
