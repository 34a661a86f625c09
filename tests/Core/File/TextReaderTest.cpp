// Text readers over buffer and file streams: marks, line ends, blocks and damaged text.
#include "Foundation/Core/File/TextReader.h"

#include <random>

#include "Core/File/FileFixture.h"
#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/File/Stream.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/LastError.h"
#include "Support/Platform.h"

namespace platform = zelkor::platform;

namespace {

using namespace std::string_literals;
using Value = CT_Codepage::et_Codepage;
using enum CT_Codepage::et_Codepage;
constexpr unsigned int kBlock = CT_StreamTextReader::kBlockSize;

struct Text {
    Value encoding;
    std::u16string lines;  // each with a "|" behind it
    unsigned int errors;
};

Text ReadAll(CT_Stream& stream, Value encoding, BOOL sniff) {
    CT_StreamTextReader reader(&stream, encoding, sniff);
    Text text{reader.co_GetEncoding().eo_Get(), {}, 0};
    CT_UString line;
    while (reader.b_ReadLine(line))
        text.lines += std::u16string(line.qcuz_Get(), line.n_GetLength()) + u'|';
    EXPECT_EQ(line.n_GetLength(), 0u);
    text.errors = reader.n_GetErrors();
    return text;
}

Text ReadAll(const std::string& bytes, Value encoding, BOOL sniff = TRUE, unsigned int offset = 0) {
    CT_Buffer buffer(bytes.data(), static_cast<unsigned int>(bytes.size()), 32);
    CT_BufferStream stream(&buffer);
    stream.v_Open(CT_Stream::kRead);
    stream.v_SetOffset(offset);
    return ReadAll(stream, encoding, sniff);
}

// Hands out at most `most` bytes at once, and as a pipe has no size and cannot be positioned.
class ShortStream : public CT_BufferStream {
public:
    ShortStream(CT_Buffer* buffer, unsigned int most, bool pipe)
        : CT_BufferStream(buffer), most_(most), pipe_(pipe) {}
    unsigned int n_Read(unsigned char* target, unsigned int count) override {
        return CT_BufferStream::n_Read(target, std::min(count, most_));
    }
    unsigned int n_GetSize() const override { return pipe_ ? 0 : CT_BufferStream::n_GetSize(); }
    void v_SetOffset(unsigned int offset) override {
        if (!pipe_) CT_BufferStream::v_SetOffset(offset);
    }

private:
    unsigned int most_;
    bool pipe_;
};

Text ReadShortly(const std::string& bytes, Value encoding, BOOL sniff, unsigned int most,
                 bool pipe) {
    CT_Buffer buffer(bytes.data(), static_cast<unsigned int>(bytes.size()), 32);
    ShortStream stream(&buffer, most, pipe);
    return ReadAll(stream, encoding, sniff);
}

// The rules said slowly: each line with a "|" behind it.
std::u16string SlowLines(std::u16string_view text) {
    std::u16string lines;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool end = text[i] == u'\r' || text[i] == u'\n';
        lines += end ? u'|' : text[i];
        const bool pair = end && i + 1 < text.size() && text[i] + text[i + 1] == u'\r' + u'\n';
        if (pair) ++i;
        if (!end && i + 1 == text.size()) lines += u'|';
    }
    return lines;
}

class TextReaderTest : public test::FileTest {};

