#pragma once

#include <QImage>

#include <array>
#include <vector>

class CColors;
class ChCoord;
class DispABase;
class QString;
class QStylePainter;

namespace orvel {

/// One run: what the maps' method and what the linear combination fit made of the target.
struct ComparisonPoint {
    double ratio;
    double valence;
    double lcfRatio;
    double lcfValence;
    int colour; ///< index in the plot's colours
};

/// The list of runs, and valences by both methods against each other with the line where they are
/// equal. Every calculation adds a run, over days some hundred thousand: dots are rasterised into a
/// picture that is kept until coordinates or size change, and new ones are added to it.
class ComparisonPlot {
public:
    void add(const ComparisonPoint &point) { m_points.push_back(point); }
    void clear();
    const std::vector<ComparisonPoint> &points() const { return m_points; }

    /// low, high  the range of both axes
    void draw(QStylePainter *p, DispABase &dab, const QString &xTitle, const QString &yTitle,
              double low, double high, const CColors &colours);

private:
    void addDots(const ChCoord &coord, double devicePixelRatio, const CColors &colours);

    std::vector<ComparisonPoint> m_points;
    std::size_t m_pictured = 0;              ///< points that are in the picture
    std::array<double, 7> m_picturedAt = {}; ///< coordinates and pixel ratio of the picture
    QImage m_picture;                        ///< the dots alone
};

} // namespace orvel
