#include "analysis/PixelRuns.h"

#include <algorithm>

namespace orvel {

PixelRuns::PixelRuns(std::vector<const ImageData *> images, int width, int height)
    : m_images(std::move(images)), m_width(static_cast<std::size_t>(width)),
      m_height(static_cast<std::size_t>(height)),
      m_alike(std::all_of(m_images.begin(), m_images.end(), [this, width](const ImageData *image) {
          return image->xNum() == width && static_cast<std::size_t>(image->size()) >= size();
      }))
{
}

const double *PixelRuns::piece(const ImageData &image, std::size_t row, std::size_t x,
                               std::size_t n, double *scratch)
{
    const std::size_t first = row * static_cast<std::size_t>(image.xNum()) + x;
    const std::size_t records = static_cast<std::size_t>(image.size());
    const double *plane = image.absorptionPlane().data();
    if (first + n <= records) {
        return plane + first;
    }
    const std::size_t there = first < records ? records - first : 0;
    std::copy_n(plane + std::min(first, records), there, scratch);
    std::fill_n(scratch + there, n - there, -1.0);
    return scratch;
}

} // namespace orvel
