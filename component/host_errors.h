// Results of the host and of component calls, by the host's own names.
#pragma once
#include "component/host_types.h"

namespace vorel::component {

inline constexpr OSErr noErr = 0;
inline constexpr OSErr readErr = -19;
inline constexpr OSErr eofErr = -39;
inline constexpr OSErr paramErr = -50;
inline constexpr OSErr memFullErr = -108;
inline constexpr OSErr memAdrErr = -110;
inline constexpr OSErr userCanceledErr = -128;
inline constexpr OSErr resNotFound = -192;
inline constexpr OSErr internalQuickTimeError = -2034;
inline constexpr OSErr qtmlDllLoadErr = -2093;
inline constexpr OSErr qtmlDllEntryNotFoundErr = -2094;
inline constexpr OSErr gestaltUndefSelectorErr = -5551;
inline constexpr OSErr codecUnimpErr = -8962;
inline constexpr OSErr codecBadDataErr = -8969;
inline constexpr OSErr codecExtensionNotFoundErr = -8971;
inline constexpr OSErr codecConditionErr = -8972;
inline constexpr OSErr codecNoMemoryPleaseWaitErr = -8977;
inline constexpr OSErr errItemNotControl = -30596;
inline constexpr ComponentResult badComponentInstance = static_cast<ComponentResult>(0x80008001);
inline constexpr ComponentResult badComponentSelector = static_cast<ComponentResult>(0x80008002);

}  // namespace vorel::component
