#include "spectra/AXafsFileSelect.h"

#include "display/CurvePainter.h"
#include "display/DispABase.h"
#include "display/Letters.h"
#include "display/PlotFrame.h"
#include "text/ReadFailure.h"

#include <QDebug>
#include <QLineEdit>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

const QColor kSpectrumColour(0, 0, 200);
const QColor kPreLineColour(0, 150, 0);
const QColor kPostLineColour(220, 100, 0);

void drawVertical(QPainter &painter, const ChCoord &coord, double x,
                  const std::array<double, 2> &ys, const QColor &colour)
{
    const std::array<double, 2> xs = {x, x};
    orvel::drawCurve(painter, coord, xs.data(), ys.data(), xs.size(), colour);
}

constexpr double kRowAbove = 11.0; ///< pixels, of a text over the frame of a small plot

/// A text that stays legible where lines run behind it.
void drawOverCurves(QPainter &painter, const QRectF &box, const QString &text)
{
    const double points = 10.0 * orvel::letterScale();
    QFont font = painter.font();
    font.setPointSizeF(points);
    QRectF behind = box;
    behind.setWidth(std::min(box.width(), QFontMetricsF(font).horizontalAdvance(text)));
    painter.fillRect(behind, QColor(255, 255, 255, 200));
    painter.setPen(Qt::black);
    DrawText::drawFittedText(&painter, box, painter.font(), DrawText::kLeft, DrawText::Fit, text,
                             points);
}

void drawAboveFrame(QPainter &painter, const QRectF &frame, const QString &text)
{
    const double line =
        13.0 *
        orvel::letterPixelScale(); // letters with much above them leave the row by that alone
    painter.setPen(Qt::black);
    DrawText::drawFittedText(
        &painter, {frame.left(), frame.top() - line + 0.5, frame.width(), line}, painter.font(),
        DrawText::kLeft, DrawText::Fit, text, 7.5 * orvel::letterScale());
}

} // namespace

AXafsFileSelect::AXafsFileSelect(QWidget *parent) : AFileSelect(parent) {}

void AXafsFileSelect::setDisplay(DispABase *panel)
{
    if (m_panel) {
        disconnect(m_panel, &DispABase::draw, this, &AXafsFileSelect::draw);
    }
    m_panel = panel;
    connect(panel, &DispABase::draw, this, &AXafsFileSelect::draw);
    connect(panel, &DispABase::mPressed, this, &AXafsFileSelect::mPressed);
    connect(panel, &DispABase::mReleased, this, &AXafsFileSelect::mReleased);
    connect(panel, &DispABase::mDragging, this, &AXafsFileSelect::mDragging);
    showDE(true);
    connect(this, &AFileSelect::newDE, this, &AXafsFileSelect::setNewDE, Qt::UniqueConnection);
}

void AXafsFileSelect::updateDisplay()
{
    if (m_panel) {
        m_panel->updateSurface();
    }
}

void AXafsFileSelect::clearFileName()
{
    setPoints({});
    if (m_panel) {
        m_panel->clearScale();
    }
    AFileSelect::clearFileName();
    updateDisplay();
}

void AXafsFileSelect::newFile(const QString &path)
{
    // Read first, so that whoever hears of the choice finds the spectrum in place.
    const bool isRead = readFile(path);
    AFileSelect::newFile(path);
    showProblem(isRead ? QString() : QStringLiteral("%1: %2").arg(path, describe(readFailure())));
    if (isRead) {
        if (m_panel) {
            m_panel->clearScale(); // another spectrum, another range
        }
        emit foundNewEdge(findEdge());
    }
    updateDisplay();
}

void AXafsFileSelect::setNewDE()
{
    setDE(enteredDE());
    qDebug() << "set new de";
    if (isValid()) {
        qDebug() << "bb";
        emit updated();
    }
}

void AXafsFileSelect::draw(QStylePainter *p)
{
    ChCoord &coord = *m_panel->coord();
    const bool isSmall = orvel::isSmallPlot(coord);
    if (isSmall) { // inside the frame the text would cover the white line
        coord.setTopMargin(kRowAbove * orvel::letterPixelScale() / m_panel->area()->height());
    }
    coord.setFrameByMargins();
    m_panel->setTitles(tr("Eng.[eV]"), tr("mut"));
    p->fillRect(m_panel->area()->rect(), Qt::white);
    coord.setHasContent(!points().isEmpty());
    if (points().isEmpty()) {
        return;
    }
    constexpr double kWider = 0.05;
    const double eBeside = kWider * (maxE() - minE());
    const double muBeside = kWider * (maxMu() - minMu());
    const std::array<double, 2> mus = {minMu() - muBeside, maxMu() + muBeside};
    m_panel->setInitialRange(minE() - AMutE::dE() - eBeside, mus[0], maxE() - AMutE::dE() + eBeside,
                             mus[1]);
    const QColor range(200, 200, 200);
    drawVertical(*p, coord, preEdgeEnd(), mus, range);
    drawVertical(*p, coord, postEdgeStart(), mus, range);
    drawVertical(*p, coord, edgeE(), mus, Qt::black);

    const auto n = static_cast<std::size_t>(points().size());
    std::vector<double> energies(n);
    std::vector<double> values(n);
    const auto curve = [&](auto valueOf, const QColor &colour) {
        for (int i = 0; i < points().size(); ++i) {
            values[static_cast<std::size_t>(i)] = valueOf(i);
        }
        orvel::drawCurve(*p, coord, energies.data(), values.data(), n, colour);
    };
    for (int i = 0; i < points().size(); ++i) {
        energies[static_cast<std::size_t>(i)] = effectiveEnergy(i);
    }
    curve([this](int i) { return pre(effectiveEnergy(i)); }, kPreLineColour);
    curve([this](int i) { return post(effectiveEnergy(i)); }, kPostLineColour);
    curve([this](int i) { return points()[i].mut; }, kSpectrumColour);

    m_panel->drawFrame(p, true);
    const QRectF frame(QPointF(coord.frameX0(), coord.frameY1()),
                       QPointF(coord.frameX1(), coord.frameY0()));
    const QString text = tr("Edge Jump : %1").arg(edgeJump());
    if (isSmall) {
        drawAboveFrame(*p, frame, text);
    } else {
        drawOverCurves(*p,
                       {frame.left() + 4, frame.top() + 2, frame.width() * 0.6,
                        14 * orvel::letterPixelScale()},
                       text);
    }
}

// A spectrum has nothing to drag; the panel's signals lead here all the same.
void AXafsFileSelect::mPressed(MouseC * /*m*/) {}
void AXafsFileSelect::mDragging(MouseC * /*m*/) {}
void AXafsFileSelect::mReleased(MouseC * /*m*/) {}
