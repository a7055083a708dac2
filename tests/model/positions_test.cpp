#include "model/positions.h"

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "model/records.h"

namespace grolof {
namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

Field* FieldAt(std::int32_t row, std::int32_t column) {
    Field* field = CreateField();
    field->Row = row;
    field->Column = column;
    return field;
}

Image* ImageAt(std::int32_t row, std::int32_t column, std::initializer_list<Record*> children) {
    Image* image = CreateImage();
    image->Row = row;
    image->Column = column;
    for (Record* child : children)
        ListAppend(ChildrenOf(*image), child);
    return image;
}

struct Repeats {
    std::int32_t Count, Direction, Height, Width, Spacing;
};

Image* Repeated(Image* image, const Repeats& repeats) {
    image->Type = RecordType::RepeatImage;
    image->Count = repeats.Count;
    image->Direction = repeats.Direction;
    image->Height = repeats.Height;
    image->Width = repeats.Width;
    image->Spacing = repeats.Spacing;
    return image;
}

Heading* HeadingAt(std::int32_t row, std::int32_t column, const char* text) {
    Heading* heading = CreateHeading();
    heading->Row = row;
    heading->Column = column;
    heading->Width = static_cast<std::int32_t>(std::string(text).size());
    heading->InitialValue = text;
    return heading;
}

// A screen of one form that holds the records.
RecordList Screen(std::initializer_list<Record*> records, std::int32_t width = 80) {
    RecordList screen(ListCreate());
    Form* form = CreateForm();
    form->Width = width;
    ListAppend(*screen, form);
    for (Record* record : records)
        ListAppend(ChildrenOf(*form), record);
    return screen;
}

// A screen whose records follow the form in its list.
RecordList FlatScreen(std::initializer_list<Record*> records) {
    RecordList screen(ListCreate());
    ListAppend(*screen, CreateForm());
    for (Record* record : records)
        ListAppend(*screen, record);
    return screen;
}

// All positions where a field starts on the 24 by 80 screen and some way around, as "row,column".
std::string StartsOf(const List& screen) {
    const FieldPositions fields = CollectFieldPositions(screen);
    std::string starts;
    for (std::int64_t row = -5; row <= 60; ++row)
        for (std::int64_t column = -100; column <= 200; ++column)
            if (FieldAtPosition(fields, row, column))
                starts += std::to_string(row) + "," + std::to_string(column) + " ";
    return starts;
}

TEST(FieldAtPosition, IsTheFirstPositionOnly) {
    Field* wide = FieldAt(2, 5);
    wide->Width = 10;
    wide->Height = 3;
    const RecordList screen = Screen({wide});
    EXPECT_TRUE(FieldAtPosition(*screen, 2, 5));
    EXPECT_FALSE(FieldAtPosition(*screen, 2, 6));
    EXPECT_FALSE(FieldAtPosition(*screen, 3, 5));
    EXPECT_FALSE(FieldAtPosition(*screen, 2, 4));
    EXPECT_EQ(StartsOf(*screen), "2,5 ");
}

TEST(FieldAtPosition, EmptyScreenHasNone) {
    EXPECT_EQ(StartsOf(List{}), "");
    EXPECT_EQ(StartsOf(*Screen({})), "");
}

TEST(FieldAtPosition, ColumnsBeyondTheWidthWrap) {
    EXPECT_EQ(StartsOf(*Screen({FieldAt(2, 85)})), "3,5 ");
    EXPECT_EQ(StartsOf(*Screen({FieldAt(2, 80)})), "2,80 ");
    EXPECT_EQ(StartsOf(*Screen({FieldAt(2, 81)})), "3,1 ");
    EXPECT_EQ(StartsOf(*Screen({FieldAt(1, 161)})), "3,1 ");
    EXPECT_EQ(StartsOf(*Screen({FieldAt(2, 85)}, 132)), "2,85 ");
    EXPECT_EQ(StartsOf(*Screen({FieldAt(1, 4)}, 1)), "4,1 ");
}

// Division and remainder are cut towards zero.
TEST(FieldAtPosition, ColumnsBelowOneStandOutside) {
    EXPECT_EQ(StartsOf(*Screen({FieldAt(2, 0)})), "2,0 ");
    EXPECT_EQ(StartsOf(*Screen({FieldAt(2, -3)})), "2,-3 ");
    EXPECT_EQ(StartsOf(*Screen({FieldAt(2, -80)})), "1,0 "); // -81 is once -80 and -1
    EXPECT_EQ(StartsOf(*Screen({FieldAt(2, 81)}, -80)), "1,1 ");
}

TEST(FieldAtPosition, FormOfWidthZeroHasNone) {
    EXPECT_EQ(StartsOf(*Screen({FieldAt(1, 1), ImageAt(2, 2, {FieldAt(1, 1)})}, 0)), "");
}

TEST(FieldAtPosition, RecordsBehindTheFormCount) {
    EXPECT_EQ(StartsOf(*FlatScreen({FieldAt(3, 7), HeadingAt(4, 1, "X"), FieldAt(5, 81)})),
              "3,7 6,1 ");
}

TEST(FieldAtPosition, EveryFormCountsWithItsWidth) {
    RecordList screen = Screen({FieldAt(1, 50)}, 40);
    RecordList second = Screen({FieldAt(1, 50)}, 60);
    ListAppend(*screen, ListPopFront(*second));
    EXPECT_EQ(StartsOf(*screen), "1,50 2,10 ");
}

TEST(FieldAtPosition, HeadingsAndUnknownRecordsArePassedOver) {
    Heading stranger;
    stranger.Type = static_cast<RecordType>(9);
    ListAppend(ChildrenOf(stranger), FieldAt(9, 9));
    const RecordList screen = FlatScreen({HeadingAt(1, 1, "TEXT"), &stranger, FieldAt(2, 2)});
    EXPECT_EQ(StartsOf(*screen), "2,2 ");
}

TEST(FieldAtPosition, AFieldInFrontOfEveryFormHasNoPlace) {
    RecordList screen(ListCreate());
    ListAppend(*screen, FieldAt(3, 1));
    EXPECT_EQ(StartsOf(*screen), "");
    ListAppend(*screen, CreateForm());
    EXPECT_EQ(StartsOf(*screen), "");
}

TEST(FieldAtPosition, ImagesShiftTheirChildrenAndNothingElse) {
    EXPECT_EQ(StartsOf(*Screen({ImageAt(3, 10, {FieldAt(2, 5)}), FieldAt(1, 1)})), "1,1 4,14 ");
    // Nested images add up; a sum beyond the width wraps.
    EXPECT_EQ(StartsOf(*Screen({ImageAt(3, 50, {ImageAt(2, 40, {FieldAt(1, 1)}), FieldAt(1, 1)})})),
              "3,50 5,9 ");
    // A plain image occurs once, whatever its count says.
    Image* counted = ImageAt(1, 1, {FieldAt(1, 1)});
    counted->Count = 3;
    EXPECT_EQ(StartsOf(*Screen({counted})), "1,1 ");
}

TEST(FieldAtPosition, VerticalRepetitionsAreAHeightApartAndIgnoreTheSpacing) {
    EXPECT_EQ(StartsOf(*Screen({Repeated(ImageAt(5, 3, {FieldAt(1, 2)}), {3, 1, 2, 20, 7})})),
              "5,4 7,4 9,4 ");
}

TEST(FieldAtPosition, HorizontalRepetitionsAreWidthAndSpacingApart) {
    EXPECT_EQ(StartsOf(*Screen({Repeated(ImageAt(5, 3, {FieldAt(1, 2)}), {4, 2, 2, 20, 7})})),
              "5,4 5,31 5,58 6,5 ");
    for (const std::int32_t direction : {0, 3, -1})
        EXPECT_EQ(
            StartsOf(*Screen({Repeated(ImageAt(1, 1, {FieldAt(1, 1)}), {2, direction, 2, 20, 0})})),
            "1,1 1,21 ");
}

TEST(FieldAtPosition, RepeatImagesNest) {
    Image* inner = Repeated(ImageAt(1, 1, {FieldAt(1, 1)}), {2, 2, 1, 10, 0});
    EXPECT_EQ(StartsOf(*Screen({Repeated(ImageAt(2, 2, {inner}), {2, 1, 3, 30, 0})})),
              "2,2 2,12 5,2 5,12 ");
}

TEST(FieldAtPosition, RepeatImagesWithoutOccurrenceOrChildrenAreNotPlayed) {
    EXPECT_EQ(StartsOf(*Screen({Repeated(ImageAt(1, 1, {FieldAt(1, 1)}), {0, 1, 1, 1, 0})})), "");
    EXPECT_EQ(StartsOf(*Screen({Repeated(ImageAt(1, 1, {FieldAt(1, 1)}), {-1, 1, 1, 1, 0})})), "");
    EXPECT_EQ(StartsOf(*Screen({Repeated(ImageAt(1, 1, {}), {3, 1, 1, 1, 0}), FieldAt(2, 2)})),
              "2,2 ");
}

TEST(FieldAtPosition, ExtremeNumbersAreHarmless) {
    for (const std::int32_t number : {kLeast, kLeast + 1, -1, 0, kMost}) {
        Image* inner = Repeated(ImageAt(number, number, {FieldAt(number, number)}),
                                {3, 1, number, number, number});
        Image* outer = Repeated(ImageAt(number, number, {inner}), {3, 2, number, number, number});
        for (const std::int32_t width : {kLeast, -1, 1, 80, kMost}) {
            Field* marker = FieldAt(1, 1);
            const RecordList screen = Screen({outer, marker}, width);
            EXPECT_TRUE(FieldAtPosition(*screen, 1, 1));
            ListPopFront(ChildrenOf(*screen->First->Data)); // the outer image is used again
        }
        DestroyRecord(outer);
    }
}

// Places that agree in their low 32 bits are still different places.
TEST(FieldAtPosition, FarPlacesAreNotTakenForNearOnes) {
    const RecordList screen = Screen({FieldAt(1, 5)});
    constexpr std::int64_t kTurn = std::int64_t{1} << 32;
    EXPECT_TRUE(FieldAtPosition(*screen, 1, 5));
    EXPECT_FALSE(FieldAtPosition(*screen, 1, 5 + kTurn));
    EXPECT_FALSE(FieldAtPosition(*screen, 1 + kTurn, 5));
}

TEST(ExpandedCount, CountsEveryRepetition) {
    EXPECT_EQ(ExpandedCount(List{}), 0);
    EXPECT_EQ(ExpandedCount(*FlatScreen({FieldAt(1, 1), HeadingAt(1, 9, "X")})), 3);
    const RecordList once = Screen({Repeated(ImageAt(1, 1, {FieldAt(1, 1)}), {1, 1, 1, 1, 0})});
    const RecordList thrice = Screen({Repeated(ImageAt(1, 1, {FieldAt(1, 1)}), {3, 1, 1, 1, 0})});
    EXPECT_GT(ExpandedCount(*thrice), ExpandedCount(*once));
    const RecordList never = Screen({Repeated(ImageAt(1, 1, {FieldAt(1, 1)}), {0, 1, 1, 1, 0})});
    EXPECT_LT(ExpandedCount(*never), ExpandedCount(*once));
}

TEST(ExpandedCount, StopsAboveItsLimit) {
    const auto repeated = [](std::int32_t count, Record* child) {
        return Repeated(ImageAt(1, 1, {child}), {count, 1, 0, 0, 0});
    };
    EXPECT_EQ(ExpandedCount(*Screen({repeated(kMost, FieldAt(1, 1))})), kMostRecords + 1);
    EXPECT_LE(ExpandedCount(*Screen({repeated(400'000, FieldAt(1, 1))})), kMostRecords);
    Record* nested = FieldAt(1, 1);
    for (int level = 0; level < kDeepestNesting; ++level)
        nested = repeated(kMost, nested);
    EXPECT_EQ(ExpandedCount(*Screen({nested})), kMostRecords + 1);
}

TEST(ExpandedCount, ImageWithoutContentsCostsNothingHoweverOftenItOccurs) {
    const RecordList screen =
        Screen({Repeated(ImageAt(1, 1, {}), {kMost, 1, 1, 1, 0}), FieldAt(2, 2)});
    EXPECT_LE(ExpandedCount(*screen), kMostRecords);
    EXPECT_EQ(StartsOf(*screen), "2,2 ");
}

TEST(FieldAtPosition, ExplodingScreenKeepsItsFirstRepetitionsAndWhatIsBehindThem) {
    const RecordList screen =
        Screen({Repeated(ImageAt(1, 1, {FieldAt(1, 1)}), {kMost, 1, 1, 1, 0}),
                Repeated(ImageAt(1, 1, {FieldAt(1, 3)}), {kMost, 1, 1, 1, 0}), FieldAt(2, 2)});
    const FieldPositions found = CollectFieldPositions(*screen);
    for (const Position at : {Position{1, 1}, {24, 1}, {1, 3}, {2, 2}})
        EXPECT_TRUE(FieldAtPosition(found, at.Row, at.Column)) << at.Row << ',' << at.Column;
}

TEST(Offsets, AddUp) {
    const RecordList screen = Screen({Repeated(ImageAt(4, 6, {}), {3, 1, 2, 10, 5})});
    Image& image = AsImage(*FormOf(*screen)->Children->First->Data);
    EXPECT_EQ(ImageOffset(image, {10, 20}).Row, 13);
    EXPECT_EQ(ImageOffset(image, {10, 20}).Column, 25);
    EXPECT_EQ(RepetitionOffset(image, {10, 20}, 2).Row, 17);
    EXPECT_EQ(RepetitionOffset(image, {10, 20}, 2).Column, 25);
    image.Direction = 2;
    EXPECT_EQ(RepetitionOffset(image, {10, 20}, 2).Row, 13);
    EXPECT_EQ(RepetitionOffset(image, {10, 20}, 2).Column, 55);
}

// The headings of a list with everything in it, as "row,column,width:text|".
std::string HeadingsOf(const List* list) {
    std::string texts;
    if (list == nullptr)
        return texts;
    for (Record& record : *list) {
        if (record.Type == RecordType::Heading) {
            const Heading& heading = AsHeading(record);
            texts += std::to_string(heading.Row) + "," + std::to_string(heading.Column) + "," +
                     std::to_string(heading.Width) + ":" + heading.InitialValue.value_or("(none)") +
                     "|";
        } else {
            texts += HeadingsOf(record.Children.get());
        }
    }
    return texts;
}

std::string MergedHeadings(const RecordList& screen) {
    MergeHeadings(*screen);
    return HeadingsOf(screen.get());
}

TEST(MergeHeadings, JoinsNeighboursOneBlankApart) {
    EXPECT_EQ(MergedHeadings(Screen({HeadingAt(1, 5, "ORDER"), HeadingAt(1, 11, "ENTRY")})),
              "1,5,11:ORDER ENTRY|");
}

TEST(MergeHeadings, GoesOnWithTheJoinedHeading) {
    const RecordList screen =
        Screen({HeadingAt(1, 1, "A"), HeadingAt(1, 3, "BC"), HeadingAt(1, 6, "D"),
                HeadingAt(1, 9, "E"), HeadingAt(1, 11, "F")});
    EXPECT_EQ(MergedHeadings(screen), "1,1,6:A BC D|1,9,3:E F|");
    EXPECT_EQ(ListCount(*FormOf(*screen)->Children), 2);
}

TEST(MergeHeadings, KeepsWhatTheFirstHeadingHas) {
    Heading* first = HeadingAt(1, 1, "A");
    first->Highlight = 4;
    first->Intensity = 3;
    const RecordList screen = Screen({first, HeadingAt(1, 3, "B")});
    MergeHeadings(*screen);
    EXPECT_EQ(first->InitialValue, "A B");
    EXPECT_EQ(first->Highlight, 4);
    EXPECT_EQ(first->Intensity, 3);
}

TEST(MergeHeadings, LeavesOtherDistancesAndRows) {
    for (const std::int32_t column : {1, 2, 4, 5, 83})
        EXPECT_EQ(MergedHeadings(Screen({HeadingAt(1, 1, "A"), HeadingAt(1, column, "B")})),
                  "1,1,1:A|1," + std::to_string(column) + ",1:B|");
    EXPECT_EQ(MergedHeadings(Screen({HeadingAt(1, 1, "A"), HeadingAt(2, 3, "B")})),
              "1,1,1:A|2,3,1:B|");
    EXPECT_EQ(MergedHeadings(Screen({HeadingAt(1, 3, "B"), HeadingAt(1, 1, "A")})),
              "1,3,1:B|1,1,1:A|");
}

TEST(MergeHeadings, LooksAtTheWidthNotAtTheText) {
    Heading* first = HeadingAt(1, 1, "ABC");
    first->Width = 10;
    EXPECT_EQ(MergedHeadings(Screen({first, HeadingAt(1, 12, "D")})), "1,1,12:ABC D|");
}

TEST(MergeHeadings, AnotherRecordBetweenKeepsThemApart) {
    EXPECT_EQ(MergedHeadings(Screen({HeadingAt(1, 1, "A"), FieldAt(9, 9), HeadingAt(1, 3, "B")})),
              "1,1,1:A|1,3,1:B|");
}

TEST(MergeHeadings, FieldInTheGapKeepsThemApart) {
    EXPECT_EQ(MergedHeadings(Screen({FieldAt(1, 2), HeadingAt(1, 1, "A"), HeadingAt(1, 3, "B")})),
              "1,1,1:A|1,3,1:B|");
    EXPECT_EQ(MergedHeadings(Screen({HeadingAt(1, 1, "A"), HeadingAt(1, 3, "B"), FieldAt(1, 2)})),
              "1,1,1:A|1,3,1:B|")
        << "also one that follows";
    EXPECT_EQ(MergedHeadings(Screen({HeadingAt(1, 1, "A"), HeadingAt(1, 3, "B"), FieldAt(2, 2)})),
              "1,1,3:A B|");
}

// The gap is asked for as the headings' own numbers say, although the image shifts them.
TEST(MergeHeadings, GapInsideAnImageIsNotShifted) {
    const auto image = [] { return ImageAt(5, 10, {HeadingAt(1, 1, "A"), HeadingAt(1, 3, "B")}); };
    EXPECT_EQ(MergedHeadings(Screen({image(), FieldAt(5, 11)})), "1,1,3:A B|")
        << "a field on the gap's true place does not count";
    EXPECT_EQ(MergedHeadings(Screen({image(), FieldAt(1, 2)})), "1,1,1:A|1,3,1:B|")
        << "one elsewhere does";
}

TEST(MergeHeadings, EntersWhatThePositionWalkEnters) {
    const auto pair = [](Image* image) {
        ListAppend(ChildrenOf(*image), HeadingAt(1, 1, "A"));
        ListAppend(ChildrenOf(*image), HeadingAt(1, 3, "B"));
        return image;
    };
    EXPECT_EQ(MergedHeadings(Screen({pair(CreateImage())})), "1,1,3:A B|");
    for (const std::int32_t count : {1, 3}) // joined once, not at every repetition
        EXPECT_EQ(MergedHeadings(Screen({Repeated(pair(CreateImage()), {count, 1, 1, 1, 0})})),
                  "1,1,3:A B|");
    EXPECT_EQ(MergedHeadings(Screen({Repeated(pair(CreateImage()), {0, 1, 1, 1, 0})})),
              "1,1,1:A|1,3,1:B|");
    EXPECT_EQ(MergedHeadings(Screen({ImageAt(2, 2, {pair(CreateImage())})})), "1,1,3:A B|");
    EXPECT_EQ(MergedHeadings(FlatScreen({HeadingAt(1, 1, "A"), HeadingAt(1, 3, "B")})),
              "1,1,3:A B|");
}

TEST(MergeHeadings, JoinsHeadingsAroundAnImageNever) {
    EXPECT_EQ(MergedHeadings(Screen({HeadingAt(1, 1, "A"), ImageAt(1, 1, {HeadingAt(1, 3, "B")}),
                                     HeadingAt(1, 3, "C")})),
              "1,1,1:A|1,3,1:B|1,3,1:C|");
}

TEST(MergeHeadings, MissingTextIsAnEmptyOne) {
    Heading* first = HeadingAt(1, 1, "A");
    first->InitialValue.reset();
    EXPECT_EQ(MergedHeadings(Screen({first, HeadingAt(1, 3, "B")})), "1,1,3: B|");
}

TEST(MergeHeadings, ExtremeNumbersAreHarmless) {
    Heading* first = HeadingAt(1, kMost, "A");
    first->Width = kMost;
    Heading* second = HeadingAt(1, 1, "B");
    second->Width = kMost;
    Heading* third = HeadingAt(1, kLeast, "C");
    third->Width = kLeast;
    const RecordList screen = Screen({first, second, third});
    MergeHeadings(*screen);
    EXPECT_EQ(ListCount(*FormOf(*screen)->Children), 3);
    MergeHeadings(*RecordList(ListCreate()));
}

} // namespace
} // namespace grolof
