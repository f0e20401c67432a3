#include "panel/plots/ComparisonPlot.h"

#include "display/CColors.h"
#include "panel/plots/PlotSteps.h"

#include <algorithm>
#include <cmath>

namespace orvel {
namespace {

void drawGrid(QStylePainter *p, const ChCoord &coord, double low, double high)
{
    constexpr double kStep = 0.1;
    if (!((high - low) / kStep < std::fabs(coord.frameX1() - coord.frameX0()))) {
        return; // lines would fill the frame
    }
    p->setPen(QColor(200, 200, 255));
    for (int i = 0; low + i * kStep < high; ++i) {
        const double x = coord.sx(low + i * kStep);
        p->drawLine(QPointF(x, coord.frameY0()), QPointF(x, coord.frameY1()));
    }
    for (int i = 0; low + i * kStep < high; ++i) {
        const double y = coord.sy(low + i * kStep);
        p->drawLine(QPointF(coord.frameX0(), y), QPointF(coord.frameX1(), y));
    }
}

/// What one dot covers: two circles about a whole pixel, as offsets from it in device pixels.
constexpr int kReach = 3; // pixels that a dot reaches at most

std::vector<QPoint> dotAt(double devicePixelRatio)
{
    const int side = static_cast<int>(std::ceil(2 * kReach * devicePixelRatio));
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QPoint pixel(kReach, kReach);
    painter.setPen(Qt::black);
    painter.drawEllipse(QRect(pixel - QPoint(1, 1), pixel));
    painter.drawEllipse(QRect(pixel - QPoint(2, 2), pixel + QPoint(1, 1)));
    painter.end();
    std::vector<QPoint> covered;
    const int middle = qRound(kReach * devicePixelRatio);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            if (qAlpha(image.pixel(x, y)) != 0) {
                covered.emplace_back(x - middle, y - middle);
            }
        }
    }
    return covered;
}

} // namespace

void ComparisonPlot::clear()
{
    m_points.clear();
    m_points.shrink_to_fit();
    m_picture = QImage();
}

/// Pixel by pixel: a painter takes twenty times as long for circles so small.
void ComparisonPlot::addDots(const ChCoord &coord, double devicePixelRatio, const CColors &colours)
{
    const std::vector<QPoint> dot = dotAt(devicePixelRatio);
    const QRect whole = m_picture.rect();
    const int reach = static_cast<int>(std::ceil(kReach * devicePixelRatio));
    const QRect inner = whole.adjusted(reach, reach, -reach, -reach);
    const QSizeF size = QSizeF(m_picture.size()) / devicePixelRatio;
    const qint64 stride = m_picture.bytesPerLine() / static_cast<int>(sizeof(QRgb));
    auto *const bits = reinterpret_cast<QRgb *>(m_picture.bits());
    for (; m_pictured < m_points.size(); ++m_pictured) {
        const ComparisonPoint &point = m_points[m_pictured];
        const double x = coord.sx(point.lcfValence);
        const double y = coord.sy(point.valence);
        const bool isNear =
            x > -kReach && x < size.width() + kReach && y > -kReach && y < size.height() + kReach;
        if (!isNear) {
            continue; // nor a not-a-number
        }
        const QPoint at(qRound(static_cast<int>(x) * devicePixelRatio),
                        qRound(static_cast<int>(y) * devicePixelRatio));
        const QRgb colour = colours.colour(point.colour).rgb();
        const bool isWhole = inner.contains(at);
        for (const QPoint &offset : dot) {
            const QPoint to = at + offset;
            if (isWhole || whole.contains(to)) {
                bits[to.y() * stride + to.x()] = colour;
            }
        }
    }
}

void ComparisonPlot::draw(QStylePainter *p, DispABase &dab, const QString &xTitle,
                          const QString &yTitle, double low, double high, const CColors &colours)
{
    beginPlot(p, dab, xTitle, yTitle);
    ChCoord &coord = *dab.coord();
    coord.setHasContent(!m_points.empty());
    if (m_points.empty()) {
        return;
    }
    dab.setInitialRange(low, low, high, high);
    drawGrid(p, coord, low, high);
    p->save();
    p->setClipRect(dab.area()->rect());
    p->setPen(QColor(0, 200, 0));
    const QPointF from(coord.sx(low), coord.sy(low));
    const QPointF to(coord.sx(high), coord.sy(high));
    const auto isNear = [&dab](const QPointF &point) {
        const double far = 8.0 * (dab.area()->width() + dab.area()->height() + 1.0);
        return std::fabs(point.x()) < far && std::fabs(point.y()) < far;
    };
    if (isNear(from) && isNear(to)) {
        p->drawLine(from, to);
    }
    p->restore();

    const double ratio = finenessOf(*p);
    const QSize size = dab.area()->size() * ratio;
    const std::array<double, 7> now = {coord.sx(0.0), coord.sx(1.0), coord.sy(0.0), coord.sy(1.0),
                                       coord.xMin(),  coord.yMin(),  ratio};
    if (m_picture.size() != size || now != m_picturedAt) {
        m_picture = QImage(size, QImage::Format_ARGB32_Premultiplied);
        m_picture.setDevicePixelRatio(ratio);
        m_picture.fill(Qt::transparent);
        m_picturedAt = now;
        m_pictured = 0;
    }
    if (!m_picture.isNull()) {
        addDots(coord, ratio, colours);
        p->drawImage(0, 0, m_picture);
    }
    dab.drawFrame(p, true);
}

} // namespace orvel
