// Says what components see of this program: its last 11 characters, and the versions of its resource.
#include <cstdio>

#include "component/startup.h"

int main() {
  std::printf("%d %d\n", vorel::component::HostIsAfterEffects(), vorel::component::HostIsOldAfterEffects());
  return 0;
}
