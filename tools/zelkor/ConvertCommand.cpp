// zelkor convert: a text from one encoding to another, line ends and all.
#include <memory>
#include <string>

#include "Commands.h"
#include "Console.h"
#include "Encodings.h"
#include "Losses.h"
#include "OutputFile.h"
#include "TextInput.h"
#include "TextOutput.h"

namespace zelkor::cli {

namespace {

struct ConvertOptions {
    std::string input;
    std::string output = "-";
    std::string from;
    std::string to;
    bool mark = false;
    bool no_mark = false;
    bool lossy = false;
};

void Convert(const ConvertOptions& options) {
    const Encoding to = ParseEncoding(options.to);
    if (!options.from.empty()) static_cast<void>(ParseEncoding(options.from));
    Losses losses(options.lossy);
    TextInput input(options.input, {.named = options.from, .mark_decides = false}, losses);
    OutputFile file(options.output);
    if (input.file().IsOpenAs(file.direct_descriptor())) {
        throw Failure(input.name() + ": is the " + file.name() + " too", 2);
    }
    TextOutput output(file, to, losses, input.name());
    if (options.mark || (!options.no_mark && to.IsUtf16())) output.WriteMark();
    for (auto block = input.Next(); !block.empty(); block = input.Next()) {
        output.Write({block.data(), block.size()});
    }
    output.Finish();
    losses.Settle(file);
    file.Finish();
}

}  // namespace

void AddConvertCommand(CLI::App& app) {
    CLI::App* command =
        app.add_subcommand("convert", "Convert a text file from one encoding to another.");
    command->footer(
        "Text that cannot be kept is told with its line, and OUTPUT is then not written (status "
        "1)\n"
        "unless --lossy is given. OUTPUT is replaced when it is finished; it may be INPUT itself.");
    auto options = std::make_shared<ConvertOptions>();
    command->add_option("--from", options->from,
                        "Encoding of INPUT, a name or a number (default: what its byte-order mark "
                        "says, else UTF-8)");
    command->add_option("--to", options->to, "Encoding of OUTPUT: a name or a number")->required();
    CLI::Option* mark = command->add_flag(
        "--bom", options->mark, "Begin UTF-8 and UTF-16 with a byte-order mark (default: UTF-16)");
    command->add_flag("--no-bom", options->no_mark, "Write no byte-order mark")->excludes(mark);
    command->add_flag("--lossy", options->lossy,
                      "Write replacements (U+FFFD or '?') for what cannot be kept");
    command->add_option("INPUT", options->input, "Text file to read; - is the standard input")
        ->required();
    command->add_option("OUTPUT", options->output,
                        "File to write; - is the standard output (default)");
    command->callback([options] { Convert(*options); });
}

}  // namespace zelkor::cli
