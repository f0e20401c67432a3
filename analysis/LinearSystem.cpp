#include "analysis/LinearSystem.h"

namespace orvel {

LinearSystem::Matrix::Matrix(int n)
    : values(static_cast<std::size_t>(n) * static_cast<std::size_t>(n)),
      rows(static_cast<std::size_t>(n))
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i] = values.data() + i * rows.size();
    }
}

LinearSystem::LinearSystem(int unknowns)
    : m_unknowns(unknowns), m_matrix(unknowns), m_lower(unknowns), m_upper(unknowns),
      m_rightSide(static_cast<std::size_t>(unknowns)),
      m_forward(static_cast<std::size_t>(unknowns)), m_solution(static_cast<std::size_t>(unknowns)),
      m_permutation(static_cast<std::size_t>(unknowns))
{
}

void LinearSystem::clear()
{
    m_tools.clearMatrix(m_unknowns, m_matrix.rows.data());
    m_tools.clearVector(m_unknowns, m_rightSide.data());
}

void LinearSystem::addSample(const double *phi, double y)
{
    for (int i = 0; i < m_unknowns; ++i) {
        for (int j = 0; j < m_unknowns; ++j) {
            matrix(i, j) += phi[i] * phi[j];
        }
        rightSide(i) += phi[i] * y;
    }
}

void LinearSystem::decompose()
{
    m_tools.LUDecomp(m_unknowns, m_matrix.rows.data(), m_lower.rows.data(), m_upper.rows.data(),
                     m_permutation.data());
}

void LinearSystem::solve()
{
    decompose();
    m_tools.forwardSubst(m_unknowns, m_lower.rows.data(), m_rightSide.data(), m_forward.data(),
                         m_permutation.data());
    m_tools.backSubst(m_unknowns, m_upper.rows.data(), m_forward.data(), m_solution.data(),
                      m_permutation.data());
}

} // namespace orvel
