// Damaged files: every byte changed, every length cut, and structures that lead astray.
#include <algorithm>
#include <set>

#include "RecordFiles.h"

namespace {

using namespace test;

// Opens the file in every way and uses all of it; whatever happens must end without harm.
void UseAll(const Named& name, const Named& target) {
    static unsigned int turn = 0;  // mapping for writing lays out a MiB: every fourth time
    ++turn;
    for (const auto mapping : {Manager::kMapNever, Manager::kMapAlways}) {
        for (const auto mode : {Manager::kModeReadAndCheck, Manager::kModeReadWrite}) {
            if (mapping == Manager::kMapAlways && mode == Manager::kModeReadWrite && turn % 4)
                continue;
            Manager manager(&name.file);
            manager.v_Open(mode, mapping);
            ClearError();
            if (!manager.b_IsOpen()) continue;
            CT_Buffer out;
            for (unsigned int cursor = 0, n = 0; n < 10000; ++n) {
                cursor = manager.n_GetNextRecord(cursor, &out);
                if (cursor == 0) break;
            }
            ClearError();
            for (unsigned int cursor = 0, n = 0; n < 10000; ++n) {
                cursor = manager.n_GetNextRecordRobust(cursor, nullptr);
                if (cursor == 0) break;
            }
            ClearError();
            static_cast<void>(manager.b_IsCorrupt());
            ClearError();
            for (unsigned int i = 1; i <= 4; ++i) {
                manager.v_GetResource(manager.n_GetResourceKeyAt(i), &out);
                ClearError();
            }
            if (mode == Manager::kModeReadWrite) {
                for (const std::size_t length : {10u, 100u, 300u}) {
                    Add(manager, Bytes(5, length));
                    ClearError();
                }
                for (unsigned int reference = 30; reference < 50; ++reference) {
                    Update(manager, reference, Bytes(6, 200));
                    ClearError();
                    manager.v_DeleteRecord(reference);
                    ClearError();
                }
                manager.v_UpdateResource(manager.n_GetResourceKeyAt(1), &out);
                ClearError();
                manager.v_DeleteResource(manager.n_GetResourceKeyAt(1));
                ClearError();
            }
            manager.v_Close(TRUE);
            ClearError();
        }
    }
    CT_RecordRepair repair(&name.file);
    repair.b_Repair(&target.file);
    ClearError();
}

struct RecordDamageTest : testing::Test {
    TempFolder folder;
    Named name{folder, u"damaged.rec"};
    Named target{folder, u"repaired.rec"};
    std::string good;
    std::vector<unsigned int> references;

    RecordDamageTest() {
        Manager manager(&name.file);
        manager.v_Create(16, 64, 4);
        for (const std::size_t length : {10u, 100u, 40u, 200u, 16u, 70u}) {
            references.push_back(Add(manager, Bytes(static_cast<unsigned int>(length), length)));
        }
        const CT_Buffer data = Data("resource");
        manager.v_AddResource(1, &data);
        manager.v_AddResource(2, &data);
        manager.v_DeleteRecord(references[1]);
        manager.v_Close(TRUE);
        good = folder.Read(u"damaged.rec");
    }

