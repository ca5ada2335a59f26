// What a run took, in words, for those who ask for it with --verbose.
#pragma once
#include <string>

#include "tool/console.h"
#include "tool/pipeline.h"

namespace vorel::tool {

// The three kinds of work of a run.
enum class Bound : u8 { reading, coding, writing };

// What holds a run up: the work that comes closest to all that it can get, one thread for reading and for writing,
// all of them for coding.
Bound BoundOf(const PipelineRun& run);

// Five lines. `threadBytes` is what coders keep from frame to frame.
std::string ReportText(const PipelineRun& run, const Progress& progress, u64 threadBytes);

// Writes it to stderr if the console is verbose.
void ReportRun(const PipelineRun& run, const Progress& progress, u64 threadBytes);

}  // namespace vorel::tool
