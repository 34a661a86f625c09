// The commands of the command line. Each adds its options to the application and runs when it is
// chosen; a failed run throws Failure.
#ifndef TOOLS_ZELKOR_COMMANDS_H
#define TOOLS_ZELKOR_COMMANDS_H

#include <CLI/App.hpp>

namespace zelkor::cli {

void AddWordListCommand(CLI::App& app);
void AddConvertCommand(CLI::App& app);
void AddCharCommand(CLI::App& app);
void AddEncodingCommand(CLI::App& app);
void AddGlossaryCommand(CLI::App& app);
void AddRecordsCommand(CLI::App& app);
void AddLocaleCommand(CLI::App& app);

}  // namespace zelkor::cli

#endif
