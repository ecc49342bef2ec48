// Fuzz target for component files as ReadComponent and LoadCompFromFile read them: the
// reading rule decides everything before a control is made, so a tree it accepts must be
// one the window part can build: every component after the one it goes inside, no name
// twice, none deeper than the limit, every property one its class has (and every
// property of a collection's item one of the item's class).
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "rtl/streams.h"
#include "rtl/ustring.h"
#include "ui/persist_rules.h"

using fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The signature is given, so that the fuzzer spends its time on what follows it.
  std::vector<std::uint8_t> bytes{'T', 'P', 'F', '0'};
  bytes.insert(bytes.end(), data, data + size);
  rtl::TMemoryStream stream(std::move(bytes));
  static const char16_t* const roots[] = {u"TForm", u"TFrame", u"TPanel", u"TComponent"};
  ui::TComponentTree tree;
  try {
    tree = ui::ReadComponentTree(stream, roots[size % 4]);
  } catch (const rtl::Exception&) {
    return 0;
  }
  std::set<std::u16string> names;
  std::vector<int> depth;
  for (std::size_t i = 0; i < tree.Children.size(); ++i) {
    const ui::TStreamedComponent& c = tree.Children[i];
    const int at = static_cast<int>(i);
    Check(c.Info != nullptr && c.Info->Creatable, "a class that cannot be made");
    Check(c.Enclosing >= -1 && c.Enclosing < at, "enclosed by a later component");
    Check(c.Parent == ui::kNoParent || c.Parent == c.Enclosing, "placed outside its enclosing");
    depth.push_back(c.Enclosing < 0 ? 1 : depth[static_cast<std::size_t>(c.Enclosing)] + 1);
    Check(depth.back() <= ui::kMaxNestingDepth, "nested beyond the limit");
    Check(c.Name.empty() || names.insert(rtl::UpperCase(c.Name)).second, "a name twice");
    for (const ui::TPropertyValue& v : c.Properties) {
      Check(v.Info != nullptr && ui::FindPropertyInfo(*c.Info, v.Info->Name) == v.Info,
            "a property of another class");
      for (const std::vector<ui::TPropertyValue>& item : v.Items)
        for (const ui::TPropertyValue& part : item)
          Check(ui::FindPropertyInfo(*ui::FindClassInfo(v.Info->Class), part.Info->Name) == part.Info,
                "an item property of another class");
    }
  }
  return 0;
}
