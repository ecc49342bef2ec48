// TRegistry (rtl/registry.h) over RegOpenKeyExW, RegCreateKeyExW, RegQueryValueExW and
// RegSetValueExW.
#include "rtl/registry.h"
#include "rtl/wide.h"

#include <algorithm>
#include <utility>

namespace rtl {

namespace {

constexpr REGSAM ViewBits = KEY_WOW64_32KEY | KEY_WOW64_64KEY;

[[noreturn]] void Fail(std::u16string_view what, std::u16string_view name) {
  throw ERegistryException(std::u16string(what) + u" for '" + std::u16string(name) + u"'");
}

}  // namespace

void TRegistry::SetRootKey(HKEY root) {
  CloseKey();
  root_ = root;
}

TRegistry::TKeyPath TRegistry::Resolve(std::u16string_view key) const {
  const bool fromRoot = key.starts_with(u'\\') || !current_;
  while (key.starts_with(u'\\')) key.remove_prefix(1);
  while (key.ends_with(u'\\')) key.remove_suffix(1);
  TKeyPath p{fromRoot ? root_ : current_.get(), std::u16string(key), std::u16string(key)};
  if (!fromRoot && !currentPath_.empty())
    p.full = key.empty() ? currentPath_ : currentPath_ + u'\\' + p.sub;
  return p;
}

bool TRegistry::Open(std::u16string_view key, REGSAM access, bool canCreate) {
  TKeyPath p = Resolve(key);
  HKEY h = nullptr;
  const LONG rc = canCreate ? RegCreateKeyExW(p.base, W(p.sub), 0, nullptr,
                                              REG_OPTION_NON_VOLATILE, access, nullptr, &h,
                                              nullptr)
                            : RegOpenKeyExW(p.base, W(p.sub), 0, access, &h);
  if (rc != ERROR_SUCCESS) return false;
  // The base may be the open key itself: it is given up only now that the new one is open.
  current_.reset(h);
  currentPath_ = std::move(p.full);
  return true;
}

bool TRegistry::OpenKey(std::u16string_view key, bool canCreate) {
  return Open(key, Access, canCreate);
}

bool TRegistry::OpenKeyReadOnly(std::u16string_view key) {
  const REGSAM view = Access & ViewBits;
  return Open(key, KEY_READ | view, false) || Open(key, KEY_QUERY_VALUE | view, false);
}

void TRegistry::CloseKey() {
  current_.reset();
  currentPath_.clear();
}

bool TRegistry::KeyExists(std::u16string_view key) const {
  const TKeyPath p = Resolve(key);
  HKEY h = nullptr;
  const LONG rc = RegOpenKeyExW(p.base, W(p.sub), 0, KEY_QUERY_VALUE | (Access & ViewBits), &h);
  const unique_hkey owner(rc == ERROR_SUCCESS ? h : nullptr);
  return rc == ERROR_SUCCESS || rc == ERROR_ACCESS_DENIED;
}

bool TRegistry::DeleteKey(std::u16string_view key) {
  const TKeyPath p = Resolve(key);
  // An empty path would make RegDeleteTreeW empty the base key instead of removing a key.
  if (p.sub.empty()) return false;
  return RegDeleteTreeW(p.base, W(p.sub)) == ERROR_SUCCESS;
}

bool TRegistry::ValueExists(std::u16string_view name) const {
  if (!current_) return false;
  const std::u16string n(name);
  return RegQueryValueExW(current_.get(), W(n), nullptr, nullptr, nullptr, nullptr) ==
         ERROR_SUCCESS;
}

bool TRegistry::DeleteValue(std::u16string_view name) {
  if (!current_) return false;
  const std::u16string n(name);
  return RegDeleteValueW(current_.get(), W(n)) == ERROR_SUCCESS;
}

std::u16string TRegistry::ReadString(std::u16string_view name) const {
  if (!current_) return {};
  const std::u16string n(name);
  DWORD type = 0, size = 0;
  if (RegQueryValueExW(current_.get(), W(n), nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
    return {};
  std::u16string buffer;
  for (;;) {
    if (type != REG_SZ && type != REG_EXPAND_SZ) Fail(u"Invalid data type", n);
    // One character more than asked for: the stored data need not end in a null.
    buffer.assign(size / sizeof(char16_t) + 1, u'\0');
    DWORD bytes = static_cast<DWORD>(buffer.size() * sizeof(char16_t));
    const LONG rc = RegQueryValueExW(current_.get(), W(n), nullptr, &type,
                                     reinterpret_cast<BYTE*>(buffer.data()), &bytes);
    if (rc == ERROR_MORE_DATA) {  // grown since the size was asked for
      size = bytes;
      continue;
    }
    if (rc != ERROR_SUCCESS) return {};  // gone since
    if (type != REG_SZ && type != REG_EXPAND_SZ) Fail(u"Invalid data type", n);
    break;
  }
  buffer.resize(std::min(buffer.find(u'\0'), buffer.size()));
  return buffer;
}

void TRegistry::WriteString(std::u16string_view name, std::u16string_view value) {
  const std::u16string n(name), v(value);
  if (!current_ ||
      RegSetValueExW(current_.get(), W(n), 0, REG_SZ, reinterpret_cast<const BYTE*>(v.c_str()),
                     static_cast<DWORD>((v.size() + 1) * sizeof(char16_t))) != ERROR_SUCCESS)
    Fail(u"Failed to set data", n);
}

int TRegistry::ReadInteger(std::u16string_view name) const {
  const std::u16string n(name);
  DWORD type = 0, value = 0, size = sizeof value;
  const LONG rc = current_ ? RegQueryValueExW(current_.get(), W(n), nullptr, &type,
                                              reinterpret_cast<BYTE*>(&value), &size)
                           : ERROR_INVALID_HANDLE;
  if (rc != ERROR_SUCCESS && rc != ERROR_MORE_DATA) Fail(u"Failed to get data", n);
  if (rc != ERROR_SUCCESS || type != REG_DWORD || size != sizeof value)
    Fail(u"Invalid data type", n);
  return static_cast<int>(value);
}

void TRegistry::WriteInteger(std::u16string_view name, int value) {
  const std::u16string n(name);
  const DWORD data = static_cast<DWORD>(value);
  if (!current_ || RegSetValueExW(current_.get(), W(n), 0, REG_DWORD,
                                  reinterpret_cast<const BYTE*>(&data),
                                  sizeof data) != ERROR_SUCCESS)
    Fail(u"Failed to set data", n);
}

bool TRegistry::ReadBool(std::u16string_view name) const { return ReadInteger(name) != 0; }

void TRegistry::WriteBool(std::u16string_view name, bool value) {
  WriteInteger(name, value ? 1 : 0);
}

}  // namespace rtl
