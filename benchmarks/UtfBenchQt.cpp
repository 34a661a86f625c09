// Qt's ways between UTF-8 and UTF-16; each call makes a new text, there is no other way.
#include <QString>

#include "benchmarks/UtfBench.h"

namespace bench {
namespace {

std::size_t FromUtf8(const char* text, std::size_t length, char16_t*) {
    return static_cast<std::size_t>(QString::fromUtf8(text, static_cast<int>(length)).size());
}

std::size_t ToUtf8(const char16_t* text, std::size_t length, char*) {
    const auto* characters = reinterpret_cast<const QChar*>(text);
    return static_cast<std::size_t>(
        QStringView(characters, static_cast<qsizetype>(length)).toUtf8().size());
}

const DecoderEntry kDecoder{"Qt", FromUtf8};
const EncoderEntry kEncoder{"Qt", ToUtf8};

}  // namespace
}  // namespace bench
