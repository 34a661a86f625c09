// Text writers: marks, encodings, pending text and line ends.
#include "Foundation/Core/File/TextWriter.h"

#include "Core/File/FileFixture.h"
#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/File/Stream.h"

namespace platform = zelkor::platform;

namespace {

using namespace std::string_literals;
using enum CT_Codepage::et_Codepage;

class TextWriterTest : public test::FileTest {
protected:
    CT_Buffer buffer_;
    CT_BufferStream stream_{&buffer_};
};

TEST_F(TextWriterTest, TextIsEncodedWithTheMarkOfItsEncoding) {
    const std::tuple<CT_Codepage::et_Codepage, const char16_t*, std::string> cases[] = {
        {kUtf8, u"aé€\U0001F600", "\xEF\xBB\xBF\x61é€\U0001F600"},
        {kUtf16, u"aé", "\xFF\xFE\x61\0\xE9\0"s},
        {kWindows1252, u"é€Ł", "\xE9\x80?"},
        {kShiftJis, u"日本", "\x93\xFA\x96\x7B"},
        {kIso2022Jp, u"あ", "\x1B$B$\"\x1B(B"},
        {kUtf7, u"+", "+-"},
    };
    for (const auto& [encoding, text, bytes] : cases) {
        SCOPED_TRACE(encoding);
        buffer_.v_SetSize(0, FALSE);
        CT_StreamTextWriter writer(&stream_, encoding);
        writer.v_Write(text);
        writer.v_Close();
        EXPECT_EQ(Content(buffer_), bytes);
        EXPECT_FALSE(stream_.b_IsOpen());
    }
}

// Their text was dropped without a word: no page of the conversion service has these numbers.
TEST_F(TextWriterTest, AnEncodingThatCannotBeWrittenIsTold) {
    for (const auto encoding : {kUnicode, kUtf16BigEndian}) {
        CT_StreamTextWriter writer(&stream_, encoding);
        writer.v_Write(u"a");
        EXPECT_TRUE(test::NoError());
        EXPECT_CT_MESSAGE(87,
                          u"(87): The parameter is incorrect. [encoding " +
                              test::Utf16(std::to_string(encoding)) + u"]",
                          writer.v_Close());
        EXPECT_EQ(buffer_.n_GetUsedSize(), 0u);
    }
}

TEST_F(TextWriterTest, AStreamThatHoldsDataGetsNoMark) {
    buffer_.v_Append("x", 1);
    stream_.v_Open(CT_Stream::kWrite);
    stream_.v_SetOffset(1);
    CT_StreamTextWriter writer(&stream_, kUtf8);
    writer.v_Write(u"y");
    writer.v_Flush();
    EXPECT_EQ(Content(buffer_), "xy");
}

TEST_F(TextWriterTest, PendingTextIsWrittenBeforeTheUnitThatDoesNotFit) {
    constexpr unsigned int kPending = CT_StreamTextWriter::kPendingUnits;
    CT_StreamTextWriter writer(&stream_, kWindows1252);
    writer.v_Write(std::u16string(kPending, u'x').c_str());
    EXPECT_EQ(buffer_.n_GetUsedSize(), 0u);
    writer.v_Write(u'y');
    EXPECT_EQ(buffer_.n_GetUsedSize(), kPending);
    writer.v_Flush();
    EXPECT_EQ(Content(buffer_), std::string(kPending, 'x') + "y");
    // Without a stream text piles up to the limit and what comes then is dropped.
    stream_.v_Close();
    writer.v_Write(std::u16string(kPending + 10, u'z').c_str());
    writer.v_Flush();
    stream_.v_Open(CT_Stream::kWrite);
    stream_.v_SetOffset(kPending + 1);
    writer.v_Flush();
    EXPECT_EQ(buffer_.n_GetUsedSize(), 2 * kPending + 1);
}

// Pairs at every place around the ends of the chunks and of the pending text.
TEST_F(TextWriterTest, SurrogatePairsStayTogether) {
    for (const unsigned int before : {2046u, 2047u, 2048u, 16382u, 16383u, 16384u}) {
        SCOPED_TRACE(before);
        buffer_.v_SetSize(0, FALSE);
        CT_StreamTextWriter writer(&stream_, kUtf8);
        for (unsigned int i = 0; i < before; ++i) writer.v_Write(u'x');
        for (const char16_t* unit = u"\U0001F600yz"; *unit != 0; ++unit) writer.v_Write(*unit);
        writer.v_Close();
        EXPECT_EQ(Content(buffer_), "\xEF\xBB\xBF" + std::string(before, 'x') + "\U0001F600yz");
    }
}

TEST_F(TextWriterTest, LinesEndInCrLfAndNullWritesNothing) {
    const auto write = [](auto& writer) {
        CT_UString line;
        line.v_Replace(u"li\0ne", 5, 0);
        writer.v_WriteLine(static_cast<const CT_UString*>(nullptr));
        writer.v_Write(static_cast<const char16_t*>(nullptr));
        writer.v_WriteLine(u"a");
        writer.v_WriteLine(&line);
        writer.v_WriteLine(line);
        writer.v_WriteLine();
        writer.v_Write(u'b');
        writer.v_Write(&line);
        writer.v_Write(line);
        writer.v_WriteFormatted(u"%d-", 5);
        writer.v_WriteLineFormatted(u"%s", u"end");
    };
    CT_UString text;
    CT_StringTextWriter to_string(text);
    write(to_string);
    EXPECT_EQ(test::Utf8({text.qcuz_Get(), text.n_GetLength()}),
              "a\r\nli\0ne\r\nli\0ne\r\n\r\nbli\0neli\0ne5-end\r\n"s);
    CT_FileTextWriter to_file(file_, kWindows1252);
    write(to_file);
    to_file.v_Close();
    EXPECT_EQ(Get(u"file"), test::Utf8({text.qcuz_Get(), text.n_GetLength()}));
}

TEST_F(TextWriterTest, AFileWriterThatIsNotClosedLosesPendingText) {
    for (const bool close : {false, true}) {
        {
            CT_FileTextWriter writer(file_, kUtf8);
            writer.v_WriteLine(u"text");
            if (close) writer.v_Close();
        }
        EXPECT_FALSE(file_.b_IsOpen());
        EXPECT_EQ(Get(u"file"), close ? "\xEF\xBB\xBFtext\r\n" : "\xEF\xBB\xBF");
    }
}

TEST_F(TextWriterTest, AFailedWriteStaysSetAndWritingGoesOnOnceItIsCleared) {
    CT_FileTextWriter writer(file_, kWindows1252);
    writer.v_Write((std::u16string(2048, u'a') + std::u16string(2048, u'b') + u"c").c_str());
    platform::FailFileCall(platform::FileCall::kWrite, 1, 112);
    writer.v_Flush();
    platform::ClearFileFaults();
    EXPECT_EQ(CT_ErrorManager::spco_Get()->n_GetErrorCode(), 112u);
    EXPECT_GE(CT_ErrorManager::spco_Get()->n_GetLocationCount(), 3u);
    CT_ErrorManager::spco_Get()->v_ClearError();
    writer.v_Write(u"d");
    writer.v_Close();
    EXPECT_EQ(Get(u"file"), std::string(2048, 'a') + "d");
}

}  // namespace
