#pragma once

#include "images/ImageData.h"

#include <array>
#include <memory>

namespace orvel {

/// Absorption differences of every pixel between three images: x is that of the third to the
/// first, y that of the second to the first.
struct ImageDifferences {
    Column x;
    Column y;
};

/// The differences of the images it was last asked for, computed once.
class ImageDifferenceCache {
public:
    using Images = std::array<std::shared_ptr<const ImageData>, 3>;

    /// Null when one of the images is missing. Pixels are those of the first image.
    std::shared_ptr<const ImageDifferences> of(const Images &images);

private:
    std::array<std::weak_ptr<const ImageData>, 3> m_images;
    std::shared_ptr<const ImageDifferences> m_differences;
};

} // namespace orvel
