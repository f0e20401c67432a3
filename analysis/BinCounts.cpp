#include "analysis/BinCounts.h"

#include "analysis/ToInt32.h"
#include "text/NumberText.h"
#include "text/OutputFile.h"

#include <QFileInfo>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>

namespace orvel {

int BinCounts::boxesOf(double entered)
{
    if (!(entered >= kFewestBoxes)) { // not-a-number too
        return kFewestBoxes;
    }
    return entered < kMostBoxes ? static_cast<int>(entered) : kMostBoxes;
}

void BinCounts::setUp(const HistogramSettings &settings)
{
    m_autoRange = settings.autoRange;
    m_step = (settings.to - settings.from) / (settings.boxes - 1);
    m_from = settings.from - m_step / 2;
    m_to = settings.to + m_step / 2;
    m_counts.resize(static_cast<size_t>(std::max(0, settings.boxes)));
    clear();
}

void BinCounts::clear()
{
    std::fill(m_counts.begin(), m_counts.end(), 0);
    m_underflow = 0;
    m_overflow = 0;
    m_largest = 0;
}

void BinCounts::count(double value)
{
    const std::int32_t index = toInt32((value - m_from) / m_step);
    if (index < 0) {
        ++m_underflow;
    } else if (index < boxes()) {
        const std::int32_t now = ++m_counts[static_cast<size_t>(index)];
        m_largest = std::max(m_largest, now);
    } else {
        ++m_overflow;
    }
}

void BinCounts::count(const double *values, std::size_t n)
{
    for (std::size_t i = 0; i < n; ++i) {
        count(values[i]);
    }
}

QString BinCounts::pathBeside(const QString &resultPath, const QString &name, const QString &suffix)
{
    const QFileInfo result(resultPath); // named as given, in the folder it really lies in
    const QString folder = QFileInfo(realPath(resultPath)).absolutePath();
    return QStringLiteral("%1/%2_%3.%4")
        .arg(folder, result.completeBaseName(), name, suffix.isNull() ? result.suffix() : suffix);
}

bool BinCounts::write(const QString &resultPath, const QString &name) const
{
    OutputFile file(pathBeside(resultPath, name));
    if (!file.open()) {
        return false;
    }
    const auto edge = [this](double r, char *out) {
        return out + writeShortest(m_from + m_step * r, out);
    };
    char line[3 * kShortestTextSize + 20];
    char *at = edge(-1, line);
    for (int r = -1; r <= boxes(); ++r) {
        *at++ = ' ';
        at = edge(r + 0.5, at);
        *at++ = ' ';
        const char *const upper = at;
        at = edge(r + 1, at);
        const auto upperSize = static_cast<size_t>(at - upper);
        *at++ = ' ';
        *at++ = ' ';
        const std::int32_t counted = r < 0         ? m_underflow
                                     : r < boxes() ? m_counts[static_cast<size_t>(r)]
                                                   : m_overflow;
        at = std::to_chars(at, std::end(line), counted).ptr;
        *at++ = '\n';
        file.write(line, at - line);
        std::memmove(line, upper, upperSize); // where the next box begins
        at = line + upperSize;
    }
    return file.commit();
}

std::optional<Limits> autoLimits(const double *values, std::size_t n)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Limits limits{kInfinity, -kInfinity};
    for (std::size_t i = 0; i < n; ++i) {
        if (std::isfinite(values[i])) {
            limits.low = std::min(limits.low, values[i]);
            limits.high = std::max(limits.high, values[i]);
        }
    }
    if (limits.low > limits.high) {
        return std::nullopt;
    }
    Limits shown{throughSixDigits(limits.low), throughSixDigits(limits.high)};
    // Equal as shown: wider, by more where six digits cannot tell half a unit.
    for (double wider = 0.5; shown.low == shown.high; wider *= 10) {
        shown = {throughSixDigits(limits.low - wider), throughSixDigits(limits.high + wider)};
    }
    return shown;
}

} // namespace orvel
