// Where finished log lines go, and which are wanted at all.
#pragma once

#include <corvane/foundations/NativeLogging.h>

namespace corvane::logging {

/// One relaxed load: what an unwanted line costs.
bool IsWanted(Quillon::NativeLogging::Severity severity) noexcept;

/// Hands the line to the sink, or to standard error when there is none. Drops it when the calling thread is
/// in a sink already.
void Emit(const Quillon::NativeLogging::LogLine& line) noexcept;

} // namespace corvane::logging
