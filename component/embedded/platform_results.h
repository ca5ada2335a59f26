// Results that only a host gives, by their own names.
#pragma once
#include "component/host_errors.h"

namespace vorel::component::embedded {

inline constexpr OSErr nilHandleErr = -109;
inline constexpr OSErr resFNotFound = -193;
inline constexpr OSErr invalidComponentID = -3000;

}  // namespace vorel::component::embedded
