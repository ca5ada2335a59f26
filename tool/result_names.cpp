// Names are made from the input's own, beside it.
#include "tool/result_names.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

#include "tool/file_kinds.h"
#include "tool/frame_format.h"
#include "tool/options.h"
#include "tool/targets.h"

namespace vorel::tool {

namespace {

// Endings of movies, which a result's name doesn't keep either.
constexpr const char* kMovieEndings[] = {".mov", ".qt", ".MOV"};

// Between a name and its number.
constexpr const char* kSeparators = "._-";

bool HasMovieEnding(const std::filesystem::path& path) {
  const std::string ending = path.extension().string();
  return std::find(std::begin(kMovieEndings), std::end(kMovieEndings), ending) != std::end(kMovieEndings);
}

// "dir/shot" of dir/shot.%05d.png, and the folder's own name where the files have none but their number.
std::string NameOfSequence(const std::string& input) {
  const picture_io::SequencePattern pattern = PatternOf(input);
  const std::size_t last = pattern.before.find_last_not_of(kSeparators);
  if (last != std::string::npos) return pattern.folder + pattern.before.substr(0, last + 1);
  std::string folder = pattern.folder.substr(0, pattern.folder.find_last_not_of('/') + 1);
  const std::string name = std::filesystem::path(folder).filename().string();
  if (name.empty() || name == "." || name == "..") {
    throw UsageError{input + ": nothing but a number names the pictures; name the result with -o"};
  }
  return folder;
}

std::string NameWithoutEnding(const std::string& input) {
  if (IsSequence(input)) return NameOfSequence(input);
  std::filesystem::path path = input;
  if (HasMovieEnding(path) || PictureFileOfPath(input)) path.replace_extension();
  return path.string();
}

// A percent sign of a name is two in a pattern.
std::string AsPattern(const std::string& name) {
  std::string pattern;
  for (const char letter : name) pattern.append(letter == '%' ? 2 : 1, letter);
  return pattern;
}

std::string NameOfResult(const std::string& input, const std::string& ending) {
  if (input == "-") throw UsageError{"-o is needed with stdin: name the result, or \"-\" for stdout"};
  const std::string name = NameWithoutEnding(input);
  std::string result = (picture_io::LooksLikeSequence(ending) ? AsPattern(name) : name) + ending;
  if (result == input) {
    throw UsageError{input + ": the result would have the same name; give another with -o"};
  }
  return result;
}

}  // namespace

std::vector<std::string> NameResults(const std::vector<std::string>& inputs, const std::string& output,
                                     const std::string& ending) {
  if (!output.empty()) {
    if (inputs.size() != 1) throw UsageError{"-o names one result: give one input with it"};
    RefuseTerminal(output);
    return {output};
  }
  std::vector<std::string> results;
  for (const std::string& input : inputs) {
    const std::string result = NameOfResult(input, ending);
    if (std::find(results.begin(), results.end(), result) != results.end()) {
      throw UsageError{result + " would be the result of two inputs; convert them one by one with -o"};
    }
    results.push_back(result);
  }
  return results;
}

}  // namespace vorel::tool
