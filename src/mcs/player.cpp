#include "mcs/player.h"

#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

#include "mcs/big_endian.h"
#include "mcs/stepper.h"

namespace grolof {

namespace {

// What a file may make us paint: characters, and rows and items by a weight. Far above any
// screen, and small enough for repeats of repeats to be stopped at once.
constexpr std::size_t kMostPainted = 2'000'000;
constexpr std::size_t kItemWeight = 16;

// The state of a play.
struct Player {
    std::span<const std::uint8_t> Stream;
    PlayedScreen& Screen;
    std::optional<PlayError> Error;
    std::vector<bool> Starts; // positions at which an item starts
    std::string Row;          // texts of the row being painted
    std::size_t RowItems = 0; // index of its first item in Screen.Items
    std::int64_t Column = 1;  // where the next item stands
    std::size_t Painted = 0;  // counts towards kMostPainted
    bool IsOpen = false;      // something was played since the last line item
};

// Messages name the byte of the file, header included.
void Fail(Player& player, std::size_t at, std::string message) {
    if (!player.Error)
        player.Error = PlayError{kMcsHeaderSize + at, std::move(message)};
}

bool Paint(Player& player, std::size_t at, std::size_t amount) {
    player.Painted += amount;
    if (player.Painted > kMostPainted)
        Fail(player, at, "the repeats make a picture too large to paint");
    return !player.Error;
}

std::string TextAt(const Player& player, std::size_t at, std::size_t n) {
    const auto bytes = player.Stream.subspan(at, n);
    return {bytes.begin(), bytes.end()};
}

// Writes a text into the row at the current column.
void PaintText(Player& player, std::size_t at, std::string_view text) {
    const auto from = static_cast<std::size_t>(player.Column - 1);
    const std::size_t to = from + text.size();
    if (text.empty())
        return;
    if (to > player.Row.size() && Paint(player, at, to - player.Row.size()))
        player.Row.resize(to, ' ');
    if (!player.Error)
        player.Row.replace(from, text.size(), text);
}

// Places an item at the current column of the row being painted and moves behind it.
void Place(Player& player, std::size_t at, PlacedItem item) {
    if (!Paint(player, at, kItemWeight + item.Text.size() + item.Picture.size()))
        return;
    item.Row = static_cast<std::int64_t>(player.Screen.Rows.size()) + 1;
    item.Column = player.Column;
    PaintText(player, at, item.Text);
    player.Column += item.Width;
    player.Screen.Items.push_back(std::move(item));
}

// Shows the row painted last once more.
void RepeatRow(Player& player, std::size_t at, std::size_t first, std::size_t last) {
    PlayedScreen& screen = player.Screen;
    if (!Paint(player, at, screen.Rows.back().size() + (1 + last - first) * kItemWeight))
        return;
    for (std::size_t i = first; i < last && !player.Error; ++i) {
        PlacedItem item = screen.Items[i];
        item.Row = static_cast<std::int64_t>(screen.Rows.size()) + 1;
        Paint(player, at, item.Text.size() + item.Picture.size());
        screen.Items.push_back(std::move(item));
    }
    screen.Rows.push_back(screen.Rows.back());
}

void EndRow(Player& player, std::size_t at, std::size_t repeats) {
    const std::size_t first = player.RowItems;
    const std::size_t last = player.Screen.Items.size();
    player.Screen.Rows.push_back(std::move(player.Row));
    Paint(player, at, kItemWeight);
    for (std::size_t i = 0; i < repeats && !player.Error; ++i)
        RepeatRow(player, at, first, last);
    player.Row.clear();
    player.RowItems = player.Screen.Items.size();
    player.Column = 1;
    player.IsOpen = false;
}

void PlayRange(Player& player, std::size_t from, std::size_t to);

// Plays the bytes in front of a repeat item again. They must begin with an item. Runs of runs
// are no danger: each level at least doubles what is painted, which is bounded.
void PlayRepeat(Player& player, std::size_t at) {
    const std::size_t length = player.Stream[at + 2];
    if (length < kMcsShortestRun || length > kMcsLongestRun)
        return Fail(player, at + 2, "a repeat item of a run that is not 4 to 254 bytes long");
    if (length > at || !player.Starts[at - length])
        return Fail(player, at + 2, "a repeat item of a run that does not begin with an item");
    for (unsigned i = 0; i < player.Stream[at] && !player.Error; ++i)
        PlayRange(player, at - length, at);
}

PlacedItem NewItem(PlacedKind kind, std::size_t width, std::uint8_t b1, std::uint8_t b2) {
    PlacedItem item;
    item.Kind = kind;
    item.Width = static_cast<std::int64_t>(width);
    item.B1 = b1;
    item.B2 = b2;
    return item;
}

void PlaySystemValue(Player& player, std::size_t at) {
    const auto& stream = player.Stream;
    Place(player, at, NewItem(PlacedKind::SystemValue, stream[at], stream[at + 1], stream[at + 2]));
}

void PlayConstantText(Player& player, std::size_t at) {
    const auto& stream = player.Stream;
    PlacedItem item = NewItem(PlacedKind::ConstantText, stream[at], stream[at + 1], stream[at + 2]);
    item.Text = TextAt(player, at + kMcsItemHead, stream[at]);
    Place(player, at, std::move(item));
}

void PlayControl(Player& player, std::size_t at) {
    switch (player.Stream[at + 1] & kMcsControlMask) {
    case kMcsConstantText:
        return PlayConstantText(player, at);
    case kMcsLine:
        return EndRow(player, at, player.Stream[at]);
    case kMcsRepeat:
        return PlayRepeat(player, at);
    case kMcsTableItem:
        return; // takes no columns
    default:
        return PlaySystemValue(player, at);
    }
}

// Plays a field and the continuations in front of it, which make it wider.
void PlayField(Player& player, std::size_t at) {
    const auto& stream = player.Stream;
    const std::size_t start = at;
    std::size_t n = 0;
    for (; IsContinuation(ByteAt(stream, at), ByteAt(stream, at + 1)); at += kMcsItemHead)
        n += stream[at];
    const std::uint8_t b1 = ByteAt(stream, at + 1);
    if (at >= stream.size() || !IsHeaded(stream[at]) || (b1 & kMcsControl) != 0)
        return Fail(player, start, "a continuation that no field ends");
    n += stream[at];
    PlacedItem item = NewItem(PlacedKind::Field, n, b1, stream[at + 2]);
    std::size_t text = at + kMcsItemHead;
    if ((b1 & kMcsTypeMask) == kMcsEdited) {
        item.Edits = stream[at + 3];
        item.Digits = stream[at + 4];
        item.Picture = TextAt(player, at + kMcsEditedHead, n);
        text = at + kMcsEditedHead + n;
    }
    if (NextItem(stream, start) > text)
        item.Text = TextAt(player, text, n);
    Place(player, start, std::move(item));
}

void PlayItem(Player& player, std::size_t at) {
    const std::uint8_t b0 = player.Stream[at];
    const std::uint8_t b1 = ByteAt(player.Stream, at + 1);
    player.IsOpen = true;
    if (IsSkip(b0))
        player.Column += b0 & kMcsColumnsMask;
    else if (!IsHeaded(b0))
        Place(player, at, NewItem(PlacedKind::FourByte, b0 & kMcsColumnsMask, 0, 0));
    else if ((b1 & kMcsControl) != 0)
        PlayControl(player, at);
    else
        PlayField(player, at);
}

// Plays the items from one position up to another. Each is whole before it is looked at.
void PlayRange(Player& player, std::size_t from, std::size_t to) {
    while (from < to && !player.Error) {
        const std::size_t at = std::exchange(from, NextItem(player.Stream, from));
        if (from > player.Stream.size())
            return Fail(player, player.Stream.size(),
                        "the item that starts at byte " + std::to_string(kMcsHeaderSize + at) +
                            " is cut short");
        player.Starts[at] = true;
        if (Paint(player, at, 1))
            PlayItem(player, at);
    }
}

std::string NameAt(std::span<const std::uint8_t> file, std::size_t offset) {
    std::string name(file.begin() + static_cast<std::ptrdiff_t>(offset),
                     file.begin() + static_cast<std::ptrdiff_t>(offset + kMcsNameWidth));
    name.resize(name.find_last_not_of(' ') + 1);
    return name;
}

ScreenSummary SummaryOf(std::span<const std::uint8_t> file) {
    const std::uint8_t* header = file.data();
    return {
        .Group = NameAt(file, kMcsGroup),
        .Name = NameAt(file, kMcsName),
        .Rows = header[kMcsRows],
        .Columns = header[kMcsColumns],
        .BufferLength = Get16(header + kMcsBufferLength),
        .DataLength = Get16(header + kMcsDataLength),
        .InputLength = Get16(header + kMcsInputLength),
        .FieldCount = Get16(header + kMcsFieldCount),
        .CursorRow = header[kMcsCursorRow],
        .CursorColumn = header[kMcsCursorColumn],
        .FirstRow = header[kMcsFirstRow],
        .FirstColumn = header[kMcsFirstColumn],
        .StreamLength = Get16(header + kMcsStreamLength),
        .FormFlags = header[kMcsFormFlags],
        .Display = header[kMcsDisplay],
    };
}

// The bytes that are the same in every header.
struct FixedByte {
    std::size_t Offset;
    std::uint8_t Value;
};
constexpr std::array<FixedByte, 9> kFixedBytes = {{
    {kMcsBufferLength + 2, 0},
    {kMcsBufferLength + 3, 0},
    {kMcsMark, kMcsMarkByte},
    {kMcsColon, kMcsColonByte},
    {kMcsOne, kMcsOneByte},
    {kMcsReserved, 0},
    {kMcsReserved + 1, 0},
    {kMcsEndMark, kMcsEndMarkByte},
    {kMcsEndZero, 0},
}};

PlayError WrongByte(std::size_t offset, unsigned is, unsigned expected) {
    std::array<char, 64> text;
    std::snprintf(text.data(), text.size(), "no MCS header: the byte is %02X, not %02X", is,
                  expected);
    return {offset, text.data()};
}

std::optional<PlayError> CheckHeader(std::span<const std::uint8_t> file) {
    if (file.size() < kMcsHeaderSize)
        return PlayError{file.size(), "the header of 48 bytes is cut short"};
    for (const FixedByte& fixed : kFixedBytes) {
        if (file[fixed.Offset] != fixed.Value)
            return WrongByte(fixed.Offset, file[fixed.Offset], fixed.Value);
    }
    const int length = Get16(&file[kMcsStreamLength]);
    const auto follows = file.size() - kMcsHeaderSize;
    if (length < 0 || static_cast<std::size_t>(length) != follows)
        return PlayError{kMcsStreamLength, "the header tells of " + std::to_string(length) +
                                               " bytes of items, " + std::to_string(follows) +
                                               " follow"};
    return {};
}

} // namespace

std::optional<PlayError> PlayMcs(std::span<const std::uint8_t> file, PlayedScreen& screen) {
    screen = {};
    if (auto error = CheckHeader(file))
        return error;
    screen.Summary = SummaryOf(file);
    const auto stream = file.subspan(kMcsHeaderSize);
    Player player{.Stream = stream, .Screen = screen, .Error = {}, .Starts = {}, .Row = {}};
    player.Starts.resize(stream.size());
    PlayRange(player, 0, stream.size());
    if (player.IsOpen)
        EndRow(player, stream.size(), 0);
    return player.Error;
}

} // namespace grolof
