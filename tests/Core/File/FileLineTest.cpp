#include <sys/stat.h>

#include <fstream>
#include <random>
#include <thread>
#include <vector>

#include "Core/File/FileFixture.h"
#include "Foundation/Core/String/CString.h"

namespace platform = zelkor::platform;

namespace {

enum Kind { kNarrow, kWide, kNarrowAhead, kWideAhead };

unsigned int Unit(Kind kind) {
    return kind % 2 == 0 ? 1 : 2;
}

std::string Widened(std::string_view text) {
    std::string bytes;
    for (const char unit : text) bytes += {unit, '\0'};
    return bytes;
}

class FileLineTest : public test::FileTest {
protected:
    // One line as "result:text".
    static std::string ReadLine(CT_File& file, Kind kind) {
        CT_CString narrow;
        CT_UString wide;
        unsigned int result = 0;
        if (kind == kNarrow) result = file.n_ReadLineC(&narrow, nullptr);
        if (kind == kWide) result = file.n_ReadLineU(&wide, nullptr);
        if (kind == kNarrowAhead) result = file.n_ReadLineCSequential(&narrow, nullptr);
        if (kind == kWideAhead) result = file.n_ReadLineUSequential(&wide, nullptr);
        return std::to_string(result) + ":" + narrow.qccz_Get() + test::Utf8(wide.qcuz_Get());
    }
    // All lines, up to the one whose result is 0.
    std::string ReadAll(Kind kind, std::string_view bytes) {
        const auto file = Opened(bytes, 1);
        std::string line, all;
        do {
            all += (line = ReadLine(*file, kind)) + "|";
        } while (!line.starts_with("0:"));
        return all;
    }
};

TEST_F(FileLineTest, LinesAndResultsOfAllReaders) {
    struct Case {
        Kind kind;
        std::string bytes, lines, lines_ahead;
    };
    const std::string mark = "\xFF\xFE", line = Widened("A\n");
    const Case cases[] = {
        {kNarrow, "ab\r\ncd", "3:ab|2:cd|0:|", "3:ab|0:cd|"},
        {kNarrow, "", "0:|", "0:|"},
        {kNarrow, "\n\r\n\n", "1:|1:|1:|0:|", "1:|1:|1:|0:|"},
        {kNarrow, "a\rb\n", "4:a\rb|0:|", "4:a\rb|0:|"},
        {kNarrow, "a\r\r\n", "3:a\r|0:|", "3:a\r|0:|"},
        {kNarrow, "ab\r", "2:ab|0:|", "0:ab|"},
        {kWide, mark + line, "4:A|0:|", "4:A|0:|"},
        {kWide, line + mark + line, "4:A|6:\uFEFFA|0:|", "4:A|6:\uFEFFA|0:|"},
        {kWide, mark, "0:|", "0:|"},
        {kWide, line + "B", "4:A|0:|", "4:A|0:|"},
        {kWide, line + Widened("B") + "C", "4:A|2:B|0:|", "4:A|0:B|"},
    };
    for (const auto& [kind, bytes, lines, lines_ahead] : cases) {
        EXPECT_EQ(ReadAll(kind, bytes), lines);
        EXPECT_EQ(ReadAll(kind == kNarrow ? kNarrowAhead : kWideAhead, bytes), lines_ahead);
    }
}

// The rules said slowly: a carriage return is left out in front of a line feed, and at the end of a
// block (counted from the line's beginning, or read ahead from the file's) or of the file.
std::string SlowLines(Kind kind, const std::string& text) {
    const bool ahead = kind >= kNarrowAhead;
    std::string all, line;
    std::size_t begin = 0;
    const auto finish = [&](std::size_t result) {
        all += std::to_string(result * Unit(kind)) + ":" + line + "|";
        line.clear();
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t from_block = ahead ? (i + 1) % 4096 : (i + 1 - begin) % 256;
        if (text[i] == '\n') {
            finish(line.size() + 1);
            begin = i + 1;
        } else if (text[i] != '\r' ||
                   (from_block != 0 && i + 1 < text.size() && text[i + 1] != '\n')) {
            line += text[i];
        }
    }
    if (!ahead && !line.empty()) finish(line.size());
    finish(0);
    return all;
}

TEST_F(FileLineTest, AgreesWithTheSlowReaderAroundBlocksAndOnRandomText) {
    std::vector<std::string> texts;
    for (const std::size_t block : {256u, 4096u, 8192u}) {
        for (std::size_t length = block - 3; length <= block + 1; ++length) {
            const std::string line(length, 'x');
            texts.push_back(line + "\r\ny\r\n" + line + "\r\n" + line);
        }
    }
    std::mt19937 random(2026);
    for (int round = 0; round < 30; ++round) {
        std::string& text = texts.emplace_back();
        for (const std::size_t length = random() % 12000; text.size() < length;) {
            text.append(random() % 300, 'x');
            for (unsigned int ends = random() % 4; ends > 0; --ends) text += "\r\n"[random() % 2];
        }
    }
    for (const std::string& text : texts) {
        for (const Kind kind : {kNarrow, kWide, kNarrowAhead, kWideAhead}) {
            const std::string bytes = Unit(kind) == 1 ? text : Widened(text);
            ASSERT_EQ(ReadAll(kind, bytes), SlowLines(kind, text)) << kind;
        }
    }
}

TEST_F(FileLineTest, OffsetStandsBehindTheLineOrTheBlockAndStrippingComesLast) {
    const auto file = Opened("ab\ncd\n -ef- \n", 1);
    EXPECT_EQ(ReadLine(*file, kNarrow), "3:ab");
    EXPECT_EQ(file->vn_GetOffset(), 3u);
    EXPECT_EQ(ReadLine(*file, kNarrowAhead), "3:cd");
    EXPECT_EQ(file->vn_GetOffset(), 13u);
    Seek(*file, 0, 3);
    file->v_CreateMap(0);  // lines come over a view too, whose transfers leave the file pointer
    EXPECT_EQ(ReadLine(*file, kNarrow), "3:cd");
    const CT_CString set(" -", CT_CString::kToEnd, 0);
    CT_CString line;
    EXPECT_EQ(file->n_ReadLineC(&line, &set), 7u);
    EXPECT_STREQ(line.qccz_Get(), "ef");
    EXPECT_EQ(ReadLine(*file, kNarrow), "0:");
    EXPECT_EQ(ReadLine(*file, kNarrowAhead),
              "0:");  // the block is another by now: nothing is thrown
}

// Short reads cut units in two and lost a carriage return each; looking for the mark took two
// bytes.
TEST_F(FileLineTest, LinesComeOverAPipeInPiecesOfAnySize) {
    ASSERT_EQ(mkfifo(folder_.Native(u"file").c_str(), 0600), 0);
    const std::string text = "a\rb\r\n" + std::string(5000, 'x') + "\r\n" + "\r\nlast\n";
    const std::string expected = "4:a\rb|5001:" + std::string(5000, 'x') + "|1:|5:last|0:|";
    for (const std::string& mark : {std::string(), std::string("\xFF\xFE")}) {
        for (const Kind kind : {kNarrowAhead, kWideAhead}) {
            const std::string bytes = kind == kNarrowAhead ? text : mark + Widened(text);
            std::thread writer([&] {
                std::ofstream pipe(folder_.Native(u"file"), std::ios::binary);
                for (std::size_t at = 0; at < bytes.size(); at += 777) {
                    pipe.write(bytes.data() + at,
                               static_cast<std::streamsize>(
                                   std::min<std::size_t>(777, bytes.size() - at)));
                    pipe.flush();
                }
            });
            CT_WinFile file(&name_, 0);
            Open(file, 1, 1);
            std::string line, all;
            do {
                line = ReadLine(file, kind);
                const auto colon = line.find(':');
                const unsigned long result = std::stoul(line) / Unit(kind);
                all += std::to_string(result) + line.substr(colon) + "|";
            } while (!line.starts_with("0:"));
            writer.join();
            EXPECT_TRUE(all == expected) << kind << all.substr(0, 40);
        }
    }
}

TEST_F(FileLineTest, FailingCallsEndTheReading) {
    const std::string text = std::string(600, 'x') + "\r\nsecond\nthird";
    for (const Kind kind : {kNarrow, kWide, kNarrowAhead, kWideAhead}) {
        for (const auto call : {platform::FileCall::kRead, platform::FileCall::kSeek}) {
            bool struck = true;
            for (std::uint32_t after = 0; struck; ++after) {
                const auto file = Opened(Unit(kind) == 1 ? text : Widened(text), 1);
                platform::FailFileCall(call, after, 30);
                const std::string line = ReadLine(*file, kind);
                struck = platform::ClearFileFaults(call) > after;
                EXPECT_EQ(line.starts_with("0:"), struck) << kind << " " << after;
                EXPECT_TRUE(struck ? test::TakeError(30, {}, "File/WinFile.cpp") : test::NoError());
            }
        }
    }
}

TEST_F(FileLineTest, TestsTheBeginningForUtf16) {
    const std::pair<std::string, unsigned int> cases[] = {
        {Widened("plain words"), 1}, {"\xFF\xFE" + Widened("a"), 1}, {"\xFF\xFE!", 0}, {"", 0}};
    for (const auto& [bytes, reads] : cases) {
        const auto file = Opened(bytes, 1);
        platform::FailFileCall(platform::FileCall::kRead, 0, 0, true);  // counts them
        EXPECT_EQ(file->b_IsUnicode(), reads == 1) << ::testing::PrintToString(bytes);
        EXPECT_EQ(platform::ClearFileFaults(platform::FileCall::kRead), reads);
        EXPECT_EQ(file->b_IsLikelyUnicode(), reads == 1);
        EXPECT_EQ(file->vn_GetOffset(), 0u);
    }
    EXPECT_FALSE(Opened("plain words!", 1)->b_IsUnicode());
}

TEST_F(FileLineTest, WritesLinesAndLineEnds) {
    const auto file = Opened("", 2);
    std::string expected = "\r\n";
    file->v_WriteLineC(nullptr, TRUE);
    for (const std::size_t length : {0u, 254u, 255u, 1000u}) {
        const std::string text(length, 'x');
        const CT_CString narrow(text.c_str(), CT_CString::kToEnd, 1252);
        const CT_UString wide(test::Utf16(text).c_str());
        file->v_WriteLineC(&narrow, TRUE);
        file->v_WriteLineC(&narrow, FALSE);
        file->v_WriteLineU(&wide, TRUE);
        expected += text + "\r\n" + text + Widened(text + "\r\n");
    }
    EXPECT_EQ(Get(u"file"), expected);
}

}  // namespace
