// The command line of the library. Exit status: 0 done, 1 the work failed, 2 bad usage.
#include <Foundation/Core/Base/SmartHeap.h>
#include <Foundation/Core/Version/AppVersion.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "Commands.h"
#include "Console.h"

namespace {

void PrintVersion() {
    const CT_AppVersion version;
    std::printf("Zelkor Foundation %s\n%s\n",
                zelkor::cli::ToUtf8(*version.pcco_GetProductVersion()).c_str(),
                zelkor::cli::ToUtf8(*version.pcco_GetProductEdition()).c_str());
}

int Run(int argc, char** argv) {
    CLI::App app("Word lists, text encodings and files, with the Zelkor Foundation library.",
                 "zelkor");
    app.require_subcommand(1);
    app.add_flag_callback(
        "-v,--verbose", [] { zelkor::cli::ShowLocations(true); },
        "Show the source locations that an error passed through");
    app.fallthrough();
    zelkor::cli::AddWordListCommand(app);
    zelkor::cli::AddConvertCommand(app);
    zelkor::cli::AddEncodingCommand(app);
    zelkor::cli::AddCharCommand(app);
    zelkor::cli::AddGlossaryCommand(app);
    zelkor::cli::AddRecordsCommand(app);
    zelkor::cli::AddLocaleCommand(app);
    app.add_subcommand("version", "Print the product version and edition.")->callback(PrintVersion);
    app.footer("Exit status: 0 done, 1 the work failed, 2 bad usage.");
    try {
        app.parse(argc, argv);
        return 0;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const int status = Run(argc, argv);
        if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
        throw zelkor::cli::Failure("the standard output could not be written");
    } catch (const zelkor::cli::Failure& failure) {
        if (*failure.what() != 0) std::fprintf(stderr, "zelkor: %s\n", failure.what());
        return failure.status();
    } catch (const CT_SmartHeapException&) {
        std::fputs("zelkor: out of memory\n", stderr);
        return 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zelkor: %s\n", error.what());
        return 1;
    }
}
