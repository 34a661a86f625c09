// zelkor wordlist: builds packed word lists out of text files, searches and shows them.
#include <Foundation/Core/Buffer/Buffer.h>
#include <Foundation/Core/CompList/CompList.h>
#include <Foundation/Core/CompList/CompListIterator.h>
#include <Foundation/Core/String/CString.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "Console.h"
#include "Encodings.h"
#include "InputFile.h"
#include "Losses.h"
#include "OutputFile.h"
#include "Surrogates.h"
#include "TextInput.h"

namespace zelkor::cli {

namespace {

constexpr unsigned int kWestern = 1252;
constexpr std::size_t kLargestImage = 0xFFFFFFF0;

struct BuildOptions {
    std::vector<std::string> inputs;
    std::string output;
    std::string from;
    bool comments = false;
    bool narrow = false;
    bool short_offsets = false;
    bool lossy = false;
    bool force = false;
};

std::u16string_view UnitsOf(const CT_UString& text) {
    return {text.qcuz_Get(), text.n_GetLength()};
}

bool IsNarrow(const CT_CompList& list) {
    return list.n_GetElementSize() == CT_CompList::kOneByte;
}

// The words that went into a list.
struct BuildCounts {
    unsigned int added = 0;
    unsigned int repeated = 0;
};

template <typename Unit>
const char* Insert(CT_CompList& list, std::basic_string_view<Unit> key, BuildCounts& counts) {
    constexpr Unit kMarks[] = {0, 10, 13, 25, 26};
    const std::basic_string_view<Unit> marks(kMarks, std::size(kMarks));
    if (key.find_first_of(marks) != key.npos) return "a control character in it";
    if (list.b_Add(key.data(), counts.added + 1) != FALSE) {
        ++counts.added;
    } else if (list.b_Search(key.data()) != FALSE) {
        ++counts.repeated;
    } else {
        return list.b_HasLongOffsetSupport() != FALSE ? "the list is full"
                                                      : "the list is full for short offsets";
    }
    return nullptr;
}

// Adds one word, encoded for the list. Null, or why it is not in the list.
const char* AddWord(CT_CompList& list, const LineInput::Line& line, BuildCounts& counts) {
    if (line.too_long) return "longer than a million characters";
    if (!IsNarrow(list)) return Insert(list, line.text, counts);
    std::string bytes;
    if (!EncodeExactly(list.n_GetCodePage(), line.text, bytes)) {
        return "a character that the list's code page lacks";
    }
    return Insert(list, std::string_view(bytes), counts);
}

void ReadInput(CT_CompList& list, const std::string& name, const BuildOptions& options,
               BuildCounts& counts, Losses& losses) {
    TextInput input(name, {.named = options.from}, losses);
    LineInput lines(input);
    for (LineInput::Line line; lines.Next(line);) {
        const bool is_comment = options.comments && line.text.starts_with(u'#');
        if ((line.text.empty() && !line.too_long) || is_comment) continue;
        if (const char* const reason = AddWord(list, line, counts); reason != nullptr) {
            losses.Add([&] {
                constexpr std::size_t kShown = 40;
                const auto shown = line.text.substr(0, kShown);
                return input.name() + ":" + std::to_string(line.number) + ": not added, " + reason +
                       ": " +
                       Printable(ToUtf8(
                           CT_UString(shown.data(), static_cast<unsigned int>(shown.size()))));
            });
        }
    }
}

// Keeps a slip from replacing the words themselves, or any other file that is no word list.
void MayReplace(const std::string& name) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(name, error) ||
        std::filesystem::file_size(name, error) == 0) {
        return;
    }
    char stamp[4] = {};
    const std::string_view read(stamp, InputFile(name).Read(stamp, sizeof stamp));
    if (read == "\x35\xB8\x30\x01" || read == "\x01\x30\xB8\x35") return;
    throw Failure(Printable(name) + ": is there and is no word list; --force replaces it", 2);
}

void Build(const BuildOptions& options) {
    Encoding from;
    if (!options.from.empty()) from = ParseEncoding(options.from);
    // A narrow list keeps its words in the page they come in; Unicode and iso-8859-1 become
    // windows-1252.
    const bool western = from.IsUnicode() || from.page == kLatin1;
    const unsigned int page = !options.narrow ? kUtf16Little : western ? kWestern : from.page;
    CT_CompList list(options.narrow ? CT_CompList::kOneByte : CT_CompList::kTwoBytes, 4, FALSE,
                     options.short_offsets ? FALSE : TRUE, 128, page);
    OutputFile output(options.output);
    if (!options.force && !output.is_direct()) MayReplace(options.output);
    Losses losses(options.lossy);
    BuildCounts counts;
    for (const std::string& input : options.inputs) {
        ReadInput(list, input, options, counts, losses);
    }
    losses.Settle(output);
    output.Write({static_cast<const char*>(list.pcco_GetBuffer()->qcv_Get()), list.n_GetEnd()});
    output.Finish();
    std::FILE* const console = output.is_standard_output() ? stderr : stdout;
    std::fprintf(console, "%s: %s, %s bytes (%.2f a word)", output.name().c_str(),
                 Counted(counts.added, "word", "words").c_str(), Grouped(list.n_GetEnd()).c_str(),
                 counts.added == 0 ? 0.0 : static_cast<double>(list.n_GetEnd()) / counts.added);
    if (counts.repeated != 0) {
        std::fprintf(console, "; %s repeated", Grouped(counts.repeated).c_str());
    }
    std::fputc('\n', console);
}

