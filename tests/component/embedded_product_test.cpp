// The components' own resources, as this host reads them.
#include "component/component_table.h"
#include "component/embedded/dialogs.h"
#include "component/resources/embedded_fork.h"
#include "embedded_fixture.h"

namespace vorel::component::embedded {
namespace {

struct ProductTest : EmbeddedHostTest {
  void SetUp() override { Start({.resourceFork = {kResourceFork, kResourceForkBytes}}); }
};

TEST_F(ProductTest, EveryComponentIsRegistered) {
  EXPECT_EQ(FindComponents(FourCharacterCode("imdc"), 0, 0).size(), 8u);
  EXPECT_EQ(FindComponents(FourCharacterCode("imco"), 0, 0).size(), 8u);
  EXPECT_EQ(FindComponents(FourCharacterCode("imtc"), 0, 0).size(), 18u);
  const auto found = FindComponents(FourCharacterCode("imdc"), FourCharacterCode("Vrl3"), 0);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].resource, 23592);
  EXPECT_EQ(found[0].entry, "Qd5");
  EXPECT_EQ(found[0].flags, 0x10200020u);
}

// Every compressor's dialog opens with its radio buttons as controls: 26 items, 13 in that of 8bw. The icon is no control.
TEST_F(ProductTest, EveryDialogOpensWithItsControls) {
  const auto compressors = FindComponents(FourCharacterCode("imco"), 0, 0);
  ASSERT_EQ(compressors.size(), 8u);
  for (const ComponentListing& compressor : compressors) {
    const i16 file = Host->OpenComponentResFile(AsComponent(compressor.number));
    const i16 id = DialogId(CompressorOf(compressor.subtype));
    const DialogRef dialog = Host->GetNewDialog(id, nullptr, nullptr);
    EXPECT_NE(dialog, nullptr) << compressor.name;
    const i16 lastItem = compressor.subtype == FourCharacterCode("Vrl4") ? 13 : 26;
    ControlRef control = nullptr;
    for (const i16 item : {i16{1}, i16{2}, i16{3}, i16{5}, i16{6}, i16{7}, i16{9}, i16{10}, i16{11}})
      EXPECT_EQ(Host->GetDialogItemAsControl(dialog, item, &control), noErr)
          << compressor.name << " " << item;
    EXPECT_EQ(Host->GetDialogItemAsControl(dialog, 4, &control), errItemNotControl);
    std::size_t items = 0;
    SetDialogUser([&items](Dialog& shown) {
      items = shown.items.size();
      return i16{1};
    });
    i16 hit = 0;
    Host->ModalDialog(nullptr, &hit);
    EXPECT_EQ(items, static_cast<std::size_t>(lastItem)) << compressor.name;
    Host->DisposeDialog(dialog);
    Host->CloseComponentResFile(file);
  }
}

}  // namespace
}  // namespace vorel::component::embedded
