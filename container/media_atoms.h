// The atoms of one track's media that reading and copying share: media information, sample table, sample
// descriptions, and the data references, which tell whether the samples lie in the movie's own file.
#pragma once
#include <vector>

#include "base/bytes.h"
#include "base/integers.h"
#include "container/atoms.h"

namespace vorel::container {

constexpr u32 kMdia = FourCharacterCode("mdia"), kMinf = FourCharacterCode("minf"),
              kStbl = FourCharacterCode("stbl");
constexpr u32 kStsd = FourCharacterCode("stsd"), kDinf = FourCharacterCode("dinf"),
              kDref = FourCharacterCode("dref");

struct MediaAtoms {
  AtomView information;   // minf
  AtomView table;         // stbl
  AtomView descriptions;  // stsd
};

/// Finds a track's media atoms. Throws Problem naming the atom in which one is missing.
MediaAtoms FindMediaAtoms(const AtomView& track);

/// The entries of stsd, each as an atom whose type is the format's code. Throws Problem when their count is
/// wrong.
std::vector<AtomView> DescriptionEntries(const MediaAtoms& media);

/// Throws Problem when a description's samples lie in another file, or when it names no data reference.
void RequireOwnMedia(const MediaAtoms& media, const std::vector<AtomView>& entries);

/// The code of a track's first sample description; 0 when it cannot be found. Never throws: for lists of
/// tracks.
u32 FirstFormat(const AtomView& track);

}  // namespace vorel::container
