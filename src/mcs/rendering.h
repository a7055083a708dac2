// A played screen as text for a terminal.
#pragma once

#include <string>

#include "mcs/player.h"

namespace grolof {

/// The screen in a frame, one line a row. Unprotected fields are shown as "_" behind their initial
/// text, protected ones without a text as ".", system values as "#"; a byte that is no printable
/// ASCII character as "?". A screen of more than 255 rows or columns is cut.
std::string RenderScreen(const PlayedScreen& screen);

/// What stands where, one line an item: row, column, width, kind, text.
std::string RenderItems(const PlayedScreen& screen);

} // namespace grolof
