#pragma once

#include "display/DispMBase.h"
#include "display/Displays.h"
#include "images/AEPoint.h"
#include "panel/FourPs.h"
#include "spectra/ARefFile.h"
#include "spectra/AXafsFileSelect.h"
#include "tests/TestFiles.h"
#include "tests/display/Gui.h"

// The panel under the fingers of a user, and inputs whose results can be worked out by hand.

namespace window {

template <class Widget = QWidget> Widget *find(const QWidget &in, const QString &name)
{
    auto *widget = in.findChild<Widget *>(name);
    if (!widget) {
        qFatal("no widget %s", qPrintable(name));
    }
    return widget;
}

inline AEPoint *point(const FourPs &panel, int row)
{
    return panel.findChildren<AEPoint *>()[row];
}
inline ARefFile *reference(const FourPs &panel, int row)
{
    return panel.findChildren<ARefFile *>()[row];
}
inline AXafsFileSelect *target(const FourPs &panel)
{
    return find<AXafsFileSelect>(panel, "TargetFile");
}
inline DispABase *graph(const FourPs &panel, Displays::DispId id)
{
    return find<Displays>(panel, "Disps")->panel(id);
}
inline DispMBase *map(const FourPs &panel, const char *name)
{
    return find<DispMBase>(panel, name);
}

/// A widget by the names of its parents: P1 to P8 and R1 to R4 are the rows, in any panel.
inline QWidget *at(const FourPs &panel, const QString &path)
{
    QWidget *widget = nullptr;
    for (const QString &name : path.split('.')) {
        const int row = name.size() == 2 ? name.mid(1).toInt() - 1 : -1;
        const QWidget &in = widget ? *widget : static_cast<const QWidget &>(panel);
        widget = row >= 0 && name[0] == 'P'   ? point(panel, row)
                 : row >= 0 && name[0] == 'R' ? static_cast<QWidget *>(reference(panel, row))
                                              : find(in, name);
    }
    return widget;
}
template <class Widget> Widget *at(const FourPs &panel, const QString &path)
{
    auto *widget = qobject_cast<Widget *>(at(panel, path));
    if (!widget) {
        qFatal("%s is of another kind", qPrintable(path));
    }
    return widget;
}

/// What widgets show, a blank between: "PATH" or "PATH:property", several after blanks.
inline QString shown(const FourPs &panel, const QString &paths)
{
    QStringList texts;
    for (const QString &path : paths.split(' ')) {
        const QString property = path.contains(':') ? path.section(':', 1) : QString("text");
        texts << at(panel, path.section(':', 0, 0))->property(qPrintable(property)).toString();
    }
    return texts.join(' ');
}

/// Types over a field and leaves it.
inline void type(QLineEdit *edit, const QString &text)
{
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
    QTest::keyClick(edit, Qt::Key_Enter);
}
inline void tick(QAbstractButton *box, bool on)
{
    if (box->isChecked() != on) {
        box->click();
    }
}
/// What a user does, step by step: "click PATH; tick PATH; type PATH TEXT; load PATH FILE; clear
/// PATH".
inline void perform(FourPs &panel, const QString &steps)
{
    for (const QString &step : steps.split("; ", Qt::SkipEmptyParts)) {
        const QString word = step.section(' ', 0, 0);
        const QString path = step.section(' ', 1, 1);
        const QString value = step.section(' ', 2);
        if (word == "click") {
            at<QAbstractButton>(panel, path)->click();
        } else if (word == "tick") {
            tick(at<QAbstractButton>(panel, path), true);
        } else if (word == "type") {
            type(at<QLineEdit>(panel, path), value);
        } else if (word == "load") {
            at<AFileSelect>(panel, path)->newFile(value);
        } else if (word == "clear") {
            at<QAbstractButton>(panel, path + ".ClearB")->click();
        } else {
            qFatal("no such step: %s", qPrintable(step));
        }
    }
}
/// Says how large the noise is.
inline void chooseGivenNoise(FourPs &panel, const QString &sigma)
{
    auto *noise = at<QComboBox>(panel, "Noise");
    while (noise->currentText() != "given number") {
        QTest::keyClick(noise, Qt::Key_Down);
    }
    perform(panel, "type NoiseSigma " + sigma);
}
/// Chooses files by the selector's button and its dialog.
inline void choose(AFileSelect *selector, const QStringList &paths)
{
    find<QAbstractButton>(*selector, "SelB")->click();
    QFileDialog *dialog = selector->dialog();
    const QString quoted = '"' + paths.join(QStringLiteral("\" \"")) + '"';
    find<QLineEdit>(*dialog, "fileNameEdit")->setText(paths.size() > 1 ? quoted : paths[0]);
    QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
    QVERIFY(!dialog->isVisible());
}

inline QStringList messages(const FourPs &panel)
{
    const QString all = find<QPlainTextEdit>(panel, "Message")->toPlainText();
    return all.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
/// What was written since the last call.
inline QStringList newMessages(FourPs &panel)
{
    const QStringList all = messages(panel);
    const int seen = panel.property("seenMessages").toInt();
    panel.setProperty("seenMessages", all.size());
    return all.mid(seen);
}

inline QImage picture(DispArea *area)
{
    return area->grab().toImage().convertToFormat(QImage::Format_RGB32);
}
inline QImage picture(const FourPs &panel, Displays::DispId id)
{
    return picture(graph(panel, id)->area());
}

/// Two references A and B, a target half of each, and maps. Before the edge all are 0, so that the
/// pre-edge line is exactly 0, and 1 far behind it. At 8350 eV A is 0.8, B is 0.2.
class Sample {
public:
    Sample()
    {
        a = spectrum("a.dat", "0.8");
        b = spectrum("b.dat", "0.2");
        mix = spectrum("mix.dat", "0.5");
        empty = m_files.write("empty.dat", "# nothing\n");
    }

    QString path(const QString &name) const { return m_files.path(name); }
    QUrl url(const QString &name) const { return QUrl::fromLocalFile(path(name)); }
    QByteArray read(const QString &name) const { return m_files.read(name); }
    QString write(const QString &name, const QByteArray &bytes) const
    {
        return m_files.write(name, bytes);
    }
    /// A map of these absorptions, rows from the bottom.
    QString map(const QString &name, int width, const QByteArray &energy,
                const QList<double> &values) const
    {
        QByteArray out = "# ENERGY = " + energy + "\n# X-NUM " + QByteArray::number(width) +
                         "\n# Y-NUM " + QByteArray::number(values.size() / width) + "\n";
        for (int i = 0; i < values.size(); ++i) {
            out += QByteArray::number(i % width) + " " + QByteArray::number(i / width) + " " +
                   QByteArray::number(values[i]) + " 0\n"; // reference 0: an absorption
        }
        return write(name, out);
    }

    /// References A (row 1, valence 2) and B (row 2, valence 3) in use, the target, and three
    /// points with maps: 0 before, 1 behind, the given absorptions at the V point. The fraction of
    /// A in a pixel is (absorption - 0.2) / 0.6, the valence 3 less that.
    void load(FourPs &panel, int width = 1, const QList<double> &atV = {0.5}) const
    {
        QList<double> values[] = {atV, atV, atV};
        std::fill(values[0].begin(), values[0].end(), 0.0);
        std::fill(values[2].begin(), values[2].end(), 1.0);
        map("before.txt", width, "8200", values[0]);
        map("edge.txt", width, "8350", values[1]);
        map("behind.txt", width, "8600", values[2]);
        perform(panel, in("load R1.XafsFS %/a.dat; load R2.XafsFS %/b.dat; "
                          "load TargetFile %/mix.dat; type R1.Valence 2; type R2.Valence 3; "
                          "load P1.FileSelect %/before.txt; load P2.FileSelect %/edge.txt; "
                          "load P3.FileSelect %/behind.txt; tick P1.UseCB; tick P2.UseCB; "
                          "tick P3.UseCB; tick P2.VPointCB; tick P1.LCFCB; tick P3.LCFCB; "
                          "tick R1.UseCB; tick R2.UseCB"));
        panel.calcBoth();
        newMessages(panel);
    }
    /// The folder of the files for every %.
    QString in(QString steps) const { return steps.replace('%', QFileInfo(a).path()); }

    QString a;
    QString b;
    QString mix;
    QString empty;

private:
    QString spectrum(const QString &name, const QByteArray &at8350) const
    {
        return m_files.write(name, "8000 0\n8100 0\n8200 0\n8290 0\n8345 0\n8350 " + at8350 +
                                       "\n8355 1\n8460 1\n8560 1\n8660 1\n8760 1\n");
    }

    TestFiles m_files;
};

/// A panel with the inputs of the sample.
class Loaded : public FourPs {
public:
    explicit Loaded(const Sample &sample, int width = 1, const QList<double> &atV = {0.5})
    {
        sample.load(*this, width, atV);
        QCoreApplication::processEvents();
    }
};

/// A panel on the screen, large enough for the pictures of all its plots.
class Shown : public FourPs {
public:
    Shown()
    {
        resize(1400, 900);
        show();
        QTest::qWait(50); // until splitters are laid out and all is painted
    }
    /// With the inputs of the sample.
    explicit Shown(const Sample &sample, int width = 1, const QList<double> &atV = {0.5}) : Shown()
    {
        sample.load(*this, width, atV);
        QCoreApplication::processEvents();
    }
};

} // namespace window
