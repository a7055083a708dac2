// The element names of the screen definition file.
//
// The names of fields and headings are state of the process: the first BMS form that is written
// turns them into their BMS forms for good, on purpose, so that a DPS form written after it holds
// BmsField and BmsHeading elements, and the reader no longer takes the DPS ones as start tags.
#pragma once

#include <string_view>

namespace grolof {

inline constexpr std::string_view kDpsFormElement = "DpsForm";
inline constexpr std::string_view kBmsFormElement = "BmsForm";
inline constexpr std::string_view kImageElement = "DpsImage";
inline constexpr std::string_view kBmsFieldElement = "BmsField";
inline constexpr std::string_view kBmsHeadingElement = "BmsHeading";

/// The names that change; their initial values are those of a fresh process.
struct ElementNames {
    std::string_view Field = "DpsField";
    std::string_view Heading = "DpsHeading";
};

/// The names in force, for the writer and for the reader.
const ElementNames& CurrentElementNames();

/// Switches to the BMS names.
void UseBmsElementNames();

/// Brings back the names of a fresh process, for harnesses that play several runs in one.
void ResetElementNames();

} // namespace grolof
