#include "panel/PixelWindow.h"

#include "display/ChCoord.h"
#include "display/KeyPointer.h"
#include "display/Letters.h"
#include "panel/AccessibleNames.h"
#include "panel/plots/PixelPlot.h"
#include "text/OutputFile.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QTextDocument>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace orvel {
namespace {

/// Of the table beside the drawing, in digits: the longest name, value and deviation.
constexpr int kNumbersDigits = 40;
constexpr QSize kPlotSize(620, 500);
constexpr int kMargin = 10;

int numbersWidth(const QFont &font)
{
    return QFontMetrics(font).horizontalAdvance(QString(kNumbersDigits, QLatin1Char('0')));
}

PixelPlotTexts plotTexts()
{
    PixelPlotTexts texts;
    texts.energy = QCoreApplication::translate("PixelWindow", "Energy [eV]");
    texts.absorption =
        QCoreApplication::translate("PixelWindow", "Absorption") + QStringLiteral(" \u03bct");
    texts.residual = QCoreApplication::translate("PixelWindow", "Residual");
    texts.measured = QCoreApplication::translate("PixelWindow", "measured");
    texts.vPoint = QCoreApplication::translate("PixelWindow", "V point");
    texts.fit = QCoreApplication::translate("PixelWindow", "fit");
    texts.background = QCoreApplication::translate("PixelWindow", "background");
    texts.sigma = QStringLiteral("\u00b11\u03c3");
    texts.exact = QCoreApplication::translate("PixelWindow", "exact fit");
    texts.noFit = QCoreApplication::translate("PixelWindow", "The fit has no finite result.");
    return texts;
}

QString methodText(Method method)
{
    switch (method) {
    case Method::ThreePoints:
        return QCoreApplication::translate("PixelWindow", "Three points");
    case Method::ExactFourPoints:
        return QCoreApplication::translate("PixelWindow", "Four points, exact");
    case Method::LeastSquares:
        return QCoreApplication::translate("PixelWindow", "Four points, least squares");
    case Method::NonEquivLinear:
        return QCoreApplication::translate("PixelWindow", "Non-equivalent, linear");
    case Method::NonEquivVictoreen:
        return QCoreApplication::translate("PixelWindow", "Non-equivalent, Victoreen");
    case Method::None:
        break;
    }
    return QString();
}

QString amountText(Method method)
{
    if (isNonEquiv(method)) {
        return QCoreApplication::translate("PixelWindow", "Total dMut");
    }
    return method == Method::ThreePoints
               ? QCoreApplication::translate("PixelWindow", "Relative dMut")
               : QStringLiteral("t/ts");
}

QString noiseText(const PixelReport &report)
{
    const bool isFromResiduals =
        report.noise == NoiseSource::Pooled || report.noise == NoiseSource::Pixel;
    if (isFromResiduals && report.freedom <= 0) {
        return QCoreApplication::translate("PixelWindow", "an exact fit does not tell");
    }
    switch (report.noise) {
    case NoiseSource::Pooled:
        return QCoreApplication::translate("PixelWindow", "from the residuals of all pixels");
    case NoiseSource::Given:
        return QCoreApplication::translate("PixelWindow", "as given");
    case NoiseSource::Counts:
        return QCoreApplication::translate("PixelWindow", "from the counted photons");
    case NoiseSource::Pixel:
        break;
    }
    return QCoreApplication::translate("PixelWindow", "from the residuals of this pixel");
}

QString notDetermined()
{
    return QCoreApplication::translate("PixelWindow", "not determined");
}

/// Rows of a table for the toolkit's rich text.
class Table {
public:
    void heading(const QString &text)
    {
        m_html += QStringLiteral("<tr><td colspan=3 style='padding-top:7px'><b>%1</b></td></tr>")
                      .arg(text.toHtmlEscaped());
    }
    void number(const QString &name, const PixelReport::Number &number)
    {
        const ShownNumber shown = shownNumber(number.value, number.sigma);
        if (!std::isfinite(number.value)) {
            row(name, QString(), notDetermined());
            return;
        }
        row(name, shown.value,
            QStringLiteral("\u00b1 ") + (shown.sigma.isEmpty() ? notDetermined() : shown.sigma));
    }
    void row(const QString &name, const QString &value, const QString &beside)
    {
        m_html += QStringLiteral("<tr valign=bottom><td style='white-space:nowrap'>%1</td><td "
                                 "align=right style='white-space:nowrap'>%2</td>"
                                 "<td style='white-space:nowrap'>%3</td></tr>")
                      .arg(name.toHtmlEscaped(), value.toHtmlEscaped(), beside.toHtmlEscaped());
    }
    void plainNumber(const QString &name, double value)
    {
        const bool isKnown = std::isfinite(value);
        row(name, isKnown ? QString::number(value, 'g', 3) : QString(),
            isKnown ? QString() : notDetermined());
    }
    QString html() const
    {
        return QStringLiteral("<table cellspacing=0 cellpadding=2>%1</table>").arg(m_html);
    }

private:
    QString m_html;
};

QString titleOf(const PixelReport &report)
{
    return QCoreApplication::translate("PixelWindow", "Pixel (%1, %2)").arg(report.x).arg(report.y);
}

QString positionOf(const PixelReport &report)
{
    return QCoreApplication::translate("PixelWindow", "position %1, %2")
        .arg(report.positionX)
        .arg(report.positionY);
}

QString numbersHtml(const PixelReport &report)
{
    Table table;
    const auto ofReference = [&](const QString &name, const PixelReport::Reference &reference,
                                 const PixelReport::Number &number) {
        const QString text = name.arg(reference.row + 1);
        if (reference.isHeld) {
            table.row(text, QStringLiteral("0"),
                      QCoreApplication::translate("PixelWindow", "at its bound"));
        } else {
            table.number(text, number);
        }
    };
    table.heading(QCoreApplication::translate("PixelWindow", "Results"));
    for (const PixelReport::Reference &reference : report.references) {
        ofReference(QCoreApplication::translate("PixelWindow", "Ratio of Ref.%1"), reference,
                    reference.ratio);
    }
    table.number(QCoreApplication::translate("PixelWindow", "Valence"), report.valence);
    if (isNonEquiv(report.method)) {
        for (const PixelReport::Reference &reference : report.references) {
            ofReference(QCoreApplication::translate("PixelWindow", "dMut of Ref.%1"), reference,
                        reference.amount);
        }
    }
    table.number(amountText(report.method), report.amount);

    table.heading(QCoreApplication::translate("PixelWindow", "Fit"));
    table.row(QCoreApplication::translate("PixelWindow", "Energies"),
              QString::number(report.points.size()), QString());
    table.row(QCoreApplication::translate("PixelWindow", "Degrees of freedom"),
              QString::number(report.freedom), QString());
    if (report.freedom > 0) { // else there are none
        table.plainNumber(QCoreApplication::translate("PixelWindow", "Residual, r.m.s."),
                          report.residual);
    }
    if (report.noise != NoiseSource::Counts) { // which has one for each energy
        table.plainNumber(QCoreApplication::translate("PixelWindow", "Absorption noise"),
                          report.sigma);
    }

    const QString heading =
        QStringLiteral("<p style='margin-bottom:0'><b style='font-size:large'>%1</b> &nbsp; %2<br>"
                       "%3</p>")
            .arg(titleOf(report).toHtmlEscaped(), positionOf(report).toHtmlEscaped(),
                 methodText(report.method).toHtmlEscaped());
    QString note =
        QCoreApplication::translate("PixelWindow", "Errors are one standard deviation. Noise: %1.")
            .arg(noiseText(report));
    const bool isBounded =
        std::any_of(report.references.begin(), report.references.end(),
                    [](const PixelReport::Reference &reference) { return reference.isHeld; });
    if (isBounded) {
        note += QLatin1Char(' ') +
                QCoreApplication::translate("PixelWindow", "Bounds are taken for certain.");
    }
    return heading + table.html() + QStringLiteral("<p>%1</p>").arg(note.toHtmlEscaped());
}

bool haveSameEnergies(const PixelReport &a, const PixelReport &b)
{
    return std::equal(a.points.begin(), a.points.end(), b.points.begin(), b.points.end(),
                      [](const PixelReport::Point &p, const PixelReport::Point &q) {
                          return p.energyEv == q.energyEv;
                      });
}

QString askByDialog(QWidget *parent, const QString &suggested, const QString &suffix)
{
    QFileDialog dialog(parent);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(suffix);
    dialog.setNameFilter(QStringLiteral("%1 (*.%2)").arg(suffix.toUpper(), suffix));
    dialog.selectFile(suggested);
    const bool isChosen = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
    return isChosen ? dialog.selectedFiles().constFirst() : QString();
}

bool writeWhole(const QString &path, const QByteArray &bytes)
{
    OutputFile file(path);
    if (!file.open()) {
        return false;
    }
    file.write(bytes);
    return file.commit();
}

} // namespace

