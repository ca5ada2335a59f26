// The settings dialog with a user of the test's own in front of it.
#include "component/embedded/dialog_model.h"
#include "component/settings.h"
#include "tests/component/encoding_fixture.h"

namespace vorel::component {

namespace {

using SettingsDialogTest = EncodingTest;

constexpr OSType kGeneric = FourCharacterCode("Vrl0");
constexpr i16 kOk = 1;
constexpr i16 kCancel = 2;
constexpr i16 kRevert = 3;

struct Session {
  ComponentResult result;
  Bytes record;                            // afterwards
  std::vector<std::vector<i16>> lit;       // radio buttons that are on, before each click
  std::optional<embedded::Dialog> dialog;  // as the user first saw it
};

std::vector<i16> LitItems(const embedded::Dialog& dialog) {
  std::vector<i16> items;
  for (std::size_t i = 0; i < dialog.items.size(); ++i) {
    if (dialog.items[i].kind == embedded::ItemKind::radio && dialog.items[i].value != 0)
      items.push_back(static_cast<i16>(i + 1));
  }
  return items;
}

// Opens the dialog on a record; the user clicks these items, and after them Cancel.
Session Ask(ComponentInstance compressor, const Bytes& record, const std::vector<i16>& clicks) {
  Session session = {};
  std::size_t next = 0;
  embedded::SetDialogUser([&](embedded::Dialog& dialog) {
    if (!session.dialog) session.dialog = dialog;
    session.lit.push_back(LitItems(dialog));
    return next < clicks.size() ? clicks[next++] : kCancel;
  });
  const Handle handle = HandleOf(record);
  session.result =
      embedded::CallSelector(compressor, kImageCodecRequestSettingsSelect, handle, nullptr, nullptr);
  session.record = BytesOfHandle(handle);
  Host->DisposeHandle(handle);
  embedded::SetDialogUser(nullptr);
  EXPECT_EQ(embedded::CountsInUse().dialogs, 0);
  EXPECT_EQ(embedded::CountsInUse().resourceFiles, 0);
  return session;
}

TEST_F(SettingsDialogTest, OkWithoutAClickGivesTheRecordBack) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  const Session session = Ask(compressor, Record({1, 2, 0, 3, 2}), {kOk});
  EXPECT_EQ(session.result, noErr);
  EXPECT_EQ(session.record, Record({1, 2, 0, 3, 2}));
  EXPECT_EQ(session.lit, (std::vector<std::vector<i16>>{{7, 10, 13, 17, 23}}));
  ASSERT_TRUE(session.dialog.has_value());
  EXPECT_TRUE(session.dialog->visible);
  EXPECT_EQ(session.dialog->defaultItem, kOk);
  EXPECT_EQ(session.dialog->cancelItem, kCancel);
  EXPECT_EQ(GetRecord(compressor), Record({0, 0, 1, 0, 0}));  // the record is the host's to set
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, EveryButtonClearsItsGroupAndStoresItsValue) {
  struct {
    i16 item;
    Settings from;
    Settings to;
    std::vector<i16> lit;
  } const rows[] = {
      {6, {1, 1, 1, 1, 1}, {0, 1, 1, 1, 1}, {6, 9, 14, 18, 22}},
      {7, {0, 1, 1, 1, 1}, {1, 1, 1, 1, 1}, {7, 9, 14, 18, 22}},
      {9, {0, 0, 1, 0, 0}, {0, 1, 1, 0, 0}, {6, 9, 14, 16, 24}},
      {10, {0, 1, 1, 0, 0}, {0, 2, 1, 0, 0}, {6, 10, 14, 16, 24}},
      {11, {0, 2, 1, 0, 0}, {0, 0, 1, 0, 0}, {6, 11, 14, 16, 24}},
      {13, {0, 2, 1, 0, 0}, {0, 2, 0, 0, 0}, {6, 10, 13, 16, 24}},
      {14, {0, 2, 0, 0, 0}, {0, 2, 1, 0, 0}, {6, 10, 14, 16, 24}},
      {16, {0, 2, 0, 4, 0}, {0, 2, 0, 0, 0}, {6, 10, 13, 16, 24}},
      {17, {0, 2, 0, 0, 0}, {0, 2, 0, 3, 0}, {6, 10, 13, 17, 24}},
      {18, {0, 2, 0, 0, 0}, {0, 2, 0, 1, 0}, {6, 10, 13, 18, 24}},
      {19, {0, 2, 0, 0, 0}, {0, 2, 0, 2, 0}, {6, 10, 13, 19, 24}},
      {20, {0, 2, 0, 0, 0}, {0, 2, 0, 4, 0}, {6, 10, 13, 20, 24}},
      {22, {0, 2, 0, 0, 0}, {0, 2, 0, 0, 1}, {6, 10, 13, 16, 22}},
      {23, {0, 2, 0, 0, 1}, {0, 2, 0, 0, 2}, {6, 10, 13, 16, 23}},
      {24, {0, 2, 0, 0, 2}, {0, 2, 0, 0, 0}, {6, 10, 13, 16, 24}},
  };
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  for (const auto& row : rows) {
    const Session session = Ask(compressor, Record(row.from), {row.item, kOk});
    EXPECT_EQ(session.result, noErr) << row.item;
    EXPECT_EQ(session.record, Record(row.to)) << row.item;
    ASSERT_EQ(session.lit.size(), 2u);
    EXPECT_EQ(session.lit[1], row.lit) << row.item;
  }
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, ValuesThatNoButtonHasAreShownAsTheyAct) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  const Session session = Ask(compressor, Record({5, 7, 9, 8, 6}), {kOk});
  EXPECT_EQ(session.lit[0], (std::vector<i16>{7, 11, 14, 20, 24}));
  EXPECT_EQ(session.record, Record({1, 0, 1, 4, 0}));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, CancelLeavesTheRecord) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  const Bytes records[] = {Record({1, 2, 0, 3, 2}),
                           {},
                           Pairs({{kGeneric, 1}}),
                           {1, 2, 3},
                           Pairs({{FourCharacterCode("abcd"), 1}})};
  for (const Bytes& record : records) {
    const Session session = Ask(compressor, record, {6, 9, 14, 18, 22, kCancel});
    EXPECT_EQ(session.result, userCanceledErr);
    EXPECT_EQ(session.record, record);
    EXPECT_EQ(session.lit.size(), 6u);
  }
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, RevertShowsWhatTheDialogOpenedWith) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  const Session session =
      Ask(compressor, Record({1, 2, 0, 3, 2}), {6, 9, kRevert, 14, 18, 22, kRevert, 24, kOk});
  EXPECT_EQ(session.result, noErr);
  EXPECT_EQ(session.record, Record({1, 2, 0, 3, 0}));
  EXPECT_EQ(session.lit[2], (std::vector<i16>{6, 9, 13, 17, 23}));
  EXPECT_EQ(session.lit[3], (std::vector<i16>{7, 10, 13, 17, 23}));
  EXPECT_EQ(session.lit[6], (std::vector<i16>{7, 10, 14, 18, 22}));
  EXPECT_EQ(session.lit[7], (std::vector<i16>{7, 10, 13, 17, 23}));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, KeysThatAreMissingAreAddedFromTheInstance) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  SetRecord(compressor, Record({1, 2, 0, 3, 2}));
  EXPECT_EQ(Ask(compressor, {}, {kOk}).record, Record({1, 2, 0, 3, 2}));
  const Session session = Ask(compressor, Pairs({{kGeneric, 0}, {FourCharacterCode("Vide"), 1}}), {kOk});
  EXPECT_EQ(session.record, Pairs({{kGeneric, 0},
                                   {FourCharacterCode("Vide"), 1},
                                   {FourCharacterCode("Scan"), 2},
                                   {FourCharacterCode("Dest"), 0},
                                   {FourCharacterCode("Rnge"), 2}}));
  EXPECT_EQ(session.lit[0], (std::vector<i16>{6, 10, 13, 18, 23}));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, ForeignRecordIsBegunAnew) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  SetRecord(compressor, Record({1, 1, 1, 2, 1}));
  const Bytes foreign[] = {
      Pairs({{FourCharacterCode("Scan"), 2}, {kGeneric, 0}}), {1, 2, 3, 4, 5}, Bytes(16, 0)};
  for (const Bytes& record : foreign)
    EXPECT_EQ(Ask(compressor, record, {10, kOk}).record, Record({1, 2, 1, 2, 1}));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, UnknownPairsStayAndTheLastOfTwoIsReplaced) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  const OSType more = FourCharacterCode("More");
  const OSType scan = FourCharacterCode("Scan");
  const auto pairs = [&](u32 value) {
    return Pairs({{kGeneric, 0},
                  {more, 77},
                  {scan, 1},
                  {scan, value},
                  {FourCharacterCode("Dest"), 1},
                  {FourCharacterCode("Vide"), 0},
                  {FourCharacterCode("Rnge"), 0}});
  };
  const Session session = Ask(compressor, pairs(2), {11, kOk});
  EXPECT_EQ(session.lit[0], (std::vector<i16>{6, 10, 14, 16, 24}));
  EXPECT_EQ(session.record, pairs(0));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, RecordOfTheOtherByteOrderStaysInIt) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  const auto swapped = [](const Settings& settings) {
    Bytes bytes = Record(settings);
    for (std::size_t i = 0; i < bytes.size(); i += 4) std::reverse(&bytes[i], &bytes[i] + 4);
    return bytes;
  };
  const Session session = Ask(compressor, swapped({1, 2, 0, 3, 2}), {18, kOk});
  EXPECT_EQ(session.lit[0], (std::vector<i16>{7, 10, 13, 17, 23}));
  EXPECT_EQ(session.record, swapped({1, 2, 0, 1, 2}));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, DialogIsThatOfTheFormInUse) {
  struct {
    const char* form;
    const char* title;
  } const rows[] = {{"Vrl0", "Vorel Settings"},
                    {"Vrl7", "Vorel RGB[A] 10bf Settings"},
                    {"Vrl1", "Vorel RGB[A] 8bf Settings"},
                    {"Vrl5", "Vorel Y'CbCr[A] 10bv 4:4:4[:4] Settings"},
                    {"Vrl2", "Vorel Y'CbCr[A] 8bv 4:4:4[:4] Settings"},
                    {"Vrl6", "Vorel Y'CbCr[A] 10bv 4:2:2[:4] Settings"},
                    {"Vrl3", "Vorel Y'CbCr[A] 8bv 4:2:2[:4] Settings"},
                    {"Vrl4", "Vorel Y'CbCr 8bw 4:2:2 Settings"},
                    {"abcd", "Vorel Settings"}};
  const ComponentInstance compressor = OpenCompressorOf(FourCharacterCode("Vrl3"));
  EXPECT_EQ(Ask(compressor, {}, {}).dialog->title, "Vorel Settings");  // no form was used yet
  for (const auto& row : rows) {
    const auto job = MakeJob(LoadBig32(reinterpret_cast<const u8*>(row.form)), 32, 8, 8);
    ASSERT_EQ(Prepare(compressor, *job), noErr);
    const Session session = Ask(compressor, Record({1, 1, 0, 3, 2}), {10, kOk});
    ASSERT_TRUE(session.dialog.has_value());
    EXPECT_EQ(session.dialog->title, row.title);
    const bool isWide = std::string(row.form) == "Vrl4";
    EXPECT_EQ(session.dialog->items.size(), isWide ? 13u : 26u);
    EXPECT_EQ(session.lit[1], isWide ? (std::vector<i16>{7, 10}) : (std::vector<i16>{7, 10, 13, 17, 23}));
    EXPECT_EQ(session.record, Record({1, 2, 0, 3, 2}));  // what has no buttons stays
  }
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, WithoutADialogTheRecordStays) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  const HostOperations* const usual = Host;
  HostOperations operations = *Host;
  operations.GetNewDialog = [](i16, void*, void*) -> DialogRef { return nullptr; };
  Host = &operations;
  Session session = Ask(compressor, Pairs({{kGeneric, 1}}), {kOk});
  EXPECT_EQ(session.result, resNotFound);
  EXPECT_EQ(session.record, Pairs({{kGeneric, 1}}));
  operations = *usual;
  operations.OpenComponentResFile = [](ComponentInstance) { return i16{-1}; };
  operations.ResError = [] { return OSErr{-193}; };
  session = Ask(compressor, Pairs({{kGeneric, 1}}), {kOk});
  EXPECT_EQ(session.result, -193);
  EXPECT_EQ(session.record, Pairs({{kGeneric, 1}}));
  Host = usual;
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, ItemsThatAreNoControlsAreOff) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  const HostOperations* const usual = Host;
  HostOperations operations = *Host;
  operations.GetDialogItemAsControl = [](DialogRef, i16, ControlRef*) { return errItemNotControl; };
  Host = &operations;
  const Session session = Ask(compressor, Record({1, 2, 1, 3, 2}), {9, kOk});
  Host = usual;
  EXPECT_EQ(session.result, noErr);
  EXPECT_EQ(session.record, Record({0, 0, 0, 4, 0}));
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, CurrentResourceFileIsRestored) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  const i16 before = Host->CurResFile();
  Ask(compressor, {}, {kOk});
  EXPECT_EQ(Host->CurResFile(), before);
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, EveryAllocationMayFail) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  const Bytes records[] = {{}, Pairs({{kGeneric, 1}}), Record({1, 2, 0, 3, 2}), {1, 2, 3}};
  const int expectedFailures[] = {7, 6, 2, 8};  // the copy, each pair that is added, a cut, and the way back
  for (std::size_t i = 0; i < std::size(records); ++i) {
    int failures = 0;
    for (i32 number = 1; number < 50; ++number) {
      embedded::SetDialogUser([](embedded::Dialog&) { return kOk; });
      const Handle handle = HandleOf(records[i]);
      embedded::FailAllocation(number);
      const ComponentResult result =
          embedded::CallSelector(compressor, kImageCodecRequestSettingsSelect, handle, nullptr, nullptr);
      embedded::FailAllocation(0);
      const Bytes record = BytesOfHandle(handle);
      Host->DisposeHandle(handle);
      EXPECT_EQ(embedded::CountsInUse().handles, 0);
      EXPECT_EQ(embedded::CountsInUse().dialogs, 0);
      EXPECT_EQ(embedded::CountsInUse().resourceFiles, 0);
      if (result == noErr) break;
      EXPECT_EQ(result, memFullErr) << number;
      EXPECT_EQ(record, records[i]) << number;
      ++failures;
    }
    EXPECT_EQ(failures, expectedFailures[i]) << i;
  }
  embedded::SetDialogUser(nullptr);
  Host->CloseComponent(compressor);
}

TEST_F(SettingsDialogTest, ThereMustBeARecord) {
  const ComponentInstance compressor = OpenCompressorOf(kGeneric);
  EXPECT_EQ(embedded::CallSelector(compressor, kImageCodecRequestSettingsSelect, nullptr, nullptr, nullptr),
            paramErr);
  Host->CloseComponent(compressor);
  EXPECT_EQ(RequestSettings(nullptr, nullptr, nullptr, nullptr), paramErr);
  EXPECT_EQ(GetSettings(nullptr, nullptr), paramErr);
  EXPECT_EQ(SetSettings(nullptr, nullptr), paramErr);
  EXPECT_EQ(GetSettingsAsText(nullptr, nullptr), paramErr);
}

}  // namespace

}  // namespace vorel::component
