// The program's entry.
#pragma once

namespace grolof {

struct Converters;

/// Runs the converter over a command line; returns the exit status. Some ends of the run (usage
/// asked for, a broken form, a syntax error) do not return but go through EndRun.
int GrolofMain(int argc, char** argv);

/// The same with other readers and writers, for tests that watch the order of the calls.
int RunGrolof(int argc, char** argv, const Converters& converters);

} // namespace grolof
