// Selectors of all 21 entries, from tables that are written down once more, and how a row is served.
#include "component/selector_dispatch.h"

#include <map>
#include <utility>

#include "component/decompressor.h"
#include "component/embedded/instances.h"
#include "component/entries.h"
#include "tests/component/component_fixture.h"

namespace vorel::component {

namespace {

constexpr int kFirstSelector = -0x8000;
constexpr int kLastSelector = 0x7FFF;
constexpr ComponentResult kRefused = static_cast<ComponentResult>(0x80008002);

// --- The tables ---

struct ExpectedRow {
  int selector;
  RowKind kind;
  u32 parameters;  // the host's word; 0 for rows without a function
};

struct ExpectedRange {
  int first;
  int last;
  RowKind others;  // rows of the range that are not listed
};

struct ExpectedTables {
  std::vector<ExpectedRange> ranges;
  std::vector<ExpectedRow> rows;
};

ExpectedTables DecompressorTables() {
  using enum RowKind;
  return {{{-8, -1, function}, {0, 60, delegated}, {0x200, 0x20F, delegated}},
          {{-8, function, 0xFF0},
           {-7, unsupported, 0},
           {-6, function, 0x3F0},
           {-5, unsupported, 0},
           {-4, function, 0xF0},
           {-3, function, 0x2F0},
           {-2, function, 0x3F0},
           {-1, function, 0x3F0},
           {0, function, 0x3F0},
           {8, function, 0x3FFF0},
           {40, function, 0x3FF0},
           {41, function, 0x3F0},
           {0x200, function, 0x3F0},
           {0x201, function, 0x3F0},
           {0x202, function, 0x3FF0},
           {0x203, function, 0x3F0},
           {0x204, function, 0x3BF0},
           {0x205, nothing, 0},
           {0x206, nothing, 0}}};
}

ExpectedTables CompressorTables() {
  using enum RowKind;
  return {
      {{-6, -1, function}, {0, 34, unsupported}, {0x200, 0x206, unsupported}},
      {{-6, function, 0x3F0},     {-5, unsupported, 0},   {-4, function, 0xF0},    {-3, function, 0x2F0},
       {-2, function, 0x3F0},     {-1, function, 0x3F0},  {0, function, 0x3F0},    {1, function, 0xFEFF0},
       {2, function, 0x3EFF0},    {3, function, 0x3F0},   {4, function, 0x3F0},    {7, function, 0x3F0},
       {10, function, 0x3FFFFF0}, {11, function, 0x3FF0}, {12, function, 0x3F0},   {13, function, 0x3F0},
       {17, function, 0x3FFF0},   {18, function, 0x3F0},  {20, function, 0xFFF0},  {21, function, 0xFFFFFF0},
       {22, function, 0xFEFF0},   {23, function, 0x3F0},  {24, function, 0xFFF0},  {26, function, 0x3F0},
       {27, function, 0x3F0},     {28, function, 0x3F0},  {29, function, 0xEFFF0}, {30, function, 0xFF0},
       {31, function, 0x3F0},     {32, function, 0x3FF0}, {33, function, 0x3FF0},  {34, function, 0x3F0}}};
}

ExpectedTables TranscoderTables() {
  using enum RowKind;
  return {{{-6, -1, function}, {0, 4, unsupported}},
          {{-6, function, 0x3F0},
           {-5, unsupported, 0},
           {-4, function, 0xF0},
           {-3, function, 0x2F0},
           {-2, function, 0x3F0},
           {-1, function, 0x3F0},
           {0, unsupported, 0},
           {1, function, 0xFFF0},
           {2, function, 0xFFF0},
           {3, function, 0x3F0},
           {4, function, 0xF0}}};
}

ExpectedTables TablesOf(std::string_view entry) {
  switch (entry[1]) {
    case 'd':
      return DecompressorTables();
    case 'e':
      return CompressorTables();
    default:
      return TranscoderTables();
  }
}

// Null where no range has the selector.
const ExpectedRow* Find(const ExpectedTables& tables, int selector) {
  static ExpectedRow other;
  for (const ExpectedRow& row : tables.rows) {
    if (row.selector == selector) return &row;
  }
  for (const ExpectedRange& range : tables.ranges) {
    if (selector < range.first || selector > range.last) continue;
    other = {selector, range.others, 0};
    return &other;
  }
  return nullptr;
}

TEST(SelectorTables, ThereAre21EntriesByTheirNames) {
  const char* names[] = {"Qd_", "Qd0", "Qd1", "Qd2", "Qd3", "Qd4", "Qd5", "Qd6", "Qe_", "Qe0", "Qe1",
                         "Qe2", "Qe3", "Qe4", "Qe5", "Qe6", "Qt2", "Qt3", "Qt4", "Qt5", "Qt6"};
  ASSERT_EQ(Entries().size(), std::size(names));
  for (const char* name : names) {
    int found = 0;
    for (const NamedEntry& entry : Entries()) found += std::string_view(entry.name) == name;
    EXPECT_EQ(found, 1) << name;
    EXPECT_NE(FindTables(name), nullptr) << name;
  }
  EXPECT_EQ(FindTables("Qt0"), nullptr);
}

TEST(SelectorTables, EverySelectorOfEveryEntryHasItsRow) {
  for (const NamedEntry& entry : Entries()) {
    const ExpectedTables expected = TablesOf(entry.name);
    const SelectorTables& tables = *FindTables(entry.name);
    for (int selector = kFirstSelector; selector <= kLastSelector; ++selector) {
      const SelectorRow* const row = FindRow(tables, static_cast<i16>(selector));
      const ExpectedRow* const wanted = Find(expected, selector);
      ASSERT_EQ(row == nullptr, wanted == nullptr) << entry.name << " " << selector;
      if (row == nullptr) continue;
      EXPECT_EQ(row->kind, wanted->kind) << entry.name << " " << selector;
      EXPECT_EQ(row->function != nullptr, wanted->kind == RowKind::function) << entry.name << " " << selector;
      EXPECT_EQ(row->parameters, wanted->parameters) << entry.name << " " << selector;
    }
  }
}

// --- Serving a row ---

struct Served {
  Handle storage;
  ComponentParameters* parameters;
  SelectorFunction function;
  ComponentInstance delegate;
  int calls;
};
Served served;

ComponentResult NoteFunctionCall(Handle storage, ComponentParameters* parameters, SelectorFunction function) {
  served = {storage, parameters, function, nullptr, served.calls + 1};
  return 71;
}

ComponentResult NoteDelegation(ComponentParameters* parameters, ComponentInstance delegate) {
  served = {nullptr, parameters, nullptr, delegate, served.calls + 1};
  return 72;
}

ComponentResult Anything(Decompressor* /* instance */) {
  return 73;
}

constexpr SelectorFunction AnyFunction = SelectorThunk<Anything>::Call;

// A host of two operations, which note what they are called with.
struct ServeSelectorTest : testing::Test {
  void SetUp() override {
    operations.CallWithStorage = NoteFunctionCall;
    operations.DelegateComponentCall = NoteDelegation;
    Host = &operations;
    served = {};
  }
  void TearDown() override { Host = nullptr; }