// The whole file as a list; anything but an image of a packed list ends the command.
CT_CompList LoadList(const std::string& name) {
    InputFile file(name);
    const std::string bytes = file.ReadAll(kLargestImage);
    const CT_Buffer image(bytes.data(), static_cast<unsigned int>(bytes.size()), 1);
    CT_CompList list(&image);
    if (list.b_IsSound() == FALSE) {
        throw Failure(file.name() + ": not a packed word list, or a damaged one");
    }
    return list;
}

// The word's handle in the list, kNotFound when it is not there.
unsigned int Search(const CT_CompList& list, const CT_UString& word, unsigned int& matched) {
    matched = 0;
    // The empty word has no entry of its own without support for it.
    if (word.n_GetLength() == 0 && list.b_HasEmptyStringSupport() == FALSE) {
        return CT_CompList::kNotFound;
    }
    if (!IsNarrow(list)) return list.n_Search(&word, &matched);
    std::string bytes;
    if (!EncodeExactly(list.n_GetCodePage(), UnitsOf(word), bytes)) return CT_CompList::kNotFound;
    return list.n_Search(bytes.c_str(), &matched);
}

void Find(const std::string& name, const std::vector<std::string>& words) {
    const CT_CompList list = LoadList(name);
    bool missing = false;
    for (const std::string& word : words) {
        unsigned int matched = 0;
        const unsigned int handle = Search(list, FromArgument(word), matched);
        if (handle != CT_CompList::kNotFound) {
            std::printf("%s\t%u\n", word.c_str(), handle);
        } else {
            std::printf("%s\t-\t%u\n", word.c_str(), matched);
            missing = true;
        }
    }
    if (missing) throw Failure("");
}

// A word of a narrow list in UTF-16; false when some of it is not of the list's code page.
bool DecodeWord(const CT_CompList& list, const CT_CString& bytes, std::u16string& units) {
    return DecodeExactly(list.n_GetCodePage(), {bytes.qccz_Get(), bytes.n_GetLength()}, units);
}

void List(const std::string& name) {
    const CT_CompList list = LoadList(name);
    Progress progress(Printable(name), list.n_GetNrOfEntries());
    unsigned int handle = 0;
    unsigned int count = 0;
    unsigned int replaced = 0;
    const auto print = [&](std::u16string_view word, bool exact) {
        const CT_UString text(word.data(), static_cast<unsigned int>(word.size()));
        std::printf("%s\t%u\n", ToUtf8(text).c_str(), handle);
        if (!exact) ++replaced;
        if ((++count & 0xFFF) == 0) progress.Advance(count);
    };
    if (IsNarrow(list)) {
        CT_CCompListIterator iterator(&list);
        CT_CString word(list.n_GetCodePage());
        std::u16string units;
        while (iterator.b_GetNext(&word, &handle) != FALSE) {
            const bool exact = DecodeWord(list, word, units);
            print(units, exact);
        }
    } else {
        CT_UCompListIterator iterator(&list);
        CT_UString word;
        while (iterator.b_GetNext(&word, &handle) != FALSE) {
            print(UnitsOf(word), FindUnpaired(UnitsOf(word)) == word.n_GetLength());
        }
    }
    if (replaced != 0) {
        throw Failure(Counted(replaced, "word is", "words are") +
                      " no text of the list's code page, shown with U+FFFD in places");
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
    command
        ->add_option("INPUT", options->inputs,
                     "Text files, one word a line; - is the standard input")
        ->required();
    command->add_option(
        "-o,--output", options->output,
        "File to write, - the standard output (default: the first input's name with .list, in this "
        "folder)");
    command->add_flag("--comments", options->comments, "Pass over lines that begin with #");
    CLI::Option* narrow = command->add_flag("--narrow", options->narrow,
                                            "One byte a character, in an 8-bit code page");
    auto wide = std::make_shared<bool>(true);
    command->add_flag("--wide", *wide, "Two bytes a character, UTF-16 (default)")->excludes(narrow);
    command->add_flag("--short-offsets", options->short_offsets,
                      "2-byte offsets: smaller, for lists of up to about 64 KiB");
    command->add_flag("--force", options->force, "Replace a file that is no word list");
    command->add_option("--from", options->from,
                        "Encoding of inputs without a byte-order mark (default: UTF-8)");
    command->add_flag("--lossy", options->lossy,
                      "Put U+FFFD for what does not decode, and pass over lines that cannot be "
                      "words");
    command->footer(
        "What cannot be kept is told with its line, and OUT is then not written (status 1) unless\n"
        "--lossy is given.");
    command->callback([options, wide] {
        if (options->output.empty()) {
            const std::string& first = options->inputs.front();
            if (first == "-") throw Failure("--output is needed for the standard input", 2);
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
    command->add_option("LIST", *name, "Packed word list; - is the standard input")->required();
    command->add_option("WORD", *words, "Words to look up")->required();
    command->callback([name, words] { Find(*name, *words); });
}

void AddShow(CLI::App& parent, const char* verb, const char* text,
             void (*run)(const std::string&)) {
    CLI::App* command = parent.add_subcommand(verb, text);
    auto name = std::make_shared<std::string>();
    command->add_option("LIST", *name, "Packed word list; - is the standard input")->required();
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

}  // namespace zelkor::cli
