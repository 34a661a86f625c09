#include "Foundation/Database/Glossary/GlossaryFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Core/SymbolTable/BiLingualWordList.h"
#include "Foundation/Database/RecordManager/RecordManager.h"
#include "Support/Errors.h"
#include "Support/Faults.h"
#include "Support/TempFolder.h"

namespace {

std::u16string Contents(const CT_BiLingualUWordList& list) {
    std::u16string text;
    CT_BiUWordListIterator iterator(&list);
    const char16_t* source = nullptr;
    const char16_t* target = nullptr;
    while (iterator.b_Next() != FALSE) {
        iterator.v_Get(&source, &target);
        text = text + source + u"=" + target + u";";
    }
    return text;
}

// The record file beneath.
struct Records {
    explicit Records(const std::u16string& name)
        : path(name.c_str()), file(&path, 0), manager(&file) {}
    CT_UString path;
    CT_WinFile file;
    CT_RecordManager manager;
};

class GlossaryFileTest : public testing::Test {
protected:
    GlossaryFileTest() {
        list.v_Insert(u"Haus", u"house");
        list.v_Insert(u"Bäume", u"trees");
    }
    BOOL Load(CT_BiLingualUWordList& into) { return CT_GlossaryFile::sb_Load(&into, name.c_str()); }

    test::TempFolder folder;
    std::u16string name = folder.Name(u"test.glossary");
    CT_BiLingualUWordList list{TRUE};
};

TEST_F(GlossaryFileTest, KeepsPairsAndIndexesAndCanGrowAfterwards) {
    ASSERT_TRUE(CT_GlossaryFile::sb_Save(&list, name.c_str()));
    CT_BiLingualUWordList loaded;
    loaded.v_Insert(u"old", u"alt");
    ASSERT_TRUE(Load(loaded));
    EXPECT_EQ(Contents(loaded), u"Haus=house;Bäume=trees;");
    EXPECT_EQ(std::u16string(loaded.qcuz_FindSource(u"Bäume")), u"trees");
    EXPECT_EQ(std::u16string(loaded.qcuz_FindTarget(u"house")), u"Haus");
    EXPECT_TRUE(loaded.pcco_GetSourceIndex()->b_HasLongOffsetSupport());
    loaded.v_Insert(u"neu", u"new");
    ASSERT_TRUE(CT_GlossaryFile::sb_Save(&loaded, name.c_str()));
    ASSERT_TRUE(Load(list));
    EXPECT_EQ(Contents(list), Contents(loaded));
    EXPECT_EQ(std::u16string(list.qcuz_FindTarget(u"new")), u"neu");

    const CT_BiLingualUWordList empty;
    ASSERT_TRUE(CT_GlossaryFile::sb_Save(&empty, name.c_str()));
    ASSERT_TRUE(Load(list));
    EXPECT_EQ(list.n_GetCount(), 0u);
}

// The head as the format's page shows it: "head  67 6c ...".
TEST_F(GlossaryFileTest, TheDocumentedHeadIsWhatIsWritten) {
    std::ifstream page(GLOSSARY_DOCUMENT);
    std::string documented, cell;
    for (std::string line; std::getline(page, line);) {
        std::istringstream cells(line);
        if (!(cells >> cell) || cell != "head") continue;
        while (cells >> cell) documented += static_cast<char>(std::stoul(cell, nullptr, 16));
    }
    ASSERT_TRUE(CT_GlossaryFile::sb_Save(&list, name.c_str()));
    Records records(name);
    records.manager.v_Open(CT_RecordManager::kModeRead, CT_RecordManager::kMapNever);
    CT_Buffer head;
    records.manager.v_GetResource(5, &head);
    records.manager.v_Close(TRUE);
    EXPECT_EQ(documented, std::string(static_cast<const char*>(head.qcv_Get()), 20));
}

TEST_F(GlossaryFileTest, ADamagedFileIsRefusedOrHarmless) {
    ASSERT_TRUE(CT_GlossaryFile::sb_Save(&list, name.c_str()));
    const std::string good = folder.Read(u"test.glossary");
    const std::u16string contents = Contents(list);
    int refused = 0;
    const auto probe = [&] {
        CT_BiLingualUWordList loaded;
        loaded.v_Insert(u"old", u"alt");
        if (Load(loaded) != FALSE) {
            EXPECT_EQ(Contents(loaded), contents);
            EXPECT_TRUE(test::NoError());
        } else {
            ++refused;
            EXPECT_EQ(Contents(loaded), u"old=alt;");
            EXPECT_FALSE(test::NoError());
        }
    };
    std::fstream file(
        folder.Native(u"test.glossary"));  // changed in place: files made anew are slow
    const auto put = [&file](std::size_t at, char byte) {
        file.seekp(static_cast<std::streamoff>(at)).put(byte).flush();
    };
    for (std::size_t at = 0; at < good.size(); ++at) {
        SCOPED_TRACE(at);
        for (const int change : {1, 0x80, 0xFF}) {
            put(at, static_cast<char>(good[at] ^ change));
            probe();
        }
        put(at, good[at]);
    }
    for (std::size_t at = 0; at < good.size(); at += 50) {
        SCOPED_TRACE(at);
        folder.Write(u"test.glossary", good.substr(0, at));
        probe();
    }
    EXPECT_GT(refused, 500);
}

TEST_F(GlossaryFileTest, TellsWhatIsWrongWithAFile) {
    CT_BiLingualUWordList loaded;
    EXPECT_CT_ERROR(2, Load(loaded));
    folder.Write(u"test.glossary", "Haus\thouse\n");
    EXPECT_CT_ERROR(31050, Load(loaded));
    Records records(name);
    records.manager.v_Create(16, 64, 1);
    records.manager.v_Close(TRUE);
    EXPECT_CT_MESSAGE(31050, u"(31050): No glossary in " + name, Load(loaded));
    ASSERT_TRUE(CT_GlossaryFile::sb_Save(&list, name.c_str()));
    records.manager.v_Open(CT_RecordManager::kModeReadWrite, CT_RecordManager::kMapNever);
    records.manager.v_DeleteResource(2);
    records.manager.v_Close(TRUE);
    EXPECT_CT_MESSAGE(31005, u"(31005): Corrupt data in " + name, Load(loaded));
}

TEST_F(GlossaryFileTest, AFailedWriteIsToldAndLeavesTheOldFile) {
    const CT_BiLingualUWordList old;
    BOOL saved = CT_GlossaryFile::sb_Save(&old, name.c_str());
    const auto save = [&] { saved = CT_GlossaryFile::sb_Save(&list, name.c_str()); };
    const auto check = [&](std::uint32_t) {
        EXPECT_FALSE(saved);
        EXPECT_TRUE(test::TakeError(112));
        CT_BiLingualUWordList loaded;
        EXPECT_TRUE(Load(loaded));
        EXPECT_EQ(loaded.n_GetCount(), 0u);
        EXPECT_EQ(folder.Names().size(), 1u);
    };
    EXPECT_EQ(test::FailEachFileCall(platform::FileCall::kRename, 112, save, check), 1u);
    CT_GlossaryFile::sb_Save(&old, name.c_str());
    EXPECT_GT(test::FailEachFileCall(platform::FileCall::kWrite, 112, save, check), 3u);
    EXPECT_GT(test::FailEachAllocation(save), 3u);
    const auto load = [&] {
        CT_BiLingualUWordList loaded;
        EXPECT_TRUE(Load(loaded));
    };
    EXPECT_GT(test::FailEachAllocation(load), 10u);
}

}  // namespace
