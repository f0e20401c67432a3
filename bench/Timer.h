#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

namespace orvel::bench {

/// Median duration of work() [ms], ready() before each call not counted: one call to warm up, then
/// 5 to 50 calls within about a second, or 3 when a call takes long.
template <class Ready, class Function> double medianMs(Ready ready, Function work)
{
    constexpr double kLongMs = 1500.0;
    constexpr double kBudgetMs = 1000.0;
    const auto timed = [&ready, &work] {
        ready();
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> taken =
            std::chrono::steady_clock::now() - start;
        return taken.count();
    };
    const std::size_t least = timed() > kLongMs ? 3 : 5;
    std::vector<double> runs;
    double spent = 0.0;
    while (runs.size() < least || (spent < kBudgetMs && runs.size() < 50)) {
        runs.push_back(timed());
        spent += runs.back();
    }
    std::sort(runs.begin(), runs.end());
    const std::size_t middle = runs.size() / 2;
    return runs.size() % 2 == 1 ? runs[middle] : 0.5 * (runs[middle - 1] + runs[middle]);
}

} // namespace orvel::bench
