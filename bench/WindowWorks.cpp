#include "bench/WindowWorks.h"

#include "analysis/NonEquiv.h"
#include "app/Body.h"
#include "bench/Inputs.h"
#include "bench/PlainCopy.h"
#include "display/DispMBase.h"
#include "display/Displays.h"
#include "images/AEPoint.h"
#include "images/TDData0.h"
#include "panel/FourPs.h"
#include "panel/plots/ComparisonPlot.h"
#include "session/InputLoader.h"
#include "session/SessionFile.h"
#include "spectra/AFileSelect.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QCheckBox>
#include <QEvent>
#include <QFile>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSet>

#include <cmath>
#include <stdexcept>

namespace orvel::bench {
namespace {

constexpr QSize kWindowSize(1366, 736);

/// Everything that is pending, and what comes of it: layouts, paints.
void becomeIdle()
{
    while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents)) {
    }
}

/// Whether a widget was painted since the last time it was asked.
class PaintWatch : public QObject {
public:
    void watch(QWidget *widget)
    {
        widget->installEventFilter(this);
        m_wasPainted = false;
    }
    bool wasPainted() const { return m_wasPainted; }
    void forget() { m_wasPainted = false; }

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        m_wasPainted = m_wasPainted || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_wasPainted = false;
};

/// A window that is shown and used again and again.
class WindowWork : public Work {
protected:
    void show()
    {
        m_body = std::make_unique<Body>();
        m_body->resize(kWindowSize);
        m_body->show();
        becomeIdle();
    }
    void watch(const char *map)
    {
        m_watch.watch(m_body->panel()->findChild<DispMBase *>(QLatin1String(map))->area());
    }
    Body &body() const { return *m_body; }
    FourPs &panel() const { return *m_body->panel(); }
    PaintWatch &painted() { return m_watch; }
    const PaintWatch &painted() const { return m_watch; }

private:
    std::unique_ptr<Body> m_body;
    PaintWatch m_watch;
};

class WindowLoad : public WindowWork {
public:
    void prepare(Inputs &inputs) override
    {
        m_path = inputs.textMapFile();
        show();
        m_row = panel().findChild<AEPoint *>(); // the first one
        watch("DataMap");
    }

    void ready() override { painted().forget(); }

    void run() override
    {
        m_row->fileSelect()->newFile(m_path);
        becomeIdle();
    }

    QString check() const override
    {
        const auto map = m_row->map();
        if (!map || map->size() != kMapPixels || !painted().wasPainted()) {
            return QStringLiteral("the map is not loaded or not painted");
        }
        if (m_row->energyEv() != 7120.0) {
            return QStringLiteral("energy %1").arg(m_row->energyEv());
        }
        TextMapPixels pixels;
        for (int i = 0; i < kMapPixels; ++i) {
            const TextMapPixels::Pixel expected = pixels.next();
            if (map->absorptionPlane()[static_cast<size_t>(i)] !=
                std::log((expected.reference / 1e6) / (expected.signal / 1e6))) {
                return QStringLiteral("pixel %1").arg(i);
            }
        }
        return {};
    }

private:
    QString m_path;
    AEPoint *m_row = nullptr;
};

void saveSpectrum(const QString &path, const QVector<MutPoint> &points)
{
    QByteArray text;
    for (const MutPoint &point : points) {
        text += QByteArray::number(point.energyEv, 'g', 17) + ' ' +
                QByteArray::number(point.mut, 'g', 17) + '\n';
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        throw std::runtime_error("cannot write " + path.toStdString());
    }
}

void saveMap(const QString &path, const ImageData &image)
{
    TDData0 file;
    file.width = image.xNum();
    file.height = image.yNum();
    const auto &values = image.absorptionPlane();
    file.data = QVector<double>(values.begin(), values.end());
    file.valid = QVector<bool>(file.data.size(), true);
    if (!file.write(path)) {
        throw std::runtime_error("cannot write " + path.toStdString());
    }
}

