#include "fldp/headings.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "model/positions.h"

namespace grolof {

namespace {

// A joining blank must leave room for it and one character more short of the last column.
constexpr std::int32_t kLastJoin = kConstantTextColumns - 2;

struct RecordDeleter {
    void operator()(Record* record) const { DestroyRecord(record); }
};

struct Scan {
    Form& Owner;
    std::string_view Text;                // up to the field's width
    std::size_t At = 0;                   // next character
    std::optional<FieldPositions> Fields; // of this form alone, collected at the first question
};

std::int32_t RowAt(std::size_t i) {
    return static_cast<std::int32_t>(i / kConstantTextColumns) + 1;
}
std::int32_t ColumnAt(std::size_t i) {
    return static_cast<std::int32_t>(i % kConstantTextColumns) + 1;
}

FieldPositions FieldPositionsOf(Form& form) {
    ListNode node{nullptr, nullptr, &form};
    const List screen{1, &node, &node, nullptr};
    return CollectFieldPositions(screen);
}

bool FieldStartsAt(Scan& scan, std::size_t i) {
    if (!scan.Fields)
        scan.Fields = FieldPositionsOf(scan.Owner);
    return FieldAtPosition(*scan.Fields, RowAt(i), ColumnAt(i));
}

// True when the character at hand is a lone blank between two words of one heading.
bool AtJoiningBlank(Scan& scan, const Heading& heading) {
    const std::size_t i = scan.At;
    return i + 1 < scan.Text.size() && heading.Column + heading.Width <= kLastJoin &&
           scan.Text[i] == ' ' && scan.Text[i + 1] != ' ' && !FieldStartsAt(scan, i);
}

void TakeCharacter(Scan& scan, Heading& heading) {
    ++scan.At;
    ++heading.Width;
}

void TakeHeading(Scan& scan) {
    Heading& heading = *CreateHeading();
    ListAppend(ChildrenOf(scan.Owner), &heading);
    heading.Row = RowAt(scan.At);
    heading.Column = ColumnAt(scan.At);
    heading.Width = 0;
    heading.Highlight = scan.Owner.Highlight;
    heading.Intensity = scan.Owner.Intensity;
    const std::size_t start = scan.At;
    while (scan.At < scan.Text.size() && scan.Text[scan.At] != ' ' &&
           heading.Column + heading.Width <= kConstantTextColumns) {
        TakeCharacter(scan, heading);
        if (AtJoiningBlank(scan, heading))
            TakeCharacter(scan, heading);
    }
    heading.InitialValue = std::string(scan.Text.substr(start, scan.At - start));
}

// The text to scan: as much of a field's initial value as its width covers.
std::string_view ConstantText(const Field& field) {
    if (!field.InitialValue || field.Width <= 0)
        return {};
    return std::string_view(*field.InitialValue).substr(0, static_cast<std::size_t>(field.Width));
}

} // namespace

void ExtractHeadings(Form& form) {
    if (!form.Children)
        return;
    const std::unique_ptr<Record, RecordDeleter> last(ListPopBack(*form.Children));
    if (last == nullptr || last->Type != RecordType::Field)
        return;
    Scan scan{form, ConstantText(AsField(*last)), 0, {}};
    while (scan.At < scan.Text.size()) {
        if (scan.Text[scan.At] == ' ')
            ++scan.At;
        else
            TakeHeading(scan);
    }
}

} // namespace grolof
