#pragma once

#include "images/ImageData.h"
#include "images/TextMap.h"
#include "text/ReadFailure.h"

#include <memory>

/// The image of one energy point. It owns a pointer to immutable data and replaces it at each
/// load, so whoever still computes with the old image keeps it alive.
class A2DData {
public:
    A2DData() = default;
    A2DData(const A2DData &) = default;
    A2DData &operator=(const A2DData &) = default;
    virtual ~A2DData() = default;

    /// Loads a file, a processed map or a text map by its first bytes. True when a map with a
    /// grid and a pixel is there now. False, with loadFailure():
    /// NoGrid, NoPixel  the row has no map any more, only what the file held (its header lines);
    /// any other        the file could not be taken, the previous map stays.
    bool loadMap(const QString &path, const orvel::EnergyListener &onEnergy = {});
    bool loadTextMap(const QString &path, const orvel::EnergyListener &onEnergy = {});
    bool loadProcessedMap(const QString &path);
    void unload();

    bool hasMap() const { return m_image && m_image->isMap(); }
    /// The map; null when there is none.
    std::shared_ptr<const orvel::ImageData> map() const { return hasMap() ? m_image : nullptr; }

    QStringList header() const { return m_image ? m_image->header() : QStringList(); }
    int xNum() const { return m_image ? m_image->xNum() : 0; }
    int yNum() const { return m_image ? m_image->yNum() : 0; }
    qint64 pixelCount() const { return m_image ? m_image->size() : 0; }
    orvel::PixelRecord pixel(qint64 i) const
    {
        return m_image ? m_image->pixel(i) : orvel::PixelRecord();
    }

    orvel::ReadFailure loadFailure() const { return m_loadFailure; }

private:
    template <class Load> bool loadIfThereIsMemory(Load load);

    std::shared_ptr<const orvel::ImageData> m_image;
    orvel::ReadFailure m_loadFailure = orvel::ReadFailure::None;
};
