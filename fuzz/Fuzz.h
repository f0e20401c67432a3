#pragma once

#include <QByteArray>
#include <QString>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

/// One input of a fuzzer; each fuzz/<reader>.cpp defines it. Returns 0, or ends the process when
/// a relation does not hold.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
/// Called once before the first input: readers log every bad file, here that is every file.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);

namespace orvel::fuzz {

/// Whether this is a program that searches for inputs; otherwise it replays given ones.
#ifdef ORVEL_FUZZ
inline constexpr bool kSearching = true;
#else
inline constexpr bool kSearching = false;
#endif

/// Prints the relation and aborts when it does not hold. Not an assert: it holds in every build.
void require(bool holds, const char *relation);

/// Path of a file in a folder of this process, which goes away with it. TMPDIR chooses the disk.
QString scratchPath(const QString &name);
/// Writes such a file and returns its path.
QString scratchFile(const QString &name, const QByteArray &bytes);

inline QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), static_cast<int>(size)};
}

/// Variants of a text file that must read as the file itself does.
struct SameText {
    const char *relation; ///< what makes them the same
    QByteArray bytes;
};
std::vector<SameText> sameTexts(const QByteArray &bytes);

inline bool sameBits(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// For vectors of plain values: the same length and the same bytes, not-a-numbers included.
template <class Vector> bool sameBits(const Vector &a, const Vector &b)
{
    return a.size() == b.size() &&
           (a.empty() ||
            std::memcmp(a.data(), b.data(), static_cast<std::size_t>(a.size()) * sizeof a[0]) == 0);
}

} // namespace orvel::fuzz
