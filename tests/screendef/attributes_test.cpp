#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <strings.h>

#include "common/random_model.h"
#include "screendef/attributes.h"

namespace grolof {
namespace {

using ::testing::ElementsAre;

template <class Table>
std::vector<std::string> NamesOf(const Table& table) {
    std::vector<std::string> names;
    for (const auto& attribute : table)
        names.emplace_back(attribute.Name);
    return names;
}

TEST(Attributes, FormsHaveThemInWrittenOrderAndTheStorageNameLast) {
    EXPECT_THAT(NamesOf(kFormAttributes),
                ElementsAre("Name=", "Group=", "ImageName=", "FunctionKeyName=", "CopyName=",
                            "InitialValue=", "Replenish=", "FormType=", "Number=", "Height=",
                            "Width=", "GeneratePrefix=", "NumericName=", "IgnoreCase=",
                            "IgnoreJustification=", "24x79Unprotected=", "RedefInit=",
                            "InputBlankWhenZero=", "Emphasis=", "Highlight=", "Intensity=",
                            "Colour=", "BackColour=", "MarkingChar=", "SoeChar=", "NewName="));
}

TEST(Attributes, FieldsHaveThemInWrittenOrderWithoutTheCreditSign) {
    EXPECT_THAT(
        NamesOf(kFieldAttributes),
        ElementsAre(
            "Name=", "InitialValue=", "Replenish=", "Picin=", "Picout=", "Height=", "Width=",
            "Decimals=", "Column=", "Row=", "VariableColumn=", "VariableRow=", "BlankIsZero=",
            "MandatoryEntry=", "TabStop=", "Protected=", "SetModified=", "UsageOutput=",
            "FloatingCurrency=", "LeadingZeros=", "FloatingSign=", "TrailingSign=", "PositiveSign=",
            "BlankWhenZero=", "InsertDelimiters=", "ReplenishForBlanks=", "InitialCursor=",
            "Value=", "Emphasis=", "Highlight=", "Intensity=", "Colour=", "BackColour=",
            "Justification=", "Case=", "DataType=", "Contents="));
}

TEST(Attributes, ImagesHaveThemInWrittenOrderWithTheCountLast) {
    EXPECT_THAT(NamesOf(kImageAttributes),
                ElementsAre("Name=", "IndexName=", "Height=", "Width=", "Column=", "Row=",
                            "Spacing=", "Constants=", "VariableColumn=", "VariableRow=", "Linked=",
                            "Direction=", "Contents=", "Emphasis=", "Highlight=", "Intensity=",
                            "Colour=", "BackColour=", "Count="));
}

TEST(Attributes, HeadingsHaveThemInWrittenOrderWithTheTextLast) {
    EXPECT_THAT(NamesOf(kHeadingAttributes),
                ElementsAre("Height=", "Width=", "Column=", "Row=", "Highlight=", "Intensity=",
                            "InitialValue="));
}

// The look-up said in the plainest way: the first name that the line begins with.
template <class Kind, std::size_t Size>
const Attribute<Kind>* FirstPrefix(const AttributeTable<Kind, Size>& table,
                                   const std::string& line) {
    for (const Attribute<Kind>& attribute : table)
        if (strncasecmp(line.c_str(), attribute.Name.data(), attribute.Name.size()) == 0)
            return &attribute;
    return nullptr;
}

std::string InRandomCase(std::string_view name, testing_support::RandomNumbers& random) {
    std::string text(name);
    for (char& c : text)
        if (random.OneIn(2))
            c = static_cast<char>(c ^ (isalpha(static_cast<unsigned char>(c)) != 0 ? 0x20 : 0));
    return text;
}

template <class Table>
void ExpectFindsWhatTheLineBeginsWith(const Table& table) {
    testing_support::RandomNumbers random(7);
    for (const auto& attribute : table) {
        for (int i = 0; i < 200; ++i) {
            std::string line = InRandomCase(attribute.Name, random) + "\"1\"";
            EXPECT_EQ(table.Find(line), &attribute) << line;
            const auto at = static_cast<std::size_t>(
                random.Between(0, static_cast<std::int32_t>(line.size()) - 1));
            line[at] = random.OneOf("aZ= \"9x");
            EXPECT_EQ(table.Find(line), FirstPrefix(table, line)) << line;
            line.resize(at);
            EXPECT_EQ(table.Find(line), FirstPrefix(table, line)) << line;
        }
    }
}

TEST(Attributes, AreFoundByWhatTheLineBeginsWithInAnyCase) {
    ExpectFindsWhatTheLineBeginsWith(kFormAttributes);
    ExpectFindsWhatTheLineBeginsWith(kFieldAttributes);
    ExpectFindsWhatTheLineBeginsWith(kImageAttributes);
    ExpectFindsWhatTheLineBeginsWith(kHeadingAttributes);
}

TEST(Attributes, AreNotFoundInOtherLines) {
    for (const std::string line :
         {"", "=", "Name", "Name =\"A\"", " Name=\"A\"", "Names=\"A\"", "CreditSign=\"1\"",
          "ReplenishForBlanksToo=\"1\"", "NewName=\"A\"", ">", "Na=me=\"A\""})
        EXPECT_EQ(kFieldAttributes.Find(line), nullptr) << line;
    EXPECT_EQ(kFieldAttributes.Find(std::string(5000, 'x')), nullptr);
    EXPECT_EQ(kFieldAttributes.Find(std::string(5000, '=')), nullptr);
}

} // namespace
} // namespace grolof
