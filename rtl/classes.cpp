// TStrings (everything expressible through the abstract list) and TStringList (the
// stored list, its sorting and its change notifications). Ordering of lines comes from
// rtl/locale.h; this file makes no locale decisions of its own.
#include "rtl/classes.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <string>
#include <typeinfo>

#include "rtl/locale.h"

namespace rtl {

std::u16string TObject::ClassName() const { return TypeName(typeid(*this)); }

std::u16string TypeName(const std::type_info& type) {
  const char* mangled = type.name();
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> plain(
      abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
  std::string name = status == 0 && plain ? plain.get() : mangled;
  if (const std::size_t colons = name.rfind("::"); colons != std::string::npos)
    name.erase(0, colons + 2);
  return std::u16string(name.begin(), name.end());
}

namespace {

// Holds a list in its update state for a scope; the notification of EndUpdate may
// throw like any other change handler.
class UpdateScope {
 public:
  explicit UpdateScope(TStrings& list) : list_(list) { list_.BeginUpdate(); }
  ~UpdateScope() noexcept(false) { list_.EndUpdate(); }
  UpdateScope(const UpdateScope&) = delete;
  UpdateScope& operator=(const UpdateScope&) = delete;

 private:
  TStrings& list_;
};

bool IsBlank(char16_t c) { return c >= 1 && c <= u' '; }

std::u16string JoinDelimited(const TStrings& list, char16_t delimiter, char16_t quote,
                             bool strict) {
  const int count = list.Count();
  // Otherwise one empty line would read back as no line at all.
  if (count == 1 && list[0].empty()) return std::u16string(2, quote);
  std::u16string r;
  for (int i = 0; i < count; ++i) {
    const std::u16string line = list[i];
    const bool quoted = std::any_of(line.begin(), line.end(), [&](char16_t c) {
      return c == 0 || c == quote || c == delimiter || (!strict && IsBlank(c));
    });
    if (i > 0) r += delimiter;
    if (!quoted) {
      r += line;
      continue;
    }
    r += quote;
    for (const char16_t c : line) {
      if (c == quote) r += quote;
      r += c;
    }
    r += quote;
  }
  return r;
}

void SplitDelimited(TStrings& list, std::u16string_view text, char16_t delimiter,
                    char16_t quote, bool strict) {
  UpdateScope update(list);
  list.Clear();
  // Reads as a NUL-terminated buffer does: the text ends at the first NUL.
  const auto at = [&](size_t i) -> char16_t { return i < text.size() ? text[i] : 0; };
  size_t p = 0;
  if (!strict)
    while (IsBlank(at(p))) ++p;
  while (at(p) != 0) {
    std::u16string item;
    if (at(p) == quote) {
      // Up to the closing quote, doubled quotes standing for one; an unclosed quote
      // runs to the end.
      for (++p; at(p) != 0; ++p) {
        if (at(p) == quote) {
          if (at(p + 1) != quote) {
            ++p;
            break;
          }
          ++p;
        }
        item += at(p);
      }
    } else {
      const size_t start = p;
      while (at(p) != 0 && at(p) != delimiter && (strict || at(p) > u' ')) ++p;
      item.assign(text.substr(start, p - start));
    }
    list.Add(item);
    if (!strict)
      while (IsBlank(at(p))) ++p;
    if (at(p) == delimiter) {
      if (at(p + 1) == 0) list.Add(u"");
      do ++p;
      while (!strict && IsBlank(at(p)));
    }
  }
}

}  // namespace

// ---- TStrings ------------------------------------------------------------------------

int TStrings::Add(std::u16string_view s) {
  const int index = Count();
  Insert(index, s);
  return index;
}

int TStrings::AddObject(std::u16string_view s, TObject* object) {
  const int index = Add(s);
  PutObject(index, object);
  return index;
}

void TStrings::InsertObject(int index, std::u16string_view s, TObject* object) {
  Insert(index, s);
  PutObject(index, object);
}

void TStrings::AddStrings(const TStrings& other) {
  UpdateScope update(*this);
  // Counted once, so that adding a list to itself doubles it rather than looping.
  const int count = other.Count();
  for (int i = 0; i < count; ++i) AddObject(other.Get(i), other.GetObject(i));
}

void TStrings::Assign(const TStrings& other) {
  if (&other == this) return;  // clearing first would lose the lines to copy
  UpdateScope update(*this);
  Clear();
  Delimiter = other.Delimiter;
  QuoteChar = other.QuoteChar;
  NameValueSeparator = other.NameValueSeparator;
  StrictDelimiter = other.StrictDelimiter;
  AddStrings(other);
}

int TStrings::IndexOf(std::u16string_view s) const {
  const int count = Count();
  for (int i = 0; i < count; ++i)
    if (CompareStrings(Get(i), s) == 0) return i;
  return -1;
}

int TStrings::IndexOfObject(const TObject* object) const {
  const int count = Count();
  for (int i = 0; i < count; ++i)
    if (GetObject(i) == object) return i;
  return -1;
}

std::u16string TStrings::Text() const {
  std::u16string r;
  const int count = Count();
  for (int i = 0; i < count; ++i) r.append(Get(i)).append(u"\r\n");
  return r;
}

void TStrings::SetText(std::u16string_view text) {
  UpdateScope update(*this);
  Clear();
  size_t p = 0;
  while (p < text.size()) {
    const size_t start = p;
    while (p < text.size() && text[p] != u'\r' && text[p] != u'\n') ++p;
    Add(text.substr(start, p - start));
    if (p < text.size() && text[p] == u'\r') ++p;
    if (p < text.size() && text[p] == u'\n') ++p;
  }
}

std::u16string TStrings::DelimitedText() const {
  return JoinDelimited(*this, Delimiter, QuoteChar, StrictDelimiter);
}

void TStrings::SetDelimitedText(std::u16string_view text) {
  SplitDelimited(*this, text, Delimiter, QuoteChar, StrictDelimiter);
}

std::u16string TStrings::CommaText() const {
  return JoinDelimited(*this, u',', u'"', false);
}

void TStrings::SetCommaText(std::u16string_view text) {
  SplitDelimited(*this, text, u',', u'"', false);
}

std::u16string TStrings::Names(int index) const {
  const std::u16string line = Get(index);
  const size_t at = line.find(NameValueSeparator);
  return at == std::u16string::npos ? std::u16string() : line.substr(0, at);
}

std::u16string TStrings::ValueFromIndex(int index) const {
  if (index < 0) return {};
  const std::u16string line = Get(index);
  const size_t at = line.find(NameValueSeparator);
  return at == std::u16string::npos ? std::u16string() : line.substr(at + 1);
}

std::u16string TStrings::Values(std::u16string_view name) const {
  // The value starts after the line's own separator: a name can match one of another
  // length ("Straße" and "Strasse" compare equal).
  const int index = IndexOfName(name);
  return index < 0 ? std::u16string() : ValueFromIndex(index);
}

void TStrings::SetValue(std::u16string_view name, std::u16string_view value) {
  int index = IndexOfName(name);
  if (value.empty()) {
    if (index >= 0) Delete(index);
    return;
  }
  std::u16string line(name);
  line += NameValueSeparator;
  line += value;
  if (index < 0) index = Add(u"");
  Put(index, line);
}

int TStrings::IndexOfName(std::u16string_view name) const {
  const int count = Count();
  for (int i = 0; i < count; ++i) {
    const std::u16string line = Get(i);
    const size_t at = line.find(NameValueSeparator);
    if (at != std::u16string::npos &&
        CompareStrings(std::u16string_view(line).substr(0, at), name) == 0)
      return i;
  }
  return -1;
}

void TStrings::BeginUpdate() {
  if (updateCount_ == 0) SetUpdateState(true);
  ++updateCount_;
}

void TStrings::EndUpdate() {
  if (updateCount_ == 0) return;
  if (--updateCount_ == 0) SetUpdateState(false);
}

int TStrings::CompareStrings(std::u16string_view a, std::u16string_view b) const {
  return AnsiCompareText(a, b);
}

void TStrings::Error(const char* message, int index) {
  std::string text(message);
  if (const size_t at = text.find("%d"); at != std::string::npos)
    text.replace(at, 2, std::to_string(index));
  throw EStringListError(text);
}

// ---- TStringList ---------------------------------------------------------------------

namespace {
constexpr const char* kIndexError = "List index out of bounds (%d)";
constexpr const char* kSortedError = "Operation not allowed on sorted list";
constexpr const char* kDuplicateError = "String list does not allow duplicates";
}  // namespace

TStringList::~TStringList() = default;

void TStringList::CheckIndex(int index) const {
  if (index < 0 || index >= Count()) Error(kIndexError, index);
}

void TStringList::Changing() {
  if (UpdateCount() == 0 && OnChanging) OnChanging(this);
}

void TStringList::Changed() {
  if (UpdateCount() == 0 && OnChange) OnChange(this);
}

void TStringList::SetUpdateState(bool updating) {
  if (updating)
    Changing();
  else
    Changed();
}

std::u16string TStringList::Get(int index) const {
  CheckIndex(index);
  return items_[static_cast<size_t>(index)].text;
}

void TStringList::Put(int index, std::u16string_view s) {
  if (sorted_) Error(kSortedError, 0);
  CheckIndex(index);
  Changing();
  items_[static_cast<size_t>(index)].text.assign(s);
  Changed();
}

TObject* TStringList::GetObject(int index) const {
  CheckIndex(index);
  return items_[static_cast<size_t>(index)].object;
}

void TStringList::PutObject(int index, TObject* object) {
  CheckIndex(index);
  Changing();
  items_[static_cast<size_t>(index)].object = object;
  Changed();
}

void TStringList::Insert(int index, std::u16string_view s) {
  InsertObject(index, s, nullptr);
}

void TStringList::InsertObject(int index, std::u16string_view s, TObject* object) {
  if (sorted_) Error(kSortedError, 0);
  if (index < 0 || index > Count()) Error(kIndexError, index);
  InsertItem(index, s, object);
}

void TStringList::InsertItem(int index, std::u16string_view s, TObject* object) {
  Changing();
  items_.insert(items_.begin() + index, Item{std::u16string(s), object});
  Changed();
}

void TStringList::Delete(int index) {
  CheckIndex(index);
  Changing();
  items_.erase(items_.begin() + index);
  Changed();
}

void TStringList::Clear() {
  if (items_.empty()) return;
  Changing();
  items_.clear();
  Changed();
}

int TStringList::Add(std::u16string_view s) { return AddObject(s, nullptr); }

int TStringList::AddObject(std::u16string_view s, TObject* object) {
  int index = Count();
  if (sorted_ && Find(s, index)) {
    if (Duplicates == TDuplicates::dupIgnore) return index;
    if (Duplicates == TDuplicates::dupError) Error(kDuplicateError, 0);
  }
  InsertItem(index, s, object);
  return index;
}

int TStringList::IndexOf(std::u16string_view s) const {
  if (!sorted_) return TStrings::IndexOf(s);
  int index = 0;
  return Find(s, index) ? index : -1;
}

void TStringList::Exchange(int a, int b) {
  CheckIndex(a);
  CheckIndex(b);
  Changing();
  std::swap(items_[static_cast<size_t>(a)], items_[static_cast<size_t>(b)]);
  Changed();
}

bool TStringList::Find(std::u16string_view s, int& index) const {
  bool found = false;
  int lo = 0, hi = Count() - 1;
  while (lo <= hi) {
    const int mid = lo + (hi - lo) / 2;
    const int c = CompareStrings(items_[static_cast<size_t>(mid)].text, s);
    if (c < 0) {
      lo = mid + 1;
    } else {
      hi = mid - 1;
      if (c == 0) {
        found = true;
        // Accepting duplicates, keep looking left so that equal lines stay in the
        // order they came and a new one goes before them.
        if (Duplicates != TDuplicates::dupAccept) lo = mid;
      }
    }
  }
  index = lo;
  return found;
}

void TStringList::Sort() {
  CustomSort([](TStringList& list, int a, int b) {
    return list.CompareStrings(list.items_[static_cast<size_t>(a)].text,
                               list.items_[static_cast<size_t>(b)].text);
  });
}

void TStringList::CustomSort(
    const std::function<int(TStringList& list, int a, int b)>& compare) {
  // A sorted list is in order already; sorting it by another rule would break Find.
  if (sorted_ || items_.size() < 2) return;
  Changing();
  // The comparison sees the list unchanged by indexes; only the order is sorted.
  std::vector<int> order(items_.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&](int a, int b) { return compare(*this, a, b) < 0; });
  std::vector<Item> sorted;
  sorted.reserve(items_.size());
  for (const int i : order) sorted.push_back(std::move(items_[static_cast<size_t>(i)]));
  items_ = std::move(sorted);
  Changed();
}

void TStringList::SetSorted(bool value) {
  if (value == sorted_) return;
  if (value) Sort();
  sorted_ = value;
}

void TStringList::SetCaseSensitive(bool value) {
  if (value == caseSensitive_) return;
  caseSensitive_ = value;
  if (sorted_) {
    sorted_ = false;
    SetSorted(true);
  }
}

int TStringList::CompareStrings(std::u16string_view a, std::u16string_view b) const {
  return caseSensitive_ ? AnsiCompareStr(a, b) : AnsiCompareText(a, b);
}

}  // namespace rtl
