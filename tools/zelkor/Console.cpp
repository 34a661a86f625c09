#include "Console.h"

#include <Foundation/Core/Error/ErrorManager.h>
#include <Foundation/Core/String/CString.h>
#include <Foundation/System/String/StringConvert.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace zelkor {

namespace {

constexpr unsigned int kUtf8 = 65001;
bool show_locations = false;

}  // namespace

CT_UString FromUtf8(std::string_view text) {
    return CT_UString(text.data(), static_cast<unsigned int>(text.size()), kUtf8);
}

std::string ToUtf8(const CT_UString& text) {
    CT_CString bytes;
    CT_StringConvert::si_WideToMulti(&bytes, &text, kUtf8);
    return {bytes.qccz_Get(), bytes.n_GetLength()};
}

void ThrowRecordedError() {
    CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
    if (!errors.b_IsSetError()) return;
    CT_UString text;
    errors.v_GetErrorMessage(text);
    std::string locations;
    for (unsigned int i = 1; show_locations && i <= errors.n_GetLocationCount(); ++i) {
        locations += std::string("\n    at ") + errors.qccz_GetLocationFileAt(i) + ":" +
                     std::to_string(errors.n_GetLocationLineAt(i));
    }
    errors.v_ClearError();
    throw Failure(ToUtf8(text) + locations);
}

void ShowLocations(bool show) {
    show_locations = show;
}

Progress::Progress(std::string what, std::uint64_t total)
    : what_(std::move(what)),
      total_(std::max<std::uint64_t>(total, 1)),
      terminal_(isatty(STDERR_FILENO) != 0),
      next_(std::chrono::steady_clock::now() + std::chrono::seconds(1)) {}

Progress::~Progress() {
    if (drawn_) std::fputs("\r\033[K", stderr);
}

void Progress::Advance(std::uint64_t done) {
    if (!terminal_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now < next_) return;
    next_ = now + std::chrono::milliseconds(100);
    Draw(std::min(done, total_));
}

void Progress::Draw(std::uint64_t done) {
    constexpr std::size_t kWidth = 40;
    const std::size_t filled = kWidth * done / total_;
    std::fprintf(stderr, "\r%s [%s%s] %3u%%\033[K", what_.c_str(), std::string(filled, '#').c_str(),
                 std::string(kWidth - filled, '.').c_str(),
                 static_cast<unsigned int>(100 * done / total_));
    std::fflush(stderr);
    drawn_ = true;
}

std::string Grouped(std::uint64_t number) {
    const std::string digits = std::to_string(number);
    std::string text;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i != 0 && (digits.size() - i) % 3 == 0) text += ',';
        text += digits[i];
    }
    return text;
}

}  // namespace zelkor
