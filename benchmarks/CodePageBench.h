// Converters between 8-bit code pages and UTF-16 that are measured beside each other.
#ifndef BENCHMARKS_CODEPAGEBENCH_H
#define BENCHMARKS_CODEPAGEBENCH_H

#include <cstddef>
#include <memory>

namespace bench {

// One page as one library converts it. `out` has room for any result; both return what they wrote.
class PageConverter {
public:
    virtual ~PageConverter() = default;
    virtual std::size_t Decode(const char* text, std::size_t length, char16_t* out) = 0;
    virtual std::size_t Encode(const char16_t* text, std::size_t length, char* out) = 0;
};

using MakePageConverter = std::unique_ptr<PageConverter> (*)(unsigned int page);

// Registers a library for every page and text; a static object of this type does it.
struct PageConverterEntry {
    PageConverterEntry(const char* name, MakePageConverter make);
};

}  // namespace bench

#endif
