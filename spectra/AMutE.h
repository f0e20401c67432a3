#pragma once

#include "text/ReadFailure.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// One measured point of a spectrum.
struct MutPoint {
    double angleDeg; ///< monochromator angle [degrees]
    double energyEv; ///< photon energy [eV]
    double mut;      ///< absorption mu*t [1]
};
Q_DECLARE_TYPEINFO(MutPoint, Q_PRIMITIVE_TYPE);

/// One XAFS spectrum mu*t(E) with its two background lines.
///
/// Points stay in file order; look-ups assume ascending energies and scan when they are not.
/// The energy shift dE is applied at use and never stored: the effective energy of point i is
/// E_i - dE. Only the edge jump (and with it mode 3) takes edgeE as it stands.
///
/// Victoreen lines: V(E) = a + b lambda^3 + c lambda^4 with lambda = hc / E [Angstrom], fitted
/// before the edge (pre) and behind it (post). Victoreen, J. Appl. Phys. 19 (1948) 855.
///
/// Copies share their points. No guard against non-finite numbers: they flow through.
class AMutE {
public:
    /// Normalisation modes of valueAt and valueAtE; any other number yields 0.
    enum Mode {
        NoNormalization = 0, ///< mu
        SubPre = 1,          ///< mu - pre(E)
        SubPost = 2,         ///< mu - post(E)
        ByEdgeJump = 3,      ///< (mu - pre(E)) / (post(edgeE) - pre(edgeE))
        By2Victoreens = 4,   ///< (mu - pre(E)) / (post(E) - pre(E))
    };

    struct Victoreen {
        double a = 0.0; ///< [1]
        double b = 0.0; ///< [1/Angstrom^3]
        double c = 0.0; ///< [1/Angstrom^4]
        /// The line at an energy [eV].
        double at(double energyEv) const;
    };

    /// hc [eV Angstrom]: wavelength = kHcEvAngstrom / energy.
    static constexpr double kHcEvAngstrom = 12398.424360387684;

    AMutE() = default;
    AMutE(const AMutE &) = default;
    AMutE &operator=(const AMutE &) = default;
    virtual ~AMutE() = default;

    // --- reading -------------------------------------------------------------------------------

    /// Reads a spectrum of either layout; docs/formats.md describes both. False when the path
    /// names no readable regular file (then nothing changes) or no point could be read (then the
    /// spectrum is empty and invalid); readFailure() has the reason. On success both lines are
    /// fitted.
    bool readFile(const QString &path);
    /// Whether the first line begins with "9809" after white space.
    bool is9809(const QString &path) const;
    bool read9809(const QString &path);
    bool readColumns(const QString &path);
    /// Index of the first item equal to key, or -1.
    static int findToken(const QStringList &items, const QString &key);

    /// Why the last read returned false.
    orvel::ReadFailure readFailure() const { return m_readFailure; }

    /// Takes computed points instead of a file, valid when there are any; fits both lines.
    void setPoints(QVector<MutPoint> points);

    // --- data ----------------------------------------------------------------------------------

    bool isValid() const { return m_valid; }
    QString filePath() const { return m_filePath; }
    QString fileName() const { return m_fileName; }
    const QVector<MutPoint> &points() const { return m_points; }

    /// Ranges of the columns, the energies unshifted; 1e300 and -1e300 after a read without data.
    double minAngle() const { return m_minAngle; }
    double maxAngle() const { return m_maxAngle; }
    double minE() const { return m_minE; }
    double maxE() const { return m_maxE; }
    double minMu() const { return m_minMu; }
    double maxMu() const { return m_maxMu; }

    double preEdgeEnd() const { return m_preEdgeEnd; }
    double edgeE() const { return m_edgeE; }
    double postEdgeStart() const { return m_postEdgeStart; }
    double dE() const { return m_dE; }
    /// Upper end of the pre-edge range, edge, lower end of the post-edge range [eV]. The lines
    /// keep their coefficients until fitVictoreens().
    void setEdge(double preEdgeEnd, double edgeE, double postEdgeStart);
    void setDE(double dE) { m_dE = dE; }

    const Victoreen &preLine() const { return m_pre; }
    const Victoreen &postLine() const { return m_post; }

    // --- values --------------------------------------------------------------------------------

    double effectiveEnergy(int i) const { return m_points[i].energyEv - m_dE; }

    /// Index i of the interval [E_i, E_i+1] that holds e; the earlier one when e is a point's
    /// energy. 0 below the first point, n - 2 above the last, 0 with fewer than two points.
    int indexAt(double e) const;
    /// The value of point i, 0 <= i < points().size().
    double valueAt(int mode, int i) const;
    /// As valueAt, but 0 for an index outside.
    double valueAtOrZero(int mode, int i) const;
    /// The values of the two neighbouring points interpolated linearly; extrapolated from the
    /// first or last interval outside the range; 0 with fewer than two points.
    double valueAtE(int mode, double e) const;
    /// Lowers min and raises max to the values of all points with e1 <= E <= e2.
    void rangeOf(int mode, double e1, double e2, double &min, double &max) const;
    /// mu interpolated at e, minus the pre-edge or post-edge line at e. Below the first point it
    /// is interpolated from (0 eV, 0); false when no point reaches e.
    bool valueMinusLine(double e, bool subtractPost, double &out) const;

    double pre(double energyEv) const { return m_pre.at(energyEv); }
    double post(double energyEv) const { return m_post.at(energyEv); }
    /// post(edgeE) - pre(edgeE)
    double edgeJump() const { return post(m_edgeE) - pre(m_edgeE); }

    /// The middle of the steepest raw step of mu between neighbouring points [eV]; half the first
    /// energy when mu falls by 1 or more at every step, 0 without points.
    double findEdge() const;
    /// Fits both lines over their ranges. With too few points in a range the coefficients are
    /// whatever the singular system gives, mostly not-a-numbers.
    void fitVictoreens();

private:
    void clearPoints();
    void append(double angleDeg, double energyEv, double mut);
    bool readingDone(bool complete, orvel::ReadFailure reason);

    bool m_valid = false;
    bool m_ascending = true; ///< energies never fall, so that look-ups may bisect
    QString m_filePath;
    QString m_fileName;
    double m_minAngle = 0.0;
    double m_maxAngle = 0.0;
    double m_minE = 0.0;
    double m_maxE = 0.0;
    double m_minMu = 0.0;
    double m_maxMu = 0.0;
    QVector<MutPoint> m_points;
    double m_preEdgeEnd = 8000.0;
    double m_edgeE = 0.0;
    double m_postEdgeStart = 8500.0;
    double m_dE = 0.0;
    Victoreen m_pre;
    Victoreen m_post;
    orvel::ReadFailure m_readFailure = orvel::ReadFailure::None;
};
