// The services of the host, each a few instructions without a frame of their own: the arguments stay where the
// caller has put them, and the dispatcher returns to the caller. EAX is free at the start of a call and is the
// selector in the end.
#include "component/windows/windows_host.h"

namespace vorel::component {

namespace windows {

namespace {

// No stub looks at its parameters.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-parameter"

#define VOREL_TEXT(TOKENS) #TOKENS
#define VOREL_HOST_STUB(NAME, SELECTOR, RESULT, PARAMETERS)   \
  __attribute__((naked)) RESULT NAME PARAMETERS {             \
    __asm__(                                                \
        "movl _bindHook, %eax\n\t"                          \
        "testl %eax, %eax\n\t"                              \
        "jz 1f\n\t"                                         \
        "call *%eax\n"                                      \
        "1:\n\t"                                            \
        "movl $" VOREL_TEXT(SELECTOR) ", %eax\n\t"          \
        "jmp *_theQuickTimeDispatcher"); \
  }
VOREL_HOST_SERVICES(VOREL_HOST_STUB)

VOREL_HOST_STUB(AskWhetherHeld, 0x001D0059, Boolean, (void))
#undef VOREL_HOST_STUB
#undef VOREL_TEXT

#pragma GCC diagnostic pop

constexpr HostOperations kOperations = {
#define VOREL_HOST_ENTRY(NAME, SELECTOR, RESULT, PARAMETERS) .NAME = NAME,
    VOREL_HOST_SERVICES(VOREL_HOST_ENTRY) VOREL_HOST_QUESTIONS(VOREL_HOST_ENTRY)
#undef VOREL_HOST_ENTRY
};

}  // namespace

Boolean HostHoldsItself() {
  return AskWhetherHeld();
}

}  // namespace windows

// Set by the linker, so that loading the library does no work.
const HostOperations* Host = &windows::kOperations;

}  // namespace vorel::component
