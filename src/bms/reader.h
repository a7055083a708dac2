// The state of the map source reader and the statements that it makes of physical lines.
//
// Map source is assembler source: fixed columns, 80 to a line.
//
//   1       label, or blank; "*" makes the line a comment
//   2-71    operation and operands
//   72      anything but a blank: the statement goes on in column 16 of the next line
//   73-80   sequence field, never read
//
// Some sites number their lines in columns 1-8 instead; that number is removed before any
// column is counted.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>

#include "model/records.h"
#include "support/input_file.h"

namespace grolof {

/// Token kinds.
enum class BmsToken {
    EndOfFile = 1,      ///< no tokens left and the file has ended
    Punctuation = 2,    ///< one character that is none of the below
    Keyword = 3,        ///< a word of the keyword table
    Word = 4,           ///< any other word
    String = 5,         ///< a quoted literal, quotes removed
    Number = 6,         ///< a run of decimal digits
    EndOfStatement = 7, ///< no tokens left in the statement
    None = 99,          ///< nothing read yet
};

inline constexpr std::size_t kBmsLongestLine = 254;      ///< bytes taken in one read
inline constexpr std::size_t kBmsLongestStatement = 255; ///< characters of a joined statement
inline constexpr std::size_t kBmsLongestName = 15;       ///< characters of a label or operation
inline constexpr std::size_t kBmsMostValues = 16;        ///< values of one operand

/// Everything the reader knows: one file is read at a time.
struct BmsReader {
    std::string FileName; ///< the path as given, for messages
    unsigned Option = 0;  ///< the run's conversion flags, kept but not used
    std::unique_ptr<InputFile> File;
    long LinesRead = 0;       ///< physical lines so far
    long StatementLine = 0;   ///< 1-based line that messages name
    std::string Line;         ///< the physical line at hand
    std::string Statement;    ///< the joined statement
    std::size_t Position = 0; ///< 0-based scan position in Statement
    std::string Label;        ///< empty when the statement has none
    std::string Operation;    ///< for messages only
    BmsToken Kind = BmsToken::None;
    std::string Token; ///< text of the last token
    int Number = 0;    ///< value of the last number
    int Keyword = 0;   ///< keyword code of the last token, 0 when it is none
    std::array<std::string, kBmsMostValues> Values; ///< values of the operand at hand
    std::size_t ValueCount = 0;
    bool EndOfFile = false;
    Text MapSetName; ///< label of the last labelled DFHMSD
};

/// The reader in force.
extern BmsReader s_bms;

/// Starts a file: all state afresh. False (and the system error text for the path on standard
/// error) when it cannot be opened.
bool BmsOpen(const std::string& path, unsigned option);

/// Assembles the next statement, splits off its label and operation and puts the scan position
/// at the operation. False when the file has ended; a statement that the end of the file cuts
/// off is dropped, and so is a last line without a line feed.
bool BmsReadStatement();

} // namespace grolof
