// QuickTime.qts: the platform's three entries, as they are entered and left on the platform.
#include "tests/windows/quicktime_stand_in.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>

using vorel::u32;
using vorel::component::Boolean;
using vorel::component::ComponentInstance;
using vorel::component::ComponentParameters;
using vorel::component::ComponentResult;
using vorel::component::HostOperations;
using vorel::component::StandIn;

namespace {

StandIn standIn = {};

Boolean HoldsItself() {
  return standIn.holdsItself;
}

struct ServiceRow {
  u32 selector;
  std::size_t offset;  // of its operation
};

constexpr ServiceRow kServices[] = {
#define VOREL_SERVICE_ROW(NAME, SELECTOR, RESULT, PARAMETERS) {SELECTOR, offsetof(HostOperations, NAME)},
    VOREL_HOST_SERVICES(VOREL_SERVICE_ROW)
#undef VOREL_SERVICE_ROW
};

}  // namespace

extern "C" {

// The function behind a selector. A selector that no one has written down ends the test.
void* FindService(u32 selector) {
  constexpr u32 kHoldsItself = 0x001D0059;
  ++standIn.calls;
  standIn.lastSelector = selector;
  if (selector == kHoldsItself) return reinterpret_cast<void*>(HoldsItself);
  const char* const operations =
      standIn.host == nullptr ? nullptr : reinterpret_cast<const char*>(*standIn.host);
  for (const ServiceRow& row : kServices) {
    if (operations != nullptr && row.selector == selector)
      return *reinterpret_cast<void* const*>(operations + row.offset);
  }
  std::fprintf(stderr, "QuickTime.qts: no service 0x%08X\n", selector);
  std::abort();
}

// Selector in EAX, stack as for a call of the service.
__attribute__((naked)) void theQuickTimeDispatcher() {
  __asm__(
      "pushl %eax\n\t"
      "call _FindService\n\t"
      "addl $4, %esp\n\t"
      "jmp *%eax");
}

ComponentResult CallComponentEntry(ComponentInstance instance, ComponentParameters* parameters) {
  return (*standIn.host)->CallComponent(instance, parameters);
}

u32 CountStorageCall() {
  ++standIn.storageCalls;
  return standIn.stackShift;
}

// (storage, parameters, function): the slots of the call and no more, under the storage. They are aligned to
// 4 bytes alone. What lies above them is the caller's; it is compared after the call.
__attribute__((naked)) void CallFunctionWithStorageEntry() {
  __asm__(
      "pushl %ebp\n\t"
      "movl %esp, %ebp\n\t"
      "pushl %ebx\n\t"
      "pushl %esi\n\t"
      "pushl %edi\n\t"
      "call _CountStorageCall\n\t"
      "subl %eax, %esp\n\t"
      "movl $16, %ecx\n"
      "1:\tpushl $0x5AFE5AFE\n\t"
      "loop 1b\n\t"
      "movl %esp, %ebx\n\t"
      "movl 12(%ebp), %esi\n\t"
      "movzbl 1(%esi), %ecx\n\t"
      "addl $3, %ecx\n\t"
      "andl $-4, %ecx\n\t"
      "addl $4, %esi\n\t"
      "subl %ecx, %esp\n\t"
      "movl %esp, %edi\n\t"
      "cld\n\t"
      "rep movsb\n\t"
      "pushl 8(%ebp)\n\t"
      "call *16(%ebp)\n\t"
      "movl %ebx, %esp\n\t"
      "movl $16, %ecx\n"
      "2:\tpopl %edx\n\t"
      "cmpl $0x5AFE5AFE, %edx\n\t"
      "jne _WroteAboveSlots\n\t"
      "loop 2b\n\t"
      "leal -12(%ebp), %esp\n\t"
      "popl %edi\n\t"
      "popl %esi\n\t"
      "popl %ebx\n\t"
      "popl %ebp\n\t"
      "ret");
}

[[noreturn]] void WroteAboveSlots() {
  std::fputs("QuickTime.qts: a function has written above its slots\n", stderr);
  std::abort();
}

StandIn* GetStandIn() {
  return &standIn;
}

}  // extern "C"
