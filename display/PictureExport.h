#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

#include <functional>
#include <vector>

class QPainter;
class QStylePainter;
class QWidget;

namespace orvel {

/// Something that made a picture or a table: a name of letters and digits, and its value.
struct Setting {
    QString name;
    QString value;
};
using Settings = std::vector<Setting>;

/// A graph or a map as it is painted for a file: by the code that paints it on the screen, and in
/// the logical pixels of its surface. Pens and letters keep their sizes, whatever the fineness.
struct PaintedPicture {
    const QWidget *widget = nullptr; ///< for style, font and dots per inch
    QSize size;                      ///< of what is painted below the title
    QString title;
    std::function<void(QStylePainter &)> paint;
    Settings settings;
};

/// fineness  picture pixels per logical pixel, 1 or more. Null when there is no memory for it.
QImage imageOf(const PaintedPicture &picture, int fineness);
/// The image as a PNG file with the settings as text chunks; empty when that fails.
QByteArray pngOf(const PaintedPicture &picture, int fineness);
/// One page of the picture's size. Lines and letters are vectors; maps and clouds of dots, which
/// are painted as images, stay images without loss.
QByteArray pdfOf(const PaintedPicture &picture);

/// Dots per logical pixel that a painter can show: what is rasterised should be so fine.
double finenessOf(const QPainter &painter);

} // namespace orvel
