// The system calls that examine and change files, counted; the n-th can be made to fail or to end the
// process.
#pragma once

#include <chrono>
#include <functional>
#include <string_view>
#include <sys/types.h>

namespace faults {

enum class Kind {
    Fail,      ///< the n-th fails with `error`, without an effect
    FailAlike, ///< the n-th fails, and so do all after it of the same name
    FailOn,    ///< the n-th fails and so do all after it
    Short,     ///< the n-th, if it is a write, stores half
    Meddle,    ///< `meddle` runs before the n-th and before the next
    Kill,      ///< the process ends before the n-th
};

struct Plan {
    Kind kind = Kind::Fail;
    int error = 0;
    std::function<void()> meddle = {};
    long n = 0;                    ///< counted from 1; 0 for no fault
    off_t size = 0;                ///< that files seem to have, if not 0
    long fileSystem = 0;           ///< on which files seem to be, if not 0
    bool needsNames = false;       ///< no file can be made without a name
    bool firstNameIsKnown = false; ///< the first random number is 0
};

struct Outcome {
    long calls = 0;
    long flushes = 0;           ///< of files and folders
    bool struck = false;        ///< the n-th call was reached
    std::string_view name;      ///< of the n-th call
    bool cleanUpFailed = false; ///< a removal was among the calls that failed
    bool isUnflushed = false;   ///< a power failure could undo a part, or bring a name before its content
    bool isUnreserved = false;  ///< a file was overwritten before there was room for the new content
    long secondsSlept = 0;      ///< between two attempts
    std::chrono::nanoseconds waited{}; ///< for locks
};

/// What became of the calls that `work` makes.
Outcome During(const Plan& plan, const std::function<void()>& work);

} // namespace faults
