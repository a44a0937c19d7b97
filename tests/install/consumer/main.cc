// A program outside the project that uses the installed library.
#include <iostream>

#include "ohmutils/OhmUtils.h"
#include "win/Utf8.h"

int main() {
  OhmNoRxUtilsXrefTextFormat::RefData data;
  data.mDwgPath = u"C:\\PROJ\\SHT03.DWG";
  data.mSheet = u"3";
  data.mRef = u"105";
  data.mSheetDwgName = u"SHT03";
  data.mIecInst = u"K1";
  data.mIecLoc = u"M2";
  std::u16string text;
  OhmNoRxUtilsXrefTextFormat::getXrefText({u"%S.%N", u"%I+%L/%D-%S.%N", false}, u"C:\\PROJ\\SHT02.DWG", data, text);
  std::cout << Utf16ToUtf8(text) << '\n';
  return 0;
}
