#pragma once

#include <QString>
#include <QStringList>

namespace orvel {

struct PanelState;

/// Tags of the two histogram files beside a result file.
extern const QString kRatioTag;
extern const QString kThicknessTag;

/// The result file and its histogram files.
QStringList resultPaths(const QString &resultPath);

/// Every file that a session reads, those of spectra that only the window shows included.
QStringList inputPaths(const PanelState &state);

/// The first input that writing one of the outputs would replace or change, through links of any
/// kind; empty when there is none.
QString overwrittenInput(const QStringList &outputs, const QStringList &inputs);

} // namespace orvel
