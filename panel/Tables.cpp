#include "panel/Tables.h"

#include "images/TDData0.h"
#include "text/Csv.h"
#include "text/NumberText.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvel {
namespace {

void append(QByteArray &out, double value)
{
    std::array<char, kShortestTextSize> text;
    out.append(text.data(), writeShortest(value, text.data()));
}

/// A comment is one line, whatever the name of a file holds.
QByteArray fieldOf(QString text)
{
    text.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
    return csvField(text);
}

QByteArray headOf(const char *first, const Settings &settings)
{
    QByteArray out = first;
    for (const Setting &setting : settings) {
        out += "# " + fieldOf(setting.name) + ',' + fieldOf(setting.value) + '\n';
    }
    return out;
}

template <class Choice> QString nameOf(const QStringList &names, Choice choice)
{
    return names.value(static_cast<int>(choice));
}

QString onOff(bool on)
{
    return on ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

QByteArray curvesCsv(const Settings &settings, const std::vector<TableCurve> &curves)
{
    QByteArray out = headOf("# orvel curves V1.0\n", settings) + "curve,x,y\n";
    for (const TableCurve &curve : curves) {
        const QByteArray name = fieldOf(curve.name);
        for (size_t i = 0; i < curve.x.size(); ++i) {
            out += name + ',';
            append(out, curve.x[i]);
            out += ',';
            append(out, curve.y[i]);
            out += '\n';
        }
    }
    return out;
}

QByteArray gridCsv(const Settings &settings, const MapValues &map)
{
    QByteArray out = headOf("# orvel map V1.0\n", settings);
    for (int row = 0; row < map.height; ++row) {
        for (int column = 0; column < map.width; ++column) {
            if (column > 0) {
                out += ',';
            }
            append(out, map.at(static_cast<qint64>(row) * map.width + column));
        }
        out += '\n';
    }
    return out;
}

bool writeProcessedMap(const QString &path, const QString &id, const MapValues &map)
{
    TDData0 file;
    file.dataId = id;
    file.width = map.width;
    file.height = map.height;
    const auto pixels = static_cast<int>(map.size()); // an image has at most 2^27
    file.data.resize(pixels);
    file.valid.resize(pixels);
    for (int i = 0; i < pixels; ++i) {
        const double value = map.at(i);
        file.data[i] = value;
        file.valid[i] = std::isfinite(value);
        if (file.valid[i]) {
            file.minVal = std::min(file.minVal, value);
            file.maxVal = std::max(file.maxVal, value);
        }
    }
    return file.write(path);
}

Settings settingsOf(const SessionTexts &texts)
{
    Settings settings = {{QStringLiteral("Software"), QStringLiteral("orvel " ORVEL_VERSION)}};
    const auto add = [&settings](const QString &name, const QString &value) {
        settings.push_back({name, value});
    };
    add(QStringLiteral("Edge"), texts.edgeE.value_or(QString()));
    add(QStringLiteral("PreEdgeEnd"), texts.preEdgeEndDE);
    add(QStringLiteral("PostEdgeStart"), texts.postEdgeStartDE);
    int n = 0;
    for (const ReferenceTexts &reference : texts.references) {
        ++n;
        if (reference.use) {
            add(QStringLiteral("Reference%1").arg(n),
                QStringLiteral("%1; dE %2 eV; valence %3")
                    .arg(reference.file, reference.dE, reference.valence));
        }
    }
    if (!texts.target.file.isEmpty()) {
        add(QStringLiteral("Target"),
            QStringLiteral("%1; dE %2 eV").arg(texts.target.file, texts.target.dE));
    }
    n = 0;
    for (const PointTexts &point : texts.points) {
        ++n;
        if (point.use) {
            add(QStringLiteral("Energy%1").arg(n),
                QStringLiteral("%1 eV%2%3; %4")
                    .arg(point.energy, point.vPoint ? QStringLiteral("; V point") : QString(),
                         point.lcf ? QStringLiteral("; LCF") : QString(), point.file));
        }
    }
    add(QStringLiteral("NonEquivalent"), onOff(texts.nonEquiv));
    if (texts.nonEquiv) {
        const bool isLinear = texts.background == BackgroundLine::Linear;
        add(QStringLiteral("Background"),
            isLinear ? QStringLiteral("Linear") : QStringLiteral("Victoreen"));
        add(QStringLiteral("Bounds"), nameOf(nonEquivBoundsNames(), texts.advanced.nonEquivBounds));
    } else {
        const bool isExact = texts.solver == FourPointsSolver::Exact;
        add(QStringLiteral("FourPoints"),
            isExact ? QStringLiteral("Exact") : QStringLiteral("LeastSquares"));
    }
    const auto line = [](SubtractedLine which) {
        return which == SubtractedLine::Pre ? QStringLiteral("PreEdge")
                                            : QStringLiteral("PostEdge");
    };
    add(QStringLiteral("SubtractedFromReferences"), line(texts.subForRef));
    add(QStringLiteral("SubtractedFromTarget"), line(texts.subForTarget));
    add(QStringLiteral("LcfBounds"), nameOf(lcfBoundsNames(), texts.advanced.lcfBounds));
    if (texts.advanced.wantsSigmaMaps()) {
        add(QStringLiteral("Noise"), nameOf(noiseNames(), texts.advanced.noise));
        if (texts.advanced.noise == NoiseSource::Given) {
            add(QStringLiteral("NoiseSigma"), texts.advanced.noiseSigma);
        }
    }
    return settings;
}

QString unitOf(Quantity quantity, Method method)
{
    QString mut = QStringLiteral("\u03bct");
    const bool isLinear = method == Method::NonEquivLinear;
    switch (quantity) {
    case Quantity::DMut1:
    case Quantity::DMut2:
    case Quantity::DMut3:
    case Quantity::DMut4:
    case Quantity::Mut0:
    case Quantity::Residual:
        return mut;
    case Quantity::C1:
        return isLinear ? QStringLiteral("1/eV") : QStringLiteral("1/\u00c5\u00b3");
    case Quantity::C2:
        return QStringLiteral("1/\u00c5\u2074");
    case Quantity::Amount:
    case Quantity::SigmaAmount:
        return isNonEquiv(method)              ? mut
               : method == Method::ThreePoints ? QString()
                                               : QStringLiteral("t/ts");
    default:
        return QString(); // fractions and valences
    }
}

} // namespace orvel
