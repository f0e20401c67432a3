// Shows the widgets of the drawing floors with made-up data, or takes pictures of them.
#include "display/DispMBase.h"
#include "display/Displays.h"
#include "display/PopBase.h"
#include "display/cBar.h"
#include "examples/gallery/Pages.h"
#include "session/Catalogue.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QContextMenuEvent>
#include <QDir>
#include <QMenu>
#include <QTabWidget>

#include <algorithm>
#include <cstdio>

namespace {

bool isBlank(const QPixmap &pixmap)
{
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != image.pixel(0, 0)) {
                return false;
            }
        }
    }
    return true;
}

/// Pictures go to a folder; a blank one, or one that holds a blank plot, is a fault.
class Camera {
public:
    explicit Camera(const QString &folder) : m_folder(folder) {}

    void take(QWidget *widget, const QString &name)
    {
        QApplication::processEvents(); // layouts settle
        const QPixmap picture = widget->grab();
        bool isGood = !isBlank(picture);
        for (QFrame *inside : widget->findChildren<QFrame *>()) {
            const bool isPainted = qobject_cast<DispArea *>(inside) != nullptr ||
                                   qobject_cast<cBar *>(inside) != nullptr;
            isGood = isGood && !(isPainted && inside->isVisible() && isBlank(inside->grab()));
        }
        if (!isGood) {
            std::fprintf(stderr, "%s: blank, or holds something blank\n", qPrintable(name));
        } else if (!picture.save(m_folder.filePath(name + ".png"))) {
            std::fprintf(stderr, "%s: cannot be written\n", qPrintable(name));
            isGood = false;
        }
        m_isAllGood = m_isAllGood && isGood;
    }
    bool isAllGood() const { return m_isAllGood; }

private:
    QDir m_folder;
    bool m_isAllGood = true;
};

/// Every page, then what opens windows of its own.
bool takePictures(QTabWidget &tabs, const QString &folder)
{
    if (!QDir().mkpath(folder)) {
        std::fprintf(stderr, "%s: cannot be made\n", qPrintable(folder));
        return false;
    }
    Camera camera(folder);
    for (int i = 0; i < tabs.count(); ++i) {
        tabs.setCurrentIndex(i);
        camera.take(tabs.widget(i), tabs.tabText(i));
    }
    auto *graph = tabs.findChild<Displays *>()->panel(Displays::DM2M3);
    graph->popDock();
    camera.take(graph->popBase(), QStringLiteral("graph-window"));
    graph->popDock();

    auto *map = tabs.findChild<DispMBase *>();
    tabs.setCurrentWidget(map);
    map->popDock();
    camera.take(map->popBase(), QStringLiteral("map-window"));
    camera.take(map, QStringLiteral("map-away"));
    map->popDock();
    tabs.activateWindow();
    QApplication::processEvents();
    tabs.setAttribute(Qt::WA_KeyboardFocusChange); // as after a press of the tab key
    map->bar()->setFocus(Qt::TabFocusReason);
    camera.take(map, QStringLiteral("map-focus"));

    const QPoint middle = map->bar()->rect().center();
    QContextMenuEvent request(QContextMenuEvent::Mouse, middle, map->bar()->mapToGlobal(middle));
    QApplication::sendEvent(map->bar(), &request);
    auto *menu = map->bar()->findChild<QMenu *>();
    camera.take(menu, QStringLiteral("palette-menu"));
    menu->close();
    return camera.isAllGood();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"j", "Japanese texts."},
                       {"e", "English texts (default)."},
                       {"shots", "Write a picture of each page to a folder and end.", "folder"}});
    parser.process(application);
    orvel::Translators translators;
    if (parser.isSet("j")) {
        orvel::installJapanese(translators);
    }
    QTabWidget tabs;
    for (const auto &page : orvel::gallery::makePages()) {
        tabs.addTab(page.widget, page.name);
    }
    tabs.resize(1000, 700);
    tabs.show();
    if (parser.isSet("shots")) {
        return takePictures(tabs, parser.value("shots")) ? 0 : 1;
    }
    return QApplication::exec();
}
