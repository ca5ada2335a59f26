#include "tests/reference/prefix_code.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

#include "tests/reference/all_code_lengths.h"

namespace reference {
namespace {

using std::size_t;
using std::uint32_t;
using std::uint64_t;

// Code words ascend as binary fractions: the next one begins where the space of the last one ends.
PrefixCode FromLengths(std::string_view lengths) {
  PrefixCode code;
  std::istringstream list{std::string(lengths)};
  int length = 0;
  char cross = 0;
  int count = 0;
  uint32_t start = 0;
  while (list >> length >> cross >> count) {
    for (int i = 0; i < count; ++i) {
      code.starts.push_back(start);
      code.lengths.push_back(length);
      start += 65536u >> length;
    }
  }
  if (start != 65536u) std::abort();
  return code;
}

int BitAt(const Bits& bits, uint64_t position) {
  return position < bits.size() && bits[position] ? 1 : 0;
}

}  // namespace

const PrefixCode& FindCode(std::string_view set, char codeClass) {
  static std::map<std::string, PrefixCode> made;
  PrefixCode& code = made[std::string(set) + codeClass];
  if (!code.starts.empty()) return code;
  for (const CodeLengths& row : kAllCodeLengths)
    if (row.set == set) return code = FromLengths(codeClass == 'A' ? row.a : row.b);
  throw std::invalid_argument("no such codes: " + std::string(set));
}

void AppendField(Bits& bits, uint32_t value, int count) {
  for (int i = count - 1; i >= 0; --i) bits.push_back((value >> i & 1) != 0);
}

void AppendSymbol(Bits& bits, const PrefixCode& code, int symbol) {
  const size_t s = static_cast<size_t>(symbol);
  AppendField(bits, code.starts[s] >> (16 - code.lengths[s]), code.lengths[s]);
}

int TakeField(BitSource& source, int count) {
  int value = 0;
  for (int i = 0; i < count; ++i) value = 2 * value + BitAt(source.bits, source.position++);
  return value;
}

int TakeSymbol(BitSource& source, const PrefixCode& code) {
  BitSource ahead = source;
  const uint32_t window = static_cast<uint32_t>(TakeField(ahead, 16));
  const auto next = std::upper_bound(code.starts.begin(), code.starts.end(), window);
  const auto symbol = next - code.starts.begin() - 1;
  source.position += static_cast<uint64_t>(code.lengths[static_cast<size_t>(symbol)]);
  return static_cast<int>(symbol);
}

}  // namespace reference
