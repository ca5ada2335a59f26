// Start and end of the host.
#include "component/embedded/embedded_host.h"

#include "base/problem.h"
#include "component/embedded/base_queue.h"
#include "component/embedded/dialog_model.h"
#include "component/embedded/instances.h"
#include "component/embedded/memory.h"
#include "component/embedded/operations.h"
#include "component/embedded/pixel_formats.h"
#include "component/embedded/process_values.h"
#include "component/embedded/resource_files.h"
#include "component/embedded/resource_source.h"

namespace vorel::component::embedded {

namespace {

constexpr HostOperations kOperations = {
#define VOREL_HOST_ENTRY(NAME, SELECTOR, RESULT, PARAMETERS) .NAME = NAME,
    VOREL_HOST_SERVICES(VOREL_HOST_ENTRY) VOREL_HOST_QUESTIONS(VOREL_HOST_ENTRY)
#undef VOREL_HOST_ENTRY
};

void ForgetEverything() {
  StopBaseThreads();
  ForgetDialogs();
  ForgetResourceFiles();
  ForgetInstances();
  ForgetComponents();
  ForgetResources();
  ForgetPixelFormats();
  ForgetProcessValues();
  FreeAllMemory();
}

}  // namespace

void StartEmbeddedHost(const HostSettings& settings) {
  if (Host != nullptr)
    throw Problem{"a host runs already", "component layer", "stop it before another one is started"};
  try {
    TakeResources(settings.resourceFork);
    RegisterComponents(settings.entries);
  } catch (const Problem&) {
    ForgetEverything();
    throw;
  }
  TakeProcessValues(settings);
  SetBaseThreads(settings.baseThreads);
  Host = &kOperations;
}

HostCounts StopEmbeddedHost() {
  if (Host != &kOperations) return {};
  const HostCounts left = CountsInUse();
  Host = nullptr;
  ForgetEverything();
  return left;
}

HostCounts CountsInUse() {
  HostCounts counts;
  CountMemory(counts);
  counts.instances = InstancesInUse();
  counts.resourceFiles = ResourceFilesInUse();
  counts.dialogs = DialogsInUse();
  return counts;
}

}  // namespace vorel::component::embedded
