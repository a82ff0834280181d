// A platform that a test tells what to answer, and that remembers what it was asked.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

struct ScriptedPlatform {
    using Section = std::pair<std::string, std::vector<std::pair<std::string, std::string>>>;

    bool accessible = true;
    std::int64_t time = 1000;
    std::vector<Section> sections;      // the content of the one file that there is
    std::deque<std::uint32_t> refusals; // reasons; each refuses one write
    std::uint32_t refuseAlways = 0;     // a reason, or none
    bool throwOnWrite = false;
    bool throwOnRead = false;
    int copyResult = 1;
    int touchResult = 0;

    std::uint32_t lastError = 0;
    std::vector<std::string> calls;
};

/// Whether the calling thread is inside the platform: its own allocations are none of the library's.
bool InPlatform();

/// The platform of the running test; made anew by Reset.
ScriptedPlatform& Platform();
void Reset();
