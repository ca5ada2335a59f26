// Dialogs from resources, whole and damaged, and the user in front of them.
#include "component/embedded/dialogs.h"

#include "embedded_fixture.h"

namespace vorel::component::embedded {
namespace {

constexpr i16 kId = 500;

Blob Box(i16 top, i16 left, i16 bottom, i16 right) {
  return Be16(static_cast<u16>(top)) + Be16(static_cast<u16>(left)) + Be16(static_cast<u16>(bottom)) +
         Be16(static_cast<u16>(right));
}

Blob Item(u8 kind, const Blob& data) {
  Blob item = Be32(0) + Box(10, 20, 30, 40) + static_cast<char>(kind) + PascalText(data);
  if (item.size() % 2 != 0) item += '\0';
  return item;
}

Blob DialogBytes() {
  return Box(100, 100, 626, 324) + Be16(5) + Be16(0) + Be16(0) + Be32(0) + Be16(kId) +
         PascalText("Settings") + Be16(0x280A);
}

Blob ItemBytes() {
  return Be16(8 - 1) + Item(4, "OK") + Item(4, "Cancel") + Item(0x87, Be16(300)) +
         Item(6,
              "PAL|S\x83"
              "CAM") +
         Item(5, "box") + Item(0x88, "Version ^0 of ^1^9") + Item(0xA0, Be16(128)) + Item(16, "edit");
}

Blob ControlBytes() {
  return Box(0, 0, 1, 1) + Be16(3) + Be16(0x0100) + Be16(9) + Be16(2) + Be16(160) + Be32(0) +
         PascalText("Group");
}

std::vector<HandResource> DialogResources() {
  std::vector<HandResource> resources = HandComponent(1, "imcoVrl3TmRk", "Qe5");
  resources.push_back({"DLOG", kId, DialogBytes()});
  resources.push_back({"DITL", kId, ItemBytes()});
  resources.push_back({"CNTL", 300, ControlBytes()});
  resources.push_back({"dlgx", kId, Be16(0) + Be32(0x0F)});
  return resources;
}

// Lets a test change one of the resources before the host starts.
struct DialogTest : EmbeddedHostTest {
  Blob fork;
  i16 file = 0;

