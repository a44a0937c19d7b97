#include "ohmutils/util/OhmUtilsHostFolders.h"

#include <string_view>

#include "win/CrtString.h"
#include "zd/ZdCodes.h"
#include "zd/ZdValueNode.h"
#include "zd/app/GblPm.h"
#include "zd/app/ZdDocManager.h"
#include "zd/app/ZdEnv.h"
#include "zd/app/ZdHostApplicationServices.h"
#include "zd/app/ZdSysVars.h"
#include "zd/lisp/ZdLisp.h"

namespace {

constexpr std::size_t kSearchPathUnits = 32768;
constexpr int kTemplateFolderUnits = 1024;
constexpr const char16_t* kUserFolderName = u"GBL_wd_usr";

// The text of a string reply; null when the node isn't one.
const char16_t* stringOf(const ZdValueNode* node) {
  return node && node->restype == RTSTR ? node->resval.rstring : nullptr;
}

// The user folder through the suite's Lisp function "ohm_get_var".
void userFolderFromLisp(CString& folder) {
  ZdValueNode* request = zdutBuildList(RTSTR, u"ohm_get_var", RTSTR, kUserFolderName, 0);
  if (!request) return;
  ZdValueNode* reply = nullptr;
  if (zdedInvoke(request, &reply) == RTNORM && stringOf(reply)) folder = stringOf(reply);
  zdutRelRb(reply);
  zdutRelRb(request);
}

}  // namespace

bool GetZedaPath(std::vector<std::u16string>& folders) {
  std::u16string value(kSearchPathUnits, u'\0');
  if (zdedGetEnv(u"ZEDA", value.data(), kSearchPathUnits) != RTNORM) return true;
  char16_t* context = nullptr;
  for (char16_t* piece = wcstok_s(value.data(), u";", &context); piece; piece = wcstok_s(nullptr, u";", &context))
    folders.emplace_back(piece);
  return true;
}

bool OhmGetZedaTemplateFolder(CString& folder) {
  const int status = zdedGetEnv(u"TemplatePath", folder.GetBuffer(kTemplateFolderUnits), kTemplateFolderUnits);
  folder.ReleaseBuffer();
  return status != RTERROR;
}

bool GetRoamableRootFolder(char16_t* buffer, int size) {
  const char16_t* root = nullptr;
  if (zddbHostApplicationServices()->getRoamableRootFolder(root) != 0 || !root || !buffer) return false;
  if (size <= 0 || std::u16string_view(root).size() >= static_cast<std::size_t>(size)) return false;
  return wcscpy_s(buffer, static_cast<std::size_t>(size), root) == 0;
}

bool GetUserDirectory(CString& folder) {
  if (zdDocManagerPtr()->curDocument()) {
    userFolderFromLisp(folder);
  } else if (const char16_t* value = stringOf(GblPm_GetGblValue(kUserFolderName))) {
    folder = value;
  }
  return true;
}

int GetDWGTITLEDValue() {
  ZdValueNode* node = zdutNewRb(RTSHORT);
  if (!node) return 0;
  const int value = zdedGetVar(u"DWGTITLED", node) == RTNORM && node->restype == RTSHORT ? node->resval.rint : 0;
  zdutRelRb(node);
  return value;
}
