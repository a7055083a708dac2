// Writer of the screen definition file (.t3b), the converter's own text form of the form model.
//
// One item stands on each line, indented by four blanks a level. A record is an element:
//
//   <DpsForm                        start line; its tag stays open
//       Name="MENU"                 one line for each attribute that is not empty
//       >                           end of the start tag
//       <DpsHeading ...             the record's children, one level deeper
//   </DpsForm>
#pragma once

#include <string>

#include "model/list.h"

namespace grolof {

/// Writes a list of forms, with all they hold, to a file that is truncated first. Records of an
/// unknown kind leave no trace; plain and repeat images are written alike, told apart later by
/// their Count. Nothing in a value is escaped. A form of type BMS switches the process to the BMS
/// element names. False when the file cannot be opened, after the system error text for the path
/// on standard error.
bool SaveScreenDefinition(const List& forms, const std::string& path);

} // namespace grolof
