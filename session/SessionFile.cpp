#include "session/SessionFile.h"

#include "text/OutputFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QSettings>
#include <QTemporaryDir>

#include <cstring>

namespace orvel {
namespace {

constexpr qint64 kLargestSession = 1 << 20; // ours have about 3 KiB
const QString kVersionKey = QStringLiteral("Session/Version");
const QString kVersion = QStringLiteral("1");

const QStringList kQuantityNames = {
    QStringLiteral("Ratio1"), QStringLiteral("Ratio2"), QStringLiteral("Ratio3"),
    QStringLiteral("Ratio4"), QStringLiteral("DMut1"),  QStringLiteral("DMut2"),
    QStringLiteral("DMut3"),  QStringLiteral("DMut4"),  QStringLiteral("Mut0"),
    QStringLiteral("C1"),     QStringLiteral("C2"),     QStringLiteral("Valence"),
    QStringLiteral("Amount"),
};

/// Names every key once, for reading and for writing: calls
///   field.text(key, QString &), field.given(key, optional<QString> &),
///   field.box(key, bool &), field.path(key, QString &), field.paths(key, QStringList &),
///   field.choice(key, Enum &, names in the order of the enum).
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
        field.box(key("Record", QStringLiteral("Rec") + kQuantityNames[q]),
                  texts.record[static_cast<size_t>(q)]);
    }
    field.path(QStringLiteral("Output/SaveFSelect"), texts.resultFile);

    field.choice(QStringLiteral("View/MapQuantity"), view.mapQuantity, kQuantityNames);
    field.choice(QStringLiteral("View/HgQuantity"), view.histogramQuantity, kQuantityNames);
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

class FieldWriter {
public:
    FieldWriter(QSettings &settings, const QDir &folder) : m_settings(settings), m_folder(folder) {}

    void text(const QString &key, const QString &value) { m_settings.setValue(key, value); }
    void given(const QString &key, const std::optional<QString> &value)
    {
        if (value) {
            text(key, *value);
        }
    }
    void box(const QString &key, bool value) { m_settings.setValue(key, value); }
    void path(const QString &key, const QString &value) { text(key, relative(value)); }
    void paths(const QString &key, const QStringList &values)
    {
        QStringList shortened;
        for (const QString &value : values) {
            shortened.append(relative(value));
        }
        m_settings.setValue(key, shortened);
    }
    template <class Enum>
    void choice(const QString &key, const Enum &value, const QStringList &names)
    {
        text(key, names[static_cast<int>(value)]);
    }

private:
    QString relative(const QString &path) const
    {
        if (path.isEmpty()) {
            return path;
        }
        const QString below = m_folder.relativeFilePath(path);
        return below.startsWith(QLatin1String("..")) ? path : below;
    }

    QSettings &m_settings;
    QDir m_folder;
};

/// Whether some value could make QSettings unpack a serialised object, which may claim any amount
/// of memory and stack. Such a value begins with '@', plain or as an escape; of our own, those of
/// empty lists ("@Invalid()") and of texts that begin with '@' ("@@...") do.
bool mayHoldObjects(const QByteArray &ini)
{
    for (int i = 0; i < ini.size(); ++i) {
        if (ini[i] != '=' && ini[i] != ',') {
            continue;
        }
        int first = i + 1;
        while (first < ini.size() && std::strchr(" \t\r\n\"", ini[first]) != nullptr &&
               ini[first] != '\0') {
            ++first;
        }
        const QByteArray value = ini.mid(first, 10);
        const bool escaped = value.startsWith('\\') && !value.startsWith("\\\\");
        const bool object =
            value.startsWith('@') && !value.startsWith("@@") && !value.startsWith("@Invalid()");
        if (escaped || object) {
            return true;
        }
    }
    return false;
}

int countOfValues(const QByteArray &ini)
{
    int values = 0;
    for (const QByteArray &line : ini.split('\n')) {
        values += !line.startsWith('[') && line.contains('=') ? 1 : 0;
    }
    return values;
}

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

SessionReading readSession(const QString &path)
{
    SessionReading reading;
    QFile file(path);
    const QFileInfo info(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        reading.error = QStringLiteral("there is no such readable file");
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
    if (mayHoldObjects(ini)) {
        reading.error = QStringLiteral("it has a value that begins with @ or \\");
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
    // QSettings merges with what is there, sorts its groups and does not notice a full disk. So it
    // writes a draft, which is checked, put in order, and replaces the old file as a whole.
    const QTemporaryDir scratch;
    const QString draftPath = scratch.filePath(QStringLiteral("session.ini"));
    QSettings settings(draftPath, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    settings.setValue(kVersionKey, kVersion);
    FieldWriter writer(settings, QFileInfo(path).absoluteDir());
    eachField(state, writer);
    settings.sync();
    QFile draft(draftPath);
    if (!draft.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray ini = draft.readAll();
    const int session = ini.indexOf("[Session]\n");
    if (countOfValues(ini) != settings.allKeys().size() || !ini.endsWith('\n') || session < 0) {
        return false;
    }
    const int next = ini.indexOf("\n[", session);
    const int end = next < 0 ? ini.size() : next + 1;

    OutputFile file(path);
    if (!file.open()) {
        return false;
    }
    file.write(ini.mid(session, end - session));
    file.write("\n");
    file.write(ini.left(session));
    file.write(ini.mid(end));
    return file.commit();
}

} // namespace orvel
