#include "batch/Images.h"

#include "analysis/Calculations.h"
#include "analysis/RegionStatistics.h"
#include "display/Pictures.h"
#include "session/ResultPaths.h"
#include "session/SessionTexts.h"
#include "text/OutputFile.h"

#include <QBuffer>
#include <QCoreApplication>

#include <array>
#include <limits>
#include <new>

namespace orvel {
namespace {

/// By Quantity.
constexpr std::array<const char *, kMapQuantities> kTitles = {
    QT_TRANSLATE_NOOP("FourPs", "Ratio 1"),
    QT_TRANSLATE_NOOP("FourPs", "Ratio 2"),
    QT_TRANSLATE_NOOP("FourPs", "Ratio 3"),
    QT_TRANSLATE_NOOP("FourPs", "Ratio 4"),
    QT_TRANSLATE_NOOP("FourPs", "dMut 1"),
    QT_TRANSLATE_NOOP("FourPs", "dMut 2"),
    QT_TRANSLATE_NOOP("FourPs", "dMut 3"),
    QT_TRANSLATE_NOOP("FourPs", "dMut 4"),
    QT_TRANSLATE_NOOP("FourPs", "mut0"),
    QT_TRANSLATE_NOOP("FourPs", "C1"),
    QT_TRANSLATE_NOOP("FourPs", "C2"),
    QT_TRANSLATE_NOOP("FourPs", "Valence"),
    QT_TRANSLATE_NOOP("FourPs", "Amount"),
    QT_TRANSLATE_NOOP("FourPs", "Residual"),
    QT_TRANSLATE_NOOP("FourPs", "sigma Ratio 1"),
    QT_TRANSLATE_NOOP("FourPs", "sigma Ratio 2"),
    QT_TRANSLATE_NOOP("FourPs", "sigma Ratio 3"),
    QT_TRANSLATE_NOOP("FourPs", "sigma Ratio 4"),
    QT_TRANSLATE_NOOP("FourPs", "sigma Valence"),
    QT_TRANSLATE_NOOP("FourPs", "sigma Amount"),
};
const char *titleOf(Quantity quantity)
{
    return kTitles[static_cast<size_t>(indexOf(quantity))];
}

constexpr const char *kThickness = QT_TRANSLATE_NOOP("FourPs", "Thick.");
constexpr const char *kNumber = QT_TRANSLATE_NOOP("FourPs", "Num.");

QString worded(const char *text)
{
    return QCoreApplication::translate("FourPs", text);
}

QString pathOf(const QString &resultPath, const QString &tag)
{
    return BinCounts::pathBeside(resultPath, tag, QStringLiteral("png"));
}

QString pathOf(const QString &resultPath, Quantity quantity)
{
    return pathOf(resultPath, mapQuantityNames()[indexOf(quantity)]);
}

QImage mapImage(const ResultMaps &maps, Quantity quantity)
{
    const auto n = static_cast<size_t>(maps.size());
    const double *values = maps.plane(quantity);
    Column computed;
    if (values == nullptr) {
        computed.resize(n);
        for (size_t i = 0; i < n; ++i) {
            computed[i] = maps.at(quantity, static_cast<qint64>(i));
        }
        values = computed.data();
    }
    MapPicture picture;
    picture.title = worded(titleOf(quantity));
    picture.map.values = values;
    picture.map.count = maps.size();
    picture.map.width = maps.width();
    picture.map.height = maps.height();
    if (quantity > Quantity::Residual) { // not determined: white
        picture.map.sigma = values;
        picture.map.sigmaLimit = std::numeric_limits<double>::infinity();
    }
    if (const auto limits = autoLimits(values, n)) {
        picture.scale.setLimits(limits->low, limits->high);
    }
    return renderMap(picture);
}

QImage histogramImage(const char *title, const char *xTitle, const BinCounts &counts,
                      const HistogramSettings &settings)
{
    return renderHistogram({worded(title),
                            worded(xTitle),
                            worded(kNumber),
                            settings.from,
                            settings.to,
                            {counts.from(), counts.step(), counts.counts()},
                            counts.largest(),
                            counts.underflow(),
                            counts.overflow()});
}

bool writePng(const QString &path, const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    OutputFile file(path);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG") || !file.open()) {
        return false;
    }
    file.write(bytes);
    return file.commit();
}

} // namespace

QStringList imagePaths(const QString &resultPath)
{
    QStringList paths = {pathOf(resultPath, kRatioTag), pathOf(resultPath, kThicknessTag)};
    for (int q = 0; q < kMapQuantities; ++q) {
        paths.append(pathOf(resultPath, quantityAt(q)));
    }
    return paths;
}

QStringList writeImages(const QString &resultPath, const MapOutcome &outcome,
                        const AnalysisInput &input)
{
    QStringList lost;
    const auto put = [&lost](const QString &path, const auto &picture) {
        try {
            if (writePng(path, picture())) {
                return;
            }
        } catch (const std::bad_alloc &) { // the other files are written all the same
        }
        lost.append(path);
    };
    const auto references = static_cast<int>(validReferences(input.references).size());
    for (int q = 0; q < kMapQuantities; ++q) {
        const Quantity quantity = quantityAt(q);
        if (isDetermined(*outcome.maps, references, quantity)) {
            put(pathOf(resultPath, quantity), [&] { return mapImage(*outcome.maps, quantity); });
        }
    }
    const char *const valence = titleOf(Quantity::Valence);
    put(pathOf(resultPath, kRatioTag), [&] {
        return histogramImage(valence, valence, outcome.valenceCounts, outcome.valenceHistogram);
    });
    put(pathOf(resultPath, kThicknessTag), [&] {
        return histogramImage(titleOf(Quantity::Amount), kThickness, outcome.amountCounts,
                              outcome.amountHistogram);
    });
    return lost;
}

} // namespace orvel