TEST_F(TextReaderTest, MarksSetTheEncodingAndEveryFormOfLineEndEndsALine) {
    constexpr BOOL kBoth = CT_StreamTextReader::kBothByteOrders;
    struct Case {
        std::string bytes;
        Value given;
        BOOL sniff;
        Value found;
        std::u16string lines;
    };
    const Case cases[] = {
        {"\xFF\xFE\x41\0\x0D\0\x0A\0\x42\0"s, kWindows1252, TRUE, kUtf16, u"A|B|"},
        {"\xEF\xBB\xBF\x61", kWindows1252, TRUE, kUtf8, u"a|"},
        {"\xEF\xBB", kWindows1252, TRUE, kWindows1252, u"ï»|"},
        {"\xEF\xBB\xBF\x61", kWindows1252, FALSE, kWindows1252, u"ï»¿a|"},
        {"\xFE\xFF\0\x41"s, kUtf16, TRUE, kUtf16, u"\xFFFE\x4100|"},
        {"\xFF\xFE", kUtf8, TRUE, kUtf16, u""},
        {"\xFF", kWindows1252, TRUE, kWindows1252, u"ÿ|"},
        {"\xEF\xBBz", kWindows1252, TRUE, kWindows1252, u"ï»z|"},
        {"ab\0\xFF"s, kUtf16, TRUE, kUtf16, u"\x6261\xFF00|"},
        {"abc", kUtf16, TRUE, kUtf16, u"\x6261|"},
        {"", kUnknown, TRUE, kPseudoAnsi, u""},
        {"\xFC", kNotSet, TRUE, kPseudoAnsi, u"ü|"},
        // Line ends
        {"a\r\nb\n\rc\rd\ne", kUtf8, TRUE, kUtf8, u"a|b|c|d|e|"},
        {"a\r\rb", kUtf8, TRUE, kUtf8, u"a||b|"},
        {"\n\nb\n", kUtf8, TRUE, kUtf8, u"||b|"},
        {"\r\n\r\n", kUtf8, TRUE, kUtf8, u"||"},
        {"\r\n\n\r\r", kUtf8, TRUE, kUtf8, u"|||"},
        {"a\r", kUtf8, TRUE, kUtf8, u"a|"},
        // Both byte orders
        {"\xFEz", kWindows1252, kBoth, kWindows1252, u"þz|"},
        {"\xFE\xFF\0\x41\0"s, kWindows1252, kBoth, kUtf16BigEndian, u"A\xFFFD|"},
        {"\0\x41\0\n\x20\xAC"s, kUtf16BigEndian, kBoth, kUtf16BigEndian, u"A|€|"},
        {"\xFF\xFE\x41\0"s, kUtf16BigEndian, kBoth, kUtf16, u"A|"},
    };
    for (const auto& [bytes, given, sniff, found, lines] : cases) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        for (const unsigned int most : {1u, 5u, 1000u}) {
            for (const bool pipe : {false, true}) {
                const Text text = ReadShortly(bytes, given, sniff, most, pipe);
                EXPECT_EQ(text.encoding, found) << most << pipe;
                EXPECT_EQ(text.lines, lines) << most << pipe;
            }
        }
    }
    const Text text = ReadAll("x\xEF\xBB\xBF\x61", kWindows1252, TRUE, 1);  // not its beginning
    EXPECT_EQ(text.encoding, kWindows1252);
    EXPECT_EQ(text.lines, u"ï»¿a|");
}

// A line end, a character and a surrogate pair at every place around a block's end.
TEST_F(TextReaderTest, NothingIsLostWhereBlocksMeet) {
    for (unsigned int before = kBlock - 5; before <= kBlock + 1; ++before) {
        SCOPED_TRACE(before);
        const std::u16string wide(before, u'x');
        const std::string narrow(before, 'x');
        EXPECT_EQ(ReadAll(narrow + "\r\ny", kUtf8).lines, wide + u"|y|");
        EXPECT_EQ(ReadAll(narrow + "\u20AC\U0001F600z", kUtf8).lines, wide + u"\u20AC\U0001F600z|");
        EXPECT_EQ(ReadAll(narrow + "\x93\xFA\x96\x7B", kShiftJis).lines, wide + u"日本|");
    }
}

// A short read was taken for the last block, and the switches of a text were forgotten in the next.
TEST_F(TextReaderTest, TextIsTheSameHoweverItsBytesArrive) {
    const char* const pieces[] = {"a",
                                  "word ",
                                  "\n",
                                  "\r\n",
                                  "\r",
                                  "\xC3\xA4",
                                  "\xE2\x82\xAC",
                                  "\xF0\x9F\x98\x80",
                                  "\x93\xFA",
                                  "\xB0\xA1",
                                  "+AOk-",
                                  "+2D3eAA-",
                                  "~{Dc:C~}",
                                  "~~",
                                  "\x1B$B$\"$$\x1B(B",
                                  "\x1B$B$\"",
                                  "~{:C"};
    std::mt19937 random(2026);
    std::string mixed;
    while (mixed.size() < 3 * kBlock) mixed += pieces[random() % std::size(pieces)];
    for (unsigned int number = 0; number <= kNotSet; ++number) {
        SCOPED_TRACE(number);
        const auto encoding = static_cast<Value>(number);
        const Text whole = ReadAll(mixed, encoding);
        for (const bool pipe : {false, true}) {
            for (const unsigned int most : {1u, 7u, 1000u, kBlock - 1}) {
                const Text text = ReadShortly(mixed, encoding, TRUE, most, pipe);
                ASSERT_TRUE(text.lines == whole.lines) << most << " " << pipe;
                EXPECT_EQ(text.errors, whole.errors);
            }
        }
        const unsigned int page = CT_Codepage(encoding).n_Get();
        if (platform::TakesTableFlags(page)) continue;
        std::u16string all(mixed.size(), u'\0');
        const int units =
            platform::MultiByteToWideChar(page, 0, mixed.data(), static_cast<int>(mixed.size()),
                                          all.data(), static_cast<int>(all.size()));
        all.resize(static_cast<std::size_t>(units));
        EXPECT_TRUE(whole.lines == SlowLines(all));
    }
}

