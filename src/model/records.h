// The records of the form model. Every reader fills them and every writer walks them. One
// screen is one List whose first element is its form. The members bear the attribute names of
// the screen definition file.
//
// A DPS form holds its fields, images and headings in Children; in a BMS map the fields and
// headings follow the form in the same List. Walkers therefore handle both places.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "model/list.h"

namespace grolof {

/// Tag of a record. A tag outside these is a record without children.
enum class RecordType : std::int32_t { Form = 1, Field, Image, Heading, RepeatImage };

/// Dialect of a screen. Other numbers may stand in a screen definition file and are kept.
enum class FormKind : std::int32_t { None = 0, Dps = 1, Mcs = 2, Sfs = 3, Bms = 5 };

/// An owned text, or none. None and empty differ.
using Text = std::optional<std::string>;

/// Destroys a list of records and the records; harmless for none.
struct RecordListDeleter {
    void operator()(List* list) const;
};

/// A list that owns its records.
using RecordList = std::unique_ptr<List, RecordListDeleter>;

/// What every record begins with.
struct Record {
    RecordType Type;
    RecordList Children; ///< none until the first child is read
};

/// One screen. "DpsForm" or "BmsForm" in a screen definition file.
struct Form : Record {
    Text Name;
    /// Library of the format. Not owned: an interned text (see InternText) that outlives the
    /// screen; none when the source names no group.
    const char* Group = nullptr;
    Text ImageName;       ///< name of the image or field that gets the cursor
    Text FunctionKeyName; ///< name of the function-key data item
    Text InitialValue;
    Text Replenish;
    Text CopyName;            ///< name of the BMS COPY book
    std::int32_t Number = 0;  ///< screen number
    std::int32_t Height = 24; ///< rows
    std::int32_t Width = 80;  ///< columns
    std::int32_t GeneratePrefix = 0;
    std::int32_t NumericName = 0; ///< 1: stored under its number
    std::int32_t IgnoreCase = 0;
    std::int32_t IgnoreJustification = 0;
    std::int32_t _24x79Unprotected = 0;
    std::int32_t InputBlankWhenZero = 0;
    std::int32_t RedefInit = 0; ///< 1: the "-INIT" COPY book is written too
    FormKind FormType = FormKind::Dps;
    std::int32_t Emphasis = 1;
    std::int32_t Highlight = 1;
    std::int32_t Intensity = 1;
    char MarkingChar = '\0';
    char SoeChar = '\0';
    std::int32_t Colour = 0; ///< character code of a colour letter, 0 for none
    std::int32_t BackColour = 0;
};

/// A named or unnamed data field. Positions are 1-based and relative to the enclosing image.
struct Field : Record {
    Text Name;
    Text InitialValue;
    Text Replenish;
    Text Picin;  ///< input picture
    Text Picout; ///< output picture
    std::int32_t Height = 1;
    std::int32_t Width = 1; ///< characters on the screen
    std::int32_t Decimals = 0;
    std::int32_t Column = 1;
    std::int32_t Row = 1;
    std::int32_t VariableColumn = 1;
    std::int32_t VariableRow = 1;
    std::int32_t BlankIsZero = 0;
    std::int32_t MandatoryEntry = 0;
    std::int32_t TabStop = 0;
    std::int32_t Protected = 0;
    std::int32_t SetModified = 0;
    std::int32_t UsageOutput = 0;
    std::int32_t FloatingCurrency = 0;
    std::int32_t LeadingZeros = 0;
    std::int32_t FloatingSign = 0;
    std::int32_t TrailingSign = 0;
    std::int32_t PositiveSign = 0;
    std::int32_t CreditSign = 0; ///< recorded from the source; no output carries it
    std::int32_t BlankWhenZero = 0;
    std::int32_t InsertDelimiters = 0;
    std::int32_t ReplenishForBlanks = 0;
    std::int32_t InitialCursor = 0;
    std::int32_t Contents = 1;
    std::int32_t Value = 1;
    std::int32_t Emphasis = 1;
    std::int32_t Highlight = 1;
    std::int32_t Intensity = 1;
    std::int32_t Justification = 1;
    std::int32_t Case = 1;
    std::int32_t DataType = 1;
    std::int32_t Colour = 0;
    std::int32_t BackColour = 0;
};

/// A group of records with a position of its own (Type Image), or a repeated one (RepeatImage).
struct Image : Record {
    Text Name;
    Text IndexName;          ///< name of the repeat index
    std::int32_t Height = 1; ///< rows of one occurrence
    std::int32_t Width = 1;  ///< columns of one occurrence
    std::int32_t Column = 1;
    std::int32_t Row = 1;
    std::int32_t Count = 0;   ///< occurrences
    std::int32_t Spacing = 0; ///< columns between horizontal occurrences
    std::int32_t Constants = 0;
    std::int32_t VariableColumn = 1;
    std::int32_t VariableRow = 1;
    std::int32_t Linked = 0;
    std::int32_t Direction = 1; ///< 1 vertical, any other value horizontal
    std::int32_t Contents = 1;
    std::int32_t Highlight = 1;
    std::int32_t Emphasis = 1;
    std::int32_t Intensity = 1;
    std::int32_t Colour = 0;
    std::int32_t BackColour = 0;
};

/// Constant text on the screen.
struct Heading : Record {
    Text InitialValue;
    std::int32_t Height = 1;
    std::int32_t Width = 1; ///< length of the text
    std::int32_t Column = 1;
    std::int32_t Row = 1;
    std::int32_t Highlight = 1;
    std::int32_t Intensity = 1;
};

// The dialects' names of the records: the same records serve both.
using DpsForm = Form;
using BmsForm = Form;
using DpsField = Field;
using BmsField = Field;
using DpsImage = Image;
using DpsHeading = Heading;
using BmsHeading = Heading;

/// New records with their tag and defaults, owned by the caller until appended to a List.
Form* CreateForm();
Field* CreateField();
Image* CreateImage();
Heading* CreateHeading();

/// Destroys a record and its children by its tag; a record with an unknown tag is left alone.
void DestroyRecord(Record* record);

/// Takes the records off the front one by one, destroying each, then destroys the emptied list;
/// does nothing for none.
void DestroyRecordList(List* list);

/// The record as what its tag says it is. The caller has looked at Type.
inline Form& AsForm(Record& record) {
    return static_cast<Form&>(record);
}
inline Field& AsField(Record& record) {
    return static_cast<Field&>(record);
}
inline Image& AsImage(Record& record) {
    return static_cast<Image&>(record);
}
inline Heading& AsHeading(Record& record) {
    return static_cast<Heading&>(record);
}

/// The record's child list, made on first use.
List& ChildrenOf(Record& record);

/// The form that heads a screen's list; none when the list is empty or headed by another record.
Form* FormOf(const List& screen);

/// A text, or the empty text for none.
const std::string& TextOf(const Text& text);

/// Group of screens whose form and command line name none.
inline constexpr const char* kDefaultGroup = "ZOR$Y$";

/// True when a form names a group: one that begins above the blank.
bool HasGroup(const Form& form);

/// Name of a screen stored under its number: "DPS" and at least five digits or signs.
std::string NumberedName(std::int32_t number);

/// Name under which a screen is stored: its number's for a numeric name, else `Name`.
std::string StoredName(const Form& form);

/// A copy of the text that lives as long as the process; equal texts share one copy. For group
/// names, of which a site has few.
const char* InternText(std::string_view text);

} // namespace grolof
