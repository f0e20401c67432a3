#pragma once

#include "bench/Work.h"

namespace orvel::bench {

/// Energies for the sample's four compounds.
std::unique_ptr<Work> makeAdvise();

} // namespace orvel::bench