TEST_F(TextReaderTest, DamagedTextIsReplacedOrEndsItsBlock) {
    EXPECT_EQ(ReadAll("a\xFF\x62\xC3", kUtf8).lines, u"a\xFFFD\x62\xFFFD|");
    // A short strict block ends the text; a full one is left 3 bytes before its end.
    EXPECT_EQ(ReadAll("ab\x81", kShiftJis).lines, u"");
    std::string full(kBlock + 2, 'x');
    full[0] = '\x81';
    full[1] = ' ';
    EXPECT_EQ(ReadAll(full, kShiftJis).lines, u"");
    CT_Buffer buffer(full.data(), static_cast<unsigned int>(full.size()), 32);
    CT_BufferStream stream(&buffer);
    CT_StreamTextReader reader(&stream, kShiftJis, FALSE);
    CT_UString line;
    EXPECT_FALSE(reader.b_ReadLine(line));
    EXPECT_EQ(stream.n_GetOffset(), kBlock - 3);
    EXPECT_TRUE(reader.b_ReadLine(line));
    EXPECT_EQ(line.n_GetLength(), 5u);
    EXPECT_EQ(reader.n_GetErrors(), 0u);
    // A page that the platform does not convert is counted, not reported.
    EXPECT_EQ(ReadAll("abcd", kUtf16BigEndian).errors, 1u);
    EXPECT_EQ(platform::LastError(), 87u);
    EXPECT_EQ(ReadAll("\x1B(B", kIso2022Jp).errors, 0u) << "an error of before";
    EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
}

TEST_F(TextReaderTest, WindowsXpReadsUtf8Strictly) {
    const test::ForcedVersion xp(2, 5, 1);
    EXPECT_EQ(ReadAll("a\xFF\x62", kUtf8).lines, u"");
    EXPECT_EQ(ReadAll(std::string(kBlock - 1, 'x') + "\u00E9y", kUtf8).lines,
              std::u16string(kBlock - 1, u'x') + u"\u00E9y|");
}

TEST_F(TextReaderTest, CharactersAndLinesMix) {
    CT_Buffer buffer("a\r\nbc", 5, 32);
    CT_BufferStream stream(&buffer);
    CT_StreamTextReader reader(&stream, kUtf8, TRUE);
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

TEST_F(TextReaderTest, FailuresOfTheFileAreKeptOrToldApart) {
    {
        CT_FileTextReader missing(file_, kUtf8, TRUE);
        EXPECT_EQ(Taken(), 2u);
        CT_UString line;
        EXPECT_FALSE(missing.b_ReadLine(line));
    }
    folder_.Write(u"file", "one\ntwo");
    // A failed read in search of the mark stays set, one in the text ends it without an error and
    // is told by the reader.
    for (const unsigned int passed : {0u, 1u}) {
        SCOPED_TRACE(passed);
        platform::FailFileCall(platform::FileCall::kRead, passed, 23);
        CT_FileTextReader reader(file_, kUnknown, TRUE);
        EXPECT_EQ(CT_ErrorManager::spco_Get()->b_IsSetError(), passed == 0 ? TRUE : FALSE);
        CT_UString line;
        EXPECT_FALSE(reader.b_ReadLine(line));
        EXPECT_EQ(reader.n_GetReadError(), 23u);
        EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
        platform::ClearFileFaults();
    }
    // What was read before the failure is text still.
    platform::ShortenFileCall(platform::FileCall::kRead, 1, 5);
    CT_FileTextReader reader(file_, kUtf8, TRUE);
    CT_UString line;
    EXPECT_TRUE(reader.b_ReadLine(line));
    EXPECT_EQ(reader.n_GetReadError(), 0u);
    EXPECT_TRUE(reader.b_ReadLine(line));
    EXPECT_EQ(test::Utf8(line.qcuz_Get()), "two");
    EXPECT_FALSE(reader.b_ReadLine(line));
    EXPECT_EQ(reader.n_GetReadError(), 0u);
    reader.v_Close();
    EXPECT_FALSE(file_.b_IsOpen());
}

}  // namespace
