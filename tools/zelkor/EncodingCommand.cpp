// zelkor encoding: what the first bytes of files say about their encoding.
#include <Foundation/Core/File/WinFile.h>
#include <Foundation/Core/Language/Codepage.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "Console.h"
#include "Encodings.h"

namespace zelkor {

namespace {

// The byte-order mark of a file that can be read, or null.
const char* MarkOf(const CT_UString& path) {
    CT_WinFile file(&path, 16384);
    file.vv_Open(CT_File::kReadAccess, CT_File::kOpenExisting, CT_File::kShareRead,
                 CT_File::kAttributeNormal, 0);
    ThrowRecordedError();
    unsigned char bytes[3] = {};
    const unsigned int count = file.vn_Read(bytes, sizeof bytes);
    ThrowRecordedError();
    if (count >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) return "UTF-8";
    if (count >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) return "UTF-16, little-endian";
    if (count >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF) return "UTF-16, big-endian";
    return nullptr;
}

void Run(const std::vector<std::string>& files) {
    bool failed = false;
    for (const std::string& name : files) {
        const CT_UString path = FromUtf8(name);
        try {
            const char* mark = MarkOf(path);
            const CT_Codepage guess = CT_Codepage::sco_GuessEncoding(&path);
            const bool unknown = guess.eo_Get() == CT_Codepage::kSystemAnsi;
            std::printf("%s\t%s%s\t%s\n", name.c_str(), unknown ? "system's 8-bit page: " : "",
                        Describe(guess).c_str(), mark == nullptr ? "no byte-order mark" : mark);
        } catch (const Failure& failure) {
            std::fflush(stdout);
            std::fprintf(stderr, "zelkor: %s\n", failure.what());
            failed = true;
        }
    }
    if (failed) throw Failure("not every file could be read");
}

}  // namespace

void AddEncodingCommand(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "encoding", "Tell the encoding that the first bytes of files suggest, and their mark.");
    auto files = std::make_shared<std::vector<std::string>>();
    command->add_option("FILE", *files, "Files to look at")->required();
    command->callback([files] { Run(*files); });
}

}  // namespace zelkor
