#include "zd/app/ZdDocManager.h"

#include <algorithm>
#include <atomic>

#include "zd/app/ZdDocManager_testing.h"

namespace {

std::atomic<long> gLiveIterators{0};
std::atomic<bool> gFailNextIterator{false};

}  // namespace

ZdApDocument::ZdApDocument(std::u16string fileName, std::shared_ptr<ZdDbDatabase> database)
    : mFileName(std::move(fileName)), mDatabase(std::move(database)) {}

ZdApDocument::~ZdApDocument() = default;

ZdApDocumentIterator::ZdApDocumentIterator(std::vector<ZdApDocument*> documents) : mDocuments(std::move(documents)) {
  ++gLiveIterators;
}

ZdApDocumentIterator::~ZdApDocumentIterator() { --gLiveIterators; }

bool ZdApDocumentIterator::done() const noexcept { return mPosition >= mDocuments.size(); }

void ZdApDocumentIterator::step() noexcept {
  if (!done()) ++mPosition;
}

ZdApDocument* ZdApDocumentIterator::document() const noexcept { return done() ? nullptr : mDocuments[mPosition]; }

ZdApDocumentIterator* ZdApDocManager::newZdApDocumentIterator() const {
  if (gFailNextIterator.exchange(false)) return nullptr;
  std::vector<ZdApDocument*> documents;
  for (const auto& document : mDocuments) documents.push_back(document.get());
  return new ZdApDocumentIterator(std::move(documents));
}

ZdApDocument* ZdApDocManager::addDocument(std::u16string fileName, std::shared_ptr<ZdDbDatabase> database) {
  mDocuments.push_back(std::make_unique<ZdApDocument>(std::move(fileName), std::move(database)));
  mCurrent = mDocuments.back().get();
  return mCurrent;
}

bool ZdApDocManager::closeDocument(ZdApDocument* document) {
  const auto it =
      std::find_if(mDocuments.begin(), mDocuments.end(), [&](const auto& open) { return open.get() == document; });
  if (it == mDocuments.end()) return false;
  if (mCurrent == document) mCurrent = nullptr;
  mDocuments.erase(it);
  return true;
}

void ZdApDocManager::closeAll() {
  mCurrent = nullptr;
  mDocuments.clear();
}

ZdApDocManager* zdDocManagerPtr() {
  static ZdApDocManager manager;
  return &manager;
}

namespace zd_testing {

long liveDocumentIterators() noexcept { return gLiveIterators.load(); }
void failNextDocumentIterator() noexcept { gFailNextIterator = true; }

}  // namespace zd_testing