/// The sample's analysis as the window is told it.
PanelState stateOf(const Sample &sample, Inputs &inputs)
{
    const AnalysisInput &input = sample.nonEquiv();
    PanelState state;
    SessionTexts &texts = state.texts;
    texts.edgeE = QStringLiteral("7120");
    texts.nonEquiv = true;
    for (size_t n = 0; n < texts.references.size(); ++n) {
        const ReferenceInput &reference = input.references[n];
        texts.references[n].file = inputs.path(qPrintable(QStringLiteral("ref%1.txt").arg(n)));
        texts.references[n].use = true;
        texts.references[n].valence = QString::number(reference.valence);
        saveSpectrum(texts.references[n].file, reference.spectrum.points());
    }
    texts.target.file = texts.references[1].file;
    for (size_t i = 0; i < texts.points.size(); ++i) {
        const EnergyPointInput &point = input.points[i];
        texts.points[i] = {true, i == 0 || i + 1 == texts.points.size(), point.vPoint,
                           QString::number(point.energyEv),
                           inputs.path(qPrintable(QStringLiteral("map%1.dat").arg(i)))};
        saveMap(texts.points[i].file, *point.map);
    }
    return state;
}

/// What is wrong with the map that the panel computed from its inputs; empty when nothing is.
QString checkResults(const FourPs &panel)
{
    const AnalysisInput input = panel.readInput();
    const Plan plan = checkMap(input);
    const auto maps = panel.results();
    if (!maps || plan.used.size() != kPointRows) {
        return QStringLiteral("no map");
    }
    NonEquivFit fit(gatherRefValues(input, plan));
    constexpr qint64 kEach = 997;
    for (qint64 i = 0; i < maps->size(); i += kEach) {
        std::vector<double> y;
        for (const size_t k : plan.used) {
            y.push_back(input.points[k].map->absorptionPlane()[static_cast<size_t>(i)]);
        }
        const ResultVector expected = fit.fit(y);
        for (const Quantity quantity :
             {Quantity::Ratio1, Quantity::DMut1, Quantity::Valence, Quantity::Amount}) {
            if (maps->at(quantity, i) != expected[static_cast<size_t>(indexOf(quantity))]) {
                return QStringLiteral("pixel %1").arg(i);
            }
        }
    }
    return {};
}

class WindowClick : public WindowWork {
public:
    void prepare(Inputs &inputs) override
    {
        show();
        panel().setState(stateOf(inputs.sample(), inputs));
        becomeIdle();
        m_valence = panel().findChild<QLineEdit *>(QStringLiteral("Valence")); // of reference 1
        m_box = panel().findChildren<AEPoint *>()[2]->findChild<QCheckBox *>(
            QStringLiteral("LCFCB")); // between the bounds: changes no range
        watch("ResultMap");
    }

    /// Another valence: the last maps do not answer the click.
    void ready() override
    {
        m_valence->setText(QString::number(++m_runs % 2));
        painted().forget();
    }

    void run() override
    {
        m_box->click();
        becomeIdle();
    }

    QString check() const override
    {
        return painted().wasPainted() ? checkResults(panel()) : QStringLiteral("not painted");
    }

private:
    QLineEdit *m_valence = nullptr;
    QCheckBox *m_box = nullptr;
    int m_runs = 0;
};

/// A session file chosen in the window, until it is idle: everything read, calculated and painted.
class SessionOpen : public WindowWork {
public:
    void prepare(Inputs &inputs) override
    {
        PanelState state = stateOf(inputs.sample(), inputs);
        for (int i = 0; i < 2; ++i) {
            state.texts.references[0].valence = QString::number(i);
            m_paths[i] = inputs.path(qPrintable(QStringLiteral("session%1.orvel").arg(i)));
            if (!writeSession(m_paths[i], state)) {
                throw std::runtime_error("cannot write " + m_paths[i].toStdString());
            }
        }
        show();
        watch("ResultMap");
    }

    void ready() override
    {
        ++m_runs;
        painted().forget();
    }

    void run() override
    {
        panel().openSession(m_paths[m_runs % 2]);
        becomeIdle();
    }

    QString check() const override
    {
        return painted().wasPainted() ? checkResults(panel()) : QStringLiteral("not painted");
    }

private:
    QString m_paths[2];
    int m_runs = 0;
};