    // The file with one word changed.
    void Damage(std::size_t at, std::uint32_t word) {
        std::string bytes = good;
        PutWord(bytes, at, word);
        folder.Write(u"damaged.rec", bytes);
    }
};

TEST_F(RecordDamageTest, EveryChangedWordIsSurvivedAndNeverGrowsTheFileFar) {
    const std::size_t data = 1344;
    for (std::size_t at = 40; at < good.size(); at += at < 84 || at >= data ? 4 : 8) {
        if (at >= 284 && at < 1280) continue;  // unused entries of the free table
        for (const std::uint32_t word :
             {0u, 63u, 0x7FFFFFC0u, 0xFFFFFFC0u, 0xFFFFFFFFu, references[0] * 64,
              static_cast<std::uint32_t>(good.size())}) {
            SCOPED_TRACE(testing::Message() << "word " << word << " at " << at);
            Damage(at, word);
            UseAll(name, target);
            EXPECT_LT(std::filesystem::file_size(folder.Native(u"damaged.rec")), 0x400000u);
            if (folder.Has(u"repaired.rec")) {
                EXPECT_LT(std::filesystem::file_size(folder.Native(u"repaired.rec")), 0x100000u);
                folder.Remove(u"repaired.rec");
            }
            if (HasFailure()) return;
        }
    }
}

TEST_F(RecordDamageTest, EveryLengthIsSurvived) {
    for (std::size_t length = 0; length < good.size(); length += length < 300 ? 1 : 37) {
        SCOPED_TRACE(length);
        folder.Write(u"damaged.rec", std::string_view(good).substr(0, length));
        UseAll(name, target);
    }
}

TEST_F(RecordDamageTest, TheCheckNamesWhatIsWrong) {
    const auto head = [&](std::size_t i) { return std::size_t{references[i]} * 64; };
    const std::uint32_t body = WordAt(good, head(2) + 4);
    const std::size_t directory = 1280;
    ASSERT_EQ(Findings(name.file), "");
    struct Case {
        std::size_t at;
        std::uint32_t word;
        std::vector<CT_RecordCheck::et_Finding> findings;
    };
    using C = CT_RecordCheck;
    const std::vector<Case> cases = {
        {0, 0, {C::kText}},
        {32, 0, {C::kStamp}},
        {36, 7, {C::kFormat}},
        {40, 0, {C::kLayout}},
        {52, 129, {C::kFreeCount}},
        {56, 1, {C::kResourceCount, C::kLeak}},
        {76, 6, {C::kRecordCount}},
        {80, static_cast<std::uint32_t>(good.size()) / 64 * 64 + 640, {C::kTruncated}},
        {256, 65, {C::kFreeEntry, C::kLeak}},
        {256, 0, {C::kFreeEntry, C::kLeak}},
        {264, WordAt(good, 256), {C::kFreeTwice, C::kLeak}},
        {256, static_cast<std::uint32_t>(head(3)), {C::kFreeSize, C::kOverlap, C::kLeak}},
        {directory, 2, {C::kDirectoryOrder}},
        {directory + 4, 64, {C::kResource, C::kLeak}},
        {directory + 4, WordAt(good, directory + 12), {C::kOverlap, C::kLeak}},
        {head(2) + 4, 3, {C::kBody, C::kRecordCount, C::kLeak}},
        {head(2) + 4, WordAt(good, head(3) + 4), {C::kOverlap, C::kLeak}},
        {head(2), 0xFFFFFFFE, {C::kUnfinished, C::kRecordCount, C::kLeak}},
        {head(4), 128, {C::kHidden, C::kRecordCount, C::kLeak}},
        {body, 0x10000, {C::kBody, C::kRecordCount, C::kLeak}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(testing::Message() << "word " << one.word << " at " << one.at);
        Damage(one.at, one.word);
        CT_RecordCheck check(&name.file);
        EXPECT_FALSE(check.b_Check());
        std::set<C::et_Finding> found;
        for (unsigned int i = 1; i <= check.n_GetListedCount(); ++i) {
            found.insert(check.so_GetFindingAt(i).kind);
        }
        for (const C::et_Finding kind : one.findings) {
            EXPECT_TRUE(found.contains(kind)) << C::sqccz_GetText(kind) << " is missing among\n"
                                              << Findings(name.file);
        }
    }
}

TEST_F(RecordDamageTest, AChainInACircleEnds) {
    {
        Manager manager(&name.file);
        manager.v_Create(16, 64, 0);
        std::vector<unsigned int> all;
        for (int i = 0; i < 200; ++i) all.push_back(Add(manager, "x"));
        for (const unsigned int reference : all) manager.v_DeleteRecord(reference);
        manager.v_Close(TRUE);
    }
    std::string bytes = folder.Read(u"damaged.rec");
    const std::uint32_t first = WordAt(bytes, 256 + 127 * 8);
    const std::uint32_t second = WordAt(bytes, first + 4);
    PutWord(bytes, second + 4, first);
    folder.Write(u"damaged.rec", bytes);
    CT_RecordCheck check(&name.file);
    EXPECT_FALSE(check.b_Check());
    EXPECT_EQ(check.so_GetFindingAt(1).kind, CT_RecordCheck::kFreeTwice);
    Manager manager(&name.file);
    manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
    EXPECT_NE(Add(manager, Bytes(1, 200)), 0u);  // walks the circle, then goes to the end
    manager.v_Close(TRUE);
}

TEST_F(RecordDamageTest, RepairSavesTheRestAndNamesTheLoss) {
    PutWord(good, std::size_t{references[2]} * 64 + 4, 12345);
    PutWord(good, 1280 + 4, 1);
    folder.Write(u"damaged.rec", good);
    CT_RecordRepair repair(&name.file);
    EXPECT_FALSE(repair.b_Repair(&target.file));
    EXPECT_TRUE(folder.Read(u"damaged.rec") == good);
    ASSERT_EQ(repair.n_GetLostCount(), 2u);
    EXPECT_EQ(repair.so_GetLostAt(1).reference, references[2]);
    EXPECT_EQ(repair.so_GetLostAt(2).key, 1u);
    ASSERT_EQ(repair.n_GetMovedCount(), 4u);
    Manager manager(&target.file);
    manager.v_Open(Manager::kModeReadAndCheck, Manager::kMapNever);
    EXPECT_EQ(Get(manager, repair.so_GetMovedAt(2).new_reference), Bytes(200, 200));
    EXPECT_NE(manager.b_ResourceExists(2), 0);
    manager.v_Close(TRUE);
    EXPECT_EQ(Findings(target.file), "");

    // the header gone altogether: only with the sizes
    std::fill(good.begin(), good.begin() + 256, '\0');
    folder.Write(u"damaged.rec", good);
    CT_RecordRepair blind(&name.file);
    EXPECT_CT_ERROR(31050, blind.b_Repair(&target.file));
    blind.v_SetLayout(16, 64, 4);
    blind.b_Repair(&target.file);
    EXPECT_EQ(blind.n_GetMovedCount(), 4u);
    EXPECT_CT_ERROR(32, blind.b_Repair(&name.file));  // never onto itself
    EXPECT_TRUE(folder.Read(u"damaged.rec") == good);
}

}  // namespace
