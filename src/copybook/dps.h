// The COPY books of a DPS screen: the working-storage record and the procedure that fills it.
#pragma once

#include <string>

#include "model/records.h"

namespace grolof {

/// Writes the record of a screen as a COPY book: header, field control area, data area. Linked
/// images without a `Spacing` get the index of their control entry as their `Spacing`. Returns
/// false, with a line on standard error, when the file cannot be opened or the screen has no
/// such record (width 0, no form, too many repetitions); the model and an existing file are then
/// untouched.
bool DpsCopyBookWrite(List& screen, const std::string& path);

/// Writes the procedure of MOVE statements that sets the record to its initial values. Result
/// and effects as DpsCopyBookWrite.
bool DpsInitCopyBookWrite(List& screen, const std::string& path);

} // namespace grolof
