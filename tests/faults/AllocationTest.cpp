// Lack of memory at every allocation in turn, and roads on which nothing may be allocated at all.
#include "support/ConfigFixture.h"
#include "support/StateOf.h"

#include <corvane/cache/TagMap.h>
#include <corvane/foundations/FailureReport.h>
#include <corvane/sources/CreateConfigSource.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <thread>

namespace {

// Counts the allocations of one thread, and lets the n-th and all after it fail.
thread_local long allocations = 0;
thread_local long allowed = -1;
thread_local std::size_t largest = 0;

} // namespace

void* operator new(std::size_t size) {
    ++allocations;
    largest = std::max(largest, size);
    if (allowed == 0)
        throw std::bad_alloc();
    if (allowed > 0)
        --allowed;
    if (void* const memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}
// Inlined where operator new is not, it would look like a mismatch to the compiler.
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using corvane::wstring;

class Allocation : public ConfigFixture {
protected:
    void SetUp() override {
        Quillon::NativeLogging::LoggerRegistry::setThreshold(Quillon::NativeLogging::Severity::problem);
        Quillon::NativeLogging::LoggerRegistry::setSink([](const auto&) {});
        Start("[A section with a long name]\na tag with a long name=" + std::string(3000, 'x') + "\nb=1\n");
        ASSERT_EQ(Set("_$CACHE$_:a long key of the cache", "a value that is too long for a small string"), 0);
        manager.GetConfigSource()->SetWriteRetries(0);
    }

    /// Whether another thread can take the lock.
    bool LockIsFree() {
        bool answered = false;
        std::thread([&] { answered = manager.GetConfigName() != nullptr; }).join();
        return answered;
    }

    template <class Operation>
    static void WithAllocations(long count, Operation operation) {
        allowed = count;
        try {
            operation();
        } catch (const std::bad_alloc&) {
        }
        allowed = -1;
    }

    /// Runs `operation` with one allocation more each time, until it gives 0; before that the manager has to
    /// stay as it was, and the file too if both change as one.
    template <class Operation>
    void FailEachAllocation(Operation operation, bool bothAsOne = false) {
        const auto before = StateOf(manager);
        const std::string bytes = Bytes(file);
        int result = 1;
        for (long count = 0; result != 0; ++count) {
            WithAllocations(count, [&] { result = operation(); });
            ASSERT_TRUE(result == 0 ? count > 0 : StateOf(manager) == before) << count;
            ASSERT_TRUE(!bothAsOne || (Bytes(file) == bytes) == (result != 0)) << count;
            ASSERT_TRUE(LockIsFree());
        }
    }

    const wstring key = CORVANE_TEXT("A section with a long name:A TAG WITH A LONG NAME");
    const wstring value = CORVANE_TEXT("a value that is too long for the small string");
};

TEST_F(Allocation, FailingChangesNothing) {
    wstring snapshot;
    FailEachAllocation([&] { return manager.CreateSnapshot(snapshot); });
    Put(Bytes(file) + "[Another section]\nc=2\n");
    const wstring path = WidePath(file);
    FailEachAllocation([&] { return manager.Update(path.c_str(), -1); });
    EXPECT_EQ(Get("Another section:c"), "2");
    FailEachAllocation([this] { return manager.SetValue(key, value); });
    FailEachAllocation(
        [this] { return manager.SetValue(CORVANE_TEXT("New section, long name:tag"), value); });
    FailEachAllocation(
        [this] { return manager.SetValue(CORVANE_TEXT("New cached one, long:tag"), value, true); });
    const wstring longNames = CORVANE_TEXT("Another section, with a long name:and a tag with one");
    const std::vector<corvane::ConfigChange> changes{{CORVANE_TEXT("Another section:"), {}},
                                                     {key, value + value},
                                                     {CORVANE_TEXT("Another section:d"), value},
                                                     {longNames, value},
                                                     {longNames + value, value},
                                                     {CORVANE_TEXT("New cached one, long:other"), value}};
    FailEachAllocation([&] { return manager.ApplyChanges(changes); }, true);
    EXPECT_EQ(StateOf(manager).size(), 15U);
    ConfigManager other;
    FailEachAllocation([&] {
        manager = other = manager;
        return 0;
    });
    FailEachAllocation([this] { return manager.DeleteValue(key) + manager.Exists(key); }, true);
    FailEachAllocation([&] { return manager.RestoreSnapshot(snapshot); });
}

TEST_F(Allocation, FailingLeavesNoSourceThatOnlyWrites) {
    const wstring path = WidePath(file);
    bool isReady = false;
    for (long count = 0; !isReady || count < 10; ++count) {
        std::unique_ptr<IConfigSource> source;
        WithAllocations(count, [&] { source.reset(CreateConfigSource(path.c_str())); });
        isReady = source && source->IsReady();
        wstring text;
        EXPECT_TRUE(!isReady || (source->ReadValue(key, text) == 3000 && text.size() == 3000)) << count;
    }
}

TEST_F(Allocation, IsNotNeededToReport) {
    Quillon::NativeLogging::LoggerRegistry::setSink({}); // standard error
    testing::internal::CaptureStderr();
    const long before = allocations;
    WithAllocations(0, [this] { EXPECT_EQ(failure_report(5, value.c_str(), configChannel, "F::G", 1), 5); });
    EXPECT_EQ(allocations, before);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "corvane.config: Error 5 \"" + corvane::ToUtf8(value) + "\" at func: F::G line: 1\n");
}

