// What the process does about the streams and signals that it was started with.
#pragma once

namespace grolof {

/// Makes the run independent of how it was started, before anything is opened:
///
///   - standard streams that are closed get a placeholder, so that no output file ever takes
///     their descriptor; commands still see them closed;
///   - a reader of standard output that goes away does not end the conversions (commands keep
///     the default action), and the end of the run says on standard error that output was lost;
///   - the result of a command can always be waited for.
void GuardStandardStreams();

/// Writes out what standard output still holds, so that it stands before what a command says. A
/// failure is remembered for the end of the run.
void FlushOutput();

} // namespace grolof
