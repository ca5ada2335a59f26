#include "tool/component_host.h"

#include <algorithm>
#include <cstring>

#include "base/problem.h"
#include "component/component_table.h"
#include "component/host_errors.h"
#include "component/resources/embedded_fork.h"

namespace vorel::tool {

namespace {

namespace embedded = component::embedded;
using component::Host;

constexpr const char* kNoMemory = "there is not enough memory";

struct ResultRow {
  component::ComponentResult result;
  const char* text;
};

constexpr ResultRow kResults[] = {
    {component::paramErr, "an argument is missing or wrong"},
    {component::readErr, "not a frame of this codec"},
    {component::memFullErr, "not enough memory, or the frame is larger than frames of this size may be"},
    {component::codecExtensionNotFoundErr, "the format tag is missing"},
    {component::internalQuickTimeError, "the rows are too short"},
    {component::codecBadDataErr, "the frame decoded again differs from its picture"},
    {component::codecConditionErr, "frame and pixel format do not go together, or the frame is damaged"},
    {component::codecNoMemoryPleaseWaitErr, "all row stores are in use"},
};

}  // namespace

HostSession::HostSession() {
  embedded::HostSettings settings;
  settings.resourceFork = {component::kResourceFork, component::kResourceForkBytes};
  settings.entries = component::Entries();
  settings.baseThreads = 0;  // the tool has threads of its own
  StartEmbeddedHost(settings);
}

HostSession::~HostSession() {
  embedded::StopEmbeddedHost();
}

void CloseInstance::operator()(component::HostInstance* instance) const {
  Host->CloseComponent(instance);
}

void DisposeDescription::operator()(component::ImageDescription** description) const {
  Host->DisposeHandle(reinterpret_cast<component::Handle>(description));
}

void DisposeBlock::operator()(component::Ptr* handle) const {
  Host->DisposeHandle(handle);
}

OwnedInstance OpenInstance(u32 type, u32 subtype, u32 manufacturer, const std::string& place) {
  const auto found = embedded::FindComponents(type, subtype, manufacturer);
  if (found.empty()) throw Problem{"no component for " + container::CodeText(subtype), place, ""};
  component::ComponentInstance instance = nullptr;
  const component::OSErr error = embedded::OpenComponent(found[0].number, &instance);
  if (error != component::noErr)
    throw Problem{"cannot open \"" + found[0].name + "\": " + ResultText(error), place, ""};
  return OwnedInstance(instance);
}

OwnedDescription DescriptionForHost(const container::SampleDescription& description) {
  OwnedDescription made(embedded::MakeImageDescription(description.cType, static_cast<i16>(description.width),
                                                       static_cast<i16>(description.height)));
  if (made == nullptr) throw Problem{kNoMemory, "", ""};
  component::ImageDescription& fields = **made;
  fields.version = static_cast<i16>(description.version);
  fields.revisionLevel = static_cast<i16>(description.revisionLevel);
  fields.vendor = description.vendor;
  fields.temporalQuality = description.temporalQuality;
  fields.spatialQuality = description.spatialQuality;
  fields.hRes = static_cast<component::Fixed>(description.hRes);
  fields.vRes = static_cast<component::Fixed>(description.vRes);
  fields.dataSize = static_cast<i32>(description.dataSize);
  fields.frameCount = static_cast<i16>(description.frameCount);
  const std::size_t length = std::min(description.name.size(), sizeof fields.name - 1);
  fields.name[0] = static_cast<u8>(length);
  std::memcpy(fields.name + 1, description.name.data(), length);
  fields.depth = static_cast<i16>(description.depth);
  fields.clutID = description.clutID;
  for (const container::Extension& extension : description.extensions) {
    const OwnedHandle data(Host->NewHandleClear(static_cast<i32>(extension.bytes.size())));
    if (data == nullptr) throw Problem{kNoMemory, "", ""};
    std::copy(extension.bytes.begin(), extension.bytes.end(), *data);
    if (Host->AddImageDescriptionExtension(made.get(), data.get(), static_cast<i32>(extension.type)) !=
        component::noErr) {
      throw Problem{kNoMemory, "", ""};
    }
  }
  return made;
}

container::SampleDescription DescriptionOfHost(component::ImageDescriptionHandle description) {
  const component::ImageDescription& fields = **description;
  container::SampleDescription made;
  made.cType = fields.cType;
  made.version = static_cast<u16>(fields.version);
  made.revisionLevel = static_cast<u16>(fields.revisionLevel);
  made.vendor = fields.vendor;
  made.temporalQuality = fields.temporalQuality;
  made.spatialQuality = fields.spatialQuality;
  made.width = static_cast<u16>(fields.width);
  made.height = static_cast<u16>(fields.height);
  made.hRes = static_cast<u32>(fields.hRes);
  made.vRes = static_cast<u32>(fields.vRes);
  made.dataSize = static_cast<u32>(fields.dataSize);
  made.frameCount = static_cast<u16>(fields.frameCount);
  made.name.assign(reinterpret_cast<const char*>(fields.name + 1),
                   std::min<std::size_t>(fields.name[0], sizeof fields.name - 1));
  made.depth = static_cast<u16>(fields.depth);
  made.clutID = fields.clutID;
  const std::vector<u8> bytes = embedded::ExtensionBytes(description);
  for (std::size_t at = 0; at + 8 <= bytes.size();) {
    const std::size_t size = LoadBig32(bytes.data() + at);
    const u32 type = LoadBig32(bytes.data() + at + 4);
    if (size < 8 || size > bytes.size() - at) break;
    made.extensions.push_back({type, {bytes.data() + at + 8, bytes.data() + at + size}});
    at += size;
  }
  return made;
}

u64 ComponentBytes() {
  return embedded::BytesInUse();
}

std::string ResultText(component::ComponentResult result) {
  std::string text = "error " + std::to_string(result);
  for (const ResultRow& row : kResults) {
    if (row.result == result) text += std::string(" (") + row.text + ")";
  }
  return text;
}

}  // namespace vorel::tool
