#pragma once

#include "analysis/AnalysisInput.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace orvel {

/// Counts of one quantity in boxes of equal width.
class BinCounts {
public:
    /// Fewest and most boxes that callers may set up; the arithmetic itself takes any number.
    static constexpr int kFewestBoxes = 2;
    static constexpr int kMostBoxes = 1 << 20;

    /// A number of boxes as entered, truncated and kept within those bounds.
    static int boxesOf(double entered);

    /// Empties the boxes. The entered limits become the centres of the first and the last box,
    /// so from() and to() lie half a box outside them. One box makes the width infinite or
    /// not-a-number.
    void setUp(const HistogramSettings &settings);

    /// Empties the boxes and leaves their limits.
    void clear();

    /// Adds one value to box trunc((value - from) / step). Truncation is toward zero: a value
    /// less than one box below from() falls into the first box. Other values outside add to
    /// underflow or overflow. What is no finite number, or 2^31 boxes and more away, adds to
    /// underflow.
    void count(double value);
    void count(const double *values, std::size_t n);

    double from() const { return m_from; }
    double to() const { return m_to; }
    double step() const { return m_step; }
    int boxes() const { return static_cast<int>(m_counts.size()); }
    bool autoRange() const { return m_autoRange; }
    std::int32_t largest() const { return m_largest; }
    const std::vector<std::int32_t> &counts() const { return m_counts; }
    std::int32_t underflow() const { return m_underflow; }
    std::int32_t overflow() const { return m_overflow; }

    /// Writes "lower centre upper  count" a line: underflow first, then the boxes, overflow last.
    /// resultPath  the result file it belongs to; see pathBeside()
    /// False when the file could not be written.
    bool write(const QString &resultPath, const QString &name) const;

    /// Where a histogram goes: the folder of the result file, FILE_NAME.SUFFIX.
    /// suffix  null: that of the result file
    static QString pathBeside(const QString &resultPath, const QString &name,
                              const QString &suffix = QString());

private:
    double m_from = 0.0;
    double m_to = 0.0;
    double m_step = 0.0;
    bool m_autoRange = false;
    std::int32_t m_largest = 0;
    std::vector<std::int32_t> m_counts;
    std::int32_t m_underflow = 0;
    std::int32_t m_overflow = 0;
};

/// Limits that "Auto" chooses: the least and greatest finite value, rounded as the form's fields
/// show them; half a unit wider both ways when that leaves them equal. None without a finite value.
struct Limits {
    double low;
    double high;
};
std::optional<Limits> autoLimits(const double *values, std::size_t n);

} // namespace orvel
