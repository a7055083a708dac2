// The constant text of a form, which its last field carries, as headings.
#pragma once

#include "model/records.h"

namespace grolof {

/// Columns of the screen that constant text is laid out for, whatever the form's width.
inline constexpr int kConstantTextColumns = 80;

/// Takes the last item off the form, whatever its kind, and turns its initial value, read as a
/// screen of 80 columns, into headings of the form. Words one blank apart make one heading unless
/// a field starts on the blank; no heading crosses a screen line. The item itself is destroyed.
void ExtractHeadings(Form& form);

} // namespace grolof
