#include "Foundation/Platform/ErrorInfo.h"

#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "Foundation/Platform/Memory.h"

namespace platform {

namespace {

struct FreeText {
    void operator()(char16_t* text) const noexcept { Free(text); }
};

// Frees what is left when the thread ends; set up by the first use in a thread.
std::unique_ptr<char16_t, FreeText>& ThreadInfo() noexcept {
    thread_local std::unique_ptr<char16_t, FreeText> info;
    return info;
}

}  // namespace

bool SetErrorInfo(const char16_t* description) noexcept {
    ThreadInfo().reset();
    if (description == nullptr) return true;
    const std::size_t size = (std::u16string_view(description).size() + 1) * sizeof(char16_t);
    auto* const copy = static_cast<char16_t*>(TryAllocate(size));
    if (copy == nullptr) return false;
    std::memcpy(copy, description, size);
    ThreadInfo().reset(copy);
    return true;
}

char16_t* TakeErrorInfo() noexcept {
    return ThreadInfo().release();
}

}  // namespace platform
