// What the writer writes, the reader brings back.
#include <string>
#include <vector>

#include "common/random_model.h"
#include "screendef/definitions.h"

namespace grolof::testing_support {
namespace {

using RoundTrip = DefinitionTest;

void ExpectReloaded(List& list);

// Turns a record into what a reload makes of it: zeros are not in the file and come back as the
// default of a new record, an empty child list does not come back at all.
template <class Kind>
void ExpectReloadedAs(Kind& record, const Kind& fresh) {
    for (const auto& attribute : AttributesOf(record)) {
        if (const auto* number = std::get_if<std::int32_t Kind::*>(&attribute.Member))
            if (record.*(*number) == 0)
                record.*(*number) = fresh.*(*number);
    }
    if (record.Children && ListIsEmpty(*record.Children))
        record.Children.reset();
    if (record.Children)
        ExpectReloaded(*record.Children);
}

void ExpectReloaded(List& list) {
    for (Record& record : list) {
        switch (record.Type) {
        case RecordType::Form:
            if (AsForm(record).FormType == FormKind::None)
                AsForm(record).FormType = FormKind::Dps;
            AsForm(record).Group = nullptr;
            ExpectReloadedAs(AsForm(record), Form{});
            break;
        case RecordType::Field:
            AsField(record).CreditSign = 0;
            ExpectReloadedAs(AsField(record), Field{});
            break;
        case RecordType::Image:
        case RecordType::RepeatImage:
            ExpectReloadedAs(AsImage(record), Image{});
            break;
        case RecordType::Heading:
            ExpectReloadedAs(AsHeading(record), Heading{});
            break;
        }
    }
}

RandomShape ShapeOf(std::uint64_t seed) {
    constexpr FormKind kKinds[] = {FormKind::Dps, FormKind::Bms, FormKind::None, FormKind::Mcs,
                                   static_cast<FormKind>(-7)};
    RandomShape shape;
    shape.Seed = seed;
    shape.MostRecords = 6;
    shape.Kind = kKinds[seed % 5];
    shape.AnyNumbers = seed % 2 == 0;
    shape.AnyBytes = seed % 3 == 0;
    return shape;
}

TEST_F(RoundTrip, BringsRandomScreensBack) {
    for (std::uint64_t seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(seed);
        ResetElementNames();
        RandomModel model(ShapeOf(seed));
        RecordList screens = model.Screen();
        model.AppendScreen(*screens);
        AsForm(RecordAt(*screens, 0)).Group = "SALES";
        const std::string text = Written(*screens);
        const RecordList back = Loaded(text);
        ExpectReloaded(*screens);
        ASSERT_EQ(Describe(*back), Describe(*screens));
    }
}

TEST_F(RoundTrip, WritesAReloadedScreenTheSameWay) {
    for (std::uint64_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        ResetElementNames();
        RandomShape shape = ShapeOf(seed);
        shape.AnyNumbers = false; // no zero where a default is not zero
        if (shape.Kind == FormKind::None)
            shape.Kind = FormKind::Sfs;
        const std::string text = Written(*RandomScreen(shape));
        ASSERT_EQ(Written(*Loaded(text)), text);
    }
}

TEST_F(RoundTrip, CutsAValueAtItsQuoteAndLosesWhatFollowsALineFeed) {
    Heading* heading = CreateHeading();
    heading->InitialValue = "say \"hi\"";
    Heading* lines = CreateHeading();
    lines->InitialValue = "one\nRow=\"9\"";
    const RecordList back = Loaded(Written(*ListOf(heading, lines)));
    ASSERT_EQ(ListCount(*back), 2);
    EXPECT_EQ(AsHeading(RecordAt(*back, 0)).InitialValue, "say ");
    EXPECT_EQ(AsHeading(RecordAt(*back, 1)).InitialValue, "one");
    EXPECT_EQ(AsHeading(RecordAt(*back, 1)).Row, 9);
}

// Texts to cut: what the writer makes of a small screen of each dialect, and one with line ends
// and spellings it never makes.
std::vector<std::string> TextsToCut() {
    return {"<DpsForm\n    Name=\"A\"\n    FormType=\"DPS\"\n    Number=\"12\"\n"
            "    NewName=\"DPS00012\"\n    MarkingChar=\"*\"\n    >\n"
            "    <DpsImage\n        Row=\"2\"\n        Count=\"3\"\n        >\n"
            "        <DpsField\n            Name=\"F\"\n            Width=\"5\"\n"
            "            >\n        </DpsField>\n    </DpsImage>\n"
            "    <DpsHeading\n        InitialValue=\"TITLE\"\n        >\n"
            "    </DpsHeading>\n</DpsForm>\n",
            "<BmsForm\n    Name=\"MAP\"\n    FormType=\"BMS\"\n    >\n</BmsForm>\n"
            "<BmsField\n    InitialValue=\"a=b\"\n    Column=\"-4\"\n    >\n</BmsField>\n"
            "<BmsHeading\n    InitialValue=\"\"\n    >\n</BmsHeading>\n",
            "<dpsform\r\n  name=\"x\r\nFORMTYPE=   \"mcs\"\r\nheight=\"99999999999\"\r\n"
            "<Odd\r\n<DPSFIELD\r\nwidth=\"7\"\r\n</Odd>\r\n<dpsheading\r\n</\r\n"};
}

TEST_F(RoundTrip, ReadsEveryFileCutAtEveryByte) {
    for (const std::string& text : TextsToCut()) {
        for (std::size_t length = 0; length <= text.size(); ++length) {
            SCOPED_TRACE(text.substr(0, length));
            ResetElementNames();
            const RecordList back = Loaded(std::string_view(text).substr(0, length));
            // A form is there as soon as its start tag is, before its line end.
            ASSERT_EQ(ListIsEmpty(*back), length < std::string_view("<DpsForm").size());
            // Whatever was loaded is written and loaded again without loss.
            const std::string written = Written(*back);
            ResetElementNames();
            ExpectReloaded(*back);
            ASSERT_EQ(Describe(*Loaded(written)), Describe(*back));
        }
    }
}

TEST_F(RoundTrip, LosesNothingWhenOnlyEndLinesAreMissing) {
    const std::string text = TextsToCut()[0];
    const std::string whole = Describe(*Loaded(text));
    const std::size_t end = text.find("TITLE\"") + 6;
    for (std::size_t length = end; length < text.size(); ++length) {
        const RecordList cut = Loaded(std::string_view(text).substr(0, length));
        ExpectReloaded(*cut); // a "<" that lost its "/" begins a list of children, an empty one
        ASSERT_EQ(Describe(*cut), whole) << length;
    }
    EXPECT_NE(Describe(*Loaded(std::string_view(text).substr(0, end - 2))), whole);
}

} // namespace
} // namespace grolof::testing_support