TEST_F(Allocation, ReusesTheRoomOfWhatIsGone) {
    const wstring large(10'000, 'x');
    largest = 0;
    for (int round = 0; round < 300; ++round) {
        EXPECT_EQ(manager.SetValue(CORVANE_TEXT("_$CACHE$_:a"), large), 0);
        EXPECT_EQ(manager.SetValue(CORVANE_TEXT("_$CACHE$_:a"), large + large), 0);
        corvane::TagMap map;
        map.Insert(CORVANE_TEXT("kept"), {value});
        for (int again = 0; again < 100; ++again) {
            map.Insert(CORVANE_TEXT("a"), {large});
            EXPECT_TRUE(map.Erase(CORVANE_TEXT("A")));
        }
        EXPECT_EQ(map.Find(CORVANE_TEXT("kept"))->value, value);
    }
    EXPECT_LT(largest, 40 * large.size());
}

// A section is noted before the cache gets the value, and stays noted if there is no memory for that.
TEST_F(Allocation, FailingLeavesTheNoteOfACacheOnlySection) {
    const wstring cached = CORVANE_TEXT("New cached one, long:tag");
    bool noted = false;
    for (long count = 0;; ++count) {
        WithAllocations(count, [&] { manager.SetValue(cached, value, true); });
        if (manager.Exists(cached))
            break;
        ASSERT_EQ(manager.SetValue(cached, value), 0);
        const bool inCacheAlone = Bytes(file).find("[New cached one, long]") == std::string::npos;
        EXPECT_GE(inCacheAlone, noted) << count;
        noted = inCacheAlone;
        ASSERT_EQ(Delete("New cached one, long:"), 0);
    }
    EXPECT_TRUE(noted);
}

TEST_F(Allocation, IsNotNeededToRead) {
    wstring text(3000, 'y');
    EXPECT_EQ(manager.GetValue(key, text), 0); // the key's buffers grow to its length
    const long before = allocations;
    EXPECT_EQ(manager.GetValue(key, text), 0);
    EXPECT_TRUE(manager.Exists(key));
    EXPECT_EQ(manager.GetValue(CORVANE_TEXT("No such section is there"), text), FAILURE_GENERAL);
    EXPECT_EQ(allocations - before, 1); // the test's own key
}

} // namespace
