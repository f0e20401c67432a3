#include "base/Column.h"

#include <cstdint>
#include <cstdlib>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace orvel {
namespace {

constexpr std::size_t kHugePage = std::size_t(2) << 20;
constexpr std::size_t kCacheLine = 64;

} // namespace

void *allocateBlock(std::size_t bytes)
{
    const std::size_t unit = bytes >= kHugePage ? kHugePage : kCacheLine;
    const std::size_t rounded = (bytes + unit - 1) / unit * unit;
    void *block = std::aligned_alloc(unit, rounded > 0 ? rounded : unit);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    if (unit == kHugePage) {
        wishHugePages(block, rounded);
    }
    return block;
}

void wishHugePages(void *block, std::size_t bytes)
{
#ifdef __linux__
    // Whole pages inside the block.
    const auto begin = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t first = (begin + kHugePage - 1) / kHugePage * kHugePage;
    const std::uintptr_t last = (begin + bytes) / kHugePage * kHugePage;
    if (first < last) {
        // A wish, whose refusal costs time only.
        madvise(static_cast<char *>(block) + (first - begin), last - first, MADV_HUGEPAGE);
    }
#else
    (void)block;
    (void)bytes;
#endif
}

void freeBlock(void *block)
{
    std::free(block);
}

Column ColumnPool::take(std::size_t size)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_kept.empty() && m_kept.back().size() == size) {
            Column column = std::move(m_kept.back());
            m_kept.pop_back();
            return column;
        }
        m_kept.clear(); // of another size: the maps have changed
    }
    Column column;
    column.resize(size);
    return column;
}

void ColumnPool::give(Column column)
{
    if (column.empty()) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    if (!m_kept.empty() && m_kept.back().size() != column.size()) {
        m_kept.clear();
    }
    try {
        m_kept.push_back(std::move(column));
    } catch (const std::bad_alloc &) { // no room to keep it: it is freed
    }
}

} // namespace orvel
