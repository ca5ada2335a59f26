// The codec information of a component, from its resources.
#pragma once
#include "component/host.h"

namespace vorel::component {

// Copies the resource of this id into the caller's record.
OSErr CopyCodecInfo(ComponentInstance self, i16 id, CodecInfo* info);

}  // namespace vorel::component
