#include "component/host.h"

namespace vorel::component {

const HostOperations* Host = nullptr;

}  // namespace vorel::component
