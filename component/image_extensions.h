// Extensions of an image description as plain values. Their data are big-endian whatever the machine, but for
// the format tag, which is a word of the machine.
#pragma once
#include <optional>

#include "base/bytes.h"
#include "component/host.h"

namespace vorel::component {

// The bytes of an extension; those behind `size` are zero. Only the first ones are kept.
struct ExtensionBytes {
  u8 bytes[16];
  i32 size;
};

// Reads the first extension of a type; nothing if there is none, with codecExtensionNotFoundErr in `error`, or
// if the host fails, with its error there.
std::optional<ExtensionBytes> ReadExtension(ImageDescriptionHandle description, OSType type, OSErr& error);

// Puts an extension in the place of the one that is there, if any.
OSErr ReplaceExtension(ImageDescriptionHandle description, OSType type, const u8* bytes, i32 size);
OSErr ReplaceExtension32(ImageDescriptionHandle description, OSType type, u32 value);  // big-endian

inline constexpr OSType kTagExtension = FourCharacterCode("Kesp");

// The format tag in its canonical spelling. An error of the host, codecExtensionNotFoundErr among them; that is
// also what an extension without a whole word gives.
OSErr ReadTag(ImageDescriptionHandle description, u32& tag);
OSErr ReplaceTag(ImageDescriptionHandle description, u32 tag);

// The numbers of a 'colr' extension of kind 'nclc'. Those of a careless writer in the other byte order are
// read, too.
struct ColourNumbers {
  u16 primaries;
  u16 transfer;
  u16 matrix;
};

std::optional<ColourNumbers> ReadColour(ImageDescriptionHandle description);
std::optional<ColourNumbers> ReadColour(ImageDescriptionHandle description,
                                        OSErr& error);  // see ReadExtension
OSErr ReplaceColour(ImageDescriptionHandle description, ColourNumbers numbers);

}  // namespace vorel::component
