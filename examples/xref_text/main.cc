// Prints the cross-reference text of each bundled record under each bundled
// format, as a coil on the host sheet would show them.
//   usage: ohm_xref_text_example [records.json]
#include <fstream>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>

#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"
#include "win/Utf8.h"

namespace {

using Format = OhmNoRxUtilsXrefTextFormat;

std::u16string Field(const nlohmann::json& object, const char* name) {
  return Utf8ToUtf16(object.value(name, std::string()));
}

Format::RefData ToRefData(const nlohmann::json& r) {
  Format::RefData data;
  data.mDwgPath = Field(r, "dwgPath");
  data.mSheet = Field(r, "sheet");
  data.mRef = Field(r, "ref");
  data.mSheetDwgName = Field(r, "sheetDwgName");
  data.mIecProject = Field(r, "iecProject");
  data.mIecInst = Field(r, "iecInst");
  data.mIecLoc = Field(r, "iecLoc");
  data.mValueA = Field(r, "valueA");
  data.mValueB = Field(r, "valueB");
  return data;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string path = argc > 1 ? argv[1] : OHM_EXAMPLE_RECORDS;
  std::ifstream in(path);
  if (!in) {
    std::cerr << "cannot open " << path << '\n';
    return 1;
  }
  nlohmann::json doc;
  try {
    doc = nlohmann::json::parse(in);
  } catch (const nlohmann::json::exception& e) {
    std::cerr << path << ": " << e.what() << '\n';
    return 2;
  }
  const std::u16string host = Field(doc, "host");
  std::cout << "host drawing: " << Utf16ToUtf8(host) << '\n';
  for (const auto& f : doc.at("formats")) {
    const Format::Option option{Field(f, "same"), Field(f, "other"), f.value("underline", false)};
    std::cout << "\nformat \"" << Utf16ToUtf8(option.mXrefFormat) << "\" / \"" << Utf16ToUtf8(option.mXrefAltFormat)
              << '"' << (option.mUnderline ? " underlined" : "") << '\n';
    for (const auto& r : doc.at("records")) {
      std::u16string text;
      Format::getXrefText(option, host, ToRefData(r), text);
      std::cout << "  " << std::left << std::setw(22) << r.value("dwgPath", "") << Utf16ToUtf8(text) << '\n';
    }
  }
  return 0;
}
