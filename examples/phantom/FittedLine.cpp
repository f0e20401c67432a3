#include "FittedLine.h"

#include "Writers.h"

namespace orvel::phantom {

namespace {

Numbers basisAt(double energyEv)
{
    const long double lambda = static_cast<long double>(kHcEvAngstrom) / energyEv;
    return {1.0L, lambda * lambda * lambda, lambda * lambda * lambda * lambda};
}

std::vector<Numbers> fitRows(FittedLine::Side side)
{
    std::vector<Numbers> rows;
    for (const double energy : spectrumEnergiesEv()) {
        if (side == FittedLine::Side::PreEdge ? energy < kPreEdgeEndEv
                                              : energy > kPostEdgeStartEv) {
            rows.push_back(basisAt(energy));
        }
    }
    return rows;
}

} // namespace

FittedLine::FittedLine(const Victoreen &trueLine, Side side)
    : m_model(fitRows(side)), m_coefficients{trueLine.constant, trueLine.cube, trueLine.fourth}
{
    for (std::size_t index = 0; index < m_coefficientErrors.size(); ++index) {
        Numbers f(3, 0.0L);
        f[index] = 1.0L;
        m_coefficientErrors[index] = errorOf(f);
    }
}

double FittedLine::errorOf(const Numbers &f) const
{
    return m_model.errorOf(f, m_coefficients,
                           std::vector<double>(spectrumEnergiesEv().size(), kSpectrumError));
}

double FittedLine::errorAt(double energyEv) const
{
    const auto asked = m_asked.find(energyEv);
    if (asked != m_asked.end()) {
        return asked->second;
    }
    return m_asked[energyEv] = errorOf(basisAt(energyEv));
}

FittedLines::FittedLines(const Victoreen &preEdge, double edgeJump)
    : pre(preEdge, FittedLine::Side::PreEdge),
      post(postEdge(preEdge, edgeJump), FittedLine::Side::PostEdge)
{
}

const FittedLines &linesOfReference(std::size_t compound)
{
    static const std::array<FittedLines, kCompounds> lines{
        FittedLines{compounds()[0].preEdge, compounds()[0].edgeJump},
        FittedLines{compounds()[1].preEdge, compounds()[1].edgeJump},
        FittedLines{compounds()[2].preEdge, compounds()[2].edgeJump},
    };
    return lines.at(compound);
}

const FittedLines &linesOfTarget(Sample sample)
{
    const auto make = [](Sample which) {
        const Mixture truth = targetTruth(which);
        const Background &b = truth.background;
        return FittedLines{{b.constant, b.first, b.second}, truth.amount};
    };
    static const FittedLines particles = make(Sample::Particles);
    static const FittedLines film = make(Sample::Film);
    return sample == Sample::Particles ? particles : film;
}

} // namespace orvel::phantom
