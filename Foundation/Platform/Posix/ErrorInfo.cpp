#include "Foundation/Platform/ErrorInfo.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Posix/Internal/ThreadMemory.h"

namespace zelkor::platform {

bool SetErrorInfo(const char16_t* description) noexcept {
    Free(TakeErrorInfo());
    if (description == nullptr) return true;
    const std::size_t size = (std::u16string_view(description).size() + 1) * sizeof(char16_t);
    auto* const copy = static_cast<char16_t*>(TryAllocate(size));
    if (copy == nullptr) return false;
    std::memcpy(copy, description, size);
    detail::ThreadMemory* const mine = detail::Mine();
    if (mine == nullptr) return Free(copy), false;
    mine->error_info = copy;
    return true;
}

char16_t* TakeErrorInfo() noexcept {
    detail::ThreadMemory* const mine = detail::thread_memory;
    return mine != nullptr ? std::exchange(mine->error_info, nullptr) : nullptr;
}

}  // namespace zelkor::platform
