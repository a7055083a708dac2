#include "screendef/reader.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string_view>
#include <variant>

#include "model/positions.h"
#include "screendef/attributes.h"
#include "screendef/element_names.h"
#include "support/input_file.h"
#include "support/text.h"

namespace grolof {

namespace {

// State of one load. The current line is the one read last, without its surroundings of blanks
// and its line end.
struct DefinitionReader {
    InputFile File;
    std::string Buffer;
    std::string_view Line; ///< in Buffer
    bool Ended = false;    ///< nothing more is read
    bool TooDeep = false;
    int Depth = 0; ///< elements that are open
};

// Line ends go first, then blanks on both sides. Tabs stay.
std::string_view Stripped(std::string_view line) {
    const auto end = line.find_last_not_of("\r\n");
    line = line.substr(0, end + 1); // none found: npos + 1 is 0
    line = line.substr(0, line.find_last_not_of(' ') + 1);
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    return line;
}

bool NextLine(DefinitionReader& reader) {
    if (!reader.Ended && !reader.File.ReadLine(reader.Buffer, kLongestDefinitionLine))
        reader.Ended = true;
    reader.Line = reader.Ended ? std::string_view() : Stripped(reader.Buffer);
    return !reader.Ended;
}

// A number begins with a digit or a sign at once; anything else is 0.
std::int32_t NumberValue(std::string_view value) {
    const bool isNumber =
        BeginsWithDigit(value) || value.starts_with('-') || value.starts_with('+');
    return isNumber ? NumberOf(std::string(value)) : 0;
}

// The first three characters decide whether the value is a word: DPSX counts as DPS.
FormKind FormTypeValue(std::string_view value) {
    for (const FormTypeWord& word : kFormTypeWords)
        if (TextCompareNoCaseN(value, word.Word, word.Word.size()) == 0)
            return word.Kind;
    return static_cast<FormKind>(NumberValue(value));
}

// The form type behind the '=': here, and only here, blanks may stand before the quote, and a
// missing quote voids the attribute.
std::optional<FormKind> FormTypeBehind(std::string_view rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    if (!rest.starts_with('"'))
        return std::nullopt;
    return FormTypeValue(rest.substr(1));
}

// Takes one attribute's value over. The character behind the '=' is taken to be the opening
// quote without a look; a line that ends there has an empty value.
template <class Kind>
void Assign(Kind& record, const Attribute<Kind>& attribute, std::string_view rest, Text& stored) {
    const std::string_view value = rest.substr(rest.empty() ? 0 : 1);
    const std::string_view text = value.substr(0, value.find('"'));
    std::visit(MemberCases{
                   [&](Text Kind::*member) { record.*member = text; },
                   [&](std::int32_t Kind::*member) { record.*member = NumberValue(value); },
                   [&](char Kind::*member) { record.*member = value.empty() ? '\0' : value[0]; },
                   [&](FormKind Kind::*member) {
                       record.*member = FormTypeBehind(rest).value_or(record.*member);
                   },
                   [](const char* Kind::*) {},
                   [&](StorageName) { stored = text; },
               },
               attribute.Member);
}

template <class Kind>
void ReadAttribute(std::string_view line, Kind& record, Text& stored) {
    if (const Attribute<Kind>* attribute = AttributesOf(record).Find(line); attribute != nullptr)
        Assign(record, *attribute, line.substr(attribute->Name.size()), stored);
}

// What the end of an element does to its record. A form that bears the name of a numbered screen
// as its NewName is stored under its number.
void Finish(Form& form, const Text& stored) {
    if (stored == NumberedName(form.Number))
        form.NumericName = 1;
}

void Finish(Image& image, const Text&) {
    if (image.Count > 0)
        image.Type = RecordType::RepeatImage;
}

void Finish(Record&, const Text&) {}

void ReadElements(DefinitionReader& reader, List& list);

// Reads the element whose start tag is the current line. It ends at a line that begins with "</"
// or, when it has children, at the line that ended the list of them.
template <class Kind>
void ReadElement(DefinitionReader& reader, Kind& record) {
    Text stored;
    while (NextLine(reader) && !reader.Line.starts_with('<'))
        ReadAttribute(reader.Line, record, stored);
    if (!reader.Ended && !reader.Line.starts_with("</"))
        ReadElements(reader, ChildrenOf(record));
    Finish(record, stored);
}

// Adds a new record to the list before it is read.
template <class Kind>
void AddAndRead(DefinitionReader& reader, List& list, Kind* record) {
    ListAppend(list, record);
    ReadElement(reader, *record);
}

bool IsElement(std::string_view text, std::string_view name) {
    return text.size() == name.size() && TextCompareNoCase(text, name) == 0;
}

// The kind of record that the current line starts; none when it is no start tag. Fields and
// headings go by the names in force and by the BMS names.
std::optional<RecordType> StartedRecord(std::string_view line) {
    if (!line.starts_with('<'))
        return std::nullopt;
    const std::string_view text = line.substr(1);
    const ElementNames& names = CurrentElementNames();
    if (IsElement(text, names.Field) || IsElement(text, kBmsFieldElement))
        return RecordType::Field;
    if (IsElement(text, names.Heading) || IsElement(text, kBmsHeadingElement))
        return RecordType::Heading;
    if (IsElement(text, kImageElement))
        return RecordType::Image;
    if (IsElement(text, kDpsFormElement) || IsElement(text, kBmsFormElement))
        return RecordType::Form;
    return std::nullopt;
}

void ReadRecord(DefinitionReader& reader, List& list, RecordType type) {
    switch (type) {
    case RecordType::Form:
        return AddAndRead(reader, list, CreateForm());
    case RecordType::Field:
        return AddAndRead(reader, list, CreateField());
    case RecordType::Image:
    case RecordType::RepeatImage:
        return AddAndRead(reader, list, CreateImage());
    case RecordType::Heading:
        return AddAndRead(reader, list, CreateHeading());
    }
}

// Reads a record one level deeper; beyond the deepest level the load is given up.
void ReadNested(DefinitionReader& reader, List& list, RecordType type) {
    if (reader.Depth == kDeepestNesting) {
        reader.TooDeep = reader.Ended = true;
        return;
    }
    ++reader.Depth;
    ReadRecord(reader, list, type);
    --reader.Depth;
}

// Reads elements into the list, from the current line up to a line with "</" anywhere in it, the
// end line of the element that owns the list. What is no start tag is passed over; the end line
// of an unknown element therefore ends the list early.
void ReadElements(DefinitionReader& reader, List& list) {
    do
        if (const auto type = StartedRecord(reader.Line))
            ReadNested(reader, list, *type);
    while (NextLine(reader) && reader.Line.find("</") == std::string_view::npos);
}

} // namespace

RecordList LoadScreenDefinition(const std::string& path) {
    RecordList forms(ListCreate());
    DefinitionReader reader;
    if (!reader.File.Open(path))
        return forms;
    ReadElements(reader, *forms); // the line is empty, so this begins with reading the first one
    if (reader.TooDeep) {
        std::fprintf(stderr, "%s: elements nested more than %d deep\n", path.c_str(),
                     kDeepestNesting);
        return RecordList(ListCreate());
    }
    return forms;
}

} // namespace grolof
