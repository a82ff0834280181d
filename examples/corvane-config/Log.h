// The library's log: printed on request, and the source of the error texts in messages.
#pragma once

#include <string>

class IConfigSource;

/// Receives the library's log lines from now on, and prints them to standard error if `print`.
void ReceiveLog(bool print);

/// " (No space left on device)" for the last error of the system that was logged; empty if there was none.
std::string LoggedReason();

/// During its lifetime, a write to `source` is retried only if the file is busy: no other error goes away by
/// waiting.
class RetryWhileBusy {
public:
    explicit RetryWhileBusy(IConfigSource& source);
    RetryWhileBusy(const RetryWhileBusy&) = delete;
    RetryWhileBusy& operator=(const RetryWhileBusy&) = delete;
    ~RetryWhileBusy();
};
