// All resources of the components, as bytes. The build puts them into a fork; a host without a file takes them
// from here.
#pragma once
#include "component/resources/resource_fork.h"

namespace vorel::component {

/// Every resource, those of one type together.
std::vector<Resource> AllResources();

// The parts of which the list is made. Each appends its own.
void AppendComponentResources(std::vector<Resource>& resources);  // what the host finds components by
void AppendTextResources(std::vector<Resource>& resources);       // settings text, names of frame formats
void AppendPictureResources(std::vector<Resource>& resources);    // icons
void AppendDialogResources(std::vector<Resource>& resources);     // settings dialogs
void AppendVersionResource(std::vector<Resource>& resources);

}  // namespace vorel::component
