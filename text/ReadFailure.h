#pragma once

#include <QString>

namespace orvel {

/// Why a reader refused a file. Readers return false; this says the reason, for the user.
enum class ReadFailure {
    None,
    NotARegularFile, ///< missing, a folder, a device, or not readable by this user
    CannotOpen,
    LineTooLong,  ///< no text of ours has lines of a mebicharacter: a binary or hostile file
    TooMuchData,  ///< more points or pixels than a file of this kind may hold
    NoPoint,      ///< a spectrum without a single data line
    NoDataMark,   ///< a scan file without its "Offset" line
    NoGrid,       ///< a map whose width or height is not given, or below 1
    NoPixel,      ///< a map without a single data line
    GridTooLarge, ///< more pixels than a map may have, or far more than the file holds
    NotEnoughMemory,
    NotProcessed, ///< not a processed map: its header is missing or damaged
};

/// The reason as an English clause, e.g. "it holds no data point".
QString describe(ReadFailure failure);

} // namespace orvel
