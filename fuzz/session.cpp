// Session files.

#include "fuzz/Fuzz.h"
#include "session/SessionFile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <tuple>

using namespace orvel::fuzz;
using orvel::PanelState;

namespace {

// Every member has to be named here: a key that is read and not written would go unnoticed.
auto membersOf(const orvel::ReferenceTexts &t)
{
    return std::tie(t.use, t.file, t.dE, t.valence);
}
auto membersOf(const orvel::PointTexts &t)
{
    return std::tie(t.use, t.lcf, t.vPoint, t.energy, t.file);
}
auto membersOf(const orvel::HistogramTexts &t)
{
    return std::tie(t.from, t.to, t.boxes, t.autoRange);
}
auto plainMembersOf(const orvel::SessionTexts &t)
{
    return std::tie(t.edgeE, t.preEdgeEndDE, t.postEdgeStartDE, t.target.file, t.target.dE,
                    t.nonEquiv, t.solver, t.subForRef, t.subForTarget, t.background, t.record,
                    t.resultFile, t.regions);
}
auto membersOf(const orvel::ViewTexts &t)
{
    return std::tie(t.mapQuantity, t.histogramQuantity, t.normalize, t.fullRange, t.mapWithGrid,
                    t.showDataMap, t.showGraphs, t.showResultMap, t.dataMapRow, t.displayFiles,
                    t.regionsAlone);
}

template <class Rows> bool sameRows(const Rows &a, const Rows &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), [](const auto &one, const auto &other) {
        return membersOf(one) == membersOf(other);
    });
}

bool sameState(const PanelState &a, const PanelState &b)
{
    return plainMembersOf(a.texts) == plainMembersOf(b.texts) &&
           sameRows(a.texts.references, b.texts.references) &&
           sameRows(a.texts.points, b.texts.points) &&
           membersOf(a.texts.valenceHistogram) == membersOf(b.texts.valenceHistogram) &&
           membersOf(a.texts.amountHistogram) == membersOf(b.texts.amountHistogram) &&
           membersOf(a.view) == membersOf(b.view);
}

/// Whether a form could hold a text: no zero character, no half of a surrogate pair (which a file
/// in UTF-8 cannot hold either). Only an escape or a damaged file gives them.
bool isWhole(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        const bool half =
            text[i].isSurrogate() &&
            !(text[i].isHighSurrogate() && i + 1 < text.size() && text[++i].isLowSurrogate());
        if (half || text[i].isNull()) {
            return false;
        }
    }
    return true;
}
bool isWhole(const QStringList &texts)
{
    return isWhole(texts.join(QLatin1Char('\n')));
}
bool isWhole(const std::optional<QString> &text)
{
    return !text || isWhole(*text);
}
template <class NoText> bool isWhole(const NoText &)
{
    return true;
}

template <class Members> bool areWhole(const Members &members)
{
    return std::apply([](const auto &...member) { return (isWhole(member) && ...); }, members);
}

bool isWhole(const PanelState &state)
{
    const auto rowIsWhole = [](const auto &row) { return areWhole(membersOf(row)); };
    const auto &texts = state.texts;
    return areWhole(plainMembersOf(texts)) && areWhole(membersOf(texts.valenceHistogram)) &&
           areWhole(membersOf(texts.amountHistogram)) && areWhole(membersOf(state.view)) &&
           std::all_of(texts.references.begin(), texts.references.end(), rowIsWhole) &&
           std::all_of(texts.points.begin(), texts.points.end(), rowIsWhole);
}

/// A name not used before: the settings class keeps files it has parsed, and takes one of equal
/// size that was replaced within a millisecond for the old one.
QString freshName(const char *stem)
{
    static int number = 0;
    return QStringLiteral("%1%2.ini").arg(QLatin1String(stem)).arg(++number);
}

void requireRoundTrip(const PanelState &state)
{
    const QString path = scratchPath(freshName("written"));
    require(orvel::writeSession(path, state), "a state can be written");
    const orvel::SessionReading back = orvel::readSession(path);
    QFile::remove(path);
    require(back.error.isEmpty() && back.notes.isEmpty() && back.viewNotes.isEmpty(),
            "what was written is a session without a fault");
    require(sameState(state, back.state), "a state survives being written");
}

/// A state with texts that a user may have typed and files that may have been chosen.
PanelState stateWith(const QStringList &pieces)
{
    PanelState state;
    for (int i = 0; i < pieces.size() && i < 16; ++i) {
        const QString &piece = pieces[i];
        auto &reference = state.texts.references[static_cast<size_t>(i) % orvel::kReferenceRows];
        auto &point = state.texts.points[static_cast<size_t>(i) % orvel::kPointRows];
        reference.valence = piece;
        point.energy = piece;
        state.texts.edgeE = piece;
        state.view.dataMapRow = piece;
        const bool isName = !piece.isEmpty() && !piece.startsWith(QLatin1Char(':')); // a resource
        if (isName && QDir::cleanPath(QLatin1Char('/') + piece).endsWith(piece)) {
            reference.file = scratchPath(QString()) + QLatin1Char('/') + piece; // below the session
            point.file = QLatin1Char('/') + piece;
            state.view.displayFiles << reference.file << point.file;
        }
    }
    return state;
}

/// Lines as fields take them: without control characters.
QStringList typedLines(const QByteArray &bytes)
{
    QStringList lines = QString::fromUtf8(bytes).split(QLatin1Char('\n'));
    static const QRegularExpression control(QStringLiteral("[\\x00-\\x1f\\x7f]"));
    for (QString &line : lines) {
        line.remove(control);
    }
    return lines;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    const QString path = scratchFile(freshName("session"), bytes);
    const orvel::SessionReading first = orvel::readSession(path);
    QFile::remove(path);

    const QString samePath = scratchFile(freshName("same"), bytes);
    const orvel::SessionReading second = orvel::readSession(samePath);
    QFile::remove(samePath);
    require(first.error == second.error && first.notes == second.notes &&
                first.viewNotes == second.viewNotes && sameState(first.state, second.state),
            "a second read gives the same");
    if (first.error.isEmpty() && isWhole(first.state)) {
        requireRoundTrip(first.state);
    }
    requireRoundTrip(stateWith(typedLines(bytes)));
    return 0;
}
