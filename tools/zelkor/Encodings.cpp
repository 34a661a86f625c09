#include "Encodings.h"

#include <algorithm>
#include <charconv>

#include "Console.h"

namespace zelkor {

CT_Codepage ParseEncoding(const std::string& name) {
    unsigned int number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool is_number = error == std::errc() && end == name.data() + name.size();
    const CT_UString text = FromUtf8(name);
    const CT_Codepage encoding = is_number ? CT_Codepage(number) : CT_Codepage(&text);
    if (!encoding.b_IsValid()) {
        throw Failure("'" + name +
                          "' is no encoding known here; give a name such as UTF-8, iso-8859-1, "
                          "windows-1250, Shift_JIS or a code-page number such as 1252",
                      2);
    }
    return encoding;
}

std::string Describe(const CT_Codepage& encoding) {
    const char16_t* name = encoding.qcuz_Get();
    const std::string number = std::to_string(encoding.n_Get());
    return name == nullptr ? "code page " + number : ToUtf8(CT_UString(name)) + " (" + number + ")";
}

}  // namespace zelkor
