// Long random sequences of all operations against a model in memory.
#include <algorithm>
#include <map>
#include <random>

#include "RecordFiles.h"

namespace {

using namespace test;

struct Setting {
    unsigned int header, block, resources;
    Manager::et_MappingMode mapping;
};

class RecordModelTest : public testing::TestWithParam<Setting> {
protected:
    using Map = std::map<unsigned int, std::string>;

    unsigned int Random(unsigned int below) { return static_cast<unsigned int>(random_() % below); }

    std::string Something() {
        // mostly short, some around the header size, a few long
        const unsigned int kind = Random(20);
        const unsigned int header = GetParam().header;
        const unsigned int length = kind < 12   ? Random(300)
                                    : kind < 19 ? header + Random(GetParam().block * 2)
                                                : Random(70000);
        return Bytes(Random(1u << 30), length);
    }
    Map::iterator Any(Map& map) {
        return std::next(map.begin(), static_cast<std::ptrdiff_t>(
                                          Random(static_cast<unsigned int>(map.size()))));
    }

    void Step() {
        const unsigned int action = Random(100);
        if (action < 45 || records_.empty()) {
            const std::string bytes = Something();
            const unsigned int reference = Add(manager_, bytes);
            EXPECT_FALSE(records_.contains(reference));
            records_[reference] = bytes;
        } else if (action < 65) {
            auto& [reference, bytes] = *Any(records_);
            std::string now = Something();
            Update(manager_, reference, now);
            // a record that stays without a body keeps the bytes behind the new ones
            bytes = std::move(now);
        } else if (action < 70) {
            auto& [reference, bytes] = *Any(records_);
            const CT_Buffer part = Data(Bytes(Random(99), Random(GetParam().header + 1)));
            manager_.v_UpdateRecordHeader(reference, &part);
            const std::string text = Text(part);
            if (bytes.size() < text.size()) bytes.resize(text.size());
            std::copy(text.begin(), text.end(), bytes.begin());
        } else if (action < 90) {
            const auto victim = Any(records_);
            manager_.v_DeleteRecord(victim->first);
            records_.erase(victim);
        } else if (action < 96) {
            ResourceStep();
        } else if (action < 98) {
            const auto& [reference, bytes] = *Any(records_);
            EXPECT_TRUE(ReadsAs(Get(manager_, reference), bytes, GetParam().header));
        } else if (action < 99) {
            manager_.v_Flush();
        } else {
            manager_.v_Close(Random(2) != 0 ? TRUE : FALSE);
            EXPECT_EQ(Findings(name_.file), "");
            manager_.v_Open(Manager::kModeReadWrite,
                            Random(8) == 0 ? Manager::kMapAlways : GetParam().mapping);
            Verify(manager_, records_);
        }
    }

    void ResourceStep() {
        const unsigned int key = Random(GetParam().resources + 3) - 1;  // the largest one too
        const std::string bytes = Something();
        const CT_Buffer data = Data(bytes);
        const bool exists = resources_.contains(key);
        EXPECT_EQ(manager_.b_ResourceExists(key) != 0, exists);
        const bool full = resources_.size() == GetParam().resources;
        if (exists || full) {
            EXPECT_CT_ERROR(full ? 31052 : 31054, manager_.v_AddResource(key, &data));
        }
        if (exists && Random(2) == 0) {
            manager_.v_DeleteResource(key);
            resources_.erase(key);
        } else if (exists) {
            manager_.v_UpdateResource(key, &data);
            resources_[key] = bytes;
        } else {
            CT_Buffer out;
            EXPECT_CT_ERROR(31053, manager_.v_GetResource(key, &out));
            EXPECT_CT_ERROR(31053, manager_.v_DeleteResource(key));
            if (full) return;
            manager_.v_AddResource(key, &data);
            resources_[key] = bytes;
        }
    }

    void Verify(Manager& manager, const Map& records) {
        EXPECT_EQ(manager.n_GetRecordCount(), records.size());
        CT_Buffer out;
        for (const bool robust : {false, true}) {
            unsigned int count = 0;
            for (unsigned int cursor = 0;; ++count) {
                cursor = robust ? manager.n_GetNextRecordRobust(cursor, &out)
                                : manager.n_GetNextRecord(cursor, &out);
                if (cursor == 0) break;
                const auto found = records.find(cursor - 1);
                ASSERT_NE(found, records.end()) << cursor;
                EXPECT_TRUE(ReadsAs(Text(out), found->second, GetParam().header));
            }
            EXPECT_EQ(count, records.size());
        }
        EXPECT_EQ(manager.n_GetResourceCount(), resources_.size());
        unsigned int position = 0;
        for (const auto& [key, bytes] : resources_) {
            EXPECT_EQ(manager.n_GetResourceKeyAt(++position), key);
            manager.v_GetResource(key, &out);
            EXPECT_EQ(Text(out), bytes);
        }
        EXPECT_FALSE(manager.b_IsCorrupt());
        EXPECT_TRUE(NoError());
    }

    TempFolder folder_;
    Named name_{folder_, u"model.rec"};
    Manager manager_{&name_.file};
    Map records_;
    Map resources_;
    std::mt19937 random_{20000615};
};

TEST_P(RecordModelTest, HoldsWhatTheModelHolds) {
    const auto [header, block, resources, mapping] = GetParam();
    manager_.v_Create(header, block, resources);
    manager_.v_Close(TRUE);
    manager_.v_Open(Manager::kModeReadWrite, mapping);
    for (int i = 0; i < 6000 && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        Step();
        EXPECT_TRUE(NoError());
    }
    Verify(manager_, records_);
    manager_.v_Close(TRUE);
    EXPECT_EQ(Findings(name_.file), "");

    // a repaired file holds the same and nothing else
    const Named target{folder_, u"compact.rec"};
    CT_RecordRepair repair(&name_.file);
    EXPECT_TRUE(repair.b_Repair(&target.file));
    Manager compact(&target.file);
    compact.v_Open(Manager::kModeReadAndCheck, Manager::kMapNever);
    Map moved;
    for (unsigned int i = 1; i <= repair.n_GetMovedCount(); ++i) {
        const auto one = repair.so_GetMovedAt(i);
        moved[one.new_reference] = records_.at(one.old_reference);
    }
    EXPECT_EQ(moved.size(), records_.size());
    Verify(compact, moved);
    compact.v_Close(TRUE);
    EXPECT_EQ(Findings(target.file), "");
}

constexpr Setting kSettings[] = {
    {16, 64, 10, Manager::kMapNever},  {16, 64, 10, Manager::kMapAlways},
    {0, 8, 3, Manager::kMapNever},     {24, 32, 500, Manager::kMapSmall},
    {100, 48, 0, Manager::kMapNever},  {100, 48, 5, Manager::kMapAlways},
    {600, 4096, 5, Manager::kMapNever}};
INSTANTIATE_TEST_SUITE_P(Layouts, RecordModelTest, testing::ValuesIn(kSettings));

}  // namespace
