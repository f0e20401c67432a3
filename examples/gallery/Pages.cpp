#include "examples/gallery/Pages.h"

#include "display/CColors.h"
#include "display/CurvePainter.h"
#include "display/DispMBase.h"
#include "display/Displays.h"
#include "display/HistogramPainter.h"
#include "display/MapPainter.h"
#include "display/MarkLines.h"
#include "display/RegionPainter.h"
#include "display/cBar.h"
#include "examples/gallery/SampleData.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <cmath>

namespace orvel::gallery {
namespace {

/// A text of the program's own panel, for its translation.
QString panelText(const char *text)
{
    return QCoreApplication::translate("FourPs", text);
}

/// What every plot does before and after its contents.
template <class Contents>
void plot(DispABase *panel, QStylePainter *p, const PlotRange &range, Contents contents)
{
    ChCoord &coord = *panel->coord();
    coord.setFrameByMargins();
    p->fillRect(panel->area()->rect(), Qt::white);
    panel->setInitialRange(range.xMin, range.yMin, range.xMax, range.yMax);
    contents(*p, coord);
    panel->drawFrame(p, true);
}

void drawSpectra(DispABase *panel, QStylePainter *p, const std::vector<double> &valences)
{
    static const CColors colours;
    plot(panel, p, {7080.0, -0.1, 7260.0, 1.8}, [&](QPainter &painter, const ChCoord &coord) {
        int i = 0;
        for (const double valence : valences) {
            const Curve curve = spectrum(valence);
            drawCurve(painter, coord, curve.x.data(), curve.y.data(), curve.x.size(),
                      colours.colour(i++));
        }
    });
}

void drawHistogram(DispABase *panel, QStylePainter *p, const BinCounts &bins, const QColor &colour)
{
    const auto range = histogramRange(bins.from(), bins.to(), {bins.largest()});
    plot(panel, p, *range, [&](QPainter &painter, const ChCoord &coord) {
        drawHistogramGrid(painter, coord, bins.from(), bins.to());
        drawHistogramBars(painter, coord, {bins.from(), bins.step(), bins.counts()}, colour);
    });
}

void drawDots(DispABase *panel, QStylePainter *p, const PlotRange &range,
              const std::vector<double> &x, const std::vector<double> &y)
{
    plot(panel, p, range, [&](QPainter &painter, const ChCoord &coord) {
        for (std::size_t i = 0; i < x.size(); i += 5) {
            painter.fillRect(QRectF(coord.sx(x[i]) - 1, coord.sy(y[i]) - 1, 2, 2), Qt::blue);
        }
    });
}

/// Curves under two marker lines; the second is relative to the first.
QWidget *curvesPage()
{
    auto *page = new QWidget;
    auto *panel = new DispABase;
    auto *lines = new MarkLines(page);
    auto *grid = new QGridLayout(page);
    grid->addWidget(panel, 0, 0, 1, 4);
    for (int i = 0; i < 2; ++i) {
        auto *edit = new QLineEdit(i == 0 ? QStringLiteral("7114") : QStringLiteral("60"));
        grid->addWidget(new QLabel(i == 0 ? "line at" : "and at this distance"), 1, 2 * i);
        grid->addWidget(edit, 1, 2 * i + 1);
        lines->append(new MarkLine(edit, 0, page));
    }
    lines->lines()[1]->setRelativeTo(0);
    panel->area()->setMarkLines(lines);
    panel->setTitle(panelText("Valence"));
    panel->setTitlesPainted(true, true);
    panel->setTitles(panelText("Eng.[eV]"), panelText("mut"));
    QObject::connect(lines, &MarkLines::moving, panel, &DispABase::updateSurface);
    QObject::connect(panel, &DispABase::draw, panel, [panel, lines](QStylePainter *p) {
        drawSpectra(panel, p, {2.0, 2.33, 2.67, 3.0});
        const ChCoord &coord = *panel->coord();
        for (int i = 0; i < 2; ++i) {
            const double x = coord.sx(lines->position(i));
            p->setPen(i == 0 ? Qt::darkGreen : Qt::magenta);
            p->drawLine(QPointF(x, coord.frameY0()), QPointF(x, coord.frameY1()));
        }
    });
    return page;
}

/// Axis titles beside the surface.
QWidget *labelsPage()
{
    auto *panel = new DispABase;
    panel->setTitle(panelText("Target"));
    panel->setTitles(panelText("Eng.[eV]"), panelText("mut"));
    QObject::connect(panel, &DispABase::draw, panel,
                     [panel](QStylePainter *p) { drawSpectra(panel, p, {2.6}); });
    return panel;
}

QWidget *histogramPage(const Sample &sample)
{
    auto *panel = new DispABase;
    panel->setTitle(panelText("Valence"));
    panel->setTitlesPainted(true, true);
    panel->setTitles(panelText("Valence"), panelText("Num."));
    const BinCounts bins = histogramOf(sample.valence, 2.0, 3.2, 61);
    QObject::connect(panel, &DispABase::draw, panel,
                     [panel, bins](QStylePainter *p) { drawHistogram(panel, p, bins, Qt::blue); });
    return panel;
}

/// A selected rectangle, a polygon that crosses itself and one that is being drawn.
void drawOutlines(QPainter &painter, const ChCoord &coord, int width, int height)
{
    const CColors colours;
    const auto polygon = [&](const QVector<QPointF> &parts) {
        QPolygonF corners;
        for (const QPointF &part : parts) {
            corners << QPointF(width * part.x(), height * part.y());
        }
        return corners;
    };
    const QPolygonF box = polygon({{0.1, 0.1}, {0.35, 0.1}, {0.35, 0.4}, {0.1, 0.4}});
    const QPolygonF bow = polygon({{0.5, 0.6}, {0.9, 0.9}, {0.9, 0.6}, {0.5, 0.9}});
    const QPolygonF open = polygon({{0.5, 0.1}, {0.7, 0.3}, {0.9, 0.15}});
    drawOutline(painter, coord, {box, colours.colour(1), QStringLiteral("1"), true});
    drawOutline(painter, coord, {bow, colours.colour(4), QStringLiteral("2")});
    drawOutline(painter, coord, {open, colours.colour(6), QString(), false, true});
}

QWidget *mapPage(const Sample &sample, int palette, bool grid, bool inverted)
{
    auto *panel = new DispMBase;
    panel->setTitle(panelText("Valence"));
    panel->bar()->setType(palette);
    panel->bar()->setInvertCBar(inverted);
    const int step = grid ? 4 : 1; // pixels large enough for a grid to be seen
    const auto values = std::make_shared<std::vector<double>>();
    for (int j = 0; j < Sample::kHeight; j += step) {
        for (int i = 0; i < Sample::kWidth; i += step) {
            values->push_back(sample.valence[std::size_t(j * Sample::kWidth + i)]);
        }
    }
    const MapValues map = {values->data(), static_cast<qint64>(values->size()),
                           Sample::kWidth / step, Sample::kHeight / step, values};
    const auto painter = std::make_shared<MapPainter>();
    QObject::connect(panel, &DispMBase::draw, panel,
                     [panel, map, values, painter, grid](QStylePainter *p) {
                         if (!panel->area()->isRangeSet() && panel->bar()->isAutoScale()) {
                             const ValueLimits limits = limitsOf(map);
                             panel->setLimits(limits.low, limits.high);
                         }
                         panel->setInitialRange(0, 0, map.width, map.height);
                         painter->paint(*p, *panel->coord(), map, panel->bar()->scale(), grid);
                         drawOutlines(*p, *panel->coord(), map.width, map.height);
                     });
    QObject::connect(panel, &DispMBase::nowPos, panel, [panel, map, values](double x, double y) {
        const bool inside = x >= 0 && x < map.width && y >= 0 && y < map.height;
        const qint64 pixel = inside ? static_cast<qint64>(y) * map.width + static_cast<int>(x) : 0;
        panel->showValue(inside ? QString::number(map.values[pixel]) : QString());
    });
    return panel;
}

QWidget *palettesPage()
{
    auto *page = new QWidget;
    auto *grid = new QGridLayout(page);
    for (int type = 0; type < ColourScale::kTypes; ++type) {
        auto *bar = new cBar;
        bar->setType(type);
        grid->addWidget(bar, 0, type);
        grid->addWidget(new QLabel(QString::number(type + 1)), 1, type, Qt::AlignHCenter);
    }
    grid->setRowStretch(0, 1);
    return page;
}

void drawById(Displays::DispId id, DispABase *panel, QStylePainter *p, const Sample &sample)
{
    const auto titles = [panel](const char *x, const char *y) {
        panel->setTitles(panelText(x), panelText(y));
    };
    switch (id) {
    case Displays::DRef1:
    case Displays::DRef2:
    case Displays::DRef3:
    case Displays::DRef4:
        return drawSpectra(panel, p, {2.0 + (id - Displays::DRef1) / 3.0});
    case Displays::DTarget:
        return drawSpectra(panel, p, {2.6, 2.5});
    case Displays::DMuts:
        titles("Eng.[eV]", "mut");
        return drawSpectra(panel, p, {2.1, 2.5, 2.9});
    case Displays::DLCFvsMPS:
        titles("LCF", "MPs");
        return drawDots(panel, p, {1.8, 1.8, 3.2, 3.2}, sample.valence, sample.valence);
    case Displays::DHistA:
        titles("Valence", "Num.");
        return drawHistogram(panel, p, histogramOf(sample.valence, 2, 3.2, 61), Qt::red);
    case Displays::DHistDMut:
        titles("Thick.", "Num.");
        return drawHistogram(panel, p, histogramOf(sample.thickness, 0, 1.5, 16), Qt::blue);
    case Displays::DDMutVorA:
        titles("Valence", "Thick.");
        return drawDots(panel, p, {1.8, 0, 3.2, 1.5}, sample.valence, sample.thickness);
    case Displays::DM2M3:
        titles("M3", "M2");
        return drawDots(panel, p, {0, 1.8, 1.5, 3.2}, sample.thickness, sample.valence);
    }
}

/// The set; its last panel is not in the grid and shows in a window of its own only.
QWidget *displaysPage(const Sample &sample)
{
    auto *page = new QWidget;
    auto *set = new Displays;
    auto *button = new QPushButton(QStringLiteral("M2/M3"));
    auto *grid = new QGridLayout(page);
    grid->addWidget(set, 0, 0, 1, 2);
    grid->addWidget(button, 1, 1);
    grid->setColumnStretch(0, 1);
    QObject::connect(button, &QPushButton::clicked, set->panel(Displays::DM2M3),
                     &DispABase::popDock);
    QObject::connect(set, &Displays::draw, set,
                     [sample](Displays::DispId id, DispABase *panel, QStylePainter *p) {
                         drawById(id, panel, p, sample);
                     });
    return page;
}

/// Check boxes that can be switched, columns, and labels that step aside for each other.
QWidget *textPage()
{
    auto *area = new DispArea;
    const auto isOn = std::make_shared<std::array<bool, 3>>(std::array<bool, 3>{true, false, true});
    constexpr double kLeft = 20, kBottom = 44, kStep = 34, kSide = 24;
    QObject::connect(area, &DispArea::mPressed, area, [area, isOn](MouseC *mouse) {
        for (int i = 0; i < 3; ++i) {
            if (DrawText::inCheckBox(*mouse, kLeft, kBottom + i * kStep, kSide)) {
                (*isOn)[std::size_t(i)] = !(*isOn)[std::size_t(i)];
            }
        }
        area->update();
    });
    QObject::connect(area, &DispArea::draw, area, [area, isOn](QStylePainter *p) {
        p->fillRect(area->rect(), Qt::white);
        const QStringList names = {panelText("Valence"), panelText("Thick."),
                                   panelText("Eng.[eV]")};
        for (int i = 0; i < names.size(); ++i) {
            area->drawText()->drawCheckBox(p, (*isOn)[std::size_t(i)], names[i], kLeft, 220,
                                           kBottom + i * kStep, kSide);
        }
        QFont font = p->font();
        p->setPen(Qt::black);
        const QRectF box(260, 20, 150, 24);
        DrawText::drawTextColumn(p, box, 0, 28, font, DrawText::kLeft, DrawText::KeepSize, names,
                                 DrawText::kNoMaximum);
        DrawText::drawKeyValueColumn(p, box.translated(190, 0), 0, 28, font, names,
                                     {"2.71", "0.00123", "7112.5"}, DrawText::kNoMaximum);
        DrawText labels;
        p->setPen(Qt::darkBlue);
        for (int i = 0; i < 12; ++i) {
            QRectF label(30 + 48 * i, 250 + 60 * std::sin(i), 70, 20);
            while (labels.overlapsDrawn(label)) {
                label.translate(0, label.height());
            }
            labels.rememberRect(label);
            p->drawRect(label);
            DrawText::drawFittedText(p, label.adjusted(2, 2, -2, -2), font, DrawText::kCentre,
                                     DrawText::Fit, names[i % 3], DrawText::kNoMaximum);
        }
    });
    return area;
}

} // namespace

std::vector<Page> makePages()
{
    const Sample sample = makeSample();
    return {
        {QStringLiteral("curves"), curvesPage()},
        {QStringLiteral("labels"), labelsPage()},
        {QStringLiteral("histogram"), histogramPage(sample)},
        {QStringLiteral("map"), mapPage(sample, 0, false, false)},
        {QStringLiteral("map-grid"), mapPage(sample, 11, true, true)},
        {QStringLiteral("palettes"), palettesPage()},
        {QStringLiteral("displays"), displaysPage(sample)},
        {QStringLiteral("text"), textPage()},
    };
}

} // namespace orvel::gallery
