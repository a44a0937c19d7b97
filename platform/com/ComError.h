// _com_error: what a failing COM call is raised as, by code that chooses to
// raise (the stand-ins themselves return statuses and never raise, except a
// string variant that gets no memory). It carries the HRESULT and, when the
// failing interface offered it, the error information object that describes
// the failure.
//
// Error information travels per thread, as on the platform: an object that
// fails a call puts an IErrorInfo on the thread with SetErrorInfo, and the
// caller takes it with GetErrorInfo, after checking with ISupportErrorInfo
// that the interface it called offers error information at all.
//
// Thread safety: a _com_error is a plain value. The error information slot is
// one per thread.
#pragma once

#include <string>

#include "OhmPlatformExport.h"
#include "com/ComPtr.h"

OHM_PLATFORM_API_BEGIN

inline constexpr IID IID_IErrorInfo{0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
inline constexpr IID IID_ISupportErrorInfo{
    0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};

// The description of one failure.
struct IErrorInfo : IUnknown {
  static constexpr const IID& iid = IID_IErrorInfo;
  // S_OK and the text of the failure; E_POINTER for a null argument.
  virtual HRESULT GetDescription(std::u16string* description) = 0;
  // S_OK and the interface that failed; E_POINTER for a null argument.
  virtual HRESULT GetGUID(GUID* guid) = 0;
};

// Offered by objects that describe their failures.
struct ISupportErrorInfo : IUnknown {
  static constexpr const IID& iid = IID_ISupportErrorInfo;
  // S_OK when failures of interface `riid` leave error information, S_FALSE otherwise.
  virtual HRESULT InterfaceSupportsErrorInfo(REFIID riid) = 0;
};

using IErrorInfoPtr = _com_ptr_t<IErrorInfo>;
using ISupportErrorInfoPtr = _com_ptr_t<ISupportErrorInfo>;

// Puts `info` (may be null: clears) on the calling thread. `reserved` must be 0,
// else E_INVALIDARG.
HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info);
// S_OK and the thread's error information (which leaves the thread; the
// caller releases it); S_FALSE and null when there is none. E_INVALIDARG for
// a non-zero `reserved`, E_POINTER for a null `info`.
HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info);
// A new error information object for a failure of interface `failed`.
IErrorInfoPtr CreateErrorInfoFor(REFIID failed, std::u16string description);

class _com_error {
 public:
  // Takes over one reference to `info` (may be null), or adds one when `addRef` is true.
  explicit _com_error(HRESULT hr, IErrorInfo* info = nullptr, bool addRef = false) noexcept
      : mHr(hr), mInfo(info, addRef) {}

  // The failure's code.
  HRESULT Error() const noexcept { return mHr; }
  // The error information, with a reference for the caller; null when there is none.
  IErrorInfo* ErrorInfo() const noexcept;
  // The text of the error information; empty when there is none.
  std::u16string Description() const;
  // The system's text for the code; "Unknown error 0x%08X" for a code it has no text for.
  std::u16string ErrorMessage() const;

 private:
  HRESULT mHr;
  IErrorInfoPtr mInfo;
};

OHM_PLATFORM_API_END
