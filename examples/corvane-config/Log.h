// The library's log: printed on request, and the source of the error texts in messages.
#pragma once

#include <string>

class IConfigSource;

/// Receives the library's log lines from now on, and prints them to standard error if `print`.
void ReceiveLog(bool print);

/// " (No space left on device)" for the last error of the system that was logged; empty if there was none.
std::string LoggedReason();

/// While it lives, a write to `source` is tried again only if the file is busy: no other error passes by
/// itself.
class RetryWhileBusy {
public:
    explicit RetryWhileBusy(IConfigSource& source);
    RetryWhileBusy(const RetryWhileBusy&) = delete;
    RetryWhileBusy& operator=(const RetryWhileBusy&) = delete;
    ~RetryWhileBusy();
};
