#pragma once

#include <QString>

#include <memory>
#include <vector>

namespace orvel::bench {

class Inputs;

/// Something that is timed. Everything it needs is made before, everything it gives is kept until
/// the next run, which may reuse it.
class Work {
public:
    Work() = default;
    virtual ~Work() = default;
    Work(const Work &) = delete;
    Work &operator=(const Work &) = delete;

    /// Takes the inputs, made at their first use. Throws when that is not possible.
    virtual void prepare(Inputs &inputs) = 0;
    /// Before every run, not timed.
    virtual void ready() {}
    /// The timed part.
    virtual void run() = 0;
    /// What is wrong with the answer of the last run; empty when it is right.
    virtual QString check() const = 0;
};

struct NamedWork {
    const char *name;
    std::unique_ptr<Work> (*make)();
};

/// All works, in the order in which they run.
const std::vector<NamedWork> &works();

} // namespace orvel::bench
