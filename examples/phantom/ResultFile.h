#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvel::phantom {

/// Number columns of a result map file, pixel by pixel in file order.
struct ResultFile {
    /// The two positions, then the quantities; empty for a four-points file, whose five columns are
    /// two positions, fraction, valence and amount.
    std::vector<std::string> columns;
    std::vector<std::vector<double>> rows; ///< all of one length
};

/// Reads a file that begins "# klyv result map V1.0", goes on with the header lines of the maps and
/// an empty line, and then has, after a non-equivalent analysis, a line "# y x NAME..." and,
/// always, one line a pixel. "nan" and "inf" are numbers here. Throws std::runtime_error: cannot be
/// opened, another kind of file, a field that is no number, rows of different lengths.
ResultFile readResultFile(const std::filesystem::path &path);

/// The numbers of a text, blanks and commas between them, in order; words are passed over.
std::vector<double> numbersIn(const std::string &text);

} // namespace orvel::phantom