  ComponentResult Serve(int selector, ComponentInstance withDelegate) {
    parameters.what = static_cast<i16>(selector);
    return ServeSelector(tables, &parameters, storage, withDelegate);
  }

  HostOperations operations = {};
  ComponentParameters parameters = {};
  Ptr master = nullptr;
  Handle storage = &master;
  int somebody = 0;
  ComponentInstance delegate = reinterpret_cast<ComponentInstance>(&somebody);
  const SelectorRow negative[2] = {{RowKind::function, AnyFunction, 0xF0}, {RowKind::nothing, nullptr, 0}};
  const SelectorRow first[4] = {{RowKind::delegated, nullptr, 0},
                                {RowKind::unsupported, nullptr, 0},
                                {RowKind::function, AnyFunction, 0},
                                {RowKind::function, AnyFunction, 0x3F0}};
  const SelectorRow third[1] = {{RowKind::nothing, nullptr, 0}};
  SelectorTables tables = {negative, {first, {}, third}};
};

TEST_F(ServeSelectorTest, AFunctionGetsTheBlockAndTheStorage) {
  for (const int selector : {-2, 3}) {
    served = {};
    EXPECT_EQ(Serve(selector, delegate), 71);
    EXPECT_EQ(served.calls, 1);
    EXPECT_EQ(served.storage, storage);
    EXPECT_EQ(served.parameters, &parameters);
    EXPECT_EQ(served.function, AnyFunction);
  }
}

TEST_F(ServeSelectorTest, AFunctionWithoutAWordIsRefused) {
  EXPECT_EQ(Serve(2, delegate), kRefused);
  EXPECT_EQ(served.calls, 0);
}

TEST_F(ServeSelectorTest, UnsupportedIsRefusedAlthoughThereIsADelegate) {
  EXPECT_EQ(Serve(1, delegate), kRefused);
  EXPECT_EQ(served.calls, 0);
}

TEST_F(ServeSelectorTest, NothingIsAcceptedAndNobodyIsCalled) {
  EXPECT_EQ(Serve(-1, delegate), 0);
  EXPECT_EQ(Serve(0x200, delegate), 0);
  EXPECT_EQ(served.calls, 0);
}

TEST_F(ServeSelectorTest, TheDelegateGetsTheBlockItself) {
  for (const int selector : {0, 4, 0xFF, 0x100, 0x1FF, 0x201, 0x300, 0x7FFF, -3, -0x100, -0x8000}) {
    served = {};
    EXPECT_EQ(Serve(selector, delegate), 72) << selector;
    EXPECT_EQ(served.calls, 1);
    EXPECT_EQ(served.parameters, &parameters);
    EXPECT_EQ(served.delegate, delegate);
    EXPECT_EQ(Serve(selector, nullptr), kRefused) << selector;
    EXPECT_EQ(served.calls, 1);
  }
}

TEST_F(ServeSelectorTest, OwnRowsAreFunctionsAndNothing) {
  const std::map<int, bool> own = {{-3, false},   {-2, true},     {-1, true},       {0, false},
                                   {1, false},    {3, true},      {4, false},       {0x100, false},
                                   {0x200, true}, {0x201, false}, {-0x8000, false}, {0x7FFF, false}};
  for (const auto& [selector, expected] : own) {
    EXPECT_EQ(HasOwnRow(tables, static_cast<i16>(selector)), expected) << selector;
  }
}

// --- The components ---

struct DispatchTest : ComponentTest {
  void TearDown() override {
    Host = real;
    ComponentTest::TearDown();
  }

