#include "component/resources/resource_tables.h"

#include "component/component_table.h"
#include "component/resources/resource_bytes.h"

namespace vorel::component {

// 2.6.7 in binary-coded decimals, final.
void AppendVersionResource(std::vector<Resource>& resources) {
  Bytes bytes;
  Put8(bytes, kComponentVersion >> 8);
  Put8(bytes, kComponentVersion & 0xFF);
  Put8(bytes, 0x80);  // stage: final
  Put8(bytes, 0);     // revision before a release
  Put16(bytes, 0);    // region
  PutString(bytes, "2.6.7");
  PutString(bytes, "VorelVideo 2.6.7");
  resources.push_back({.type = FourCharacterCode("vers"), .id = kVersionId, .bytes = bytes});
}

std::vector<Resource> AllResources() {
  std::vector<Resource> resources;
  AppendComponentResources(resources);
  AppendTextResources(resources);
  AppendPictureResources(resources);
  AppendDialogResources(resources);
  AppendVersionResource(resources);
  return resources;
}

}  // namespace vorel::component