/// The drawing. Energies around an edge lie close together, so the wheel magnifies them around the
/// pointer; a double click shows all again.
class PixelWindow::Plot : public QWidget {
public:
    explicit Plot(QWidget *parent) : QWidget(parent), m_keys(new KeyPointer(this)) {}

    QSize sizeHint() const override { return kPlotSize; }

    void take(const PixelReport &report)
    {
        if (!haveSameEnergies(report, m_report)) {
            m_isZoomed = false;
        }
        m_report = report;
        update();
    }
    const PixelReport &report() const { return m_report; }

    void paint(QPainter &painter, const QRectF &box) const
    {
        ChCoord main;
        ChCoord residuals;
        const PixelPlotTexts texts = plotTexts();
        layOut(QFontMetricsF(painter.font()), box, texts, main, residuals);
        drawPixelPlot(painter, m_report, texts, main, residuals);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        if (m_report.method != Method::None) {
            paint(painter, box());
        }
        m_keys->paint(painter);
    }
    void wheelEvent(QWheelEvent *event) override
    {
        ChCoord main;
        ChCoord residuals;
        layOut(QFontMetricsF(font()), box(), plotTexts(), main, residuals);
        constexpr double kEachUnit = 0.998; // 120 units a notch
        const double factor = std::pow(kEachUnit, event->angleDelta().y());
        const double centre = main.rxInRange(event->position().x());
        const double low = centre + (main.xMin() - centre) * factor;
        const double high = centre + (main.xMax() - centre) * factor;
        constexpr double kLeastEv = 1.0;
        if (std::isfinite(low) && std::isfinite(high) && high - low >= kLeastEv) {
            m_low = low;
            m_high = high;
            m_isZoomed = true;
            update();
        }
        event->accept();
    }
    void mouseDoubleClickEvent(QMouseEvent *) override
    {
        m_isZoomed = false;
        update();
    }

private:
    QRectF box() const { return QRectF(rect()).adjusted(kMargin, kMargin, -kMargin, -kMargin); }
    void layOut(const QFontMetricsF &metrics, const QRectF &box, const PixelPlotTexts &texts,
                ChCoord &main, ChCoord &residuals) const
    {
        layOutPixelPlot(metrics, box, m_report, texts, main, residuals);
        if (m_isZoomed) { // never wider than all
            const double low = std::max(m_low, main.xMin());
            const double high = std::min(m_high, main.xMax());
            main.setXRange(low, high);
            residuals.setXRange(low, high);
        }
    }

