// CT_TestOut: files, standard streams, terminal and debugger, labels, missing arguments.
#include "Foundation/Core/TestOut/TestOut.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>
#include <wchar.h>

#include <string>

#include "Foundation/Platform/Files.h"
#include "Support/Dialogs.h"
#include "Support/Errors.h"
#include "Support/Faults.h"
#include "Support/TempFolder.h"

namespace platform = zelkor::platform;

namespace {

// The bytes of a text as UTF-16, little-endian.
std::string Bytes(std::u16string_view text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

std::string Missing(const std::string& item) {
    return "ASSERT failed: " + item + "\nLine 1 in File .\\TestOut\\TestOut.\n";
}

std::string WithoutDigits(std::string text) {
    std::erase_if(text, [](char unit) { return unit >= '0' && unit <= '9'; });
    return text;
}

// Standard output and standard error of a scope; line numbers are not compared.
class Streams {
public:
    Streams() {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
    }
    void Expect(const std::string& output, const std::string& error) {
        EXPECT_EQ(testing::internal::GetCapturedStdout(), output);
        EXPECT_EQ(WithoutDigits(testing::internal::GetCapturedStderr()), WithoutDigits(error));
    }
};

TEST(TestOutTest, TextsGoWhereTheTypeSays) {
    const test::TempFolder folder;
    for (const unsigned int type : {0u, 1u, 2u, 3u}) {
        SCOPED_TRACE(type);
        const test::DebugOutput debugger;
        CT_TestOut out(folder.Name(u"out.txt").c_str(), u"label: ", type);
        out.v_Out(u"%d %s %S\n", 7, u"gr\u00FCn", "narrow");
        const std::string mark("\xFF\xFE");
        std::string file = mark, debug;
        if ((type & 1) != 0) file += Bytes(u"label: 7 gr\u00FCn narrow\n");
        if ((type & 2) != 0) debug += "label: 7 grün narrow\n";
        EXPECT_EQ(folder.Read(u"out.txt"), file);  // while it is open
        EXPECT_EQ(debugger.Whole(), debug);
        out.v_SetLabel(u"");
        out.v_OutputFile(u"file%c", u'!');  // whatever the type
        out.v_DebugOut(u"debugger%c", u'!');
        EXPECT_EQ(folder.Read(u"out.txt"), file + Bytes(u"file!"));
        EXPECT_EQ(debugger.Whole(), debug + "debugger!");
        out.v_SetOutputType(type ^ 1);
        out.v_Out(u"late");
        EXPECT_EQ(folder.Read(u"out.txt"), file + Bytes((type & 1) != 0 ? u"file!" : u"file!late"));
    }
}

TEST(TestOutTest, StandardStreamsAndFilesFollowEachOther) {
    const test::TempFolder folder;
    Streams streams;
    {
        CT_TestOut out;
        EXPECT_EQ(out.quz_GetLabel(), nullptr);
        out.v_Out(u"one,");
        out.v_Set(u"stdout", u">", 1);
        out.v_Set(u"stdout", out.quz_GetLabel(), 1);
        out.v_Open(u"stderr");
        out.v_Out(u"two,");
        out.v_Open(folder.Name(u"none\\out.txt").c_str());
        out.v_Out(u"three,");
        out.v_Open(folder.Name(u"out.txt").c_str());
        out.v_Out(u"four");
        out.v_Open(folder.Name(u"out.txt").c_str());  // emptied
        out.v_Open(nullptr);
        out.v_Out(u"five,");
        setenv("TMPDIR", folder.Native().c_str(), 1);
        out.v_Open(u"bare.txt");  // in the folder for temporary files
        unsetenv("TMPDIR");
        const test::FileFault no_folder(platform::FileCall::kTemporary, 0, 3);
        out.v_Open(u"lost.txt");
        out.v_SetOutputType(0);
        out.v_Set();
        out.v_Out(u"six,");
        out.v_Set(u"stdout", u"label", 0);
        out.v_Out(u"nowhere");
    }
    HANDLE const alone = platform::OpenFile(folder.Name(u"out.txt").c_str(), platform::kAccessRead,
                                            platform::kShareNone, platform::kOpenExisting, 0);
    EXPECT_TRUE(platform::CloseHandle(alone));  // nobody else has it open
    EXPECT_EQ(folder.Read(u"out.txt") + folder.Read(u"bare.txt"), "\xFF\xFE\xFF\xFE");
    streams.Expect(Bytes(u"one,>three,>five,six,"), Bytes(u">two,") + "Could not open " +
                                                        test::Utf8(folder.Name(u"none\\out.txt")) +
                                                        "\nUsing stdout instead.\n"
                                                        "Could not open lost.txt\n"
                                                        "Using stdout instead.\n");
}

TEST(TestOutTest, MissingArgumentsAreToldAndDoNotStop) {
    Streams streams;
    CT_TestOut out(nullptr, u"label", CT_TestOut::kToStream);
    out.v_SetLabel(nullptr);
    EXPECT_EQ(test::Utf8(out.quz_GetLabel()), "label");
    out.v_Close();
    EXPECT_EQ(out.quz_GetLabel(), nullptr);
    out.v_SetOutputType(CT_TestOut::kToDebugger);
    out.v_Out(u"needs no stream");
    out.v_SetOutputType(CT_TestOut::kToStream);
    out.v_Out(u"one,");
    out.v_Close();
    out.v_OutputFile(u"two");
    out.v_Out(nullptr);
    streams.Expect(Bytes(u"one,two"), Missing("qcuz_file") + Missing("qcuz_label") +
                                          Missing("pso_Output") + Missing("pso_Output"));
}

TEST(TestOutTest, LongTextsAreWholeInTheFileAndCutInTheDebugger) {
    const test::TempFolder folder;
    const test::DebugOutput debugger;
    for (const std::size_t length : {2047u, 2048u, 2049u, 100000u}) {
        const std::u16string text(length, u'x');
        CT_TestOut out(folder.Name(u"out.txt").c_str(), nullptr, 3);
        out.v_Out(u"%s", text.c_str());
        EXPECT_EQ(folder.Read(u"out.txt"), Bytes(u'\uFEFF' + text));
        EXPECT_EQ(debugger.pieces.back().size(), 2047u);
        platform::FailAllocation(1, true);  // without memory the file gets the beginning
        out.v_Open(folder.Name(u"out.txt").c_str());
        out.v_Out(u"%s", text.c_str());
        platform::FailAllocation(0);
        EXPECT_EQ(folder.Read(u"out.txt").size(), 2 + 2 * (length <= 2048 ? length : 2047));
    }
    EXPECT_GT(test::FailEachAllocation([] { CT_TestOut(u"stderr", u"label", 0); }), 0u);
}

TEST(TestOutTest, AStreamOfWideCharactersTakesTexts) {
    int pipes[2];
    ASSERT_EQ(pipe(pipes), 0);
    const pid_t child = fork();
    if (child == 0) {
        const std::string end = "/proc/self/fd/" + std::to_string(pipes[1]);
        for (FILE* const stream : {stdout, stderr}) {  // opened anew, for it may have had bytes
            if (freopen(end.c_str(), "w", stream) == nullptr || fwide(stream, 1) <= 0) _exit(1);
        }
        fwprintf(stdout, L"own ");
        CT_TestOut().v_Out(u"out");
        static_cast<void>(platform::ShowMessageBox(u"text", u"box", 0));
        _exit(0);
    }
    close(pipes[1]);
    std::string said;
    char bytes[256];
    for (ssize_t n; (n = read(pipes[0], bytes, sizeof bytes)) > 0;) {
        said.append(bytes, static_cast<std::size_t>(n));
    }
    close(pipes[0]);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(said, "own " + Bytes(u"out") + "box: text\n");
}

TEST(TestOutTest, ATerminalGetsTextThatPeopleCanRead) {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    const int other = open(ptsname(terminal), O_RDWR | O_NOCTTY);
    const int before = dup(STDERR_FILENO);
    dup2(other, STDERR_FILENO);
    CT_TestOut(u"stderr", u"> ", 1).v_Out(u"gr\u00FCn \xD800");
    dup2(before, STDERR_FILENO);
    char said[64] = {};
    EXPECT_GT(read(terminal, said, sizeof said - 1), 0);
    EXPECT_STREQ(said, "> grün ?");
    for (const int file : {terminal, other, before}) close(file);
}

}  // namespace
