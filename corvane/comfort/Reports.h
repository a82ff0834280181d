#pragma once

#include <corvane/foundations/WideString.h>

namespace corvane {

/// `text` as valid UTF-8 on one line, for a log line or message.
std::string OnOneLine(std::string_view text);

/// Reports that an operation of the comfort layer refused `name`, a key or path. Returns FAILURE_GENERAL.
int ReportRefusal(const char* function, std::string_view name, const char* refusal);

} // namespace corvane
