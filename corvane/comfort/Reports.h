#pragma once

#include <corvane/foundations/WideString.h>

namespace corvane {

/// `text` for a log line or message, without what would break the line.
std::string OnOneLine(std::string_view text);

/// Reports that an operation of the comfort layer refused `name`, a key or path. Gives FAILURE_GENERAL.
int ReportRefusal(const char* function, std::string_view name, const char* refusal);

} // namespace corvane
