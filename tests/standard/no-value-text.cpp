// Does not compile, and has to say what to do.
#include <corvane/comfort.h>

class Unknown {};

bool Read(const ConfigManager& config) {
    return corvane::Get<TYPE>(config, "S:t").has_value();
}
