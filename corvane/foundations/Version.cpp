#include <corvane/foundations/Version.h>

const char* corvane::Version() noexcept {
    return CORVANE_VERSION;
}
