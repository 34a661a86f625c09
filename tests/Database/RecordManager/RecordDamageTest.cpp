// Damaged files: every byte changed, every length cut, and structures that lead astray.
#include <algorithm>
#include <set>

#include "RecordFiles.h"

namespace {

using namespace test;

// The error's code, which is then cleared.
std::string Code() {
    const unsigned int code = CT_ErrorManager::spco_Get()->n_GetErrorCode();
    ClearError();
    return std::to_string(code) + ";";
}

// A small file that has everything: short records, bodies of several blocks, resources, a full free
// table of two entries with a chain behind it.
std::string SmallFile(const TempFolder& folder, unsigned int header, unsigned int block) {
    const Named name(folder, u"small.rec");
    Manager manager(&name.file);
    manager.v_Create(header, block, 3);
    manager.v_Close(TRUE);
    std::string bytes = folder.Read(u"small.rec");
    PutWord(bytes, 48, 2);
    PutWord(bytes, 80, (256 + 5 * 8 + block - 1) / block * block);
    folder.Write(u"small.rec", bytes);
    manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
    std::vector<unsigned int> references;
    for (const unsigned int rest : {0u, block * 2, 1u, 3u, block, 2u, block * 2 + 5}) {
        references.push_back(Add(manager, Bytes(rest, header + rest)));
    }
    for (const unsigned int key : {9u, 4u}) {
        const CT_Buffer data = Data(Bytes(key, key * block / 4));
        manager.v_AddResource(key, &data);
    }
    for (const std::size_t i : {1u, 3u, 5u}) manager.v_DeleteRecord(references[i]);
    manager.v_Close(TRUE);
    EXPECT_TRUE(NoError());
    EXPECT_EQ(Findings(name.file), "");
    bytes = folder.Read(u"small.rec");
    const std::uint32_t chain = WordAt(bytes, 256 + 8);
    EXPECT_EQ(WordAt(bytes, 256 + 12), 0u);
    EXPECT_NE(WordAt(bytes, chain + 4), 0u);
    return bytes;
}

// Uses a file in every way and tells what came of it.
class Use {
public:
    Use(const CT_WinFile& file, Manager::et_MappingMode mapping)
        : mapping_(mapping), file_(&file) {}

    std::string Read() {
        Manager manager(&file_);
        manager.v_Open(Manager::kModeReadAndCheck, mapping_);
        told_ = Code();
        if (!manager.b_IsOpen()) return told_;
        for (const bool robust : {false, true}) {
            unsigned int cursor = 0;
            for (unsigned int n = 0;; ++n) {
                const unsigned int next = robust ? manager.n_GetNextRecordRobust(cursor, &out_)
                                                 : manager.n_GetNextRecord(cursor, &out_);
                if (next == 0) break;
                if (next <= cursor || n > 2000) return told_ += "no end";
                Tell(cursor = next);
            }
            told_ += Code();
        }
        Tell(static_cast<unsigned int>(manager.b_IsCorrupt()));
        for (unsigned int i = 0; i <= 3; ++i) {
            manager.v_GetResource(manager.n_GetResourceKeyAt(i), &out_);
            Tell(i);
        }
        for (const unsigned int reference : {0u, 5u, 20u, 0xFFFFFFFFu}) {
            manager.v_GetRecord(reference, &out_, 60);
            Tell(reference);
        }
        manager.v_Close(TRUE);
        return told_ += Code();
    }

