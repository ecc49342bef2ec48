// Texts of every script through the component format's string values and back.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "rtl/filer.h"
#include "unicode_corpus.h"

TEST(UnicodeFiler, StringValuesKeepEveryCharacter) {
  size_t lost = 0, characters = 0;
  for (const std::u16string& text : nox_test::UnicodeCorpus()) {
    rtl::TMemoryStream s;
    rtl::TWriter(s).WriteString(text);
    s.SetPosition(0);
    const std::u16string back = rtl::TReader(s).ReadString();
    characters += text.size();
    for (size_t i = 0; i < text.size(); ++i) lost += i >= back.size() || back[i] != text[i];
  }
  std::printf("%zu characters, %zu lost\n", characters, lost);
  EXPECT_EQ(lost, 0u);
}
