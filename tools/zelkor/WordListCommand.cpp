// zelkor wordlist: builds packed word lists out of text files, searches and shows them.
#include <Foundation/Core/Buffer/Buffer.h>
#include <Foundation/Core/CompList/CompList.h>
#include <Foundation/Core/CompList/CompListIterator.h>
#include <Foundation/Core/Error/ErrorManager.h>
#include <Foundation/Core/File/Stream.h>
#include <Foundation/Core/File/TextReader.h>
#include <Foundation/Core/File/WinFile.h>
#include <Foundation/Core/String/CString.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "Console.h"
#include "Encodings.h"

namespace zelkor {

namespace {

constexpr unsigned int kFileBufferSize = 16384;
constexpr unsigned int kNoHandle = 0xFFFFFFFF;
constexpr unsigned int kStamp = 19970101;
constexpr unsigned int kImageHeader = 132;

struct BuildOptions {
    std::vector<std::string> inputs;
    std::string output;
    std::string from = "UTF-8";
    bool comments = false;
    bool narrow = false;
    bool short_offsets = false;
};

// What became of the lines of the inputs.
struct BuildCounts {
    unsigned int lines = 0;
    unsigned int added = 0;
    unsigned int repeated = 0;
    unsigned int refused = 0;
};

CT_CString Narrow(const CT_UString& word, unsigned int page) {
    return CT_CString(&word, page);
}

// Adds one word, encoded for the list; TRUE when it is in the list afterwards.
bool AddWord(CT_CompList& list, const CT_UString& word, unsigned int handle, BuildCounts& counts) {
    const bool narrow = list.n_GetElementSize() == 1;
    const unsigned int page = list.n_GetCodePage();
    if (narrow && !CT_Codepage(page).b_IsStringSupported(&word)) return ++counts.refused, false;
    const CT_CString bytes = narrow ? Narrow(word, page) : CT_CString();
    if (narrow ? list.b_Add(&bytes, handle) : list.b_Add(&word, handle))
        return ++counts.added, true;
    const bool present = narrow ? list.b_Search(&bytes, nullptr) : list.b_Search(&word, nullptr);
    ++(present ? counts.repeated : counts.refused);
    return present;
}

void ReadInput(CT_CompList& list, const std::string& name, const BuildOptions& options,
               BuildCounts& counts) {
    const CT_UString path = FromUtf8(name);
    CT_WinFile file(&path, kFileBufferSize);
    CT_FileStream stream(&file);
    CT_StreamTextReader reader(&stream, ParseEncoding(options.from), TRUE);
    ThrowRecordedError();
    const unsigned int size = stream.n_GetSize();
    Progress progress(name, size);
    CT_UString word;
    while (reader.b_ReadLine(word)) {
        if ((++counts.lines & 0xFFF) == 0) progress.Advance(stream.n_GetOffset());
        if (word.n_GetLength() == 0 || (options.comments && word.u_GetAt(0) == u'#')) continue;
        if (!AddWord(list, word, counts.added + 1, counts)) {
            std::fprintf(stderr, "zelkor: %s: not added: %s\n", name.c_str(), ToUtf8(word).c_str());
        }
    }
    if (reader.n_GetErrors() != 0 || stream.n_GetOffset() < size) {
        throw Failure(name + ": the text is not valid " + options.from);
    }
}

void WriteList(const CT_CompList& list, const std::string& name) {
    const CT_UString path = FromUtf8(name);
    CT_WinFile file(&path, kFileBufferSize);
    file.vv_Open(CT_File::kWriteAccess, CT_File::kCreateAlways, CT_File::kShareNone,
                 CT_File::kAttributeNormal, 0);
    ThrowRecordedError();
    const unsigned int written = file.n_Write(list.pcco_GetBuffer(), kNoHandle);
    ThrowRecordedError();
    file.vv_Close();
    ThrowRecordedError();
    if (written != list.n_GetEnd()) throw Failure(name + ": not everything could be written");
}

void Build(const BuildOptions& options) {
    const CT_Codepage from = ParseEncoding(options.from);
    // A narrow list keeps its words in the page they come in; Unicode texts become windows-1252.
    const unsigned int page = !options.narrow ? 1200 : from.b_IsUnicode() ? 1252 : from.n_Get();
    CT_CompList list(options.narrow ? CT_CompList::kOneByte : CT_CompList::kTwoBytes, 4, FALSE,
                     options.short_offsets ? FALSE : TRUE, 128, page);
    BuildCounts counts;
    for (const std::string& input : options.inputs) ReadInput(list, input, options, counts);
    WriteList(list, options.output);
    std::printf("%s: %s words, %s bytes (%.2f a word)", options.output.c_str(),
                Grouped(counts.added).c_str(), Grouped(list.n_GetEnd()).c_str(),
                counts.added == 0 ? 0.0 : static_cast<double>(list.n_GetEnd()) / counts.added);
    if (counts.repeated != 0) std::printf("; %s repeated", Grouped(counts.repeated).c_str());
    std::putchar('\n');
    if (counts.refused != 0) {
        throw Failure(Grouped(counts.refused) +
                      " words do not fit the list (its code page, or short offsets)");
    }
}

// The whole file as a list; anything but an image of a packed list ends the command.
CT_CompList LoadList(const std::string& name) {
    const CT_UString path = FromUtf8(name);
    CT_WinFile file(&path, kFileBufferSize);
    file.vv_Open(CT_File::kReadAccess, CT_File::kOpenExisting, CT_File::kShareRead,
                 CT_File::kAttributeNormal, 0);
    ThrowRecordedError();
    CT_Buffer image;
    file.n_Read(&image, file.vn_GetSize());
    ThrowRecordedError();
    const auto* bytes = static_cast<const unsigned char*>(image.qcv_Get());
    const auto number = [bytes](unsigned int at) {
        return static_cast<unsigned int>(bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16) |
               static_cast<unsigned int>(bytes[at + 3]) << 24;
    };
    if (image.n_GetUsedSize() <= kImageHeader || number(0) != kStamp ||
        number(4) != image.n_GetUsedSize()) {
        throw Failure(name + ": not a packed word list, or a damaged one");
    }
    return CT_CompList(&image);
}

void Find(const std::string& name, const std::vector<std::string>& words) {
    const CT_CompList list = LoadList(name);
    const bool narrow = list.n_GetElementSize() == 1;
    bool missing = false;
    for (const std::string& word : words) {
        const CT_UString text = FromUtf8(word);
        const CT_CString bytes = narrow ? Narrow(text, list.n_GetCodePage()) : CT_CString();
        unsigned int matched = 0;
        const unsigned int handle =
            narrow ? list.n_Search(&bytes, &matched) : list.n_Search(&text, &matched);
        if (handle != kNoHandle) {
            std::printf("%s\t%u\n", word.c_str(), handle);
        } else {
            std::printf("%s\t-\t%u\n", word.c_str(), matched);
            missing = true;
        }
    }
    if (missing) throw Failure("");
}

void List(const std::string& name) {
    const CT_CompList list = LoadList(name);
    Progress progress(name, list.n_GetNrOfEntries());
    unsigned int handle = 0;
    unsigned int count = 0;
    const auto print = [&](const CT_UString& word) {
        std::printf("%s\t%u\n", ToUtf8(word).c_str(), handle);
        if ((++count & 0xFFF) == 0) progress.Advance(count);
    };
    if (list.n_GetElementSize() == 1) {
        CT_CCompListIterator iterator(&list);
        CT_CString word(list.n_GetCodePage());
        while (iterator.b_GetNext(&word, &handle)) {
            word.v_SetCodePage(list.n_GetCodePage());
            print(CT_UString(&word));
        }
    } else {
        CT_UCompListIterator iterator(&list);
        CT_UString word;
        while (iterator.b_GetNext(&word, &handle)) print(word);
    }
}

void Info(const std::string& name) {
    const CT_CompList list = LoadList(name);
    const unsigned int entries = list.n_GetNrOfEntries();
    std::printf("entries         %s\n", Grouped(entries).c_str());
    std::printf("bytes           %s\n", Grouped(list.n_GetEnd()).c_str());
    if (entries != 0) {
        std::printf("bytes a word    %.2f\n", static_cast<double>(list.n_GetEnd()) / entries);
    }
    std::printf("element size    %u\n", static_cast<unsigned int>(list.n_GetElementSize()));
    std::printf("handle size     %u\n", list.n_GetHandleSize());
    std::printf("code page       %u\n", list.n_GetCodePage());
    std::printf("empty string    %s\n", list.b_HasEmptyStringSupport() ? "supported" : "no");
    std::printf("offsets         %s\n", list.b_HasLongOffsetSupport() ? "4 bytes" : "2 bytes");
    std::printf("byte order      %s\n",
                list.b_IsInNetworkByteOrder() ? "network" : "little-endian");
}

void AddBuild(CLI::App& parent) {
    CLI::App* command = parent.add_subcommand(
        "build", "Pack the words of text files, one a line; each word's handle is its number.");
    auto options = std::make_shared<BuildOptions>();
    command->add_option("INPUT", options->inputs, "Text files, one word a line")->required();
    command->add_option(
        "-o,--output", options->output,
        "File to write (default: the first input's name with .list, in this folder)");
    command->add_flag("--comments", options->comments, "Pass over lines that begin with #");
    CLI::Option* narrow = command->add_flag("--narrow", options->narrow,
                                            "One byte a character, in an 8-bit code page");
    auto wide = std::make_shared<bool>(true);
    command->add_flag("--wide", *wide, "Two bytes a character, UTF-16 (default)")->excludes(narrow);
    command->add_flag("--short-offsets", options->short_offsets,
                      "2-byte offsets: smaller, for lists of up to about 64 KiB");
    command->add_option("--from", options->from,
                        "Encoding of inputs without a byte-order mark (default: UTF-8)");
    command->callback([options, wide] {
        if (options->output.empty()) {
            const std::string& first = options->inputs.front();
            options->output = first.substr(first.find_last_of("/\\") + 1) + ".list";
        }
        Build(*options);
    });
}

void AddFind(CLI::App& parent) {
    CLI::App* command = parent.add_subcommand(
        "find",
        "Print WORD<TAB>HANDLE, or WORD<TAB>-<TAB>LENGTH matched; status 1 if any is missing.");
    auto name = std::make_shared<std::string>();
    auto words = std::make_shared<std::vector<std::string>>();
    command->add_option("LIST", *name, "Packed word list")->required();
    command->add_option("WORD", *words, "Words to look up")->required();
    command->callback([name, words] { Find(*name, *words); });
}

void AddShow(CLI::App& parent, const char* verb, const char* text,
             void (*run)(const std::string&)) {
    CLI::App* command = parent.add_subcommand(verb, text);
    auto name = std::make_shared<std::string>();
    command->add_option("LIST", *name, "Packed word list")->required();
    command->callback([name, run] { run(*name); });
}

}  // namespace

void AddWordListCommand(CLI::App& app) {
    CLI::App* command = app.add_subcommand("wordlist", "Build, search and show packed word lists.");
    command->require_subcommand(1);
    AddBuild(*command);
    AddFind(*command);
    AddShow(*command, "list", "Print every word and its handle, WORD<TAB>HANDLE, in UTF-8.", List);
    AddShow(*command, "info", "Print entries, sizes and flags of a list.", Info);
}

}  // namespace zelkor
