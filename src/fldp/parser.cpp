#include "fldp/parser.h"

#include <cstdint>
#include <cstdio>
#include <span>

#include "fldp/headings.h"
#include "fldp/lexer.h"
#include "model/codes.h"
#include "model/conversion_flags.h"
#include "model/positions.h"
#include "support/host.h"

// A form file is a run of statements, a statement a keyword and its clauses, a clause a keyword,
// "=" and a value. Each level is a table of the words that it admits and what reads on behind
// them; a word that the table does not name is a syntax error.

namespace grolof {

namespace {

using enum FldpKeyword;

// A field whose initial value is longer carries the constant text of the whole screen.
constexpr std::size_t kLongestFieldText = 300;

struct FldpParser {
    List* Collection = nullptr; // where new records go; its last one is the current record
    bool HeadingSeen = false;   // the constant text was read; stays set to the end of the file
    bool Stopped = false;       // the file was given up early
    unsigned Options = 0;
    int Depth = 0; // levels of records around the one being read
};

FldpParser s_parser;

// ---------------------------------------------------------------------------------------------
// Tables and how they are read

// A word and what reads on behind it into the current record.
template <class R>
struct Clause {
    FldpKeyword Word;
    void (*Read)(R& record);
};

template <class R>
void ReadBehind(FldpKeyword word, std::span<const Clause<R>> table, R& record) {
    for (const Clause<R>& clause : table)
        if (clause.Word == word)
            return clause.Read(record);
    FldpSyntaxError();
}

// The clauses of one statement, up to its end.
template <const auto& Table, class R>
void Clauses(R& record) {
    for (FldpKeyword word; (word = FldpExpectKeyword()) != END_STATEMENT;)
        ReadBehind<R>(word, Table, record);
}

// A word that stands for a number in some slot.
struct WordValue {
    FldpKeyword Word;
    std::int32_t Value;
};

bool StoreValue(std::span<const WordValue> table, FldpKeyword word, std::int32_t& slot) {
    for (const WordValue& entry : table) {
        if (entry.Word == word) {
            slot = entry.Value;
            return true;
        }
    }
    return false;
}

// ---------------------------------------------------------------------------------------------
// Values: what can stand behind a clause's keyword

template <class R>
void SkipNumber(R&) {
    FldpExpectEqualsNumber();
}
template <class R>
void SkipLiteral(R&) {
    FldpExpectEqualsLiteral();
}
template <class R>
void SkipKeyword(R&) {
    FldpExpectEqualsKeyword();
}

template <auto Slot, class R>
void Number(R& record) {
    record.*Slot = FldpExpectEqualsNumber();
}

template <auto Slot, class R>
void Literal(R& record) {
    record.*Slot = FldpExpectEqualsLiteral();
}

// First character of a literal, NUL of an empty one.
template <auto Slot, class R>
void FirstCharacter(R& record) {
    record.*Slot = *FldpExpectEqualsLiteral().c_str();
}

// Any keyword; those that the table names are stored.
template <auto Slot, const auto& Table, class R>
void AnyWord(R& record) {
    StoreValue(Table, FldpExpectEqualsKeyword(), record.*Slot);
}

// One of the table's words and no other.
template <auto Slot, const auto& Table, class R>
void TableWord(R& record) {
    if (!StoreValue(Table, FldpExpectEqualsKeyword(), record.*Slot))
        FldpSyntaxError();
}

// Any keyword; one of them stores a number.
template <FldpKeyword Word, auto Slot, std::int32_t Value, class R>
void When(R& record) {
    if (FldpExpectEqualsKeyword() == Word)
        record.*Slot = Value;
}

// One word and no other, not kept.
template <FldpKeyword Word, class R>
void Only(R&) {
    if (FldpExpectEqualsKeyword() != Word)
        FldpSyntaxError();
}

// The elements of a parenthesised list and the ")" that closes it. Any punctuation separates.
template <class Element>
void ReadElements(Element readElement) {
    do
        readElement();
    while (FldpExpectPunctuation() != ")");
}

template <class Element>
void ReadList(Element readElement) {
    FldpExpectEquals();
    FldpExpectOpen();
    ReadElements(readElement);
}

// "=" and a list, or a single element, which is then the last token. True for a list, of which
// the "(" has been read.
template <class IsElement>
bool BeginsList(IsElement isElement) {
    FldpExpectEquals();
    if (isElement(FldpNextToken()))
        return false;
    if (FldpLastToken().Kind != FldpKind::Punctuation || FldpLastToken().Text != "(")
        FldpSyntaxError();
    return true;
}

bool IsKeyword(FldpKind kind) {
    return kind == FldpKind::Keyword;
}
bool IsWord(FldpKind kind) {
    return kind == FldpKind::Keyword || kind == FldpKind::Name;
}

// A keyword, not kept, or a list of keywords, of which those in the table are stored.
template <auto Slot, const auto& Table, class R>
void WordInList(R& record) {
    if (BeginsList(IsKeyword))
        ReadElements([&] { StoreValue(Table, FldpExpectKeyword(), record.*Slot); });
}

template <class R>
void SkipWordOrList(R&) {
    if (BeginsList(IsKeyword))
        ReadElements(FldpExpectKeyword);
}

// ---------------------------------------------------------------------------------------------
// Clauses that several kinds of record share

constexpr WordValue kColours[] = {{BLUE, 'B'},    {BLACK, 'E'}, {CYAN, 'C'},  {GREEN, 'G'},
                                  {MAGENTA, 'M'}, {RED, 'R'},   {YELLOW, 'Y'}};
constexpr WordValue kIntensities[] = {
    {HIGH, kHighIntensity}, {LOW, kLowIntensity}, {SUPPRESSED, kSuppressed}};
constexpr WordValue kEmphases[] = {{UNDERSCORE, kUnderscore}};
constexpr WordValue kHighlights[] = {{BLINK, kBlink}, {REVERSE, kReverse}};

template <class R>
constexpr Clause<R> kBackground[] = {{COLOR, AnyWord<&R::BackColour, kColours>}};

template <class R>
constexpr Clause<R> kForeground[] = {{COLOR, AnyWord<&R::Colour, kColours>},
                                     {INTENSITY, AnyWord<&R::Intensity, kIntensities>}};

template <class R>
constexpr Clause<R> kEmphasis[] = {{TYPE, WordInList<&R::Emphasis, kEmphases>}};

template <class R>
constexpr Clause<R> kHighlight[] = {{TYPE, WordInList<&R::Highlight, kHighlights>}};

template <class R>
constexpr Clause<R> kDimension[] = {{HEIGHT, Number<&R::Height>}, {WIDTH, Number<&R::Width>}};

template <class R>
constexpr Clause<R> kSecurity[] = {
    {FAIL_ACTION, SkipKeyword}, {TYPE, SkipKeyword}, {LEVEL, SkipNumber}};

template <class R>
constexpr Clause<R> kTest[] = {{SET_MODE, SkipKeyword}, {DEPENDENT, SkipKeyword}};

template <class R>
constexpr Clause<R> kFontIndex[] = {{FONT_INDEX, SkipNumber}};

// The two switches that character and input attributes put back. An image has its direction and
// its contents where a field has these switches, and loses them, on purpose.
void ClearSwitches(Form& form) {
    form.IgnoreCase = 0;
    form.IgnoreJustification = 0;
}
void ClearSwitches(Image& image) {
    image.Direction = 0;
    image.Contents = 0;
}
void ClearSwitches(Field& field) {
    field.BlankIsZero = 0;
    field.MandatoryEntry = 0;
}

template <const auto& Table, class R>
void ClearingClauses(R& record) {
    ClearSwitches(record);
    Clauses<Table>(record);
}

// ---------------------------------------------------------------------------------------------
// Records

Record& CurrentRecord() {
    return *ListLast(*s_parser.Collection);
}

// The statements of the current record up to its end word, or to the early stop. Its items go
// into its own list, so that it stays the current record among them.
template <class R>
void ReadStatements(std::span<const Clause<R>> table, FldpKeyword end) {
    while (!s_parser.Stopped) {
        const FldpKeyword word = FldpExpectKeyword();
        if (word == end)
            return;
        if (word != END_STATEMENT)
            ReadBehind<R>(word, table, static_cast<R&>(CurrentRecord()));
    }
}

void RefuseDepth() {
    std::fprintf(stderr, "%s: line %d: nested deeper than %d levels\n", FldpFileName().c_str(),
                 FldpLineNumber(), kDeepestNesting);
    EndRun(1);
}

// Adds a new record to the current collection and reads it.
template <class R>
void ReadRecord(R* (*create)(), std::span<const Clause<R>> table, FldpKeyword end) {
    if (s_parser.Depth == kDeepestNesting)
        RefuseDepth();
    ++s_parser.Depth;
    ListAppend(*s_parser.Collection, create());
    ReadStatements<R>(table, end);
    --s_parser.Depth;
}

// The same with the item list of a record as the current collection.
template <class R>
void ReadItem(Record& owner, R* (*create)(), std::span<const Clause<R>> table, FldpKeyword end) {
    List* const outer = s_parser.Collection;
    s_parser.Collection = &ChildrenOf(owner);
    ReadRecord<R>(create, table, end);
    s_parser.Collection = outer;
}

// ---------------------------------------------------------------------------------------------
// Fields

constexpr Clause<Field> kFieldDimension[] = {{HEIGHT, Number<&Field::Height>},
                                             {WIDTH, Number<&Field::Width>},
                                             {MAXIMUM_WIDTH, SkipNumber},
                                             {VARIABLE_WIDTH, SkipKeyword}};

constexpr Clause<Field> kFieldInput[] = {
    {DATA_ENTRY, When<MANDATORY_ENTRY, &Field::MandatoryEntry, 1>},
    {BLANK_INPUT, When<ZERO, &Field::BlankIsZero, 1>},
    {ALLOW_QUERY, SkipKeyword},
    {REPLENISH_NOTIFICATION, SkipKeyword},
    {VALUE_CHECK, SkipKeyword}};

constexpr WordValue kFieldContents[] = {{STORAGE, kStorageContents},
                                        {BLANK, kBlankContents},
                                        {CONSTANT, kConstantContents},
                                        {SYSTEM, kSystemContents},
                                        {REPLENISH, kReplenishContents}};

constexpr WordValue kSystemValues[] = {{TRANSACTION_CODE, kTransactionCode},
                                       {DATE_1, kDate1},
                                       {DATE_2, kDate1 + 1},
                                       {DATE_3, kDate1 + 2},
                                       {DATE_4, kDate1 + 3},
                                       {DATE_5, kDate1 + 4},
                                       {DATE_6, kDate1 + 5},
                                       {DATE_7, kDate1 + 6},
                                       {DATE_8, kDate1 + 7},
                                       {TIME_1, kTime1},
                                       {TIME_2, kTime1 + 1},
                                       {TIME_3, kTime1 + 2},
                                       {FORM_NAME, kFormName},
                                       {FORM_NUMBER, kFormNumber},
                                       {CURRENT_PAGE_COUNT, kCurrentPageCount},
                                       {DATA_PAGE_COUNT, kCurrentPageCount + 1},
                                       {INDEX_PAGE_COUNT, kCurrentPageCount + 2},
                                       {TOTAL_PAGE_COUNT, kTotalPageCount},
                                       {PID, kPid},
                                       {LPID, kLpid},
                                       {USER_FIELD_1, kUserField1},
                                       {USER_FIELD_2, kUserField1 + 1},
                                       {USER_FIELD_3, kUserField1 + 2},
                                       {USER_FIELD_4, kUserField1 + 3},
                                       {USER_FIELD_5, kUserField1 + 4}};

constexpr Clause<Field> kFieldOutput[] = {{CONTENTS, TableWord<&Field::Contents, kFieldContents>},
                                          {SYSTEM_VALUE, TableWord<&Field::Value, kSystemValues>}};

// A field that is fixed in one direction is fixed in both.
void FieldVariable(Field& field) {
    if (FldpExpectEqualsKeyword() != NO)
        return;
    field.VariableColumn = 0;
    field.VariableRow = 0;
}

constexpr Clause<Field> kFieldPosition[] = {{ROW, Number<&Field::Row>},
                                            {COLUMN, Number<&Field::Column>},
                                            {VARIABLE_ROW, FieldVariable},
                                            {VARIABLE_COLUMN, FieldVariable}};

void FieldInitialValue(Field& field) {
    Literal<&Field::InitialValue>(field);
    if (field.InitialValue->size() > kLongestFieldText)
        s_parser.HeadingSeen = true;
}

constexpr Clause<Field> kFieldPredefined[] = {{INITIAL_VALUE, FieldInitialValue},
                                              {REPLENISH_STRING, Literal<&Field::Replenish>}};

constexpr WordValue kDataTypes[] = {{ALPHA_NUMERIC, kAlphanumericData},
                                    {ALPHABETIC, kAlphabeticData},
                                    {INTEGER, kNumericData},
                                    {NUMERIC, kNumericData},
                                    {COMPUTATIONAL, kNumericData},
                                    {BINARY, kNumericData}};

constexpr Clause<Field> kFieldStorage[] = {{DATA_TYPE, TableWord<&Field::DataType, kDataTypes>}};

constexpr Clause<Field> kFieldTab[] = {{TYPE, When<NONE, &Field::TabStop, 0>}};

// The switch that a word of an edit list sets.
struct WordSwitch {
    FldpKeyword Word;
    std::int32_t Field::*Slot;
};

constexpr WordSwitch kDisplays[] = {{BLANK_WHEN_ZERO, &Field::BlankWhenZero},
                                    {INSERT_DELIMITERS, &Field::InsertDelimiters},
                                    {REPLENISH_FOR_BLANKS, &Field::ReplenishForBlanks}};

constexpr WordSwitch kSigns[] = {{FLOATING, &Field::FloatingSign},
                                 {TRAILING, &Field::TrailingSign},
                                 {DISPLAY_POSITIVE, &Field::PositiveSign},
                                 {CREDIT, &Field::CreditSign},
                                 {NONE, nullptr}};

void SetSwitch(std::span<const WordSwitch> table, FldpKeyword word, Field& field) {
    for (const WordSwitch& entry : table) {
        if (entry.Word != word)
            continue;
        if (entry.Slot != nullptr)
            field.*entry.Slot = 1;
        return;
    }
    FldpSyntaxError();
}

template <const auto& Table>
void Switches(Field& field) {
    ReadList([&] { SetSwitch(Table, FldpExpectKeyword(), field); });
}

constexpr WordValue kCases[] = {{UPPER, kUpperCase}, {LOWER, kLowerCase}};
constexpr WordValue kJustifications[] = {{LEFT, kLeftJustified}, {RIGHT, kRightJustified}};
constexpr WordValue kLeadingZeros[] = {{DISPLAY, 1}, {SUPPRESS, 0}};
constexpr WordValue kMonetarySigns[] = {{FLOATING, 1}, {LEADING, 1}};

constexpr Clause<Field> kGeneralEdit[] = {
    {CASE, AnyWord<&Field::Case, kCases>},
    {DECIMAL_SCALE, Number<&Field::Decimals>},
    {DISPLAY, Switches<kDisplays>},
    {JUSTIFICATION, AnyWord<&Field::Justification, kJustifications>},
    {LEADING_ZEROES, AnyWord<&Field::LeadingZeros, kLeadingZeros>},
    {MONETARY_SIGN, AnyWord<&Field::FloatingCurrency, kMonetarySigns>},
    {PROTECTED, When<YES, &Field::Protected, 1>},
    {RADIX, SkipKeyword},
    {SET_MODIFIED, When<YES, &Field::SetModified, 1>},
    {SIGN, Switches<kSigns>},
    {USAGE, When<OUTPUT, &Field::UsageOutput, 1>}};

constexpr Clause<Field> kFieldStatements[] = {
    {NAME, Literal<&Field::Name>},
    {BACKGROUND_ATTRIBUTES, Clauses<kBackground<Field>>},
    {FOREGROUND_ATTRIBUTES, Clauses<kForeground<Field>>},
    {CHARACTER_ATTRIBUTES, ClearingClauses<kFontIndex<Field>>},
    {DIMENSION, Clauses<kFieldDimension>},
    {EMPHASIS, Clauses<kEmphasis<Field>>},
    {HIGHLIGHT, Clauses<kHighlight<Field>>},
    {INPUT_ATTRIBUTES, ClearingClauses<kFieldInput>},
    {OUTPUT_ATTRIBUTES, Clauses<kFieldOutput>},
    {POSITION_IMAGE, Clauses<kFieldPosition>},
    {PREDEFINED_VALUE, Clauses<kFieldPredefined>},
    {STORAGE, Clauses<kFieldStorage>},
    {TAB, Clauses<kFieldTab>},
    {GENERAL_EDIT, Clauses<kGeneralEdit>},
    {SECURITY, Clauses<kSecurity<Field>>},
    {TEST, Clauses<kTest<Field>>}};

template <class Owner>
void ReadField(Owner& owner) {
    ReadItem<Field>(owner, CreateField, kFieldStatements, END_FIELD);
}

// ---------------------------------------------------------------------------------------------
// Images

template <class Owner>
void ReadImage(Owner& owner);

constexpr WordValue kImageContents[] = {{BLANK, kBlankContents}, {STORAGE, kStorageContents}};

constexpr Clause<Image> kImageOutput[] = {{CONTENTS, TableWord<&Image::Contents, kImageContents>}};

constexpr Clause<Image> kImagePosition[] = {{ROW, Number<&Image::Row>},
                                            {COLUMN, Number<&Image::Column>},
                                            {VARIABLE_ROW, When<NO, &Image::VariableRow, 0>},
                                            {VARIABLE_COLUMN, When<NO, &Image::VariableColumn, 0>}};

constexpr Clause<Image> kRepeatImage[] = {{DIRECTION, When<RIGHT, &Image::Direction, kHorizontal>},
                                          {CONSTANTS, When<YES, &Image::Constants, 1>},
                                          {COUNT, Number<&Image::Count>},
                                          {SPACING, Number<&Image::Spacing>},
                                          {INDEX_ITEM, Literal<&Image::IndexName>}};

void RepeatImage(Image& image) {
    image.Type = RecordType::RepeatImage;
    Clauses<kRepeatImage>(image);
}

constexpr Clause<Image> kImageTest[] = {{DEPENDENT, SkipKeyword}};

// A plain image stays one, so this changes nothing that is an image at all.
void ImageTest(Image& image) {
    if (image.Type != RecordType::Image)
        image.Type = RecordType::RepeatImage;
    Clauses<kImageTest>(image);
}

constexpr WordValue kImageTypes[] = {{LINKED, 1}};

// NORMAL does not take back an earlier LINKED.
void ImageType(Image& image) {
    const FldpKeyword word = FldpExpectEqualsKeyword();
    if (!StoreValue(kImageTypes, word, image.Linked) && word != NORMAL)
        FldpSyntaxError();
}

constexpr Clause<Image> kImageStatements[] = {
    {BACKGROUND_ATTRIBUTES, Clauses<kBackground<Image>>},
    {FOREGROUND_ATTRIBUTES, Clauses<kForeground<Image>>},
    {CHARACTER_ATTRIBUTES, ClearingClauses<kFontIndex<Image>>},
    {SECURITY, Clauses<kSecurity<Image>>},
    {DIMENSION, Clauses<kDimension<Image>>},
    {EMPHASIS, Clauses<kEmphasis<Image>>},
    {HIGHLIGHT, Clauses<kHighlight<Image>>},
    {NAME, Literal<&Image::Name>},
    {REFERENCE_NAME, Literal<&Image::Name>},
    {OUTPUT_ATTRIBUTES, Clauses<kImageOutput>},
    {POSITION_IMAGE, Clauses<kImagePosition>},
    {REPEAT_IMAGE, RepeatImage},
    {TEST, ImageTest},
    {TYPE, ImageType},
    {FIELD, ReadField},
    {IMAGE, ReadImage}};

template <class Owner>
void ReadImage(Owner& owner) {
    ReadItem<Image>(owner, CreateImage, kImageStatements, END_IMAGE);
}

// ---------------------------------------------------------------------------------------------
// Forms

constexpr Clause<Form> kCursor[] = {{IMAGE_NAME, Literal<&Form::ImageName>}};

constexpr Clause<Form> kEditSymbol[] = {{DECIMAL_POINT, SkipLiteral}, {COMMA, SkipLiteral}};

constexpr Clause<Form> kFormHighlight[] = {{TYPE, SkipWordOrList}};

constexpr Clause<Form> kFormInput[] = {{CONTROL_CHARACTERS_ALLOWED, SkipKeyword}};

constexpr Clause<Form> kFormPredefined[] = {{INITIAL_VALUE, Literal<&Form::InitialValue>},
                                            {I18N_CCSNUM, SkipNumber},
                                            {REPLENISH_STRING, Literal<&Form::Replenish>},
                                            {MARKING_CHARACTER, FirstCharacter<&Form::MarkingChar>},
                                            {SOE_CHARACTER, FirstCharacter<&Form::SoeChar>}};

void GeneratePrefix(Form& form) {
    form.GeneratePrefix = FldpExpectEqualsKeyword() == YES ? 1 : 0;
}

constexpr Clause<Form> kFormStorage[] = {
    {GENERATE, GeneratePrefix}, {GENERATE_TYPE, Only<FCA>}, {SOURCE, Only<GENERATE>}};

void FieldCharacters(Form&) {
    ReadList(FldpExpectLiteral);
}

// A name may be any word, keywords included. Of a list the last one counts.
void FunctionKeyName(Form& form) {
    if (!BeginsList(IsWord)) {
        form.FunctionKeyName = FldpLastToken().Text;
        return;
    }
    ReadElements([&] {
        if (!IsWord(FldpNextToken()))
            FldpSyntaxError();
        form.FunctionKeyName = FldpLastToken().Text;
    });
}

constexpr Clause<Form> kFunctionKeys[] = {{NAME, FunctionKeyName}};

void FormGroup(Form& form) {
    form.Group = InternText(FldpExpectEqualsLiteral());
}

// A field behind the constant text gives the rest of the file up.
void FormField(Form& form) {
    if (!s_parser.HeadingSeen)
        return ReadField(form);
    std::fputs("Ingoring FIELD following Heading!\n", stdout);
    FldpEndInput();
    s_parser.Stopped = true;
}

constexpr Clause<Form> kFormStatements[] = {
    {BACKGROUND_ATTRIBUTES, Clauses<kBackground<Form>>},
    {FOREGROUND_ATTRIBUTES, Clauses<kForeground<Form>>},
    {CHARACTER_ATTRIBUTES, ClearingClauses<kFontIndex<Form>>},
    {CHECKNUMBER_TEST, Clauses<kTest<Form>>},
    {CONVERSATION, Clauses<kTest<Form>>},
    {TEST, Clauses<kTest<Form>>},
    {CURSOR, Clauses<kCursor>},
    {DIMENSION, Clauses<kDimension<Form>>},
    {EDIT_SYMBOL, Clauses<kEditSymbol>},
    {EMPHASIS, Clauses<kEmphasis<Form>>},
    {FIELD, FormField},
    {FIELD_CHARACTERS, FieldCharacters},
    {FUNCTION_KEYS, Clauses<kFunctionKeys>},
    {GROUP, FormGroup},
    {HIGHLIGHT, Clauses<kFormHighlight>},
    {IMAGE, ReadImage},
    {INPUT_ATTRIBUTES, ClearingClauses<kFormInput>},
    {NAME, Literal<&Form::Name>},
    {NUMBER, Number<&Form::Number>},
    {PREDEFINED_VALUE, Clauses<kFormPredefined>},
    {SECURITY, Clauses<kSecurity<Form>>},
    {START_IMAGE, SkipLiteral},
    {STOP_IMAGE, SkipLiteral},
    {STORAGE, Clauses<kFormStorage>}};

std::int32_t Flag(ConversionFlag flag) {
    return (s_parser.Options & flag) != 0 ? 1 : 0;
}

// The options overrule what the form's own statements did to the two switches among these.
void CopyOptions(Form& form) {
    form.NumericName = Flag(kNumericName);
    form.IgnoreCase = Flag(kIgnoreCase);
    form.IgnoreJustification = Flag(kIgnoreJustification);
    form._24x79Unprotected = Flag(k24x79Unprotected);
    form.InputBlankWhenZero = Flag(kInputBlankWhenZero);
    form.RedefInit = Flag(kRedefInit);
}

void ReadForm() {
    ReadRecord<Form>(CreateForm, kFormStatements, END_FORM);
    Form& form = AsForm(CurrentRecord());
    CopyOptions(form);
    ExtractHeadings(form);
}

void ReadForms() {
    while (FldpNextToken() != FldpKind::EndOfInput) {
        if (!IsKeyword(FldpLastToken().Kind))
            FldpSyntaxError();
        if (FldpLastToken().Keyword == FORM)
            ReadForm();
        else if (FldpLastToken().Keyword != END_STATEMENT)
            FldpSyntaxError();
    }
}

} // namespace

RecordList ParseFldpFile(const std::string& path, unsigned options) {
    if (!FldpOpen(path))
        return nullptr;
    RecordList forms(ListCreate());
    s_parser = {};
    s_parser.Collection = forms.get();
    s_parser.Options = options;
    ReadForms();
    return forms;
}

} // namespace grolof
