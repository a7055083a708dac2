// The COPY book of a BMS map set: the input and output areas of its maps.
#pragma once

#include <string>

#include "model/records.h"

namespace grolof {

/// Writes one map's areas, to a new COPY book or, continuing, behind the maps already in it,
/// redefining the output area that was written last. With `withMapComments` 1 comments name the
/// map at each area, with 0 one line of the head does. Returns 1, or 0 with a line on standard
/// error when the file cannot be opened or the screen has no form.
int BmsCopyBookWrite(List& screen, const std::string& path, int withMapComments, int continuing);

} // namespace grolof
