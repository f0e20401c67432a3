// Makes the example data set and judges what an analysis of it found. Knows the program it judges
// only by the files: no code is shared.

#include "Compare.h"
#include "Writers.h"

#include <exception>
#include <iostream>
#include <string_view>
#include <vector>

namespace {

enum ExitStatus { Good = 0, OutOfBounds = 1, Unusable = 2 };

int usage()
{
    std::cerr << "usage: orvel-phantom make DIR\n"
                 "       orvel-phantom make-beamtime DIR\n"
                 "       orvel-phantom compare-table TABLE\n"
                 "       orvel-phantom compare WHAT RESULTFILE\n"
                 "       orvel-phantom compare-target WHAT PRINTED\n"
                 "WHAT:";
    for (const orvel::phantom::Plan &plan : orvel::phantom::plans()) {
        std::cerr << ' ' << plan.name;
    }
    std::cerr << '\n';
    return Unusable;
}

int run(const std::vector<std::string_view> &arguments)
{
    using namespace orvel::phantom;
    if (arguments.size() == 2 && arguments[0] == "make") {
        writeExample(arguments[1]);
        return Good;
    }
    if (arguments.size() == 2 && arguments[0] == "make-beamtime") {
        writeBeamtime(arguments[1]);
        return Good;
    }
    if (arguments.size() == 2 && arguments[0] == "compare-table") {
        return compareTable(arguments[1], std::cout) ? Good : OutOfBounds;
    }
    const Plan *plan = arguments.size() == 3 ? planNamed(arguments[1]) : nullptr;
    if (plan && arguments[0] == "compare") {
        return compareMap(*plan, arguments[2], std::cout) ? Good : OutOfBounds;
    }
    if (plan && arguments[0] == "compare-target") {
        return compareTarget(*plan, arguments[2], std::cout) ? Good : OutOfBounds;
    }
    return usage();
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception &error) {
        std::cerr << "orvel-phantom: " << error.what() << '\n';
        return Unusable;
    }
}
