#pragma once

#include <algorithm>
#include <cstddef>
#include <exception>
#include <thread>
#include <vector>

namespace orvel {

/// Number of threads for a wish: itself, or all cores for 0; at least 1.
inline int threadsFor(int wanted)
{
    return wanted > 0 ? wanted : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

/// Calls work(begin, end) for consecutive parts of 0 .. n on up to `threads` threads, and returns
/// when all are done (fork and join). Parts hold at least `grain` items. Each item is worked on
/// exactly once, whatever the number of threads. When parts throw (for want of memory), one of
/// their exceptions is thrown on after all have ended.
template <class Work> void inParallel(std::size_t n, std::size_t grain, int threads, Work work)
{
    const std::size_t most = std::max<std::size_t>(1, n / std::max<std::size_t>(1, grain));
    const std::size_t parts =
        std::min<std::size_t>(most, static_cast<std::size_t>(std::max(1, threads)));
    std::vector<std::exception_ptr> faults(parts);
    const auto guarded = [&work, &faults](std::size_t part, std::size_t from, std::size_t to) {
        try {
            work(from, to);
        } catch (...) {
            faults[part] = std::current_exception();
        }
    };
    std::vector<std::thread> others;
    others.reserve(parts);
    std::size_t begin = 0;
    for (std::size_t part = 1; part < parts; ++part) {
        const std::size_t end = n / parts * part + std::min(n % parts, part);
        try {
            others.emplace_back(guarded, part, begin, end);
        } catch (const std::exception &) {
            break; // no more threads, or no memory for one: this one does the rest
        }
        begin = end;
    }
    guarded(0, begin, n);
    for (std::thread &other : others) {
        other.join();
    }
    for (const std::exception_ptr &fault : faults) {
        if (fault) {
            std::rethrow_exception(fault);
        }
    }
}

} // namespace orvel
