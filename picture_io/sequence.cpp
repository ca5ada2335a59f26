// A folder is listed once. A name belongs to a sequence if its pattern makes that very name, so that "7.png"
// and "007.png" are never taken for the same picture.
#include "picture_io/sequence.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>

#include "base/problem.h"
#include "picture_io/clip_format.h"

namespace vorel::picture_io {

namespace {

constexpr const char* kPatternAdvice =
    "give the number's place as %d, or as %05d for five digits; a percent sign is %%";

// Reads what follows a percent sign at `at`, up to its 'd', into the pattern.
std::size_t ReadPlaces(const std::string& text, std::size_t at, SequencePattern& pattern) {
  const std::size_t first = at + 1;
  const std::size_t end = std::min(text.find_first_not_of("0123456789", first), text.size());
  const std::string places = text.substr(first, end - first);
  if (end == text.size() || text[end] != 'd') {
    const std::string found = text.substr(at, end + 1 - at);
    throw Problem{"\"" + found + "\" is no place for a number", pattern.text, kPatternAdvice};
  }
  pattern.filler = places.starts_with('0') ? '0' : ' ';
  pattern.digits = 0;
  if (!places.empty() && !ReadNumber(places, kMostSequenceDigits, pattern.digits)) {
    throw Problem{"numbers of " + places + " digits are too long", pattern.text,
                  "they have at most " + std::to_string(kMostSequenceDigits)};
  }
  return end + 1;
}

}  // namespace

bool LooksLikeSequence(const std::string& path) {
  return path.find('%') != std::string::npos;
}

SequencePattern ReadSequencePattern(const std::string& path) {
  SequencePattern pattern;
  pattern.text = path;
  bool hasNumber = false;
  std::string literal;
  for (std::size_t at = 0; at < path.size();) {
    if (path[at] != '%') {
      literal += path[at++];
    } else if (path.compare(at, 2, "%%") == 0) {
      literal += '%';
      at += 2;
    } else if (hasNumber) {
      throw Problem{"there are two places for a number", path, kPatternAdvice};
    } else {
      at = ReadPlaces(path, at, pattern);
      hasNumber = true;
      pattern.before.swap(literal);
    }
  }
  if (!hasNumber) throw Problem{"there is no place for a number", path, kPatternAdvice};
  pattern.after = literal;
  if (pattern.after.find('/') != std::string::npos) {
    throw Problem{"the number is in the name of a folder", path, "it stands in the name of the file"};
  }
  const std::size_t name = pattern.before.rfind('/') + 1;
  pattern.folder = pattern.before.substr(0, name);
  pattern.before.erase(0, name);
  return pattern;
}

SequencePattern PatternOfStill(const std::string& path) {
  const std::size_t name = path.rfind('/') + 1;
  SequencePattern pattern;
  pattern.text = path;
  pattern.folder = path.substr(0, name);
  pattern.before = path.substr(name);
  pattern.isStill = true;
  return pattern;
}

std::string SequencePath(const SequencePattern& pattern, u64 number) {
  if (pattern.isStill) return pattern.folder + pattern.before;
  std::string digits = std::to_string(number);
  if (digits.size() < pattern.digits) digits.insert(0, pattern.digits - digits.size(), pattern.filler);
  return pattern.folder + pattern.before + digits + pattern.after;
}

std::optional<u64> SequenceNumber(const SequencePattern& pattern, const std::string& fileName) {
  const std::size_t around = pattern.before.size() + pattern.after.size();
  if (fileName.size() <= around || !fileName.starts_with(pattern.before) ||
      !fileName.ends_with(pattern.after)) {
    return std::nullopt;
  }
  const std::string places = fileName.substr(pattern.before.size(), fileName.size() - around);
  const std::string digits =
      places.substr(std::min(places.find_first_not_of(pattern.filler), places.size() - 1));
  u64 number = 0;
  const char* const end = digits.data() + digits.size();
  const std::from_chars_result result = std::from_chars(digits.data(), end, number);
  if (result.ec != std::errc{} || result.ptr != end || number > kLargestSequenceNumber) return std::nullopt;
  if (SequencePath(pattern, number) != pattern.folder + fileName) return std::nullopt;
  return number;
}

std::vector<u64> NumbersInFolder(const SequencePattern& pattern) {
  namespace fs = std::filesystem;
  std::vector<u64> numbers;
  std::error_code failure;
  fs::directory_iterator entry(pattern.folder.empty() ? "." : pattern.folder, failure);
  for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
    const std::optional<u64> number = SequenceNumber(pattern, entry->path().filename().string());
    if (number) numbers.push_back(*number);
  }
  if (failure) {
    throw Problem{"cannot list the folder: " + failure.message(),
                  pattern.folder.empty() ? "." : pattern.folder, ""};
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

PictureFiles FindSequence(const SequencePattern& pattern, std::optional<u64> start) {
  const std::vector<u64> numbers = NumbersInFolder(pattern);
  if (numbers.empty()) {
    throw Problem{"no file has a name of this sequence", pattern.text, "look at the folder and the digits"};
  }
  const u64 first = start.value_or(numbers.front());
  const auto found = std::lower_bound(numbers.begin(), numbers.end(), first);
  if (found == numbers.end() || *found != first) {
    throw Problem{"there is no such file, and the sequence is to begin with it", SequencePath(pattern, first),
                  "the files go from number " + std::to_string(numbers.front()) + " to " +
                      std::to_string(numbers.back())};
  }
  PictureFiles files;
  files.name = pattern.text;
  for (auto number = found; number != numbers.end(); ++number) {
    const u64 expected = first + files.paths.size();
    if (*number != expected) {
      throw Problem{
          "a picture of the sequence is missing, the next there is has number " + std::to_string(*number),
          SequencePath(pattern, expected), "put it there, or move the pictures behind it away"};
    }
    files.paths.push_back(SequencePath(pattern, *number));
  }
  return files;
}

}  // namespace vorel::picture_io
