// The item length rule, the player and its pictures.
#include "mcs/player.h"

#include <string>

#include <gtest/gtest.h>

#include "common/testing.h"
#include "mcs/big_endian.h"
#include "mcs/mcs_testing.h"
#include "mcs/rendering.h"
#include "mcs/stepper.h"

namespace grolof {
namespace {

using namespace testing_support;

// --- Lengths of items -------------------------------------------------------------------------

TEST(Stepper, LengthOfEveryItem) {
    const std::pair<const char*, std::size_t> cases[] = {
        {"C0", 1},
        {"C1", 1},
        {"FF", 1},
        {"80 00 00 00", 4},
        {"BF 14 00 00", 4},
        {"00 13 00", 3},
        {"05 93 02", 8},
        {"7F 93 02", 130},
        {"00 14 00", 3},
        {"7F 14 00", 3},
        {"05 15 04", 3},
        {"00 90 02", 3},
        {"05 90 02", 4},
        {"00 1F 00", 19},
        {"04 9F 00", 7},
        {"05 11 00", 3},
        {"05 12 00", 3},
        {"05 16 00", 3},
        {"05 17 00", 3},
        {"05 18 00", 3},
        {"05 19 00", 3},
        {"05 1A 00", 3},
        {"05 1B 00", 3},
        {"05 9C 40", 3},
        {"05 1D 00", 3},
        {"05 1E 00", 3},
        // Fields, without and with initial text.
        {"05 00 42", 3},
        {"05 01 02", 3},
        {"05 01 42", 8},
        {"05 02 02", 3},
        {"05 02 42", 8},
        {"05 04 02", 3},
        {"05 04 42", 8},
        {"05 05 42", 8},
        {"05 06 42", 8},
        {"05 07 42", 8},
        {"05 08 42", 8},
        {"05 09 42", 8},
        {"05 0A 42", 8},
        {"05 0B 42", 8},
        {"05 0B 82", 3},
        {"05 0C 02", 10},
        {"05 0C 42", 15},
        {"05 0D 42", 3},
        {"05 0E 42", 3},
        {"05 0F 42", 3},
        {"05 E2 52", 8},
        // Continuations, each 3 bytes, and the item that ends them with all their columns.
        {"05 03 02 04 02 02", 6},
        {"05 03 02 04 02 42", 15},
        {"05 03 02 06 03 02 04 02 42", 24},
        {"05 03 02 04 0C 02", 17},
        {"05 03 02 04 0C 42", 26},
        {"7F 03 00 7F 03 00 7F 01 40", 390},
        {"05 03 02 04 00 42", 6},
        {"05 03 02", 6}, // with what is behind the stream: zeros
    };
    for (const auto& [hex, length] : cases) {
        EXPECT_EQ(NextItem(FromHex(hex), 0), length) << hex;
        EXPECT_EQ(NextItem(FromHex(std::string("C1 C1 ") + hex), 2), length + 2) << hex;
    }
}

TEST(Stepper, ReadsZerosBehindTheStream) {
    EXPECT_EQ(NextItem(FromHex(""), 0), 3U);
    EXPECT_EQ(NextItem(FromHex("C1"), 7), 10U);
    EXPECT_EQ(NextItem(FromHex("05"), 0), 3U);
    EXPECT_EQ(NextItem(FromHex("05 03"), 0), 6U);
}

// --- Playing ----------------------------------------------------------------------------------

// A file with a header of a form of so many rows and columns, and a stream.
Bytes FileWith(const std::string& hex, int rows = 2, int columns = 10) {
    Bytes file(kMcsHeaderSize);
    const Bytes stream = FromHex(hex);
    file[8] = static_cast<std::uint8_t>(rows);
    file[9] = static_cast<std::uint8_t>(columns);
    file[28] = 0xC1;
    file[30] = 0x3A;
    file[31] = 1;
    file[46] = 0xFF;
    Put16(&file[38], static_cast<std::int64_t>(stream.size()));
    file.insert(file.end(), stream.begin(), stream.end());
    return file;
}

PlayedScreen Play(const std::string& hex) {
    PlayedScreen screen;
    const auto error = PlayMcs(FileWith(hex), screen);
    EXPECT_FALSE(error) << error->Offset << ": " << error->Message;
    return screen;
}

std::string ItemsOf(const std::string& hex) {
    return RenderItems(Play(hex));
}

using Rows = std::vector<std::string>;

TEST(Player, ReadsTheHeader) {
    Screen made;
    made.TheForm->Group = "ORDERS";
    made.TheForm->Name = "ENTRY";
    made.TheForm->FormType = FormKind::Bms;
    made.TheForm->Intensity = 4;
    AddField(made, 2, 3, 5).Protected = 1;
    AddField(made, 4, 7, 6).InitialCursor = 1;
    PlayedScreen screen;
    ASSERT_FALSE(PlayMcs(Compacted(made), screen));
    const ScreenSummary& summary = screen.Summary;
    EXPECT_EQ(summary.Group, "ORDERS");
    EXPECT_EQ(summary.Name, "ENTRY");
    EXPECT_EQ(summary.Rows, 24);
    EXPECT_EQ(summary.Columns, 80);
    EXPECT_EQ(summary.BufferLength, 16);
    EXPECT_EQ(summary.DataLength, 11);
    EXPECT_EQ(summary.InputLength, 6);
    EXPECT_EQ(summary.FieldCount, 2);
    EXPECT_EQ(summary.CursorRow, 4);
    EXPECT_EQ(summary.CursorColumn, 7);
    EXPECT_EQ(summary.FirstRow, 4);
    EXPECT_EQ(summary.FirstColumn, 7);
    EXPECT_EQ(summary.FormFlags, 0x90);
    EXPECT_EQ(summary.Display, 1);
    EXPECT_EQ(screen.Rows.size(), 24U);
}

TEST(Player, PaintsTextsAndSkips) {
    const PlayedScreen screen = Play("C2 02 93 02 41 42 C1 01 13 02 43 00 14 00 01 93 02 44");
    EXPECT_EQ(screen.Rows, (Rows{"  AB C", "D"})); // the last row needs no line item
    EXPECT_EQ(RenderItems(screen), "  1   3   2  text    3  'AB'\n"
                                   "  1   6   1  text    3  'C'\n"
                                   "  2   1   1  text    3  'D'\n");
}

TEST(Player, PlaysEveryKindOfItem) {
    EXPECT_EQ(
        ItemsOf("05 02 02 03 82 42 41 42 43 04 9C 02 03 90 02 00 00 90 02 82 00 00 00 01 13 02 "
                "58"),
        "  1   1   5  entry   2\n"
        "  1   6   3  output  2  'ABC'\n"
        "  1   9   4  system 12\n"
        "  1  13   3  system  0\n"
        "  1  16   0  system  0\n"
        "  1  16   2  item    0\n"
        "  1  18   1  text    3  'X'\n");
    EXPECT_EQ(ItemsOf("03 0C 42 01 02 39 2E 39 20 2E 35 01 13 00 58"),
              "  1   1   3  entry  12  9.9  ' .5'\n"
              "  1   4   1  text    3  'X'\n");
    // Table items take no columns: n + 3 bytes, or 19.
    EXPECT_EQ(ItemsOf("02 1F 00 41 41 00 1F 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 "
                      "01 13 00 58"),
              "  1   1   1  text    3  'X'\n");
}

TEST(Player, KeepsWhatAnEditedFieldCarries) {
    const PlayedScreen screen = Play("03 2C 92 D2 05 39 2E 39");
    ASSERT_EQ(screen.Items.size(), 1U);
    EXPECT_EQ(screen.Items[0].B1, 0x2C);
    EXPECT_EQ(screen.Items[0].B2, 0x92);
    EXPECT_EQ(screen.Items[0].Edits, 0xD2);
    EXPECT_EQ(screen.Items[0].Digits, 5);
    EXPECT_EQ(screen.Items[0].Picture, "9.9");
    EXPECT_EQ(screen.Items[0].Text, "");
}

TEST(Player, KeepsTheFlagsOfEveryItem) {
    // A field, a constant text, a system value.
    const PlayedScreen screen = Play("01 42 A1 01 D3 82 58 03 9C 84");
    ASSERT_EQ(screen.Items.size(), 3U);
    const std::pair<int, int> flags[] = {{0x42, 0xA1}, {0xD3, 0x82}, {0x9C, 0x84}};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(screen.Items[i].B1, flags[i].first) << i;
        EXPECT_EQ(screen.Items[i].B2, flags[i].second) << i;
        EXPECT_EQ(screen.Items[i].Edits, 0) << i;
        EXPECT_EQ(screen.Items[i].Digits, 0) << i;
    }
}

TEST(Player, ChainsContinuations) {
    EXPECT_EQ(ItemsOf("02 03 02 01 03 02 01 02 42 41 42 43 44 01 13 00 58"),
              "  1   1   4  entry   2  'ABCD'\n"
              "  1   5   1  text    3  'X'\n");
}

TEST(Player, RepeatsRows) {
    const PlayedScreen screen = Play("01 93 02 41 02 02 02 02 14 00 01 14 00 01 93 02 42 00 14 00");
    EXPECT_EQ(screen.Rows, (Rows{"A", "A", "A", "", "", "B"}));
    EXPECT_EQ(RenderItems(screen), "  1   1   1  text    3  'A'\n"
                                   "  1   2   2  entry   2\n"
                                   "  2   1   1  text    3  'A'\n"
                                   "  2   2   2  entry   2\n"
                                   "  3   1   1  text    3  'A'\n"
                                   "  3   2   2  entry   2\n"
                                   "  6   1   1  text    3  'B'\n");
}

TEST(Player, RepeatsRuns) {
    EXPECT_EQ(Play("01 93 02 41 02 15 04").Rows, (Rows{"AAA"}));
    EXPECT_EQ(Play("01 93 02 42 01 93 02 41 C1 01 15 05").Rows, (Rows{"BA A"}));
    EXPECT_EQ(Play("01 93 02 41 00 15 04").Rows, (Rows{"A"}));
}

TEST(Player, ExpandsRunsBeforeItCutsRows) {
    // A run that ends a row and begins the next: "A", line, "B", twice more; then a line item
    // that repeats what was played since the last one.
    EXPECT_EQ(Play("01 93 02 41 00 14 00 01 93 02 42 01 15 0B 01 14 00").Rows,
              (Rows{"A", "BA", "B", "B"}));
}

TEST(Player, PlaysRunsWithinRuns) {
    // "A" three times; and the 11 bytes from the second item on, repeat item included, once more.
    EXPECT_EQ(Play("01 93 02 42 01 93 02 41 02 15 04 01 15 07").Rows, (Rows{"BAAAAAA"}));
}

TEST(Player, PlaysNothing) {
    const PlayedScreen screen = Play("");
    EXPECT_TRUE(screen.Rows.empty());
    EXPECT_TRUE(screen.Items.empty());
}

// --- Bad files --------------------------------------------------------------------------------

std::string ErrorOf(const Bytes& file) {
    PlayedScreen screen;
    const auto error = PlayMcs(file, screen);
    return error ? std::to_string(error->Offset) + ": " + error->Message : "none";
}

TEST(BadFile, HeaderBytes) {
    const std::pair<std::size_t, const char*> cases[] = {
        {2, "2: no MCS header: the byte is 55, not 00"},
        {3, "3: no MCS header: the byte is 55, not 00"},
        {28, "28: no MCS header: the byte is 55, not C1"},
        {30, "30: no MCS header: the byte is 55, not 3A"},
        {31, "31: no MCS header: the byte is 55, not 01"},
        {36, "36: no MCS header: the byte is 55, not 00"},
        {37, "37: no MCS header: the byte is 55, not 00"},
        {46, "46: no MCS header: the byte is 55, not FF"},
        {47, "47: no MCS header: the byte is 55, not 00"},
    };
    for (const auto& [offset, message] : cases) {
        Bytes file = FileWith("");
        file[offset] = 0x55;
        EXPECT_EQ(ErrorOf(file), message);
    }
}

TEST(BadFile, Lengths) {
    EXPECT_EQ(ErrorOf({}), "0: the header of 48 bytes is cut short");
    Bytes file = FileWith("C1 C1");
    EXPECT_EQ(ErrorOf(Bytes(file.begin(), file.begin() + 47)),
              "47: the header of 48 bytes is cut short");
    Put16(&file[38], 3);
    EXPECT_EQ(ErrorOf(file), "38: the header tells of 3 bytes of items, 2 follow");
    Put16(&file[38], 1);
    EXPECT_EQ(ErrorOf(file), "38: the header tells of 1 bytes of items, 2 follow");
    Put16(&file[38], -2);
    EXPECT_EQ(ErrorOf(file), "38: the header tells of -2 bytes of items, 2 follow");
}

TEST(BadFile, ItemsCutShort) {
    const std::pair<const char*, const char*> cases[] = {
        {"C1 05", "50: the item that starts at byte 49 is cut short"},
        {"05 93", "50: the item that starts at byte 48 is cut short"},
        {"02 93 02 41", "52: the item that starts at byte 48 is cut short"},
        {"02 02 42 41", "52: the item that starts at byte 48 is cut short"},
        {"02 0C 02 00 02 39", "54: the item that starts at byte 48 is cut short"},
        {"81 00 00", "51: the item that starts at byte 48 is cut short"},
        {"01 90 00", "51: the item that starts at byte 48 is cut short"},
        {"00 14", "50: the item that starts at byte 48 is cut short"},
        {"02 03 02", "51: the item that starts at byte 48 is cut short"},
    };
    for (const auto& [hex, message] : cases)
        EXPECT_EQ(ErrorOf(FileWith(hex)), message) << hex;
}

TEST(BadFile, Continuations) {
    const std::string message = "49: a continuation that no field ends";
    EXPECT_EQ(ErrorOf(FileWith("C1 02 03 02 01 93 02 41")), message);
    EXPECT_EQ(ErrorOf(FileWith("C1 02 03 02 C1 00 00 00")), message);
    EXPECT_EQ(ErrorOf(FileWith("C1 02 03 02 81 02 00 00 00 00 00")), message);
}

TEST(BadFile, Repeats) {
    EXPECT_EQ(ErrorOf(FileWith("01 93 02 41 01 15 03")),
              "54: a repeat item of a run that is not 4 to 254 bytes long");
    EXPECT_EQ(ErrorOf(FileWith("01 93 02 41 01 15 FF")),
              "54: a repeat item of a run that is not 4 to 254 bytes long");
    const std::string message = "54: a repeat item of a run that does not begin with an item";
    EXPECT_EQ(ErrorOf(FileWith("01 93 02 41 01 15 05")), message);
    EXPECT_EQ(ErrorOf(FileWith("C1 C1 C1 C1 01 15 FE")), message);
    EXPECT_EQ(ErrorOf(FileWith("02 93 02 C1 C1 01 15 04")),
              "55: a repeat item of a run that does not begin with an item");
}

TEST(BadFile, PicturesTooLarge) {
    // Each repeat item plays all in front of it 128 times.
    std::string hex = "01 93 02 41";
    for (int i = 0; i < 20; ++i)
        hex += " 7F 15 " + Hex(Bytes{static_cast<std::uint8_t>(4 + 3 * i)});
    EXPECT_TRUE(
        ErrorOf(FileWith(hex)).ends_with(": the repeats make a picture too large to paint"));
    // Rows, each a million columns wide.
    hex.clear();
    for (int i = 0; i < 16000; ++i)
        hex += "FF ";
    hex += "01 93 02 41 7F 14 00";
    EXPECT_EQ(ErrorOf(FileWith(hex)), "16052: the repeats make a picture too large to paint");
}

TEST(BadFile, CutAnywhere) {
    Screen made;
    List& children = made.Children();
    for (int row = 2; row < 20; ++row) {
        AddField(children, row, 20, 8).InitialValue = row % 3 == 0 ? "A" : "B";
        AddHeading(children, row, 5, "TEXT");
    }
    Bytes file = Compacted(made);
    EXPECT_EQ(ErrorOf(file), "none");
    for (std::size_t size = 0; size < file.size(); ++size) {
        Bytes cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_NE(ErrorOf(cut), "none") << size;
        if (size < kMcsHeaderSize)
            continue;
        // With a length that is right: none, where an item ends, or an error inside the file.
        Put16(&cut[38], static_cast<std::int64_t>(size - kMcsHeaderSize));
        PlayedScreen screen;
        const auto error = PlayMcs(cut, screen);
        EXPECT_TRUE(!error || error->Offset == size) << size;
    }
}

TEST(BadFile, AnyByteChanged) {
    Screen made;
    for (int row = 2; row < 8; ++row)
        AddHeading(made.Children(), row, 3 * row, "TEXT");
    const Bytes file = Compacted(made);
    for (std::size_t at = 0; at < file.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            Bytes changed = file;
            changed[at] = static_cast<std::uint8_t>(value);
            PlayedScreen screen;
            const auto error = PlayMcs(changed, screen);
            EXPECT_TRUE(!error || error->Offset <= file.size());
        }
    }
}

