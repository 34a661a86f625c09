// Outputs into memory, files and strings.
#include "Foundation/Core/Output/Output.h"

#include "Core/File/FileFixture.h"
#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/String/CString.h"

namespace {

using namespace std::string_literals;

constexpr unsigned int kToEnd = 0xFFFFFFFF;

void AppendOneOfEach(CT_Output& output) {
    output.vv_AppendV("raw\x01", 4);
    output.vv_AppendC("\xE9t\xE9", kToEnd, 1252);
    output.vv_AppendU(u"\u20AC!", 1);
    output.v_Format("%d", 42);
    output.v_Format(u"%s", u"w");
}

class OutputTest : public test::FileTest {};

TEST_F(OutputTest, MemoryAndFilesTakeTheBytesAsTheyAre) {
    const std::string expected = "raw\x01\xE9t\xE9\xAC\x20\x34\x32w\0"s;
    CT_MemoryOutput memory;
    AppendOneOfEach(memory);
    EXPECT_EQ(memory.vn_GetSize(), expected.size());
    EXPECT_EQ(Content(*memory.pcco_GetMemory()), expected);
    {
        CT_FileOutput file(&name_);
        AppendOneOfEach(file);
        EXPECT_EQ(file.vn_GetSize(), expected.size());
    }
    EXPECT_EQ(Get(u"file"), expected);
}

TEST_F(OutputTest, StringsConvertTextOfTheOtherKind) {
    CT_UString wide(u"<");
    CT_StringOutput output(wide);
    output.vv_AppendC("\xE9t\xE9 cut", 3, 1252);
    output.vv_AppendU(u"\u20AC!", 1);
    output.vv_AppendV("x\0y", 3);
    EXPECT_EQ(std::u16string(wide.qcuz_Get(), wide.n_GetLength()), u"<été€xy");
    EXPECT_EQ(output.vn_GetSize(), 7u);
    output.vv_AppendV("a\0\0\0b\0", 6);  // ends at its first zero unit
    EXPECT_EQ(std::u16string(wide.qcuz_Get(), wide.n_GetLength()), u"<été€xya");
    while (wide.n_GetLength() < 5000) output.vv_AppendV(wide.qcuz_Get(), 2 * wide.n_GetLength());
    EXPECT_EQ(std::u16string(wide.qcuz_Get() + 4096, 8), u"<été€xya");

    CT_CString narrow("<", kToEnd, 1252);
    output.v_Set(narrow);
    output.vv_AppendU(u"\u20AC!", 1);  // the whole text, whatever the count
    output.vv_AppendC("abc", 2, 0);
    output.vv_AppendV("r\0s", 3);
    EXPECT_EQ(std::string(narrow.qccz_Get(), narrow.n_GetLength()), "<\x80!abr");
}

TEST_F(OutputTest, NullIsNothing) {
    CT_UString wide(u"w");
    CT_CString narrow("n", kToEnd, 0);
    CT_MemoryOutput memory(nullptr);
    CT_FileOutput file(static_cast<CT_WinFile*>(nullptr));
    CT_StringOutput to_wide(wide), to_narrow(narrow);
    for (CT_Output* output :
         {static_cast<CT_Output*>(&memory), static_cast<CT_Output*>(&file),
          static_cast<CT_Output*>(&to_wide), static_cast<CT_Output*>(&to_narrow)}) {
        const unsigned int size = output->vn_GetSize();
        output->vv_AppendV(nullptr, 4);
        output->vv_AppendC(nullptr, kToEnd, 0);
        output->vv_AppendU(nullptr, kToEnd);
        EXPECT_EQ(output->vn_GetSize(), size);
    }
    EXPECT_TRUE(test::NoError());
}

TEST_F(OutputTest, ContentIsSharedAndHandedOver) {
    CT_Buffer shared("ab", 2, 32);
    CT_MemoryOutput output(&shared);
    output.v_AppendC('c');
    EXPECT_EQ(shared.n_GetUsedSize(), 2u);
    const std::unique_ptr<CT_Buffer> given(output.pco_GiveMemory());
    EXPECT_EQ(given->n_GetUsedSize(), 3u);
    EXPECT_EQ(output.vn_GetSize(), 0u);
    output.v_AppendC('d');
    EXPECT_EQ(output.vn_GetSize(), 1u);
    EXPECT_EQ(given->n_GetUsedSize(), 3u);
}

TEST_F(OutputTest, ACallersFileIsAppendedToAndLeftAsItWas) {
    const auto file = Opened("old", 3);
    {
        CT_FileOutput output(file.get());
        output.vv_AppendC("+", 1, 0);
    }
    EXPECT_TRUE(file->b_IsOpen());
    file->vv_Close();
    EXPECT_EQ(Get(u"file"), "old+");
    {
        CT_FileOutput output(file.get());  // a closed file is made anew and closed in the end
        output.vv_AppendC("new", 3, 0);
        EXPECT_EQ(output.pco_GiveFile(), file.get());
        EXPECT_FALSE(file->b_IsOpen());
        output.vv_AppendC("lost", 4, 0);
        EXPECT_EQ(output.vn_GetSize(), 0u);
    }
    EXPECT_EQ(Get(u"file"), "new");
    const CT_UString missing = Name(u"no/such/folder/file");
    EXPECT_CT_ERROR(3, CT_FileOutput{&missing});
}

}  // namespace
