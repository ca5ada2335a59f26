// A folder is looked through once, before the first picture.
#include "tool/sequence_target.h"

#include <algorithm>
#include <vector>

#include "base/problem.h"
#include "container/output_file.h"
#include "tool/file_kinds.h"
#include "tool/interruption.h"

namespace vorel::tool {

namespace {

using picture_io::SequencePath;
using picture_io::SequencePattern;

void CheckFolder(const SequencePattern& pattern, u64 first, u64 last, bool force, Console& console) {
  const std::vector<u64> numbers = picture_io::NumbersInFolder(pattern);
  const auto inside = std::lower_bound(numbers.begin(), numbers.end(), first);
  const auto behind = std::upper_bound(numbers.begin(), numbers.end(), last);
  if (inside != behind && !force) {
    throw Problem{std::to_string(behind - inside) + " of the " + std::to_string(last - first + 1) +
                      " files to be written are there already, this is the first of them",
                  SequencePath(pattern, *inside), "choose another name, or overwrite them with --force"};
  }
  if (behind == numbers.end()) return;
  if (force) {
    Note(console, SequencePath(pattern, *behind) +
                      ": stays, though it is behind the last picture of the clip, " +
                      SequencePath(pattern, last));
    return;
  }
  throw Problem{
      "would look like part of the clip, whose last picture is to be " + SequencePath(pattern, last),
      SequencePath(pattern, *behind),
      "move it away, or choose another name; --force writes the clip and leaves it there"};
}

}  // namespace

SequenceTarget OpenSequenceTarget(const std::string& path, u64 first, u64 frames, bool force,
                                  Console& console) {
  if (!picture_io::LooksLikeSequence(path)) {
    if (frames == 1) return {picture_io::PatternOfStill(path), first, force};
    throw Problem{"holds one picture, the movie has " + std::to_string(frames), path,
                  "give a name with the place of a number, such as shot.%05d.png"};
  }
  SequenceTarget target = {PatternOf(path), first, force};
  if (first > picture_io::kLargestSequenceNumber - (frames - 1)) {
    throw Problem{"numbers from " + std::to_string(first) + " on are too large", path,
                  "give another --start"};
  }
  CheckFolder(target.pattern, first, first + frames - 1, force, console);
  return target;
}

picture_io::WritePictureFile WriterOf(const SequenceTarget& target) {
  return [force = target.force](const std::string& path, const picture_io::StoredPicture& picture) {
    container::OutputFile file;
    {
      const InterruptionHold hold;
      container::CreateOutputFile(file, path, force);
      GuardTemporary(file.temporaryPath);
    }
    container::WriteAt(file, 0, picture.data(), picture.size());
    container::PublishOutputFile(file);
    GuardTemporary("");
  };
}

std::string WrittenText(const SequenceTarget& target, u64 frames) {
  const std::string first = SequencePath(target.pattern, target.first);
  return frames == 1 ? first : first + " to " + SequencePath(target.pattern, target.first + frames - 1);
}

}  // namespace vorel::tool
