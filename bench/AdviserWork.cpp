#include "bench/AdviserWork.h"

#include "analysis/EnergyAdviser.h"
#include "analysis/NonEquivPrecision.h"
#include "bench/Inputs.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel::bench {
namespace {

class AdviserWork : public Work {
public:
    void prepare(Inputs &inputs) override
    {
        m_input = inputs.sample().nonEquiv();
        m_settings.points = kPointRows;
    }

    void run() override { m_advice = adviseEnergies(m_input, m_settings); }

    /// Nothing that a single exchange could improve, by the plain way to a standard deviation; and
    /// the energies keep their distance.
    QString check() const override
    {
        const ExpectedPrecision &best = m_advice.best;
        if (best.fault != DesignFault::None || best.energiesEv.size() != kPointRows) {
            return QStringLiteral("there is no design");
        }
        const double least = valenceSigma(best.energiesEv);
        if (!(std::fabs(least - best.valence) <= 1e-6 * least)) {
            return QStringLiteral("sigma %1 instead of %2").arg(best.valence).arg(least);
        }
        for (size_t i = 0; i < best.energiesEv.size(); ++i) {
            for (const double candidate : m_advice.candidatesEv) {
                std::vector<double> changed = best.energiesEv;
                changed[i] = candidate;
                if (isSpaced(changed) && valenceSigma(changed) < least * (1.0 - 1e-6)) {
                    return QStringLiteral("%1 eV improves it").arg(candidate);
                }
            }
        }
        return isSpaced(best.energiesEv) ? QString() : QStringLiteral("energies too close");
    }

private:
    bool isSpaced(std::vector<double> energies) const
    {
        std::sort(energies.begin(), energies.end());
        for (size_t i = 1; i < energies.size(); ++i) {
            if (energies[i] - energies[i - 1] < m_settings.minimumSpacingEv * (1.0 - 1e-9)) {
                return false;
            }
        }
        return true;
    }

    double valenceSigma(const std::vector<double> &energies) const
    {
        AnalysisInput input = m_input;
        Plan plan;
        plan.method = Method::NonEquivVictoreen;
        for (size_t i = 0; i < energies.size(); ++i) {
            input.points[i].energyEv = energies[i];
            plan.used.push_back(i);
        }
        const RefValues values = gatherRefValues(input, plan);
        ResultVector assumed = {};
        double valence = 0.0;
        for (size_t i = 0; i < values.references(); ++i) {
            assumed[i] = 1.0 / static_cast<double>(values.references());
            valence += assumed[i] * values.valences[i];
        }
        assumed[static_cast<size_t>(indexOf(Quantity::Valence))] = valence;
        assumed[static_cast<size_t>(indexOf(Quantity::Amount))] = m_settings.amount;
        constexpr double kSmall = 1e-9; // where first order holds whatever the energies
        const double sigma = NonEquivPrecision(values).sigmas(assumed, kSmall).valence;
        return std::isnan(sigma) ? std::numeric_limits<double>::infinity()
                                 : sigma / kSmall * m_settings.sigma;
    }

    AnalysisInput m_input;
    AdviserSettings m_settings;
    EnergyAdvice m_advice;
};

} // namespace

std::unique_ptr<Work> makeAdvise()
{
    return std::make_unique<AdviserWork>();
}

} // namespace orvel::bench
