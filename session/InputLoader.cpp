#include "session/InputLoader.h"

#include "analysis/RowValues.h"
#include "images/A2DData.h"

namespace orvel {
namespace {

class Loader {
public:
    Loader(const SessionTexts &texts, const LoadListener &listener)
        : m_texts(texts), m_listener(listener)
    {
        const auto count = [this](const QString &file) { m_files += file.isEmpty() ? 0 : 1; };
        for (const ReferenceTexts &reference : texts.references) {
            count(reference.file);
        }
        count(texts.target.file);
        for (const PointTexts &point : texts.points) {
            count(point.file);
        }
    }

    LoadedInput load()
    {
        AnalysisInput &input = m_loaded.input;
        int row = 0;
        for (const ReferenceTexts &reference : m_texts.references) {
            input.references.push_back({row++, reference.use,
                                        spectrum(reference.file, reference.dE),
                                        reference.valence.toDouble()});
        }
        input.target = spectrum(m_texts.target.file, m_texts.target.dE);
        row = 0;
        for (const PointTexts &texts : m_texts.points) {
            input.points.push_back(point(row++, texts));
        }
        input.method = methodOf(m_texts);
        input.precision = precisionOf(m_texts.advanced);
        input.valenceHistogram = histogramOf(m_texts.valenceHistogram);
        input.amountHistogram = histogramOf(m_texts.amountHistogram);

        setEdges(input);
        fillRowValues(input);
        return std::move(m_loaded);
    }

private:
    void announce(const QString &path)
    {
        if (m_listener) {
            m_listener(m_file, m_files, path);
        }
        ++m_file;
    }

    AMutE spectrum(const QString &file, const QString &dE)
    {
        AMutE read;
        read.setDE(dE.toDouble()); // before the file, so that the found edge is shifted too
        if (!file.isEmpty()) {
            announce(file);
            if (!read.readFile(file)) {
                m_loaded.unreadable.push_back({file, read.readFailure()});
            }
        }
        return read;
    }

    EnergyPointInput point(int row, const PointTexts &texts)
    {
        EnergyPointInput read;
        read.row = row;
        read.use = texts.use;
        read.lcf = texts.lcf;
        read.vPoint = texts.vPoint;
        QString energy = texts.energy;
        if (!texts.file.isEmpty()) {
            announce(texts.file);
            A2DData data;
            const bool loaded = data.loadMap(texts.file, [&](const QString &fromFile) {
                if (texts.energy.isEmpty()) {
                    energy = fromFile;
                }
            });
            if (!loaded) {
                m_loaded.unreadable.push_back({texts.file, data.loadFailure()});
            }
            read.map = data.map();
        }
        read.energyEv = energy.toDouble();
        return read;
    }

    /// The edge as entered, or else that of the last reference, as its field would show it.
    double edge(const AnalysisInput &input) const
    {
        if (m_texts.edgeE) {
            return m_texts.edgeE->toDouble();
        }
        QString found = kDefaultEdge;
        for (const ReferenceInput &reference : input.references) {
            if (reference.spectrum.isValid()) {
                found = QString::number(reference.spectrum.findEdge(), 'g', 6);
            }
        }
        return found.toDouble();
    }

    void setEdges(AnalysisInput &input) const
    {
        const double e0 = edge(input);
        const double preEnd = e0 + m_texts.preEdgeEndDE.toDouble();
        const double postStart = e0 + m_texts.postEdgeStartDE.toDouble();
        const auto set = [=](AMutE &spectrum) {
            spectrum.setEdge(preEnd, e0, postStart);
            spectrum.fitVictoreens();
        };
        for (ReferenceInput &reference : input.references) {
            set(reference.spectrum);
        }
        set(input.target);
    }

    const SessionTexts &m_texts;
    const LoadListener &m_listener;
    LoadedInput m_loaded;
    int m_file = 0;
    int m_files = 0;
};

} // namespace

LoadedInput loadInput(const SessionTexts &texts, const LoadListener &listener)
{
    return Loader(texts, listener).load();
}

} // namespace orvel
