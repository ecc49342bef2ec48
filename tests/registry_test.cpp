// The registry object and the catalogue's look-ups against the real registry.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "data/NOXEData.h"
#include "rtl/registry.h"
#include "rtl/ustring.h"

namespace {

using rtl::ERegistryException;
using rtl::TRegistry;
using Str = std::u16string;

// A key of its own under HKCU\Software\NoxTests, removed with everything below it.
class CatalogueRegistry : public testing::Test {
 protected:
  void SetUp() override {
    name_ = u"T" + rtl::IntToStr(GetCurrentProcessId()) + u"_" + rtl::IntToStr(GetTickCount64());
    key_ = u"\\Software\\NoxTests\\" + name_;
    TRegistry reg;
    ASSERT_TRUE(reg.OpenKey(key_, true));
    reg.WriteString(u"Path", u"C:\\Program Files\\Nox");
    reg.WriteString(u"Empty", u"");
    reg.WriteInteger(u"Count", 7);
  }
  void TearDown() override {
    TRegistry reg;
    reg.DeleteKey(key_);
    // The parent goes only when no other run still has a key in it.
    RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\NoxTests");
  }
  Str name_, key_;
};

TEST_F(CatalogueRegistry, ValuesComeBackAsWrittenAndReadOnlyKeysRefuseWrites) {
  TRegistry reg;
  ASSERT_TRUE(reg.OpenKey(key_, false));
  reg.WriteString(u"Text", u"Grüße ✓");
  reg.WriteInteger(u"Negative", -5);
  reg.WriteBool(u"Flag", true);
  EXPECT_EQ(reg.ReadString(u"Text"), u"Grüße ✓");
  EXPECT_EQ(reg.ReadString(u"Empty"), u"");
  EXPECT_EQ(reg.ReadInteger(u"Negative"), -5);
  EXPECT_TRUE(reg.ReadBool(u"Flag"));

  EXPECT_EQ(reg.ReadString(u"Missing"), u"");  // a missing string reads empty...
  EXPECT_THROW(reg.ReadInteger(u"Missing"), ERegistryException);  // ...a number does not
  EXPECT_THROW(reg.ReadString(u"Count"), ERegistryException);
  EXPECT_THROW(reg.ReadInteger(u"Text"), ERegistryException);

  EXPECT_TRUE(reg.ValueExists(u"Text"));
  EXPECT_TRUE(reg.DeleteValue(u"Text"));
  EXPECT_FALSE(reg.ValueExists(u"Text"));
  EXPECT_FALSE(reg.DeleteValue(u"Text"));

  reg.CloseKey();
  EXPECT_FALSE(reg.ValueExists(u"Count"));  // values belong to an open key
  EXPECT_THROW(reg.WriteString(u"x", u"y"), ERegistryException);

  ASSERT_TRUE(reg.OpenKeyReadOnly(key_));
  EXPECT_EQ(reg.ReadInteger(u"Count"), 7);
  EXPECT_THROW(reg.WriteInteger(u"Count", 8), ERegistryException);
  EXPECT_FALSE(reg.OpenKeyReadOnly(key_ + u"\\missing"));
}

TEST_F(CatalogueRegistry, PathsFromTheRootOrTheOpenKey) {
  TRegistry reg;
  ASSERT_TRUE(reg.OpenKey(key_ + u"\\a\\b\\", true));  // parents made, final '\' ignored
  EXPECT_EQ(reg.CurrentPath(), u"Software\\NoxTests\\" + name_ + u"\\a\\b");

  ASSERT_TRUE(reg.OpenKey(key_, false));
  EXPECT_TRUE(reg.KeyExists(u"a\\b"));
  EXPECT_TRUE(reg.KeyExists(key_ + u"\\a"));
  EXPECT_FALSE(reg.KeyExists(u"a\\c"));
  EXPECT_FALSE(reg.KeyExists(u"NoxTests"));  // relative to the open key, not the root

  const HKEY before = reg.CurrentKey();
  EXPECT_FALSE(reg.OpenKey(u"missing", false));
  EXPECT_EQ(reg.CurrentKey(), before);  // a failed open keeps the open key

  ASSERT_TRUE(reg.OpenKey(u"a", false));
  EXPECT_EQ(reg.CurrentPath(), u"Software\\NoxTests\\" + name_ + u"\\a");
  reg.CloseKey();
  EXPECT_TRUE(reg.DeleteKey(key_ + u"\\a"));  // with b below it
  EXPECT_FALSE(reg.KeyExists(key_ + u"\\a"));
  EXPECT_TRUE(reg.KeyExists(key_));
}

TEST_F(CatalogueRegistry, LookUpsAnswerWithoutRaising) {
  using NOXEData::RegKeyExists, NOXEData::RegReadStr;
  EXPECT_TRUE(RegKeyExists(key_, HKEY_CURRENT_USER));
  EXPECT_FALSE(RegKeyExists(key_ + u"\\missing", HKEY_CURRENT_USER));
  EXPECT_FALSE(RegKeyExists(key_, HKEY_LOCAL_MACHINE));

  Str value = u"kept";
  EXPECT_TRUE(RegReadStr(key_, u"Path", value, HKEY_CURRENT_USER));
  EXPECT_EQ(value, u"C:\\Program Files\\Nox");
  EXPECT_TRUE(RegReadStr(key_, u"Missing", value, HKEY_CURRENT_USER));
  EXPECT_EQ(value, u"");

  value = u"kept";
  EXPECT_FALSE(RegReadStr(key_ + u"\\missing", u"Path", value, HKEY_CURRENT_USER));
  EXPECT_FALSE(RegReadStr(key_, u"Count", value, HKEY_CURRENT_USER));  // a number
  EXPECT_EQ(value, u"kept");
}

}  // namespace
