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

namespace platform = zelkor::platform;

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

class GlossaryFileTest : public testing::Test {
protected:
    GlossaryFileTest() {
        list.v_Insert(u"Haus", u"house");
        list.v_Insert(u"Bäume", u"trees");
    }
    BOOL Save(const CT_BiLingualUWordList& from) {
        return CT_GlossaryFile::sb_Save(&from, name.c_str());
    }
    BOOL Load(CT_BiLingualUWordList& into) { return CT_GlossaryFile::sb_Load(&into, name.c_str()); }

    test::TempFolder folder;
    std::u16string name = folder.Name(u"test.glossary");
    CT_BiLingualUWordList list{TRUE};
};

TEST_F(GlossaryFileTest, KeepsPairsAndIndexesAndCanGrowAfterwards) {
    ASSERT_TRUE(Save(list));
    CT_BiLingualUWordList loaded;
    loaded.v_Insert(u"old", u"alt");
    ASSERT_TRUE(Load(loaded));
    EXPECT_EQ(Contents(loaded), u"Haus=house;Bäume=trees;");
    EXPECT_EQ(std::u16string(loaded.qcuz_FindSource(u"Bäume")), u"trees");
    EXPECT_EQ(std::u16string(loaded.qcuz_FindTarget(u"house")), u"Haus");
    EXPECT_TRUE(loaded.pcco_GetSourceIndex()->b_HasLongOffsetSupport());
    loaded.v_Insert(u"neu", u"new");
    ASSERT_TRUE(Save(loaded) && Load(list));
    EXPECT_EQ(Contents(list), Contents(loaded));
    EXPECT_EQ(std::u16string(list.qcuz_FindTarget(u"new")), u"neu");
    ASSERT_TRUE(Save(CT_BiLingualUWordList()) && Load(list));
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
    ASSERT_EQ(documented.size(), 20u);
    ASSERT_TRUE(Save(list));
    EXPECT_NE(folder.Read(u"test.glossary").find(documented), std::string::npos);
}

TEST_F(GlossaryFileTest, ADamagedFileIsRefusedOrHarmless) {
    ASSERT_TRUE(Save(list));
    const std::string good = folder.Read(u"test.glossary");
    const std::u16string contents = Contents(list);
    int refused = 0;
    const auto probe = [&](std::size_t at) {
        SCOPED_TRACE(at);
        CT_BiLingualUWordList loaded;
        loaded.v_Insert(u"old", u"alt");
        const BOOL harmless = Load(loaded);
        EXPECT_EQ(Contents(loaded), harmless != FALSE ? contents : u"old=alt;");
        EXPECT_EQ(CT_ErrorManager::spco_Get()->b_IsSetError(), harmless == FALSE ? TRUE : FALSE);
        CT_ErrorManager::spco_Get()->v_ClearError();
        refused += harmless == FALSE ? 1 : 0;
    };
    // Changed in place: files made anew are slow.
    std::fstream file(folder.Native(u"test.glossary"));
    for (std::size_t i = 0; i < 4 * good.size(); ++i) {
        const char changed = static_cast<char>(good[i / 4] ^ "\x01\x80\xFF\x00"[i % 4]);
        file.seekp(static_cast<std::streamoff>(i / 4)).put(changed).flush();
        if (changed != good[i / 4]) probe(i / 4);
    }
    for (std::size_t at = 0; at < good.size(); at += 50) {
        folder.Write(u"test.glossary", good.substr(0, at));
        probe(at);
    }
    EXPECT_GT(refused, 500);
}

TEST_F(GlossaryFileTest, TellsWhatIsWrongWithAFile) {
    EXPECT_CT_ERROR(87, CT_GlossaryFile::sb_Save(nullptr, name.c_str()));
    EXPECT_CT_ERROR(87, CT_GlossaryFile::sb_Save(&list, nullptr));
    EXPECT_CT_ERROR(87, CT_GlossaryFile::sb_Load(nullptr, name.c_str()));
    EXPECT_CT_ERROR(87, CT_GlossaryFile::sb_Load(&list, nullptr));
    CT_BiLingualUWordList loaded;
    EXPECT_CT_ERROR(2, Load(loaded));
    folder.Write(u"test.glossary", "Haus\thouse\n");
    EXPECT_CT_ERROR(31050, Load(loaded));
    const CT_UString path(name.c_str());
    const CT_WinFile file(&path, 0);
    CT_RecordManager records(&file);
    records.v_Create(16, 64, 1);
    records.v_Close(TRUE);
    EXPECT_CT_MESSAGE(31050, u"(31050): No glossary in " + name, Load(loaded));
    ASSERT_TRUE(Save(list));
    records.v_Open(CT_RecordManager::kModeReadWrite, CT_RecordManager::kMapNever);
    records.v_DeleteResource(2);
    records.v_Close(TRUE);
    EXPECT_CT_MESSAGE(31005, u"(31005): Corrupt data in " + name, Load(loaded));
}

TEST_F(GlossaryFileTest, AFailedWriteIsToldAndLeavesTheOldFile) {
    const CT_BiLingualUWordList old;
    BOOL saved = Save(old);
    const auto save = [&] { saved = Save(list); };
    const auto check = [&](std::uint32_t) {
        EXPECT_FALSE(saved);
        EXPECT_TRUE(test::TakeError(112));
        CT_BiLingualUWordList loaded;
        EXPECT_TRUE(Load(loaded));
        EXPECT_EQ(loaded.n_GetCount(), 0u);
        EXPECT_EQ(folder.Names().size(), 1u);
    };
    {  // another one is saving: its file stays
        const CT_UString path((name + u".new").c_str());
        const CT_WinFile file(&path, 0);
        CT_RecordManager other(&file);
        other.v_Create(16, 64, 1);
        EXPECT_CT_ERROR(32, save());
        EXPECT_EQ(folder.Names().size(), 2u);
        other.v_Close(TRUE);
        other.vv_Remove();
    }
    EXPECT_EQ(test::FailEachFileCall(platform::FileCall::kRename, 112, save, check), 1u);
    Save(old);
    EXPECT_GT(test::FailEachFileCall(platform::FileCall::kWrite, 112, save, check), 3u);
    EXPECT_GT(test::FailEachAllocation(save), 3u);
    EXPECT_GT(test::FailEachAllocation([&] {
                  CT_BiLingualUWordList loaded;
                  EXPECT_TRUE(Load(loaded));
              }),
              10u);
}

}  // namespace
