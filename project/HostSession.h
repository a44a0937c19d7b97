// The library attached as the host attaches its module, with a document
// current, so that the library's Lisp bridge (drawing locks) may call. One
// session at a time per process; everything is undone when it ends.
#pragma once

#include <string>

#include "win/WinDef.h"

class ZdApDocument;

class HostSession {
 public:
  // `documentName` (Windows form) names the current document. Throws
  // std::runtime_error when the module's set-up fails.
  explicit HostSession(const std::u16string& documentName);
  ~HostSession();
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;

 private:
  HMODULE mModule;
  ZdApDocument* mDocument = nullptr;
};
