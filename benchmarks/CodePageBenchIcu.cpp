// ICU's converters for the code pages.
#include <unicode/ucnv.h>

#include <string>

#include "benchmarks/CodePageBench.h"

namespace bench {
namespace {

class Icu : public PageConverter {
public:
    explicit Icu(unsigned int page) {
        UErrorCode error = U_ZERO_ERROR;
        converter_ = ucnv_open(("windows-" + std::to_string(page)).c_str(), &error);
    }
    ~Icu() override { ucnv_close(converter_); }
    std::size_t Decode(const char* text, std::size_t length, char16_t* out) override {
        UErrorCode error = U_ZERO_ERROR;
        char16_t* to = out;
        ucnv_toUnicode(converter_, &to, out + length, &text, text + length, nullptr, true, &error);
        return static_cast<std::size_t>(to - out);
    }
    std::size_t Encode(const char16_t* text, std::size_t length, char* out) override {
        UErrorCode error = U_ZERO_ERROR;
        char* to = out;
        ucnv_fromUnicode(converter_, &to, out + 4 * length, &text, text + length, nullptr, true,
                         &error);
        return static_cast<std::size_t>(to - out);
    }

private:
    UConverter* converter_;
};

const PageConverterEntry kEntry("ICU", [](unsigned int page) -> std::unique_ptr<PageConverter> {
    return std::make_unique<Icu>(page);
});

}  // namespace
}  // namespace bench
