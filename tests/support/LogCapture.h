// Collects the library's log lines for as long as it lives.
#pragma once

#include <corvane/foundations/NativeLogging.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

class LogCapture {
public:
    LogCapture() {
        using namespace Quillon::NativeLogging;
        LoggerRegistry::setThreshold(Severity::progress);
        LoggerRegistry::setSink([this](const LogLine& line) {
            const std::string text = corvane::ToUtf8(line.text);
            m_lines.push_back(text.substr(0, text.find(" line: ")));
            if (m_onLine)
                m_onLine();
        });
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture() { Quillon::NativeLogging::LoggerRegistry::setSink({}); }

    /// The lines since the last call, reports without the number of their source line.
    std::vector<std::string> Take() { return std::exchange(m_lines, {}); }

    /// What comes with each line from here on.
    void OnLine(std::function<void()> work) { m_onLine = std::move(work); }

private:
    std::function<void()> m_onLine;
    std::vector<std::string> m_lines;
};

using Lines = std::vector<std::string>;
