#pragma once

#include "images/ImageData.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace orvel {

/// Longest run of images that are not alike; bounds the memory of maps that are all width.
inline constexpr std::size_t kLongestRun = 4096;

/// The absorptions of several images in the pixel order of the map that is computed from them, as
/// consecutive runs of memory: value for value what ImageData::absorption(x, y) gives, its -1.0
/// outside the records and its running on into the next row of a narrower image included.
class PixelRuns {
public:
    /// width, height  of the map; images outlive the object
    PixelRuns(std::vector<const ImageData *> images, int width, int height);

    std::size_t size() const { return m_width * m_height; }

    /// Calls run(values, first, n) for pixels begin .. end, part after part: values[k][i] is the
    /// absorption of image k at pixel first + i, 0 <= i < n.
    template <class Run> void forEach(std::size_t begin, std::size_t end, Run run) const
    {
        std::vector<const double *> values(m_images.size());
        if (m_alike) {
            for (std::size_t k = 0; k < values.size(); ++k) {
                values[k] = m_images[k]->absorptionPlane().data() + begin;
            }
            run(values.data(), begin, end - begin);
            return;
        }
        const std::size_t longest = std::min(m_width, kLongestRun);
        std::vector<double> scratch(m_images.size() * longest);
        while (begin < end) {
            const std::size_t row = begin / m_width;
            const std::size_t x = begin % m_width;
            const std::size_t n = std::min({end - begin, m_width - x, longest});
            for (std::size_t k = 0; k < values.size(); ++k) {
                values[k] = piece(*m_images[k], row, x, n, scratch.data() + k * longest);
            }
            run(values.data(), begin, n);
            begin += n;
        }
    }

private:
    /// n values of one image from column x of a row: in place, or copied to scratch where some of
    /// them lie outside the records.
    static const double *piece(const ImageData &image, std::size_t row, std::size_t x,
                               std::size_t n, double *scratch);

    std::vector<const ImageData *> m_images;
    std::size_t m_width;
    std::size_t m_height;
    bool m_alike; ///< all images have the map's width and hold all its pixels
};

} // namespace orvel
