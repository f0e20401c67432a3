#include "display/DrawText.h"

#include "analysis/ToInt32.h"
#include "display/MouseC.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMeasuredAt = 10.0; ///< point size at which texts are measured

bool isDrawable(double pointSize)
{
    return pointSize > 0.0 && std::isfinite(pointSize);
}

QRectF measured(QPainter *painter, const QPointF &at, double side, const QFont &font, int flags,
                const QString &text)
{
    painter->setFont(font);
    return painter->boundingRect(QRectF(at, QSizeF(side, side)), flags, text);
}

/// Sets the size that fits the largest text; returns it through the font.
void setCommonSize(QPainter *painter, const QRectF &rect, QFont &font, const QStringList &texts)
{
    double smallest = 100000.0;
    for (const QString &text : texts) {
        smallest =
            std::min(smallest, DrawText::fitPointSize(painter, rect, font, DrawText::kLeft, text));
    }
    font.setPointSize(std::max(1, orvel::toInt32(smallest * 0.9)));
}

} // namespace

QRectF DrawText::drawFittedText(QPainter *painter, const QRectF &rect, const QFont &font, int flags,
                                int fitMode, const QString &text, double maxPointSize)
{
    const QRectF box = normalizeRect(rect);
    QFont sized = font;
    sized.setPointSizeF(kMeasuredAt);
    const QRectF bounds = measured(painter, {0.0, 0.0}, 5000.0, sized, flags, text);
    double size = kMeasuredAt;
    if (fitMode == Fit) {
        const bool noWidth = bounds.width() == 0.0;
        const double byWidth = noWidth ? 1.0 : box.width() / bounds.width();
        const double byHeight =
            bounds.height() == 0.0 ? (noWidth ? 10.0 : 1.0) : box.height() / bounds.height();
        size = kMeasuredAt * std::min(byWidth, byHeight);
        if (maxPointSize > 0.0) {
            size = std::min(size, maxPointSize);
        }
        if (isDrawable(size)) {
            sized.setPointSizeF(size);
            painter->setFont(sized);
        }
    } else {
        painter->setFont(font);
    }
    if (isDrawable(size)) {
        // Hinting may make a fitted text a pixel wider than its box: that is no reason to cut it.
        painter->drawText(box, flags | Qt::TextDontClip, text);
    }
    painter->setFont(font);
    return bounds;
}

QRectF DrawText::fitFont(QPainter *painter, const QRectF &rect, QFont &font, int flags, int fitMode,
                         const QString &text)
{
    const QFont before = font;
    QRectF bounds = measured(painter, rect.topLeft(), 1000.0, font, flags, text);
    if (fitMode == Fit) {
        double divisor = 1.0;
        if (rect.height() != 0.0 && rect.width() != 0.0) {
            divisor = std::max(bounds.width() / rect.width(), bounds.height() / rect.height());
        } else if (rect.width() != 0.0) {
            divisor = std::max(bounds.width() / rect.width(), 1.0);
        } else if (rect.height() != 0.0) {
            divisor = std::max(1.0, bounds.height() / rect.height());
        }
        font.setPointSize(std::max(1, orvel::toInt32(font.pointSizeF() / divisor)));
    }
    painter->setFont(font);
    bounds = painter->boundingRect(rect, flags, text);
    font = before;
    painter->setFont(font);
    return bounds;
}

double DrawText::fitPointSize(QPainter *painter, const QRectF &rect, const QFont &font, int flags,
                              const QString &text)
{
    QFont fresh;
    fresh.setPointSizeF(kMeasuredAt);
    const QRectF bounds = measured(painter, rect.topLeft(), 1000.0, fresh, flags, text);
    painter->setFont(font);
    double byWidth = rect.width() == 0.0 ? 1.0 : bounds.width() / rect.width();
    double byHeight = rect.height() == 0.0 ? 1.0 : bounds.height() / rect.height();
    if (byWidth == 0.0 && byHeight == 0.0) {
        byWidth = 1.0;
        byHeight = 1.0;
    }
    return kMeasuredAt / std::max(byWidth, byHeight);
}

void DrawText::drawCheckBox(QPainter *painter, bool on, const QString &label, double x,
                            double right, double bottom, double h) const
{
    const QPen pen = painter->pen();
    const QBrush brush = painter->brush();
    painter->setPen(m_boxOutline);
    painter->setBrush(on ? m_boxOn : m_boxOff);
    painter->drawRect(QRectF(QPointF(x, bottom - h), QPointF(x + h - 1, bottom - 1)));
    painter->setPen(m_labelText);
    const QRectF box(x + 1.2 * h, bottom - 0.95 * h, right - 1.2 * h, 0.9 * h);
    drawFittedText(painter, box, painter->font(), kLeft, Fit, label, kNoMaximum);
    painter->setPen(pen);
    painter->setBrush(brush);
}

bool DrawText::inCheckBox(const MouseC &mouse, double x, double bottom, double h)
{
    const int px = mouse.x();
    const int py = mouse.y();
    return x < px && px < x + h && bottom - h < py && py < bottom;
}

bool DrawText::overlapsDrawn(const QRectF &rect) const
{
    const QRectF box = normalizeRect(rect);
    return std::any_of(m_drawn.begin(), m_drawn.end(),
                       [&box](const QRectF &drawn) { return box.intersects(drawn); });
}

void DrawText::drawTextColumn(QPainter *painter, const QRectF &rect, double dx, double dy,
                              QFont &font, int flags, int fitMode, const QStringList &texts,
                              double maxPointSize)
{
    QRectF box = normalizeRect(rect);
    if (fitMode == KeepSize) {
        setCommonSize(painter, box, font, texts);
    }
    for (const QString &text : texts) {
        drawFittedText(painter, box, font, flags, fitMode, text, maxPointSize);
        box.translate(dx, dy);
    }
}

void DrawText::drawKeyValueColumn(QPainter *painter, const QRectF &rect, double dx, double dy,
                                  QFont &font, const QStringList &keys, const QStringList &values,
                                  double maxPointSize)
{
    QRectF box = normalizeRect(rect);
    QStringList both;
    for (int i = 0; i < keys.size(); ++i) {
        both.append(keys[i] + values[i]);
    }
    setCommonSize(painter, box, font, both);
    for (int i = 0; i < keys.size(); ++i) {
        drawFittedText(painter, box, font, kLeft, KeepSize, keys[i], maxPointSize);
        drawFittedText(painter, box, font, kRight, KeepSize, values[i], maxPointSize);
        box.translate(dx, dy);
    }
}
