#include "Foundation/Core/Container/StringCache.h"

#include <array>
#include <functional>
#include <map>

#include "HashSupport.h"
#include "Support/Text.h"

namespace {

using Pairs = std::vector<std::pair<std::u16string, std::u16string>>;

TEST(StringCacheTest, BehavesAsDefinedUnderRandomOperations) {
    for (const auto& [size, ways, buckets] :
         {std::array{12u, 4u, 3u}, {4, 4, 1}, {9, 1, 11}, {60, 10, 7}}) {
        test::hash::Random random;
        SCOPED_TRACE(testing::Message() << size << ", seed " << random.seed);
        CT_StringCache cache(size, ways);
        EXPECT_EQ(cache.n_GetSize(), buckets * ways);
        EXPECT_EQ(cache.n_GetCollisions(), ways);
        std::map<std::uint32_t, Pairs> model;
        for (int step = 1; step <= 4000; ++step) {
            const std::u16string key(random(4), u"ab\u00E9"[random(3)]);
            const std::u16string value(random(12), static_cast<char16_t>(random(0xFFFF) + 1));
            Pairs& bucket = model[cache.n_Hash(key.c_str())];
            ASSERT_EQ(cache.n_Hash(key.c_str()),
                      CT_HashFunction::sn_HashCaseQCUZ(key.c_str(), buckets) - 1);
            const auto found = std::ranges::find(bucket, key, &Pairs::value_type::first);
            const unsigned int choice = random(10);
            if (choice < 3) {
                cache.v_Insert(key.c_str(), value.c_str());
                if (bucket.size() == ways) bucket.pop_back();
                bucket.emplace_back(key, value);
            } else if (choice < 9) {
                const char16_t* const text = cache.qcuz_Lookup(key.c_str());
                ASSERT_EQ(text != nullptr, found != bucket.end());
                if (text == nullptr) continue;
                ASSERT_EQ(text, found->second);
                std::rotate(bucket.begin(), found, found + 1);
            } else {
                cache.v_Remove(key.c_str());
                if (found != bucket.end()) bucket.erase(found);
            }
            if (step % 1500 == 0) cache.v_Clear(), model.clear();
        }
    }
}

TEST(StringCacheTest, KeepsNothingWithoutStorageAndTakesItsOwnTexts) {
    CT_StringCache cache;
    EXPECT_EQ(cache.n_GetSize(), 1004u);
    EXPECT_EQ(cache.n_GetCollisions(), 4u);
    cache.v_Insert(u"a", nullptr);
    cache.v_Insert(nullptr, u"a");
    EXPECT_EQ(cache.qcuz_Lookup(u"a"), nullptr);
    EXPECT_EQ(cache.qcuz_Lookup(nullptr), nullptr);
    EXPECT_EQ(cache.n_Hash(nullptr), 0u);
    for (const auto& [size, ways] : {std::pair{0u, 0u}, {0, 4}, {3, 4}, {4, 0}}) {
        cache.v_Set(size, ways);
        cache.v_Insert(u"a", u"b");
        EXPECT_EQ(cache.qcuz_Lookup(u"a"), nullptr);
        cache.v_Remove(u"a");
        EXPECT_EQ(cache.n_GetSize() + cache.n_Hash(u"a"), 0u);
    }
    EXPECT_THROW(cache.v_Set(0xFFFFFFFF, 1), CT_SmartHeapException);
    cache.v_Set(1, 1);
    cache.v_Insert(u"a", u"kept");
    cache.v_Insert(u"b", cache.qcuz_Lookup(u"a"));  // displaces the text while it is copied
    EXPECT_STREQ(test::Utf8(cache.qcuz_Lookup(u"b")).c_str(), "kept");
}

TEST(StringCacheTest, StaysAsItWasWhenMemoryRunsOut) {
    const auto make = [] {
        auto cache = std::make_unique<CT_StringCache>(1, 1);
        cache->v_Insert(u"a", u"b");
        return cache;
    };
    const auto read = [](auto& cache) {
        return std::pair(cache->n_GetSize(), std::u16string(cache->qcuz_Lookup(u"a")));
    };
    const std::function<void(std::unique_ptr<CT_StringCache>&)> changes[] = {
        [](auto& cache) { cache->v_Insert(u"c", u"d"); }, [](auto& cache) { cache->v_Set(12, 4); }};
    for (const auto& change : changes)
        EXPECT_GT(test::ExpectUnchangedWithoutMemory(make, change, read), 0u);
}

}  // namespace
