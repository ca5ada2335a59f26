// Dialogs as their resources describe them.
#include "component/embedded/big_endian_reader.h"
#include "component/embedded/dialog_model.h"
#include "component/embedded/resource_source.h"

namespace vorel::component::embedded {

namespace {

constexpr u8 kDisabled = 0x80;
constexpr u32 kControlHierarchy = 2;  // flag of 'dlgx': items can be reached as controls
constexpr i16 kOk = 1;
constexpr i16 kCancel = 2;  // by convention, until the component says it for certain

struct ItemForm {
  u8 code;
  ItemKind kind;
  bool isControl;
  bool namesResource;  // data are the id of a resource; otherwise they are text
};

constexpr ItemForm kItemForms[] = {
    {0, ItemKind::user, false, false},       {1, ItemKind::help, false, false},
    {4, ItemKind::button, true, false},      {5, ItemKind::checkBox, true, false},
    {6, ItemKind::radio, true, false},       {7, ItemKind::control, true, true},
    {8, ItemKind::staticText, false, false}, {16, ItemKind::editText, false, false},
    {32, ItemKind::icon, false, true},       {64, ItemKind::picture, false, true},
};

const ItemForm* FindForm(u8 code) {
  for (const ItemForm& form : kItemForms)
    if (form.code == code) return &form;
  return nullptr;
}

void SkipToEven(BigEndianReader& reader) {
  if (reader.position % 2 != 0) Read8(reader);
}

bool ReadControl(DialogItem& item) {
  const auto bytes = FindResourceBytes(FourCharacterCode("CNTL"), item.resource);
  if (!bytes) return false;
  BigEndianReader reader = {*bytes};
  ReadRect(reader);  // the item's own rectangle counts
  item.value = ReadSigned16(reader);
  Read16(reader);                       // visible
  item.maximum = ReadSigned16(reader);  // in front of the minimum
  item.minimum = ReadSigned16(reader);
  item.controlKind = ReadSigned16(reader);
  Read32(reader);  // reference
  item.text = ReadText(reader);
  return reader.complete;
}

bool ReadItem(BigEndianReader& reader, DialogItem& item) {
  Read32(reader);  // room for a handle
  item.bounds = ReadRect(reader);
  const u8 code = Read8(reader);
  const std::string data = ReadText(reader);
  const ItemForm* form = FindForm(code & ~kDisabled);
  if (!reader.complete || form == nullptr) return false;
  SkipToEven(reader);
  item.kind = form->kind;
  item.enabled = (code & kDisabled) == 0;
  item.isControl = form->isControl;
  item.maximum = form->isControl ? 1 : 0;
  if (!form->namesResource) {
    item.text = data;
    return true;
  }
  if (data.size() != 2) return false;
  item.resource = static_cast<i16>(LoadBig16(data.data()));
  return item.kind != ItemKind::control || ReadControl(item);
}

bool ReadItems(i16 id, std::vector<DialogItem>& items) {
  const auto bytes = FindResourceBytes(FourCharacterCode("DITL"), id);
  if (!bytes) return false;
  BigEndianReader reader = {*bytes};
  const i32 count = i32{ReadSigned16(reader)} + 1;
  for (i32 i = 0; i < count && reader.complete; ++i) {
    DialogItem item = {};
    // The pad byte behind the last item is often left out.
    const bool whole = ReadItem(reader, item);
    if (!whole) return false;
    if (!reader.complete && i + 1 < count) return false;
    items.push_back(item);
  }
  return count >= 0 && items.size() == static_cast<std::size_t>(count);
}

bool HasControls(i16 id) {
  const auto bytes = FindResourceBytes(FourCharacterCode("dlgx"), id);
  if (!bytes) return false;
  BigEndianReader reader = {*bytes};
  const u16 version = Read16(reader);
  const u32 flags = Read32(reader);
  return reader.complete && version == 0 && (flags & kControlHierarchy) != 0;
}

}  // namespace

std::optional<Dialog> ReadDialog(i16 id) {
  const auto bytes = FindResourceBytes(FourCharacterCode("DLOG"), id);
  if (!bytes) return std::nullopt;
  BigEndianReader reader = {*bytes};
  Dialog dialog = {};
  dialog.id = id;
  dialog.bounds = ReadRect(reader);
  Read16(reader);  // kind of window
  dialog.visible = Read8(reader) != 0;
  Read8(reader);
  Read16(reader);  // close box
  Read32(reader);  // reference
  const i16 items = ReadSigned16(reader);
  dialog.title = ReadText(reader);
  dialog.hasControls = HasControls(id);
  dialog.defaultItem = kOk;
  dialog.cancelItem = kCancel;
  if (!reader.complete || !ReadItems(items, dialog.items)) return std::nullopt;
  return dialog;
}

}  // namespace vorel::component::embedded
