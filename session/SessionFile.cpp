#include "session/SessionFile.h"

#include "session/RegionTexts.h"
#include "text/OutputFile.h"
#include "text/RegularFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QSettings>

namespace orvel {
namespace {

constexpr qint64 kLargestSession = 1 << 20; // ours have about 3 KiB
const QString kVersionKey = QStringLiteral("Session/Version");
const QString kVersion = QStringLiteral("1");
constexpr ushort kByteOrderMark = 0xFEFF; // QSettings drops it at the start of a value

QString regionKey(int index)
{
    return QStringLiteral("Regions/Region%1").arg(index + 1);
}

/// Names every key once, for reading and for writing: calls
///   field.text(key, QString &), field.given(key, optional<QString> &),
///   field.box(key, bool &), field.path(key, QString &), field.paths(key, QStringList &),
///   field.choice(key, Enum &, names in the order of the enum);
///   field.regions(vector<Region> &);
/// the same as rare...(key, value, default, ...) for keys that are written only where they differ.
template <class State, class Field> void eachField(State &state, Field &field)
{
    const auto key = [](const char *group, const QString &name) {
        return QLatin1String(group) + QLatin1Char('/') + name;
    };
    const auto numbered = [](const char *group, size_t number, const char *name) {
        return QStringLiteral("%1%2/%3")
            .arg(QLatin1String(group))
            .arg(number)
            .arg(QLatin1String(name));
    };
    auto &texts = state.texts;
    auto &view = state.view;

    field.given(QStringLiteral("Edge/EdgeE"), texts.edgeE);
    field.text(QStringLiteral("Edge/PreEEndDE"), texts.preEdgeEndDE);
    field.text(QStringLiteral("Edge/PostEStartDE"), texts.postEdgeStartDE);
    for (size_t i = 0; i < texts.references.size(); ++i) {
        auto &reference = texts.references[i];
        field.box(numbered("Ref", i + 1, "UseCB"), reference.use);
        field.path(numbered("Ref", i + 1, "XafsFS"), reference.file);
        field.text(numbered("Ref", i + 1, "DE"), reference.dE);
        field.text(numbered("Ref", i + 1, "Valence"), reference.valence);
    }
    field.path(QStringLiteral("Target/TargetFile"), texts.target.file);
    field.text(QStringLiteral("Target/DE"), texts.target.dE);
    for (size_t i = 0; i < texts.points.size(); ++i) {
        auto &point = texts.points[i];
        field.box(numbered("Point", i + 1, "UseCB"), point.use);
        field.box(numbered("Point", i + 1, "LCFCB"), point.lcf);
        field.box(numbered("Point", i + 1, "VPointCB"), point.vPoint);
        field.text(numbered("Point", i + 1, "Energy"), point.energy);
        field.path(numbered("Point", i + 1, "FileSelect"), point.file);
    }

    const QStringList lines = {QStringLiteral("Pre"), QStringLiteral("Post")};
    field.box(QStringLiteral("Method/TypeNonEquiv"), texts.nonEquiv);
    field.choice(QStringLiteral("Method/TypeTMK"), texts.solver,
                 {QStringLiteral("Exact"), QStringLiteral("LS")});
    field.choice(QStringLiteral("Method/SubEforRef"), texts.subForRef, lines);
    field.choice(QStringLiteral("Method/SubEforTarget"), texts.subForTarget, lines);
    field.choice(QStringLiteral("Method/NonEquivBG"), texts.background,
                 {QStringLiteral("Vic"), QStringLiteral("Linear")});

    const auto histogram = [&](const QString &letter, auto &entered) {
        field.text(key("Histogram", letter + QStringLiteral("From")), entered.from);
        field.text(key("Histogram", letter + QStringLiteral("To")), entered.to);
        field.text(key("Histogram", letter + QStringLiteral("Boxes")), entered.boxes);
        field.box(key("Histogram", letter + QStringLiteral("Auto")), entered.autoRange);
    };
    histogram(QStringLiteral("HgA"), texts.valenceHistogram);
    histogram(QStringLiteral("HgT"), texts.amountHistogram);

    for (int q = 0; q < kQuantities; ++q) {
        field.box(key("Record", QStringLiteral("Rec") + quantityNames()[q]),
                  texts.record[static_cast<size_t>(q)]);
    }
    field.path(QStringLiteral("Output/SaveFSelect"), texts.resultFile);

    const AdvancedTexts usual;
    auto &advanced = texts.advanced;
    field.rareBox(QStringLiteral("Advanced/SigmaMaps"), advanced.sigmaMaps, usual.sigmaMaps);
    field.rareBox(QStringLiteral("Advanced/SigmaFile"), advanced.sigmaFile, usual.sigmaFile);
    field.rareChoice(QStringLiteral("Advanced/Noise"), advanced.noise, usual.noise, noiseNames());
    field.rareText(QStringLiteral("Advanced/NoiseSigma"), advanced.noiseSigma, usual.noiseSigma);
    field.rareChoice(QStringLiteral("Advanced/NonEquivBounds"), advanced.nonEquivBounds,
                     usual.nonEquivBounds, nonEquivBoundsNames());
    field.rareChoice(QStringLiteral("Advanced/LcfBounds"), advanced.lcfBounds, usual.lcfBounds,
                     lcfBoundsNames());

    field.regions(texts.regions);

    auto &adviser = advanced.adviser;
    const AdviserTexts &usualAdvice = usual.adviser;
    field.rareText(QStringLiteral("Adviser/Points"), adviser.points, usualAdvice.points);
    field.rareBox(QStringLiteral("Adviser/ByFractions"), adviser.byFractions,
                  usualAdvice.byFractions);
    field.rareText(QStringLiteral("Adviser/Low"), adviser.low, usualAdvice.low);
    field.rareText(QStringLiteral("Adviser/High"), adviser.high, usualAdvice.high);
    field.rareText(QStringLiteral("Adviser/Spacing"), adviser.spacing, usualAdvice.spacing);
    field.rareText(QStringLiteral("Adviser/Amount"), adviser.amount, usualAdvice.amount);
    field.rareText(QStringLiteral("Adviser/Noise"), adviser.noise, usualAdvice.noise);
    for (size_t i = 0; i < adviser.parts.size(); ++i) {
        field.rareText(QStringLiteral("Adviser/Part%1").arg(i + 1), adviser.parts[i],
                       usualAdvice.parts[i]);
    }

    field.choice(QStringLiteral("View/MapQuantity"), view.mapQuantity, mapQuantityNames());
    field.choice(QStringLiteral("View/HgQuantity"), view.histogramQuantity, quantityNames());
    field.choice(QStringLiteral("View/Normalize"), view.normalize,
                 {QStringLiteral("None"), QStringLiteral("SubPre"), QStringLiteral("EJ"),
                  QStringLiteral("2Vics")});
    field.box(QStringLiteral("View/FullRangeCB"), view.fullRange);
    field.box(QStringLiteral("View/MapWGrid"), view.mapWithGrid);
    field.box(QStringLiteral("View/ShowDMap"), view.showDataMap);
    field.box(QStringLiteral("View/ShowDAB"), view.showGraphs);
    field.box(QStringLiteral("View/ShowMap"), view.showResultMap);
    field.text(QStringLiteral("View/ShowMapB"), view.dataMapRow);
    field.paths(QStringLiteral("View/DispFiles"), view.displayFiles);
    const ViewTexts usualView;
    field.rareBox(QStringLiteral("View/HideUncertain"), view.hideUncertain,
                  usualView.hideUncertain);
    field.rareText(QStringLiteral("View/SigmaLimit"), view.sigmaLimit, usualView.sigmaLimit);
    field.rareBox(QStringLiteral("View/ShowPixelWindow"), view.showPixelWindow,
                  usualView.showPixelWindow);
    field.rareBox(QStringLiteral("View/RegionsAlone"), view.regionsAlone, usualView.regionsAlone);
}

class FieldReader {
public:
    FieldReader(const QSettings &settings, const QDir &folder, SessionReading &reading)
        : m_settings(settings), m_folder(folder), m_reading(reading)
    {
    }

