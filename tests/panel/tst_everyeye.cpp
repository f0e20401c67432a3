// The window without a mouse, without sight, in a dark desktop and with large letters.

#include "app/Body.h"
#include "app/ReadableStyle.h"
#include "display/cBar.h"
#include "session/Catalogue.h"
#include "tests/panel/Window.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QRadioButton>
#include <QStyleOption>

#include <cmath>

using namespace window;

namespace {

double luminance(QRgb colour)
{
    const auto linear = [](int byte) {
        const double s = byte / 255.0;
        return s <= 0.04045 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

/// The greatest contrast with the ground, which is the colour of most pixels (WCAG 2.1).
double contrastIn(const QImage &image)
{
    QHash<QRgb, int> counts;
    for (int i = 0; i < image.width() * image.height(); ++i)
        ++counts[image.pixel(i % image.width(), i / image.width())];
    const double ground = luminance(std::max_element(counts.begin(), counts.end()).key());
    double greatest = 1.0;
    for (const QRgb colour : counts.keys()) {
        const auto [low, high] = std::minmax({ground, luminance(colour)});
        greatest = qMax(greatest, (high + 0.05) / (low + 0.05));
    }
    return greatest;
}

QPalette darkPalette()
{
    QPalette dark(QColor(60, 63, 68), QColor(45, 47, 51)); // letters white by itself
    dark.setColor(QPalette::Base, QColor(30, 32, 35));
    return dark;
}

QString nameOf(const QWidget *widget)
{
    return widget->parentWidget()->metaObject()->className() + ('/' + widget->objectName());
}

/// The program's window with all that it can show, and four windows beside it.
struct Windows {
    explicit Windows(const Sample &sample)
    {
        body.resize(1300, 900);
        body.show();
        sample.load(panel, 2, {0.5, 0.2});
        perform(panel,
                "click MoreCondsCB; click AdvancedCB; click SigmaMaps; click ShowPixelWindow; "
                "click AdviserB; click DTarget.PopDockB");
        DispArea *area = map(panel, "ResultMap")->area();
        area->grab();
        mouse(area, QEvent::MouseButtonDblClick, area->rect().center());
        perform(panel, "click RegionsB; click RegionTableB");
        QTest::qWait(300); // layouts
    }
    QWidgetList all() const
    {
        QWidgetList windows;
        for (QWidget *window : QApplication::topLevelWidgets())
            if (window->isVisible() && !window->inherits("QTipLabel"))
                windows += window;
        return windows;
    }
    /// What is shown, the toolkit's own parts left out.
    QWidgetList widgets() const
    {
        QWidgetList widgets;
        for (QWidget *window : all())
            for (QWidget *widget : window->findChildren<QWidget *>())
                if (widget->isVisible() && widget->window() == window &&
                    !widget->objectName().startsWith("qt_") && !widget->inherits("QHeaderView") &&
                    !widget->inherits("QScrollBar") && !widget->inherits("QTableCornerButton"))
                    widgets += widget;
        return widgets;
    }
    /// Until it has the focus of the program.
    static void focus(QWidget *widget)
    {
        widget->window()->activateWindow();
        widget->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(widget->hasFocus());
    }
    Body body;
    FourPs &panel = *body.panel();
};

} // namespace

class EveryEyeTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        QApplication::setStyle(new orvel::ReadableStyle);
        QApplication::setFont(m_usual);
        m_translators = std::make_unique<orvel::Translators>();
        if (QTest::currentDataTag() == QLatin1String("Japanese"))
            orvel::installJapanese(*m_translators);
    }

    void namesEverything_data()
    {
        table<QString>({"valence"}, {{"English", "Reference 2, valence"},
                                     {"Japanese", QStringLiteral("標準試料 2、価数")}});
    }

