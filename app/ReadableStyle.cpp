#include "app/ReadableStyle.h"

#include "display/Letters.h"

#include <QPainter>
#include <QStyleOption>

#include <algorithm>
#include <cmath>

namespace orvel {
namespace {

double luminance(const QColor &colour)
{
    const auto linear = [](double s) {
        return s <= 0.04045 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// Source: Web Content Accessibility Guidelines 2.1, "contrast ratio".
double contrast(const QColor &a, const QColor &b)
{
    const double one = luminance(a) + 0.05;
    const double other = luminance(b) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

QColor mixed(const QColor &from, const QColor &to, double part)
{
    const auto mix = [part](double a, double b) { return a + part * (b - a); };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()));
}

/// The colour, with as much of another as it needs to stand out.
QColor readable(const QColor &colour, const QColor &ground, const QColor &other)
{
    constexpr double kLeast = 5.0; // soft edges of thin letters take some of it
    constexpr int kSteps = 10;
    QColor found = colour;
    for (int i = 1; i <= kSteps && contrast(found, ground) < kLeast; ++i) {
        found = mixed(colour, other, double(i) / kSteps);
    }
    return found;
}

/// Half way from the ground to the letters: 3 : 1 and more against windows and fields.
QColor outlineOf(const QPalette &palette)
{
    return mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.5);
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

} // namespace

void ReadableStyle::polish(QPalette &palette)
{
    QProxyStyle::polish(palette);
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        const QColor base = palette.color(group, QPalette::Base);
        const QColor pale = palette.color(group, QPalette::PlaceholderText);
        palette.setColor(
            group, QPalette::PlaceholderText,
            readable(mixed(base, pale, pale.alphaF()), base, palette.color(group, QPalette::Text)));
        const QColor selected = palette.color(group, QPalette::HighlightedText);
        const bool isLight = luminance(selected) > 0.5;
        palette.setColor(group, QPalette::Highlight,
                         readable(palette.color(group, QPalette::Highlight), selected,
                                  isLight ? Qt::black : Qt::white));
    }
}

int ReadableStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                               const QWidget *widget) const
{
    const int usual = QProxyStyle::pixelMetric(metric, option, widget);
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
    case PM_ScrollBarExtent:
    case PM_SmallIconSize:
    case PM_ButtonIconSize:
        return qRound(usual * letterScale()); // dots per inch are in it already
    default:
        return usual;
    }
}

void ReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                  QPainter *painter, const QWidget *widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool isField = element == PE_PanelLineEdit || element == PE_FrameLineEdit;
    const bool isBox = element == PE_IndicatorCheckBox;
    const bool isCircle = element == PE_IndicatorRadioButton;
    const bool isOurs = baseStyle()->objectName() == QLatin1String("fusion") &&
                        (isBox || isCircle || (isField && isDark(option->palette)));
    const bool isMarked = isField && (option->state & State_HasFocus) != 0; // by the style
    if (!isOurs || isMarked || (option->state & State_Enabled) == 0) {
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(outlineOf(option->palette));
    const QRectF box = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    constexpr double kCorner = 2.0;
    if (isCircle) {
        painter->drawEllipse(box.adjusted(0.5, 0.5, -0.5, -0.5));
    } else {
        painter->drawRoundedRect(box, kCorner, kCorner);
    }
    painter->restore();
}

} // namespace orvel
