#include "mcs/rendering.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace grolof {

namespace {

constexpr std::int64_t kMostShown = 255;

using Canvas = std::vector<std::string>;

char Shown(char c) {
    if (c == static_cast<char>(kMcsEntryMark))
        return '>';
    return c >= ' ' && c <= '~' ? c : '?';
}

std::string ShownText(std::string text) {
    std::ranges::transform(text, text.begin(), Shown);
    return text;
}

// How blanks of an item are shown; the blank itself leaves them.
char MarkOf(const PlacedItem& item) {
    switch (item.Kind) {
    case PlacedKind::Field:
        return (item.B1 & kMcsProtected) != 0 ? '.' : '_';
    case PlacedKind::SystemValue:
        return '#';
    case PlacedKind::ConstantText:
    case PlacedKind::FourByte:
        break;
    }
    return ' ';
}

Canvas BlankCanvas(const PlayedScreen& screen) {
    std::int64_t columns = screen.Summary.Columns;
    for (const PlacedItem& item : screen.Items)
        columns = std::max(columns, item.Column - 1 + item.Width);
    const auto rows =
        std::max(static_cast<std::int64_t>(screen.Rows.size()), std::int64_t{screen.Summary.Rows});
    return Canvas(static_cast<std::size_t>(std::min(rows, kMostShown)),
                  std::string(static_cast<std::size_t>(std::min(columns, kMostShown)), ' '));
}

void PaintTexts(Canvas& canvas, const PlayedScreen& screen) {
    for (std::size_t row = 0; row < std::min(canvas.size(), screen.Rows.size()); ++row) {
        const std::string& text = screen.Rows[row];
        const std::size_t shown = std::min(text.size(), canvas[row].size());
        std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(shown),
                       canvas[row].begin(), Shown);
    }
}

// Where in an item the blanks begin that are marked. In a field with a text only those that an
// entry leaves free behind it are.
std::int64_t FirstMarked(const PlacedItem& item) {
    if (item.Text.empty())
        return 0;
    const bool isOutput = (item.B1 & kMcsProtected) != 0;
    const std::size_t length = item.Text.find_last_not_of(' ') + 1;
    return isOutput ? item.Width : static_cast<std::int64_t>(length);
}

void MarkItem(Canvas& canvas, const PlacedItem& item) {
    const auto row = static_cast<std::size_t>(item.Row - 1);
    if (row >= canvas.size())
        return;
    const auto width = static_cast<std::int64_t>(canvas[row].size());
    const std::int64_t from = std::min(item.Column - 1 + FirstMarked(item), width);
    const std::int64_t to = std::min(item.Column - 1 + item.Width, width);
    std::replace(canvas[row].begin() + from, canvas[row].begin() + to, ' ', MarkOf(item));
}

const char* KindName(const PlacedItem& item) {
    switch (item.Kind) {
    case PlacedKind::ConstantText:
        return "text";
    case PlacedKind::Field:
        return (item.B1 & kMcsProtected) != 0 ? "output" : "entry";
    case PlacedKind::SystemValue:
        return "system";
    case PlacedKind::FourByte:
        break;
    }
    return "item";
}

std::string RenderItem(const PlacedItem& item) {
    std::array<char, 96> head;
    std::snprintf(head.data(), head.size(), "%3lld %3lld %3lld  %-6s %2d",
                  static_cast<long long>(item.Row), static_cast<long long>(item.Column),
                  static_cast<long long>(item.Width), KindName(item), item.B1 & kMcsTypeMask);
    std::string line = head.data();
    if (!item.Picture.empty())
        line += "  " + ShownText(item.Picture);
    if (!item.Text.empty())
        line += "  '" + ShownText(item.Text) + "'";
    return line + '\n';
}

} // namespace

std::string RenderScreen(const PlayedScreen& screen) {
    Canvas canvas = BlankCanvas(screen);
    PaintTexts(canvas, screen);
    for (const PlacedItem& item : screen.Items)
        MarkItem(canvas, item);
    const std::string edge =
        '+' + std::string(canvas.empty() ? 0 : canvas.front().size(), '-') + "+\n";
    std::string text = edge;
    for (const std::string& row : canvas)
        text += '|' + row + "|\n";
    return text + edge;
}

std::string RenderItems(const PlayedScreen& screen) {
    std::string text;
    for (const PlacedItem& item : screen.Items)
        text += RenderItem(item);
    return text;
}

} // namespace grolof