/// The floor under it: the readings of its inputs.
class SessionRead : public Work {
public:
    void prepare(Inputs &inputs) override { m_texts = stateOf(inputs.sample(), inputs).texts; }
    void ready() override { m_input = {}; }
    void run() override { m_input = loadInput(m_texts).input; }
    QString check() const override
    {
        return checkMap(m_input).used.size() == kPointRows ? QString()
                                                           : QStringLiteral("rows are missing");
    }

private:
    SessionTexts m_texts;
    AnalysisInput m_input;
};

/// A million dots in "dMut/v or a", painted alone: again, or after a new result.
template <bool IsNew> class PaintScatter : public WindowWork {
public:
    void prepare(Inputs &inputs) override
    {
        show();
        FourPs &form = panel();
        form.setState(stateOf(inputs.sample(), inputs));
        becomeIdle();
        m_valence = form.findChild<QLineEdit *>(QStringLiteral("Valence"));
        m_area = form.findChild<Displays *>()->panel(Displays::DDMutVorA)->area();
    }

    void ready() override
    {
        if (IsNew) { // its paints are still pending when the timing begins
            m_valence->setText(QString::number(++m_runs % 2));
            panel().calcMap();
        }
    }

    void run() override { m_area->repaint(); }

    QString check() const override
    {
        const QImage image = m_area->grab().toImage();
        int marked = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                marked += image.pixel(x, y) == qRgb(0, 0, 255) ? 1 : 0;
            }
        }
        return marked > 100 ? QString() : QStringLiteral("%1 marked pixels").arg(marked);
    }

private:
    QLineEdit *m_valence = nullptr;
    DispArea *m_area = nullptr;
    int m_runs = 0;
};

/// A hundred thousand runs in "LCF vs MPS", painted alone: at another zoom, or with one more run.
template <bool IsZoomed> class PaintComparison : public Work {
public:
    void prepare(Inputs & /*inputs*/) override
    {
        m_panel = std::make_unique<DispABase>();
        m_panel->resize(300, 250);
        QObject::connect(m_panel.get(), &DispABase::draw, m_panel.get(), [this](QStylePainter *p) {
            m_plot.draw(p, *m_panel, {}, {}, 1.8, 3.2, m_colours);
        });
        for (int i = 0; i < kRuns; ++i) {
            add();
        }
        m_panel->show();
        becomeIdle();
    }

    void ready() override
    {
        if (IsZoomed) {
            m_panel->coord()->setXRange(1.8, 3.2 + 0.001 * (m_runs++ % 2));
        } else {
            add();
        }
    }

    void run() override { m_panel->area()->repaint(); }

    QString check() const override
    {
        const QImage image = m_panel->area()->grab().toImage();
        QSet<QRgb> seen;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                seen.insert(image.pixel(x, y));
            }
        }
        for (int i = 0; i < kColours; ++i) {
            if (!seen.contains(m_colours.colour(i).rgb())) {
                return QStringLiteral("no dot of colour %1").arg(i);
            }
        }
        return {};
    }

private:
    static constexpr int kRuns = 100000;
    static constexpr int kColours = 8;

    void add() // all over the plot, their colours in steps
    {
        const double x = 2.0 + std::fmod(m_added * 0.618033988749895, 1.0);
        const double y = 2.0 + std::fmod(m_added * 0.754877666246693, 1.0);
        m_plot.add({0.5, y, 0.5, x, m_added++ % kColours});
    }

    CColors m_colours;
    ComparisonPlot m_plot;
    std::unique_ptr<DispABase> m_panel;
    int m_added = 0;
    int m_runs = 0;
};

