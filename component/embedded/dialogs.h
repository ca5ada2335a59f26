// Dialogs as a model: what a dialog shows and holds, for a terminal that draws it or a test that plays the user.
#pragma once
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "component/host_types.h"

namespace vorel::component::embedded {

enum class ItemKind { user, help, button, checkBox, radio, control, staticText, editText, icon, picture };

struct DialogItem {
  ItemKind kind;
  bool enabled;      // a click on it ends ModalDialog
  bool isControl;    // buttons, check boxes, radios and controls
  Rect bounds;       // inside the dialog
  std::string text;  // Mac Roman, with marks for ParamText; a control's title
  i16 resource;      // of a control, icon or picture; otherwise 0
  i16 controlKind;   // of a control: 160 is a group box; otherwise 0
  i16 value;
  i16 minimum;
  i16 maximum;
};

struct Dialog {
  i16 id;
  Rect bounds;  // on the screen
  std::string title;
  bool visible;
  bool hasControls;  // items can be reached as controls
  i16 defaultItem;   // from 1
  i16 cancelItem;
  std::vector<DialogItem> items;
};

/// Plays the user: looks at the dialog, may edit texts, and returns the number of the item that is clicked, from
/// 1. Values of controls are the component's to change.
using DialogUser = std::function<i16(Dialog& dialog)>;

/// Sets who is asked by ModalDialog. Without a user every dialog is cancelled.
void SetDialogUser(DialogUser user);

/// Text of an item as it is shown, in UTF-8: ParamText put in for its marks.
std::string ShownText(const DialogItem& item);

std::string Utf8FromMacRoman(std::string_view text);

}  // namespace vorel::component::embedded
