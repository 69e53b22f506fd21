// Standard input, output and error as the program finds them.
#pragma once

namespace cli
{

/// Opens /dev/null on whichever of the three descriptors is closed: the next file to be opened would get its number
/// otherwise, and commands would come out of a database, or output go into one. Before anything opens a file.
void holdStandardDescriptors();

/// Makes a write behind the limit on file sizes fail instead of ending the process, so that the operator is told.
void reportFileSizeLimit();

/// Writes what is left of standard output. False, with a line on standard error, when part of the output was lost.
bool finishOutput();

} // namespace cli