  // Lets a test replace operations of the host it started with.
  HostOperations& Replace() {
    real = Host;
    replaced = *Host;
    Host = &replaced;
    return replaced;
  }

  void SetUp() override {
    ComponentTest::SetUp();
    real = Host;
  }

  HostOperations replaced = {};
  const HostOperations* real = nullptr;
};

std::vector<std::pair<ComponentInstance, std::string>> OpenAll(OSType type) {
  std::vector<std::pair<ComponentInstance, std::string>> all;
  for (const embedded::ComponentListing& listing : embedded::FindComponents(type, 0, 0)) {
    ComponentInstance instance = nullptr;
    EXPECT_EQ(embedded::OpenComponent(listing.number, &instance), noErr) << listing.entry;
    all.emplace_back(instance, listing.entry);
  }
  return all;
}

struct Asked {
  ComponentInstance instance;
  i16 selector;
  u8 paramSize;
  int count;
};
Asked asked;

// A delegate that can do every selector that is a multiple of 3.
ComponentResult AnswerCanDo(ComponentInstance instance, ComponentParameters* parameters) {
  EXPECT_EQ(parameters->what, -3);
  EXPECT_EQ(parameters->flags, 0);
  asked = {instance, static_cast<i16>(parameters->params[0]), parameters->paramSize, asked.count + 1};
  return asked.selector % 3 == 0 ? 1 : 0;
}

TEST_F(DispatchTest, ADecompressorCanDoItsOwnRowsAndWhatItsDelegateCan) {
  const ExpectedTables expected = DecompressorTables();
  const auto all = OpenAll(kDecompressorType);
  ASSERT_EQ(all.size(), 8u);
  Replace().CallComponent = AnswerCanDo;
  for (const auto& [instance, entry] : all) {
    const auto* const storage = reinterpret_cast<const Decompressor*>(instance->storage);
    for (int selector = kFirstSelector; selector <= kLastSelector; ++selector) {
      asked = {};
      const ExpectedRow* const row = Find(expected, selector);
      const bool own = row != nullptr && (row->kind == RowKind::function || row->kind == RowKind::nothing);
      const ComponentResult answer = embedded::CallSelector(instance, kComponentCanDoSelect, selector);
      ASSERT_EQ(answer, own || selector % 3 == 0 ? 1 : 0) << entry << " " << selector;
      ASSERT_EQ(asked.count, own ? 0 : 1) << entry << " " << selector;
      if (own) continue;
      ASSERT_EQ(asked.instance, storage->delegate);
      ASSERT_EQ(asked.selector, selector);
      ASSERT_EQ(asked.paramSize, sizeof(Slot));
    }
  }
  Host = real;
  for (const auto& [instance, entry] : all) Host->CloseComponent(instance);
}

TEST_F(DispatchTest, ADecompressorWithoutADelegateCanDoItsOwnRowsAlone) {
  ComponentParameters parameters = {0, sizeof(Slot), kComponentCanDoSelect, {0x205}};
  EXPECT_EQ(Qd_(&parameters, nullptr), 1);
  parameters.params[0] = kImageCodecPreDecompressSelect;
  EXPECT_EQ(Qd_(&parameters, nullptr), 0);
  parameters.what = kImageCodecPreDecompressSelect;
  EXPECT_EQ(Qd_(&parameters, nullptr), kRefused);
}

TEST_F(DispatchTest, CompressorsAndTranscodersCanDoTheirFunctions) {
  for (const OSType type : {kCompressorType, kTranscoderType}) {
    for (const auto& [instance, entry] : OpenAll(type)) {
      const ExpectedTables expected = TablesOf(entry);
      for (int selector = kFirstSelector; selector <= kLastSelector; ++selector) {
        const ExpectedRow* const row = Find(expected, selector);
        const ComponentResult wanted = row != nullptr && row->kind == RowKind::function ? 1 : 0;
        ASSERT_EQ(embedded::CallSelector(instance, kComponentCanDoSelect, selector), wanted)
            << entry << " " << selector;
      }
      Host->CloseComponent(instance);
    }
  }
}

TEST_F(DispatchTest, BitsAboveAShortArgumentDontCount) {
  const ComponentInstance decompressor = Open(kDecompressorType, kGenericSubtype);
  const ComponentInstance compressor = Open(kCompressorType, kGenericSubtype);
  const Slot rubbish = static_cast<Slot>(0x7EDCBA98) << 16;
  const Slot queueStarting[] = {rubbish | 0x205};
  const Slot target[] = {rubbish | 0xFFFA};  // -6
  EXPECT_EQ(embedded::CallWithSlots(decompressor, kComponentCanDoSelect, queueStarting), 1);
  EXPECT_EQ(embedded::CallWithSlots(compressor, kComponentCanDoSelect, queueStarting), 0);
  EXPECT_EQ(embedded::CallWithSlots(compressor, kComponentCanDoSelect, target), 1);
  Host->CloseComponent(compressor);
  Host->CloseComponent(decompressor);
}

TEST_F(DispatchTest, DecompressorsDelegateTheWholeCall) {
  const auto all = OpenAll(kDecompressorType);
  Replace().DelegateComponentCall = NoteDelegation;
  for (const auto& [instance, entry] : all) {
    const auto* const storage = reinterpret_cast<const Decompressor*>(instance->storage);
    for (const int selector : {1, 5, 6, 7, 60, 61, 0x100, 0x207, 0x20F, 0x210, 0x300, 0x7FFF, -9, -0x8000}) {
      served = {};
      ComponentParameters parameters = {0, 2, static_cast<i16>(selector), {0x12345678}};
      EXPECT_EQ(real->CallComponent(instance, &parameters), 72) << entry << " " << selector;
      EXPECT_EQ(served.parameters, &parameters);
      EXPECT_EQ(served.delegate, storage->delegate);
      EXPECT_EQ(parameters.paramSize, 2);
      EXPECT_EQ(parameters.params[0], 0x12345678);
    }
  }
  Host = real;
  for (const auto& [instance, entry] : all) Host->CloseComponent(instance);
}

TEST_F(DispatchTest, OthersRefuseWhatTheirTablesDontHave) {
  for (const OSType type : {kCompressorType, kTranscoderType}) {
    for (const auto& [instance, entry] : OpenAll(type)) {
      for (const int selector : {-9, -8, -7, -5, 5, 35, 0x100, 0x200, 0x206, 0x207, 0x300, -0x8000}) {
        EXPECT_EQ(embedded::CallSelector(instance, static_cast<i16>(selector)), kRefused)
            << entry << " " << selector;
      }
      Host->CloseComponent(instance);
    }
  }
}

TEST_F(DispatchTest, StartAndStopOfTheQueueNeedNoStorage) {
  for (const int selector : {0x205, 0x206}) {
    ComponentParameters parameters = {0, 0, static_cast<i16>(selector), {0}};
    EXPECT_EQ(Qd3(&parameters, nullptr), 0);
  }
}

TEST_F(DispatchTest, CompressorsAnswerWhatTheyHaveNoUseFor) {
  const ComponentInstance instance = Open(kCompressorType, kGenericSubtype);
  EXPECT_EQ(embedded::CallSelector(instance, kImageCodecTrimImageSelect), -8962);
  EXPECT_EQ(embedded::CallSelector(instance, kImageCodecBusySelect, 0), 0);
  for (const int selector : {17, 18, 20, 21, 22, 23, 24}) {
    EXPECT_EQ(embedded::CallSelector(instance, static_cast<i16>(selector)), kRefused) << selector;
  }
  Host->CloseComponent(instance);
  ComponentParameters busy = {0, sizeof(Slot), kImageCodecBusySelect, {0}};
  EXPECT_EQ(Qe_(&busy, nullptr), -1);
}

TEST_F(DispatchTest, CloseOfAnInstanceThatIsNotOpenDoesNothing) {
  for (const NamedEntry& entry : Entries()) {
    ComponentParameters parameters = {0, sizeof(Slot), kComponentCloseSelect, {0}};
    EXPECT_EQ(entry.entry(&parameters, nullptr), 0) << entry.name;
  }
}

TEST_F(DispatchTest, OpenWithoutMemoryFailsAndKeepsNothing) {
  for (const embedded::ComponentListing& listing : embedded::FindComponents(0, 0, 0)) {
    ComponentInstance instance = nullptr;
    OSErr error = memFullErr;
    int failures = 0;
    for (i32 number = 1; error != noErr && number < 100; ++number) {
      embedded::FailAllocation(number);
      error = embedded::OpenComponent(listing.number, &instance);
      if (error == noErr) break;
      ++failures;
      EXPECT_EQ(error, -108) << listing.entry << " " << number;
      EXPECT_EQ(embedded::CountsInUse(), embedded::HostCounts{}) << listing.entry << " " << number;
    }
    embedded::FailAllocation(0);
    ASSERT_EQ(error, noErr) << listing.entry;
    EXPECT_GE(failures, listing.type == kDecompressorType ? 2 : 1) << listing.entry;
    Host->CloseComponent(instance);
  }
}

}  // namespace

}  // namespace vorel::component
