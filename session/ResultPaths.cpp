#include "session/ResultPaths.h"

#include "analysis/BinCounts.h"
#include "analysis/ResultFile.h"
#include "session/RegionTexts.h"
#include "session/SessionTexts.h"
#include "text/OutputFile.h"

#include <QSet>

namespace orvel {

const QString kRatioTag = QStringLiteral("HGAlpha");
const QString kThicknessTag = QStringLiteral("HGThick");

QStringList resultPaths(const QString &resultPath, const AdvancedTexts &advanced, bool hasRegions)
{
    QStringList paths = {resultPath, BinCounts::pathBeside(resultPath, kRatioTag),
                         BinCounts::pathBeside(resultPath, kThicknessTag)};
    if (advanced.sigmaFile) {
        paths.append(sigmaPathBeside(resultPath));
    }
    if (hasRegions) {
        paths.append(regionPathBeside(resultPath));
    }
    return paths;
}

QStringList inputPaths(const SessionTexts &texts)
{
    QStringList paths = {texts.target.file};
    for (const ReferenceTexts &reference : texts.references) {
        paths.append(reference.file);
    }
    for (const PointTexts &point : texts.points) {
        paths.append(point.file);
    }
    paths.removeAll(QString());
    return paths;
}

QString overwrittenInput(const QStringList &outputs, const QStringList &inputs)
{
    QSet<QString> written;
    for (const QString &output : outputs) {
        for (const QString &key : fileKeys(output)) {
            written.insert(key);
        }
    }
    for (const QString &input : inputs) {
        for (const QString &key : fileKeys(input)) {
            if (written.contains(key)) {
                return input;
            }
        }
    }
    return QString();
}

} // namespace orvel
