// Text writers: marks, encodings, pending text and line ends.
#include "Foundation/Core/File/TextWriter.h"

#include <gtest/gtest.h>

#include <string>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/File/Stream.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Faults.h"
#include "Support/TempFolder.h"

namespace {

using namespace std::string_literals;
using Value = CT_Codepage::et_Codepage;

std::string Content(const CT_Buffer& buffer) {
    return {static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize()};
}

TEST(TextWriterTest, TextIsEncodedWithTheMarkOfItsEncoding) {
    struct Case {
        Value encoding;
        const char16_t* text;
        std::string bytes;
    };
    for (const auto& [encoding, text, bytes] :
         {Case{CT_Codepage::kUtf8, u"aé€\U0001F600",
               "\xEF\xBB\xBF"
               "aé€\U0001F600"},
          {CT_Codepage::kUtf16, u"aé",
           "\xFF\xFE"
           "a\0\xE9\0"s},
          {CT_Codepage::kUnicode, u"a", ""},  // 1200 is no page of the conversion service
          {CT_Codepage::kWindows1252, u"é€Ł", "\xE9\x80?"},
          {CT_Codepage::kShiftJis, u"日本", "\x93\xFA\x96\x7B"},
          {CT_Codepage::kIso2022Jp, u"あ", "\x1B$B$\"\x1B(B"},
          {CT_Codepage::kUtf7, u"+", "+-"}}) {
        SCOPED_TRACE(encoding);
        CT_Buffer buffer;
        CT_BufferStream stream(&buffer);
        CT_StreamTextWriter writer(&stream, encoding);
        writer.v_Write(text);
        writer.v_Close();
        EXPECT_EQ(Content(buffer), bytes);
        EXPECT_FALSE(stream.b_IsOpen());
    }
}

TEST(TextWriterTest, AStreamThatHoldsDataGetsNoMark) {
    CT_Buffer buffer("x", 1, 32);
    CT_BufferStream stream(&buffer);
    stream.v_Open(CT_Stream::kWrite);
    stream.v_SetOffset(1);
    CT_StreamTextWriter writer(&stream, CT_Codepage::kUtf8);
    writer.v_Write(u"y");
    writer.v_Flush();
    EXPECT_EQ(Content(buffer), "xy");
}

TEST(TextWriterTest, PendingTextIsWrittenBeforeTheUnitThatDoesNotFit) {
    constexpr unsigned int kPending = CT_StreamTextWriter::kPendingUnits;
    CT_Buffer buffer;
    CT_BufferStream stream(&buffer);
    CT_StreamTextWriter writer(&stream, CT_Codepage::kWindows1252);
    writer.v_Write(std::u16string(kPending, u'x').c_str());
    EXPECT_EQ(buffer.n_GetUsedSize(), 0u);
    writer.v_Write(u'y');
    EXPECT_EQ(buffer.n_GetUsedSize(), kPending);
    writer.v_Flush();
    EXPECT_EQ(Content(buffer), std::string(kPending, 'x') + "y");
    // Without a stream text piles up to the limit and what comes then is dropped.
    stream.v_Close();
    writer.v_Write(std::u16string(kPending + 10, u'z').c_str());
    writer.v_Flush();
    stream.v_Open(CT_Stream::kWrite);
    stream.v_SetOffset(kPending + 1);
    writer.v_Flush();
    EXPECT_EQ(buffer.n_GetUsedSize(), 2 * kPending + 1);
}

// Pairs at every place around the ends of the chunks and of the pending text.
TEST(TextWriterTest, SurrogatePairsStayTogether) {
    for (const unsigned int before : {2046u, 2047u, 2048u, 16382u, 16383u, 16384u}) {
        SCOPED_TRACE(before);
        CT_Buffer buffer;
        CT_BufferStream stream(&buffer);
        CT_StreamTextWriter writer(&stream, CT_Codepage::kUtf8);
        for (unsigned int i = 0; i < before; ++i) writer.v_Write(u'x');
        for (const char16_t* unit = u"\U0001F600yz"; *unit != 0; ++unit) writer.v_Write(*unit);
        writer.v_Close();
        EXPECT_EQ(Content(buffer), "\xEF\xBB\xBF" + std::string(before, 'x') + "\U0001F600yz");
    }
}

TEST(TextWriterTest, LinesEndInCrLfAndNullWritesNothing) {
    CT_UString text;
    CT_StringTextWriter writer(text);
    const CT_UString line(u"line");
    writer.v_WriteLine(static_cast<const CT_UString*>(nullptr));
    writer.v_Write(static_cast<const char16_t*>(nullptr));
    writer.v_WriteLine(u"a");
    writer.v_WriteLine(&line);
    writer.v_WriteLine(line);
    writer.v_WriteLine();
    writer.v_WriteFormatted(u"%d-", 5);
    writer.v_WriteLineFormatted(u"%s", u"end");
    EXPECT_EQ(std::u16string(text.qcuz_Get()), u"a\r\nline\r\nline\r\n\r\n5-end\r\n");
}

TEST(TextWriterTest, AFileWriterThatIsNotClosedLosesPendingText) {
    const test::TempFolder folder;
    const std::u16string name = folder.Name(u"out.txt");
    const CT_UString path(name.c_str());
    for (const bool close : {false, true}) {
        CT_WinFile file(&path, 16384);
        {
            CT_FileTextWriter writer(file, CT_Codepage::kUtf8);
            writer.v_WriteLine(u"text");
            if (close) writer.v_Close();
        }
        EXPECT_FALSE(file.b_IsOpen());
        EXPECT_EQ(folder.Read(u"out.txt"), close ? "\xEF\xBB\xBF"
                                                   "text\r\n"
                                                 : "\xEF\xBB\xBF");
    }
}

TEST(TextWriterTest, AFailedWriteStaysSetAndWritingGoesOnOnceItIsCleared) {
    const test::TempFolder folder;
    const std::u16string name = folder.Name(u"out.txt");
    const CT_UString path(name.c_str());
    CT_WinFile file(&path, 16384);
    CT_FileTextWriter writer(file, CT_Codepage::kWindows1252);
    writer.v_Write((std::u16string(2048, u'a') + std::u16string(2048, u'b') + u"c").c_str());
    platform::FailFileCall(platform::FileCall::kWrite, 1, 112);
    writer.v_Flush();
    platform::ClearFileFaults();
    EXPECT_EQ(CT_ErrorManager::spco_Get()->n_GetErrorCode(), 112u);
    EXPECT_GE(CT_ErrorManager::spco_Get()->n_GetLocationCount(), 3u);
    CT_ErrorManager::spco_Get()->v_ClearError();
    writer.v_Write(u"d");
    writer.v_Close();
    EXPECT_EQ(folder.Read(u"out.txt"), std::string(2048, 'a') + "d");
}

}  // namespace
