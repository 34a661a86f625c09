// Text readers over buffer and file streams: marks, line ends, blocks and damaged text.
#include "Foundation/Core/File/TextReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/File/Stream.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Faults.h"
#include "Foundation/Platform/LastError.h"
#include "Support/Errors.h"
#include "Support/Platform.h"
#include "Support/TempFolder.h"

namespace {

using namespace std::string_literals;
using Value = CT_Codepage::et_Codepage;
using Lines = std::vector<std::u16string>;

struct Text {
    Value encoding;
    Lines lines;
    unsigned int errors;
};

Text ReadAll(const std::string& bytes, Value encoding, BOOL sniff = TRUE, unsigned int offset = 0) {
    CT_Buffer buffer(bytes.data(), static_cast<unsigned int>(bytes.size()), 32);
    CT_BufferStream stream(&buffer);
    stream.v_Open(CT_Stream::kRead);
    stream.v_SetOffset(offset);
    CT_StreamTextReader reader(&stream, encoding, sniff);
    Text text{reader.co_GetEncoding().eo_Get(), {}, 0};
    CT_UString line;
    while (reader.b_ReadLine(line)) text.lines.emplace_back(line.qcuz_Get(), line.n_GetLength());
    EXPECT_EQ(line.n_GetLength(), 0u);
    text.errors = reader.n_GetErrors();
    return text;
}

TEST(TextReaderTest, MarksSetTheEncodingAndAreSkipped) {
    struct Case {
        std::string bytes;
        Value given;
        BOOL sniff;
        Value found;
        Lines lines;
    };
    for (const auto& [bytes, given, sniff, found, lines] :
         {Case{"\xFF\xFE\x41\0\x0D\0\x0A\0\x42\0"s,
               CT_Codepage::kWindows1252,
               TRUE,
               CT_Codepage::kUtf16,
               {u"A", u"B"}},
          {"\xEF\xBB\xBF\x61"s, CT_Codepage::kWindows1252, TRUE, CT_Codepage::kUtf8, {u"a"}},
          {"\xEF\xBB"s, CT_Codepage::kWindows1252, TRUE, CT_Codepage::kWindows1252, {u"ï»"}},
          {"\xEF\xBB\xBF\x61"s,
           CT_Codepage::kWindows1252,
           FALSE,
           CT_Codepage::kWindows1252,
           {u"ï»¿a"}},
          {"\xFE\xFF\0\x41"s, CT_Codepage::kUtf16, TRUE, CT_Codepage::kUtf16, {u"\xFFFE\x4100"}},
          {"\xFF\xFE"s, CT_Codepage::kUtf8, TRUE, CT_Codepage::kUtf16, {}},
          {"\xFF"s, CT_Codepage::kWindows1252, TRUE, CT_Codepage::kWindows1252, {u"ÿ"}},
          {"ab\0\xFF"s, CT_Codepage::kUtf16, TRUE, CT_Codepage::kUtf16, {u"\x6261\xFF00"}},
          {"abc"s, CT_Codepage::kUtf16, TRUE, CT_Codepage::kUtf16, {u"\x6261"}},
          {""s, CT_Codepage::kUnknown, TRUE, CT_Codepage::kPseudoAnsi, {}},
          {"\xFC"s, CT_Codepage::kNotSet, TRUE, CT_Codepage::kPseudoAnsi, {u"ü"}}}) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        const Text text = ReadAll(bytes, given, sniff);
        EXPECT_EQ(text.encoding, found);
        EXPECT_EQ(text.lines, lines);
    }
}

TEST(TextReaderTest, AStreamThatIsNotAtItsBeginningIsNotSniffed) {
    const Text text = ReadAll(
        "x\xEF\xBB\xBF"
        "a",
        CT_Codepage::kWindows1252, TRUE, 1);
    EXPECT_EQ(text.encoding, CT_Codepage::kWindows1252);
    EXPECT_EQ(text.lines, Lines{u"ï»¿a"});
}

TEST(TextReaderTest, EveryFormOfLineEndEndsOneLine) {
    struct Case {
        const char* bytes;
        Lines lines;
    };
    for (const auto& [bytes, lines] : {Case{"a\r\nb\n\rc\rd\ne", {u"a", u"b", u"c", u"d", u"e"}},
                                       {"a\r\rb", {u"a", u"", u"b"}},
                                       {"\n\nb\n", {u"", u"", u"b"}},
                                       {"\r\n\r\n", {u"", u""}},
                                       {"\r\n\n\r\r", {u"", u"", u""}},
                                       {"last", {u"last"}},
                                       {"a\r", {u"a"}}}) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        EXPECT_EQ(ReadAll(bytes, CT_Codepage::kUtf8).lines, lines);
    }
}

