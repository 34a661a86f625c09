// Formatting and comparing without regard to case: the routines themselves, beside the C library.
#include <benchmark/benchmark.h>

#include <strings.h>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

namespace {

std::u16string FormatString(const char16_t* format, ...) {
    std::array<char16_t, 2048> area;
    std::va_list arguments;
    va_start(arguments, format);
    const int length = platform::FormatText(area.data(), area.size(), format, arguments);
    va_end(arguments);
    return {area.data(), static_cast<std::size_t>(length)};
}

void BM_FormatNumberAndText(benchmark::State& state) {
    const std::u16string text = u"translation memory";
    int number = 12345;
    for (auto _ : state) {
        benchmark::DoNotOptimize(FormatString(u"%d %s", number, text.c_str()));
        ++number;
    }
}
BENCHMARK(BM_FormatNumberAndText);

void BM_FormatNumberAndText_snprintf(benchmark::State& state) {
    const std::string text = "translation memory";
    int number = 12345;
    std::array<char, 2048> area;
    for (auto _ : state) {
        const int length = std::snprintf(area.data(), area.size(), "%d %s", number, text.c_str());
        benchmark::DoNotOptimize(std::string(area.data(), static_cast<std::size_t>(length)));
        ++number;
    }
}
BENCHMARK(BM_FormatNumberAndText_snprintf);

void BM_FormatFloat(benchmark::State& state) {
    double number = 1234.5678;
    for (auto _ : state) {
        benchmark::DoNotOptimize(FormatString(u"%.2f", number));
        number += 0.001;
    }
}
BENCHMARK(BM_FormatFloat);

void BM_FormatFloat_snprintf(benchmark::State& state) {
    double number = 1234.5678;
    std::array<char, 64> area;
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::snprintf(area.data(), area.size(), "%.2f", number));
        number += 0.001;
    }
}
BENCHMARK(BM_FormatFloat_snprintf);

std::u16string Mixed(std::size_t length, char16_t first) {
    std::u16string text;
    for (std::size_t i = 0; i < length; ++i) {
        text += static_cast<char16_t>(i % 5 == 0 ? first : u'a' + i % 26);
    }
    return text;
}

void BM_CompareNoCase(benchmark::State& state) {
    const auto length = static_cast<std::size_t>(state.range(0));
    const std::u16string a = Mixed(length, u'x');
    const std::u16string b = Mixed(length, u'X');
    for (auto _ : state) {
        benchmark::DoNotOptimize(platform::CompareNoCase(a.c_str(), b.c_str()));
    }
}
BENCHMARK(BM_CompareNoCase)->Arg(8)->Arg(40)->Arg(400);

void BM_CompareNoCaseViews(benchmark::State& state) {
    const auto length = static_cast<std::size_t>(state.range(0));
    const std::u16string a = Mixed(length, u'x');
    const std::u16string b = Mixed(length, u'X');
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            platform::CompareNoCase(std::u16string_view(a), std::u16string_view(b)));
    }
}
BENCHMARK(BM_CompareNoCaseViews)->Arg(8)->Arg(40)->Arg(400);

void BM_CompareNoCase_strcasecmp(benchmark::State& state) {
    const auto length = static_cast<std::size_t>(state.range(0));
    std::string a, b;
    for (const char16_t unit : Mixed(length, u'x')) a += static_cast<char>(unit);
    for (const char16_t unit : Mixed(length, u'X')) b += static_cast<char>(unit);
    for (auto _ : state) {
        benchmark::DoNotOptimize(strcasecmp(a.c_str(), b.c_str()));
    }
}
BENCHMARK(BM_CompareNoCase_strcasecmp)->Arg(8)->Arg(40)->Arg(400);

}  // namespace
