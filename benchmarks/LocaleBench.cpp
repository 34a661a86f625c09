// The built-in locale table: one text, the whole table, letters.
#include <benchmark/benchmark.h>

#include "Foundation/Platform/Locales/Locales.h"

namespace platform = zelkor::platform;

namespace {

// The twelve months of one locale in turn, as views and copied into a buffer.
void BM_View(benchmark::State& state) {
    std::uint32_t month = 0;
    for (auto _ : state) {
        month = (month + 1) % 12;
        benchmark::DoNotOptimize(
            platform::LocaleText(0x0407, platform::kLocaleMonthName1 + month)->size());
    }
}
BENCHMARK(BM_View)->Name("LocaleMonth/Zelkor");

void BM_Copy(benchmark::State& state) {
    std::uint32_t month = 0;
    char16_t text[32];
    for (auto _ : state) {
        month = (month + 1) % 12;
        benchmark::DoNotOptimize(
            platform::GetLocaleInfo(0x0407, platform::kLocaleMonthName1 + month, text, 32));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Copy)->Name("LocaleMonthCopy/Zelkor");

// Every type of every locale: no text is in the cache because it was asked for just now.
void BM_Everything(benchmark::State& state) {
    std::int64_t texts = 0;
    for (auto _ : state) {
        for (std::uint32_t index = 0; index < platform::LocaleCount(); ++index) {
            for (std::uint32_t type = 1; type <= 0x5A; ++type, ++texts) {
                benchmark::DoNotOptimize(platform::LocaleText(platform::LocaleAt(index), type));
            }
        }
    }
    state.SetItemsProcessed(texts);
}
BENCHMARK(BM_Everything)->Name("LocaleEverything/Zelkor");

void BM_Letters(benchmark::State& state) {
    std::uint32_t letters = 0;
    for (auto _ : state) {
        for (std::uint32_t unit = 0; unit < 0x3000; ++unit) {
            letters += platform::IsCharAlpha(static_cast<char16_t>(unit));
        }
    }
    benchmark::DoNotOptimize(letters);
    state.SetItemsProcessed(state.iterations() * 0x3000);
}
BENCHMARK(BM_Letters)->Name("IsLetter/Zelkor");

}  // namespace
