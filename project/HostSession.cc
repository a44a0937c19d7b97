#include "project/HostSession.h"

#include <memory>
#include <stdexcept>

#include "ohmutils/host/OhmUtilsModule.h"
#include "win/module/Module.h"
#include "zd/app/ZdDocManager.h"
#include "zd/db/ZdDbDatabase.h"

HostSession::HostSession(const std::u16string& documentName) : mModule(GetModuleHandleW(u"OhmUtils.dll")) {
  if (!DllMain(mModule, DLL_PROCESS_ATTACH, nullptr)) throw std::runtime_error("the library's module set-up failed");
  mDocument = zdDocManagerPtr()->addDocument(documentName, std::make_shared<ZdDbDatabase>());
}

HostSession::~HostSession() {
  zdDocManagerPtr()->closeDocument(mDocument);
  DllMain(mModule, DLL_PROCESS_DETACH, nullptr);
}
