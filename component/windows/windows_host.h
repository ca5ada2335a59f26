// The foreign host of 32-bit Windows, bound when the first call goes to it. All its services go through one
// entry, by number.
#pragma once
#include "component/host.h"

extern "C" {

// Run ahead of every call to the host while it is set: the binder, until it has succeeded.
extern vorel::component::OSErr (*bindHook)();

// The host's entries; null until they are found.
extern void* theQuickTimeDispatcher;  // jumped to: selector in EAX, stack as for a call of the service

}  // extern "C"

namespace vorel::component::windows {

extern void* moduleHandle;  // of QuickTime.qts; null until it is bound, and again when it is released

// Called directly.
extern ComponentResult (*callComponent)(ComponentInstance instance, ComponentParameters* parameters);
extern ComponentResult (*callComponentFunctionWithStorage)(Handle storage, ComponentParameters* parameters,
                                                           SelectorFunction function);

// Finds the host and its entries. Returns 0, qtmlDllLoadErr without a host, or qtmlDllEntryNotFoundErr with one
// that lacks an entry; the hook then stays, and the next call looks again.
OSErr BindQuickTime();

// Asks the host whether it stays in memory by itself. It is bound.
Boolean HostHoldsItself();

#define VOREL_HOST_FUNCTION(NAME, SELECTOR, RESULT, PARAMETERS) RESULT NAME PARAMETERS;
VOREL_HOST_QUESTIONS(VOREL_HOST_FUNCTION)
#undef VOREL_HOST_FUNCTION

}  // namespace vorel::component::windows
