// The dialog on a settings record: five groups of radio buttons, or two for wide-range frames.
#include <array>
#include <cstring>

#include "base/bytes.h"
#include "component/host_errors.h"
#include "component/resources/dialog_items.h"
#include "component/settings.h"

namespace vorel::component {

namespace {

// One radio button. The first button of a group that is on tells the value; a group with none on has that of its
// row marked as the rest.
struct Button {
  i16 item;
  u32 value;
};

struct Group {
  u32 Settings::*value;
  std::array<Button, 5> buttons;
  std::size_t count;
  u32 rest;            // what no button says
  u32 shownForOthers;  // for a value that no button has
  bool inEveryDialog;  // also in that of wide-range frames
};

constexpr Group kGroups[] = {
    {&Settings::mode,
     {{{kItemSelfCheck, kModeSelfCheck}, {kItemOneWay, kModeOneWay}}},
     2,
     kModeOneWay,
     kModeSelfCheck,
     true},
    {&Settings::scan,
     {{{kItemProgressive, kScanProgressive},
       {kItemInterlaced, kScanInterlaced},
       {kItemAutomaticScan, kScanAutomatic}}},
     3,
     kScanAutomatic,
     kScanAutomatic,
     true},
    {&Settings::conversion,
     {{{kItemBest, kConversionBest}, {kItemPerfect, kConversionPerfect}}},
     2,
     kConversionPerfect,
     kConversionBest,
     false},
    {&Settings::videoStandard,
     {{{kItemNtsc, kVideoNtsc},
       {kItemPalSecam, kVideoPal},
       {kItemHd, kVideoHd},
       {kItemHd1035, kVideoHd1035},
       {kItemUnknownStandard, kVideoUnknown}}},
     5,
     kVideoUnknown,
     kVideoUnknown,
     false},
    {&Settings::rgbRange,
     {{{kItemFullRange, 1}, {kItemVideoRange, 2}, {kItemAutomaticRange, 0}}},
     3,
     0,
     0,
     false},
};

// Items that a dialog doesn't have are off and stay so.
bool IsOn(DialogRef dialog, i16 item) {
  ControlRef control = nullptr;
  return Host->GetDialogItemAsControl(dialog, item, &control) == noErr && Host->GetControlValue(control) != 0;
}

void Turn(DialogRef dialog, i16 item, bool isOn) {
  ControlRef control = nullptr;
  if (Host->GetDialogItemAsControl(dialog, item, &control) == noErr)
    Host->SetControlValue(control, isOn ? 1 : 0);
}

bool HasGroup(const Group& group, bool isWideRange) {
  return group.inEveryDialog || !isWideRange;
}

u32 ShownValue(const Group& group, u32 value) {
  for (std::size_t i = 0; i < group.count; ++i) {
    if (group.buttons[i].value == value) return value;
  }
  return group.shownForOthers;
}

void ShowSettings(DialogRef dialog, const Settings& settings, bool isWideRange) {
  for (const Group& group : kGroups) {
    if (!HasGroup(group, isWideRange)) continue;
    const u32 value = ShownValue(group, settings.*group.value);
    for (std::size_t i = 0; i < group.count; ++i)
      Turn(dialog, group.buttons[i].item, group.buttons[i].value == value);
  }
}

void ReadSettings(DialogRef dialog, Settings& settings, bool isWideRange) {
  for (const Group& group : kGroups) {
    if (!HasGroup(group, isWideRange)) continue;
    u32 value = group.rest;
    for (std::size_t i = group.count; i-- > 0;) {
      if (IsOn(dialog, group.buttons[i].item)) value = group.buttons[i].value;
    }
    settings.*group.value = value;
  }
}

// A click on a radio button clears the others of its group.
void SelectButton(DialogRef dialog, i16 item, bool isWideRange) {
  for (const Group& group : kGroups) {
    if (!HasGroup(group, isWideRange)) continue;
    bool isHere = false;
    for (std::size_t i = 0; i < group.count; ++i) isHere = isHere || group.buttons[i].item == item;
    if (!isHere) continue;
    for (std::size_t i = 0; i < group.count; ++i)
      Turn(dialog, group.buttons[i].item, group.buttons[i].item == item);
  }
}

// False for Cancel.
bool RunDialog(DialogRef dialog, ModalFilter filter, Settings& settings, bool isWideRange) {
  const Settings before = settings;
  ShowSettings(dialog, settings, isWideRange);
  Host->SetDialogDefaultItem(dialog, kItemOk);
  Host->SetDialogCancelItem(dialog, kItemCancel);
  Host->MacSetPort(dialog);
  Host->MacShowWindow(dialog);
  for (;;) {
    i16 item = kItemCancel;
    Host->ModalDialog(filter, &item);
    if (item == kItemCancel) return false;
    if (item == kItemRevert) {
      ShowSettings(dialog, before, isWideRange);
    } else if (item == kItemOk) {
      ReadSettings(dialog, settings, isWideRange);
      return true;
    } else {
      SelectButton(dialog, item, isWideRange);
    }
  }
}

// The family whose frames were last asked for decides on the dialog.
const ComponentRow& DialogComponent() {
  i32 form = 0;
  if (Host->Gestalt(FourCharacterCode("Form"), &form) != noErr) form = 0;
  return CompressorOf(static_cast<u32>(form));
}

// Opens the dialog from the component's own resources and runs it.
OSErr AskUser(ComponentInstance self, ModalFilter filter, Settings& settings) {
  const ComponentRow& component = DialogComponent();
  const i16 current = Host->CurResFile();
  const i16 own = Host->OpenComponentResFile(self);
  if (own <= 0) {
    const OSErr error = Host->ResError();
    return error == noErr ? resNotFound : error;
  }
  Host->UseResFile(own);
  OSErr error = resNotFound;
  const auto inFront = reinterpret_cast<void*>(Slot{-1});
  if (const DialogRef dialog = Host->GetNewDialog(DialogId(component), nullptr, inFront); dialog != nullptr) {
    const bool isWideRange = component.family == VOREL_YCBCR_8BW_422;
    error = RunDialog(dialog, filter, settings, isWideRange) ? noErr : userCanceledErr;
    Host->DisposeDialog(dialog);
  }
  Host->UseResFile(current);
  Host->CloseComponentResFile(own);
  return error;
}

OSErr AppendPair(Handle record, OSType key, u32 value) {
  const i32 size = Host->GetHandleSize(record);
  Host->SetHandleSize(record, size + kPairBytes);
  if (const OSErr error = Host->MemError(); error != noErr) return error;
  StoreNative(*record + size, key);
  StoreNative(*record + size + 4, value);
  return noErr;
}

// Reads the record and completes it with the instance's values. A block that is no record is begun anew.
OSErr CompleteRecord(const Compressor& instance, Handle record, Settings& settings) {
  const i32 size = Host->GetHandleSize(record);
  const i32 pairs = size / kPairBytes;
  const i32 kept = IsSettingsRecord(*record, pairs) ? pairs * kPairBytes : 0;
  if (kept != size) {
    Host->SetHandleSize(record, kept);
    if (const OSErr error = Host->MemError(); error != noErr) return error;
  }
  for (const SettingKey& row : kSettingKeys) {
    const i32 count = Host->GetHandleSize(record) / kPairBytes;
    settings.*row.value = instance.settings.*row.value;
    if (const auto value = FindSetting(*record, count, row.key)) {
      settings.*row.value = *value;
    } else if (const OSErr error = AppendPair(record, row.key, instance.settings.*row.value);
               error != noErr) {
      return error;
    }
  }
  return noErr;
}

void ReplaceValues(Handle record, const Settings& settings) {
  const i32 count = Host->GetHandleSize(record) / kPairBytes;
  for (const SettingKey& row : kSettingKeys) ReplaceSetting(*record, count, row.key, settings.*row.value);
}

// Puts back what stood in the record. It has been as long before, or longer.
OSErr CopyBlock(Handle from, Handle to) {
  const i32 size = Host->GetHandleSize(from);
  Host->SetHandleSize(to, size);
  if (const OSErr error = Host->MemError(); error != noErr) return error;
  if (size > 0) std::memcpy(*to, *from, static_cast<std::size_t>(size));
  return noErr;
}

}  // namespace

// The dialog works on a copy, so that a record is changed by OK alone.
ComponentResult RequestSettings(Compressor* instance, Handle settings, Rect* /* rectangle */,
                                ModalFilter filter) {
  if (instance == nullptr || settings == nullptr) return paramErr;
  Handle copy = settings;
  if (const OSErr error = Host->HandToHand(&copy); error != noErr) return error;
  Settings chosen = {};
  OSErr error = CompleteRecord(*instance, copy, chosen);
  if (error == noErr) error = AskUser(instance->self, filter, chosen);
  if (error == noErr) {
    ReplaceValues(copy, chosen);
    error = CopyBlock(copy, settings);
  }
  Host->DisposeHandle(copy);
  return error;
}

}  // namespace vorel::component
