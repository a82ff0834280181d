// Lack of memory at every allocation in turn, and roads on which nothing may be allocated at all.
#include "ScriptedPlatform.h"
#include "support/StateOf.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <thread>

namespace {

// Counts the allocations of one thread, and lets the n-th and all after it fail.
thread_local long allocations = 0;
thread_local long allowed = -1;
thread_local std::size_t largest = 0;

void* Allocate(std::size_t size) {
    if (!InPlatform()) {
        ++allocations;
        largest = std::max(largest, size);
        if (allowed == 0)
            throw std::bad_alloc();
        if (allowed > 0)
            --allowed;
    }
    if (void* const memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size) {
    return Allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using corvane::wstring;
using corvane::test::StateOf;

class Allocation : public testing::Test {
protected:
    Allocation() {
        Quillon::NativeLogging::LoggerRegistry::setThreshold(Quillon::NativeLogging::Severity::problem);
        Quillon::NativeLogging::LoggerRegistry::setSink([](const auto&) {});
        Reset();
        Platform().sections = {
            {"A section with a long name", {{"a tag with a long name", longValue}, {"b", "1"}}}};
        EXPECT_EQ(manager.Update(CORVANE_TEXT("a file name that is long"), 0), 0);
        EXPECT_EQ(manager.SetValue(CORVANE_TEXT("_$CACHE$_:a long key of the cache"), value, true), 0);
    }
    ~Allocation() override { Quillon::NativeLogging::LoggerRegistry::setSink({}); }

    /// Whether another thread can take the lock.
    bool LockIsFree() {
        bool answered = false;
        std::thread([&] { answered = manager.GetConfigName() != nullptr; }).join();
        return answered;
    }

    /// Runs `operation` with one allocation more each time, until it goes through; after each failure the
    /// manager has to be as it was.
    template <class Operation>
    void FailEachAllocation(Operation operation) {
        const auto before = StateOf(manager);
        for (long count = 0;; ++count) {
            allowed = count;
            try {
                operation();
                allowed = -1;
                EXPECT_GT(count, 0);
                return;
            } catch (const std::bad_alloc&) {
                allowed = -1;
                ASSERT_EQ(StateOf(manager), before) << count;
                ASSERT_TRUE(LockIsFree());
            }
        }
    }

    const std::string longValue = std::string(3000, 'x');
    const wstring key = CORVANE_TEXT("A section with a long name:A TAG WITH A LONG NAME");
    const wstring value = CORVANE_TEXT("a value that is too long for the small string");
    ConfigManager manager;
};

TEST_F(Allocation, FailingInALoadChangesNothing) {
    Platform().sections.push_back({"Another section", {{"c", "2"}}});
    FailEachAllocation(
        [this] { EXPECT_EQ(manager.Update(CORVANE_TEXT("a file name that is long"), -1), 0); });
    EXPECT_EQ(StateOf(manager).size(), 7U);
}

TEST_F(Allocation, FailingInAChangeLeavesTheCache) {
    FailEachAllocation([this] { EXPECT_EQ(manager.SetValue(key, value), 0); });
    FailEachAllocation([this] { manager.SetValue(CORVANE_TEXT("New section, long name:tag"), value); });
    FailEachAllocation(
        [this] { manager.SetValue(CORVANE_TEXT("New cached one, long name:tag"), value, true); });
    ConfigManager other;
    FailEachAllocation([&] { manager = other = manager; });
    FailEachAllocation([this] { EXPECT_EQ(manager.DeleteValue(key), 0); });
    FailEachAllocation([this] { EXPECT_EQ(manager.RestoreSnapshot(value), 0); });
}

TEST_F(Allocation, ReusesTheRoomOfWhatIsGone) {
    const wstring large(10'000, 'x');
    largest = 0;
    for (int round = 0; round < 300; ++round) {
        EXPECT_EQ(manager.SetValue(CORVANE_TEXT("_$CACHE$_:a"), large), 0);
        EXPECT_EQ(manager.SetValue(CORVANE_TEXT("_$CACHE$_:a"), large + large), 0);
        corvane::TagMap map;
        map.Insert({CORVANE_TEXT("kept"), value, false});
        for (int again = 0; again < 100; ++again) {
            map.Insert({CORVANE_TEXT("a"), large, false});
            EXPECT_TRUE(map.Erase(CORVANE_TEXT("A")));
        }
        EXPECT_EQ(map.At(0).value, value);
    }
    EXPECT_LT(largest, 40 * large.size());
}

TEST_F(Allocation, IsNotNeededToRead) {
    wstring text = wstring(longValue.size(), 'y');
    EXPECT_EQ(manager.GetValue(key, text), 0); // the key's buffers grow to its length
    const long before = allocations;
    EXPECT_EQ(manager.GetValue(key, text), 0);
    EXPECT_TRUE(manager.Exists(key));
    EXPECT_EQ(manager.GetValue(CORVANE_TEXT("No such section is there"), text), FAILURE_GENERAL);
    EXPECT_EQ(allocations - before, 1); // the test's own key
}

} // namespace
