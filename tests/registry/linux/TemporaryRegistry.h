// A registry of the test's own, in a temporary folder.
#pragma once

#include "linux/TestFolder.h"

#include <corvane/platform/RegistryFolders.h>

namespace corvane {

class TemporaryRegistry : public test::TestFolder {
protected:
    TemporaryRegistry() { EXPECT_TRUE(SetRegistryFolders(Path("user"), Path("machine"))); }
    ~TemporaryRegistry() override { SetRegistryFolders("", ""); }
};

} // namespace corvane
