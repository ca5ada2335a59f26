// Movies made and taken apart for tests.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "container/sample_description.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

using Frames = std::vector<std::vector<u8>>;

// The frames of a movie as they are stored.
Frames FramesOf(const TestFolder& folder, const std::string& movie);

container::SampleDescription DescriptionOf(const TestFolder& folder, const std::string& movie);

// Where a frame's bytes begin in the file.
u64 OffsetOfFrame(const TestFolder& folder, const std::string& movie, std::size_t frame);

// Makes `copy` from `movie` with frames and description changed.
void RemakeMovie(
    const TestFolder& folder, const std::string& movie, const std::string& copy,
    const std::function<void(Frames& frames, container::SampleDescription& description)>& change);

// Encodes brook, progressive, as brook.mov.
void MakeBrook(const TestFolder& folder);

}  // namespace vorel::tool
