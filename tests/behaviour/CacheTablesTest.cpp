// The maps of the cache beside maps of the standard library, through random changes.
#include <corvane/cache/NameHash.h>
#include <corvane/cache/SectionMap.h>

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <string>

namespace corvane {
namespace {

using Model = std::map<wstring, std::pair<wstring, bool>, CaseInsensitiveLess>;
using Models = std::map<wstring, Model, CaseInsensitiveLess>;

class CacheTables : public testing::Test {
protected:
    unsigned Below(unsigned count) { return static_cast<unsigned>(m_random() % count); }

    wstring RandomName() {
        const std::string digits = std::to_string(Below(40));
        wstring name(1 + Below(2) * 30, Below(2) ? wchar('n') : wchar('N'));
        return name.append(digits.begin(), digits.end());
    }

    wstring RandomText() {
        return wstring(Below(Below(20) == 0 ? 6000 : 12), static_cast<wchar>('a' + Below(26)));
    }

    static void ExpectSame(const TagMap& tags, const Model& model) {
        ASSERT_EQ(tags.Size(), model.size());
        bool hasCacheOnly = false;
        auto expected = model.begin();
        for (const TagMap::Tag& tag : tags) {
            EXPECT_EQ(tag.name, expected->first);
            EXPECT_EQ(tag.value, expected->second.first);
            EXPECT_EQ(tag.cacheOnly, expected->second.second);
            EXPECT_EQ(tags.Find(expected->first)->name.data(), tag.name.data());
            hasCacheOnly = hasCacheOnly || tag.cacheOnly;
            ++expected;
        }
        EXPECT_EQ(tags.HasCacheOnly(), hasCacheOnly);
    }

    static void ExpectSameOrder(const SectionMap& sections, const Models& models) {
        ASSERT_EQ(sections.Ordered().size(), models.size());
        auto expected = models.begin();
        for (const auto* const section : sections.Ordered()) {
            EXPECT_EQ(section->first, expected->first);
            ExpectSame(section->second, expected++->second);
        }
    }

    void Change(TagMap& tags, Model& model) {
        const wstring name = RandomName();
        const wstring value = RandomText();
        const bool cacheOnly = Below(2) == 0;
        switch (Below(5)) {
        case 0: tags.Insert(name, {value, cacheOnly}), model.insert({name, {value, cacheOnly}}); break;
        case 1: EXPECT_EQ(tags.Erase(name), model.erase(name) == 1); break;
        default: tags.Assign(name, {value, cacheOnly}), model[name] = {value, cacheOnly};
        }
    }

private:
    std::mt19937 m_random; // the same numbers each time
};

TEST_F(CacheTables, HoldTagsAndSectionsAsMapsDo) {
    SectionMap sections;
    Models models;
    for (int step = 0; step < 10'000 && !HasFailure(); ++step) {
        const wstring name = RandomName();
        auto* const section = sections.Find(name);
        ASSERT_EQ(section != nullptr, models.count(name) == 1);
        if (!section) {
            TagMap tags;
            Change(tags, models[name]);
            sections.Insert(name, TagMap(tags));
        } else if (Below(100) == 0) {
            const auto kept = *section;
            sections.Erase(*section);
            switch (Below(3)) {
            case 0: sections.Insert(kept.first, TagMap(kept.second)); break;
            case 1: sections.InsertCopy(kept.first, kept.second); break;
            default: models.erase(kept.first);
            }
        } else {
            Change(section->second, models[name]);
            ExpectSame(section->second, models[name]);
        }
        if (Below(200) == 0)
            ExpectSameOrder(SectionMap(sections), models);
    }
    ExpectSameOrder(sections, models);
}

TEST(Hash, DiffersFromProcessToProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // as a program that starts anew
    std::set<int> hashes;
    const auto keep = [&hashes](int status) { return hashes.insert(status), true; };
    for (int process = 0; process < 3; ++process)
        EXPECT_EXIT(std::_Exit(HashIgnoringCase(CORVANE_TEXT("name")) & 0x7F), keep, "");
    EXPECT_GT(hashes.size(), 1U);
}

} // namespace
} // namespace corvane
