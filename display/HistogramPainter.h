#pragma once

#include <QColor>

#include <cstdint>
#include <optional>
#include <vector>

class ChCoord;
class QPainter;

namespace orvel {

/// The natural range of a plot.
struct PlotRange {
    double xMin;
    double yMin;
    double xMax;
    double yMax;
};

/// One histogram as it is drawn: box i reaches from `from + i * step` to `from + (i + 1) * step`.
struct HistogramBars {
    double from;
    double step;
    const std::vector<std::int32_t> &counts;
};

/// Range over [low, high] for histograms whose largest boxes hold these counts; none without any.
std::optional<PlotRange> histogramRange(double low, double high,
                                        const std::vector<std::int32_t> &largest);

/// Vertical lines at round values between the entered limits; none when they would fill the frame.
void drawHistogramGrid(QPainter &painter, const ChCoord &coord, double low, double high);

/// The boxes as filled bars from 0 up; where several share a pixel column the highest shows.
void drawHistogramBars(QPainter &painter, const ChCoord &coord, const HistogramBars &bars,
                       const QColor &colour);

/// The outline of the boxes that hold something, for histograms that lie over another.
void drawHistogramSteps(QPainter &painter, const ChCoord &coord, const HistogramBars &bars,
                        const QColor &colour);

} // namespace orvel
