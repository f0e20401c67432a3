#pragma once

#include <QString>
#include <QStringList>

namespace orvel {

struct AdvancedTexts;
struct SessionTexts;

/// Tags of the two histogram files beside a result file.
extern const QString kRatioTag;
extern const QString kThicknessTag;

/// The result file, its histogram files and what else the choices ask for beside it.
QStringList resultPaths(const QString &resultPath, const AdvancedTexts &advanced,
                        bool hasRegions = false);

/// Every file that an analysis reads.
QStringList inputPaths(const SessionTexts &texts);

/// The first input that writing one of the outputs would replace or change, through links of any
/// kind; empty when there is none.
QString overwrittenInput(const QStringList &outputs, const QStringList &inputs);

} // namespace orvel
