#pragma once

#include <QString>
#include <QStringList>

namespace orvel {

struct AnalysisInput;
struct MapOutcome;

/// Where the pictures of a result may go, whatever its method fills: RESULT_QUANTITY.png in the
/// result file's folder.
QStringList imagePaths(const QString &resultPath);

/// Writes a picture of every quantity that the maps hold and of the two histograms; needs a
/// QGuiApplication. Colours reach from the least to the greatest finite value of a map.
/// Returns the paths that could not be written.
QStringList writeImages(const QString &resultPath, const MapOutcome &outcome,
                        const AnalysisInput &input);

} // namespace orvel
