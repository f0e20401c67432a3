#include "session/SessionTexts.h"

#include "analysis/BinCounts.h"

namespace orvel {

const QString kDefaultEdge = QStringLiteral("8350");

const QStringList &quantityNames()
{
    static const QStringList names = {
        QStringLiteral("Ratio1"), QStringLiteral("Ratio2"), QStringLiteral("Ratio3"),
        QStringLiteral("Ratio4"), QStringLiteral("DMut1"),  QStringLiteral("DMut2"),
        QStringLiteral("DMut3"),  QStringLiteral("DMut4"),  QStringLiteral("Mut0"),
        QStringLiteral("C1"),     QStringLiteral("C2"),     QStringLiteral("Valence"),
        QStringLiteral("Amount"),
    };
    return names;
}

const QStringList &mapQuantityNames()
{
    static const QStringList names =
        quantityNames() + QStringList{QStringLiteral("Residual"),    QStringLiteral("SigmaRatio1"),
                                      QStringLiteral("SigmaRatio2"), QStringLiteral("SigmaRatio3"),
                                      QStringLiteral("SigmaRatio4"), QStringLiteral("SigmaValence"),
                                      QStringLiteral("SigmaAmount")};
    return names;
}

const QStringList &noiseNames()
{
    static const QStringList names = {QStringLiteral("Pooled"), QStringLiteral("Pixel"),
                                      QStringLiteral("Given"), QStringLiteral("Counts")};
    return names;
}

const QStringList &nonEquivBoundsNames()
{
    static const QStringList names = {QStringLiteral("Free"), QStringLiteral("NonNegative")};
    return names;
}

const QStringList &lcfBoundsNames()
{
    static const QStringList names = {QStringLiteral("Free"), QStringLiteral("NonNegative"),
                                      QStringLiteral("SumToOne"),
                                      QStringLiteral("NonNegativeSumToOne")};
    return names;
}

MethodChoice methodOf(const SessionTexts &texts)
{
    MethodChoice method;
    method.nonEquiv = texts.nonEquiv;
    method.exact = texts.solver == FourPointsSolver::Exact;
    method.subPostForRef = texts.subForRef == SubtractedLine::Post;
    method.subPostForTarget = texts.subForTarget == SubtractedLine::Post;
    method.linearBackground = texts.background == BackgroundLine::Linear;
    method.nonEquivBounds = texts.advanced.nonEquivBounds;
    method.lcfBounds = texts.advanced.lcfBounds;
    return method;
}

PrecisionChoice precisionOf(const AdvancedTexts &texts)
{
    return {texts.wantsSigmaMaps(), texts.noise, texts.noiseSigma.toDouble()};
}

HistogramSettings histogramOf(const HistogramTexts &texts)
{
    return {texts.from.toDouble(), texts.to.toDouble(), BinCounts::boxesOf(texts.boxes.toDouble()),
            texts.autoRange};
}

} // namespace orvel
