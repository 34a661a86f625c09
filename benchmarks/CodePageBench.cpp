// Code pages to UTF-16 and back, in blocks of 16 KiB into one buffer, as text readers ask for them.
// Throughput counts bytes of 8-bit text. "Strict" refuses invalid text, as text readers do;
// "Sizing" asks for the length alone, as strings may.
#include "benchmarks/CodePageBench.h"

#include <benchmark/benchmark.h>
#include <iconv.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Foundation/Platform/CodePages/CodePages.h"
#include "benchmarks/Texts.h"

namespace platform = zelkor::platform;

namespace bench {
namespace {

constexpr std::size_t kTextSize = 2 << 20;
constexpr std::size_t kBlockUnits = 8 << 10;

struct Case {
    unsigned int page;
    Language language;
};
constexpr Case kCases[] = {
    {1252, Language::Ascii},    {1252, Language::German},  {1251, Language::Russian},
    {932, Language::Japanese},  {936, Language::Chinese},  {932, Language::Ascii},
    {54936, Language::Chinese}, {54936, Language::German}, {54936, Language::Mixed}};

class Zelkor : public PageConverter {
public:
    explicit Zelkor(unsigned int page) : page_(page) {}
    std::size_t Decode(const char* text, std::size_t length, char16_t* out) override {
        return static_cast<std::size_t>(platform::MultiByteToWideChar(
            page_, 0, text, static_cast<int>(length), out, static_cast<int>(length)));
    }
    std::size_t Encode(const char16_t* text, std::size_t length, char* out) override {
        const auto room = static_cast<int>(platform::MaxBytes(page_, length));
        return static_cast<std::size_t>(platform::WideCharToMultiByte(
            page_, 0, text, static_cast<int>(length), out, room, nullptr, nullptr));
    }

protected:
    unsigned int page_;
};

class ZelkorStrict : public Zelkor {
public:
    using Zelkor::Zelkor;
    std::size_t Decode(const char* text, std::size_t length, char16_t* out) override {
        return static_cast<std::size_t>(
            platform::MultiByteToWideChar(page_, platform::kErrorOnInvalidChars, text,
                                          static_cast<int>(length), out, static_cast<int>(length)));
    }
};

class ZelkorSizing : public Zelkor {
public:
    using Zelkor::Zelkor;
    std::size_t Decode(const char* text, std::size_t length, char16_t*) override {
        return static_cast<std::size_t>(
            platform::MultiByteToWideChar(page_, 0, text, static_cast<int>(length), nullptr, 0));
    }
    std::size_t Encode(const char16_t* text, std::size_t length, char*) override {
        return static_cast<std::size_t>(platform::WideCharToMultiByte(
            page_, 0, text, static_cast<int>(length), nullptr, 0, nullptr, nullptr));
    }
};

class Iconv : public PageConverter {
public:
    explicit Iconv(unsigned int page)
        : decode_(iconv_open("UTF-16LE", Name(page).c_str())),
          encode_(iconv_open(Name(page).c_str(), "UTF-16LE")) {}
    ~Iconv() override {
        iconv_close(decode_);
        iconv_close(encode_);
    }
    std::size_t Decode(const char* text, std::size_t length, char16_t* out) override {
        return Run(decode_, text, length, out, 2 * length) / 2;
    }
    std::size_t Encode(const char16_t* text, std::size_t length, char* out) override {
        return Run(encode_, text, 2 * length, out, 4 * length);
    }

private:
    static std::string Name(unsigned int page) {
        return page == 54936 ? "GB18030" : "CP" + std::to_string(page);
    }
    static std::size_t Run(iconv_t converter, const void* text, std::size_t length, void* out,
                           std::size_t room) {
        char* from = static_cast<char*>(const_cast<void*>(text));
        char* to = static_cast<char*>(out);
        const std::size_t before = room;
        iconv(converter, &from, &length, &to, &room);
        return before - room;
    }

    iconv_t decode_;
    iconv_t encode_;
};

template <class Unit>
std::vector<std::basic_string_view<Unit>> Blocks(std::basic_string_view<Unit> text,
                                                 std::size_t size) {
    std::vector<std::basic_string_view<Unit>> blocks;
    for (; !text.empty(); text.remove_prefix(blocks.back().size())) {
        // A block ends behind a line, so that no character is cut.
        const std::size_t end = text.substr(0, size).rfind(Unit{'\n'});
        blocks.push_back(text.substr(0, end == text.npos ? size : end + 1));
    }
    return blocks;
}

void Report(benchmark::State& state, std::size_t bytes, std::size_t written, std::size_t wanted) {
    if (written != wanted) state.SkipWithError("the result has another length");
    state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
}

void RunDecode(benchmark::State& state, Case what, MakePageConverter make) {
    const std::u16string units = Utf16Text(what.language, kTextSize);
    std::string bytes(platform::MaxBytes(what.page, units.size()), '\0');
    bytes.resize(Zelkor(what.page).Encode(units.data(), units.size(), bytes.data()));
    const auto blocks = Blocks(std::string_view(bytes), 2 * kBlockUnits);
    std::u16string out(2 * kBlockUnits, u'\0');
    const auto converter = make(what.page);
    std::size_t written = 0;
    for (auto _ : state) {
        written = 0;
        for (const auto block : blocks) {
            written += converter->Decode(block.data(), block.size(), out.data());
            benchmark::ClobberMemory();
        }
    }
    Report(state, bytes.size(), written, units.size());
}

void RunEncode(benchmark::State& state, Case what, MakePageConverter make) {
    const std::u16string units = Utf16Text(what.language, kTextSize);
    std::string all(platform::MaxBytes(what.page, units.size()), '\0');
    const std::size_t size = Zelkor(what.page).Encode(units.data(), units.size(), all.data());
    const auto blocks = Blocks(std::u16string_view(units), kBlockUnits);
    std::string out(platform::MaxBytes(what.page, kBlockUnits), '\0');
    const auto converter = make(what.page);
    std::size_t written = 0;
    for (auto _ : state) {
        written = 0;
        for (const auto block : blocks) {
            written += converter->Encode(block.data(), block.size(), out.data());
            benchmark::ClobberMemory();
        }
    }
    Report(state, size, written, size);
}

template <class Converter>
std::unique_ptr<PageConverter> Make(unsigned int page) {
    return std::make_unique<Converter>(page);
}

const PageConverterEntry kEntries[] = {{"Zelkor", Make<Zelkor>},
                                       {"ZelkorStrict", Make<ZelkorStrict>},
                                       {"ZelkorSizing", Make<ZelkorSizing>},
                                       {"iconv", Make<Iconv>}};

}  // namespace

PageConverterEntry::PageConverterEntry(const char* name, MakePageConverter make) {
    for (const Case& what : kCases) {
        std::string end("/");
        end += std::to_string(what.page);
        end.append("/").append(NameOf(what.language)).append("/").append(name);
        benchmark::RegisterBenchmark(("Decode" + end).c_str(), RunDecode, what, make);
        benchmark::RegisterBenchmark(("Encode" + end).c_str(), RunEncode, what, make);
    }
}

}  // namespace bench
