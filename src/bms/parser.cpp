#include "bms/parser.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "bms/keywords.h"
#include "bms/reader.h"
#include "bms/tokens.h"
#include "model/codes.h"

namespace grolof {

namespace {

using Maps = std::vector<RecordList>;

// Operands that are read for their form only.
constexpr std::array kIgnoredByMapSet = {
    BmsKey("BASE"),    BmsKey("COLOR"),   BmsKey("CTRL"), BmsKey("DATA"),    BmsKey("DSATTS"),
    BmsKey("EXTATT"),  BmsKey("HILIGHT"), BmsKey("LANG"), BmsKey("MAPATTS"), BmsKey("MODE"),
    BmsKey("STORAGE"), BmsKey("SUFFIX"),  BmsKey("TERM"), BmsKey("TIOAPFX"), BmsKey("TYPE"),
};
constexpr std::array kIgnoredByMap = {
    BmsKey("COLUMN"), BmsKey("DATA"), BmsKey("LINE"),    BmsKey("OBFMT"),
    BmsKey("SUFFIX"), BmsKey("TERM"), BmsKey("TIOAPFX"),
};

// Values that an operand admits. CTRL of a map on purpose knows no others.
constexpr std::array kControlValues = {BmsKey("FREEKB"), BmsKey("HONEOM")};
constexpr std::array kJustifyValues = {BmsKey("LEFT"), BmsKey("RIGHT"), BmsKey("BLANK"),
                                       BmsKey("ZERO")};

template <std::size_t N>
bool IsAmong(const std::array<int, N>& keywords, int keyword) {
    return std::find(keywords.begin(), keywords.end(), keyword) != keywords.end();
}

// Reads the operands of a statement, handing each keyword on.
template <class Handle>
void ReadOperands(Handle handle) {
    while (const int operand = BmsNextOperand())
        handle(operand);
}

// Reads a value list whole, then hands each value's keyword code on (-1 for no keyword).
// `handle` tells whether the value is accepted; one that is not ends the run.
template <class Handle>
void ReadValues(BmsError code, Handle handle) {
    BmsReadValues();
    for (std::size_t i = 0; i < s_bms.ValueCount; ++i)
        if (!handle(BmsKeywordCode(s_bms.Values[i])))
            BmsSyntaxError(code);
}

// A value list that is checked and has no effect.
template <std::size_t N>
void CheckValues(const std::array<int, N>& accepted, BmsError code) {
    ReadValues(code, [&](int value) { return IsAmong(accepted, value); });
}

struct Pair {
    std::int32_t First, Second;
};

// A position or size. The "=" may be missing before "("; a single offset gives none.
std::optional<Pair> ReadPair() {
    BmsExpectPunctuation();
    if (BmsTokenIs('='))
        BmsNextToken();
    if (!BmsTokenIs('('))
        return std::nullopt;
    const std::int32_t first = BmsExpectNumber();
    const std::int32_t second = BmsExpectNumber();
    BmsExpectClose();
    return Pair{first, second};
}

// Sets the place of a field or constant; a single offset leaves it at row 1, column 1.
template <class Placed>
void ReadPosition(Placed& record) {
    if (const auto position = ReadPair()) {
        record.Row = position->First;
        record.Column = position->Second;
    }
}

// Intensity that an attribute value stands for, none for other values.
std::optional<std::int32_t> IntensityOf(int value) {
    switch (value) {
    case BmsKey("BRT"):
        return kHighIntensity;
    case BmsKey("NORM"):
        return kNormalIntensity;
    case BmsKey("DRK"):
        return kSuppressed;
    default:
        return std::nullopt;
    }
}

// --- map set ---------------------------------------------------------------------------------

void ParseMapSet() {
    if (!s_bms.Label.empty())
        s_bms.MapSetName = s_bms.Label;
    ReadOperands([](int operand) {
        if (!IsAmong(kIgnoredByMapSet, operand))
            BmsSyntaxError(BmsError::MapSetOperand);
        BmsReadValues();
    });
}

// --- map -------------------------------------------------------------------------------------

// The size is fixed, whatever SIZE says.
Form* CreateMap() {
    Form* form = CreateForm();
    form->Width = 80;
    form->Height = 24;
    form->FormType = FormKind::Bms;
    form->Emphasis = form->Highlight = form->Intensity = 1;
    form->GeneratePrefix = 0;
    form->CopyName = s_bms.MapSetName;
    form->Name = s_bms.Label.empty() ? s_bms.MapSetName : s_bms.Label;
    return form;
}

void ReadMapOperand(int operand) {
    switch (operand) {
    case BmsKey("CTRL"):
        return CheckValues(kControlValues, BmsError::MapControl);
    case BmsKey("JUSTIFY"):
        return CheckValues(kJustifyValues, BmsError::MapJustify);
    case BmsKey("SIZE"):
        ReadPair();
        return;
    default:
        if (!IsAmong(kIgnoredByMap, operand))
            BmsSyntaxError(BmsError::MapOperand);
        BmsReadValues();
    }
}

void ParseMap(Maps& maps) {
    maps.emplace_back(ListCreate());
    ListAppend(*maps.back(), CreateMap());
    ReadOperands(ReadMapOperand);
}

// --- field -----------------------------------------------------------------------------------

Field* CreateMapField() {
    Field* field = CreateField();
    field->TabStop = 1;
    field->Case = kUpperCase;
    field->DataType = kAlphanumericData;
    field->Name = s_bms.Label;
    field->Children.reset(ListCreate());
    return field;
}

void MakeNumeric(Field& field) {
    field.DataType = kNumericData;
    field.LeadingZeros = 0;
    field.BlankWhenZero = 1;
}

void SetCursor(Form& form, Field& field) {
    field.InitialCursor = 1;
    form.ImageName = field.Name;
}

// Values act in the order written: a later one overrides, but UNPROT does not bring back the
// tab stop that ASKIP took.
bool ApplyAttribute(Form& form, Field& field, int value) {
    switch (value) {
    case BmsKey("ASKIP"):
        field.TabStop = 0;
        field.Protected = 1;
        return true;
    case BmsKey("PROT"):
        field.Protected = 1;
        return true;
    case BmsKey("UNPROT"):
        field.Protected = 0;
        return true;
    case BmsKey("FSET"):
        field.SetModified = 1;
        return true;
    case BmsKey("NUM"):
        MakeNumeric(field);
        return true;
    case BmsKey("IC"):
        SetCursor(form, field);
        return true;
    default:
        const auto intensity = IntensityOf(value);
        field.Intensity = intensity.value_or(field.Intensity);
        return intensity.has_value();
    }
}

bool ApplyJustification(Field& field, int value) {
    if (value == BmsKey("LEFT"))
        field.Justification = kLeftJustified;
    if (value == BmsKey("RIGHT"))
        field.Justification = kRightJustified;
    return IsAmong(kJustifyValues, value);
}

void ReadFieldOperand(Form& form, Field& field, int operand) {
    switch (operand) {
    case BmsKey("ATTRB"):
        return ReadValues(BmsError::FieldAttribute,
                          [&](int value) { return ApplyAttribute(form, field, value); });
    case BmsKey("COLOR"):
    case BmsKey("GRPNAME"):
    case BmsKey("HILIGHT"):
        return BmsExpectEqualsAny();
    case BmsKey("INITIAL"):
        field.InitialValue = BmsExpectEqualsString();
        return;
    case BmsKey("JUSTIFY"):
        return ReadValues(BmsError::FieldJustify,
                          [&](int value) { return ApplyJustification(field, value); });
    case BmsKey("LENGTH"):
        field.Width = BmsExpectEqualsNumber();
        return;
    case BmsKey("OCCURS"):
        BmsExpectEqualsNumber();
        return;
    case BmsKey("PICIN"):
        field.Picin = BmsExpectEqualsString();
        return;
    case BmsKey("PICOUT"):
        field.Picout = BmsExpectEqualsString();
        return;
    case BmsKey("POS"):
        return ReadPosition(field);
    default:
        BmsSyntaxError(BmsError::FieldOperand);
    }
}

void ParseField(List& map) {
    Field* field = CreateMapField();
    ListAppend(map, field);
    Form& form = *FormOf(map); // every map begins with its form
    ReadOperands([&](int operand) { ReadFieldOperand(form, *field, operand); });
}

// --- constant --------------------------------------------------------------------------------

// Only the intensity of a constant shows; the other attributes it may bear have no effect.
bool ApplyConstantAttribute(Heading& heading, int value) {
    constexpr std::array withoutEffect = {BmsKey("ASKIP"), BmsKey("FSET"), BmsKey("IC"),
                                          BmsKey("NUM"),   BmsKey("PROT"), BmsKey("UNPROT")};
    const auto intensity = IntensityOf(value);
    heading.Intensity = intensity.value_or(heading.Intensity);
    return intensity.has_value() || IsAmong(withoutEffect, value);
}

// A constant has fewer operands than a field, on purpose: no GRPNAME, HILIGHT, OCCURS, PICIN or
// PICOUT.
void ReadConstantOperand(Heading& heading, std::int32_t& length, int operand) {
    switch (operand) {
    case BmsKey("ATTRB"):
        return ReadValues(BmsError::ConstantAttribute,
                          [&](int value) { return ApplyConstantAttribute(heading, value); });
    case BmsKey("COLOR"):
        return BmsExpectEqualsAny();
    case BmsKey("INITIAL"):
        heading.InitialValue = BmsExpectEqualsString();
        return;
    case BmsKey("JUSTIFY"):
        return CheckValues(kJustifyValues, BmsError::ConstantJustify);
    case BmsKey("LENGTH"):
        length = BmsExpectEqualsNumber();
        return;
    case BmsKey("POS"):
        return ReadPosition(heading);
    default:
        BmsSyntaxError(BmsError::ConstantOperand);
    }
}

// A constant is as wide as its text; LENGTH only tells whether there is one at all.
void ParseConstant(List& map) {
    Heading* heading = CreateHeading();
    heading->Children.reset(ListCreate());
    ListAppend(map, heading);
    std::int32_t length = 0;
    ReadOperands([&](int operand) { ReadConstantOperand(*heading, length, operand); });
    if (length == 0) {
        DestroyRecord(ListPopBack(map));
        return;
    }
    if (!heading->InitialValue)
        heading->InitialValue.emplace();
    heading->Width = static_cast<std::int32_t>(heading->InitialValue->size());
}

// A field or constant outside any map has no list to join.
void ParseFieldOrConstant(Maps& maps) {
    if (maps.empty())
        BmsSyntaxError(BmsError::Operation);
    if (s_bms.Label.empty())
        ParseConstant(*maps.back());
    else
        ParseField(*maps.back());
}

void ParseStatement(Maps& maps) {
    if (BmsNextToken() != BmsToken::Keyword)
        BmsSyntaxError(BmsError::NoOperation);
    switch (s_bms.Keyword) {
    case BmsKey("DFHMSD"):
        return ParseMapSet();
    case BmsKey("DFHMDI"):
        return ParseMap(maps);
    case BmsKey("DFHMDF"):
        return ParseFieldOrConstant(maps);
    default:
        BmsSyntaxError(BmsError::Operation);
    }
}

} // namespace

std::vector<RecordList> BmsReadMapSet(const std::string& path, unsigned option) {
    Maps maps;
    if (!BmsOpen(path, option))
        return maps;
    while (BmsReadStatement())
        ParseStatement(maps);
    return maps;
}

} // namespace grolof
