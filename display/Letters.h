#pragma once

namespace orvel {

/// Points of the panel's letters. Many fields have to stand side by side, so 9 for the fonts of
/// usual desktops (9 to 12 points); a larger font was wanted by somebody and is taken, from 18
/// points on as it is. A smaller one is taken, too.
double compactPoints();

/// How much larger those letters are than usual ones; 1 or more. For sizes in points.
double letterScale();

/// The same on the screen, where fonts may also have more dots per inch than 96; 1 for less
/// than 1.15. For sizes in pixels that were chosen around letters.
double letterPixelScale();

} // namespace orvel
