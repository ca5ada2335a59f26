// What results are called that nobody gives a name.
#pragma once
#include <string>
#include <vector>

namespace vorel::tool {

// Names of the results of all inputs: `output` if it is given, which takes a single input, else each input's
// name with the ending of its kind replaced. A sequence gives its name without the number:
//
//   dir/shot.%05d.png   dir/shot.mov        dir/%05d.png   dir.mov
//
// Where `ending` is that of a sequence, the result is a pattern. Throws UsageError where two names are the
// same, where there is none, and for a terminal as output.
std::vector<std::string> NameResults(const std::vector<std::string>& inputs, const std::string& output,
                                     const std::string& ending);

}  // namespace vorel::tool