    void namesEverything()
    {
        const Windows windows(m_sample);
        QCOMPARE(windows.all().size(), 5);
        QSet<QString> told;
        QStringList faults;
        for (QWidget *widget : windows.widgets()) {
            const QWidget *tells = // a path is told of by its selector
                widget->objectName() == "FileName" ? widget->parentWidget() : widget;
            const bool isOfForm =
                windows.panel.isAncestorOf(widget) &&
                (widget->inherits("QLineEdit") || widget->inherits("QListWidget") ||
                 widget->inherits("QAbstractButton") || widget->inherits("QPlainTextEdit"));
            if (isOfForm &&
                (tells->toolTip().isEmpty() || tells->accessibleDescription().isEmpty()))
                faults += nameOf(widget) + " has no tool tip";
            if (widget->focusPolicy() == Qt::NoFocus)
                continue;
            auto *interface = QAccessible::queryAccessibleInterface(widget);
            const QString name = widget->inherits("QComboBox") // else the toolkit tells its choice
                                     ? widget->accessibleName()
                                     : interface->text(QAccessible::Name);
            const QString key =
                widget->window()->objectName() + widget->metaObject()->className() + name;
            if (name.isEmpty() || told.contains(key))
                faults += nameOf(widget) + ": " + name;
            told += key;
        }
        QCOMPARE(faults.join('\n'), QString());
        QVERIFY(told.size() > 250);
        QTEST(reference(windows.panel, 1)->valenceEdit()->accessibleName(), "valence");
    }

    void reachesEverythingByTab()
    {
        const Windows windows(m_sample);
        for (QWidget *window : windows.all()) {
            window->activateWindow();
            QTRY_COMPARE(QApplication::activeWindow(), window);
            QSet<QWidget *> reached;
            for (int i = 0; i < 400; ++i) {
                QTest::keyClick(window->focusWidget() ? window->focusWidget() : window,
                                Qt::Key_Tab);
                reached += window->focusWidget();
            }
            QStringList missed;
            for (QWidget *widget : windows.widgets()) {
                const auto *button = qobject_cast<QAbstractButton *>(widget);
                const bool isByArrows =
                    qobject_cast<QRadioButton *>(widget) && !button->isChecked();
                const bool acts = button || widget->inherits("DispArea") ||
                                  widget->inherits("cBar") ||
                                  (widget->focusPolicy() & Qt::TabFocus) != 0;
                if (widget->window() == window && widget->isEnabled() && acts && !isByArrows &&
                    !reached.contains(widget))
                    missed += nameOf(widget);
            }
            QCOMPARE(missed.join('\n'), QString());
        }
    }

    void keysDoWhatTheMouseDoes()
    {
        Windows windows(m_sample);
        FourPs &panel = windows.panel;
        DispArea *area = map(panel, "ResultMap")->area();
        const auto key = [area](Qt::Key code, Qt::KeyboardModifiers with = Qt::NoModifier) {
            QTest::keyClick(area, code, with);
        };
        Windows::focus(area);
        QTest::keyPress(area, Qt::Key_Space);
        key(Qt::Key_Right);
        key(Qt::Key_Left, Qt::ControlModifier);
        QTest::keyRelease(area, Qt::Key_Space);
        QCOMPARE(panel.state().texts.regions.size(), size_t(1));
        key(Qt::Key_Delete);
        QVERIFY(panel.state().texts.regions.empty());
        perform(panel, "click RegionsB");
        key(Qt::Key_Left); // from the middle of two pixels
        key(Qt::Key_Right);
        QVERIFY(qAbs(shown(panel, "ResultMap.XPos").toDouble() - 1.5) < 0.01); // the mouse's pixels
        QCOMPARE(shown(panel, "ResultMap.Val").toDouble(), 3.0);               // nothing of A
        key(Qt::Key_Plus);
        QVERIFY(area->isZoomed());
        key(Qt::Key_0);
        QVERIFY(!area->isZoomed());
        QWidget *pixel = at(panel, "PixelWindow");
        pixel->hide();
        key(Qt::Key_Return);
        QVERIFY(pixel->isVisible() && pixel->windowTitle().contains("(1, 0)"));
        key(Qt::Key_F10, Qt::ShiftModifier);
        auto *menu = area->findChild<QMenu *>("ExportMenu");
        QVERIFY(menu && menu->isVisible());
        menu->close();

        cBar *bar = map(panel, "ResultMap")->bar();
        const QColor colour = bar->colourOf(2.75);
        QTest::keyClick(bar, Qt::Key_Down, Qt::ControlModifier);
        QVERIFY(bar->colourOf(2.75) != colour);

        DispABase *popped = graph(panel, Displays::DTarget);
        QTest::keyClick(popped->area(), Qt::Key_Escape);
        QVERIFY(!popped->isPoppedOut());

        Windows::focus(at(panel, "P1.Energy"));
        QTest::keyClick(at(panel, "P1.Energy"), Qt::Key_F6);
        QCOMPARE(panel.focusWidget(), at(panel, "HgAFrom"));
        QVERIFY(!at(panel, "HgAFrom")->visibleRegion().isEmpty()); // scrolled to
        QTest::keyClick(&panel, Qt::Key_O, Qt::ControlModifier);
        QTRY_VERIFY(panel.findChild<QFileDialog *>());
    }