    KeyPointer *m_keys; ///< a child
    PixelReport m_report;
    bool m_isZoomed = false;
    double m_low = 0.0; ///< energies shown then
    double m_high = 0.0;
};

ShownNumber shownNumber(double value, double sigma)
{
    constexpr int kDigits = 6;
    constexpr int kModestDigits = 4;
    if (!std::isfinite(value) || !std::isfinite(sigma) || sigma < 0.0) {
        return {QString::number(value, 'g', kModestDigits), QString()};
    }
    if (sigma == 0.0) {
        return {QString::number(value, 'g', kDigits), QStringLiteral("0")};
    }
    // The exponent of the rounded deviation: 0.0996 becomes 0.10.
    const QString rounded = QString::number(sigma, 'e', 1);
    const int exponent = rounded.mid(rounded.indexOf(QLatin1Char('e')) + 1).toInt();
    constexpr int kMostDecimals = 8;
    const int decimals = 1 - exponent;
    if (decimals > kMostDecimals || std::fabs(value) >= 1e6 || sigma >= 1e6) {
        return {QString::number(value, 'g', kDigits), QString::number(sigma, 'g', 2)};
    }
    return {QString::number(value, 'f', std::max(0, decimals)),
            QString::number(sigma, 'f', std::max(0, decimals))};
}

