// zelkor glossary: builds glossaries out of tables of words, searches and shows them.
#include <Foundation/Core/Error/ErrorManager.h>
#include <Foundation/Core/File/FileSystem.h>
#include <Foundation/Core/File/Stream.h>
#include <Foundation/Core/File/TextReader.h>
#include <Foundation/Core/File/WinFile.h>
#include <Foundation/Core/SymbolTable/BiLingualWordList.h>
#include <Foundation/Database/Glossary/GlossaryFile.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Commands.h"
#include "Console.h"
#include "Encodings.h"
#include "RecordLines.h"
#include "Records.h"

namespace zelkor {

namespace {

constexpr unsigned int kFileBufferSize = 16384;
constexpr unsigned int kNoGlossary = 31050;
constexpr unsigned int kMostComplaints = 20;

struct BuildOptions {
    std::string output;
    std::vector<std::string> inputs;
    std::string from = "UTF-8";
    bool comments = false;
    bool force = false;
};

// The number with the word for one or for more.
std::string Counted(unsigned int count, const char* one, const char* more) {
    return Grouped(count) + (count == 1 ? one : more);
}

// What became of the lines of the inputs.
struct BuildCounts {
    unsigned int repeated = 0;
    unsigned int refused = 0;
};

// The texts of a line's first two columns.
struct Pair {
    std::u16string source, target;
};

// Null when the line holds a pair, else what is wrong with it.
const char* Split(std::u16string_view line, Pair& pair) {
    const std::size_t tab = line.find(u'\t');
    if (tab == std::u16string_view::npos) return "no tab between two words";
    pair.source = line.substr(0, tab);
    pair.target = line.substr(tab + 1, line.find(u'\t', tab + 1) - tab - 1);
    if (pair.source.empty() || pair.target.empty()) return "one of the words is empty";
    // Marks inside the packed lists; the line has neither 10 nor 13.
    const std::u16string_view marks(u"\0\x0A\x0D\x19\x1A", 5);
    if (line.find_first_of(marks) != std::u16string_view::npos) return "a control character";
    return nullptr;
}

bool IsThere(const CT_BiLingualUWordList& list, const Pair& pair) {
    const char16_t* const target = list.qcuz_FindSource(pair.source.c_str());
    return target != nullptr && pair.target == target;
}

void ReadLines(CT_BiLingualUWordList& list, CT_Stream& stream, const std::string& name,
               const BuildOptions& options, BuildCounts& counts) {
    const CT_Codepage encoding = ParseEncoding(options.from);
    if (encoding.eo_Get() == CT_Codepage::kUtf16BigEndian) {
        throw Failure(options.from + " is not read here; zelkor convert makes UTF-8 of it", 2);
    }
    CT_StreamTextReader reader(&stream, encoding, TRUE);
    ThrowRecordedError();
    const unsigned int size = stream.n_GetSize();
    Progress progress(name, size);
    CT_UString line;
    Pair pair;
    for (unsigned int number = 1; reader.b_ReadLine(line) != FALSE; ++number) {
        if ((number & 0xFFF) == 0) progress.Advance(stream.n_GetOffset());
        const std::u16string_view text(line.qcuz_Get(), line.n_GetLength());
        // The reader puts this in the place of what it cannot decode.
        if (text.find(u'\xFFFD') != std::u16string_view::npos) {
            throw Failure(name + ":" + std::to_string(number) + ": not valid " + options.from +
                          "; --from names another encoding");
        }
        if (text.empty() || (options.comments && text[0] == u'#')) continue;
        if (const char* const fault = Split(text, pair); fault != nullptr) {
            if (++counts.refused <= kMostComplaints) {
                std::fprintf(stderr, "zelkor: %s:%u: not added, %s\n", name.c_str(), number, fault);
            } else if (counts.refused == kMostComplaints + 1) {
                std::fputs("zelkor: ... further lines are counted only\n", stderr);
            }
        } else if (IsThere(list, pair)) {
            ++counts.repeated;
        } else {
            list.v_Insert(pair.source.c_str(), pair.target.c_str());
        }
    }
    if (reader.n_GetErrors() != 0 || stream.n_GetOffset() < size) {
        throw Failure(name + ": the text is not valid " + options.from);
    }
}

void ReadInput(CT_BiLingualUWordList& list, const std::string& name, const BuildOptions& options,
               BuildCounts& counts) {
    if (name == "-") {
        CT_Buffer bytes = ToBuffer(ReadAll(name));
        CT_BufferStream stream(&bytes);
        return ReadLines(list, stream, name, options, counts);
    }
    const CT_UString path = FromUtf8(name);
    CT_WinFile file(&path, kFileBufferSize);
    CT_FileStream stream(&file);
    ReadLines(list, stream, name, options, counts);
}

// Keeps a slip in the order of the names from replacing a table of words, or any other file.
void MayReplace(const std::string& name) {
    const CT_UString path = FromUtf8(name);
    if (CT_FileSystem::sb_IsExistent(&path) == FALSE) return;
    CT_BiLingualUWordList list;
    CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
    const bool glossary = CT_GlossaryFile::sb_Load(&list, path.qcuz_Get()) != FALSE ||
                          errors.n_GetErrorCode() != kNoGlossary;
    errors.v_ClearError();
    if (!glossary) throw Failure(name + ": is there and is no glossary; --force replaces it", 2);
}

void Build(const BuildOptions& options) {
    if (!options.force) MayReplace(options.output);
    CT_BiLingualUWordList list(TRUE);
    BuildCounts counts;
    for (const std::string& input : options.inputs) ReadInput(list, input, options, counts);
    const std::string refused =
        Counted(counts.refused, " line is no pair of words", " lines are no pairs of words");
    if (list.n_GetCount() == 0 && counts.refused != 0) {
        throw Failure(refused + "; " + options.output + " is not written");
    }
    CT_GlossaryFile::sb_Save(&list, FromUtf8(options.output).qcuz_Get());
    ThrowRecordedError();
    std::printf("%s: %s", options.output.c_str(),
                Counted(list.n_GetCount(), " pair", " pairs").c_str());
    if (counts.repeated != 0) std::printf("; %s repeated", Grouped(counts.repeated).c_str());
    std::putchar('\n');
    if (counts.refused != 0) throw Failure(refused);
}

CT_BiLingualUWordList Load(const std::string& name) {
    CT_BiLingualUWordList list;
    if (CT_GlossaryFile::sb_Load(&list, FromUtf8(name).qcuz_Get()) == FALSE) {
        CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
        if (errors.n_GetErrorCode() != kNoGlossary) ThrowRecordedError();
        errors.v_ClearError();
        throw Failure(name + ": not a glossary");
    }
    return list;
}

std::string Utf8(const char16_t* word) {
    return ToUtf8(CT_UString(word));
}

enum class Side { kBoth, kSource, kTarget };

using Translations = std::vector<std::u16string>;

// The translations of each word, each once, in the order of their pairs; none when the word is not
// there. The packed lists know the first ones; all of them take one walk over the pairs.
std::map<std::u16string, Translations, std::less<>> Translate(
    const CT_BiLingualUWordList& list, const std::vector<std::u16string>& words, Side side,
    bool all) {
    std::map<std::u16string, Translations, std::less<>> found;
    const auto add = [](Translations& translations, const char16_t* word) {
        if (word != nullptr && std::ranges::find(translations, word) == translations.end()) {
            translations.emplace_back(word);
        }
    };
    for (const std::u16string& word : words) {
        Translations& first = found[word];
        if (all) continue;
        if (side != Side::kTarget) add(first, list.qcuz_FindSource(word.c_str()));
        if (side != Side::kSource) add(first, list.qcuz_FindTarget(word.c_str()));
    }
    const auto collect = [&](const char16_t* word, const char16_t* translation) {
        const auto entry = found.find(std::u16string_view(word));
        if (entry != found.end()) add(entry->second, translation);
    };
    const char16_t* source = nullptr;
    const char16_t* target = nullptr;
    for (CT_BiUWordListIterator pairs(&list); all && pairs.b_Next() != FALSE;) {
        pairs.v_Get(&source, &target);
        if (side != Side::kTarget) collect(source, target);
        if (side != Side::kSource) collect(target, source);
    }
    return found;
}

void Find(const std::string& name, const std::vector<std::string>& words, Side side, bool all) {
    const CT_BiLingualUWordList list = Load(name);
    std::vector<std::u16string> texts;
    for (const std::string& word : words) texts.emplace_back(FromUtf8(word).qcuz_Get());
    const auto found = Translate(list, texts, side, all);
    bool missing = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const Translations& translations = found.at(texts[i]);
        for (const std::u16string& each : translations) {
            std::printf("%s\t%s\n", words[i].c_str(), Utf8(each.c_str()).c_str());
        }
        if (translations.empty()) std::printf("%s\t-\n", words[i].c_str());
        missing = missing || translations.empty();
    }
    if (missing) throw Failure("");
}

void List(const std::string& name) {
    const CT_BiLingualUWordList list = Load(name);
    Progress progress(name, list.n_GetCount());
    const char16_t* source = nullptr;
    const char16_t* target = nullptr;
    unsigned int count = 0;
    for (CT_BiUWordListIterator pairs(&list); pairs.b_Next() != FALSE;) {
        pairs.v_Get(&source, &target);
        std::printf("%s\t%s\n", Utf8(source).c_str(), Utf8(target).c_str());
        if ((++count & 0xFFF) == 0) progress.Advance(count);
    }
}

void Info(const std::string& name) {
    const CT_BiLingualUWordList list = Load(name);
    const CT_CompList& sources = *list.pcco_GetSourceIndex();
    const CT_CompList& targets = *list.pcco_GetTargetIndex();
    std::printf("pairs           %s\n", Grouped(list.n_GetCount()).c_str());
    std::printf("source words    %s\n", Grouped(sources.n_GetNrOfEntries()).c_str());
    std::printf("target words    %s\n", Grouped(targets.n_GetNrOfEntries()).c_str());
    std::printf("bytes of words  %s\n",
                Grouped(std::uint64_t{list.pcco_GetSourceBuffer()->n_GetUsedSize()} +
                        list.pcco_GetTargetBuffer()->n_GetUsedSize())
                    .c_str());
    std::printf("bytes of index  %s\n",
                Grouped(std::uint64_t{sources.n_GetEnd()} + targets.n_GetEnd()).c_str());
    std::printf("offsets         %s\n", sources.b_HasLongOffsetSupport() != FALSE
                                            ? "4 bytes"
                                            : "2 bytes (--first may not find some words)");
}

void AddBuild(CLI::App& parent) {
    CLI::App* command = parent.add_subcommand(
        "build",
        "Make a glossary of tables of words: a word, a tab and its translation in a line.");
    auto options = std::make_shared<BuildOptions>();
    command->add_option("OUT", options->output, "Glossary to write")->required();
    command
        ->add_option("INPUT", options->inputs,
                     "Tables; further columns are passed over; - is the standard input")
        ->required();
    command->add_flag("--comments", options->comments, "Pass over lines that begin with #");
    command->add_flag("--force", options->force, "Replace OUT even if it is no glossary");
    command->add_option("--from", options->from,
                        "Encoding of inputs without a byte-order mark (default: UTF-8)");
    command->callback([options] { Build(*options); });
}

void AddFind(CLI::App& parent) {
    CLI::App* command = parent.add_subcommand(
        "find",
        "Print WORD<TAB>TRANSLATION, a line for each, in either direction; WORD<TAB>- and status 1 "
        "if any is missing.");
    struct Options {
        std::string name;
        std::vector<std::string> words;
        bool source = false, target = false, first = false;
    };
    auto options = std::make_shared<Options>();
    command->add_option("GLOSSARY", options->name, "Glossary")->required();
    command->add_option("WORD", options->words, "Words to look up")->required();
    CLI::Option* source =
        command->add_flag("--source", options->source, "Among the words of the first column only");
    command->add_flag("--target", options->target, "Among the words of the second column only")
        ->excludes(source);
    command->add_flag("--first", options->first, "Only the first translation of each word");
    command->callback([options] {
        const Side side = options->source   ? Side::kSource
                          : options->target ? Side::kTarget
                                            : Side::kBoth;
        Find(options->name, options->words, side, !options->first);
    });
}

void AddShow(CLI::App& parent, const char* verb, const char* text,
             void (*run)(const std::string&)) {
    CLI::App* command = parent.add_subcommand(verb, text);
    auto name = std::make_shared<std::string>();
    command->add_option("GLOSSARY", *name, "Glossary")->required();
    command->callback([name, run] { run(*name); });
}

}  // namespace

void AddGlossaryCommand(CLI::App& app) {
    CLI::App* command =
        app.add_subcommand("glossary", "Build, search and show glossaries of two languages.");
    command->require_subcommand(1);
    AddBuild(*command);
    AddFind(*command);
    AddShow(*command, "list", "Print every pair, SOURCE<TAB>TARGET, in UTF-8.", List);
    AddShow(*command, "info", "Print the numbers of pairs and words, and sizes.", Info);
}

}  // namespace zelkor
