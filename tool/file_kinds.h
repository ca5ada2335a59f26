// Kinds of picture files by name, and what goes with each: one table for all commands.
#pragma once
#include <optional>
#include <string>

#include "picture_io/picture_file.h"
#include "tool/options.h"

namespace vorel::tool {

// The kind that a word after --format names; nothing for any other word.
std::optional<PictureFile> PictureFileOfName(const std::string& name);

// "y4m, raw, png, ...".
std::string PictureFileNames();

// The kind that the ending of a file's name tells; nothing for any other ending.
std::optional<PictureFile> PictureFileOfPath(const std::string& path);

// How files with one picture each are read and written; null for the kinds that hold a clip in one file.
const picture_io::PictureFileKind* SinglePictures(PictureFile file);

// What a result is called behind the name of its input: ".y4m", ".%05d.png".
std::string EndingOfResult(PictureFile file);

// Whether a path stands for a sequence of files to be read. A name with a percent sign that a file has is that file.
bool IsSequence(const std::string& path);

// As ReadSequencePattern; what is wrong with a pattern is a UsageError.
picture_io::SequencePattern PatternOf(const std::string& path);

}  // namespace vorel::tool
