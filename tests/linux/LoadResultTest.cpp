#include "TestFolder.h"

#include <corvane/comfort.h>

#include <grp.h>

namespace corvane::test {
namespace {

class LoadResults : public TestFolder {};

TEST_F(LoadResults, NameTheRightThatIsMissing) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    ASSERT_EQ(::chmod(Path(".").c_str(), 0755) + ::mkdir(Path("closed").c_str(), 0700), 0);
    const std::pair<std::string, const char*> rows[] = {
        {Make("a", "[s]\n", 0222), "it may not be read: Permission denied"},
        {Make("b", "[s]\n", 0444), "it may not be written, which a load needs as well: Permission denied"},
        {Make("closed/c", "[s]\n", 0666), "it cannot be reached: Permission denied"},
        {"/dev/null", "it is no regular file"}};
    const int status = Wait(Fork([&] {
        EXPECT_EQ(::setgroups(0, nullptr) + ::setgid(65534) + ::setuid(65534), 0);
        for (const auto& [path, cause] : rows) {
            ConfigManager config;
            EXPECT_EQ(Load(config, path).reason, "cannot load '" + path + "': " + cause);
        }
        return HasFailure() ? 1 : 0;
    }));
    EXPECT_EQ(status, 0);
}

} // namespace
} // namespace corvane::test
