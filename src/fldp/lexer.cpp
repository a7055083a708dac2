#include "fldp/lexer.h"

#include <cstddef>
#include <cstdio>
#include <string_view>

#include "support/host.h"
#include "support/input_file.h"
#include "support/text.h"

namespace grolof {

namespace {

constexpr char kCommentMark = '@';
constexpr char kContinuationMark = '&';

struct FldpReader {
    std::string FileName;
    InputFile Input;
    bool EndOfInput = false;
    std::string Line;         // with the statement end that was written into it
    std::size_t Position = 0; // index in Line, just behind the last token
    int LineNumber = 0;
    FldpToken Token;
};

FldpReader s_fldp;

bool IsWordPart(char c) {
    return IsAlphanumeric(c) || c == '_';
}

bool AtLineEnd() {
    return s_fldp.Position >= s_fldp.Line.size();
}

// Index of the first character of the line, from the position on, that a class does not hold.
template <class Class>
std::size_t EndOfRun(Class holds) {
    std::size_t i = s_fldp.Position;
    while (i < s_fldp.Line.size() && holds(s_fldp.Line[i]))
        ++i;
    return i;
}

std::size_t LengthBehind(std::string_view text, std::string_view stripped) {
    return text.find_last_not_of(stripped) + 1; // 0 when nothing else is there
}

// Strips a physical line and closes its statement. The statement end stands one character behind
// the text: the character between them is the first one stripped, which a literal left open
// takes in too. A piece of a longer line has none to give and gets a blank.
void FinishLine(std::string& line) {
    std::size_t length = LengthBehind(line, "\n\r");
    length = LengthBehind(std::string_view(line).substr(0, length), " ");
    if (length > 0 && line[length - 1] == kContinuationMark) {
        line.resize(length);
        line.back() = ' ';
        return;
    }
    line.resize(length + 1, ' ');
    line += kFldpStatementEnd;
}

// Reads the next line; false at end of input, and the position is then left as it was. A last
// line without a line end is dropped, on purpose, unless it fills the read exactly.
bool ReadLine() {
    if (!s_fldp.Input.ReadEndedLine(s_fldp.Line, kFldpLongestLine)) {
        FldpEndInput();
        return false;
    }
    ++s_fldp.LineNumber;
    s_fldp.Position = 0;
    FinishLine(s_fldp.Line);
    return true;
}

// Moves to the first character of the next token, over white space, line ends and whole comment
// lines. False at end of input.
bool FindToken() {
    for (;;) {
        if (AtLineEnd() && !ReadLine())
            return false;
        s_fldp.Position = EndOfRun(IsSpace);
        if (AtLineEnd())
            continue;
        if (s_fldp.Line.front() != kCommentMark)
            return true;
        s_fldp.Position = s_fldp.Line.size();
    }
}

// Takes the characters up to an index into the token's text.
std::string_view Take(std::size_t end) {
    const auto taken = std::string_view(s_fldp.Line).substr(s_fldp.Position, end - s_fldp.Position);
    s_fldp.Token.Text += taken;
    s_fldp.Position = end;
    return taken;
}

void TakeNumber() {
    s_fldp.Token.Value = NumberOf(std::string(Take(EndOfRun(IsDigit))));
    s_fldp.Token.Kind = FldpKind::Number;
}

void TakeWord() {
    s_fldp.Token.Keyword = FldpKeywordOf(Take(EndOfRun(IsWordPart)));
    s_fldp.Token.Kind =
        s_fldp.Token.Keyword == FldpKeyword::NotAKeyword ? FldpKind::Name : FldpKind::Keyword;
}

void TakePunctuation() {
    Take(s_fldp.Position + 1);
    s_fldp.Token.Kind = FldpKind::Punctuation;
}

// Takes the inside of a literal, doubled quotes made single. One that is not closed runs to the
// end of the line, the statement end included.
void TakeLiteral() {
    const char quote = s_fldp.Line[s_fldp.Position++];
    const auto other = [quote](char c) { return c != quote; };
    s_fldp.Token.Kind = FldpKind::Literal;
    for (;;) {
        Take(EndOfRun(other));
        if (AtLineEnd())
            return;
        ++s_fldp.Position;
        if (AtLineEnd() || s_fldp.Line[s_fldp.Position] != quote)
            return;
        Take(s_fldp.Position + 1);
    }
}

// True, and the mark passed, when a concatenation follows the literal just taken.
bool TakeConcatenation() {
    s_fldp.Position = EndOfRun(IsSpace);
    if (AtLineEnd() || s_fldp.Line[s_fldp.Position] != kContinuationMark)
        return false;
    ++s_fldp.Position;
    return true;
}

void TakeToken() {
    const char c = s_fldp.Line[s_fldp.Position];
    if (IsDigit(c))
        TakeNumber();
    else if (IsAlphanumeric(c))
        TakeWord();
    else if (c == '"' || c == '\'')
        TakeLiteral();
    else
        TakePunctuation();
}

FldpKind MarkEndOfInput() {
    return s_fldp.Token.Kind = FldpKind::EndOfInput;
}

void Expect(FldpKind kind) {
    if (FldpNextToken() != kind)
        FldpSyntaxError();
}

void ExpectPunctuation(std::string_view text) {
    if (FldpExpectPunctuation() != text)
        FldpSyntaxError();
}

} // namespace

bool FldpOpen(const std::string& fileName) {
    s_fldp.FileName = fileName;
    s_fldp.Line.clear();
    s_fldp.Position = 0;
    s_fldp.LineNumber = 0;
    s_fldp.Token = {};
    s_fldp.EndOfInput = !s_fldp.Input.Open(fileName);
    return !s_fldp.EndOfInput;
}

void FldpEndInput() {
    s_fldp.Input.Close();
    s_fldp.EndOfInput = true;
}

// A token joined to a literal lends its kind and value; only its text is appended to what was
// gathered.
FldpKind FldpNextToken() {
    FldpToken& token = s_fldp.Token;
    token.Kind = FldpKind::None;
    bool joined = false;
    do {
        if (s_fldp.EndOfInput || !FindToken())
            return MarkEndOfInput();
        if (!joined)
            token.Text.clear();
        TakeToken();
        joined = true;
    } while (token.Kind == FldpKind::Literal && TakeConcatenation());
    return token.Kind;
}

const FldpToken& FldpLastToken() {
    return s_fldp.Token;
}

const std::string& FldpFileName() {
    return s_fldp.FileName;
}

int FldpLineNumber() {
    return s_fldp.LineNumber;
}

void FldpSyntaxError() {
    std::printf("Line %5d: %s; Syntax Error at column %d (%s)\n", s_fldp.LineNumber,
                s_fldp.FileName.c_str(), static_cast<int>(s_fldp.Position),
                s_fldp.Token.Text.c_str());
    EndRun(1);
}

const std::string& FldpExpectPunctuation() {
    Expect(FldpKind::Punctuation);
    return s_fldp.Token.Text;
}

void FldpExpectOpen() {
    ExpectPunctuation("(");
}

void FldpExpectEquals() {
    ExpectPunctuation("=");
}

int FldpExpectEqualsNumber() {
    FldpExpectEquals();
    Expect(FldpKind::Number);
    return s_fldp.Token.Value;
}

const std::string& FldpExpectLiteral() {
    Expect(FldpKind::Literal);
    return s_fldp.Token.Text;
}

const std::string& FldpExpectEqualsLiteral() {
    FldpExpectEquals();
    return FldpExpectLiteral();
}

FldpKeyword FldpExpectKeyword() {
    Expect(FldpKind::Keyword);
    return s_fldp.Token.Keyword;
}

FldpKeyword FldpExpectEqualsKeyword() {
    FldpExpectEquals();
    return FldpExpectKeyword();
}

} // namespace grolof