    void text(const QString &key, QString &value)
    {
        if (has(key)) {
            value = textAt(key);
        }
    }
    void given(const QString &key, std::optional<QString> &value)
    {
        if (has(key)) {
            value = textAt(key);
        }
    }
    void box(const QString &key, bool &value)
    {
        if (has(key)) {
            const QString text = textAt(key);
            value = text == QLatin1String("true") || text == QLatin1String("1");
        }
    }
    void path(const QString &key, QString &value)
    {
        if (has(key)) {
            value = absolute(textAt(key));
        }
    }
    void paths(const QString &key, QStringList &values)
    {
        if (has(key)) {
            for (const QString &path : m_settings.value(key).toStringList()) {
                if (!path.isEmpty()) {
                    values.append(absolute(path));
                }
            }
        }
    }
    template <class Enum> void choice(const QString &key, Enum &value, const QStringList &names)
    {
        if (!has(key)) {
            return;
        }
        const QString name = textAt(key);
        const int index = names.indexOf(name);
        if (index >= 0) {
            value = static_cast<Enum>(index);
        } else {
            QStringList &notes =
                key.startsWith(QLatin1String("View/")) ? m_reading.viewNotes : m_reading.notes;
            notes.append(QStringLiteral("unknown choice %1=%2, taken as %3")
                             .arg(key, name, names[static_cast<int>(value)]));
        }
    }

