#include "panel/Shortcuts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QScrollArea>
#include <QShortcut>
#include <QSplitter>

#include <algorithm>

namespace orvel {
namespace {

constexpr struct {
    const char *button;
    const char *keys;
} kButtons[] = {
    {"OpenSessionB", "Ctrl+O"}, {"SaveSessionB", "Ctrl+S"},  {"HelpB", "F1"},
    {"CalcMapB", "F5"},         {"CalcTargetB", "Shift+F5"},
};

/// With what the parts of the panel begin.
constexpr const char *kParts[] = {"UseCB",   "TypeNonEquiv", "HgAFrom",    "ShowDMap",
                                  "DataMap", "Disps",        "CalcTargetB"};

/// The first field of a widget, or the widget itself.
QWidget *entranceOf(QWidget &panel, const char *name)
{
    auto *part = panel.findChild<QWidget *>(QLatin1String(name));
    auto *surface = part ? part->findChild<QWidget *>(QStringLiteral("DispA")) : nullptr;
    return surface ? surface : part;
}

/// Innermost first: the outer ones see where it has gone.
void showInScrolls(QWidget *widget)
{
    for (QWidget *around = widget->parentWidget(); around; around = around->parentWidget()) {
        if (auto *scroll = qobject_cast<QScrollArea *>(around)) {
            scroll->ensureWidgetVisible(widget);
        }
    }
}

void goToPart(QWidget &panel, bool isForward)
{
    QList<QWidget *> entrances;
    for (const char *name : kParts) {
        entrances.append(entranceOf(panel, name));
    }
    QWidget *from = panel.focusWidget() ? panel.focusWidget() : &panel;
    QWidget *at = from;
    do {
        at = isForward ? at->nextInFocusChain() : at->previousInFocusChain();
        if (entrances.contains(at) && at->isVisibleTo(&panel) && at->isEnabled()) {
            at->setFocus(Qt::ShortcutFocusReason);
            showInScrolls(at);
            return;
        }
    } while (at != from);
}

void goToNextWindow()
{
    QWidgetList windows = QApplication::topLevelWidgets();
    const auto isElsewhere = [](const QWidget *widget) {
        const Qt::WindowType type = widget->windowType();
        return !widget->isVisible() ||
               (type != Qt::Window && type != Qt::Dialog && type != Qt::Tool);
    };
    windows.erase(std::remove_if(windows.begin(), windows.end(), isElsewhere), windows.end());
    std::sort(windows.begin(), windows.end(), [](const QWidget *a, const QWidget *b) {
        return a->winId() < b->winId(); // in the order of their making, or some would be left out
    });
    const int at = windows.indexOf(QApplication::activeWindow());
    if (windows.size() > 1) {
        QWidget *next = windows[(at + 1) % windows.size()];
        next->raise();
        next->activateWindow();
    }
}

/// Moves a border by arrows and shows where the focus is.
class SplitterKeys : public QObject {
public:
    SplitterKeys(QSplitter *splitter, int index)
        : QObject(splitter->handle(index)), m_splitter(splitter), m_index(index)
    {
        splitter->handle(index)->setFocusPolicy(Qt::TabFocus);
        splitter->handle(index)->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
            auto *handle = static_cast<QSplitterHandle *>(object);
            handle->setBackgroundRole(handle->hasFocus() ? QPalette::Highlight : QPalette::NoRole);
            handle->setAutoFillBackground(handle->hasFocus());
        } else if (event->type() == QEvent::KeyPress) {
            return pressed(static_cast<QKeyEvent *>(event)->key());
        }
        return QObject::eventFilter(object, event);
    }

private:
    bool pressed(int key)
    {
        constexpr int kStep = 16;
        const bool isAcross = m_splitter->orientation() == Qt::Horizontal;
        const int less = isAcross ? Qt::Key_Left : Qt::Key_Up;
        const int more = isAcross ? Qt::Key_Right : Qt::Key_Down;
        if (key != less && key != more) {
            return false;
        }
        const int step = key == more ? kStep : -kStep;
        QList<int> sizes = m_splitter->sizes();
        sizes[m_index - 1] += step;
        sizes[m_index] -= step;
        if (sizes[m_index - 1] > 0 && sizes[m_index] > 0) {
            m_splitter->setSizes(sizes);
            emit m_splitter->splitterMoved(sizes[m_index - 1], m_index); // as if it were dragged
        }
        return true;
    }

    QSplitter *m_splitter;
    int m_index;
};

} // namespace

void setSplitterKeys(QWidget &panel)
{
    for (QSplitter *splitter : panel.findChildren<QSplitter *>()) {
        for (int i = 1; i < splitter->count(); ++i) {
            splitter->handle(i)->setObjectName(splitter->objectName() + QStringLiteral("Handle"));
            new SplitterKeys(splitter, i);
        }
    }
}

void setShortcuts(QWidget &panel)
{
    for (const auto &entry : kButtons) {
        auto *button = panel.findChild<QAbstractButton *>(QLatin1String(entry.button));
        const QKeySequence keys(QString::fromLatin1(entry.keys));
        button->setShortcut(keys);
        button->setToolTip(QStringLiteral("%1 (%2)").arg(button->toolTip(),
                                                         keys.toString(QKeySequence::NativeText)));
    }
    const auto add = [&panel](const char *keys, auto act) {
        auto *shortcut = new QShortcut(QKeySequence(QString::fromLatin1(keys)), &panel);
        QObject::connect(shortcut, &QShortcut::activated, &panel, act);
        return shortcut;
    };
    add("F6", [&panel] { goToPart(panel, true); });
    add("Shift+F6", [&panel] { goToPart(panel, false); });
    add("Ctrl+F6", goToNextWindow)->setContext(Qt::ApplicationShortcut);
}

} // namespace orvel
