// Days at the window: load, calculate, pop out, dock and write over and over, by the widgets that a
// user has. Nothing grows but the message box and the list of comparisons, and these by little.
//
// ORVEL_CYCLES=10000 for long; a daily run makes some hundred.

#include "tests/panel/Window.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QTextBlock>

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
    QFile file(QStringLiteral("/proc/self/statm"));
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
struct Counts {
    int objects = 0;
    int connections = 0;

    static Counts now()
    {
        Counts counts;
        QSet<const QObject *> all;
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            all.insert(window);
            for (const QObject *child : window->findChildren<QObject *>()) {
                all.insert(child);
            }
        }
        for (const QObject *object : all) {
            ++counts.objects;
            const QMetaObject *meta = object->metaObject();
            for (int i = 0; i < meta->methodCount(); ++i) {
                const QMetaMethod method = meta->method(i);
                if (method.methodType() == QMetaMethod::Signal) {
                    counts.connections +=
                        Access::receiversOf(*object, '2' + method.methodSignature());
                }
            }
        }
        return counts;
    }
};

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
    void init();
    void nothingElseGrows();
    void messageBoxStaysUsable();

private:
    void cycle(int i);
    int lines() const { return find<QPlainTextEdit>(*m_panel, "Message")->blockCount(); }
    void empty();

    Sample m_sample;
    std::unique_ptr<FourPs> m_panel;
    qint64 m_records = 0; ///< of the list of comparisons
};

void LongUseTest::init()
{
    m_panel = std::make_unique<FourPs>();
    m_panel->resize(1300, 900);
    m_panel->show();
    const auto square = [](int side, double value) {
        return QVector<double>(side * side, value).toList();
    };
    m_sample.load(*m_panel, 32, square(32, 0.5));
    m_sample.map("edge2.txt", 16, "8350", square(16, 0.4));
    perform(*m_panel, m_sample.in("type SaveFSelect.FileName %/long.dat"));
    m_panel->saveSession(m_sample.path("long.ini"));
}

void LongUseTest::cycle(int i)
{
    FourPs &panel = *m_panel;
    const int before = lines();
    // Another image and another size; a target; a reference; the method.
    perform(panel, m_sample.in(i % 2 == 0 ? "load P2.FileSelect %/edge2.txt"
                                          : "load P2.FileSelect %/edge.txt"));
    perform(panel,
            m_sample.in("load TargetFile %/mix.dat; load R1.XafsFS %/a.dat; "
                        "click TypeNonEquiv; click CalcMapB; click CalcTargetB; click LCFB"));
    if (i % 10 == 0) {
        panel.openSession(m_sample.path("long.ini"));
        at<AFileSelect>(panel, "DispFSelect")->newFiles({m_sample.a, m_sample.mix});
        perform(panel, m_sample.in("load P4.FileSelect %/missing.txt; clear P4.FileSelect"));
    }
    const auto buttons = panel.findChildren<QPushButton *>(QStringLiteral("PopDockB"));
    QAbstractButton *popDock = buttons[i % buttons.size()];
    popDock->click();
    QCoreApplication::processEvents();
    popDock->click();
    perform(panel, "click MapRatio1; click MapValence; click HgAmount; click HgValence; "
                   "click WriteB");
    QCoreApplication::processEvents();
    const QTextDocument *box = find<QPlainTextEdit>(panel, "Message")->document();
    for (QTextBlock line = box->findBlockByNumber(before - 1); line.isValid(); line = line.next()) {
        m_records += line.text().startsWith("Result of LCF") ? 1 : 0;
    }
}

/// As a user who starts over: the test empties the box, a double click the list.
void LongUseTest::empty()
{
    find<QPlainTextEdit>(*m_panel, "Message")->clear();
    emit graph(*m_panel, Displays::DLCFvsMPS)->mDClicked(nullptr);
    m_records = 0;
}

void LongUseTest::nothingElseGrows()
{
    constexpr int kWarmUp = 60;          // caches fill: fonts, glyphs, icons, pools
    const int n = qMax(1, cycles() / 2); // emptied now and then, and left to grow
    constexpr int kBetween = 20;
    for (int i = 0; i < kWarmUp; ++i) {
        cycle(i);
    }
    empty();
    const Counts countsBefore = Counts::now();
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
    const Counts countsAfter = Counts::now();
    QCOMPARE(countsAfter.objects, countsBefore.objects);
    QCOMPARE(countsAfter.connections, countsBefore.connections);

    const int linesBefore = lines();
    for (int i = 0; i < n; ++i) {
        cycle(i);
        if (i % 1000 == 999) { // of a long run
            qInfo("%d cycles: %.1f MiB", i + 1, double(residentSize() - emptied) / (1 << 20));
        }
    }
    const qint64 filled = residentSize();
    const qint64 grown = lines() - linesBefore + m_records;
    QVERIFY(grown > qint64(5) * n); // else nothing was calculated
    const double perLine = double(filled - emptied) / double(grown);
    qInfo("%d cycles: %.1f KiB more when emptied; then %lld lines and comparisons at %.0f bytes; "
          "%d objects, %d connections",
          n, double(emptied - before) / 1024, grown, perLine, countsAfter.objects,
          countsAfter.connections);
#ifndef ORVEL_SANITIZED // whose own memory would be measured
    // A page or two of every heap may stay behind, whatever the number of cycles.
    constexpr qint64 kHeaps = 3 << 20;
    QVERIFY(emptied - before < kHeaps);
    QVERIFY(filled - emptied < grown * 1024 + kHeaps);
#endif
}

/// With a hundred thousand lines a further one is written and shown as fast as the first.
void LongUseTest::messageBoxStaysUsable()
{
    auto *box = find<QPlainTextEdit>(*m_panel, "Message");
    QString text;
    for (int i = 0; i < 100000; ++i) {
        text += QStringLiteral("Result of LCF :: 0.750 : 0.250, line %1\n").arg(i);
    }
    box->setPlainText(text);
    box->moveCursor(QTextCursor::End);
    QCoreApplication::processEvents();
    QElapsedTimer timer;
    timer.start();
    constexpr int kLines = 50;
    for (int i = 0; i < kLines; ++i) {
        perform(*m_panel, "click LCFB");
        QCoreApplication::processEvents();
    }
    qInfo("%.1f ms a line", double(timer.elapsed()) / kLines);
    QVERIFY(box->cursorRect().intersects(box->viewport()->rect())); // the newest is in sight
    QVERIFY(box->textCursor().atEnd());
}

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication app(argc, argv);
    QApplication::setCursorFlashTime(0);
    // Thousands of lines about files that were read and windows that were raised.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.warning=false"));
    LongUseTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_longuse.moc"
