// The form language as tokens. One file is read at a time; file, line and last token are one
// set of values for the program.
#pragma once

#include <string>

#include "fldp/keywords.h"

namespace grolof {

/// Kind of a token. None stands while a token is being read.
enum class FldpKind : int {
    EndOfInput = 1,
    Punctuation,
    Keyword,
    Name,
    Literal,
    Number,
    None = 99,
};

/// Statement end, which the line reader writes into every line that is not continued.
inline constexpr char kFldpStatementEnd[] = "END_STATEMENT";

/// Longest physical line in bytes, its line end included; the rest of a longer one is the next.
inline constexpr int kFldpLongestLine = 254;

struct FldpToken {
    FldpKind Kind = FldpKind::None;
    std::string Text;                               ///< as typed; a literal without its quotes
    FldpKeyword Keyword = FldpKeyword::NotAKeyword; ///< of a keyword token
    int Value = 0;                                  ///< of a number token
};

/// Starts reading a file. When it cannot be opened: prints the system error text for the name on
/// standard error, marks end of input and returns false.
bool FldpOpen(const std::string& fileName);

/// Closes the file and marks end of input, from which on every token is EndOfInput.
void FldpEndInput();

/// Reads the next token and returns its kind.
FldpKind FldpNextToken();

/// The token read last, valid until the next is read. At end of input its text is still that of
/// the token before.
const FldpToken& FldpLastToken();

/// Name of the file as given, and the 1-based number of its line that was read last (0 before
/// the first).
const std::string& FldpFileName();
int FldpLineNumber();

/// Prints the error line for the last token on standard output and ends the run with status 1.
[[noreturn]] void FldpSyntaxError();

/// Expectations: each reads its tokens, ends the run with the syntax error at the first that does
/// not fit, and leaves the one it asked for as the last token.
const std::string& FldpExpectPunctuation();
void FldpExpectOpen();
void FldpExpectEquals();
int FldpExpectEqualsNumber();
const std::string& FldpExpectLiteral();
const std::string& FldpExpectEqualsLiteral();
FldpKeyword FldpExpectKeyword();
FldpKeyword FldpExpectEqualsKeyword();

} // namespace grolof
