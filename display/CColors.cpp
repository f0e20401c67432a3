#include "display/CColors.h"

namespace {

constexpr int kBaseColours[][3] = {
    {0, 0, 0},       {255, 0, 0},     {0, 0, 255},     {120, 220, 120}, {200, 200, 0},
    {240, 0, 240},   {0, 240, 240},   {160, 0, 0},     {0, 160, 0},     {0, 0, 160},
    {255, 160, 160}, {160, 160, 160}, {120, 220, 120}, {160, 160, 255}, {240, 160, 0},
};
constexpr int kRepeats = 3;

/// A colour that lies behind `to`, seen from `from`.
QColor derived(const QColor &from, const QColor &to)
{
    const auto component = [](int a, int b) { return b < a ? (b + 2 * a) / 3 : b; };
    int red = component(from.red(), to.red());
    int green = component(from.green(), to.green());
    int blue = component(from.blue(), to.blue());
    constexpr int kTooBright = 501;
    if (red + green + blue >= kTooBright) { // it would vanish on white
        red = static_cast<int>(0.8 * red);
        green = static_cast<int>(0.6 * green);
        blue = static_cast<int>(0.8 * blue);
    }
    return QColor(red, green, blue);
}

} // namespace

CColors::CColors(int count, QObject *parent) : QObject(parent)
{
    for (int i = 0; i < kRepeats; ++i) {
        for (const auto &rgb : kBaseColours) {
            m_colours.append(QColor(rgb[0], rgb[1], rgb[2]));
        }
    }
    extendTo(count);
}

CColors::CColors(const QVector<QColor> &colours, int count, QObject *parent)
    : QObject(parent), m_colours(colours)
{
    extendTo(count);
}

QColor CColors::colour(int index) const
{
    if (m_colours.isEmpty()) {
        return QColor();
    }
    const int i = index % m_colours.size();
    return m_colours[i < 0 ? i + m_colours.size() : i];
}

void CColors::extendTo(int count)
{
    if (m_colours.isEmpty()) {
        return; // nothing to derive from
    }
    while (m_colours.size() < count) {
        const int length = m_colours.size();
        for (int i = 1; i <= length && m_colours.size() < count; ++i) {
            m_colours.append(derived(m_colours[i - 1], m_colours[i == length ? 0 : i]));
        }
    }
}
