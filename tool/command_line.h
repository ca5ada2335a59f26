// The command line: its options and help texts, and the exit status.
#pragma once

namespace vorel::tool {

inline constexpr int kExitGood = 0;
inline constexpr int kExitBadData = 1;
inline constexpr int kExitBadUsage = 2;

// Runs what the arguments ask for and returns the exit status.
int RunCommandLine(int count, char** arguments);

}  // namespace vorel::tool
