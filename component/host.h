// The host as components see it: one record of functions. There is one host in a process, set before the
// first component is opened: the embedded one, or the binding to a foreign one.
#pragma once
#include "component/host_operations.inc"
#include "component/host_types.h"

namespace vorel::component {

struct HostOperations {
#define VOREL_HOST_FIELD(NAME, SELECTOR, RESULT, PARAMETERS) RESULT(*NAME) PARAMETERS;
  VOREL_HOST_SERVICES(VOREL_HOST_FIELD)
  VOREL_HOST_QUESTIONS(VOREL_HOST_FIELD)
#undef VOREL_HOST_FIELD
};

extern const HostOperations* Host;

}  // namespace vorel::component