    void lettersStandOut_data() { table<bool>({"isDark"}, {{"light", false}, {"dark", true}}); }

    void lettersStandOut()
    {
        QFETCH(bool, isDark);
        QApplication::setPalette(isDark ? QPalette() : darkPalette());
        const Windows windows(m_sample);
        QApplication::setPalette(isDark ? darkPalette() : QPalette()); // while it runs
        QStringList faults;
        const auto look = [&faults](QWidget *widget, const QRect &part, double least = 4.5) {
            const double contrast = contrastIn(widget->grab(part).toImage());
            if (contrast < least)
                faults += nameOf(widget) + ' ' + QString::number(contrast);
        };
        int asked = 0;
        for (QWidget *widget : windows.widgets()) {
            auto *field = qobject_cast<QLineEdit *>(widget);
            const auto *plot = qobject_cast<DispABase *>(widget);
            const bool hasText = field || !widget->property("text").toString().isEmpty() ||
                                 widget->inherits("QComboBox") ||
                                 widget->inherits("QPlainTextEdit");
            if (plot && plot->coord()->hasContent())
                look(plot->area(), plot->area()->rect());
            if (!widget->isEnabled() || !hasText)
                continue;
            ++asked;
            const QRect inside = widget->rect().adjusted(3, 3, -3, -3); // without a frame
            if (field) {
                field->setText("0.5");
                look(field, inside);
                field->selectAll();
            }
            look(widget, inside);
            if (widget->inherits("QCheckBox") || widget->inherits("QRadioButton")) {
                QStyleOptionButton option;
                option.initFrom(widget);
                const auto box = widget->inherits("QCheckBox") ? QStyle::SE_CheckBoxIndicator
                                                               : QStyle::SE_RadioButtonIndicator;
                look(widget, widget->style()->subElementRect(box, &option, widget), 3.0);
            }
        }
        QVERIFY(asked > 250);
        QApplication::setPalette(QPalette());
        QCOMPARE(faults.join('\n'), QString());
    }

    void largeLettersAreWhole_data() { namesEverything_data(); }

    void largeLettersAreWhole()
    {
        QFont large = m_usual;
        large.setPointSizeF(18.0);
        QApplication::setFont(large);
        Windows windows(m_sample);
        QStringList faults;
        for (QWidget *widget : windows.widgets()) {
            const auto *label = qobject_cast<QLabel *>(widget);
            const auto *button = qobject_cast<QAbstractButton *>(widget);
            const QFontMetrics letters = widget->fontMetrics();
            QSize needs;
            if (widget->inherits("QCheckBox") || widget->inherits("QRadioButton") ||
                widget->inherits("QComboBox"))
                needs = widget->sizeHint();
            else if (label && !label->wordWrap())
                needs = letters.size(0, label->text());
            else if (button && button->icon().isNull())
                needs = letters.size(Qt::TextShowMnemonic, button->text());
            else if (widget->inherits("QLineEdit"))
                needs = QSize(0, letters.height());
            else
                continue;
            const QWidget *around = widget->parentWidget();
            const bool isScrolled = around->parentWidget()->inherits("QScrollArea");
            if (needs.boundedTo(widget->size()) != needs ||
                !(isScrolled || around->rect().contains(widget->geometry())))
                faults += nameOf(widget) + " lacks room";
        }
        QCOMPARE(faults.join('\n'), QString());
        // A laptop's screen is enough, and shows what the keys go to.
        windows.body.resize(1366, 720);
        QCOMPARE(windows.body.size(), QSize(1366, 720));
    }

private:
    Sample m_sample;
    const QFont m_usual = QApplication::font();
    std::unique_ptr<orvel::Translators> m_translators;
};

QTEST_MAIN(EveryEyeTest)

#include "tst_everyeye.moc"
