// Creating, opening, storing: what lies in the file, byte by byte.
#include <array>
#include <fstream>
#include <span>
#include <sstream>

#include "RecordFiles.h"

namespace platform = zelkor::platform;

namespace {

using namespace test;

struct RecordManagerTest : testing::Test {
    TempFolder folder;
    Named name{folder, u"test.rec"};
    Manager manager{&name.file};

    void Create(unsigned int header = 16, unsigned int block = 64, unsigned int resources = 100) {
        manager.v_Create(header, block, resources);
    }
    [[nodiscard]] std::string File() const { return folder.Read(u"test.rec"); }
    [[nodiscard]] std::uint32_t Word(std::size_t offset) const { return WordAt(File(), offset); }
    // The references of so many records of a block each.
    std::vector<unsigned int> AddSingles(unsigned int count) {
        std::vector<unsigned int> singles;
        while (singles.size() < count) singles.push_back(Add(manager, "x"));
        return singles;
    }
    void Delete(std::span<const unsigned int> references) {
        for (const unsigned int reference : references) manager.v_DeleteRecord(reference);
    }
    void CloseSound() {
        manager.v_Close(TRUE);
        EXPECT_EQ(Findings(name.file), "");
    }
};

// The hex dump of the format's page, as bytes.
std::string DocumentedDump() {
    std::ifstream page(RECORD_FILE_DOCUMENT);
    std::string bytes;
    for (std::string line; std::getline(page, line);) {
        // "00000840  ff ff ff ff ..."; a line "*" repeats zeros up to the next offset
        if (line.size() < 10 || line.find_first_not_of("0123456789abcdef") != 8) continue;
        const std::size_t offset = std::stoul(line.substr(0, 8), nullptr, 16);
        bytes.resize(offset, '\0');
        std::istringstream cells(line.substr(8, 50));
        for (std::string cell; cells >> cell && cell.size() == 2;) {
            bytes += static_cast<char>(std::stoul(cell, nullptr, 16));
        }
    }
    return bytes;
}

TEST_F(RecordManagerTest, TheDocumentedDumpIsWhatIsWritten) {
    Create(16, 64, 2);
    const unsigned int ten = Add(manager, "0123456789");
    const unsigned int forty = Add(manager, "A record of forty bytes, body and header");
    const CT_Buffer data = Data("settings");
    manager.v_AddResource(7, &data);
    manager.v_DeleteRecord(ten);
    manager.v_Close(TRUE);
    const std::string dump = DocumentedDump();
    ASSERT_GT(dump.size(), 1296u);
    EXPECT_TRUE(File() == dump);

    // and it is read back from the page alone
    folder.Write(u"test.rec", dump);
    manager.v_Open(Manager::kModeReadAndCheck, Manager::kMapNever);
    EXPECT_EQ(Get(manager, forty), "A record of forty bytes, body and header");
    CT_Buffer out;
    manager.v_GetResource(7, &out);
    EXPECT_EQ(Text(out), "settings");
    EXPECT_FALSE(manager.b_IsCorrupt());
    EXPECT_EQ(Findings(name.file), "");
}

TEST_F(RecordManagerTest, HeadersThatDoNotFitAreRefused) {
    Create();
    EXPECT_EQ(manager.n_GetSize(), 2112u);
    EXPECT_EQ(manager.n_GetMinReference(), 33u);
    manager.v_Close(TRUE);
    const std::string good = File();
    struct Case {
        std::size_t at;
        std::uint32_t word;
        unsigned int error;
    };
    static constexpr Case kCases[] = {{32, 0xD4C3B2A1, 31050}, {60, 1000, 31005}, {36, 0, 0},
                                      {60, 0x20000000, 31005}, {36, 2, 31050},    {0, 0, 0},
                                      {80, 0xFFFFFFC0, 0},     {80, 100, 0},      {40, 0, 0}};
    for (const auto& [at, word, error] : kCases) {
        for (const auto mapping : {Manager::kMapNever, Manager::kMapAlways}) {
            for (const auto mode : {Manager::kModeRead, Manager::kModeReadWrite}) {
                SCOPED_TRACE(testing::Message() << at << " " << word << " " << mapping << mode);
                std::string bytes = good;
                PutWord(bytes, at, word);
                folder.Write(u"test.rec", bytes);
                Manager opened(&name.file);
                opened.v_Open(mode, mapping);
                EXPECT_EQ(opened.b_IsOpen(), error == 0 ? TRUE : FALSE);
                EXPECT_TRUE(error == 0 ? NoError() : TakeError(error));
                if (error != 0) {
                    EXPECT_TRUE(File() == bytes) << "the file was changed";
                }
            }
        }
    }
    folder.Write(u"test.rec", good.substr(0, 255));
    EXPECT_CT_ERROR(31050, manager.v_Open(Manager::kModeRead, Manager::kMapNever));
    for (const auto [header, block, resources] : {std::array{16u, 0u, 1u},
                                                  {16u, 7u, 1u},
                                                  {16u, 64u, 0x20000000u},
                                                  {0xFFFFFFF8u, 64u, 1u}}) {
        EXPECT_CT_ERROR(87, manager.v_Create(header, block, resources));
    }
    EXPECT_TRUE(File() == good.substr(0, 255));
}

// The data end may lie far behind the end of the file: large tables, large blocks, an addition that
// failed. Once such files were refused with 31005 or not added to.
TEST_F(RecordManagerTest, AShortFileGoesOnAtItsDataEnd) {
    for (const auto [block, resources, failed] :
         {std::array{64u, 200000u, 0u}, {0x400000u, 4u, 0u}, {64u, 4u, 3000000u}}) {
        for (const auto mapping : {Manager::kMapNever, Manager::kMapAlways}) {
            SCOPED_TRACE(testing::Message() << block << " " << resources << " " << mapping);
            Create(16, block, resources);
            if (failed != 0) {
                const FileFault full(platform::FileCall::kWrite, 0, 112, true);
                EXPECT_CT_ERROR(112, Add(manager, Bytes(1, failed)));
            }
            manager.v_Close(TRUE);
            const unsigned int end = manager.n_GetSize();
            EXPECT_GT(end, File().size() + 0x100000);
            manager.v_Open(Manager::kModeReadWrite, mapping);
            const unsigned int reference = Add(manager, Bytes(2, 100));
            EXPECT_EQ(reference, end / block);
            EXPECT_EQ(Get(manager, reference), Bytes(2, 100));
            const CT_Buffer data = Data("resource");
            manager.v_AddResource(3, &data);
            manager.v_Close(TRUE);
            EXPECT_TRUE(NoError());
            manager.v_Open(Manager::kModeReadAndCheck, mapping);
            EXPECT_EQ(Get(manager, reference), Bytes(2, 100));
            EXPECT_EQ(manager.b_ResourceExists(3), 1);
            manager.v_Close(TRUE);
            if (mapping == Manager::kMapAlways) {
                EXPECT_EQ(File().size(), manager.n_GetSize());
            }
            EXPECT_EQ(Findings(name.file).empty(), failed == 0);
        }
    }
}

TEST_F(RecordManagerTest, MessagesNameTheFileAndMayHoldPercentSigns) {
    Named odd{folder, u"100%s.rec"};
    Manager other(&odd.file);
    other.v_Create(16, 64, 1);
    EXPECT_CT_MESSAGE(31051, u"(31051): Invalid record reference in " + folder.Name(u"100%s.rec"),
                      other.v_DeleteRecord(33));
    other.v_DeleteRecord(0);  // its location is the class, not one of its sources
    EXPECT_TRUE(TakeError(31051, {}, "Foundation/Database/RecordManager/RecordManager.cpp"));
    EXPECT_CT_ERROR(31051, other.v_DeleteRecord(0xFFFFFFFF));
    EXPECT_CT_ERROR(31053, other.v_DeleteResource(5));
    other.v_Close(TRUE);
    other.v_Open(Manager::kModeRead, Manager::kMapNever);
    EXPECT_CT_ERROR(5, Add(other, "x"));
}

// Counts what is read.
struct Counting : Manager {
    using Manager::Manager;
    unsigned int vn_Read(void* buffer, unsigned int count) override {
        bytes += count;
        return Manager::vn_Read(buffer, count);
    }
    unsigned int bytes = 0;
};

TEST_F(RecordManagerTest, ReopeningReadsTheTablesOnlyWhenTheyChanged) {
    Counting kept(&name.file);
    kept.v_Create(16, 64, 4);
    const CT_Buffer data = Data("resource");
    kept.v_AddResource(9, &data);
    Add(kept, "one");
    kept.v_DeleteRecord(Add(kept, "two"));
    kept.v_Close(FALSE);
    for (const bool changed : {false, true, false}) {
        if (changed) {
            manager.v_Open(Manager::kModeReadWrite, Manager::kMapAlways);
            manager.v_AddResource(3, &data);
            manager.v_Close(TRUE);
        }
        kept.bytes = 0;
        kept.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
        // the addition used the free block and left a directory of two
        EXPECT_EQ(kept.bytes, changed ? 256u + 16 : 256u);
        kept.v_Close(FALSE);
    }
    EXPECT_EQ(kept.b_ResourceExists(9), 2);
    EXPECT_EQ(kept.n_GetResourceKeyAt(1), 3u);
    EXPECT_EQ(kept.n_GetResourceKeyAt(0), 0xFFFFFFFF);
    EXPECT_EQ(kept.n_GetResourceKeyAt(3), 0xFFFFFFFF);
    const std::string before = File();
    kept.v_Open(Manager::kModeReadAndCheck, Manager::kMapNever);
    kept.v_Close(TRUE);
    EXPECT_TRUE(File() == before);
}

TEST_F(RecordManagerTest, RecordsLieWhereTheFormatSays) {
    for (const auto mapping : {Manager::kMapNever, Manager::kMapAlways}) {
        SCOPED_TRACE(mapping);
        Create();
        manager.v_Close(TRUE);
        manager.v_Open(Manager::kModeReadWrite, mapping);
        EXPECT_EQ(Add(manager, "0123456789"), 33u);
        EXPECT_EQ(manager.n_GetSize(), 2176u);
        const unsigned int reference = Add(manager, Bytes(1, 100));
        EXPECT_EQ(reference, 34u);
        EXPECT_EQ(manager.n_GetSize(), 2176u + 64 + 128);
        EXPECT_EQ(Word(2176), 0xFFFFFFFF);
        EXPECT_EQ(Word(2240), 88u);
        // in place, then moved: the old body of 128 bytes becomes free and the new one goes behind
        Update(manager, reference, Bytes(2, 110));
        EXPECT_EQ(Word(2240), 98u);
        Update(manager, reference, Bytes(3, 300));
        EXPECT_EQ(Word(2240), 128u);
        EXPECT_EQ(Word(2180), 2368u);
        EXPECT_EQ(Get(manager, reference), Bytes(3, 300));
        EXPECT_EQ(Get(manager, reference, 288), "");  // the body's length word is 288
        EXPECT_EQ(Get(manager, reference, 289), Bytes(3, 300));
        // 64 of the 128 free bytes are used, the rest stays free and says so
        EXPECT_EQ(Add(manager, "x"), 35u);
        EXPECT_EQ(Word(2304), 64u);
        manager.v_DeleteRecord(35);
        EXPECT_EQ(Add(manager, "y"), 36u);  // first fit: the rest's entry comes first
        EXPECT_EQ(Add(manager, "z"), 35u);
        EXPECT_EQ(References(manager), (std::vector{33u, 34u, 35u, 36u}));
        CloseSound();
        std::string bytes = File();
        EXPECT_EQ(WordAt(bytes, 76), 4u);
        PutWord(bytes, 76, 5);
        folder.Write(u"test.rec", bytes);
        manager.v_Open(Manager::kModeReadAndCheck, mapping);
        EXPECT_TRUE(manager.b_IsCorrupt());
        manager.v_Close(TRUE);
    }
}

TEST_F(RecordManagerTest, AFullTableOverflowsIntoAChain) {
    Create(16, 64, 0);
    const std::vector<unsigned int> references = AddSingles(132);
    Delete(std::span(references).first(130));
    manager.v_Flush();
    const auto offset = [&](std::size_t i) { return references[i] * 64; };
    const std::size_t last_entry = 256 + 127 * 8;
    // entry 128 and the chain: B (130th), A (129th), X (128th)
    EXPECT_EQ(Word(last_entry), offset(129));
    EXPECT_EQ(Word(last_entry + 4), 0u);
    EXPECT_EQ(Word(offset(129) + 4), offset(128));
    EXPECT_EQ(Word(offset(128) + 4), offset(127));
    EXPECT_EQ(Word(offset(127) + 4), 0u);
    EXPECT_EQ(manager.n_GetRecordCount(), 2u);
    // an exact fit in the table draws the chain's first block into its place
    EXPECT_EQ(Add(manager, "y"), references[0]);
    manager.v_Flush();
    EXPECT_EQ(Word(256), offset(129));
    EXPECT_EQ(Word(260), 64u);
    EXPECT_EQ(Word(last_entry), offset(128));
    EXPECT_EQ(Word(52), 128u);
    // a body of 128 bytes fits nowhere and goes to the end
    const unsigned int end = manager.n_GetSize();
    const unsigned int big = Add(manager, Bytes(1, 100));
    EXPECT_EQ(big, references[129]);
    EXPECT_EQ(manager.n_GetSize(), end + 128);
    AddSingles(125);
    CloseSound();
    manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
    // the three that are left: the chain is used up block by block
    AddSingles(3);
    EXPECT_EQ(manager.n_GetSize(), end + 128);
    AddSingles(1);
    EXPECT_EQ(manager.n_GetSize(), end + 192);
    CloseSound();
}

TEST_F(RecordManagerTest, TheChainServesWhatTheTableCannot) {
    Create(16, 64, 0);
    // single blocks fill table and chain; among the chain's is one of 256 bytes
    const std::vector<unsigned int> singles = AddSingles(140);
    const unsigned int large = Add(manager, Bytes(1, 16 + 252));
    const std::vector<unsigned int> fences = AddSingles(2);
    Delete(std::span(singles).first(130));
    manager.v_DeleteRecord(large);
    Delete(std::span(singles).subspan(130));
    const unsigned int end = manager.n_GetSize();
    const unsigned int body = (large + 1) * 64;
    EXPECT_EQ(WordAt(File(), body), 256u);
    // 128 of it, then the other 128; then there is no such block, time and again
    unsigned int reference = 0;
    for (const unsigned int expected : {body, body + 128, end, end + 128}) {
        reference = Add(manager, Bytes(2, 16 + 124));
        EXPECT_EQ(Word(std::size_t{reference} * 64 + 4), expected);
    }
    // until one is given back, and others after it
    manager.v_DeleteRecord(reference);
    Delete(fences);
    reference = Add(manager, Bytes(2, 16 + 124));
    EXPECT_EQ(Word(std::size_t{reference} * 64 + 4), end + 128);
    EXPECT_TRUE(ReadsAs(Get(manager, reference), Bytes(2, 16 + 124), 16));
    CloseSound();
}

TEST_F(RecordManagerTest, HeadsOfSeveralBlocksArePassedOverWhole) {
    Create(100, 16, 0);
    // header bytes that look like a live head at every block boundary
    const std::string trap(100, '\xFF');
    const unsigned int first = Add(manager, trap);
    const unsigned int second = Add(manager, trap + Bytes(1, 40));
    EXPECT_EQ(References(manager), (std::vector{first, second}));
    EXPECT_FALSE(manager.b_IsCorrupt());
    CloseSound();
}

TEST_F(RecordManagerTest, FilesBeyondTwoGigabytesAreReachedAndFourRefused) {
    Create(16, 0x40000000, 0);
    const unsigned int first = Add(manager, "a");
    const unsigned int second = Add(manager, "b");
    EXPECT_EQ(manager.n_GetSize(), 0xC0000000);
    EXPECT_CT_ERROR(223, Add(manager, "c"));
    EXPECT_TRUE(Get(manager, second).starts_with("b"));
    EXPECT_EQ(References(manager), (std::vector{first, second}));
    manager.v_DeleteRecord(second);
    EXPECT_EQ(Add(manager, "d"), second);
    manager.v_Close(TRUE);
}

}  // namespace
