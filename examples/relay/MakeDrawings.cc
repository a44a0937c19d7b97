// Writes the drawings of the relay example with the project's DXF writer.
// Three relays, each coil showing its cross-references in one of the three
// presentations; every symbol carries its line reference (REF):
//   CTRL01.dxf  sheet 1 in model space: the coils of CR1 (attribute text),
//               CR2 (contact lines) and CR3 (table); a NO contact of CR1
//               and one of CR3. Sheet 2, the paper layout "SHEET 2": an NC
//               contact of CR1 and one of CR3.
//   CTRL02.dxf  sheet 3: CR1's full Form C contact and a partial one (its
//               NO side), CR2's Form C and NO contacts; two empty paper
//               layouts whose tab order differs from the order of their names.
// Two contacts carry an XREF attribute, which names their coil's place.
// usage: ohm_make_example_drawings OUTPUT_FOLDER
#include <filesystem>
#include <iostream>
#include <string>

#include "win/fs/PathMapping.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

using Attributes = ZdDbDrawingBuilder::Attributes;

// The coil of relay `tag` with the options of one cross-reference presentation.
void InsertCoil(ZdDbDrawingBuilder& build, const std::u16string& tag, const std::u16string& ref,
                const std::u16string& style) {
  ZdDbBlockReference* coil =
      build.insertBlock(u"HCR1", {{u"TAG1", tag}, {u"XREF", u""}, {u"XREFNO", u""}, {u"XREFNC", u""}, {u"REF", ref}});
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_XREF_STYLE", style);
  ZdDbDrawingBuilder::setOptionXData(*coil, u"KVA_WD_PINLIST", u"3,31,34,32");
}

// A contact of coil `tag` at line reference `ref` with its terminals.
void InsertContact(ZdDbDrawingBuilder& build, const std::u16string& block, const std::u16string& tag,
                   const std::u16string& ref, const Attributes& pins, ZdDbObjectId space = {}) {
  Attributes attributes = {{u"TAG2", tag}, {u"REF", ref}};
  attributes.insert(attributes.end(), pins.begin(), pins.end());
  build.insertBlock(block, attributes, space);
}

bool Write(const ZdDbDatabase& database, const std::filesystem::path& file) {
  const std::u16string name = PosixPathToWindows(std::filesystem::absolute(file).lexically_normal().string());
  if (database.dxfOut(name.c_str(), u"AC1032") == Zeda::eOk) return true;
  std::cerr << "can't write " << file.string() << '\n';
  return false;
}

bool WriteControl01(const std::filesystem::path& folder) {
  ZdDbDatabase database(false);
  ZdDbDrawingBuilder build(database);
  database.addLayout(u"Model", 0, database.modelSpaceId());
  database.addLayout(u"SHEET 2", 1, database.paperSpaceId());
  InsertCoil(build, u"CR1", u"101", u"0");
  InsertCoil(build, u"CR2", u"102", u"1");
  InsertCoil(build, u"CR3", u"103", u"2");
  InsertContact(build, u"HNO1", u"CR1", u"104", {{u"TERM01", u"13"}, {u"TERM02", u"14"}, {u"XREF", u""}});
  InsertContact(build, u"HNO1", u"CR3", u"106", {{u"TERM01", u"13"}, {u"TERM02", u"14"}});
  InsertContact(build, u"HNC1", u"CR1", u"205", {{u"TERM01", u"21"}, {u"TERM02", u"22"}}, database.paperSpaceId());
  InsertContact(build, u"HNC1", u"CR3", u"207", {{u"TERM01", u"21"}, {u"TERM02", u"22"}}, database.paperSpaceId());
  return Write(database, folder / "CTRL01.dxf");
}

bool WriteControl02(const std::filesystem::path& folder) {
  ZdDbDatabase database(false);
  ZdDbDrawingBuilder build(database);
  database.addLayout(u"Model", 0, database.modelSpaceId());
  database.addLayout(u"B-DETAIL", 1, database.paperSpaceId());
  database.addLayout(u"A-OVERVIEW", 2, database.blockTableRecordId(u"*Paper_Space0", true));
  InsertContact(build, u"HNONC1", u"CR1", u"301",
                {{u"TERM01", u"11"}, {u"TERM02", u"14"}, {u"TERM03", u"12"}, {u"XREF", u""}});
  InsertContact(build, u"HNO1", u"CR1", u"305", {{u"TERM01", u"31"}, {u"TERM02", u"34"}});
  InsertContact(build, u"HNONC1", u"CR2", u"307", {{u"TERM01", u"11"}, {u"TERM02", u"14"}, {u"TERM03", u"12"}});
  InsertContact(build, u"HNO1", u"CR2", u"308", {{u"TERM01", u"43"}, {u"TERM02", u"44"}});
  return Write(database, folder / "CTRL02.dxf");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: ohm_make_example_drawings OUTPUT_FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  return WriteControl01(folder) && WriteControl02(folder) ? 0 : 1;
}
