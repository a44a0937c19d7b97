// The host's documents: every drawing open in the session, each with its full
// file name (Windows form) and its database, and at most one current
// document. The document manager owns the documents; a document owns its
// database (shared with whoever opened it through the host).
//
// Iterators are new objects that the caller deletes; the host counts live
// ones (ZdDocManager_testing.h). Closing a document while an iterator walks
// the list is not allowed, as in the host.
//
// Thread safety: the host's main thread only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "OhmPlatformExport.h"

OHM_PLATFORM_API_BEGIN

class ZdDbDatabase;

class ZdApDocument {
 public:
  ZdApDocument(std::u16string fileName, std::shared_ptr<ZdDbDatabase> database);
  virtual ~ZdApDocument();
  ZdApDocument(const ZdApDocument&) = delete;
  ZdApDocument& operator=(const ZdApDocument&) = delete;

  // Full file name in Windows form; never null.
  const char16_t* fileName() const noexcept { return mFileName.c_str(); }
  // The document's database; may be null for a document that has none.
  ZdDbDatabase* database() const noexcept { return mDatabase.get(); }

 private:
  std::u16string mFileName;
  std::shared_ptr<ZdDbDatabase> mDatabase;
};

class ZdApDocumentIterator {
 public:
  virtual ~ZdApDocumentIterator();
  // True past the last document.
  bool done() const noexcept;
  // Moves to the next document.
  void step() noexcept;
  // The document at the current position; null when done.
  ZdApDocument* document() const noexcept;

 private:
  friend class ZdApDocManager;
  explicit ZdApDocumentIterator(std::vector<ZdApDocument*> documents);
  std::vector<ZdApDocument*> mDocuments;  // a snapshot, in opening order
  std::size_t mPosition = 0;
};

class ZdApDocManager {
 public:
  // The current document; null when none is current.
  ZdApDocument* curDocument() const noexcept { return mCurrent; }
  // A new iterator over the documents in opening order, owned by the caller;
  // null when the host can't make one.
  ZdApDocumentIterator* newZdApDocumentIterator() const;
  // Number of open documents.
  int documentCount() const noexcept { return static_cast<int>(mDocuments.size()); }

  // Host side: opens a document (it becomes current); the manager owns it.
  ZdApDocument* addDocument(std::u16string fileName, std::shared_ptr<ZdDbDatabase> database);
  // Closes a document; if it was current, none is current afterwards. False for a stranger.
  bool closeDocument(ZdApDocument* document);
  // Closes every document.
  void closeAll();

 private:
  std::vector<std::unique_ptr<ZdApDocument>> mDocuments;
  ZdApDocument* mCurrent = nullptr;
};

// The host's document manager; never null.
ZdApDocManager* zdDocManagerPtr();

OHM_PLATFORM_API_END
