// A program as a user has it: built against corvane in each of the ways that there are.
#include <corvane/comfort.h>
#include <corvane/config.h>

#include <iostream>

int main(int count, char** arguments) {
    ConfigManager config;
    if (count != 2 || !corvane::Load(config, arguments[1]))
        return 1;
    std::cout << "corvane " << corvane::Version() << ", port " << corvane::Get(config, "Mail:Port", 0)
              << '\n';
}
