#pragma once

#include "display/MapPainter.h"
#include "display/PictureExport.h"
#include "session/SessionTexts.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace orvel {

// What graphs and maps show as numbers; docs/formats.md describes the layouts.

/// A line or cloud of points of a graph; x and y have the same length.
struct TableCurve {
    QString name;
    std::vector<double> x;
    std::vector<double> y;
};

/// One point a line, below the settings as comments; numbers are read back the same.
QByteArray curvesCsv(const Settings &settings, const std::vector<TableCurve> &curves);

/// A row of the map a line, the lowest first; every value, those too that the view hides. Pixels
/// beyond the values are 0, as they are shown.
QByteArray gridCsv(const Settings &settings, const MapValues &map);

/// The map as a binary file that is read back as one; pixels without a finite value are not valid.
[[nodiscard]] bool writeProcessedMap(const QString &path, const QString &id, const MapValues &map);

/// The program and every input and choice that a map or spectrum is computed from: what makes a
/// picture repeatable.
Settings settingsOf(const SessionTexts &texts);

/// Unit of a quantity of a map, for readers of any language; empty: none.
QString unitOf(Quantity quantity, Method method);

} // namespace orvel
