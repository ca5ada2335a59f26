// Components as the tool opens them: through the host that lives in this process.
#pragma once
#include <memory>
#include <string>

#include "component/embedded/embedded_host.h"
#include "container/sample_description.h"

namespace vorel::tool {

// Runs the host for as long as it lives. Commands that open components have one around all of their work.
class HostSession {
 public:
  HostSession();
  ~HostSession();
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;
};

struct CloseInstance {
  void operator()(component::HostInstance* instance) const;
};
using OwnedInstance = std::unique_ptr<component::HostInstance, CloseInstance>;

struct DisposeDescription {
  void operator()(component::ImageDescription** description) const;
};
using OwnedDescription = std::unique_ptr<component::ImageDescription*, DisposeDescription>;

struct DisposeBlock {
  void operator()(component::Ptr* handle) const;
};
using OwnedHandle = std::unique_ptr<component::Ptr, DisposeBlock>;

// Opens a component. Throws Problem, which names `place`, if there is none or it can't be opened.
OwnedInstance OpenInstance(u32 type, u32 subtype, u32 manufacturer, const std::string& place);

// A movie's description for components, and back. Throws Problem without memory.
OwnedDescription DescriptionForHost(const container::SampleDescription& description);
container::SampleDescription DescriptionOfHost(component::ImageDescriptionHandle description);

// Bytes that the host and all open components keep.
u64 ComponentBytes();

// What a component's result means: "error -8972 (the frame and the pixel format do not go together)".
std::string ResultText(component::ComponentResult result);

}  // namespace vorel::tool
