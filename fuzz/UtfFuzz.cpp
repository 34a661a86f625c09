// The kernels of every instruction set against the reference, both ways: the same elements taken,
// the same text written, nothing touched outside the buffers, whatever the room.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Foundation/Platform/Text/Utf.h"
#include "tests/Platform/UtfReference.h"

namespace platform = zelkor::platform;

namespace {

constexpr int kLevels = 4;

void Require(bool holds) {
    if (!holds) std::abort();
}

// Converts from a buffer of exact size into one of `capacity` elements.
template <class Unit, class Out, class Convert, class Measure>
void Compare(std::basic_string_view<Unit> source, std::size_t capacity,
             const test::Converted<std::basic_string<Out>>& wanted,
             const test::Converted<std::basic_string<Out>>& whole, Convert convert,
             Measure measure) {
    const std::unique_ptr<Unit[]> text(new Unit[source.size()]);
    std::copy(source.begin(), source.end(), text.get());
    const std::unique_ptr<Out[]> out(new Out[capacity]);
    const platform::UtfProgress length = measure(text.get(), source.size());
    Require(length.taken == whole.taken && length.written == whole.text.size());
    const platform::UtfProgress done = convert(text.get(), source.size(), out.get(), capacity);
    Require(done.taken == wanted.taken);
    Require(std::basic_string_view<Out>(out.get(), done.written) == wanted.text);
    const std::size_t ascii = platform::AsciiPrefix(text.get(), source.size());
    Require(std::all_of(source.begin(), source.begin() + static_cast<std::ptrdiff_t>(ascii),
                        [](Unit unit) { return static_cast<char32_t>(unit) < 0x80; }));
    Require(ascii == source.size() || static_cast<char32_t>(source[ascii]) >= 0x80);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || size > 1024) return 0;
    // The first byte takes from the room that the text needs, or adds to it.
    const std::size_t more = data[0];
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    std::u16string units(bytes.size() / 2, u'\0');
    std::memcpy(units.data(), bytes.data(), 2 * units.size());

    const auto decoded = test::ReferenceDecode(bytes, SIZE_MAX);
    const std::size_t room16 = std::max<std::size_t>(decoded.text.size() + more, 128) - 128;
    const auto decoded_part = test::ReferenceDecode(bytes, room16);
    const auto encoded = test::ReferenceEncode(units, SIZE_MAX);
    const std::size_t room8 = std::max<std::size_t>(encoded.text.size() + more, 128) - 128;
    const auto encoded_part = test::ReferenceEncode(units, room8);
    for (int level = 0; level < kLevels; ++level) {
        if (platform::LimitUtfKernels(level) != level) break;
        Compare<char, char16_t>(bytes, room16, decoded_part, decoded, platform::Utf8ToUtf16,
                                platform::Utf16LengthOfUtf8);
        Compare<char16_t, char>(std::u16string_view(units), room8, encoded_part, encoded,
                                platform::Utf16ToUtf8, platform::Utf8LengthOfUtf16);
    }
    return 0;
}