// A line end, a character and a surrogate pair at every place around a block's end.
TEST(TextReaderTest, NothingIsLostWhereBlocksMeet) {
    constexpr unsigned int kBlock = CT_StreamTextReader::kBlockSize;
    for (unsigned int before = kBlock - 5; before <= kBlock + 1; ++before) {
        SCOPED_TRACE(before);
        const std::u16string wide(before, u'x');
        const std::string narrow(before, 'x');
        EXPECT_EQ(ReadAll(narrow + "\r\ny", CT_Codepage::kUtf8).lines, (Lines{wide, u"y"}));
        EXPECT_EQ(ReadAll(narrow + "\u20AC\U0001F600z", CT_Codepage::kUtf8).lines,
                  Lines{wide + u"\u20AC\U0001F600z"});
        EXPECT_EQ(ReadAll(narrow + "\x93\xFA\x96\x7B", CT_Codepage::kShiftJis).lines,
                  Lines{wide + u"日本"});
    }
}

TEST(TextReaderTest, DamagedTextIsReplacedOrEndsItsBlock) {
    constexpr unsigned int kBlock = CT_StreamTextReader::kBlockSize;
    EXPECT_EQ(ReadAll("a\xFF"
                      "b\xC3",
                      CT_Codepage::kUtf8)
                  .lines,
              Lines{u"a\xFFFD"
                    u"b\xFFFD"});
    // A short strict block ends the text; a full one is left 3 bytes before its end.
    EXPECT_EQ(ReadAll("ab\x81", CT_Codepage::kShiftJis).lines, Lines{});
    std::string full(kBlock + 2, 'x');
    full[0] = '\x81';
    full[1] = ' ';
    EXPECT_EQ(ReadAll(full, CT_Codepage::kShiftJis).lines, Lines{});
    CT_Buffer buffer(full.data(), static_cast<unsigned int>(full.size()), 32);
    CT_BufferStream stream(&buffer);
    CT_StreamTextReader reader(&stream, CT_Codepage::kShiftJis, FALSE);
    CT_UString line;
    EXPECT_FALSE(reader.b_ReadLine(line));
    EXPECT_EQ(stream.n_GetOffset(), kBlock - 3);
    EXPECT_TRUE(reader.b_ReadLine(line));
    EXPECT_EQ(line.n_GetLength(), 5u);
    EXPECT_EQ(reader.n_GetErrors(), 0u);
    // A page that the platform does not convert is counted, not reported.
    EXPECT_EQ(ReadAll("abcd", CT_Codepage::kUtf16BigEndian).errors, 1u);
    EXPECT_EQ(platform::LastError(), 87u);
    EXPECT_EQ(ReadAll("\x1B(B", CT_Codepage::kIso2022Jp).errors, 0u) << "an error of before";
    EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
}

TEST(TextReaderTest, WindowsXpReadsUtf8Strictly) {
    constexpr unsigned int kBlock = CT_StreamTextReader::kBlockSize;
    const test::ForcedVersion xp(2, 5, 1);
    EXPECT_EQ(ReadAll("a\xFF"
                      "b",
                      CT_Codepage::kUtf8)
                  .lines,
              Lines{});
    const std::string cut(kBlock - 1, 'x');
    EXPECT_EQ(ReadAll(cut + "\u00E9y", CT_Codepage::kUtf8).lines,
              Lines{std::u16string(kBlock - 1, u'x') + u"\u00E9y"});
}

TEST(TextReaderTest, CharactersAndLinesMix) {
    CT_Buffer buffer("a\r\nbc", 5, 32);
    CT_BufferStream stream(&buffer);
    CT_StreamTextReader reader(&stream, CT_Codepage::kUtf8, TRUE);
    char16_t character = 0;
    EXPECT_TRUE(reader.b_ReadChar(character));
    EXPECT_EQ(character, u'a');
    CT_UString line;
    EXPECT_TRUE(reader.b_ReadLine(line));
    EXPECT_EQ(line.n_GetLength(), 0u);
    EXPECT_TRUE(reader.b_ReadChar(character));
    EXPECT_EQ(character, u'b');
    reader.v_Close();
    EXPECT_FALSE(stream.b_IsOpen());
    EXPECT_FALSE(reader.b_ReadChar(character));
    EXPECT_EQ(character, 0);
}

TEST(TextReaderTest, FailuresOfTheFileAreKeptOrToldApart) {
    const test::TempFolder folder;
    const std::u16string name = folder.Name(u"in.txt");
    const CT_UString path(name.c_str());
    CT_WinFile file(&path, 16384);
    {
        CT_FileTextReader missing(file, CT_Codepage::kUtf8, TRUE);
        EXPECT_EQ(CT_ErrorManager::spco_Get()->n_GetErrorCode(), 2u);
        CT_ErrorManager::spco_Get()->v_ClearError();
        CT_UString line;
        EXPECT_FALSE(missing.b_ReadLine(line));
    }
    folder.Write(u"in.txt", "one\ntwo");
    // A failed read in search of the mark stays set, one in the text ends it without an error.
    for (const unsigned int passed : {0u, 1u}) {
        SCOPED_TRACE(passed);
        platform::FailFileCall(platform::FileCall::kRead, passed, 23);
        CT_FileTextReader reader(file, CT_Codepage::kUnknown, TRUE);
        EXPECT_EQ(CT_ErrorManager::spco_Get()->b_IsSetError(), passed == 0 ? TRUE : FALSE);
        CT_UString line;
        EXPECT_FALSE(reader.b_ReadLine(line));
        EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
        platform::ClearFileFaults();
    }
    EXPECT_FALSE(file.b_IsOpen());
}

}  // namespace
