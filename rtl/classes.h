// String lists: the framework's TStrings (abstract list of lines with associated
// objects) and TStringList (the stored, optionally sorted list). Indexes are 0-based,
// as in the framework. Objects are never owned by a list.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "rtl/exception.h"

namespace rtl {

// Root of the framework's object model; lists hold pointers to it without owning them.
class TObject {
 public:
  virtual ~TObject() = default;
  // The name of the object's most derived class, without namespaces: "TLabel".
  std::u16string ClassName() const;
};

// The name of a class as ClassName gives it.
std::u16string TypeName(const std::type_info& type);

// Raised for list misuse: an index out of range, a duplicate under dupError,
// a positional change of a sorted list.
class EStringListError : public Exception {
 public:
  using Exception::Exception;
};

enum class TDuplicates { dupIgnore, dupAccept, dupError };
using TNotifyEvent = std::function<void(TObject* sender)>;

class TStrings : public TObject {
 public:
  TStrings() = default;
  TStrings(const TStrings&) = delete;
  TStrings& operator=(const TStrings&) = delete;

  virtual int Count() const = 0;
  virtual std::u16string Get(int index) const = 0;
  virtual void Put(int index, std::u16string_view s) = 0;
  virtual TObject* GetObject(int index) const = 0;
  virtual void PutObject(int index, TObject* object) = 0;
  virtual void Insert(int index, std::u16string_view s) = 0;
  virtual void Delete(int index) = 0;
  virtual void Clear() = 0;

  // Appends (a sorted list inserts in order); returns the index of the line.
  virtual int Add(std::u16string_view s);
  // As Add, with the object; a line a sorted list ignores as a duplicate keeps its own.
  virtual int AddObject(std::u16string_view s, TObject* object);
  virtual void InsertObject(int index, std::u16string_view s, TObject* object);
  void AddStrings(const TStrings& other);
  void Assign(const TStrings& other);
  // First index whose line compares equal (CompareStrings), -1 if none.
  virtual int IndexOf(std::u16string_view s) const;
  int IndexOfObject(const TObject* object) const;

  std::u16string operator[](int index) const { return Get(index); }
  std::u16string Strings(int index) const { return Get(index); }
  TObject* Objects(int index) const { return GetObject(index); }

  // Every line followed by CR LF. Setting splits on CR LF, CR or LF; a final line
  // break opens no empty line.
  std::u16string Text() const;
  void SetText(std::u16string_view text);

  // Lines joined by Delimiter. Lines holding the quote character or the delimiter (and,
  // unless StrictDelimiter, any character up to the space) are quoted, quotes doubled.
  //   {"a", "b c"} with ',' and StrictDelimiter false  ->  a,"b c"
  std::u16string DelimitedText() const;
  // Clears and splits. Without StrictDelimiter, blanks also separate and are skipped
  // around items; a delimiter at the very end adds one empty line.
  void SetDelimitedText(std::u16string_view text);
  // DelimitedText with ',' and '"', StrictDelimiter off, whatever the properties hold.
  std::u16string CommaText() const;
  void SetCommaText(std::u16string_view text);

  char16_t Delimiter = u',';
  char16_t QuoteChar = u'"';
  char16_t NameValueSeparator = u'=';
  bool StrictDelimiter = false;

  // name=value access. Names(i) is "" for a line without the separator.
  std::u16string Names(int index) const;
  std::u16string ValueFromIndex(int index) const;
  // Value of the first line whose name equals `name` (CompareStrings), "" if none.
  std::u16string Values(std::u16string_view name) const;
  // Sets the value, adding a line when the name is new; an empty value deletes the line.
  void SetValue(std::u16string_view name, std::u16string_view value);
  int IndexOfName(std::u16string_view name) const;

  // Change notifications are held back while updates are nested.
  void BeginUpdate();
  void EndUpdate();
  int UpdateCount() const { return updateCount_; }

 protected:
  // Equality and order of lines; TStringList makes it locale-aware and case-optional.
  virtual int CompareStrings(std::u16string_view a, std::u16string_view b) const;
  virtual void SetUpdateState(bool /*updating*/) {}
  [[noreturn]] static void Error(const char* message, int index);

 private:
  int updateCount_ = 0;
};

class TStringList : public TStrings {
 public:
  TStringList() = default;
  ~TStringList() override;

  int Count() const override { return static_cast<int>(items_.size()); }
  std::u16string Get(int index) const override;
  // Replaces a line; not allowed on a sorted list.
  void Put(int index, std::u16string_view s) override;
  TObject* GetObject(int index) const override;
  void PutObject(int index, TObject* object) override;
  // Inserts at a position; not allowed on a sorted list.
  void Insert(int index, std::u16string_view s) override;
  void Delete(int index) override;
  void Clear() override;
  int Add(std::u16string_view s) override;
  int AddObject(std::u16string_view s, TObject* object) override;
  void InsertObject(int index, std::u16string_view s, TObject* object) override;
  int IndexOf(std::u16string_view s) const override;
  void Exchange(int a, int b);

  // Binary search of a sorted list: true when found; `index` is where the line is or
  // would be inserted.
  bool Find(std::u16string_view s, int& index) const;
  void Sort();
  void CustomSort(const std::function<int(TStringList& list, int a, int b)>& compare);

  bool Sorted() const { return sorted_; }
  void SetSorted(bool value);
  bool CaseSensitive() const { return caseSensitive_; }
  void SetCaseSensitive(bool value);
  TDuplicates Duplicates = TDuplicates::dupIgnore;

  TNotifyEvent OnChange;
  TNotifyEvent OnChanging;

 protected:
  int CompareStrings(std::u16string_view a, std::u16string_view b) const override;
  void SetUpdateState(bool updating) override;

 private:
  struct Item {
    std::u16string text;
    TObject* object = nullptr;
  };
  void Changing();
  void Changed();
  void InsertItem(int index, std::u16string_view s, TObject* object);
  void CheckIndex(int index) const;

  std::vector<Item> items_;
  bool sorted_ = false;
  bool caseSensitive_ = false;
};

}  // namespace rtl
