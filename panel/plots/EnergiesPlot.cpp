#include "panel/plots/EnergiesPlot.h"

#include "display/CurvePainter.h"
#include "display/DrawText.h"
#include "display/Letters.h"
#include "display/PlotFrame.h"
#include "panel/plots/PlotSteps.h"
#include "panel/plots/SpectrumLine.h"

namespace orvel {
namespace {

constexpr double kHalf = 5.0;    ///< of a marker's width [pixels]
constexpr double kBeside = 3.0;  ///< between a marker and the frame, or its letter
constexpr double kPoints = 8.0;  ///< of letters
constexpr double kSample = 18.0; ///< length of a line in the legend

void addEnergies(const std::vector<double> &energiesEv, Span &span)
{
    for (const double energy : energiesEv) {
        if (energy > 0.0) {
            span.add(energy);
        }
    }
}

void drawTriangle(QPainter &painter, const QPointF &tip)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(kProposedColour));
    const QPointF corners[] = {tip, tip + QPointF(-kHalf, -2 * kHalf),
                               tip + QPointF(kHalf, -2 * kHalf)};
    painter.drawPolygon(corners, 3);
}

void drawRing(QPainter &painter, const QPointF &centre)
{
    painter.setPen(QPen(QColor(kPresentColour), 1.5));
    painter.setBrush(Qt::white);
    painter.drawEllipse(centre, kHalf - 1.0, kHalf - 1.0);
}

/// Lines from the upper to the lower edge of the frame, and their markers at one of them.
void drawChoice(QPainter &painter, const ChCoord &coord, const EnergiesPlot::Choice &choice,
                bool isProposed)
{
    const QColor colour(isProposed ? kProposedColour : kPresentColour);
    QStringList before;
    QStringList behind;
    for (size_t i = 0; i < choice.energiesEv.size(); ++i) {
        const double x = coord.sx(choice.energiesEv[i]);
        if (!(choice.energiesEv[i] > 0.0)) {
            continue;
        }
        if (!(x >= coord.frameX0() && x <= coord.frameX1())) {
            (x < coord.frameX0() ? before : behind)
                .append(QString::number(choice.energiesEv[i], 'f', 0));
            continue;
        }
        painter.setPen(QPen(colour, 1.0, isProposed ? Qt::SolidLine : Qt::DashLine));
        painter.drawLine(QPointF(x, coord.frameY1()), QPointF(x, coord.frameY0()));
        const QPointF at(x, isProposed ? coord.frameY1() + kBeside + 2 * kHalf
                                       : coord.frameY0() - kBeside - kHalf);
        isProposed ? drawTriangle(painter, at) : drawRing(painter, at);
        if (static_cast<int>(i) == choice.vPoint) {
            painter.setPen(colour);
            const double height = QFontMetricsF(painter.font()).ascent();
            painter.drawText(
                at + QPointF(kHalf + kBeside, isProposed ? height / 2 - kHalf : height / 2 - 1.0),
                QStringLiteral("V"));
        }
    }
    painter.setPen(colour);
    const double height = qMax(2 * (kHalf + kBeside), QFontMetricsF(painter.font()).height());
    const QRectF row(coord.frameX0() + kBeside,
                     isProposed ? coord.frameY1() + height : coord.frameY0() - 2 * height,
                     coord.frameX1() - coord.frameX0() - 2 * kBeside, height);
    const QString comma = QStringLiteral(", ");
    if (!before.isEmpty()) {
        painter.drawText(row, DrawText::kLeft, QStringLiteral("\u2190 ") + before.join(comma));
    }
    if (!behind.isEmpty()) {
        painter.drawText(row, DrawText::kRight, behind.join(comma) + QStringLiteral(" \u2192"));
    }
}

/// Where spectra leave room: at the right, below their edge steps and above the rings.
void drawLegend(QPainter &painter, const ChCoord &coord, const EnergiesPlot &plot)
{
    const QFontMetricsF metrics(painter.font());
    const double row = metrics.height() + 1.0;
    double width = qMax(metrics.horizontalAdvance(plot.present.name),
                        metrics.horizontalAdvance(plot.proposed.name));
    for (const EnergiesPlot::Curve &curve : plot.references) {
        width = qMax(width, metrics.horizontalAdvance(curve.name));
    }
    const double rows = static_cast<double>(plot.references.size()) + 2.0;
    constexpr double kPad = 5.0;
    const QSizeF size(kSample + width + 3 * kPad, rows * row + 2 * kPad);
    const QPointF corner(coord.frameX1() - size.width() - 2 * kPad,
                         coord.frameY0() - size.height() - 7 * kHalf);
    painter.setPen(QColor(210, 210, 210));
    painter.setBrush(QColor(255, 255, 255, 230));
    painter.drawRect(QRectF(corner, size));
    QPointF middle = corner + QPointF(kPad + kSample / 2, kPad + row / 2);
    const auto name = [&](const QString &text) {
        painter.setPen(Qt::black);
        const QPointF from = middle + QPointF(kSample / 2 + kPad, -row / 2);
        painter.drawText(QRectF(from, QSizeF(width + 1.0, row)), Qt::AlignVCenter, text);
        middle.ry() += row;
    };
    for (const EnergiesPlot::Curve &curve : plot.references) {
        painter.setPen(QPen(curve.colour, 2.0));
        painter.drawLine(middle - QPointF(kSample / 2, 0), middle + QPointF(kSample / 2, 0));
        name(curve.name);
    }
    drawRing(painter, middle);
    name(plot.present.name);
    drawTriangle(painter, middle + QPointF(0, kHalf));
    name(plot.proposed.name);
}

} // namespace

void drawEnergiesPlot(QStylePainter *p, DispABase &dab, const QString &xTitle,
                      const QString &yTitle, const EnergiesPlot &plot)
{
    beginPlot(p, dab, xTitle, yTitle);
    ChCoord &coord = *dab.coord();
    coord.setHasContent(!plot.references.empty());
    if (plot.references.empty()) {
        return;
    }
    std::vector<SpectrumLine> lines;
    for (const EnergiesPlot::Curve &curve : plot.references) {
        lines.push_back(lineOf(*curve.spectrum, AMutE::ByEdgeJump));
    }
    Span shown;
    addEnergies(plot.range, shown);
    if (shown.isEmpty()) {
        addEnergies(plot.present.energiesEv, shown);
        addEnergies(plot.proposed.energiesEv, shown);
    }
    if (shown.isEmpty()) {
        for (const SpectrumLine &line : lines) {
            addEnergies(line.energies, shown);
        }
    }
    shown = shown.wider(0.03);
    Span values;
    for (const SpectrumLine &line : lines) {
        addValues(line, shown, values);
    }
    if (values.isEmpty()) {
        values = {0.0, 1.0};
    }
    values = values.wider(0.12); // the markers stand beside the curves
    dab.setInitialRange(shown.low, values.low, shown.high, values.high);

    p->save();
    QFont font = p->font();
    font.setPointSizeF(kPoints * letterScale());
    p->setFont(font);
    p->setRenderHint(QPainter::Antialiasing);
    for (size_t i = 0; i < lines.size(); ++i) {
        drawCurve(*p, coord, lines[i].energies.data(), lines[i].values.data(),
                  lines[i].energies.size(), plot.references[i].colour);
    }
    drawChoice(*p, coord, plot.present, false);
    drawChoice(*p, coord, plot.proposed, true);
    if (!isSmallPlot(coord)) {
        drawLegend(*p, coord, plot);
    }
    p->restore();
    dab.drawFrame(p, true);
}

} // namespace orvel
