// Fields: every type, flag, system value and picture. Expected bytes are worked out by hand.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "mcs/big_endian.h"
#include "mcs/edit_picture.h"
#include "mcs/mcs_testing.h"
#include "mcs/plain_picture.h"

namespace grolof {
namespace {

using namespace testing_support;

// A screen with one field of 5 columns in row 1, column 1.
struct OneField {
    Screen TheScreen;
    Form& form = *TheScreen.TheForm;
    Field& field = AddField(TheScreen, 1, 1, 5);

    // Hex of the item: the stream without the tail that is expected behind it.
    std::string Item() {
        std::string stream = StreamOf(TheScreen);
        const std::string tail = " " + TailFrom(1 + field.Width);
        EXPECT_TRUE(stream.ends_with(tail)) << stream;
        stream.resize(stream.size() - std::min(stream.size(), tail.size()));
        return stream;
    }
};

std::string ItemOf(void (*set)(Form&, Field&)) {
    OneField one;
    set(one.form, one.field);
    return one.Item();
}

// --- Alphanumeric, alphabetic -----------------------------------------------------------------

TEST(TextField, Types) {
    struct Case {
        int DataType, Case, Justification, IgnoreCase, IgnoreJustification;
        const char* Item;
    };
    const Case cases[] = {
        {1, 1, 1, 0, 0, "05 02 02"}, {1, 2, 1, 0, 0, "05 01 02"},  {1, 1, 1, 1, 0, "05 01 02"},
        {2, 1, 1, 0, 0, "05 04 02"}, {2, 2, 1, 1, 0, "05 04 02"},  {1, 1, 3, 0, 0, "05 06 02"},
        {1, 2, 3, 0, 0, "05 05 02"}, {1, 1, 3, 1, 0, "05 05 02"},  {2, 1, 3, 0, 0, "05 07 02"},
        {1, 1, 3, 0, 1, "05 02 02"}, {1, 2, 3, 0, 1, "05 01 02"},  {2, 1, 3, 0, 1, "05 04 02"},
        {1, 1, 2, 0, 0, "05 02 02"}, {2, 1, 2, 0, 0, "05 04 02"},  {0, 1, 1, 0, 0, "05 02 02"},
        {4, 3, 4, 0, 0, "05 02 02"}, {-3, 1, 3, 0, 0, "05 06 02"},
    };
    for (const Case& c : cases) {
        OneField one;
        one.field.DataType = c.DataType;
        one.field.Case = c.Case;
        one.field.Justification = c.Justification;
        one.form.IgnoreCase = c.IgnoreCase;
        one.form.IgnoreJustification = c.IgnoreJustification;
        EXPECT_EQ(one.Item(), c.Item) << c.DataType << c.Case << c.Justification << c.IgnoreCase;
    }
}

TEST(TextField, Flags) {
    EXPECT_EQ(ItemOf([](Form&, Field& f) { f.Protected = 1; }), "05 82 02");
    EXPECT_EQ(ItemOf([](Form&, Field& f) { f.TabStop = 1; }), "05 42 02");
    EXPECT_EQ(ItemOf([](Form&, Field& f) { f.SetModified = 1; }), "05 02 82");
    EXPECT_EQ(ItemOf([](Form&, Field& f) { f.Protected = f.TabStop = f.SetModified = -1; }),
              "05 C2 82");
    // What only numeric fields heed.
    EXPECT_EQ(ItemOf([](Form& form, Field& f) {
                  form.InputBlankWhenZero = 1;
                  f.BlankIsZero = f.BlankWhenZero = f.LeadingZeros = f.FloatingSign = 1;
                  f.Decimals = 2;
                  f.Contents = 2;
              }),
              "05 02 02");
}

TEST(TextField, InitialText) {
    const std::pair<const char*, const char*> cases[] = {
        {"AB", "05 02 42 41 42 20 20 20"},    {"", "05 02 42 20 20 20 20 20"},
        {"ABCDE", "05 02 42 41 42 43 44 45"}, {">AB", "05 02 42 1E 41 42 20 20"},
        {">", "05 02 42 1E 20 20 20 20"},     {"A>", "05 02 42 41 3E 20 20 20"},
    };
    for (const auto& [text, item] : cases) {
        OneField one;
        one.field.InitialValue = text;
        EXPECT_EQ(one.Item(), item) << text;
    }
}

TEST(TextField, LongerInitialTextRunsOn) {
    OneField one;
    one.field.InitialValue = "ABCDEFGH"; // F, G and H stand where the next items begin
    // The tail writes its bytes over them: 81 - 6 = 75 columns, "FF CC 00".
    EXPECT_EQ(one.Item(), "05 02 42 41 42 43 44 45");

    // Fields behind it add their flags to what they find: B0 is "F" (46), replaced; B1 "G" (47)
    // keeps its high nibble, B2 "H" (48) too.
    AddField(one.TheScreen, 1, 6, 2);
    EXPECT_EQ(StreamOf(one.TheScreen), "05 02 42 41 42 43 44 45 02 42 42 " + TailFrom(8));
}

TEST(TextField, HeadingsAndSystemValuesKeepTheDisplayByteOfALongerText) {
    OneField one;
    one.field.InitialValue = "ABCDEpqr"; // 70 71 72
    AddHeading(one.TheScreen, 1, 6, "X");
    EXPECT_EQ(StreamOf(one.TheScreen), "05 02 42 41 42 43 44 45 01 93 72 58 " + TailFrom(7));
    OneField other;
    other.field.InitialValue = "ABCDEpqr";
    Field& system = AddField(other.TheScreen, 1, 6, 3);
    system.Contents = 4;
    system.Value = 2;
    EXPECT_EQ(StreamOf(other.TheScreen), "05 02 42 41 42 43 44 45 03 9C 72 " + TailFrom(9));
    // The closing blank is written whole, whatever stood there.
    OneField full;
    full.field.Row = 24;
    full.field.Column = 75;
    full.field.InitialValue = "ABCDEpqrstuv";
    EXPECT_TRUE(StreamOf(full.TheScreen).ends_with("05 02 42 41 42 43 44 45 01 93 02 20 00 14 00"));
}

TEST(TextField, Widths) {
    const auto field = [](int width, const Text& text) {
        Screen screen;
        AddField(screen, 1, 1, width).InitialValue = text;
        return StreamOf(screen);
    };
    EXPECT_EQ(field(0, std::nullopt), "00 02 02 " + TailFrom(1));
    EXPECT_EQ(field(0, ""), "00 02 42 " + TailFrom(1));
    EXPECT_EQ(field(127, std::nullopt), "7F 02 02 " + TailFrom(128));
    // Not to be represented: they read as a four-byte item and a skip, and as 44 columns.
    EXPECT_EQ(field(128, std::nullopt), "80 02 02 " + TailFrom(129));
    EXPECT_EQ(field(200, std::nullopt), "C8 02 02 " + TailFrom(201));
    EXPECT_EQ(field(300, std::nullopt), "2C 02 02 " + TailFrom(301));
    // Negative: no bytes, and the column goes back: 81 - 0 = 81 columns, 63 + 18.
    EXPECT_EQ(field(-1, std::nullopt), "FF 02 02 " + TailFrom(0));
}

// --- System values ----------------------------------------------------------------------------

TEST(SystemValue, Items) {
    const std::pair<int, const char*> cases[] = {
        {2, "05 9C 02"},
        {3, "05 9D 02"},
        {4, "05 9D 02"},
        {5, "05 9D 02"},
        {6, "05 9D 02"},
        {7, "05 97 02"},
        {8, "05 97 02"},
        {9, "05 96 02"},
        {10, "05 96 02"},
        {11, "05 98 02"},
        {12, "05 98 02"},
        {13, "05 98 02"},
        {14, "05 9B 02"},
        {15, "05 9B 02"},
        {20, "04 9A 02"},
        {21, "04 9A 02"},
        // Unknown: a fourth byte, which readers step over.
        {0, "05 90 02 00"},
        {1, "05 90 02 00"},
        {27, "05 90 02 00"},
        {-1, "05 90 02 00"},
        {2147483647, "05 90 02 00"},
    };
    for (const auto& [value, item] : cases) {
        OneField one;
        one.field.Contents = 4;
        one.field.Value = value;
        // What ordinary fields heed counts for nothing.
        one.field.DataType = 3;
        one.field.InitialValue = "TEXT";
        one.field.TabStop = one.field.SetModified = 1;
        EXPECT_EQ(one.Item(), item) << value;
    }
}

TEST(SystemValue, UnknownOfNoWidthIsThreeBytes) {
    Screen screen;
    AddField(screen, 1, 1, 0).Contents = 4;
    EXPECT_EQ(StreamOf(screen), "00 90 02 " + TailFrom(1));
    Screen wide; // the byte counts
    AddField(wide, 1, 1, 256).Contents = 4;
    EXPECT_EQ(StreamOf(wide), "00 90 02 " + TailFrom(257));
}

TEST(SystemValue, WithoutItemLeavesItsPlaceToTheNext) {
    for (const int value : {16, 17, 18, 19, 22, 23, 24, 25, 26}) {
        Screen screen;
        Field& field = AddField(screen, 1, 3, 5);
        field.Contents = 4;
        field.Value = value;
        AddField(screen, 1, 3, 1);
        // It is moved to (two columns), and then nothing.
        EXPECT_EQ(StreamOf(screen), "C2 01 02 02 " + TailFrom(4)) << value;
    }
}

// --- Plain numeric ----------------------------------------------------------------------------

TEST(NumericField, PlainTypes) {
    struct Case {
        int LeadingZeros, BlankWhenZero, Justification, IgnoreJustification;
        const char* Item; // B2 bit 10 (or, justification ignored, B1 bit 20): blank is no zero
    };
    const Case cases[] = {
        {1, 0, 1, 0, "05 09 12"}, {1, 0, 2, 0, "05 08 12"}, {1, 0, 3, 0, "05 09 12"},
        {1, 0, 2, 1, "05 29 02"}, {1, 1, 1, 0, "05 29 12"}, {1, 1, 2, 0, "05 28 12"},
        {0, 1, 1, 0, "05 0A 12"}, {0, 1, 2, 0, "05 0B 12"}, {0, 1, 2, 1, "05 2A 02"},
        {0, 1, 3, 0, "05 0A 12"},
    };
    for (const Case& c : cases) {
        OneField one;
        one.field.DataType = 3;
        one.field.LeadingZeros = c.LeadingZeros;
        one.field.BlankWhenZero = c.BlankWhenZero;
        one.field.Justification = c.Justification;
        one.form.IgnoreJustification = c.IgnoreJustification;
        EXPECT_EQ(one.Item(), c.Item);
    }
}

TEST(NumericField, ZeroFlags) {
    struct Case {
        int BlankIsZero, BlankWhenZero, InputBlankWhenZero, IgnoreJustification, Contents;
        const char* Item; // of a field with leading zeros, type 9
    };
    const Case cases[] = {
        {0, 0, 0, 0, 1, "05 09 12"}, {1, 0, 0, 0, 1, "05 09 02"}, {1, 0, 1, 0, 1, "05 09 02"},
        {1, 1, 0, 0, 1, "05 29 02"}, {1, 1, 1, 0, 1, "05 29 12"}, {1, 1, 1, 1, 1, "05 29 12"},
        {0, 1, 1, 1, 1, "05 29 02"}, {1, 0, 0, 0, 2, "05 29 02"}, {1, 0, 0, 0, 3, "05 09 02"},
    };
    for (const Case& c : cases) {
        OneField one;
        one.field.DataType = 3;
        one.field.LeadingZeros = 1;
        one.field.BlankIsZero = c.BlankIsZero;
        one.field.BlankWhenZero = c.BlankWhenZero;
        one.field.Contents = c.Contents;
        one.form.InputBlankWhenZero = c.InputBlankWhenZero;
        one.form.IgnoreJustification = c.IgnoreJustification;
        EXPECT_EQ(one.Item(), c.Item);
    }
}

TEST(NumericField, TheZeroDisplayOfContents2IsForLeadingZeros) {
    EXPECT_EQ(ItemOf([](Form&, Field& f) {
                  f.DataType = 3;
                  f.BlankWhenZero = 1;
                  f.Contents = 2;
              }),
              "05 0A 12");
}

TEST(NumericField, PlainWithInitialText) {
    EXPECT_EQ(ItemOf([](Form&, Field& f) {
                  f.DataType = 3;
                  f.LeadingZeros = 1;
                  f.InitialValue = "007";
              }),
              "05 09 52 30 30 37 20 20");
}

TEST(NumericField, NegativeDecimalsAreNone) {
    EXPECT_EQ(ItemOf([](Form&, Field& f) {
                  f.DataType = 3;
                  f.LeadingZeros = 1;
                  f.Decimals = -1;
              }),
              "05 09 12");
}

// --- Edited numeric ---------------------------------------------------------------------------

TEST(EditedField, AnyEditMakesIt) {
    // B3, B4 and the picture of 5 follow. "Z" 5A, "9" 39, "," 2C, "." 2E.
    EXPECT_EQ(ItemOf([](Form&, Field& f) { f.DataType = 3; }), "05 0C 12 00 05 5A 5A 5A 5A 39");
    EXPECT_EQ(ItemOf([](Form&, Field& f) {
                  f.DataType = 3;
                  f.Decimals = 2;
              }),
              "05 0C 12 02 04 5A 39 2E 39 39");
    EXPECT_EQ(ItemOf([](Form&, Field& f) {
                  f.DataType = 3;
                  f.LeadingZeros = f.InsertDelimiters = 1;
              }),
              "05 0C 12 00 04 39 2C 39 39 39"); // m = 5: one comma at 1
    EXPECT_EQ(ItemOf([](Form&, Field& f) {
                  f.DataType = 3;
                  f.BlankWhenZero = f.FloatingCurrency = 1;
              }),
              "05 0C 12 80 04 20 5A 5A 5A 39");
    EXPECT_EQ(ItemOf([](Form&, Field& f) {
                  f.DataType = 3;
                  f.LeadingZeros = f.FloatingSign = 1;
              }),
              "05 0C 12 10 04 20 39 39 39 39");
    EXPECT_EQ(ItemOf([](Form&, Field& f) {
                  f.DataType = 3;
                  f.BlankWhenZero = f.TrailingSign = 1;
              }),
              "05 0C 12 20 04 5A 5A 5A 39 20");
}

TEST(EditedField, ZeroDisplayWithDecimals) {
    const auto item = [](int blankWhenZero, int contents, int decimals) {
        OneField one;
        one.field.DataType = 3;
        one.field.BlankIsZero = 1;
        one.field.Decimals = decimals;
        one.field.FloatingSign = 1;
        one.field.BlankWhenZero = blankWhenZero;
        one.field.Contents = contents;
        return one.Item();
    };
    EXPECT_EQ(item(0, 1, 1), "05 0C 02 11 03 20 5A 39 2E 39");
    EXPECT_EQ(item(1, 1, 1), "05 2C 02 11 03 20 5A 39 2E 39");
    EXPECT_EQ(item(0, 2, 1), "05 2C 02 11 03 20 5A 39 2E 39");
    EXPECT_EQ(item(1, 2, 0), "05 0C 02 10 04 20 5A 5A 5A 5A"); // none without decimals
}

TEST(EditedField, WithInitialText) {
    // Header, decimals, digits, picture, and then the text: 5 + 2 x 5 bytes.
    EXPECT_EQ(ItemOf([](Form&, Field& f) {
                  f.DataType = 3;
                  f.Decimals = 2;
                  f.InitialValue = "1.5";
              }),
              "05 0C 52 02 04 5A 39 2E 39 39 31 2E 35 20 20");
    EXPECT_EQ(ItemOf([](Form&, Field& f) {
                  f.DataType = 3;
                  f.Decimals = 2;
                  f.InitialValue = ">";
              }),
              "05 0C 52 02 04 5A 39 2E 39 39 1E 20 20 20 20");
    // A longer text runs on under the tail.
    EXPECT_EQ(ItemOf([](Form&, Field& f) {
                  f.DataType = 3;
                  f.Decimals = 2;
                  f.InitialValue = "123456789";
              }),
              "05 0C 52 02 04 5A 39 2E 39 39 31 32 33 34 35");
}

TEST(EditedField, DigitsThatAreNegative) {
    Screen screen;
    Field& field = AddField(screen, 1, 1, 1);
    field.DataType = 3;
    field.FloatingCurrency = field.FloatingSign = field.TrailingSign = 1; // d = 1 - 3
    // The currency's blank is the picture; all else falls behind or in front of it: e = 2 - 2 =
    // 0, so the trailing sign's blank stands on it as well.
    EXPECT_EQ(StreamOf(screen), "01 0C 12 B0 FE 20 " + TailFrom(2));
    const Bytes header = Uncompacted(screen);
    EXPECT_EQ(Get16(&header[4]), -2);
    EXPECT_EQ(Get16(&header[6]), -2);
    EXPECT_EQ(Get16(&header[34]), -2);
    EXPECT_EQ(Get16(&header[0]), 0); // rounded up to a multiple of 4
}

struct PictureCase {
    int Width, Decimals;
    const char* Switches; // c currency, s sign, t trailing, i delimiters, l leading zeros,
                          // w blank when zero, z blank is zero, 2 contents 2
    const char* Picture;  // '?' where nothing is written
    int Digits;
};

Field FieldOf(int width, int decimals, const std::string& switches) {
    const auto has = [&](char c) { return switches.find(c) != std::string::npos ? 1 : 0; };
    Field field;
    field.Type = RecordType::Field;
    field.DataType = 3;
    field.Width = width;
    field.Decimals = decimals;
    field.FloatingCurrency = has('c');
    field.FloatingSign = has('s');
    field.TrailingSign = has('t');
    field.InsertDelimiters = has('i');
    field.LeadingZeros = has('l');
    field.BlankWhenZero = has('w');
    field.BlankIsZero = has('z');
    field.Contents = has('2') != 0 ? 2 : 1;
    return field;
}

std::string PictureIn(const Bytes& bytes) {
    std::string text(bytes.begin(), bytes.end());
    for (char& c : text)
        c = c == '\0' ? '?' : c;
    return text;
}

TEST(EditPicture, ByHand) {
    const PictureCase cases[] = {
        {7, 0, "", "ZZZZZZ9", 7},
        {7, 0, "l", "9999999", 7},
        {7, 0, "z", "ZZZZZZZ", 7},
        {7, 0, "w", "ZZZZZZ9", 7},
        {7, 0, "w2", "ZZZZZZZ", 7},
        {7, 0, "2", "ZZZZZZ9", 7},
        {7, 0, "wz", "ZZZZZZZ", 7},
        {7, 0, "i", "ZZZ,ZZ9", 6},
        {8, 0, "i", ",ZZZ,ZZ9", 6}, // m = 8: two commas, the first at 0
        {9, 0, "i", "Z,ZZZ,ZZ9", 7},
        {4, 0, "i", ",ZZ9", 3},
        {3, 0, "i", "ZZ9", 3},
        {1, 0, "i", "9", 1},
        {10, 0, "cs", "  ZZZZZZZ9", 8},
        {10, 0, "cst", "  ZZZZZZ9 ", 7},
        {12, 0, "csti", "  Z,ZZZ,ZZ9 ", 7}, // m = 9
        {10, 2, "", "ZZZZZZ9.99", 9},
        {10, 2, "l", "9999999.99", 9},
        {10, 2, "z", "ZZZZZZ9.99", 9}, // the units digit is always shown
        {10, 2, "i", "ZZZ,ZZ9.99", 8},
        {12, 2, "cti", " ZZZ,ZZ9.99 ", 8}, // m = 12 - 3 - 2 = 7
        {3, 2, "", ".99", 2},              // no integer digits: decimals behind the point
        {4, 2, "", "9.99", 3},
        {4, 3, "", ".999", 3},
        {5, 4, "t", "9999 ", 3}, // e = 3 - 4 = -1: nines from 0, the point falls in front
        {2, 2, "", "99", 1},     // e = -1
        {1, 4, "", "9", 0},      // e = -4: nines from -3 to 0
        {1, 1, "", "9", 0},      // e = -1
        {2, 0, "cs", " 9", 0},   // e = 2: the last position is the sign's
        {1, 0, "c", "9", 0},
        {1, 0, "cz", " ", 0},
        {2, 0, "cst", "9 ", -1}, // e = 1: a nine at 0, the trailing sign at 1
        {6, -1, "c", " ZZZZZ", 5},
        {6, -1, "ct", " ZZZZZ", 4}, // five integer positions, the trailing sign behind the last
        {0, 2, "", "", -1},
    };
    for (const PictureCase& c : cases) {
        const Field field = FieldOf(c.Width, c.Decimals, c.Switches);
        Bytes picture(static_cast<std::size_t>(c.Width));
        const EditPicture edit = MakeEditPicture(field, picture);
        EXPECT_EQ(PictureIn(picture), c.Picture) << c.Width << ' ' << c.Decimals << c.Switches;
        EXPECT_EQ(edit.Digits, c.Digits) << c.Width << ' ' << c.Decimals << c.Switches;
    }
}

TEST(EditPicture, EveryCombinationAgreesWithThePlainFormulation) {
    const std::string letters = "cstilwz2";
    int pictures = 0;
    for (int width = 1; width <= 20; ++width) {
        for (int decimals = -1; decimals <= 5; ++decimals) {
            for (unsigned set = 0; set < 256; ++set) {
                std::string switches;
                for (unsigned i = 0; i < letters.size(); ++i)
                    switches += (set >> i & 1U) != 0 ? std::string(1, letters[i]) : "";
                const Field field = FieldOf(width, decimals, switches);
                const PlainPicture plain = PictureOf(field);
                Bytes picture(static_cast<std::size_t>(width));
                const EditPicture edit = MakeEditPicture(field, picture);
                ASSERT_EQ(std::string(picture.begin(), picture.end()), plain.Characters)
                    << width << ' ' << decimals << switches;
                ASSERT_EQ(edit.Digits, plain.Digits);
                ASSERT_EQ(edit.Flags, plain.Flags);
                ASSERT_EQ(edit.ShowsBlankAsZero, plain.ZeroDisplay);
                ++pictures;
            }
        }
    }
    EXPECT_EQ(pictures, 20 * 7 * 256);
}

TEST(EditPicture, HugeNumbersStayInside) {
    for (const int decimals : {2147483647, -2147483647 - 1, 1 << 30}) {
        for (const int width : {2147483647, -2147483647 - 1, 1 << 30, 0, 1}) {
            for (const char* switches : {"", "csti", "cstilwz"}) {
                Bytes picture(8);
                const EditPicture edit = MakeEditPicture(FieldOf(width, decimals, switches),
                                                         std::span(picture).first(4));
                EXPECT_EQ(edit.Flags & 0x0F, decimals & 0x0F);
                EXPECT_EQ(Hex(std::span(picture).subspan(4)), "00 00 00 00");
            }
        }
    }
}

} // namespace
} // namespace grolof
