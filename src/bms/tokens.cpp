#include "bms/tokens.h"

#include <cstdio>
#include <string_view>

#include "bms/keywords.h"
#include "support/host.h"
#include "support/text.h"

namespace grolof {

namespace {

constexpr char kMark = '@';
constexpr char kJoin = '&';

bool IsWordPart(char c) {
    return IsAlphanumeric(c) || c == '&' || c == '-' || c == '_';
}

bool AtEnd() {
    return s_bms.Position >= s_bms.Statement.size();
}

// The character some places behind the scan position, NUL behind the statement.
char Peek(std::size_t ahead = 0) {
    const std::size_t at = s_bms.Position + ahead;
    return at < s_bms.Statement.size() ? s_bms.Statement[at] : '\0';
}

void SkipSpace() {
    while (!AtEnd() && IsSpace(Peek()))
        ++s_bms.Position;
}

// Takes the characters that belong to a token and returns them: a view into the token text,
// where they stand behind those of a string joined by "&".
template <class Belongs>
std::string_view Take(Belongs belongs) {
    BmsReader& bms = s_bms;
    const std::size_t from = bms.Position;
    while (!AtEnd() && belongs(Peek()))
        ++bms.Position;
    const std::size_t held = bms.Token.size();
    bms.Token.append(bms.Statement, from, bms.Position - from);
    return std::string_view(bms.Token).substr(held);
}

// The terminal types 3270-1 and 3270-2 are words although they begin with a digit.
bool IsTerminalType() {
    const std::string_view rest = std::string_view(s_bms.Statement).substr(s_bms.Position);
    return rest.starts_with("3270-1") || rest.starts_with("3270-2");
}

bool BeginsWord() {
    return IsAlphanumeric(Peek()) || (Peek() == '&' && IsAlphanumeric(Peek(1)));
}

void TakeNumber() {
    s_bms.Number = NumberOf(std::string(Take(IsDigit)));
    s_bms.Kind = BmsToken::Number;
}

void TakeWord() {
    const int code = BmsKeywordCode(Take(IsWordPart));
    s_bms.Keyword = code > 0 ? code : 0;
    s_bms.Kind = code > 0 ? BmsToken::Keyword : BmsToken::Word;
}

// Takes a string up to its closing quote or, when that is missing, the end of the statement. A
// doubled quote stands for one.
void TakeQuoted() {
    BmsReader& bms = s_bms;
    const char quote = Peek();
    for (++bms.Position; !AtEnd(); ++bms.Position) {
        if (Peek() == quote) {
            ++bms.Position;
            if (Peek() != quote)
                return;
        }
        bms.Token += Peek();
    }
}

// Takes a string and the white space behind it. When "&" follows, that is taken too and the
// kind stays open: the next token goes on with this one.
void TakeString() {
    TakeQuoted();
    SkipSpace();
    if (Peek() == kJoin)
        ++s_bms.Position;
    else
        s_bms.Kind = BmsToken::String;
}

void TakePunctuation() {
    s_bms.Token += Peek();
    ++s_bms.Position;
    s_bms.Kind = BmsToken::Punctuation;
}

void TakeToken() {
    const char first = Peek();
    if (IsDigit(first) && !IsTerminalType())
        TakeNumber();
    else if (BeginsWord())
        TakeWord();
    else if (first == '"' || first == '\'')
        TakeString();
    else
        TakePunctuation();
}

// Goes to the next character that belongs to a token; false when there is none.
bool FindToken() {
    BmsReader& bms = s_bms;
    for (;; ++bms.Position) {
        SkipSpace();
        if (BmsStatementIsMarked())
            bms.Position = bms.Statement.size();
        if (AtEnd())
            return false;
        if (Peek() != ',')
            return true;
    }
}

void ExpectEqualsThen(BmsToken kind, BmsError code) {
    BmsExpectEquals();
    if (BmsNextToken() != kind)
        BmsSyntaxError(code);
}

} // namespace

void BmsSyntaxError(BmsError code) {
    const BmsReader& bms = s_bms;
    std::printf("Line %5ld: %s; %s Syntax Error (%d) at column %zu (%s)\n", bms.StatementLine,
                bms.FileName.c_str(), bms.Operation.c_str(), static_cast<int>(code), bms.Position,
                bms.Token.c_str());
    EndRun(1);
}

bool BmsStatementIsMarked() {
    return s_bms.Statement.starts_with(kMark);
}

BmsToken BmsNextToken() {
    BmsReader& bms = s_bms;
    bms.Kind = BmsToken::None;
    bms.Keyword = 0;
    for (bool joining = false; bms.Kind == BmsToken::None; joining = true) {
        if (!FindToken())
            return bms.Kind = bms.EndOfFile ? BmsToken::EndOfFile : BmsToken::EndOfStatement;
        if (!joining)
            bms.Token.clear();
        TakeToken();
    }
    return bms.Kind;
}

bool BmsTokenIs(char punctuation) {
    return s_bms.Kind == BmsToken::Punctuation && s_bms.Token.size() == 1 &&
           s_bms.Token.front() == punctuation;
}

void BmsExpectPunctuation() {
    if (BmsNextToken() != BmsToken::Punctuation)
        BmsSyntaxError(BmsError::PunctuationExpected);
}

void BmsExpectEquals() {
    BmsNextToken();
    if (!BmsTokenIs('='))
        BmsSyntaxError(BmsError::EqualsExpected);
}

void BmsExpectClose() {
    BmsNextToken();
    if (!BmsTokenIs(')'))
        BmsSyntaxError(BmsError::CloseExpected);
}

int BmsExpectNumber() {
    if (BmsNextToken() != BmsToken::Number)
        BmsSyntaxError(BmsError::NumberExpected);
    return s_bms.Number;
}

const std::string& BmsExpectEqualsString() {
    ExpectEqualsThen(BmsToken::String, BmsError::StringExpected);
    return s_bms.Token;
}

int BmsExpectEqualsNumber() {
    ExpectEqualsThen(BmsToken::Number, BmsError::NumberExpected);
    return s_bms.Number;
}

void BmsExpectEqualsAny() {
    BmsExpectEquals();
    BmsNextToken();
}

int BmsNextOperand() {
    const BmsToken kind = BmsNextToken();
    if (kind == BmsToken::EndOfStatement)
        return 0;
    if (kind != BmsToken::Keyword)
        BmsSyntaxError(BmsError::NextOperand);
    return s_bms.Keyword;
}

void BmsReadValues() {
    BmsReader& bms = s_bms;
    BmsExpectEquals();
    BmsNextToken();
    bms.ValueCount = 0;
    if (!BmsTokenIs('(')) {
        bms.Values[bms.ValueCount++] = bms.Token;
        return;
    }
    while (bms.ValueCount < bms.Values.size()) {
        BmsNextToken();
        if (BmsTokenIs(')'))
            return;
        bms.Values[bms.ValueCount++] = bms.Token;
    }
}

} // namespace grolof