/// One frame while an energy is dragged in "Muts", among five spectra of 2000 points.
class DragEnergy : public WindowWork {
public:
    void prepare(Inputs &inputs) override
    {
        constexpr int kPoints = 2000;
        PanelState state = stateOf(inputs.sample(), inputs);
        for (int k = 0; k < kReferenceRows + 1; ++k) {
            QVector<MutPoint> points;
            for (int i = 0; i < kPoints; ++i) {
                const double energy = 6900.0 + 0.5 * i;
                points.append(
                    {0.0, energy, (energy < 7120.0 ? 0.1 : 1.0) + 0.05 * std::sin(i * 0.1 + k)});
            }
            const QString path = inputs.path(qPrintable(QStringLiteral("drag%1.txt").arg(k)));
            saveSpectrum(path, points);
            (k < kReferenceRows ? state.texts.references[static_cast<size_t>(k)].file
                                : state.texts.target.file) = path;
        }
        show();
        panel().setState(state);
        becomeIdle();
        m_row = panel().findChild<AEPoint *>();
        m_area = panel().findChild<Displays *>()->panel(Displays::DMuts)->area();
        m_x = static_cast<int>(m_area->coord()->sx(m_row->energyEv()));
        send(QEvent::MouseButtonPress, Qt::LeftButton);
    }

    void run() override
    {
        m_x += m_x > m_area->width() / 2 ? -1 : 1;
        send(QEvent::MouseMove, Qt::NoButton);
        becomeIdle();
    }

    QString check() const override
    {
        const double under = m_area->coord()->rx(m_x);
        return std::fabs(m_row->energyEv() - under) < 0.01
                   ? QString()
                   : QStringLiteral("energy %1 instead of %2").arg(m_row->energyEv()).arg(under);
    }

private:
    void send(QEvent::Type type, Qt::MouseButton button)
    {
        QMouseEvent event(type, QPointF(m_x, 0.5 * m_area->height()), button, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(m_area, &event);
    }

    AEPoint *m_row = nullptr;
    DispArea *m_area = nullptr;
    int m_x = 0;
};

template <class Make> class StartWork : public Work {
public:
    void prepare(Inputs & /*inputs*/) override
    {
        m_model = std::make_unique<Body>();
        m_model->resize(kWindowSize);
    }

    void ready() override
    {
        m_window.reset();
        m_watch.forget();
    }

    void run() override
    {
        m_window = Make()(*m_model);
        m_window->resize(kWindowSize);
        m_watch.watch(m_window.get());
        m_window->show();
        becomeIdle();
    }

    QString check() const override
    {
        if (!m_watch.wasPainted()) {
            return QStringLiteral("it was not painted");
        }
        const int widgets = copiedWidgets(*m_window);
        const int expected = copiedWidgets(*m_model);
        return widgets == expected
                   ? QString()
                   : QStringLiteral("%1 widgets instead of %2").arg(widgets).arg(expected);
    }

private:
    std::unique_ptr<Body> m_model;
    std::unique_ptr<QMainWindow> m_window;
    PaintWatch m_watch;
};

struct MakeBody {
    std::unique_ptr<QMainWindow> operator()(const Body & /*model*/) const
    {
        return std::make_unique<Body>();
    }
};

struct MakePlain {
    std::unique_ptr<QMainWindow> operator()(const Body &model) const { return plainCopyOf(model); }
};

} // namespace

std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // no display, but its fonts
    return std::make_unique<QApplication>(argc, argv);
}

std::unique_ptr<Work> makeWindowLoad()
{
    return std::make_unique<WindowLoad>();
}

std::unique_ptr<Work> makeSessionOpen()
{
    return std::make_unique<SessionOpen>();
}

std::unique_ptr<Work> makeSessionRead()
{
    return std::make_unique<SessionRead>();
}

std::unique_ptr<Work> makePaintScatter()
{
    return std::make_unique<PaintScatter<true>>();
}

std::unique_ptr<Work> makePaintScatterAgain()
{
    return std::make_unique<PaintScatter<false>>();
}

std::unique_ptr<Work> makePaintComparison()
{
    return std::make_unique<PaintComparison<true>>();
}

std::unique_ptr<Work> makePaintComparisonAgain()
{
    return std::make_unique<PaintComparison<false>>();
}

std::unique_ptr<Work> makeDragEnergy()
{
    return std::make_unique<DragEnergy>();
}

std::unique_ptr<Work> makeWindowClick()
{
    return std::make_unique<WindowClick>();
}

std::unique_ptr<Work> makeWindowStart()
{
    return std::make_unique<StartWork<MakeBody>>();
}

std::unique_ptr<Work> makeWindowEmpty()
{
    return std::make_unique<StartWork<MakePlain>>();
}

} // namespace orvel::bench
