// Page 42, symbol fonts: bytes from 20 up stand for the private-use units F020 to F0FF.
#include "Foundation/Platform/CodePages/Internal/CodePageDetail.h"

namespace zelkor::platform::nls {

Outcome DecodeSymbol(const Decoding& call) noexcept {
    UnitSink sink(call.out, call.capacity);
    std::size_t at = 0;
    for (; at < call.length && !sink.IsFull(); ++at) {
        const unsigned int byte = call.text[at];
        sink.Put(static_cast<char16_t>(byte < 0x20 ? byte : 0xF000 + byte));
    }
    return sink.Result(at);
}

Outcome EncodeSymbol(const Encoding& call) noexcept {
    ByteSink sink(call.out, call.capacity);
    std::size_t at = 0;
    for (; at < call.length; ++at) {
        const char16_t unit = call.text[at];
        const bool served = unit < 0x20 || (unit >= 0xF020 && unit <= 0xF0FF);
        if (!served) return {sink.Result(at).count, kErrorNoUnicodeTranslation, at};
        sink.Put(static_cast<unsigned char>(unit));
    }
    return sink.Result(at);
}

}  // namespace zelkor::platform::nls
