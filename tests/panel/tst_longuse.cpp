// Days at the window: load, calculate, pop out, dock and write over and over, by the widgets that a
// user has. Nothing grows once the message box and the list of comparisons are emptied.
//
// ORVEL_CYCLES=10000 for long; a daily run makes some hundred.

#include "tests/panel/Window.h"

#include <malloc.h>
#include <unistd.h>

using namespace window;

namespace {

int cycles()
{
    constexpr int kDaily = 200;
    bool isGiven = false;
    const int wanted = qEnvironmentVariableIntValue("ORVEL_CYCLES", &isGiven);
    return isGiven ? qMax(1, wanted) : kDaily;
}

/// Resident memory [bytes], without what was freed and is merely kept by the allocator.
qint64 residentSize()
{
    malloc_trim(0);
    QFile file(QString("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) {
        return -1;
    }
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

struct Access : QObject { // receivers() is for the sender alone
    static int receiversOf(const QObject &object, const QByteArray &signal)
    {
        return (object.*&Access::receivers)(signal.constData());
    }
};

/// Objects of all windows, and connections from them.
std::pair<int, int> objectsAndConnections()
{
    QSet<const QObject *> all;
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        all.insert(window);
        for (const QObject *child : window->findChildren<QObject *>()) {
            all.insert(child);
        }
    }
    int connections = 0;
    for (const QObject *object : all) {
        for (int i = 0; i < object->metaObject()->methodCount(); ++i) {
            const QMetaMethod method = object->metaObject()->method(i);
            if (method.methodType() == QMetaMethod::Signal) {
                connections += Access::receiversOf(*object, '2' + method.methodSignature());
            }
        }
    }
    return {all.size(), connections};
}

} // namespace

class LongUseTest : public QObject {
    Q_OBJECT

public:
    static void initMain() // the watchdog of a test function is for minutes
    {
        if (!qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT")) {
            qputenv("QTEST_FUNCTION_TIMEOUT", "86400000"); // [ms]
        }
    }

private slots:
    void init()
    {
        m_panel = std::make_unique<Shown>(m_sample, 32, QVector<double>(32 * 32, 0.5).toList());
        m_sample.map("edge2.txt", 16, "8350", QVector<double>(16 * 16, 0.4).toList());
        perform(*m_panel, m_sample.in("type SaveFSelect.FileName %/long.dat"));
        m_panel->saveSession(m_sample.path("long.ini"));
    }

    void nothingElseGrows()
    {
        constexpr int kWarmUp = 60; // caches fill: fonts, glyphs, icons, pools
        const int n = cycles();
        constexpr int kBetween = 20;
        for (int i = 0; i < kWarmUp; ++i) {
            cycle(i);
        }
        empty();
        const auto countsBefore = objectsAndConnections();
        const qint64 before = residentSize();
        QVERIFY(before > 0);
        for (int i = 0; i < n; ++i) {
            cycle(i);
            if (i % kBetween == kBetween - 1) {
                empty();
            }
        }
        empty();
        const qint64 emptied = residentSize();
        QCOMPARE(objectsAndConnections(), countsBefore);

        qInfo("%d cycles: %.1f KiB more", n, double(emptied - before) / 1024);
#ifndef ORVEL_SANITIZED // whose own memory would be measured
        // A page or two of every heap may stay behind, whatever the number of cycles.
        constexpr qint64 kHeaps = 3 << 20;
        QVERIFY(emptied - before < kHeaps);
#endif
    }

private:
    void cycle(int i)
    {
        FourPs &panel = *m_panel;
        // Another image and another size; a target; a reference; the method.
        perform(panel,
                m_sample.in(QString("load P2.FileSelect %/edge%1.txt; load TargetFile %/mix.dat; "
                                    "load R1.XafsFS %/a.dat; click TypeNonEquiv; "
                                    "click CalcMapB; click CalcTargetB; click LCFB")
                                .arg(i % 2 == 0 ? "2" : "")));
        if (i % 10 == 0) {
            panel.openSession(m_sample.path("long.ini"));
            at<AFileSelect>(panel, "DispFSelect")->newFiles({m_sample.a, m_sample.mix});
            perform(panel, m_sample.in("load P4.FileSelect %/missing.txt; clear P4.FileSelect"));
        }
        const auto buttons = panel.findChildren<QPushButton *>(QString("PopDockB"));
        QAbstractButton *popDock = buttons[i % buttons.size()];
        popDock->click();
        QCoreApplication::processEvents();
        popDock->click();
        perform(panel, "click MapRatio1; click MapValence; click HgAmount; click HgValence; "
                       "click WriteB");
        QCoreApplication::processEvents();
    }

    /// As a user who starts over: the test empties the box, a double click the list.
    void empty()
    {
        find<QPlainTextEdit>(*m_panel, "Message")->clear();
        emit graph(*m_panel, Displays::DLCFvsMPS)->mDClicked(nullptr);
    }

    Sample m_sample;
    std::unique_ptr<Shown> m_panel;
};

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication app(argc, argv);
    QApplication::setCursorFlashTime(0);
    // Thousands of lines about files that were read and windows that were raised.
    QLoggingCategory::setFilterRules(QString("*.debug=false\n*.warning=false"));
    LongUseTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_longuse.moc"
