// The picture of zelkor records map: an SVG image that stands alone, on a background of its own.
//
// From top to bottom: the file and what it holds, how its space is shared, the blocks with their
// references and offsets, what the colours mean, what is wrong.
#include <Foundation/Core/String/UString.h>

#include <algorithm>
#include <cstdio>

#include "Console.h"
#include "Records.h"
#include "RecordsChart.h"

namespace zelkor::cli {

namespace {

constexpr unsigned int kCell = 13;  // with the gap behind it
constexpr unsigned int kSide = 12;  // of a cell
constexpr unsigned int kLeft = 120;
constexpr unsigned int kGrid = kCell * Chart::kColumns;
constexpr unsigned int kRight = kLeft + kGrid;
constexpr unsigned int kWidth = kRight + 130;
constexpr unsigned int kTop = 132;  // of the blocks
constexpr unsigned int kLine = 20;  // of the legend
constexpr std::size_t kMostFindings = 8;
constexpr const char* kDamage = "#c1121f";
constexpr const char* kFaint = "#6b7280";

// The bytes as characters that XML and UTF-8 allow: a file's name may be anything.
std::string Markup(const std::string& bytes) {
    std::string text;
    for (const char c : ToUtf8(FromUtf8(bytes))) {
        if (c == '<' || c == '>' || c == '&' || c == '"') {
            text += "&#" + std::to_string(static_cast<int>(c)) + ';';
        } else {
            text += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
        }
    }
    return text;
}

std::string Percent(std::uint64_t part, std::uint64_t whole) {
    char text[16];
    std::snprintf(text, sizeof text, "%.1f %%",
                  100.0 * static_cast<double>(part) / static_cast<double>(whole));
    return text;
}

// "12.3 KiB"; bytes as they are below 10,000.
std::string Size(std::uint64_t bytes) {
    if (bytes < 10000) return Grouped(bytes) + " B";
    double size = static_cast<double>(bytes);
    const char* unit = "B";
    for (const char* next : {"KiB", "MiB", "GiB"}) {
        if (size < 1000) break;
        size /= 1024;
        unit = next;
    }
    char text[24];
    std::snprintf(text, sizeof text, "%.1f %s", size, unit);
    return text;
}

// A part of a path: a rectangle as high as a cell.
std::string Box(unsigned int x, unsigned int y, unsigned int width) {
    char text[64];
    std::snprintf(text, sizeof text, "M%u %uh%uv%uh-%uz", x, y, width, kSide, width);
    return text;
}

class Picture {
public:
    explicit Picture(const Chart& chart)
        : chart_(chart),
          legend_(kTop + static_cast<unsigned int>(chart.Rows()) * kCell + 28),
          findings_(legend_ + (static_cast<unsigned int>(kLooks.size()) + 2) * kLine + 10),
          height_(findings_ + Listed() * kLine + (Listed() == 0 ? 0 : 34)) {}

    std::string Draw() {
        const std::string size =
            Attribute("width", kWidth) + Attribute("height", std::uint64_t{height_});
        svg_ = "<svg xmlns=\"http://www.w3.org/2000/svg\"" + size + " viewBox=\"0 0 " +
               std::to_string(kWidth) + ' ' + std::to_string(height_) +
               "\" font-family=\"'DejaVu Sans',Verdana,Arial,sans-serif\" font-size=\"12\" "
               "fill=\"#1f2933\">\n";
        Rectangle(0, 0, kWidth, height_, "#ffffff");
        Title();
        Shares();
        Scale();
        Blocks();
        Legend();
        Findings();
        return svg_ + "</svg>\n";
    }

private:
    static std::string Attribute(const char* name, std::uint64_t value) {
        return std::string(" ") + name + "=\"" + std::to_string(value) + '"';
    }
    [[nodiscard]] std::uint64_t Bytes(std::uint64_t blocks) const {
        return blocks * chart_.block_size;
    }
    [[nodiscard]] unsigned int Listed() const {
        return static_cast<unsigned int>(std::min(chart_.findings.size(), kMostFindings));
    }
    void Rectangle(unsigned int x, unsigned int y, unsigned int width, unsigned int height,
                   const std::string& fill, const std::string& more = "") {
        svg_ += "<rect" + Attribute("x", x) + Attribute("y", y) + Attribute("width", width) +
                Attribute("height", height) + " fill=\"" + fill + '"' + more + "/>\n";
    }
    // `more` holds further attributes.
    void Text(unsigned int x, unsigned int y, const std::string& text,
              const std::string& more = "") {
        svg_ += "<text" + Attribute("x", x) + Attribute("y", y) + more + '>' + Markup(text) +
                "</text>\n";
    }
    static std::string Fill(const char* color) { return std::string(" fill=\"") + color + '"'; }

