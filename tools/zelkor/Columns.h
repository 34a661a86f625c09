// Texts side by side on a terminal, and as JSON.
#ifndef TOOLS_ZELKOR_COLUMNS_H
#define TOOLS_ZELKOR_COLUMNS_H

#include <string>
#include <string_view>
#include <vector>

namespace zelkor::cli {

// Cells that a terminal gives a UTF-16 text: two for a wide East Asian character, none for a mark
// that sits on the character before it.
[[nodiscard]] std::size_t DisplayWidth(std::u16string_view text);

// Rows of cells in UTF-8, as lines whose columns begin below each other: two blanks between the
// widest cell of a column and the next one, none at the end of a line.
[[nodiscard]] std::string Aligned(const std::vector<std::vector<std::u16string>>& rows,
                                  std::string_view indent);

// A JSON text of UTF-16: in UTF-8, with quotation marks.
[[nodiscard]] std::string JsonText(std::u16string_view text);

}  // namespace zelkor::cli

#endif