    void regions(std::vector<Region> &values)
    {
        for (int i = 0; i < kMostRegions; ++i) {
            const QString key = regionKey(i);
            if (!has(key)) {
                continue;
            }
            if (const auto region = regionFromText(textAt(key))) {
                values.push_back(*region);
            } else {
                m_reading.notes.append(QStringLiteral("%1 is no region, ignored").arg(key));
            }
        }
    }

    void rareText(const QString &key, QString &value, const QString &) { text(key, value); }
    void rareBox(const QString &key, bool &value, bool) { box(key, value); }
    template <class Enum>
    void rareChoice(const QString &key, Enum &value, Enum, const QStringList &names)
    {
        choice(key, value, names);
    }

    /// Keys of the file that no field has.
    QStringList unknownKeys() const
    {
        QStringList unknown;
        for (const QString &key : m_settings.allKeys()) {
            if (!m_known.contains(key)) {
                unknown.append(key);
            }
        }
        return unknown;
    }

    bool has(const QString &key)
    {
        m_known.insert(key);
        return m_settings.contains(key);
    }
    QString textAt(const QString &key) const
    {
        // An unquoted comma makes a list of one text.
        return m_settings.value(key).toStringList().join(QLatin1Char(','));
    }

private:
    QString absolute(const QString &path) const
    {
        return path.isEmpty() ? path : m_folder.absoluteFilePath(path);
    }

    const QSettings &m_settings;
    QDir m_folder;
    SessionReading &m_reading;
    QSet<QString> m_known;
};

/// Writes INI text as QSettings reads it. (QSettings itself sorts the groups, breaks characters
/// beyond the basic plane and does not notice a full disk.)
class FieldWriter {
public:
    explicit FieldWriter(const QDir &folder) : m_folder(folder) {}

    void text(const QString &key, const QString &value) { write(key, quoted(value)); }
    void given(const QString &key, const std::optional<QString> &value)
    {
        if (value) {
            text(key, *value);
        }
    }
    void box(const QString &key, bool value)
    {
        text(key, value ? QStringLiteral("true") : QStringLiteral("false"));
    }
    void path(const QString &key, const QString &value) { text(key, relative(value)); }
    void paths(const QString &key, const QStringList &values)
    {
        QStringList texts;
        for (const QString &value : values) {
            texts.append(quoted(relative(value)));
        }
        write(key, texts.join(QStringLiteral(", ")));
    }
    template <class Enum>
    void choice(const QString &key, const Enum &value, const QStringList &names)
    {
        text(key, names[static_cast<int>(value)]);
    }
    void regions(const std::vector<Region> &values)
    {
        for (size_t i = 0; i < values.size(); ++i) {
            text(regionKey(static_cast<int>(i)), textOf(values[i]));
        }
    }

