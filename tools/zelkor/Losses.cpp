#include "Losses.h"

#include "Console.h"
#include "OutputFile.h"

namespace zelkor::cli {

void Losses::Tell(const std::string& message) {
    std::fprintf(stderr, "zelkor: %s\n", message.c_str());
}

void Losses::Settle(const OutputFile& output) const {
    if (count_ == 0) return;
    if (count_ > kMostTold) Tell("... further ones are counted only");
    const std::string number = Counted(count_, "piece of text", "pieces of text");
    if (allowed_) return Tell(number + " replaced or left out in " + output.name());
    throw Failure(number + " cannot be kept: " + output.name() +
                  (output.is_direct() ? " ends before the first" : " is not written") +
                  (in_doubt_ ? "; --from tells the encoding of the text" : "") +
                  "; --lossy writes what can be kept");
}

}  // namespace zelkor::cli