PixelWindow::PixelWindow(QWidget *parent, AskPath askPath)
    : QWidget(parent, Qt::Tool), m_askPath(askPath ? std::move(askPath) : askByDialog),
      m_plot(new Plot(this)), m_scroll(new QScrollArea(this)), m_numbers(new QLabel(this)),
      m_outcome(new QLabel(this))
{
    setObjectName(QStringLiteral("PixelWindow"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false); // the program ends with its main window
    if (parent != nullptr) {
        setFont(parent->font()); // a window would not take it by itself
    }
    m_plot->setObjectName(QStringLiteral("Plot"));
    m_plot->setToolTip(QCoreApplication::translate(
        "PixelWindow", "Wheel: magnify the energies around the pointer. Double click: show all"));
    constexpr QSize kLeastPlot(380, 320);
    m_plot->setMinimumSize(kLeastPlot);
    m_plot->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_numbers->setObjectName(QStringLiteral("Numbers"));
    m_numbers->setTextFormat(Qt::RichText);
    m_numbers->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_numbers->setWordWrap(true);
    m_numbers->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_outcome->setObjectName(QStringLiteral("Outcome"));
    m_outcome->setTextFormat(Qt::PlainText);
    m_outcome->setWordWrap(true);

    auto *buttons = new QHBoxLayout;
    const auto addButton = [&](const char *name, const QString &suffix, const QString &tip) {
        auto *button = new QPushButton(suffix.toUpper() + QStringLiteral("..."), this);
        button->setObjectName(QLatin1String(name));
        button->setToolTip(tip);
        button->setAccessibleDescription(tip);
        connect(button, &QPushButton::clicked, this, [this, suffix] { save(suffix); });
        buttons->addWidget(button);
    };
    addButton("PngB", QStringLiteral("png"),
              QCoreApplication::translate("PixelWindow", "Save drawing and numbers as a picture"));
    addButton(
        "CsvB", QStringLiteral("csv"),
        QCoreApplication::translate("PixelWindow", "Save points, curves and numbers as text"));
    buttons->addStretch();

    auto *side = new QVBoxLayout;
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidgetResizable(true);
    m_scroll->setWidget(m_numbers);
    side->addWidget(m_scroll, 1);
    side->addWidget(m_outcome);
    side->addLayout(buttons);
    side->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    m_numbers->setFixedWidth(numbersWidth(font()));
    m_scroll->setFixedWidth(numbersWidth(font()) +
                            (letterPixelScale() > 1.0
                                 ? style()->pixelMetric(QStyle::PM_ScrollBarExtent) + kMargin
                                 : 0));
    m_outcome->setFixedWidth(numbersWidth(font()));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_plot, 1);
    layout->addLayout(side);
    setAccessibleNames(*this);
    resize(sizeHint()); // which windows take up to two thirds of the screen by themselves
}

void PixelWindow::show(const PixelReport &report)
{
    if (report.method == Method::None) {
        return;
    }
    setWindowTitle(titleOf(report));
    m_plot->take(report);
    m_numbers->setText(numbersHtml(report));
    const int height = m_numbers->heightForWidth(numbersWidth(font())); // layouts would cut it
    m_numbers->setMinimumHeight(height);
    constexpr double kOfScreen = 0.7; // large letters scroll: the window has to fit on the screen
    const double most = kOfScreen * screen()->availableSize().height();
    m_scroll->setMinimumHeight(letterPixelScale() > 1.0 ? qMin(height, qRound(most)) : height);
    m_outcome->clear();
    QWidget::show();
}

const PixelReport &PixelWindow::report() const
{
    return m_plot->report();
}

QImage PixelWindow::picture() const
{
    constexpr int kFineness = 2;
    constexpr int kDotsPerMeter = 3780; // 96 per inch, wherever it is made
    constexpr int kFontPixels = 13;
    QFont plain = font();
    plain.setPixelSize(kFontPixels);
    const int width = numbersWidth(plain);
    const QSize size(kPlotSize.width() + width + 2 * kMargin, kPlotSize.height());
    QImage image(size * kFineness, QImage::Format_RGB32);
    image.setDevicePixelRatio(kFineness);
    image.setDotsPerMeterX(kDotsPerMeter);
    image.setDotsPerMeterY(kDotsPerMeter);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(plain);
    m_plot->paint(painter,
                  QRectF(QPointF(), kPlotSize).adjusted(kMargin, kMargin, -kMargin, -kMargin));
    QTextDocument document;
    document.setDefaultFont(plain);
    document.setHtml(numbersHtml(report()));
    document.setTextWidth(width);
    painter.translate(kPlotSize.width() + kMargin, 0);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, Qt::black); // on white, also in a dark desktop
    document.documentLayout()->draw(&painter, context);
    painter.end();
    image.setDotsPerMeterX(kFineness * kDotsPerMeter);
    image.setDotsPerMeterY(kFineness * kDotsPerMeter);
    return image;
}

bool PixelWindow::savePng(const QString &path) const
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return picture().save(&buffer, "PNG") && writeWhole(path, buffer.data());
}

bool PixelWindow::saveCsv(const QString &path) const
{
    return writeWhole(path, csvOf(report()));
}

void PixelWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void PixelWindow::save(const QString &suffix)
{
    const QString suggested =
        QStringLiteral("pixel_%1_%2.%3").arg(report().x).arg(report().y).arg(suffix);
    const QString path = m_askPath(this, suggested, suffix);
    if (path.isEmpty()) {
        return;
    }
    const bool isWritten = suffix == QLatin1String("png") ? savePng(path) : saveCsv(path);
    m_outcome->setText((isWritten ? QCoreApplication::translate("PixelWindow", "Written: %1")
                                  : QCoreApplication::translate("PixelWindow", "Can't write %1"))
                           .arg(QDir::toNativeSeparators(path)));
}

} // namespace orvel