    std::string Change() {
        Manager manager(&file_);
        manager.v_Open(Manager::kModeReadWrite, mapping_);
        told_ = Code();
        if (!manager.b_IsOpen()) return told_;
        const std::vector<unsigned int> found = References(manager, 20);
        told_ += Code();
        unsigned int number = 0;
        for (const unsigned int reference : found) {
            ++number;
            const CT_Buffer data = Data(Bytes(number, number * 37 % 150));
            out_.v_SetUsedSize(0);
            if (number % 3 == 0) manager.v_DeleteRecord(reference);
            if (number % 3 == 1) manager.v_UpdateRecord(reference, &data);
            if (number % 3 == 2) manager.v_UpdateRecordHeader(reference, &data);
            Tell(reference);
            Tell(manager.n_AddRecord(&data));
            manager.v_UpdateResource(manager.n_GetResourceKeyAt(1), &data);
            Tell(number);
        }
        const CT_Buffer data = Data(Bytes(5, 300));
        manager.v_AddResource(7, &data);
        Tell(manager.n_AddRecord(&data));
        manager.v_DeleteResource(manager.n_GetResourceKeyAt(2));
        Tell(manager.n_GetSize());
        manager.v_Close(TRUE);
        return told_ += Code();
    }

private:
    void Tell(unsigned int number) {
        told_ += std::to_string(number) + '=';
        told_ += Text(out_) + Code();
    }

    Manager::et_MappingMode mapping_;
    CT_WinFile file_;
    CT_Buffer out_;
    std::string told_;
};

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

// One damaged file at a time, used in all ways; none does harm, and mapped or not they agree.
struct RecordSmallFileTest : testing::TestWithParam<std::pair<unsigned int, unsigned int>> {
    // Mapping a file for writing takes longest, so that it may be left out.
    void Suffer(const std::string& bytes, bool map_to_write) {
        folder.Write(u"small.rec", bytes);
        CT_RecordCheck check(&name.file);
        const bool sound = check.b_Check() != FALSE;
        ClearError();
        CT_RecordRepair repair(&name.file);
        const bool whole = repair.b_Repair(&target.file) != FALSE;
        const bool repaired = NoErrorIsSet();
        ClearError();
        EXPECT_TRUE(whole || !sound);
        if (repaired) {
            EXPECT_EQ(Findings(target.file), "");
            EXPECT_LT(std::filesystem::file_size(folder.Native(u"repaired.rec")), 0x20000u);
        }
        if (whole) AllWentOver(check, repair);
        if (!sound) {
            for (const auto mapping : {Manager::kMapNever, Manager::kMapAlways}) {
                if (mapping != Manager::kMapNever && !map_to_write) continue;
                Manager manager(&name.file);
                manager.v_Open(Manager::kModeReadWrite, mapping);
                if (manager.b_IsOpen()) manager.v_Close(TRUE);
                ClearError();
                EXPECT_TRUE(folder.Read(u"small.rec") == bytes) << "opening changed the file";
            }
        }
        const std::string read = Use(name.file, Manager::kMapNever).Read();
        EXPECT_EQ(Use(name.file, Manager::kMapAlways).Read(), read);
        EXPECT_TRUE(folder.Read(u"small.rec") == bytes) << "reading changed the file";
        if (bytes.size() >= 84 && WordAt(bytes, 80) > 0x100000) return;  // changes go there
        const std::string changed = Use(name.file, Manager::kMapNever).Change();
        Unharmed(bytes);
        if (!map_to_write) return;
        folder.Write(u"small.rec", bytes);
        const std::string mapped = Use(name.file, Manager::kMapAlways).Change();
        // what a cut file lacks is zero in a mapping that extends it
        if (bytes.size() == good.size()) {
            EXPECT_EQ(mapped, changed);
        }
        Unharmed(bytes);
    }

    // A repair that says so has saved all that is there, whatever any look at the file shows.
    void AllWentOver(const CT_RecordCheck& check, const CT_RecordRepair& repair) const {
        std::set<unsigned int> moved;
        for (unsigned int i = 1; i <= repair.n_GetMovedCount(); ++i) {
            moved.insert(repair.so_GetMovedAt(i).old_reference);
        }
        Manager manager(&name.file);
        manager.v_Open(Manager::kModeReadAndCheck, Manager::kMapNever);
        EXPECT_LE(manager.n_GetRecordCount(), moved.size());
        CT_Buffer out;
        for (unsigned int cursor = 0;
             (cursor = manager.n_GetNextRecordRobust(cursor, &out)) != 0;) {
            const bool real = check.eo_GetOwnerAt(cursor - 1) == CT_RecordCheck::kHeadOwner;
            EXPECT_TRUE(!real || moved.contains(cursor - 1)) << cursor - 1;
        }
        manager.v_Close(TRUE);
        ClearError();
    }

