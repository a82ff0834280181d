// Log output and threshold.
#pragma once

#include <corvane/foundations/NativeLogging.h>

namespace corvane::logging {

/// One relaxed load, the whole cost of a line below the threshold.
bool IsWanted(Quillon::NativeLogging::Severity severity) noexcept;

/// Passes the line to the sink, or to standard error without one. Drops it if the calling thread is already
/// in a sink.
void Emit(const Quillon::NativeLogging::LogLine& line) noexcept;

} // namespace corvane::logging
