#include "component/windows/quicktime_search.h"

#include <cstring>
#include <string_view>

namespace vorel::component::windows {

namespace {

constexpr std::string_view kLibraryName = "QuickTime.qts";
constexpr std::size_t kFolderRoom = MAX_PATH - kLibraryName.size();  // with the end 0

// The key in which the platform's installer keeps its folders; in a 32-bit process that of the 32-bit view.
constexpr const char* kInstallerKey = "SOFTWARE\\Apple Computer, Inc.\\QuickTime";

bool Append(PathText& path, std::string_view text, std::size_t room) {
  if (path.length + text.size() + 1 > room) return false;
  std::memcpy(path.text.data() + path.length, text.data(), text.size());
  path.length += text.size();
  path.text[path.length] = 0;
  return true;
}

bool SetText(PathText& path, std::string_view text) {
  path.length = 0;
  path.text[0] = 0;
  return Append(path, text, kFolderRoom);
}

bool EndWithSeparator(PathText& folder) {
  if (folder.length == 0) return false;
  const char last = folder.text[folder.length - 1];
  return last == '\\' || last == '/' || Append(folder, "\\", kFolderRoom);
}

bool IsFolder(const PathText& folder) {
  const DWORD attributes = GetFileAttributesA(folder.text.data());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool FolderOfLoadedLibrary(PathText& folder) {
  constexpr DWORD kRoom = 4096;
  const HMODULE library = GetModuleHandleA(kLibraryName.data());
  if (library == nullptr) return false;
  char name[kRoom];
  const DWORD length = GetModuleFileNameA(library, name, kRoom);
  if (length <= kLibraryName.size() || length >= kRoom) return false;
  return SetText(folder, {name, length - kLibraryName.size()});
}

// A value of the installer's key. It need not end in 0 there.
bool FolderOfValue(const char* value, PathText& folder) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, kInstallerKey, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
    return false;
  char text[MAX_PATH + 1] = {};
  DWORD type = REG_NONE;
  DWORD size = MAX_PATH;
  const LSTATUS status = RegQueryValueExA(key, value, nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
  RegCloseKey(key);
  if (status != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return false;
  return SetText(folder, text) && EndWithSeparator(folder);
}

bool SystemFolder(PathText& folder) {
  char text[MAX_PATH];
  const UINT length = GetSystemDirectoryA(text, MAX_PATH);
  return length != 0 && length < MAX_PATH && SetText(folder, {text, length}) && EndWithSeparator(folder);
}

}  // namespace

bool FindQuickTimeFolder(PathText& folder) {
  const bool found = (FolderOfLoadedLibrary(folder) && folder.length != 0) ||
                     (FolderOfValue("QTSysDir", folder) && IsFolder(folder)) ||
                     (FolderOfValue("QuickTime.qts folder", folder) && IsFolder(folder)) ||
                     (SystemFolder(folder) && IsFolder(folder));
  return found && EndWithSeparator(folder);
}

// Before the platform's version 7 its library was in the system folder, and extensions in a folder within.
bool FindExtensionsFolder(PathText& folder) {
  if (FolderOfValue("QTExtDir", folder)) return true;
  if (!FindQuickTimeFolder(folder)) return false;
  PathText system;
  if (!SystemFolder(system) || std::strcmp(system.text.data(), folder.text.data()) != 0) return true;
  return Append(folder, "QuickTime\\", kFolderRoom);
}

HMODULE LoadQuickTime() {
  PathText path;
  if (FindQuickTimeFolder(path) && Append(path, kLibraryName, MAX_PATH)) {
    const HMODULE library = LoadLibraryA(path.text.data());
    if (library != nullptr) return library;
  }
  if (!FindExtensionsFolder(path) || !Append(path, kLibraryName, MAX_PATH)) return nullptr;
  return LoadLibraryA(path.text.data());
}

}  // namespace vorel::component::windows
