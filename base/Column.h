#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace orvel {

/// Memory for large blocks of numbers: in huge pages where the system has them, because touching
/// a million small pages for the first time costs more than the arithmetic that fills them.
/// allocateBlock throws std::bad_alloc.
void *allocateBlock(std::size_t bytes);
void freeBlock(void *block);

/// Asks for huge pages for memory that others have allocated and nobody has touched.
void wishHugePages(void *block, std::size_t bytes);

/// Allocates by allocateBlock and leaves new elements as they are: resize() does not fill.
template <class T> struct BlockAllocator {
    using value_type = T;

    BlockAllocator() = default;
    template <class U> BlockAllocator(const BlockAllocator<U> &) {}

    T *allocate(std::size_t n)
    {
        if (n > static_cast<std::size_t>(-1) / 2 / sizeof(T)) {
            throw std::bad_alloc();
        }
        return static_cast<T *>(allocateBlock(n * sizeof(T)));
    }
    void deallocate(T *block, std::size_t) { freeBlock(block); }

    template <class U> void construct(U *at) { ::new (static_cast<void *>(at)) U; }
    template <class U, class... Args> void construct(U *at, Args &&...args)
    {
        ::new (static_cast<void *>(at)) U(std::forward<Args>(args)...);
    }

    bool operator==(const BlockAllocator &) const { return true; }
};

/// The values of one quantity of a map, a pixel an element. Elements that resize() adds are
/// undefined: they are written before they are read.
using Column = std::vector<double, BlockAllocator<double>>;

/// Keeps columns that are no longer needed for the next ones of the same size, so that a
/// calculation repeated does not fault its memory in again. Any thread.
class ColumnPool {
public:
    /// A column of that size; contents are undefined.
    Column take(std::size_t size);
    void give(Column column);

private:
    std::mutex m_mutex;
    std::vector<Column> m_kept; ///< all of one size
};

} // namespace orvel
