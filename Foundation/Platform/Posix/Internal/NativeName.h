// A name as the system takes it, in a buffer on the stack, and what the calls ask of it.
#ifndef FOUNDATION_PLATFORM_POSIX_INTERNAL_NATIVENAME_H
#define FOUNDATION_PLATFORM_POSIX_INTERNAL_NATIVENAME_H

#include <sys/stat.h>

#include <cstddef>
#include <string_view>

#include "Foundation/Platform/Paths.h"

namespace zelkor::platform::posix {

class NativeName {
public:
    // Sets the last error when there is no such native name; ok() is then false.
    explicit NativeName(const char16_t* name) noexcept : length_(NativePath(name, bytes_)) {}

    [[nodiscard]] bool ok() const noexcept { return length_ != 0; }
    [[nodiscard]] const char* c_str() const noexcept { return bytes_; }
    [[nodiscard]] std::string_view view() const noexcept { return {bytes_, length_}; }

    // Whether a separator follows the name itself.
    [[nodiscard]] bool EndsInSeparator() const noexcept {
        return length_ > 1 && bytes_[length_ - 1] == '/';
    }
    void DropSeparators() noexcept;

    // Whether the name may be given to something new: none of "<>:\"|?*" and control characters
    // in its last part. The folders before it exist or not, whatever they are called.
    [[nodiscard]] bool MayBeCreated() const noexcept;

    // 2 or 3 for a name that was not found, 123 for one that cannot exist.
    [[nodiscard]] std::uint32_t MissingError() const noexcept;

    // Sets the last error for a call that failed with this errno, and answers false.
    bool Fail(int number) const noexcept;

private:
    char bytes_[kMaxNativePath];  // first, NativePath writes it before length_ is set
    std::size_t length_;
};

}  // namespace zelkor::platform::posix

#endif
