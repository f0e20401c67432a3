#include "Compare.h"

#include "ResultFile.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <ostream>
#include <stdexcept>
#include <utility>

namespace orvel::phantom {

namespace {

constexpr int kResultDigits = 6; // of every number in a result map file

template <typename... Values> void print(std::ostream &out, const char *format, Values... values)
{
    char line[256];
    std::snprintf(line, sizeof line, format, values...);
    out << line << '\n';
}

/// Deviations of one quantity over all pixels.
class Tally {
public:
    void add(double found, const Expected &expected, int pixel)
    {
        const double deviation = std::abs(found - expected.value);
        const double bound = expected.bound + std::max(printError(found, kResultDigits),
                                                       printError(expected.value, kResultDigits));
        ++m_count;
        m_sum += deviation;
        m_nonFinite += std::isfinite(found) ? 0 : 1;
        if (deviation > m_largest) {
            m_largest = deviation;
            m_largestAt = pixel;
        }
        m_largestBound = std::max(m_largestBound, bound);
        m_outside += deviation <= bound ? 0 : 1; // a deviation that is no number is outside
        if (bound > 0.0) {
            m_usedUp = std::max(m_usedUp, deviation / bound);
        }
    }

    bool report(const char *name, std::ostream &out) const
    {
        print(
            out,
            "%-10s mean |d| %.2e  largest |d| %.2e (column %d, row %d)  bounds up to %.2e, at most "
            "%3.0f %% used%s",
            name, m_sum / m_count, m_largest, m_largestAt % kPixels, m_largestAt / kPixels,
            m_largestBound, 100.0 * m_usedUp, m_outside == 0 ? "" : "  FAILED");
        if (m_outside > 0) {
            print(out, "           %d pixels out of bounds, %d of them not finite", m_outside,
                  m_nonFinite);
        }
        return m_outside == 0;
    }

private:
    int m_count = 0;
    int m_nonFinite = 0;
    int m_outside = 0;
    int m_largestAt = 0;
    double m_sum = 0.0;
    double m_largest = 0.0;
    double m_largestBound = 0.0;
    double m_usedUp = 0.0;
};

const std::vector<std::string> &columnNames(Method method)
{
    static const std::vector<std::string> nonEquivalent{
        "alpha1", "alpha2", "alpha3", "alpha4", "dMut1",   "dMut2",     "dMut3",
        "dMut4",  "Mut0",   "C1",     "C2",     "Valence", "Total-dMut"};
    static const std::vector<std::string> twoReferences{"fraction", "valence", "amount"};
    return method == Method::NonEquivalent ? nonEquivalent : twoReferences;
}

/// Where each column of the file stands in columnNames().
std::vector<std::size_t> quantitiesOf(const Plan &plan, const ResultFile &file)
{
    const std::vector<std::string> &names = columnNames(plan.method);
    const bool named = !file.columns.empty();
    if (named != (plan.method == Method::NonEquivalent)) {
        throw std::runtime_error("the result was made by another method");
    }
    if (!named) {
        return {0, 1, 2};
    }
    if (file.columns.size() < 3 || file.columns[0] != "y" || file.columns[1] != "x") {
        throw std::runtime_error("the result has no quantity to compare");
    }
    std::vector<std::size_t> quantities;
    for (auto column = file.columns.begin() + 2; column != file.columns.end(); ++column) {
        const auto name = std::find(names.begin(), names.end(), *column);
        if (name == names.end()) {
            throw std::runtime_error("unknown column " + *column);
        }
        quantities.push_back(static_cast<std::size_t>(name - names.begin()));
    }
    return quantities;
}

TwoReferenceResult twoReferenceExpectation(const Plan &plan, const Mixture &truth, Source source)
{
    return plan.method == Method::ThreePoints ? threePointsExpectation(plan, truth, source)
                                              : fourPointsExpectation(plan, truth, source);
}

/// "name = text" of what the program printed; the last one counts.
std::string fieldText(const std::filesystem::path &path, const std::string &name)
{
    std::ifstream file(path);
    std::string found;
    bool any = false;
    for (std::string line; std::getline(file, line);) {
        if (line.rfind(name + " = ", 0) == 0) {
            found = line.substr(name.size() + 3);
            any = true;
        }
    }
    if (!any) {
        throw std::runtime_error(path.string() + ": no line \"" + name + " = \"");
    }
    return found;
}

/// `decimals`: digits after the point; below 0: six significant ones.
bool compareField(const std::filesystem::path &path, const std::string &name,
                  const std::vector<Expected> &expected, int decimals, std::ostream &out)
{
    const std::vector<double> found = numbersIn(fieldText(path, name));
    bool good = found.size() == expected.size();
    double sum = 0.0;
    double largest = 0.0;
    double largestBound = 0.0;
    for (std::size_t i = 0; good && i < found.size(); ++i) {
        const double deviation = std::abs(found[i] - expected[i].value);
        const double bound =
            expected[i].bound +
            (decimals < 0 ? std::max(printError(found[i], 6), printError(expected[i].value, 6))
                          : 0.5 * std::pow(10.0, -decimals));
        good = deviation <= bound;
        sum += deviation;
        largest = std::max(largest, deviation);
        largestBound = std::max(largestBound, bound);
    }
    if (found.size() != expected.size()) {
        print(out, "%-10s %zu numbers instead of %zu  FAILED", name.c_str(), found.size(),
              expected.size());
    } else {
        print(out, "%-10s mean |d| %.2e  largest |d| %.2e  bounds up to %.2e%s", name.c_str(),
              sum / static_cast<double>(found.size()), largest, largestBound,
              good ? "" : "  FAILED");
    }
    return good;
}

using CsvLine = std::vector<std::string>;

/// Fields between commas, some in quotes with quotes doubled; lines end in CR LF.
std::vector<CsvLine> readCsv(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error(path.string() + ": cannot be read");
    }
    std::vector<CsvLine> lines;
    for (std::string text; std::getline(file, text);) {
        if (text.empty() || text.back() != '\r') {
            throw std::runtime_error(path.string() + ": a line without CR LF");
        }
        text.pop_back();
        CsvLine fields(1);
        bool isQuoted = false;
        for (const char c : text) {
            if (c == '"') {
                isQuoted = !isQuoted;
            } else if (c == ',' && !isQuoted) {
                fields.emplace_back();
            } else {
                fields.back() += c;
            }
        }
        lines.push_back(fields);
    }
    return lines;
}

} // namespace

