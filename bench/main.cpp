// Times the works that users wait for, each on an input of a fixed size. README.md says how to
// read and compare the figures.

#include "bench/Inputs.h"
#include "bench/Timer.h"
#include "bench/WindowWorks.h"
#include "bench/Work.h"

#include <QCoreApplication>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace {

using orvel::bench::NamedWork;
using orvel::bench::works;

struct Arguments {
    bool understood = true;
    int threads = 0; ///< 0: all cores
    int side = orvel::bench::kMapSide;
    std::vector<NamedWork> chosen;
};

int numberFrom(std::string_view text)
{
    int number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? number : -1;
}

Arguments argumentsOf(int argc, char **argv)
{
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--threads") {
            arguments.threads = ++i < argc ? numberFrom(argv[i]) : -1;
            arguments.understood = arguments.understood && arguments.threads >= 0;
            continue;
        }
        if (argument == "--side") {
            arguments.side = ++i < argc ? numberFrom(argv[i]) : 0;
            arguments.understood =
                arguments.understood && arguments.side > 0 && arguments.side <= 8192;
            continue;
        }
        const auto named = std::find_if(works().begin(), works().end(), [&](const NamedWork &work) {
            return work.name == argument;
        });
        if (named == works().end()) {
            arguments.understood = false;
        } else {
            arguments.chosen.push_back(*named);
        }
    }
    if (arguments.chosen.empty()) {
        arguments.chosen = works();
    }
    return arguments;
}

void printUsage()
{
    std::fputs("usage: orvel_bench [--threads N] [--side PIXELS] [NAME...]\nworks:", stderr);
    for (const NamedWork &work : works()) {
        std::fprintf(stderr, " %s", work.name);
    }
    std::fputs("\n", stderr);
}

/// Prints "NAME median_ms"; false, and no time, when the answer is wrong.
bool measure(const NamedWork &named, orvel::bench::Inputs &inputs)
{
    const auto work = named.make();
    work->prepare(inputs);
    const double ms = orvel::bench::medianMs([&work] { work->ready(); }, [&work] { work->run(); });
    const QString fault = work->check();
    if (!fault.isEmpty()) {
        std::fprintf(stderr, "%s: wrong answer: %s\n", named.name, qUtf8Printable(fault));
        return false;
    }
    std::printf("%s %.3f\n", named.name, ms);
    std::fflush(stdout);
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    const Arguments arguments = argumentsOf(argc, argv);
    if (!arguments.understood) {
        printUsage();
        return 2;
    }
    // Readers tell the debug log about every file.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const auto app = orvel::bench::makeApplication(argc, argv);
    try {
        orvel::bench::Inputs inputs(arguments.threads, arguments.side);
        bool right = true;
        for (const NamedWork &named : arguments.chosen) {
            right = measure(named, inputs) && right;
        }
        return right ? 0 : 1;
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "orvel_bench: %s\n", fault.what());
        return 1;
    }
}
