// Loading the library does no work: the host is not there yet, or not to be called from here.
#include <windows.h>

namespace vorel::component::windows {

HINSTANCE ownModule = nullptr;

}  // namespace vorel::component::windows

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD /* reason */, LPVOID /* reserved */) {
  vorel::component::windows::ownModule = module;
  return TRUE;
}