bool compareMap(const Plan &plan, const std::filesystem::path &resultFile, std::ostream &out)
{
    const ResultFile file = readResultFile(resultFile);
    const std::vector<std::size_t> quantities = quantitiesOf(plan, file);
    if (file.rows.size() != static_cast<std::size_t>(kPixels) * kPixels) {
        throw std::runtime_error(std::to_string(file.rows.size()) + " pixels are not this sample");
    }
    const NonEquivalentExpectation nonEquivalent(plan);
    std::vector<Tally> tallies(quantities.size());
    Tally xs;
    Tally ys;
    double shift = 0.0;
    for (int pixel = 0; pixel < kPixels * kPixels; ++pixel) {
        const int column = pixel % kPixels;
        const int row = pixel / kPixels;
        const Mixture truth = pixelTruth(plan.sample, column, row);
        std::vector<Expected> expected;
        if (plan.method == Method::NonEquivalent) {
            expected = nonEquivalent.of(truth, Source::Pixel);
        } else {
            const TwoReferenceResult two = twoReferenceExpectation(plan, truth, Source::Pixel);
            expected = {two.fraction, two.valence, two.amount};
            shift = std::max(shift, std::abs(two.slopeShift));
        }
        const std::vector<double> &found = file.rows[static_cast<std::size_t>(pixel)];
        const StagePosition at = stagePosition(plan.sample, column, row);
        xs.add(found[0], {at.xUm, 0.0}, pixel);
        ys.add(found[1], {at.yUm, 0.0}, pixel);
        for (std::size_t q = 0; q < quantities.size(); ++q) {
            tallies[q].add(found[q + 2], expected[quantities[q]], pixel);
        }
    }
    bool good = xs.report("position x", out);
    good = ys.report("position y", out) && good;
    for (std::size_t q = 0; q < quantities.size(); ++q) {
        good = tallies[q].report(columnNames(plan.method)[quantities[q]].c_str(), out) && good;
    }
    if (plan.method == Method::ThreePoints) {
        print(out,
              "The sloping background shifts the true fraction by up to %.4f; allowed for above.",
              shift);
    }
    return good;
}

