// Text readers and writers, inputs and outputs when memory runs out.
#include <initializer_list>

#include "Core/File/FileFixture.h"
#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/File/TextReader.h"
#include "Foundation/Core/File/TextWriter.h"
#include "Foundation/Core/Input/Input.h"
#include "Foundation/Core/Output/Output.h"
#include "Foundation/Core/String/CString.h"

namespace platform = zelkor::platform;

namespace {

constexpr unsigned int kToEnd = 0xFFFFFFFF;

void AppendOneOfEach(CT_Output& output) {
    output.vv_AppendV("raw", 3);
    output.vv_AppendC("text", kToEnd, 1252);
    output.vv_AppendU(u"text", kToEnd);
    output.v_Format("%300d", 1);
    output.v_Format(u"%300d", 1);
}

void ReadBlocks(CT_Input& input) {
    const unsigned char* data = nullptr;
    unsigned int count = 0;
    input.vv_Open();
    if (test::TakeError(8)) return;  // a view is mapped or not, like any other failing call
    (void)input.vb_IsUnicode();
    EXPECT_TRUE(input.vb_Skip(1));
    while (input.vb_GetNextBuffer(&data, &count)) continue;
    input.vv_Close();
}

class TextMemoryTest : public test::FileTest {};

TEST_F(TextMemoryTest, ExhaustionAtAnyAllocationLeaksNothingAndLeavesNoError) {
    const CT_UString other = Name(u"other");
    const std::uint64_t failed = test::FailEachAllocation([&] {
        CT_UString wide;
        CT_CString narrow;
        CT_WinFile file(&other, 16384);
        CT_FileOutput to_file(&file), to_path(&name_);
        CT_MemoryOutput to_memory;
        CT_StringOutput to_string(wide);
        for (CT_Output* output :
             std::initializer_list<CT_Output*>{&to_file, &to_path, &to_memory, &to_string}) {
            AppendOneOfEach(*output);
        }
        const CT_Buffer content("shared", 6, 32);
        to_memory.v_Set(&content);
        AppendOneOfEach(to_memory);
        to_string.v_Set(narrow);
        AppendOneOfEach(to_string);
    });
    EXPECT_GT(failed, 10u);
    test::FailEachAllocation([this] {
        CT_WinFile file(&name_, 16384);
        CT_FileTextWriter writer(file, CT_Codepage::kUtf8);
        writer.v_WriteFormatted(u"%700d", 1);
        writer.v_WriteLine(u"");
        writer.v_WriteLine(u"two");
        writer.v_Close();
        CT_FileTextReader reader(file, CT_Codepage::kUnknown, TRUE);
        CT_UString line;
        for (const unsigned int length : {700u, 3u}) {
            EXPECT_TRUE(reader.b_ReadLine(line));
            EXPECT_EQ(line.n_GetLength(), length);
        }
        EXPECT_FALSE(reader.b_ReadLine(line));
    });
    test::FailEachAllocation([this] {
        CT_FileInput input(256, &name_);
        ReadBlocks(input);
        CT_MappedFileInput mapped(256, &name_);
        ReadBlocks(mapped);
    });
}

// A flush that runs out of memory between two chunks wrote the first once more when repeated.
TEST_F(TextMemoryTest, AnInterruptedFlushGoesOnWhereItStopped) {
    const std::string text = std::string(2048, 'a') + std::string(2048, 'b') + "c";
    for (unsigned int nth = 1; nth <= 2; ++nth) {
        SCOPED_TRACE(nth);
        CT_Buffer buffer;
        CT_BufferStream stream(&buffer);
        CT_StreamTextWriter writer(&stream, CT_Codepage::kWindows1252);
        writer.v_Write(std::u16string(text.begin(), text.end()).c_str());
        platform::FailAllocation(nth);
        EXPECT_THROW(writer.v_Flush(), CT_SmartHeapException);
        platform::FailAllocation(0);
        writer.v_Flush();
        EXPECT_EQ(Content(buffer), text);
    }
}

}  // namespace
