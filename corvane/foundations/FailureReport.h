// Failure reports: one line in the log, and the code to return.
#pragma once

#include <corvane/foundations/FailureCode.h>
#include <corvane/foundations/WideString.h>

/// The one logging channel of the library.
inline constexpr const corvane::wchar* configChannel = CORVANE_TEXT("corvane.config");

/// Logs the failure `code` of `function` ("ConfigFile::WriteValue") at source line `line`, with `message` if
/// it is not null. Returns `code`. Never fails; safe from any thread. Allocates nothing and takes no lock
/// of the library, except that a log sink is looked up under a lock and that a line of more than 512
/// characters needs memory, without which it is lost.
std::int32_t failure_report(std::int32_t code, const corvane::wchar* message, const corvane::wchar* channel,
                            const char* function, std::int32_t line);

/// The same with a message composed from a wide printf format, or none if it is null: at most 511 characters.
std::int32_t failure_reportFormatted(std::int32_t code, const corvane::wchar* messageFormat,
                                     const corvane::wchar* channel, const char* function, std::int32_t line,
                                     ...);
