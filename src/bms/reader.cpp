#include "bms/reader.h"

#include <algorithm>
#include <string_view>

#include "bms/tokens.h"
#include "support/text.h"

namespace grolof {

BmsReader s_bms;

namespace {

// Columns, counted from 0.
constexpr std::size_t kContinuationColumn = 15;  // where a continuation line's text begins
constexpr std::size_t kMarkColumn = 71;          // where a continued line is marked
constexpr std::size_t kSequenceNumberLength = 8; // blank or digit, six digits, blank

void CutTrailingBlanks(std::string& line) {
    line.resize(line.find_last_not_of(' ') + 1); // npos + 1 is 0
}

// One line feed, one carriage return, then blanks: a second carriage return stays, as do tabs.
void CutLineEnd(std::string& line) {
    for (const char end : {'\n', '\r'})
        if (!line.empty() && line.back() == end)
            line.pop_back();
    CutTrailingBlanks(line);
}

// The blank in column 8 is asked for after trailing blanks were cut, so a line that bears
// nothing but its number keeps it.
void CutSequenceNumber(std::string& line) {
    if (line.size() < kSequenceNumberLength)
        return;
    const char* columns = line.data();
    if ((columns[0] == ' ' || IsDigit(columns[0])) &&
        std::all_of(columns + 1, columns + kSequenceNumberLength - 1, IsDigit) &&
        columns[kSequenceNumberLength - 1] == ' ')
        line.erase(0, kSequenceNumberLength);
}

// A short line gets two blanks more, so that a bare END reads "END " like any other.
void PadShortLine(std::string& line) {
    if (line.size() <= kContinuationColumn)
        line.append(2, ' ');
}

// Assembler listing controls say nothing about a map. SPACE is compared without a blank behind
// it, so every word that begins so is skipped, on continuation lines too.
bool IsListingControl(std::string_view line) {
    while (!line.empty() && IsSpace(line.front()))
        line.remove_prefix(1);
    for (const std::string_view control : {"SPACE", "TITLE ", "END ", "PRINT "})
        if (TextCompareNoCaseN(line, control, control.size()) == 0)
            return true;
    return false;
}

// Cuts the continuation mark and the sequence field and tells whether the statement goes on.
// Blanks before the mark go too; a line without a mark keeps its blanks up to column 71.
bool CutContinuationMark(std::string& line) {
    if (line.size() <= kMarkColumn)
        return false;
    const bool continues = line[kMarkColumn] != ' ';
    line.resize(kMarkColumn);
    if (continues)
        CutTrailingBlanks(line);
    return continues;
}

// Joins a line to the statement. What is beyond the longest statement only matters by being
// there, so one character of it is kept.
void Join(std::string& statement, std::string_view line) {
    if (!statement.empty())
        line.remove_prefix(std::min(line.size(), kContinuationColumn));
    const std::size_t room = kBmsLongestStatement + 1 - statement.size();
    statement.append(line.substr(0, room));
}

// The next physical line without its end and number. At the end of the file the file is closed.
bool ReadLine() {
    BmsReader& bms = s_bms;
    if (!bms.File || !bms.File->ReadEndedLine(bms.Line, kBmsLongestLine)) {
        bms.EndOfFile = true;
        bms.File.reset();
        return false;
    }
    ++bms.LinesRead;
    CutLineEnd(bms.Line);
    CutSequenceNumber(bms.Line);
    return true;
}

// Reads the lines of one statement. The statement line is the line after the last statement;
// a comment moves it on, a skipped listing control on purpose does not.
bool Assemble() {
    BmsReader& bms = s_bms;
    bms.Statement.clear();
    bms.StatementLine = bms.LinesRead + 1;
    for (bool continues = true; continues;) {
        if (!ReadLine())
            return false;
        if (bms.Line.starts_with('*')) {
            bms.StatementLine = bms.LinesRead + 1;
            continue;
        }
        PadShortLine(bms.Line);
        if (IsListingControl(bms.Line))
            continue;
        continues = CutContinuationMark(bms.Line);
        Join(bms.Statement, bms.Line);
    }
    return true;
}

// Only blanks end a label and an operation; a tab is part of them.
void Split() {
    BmsReader& bms = s_bms;
    const std::string_view text = bms.Statement;
    const std::size_t labelEnd = std::min(text.find(' '), text.size());
    bms.Label = text.substr(0, labelEnd);
    bms.Position = std::min(text.find_first_not_of(' ', labelEnd), text.size());
    const std::string_view rest = text.substr(bms.Position);
    bms.Operation = rest.substr(0, std::min(rest.find(' '), kBmsLongestName));
}

// A name cut silently would be another name, and a statement cut silently another map. A marked
// statement has no label to be too long.
void CheckLengths() {
    BmsReader& bms = s_bms;
    if (bms.Statement.size() > kBmsLongestStatement) {
        bms.Position = kBmsLongestStatement;
        BmsSyntaxError(BmsError::StatementLength);
    }
    if (bms.Label.size() > kBmsLongestName && !BmsStatementIsMarked()) {
        bms.Position = bms.Label.size();
        bms.Token = bms.Label;
        BmsSyntaxError(BmsError::LabelLength);
    }
}

} // namespace

bool BmsOpen(const std::string& path, unsigned option) {
    s_bms = BmsReader{};
    s_bms.FileName = path;
    s_bms.Option = option;
    s_bms.File = std::make_unique<InputFile>();
    if (s_bms.File->Open(path))
        return true;
    s_bms.File.reset();
    return false;
}

bool BmsReadStatement() {
    const bool complete = Assemble();
    if (!complete)
        s_bms.Statement.clear();
    Split();
    CheckLengths();
    return complete;
}

} // namespace grolof