    void rareText(const QString &key, const QString &value, const QString &usual)
    {
        if (value != usual) {
            text(key, value);
        }
    }
    void rareBox(const QString &key, bool value, bool usual)
    {
        if (value != usual) {
            box(key, value);
        }
    }
    template <class Enum>
    void rareChoice(const QString &key, const Enum &value, Enum usual, const QStringList &names)
    {
        if (value != usual) {
            choice(key, value, names);
        }
    }

    QByteArray ini() const { return m_text.toUtf8(); }

private:
    void write(const QString &key, const QString &value)
    {
        const QString group = key.section(QLatin1Char('/'), 0, 0);
        if (group != m_group) {
            m_text += (m_group.isEmpty() ? QString() : QStringLiteral("\n")) + QLatin1Char('[') +
                      group + QStringLiteral("]\n");
            m_group = group;
        }
        m_text += key.section(QLatin1Char('/'), 1) + QLatin1Char('=') + value + QLatin1Char('\n');
    }

    /// A value in quotes where it needs them: separators, outer blanks, escapes.
    static QString quoted(const QString &value)
    {
        static const QString special = QStringLiteral("\"\\;,=");
        bool plain = value == value.trimmed();
        QString escaped = value.startsWith(QLatin1Char('@')) ? QStringLiteral("@") : QString();
        bool afterNumber = false; // a hexadecimal escape takes all digits that follow
        for (const QChar c : value) {
            const bool isDigit = QStringLiteral("0123456789abcdefABCDEF").contains(c);
            if (c.unicode() < 0x20 || c.unicode() == 0x7F || c.unicode() == kByteOrderMark ||
                (afterNumber && isDigit)) {
                escaped += QStringLiteral("\\x%1").arg(c.unicode(), 0, 16);
                afterNumber = true;
                plain = false;
                continue;
            }
            afterNumber = false;
            plain = plain && !special.contains(c);
            if (c == QLatin1Char('"') || c == QLatin1Char('\\')) {
                escaped += QLatin1Char('\\');
            }
            escaped += c;
        }
        return plain ? escaped : QLatin1Char('"') + escaped + QLatin1Char('"');
    }

    /// Relative where the path lies below the folder; letter by letter, since ".." behind a link
    /// must not be resolved here.
    QString relative(const QString &path) const
    {
        const QString folder = m_folder.absolutePath() + QLatin1Char('/');
        const QString below = path.startsWith(folder) ? path.mid(folder.size()) : path;
        return m_folder.absoluteFilePath(below) == path ? below : path;
    }

    QDir m_folder;
    QString m_group;
    QString m_text;
};

/// Finds values that would make QSettings unpack a serialised object, which may claim any amount
/// of memory and stack: those that begin with '@', be it quoted or an escape. Of our own, texts
/// that begin with '@' do ("@@..."); QSettings itself writes "@Invalid()" for an empty list.
class ObjectFinder {
public:
    explicit ObjectFinder(const QByteArray &ini) : m_ini(ini) {}

    bool find()
    {
        bool inValue = false;
        bool inQuotes = false;
        for (m_at = 0; m_at < m_ini.size(); ++m_at) {
            const char c = m_ini[m_at];
            if (c == '\\') {
                ++m_at; // what follows separates nothing
            } else if (c == '"') {
                inQuotes = !inQuotes;
            } else if (!inQuotes && (c == '\n' || c == '\r' || c == ';')) {
                inValue = false; // a ';' begins a comment, to be looked at as if it were a line
            } else if (!inQuotes && ((c == '=' && !inValue) || (c == ',' && inValue))) {
                inValue = true;
                if (isObject(m_at + 1)) {
                    return true;
                }
            }
        }
        return false;
    }

private:
    char at(int i) const { return i < m_ini.size() ? m_ini[i] : '\0'; }

