#include "ohmutils/host/OhmLispBridge.h"

#include <algorithm>

#include "ohmutils/host/OhmLispBridge_internal.h"
#include "zd/ZdCodes.h"
#include "zd/app/ZdDocManager.h"
#include "zd/lisp/ZdLisp.h"

namespace {

constexpr const char16_t* kLockCheckName = u"wdupda_chkdwglockstatus_internal";
constexpr const char16_t* kLockCheckNameWithBlank = u" wdupda_chkdwglockstatus_internal";
constexpr const char16_t* kUnlockName = u"c:ohm_upd_unlock_dwgs";
constexpr const char16_t* kWireVerifyName = u"wd_mdb2_WFRM2ALL_verify";
constexpr const char16_t* kFileLookupName = u"wd_fio_does_file_exist";
constexpr const char16_t* kEvalName = u"veval-str+";
constexpr int kRegisterExpressionUnits = 128;

// A request under construction: the function's name node, then the
// arguments. Any node that can't be made fails the whole request. The
// request is released with the builder.
class Request {
 public:
  explicit Request(const char16_t* function) : mHead(zdutNewRb(RTSTR)), mTail(mHead) {
    mOk = mHead && (mHead->resval.rstring = zdutNewString(function));
  }
  ~Request() { zdutRelRb(mHead); }
  Request(const Request&) = delete;
  Request& operator=(const Request&) = delete;

  Request& node(int type) {
    if (mOk) append(zdutNewRb(type));
    return *this;
  }
  Request& text(const char16_t* value) {
    node(RTSTR);
    mOk = mOk && (mTail->resval.rstring = zdutNewString(value));
    return *this;
  }
  Request& shortValue(short value) {
    node(RTSHORT);
    if (mOk) mTail->resval.rint = value;
    return *this;
  }
  Request& flag(bool value) { return node(RTNIL + 2 * value); }
  template <class Files>
  Request& fileList(const Files& files);

  // The whole request; null when a node couldn't be made.
  const ZdValueNode* get() const noexcept { return mOk ? mHead : nullptr; }

 private:
  void append(ZdValueNode* next) {
    mOk = next != nullptr;
    if (mOk) mTail = mTail->rbnext = next;
  }

  ZdValueNode* mHead;
  ZdValueNode* mTail;
  bool mOk = false;
};

void forEach(const CStringArray& files, auto visit) {
  for (INT_PTR i = 0; i < files.GetSize(); ++i) visit(files[i]);
}

void forEach(const CStringList& files, auto visit) {
  for (POSITION pos = files.GetHeadPosition(); pos;) visit(files.GetNext(pos));
}

template <class Files>
Request& Request::fileList(const Files& files) {
  node(RTLB);
  forEach(files, [this](const CString& file) { text(file); });
  return node(RTLE);
}

// A reply of the host, released when it goes.
struct Reply {
  ZdValueNode* chain = nullptr;
  ~Reply() { zdutRelRb(chain); }
  bool isNil() const noexcept { return chain && chain->restype == RTNIL; }
};

bool HasCurrentDocument() { return zdDocManagerPtr()->curDocument() != nullptr; }

int Invoke(const Request& request, Reply& reply, bool guardUserBreak) {
  return guardUserBreak ? Ohm_zdedInvoke(request.get(), &reply.chain) : zdedInvoke(request.get(), &reply.chain);
}

// Calls and tells whether the call completed with a reply.
bool Answered(const Request& request, Reply& reply, bool guardUserBreak) {
  return request.get() && Invoke(request, reply, guardUserBreak) == RTNORM && reply.chain;
}

// Every string node of the reply, "/" made "\", into `files` (emptied first).
void TakeStringsAsPaths(const Reply& reply, CStringArray& files) {
  files.RemoveAll();
  for (const ZdValueNode* node = reply.chain; node; node = node->rbnext) {
    if (node->restype != RTSTR) continue;
    CString path(node->resval.rstring);
    path.Replace(u'/', u'\\');
    files.Add(path);
  }
}

}  // namespace

