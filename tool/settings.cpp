// vorel settings: what a compressor is set to, as text; set by words or in its dialog, and kept in a file.
#include <cstdio>
#include <iostream>

#include "component/component_table.h"
#include "component/embedded/dialogs.h"
#include "component/host_errors.h"
#include "component/selectors.h"
#include "picture_io/clip_format.h"
#include "tool/commands.h"
#include "tool/component_host.h"
#include "tool/frame_format.h"
#include "tool/settings_record.h"
#include "tool/targets.h"

namespace vorel::tool {

namespace {

namespace embedded = component::embedded;
using component::Host;

void Check(component::ComponentResult result, const char* what) {
  if (result != component::noErr) throw Problem{std::string(what) + ": " + ResultText(result), "", ""};
}

OwnedHandle HandleOf(const std::vector<u8>& bytes) {
  OwnedHandle handle(Host->NewHandleClear(static_cast<i32>(bytes.size())));
  if (handle == nullptr) throw Problem{"there is not enough memory", "", ""};
  std::copy(bytes.begin(), bytes.end(), *handle);
  return handle;
}

std::vector<u8> BytesOf(const OwnedHandle& handle) {
  return {*handle, *handle + Host->GetHandleSize(handle.get())};
}

// A dialog on a terminal: every item that can be clicked has its number in front.
void ShowDialog(const embedded::Dialog& dialog) {
  std::fprintf(stderr, "\n%s\n", embedded::Utf8FromMacRoman(dialog.title).c_str());
  for (std::size_t i = 0; i < dialog.items.size(); ++i) {
    const embedded::DialogItem& item = dialog.items[i];
    const std::string text = embedded::ShownText(item);
    if (item.kind == embedded::ItemKind::radio) {
      std::fprintf(stderr, "  %2zu (%c) %s\n", i + 1, item.value != 0 ? '*' : ' ', text.c_str());
    } else if (item.kind == embedded::ItemKind::control) {
      std::fprintf(stderr, " %s\n", text.c_str());
    }
  }
  for (std::size_t i = 0; i < dialog.items.size(); ++i) {
    const embedded::DialogItem& item = dialog.items[i];
    if (item.kind == embedded::ItemKind::button)
      std::fprintf(stderr, "  %2zu [%s]", i + 1, embedded::ShownText(item).c_str());
  }
  std::fprintf(stderr, "\nnumber: ");
}

// The item that a person names; Cancel at the end of input.
i16 AskForItem(embedded::Dialog& dialog) {
  std::string line;
  for (;;) {
    ShowDialog(dialog);
    if (!std::getline(std::cin, line)) return dialog.cancelItem;
    u32 number = 0;
    const u32 most = static_cast<u32>(dialog.items.size());
    if (picture_io::ReadNumber(line, most, number) && number > 0 && dialog.items[number - 1].enabled)
      return static_cast<i16>(number);
    std::fprintf(stderr, "\"%s\" is not the number of a button\n", line.c_str());
  }
}

void RunDialog(component::ComponentInstance compressor, u32 subtype) {
  // The dialog is chosen by the compression type that was last asked for.
  Host->SetGestaltValue(FourCharacterCode("Form"), static_cast<i32>(subtype));
  embedded::SetDialogUser(AskForItem);
  const OwnedHandle record = HandleOf({});
  Check(embedded::CallSelector(compressor, component::kImageCodecGetSettingsSelect, record.get()),
        "cannot read the settings");
  const component::ComponentResult result = embedded::CallSelector(
      compressor, component::kImageCodecRequestSettingsSelect, record.get(), nullptr, nullptr);
  if (result == component::userCanceledErr) return;
  Check(result, "the dialog failed");
  Check(embedded::CallSelector(compressor, component::kImageCodecSetSettingsSelect, record.get()),
        "cannot set the settings");
}

void SetValues(component::ComponentInstance compressor, const SettingsOptions& options) {
  if (!options.record.empty()) {
    const OwnedHandle record = HandleOf(ReadSettingsRecord(options.record));
    Check(embedded::CallSelector(compressor, component::kImageCodecSetSettingsSelect, record.get()),
          "the compressor does not take the settings");
  }
  if (options.values.empty()) return;
  const OwnedHandle current = HandleOf({});
  Check(embedded::CallSelector(compressor, component::kImageCodecGetSettingsSelect, current.get()),
        "cannot read the settings");
  component::Settings settings = SettingsOfRecord(BytesOf(current));
  for (const std::string& text : options.values) SetByText(settings, text);
  const OwnedHandle record = HandleOf(RecordOfSettings(settings));
  Check(embedded::CallSelector(compressor, component::kImageCodecSetSettingsSelect, record.get()),
        "the compressor does not take the settings");
}

std::string TextOf(component::ComponentInstance compressor) {
  component::Handle text = nullptr;
  Check(embedded::CallSelector(compressor, component::kImageCodecGetSettingsAsTextSelect, &text),
        "cannot read the settings");
  const OwnedHandle owned(text);
  const std::vector<u8> bytes = BytesOf(owned);
  std::string lines = embedded::Utf8FromMacRoman({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  for (char& letter : lines) {
    if (letter == '\r') letter = '\n';
  }
  return lines;
}

void WriteRecord(component::ComponentInstance compressor, const SettingsOptions& options) {
  const OwnedHandle record = HandleOf({});
  Check(embedded::CallSelector(compressor, component::kImageCodecGetSettingsSelect, record.get()),
        "cannot read the settings");
  const std::vector<u8> bytes = BytesOf(record);
  PictureTarget target;
  OpenPictureTarget(target, options.output, options.force);
  WriterOf(target)(bytes.data(), bytes.size());
  FinishPictureTarget(target);
}

}  // namespace

bool RunSettings(const SettingsOptions& options, Console& console) {
  VorelFamily family = VOREL_GENERIC;
  if (!ReadCodec(options.codec, family))
    throw UsageError{"--codec: \"" + options.codec + "\" is not one of " + CodecNames()};
  const HostSession host;
  try {
    const component::ComponentRow& row = component::CompressorOfFamily(family);
    const OwnedInstance compressor =
        OpenInstance(component::kCompressorType, row.subtype, component::kMaker, "");
    SetValues(compressor.get(), options);
    if (options.dialog) RunDialog(compressor.get(), row.subtype);
    if (!options.output.empty()) WriteRecord(compressor.get(), options);
    if (options.output != "-") std::fputs(TextOf(compressor.get()).c_str(), stdout);
    return true;
  } catch (const Problem& problem) {
    Report(console, problem);
    return false;
  }
}

}  // namespace vorel::tool
