#pragma once

#include <QProxyStyle>

namespace orvel {

/// The style of the desktop for every eye: boxes, icons and scroll bars grow with the letters, what
/// a palette leaves too pale is made readable, and the built-in style's boxes, on dark grounds also
/// its fields, get an outline that stands out.
class ReadableStyle : public QProxyStyle {
    Q_OBJECT

public:
    using QProxyStyle::polish;
    /// Placeholders and selections of at least 4.5 : 1.
    void polish(QPalette &palette) override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
};

} // namespace orvel
