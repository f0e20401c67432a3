// Renders the main window to a picture: what docs/shots calls for the pictures of the documents.
//
//   orvel-shots [-j] [--size WxH] [--conditions] [--precision] [--regions] [--pop NAME]
//               [--window NAME] [--dark] [--font-scale N] OUT.png [SESSION]
//
// --regions  the bar of regions, and instead of the main window the table of them with --pop
// RegionTable
// --pop      the window of a map ("ResultMap", "DataMap") or of a graph (e.g. "DMuts", "DM2M3")
// --window   "energies", the advice on energies, or "pixel", the fit of the pixel in the middle
// --dark     the colours of a dark desktop
// --font-scale  letters so much larger than those of a usual desktop, 9 points
#include "app/Body.h"
#include "app/ReadableStyle.h"
#include "display/DispABase.h"
#include "display/DispMBase.h"
#include "panel/FourPs.h"
#include "session/Catalogue.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCommandLineParser>
#include <QDialog>
#include <QLoggingCategory>
#include <QMouseEvent>
#include <QPalette>

#include <cstdio>

namespace {

/// Lets layouts and paints settle.
void settle()
{
    for (int i = 0; i < 20; ++i) {
        QApplication::processEvents();
    }
}

/// As dark desktops have them.
QPalette darkPalette()
{
    const QColor ground(45, 47, 51);
    const QColor letters(236, 238, 240);
    QPalette palette(QColor(60, 63, 68), ground);
    palette.setColor(QPalette::Base, QColor(30, 32, 35));
    palette.setColor(QPalette::AlternateBase, ground);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, letters);
    }
    palette.setColor(QPalette::ToolTipBase, ground);
    palette.setColor(QPalette::Highlight, QColor(53, 132, 228));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(120, 174, 237));
    palette.setColor(QPalette::PlaceholderText, QColor(160, 164, 170));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(130, 133, 138));
    }
    return palette;
}

/// A window beside the main one, by the ways that a user opens it; null when it did not open.
QWidget *openWindow(FourPs &panel, const QString &name)
{
    const auto button = [&panel](const char *its) {
        return panel.findChild<QAbstractButton *>(QLatin1String(its));
    };
    if (name == QLatin1String("energies")) {
        button("AdviserB")->click();
    } else if (name == QLatin1String("pixel")) {
        button("ShowPixelWindow")->setChecked(true);
        DispArea *area = panel.findChild<DispMBase *>(QStringLiteral("ResultMap"))->area();
        QMouseEvent click(QEvent::MouseButtonDblClick, QPointF(area->rect().center()),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(area, &click);
    }
    settle();
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget != panel.window()) {
            return widget;
        }
    }
    return nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    QCommandLineParser parser;
    const QCommandLineOption japanese(QStringLiteral("j"));
    const QCommandLineOption size(QStringLiteral("size"), QString(), QStringLiteral("WxH"),
                                  QStringLiteral("1366x736"));
    const QCommandLineOption conditions(QStringLiteral("conditions"));
    const QCommandLineOption pop(QStringLiteral("pop"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption regions(QStringLiteral("regions"));
    const QCommandLineOption precision(QStringLiteral("precision"));
    const QCommandLineOption window(QStringLiteral("window"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption dark(QStringLiteral("dark"));
    const QCommandLineOption fontScale(QStringLiteral("font-scale"), QString(),
                                       QStringLiteral("N"));
    parser.addOptions(
        {japanese, size, conditions, precision, regions, pop, window, dark, fontScale});
    parser.process(app);
    const QStringList paths = parser.positionalArguments();
    const QStringList sides = parser.value(size).split(QLatin1Char('x'));
    if (paths.isEmpty() || sides.size() != 2) {
        std::fputs("usage: orvel-shots [-j] [--size WxH] [--conditions] [--precision] [--regions] "
                   "[--pop NAME] [--window NAME] [--dark] [--font-scale N] OUT.png [SESSION]\n",
                   stderr);
        return 2;
    }
    orvel::Translators translators;
    if (parser.isSet(japanese)) {
        orvel::installJapanese(translators);
    }
    if (parser.isSet(dark)) {
        QApplication::setPalette(darkPalette());
    }
    if (parser.isSet(fontScale)) {
        constexpr double kUsualPoints = 9.0;
        QFont font = QApplication::font();
        font.setPointSizeF(kUsualPoints * parser.value(fontScale).toDouble());
        QApplication::setFont(font);
    }
    QApplication::setStyle(new orvel::ReadableStyle);
    Body body;
    body.resize(sides[0].toInt(), sides[1].toInt());
    body.show();
    settle();
    if (paths.size() > 1) {
        body.panel()->openSession(paths[1]);
    }
    if (parser.isSet(conditions)) {
        body.panel()->findChild<QAbstractButton *>(QStringLiteral("MoreCondsCB"))->setChecked(true);
    }
    if (parser.isSet(precision)) {
        body.panel()->findChild<QAbstractButton *>(QStringLiteral("AdvancedCB"))->setChecked(true);
    }
    if (parser.isSet(regions)) {
        body.panel()->findChild<QAbstractButton *>(QStringLiteral("RegionsB"))->setChecked(true);
        settle();
        body.panel()->findChild<QAbstractButton *>(QStringLiteral("RegionTableB"))->click();
    }
    settle();
    QWidget *shown = &body;
    if (parser.isSet(pop)) {
        const QString name = parser.value(pop);
        auto *map = body.panel()->findChild<DispMBase *>(name);
        auto *graph = body.panel()->findChild<DispABase *>(name);
        auto *dialog = body.panel()->findChild<QDialog *>(name);
        if (dialog) {
            shown = dialog;
        } else if (!map && !graph) {
            std::fprintf(stderr, "orvel-shots: no map or graph %s\n", qPrintable(name));
            return 2;
        } else {
            map ? map->popDock() : graph->popDock();
            settle();
            shown = (map ? map->area() : graph->area())->window();
        }
    }
    if (parser.isSet(window)) {
        shown = openWindow(*body.panel(), parser.value(window));
        if (!shown) {
            std::fprintf(stderr, "orvel-shots: no window %s\n", qPrintable(parser.value(window)));
            return 2;
        }
    }
    if (!shown->grab().save(paths[0])) {
        std::fprintf(stderr, "orvel-shots: cannot write %s\n", qPrintable(paths[0]));
        return 1;
    }
    return 0;
}
