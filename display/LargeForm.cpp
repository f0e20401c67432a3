#include "display/LargeForm.h"

#include "display/Letters.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace orvel {

QSize largeWindow(const QSize &usual)
{
    constexpr double kOfScreen = 0.94; // the rest is for its borders
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QSize most = screen != nullptr ? screen->availableSize() * kOfScreen : usual;
    return (usual * letterPixelScale()).boundedTo(most.expandedTo(usual));
}

void enlargeForm(QWidget &form)
{
    const double pixels = letterPixelScale();
    const double points = letterScale();
    if (pixels <= 1.0) {
        return;
    }
    const auto larger = [pixels](int size, int unlimited) {
        return size == unlimited ? size : qRound(size * pixels);
    };
    for (QWidget *widget : form.findChildren<QWidget *>()) {
        // The greatest first: Qt holds the least one to it.
        widget->setMaximumSize(larger(widget->maximumWidth(), QWIDGETSIZE_MAX),
                               larger(widget->maximumHeight(), QWIDGETSIZE_MAX));
        widget->setMinimumSize(larger(widget->minimumWidth(), 0),
                               larger(widget->minimumHeight(), 0));
        QFont font = widget->font();
        const bool hasOwn =
            widget->testAttribute(Qt::WA_SetFont) && (font.resolve() & QFont::SizeResolved) != 0;
        if (hasOwn && points > 1.0) {
            font.setPointSizeF(font.pointSizeF() * points);
            widget->setFont(font);
        }
    }
}

} // namespace orvel
