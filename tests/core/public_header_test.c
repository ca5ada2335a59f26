/* The public header compiles as C99 and the shared library links under it. */
#include <stdio.h>
#include <string.h>

#include "vorel/vorel.h"

int main(void) {
  static uint32_t frame[64];
  uint8_t picture[4] = {130, 1, 127, 255};
  uint8_t copy[4] = {0, 0, 0, 0};
  uint32_t scratch[16];
  uint32_t word = 0;
  uint32_t bit = 0;
  const uint32_t yuvu = 0x79757675;
  if (VorelGenericEncode(yuvu, 0, 2, 1, 4, picture, &word, &bit, frame, 0) != VOREL_COMPLETE) return 1;
  if (word != 10 || bit != 14) return 2;
  word = 5;
  bit = 0;
  if (VorelDecodeBounded(VOREL_GENERIC, yuvu, 2, 1, 4, copy, 0, &word, &bit, frame, 22, 0, scratch) !=
      VOREL_COMPLETE)
    return 3;
  if (memcmp(picture, copy, 4) != 0) return 4;
  word = 5;
  bit = 0;
  memset(copy, 0, sizeof copy);
  if (VorelYCbCr8bw422pToyuvuDecode(2, 1, 4, copy, &word, &bit, frame, scratch) != VOREL_COMPLETE) return 5;
  if (memcmp(picture, copy, 4) != 0) return 6;
  printf("one frame there and back through the shared library\n");
  return 0;
}