bool compareTarget(const Plan &plan, const std::filesystem::path &printed, std::ostream &out)
{
    if (!std::ifstream(printed)) {
        throw std::runtime_error(printed.string() + ": cannot be read");
    }
    const Mixture truth = targetTruth(plan.sample);
    constexpr int kDecimals = 3;
    bool good = true;
    if (plan.method == Method::NonEquivalent) {
        const std::vector<Expected> all = NonEquivalentExpectation(plan).of(truth, Source::Target);
        const auto ratios = static_cast<std::ptrdiff_t>(plan.references.size());
        std::vector<Expected> line(all.begin(), all.begin() + ratios);
        line.insert(line.end(), all.end() - 2, all.end());
        good = compareField(printed, "CalcRes", line, kDecimals, out);
        good = compareField(printed, "TargetDMut", {all.back()}, -1, out) && good;
    } else {
        const TwoReferenceResult two = twoReferenceExpectation(plan, truth, Source::Target);
        std::vector<Expected> line{two.fraction, two.valence};
        if (plan.method == Method::FourPoints) {
            line.push_back(two.amount);
        }
        good = compareField(printed, "CalcRes", line, -1, out);
    }
    return compareField(printed, "LCFRes", lcfExpectation(plan), kDecimals, out) && good;
}

bool compareTable(const std::filesystem::path &table, std::ostream &out)
{
    const std::vector<CsvLine> lines = readCsv(table);
    if (lines.size() != kBeamtimeCells.size() + 1) {
        throw std::runtime_error(table.string() + ": not a line for each sample");
    }
    const CsvLine &head = lines.front();
    const auto columnOf = [&](const std::string &name) {
        const auto found = std::find(head.begin(), head.end(), name);
        if (found == head.end()) {
            throw std::runtime_error(table.string() + ": no column " + name);
        }
        return static_cast<std::size_t>(found - head.begin());
    };
    const std::pair<const char *, std::size_t> means[] = {
        // and their places in a result vector
        {"Ratio1_mean", 0},   {"Ratio2_mean", 1},  {"Ratio3_mean", 2},
        {"Valence_mean", 11}, {"Amount_mean", 12},
    };
    const NonEquivalentExpectation expectation(*planNamed("nonequiv-vic"));
    bool good = true;
    for (std::size_t i = 0; i < kBeamtimeCells.size(); ++i) {
        const BeamtimeCell &cell = kBeamtimeCells[i];
        const CsvLine &line = lines[i + 1];
        if (line.size() != head.size() ||
            line[columnOf("session")].find(std::string(cell.name) + "/") == std::string::npos) {
            throw std::runtime_error(table.string() + ": line " + std::to_string(i + 2) +
                                     " is not that of " + cell.name);
        }
        std::vector<Expected> sums(13, {0.0, 0.0});
        constexpr int kAll = kPixels * kPixels;
        for (int pixel = 0; pixel < kAll; ++pixel) {
            const Mixture truth = oxidised(
                pixelTruth(Sample::Particles, pixel % kPixels, pixel / kPixels), cell.share);
            const std::vector<Expected> expected = expectation.of(truth, Source::Pixel);
            for (std::size_t q = 0; q < sums.size(); ++q) {
                sums[q].value += expected[q].value / kAll;
                sums[q].bound += expected[q].bound / kAll;
            }
        }
        good = good && line[columnOf("status")] == "0";
        for (const auto &[name, q] : means) {
            const double found = std::strtod(line[columnOf(name)].c_str(), nullptr);
            const double deviation = std::abs(found - sums[q].value);
            constexpr double kSumming = 1e-12; // of 16384 numbers of about 1, either way
            const bool isGood = deviation <= sums[q].bound + kSumming;
            print(out, "%s %-12s %.6f  |d| %.2e  bound %.2e%s", cell.name, name, found, deviation,
                  sums[q].bound, isGood ? "" : "  FAILED");
            good = good && isGood;
        }
    }
    return good;
}

} // namespace orvel::phantom
