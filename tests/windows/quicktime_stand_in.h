// A QuickTime.qts for tests: its three entries lead to the operations of a host in another program.
#pragma once
#include "component/host.h"

namespace vorel::component {

// What QuickTime.qts exports beside its entries.
struct StandIn {
  const HostOperations** host;  // the operations; read at every call
  u32 calls;                    // of the dispatcher
  u32 lastSelector;
  u32 storageCalls;     // of the storage-passing entry
  u32 stackShift;       // bytes below which the storage-passing entry builds its calls, a multiple of 4
  Boolean holdsItself;  // answer to 0x001D0059
};

using GetStandIn = StandIn* (*)();  // "GetStandIn"

}  // namespace vorel::component
