#include "display/PictureExport.h"

#include <QBuffer>
#include <QPageSize>
#include <QPaintEngine>
#include <QPdfWriter>
#include <QStylePainter>
#include <QWidget>

#include <cmath>

namespace orvel {
namespace {

constexpr int kTitleRow = 24;
constexpr int kTitlePixels = 14;
constexpr int kMargin = 4;
constexpr double kPointsPerInch = 72.0;
constexpr double kInchesPerMeter = 1.0 / 0.0254;

QSize wholeSize(const PaintedPicture &picture)
{
    return picture.size + QSize(0, kTitleRow);
}

void paintOn(QPaintDevice &device, const PaintedPicture &picture)
{
    QStylePainter painter;
    if (!painter.begin(&device, const_cast<QWidget *>(picture.widget))) {
        return;
    }
    // Or a PDF would keep maps as JPEG, with borders that are none.
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.fillRect(QRect(QPoint(), wholeSize(picture)), Qt::white);
    QFont font = picture.widget->font();
    font.setPixelSize(kTitlePixels);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QRect(kMargin, 0, picture.size.width() - 2 * kMargin, kTitleRow),
                     Qt::AlignLeft | Qt::AlignVCenter, picture.title);
    painter.translate(0, kTitleRow);
    painter.setFont(picture.widget->font()); // which a painter on a widget has by itself
    painter.save();
    painter.setClipRect(QRect(QPoint(), picture.size));
    picture.paint(painter);
    painter.restore();
}

QString programOf(const PaintedPicture &picture)
{
    for (const Setting &setting : picture.settings) {
        if (setting.name == QLatin1String("Software")) {
            return setting.value;
        }
    }
    return QString();
}

} // namespace

QImage imageOf(const PaintedPicture &picture, int fineness)
{
    QImage image(wholeSize(picture) * fineness, QImage::Format_RGB32);
    if (image.isNull()) {
        return image;
    }
    // As of the screen, so that points make letters of the same size.
    const int dotsPerMeter = qRound(picture.widget->logicalDpiX() * kInchesPerMeter);
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    image.setDevicePixelRatio(fineness);
    paintOn(image, picture);
    image.setDotsPerMeterX(fineness * dotsPerMeter); // finer, not larger
    image.setDotsPerMeterY(fineness * dotsPerMeter);
    for (const Setting &setting : picture.settings) {
        image.setText(setting.name, setting.value);
    }
    return image;
}

QByteArray pngOf(const PaintedPicture &picture, int fineness)
{
    const QImage image = imageOf(picture, fineness);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return !image.isNull() && image.save(&buffer, "PNG") ? buffer.data() : QByteArray();
}

QByteArray pdfOf(const PaintedPicture &picture)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        const int dpi = picture.widget->logicalDpiX();
        writer.setPageSize(QPageSize(QSizeF(wholeSize(picture)) * kPointsPerInch / dpi,
                                     QPageSize::Point, QString(), QPageSize::ExactMatch));
        writer.setPageMargins(QMarginsF());
        writer.setResolution(dpi); // a unit is a logical pixel
        writer.setTitle(picture.title);
        writer.setCreator(programOf(picture));
        paintOn(writer, picture);
    }
    return buffer.data();
}

double finenessOf(const QPainter &painter)
{
    constexpr double kInPdf = 4.0; // some 400 dots per inch
    const QPaintEngine *engine = painter.paintEngine();
    return engine != nullptr && engine->type() == QPaintEngine::Pdf
               ? kInPdf
               : painter.device()->devicePixelRatioF();
}

} // namespace orvel
