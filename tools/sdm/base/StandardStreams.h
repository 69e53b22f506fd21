// Makes standard input, output and error safe to use.
#pragma once

namespace cli
{

/// Opens /dev/null on whichever of the three descriptors is closed: the next file to be opened would get its number
/// otherwise, and commands would come out of a database, or output go into one. Before anything opens a file.
void holdStandardDescriptors();

/// Ignores SIGXFSZ: a write beyond the limit on file sizes then fails and is reported, instead of ending the process.
void reportFileSizeLimit();

/// Flushes standard output. False, with a line on standard error, when part of the output was lost.
bool finishOutput();

} // namespace cli
