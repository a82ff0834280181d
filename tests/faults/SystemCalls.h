// The system calls that examine and change files, counted; the n-th can be made to fail or to end the
// process.
#pragma once

namespace faults {

enum class Kind {
    Fail,   ///< the n-th fails with `error`, without an effect
    FailOn, ///< the n-th fails and so do all after it
    Short,  ///< the n-th, if it is a write, stores half
    Kill,   ///< the process ends before the n-th
};

struct Plan {
    Kind kind = Kind::Fail;
    int error = 0;
    long n = 0;                    ///< counted from 1; 0 for no fault
    bool needsNames = false;       ///< no file can be made without a name
    bool firstNameIsKnown = false; ///< the first random number is 0
};

struct Outcome {
    long calls = 0;
    bool struck = false;        ///< the n-th call was reached
    bool cleanUpFailed = false; ///< a removal was among the calls that failed
    bool flushFailed = false;   ///< the last one of a file
    long secondsSlept = 0;      ///< between two attempts
};

void Begin(const Plan& plan) noexcept;

/// From here on all calls go through again.
Outcome End() noexcept;

} // namespace faults
