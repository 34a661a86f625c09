// The letter of the current drive, of the whole process; C until ChangeFolder names another.
#ifndef FOUNDATION_PLATFORM_POSIX_INTERNAL_CURRENTDRIVE_H
#define FOUNDATION_PLATFORM_POSIX_INTERNAL_CURRENTDRIVE_H

namespace zelkor::platform::posix {

[[nodiscard]] char16_t CurrentDrive() noexcept;
void SetCurrentDrive(char16_t letter) noexcept;  // A to Z

}  // namespace zelkor::platform::posix

#endif
