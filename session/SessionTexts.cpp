#include "session/SessionTexts.h"

#include "analysis/BinCounts.h"

namespace orvel {

const QString kDefaultEdge = QStringLiteral("8350");

MethodChoice methodOf(const SessionTexts &texts)
{
    MethodChoice method;
    method.nonEquiv = texts.nonEquiv;
    method.exact = texts.solver == FourPointsSolver::Exact;
    method.subPostForRef = texts.subForRef == SubtractedLine::Post;
    method.subPostForTarget = texts.subForTarget == SubtractedLine::Post;
    method.linearBackground = texts.background == BackgroundLine::Linear;
    return method;
}

HistogramSettings histogramOf(const HistogramTexts &texts)
{
    return {texts.from.toDouble(), texts.to.toDouble(), BinCounts::boxesOf(texts.boxes.toDouble()),
            texts.autoRange};
}

} // namespace orvel
