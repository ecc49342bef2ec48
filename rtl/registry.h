// The framework's registry object, TRegistry, over the Win32 registry API: a root key, at
// most one open key, and typed reads and writes of the open key's values. Windows build only.
//
// Key paths follow the framework: one that starts with '\' is taken from the root key, any
// other from the open key (from the root key while none is open). With "\Software" open,
// "NoxTests" and "\Software\NoxTests" name the same key. A final '\' is ignored.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "rtl/classes.h"
#include "rtl/handles.h"
#include "rtl/sysutils.h"

namespace rtl {

namespace close {
inline void RegKey(HKEY h) { ::RegCloseKey(h); }
}  // namespace close
// An opened registry key; the predefined roots (HKEY_CURRENT_USER...) are never owned.
using unique_hkey = unique_any<HKEY, &close::RegKey>;

// A value that is missing or of another type than asked for, or a write the system refused.
class ERegistryException : public Exception {
 public:
  using Exception::Exception;
};

class TRegistry : public TObject {
 public:
  // `access` is what OpenKey asks for; its KEY_WOW64_32KEY / KEY_WOW64_64KEY bits also
  // choose the view for read-only opens and KeyExists.
  explicit TRegistry(REGSAM access = KEY_ALL_ACCESS) : Access(access) {}
  TRegistry(const TRegistry&) = delete;
  TRegistry& operator=(const TRegistry&) = delete;

  REGSAM Access;

  HKEY RootKey() const { return root_; }
  // Closes the open key first: its path meant something under the old root only.
  void SetRootKey(HKEY root);
  // The open key, or null.
  HKEY CurrentKey() const { return current_.get(); }
  // The open key's path below the root, without leading or final '\'; "" while none is open.
  const std::u16string& CurrentPath() const { return currentPath_; }

  // Opens `key` with Access, creating it (and missing parents) when canCreate, and makes it
  // the open key. False, with the open key kept, when it cannot be opened.
  bool OpenKey(std::u16string_view key, bool canCreate);
  // Opens an existing key for reading only, as far as the system grants: KEY_READ, or just
  // the right to query values.
  bool OpenKeyReadOnly(std::u16string_view key);
  void CloseKey();

  // Whether the key exists; one the caller may not read exists too. The open key stays.
  bool KeyExists(std::u16string_view key) const;
  // Removes the key with every key below it.
  bool DeleteKey(std::u16string_view key);

  // Values are those of the open key: while none is open, none exists and writes raise.
  bool ValueExists(std::u16string_view name) const;
  bool DeleteValue(std::u16string_view name);
  // A REG_SZ or REG_EXPAND_SZ value (not expanded) up to its first null; "" for a missing
  // value. Raises ERegistryException for a value of another type.
  std::u16string ReadString(std::u16string_view name) const;
  // Writes REG_SZ; raises ERegistryException when the system refuses.
  void WriteString(std::u16string_view name, std::u16string_view value);
  // A REG_DWORD value; raises ERegistryException when it is missing or of another type.
  int ReadInteger(std::u16string_view name) const;
  void WriteInteger(std::u16string_view name, int value);
  // ReadInteger != 0; WriteBool writes 1 or 0 as REG_DWORD.
  bool ReadBool(std::u16string_view name) const;
  void WriteBool(std::u16string_view name, bool value);

 private:
  struct TKeyPath {
    HKEY base;            // the root or the open key
    std::u16string sub;   // below `base`
    std::u16string full;  // below the root
  };
  TKeyPath Resolve(std::u16string_view key) const;
  bool Open(std::u16string_view key, REGSAM access, bool canCreate);

  HKEY root_ = HKEY_CURRENT_USER;
  unique_hkey current_;
  std::u16string currentPath_;
};

}  // namespace rtl