    bool isObject(int i) const
    {
        while (at(i) == ' ' || at(i) == '\t' || at(i) == '"' ||
               (at(i) == '\\' && (at(i + 1) == '\n' || at(i + 1) == '\r'))) {
            i += at(i) == '\\' ? 2 : 1;
        }
        if (at(i) == '@') {
            return at(i + 1) != '@' && m_ini.mid(i, 10) != "@Invalid()";
        }
        return at(i) == '\\' && escapedCharacter(i + 1) == '@';
    }

    /// The character of a numeric escape as QSettings takes it, of any number of digits; else 0.
    int escapedCharacter(int i) const
    {
        const int base = at(i) == 'x' ? 16 : 8;
        i += base == 16 ? 1 : 0;
        int code = 0;
        bool isDigit = true;
        for (int digit = QByteArray(1, at(i)).toInt(&isDigit, base); isDigit;
             digit = QByteArray(1, at(++i)).toInt(&isDigit, base)) {
            code = (code * base + digit) & 0xFFFF;
        }
        return code;
    }

    const QByteArray &m_ini;
    int m_at = 0;
};

bool hasSessionLine(const QByteArray &ini)
{
    for (const QByteArray &line : ini.split('\n')) {
        if (line.trimmed() == "[Session]") {
            return true;
        }
    }
    return false;
}

} // namespace

bool isSession(const QString &path)
{
    QFile file(path);
    if (openRegular(file) != ReadFailure::None || file.size() > kLargestSession) {
        return false;
    }
    QByteArray ini = file.readAll();
    constexpr char kMark[] = "\xEF\xBB\xBF";
    if (ini.startsWith(kMark)) {
        ini.remove(0, 3);
    }
    for (const QByteArray &line : ini.split('\n')) {
        const QByteArray text = line.trimmed();
        if (!text.isEmpty() && !text.startsWith(';') && !text.startsWith('#')) {
            return text.startsWith('[') && hasSessionLine(ini);
        }
    }
    return false;
}

SessionReading readSession(const QString &path)
{
    SessionReading reading;
    QFile file(path);
    const QFileInfo info(path);
    const ReadFailure failure = openRegular(file);
    if (failure != ReadFailure::None) {
        reading.error = describe(failure);
        return reading;
    }
    QByteArray ini = file.read(kLargestSession + 1);
    if (ini.size() > kLargestSession) {
        reading.error = QStringLiteral("it is far too large for a session");
        return reading;
    }
    if (ini.startsWith("\xEF\xBB\xBF")) {
        ini.remove(0, 3); // a byte-order mark, which QSettings skips too
    }
    if (!hasSessionLine(ini)) { // QSettings does not tell of empty groups
        reading.error = QStringLiteral("it has no [Session] group");
        return reading;
    }
    if (ObjectFinder(ini).find()) {
        reading.error = QStringLiteral("it has a serialised object (@...) for a value");
        return reading;
    }
    QSettings settings(path, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    FieldReader reader(settings, info.absoluteDir(), reading);
    eachField(reading.state, reader);
    const bool hasVersion = reader.has(kVersionKey); // missing: the only one there is
    if (settings.status() != QSettings::NoError) {
        reading.error = QStringLiteral("its lines are not those of a session file");
    } else if (hasVersion && reader.textAt(kVersionKey) != kVersion) {
        reading.error = QStringLiteral("its version %1 is unknown").arg(reader.textAt(kVersionKey));
    }
    for (const QString &key : reader.unknownKeys()) {
        reading.notes.append(QStringLiteral("unknown key %1").arg(key));
    }
    return reading;
}

bool writeSession(const QString &path, const PanelState &state)
{
    FieldWriter writer(QFileInfo(path).absoluteDir());
    writer.text(kVersionKey, kVersion);
    eachField(state, writer);
    OutputFile file(path);
    if (!file.open()) {
        return false;
    }
    file.write(writer.ini());
    return file.commit();
}

} // namespace orvel
