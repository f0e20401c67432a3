#include "images/A2DData.h"

#include "images/TDData0.h"

#include <new>

using orvel::ImageData;
using orvel::ReadFailure;
using orvel::TextMap;

bool A2DData::loadMap(const QString &path, const orvel::EnergyListener &onEnergy)
{
    return TDData0::isProcessedMap(path) ? loadProcessedMap(path) : loadTextMap(path, onEnergy);
}

/// Calls a load; when memory does not suffice the previous map stays.
template <class Load> bool A2DData::loadIfThereIsMemory(Load load)
{
    try {
        return load();
    } catch (const std::bad_alloc &) {
        m_loadFailure = ReadFailure::NotEnoughMemory;
        return false;
    }
}

bool A2DData::loadTextMap(const QString &path, const orvel::EnergyListener &onEnergy)
{
    return loadIfThereIsMemory([&] {
        TextMap map;
        m_loadFailure = orvel::readTextMap(path, onEnergy, map);
        switch (m_loadFailure) {
        case ReadFailure::None:
        case ReadFailure::NoGrid:
        case ReadFailure::NoPixel:
            m_image =
                ImageData::fromColumns(map.header, map.xNum, map.yNum, std::move(map.columns));
            break;
        default:
            break;
        }
        return m_loadFailure == ReadFailure::None;
    });
}

bool A2DData::loadProcessedMap(const QString &path)
{
    return loadIfThereIsMemory([&] {
        TDData0 file;
        if (!file.read(path)) {
            m_loadFailure = file.readFailure();
            if (m_loadFailure == ReadFailure::NoGrid) {
                m_image.reset();
            }
            return false;
        }
        m_image = ImageData::fromAbsorption(file.width, file.height,
                                            {file.data.cbegin(), file.data.cend()});
        m_loadFailure = ReadFailure::None;
        return true;
    });
}

void A2DData::unload()
{
    m_image.reset();
    m_loadFailure = ReadFailure::None;
}
