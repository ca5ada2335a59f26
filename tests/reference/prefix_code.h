// Bits of a frame and the codes in them, one bit at a time.
#pragma once
#include <cstdint>
#include <string_view>
#include <vector>

namespace reference {

using Bits = std::vector<bool>;  // of a frame, from the first bit of its first word

// A code as fractions of 65,536: symbol s owns the 16-bit windows from starts[s] to the start of the next
// one.
struct PrefixCode {
  std::vector<std::uint32_t> starts;
  std::vector<int> lengths;
};

// set  family and scan: "8bv 4:2:2 p"; codeClass  'A' or 'B'
const PrefixCode& FindCode(std::string_view set, char codeClass);

void AppendField(Bits& bits, std::uint32_t value, int count);
void AppendSymbol(Bits& bits, const PrefixCode& code, int symbol);

// Bits behind the end are zero.
struct BitSource {
  const Bits& bits;
  std::uint64_t position;
};

int TakeField(BitSource& source, int count);
int TakeSymbol(BitSource& source, const PrefixCode& code);

}  // namespace reference
