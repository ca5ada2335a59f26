// What other parts of the host need of the open resource files.
#pragma once
#include "component/host_types.h"

namespace vorel::component::embedded {

/// Sets what ResError answers in this thread.
void SetResError(OSErr error);

i32 ResourceFilesInUse();
void ForgetResourceFiles();

}  // namespace vorel::component::embedded
