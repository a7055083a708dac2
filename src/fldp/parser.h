// The form language reader: a source file in, forms out.
#pragma once

#include <string>

#include "model/records.h"

namespace grolof {

/// Reads one form language file into the list of its forms, which is empty for a file without
/// any. `options` are the conversion flags, copied into every form. None when the file cannot be
/// opened (the reason is on standard error). The first token that does not fit ends the run with
/// one line on standard output and status 1.
RecordList ParseFldpFile(const std::string& path, unsigned options);

} // namespace grolof
