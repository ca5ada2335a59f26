// In which order the two classes of a code set follow each other in a row. The pattern repeats with every pixel,
// or half pair.
#pragma once
#include "entropy/code_set.h"

namespace vorel {

struct ClassPattern {
  u8 length;  // symbols until it repeats, 2 to 4
  u8 classB;  // bit i is set where symbol i is of class B
};

constexpr CodeClass ClassAt(ClassPattern pattern, u32 place) {
  return (pattern.classB >> place & 1) != 0 ? CodeClass::b : CodeClass::a;
}

inline constexpr ClassPattern kPatternAB = {2, 0b10};    // Y', chroma
inline constexpr ClassPattern kPatternBAB = {3, 0b101};  // alpha, Y', chroma
inline constexpr ClassPattern kPatternBAA = {3,
                                             0b001};  // Y', Cb, Cr, or the first colour and two differences
inline constexpr ClassPattern kPatternABAA = {4, 0b0010};  // the same with alpha in front

}  // namespace vorel
