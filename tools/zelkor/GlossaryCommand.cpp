// zelkor glossary: builds glossaries out of tables of words, searches and shows them.
#include <Foundation/Core/Error/ErrorManager.h>
#include <Foundation/Core/File/FileSystem.h>
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
#include "Losses.h"
#include "OutputFile.h"
#include "Surrogates.h"
#include "TemporaryFile.h"
#include "TextInput.h"

namespace zelkor::cli {

namespace {

constexpr unsigned int kNoGlossary = 31050;

struct BuildOptions {
    std::string output;
    std::vector<std::string> inputs;
    std::string from;
    bool comments = false;
    bool force = false;
    bool lossy = false;
};

// The texts of a line's first two columns.
struct Pair {
    std::u16string source, target;
};

// Null when the line holds a pair, else what is wrong with it.
const char* Split(const LineInput::Line& line, Pair& pair) {
    if (line.too_long) return "longer than a million characters";
    const std::size_t tab = line.text.find(u'\t');
    if (tab == std::u16string_view::npos) return "no tab between two words";
    pair.source = line.text.substr(0, tab);
    pair.target = line.text.substr(tab + 1, line.text.find(u'\t', tab + 1) - tab - 1);
    if (pair.source.empty() || pair.target.empty()) return "one of the words is empty";
    // Marks inside the packed lists; the line has neither 10 nor 13.
    const std::u16string_view marks(u"\0\x19\x1A", 3);
    if (pair.source.find_first_of(marks) != marks.npos ||
        pair.target.find_first_of(marks) != marks.npos) {
        return "a control character";
    }
    return nullptr;
}

bool IsThere(const CT_BiLingualUWordList& list, const Pair& pair) {
    const char16_t* const target = list.qcuz_FindSource(pair.source.c_str());
    return target != nullptr && pair.target == target;
}

// Adds a file's pairs and answers how many of them were there already.
unsigned int ReadInput(CT_BiLingualUWordList& list, const std::string& name,
                       const BuildOptions& options, Losses& losses) {
    TextInput input(name, {.named = options.from}, losses);
    LineInput lines(input);
    Pair pair;
    unsigned int repeated = 0;
    for (LineInput::Line line; lines.Next(line);) {
        const bool is_comment = options.comments && line.text.starts_with(u'#');
        if ((line.text.empty() && !line.too_long) || is_comment) continue;
        if (const char* const fault = Split(line, pair); fault != nullptr) {
            losses.Add([&] {
                return input.name() + ":" + std::to_string(line.number) + ": not added, " + fault;
            });
        } else if (IsThere(list, pair)) {
            ++repeated;
        } else {
            list.v_Insert(pair.source.c_str(), pair.target.c_str());
        }
    }
    return repeated;
}

// Keeps a slip in the order of the names from replacing a table of words, or any other file.
void MayReplace(const std::string& name) {
    const CT_UString path = FileName(name);
    if (CT_FileSystem::sb_IsExistent(&path) == FALSE) return;
    CT_BiLingualUWordList list;
    CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
    const bool glossary = CT_GlossaryFile::sb_Load(&list, path.qcuz_Get()) != FALSE ||
                          errors.n_GetErrorCode() != kNoGlossary;
    errors.v_ClearError();
    if (!glossary) {
        throw Failure(Printable(name) + ": is there and is no glossary; --force replaces it", 2);
    }
}

void Build(const BuildOptions& options) {
    OutputFile output(options.output);
    if (!options.force && !output.is_direct()) MayReplace(options.output);
    CT_BiLingualUWordList list(TRUE);
    Losses losses(options.lossy);
    unsigned int repeated = 0;
    for (const std::string& input : options.inputs) {
        repeated += ReadInput(list, input, options, losses);
    }
    losses.Settle(output);
    CT_GlossaryFile::sb_Save(&list, output.Staged().qcuz_Get());
    ThrowRecordedError();
    output.Finish();
    std::FILE* const console = output.is_standard_output() ? stderr : stdout;
    std::fprintf(console, "%s: %s", output.name().c_str(),
                 Counted(list.n_GetCount(), "pair", "pairs").c_str());
    if (repeated != 0) std::fprintf(console, "; %s repeated", Grouped(repeated).c_str());
    std::fputc('\n', console);
}

CT_BiLingualUWordList Load(const std::string& name) {
    const SeekableFile file(name);
    CT_BiLingualUWordList list;
    if (CT_GlossaryFile::sb_Load(&list, file.path().qcuz_Get()) == FALSE) {
        CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
        if (errors.n_GetErrorCode() != kNoGlossary) ThrowRecordedError();
        errors.v_ClearError();
        throw Failure(file.name() + ": not a glossary");
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
    for (const std::string& word : words) texts.emplace_back(FromArgument(word).qcuz_Get());
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
    Progress progress(Printable(name), list.n_GetCount());
    const char16_t* source = nullptr;
    const char16_t* target = nullptr;
    unsigned int count = 0;
    unsigned int replaced = 0;
    const auto is_text = [](std::u16string_view word) { return FindUnpaired(word) == word.size(); };
    for (CT_BiUWordListIterator pairs(&list); pairs.b_Next() != FALSE;) {
        pairs.v_Get(&source, &target);
        std::printf("%s\t%s\n", Utf8(source).c_str(), Utf8(target).c_str());
        if (!is_text(source) || !is_text(target)) ++replaced;
        if ((++count & 0xFFF) == 0) progress.Advance(count);
    }
    if (replaced != 0) {
        throw Failure(Counted(replaced, "pair has", "pairs have") +
                      " halves of surrogate pairs, shown as U+FFFD");
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
    command->add_option("OUT", options->output, "Glossary to write; - is the standard output")
        ->required();
    command
        ->add_option("INPUT", options->inputs,
                     "Tables; further columns are passed over; - is the standard input")
        ->required();
    command->add_flag("--comments", options->comments, "Pass over lines that begin with #");
    command->add_flag("--force", options->force, "Replace OUT even if it is no glossary");
    command->add_option("--from", options->from,
                        "Encoding of inputs without a byte-order mark (default: UTF-8)");
    command->add_flag("--lossy", options->lossy,
                      "Put U+FFFD for what does not decode, and pass over lines that are no pairs");
    command->footer(
        "What cannot be kept is told with its line, and OUT is then not written (status 1) unless\n"
        "--lossy is given.");
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
    command->add_option("GLOSSARY", options->name, "Glossary; - is the standard input")->required();
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
    command->add_option("GLOSSARY", *name, "Glossary; - is the standard input")->required();
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

}  // namespace zelkor::cli
