// Items of the settings dialogs by number. The dialog of 8bw has items 1 to 11, then name and version.
#pragma once

namespace vorel::component {

enum DialogItem : int {
  kItemOk = 1,
  kItemCancel = 2,
  kItemRevert = 3,
  kItemIcon = 4,
  kItemAlgorithm = 5,  // group boxes stand in front of their radios
  kItemOneWay = 6,
  kItemSelfCheck = 7,
  kItemCoding = 8,
  kItemProgressive = 9,
  kItemInterlaced = 10,
  kItemAutomaticScan = 11,
  kItemConversion = 12,
  kItemPerfect = 13,
  kItemBest = 14,
  kItemVideoStandard = 15,
  kItemNtsc = 16,
  kItemPalSecam = 17,
  kItemHd = 18,
  kItemHd1035 = 19,
  kItemUnknownStandard = 20,
  kItemRgbRange = 21,
  kItemFullRange = 22,
  kItemVideoRange = 23,
  kItemAutomaticRange = 24,
  kItemName = 25,
  kItemVersion = 26,
};

}  // namespace vorel::component
