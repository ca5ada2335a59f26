// What is asked about the process and the machine: values by four-character code, the executable, the processor.
#pragma once
#include "component/embedded/embedded_host.h"

namespace vorel::component::embedded {

void TakeProcessValues(const HostSettings& settings);
void ForgetProcessValues();

}  // namespace vorel::component::embedded
