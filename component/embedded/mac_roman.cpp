// Text of resources, for terminals.
#include "base/integers.h"
#include "component/embedded/dialogs.h"

namespace vorel::component::embedded {

namespace {

// Characters 0x80 to 0xFF of Mac Roman.
constexpr char16_t kUpperHalf[] =
    u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü"
    u"†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
    u"¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ"
    u"‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
static_assert(sizeof kUpperHalf / sizeof kUpperHalf[0] == 128 + 1);
static_assert(kUpperHalf[0x83 - 0x80] == u'É' && kUpperHalf[0xC9 - 0x80] == u'…' &&
              kUpperHalf[0xFF - 0x80] == u'ˇ');

void AppendUtf8(std::string& text, char16_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | character >> 6);
    text += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | character >> 12);
    text += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  }
}

}  // namespace

std::string Utf8FromMacRoman(std::string_view text) {
  std::string utf8;
  for (const char character : text) {
    const u8 code = static_cast<u8>(character);
    AppendUtf8(utf8, code < 0x80 ? char16_t{code} : kUpperHalf[code - 0x80]);
  }
  return utf8;
}

}  // namespace vorel::component::embedded
