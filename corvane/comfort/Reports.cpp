#include <corvane/comfort/Reports.h>
#include <corvane/foundations/FailureReport.h>

#include <algorithm>

namespace corvane {

std::string OnOneLine(std::string_view text) {
    std::string line = ToUtf8(ToWide(text));
    const auto breaksLines = [](char c) { return static_cast<unsigned char>(c) < ' '; };
    std::replace_if(line.begin(), line.end(), breaksLines, ' ');
    return line;
}

int ReportRefusal(const char* function, std::string_view name, const char* refusal) {
    return failure_reportFormatted(FAILURE_GENERAL, CORVANE_TEXT("%S: '%S'"), configChannel, function,
                                   __LINE__, refusal, OnOneLine(name).c_str());
}

} // namespace corvane
