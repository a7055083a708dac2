// Random screens: compaction loses nothing, and what the model places stands where it is placed.
//
// One class of screens does lose rows, as the row pass is meant to work: 256 equal rows and
// more. It is pinned here and in FoldRows.LosesRowsOfEqualCounts. Fields with an initial text
// longer than they are, or wider than 127 columns, have no stream that can be read back; they
// are left out of the comparison and played for safety only.
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/random_model.h"
#include "common/testing.h"
#include "mcs/big_endian.h"
#include "mcs/mcs_testing.h"
#include "mcs/plain_picture.h"
#include "mcs/player.h"
#include "mcs/stepper.h"

namespace grolof {
namespace {

using namespace testing_support;

// True when the last item of a stream ends with it.
bool EndsWithAnItem(const Bytes& file) {
    const auto stream = std::span(file).subspan(kMcsHeaderSize);
    std::size_t at = 0;
    while (at < stream.size())
        at = NextItem(stream, at);
    return at == stream.size();
}

struct BothPlays {
    Bytes Before, After;
    PlayedScreen BeforeScreen, AfterScreen;
};

// Builds a screen twice (a build only puts its trailing headings into painting order) and plays
// both streams. The answer is what differs.
std::string Differences(List& screen, BothPlays& plays) {
    plays.Before = Uncompacted(screen);
    plays.After = Compacted(screen);
    if (plays.Before.empty() && plays.After.empty())
        return "";
    if (!EndsWithAnItem(plays.Before) || !EndsWithAnItem(plays.After))
        return "the last item does not end with the stream";
    if (const auto error = PlayMcs(plays.Before, plays.BeforeScreen))
        return "before: " + error->Message;
    if (const auto error = PlayMcs(plays.After, plays.AfterScreen))
        return "after: " + error->Message;
    if (plays.BeforeScreen.Rows != plays.AfterScreen.Rows)
        return "the rows differ";
    if (plays.BeforeScreen.Items != plays.AfterScreen.Items)
        return "the items differ";
    if (!std::equal(plays.Before.begin(), plays.Before.begin() + 38, plays.After.begin()))
        return "the headers differ";
    if (plays.After.size() > plays.Before.size())
        return "it has grown";
    return "";
}

// Cuts initial texts to the width of their fields.
void CutTexts(List& list) {
    for (Record& record : list) {
        if (record.Children)
            CutTexts(*record.Children);
        if (record.Type == RecordType::Field && AsField(record).InitialValue) {
            Field& field = AsField(record);
            field.InitialValue->resize(
                std::min(field.InitialValue->size(), static_cast<std::size_t>(field.Width)));
        }
    }
}

TEST(RandomScreens, PlayTheSameBeforeAndAfterCompaction) {
    const CaptureStderr quiet; // screens that do not fit say so
    int built = 0;
    int folded = 0;
    for (std::uint64_t seed = 1; seed <= 10'000; ++seed) {
        RandomShape shape;
        shape.Seed = seed;
        shape.MostRecords = 4 + static_cast<std::int32_t>(seed % 12);
        shape.Kind = seed % 5 == 0 ? FormKind::Bms : FormKind::Dps;
        shape.LongestText = seed % 3 == 0 ? 3 : 30; // short texts are often alike
        shape.OptionalAttributes = seed % 4 != 0;
        const RecordList screen = RandomScreen(shape);
        CutTexts(*screen);
        BothPlays plays;
        const std::string differences = Differences(*screen, plays);
        ASSERT_EQ(differences, "") << "seed " << seed;
        built += plays.Before.empty() ? 0 : 1;
        folded += plays.After.size() < plays.Before.size() ? 1 : 0;
    }
    EXPECT_GT(built, 9'000);
    EXPECT_GT(folded, 2'000);
}

TEST(RandomScreens, OfAnyNumbersAndBytesAreSafe) {
    for (std::uint64_t seed = 1; seed <= 3'000; ++seed) {
        RandomShape shape;
        shape.Seed = seed;
        shape.AnyNumbers = true;
        shape.AnyBytes = seed % 2 == 0;
        shape.MostRepeats = 1000;
        const RecordList screen = RandomScreen(shape);
        CaptureStderr quiet;
        const Bytes before = Uncompacted(*screen);
        const Bytes after = Compacted(*screen);
        const std::string message = quiet.Take();
        ASSERT_EQ(before.empty(), after.empty()) << "seed " << seed;
        ASSERT_EQ(before.empty(), !message.empty()) << "seed " << seed;
        ASSERT_LE(before.size(), kMcsBufferSize);
        PlayedScreen played;
        PlayMcs(before, played);
        PlayMcs(after, played);
    }
}

// --- Screens in order -------------------------------------------------------------------------

// What is to stand somewhere.
struct Expected {
    PlacedKind Kind;
    std::int64_t Row, Column, Width;
    std::string Text;
    bool operator==(const Expected&) const = default;
    auto operator<=>(const Expected&) const = default;
};

// What the header is to say.
struct Sums {
    int Buffer = 0, Data = 0, Input = 0, Count = 0;
    int FirstRow = 0, FirstColumn = 0, CursorRow = 0, CursorColumn = 0;
};

// Makes screens whose records stand in order from the top left to the bottom right without
// touching each other, and notes where each is to be found.
class OrderedScreen {
public:
    explicit OrderedScreen(std::uint64_t seed) : m_random(seed) {
        m_width = m_random.OneIn(3) ? m_random.Between(80, 132) : 80;
        m_screen.TheForm->Width = m_width;
        m_screen.TheForm->IgnoreJustification = m_random.OneIn(4) ? 1 : 0;
        m_screen.TheForm->IgnoreCase = m_random.OneIn(4) ? 1 : 0;
        m_screen.TheForm->_24x79Unprotected = m_random.OneIn(4) ? 1 : 0;
        m_isFlat = m_random.OneIn(4);
        m_alike = m_random.OneIn(2);
        int row = m_random.Between(1, 3);
        while (row <= 23)
            row = m_random.OneIn(5) ? AddBlock(row) : AddRow(row);
        for (Heading* heading : m_trailing)
            ListAppend(List(), heading);
        const int last = m_screen.TheForm->_24x79Unprotected != 0 ? 79 : 80;
        m_expected.push_back({PlacedKind::ConstantText, 24, last, 1, " "});
        std::sort(m_expected.begin(), m_expected.end());
    }

    Screen& TheScreen() { return m_screen; }
    const std::vector<Expected>& All() const { return m_expected; }
    const Sums& TheSums() const { return m_sums; }

private:
    grolof::List& List() { return m_isFlat ? *m_screen.Records : m_screen.Children(); }

    std::string Text(int width) {
        if (m_alike)
            return std::string(static_cast<std::size_t>(width), 'X');
        std::string text;
        for (int i = 0; i < width; ++i)
            text += m_random.OneOf("ABCDE 12345");
        return text;
    }

    // One row: fields, system values and headings with gaps between them. The next row.
    int AddRow(int row) {
        int column = m_random.Between(1, 20);
        while (true) {
            const int width = m_alike ? 4 : m_random.Between(1, 30);
            if (column + width - 1 > m_width)
                break;
            AddThing(row, column, width);
            column += width + (m_alike ? 3 : m_random.Between(0, 25));
        }
        return row + (m_random.OneIn(3) ? m_random.Between(1, 5) : 1);
    }

    void AddThing(int row, int column, int width) {
        if (m_random.OneIn(3)) {
            AddHeadingAt(row, column, width);
            return;
        }
        const bool isSystem = m_random.OneIn(5);
        Field* field = isSystem ? SystemValue() : OrdinaryField(width);
        field->Width = width;
        PlaceField(*field, row, column);
        Note(*field, row, column);
    }

    // A flat screen has its headings in the walk, any other at its end.
    void AddHeadingAt(int row, int column, int width) {
        Heading* heading = CreateHeading();
        heading->Row = row;
        heading->Column = column;
        heading->Width = width;
        heading->InitialValue = Text(m_random.OneIn(3) ? m_random.Between(0, width) : width);
        std::string text = *heading->InitialValue;
        text.resize(static_cast<std::size_t>(width), ' ');
        m_expected.push_back({PlacedKind::ConstantText, row, column, width, text});
        if (m_isFlat)
            ListAppend(List(), heading);
        else
            m_trailing.push_back(heading);
    }

    Field* SystemValue() {
        Field* field = CreateField();
        field->Contents = 4;
        field->Value = m_random.Between(0, 15);
        return field;
    }

    Field* OrdinaryField(int width) {
        Field* field = CreateField();
        field->Width = width;
        field->DataType = m_alike ? 1 : m_random.Between(1, 3);
        for (auto member :
             {&Field::Protected, &Field::TabStop, &Field::SetModified, &Field::BlankIsZero,
              &Field::BlankWhenZero, &Field::LeadingZeros, &Field::InsertDelimiters,
              &Field::TrailingSign, &Field::FloatingSign, &Field::FloatingCurrency})
            field->*member = m_random.OneIn(4) ? 1 : 0;
        field->Decimals = m_random.OneIn(3) ? m_random.Between(0, 4) : 0;
        field->Justification = m_random.Between(1, 3);
        field->Case = m_random.Between(1, 2);
        field->InitialCursor = m_random.OneIn(20) ? 1 : 0;
        if (m_random.OneIn(3))
            field->InitialValue = Text(m_random.Between(0, width));
        return field;
    }

    // Puts a field where it is to stand: as it is, over the width, or in an image.
    void PlaceField(Field& field, int row, int column) {
        field.Row = row;
        field.Column = column;
        if (row > 1 && m_random.OneIn(4)) {
            field.Row -= 1;
            field.Column += m_width;
        }
        if (m_isFlat || !m_random.OneIn(4)) {
            ListAppend(List(), &field);
            return;
        }
        Image& image = AddImage(List(), m_random.Between(1, 9), m_random.Between(1, 9));
        field.Row -= image.Row - 1;
        field.Column -= image.Column - 1;
        if (field.Column < 1) { // stays where a column wraps forwards
            field.Row -= 1;
            field.Column += m_width;
        }
        ListAppend(ChildrenOf(image), &field);
    }

    void Note(const Field& field, int row, int column) {
        if (field.Contents == 4) {
            m_expected.push_back({PlacedKind::SystemValue, row, column, field.Width, ""});
            return;
        }
        std::string text;
        if (field.InitialValue) {
            text = *field.InitialValue;
            text.resize(static_cast<std::size_t>(field.Width), ' ');
        }
        m_expected.push_back({PlacedKind::Field, row, column, field.Width, text});
        const bool plain = field.Decimals <= 0 && field.InsertDelimiters == 0 &&
                           field.FloatingCurrency == 0 && field.FloatingSign == 0 &&
                           field.TrailingSign == 0;
        const bool edited = field.DataType == 3 &&
                            !(plain && (field.LeadingZeros != 0 || field.BlankWhenZero != 0));
        const int length = edited ? PictureOf(field).Digits : field.Width;
        m_sums.Count += 1;
        m_sums.Data += length;
        m_sums.Input += field.Protected == 0 ? length : 0;
        while (m_sums.Buffer % 4 != 0)
            ++m_sums.Buffer;
        for (int i = -4; i < length; i += 4) // whole fours, and a negative length's own
            m_sums.Buffer += i + 4 < length ? 4 : 0;
        for (int i = length; i <= -4; i += 4)
            m_sums.Buffer -= 4;
        if (field.Protected == 0 && m_sums.FirstRow == 0) {
            m_sums.FirstRow = row;
            m_sums.FirstColumn = column;
        }
        if (field.InitialCursor != 0) {
            m_sums.CursorRow = row;
            m_sums.CursorColumn = column;
        }
    }

    // A repeat image over several rows, its fields in the first row of each occurrence, with
    // headings of the screen in front of them. The row behind it.
    int AddBlock(int row) {
        if (m_isFlat)
            return AddRow(row);
        const int height = m_random.Between(1, 2);
        const int count = m_random.Between(1, std::max(1, std::min(12, (24 - row) / height)));
        const bool labels = m_random.OneIn(2);
        Image& image = AddRepeat(List(), row, 11, count);
        image.Height = height;
        image.Spacing = m_random.Between(0, 9);
        std::vector<std::pair<Field*, int>> fields;
        for (int column = 1; column < 50; column += 12) {
            Field* field = m_random.OneIn(5) ? SystemValue() : OrdinaryField(8);
            field->Width = 8;
            field->Row = 1;
            field->Column = column;
            ListAppend(ChildrenOf(image), field);
            fields.emplace_back(field, column);
        }
        for (int i = 0; i < count; ++i) {
            if (labels)
                AddHeadingAt(row + i * height, 2, 6);
            for (const auto& [field, column] : fields)
                Note(*field, row + i * height, 10 + column);
        }
        return row + count * height;
    }

    RandomNumbers m_random;
    Screen m_screen;
    std::int32_t m_width = 80;
    bool m_isFlat = false;
    bool m_alike = false;
    std::vector<Heading*> m_trailing;
    std::vector<Expected> m_expected;
    Sums m_sums;
};

std::vector<Expected> Found(const PlayedScreen& screen) {
    std::vector<Expected> found;
    for (const PlacedItem& item : screen.Items)
        found.push_back({item.Kind, item.Row, item.Column, item.Width, item.Text});
    std::sort(found.begin(), found.end());
    return found;
}

// 12,000 screens in four parts, which may run at the same time.
class OrderedScreens : public ::testing::TestWithParam<std::uint64_t> {};
INSTANTIATE_TEST_SUITE_P(Parts, OrderedScreens, ::testing::Range<std::uint64_t>(0, 4));

TEST_P(OrderedScreens, StandWhereTheyArePlaced) {
    const CaptureStderr quiet;
    int built = 0;
    const std::uint64_t first = GetParam() * 3'000 + 1;
    for (std::uint64_t seed = first; seed < first + 3'000; ++seed) {
        OrderedScreen ordered(seed);
        BothPlays plays;
        const std::string differences = Differences(ordered.TheScreen(), plays);
        ASSERT_EQ(differences, "") << "seed " << seed;
        if (plays.Before.empty())
            continue; // does not fit
        ++built;
        ASSERT_TRUE(Found(plays.AfterScreen) == ordered.All()) << "seed " << seed;
        const ScreenSummary& summary = plays.AfterScreen.Summary;
        const Sums& sums = ordered.TheSums();
        ASSERT_EQ(summary.FieldCount, sums.Count) << "seed " << seed;
        ASSERT_EQ(summary.DataLength, sums.Data) << "seed " << seed;
        ASSERT_EQ(summary.InputLength, sums.Input) << "seed " << seed;
        ASSERT_EQ(summary.BufferLength, sums.Buffer) << "seed " << seed;
        ASSERT_EQ(Get16(&plays.After[34]), sums.Data) << "seed " << seed;
        ASSERT_EQ(summary.FirstRow, sums.FirstRow) << "seed " << seed;
        ASSERT_EQ(summary.FirstColumn, sums.FirstColumn) << "seed " << seed;
        ASSERT_EQ(summary.CursorRow, sums.CursorRow) << "seed " << seed;
        ASSERT_EQ(summary.CursorColumn, sums.CursorColumn) << "seed " << seed;
        ASSERT_EQ(plays.AfterScreen.Rows.size(), 24U) << "seed " << seed;
    }
    EXPECT_GT(built, 2'700);
}

// 255 equal rows are shown as they are; of 256, two folds of 128 make rows with equal counts,
// whose own fold forgets them: two rows are left. Rows behind them move up.
TEST(TallScreens, Of256EqualRowsLoseThem) {
    for (const int rows : {128, 129, 255, 256}) {
        Screen screen;
        screen.TheForm->Height = 250;
        screen.TheForm->Width = 10;
        for (int row = 1; row <= rows; ++row)
            AddHeading(screen, row, 1, "A");
        AddHeading(screen, rows + 1, 1, "B");
        PlayedScreen before, after;
        ASSERT_FALSE(PlayMcs(Uncompacted(screen), before));
        ASSERT_FALSE(PlayMcs(Compacted(screen), after));
        EXPECT_EQ(before.Rows.size(), static_cast<std::size_t>(rows + 1));
        EXPECT_EQ(after.Rows.size(), rows < 256 ? static_cast<std::size_t>(rows + 1) : 3U);
        EXPECT_EQ(after.Rows.back().front(), 'B');
    }
}

} // namespace
} // namespace grolof
