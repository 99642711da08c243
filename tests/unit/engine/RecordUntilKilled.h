// A program that records until it is killed.
#pragma once

namespace KivoraTest {

/// Plays and records on a clock of its own, as fast as it can, with the journal in `folder`/Takes written every
/// TakeJournal::kPeriodMs of that clock; for the main() of a process that a test ends. Appends to `folder`/played the
/// clock's milliseconds since the recording's start (4 bytes, this machine's order) before each note is played.
/// Returns, after an hour of its clock, when the disk fails.
int RecordUntilKilled(const char* folder);

}  // namespace KivoraTest
