// The tables of the cache beside a map of the standard library, through random changes.
#include <corvane/manager/SectionMap.h>

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>

namespace {

using corvane::CaseInsensitiveLess;
using corvane::SectionMap;
using corvane::TagMap;
using corvane::wchar;
using corvane::wstring;

using Model = std::map<wstring, std::pair<wstring, bool>, CaseInsensitiveLess>;

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
        auto expected = model.begin();
        for (const std::uint32_t place : tags.Names().Order()) {
            const TagMap::Tag tag = tags.At(place);
            EXPECT_EQ(tag.name, expected->first);
            EXPECT_EQ(tag.value, expected->second.first);
            EXPECT_EQ(tag.cacheOnly, expected->second.second);
            EXPECT_EQ(tags.Find(expected->first), place);
            ++expected;
        }
    }

    void Change(TagMap& tags, Model& model) {
        const wstring name = RandomName();
        const wstring value = RandomText();
        const bool cacheOnly = Below(2) == 0;
        switch (Below(5)) {
        case 0: tags.Insert({name, value, cacheOnly}), model.insert({name, {value, cacheOnly}}); break;
        case 1: EXPECT_EQ(tags.Erase(name), model.erase(name) == 1); break;
        default: tags.Assign({name, value, cacheOnly}), model[name] = {value, cacheOnly};
        }
    }

private:
    std::mt19937 m_random; // the same numbers each time
};

TEST_F(CacheTables, HoldTagsAsAMapDoes) {
    corvane::MemoryPool pool;
    TagMap tags;
    Model model;
    for (int step = 0; step < 20'000 && !HasFailure(); ++step) {
        Change(tags, model);
        if (Below(4) == 0)
            ExpectSame(tags, model);
        if (Below(500) == 0)
            tags = TagMap(tags, pool);
    }
}

TEST_F(CacheTables, KeepTheTagsOfEachSection) {
    SectionMap sections;
    std::map<wstring, Model, CaseInsensitiveLess> models;
    for (int step = 0; step < 20'000 && !HasFailure(); ++step) {
        const wstring name = RandomName();
        const std::uint32_t place = sections.Find(name);
        ASSERT_EQ(place != SectionMap::none, models.count(name) == 1);
        if (place == SectionMap::none) {
            sections.Insert(name, TagMap());
            models[name];
        } else if (Below(4) == 0) {
            sections.Erase(place);
            models.erase(name);
        } else {
            Change(sections.Tags(place), models[name]);
            ExpectSame(sections.Tags(place), models[name]);
        }
    }
    for (const auto& [name, model] : models)
        ExpectSame(sections.Tags(sections.Find(name)), model);
}

} // namespace
