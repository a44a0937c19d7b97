// _com_ptr_t<T>: the smart interface pointer. It owns one reference to the
// interface it holds (or none when null) and releases it when it lets go.
// Unlike the platform's, this one never raises: a query that fails gives its
// status, and the library decides what a failure means. operator-> REQUIRES a
// non-null pointer.
//
// Thread safety: a plain value; one object belongs to one thread at a time.
#pragma once

#include <cstddef>
#include <utility>

#include "OhmPlatformExport.h"
#include "com/IUnknown.h"

OHM_PLATFORM_API_BEGIN

template <class T>
class _com_ptr_t {
 public:
  _com_ptr_t() noexcept = default;
  _com_ptr_t(std::nullptr_t) noexcept {}
  // Takes a reference of its own to `p` (or, with addRef false, takes over the caller's).
  _com_ptr_t(T* p, bool addRef = true) noexcept : mP(p) {
    if (mP && addRef) mP->AddRef();
  }
  _com_ptr_t(const _com_ptr_t& other) noexcept : _com_ptr_t(other.mP) {}
  _com_ptr_t(_com_ptr_t&& other) noexcept : mP(std::exchange(other.mP, nullptr)) {}
  ~_com_ptr_t() { Release(); }

  _com_ptr_t& operator=(_com_ptr_t other) noexcept {
    std::swap(mP, other.mP);
    return *this;
  }
  _com_ptr_t& operator=(std::nullptr_t) noexcept {
    Release();
    return *this;
  }

  // Asks `source` for this pointer's interface. S_OK and the interface held;
  // otherwise the query's failure (E_NOINTERFACE, ...) and null; E_POINTER
  // when `source` is null.
  template <class S>
  HRESULT QueryFrom(S* source) noexcept {
    Release();
    if (!source) return E_POINTER;
    return source->QueryInterface(T::iid, reinterpret_cast<void**>(&mP));
  }

  // Lets go of the reference held, if any.
  void Release() noexcept {
    if (T* p = std::exchange(mP, nullptr)) p->Release();
  }
  // Takes over a reference that the caller owns.
  void Attach(T* p) noexcept {
    Release();
    mP = p;
  }
  // Hands the reference to the caller, who must release it.
  T* Detach() noexcept { return std::exchange(mP, nullptr); }

  // The address for an out-argument: what was held is released first.
  T** operator&() noexcept {
    Release();
    return &mP;
  }
  T* operator->() const noexcept { return mP; }
  T* GetInterfacePtr() const noexcept { return mP; }
  explicit operator bool() const noexcept { return mP != nullptr; }
  friend bool operator==(const _com_ptr_t& a, std::nullptr_t) noexcept { return a.mP == nullptr; }

 private:
  T* mP = nullptr;
};

using IUnknownPtr = _com_ptr_t<IUnknown>;

OHM_PLATFORM_API_END