  void StartWith(const std::vector<HandResource>& resources) {
    fork = HandFork(resources);
    Start({.resourceFork = BytesOf(fork)});
    file = Host->OpenComponentResFile(AsComponent(1));
  }
  void StartWith(const std::string& type, const Blob& bytes) {
    std::vector<HandResource> resources = DialogResources();
    for (HandResource& resource : resources)
      if (resource.type == type) resource.bytes = bytes;
    StartWith(resources);
  }
  void TearDown() override {
    if (file != 0) Host->CloseResFile(file);
    EmbeddedHostTest::TearDown();
  }
  static DialogRef OpenDialog() { return Host->GetNewDialog(kId, nullptr, nullptr); }
  static Dialog Look(DialogRef dialog) {
    Dialog seen;
    SetDialogUser([&seen](Dialog& shown) {
      seen = shown;
      return i16{1};
    });
    i16 item = 0;
    Host->ModalDialog(nullptr, &item);
    SetDialogUser(nullptr);
    EXPECT_NE(dialog, nullptr);
    return seen;
  }
};

TEST_F(DialogTest, ADialogIsReadWithAllItsItems) {
  StartWith(DialogResources());
  const DialogRef reference = OpenDialog();
  ASSERT_NE(reference, nullptr);
  EXPECT_EQ(Host->ResError(), noErr);
  EXPECT_EQ(CountsInUse().dialogs, 1);
  const Dialog dialog = Look(reference);
  EXPECT_EQ(dialog.id, kId);
  EXPECT_EQ(dialog.title, "Settings");
  EXPECT_EQ(dialog.bounds.right, 324);
  EXPECT_FALSE(dialog.visible);
  ASSERT_EQ(dialog.items.size(), 8u);
  const ItemKind kinds[] = {ItemKind::button,   ItemKind::button,     ItemKind::control, ItemKind::radio,
                            ItemKind::checkBox, ItemKind::staticText, ItemKind::icon,    ItemKind::editText};
  for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(dialog.items[i].kind, kinds[i]) << i;
  EXPECT_EQ(dialog.items[0].bounds.bottom, 30);
  EXPECT_TRUE(dialog.items[0].enabled);
  EXPECT_FALSE(dialog.items[2].enabled);
  EXPECT_EQ(dialog.items[2].text, "Group");
  EXPECT_EQ(dialog.items[2].controlKind, 160);
  EXPECT_EQ(dialog.items[2].value, 3);
  EXPECT_EQ(dialog.items[2].minimum, 2);
  EXPECT_EQ(dialog.items[2].maximum, 9);
  EXPECT_EQ(dialog.items[6].resource, 128);
  EXPECT_EQ(ShownText(dialog.items[3]), "PAL|SÉCAM");
  Host->DisposeDialog(reference);
  EXPECT_EQ(CountsInUse().dialogs, 0);
}

TEST_F(DialogTest, ControlsAreButtonsAndControls) {
  StartWith(DialogResources());
  const DialogRef dialog = OpenDialog();
  ControlRef control = nullptr;
  for (const i16 item : {i16{1}, i16{2}, i16{3}, i16{4}, i16{5}})
    EXPECT_EQ(Host->GetDialogItemAsControl(dialog, item, &control), noErr) << item;
  for (const i16 item : {i16{6}, i16{7}, i16{8}, i16{9}, i16{0}, i16{-1}}) {
    EXPECT_EQ(Host->GetDialogItemAsControl(dialog, item, &control), errItemNotControl) << item;
    EXPECT_EQ(control, nullptr);
  }
  EXPECT_EQ(Host->GetDialogItemAsControl(nullptr, 1, &control), paramErr);
  Host->DisposeDialog(dialog);
}

TEST_F(DialogTest, ControlsHoldAValueWithinTheirRange) {
  StartWith(DialogResources());
  const DialogRef dialog = OpenDialog();
  ControlRef radio = nullptr, group = nullptr;
  ASSERT_EQ(Host->GetDialogItemAsControl(dialog, 4, &radio), noErr);
  ASSERT_EQ(Host->GetDialogItemAsControl(dialog, 3, &group), noErr);
  EXPECT_EQ(Host->GetControlValue(radio), 0);
  Host->SetControlValue(radio, 1);
  EXPECT_EQ(Host->GetControlValue(radio), 1);
  Host->SetControlValue(radio, 7);
  EXPECT_EQ(Host->GetControlValue(radio), 1);
  Host->SetControlValue(group, 0);
  EXPECT_EQ(Host->GetControlValue(group), 2);
  EXPECT_EQ(Look(dialog).items[3].value, 1);
  Host->DisposeDialog(dialog);
  EXPECT_EQ(Host->GetControlValue(radio), 0);
  Host->SetControlValue(radio, 1);
}

TEST_F(DialogTest, WithoutAControlHierarchyNoItemIsAControl) {
  StartWith("dlgx", Be16(0) + Be32(0x0D));
  const DialogRef dialog = OpenDialog();
  ControlRef control;
  EXPECT_EQ(Host->GetDialogItemAsControl(dialog, 1, &control), errItemNotControl);
  Host->DisposeDialog(dialog);
}

TEST_F(DialogTest, TheUsersClickIsTheItemHit) {
  StartWith(DialogResources());
  const DialogRef dialog = OpenDialog();
  // A click on a disabled item, or beside all items, does not end the call.
  const std::vector<i16> clicks = {3, 0, 9, -1, 4};
  std::size_t next = 0;
  SetDialogUser([&](Dialog&) { return clicks[next++]; });
  i16 item = 0;
  Host->ModalDialog(nullptr, &item);
  EXPECT_EQ(item, 4);
  EXPECT_EQ(next, 5u);
  SetDialogUser([](Dialog&) { return i16{0}; });
  Host->ModalDialog(nullptr, &item);
  EXPECT_EQ(item, 2);  // a user who never clicks on anything is gone
  Host->DisposeDialog(dialog);
}

TEST_F(DialogTest, WithoutAUserTheDialogIsCancelled) {
  StartWith(DialogResources());
  i16 item = 0;
  Host->ModalDialog(nullptr, &item);
  EXPECT_EQ(item, 2);
  const DialogRef dialog = OpenDialog();
  EXPECT_EQ(Host->SetDialogCancelItem(dialog, 5), noErr);
  Host->ModalDialog(nullptr, &item);
  EXPECT_EQ(item, 5);
  EXPECT_EQ(Host->SetDialogCancelItem(dialog, 9), paramErr);
  EXPECT_EQ(Host->SetDialogDefaultItem(dialog, 2), noErr);
  EXPECT_EQ(Host->SetDialogDefaultItem(nullptr, 2), paramErr);
  EXPECT_EQ(Look(dialog).defaultItem, 2);
  Host->DisposeDialog(dialog);
}

TEST_F(DialogTest, ShowingMakesItVisible) {
  StartWith(DialogResources());
  const DialogRef dialog = OpenDialog();
  Host->MacSetPort(dialog);
  Host->MacShowWindow(dialog);
  EXPECT_TRUE(Look(dialog).visible);
  Host->DisposeDialog(dialog);
  Host->MacShowWindow(dialog);
}

TEST_F(DialogTest, ParamTextFillsTheMarksOfStaticText) {
  StartWith(DialogResources());
  const DialogRef dialog = OpenDialog();
  const Blob version = PascalText("2.6.7"), product = PascalText("\xA9 Vorel");
  const auto bytes = [](const Blob& text) { return reinterpret_cast<const u8*>(text.data()); };
  Host->ParamText(bytes(version), bytes(product), nullptr, nullptr);
  EXPECT_EQ(ShownText(Look(dialog).items[5]), "Version 2.6.7 of © Vorel^9");
  Host->DisposeDialog(dialog);
}

TEST_F(DialogTest, DialogsComeFromTheCurrentFile) {
  StartWith(DialogResources());
  Host->UseResFile(0);
  EXPECT_EQ(OpenDialog(), nullptr);
  EXPECT_EQ(Host->ResError(), resNotFound);
}

TEST_F(DialogTest, NoCutResourceMakesADialog) {
  const std::pair<std::string, Blob> wholes[] = {
      {"DLOG", DialogBytes().substr(0, 20 + 9)},  // the position behind the title is not needed
      {"DITL", ItemBytes()},
      {"CNTL", ControlBytes()}};
  for (const auto& [type, whole] : wholes) {
    for (std::size_t size = 0; size < whole.size(); ++size) {
      StartWith(type, whole.substr(0, size));
      EXPECT_EQ(OpenDialog(), nullptr) << type << " of " << size << " bytes";
      EXPECT_EQ(Host->ResError(), resNotFound);
      Host->CloseResFile(file);
      StopEmbeddedHost();
    }
  }
  StartWith(DialogResources());
}

TEST_F(DialogTest, AKindThatIsUnknownMakesNoDialog) {
  StartWith("DITL", Be16(0) + Item(3, "x"));
  EXPECT_EQ(OpenDialog(), nullptr);
}

TEST_F(DialogTest, ThePadBehindTheLastItemMayBeMissing) {
  Blob items = Be16(0) + Item(4, "odd");
  items.pop_back();
  StartWith("DITL", items);
  const DialogRef dialog = OpenDialog();
  EXPECT_NE(dialog, nullptr);
  Host->DisposeDialog(dialog);
}

TEST(MacRoman, EveryCharacterBecomesValidUtf8) {
  EXPECT_EQ(Utf8FromMacRoman("plain 'text'"), "plain 'text'");
  EXPECT_EQ(Utf8FromMacRoman("\x83\xC9\xA9\xD5\xDE\xFF\x80"), "É…©’ﬁˇÄ");
}

}  // namespace
}  // namespace vorel::component::embedded
