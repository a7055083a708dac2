// The process environment in a table of our own. `putenv` and `unsetenv` (declared by
// <cstdlib>) are defined by this room and replace the C library's for the whole process:
//
//   putenv(text)    stores the text itself, which must stay alive, in place of the entry of its
//                   name or behind the last; 0, or -1 when the table cannot be grown
//   unsetenv(name)  removes the first entry of the name; 0, or -1 when there is none (unlike
//                   the C library's) or the table cannot be made
//
// A name ends at its "=", so "SHELL" and "SHELL=x" both mean the entry "SHELL=/bin/sh"; an
// entry without "=" has no name. errno is ENOENT whenever no entry matched.
#pragma once

#include <cstddef>
#include <string>

namespace grolof {

/// Puts NAME=value into the environment and keeps the text alive as long as the process; equal
/// texts share one copy. Results are those of putenv.
int EnvironmentPut(const std::string& entry);

/// Number of entries for which the owned table has room, its end mark not counted; 0 when the
/// process environment is not the owned table.
std::size_t EnvironmentCapacity();

/// What enlarges the owned table: as realloc, which it is. Tests let it fail.
extern void* (*EnvironmentRealloc)(void* table, std::size_t bytes);

} // namespace grolof
