// UTF-8 to UTF-16 and back: whole texts, texts in blocks of 16 KiB into one buffer, single words.
// Throughput counts bytes of UTF-8. Memory copies of the same traffic (half of source and result
// together) and of the result stand beside the conversions.
#include "benchmarks/UtfBench.h"

#include <benchmark/benchmark.h>
#include <iconv.h>

#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/Platform/Text/Utf.h"
#include "benchmarks/Texts.h"

namespace platform = zelkor::platform;

namespace bench {
namespace {

constexpr std::size_t kTextSize = 6 << 20;
constexpr std::size_t kBlockSize = 16 << 10;
enum class Pieces { Whole, Blocks, Words };

bool IsTrail(char unit) {
    return (static_cast<unsigned char>(unit) & 0xC0) == 0x80;
}
bool IsTrail(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

// The text, or its blocks of at most kBlockSize bytes, or some of its words; whole characters.
template <class Unit>
std::vector<std::basic_string_view<Unit>> Cut(std::basic_string_view<Unit> text, Pieces pieces) {
    if (pieces == Pieces::Whole) return {text};
    std::vector<std::basic_string_view<Unit>> cut;
    constexpr std::size_t kWords = 2000;
    while (!text.empty() && (pieces == Pieces::Blocks || cut.size() < kWords)) {
        std::size_t size = kBlockSize / sizeof(Unit);
        if (pieces == Pieces::Words) {
            size = text.find(Unit{' '});
            if (size > 20) size = 4 + cut.size() % 12;
            ++size;
        }
        while (size < text.size() && IsTrail(text[size])) --size;
        cut.push_back(text.substr(0, size));
        text.remove_prefix(cut.back().size());
    }
    return cut;
}

template <class Unit, class Out>
void Run(benchmark::State& state, std::basic_string_view<Unit> text, Pieces pieces,
         std::size_t utf8_size, std::size_t (*convert)(const Unit*, std::size_t, Out*)) {
    const auto cut = Cut(text, pieces);
    std::size_t largest = 0;
    std::size_t taken = 0;
    for (const auto piece : cut) {
        largest = std::max(largest, piece.size());
        taken += piece.size();
    }
    std::vector<Out> out(3 * largest + 16);
    for (auto _ : state) {
        for (const auto piece : cut) {
            benchmark::DoNotOptimize(convert(piece.data(), piece.size(), out.data()));
            benchmark::ClobberMemory();
        }
    }
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(utf8_size * taken / text.size()));
    state.counters["s/piece"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * static_cast<double>(cut.size()),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

template <class Function>
void ForEachCase(const char* direction, const char* name, Function run) {
    using enum Language;
    for (const Language language : {Ascii, German, Russian, Japanese, Mixed}) {
        constexpr const char* kPieces[] = {"whole", "16KiB", "words"};
        for (const Pieces pieces : {Pieces::Whole, Pieces::Blocks, Pieces::Words}) {
            const std::string title = std::string(direction) + "/" + NameOf(language) + "/" +
                                      kPieces[static_cast<std::size_t>(pieces)] + "/" + name;
            benchmark::RegisterBenchmark(title.c_str(), run, language, pieces);
        }
    }
}

// Each text is made once.
template <auto make>
const auto& Cached(Language language) {
    static std::map<Language, decltype(make(language, kTextSize))> texts;
    auto& text = texts[language];
    if (text.empty()) text = make(language, kTextSize);
    return text;
}

std::size_t Decode(const char* text, std::size_t length, char16_t* out) {
    return platform::Utf8ToUtf16(text, length, out, length + 16).written;
}

std::size_t Encode(const char16_t* text, std::size_t length, char* out) {
    return platform::Utf16ToUtf8(text, length, out, 3 * length + 16).written;
}

std::size_t DecodedLength(const char* text, std::size_t length, char16_t*) {
    return platform::Utf16LengthOfUtf8(text, length).written;
}

std::size_t EncodedLength(const char16_t* text, std::size_t length, char*) {
    return platform::Utf8LengthOfUtf16(text, length).written;
}

template <class Unit, class Out>
std::size_t CopyResult(const Unit* text, std::size_t length, Out* out) {
    const std::size_t whole = sizeof(Unit) * length;
    if constexpr (sizeof(Out) > sizeof(Unit)) {
        std::memcpy(out, text, whole);
        std::memcpy(out + length / 2, text, whole);
    } else {
        std::memcpy(out, text, whole / 2);
    }
    return length;
}

// As many bytes read and written as an ASCII conversion moves.
template <class Unit, class Out>
std::size_t CopyTraffic(const Unit* text, std::size_t length, Out* out) {
    const std::size_t whole = sizeof(Unit) * length;
    if constexpr (sizeof(Out) > sizeof(Unit)) {
        std::memcpy(out, text, whole);
        std::memcpy(reinterpret_cast<char*>(out) + whole, text, whole / 2);
    } else {
        std::memcpy(out, text, whole * 3 / 4);
    }
    return length;
}

template <class Unit, class Out>
std::size_t WithIconv(const Unit* text, std::size_t length, Out* out) {
    static const iconv_t converter =
        sizeof(Unit) == 1 ? iconv_open("UTF-16LE", "UTF-8") : iconv_open("UTF-8", "UTF-16LE");
    char* from = reinterpret_cast<char*>(const_cast<Unit*>(text));
    char* to = reinterpret_cast<char*>(out);
    std::size_t left = length * sizeof(Unit);
    const std::size_t capacity = 3 * length * sizeof(Out);
    std::size_t room = capacity;
    iconv(converter, &from, &left, &to, &room);
    return (capacity - room) / sizeof(Out);
}

const DecoderEntry kDecoders[] = {{"Zelkor", Decode},
                                  {"Zelkor-SSE4.1", Decode, 2},
                                  {"Zelkor-SSE2", Decode, 1},
                                  {"Zelkor-plain", Decode, 0},
                                  {"Zelkor-length", DecodedLength},
                                  {"copy-traffic", CopyTraffic},
                                  {"copy-result", CopyResult},
                                  {"iconv", WithIconv}};

const EncoderEntry kEncoders[] = {{"Zelkor", Encode},
                                  {"Zelkor-SSE4.1", Encode, 2},
                                  {"Zelkor-SSE2", Encode, 1},
                                  {"Zelkor-plain", Encode, 0},
                                  {"Zelkor-length", EncodedLength},
                                  {"copy-traffic", CopyTraffic},
                                  {"copy-result", CopyResult},
                                  {"iconv", WithIconv}};

}  // namespace

DecoderEntry::DecoderEntry(const char* name, Decoder decode, int level) {
    ForEachCase("Decode", name,
                [decode, level](benchmark::State& state, Language language, Pieces pieces) {
                    const std::string& text = Cached<Utf8Text>(language);
                    platform::LimitUtfKernels(level);
                    Run<char, char16_t>(state, text, pieces, text.size(), decode);
                    platform::LimitUtfKernels(kAnyLevel);
                });
}

EncoderEntry::EncoderEntry(const char* name, Encoder encode, int level) {
    ForEachCase("Encode", name,
                [encode, level](benchmark::State& state, Language language, Pieces pieces) {
                    const std::u16string& text = Cached<Utf16Text>(language);
                    platform::LimitUtfKernels(level);
                    Run<char16_t, char>(state, text, pieces, kTextSize, encode);
                    platform::LimitUtfKernels(kAnyLevel);
                });
}

}  // namespace bench
