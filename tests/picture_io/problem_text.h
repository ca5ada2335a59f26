// What a function complains about, for tests of refusals.
#pragma once
#include <string>

#include "base/problem.h"

namespace vorel::picture_io {

// "where: what (advice)" of the Problem that `call` throws, or "" if it throws none.
template <typename Call>
std::string ProblemText(Call call) {
  try {
    call();
  } catch (const Problem& problem) {
    return problem.where + ": " + problem.what + " (" + problem.advice + ")";
  }
  return "";
}

}  // namespace vorel::picture_io
