#include "com/ComError.h"

#include <array>
#include <atomic>
#include <cstdio>

#include "win/Utf8.h"

namespace {

// One failure's description: the interface that failed and the text.
class ErrorInfo final : public IErrorInfo {
 public:
  ErrorInfo(REFIID failed, std::u16string description) : mIid(failed), mDescription(std::move(description)) {}

  HRESULT QueryInterface(REFIID riid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!(riid == IID_IUnknown) && !(riid == IID_IErrorInfo)) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IErrorInfo*>(this);
    return S_OK;
  }
  ULONG AddRef() override { return ++mRefs; }
  ULONG Release() override {
    ULONG left = --mRefs;
    if (left == 0) delete this;
    return left;
  }
  HRESULT GetDescription(std::u16string* description) override {
    if (!description) return E_POINTER;
    *description = mDescription;
    return S_OK;
  }
  HRESULT GetGUID(GUID* guid) override {
    if (!guid) return E_POINTER;
    *guid = mIid;
    return S_OK;
  }

 private:
  std::atomic<ULONG> mRefs{1};
  IID mIid;
  std::u16string mDescription;
};

thread_local IErrorInfoPtr tThreadErrorInfo;

struct CodeText {
  HRESULT hr;
  const char* text;
};

// The system's texts for the codes that the stand-ins give.
constexpr std::array<CodeText, 15> kCodeTexts{{
    {S_OK, "The operation completed successfully."},
    {E_NOTIMPL, "Not implemented"},
    {E_NOINTERFACE, "No such interface supported"},
    {E_POINTER, "Invalid pointer"},
    {E_FAIL, "Unspecified error"},
    {E_UNEXPECTED, "Catastrophic failure"},
    {E_ACCESSDENIED, "Access is denied."},
    {E_OUTOFMEMORY, "Not enough memory resources are available to complete this operation."},
    {E_INVALIDARG, "The parameter is incorrect."},
    {HRESULT_FROM_WIN32(3), "The system cannot find the path specified."},
    {DISP_E_TYPEMISMATCH, "Type mismatch."},
    {DISP_E_OVERFLOW, "Out of present range."},
    {CLASS_E_NOAGGREGATION, "Class does not support aggregation (or class object is remote)"},
    {REGDB_E_CLASSNOTREG, "Class not registered"},
    {CO_E_NOTINITIALIZED, "CoInitialize has not been called."},
}};

}  // namespace

HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info) {
  if (reserved != 0) return E_INVALIDARG;
  tThreadErrorInfo = IErrorInfoPtr(info);
  return S_OK;
}

HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info) {
  if (reserved != 0) return E_INVALIDARG;
  if (!info) return E_POINTER;
  *info = tThreadErrorInfo.Detach();
  return *info ? S_OK : S_FALSE;
}

IErrorInfoPtr CreateErrorInfoFor(REFIID failed, std::u16string description) {
  return IErrorInfoPtr(new ErrorInfo(failed, std::move(description)), false);
}

IErrorInfo* _com_error::ErrorInfo() const noexcept {
  if (mInfo) mInfo->AddRef();
  return mInfo.GetInterfacePtr();
}

std::u16string _com_error::Description() const {
  std::u16string description;
  if (mInfo) mInfo->GetDescription(&description);
  return description;
}

std::u16string _com_error::ErrorMessage() const {
  for (const CodeText& entry : kCodeTexts)
    if (entry.hr == mHr) return Utf8ToUtf16(entry.text);
  char text[32];
  std::snprintf(text, sizeof text, "Unknown error 0x%08X", static_cast<unsigned>(mHr));
  return Utf8ToUtf16(text);
}