    // After changes: not far longer than it was, and outside of tables and data as it was.
    void Unharmed(const std::string& before) const {
        const std::string after = folder.Read(u"small.rec");
        EXPECT_LT(after.size(), 0x120000u);  // a data end may lie a MiB behind the file's end
        EXPECT_EQ(after.substr(0, 52), before.substr(0, 52));
        if (after != before) {
            EXPECT_EQ(after.substr(84, 172), before.substr(84, 172));
        }
    }

    const TempFolder folder{QuickFolder()};
    const Named name{folder, u"small.rec"};
    const Named target{folder, u"repaired.rec"};
    const std::string good = SmallFile(folder, GetParam().first, GetParam().second);
};

TEST_P(RecordSmallFileTest, EveryChangedByteIsSurvived) {
    const bool all = GetParam().second == 16;
    unsigned int turn = 0;
    for (std::size_t at = 0; at < good.size(); ++at) {
        std::string bytes = good;
        const int old = static_cast<unsigned char>(good[at]);
        const bool structure = all && at >= 36 && at < 84;
        for (int value = 0; value < 256 && !HasFailure(); ++value) {
            const bool chosen = structure || value == (old ^ 1) || value == (old ^ 0x80) ||
                                value == 0 || value == 255;
            if (!chosen || value == old) continue;
            SCOPED_TRACE(testing::Message() << "byte " << at << " from " << old << " to " << value);
            bytes[at] = static_cast<char>(value);
            Suffer(bytes, ++turn % 8 == 0);
        }
    }
}

TEST_P(RecordSmallFileTest, EveryLengthIsSurvived) {
    for (std::size_t length = 0; length < good.size() && !HasFailure(); ++length) {
        SCOPED_TRACE(length);
        Suffer(good.substr(0, length), length % 8 == 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Layouts, RecordSmallFileTest,
                         testing::Values(std::pair(16u, 64u), std::pair(20u, 16u),
                                         std::pair(0u, 8u)));

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
        {80, static_cast<std::uint32_t>(good.size()) / 64 * 64 + 640, {C::kLeak}},
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
    good = SmallFile(folder, 16, 64);
    const std::uint32_t first = WordAt(good, 256 + 8);
    Damage(WordAt(good, first + 4) + 4, first);
    CT_RecordCheck check(&name.file);
    EXPECT_FALSE(check.b_Check());
    EXPECT_EQ(check.so_GetFindingAt(1).kind, CT_RecordCheck::kFreeTwice);
    Manager manager(&name.file);
    manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
    EXPECT_NE(Add(manager, Bytes(1, 200)), 0u);  // walks the circle, then goes to the end
    manager.v_Close(TRUE);
}

// Which of two entries is the right one nobody knows: such a file is not written.
TEST_F(RecordDamageTest, AKeyThatIsThereTwiceForbidsChanges) {
    Damage(1280 + 8, 1);
    const std::string before = folder.Read(u"damaged.rec");
    for (const auto mapping : {Manager::kMapNever, Manager::kMapAlways}) {
        Manager manager(&name.file);
        manager.v_Open(Manager::kModeReadWrite, mapping);
        EXPECT_EQ(manager.b_ResourceExists(1), 1);
        EXPECT_CT_ERROR(31005, manager.v_DeleteResource(1));
        EXPECT_CT_ERROR(31005, Add(manager, "x"));
        manager.v_Close(TRUE);
        EXPECT_TRUE(folder.Read(u"damaged.rec") == before);
    }
}

TEST_F(RecordDamageTest, RepairSavesTheRestAndNamesTheLoss) {
    PutWord(good, std::size_t{references[2]} * 64 + 4, 12345);
    PutWord(good, 1280 + 4, 1);
    folder.Write(u"damaged.rec", good);
    CT_RecordRepair repair(&name.file);
    EXPECT_FALSE(repair.b_Repair(&target.file));
    EXPECT_TRUE(folder.Read(u"damaged.rec") == good);
    ASSERT_EQ(repair.n_GetLostCount(), 4u);  // the last two are blocks that nothing leads to now
    EXPECT_EQ(repair.so_GetLostAt(1).reference, references[2]);
    EXPECT_EQ(repair.so_GetLostAt(2).key, 1u);
    EXPECT_EQ(repair.so_GetLostAt(3).reference, references[2] + 1);
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

// Many records with bodies, one behind the other: 64 bytes of head, 64 of body.
struct RecordLossTest : testing::Test {
    static constexpr unsigned int kRecords = 1000;
    TempFolder folder{QuickFolder()};
    Named name{folder, u"lost.rec"};
    Named target{folder, u"repaired.rec"};
    std::string good;
    unsigned int first = 0;

    RecordLossTest() {
        Manager manager(&name.file);
        manager.v_Create(16, 64, 4);
        for (unsigned int i = 0; i < kRecords; ++i) {
            const unsigned int reference = Add(manager, Bytes(i, 16 + 58));
            if (i == 0) first = reference;
        }
        const CT_Buffer data = Data("resource");
        manager.v_AddResource(1, &data);
        manager.v_AddResource(2, &data);
        manager.v_Close(TRUE);
        good = folder.Read(u"lost.rec");
    }
};

TEST_F(RecordLossTest, WhatIsMissingIsTold) {
    using enum CT_RecordCheck::et_Finding;
    const std::size_t directory = 1280;
    const std::size_t body = (std::size_t{first} + 101 * 2 - 1) * 64;  // of record 100
    const std::size_t all = good.size(), resource = all / 64 * 64 - 64;
    struct Case {
        const char* what;
        std::size_t at;
        std::uint32_t word;
        std::vector<CT_RecordCheck::et_Finding> listed;
        unsigned int saved = kRecords, resources = 2;
        std::size_t size = 0;  // 0: not cut
    };
    const std::vector<Case> cases = {
        {"sound", 22, 0, {}},
        {"cut to its header", 22, 0, {kRecordCount, kResourceCount}, 0, 0, 256},
        {"cut in half", 22, 0, {kBody, kResource, kResource, kRecordCount}, 505, 0, 66000},
        {"a body that swallows 256 neighbours", body, 62 + 0x8000, {kOverlap}},
        {"a resource that does", directory + 4, (first + 3) * 64, {kOverlap, kOverlap, kLeak}},
        {"a link to nothing", body - 60, 0, {kLeak}},
        {"more records counted", 76, kRecords + 5, {kRecordCount}},
        {"fewer records counted", 76, 0, {}},
        {"more resources counted", 60, 3, {kResource}},
        {"fewer resources counted", 60, 1, {kLeak}, kRecords, 1},
        {"too many resources counted", 60, 7, {kResource, kResource, kResourceCount}},
        {"a larger capacity", 48, 256, {}},
        {"more room for resources", 56, 0x10004, {}},
        {"a data end far in front", 80, (first + 6) * 64, {}},
        {"a data end far behind", 80, 0x40000000, {}},
        {"a head that is none", body - 64, 0x7FFFFFFF, {kRecordCount, kLeak}, kRecords - 1},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        std::string bytes = good.substr(0, one.size != 0 ? one.size : all);
        PutWord(bytes, one.at, one.word);
        folder.Write(u"lost.rec", bytes);
        CT_RecordRepair repair(&name.file);
        EXPECT_EQ(repair.b_Repair(&target.file) != FALSE, one.listed.empty());
        EXPECT_TRUE(NoError());
        std::vector<CT_RecordCheck::et_Finding> listed;
        for (unsigned int i = 1; i <= repair.n_GetLostCount(); ++i) {
            listed.push_back(repair.so_GetLostAt(i).kind);
        }
        EXPECT_EQ(listed, one.listed);
        EXPECT_EQ(repair.n_GetMovedCount(), one.saved);
        EXPECT_EQ(Findings(target.file), "");
        EXPECT_EQ(Findings(name.file).empty(), one.at == 22 && one.size == 0);
        Manager manager(&target.file);
        manager.v_Open(Manager::kModeReadAndCheck, Manager::kMapAlways);
        EXPECT_EQ(manager.n_GetResourceCount(), one.resources);
        EXPECT_FALSE(manager.b_IsCorrupt());
        for (unsigned int i = 1; i <= repair.n_GetMovedCount(); ++i) {
            const auto moved = repair.so_GetMovedAt(i);
            const unsigned int number = (moved.old_reference - first) / 2;
            const std::size_t place = std::size_t{moved.old_reference} * 64;
            if (place + 64 == body || place + 64 == resource) continue;
            ASSERT_EQ(Get(manager, moved.new_reference), Bytes(number, 16 + 58)) << number;
        }
        manager.v_Close(TRUE);
    }
}

// A body that looks like records is data as long as no record is missing.
TEST_F(RecordLossTest, DataThatLooksLikeARecordIsData) {
    std::string trap(16 + 60, 'x');
    for (int i = 0; i < 4; ++i) trap += std::string(4, '\xFF') + std::string(60, '\0');
    Manager manager(&name.file);
    manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
    const unsigned int reference = Add(manager, trap);
    manager.v_Close(TRUE);
    EXPECT_EQ(Findings(name.file), "");
    CT_RecordRepair repair(&name.file);
    EXPECT_TRUE(repair.b_Repair(&target.file));
    EXPECT_EQ(repair.n_GetMovedCount(), kRecords + 1);
    CT_RecordCheck check(&name.file);
    EXPECT_TRUE(check.b_Check());
    EXPECT_EQ(check.n_GetNextReference(first), first + 2);
    EXPECT_EQ(check.n_GetNextReference(reference - 1), reference);
    EXPECT_EQ(check.n_GetNextReference(reference), 0u);
}

// Records behind the data end: found, saved, not written over, and kept by closing.
TEST_F(RecordLossTest, AKilledWritersRecordsAreFoundBehindTheDataEnd) {
    for (const auto mapping : {Manager::kMapNever, Manager::kMapAlways}) {
        SCOPED_TRACE(mapping);
        folder.Write(u"lost.rec", good);
        {
            Manager killed(&name.file);
            killed.v_Open(Manager::kModeReadWrite, mapping);
            EXPECT_NE(Add(killed, Bytes(kRecords, 74)), 0u);
            EXPECT_NE(Add(killed, "short"), 0u);
        }
        const std::string left = folder.Read(u"lost.rec");
        CT_RecordCheck check(&name.file);
        EXPECT_FALSE(check.b_Check());
        ASSERT_EQ(check.n_GetFindingCount(), 2u);
        EXPECT_EQ(check.so_GetFindingAt(1).kind, CT_RecordCheck::kBehindEnd);
        CT_RecordRepair repair(&name.file);
        EXPECT_TRUE(repair.b_Repair(&target.file));
        EXPECT_EQ(repair.n_GetMovedCount(), kRecords + 2);
        Manager manager(&name.file);
        manager.v_Open(Manager::kModeReadWrite, Manager::kMapAlways);
        manager.v_Close(TRUE);
        EXPECT_TRUE(folder.Read(u"lost.rec") == left);
        manager.v_Open(Manager::kModeReadWrite, Manager::kMapAlways);
        EXPECT_NE(Add(manager, "after it"), 0u);
        manager.v_Close(TRUE);
        EXPECT_TRUE(repair.b_Repair(&target.file));
        EXPECT_EQ(repair.n_GetMovedCount(), kRecords + 3);
    }
}

}  // namespace
