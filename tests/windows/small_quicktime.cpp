// A QuickTime.qts of a few lines, for tests of the binder: it notes in the process' environment what it is asked,
// for it may be gone when that is looked at.
#include <windows.h>

#include <cstdio>

#include "base/integers.h"

extern "C" {

// The answer to the question whether the host holds itself comes from the test; others give their first argument.
vorel::u32 AnswerService(vorel::u32 selector, void* /* return address */, vorel::u32 first) {
  constexpr vorel::u32 kHoldsItself = 0x001D0059;
  char text[16];
  std::snprintf(text, sizeof text, "%08X", selector);
  SetEnvironmentVariableA("VOREL_TEST_SELECTOR", text);
  if (selector != kHoldsItself) return first;
  // The upper bits of an answer of one byte are anything.
  return GetEnvironmentVariableA("VOREL_TEST_HOLDS", nullptr, 0) != 0 ? 0xABCDEF01 : 0xABCDEF00;
}

__attribute__((naked)) void DispatcherEntry() {
  __asm__(
      "pushl %eax\n\t"
      "call _AnswerService\n\t"
      "addl $4, %esp\n\t"
      "ret");
}

void CallEntry() {}

vorel::i32 StorageEntry(void* /* storage */, void* /* parameters */, void* /* function */) {
  return 77;
}

}  // extern "C"
