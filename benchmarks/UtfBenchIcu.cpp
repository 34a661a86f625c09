// ICU's ways between UTF-8 and UTF-16.
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include "benchmarks/UtfBench.h"

namespace bench {
namespace {

// Room enough for any text measured; ICU counts in 32 bits.
constexpr std::int32_t kRoom = 1 << 28;

template <auto convert>
std::size_t FromUtf8(const char* text, std::size_t length, char16_t* out) {
    UErrorCode error = U_ZERO_ERROR;
    std::int32_t written = 0;
    convert(out, kRoom, &written, text, static_cast<std::int32_t>(length), &error);
    return static_cast<std::size_t>(written);
}

std::size_t ToUtf8(const char16_t* text, std::size_t length, char* out) {
    UErrorCode error = U_ZERO_ERROR;
    std::int32_t written = 0;
    u_strToUTF8(out, kRoom, &written, text, static_cast<std::int32_t>(length), &error);
    return static_cast<std::size_t>(written);
}

UConverter* Converter() {
    static UErrorCode error = U_ZERO_ERROR;
    static UConverter* const converter = ucnv_open("UTF-8", &error);
    return converter;
}

std::size_t ConverterFromUtf8(const char* text, std::size_t length, char16_t* out) {
    UErrorCode error = U_ZERO_ERROR;
    char16_t* to = out;
    ucnv_toUnicode(Converter(), &to, out + length + 16, &text, text + length, nullptr, true,
                   &error);
    return static_cast<std::size_t>(to - out);
}

std::size_t ConverterToUtf8(const char16_t* text, std::size_t length, char* out) {
    UErrorCode error = U_ZERO_ERROR;
    char* to = out;
    ucnv_fromUnicode(Converter(), &to, out + 3 * length + 16, &text, text + length, nullptr, true,
                     &error);
    return static_cast<std::size_t>(to - out);
}

const DecoderEntry kDecoders[] = {{"ICU", FromUtf8<u_strFromUTF8>},
                                  {"ICU-lenient", FromUtf8<u_strFromUTF8Lenient>},
                                  {"ICU-converter", ConverterFromUtf8}};
const EncoderEntry kEncoders[] = {{"ICU", ToUtf8}, {"ICU-converter", ConverterToUtf8}};

}  // namespace
}  // namespace bench
