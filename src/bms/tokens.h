// The tokens of a statement, what the macro parser expects of them, and the syntax error.
#pragma once

#include "bms/reader.h"

namespace grolof {

/// The number that a syntax error bears: it names the check that failed.
enum class BmsError : int {
    LabelLength = 15,        ///< label over 15 characters
    StatementLength = 255,   ///< joined statement over 255 characters
    Operation = 281,         ///< a keyword, but none of the three macros (or no map yet)
    NoOperation = 286,       ///< no keyword where the operation is due
    MapSetOperand = 353,     ///< operand not accepted by DFHMSD
    MapControl = 424,        ///< CTRL value of DFHMDI
    MapJustify = 451,        ///< JUSTIFY value of DFHMDI
    MapOperand = 457,        ///< operand not accepted by DFHMDI
    FieldJustify = 522,      ///< JUSTIFY value of a field
    FieldAttribute = 563,    ///< ATTRB value of a field
    FieldOperand = 593,      ///< operand not accepted by a field
    ConstantJustify = 644,   ///< JUSTIFY value of a constant
    ConstantAttribute = 675, ///< ATTRB value of a constant
    ConstantOperand = 688,   ///< operand not accepted by a constant
    NextOperand = 773,       ///< no keyword where an operand is due
    StringExpected = 782,
    NumberExpected = 789,
    PunctuationExpected = 796,
    EqualsExpected = 804,
    CloseExpected = 812,
};

/// Prints the syntax error line for the statement and the token at hand and ends the run with
/// status 1.
[[noreturn]] void BmsSyntaxError(BmsError code);

/// True when the statement begins with the mark that makes it yield no tokens.
bool BmsStatementIsMarked();

/// Reads the next token: sets its kind (also the result), text, number value and keyword code.
/// Commas are passed over. Strings joined by "&" are one token, whose kind, value and code are
/// those of the last piece. At the end of the statement the text stays the last token's.
BmsToken BmsNextToken();

/// True when the token at hand is this punctuation character.
bool BmsTokenIs(char punctuation);

/// Each of these reads and ends the run when what it names does not come.
void BmsExpectPunctuation();
void BmsExpectEquals();
void BmsExpectClose();
int BmsExpectNumber();                      ///< the number
const std::string& BmsExpectEqualsString(); ///< "=" and a string: its text
int BmsExpectEqualsNumber();                ///< "=" and a number: the number
void BmsExpectEqualsAny();                  ///< "=" and one token of any kind

/// Keyword code of the next operand, 0 at the end of the statement; anything else ends the run.
int BmsNextOperand();

/// Reads "=" and one value or up to 16 values in parentheses into the reader's value list. An
/// unclosed list repeats its last token up to 16 values; what follows a 16th value stays in the
/// statement.
void BmsReadValues();

} // namespace grolof
