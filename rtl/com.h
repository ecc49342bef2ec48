// COM for a scope and COM interface pointers, owned as the handles of rtl/handles.h are.
// Windows build only.
#pragma once

#include <objbase.h>

namespace rtl {

// COM on this thread for a scope, when it was not there yet in a compatible mode.
class TComScope {
 public:
  TComScope() : initialized_(SUCCEEDED(CoInitialize(nullptr))) {}
  ~TComScope() {
    if (initialized_) CoUninitialize();
  }
  TComScope(const TComScope&) = delete;
  TComScope& operator=(const TComScope&) = delete;

 private:
  bool initialized_;
};

// A COM interface pointer, released when it goes.
template <class T>
class TComPtr {
 public:
  TComPtr() = default;
  ~TComPtr() {
    if (p_) p_->Release();
  }
  TComPtr(const TComPtr&) = delete;
  TComPtr& operator=(const TComPtr&) = delete;
  TComPtr(TComPtr&& other) noexcept : p_(other.p_) { other.p_ = nullptr; }
  TComPtr& operator=(TComPtr&& other) noexcept {
    if (this != &other) {
      if (p_) p_->Release();
      p_ = other.p_;
      other.p_ = nullptr;
    }
    return *this;
  }
  T* operator->() const { return p_; }
  T* get() const { return p_; }
  explicit operator bool() const { return p_ != nullptr; }
  T** put() { return &p_; }
  void** put_void() { return reinterpret_cast<void**>(&p_); }

 private:
  T* p_ = nullptr;
};

}  // namespace rtl
