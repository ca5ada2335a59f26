// Open dialogs and the user in front of them. A dialog has no screen here: it is a record that the user, whoever
// that is, looks at.
#include "component/embedded/dialogs.h"

#include <algorithm>
#include <array>
#include <memory>
#include <mutex>

#include "component/embedded/dialog_model.h"
#include "component/embedded/operations.h"
#include "component/embedded/platform_results.h"
#include "component/embedded/resource_files.h"

namespace vorel::component::embedded {

namespace {

constexpr i16 kCancelWithoutDialog = 2;
constexpr int kMostIdleClicks = 1000;  // on nothing, or on disabled items, before the user counts as gone

struct Dialogs {
  // Held while the user is asked, who reads texts meanwhile.
  std::recursive_mutex mutex;
  std::vector<std::unique_ptr<HostDialog>> open;  // the last one is in front
  std::array<std::string, 4> parameterTexts;
  DialogUser user;
};

Dialogs dialogs;

HostDialog* FindDialog(DialogRef reference) {
  for (const auto& dialog : dialogs.open)
    if (dialog.get() == reference) return dialog.get();
  return nullptr;
}

// Null for what is no control of an open dialog.
DialogItem* FindControl(ControlRef reference) {
  for (const auto& dialog : dialogs.open)
    for (const HostControl& control : dialog->controls)
      if (&control == reference) return &dialog->model.items[control.item];
  return nullptr;
}

bool IsItem(const Dialog& dialog, i16 item) {
  return item >= 1 && static_cast<std::size_t>(item) <= dialog.items.size();
}

bool EndsDialog(const Dialog& dialog, i16 item) {
  return IsItem(dialog, item) && dialog.items[static_cast<std::size_t>(item - 1)].enabled;
}

i16 AskUser(HostDialog& dialog) {
  for (int clicks = 0; dialogs.user && clicks < kMostIdleClicks; ++clicks) {
    const i16 item = dialogs.user(dialog.model);
    if (EndsDialog(dialog.model, item)) return item;
  }
  return dialog.model.cancelItem;
}

void TakeParameterText(std::size_t index, const u8* text) {
  if (text != nullptr) dialogs.parameterTexts[index].assign(text + 1, text + 1 + text[0]);
}

}  // namespace

DialogRef GetNewDialog(i16 id, void* /*storage*/, void* /*behind*/) {
  SetResError(resNotFound);
  if (CurResFile() <= 0) return nullptr;
  std::optional<Dialog> model = ReadDialog(id);
  if (!model) return nullptr;
  auto dialog = std::make_unique<HostDialog>();
  dialog->model = std::move(*model);
  for (std::size_t item = 0; item < dialog->model.items.size(); ++item)
    dialog->controls.push_back({dialog.get(), item});
  const std::scoped_lock lock(dialogs.mutex);
  dialogs.open.push_back(std::move(dialog));
  SetResError(noErr);
  return dialogs.open.back().get();
}

void DisposeDialog(DialogRef dialog) {
  const std::scoped_lock lock(dialogs.mutex);
  std::erase_if(dialogs.open, [dialog](const auto& open) { return open.get() == dialog; });
}

// Events are not seen here, so there is nothing for a filter.
void ModalDialog(ModalFilter /*filter*/, i16* itemHit) {
  if (itemHit == nullptr) return;
  const std::scoped_lock lock(dialogs.mutex);
  *itemHit = dialogs.open.empty() ? kCancelWithoutDialog : AskUser(*dialogs.open.back());
}

void ParamText(const u8* first, const u8* second, const u8* third, const u8* fourth) {
  const std::scoped_lock lock(dialogs.mutex);
  TakeParameterText(0, first);
  TakeParameterText(1, second);
  TakeParameterText(2, third);
  TakeParameterText(3, fourth);
}

OSErr SetDialogDefaultItem(DialogRef dialog, i16 item) {
  const std::scoped_lock lock(dialogs.mutex);
  HostDialog* found = FindDialog(dialog);
  if (found == nullptr || !IsItem(found->model, item)) return paramErr;
  found->model.defaultItem = item;
  return noErr;
}

OSErr SetDialogCancelItem(DialogRef dialog, i16 item) {
  const std::scoped_lock lock(dialogs.mutex);
  HostDialog* found = FindDialog(dialog);
  if (found == nullptr || !IsItem(found->model, item)) return paramErr;
  found->model.cancelItem = item;
  return noErr;
}

OSErr GetDialogItemAsControl(DialogRef dialog, i16 item, ControlRef* control) {
  if (control == nullptr) return paramErr;
  *control = nullptr;
  const std::scoped_lock lock(dialogs.mutex);
  HostDialog* found = FindDialog(dialog);
  if (found == nullptr) return paramErr;
  if (!found->model.hasControls || !IsItem(found->model, item)) return errItemNotControl;
  const auto index = static_cast<std::size_t>(item - 1);
  if (!found->model.items[index].isControl) return errItemNotControl;
  *control = &found->controls[index];
  return noErr;
}

i16 GetControlValue(ControlRef control) {
  const std::scoped_lock lock(dialogs.mutex);
  const DialogItem* item = FindControl(control);
  return item == nullptr ? i16{0} : item->value;
}

void SetControlValue(ControlRef control, i16 value) {
  const std::scoped_lock lock(dialogs.mutex);
  DialogItem* item = FindControl(control);
  if (item != nullptr) item->value = std::max(item->minimum, std::min(item->maximum, value));
}

void MacShowWindow(DialogRef window) {
  const std::scoped_lock lock(dialogs.mutex);
  if (HostDialog* found = FindDialog(window)) found->model.visible = true;
}

// There is no drawing, so no port is current.
void MacSetPort(DialogRef /*port*/) {}

void SetDialogUser(DialogUser user) {
  const std::scoped_lock lock(dialogs.mutex);
  dialogs.user = std::move(user);
}

std::string ShownText(const DialogItem& item) {
  if (item.kind != ItemKind::staticText) return Utf8FromMacRoman(item.text);
  const std::scoped_lock lock(dialogs.mutex);
  std::string text;
  for (std::size_t i = 0; i < item.text.size(); ++i) {
    const char mark = i + 1 < item.text.size() ? item.text[i + 1] : ' ';
    if (item.text[i] != '^' || mark < '0' || mark > '3') {
      text += item.text[i];
      continue;
    }
    text += dialogs.parameterTexts[static_cast<std::size_t>(mark - '0')];
    ++i;
  }
  return Utf8FromMacRoman(text);
}

i32 DialogsInUse() {
  const std::scoped_lock lock(dialogs.mutex);
  return static_cast<i32>(dialogs.open.size());
}

void ForgetDialogs() {
  const std::scoped_lock lock(dialogs.mutex);
  dialogs.open.clear();
  dialogs.parameterTexts = {};
  dialogs.user = nullptr;
}

}  // namespace vorel::component::embedded
