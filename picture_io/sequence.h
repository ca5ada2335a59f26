// Numbered files: the names of a sequence of pictures, made from a pattern and found in a folder.
//
//   shot.%05d.png   number 12 is shot.00012.png     %d   as many digits as it takes
//                                                   %5d  filled up with spaces
//                                                   %%   a percent sign
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "base/integers.h"

namespace vorel::picture_io {

struct SequencePattern {
  std::string text;      // as it was given
  std::string folder;    // "" or with its slash at the end
  std::string before;    // of the file name: what stands before the number,
  std::string after;     // and what stands behind it
  u32 digits = 0;        // a number takes at least so many places,
  char filler = '0';     // which are filled with these
  bool isStill = false;  // no number: the name of one file
};

// Numbers have at most 18 digits, places included.
inline constexpr u32 kMostSequenceDigits = 18;
inline constexpr u64 kLargestSequenceNumber = 999'999'999'999'999'999;

// Whether a path is meant as a pattern: it has a percent sign.
bool LooksLikeSequence(const std::string& path);

// Reads a pattern: one number, in the name of the file. Throws Problem.
SequencePattern ReadSequencePattern(const std::string& path);

// The name of one file, whatever is in it, as the pattern of a sequence of one picture.
SequencePattern PatternOfStill(const std::string& path);

// The path of one file.
std::string SequencePath(const SequencePattern& pattern, u64 number);

// The number that the pattern gives this file name for; nothing for the name of another file.
std::optional<u64> SequenceNumber(const SequencePattern& pattern, const std::string& fileName);

// The numbers of the files that the folder has now, ascending. Throws Problem if it cannot be listed.
std::vector<u64> NumbersInFolder(const SequencePattern& pattern);

// Files with one picture each, in order.
struct PictureFiles {
  std::string name;  // for people: the pattern
  std::vector<std::string> paths;
};

// The files of a sequence as the folder has them now, from `start` or else from the lowest number on. Throws
// Problem if there is none, and if one is missing between the first and the last.
PictureFiles FindSequence(const SequencePattern& pattern, std::optional<u64> start);

}  // namespace vorel::picture_io