int Ohm_zdedInvoke(const ZdValueNode* request, ZdValueNode** reply) {
  const bool disableHere = !zdedIsUsrbrkDisabled();
  if (disableHere) zdedDisableUsrbrk();
  const int status = zdedInvoke(request, reply);
  if (disableHere) zdedEnableUsrbrk();
  return status;
}

bool OhmCheckFilesAvailability(CStringArray& files, bool first, bool second, bool third) {
  Request request(kLockCheckNameWithBlank);
  request.fileList(files).shortValue(first ? 1 : 0).flag(second).flag(third).node(RTNIL);
  Reply reply;
  if (!Answered(request, reply, true) || reply.isNil()) return false;
  TakeStringsAsPaths(reply, files);
  return true;
}

bool OhmUnlockFiles(CStringArray& files) {
  Request request(kUnlockName);
  request.fileList(files);
  Reply reply;
  if (!Answered(request, reply, true)) return false;
  if (reply.isNil()) return true;
  TakeStringsAsPaths(reply, files);
  return false;
}

bool LispCheckFileLockStatusAndLock(CStringList& files, bool lock, bool second, CStringList& replyFiles,
                                    bool guardUserBreak) {
  if (files.IsEmpty() || !HasCurrentDocument()) return false;
  Request request(kLockCheckName);
  request.fileList(files);
  (lock ? request.shortValue(1) : request.node(RTNIL)).node(RTNIL).flag(second).node(RTNIL);
  Reply reply;
  if (!Answered(request, reply, guardUserBreak)) return false;
  replyFiles.RemoveAll();
  if (reply.chain->restype != RTSTR) return false;
  for (const ZdValueNode* node = reply.chain; node && node->restype == RTSTR; node = node->rbnext)
    if (node->resval.rstring) replyFiles.AddTail(node->resval.rstring);
  return true;
}

bool LispUpdUnlockFiles(CStringList& files, bool guardUserBreak) {
  if (files.IsEmpty()) return false;
  Request request(kUnlockName);
  request.fileList(files);
  Reply reply;
  return Answered(request, reply, guardUserBreak) && reply.isNil();
}

bool LispDoesFileExist(CString path, CString& found) {
  if (path.IsEmpty()) return false;
  Request request(kFileLookupName);
  request.node(RTNIL).text(path);
  Reply reply;
  if (!Answered(request, reply, false)) return false;
  if (reply.chain->restype == RTSTR) found = reply.chain->resval.rstring;
  return true;
}

bool LispDoesFileExistWrapper(LPCWSTR path, LPWSTR buffer, int size) {
  CString found;
  if (!LispDoesFileExist(path, found)) return false;
  if (!buffer || found.GetLength() >= size) return false;
  std::copy_n(found.GetString(), found.GetLength() + 1, buffer);
  return true;
}

bool RefreshWFRM2ALL() {
  if (!HasCurrentDocument()) return false;
  Request request(kWireVerifyName);
  if (!request.get()) return true;
  Reply reply;
  return zdedInvoke(request.get(), &reply.chain) == RTNORM;
}

namespace ohm_internal {

int LispEvalString(const char16_t* expression, ZdValueNode** reply) {
  if (!HasCurrentDocument()) return kNoCurrentDocument;
  Request request(kEvalName);
  request.text(expression);
  return zdedInvoke(request.get(), reply);
}

int LispRegisterFunction(const char16_t* name) {
  CString expression;
  expression.Format(u"(vl-zeda-defun '%s)", name);
  expression = expression.Left(kRegisterExpressionUnits - 1);
  Reply reply;
  return LispEvalString(expression, &reply.chain);
}

void LispRegisterFunctions() {
  LispRegisterFunction(kLockCheckNameWithBlank);
  LispRegisterFunction(kUnlockName);
  LispRegisterFunction(kWireVerifyName);
}

}  // namespace ohm_internal
