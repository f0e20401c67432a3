#include "panel/plots/ImageDifferences.h"

namespace orvel {

std::shared_ptr<const ImageDifferences> ImageDifferenceCache::of(const Images &images)
{
    bool isSame = m_differences != nullptr;
    for (size_t i = 0; i < images.size(); ++i) {
        if (!images[i]) {
            return nullptr;
        }
        isSame = isSame && m_images[i].lock() == images[i];
    }
    if (isSame) {
        return m_differences;
    }
    auto differences = std::make_shared<ImageDifferences>();
    const int width = images[0]->xNum();
    const int height = images[0]->yNum();
    const size_t size = static_cast<size_t>(width) * static_cast<size_t>(height);
    differences->x.reserve(size);
    differences->y.reserve(size);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double first = images[0]->absorption(x, y);
            differences->x.push_back(images[2]->absorption(x, y) - first);
            differences->y.push_back(images[1]->absorption(x, y) - first);
        }
    }
    for (size_t i = 0; i < images.size(); ++i) {
        m_images[i] = images[i];
    }
    m_differences = differences;
    return differences;
}

} // namespace orvel
