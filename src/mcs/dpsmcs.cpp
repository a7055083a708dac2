#include "mcs/dpsmcs.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <string_view>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "mcs/big_endian.h"
#include "mcs/compaction.h"
#include "mcs/edit_picture.h"
#include "mcs/format.h"
#include "model/codes.h"
#include "model/positions.h"
#include "model/records.h"
#include "support/output_file.h"
#include "support/text.h"

namespace grolof {

namespace {

// Why a screen gets no format.
enum class Refusal { None, DoesNotFit, NoForm, NoWidth, TooManyRecords };

// The headings at the end of a form's children: still to be painted, and painted.
struct TrailingHeadings {
    RecordList Pending;
    RecordList Written;
};

// The state of a build.
struct McsState {
    Offset Base;                          // what the enclosing images add
    std::int64_t Row = 1;                 // where the next item stands on the screen
    std::int64_t Column = 1;              //
    const Form* CurrentForm = nullptr;    // the form met last
    std::int64_t Cursor = kMcsHeaderSize; // where it stands in the buffer
    TrailingHeadings Headings;            // of the current form
    Refusal Refused = Refusal::None;      // sticky: nothing is built any more
    std::uint8_t Spill = 0;               // takes what would fall outside the stream
};

constexpr std::int64_t kLastRow = 24;
constexpr std::int64_t kLastColumn = 80;

std::uint8_t s_chMcsBuffer[kMcsBufferSize];
McsState s_mcs;

void ResetBuild() {
    std::fill(std::begin(s_chMcsBuffer), std::end(s_chMcsBuffer), std::uint8_t{0});
    s_mcs = McsState{};
}

bool IsRefused() {
    return s_mcs.Refused != Refusal::None;
}

void Refuse(Refusal reason) {
    if (!IsRefused())
        s_mcs.Refused = reason;
}

constexpr std::uint8_t LowByte(std::int64_t value) {
    return static_cast<std::uint8_t>(value);
}

// --- The stream ------------------------------------------------------------------------------

// A byte of the item at the cursor. What would fall behind the buffer or into the header goes
// nowhere and ends the build.
std::uint8_t& ItemByte(std::int64_t index) {
    const std::int64_t at = s_mcs.Cursor + index;
    if (at >= static_cast<std::int64_t>(kMcsHeaderSize) &&
        at < static_cast<std::int64_t>(kMcsBufferSize))
        return s_chMcsBuffer[at];
    Refuse(Refusal::DoesNotFit);
    return s_mcs.Spill;
}

// Room for `count` bytes of the item at the cursor, from `index` on; empty, and the build ends,
// when they would pass the buffer. A negative count is no bytes.
std::span<std::uint8_t> ItemBytes(std::int64_t index, std::int64_t count) {
    const std::int64_t at = s_mcs.Cursor + index;
    if (count <= 0)
        return {};
    if (at < static_cast<std::int64_t>(kMcsHeaderSize) ||
        at + count > static_cast<std::int64_t>(kMcsBufferSize)) {
        Refuse(Refusal::DoesNotFit);
        return {};
    }
    return std::span(s_chMcsBuffer)
        .subspan(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
}

// Ends an item of so many bytes. An item that ends exactly with the buffer fits.
void AdvanceCursor(std::int64_t count) {
    s_mcs.Cursor += count;
    if (s_mcs.Cursor < static_cast<std::int64_t>(kMcsHeaderSize) ||
        s_mcs.Cursor > static_cast<std::int64_t>(kMcsBufferSize))
        Refuse(Refusal::DoesNotFit);
}

void PutByte(std::int64_t value) {
    ItemByte(0) = LowByte(value);
    AdvanceCursor(1);
}

// Stores a value in the low nibble of a byte. The high nibble stays what it is, which is not 0
// where a longer initial text ran on before the items behind it were written.
void SetLowNibble(std::uint8_t& byte, std::uint8_t value) {
    byte = static_cast<std::uint8_t>((byte & 0xF0) | value);
}

// Blanks over `width` bytes and a text over them, which may be longer and then runs on.
void PutText(std::int64_t index, std::int64_t width, std::string_view text) {
    std::ranges::fill(ItemBytes(index, width), std::uint8_t{' '});
    const auto bytes = ItemBytes(index, static_cast<std::int64_t>(text.size()));
    std::copy_n(text.begin(), bytes.size(), bytes.begin());
}

// --- Moving over the screen ------------------------------------------------------------------

void AdvanceToColumn(std::int64_t column) {
    if (s_mcs.Column >= column)
        return;
    std::int64_t gap = column - s_mcs.Column;
    for (; gap > kMcsLongestSkip && !IsRefused(); gap -= kMcsLongestSkip)
        PutByte(kMcsSkip | kMcsLongestSkip);
    PutByte(kMcsSkip | gap);
    s_mcs.Column = column;
}

void PutLineItem(std::int64_t repeats) {
    PutByte(repeats);
    PutByte(kMcsLine);
    PutByte(0);
}

// Ends the current row; the rows between it and the one wanted are one empty row, repeated.
void AdvanceToRow(std::int64_t row) {
    if (s_mcs.Row >= row)
        return;
    AdvanceToColumn(std::int64_t{s_mcs.CurrentForm->Width} + 1);
    PutLineItem(0);
    const std::int64_t between = row - (s_mcs.Row + 1);
    if (between > 0)
        PutLineItem(between - 1);
    s_mcs.Row = row;
    s_mcs.Column = 1;
}

// --- Headings --------------------------------------------------------------------------------

// The display code of an intensity and a highlight.
std::uint8_t DisplayCode(std::int32_t intensity, std::int32_t highlight) {
    if (intensity == kSuppressed)
        return kMcsSuppressed;
    if (intensity == kLowIntensity)
        return kMcsLow;
    if (highlight == kBlink)
        return kMcsBlinking;
    if (highlight == kReverse)
        return kMcsReverse;
    return kMcsNormal;
}

// Writes a heading where its own row and column say, whatever images it stands in.
void WriteHeading(const Heading& heading) {
    AdvanceToRow(heading.Row);
    AdvanceToColumn(heading.Column);
    const std::string_view text = TextOf(heading.InitialValue);
    const std::int64_t width = std::max<std::int64_t>(heading.Width, 0);
    ItemByte(0) = LowByte(heading.Width);
    ItemByte(1) = kMcsHeadingB1;
    SetLowNibble(ItemByte(2), DisplayCode(heading.Intensity, heading.Highlight));
    PutText(kMcsItemHead, width, text.substr(0, static_cast<std::size_t>(width)));
    AdvanceCursor(std::int64_t{kMcsItemHead} + width);
    s_mcs.Column += heading.Width;
}

bool StandsBefore(const Heading& heading, const Position& at) {
    return heading.Row < at.Row || (heading.Row == at.Row && heading.Column < at.Column);
}

// Writes the pending headings in front of a position. Only the first is ever looked at: one that
// is out of order holds back those behind it.
void WriteHeadingsBefore(const Position& at) {
    List* pending = s_mcs.Headings.Pending.get();
    while (pending != nullptr && !ListIsEmpty(*pending) && !IsRefused() &&
           StandsBefore(AsHeading(*pending->First->Data), at)) {
        Record* heading = ListPopFront(*pending);
        ListAppend(*s_mcs.Headings.Written, heading);
        WriteHeading(AsHeading(*heading));
    }
}

// Takes the run of headings at the end of a child list out of it, in order.
TrailingHeadings TakeTrailingHeadings(List& children) {
    TrailingHeadings headings{RecordList(ListCreate()), RecordList(ListCreate())};
    while (children.Last != nullptr && children.Last->Data->Type == RecordType::Heading)
        ListPrepend(*headings.Pending, ListPopBack(children));
    return headings;
}

void MoveAll(List& from, List& to) {
    while (!ListIsEmpty(from))
        ListAppend(to, ListPopFront(from));
}

// Moves to a row and column of the current image, past the pending headings in front of them;
// the place on the screen.
Position PositionTo(std::int64_t row, std::int64_t column) {
    const Position at = WrappedPosition(s_mcs.Base, row, column, s_mcs.CurrentForm->Width);
    WriteHeadingsBefore(at);
    AdvanceToRow(at.Row);
    AdvanceToColumn(at.Column);
    return at;
}

// --- The header ------------------------------------------------------------------------------

// Stores a name left-justified, blank-padded and cut.
void PutName(std::size_t offset, std::string_view name) {
    std::uint8_t* to = &s_chMcsBuffer[offset];
    name = name.substr(0, kMcsNameWidth);
    std::fill_n(std::copy(name.begin(), name.end(), to), kMcsNameWidth - name.size(),
                std::uint8_t{' '});
}

std::uint8_t FormFlags(const Form& form) {
    unsigned flags = 0;
    if (form.IgnoreJustification == 0)
        flags |= kMcsJustify;
    if (form.FormType == FormKind::Bms)
        flags |= kMcsBms;
    return static_cast<std::uint8_t>(flags);
}

// Fills the header of a form. The initial cursor is left alone: a second form of the same screen
// keeps the one that a field of the first asked for.
void FillHeader(const Form& form) {
    std::fill_n(&s_chMcsBuffer[kMcsBufferLength], kMcsRows, std::uint8_t{0});
    s_chMcsBuffer[kMcsRows] = LowByte(form.Height);
    s_chMcsBuffer[kMcsColumns] = LowByte(form.Width);
    Put16(&s_chMcsBuffer[kMcsFieldCount], 0);
    PutName(kMcsGroup, HasGroup(form) ? form.Group : kDefaultGroup);
    PutName(kMcsName, StoredName(form));
    s_chMcsBuffer[kMcsMark] = kMcsMarkByte;
    s_chMcsBuffer[kMcsFormFlags] = FormFlags(form);
    s_chMcsBuffer[kMcsColon] = kMcsColonByte;
    s_chMcsBuffer[kMcsOne] = kMcsOneByte;
    std::fill_n(&s_chMcsBuffer[kMcsDataLengthAgain], kMcsDisplay - kMcsDataLengthAgain,
                std::uint8_t{0});
    std::fill_n(&s_chMcsBuffer[kMcsDisplay], kMcsDisplayCount,
                DisplayCode(form.Intensity, form.Highlight));
    s_chMcsBuffer[kMcsFirstRow] = 0;
    s_chMcsBuffer[kMcsFirstColumn] = 0;
    s_chMcsBuffer[kMcsEndMark] = kMcsEndMarkByte;
    s_chMcsBuffer[kMcsEndZero] = 0;
}

void AddTo(std::size_t offset, std::int64_t value) {
    Put16(&s_chMcsBuffer[offset], Get16(&s_chMcsBuffer[offset]) + value);
}

void AddToSums(const Field& field, std::int64_t dataLength) {
    AddTo(kMcsDataLengthAgain, dataLength);
    AddTo(kMcsDataLength, dataLength);
    if (field.Protected == 0)
        AddTo(kMcsInputLength, dataLength);
    AddTo(kMcsBufferLength, (dataLength + 3) & ~std::int64_t{3});
    AddTo(kMcsFieldCount, 1);
}

void PutPosition(std::size_t offset, const Position& at) {
    s_chMcsBuffer[offset] = LowByte(at.Row);
    s_chMcsBuffer[offset + 1] = LowByte(at.Column);
}

// --- Fields ----------------------------------------------------------------------------------

// System values of one type.
struct SystemItem {
    std::int32_t First = 0; ///< values from First to Last
    std::int32_t Last = 0;
    std::uint8_t Type = 0;
};

constexpr SystemItem kSystemItems[] = {
    {kTransactionCode, kTransactionCode, kMcsTransactionCode},
    {kDate1, kDate1 + 3, kMcsDate1To4},
    {kDate1 + 4, kDate1 + 5, kMcsDate5To6},
    {kDate1 + 6, kDate8, kMcsDate7To8},
    {kTime1, kTime3, kMcsTime},
    {kFormName, kFormNumber, kMcsFormIdentity},
    {kPid, kLpid, kMcsPid},
};

std::uint8_t SystemTypeOf(std::int32_t value) {
    for (const SystemItem& item : kSystemItems)
        if (value >= item.First && value <= item.Last)
            return item.Type;
    return kMcsUnknownType;
}

// Page counts and user fields have no item: they belong to the application or to no screen
// position.
bool HasItem(std::int32_t value) {
    const bool isUserField = value >= kUserField1 && value <= kUserField5;
    return !IsPageCount(value) && !isUserField;
}

// Writes the item of a system value. Without an item nothing is written and the column stays,
// so the next item stands in this one's place. The handler shows a PID in four columns, whatever
// the field's width by which the column goes on.
void WriteSystemValue(const Field& field) {
    if (!HasItem(field.Value))
        return;
    const std::uint8_t type = SystemTypeOf(field.Value);
    const std::uint8_t b0 = type == kMcsPid ? kMcsPidWidth : LowByte(field.Width);
    ItemByte(0) = b0;
    ItemByte(1) = static_cast<std::uint8_t>(kMcsProtected | kMcsControl | type);
    SetLowNibble(ItemByte(2), DisplayCode(field.Intensity, field.Highlight));
    AdvanceCursor(kMcsItemHead);
    if (type == kMcsUnknownType && b0 != 0)
        PutByte(0); // readers step four bytes over an unknown system value with a width
    s_mcs.Column += field.Width;
}

bool Justifies() {
    return s_mcs.CurrentForm->IgnoreJustification == 0;
}

// Unlike in COPY books, an unknown data type is text.
bool IsNumeric(const Field& field) {
    return field.DataType == kNumericData;
}

std::uint8_t TextType(const Field& field) {
    const bool right = field.Justification == kRightJustified && Justifies();
    if (field.DataType == kAlphabeticData)
        return right ? kMcsAlphabeticRight : kMcsAlphabetic;
    if (field.Case == kUpperCase || s_mcs.CurrentForm->IgnoreCase != 0)
        return right ? kMcsBothCasesRight : kMcsBothCases;
    return right ? kMcsAlphanumericRight : kMcsAlphanumeric;
}

bool HasEdits(const Field& field) {
    return field.Decimals > 0 || field.InsertDelimiters != 0 || field.FloatingCurrency != 0 ||
           field.FloatingSign != 0 || field.TrailingSign != 0;
}

std::uint8_t NumericType(const Field& field) {
    const bool justified = field.Justification == kLeftJustified && Justifies();
    if (!HasEdits(field) && field.LeadingZeros != 0)
        return justified ? kMcsLeadingZerosJustified : kMcsLeadingZeros;
    if (!HasEdits(field) && field.BlankWhenZero != 0)
        return justified ? kMcsBlankWhenZeroJustified : kMcsBlankWhenZero;
    return kMcsEdited;
}

void SetNumericFlags(const Field& field, std::uint8_t type) {
    if (field.BlankIsZero == 0 && !Justifies())
        ItemByte(1) |= kMcsZeroDisplay;
    else if (field.BlankIsZero == 0 ||
             (field.BlankWhenZero != 0 && s_mcs.CurrentForm->InputBlankWhenZero != 0))
        ItemByte(2) |= kMcsNumericZero;
    const bool leadingZeros = type == kMcsLeadingZeros || type == kMcsLeadingZerosJustified;
    if (leadingZeros && (field.BlankWhenZero != 0 || field.Contents == kBlankContents))
        ItemByte(1) |= kMcsZeroDisplay;
}

// Writes what an edited field has behind its head; the data length.
std::int64_t WriteEdits(const Field& field) {
    const EditPicture edit = MakeEditPicture(field, ItemBytes(kMcsEditedHead, field.Width));
    ItemByte(3) = edit.Flags;
    ItemByte(4) = LowByte(edit.Digits);
    if (edit.ShowsBlankAsZero)
        ItemByte(1) |= kMcsZeroDisplay;
    return edit.Digits;
}

// Writes the initial text of a field, at an index in its item, and says so.
void WriteInitialText(const Field& field, std::int64_t index) {
    const std::string& text = *field.InitialValue;
    ItemByte(2) |= kMcsInitialText;
    PutText(index, field.Width, text);
    if (text.starts_with('>'))
        ItemByte(index) = kMcsEntryMark;
}

// True when a field is the one that the form names for the cursor.
bool IsCursorField(const Field& field) {
    const Form& form = *s_mcs.CurrentForm;
    return field.InitialCursor != 0 ||
           (field.Name && form.ImageName && TextCompareNoCase(*field.Name, *form.ImageName) == 0);
}

void WriteFlags(const Field& field) {
    if (field.Protected != 0)
        ItemByte(1) |= kMcsProtected;
    if (field.TabStop != 0)
        ItemByte(1) |= kMcsTabStop;
    if (field.SetModified != 0)
        ItemByte(2) |= kMcsSetModified;
}

void NotePositions(const Field& field, const Position& at) {
    const bool isFirst = s_chMcsBuffer[kMcsFirstRow] == 0 && s_chMcsBuffer[kMcsFirstColumn] == 0;
    if (field.Protected == 0 && isFirst)
        PutPosition(kMcsFirstRow, at);
    if (IsCursorField(field))
        PutPosition(kMcsCursorRow, at);
}

// Writes an ordinary field. Flags are added to what stands in their bytes already: a longer text
// of the field in front may have run on into them.
void WriteOrdinaryField(const Field& field, const Position& at) {
    const std::uint8_t type = IsNumeric(field) ? NumericType(field) : TextType(field);
    std::int64_t dataLength = field.Width;
    std::int64_t length = kMcsItemHead;
    ItemByte(0) = LowByte(field.Width);
    WriteFlags(field);
    NotePositions(field, at);
    SetLowNibble(ItemByte(1), type);
    if (IsNumeric(field))
        SetNumericFlags(field, type);
    if (type == kMcsEdited) {
        dataLength = WriteEdits(field);
        length = std::int64_t{kMcsEditedHead} + field.Width;
    }
    SetLowNibble(ItemByte(2), DisplayCode(field.Intensity, field.Highlight));
    if (field.InitialValue) {
        WriteInitialText(field, length);
        length += field.Width;
    }
    AdvanceCursor(length);
    AddToSums(field, dataLength);
    s_mcs.Column += field.Width;
}

void WriteField(const Field& field) {
    const Position at = PositionTo(field.Row, field.Column);
    if (field.Contents == kSystemContents)
        WriteSystemValue(field);
    else
        WriteOrdinaryField(field, at);
}

// --- The walk --------------------------------------------------------------------------------

void Walk(List& list);

void WalkAt(List& list, Offset base) {
    const Offset outer = std::exchange(s_mcs.Base, base);
    Walk(list);
    s_mcs.Base = outer;
}

void WalkImage(const Image& image) {
    if (image.Children)
        WalkAt(*image.Children, ImageOffset(image, s_mcs.Base));
}

void WalkRepetitions(const Image& image) {
    for (std::int64_t i = 0; i < TimesPlayed(image) && !IsRefused(); ++i)
        WalkAt(*image.Children, RepetitionOffset(image, s_mcs.Base, i));
}

// Walks the children of a form. The headings at their end are painted between the fields, by
// their positions; those painted go back behind the others, and those at the end of the last row
// or below it, which are never painted, leave the model. A refused screen keeps them all.
void WalkFormChildren(List& children) {
    TrailingHeadings outer = std::exchange(s_mcs.Headings, TakeTrailingHeadings(children));
    Walk(children);
    s_mcs.Base = {};
    if (!IsRefused()) // a form among the children may have no width to wrap over
        PositionTo(kLastRow, kLastColumn - 1);
    MoveAll(*s_mcs.Headings.Written, children);
    if (IsRefused())
        MoveAll(*s_mcs.Headings.Pending, children);
    s_mcs.Headings = std::move(outer);
}

void WalkForm(const Form& form) {
    s_mcs.CurrentForm = &form;
    if (form.Width == 0) {
        Refuse(Refusal::NoWidth);
        return;
    }
    FillHeader(form);
    s_mcs.Cursor = kMcsHeaderSize;
    if (form.Children)
        WalkFormChildren(*form.Children);
}

void WalkRecord(Record& record) {
    switch (record.Type) {
    case RecordType::Form:
        WalkForm(AsForm(record));
        break;
    case RecordType::Field:
        WriteField(AsField(record));
        break;
    case RecordType::Image:
        WalkImage(AsImage(record));
        break;
    case RecordType::Heading:
        WriteHeading(AsHeading(record));
        break;
    case RecordType::RepeatImage:
        WalkRepetitions(AsImage(record));
        break;
    }
}

void Walk(List& list) {
    for (Record& record : list) {
        if (IsRefused())
            return;
        WalkRecord(record);
    }
}

// --- The build -------------------------------------------------------------------------------

// Paints the screen to its last row: a blank, in the form's display, ends row 24.
void FinishScreen() {
    AdvanceToRow(kLastRow);
    const bool unprotected = s_mcs.CurrentForm->_24x79Unprotected != 0;
    AdvanceToColumn(unprotected ? kLastColumn - 1 : kLastColumn);
    PutByte(1);
    PutByte(kMcsHeadingB1);
    PutByte(s_chMcsBuffer[kMcsDisplay] & kMcsDisplayMask);
    PutByte(' ');
    s_mcs.Column += 1;
    AdvanceToRow(kLastRow + 1);
    AdvanceToColumn(1);
}

const char* ReasonOf(Refusal refused) {
    switch (refused) {
    case Refusal::NoForm:
        return "the screen does not begin with a form";
    case Refusal::NoWidth:
        return "its Width is 0";
    case Refusal::TooManyRecords:
        return "its repetitions come to too many records";
    case Refusal::DoesNotFit:
    case Refusal::None:
        break;
    }
    return "the MCS format does not fit in 5120 bytes";
}

void ReportRefusal(const List& screen) {
    const Form* form = s_mcs.CurrentForm != nullptr ? s_mcs.CurrentForm : FormOf(screen);
    const std::string name = form == nullptr ? ""
                             : form->Name    ? *form->Name
                                             : NumberedName(form->Number);
    std::fprintf(stderr, "Form '%s': %s\n", name.c_str(), ReasonOf(s_mcs.Refused));
}

void Build(List& screen) {
    if (FormOf(screen) == nullptr)
        Refuse(Refusal::NoForm);
    if (ExpandedCount(screen) > kMostRecords)
        Refuse(Refusal::TooManyRecords);
    Walk(screen);
    if (!IsRefused())
        FinishScreen();
}

McsBuffer BuildFormat(List& screen) {
    ResetBuild();
    Build(screen);
    if (IsRefused()) {
        ReportRefusal(screen);
        return {};
    }
    const auto size = static_cast<std::size_t>(s_mcs.Cursor);
    Put16(&s_chMcsBuffer[kMcsStreamLength], static_cast<std::int64_t>(size - kMcsHeaderSize));
    return {s_chMcsBuffer, size};
}

bool Exists(const std::string& path) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0;
}

} // namespace

McsBuffer DpsToMcsUncompacted(List& screen) {
    return BuildFormat(screen);
}

McsBuffer DpsToMcs(List& screen) {
    McsBuffer buffer = BuildFormat(screen);
    // The sums in the header are those of the fields written, also for a screen without any: no
    // summary has to be taken from the stream.
    if (buffer.Data != nullptr)
        buffer.Size = kMcsHeaderSize + CompactMcs(s_chMcsBuffer);
    return buffer;
}

bool McsFormatWrite(List& screen, const std::string& path) {
    // The file is opened before the build, so that no screen is built for nothing, but not emptied,
    // so that a screen that cannot be built leaves an older format alone.
    const bool existed = Exists(path);
    OutputFile file;
    if (!file.Open(path, OutputFile::Mode::Keep))
        return false;
    const auto [buffer, size] = DpsToMcs(screen);
    if (buffer == nullptr) {
        file.Close();
        if (!existed)
            unlink(path.c_str());
        return false;
    }
    assert(buffer == &s_chMcsBuffer[0]);
    file.Put({reinterpret_cast<const char*>(buffer), size});
    file.Cut();
    file.Close();
    return true;
}

} // namespace grolof