    void Title();
    void Shares();
    void Scale();
    void Blocks();
    void Legend();
    void Findings();

    const Chart& chart_;
    unsigned int legend_, findings_, height_;
    std::string svg_;
};

void Picture::Title() {
    constexpr std::size_t kLongest = 48;
    const std::size_t slash = chart_.name.find_last_of('/');
    std::string name = slash == std::string::npos ? chart_.name : chart_.name.substr(slash + 1);
    if (name.size() > kLongest) {
        std::size_t cut = name.size() - kLongest;
        while (cut < name.size() && (name[cut] & 0xC0) == 0x80) ++cut;  // inside a character
        name = "..." + name.substr(cut);
    }
    Text(kLeft, 36, name, " font-size=\"20\" font-weight=\"bold\"");
    Text(kLeft, 58,
         Counted(chart_.record_count, "record", "records") + " · " +
             Counted(chart_.block_count, "block", "blocks") + " of " +
             Counted(chart_.block_size, "byte", "bytes") + " · " + Size(Bytes(chart_.block_count)),
         Fill(kFaint));
    const bool sound = chart_.finding_count == 0;
    Text(kRight, 36, sound ? "sound" : Counted(chart_.finding_count, "finding", "findings"),
         " font-size=\"14\" font-weight=\"bold\" text-anchor=\"end\"" +
             Fill(sound ? "#2a7f3f" : kDamage));
}

// How the space is shared, as one bar. Damage is never too thin to be seen.
void Picture::Shares() {
    unsigned int x = kLeft;
    for (const bool damage : {true, false}) {
        std::uint64_t rest = 0;
        for (std::size_t i = 0; i < kLooks.size(); ++i) {
            if (kLooks[i].damage == damage) rest += chart_.totals[i].blocks;
        }
        for (std::size_t i = 0; i < kLooks.size(); ++i) {
            const std::uint64_t blocks = chart_.totals[i].blocks;
            if (kLooks[i].damage != damage || blocks == 0) continue;
            const std::uint64_t room = damage ? kGrid : kRight - x;
            const std::uint64_t whole = damage ? chart_.block_count : rest;
            auto width = static_cast<unsigned int>(room * blocks / whole);
            if (damage) width = std::max(width, 3u);
            if (!damage) rest -= blocks;
            Rectangle(x, 72, width, 14, kLooks[i].color);
            x += width;
        }
    }
}

void Picture::Scale() {
    constexpr unsigned int kEvery = 8;
    const std::string end = " text-anchor=\"end\"" + Fill(kFaint);
    Text(kLeft - 10, kTop - 8, "reference", end);
    Text(kRight + 10, kTop - 8, "offset", Fill(kFaint));
    for (unsigned int column = 0; column < Chart::kColumns; column += kEvery) {
        Text(kLeft + column * kCell, kTop - 8,
             std::string(column == 0 ? "" : "+") + Grouped(column * chart_.blocks_per_cell),
             " font-size=\"10\"" + Fill(kFaint));
    }
    for (unsigned int row = 0; row < chart_.Rows(); ++row) {
        const std::uint64_t reference = chart_.ReferenceOf(std::size_t{row} * Chart::kColumns);
        const unsigned int y = kTop + row * kCell + kSide - 2;
        Text(kLeft - 10, y, Grouped(reference), " text-anchor=\"end\" font-size=\"11\"");
        Text(kRight + 10, y, Grouped(Bytes(reference)), " font-size=\"11\"" + Fill(kFaint));
    }
}

// Each cell is filled from the left by its owners in proportion, damage first and never too thin.
// What is wrong beyond that gets a frame.
void Picture::Blocks() {
    std::array<std::string, CT_RecordCheck::kOwners> paths;
    std::string frames;
    for (std::size_t i = 0; i < chart_.cells.size(); ++i) {
        const Chart::Cell& cell = chart_.cells[i];
        const auto x = kLeft + static_cast<unsigned int>(i % Chart::kColumns) * kCell;
        const auto y = kTop + static_cast<unsigned int>(i / Chart::kColumns) * kCell;
        std::uint64_t rest = 0;
        for (const std::uint32_t blocks : cell.blocks) rest += blocks;
        unsigned int used = 0;
        for (const bool damage : {true, false}) {
            for (std::size_t owner = 0; owner < kLooks.size(); ++owner) {
                const std::uint64_t blocks = cell.blocks[owner];
                if (kLooks[owner].damage != damage || blocks == 0) continue;
                auto width = static_cast<unsigned int>((kSide - used) * blocks / rest);
                if (damage) width = std::clamp(width, 4u, kSide - used);
                if (width != 0) paths[owner] += Box(x + used, y, width);
                used += width;
                rest -= blocks;
            }
        }
        if (cell.damaged) {
            frames += Box(x, y, kSide);
        }
    }
    for (std::size_t owner = 0; owner < kLooks.size(); ++owner) {
        if (paths[owner].empty()) continue;
        svg_ += "<path fill=\"" + std::string(kLooks[owner].color) + "\" d=\"" + paths[owner] +
                "\"/>\n";
    }
    if (frames.empty()) return;
    svg_ += "<path fill=\"none\" stroke=\"" + std::string(kDamage) +
            "\" stroke-width=\"2.5\" d=\"" + frames + "\"/>\n";
}

void Picture::Legend() {
    constexpr unsigned int kNumbers[] = {kLeft + 400, kLeft + 520, kLeft + 610, kLeft + 700};
    const std::string end = " text-anchor=\"end\"";
    unsigned int y = legend_;
    Text(kLeft, y,
         "One cell is " + Counted(chart_.blocks_per_cell, "block", "blocks") + ", " +
             Counted(chart_.blocks_per_cell * chart_.block_size, "byte", "bytes"),
         " font-weight=\"bold\"");
    constexpr const char* kHeads[] = {"blocks", "bytes", "share", "runs"};
    for (std::size_t i = 0; i < std::size(kHeads); ++i) {
        Text(kNumbers[i], y, kHeads[i], end + Fill(kFaint));
    }
    for (std::size_t i = 0; i < kLooks.size(); ++i) {
        y += kLine;
        const Chart::Total& total = chart_.totals[i];
        Rectangle(kLeft, y - 10, kSide, kSide, kLooks[i].color);
        Text(kLeft + 20, y, kLooks[i].text);
        const std::string values[] = {Grouped(total.blocks), Grouped(Bytes(total.blocks)),
                                      Percent(total.blocks, chart_.block_count),
                                      Grouped(total.runs)};
        for (std::size_t k = 0; k < std::size(values); ++k) Text(kNumbers[k], y, values[k], end);
    }
    y += kLine;
    Rectangle(kLeft + 1, y - 9, kSide - 2, kSide - 2, "none",
              std::string(" stroke=\"") + kDamage + "\" stroke-width=\"2.5\"");
    Text(kLeft + 20, y, "something is wrong here");
}

void Picture::Findings() {
    if (Listed() == 0) return;
    unsigned int y = findings_ + 14;
    Text(kLeft, y, "Findings", " font-weight=\"bold\"" + Fill(kDamage));
    for (unsigned int i = 0; i < Listed(); ++i) {
        const auto& finding = chart_.findings[i];
        y += kLine;
        Text(kLeft, y, "offset " + Grouped(finding.offset), Fill(kFaint));
        Text(kLeft + 140, y, CT_RecordCheck::sqccz_GetText(finding.kind));
    }
    if (chart_.finding_count > Listed()) {
        Text(kRight, y, "and " + Grouped(chart_.finding_count - Listed()) + " more",
             " text-anchor=\"end\"" + Fill(kFaint));
    }
}

}  // namespace

std::string DrawChart(const Chart& chart) {
    return Picture(chart).Draw();
}

}  // namespace zelkor::cli