// --- Pictures ---------------------------------------------------------------------------------

TEST(Rendering, FramesTheScreenAndMarksItsFields) {
    PlayedScreen screen;
    ASSERT_FALSE(PlayMcs(FileWith("02 93 02 41 1E C1 05 02 42 42 20 43 20 20 02 82 02 00 14 00 "
                                  "C1 03 9C 02 02 93 02 FF 7F 04 82 42 44 20 45 20 00 14 00 "
                                  "02 02 42 20 20",
                                  3, 10),
                         screen));
    EXPECT_EQ(RenderScreen(screen), "+----------+\n"
                                    "|A> B C__..|\n"
                                    "| ###??D E |\n"
                                    "|__        |\n"
                                    "+----------+\n");
}

TEST(Rendering, ShowsWhatIsNoPrintableAsciiAsAQuestionMark) {
    PlayedScreen screen;
    ASSERT_FALSE(PlayMcs(FileWith("05 93 02 1F 20 7E 7F 80", 1, 5), screen));
    EXPECT_EQ(RenderScreen(screen), "+-----+\n|? ~??|\n+-----+\n");
}

TEST(Rendering, ShowsAllRowsOfTheForm) {
    PlayedScreen screen;
    ASSERT_FALSE(PlayMcs(FileWith("01 93 02 41", 3, 4), screen));
    EXPECT_EQ(RenderScreen(screen), "+----+\n|A   |\n|    |\n|    |\n+----+\n");
}

TEST(Rendering, GrowsWithWhatStandsOutside) {
    PlayedScreen screen;
    ASSERT_FALSE(PlayMcs(FileWith("C3 03 02 02 00 14 00 01 93 02 41 00 14 00", 1, 4), screen));
    EXPECT_EQ(RenderScreen(screen), "+------+\n|   ___|\n|A     |\n+------+\n");
}

TEST(Rendering, CutsWhatIsTooLarge) {
    PlayedScreen screen;
    const std::string row = "FF FF FF FF FF 01 93 02 41 7F 02 02 7F 14 00 ";
    ASSERT_FALSE(PlayMcs(FileWith(row + row + row), screen));
    EXPECT_EQ(screen.Rows.size(), 384U);
    const std::string text = RenderScreen(screen);
    EXPECT_EQ(text.size(), 257U * 258U); // 255 rows and two edges; 255 columns, two edges, line end
    EXPECT_EQ(text.find_first_not_of("+-| \n"), std::string::npos);
}

TEST(Rendering, OfNothing) {
    PlayedScreen screen;
    EXPECT_EQ(RenderScreen(screen), "++\n++\n");
    EXPECT_EQ(RenderItems(screen), "");
}

} // namespace
} // namespace grolof
