// Sends every colour there is through the matrix and back, in all three rows of weights, and tells what came of
// it. Ends with 1 if a colour changed that must not.
#include <cstdio>
#include <functional>
#include <future>
#include <thread>
#include <vector>

#include "tests/prove/round_trips.h"

namespace {

using vorel::prove::Result;
using Proof = Result(std::uint32_t standard, std::uint32_t from, std::uint32_t to);

Result InParallel(Proof* proof, std::uint32_t standard, std::uint32_t codes) {
  const std::uint32_t threads = std::max(1u, std::thread::hardware_concurrency());
  std::vector<std::future<Result>> parts;
  for (std::uint32_t i = 0; i < threads; ++i) {
    parts.push_back(
        std::async(std::launch::async, proof, standard, codes * i / threads, codes * (i + 1) / threads));
  }
  Result sum = {};
  for (auto& part : parts) {
    const Result result = part.get();
    sum.colours += result.colours;
    sum.changed += result.changed;
    sum.largest = std::max(sum.largest, result.largest);
  }
  return sum;
}

bool Tell(const char* what, Proof* proof, std::uint32_t codes, bool isExact) {
  constexpr const char* kRows[] = {"BT.601", "BT.709", "240M"};
  bool good = true;
  for (std::uint32_t standard = 0; standard < 3; ++standard) {
    const Result result = InParallel(proof, standard, codes);
    std::printf(
        "%-52s %-7s %11llu colours, %9llu changed (%.2f %%), by %u at most\n", what, kRows[standard],
        static_cast<unsigned long long>(result.colours), static_cast<unsigned long long>(result.changed),
        100.0 * static_cast<double>(result.changed) / static_cast<double>(result.colours), result.largest);
    std::fflush(stdout);
    good = good && result.colours > 0 && (!isExact || result.changed == 0);
  }
  return good;
}

}  // namespace

int main() {
  using namespace vorel::prove;
  bool good = true;
  good &= Tell("R'G'B' of 8 bits through Y'CbCr of 10 and back", Colours8Through876, 256, true);
  good &= Tell("R'G'B' of 10 bits through Y'CbCr of 12 and back", Colours10Through3504, 1024, true);
  good &= Tell("Y'CbCr of 8 bits in the cube through R'G'B' of 9", Ycc8Through511, 256, true);
  good &= Tell("Y'CbCr of 10 bits in the cube through R'G'B' of 12", Ycc10Through4095, 1024, true);
  good &= Tell("R'G'B' of 8 bits through Y'CbCr of 8 (not exact)", Colours8Through219, 256, false);
  std::puts(good ? "All that must come back comes back." : "A colour was lost that must come back.");
  return good ? 0 : 1;
}
