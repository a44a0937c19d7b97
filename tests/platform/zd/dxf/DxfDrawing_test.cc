#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "support/TempFolder.h"
#include "support/TestName.h"
#include "support/u16.h"
#include "zd/ZdCodes.h"
#include "zd/ZdValueNode_testing.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbDatabase_testing.h"
#include "zd/db/ZdDbDrawingBuilder.h"
#include "zd/dxf/DxfDrawingReader.h"
#include "zd/dxf/DxfDrawingWriter.h"
#include "zd/dxf/DxfEntityClasses.h"
#include "zd/dxf/DxfTags.h"
#include "zd/dxf/DxfValues.h"

namespace {

namespace fs = std::filesystem;

fs::path fixture(const std::string& name) { return fs::path(OHM_FIXTURES_DIR) / "dxf" / name; }

std::string fileBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// What a description of a database shows besides classes, names and texts.
struct Shown {
  bool handles = true;       // of entities and attributes
  bool blockHandles = true;  // of block records
  bool layouts = true;
};

std::string xdataText(const ZdValueNode* chain) {
  std::string text;
  for (; chain; chain = chain->rbnext) {
    text += " " + std::to_string(chain->restype) + ":";
    const int code = chain->restype;
    if ((code >= 1000 && code <= 1003) || code == XD_HANDLE)
      text += chain->resval.rstring ? U8(chain->resval.rstring) : "<null>";
    else if (code == XD_BINARY)
      text += std::to_string(chain->resval.rbinary.clen) + "B";
    else if (code >= 1010 && code <= 1013)
      text += formatDxfReal(chain->resval.rpoint[0]) + "," + formatDxfReal(chain->resval.rpoint[1]) + "," +
              formatDxfReal(chain->resval.rpoint[2]);
    else if (code >= 1040 && code <= 1042)
      text += formatDxfReal(chain->resval.rreal);
    else if (code == XD_SHORT)
      text += std::to_string(chain->resval.rint);
    else if (code == XD_LONG)
      text += std::to_string(chain->resval.rlong);
  }
  return text;
}

std::string handleText(const ZdDbObject& object, bool shown) {
  return shown ? " #" + formatDxfHandle(object.objectHandle().value()) : "";
}

std::string blockNameOf(const ZdDbDatabase& db, ZdDbObjectId id) {
  const auto* block = dynamic_cast<const ZdDbBlockTableRecord*>(db.objectAt(id));
  return block ? U8(block->name()) : "<none>";
}

std::string objectText(const ZdDbDatabase& db, const ZdDbObject& object, const Shown& shown) {
  std::string text = U8(object.isA()->name()) + handleText(object, shown.handles);
  if (const auto* entity = dynamic_cast<const ZdDbEntity*>(&object)) text += " layer=" + U8(entity->layer());
  if (const auto* reference = dynamic_cast<const ZdDbBlockReference*>(&object))
    text += " -> " + (reference->blockTableRecord().isNull() ? "undefined " + U8(reference->undefinedBlockName())
                                                             : blockNameOf(db, reference->blockTableRecord()));
  if (const auto* attribute = dynamic_cast<const ZdDbAttribute*>(&object))
    text += " " + U8(attribute->tagConst() ? attribute->tagConst() : u"<null>");
  if (const auto* single = dynamic_cast<const ZdDbText*>(&object)) text += " \"" + U8(single->textStringConst()) + "\"";
  ZdValueNode* xdata = object.xData();
  text += xdataText(xdata);
  zdutRelRb(xdata);
  return text;
}

// The facts of a drawing that reading and writing must keep, one a line.
std::vector<std::string> describe(const ZdDbDatabase& db, const Shown& shown = {}) {
  std::vector<std::string> lines{U8(db.dwgVersion()) + " " + U8(db.codePage())};
  for (const ZdDbObjectId blockId : db.blockTableRecordIds()) {
    const auto* block = static_cast<const ZdDbBlockTableRecord*>(db.objectAt(blockId));
    lines.push_back("block " + U8(block->name()) + handleText(*block, shown.blockHandles));
    for (const ZdDbObjectId id : block->entityIds()) {
      lines.push_back("  " + objectText(db, *db.objectAt(id), shown));
      if (const auto* reference = dynamic_cast<const ZdDbBlockReference*>(db.objectAt(id)))
        for (const ZdDbObjectId attribute : reference->attributeIds())
          lines.push_back("    " + objectText(db, *db.objectAt(attribute), shown));
    }
  }
  const auto* dictionary = dynamic_cast<const ZdDbDictionary*>(db.objectAt(db.layoutDictionaryId()));
  ZdDbDictionaryIterator* iterator = dictionary && shown.layouts ? dictionary->newIterator() : nullptr;
  for (; iterator && !iterator->done(); iterator->next()) {
    const auto* layout = dynamic_cast<const ZdDbLayout*>(db.objectAt(iterator->objectId()));
    if (!layout) continue;
    lines.push_back("layout " + U8(layout->layoutName()) + " tab " + std::to_string(layout->getTabOrder()) + " " +
                    blockNameOf(db, layout->getBlockTableRecordId()));
  }
  delete iterator;
  return lines;
}

void expectLines(const std::vector<std::string>& actual, const std::vector<std::string>& expected) {
  EXPECT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < std::min(actual.size(), expected.size()); ++i)
    EXPECT_EQ(actual[i], expected[i]) << "line " << i;
}

Zeda::ErrorStatus readFixture(const std::string& name, ZdDbDatabase& db) {
  return db.readDwgFile(U16(fixture(name).string()).c_str());
}

// --- each fixture read, with its facts -----------------------------------------------

struct FixtureCase {
  const char* file;
  std::vector<std::string> expected;
  Shown shown = {};
};

void PrintTo(const FixtureCase& c, std::ostream* os) { *os << c.file; }

class DxfFixtureTest : public ::testing::TestWithParam<FixtureCase> {};

TEST_P(DxfFixtureTest, ReadsTheDrawingsFacts) {
  ZdDbDatabase db;
  ASSERT_EQ(readFixture(GetParam().file, db), Zeda::eOk);
  expectLines(describe(db, GetParam().shown), GetParam().expected);
}

const FixtureCase kFixtures[] = {
    {"r12.dxf",
     {"AC1009 ANSI_1252", "block *Model_Space",
      "  ZdDbBlockReference layer=SYMS -> HPB11 1001:KVA_WD_NP 1002:{ 1000:1 1002:}",
      "    ZdDbAttribute layer=SYMS TAG1 \"PB1\"", "  ZdDbLine layer=WIRES", "block *Paper_Space",
      "  ZdDbCircle layer=0", "block HPB11", "  ZdDbLine layer=0", "  ZdDbAttributeDefinition layer=0",
      "layout Model tab 0 *Model_Space", "layout Layout1 tab 1 *Paper_Space"},
     {false, false, true}},
    {"ac1015_ansi.dxf",
     {"AC1015 ANSI_1252", "block *Model_Space #1F",
      "  ZdDbBlockReference #100 layer=SYMS -> HCR1 1001:KVA_WD_FP 1002:{ 1000:1 1002:} 1001:KVA_WD_XREF_COIL "
      "1002:{ 1000:X 1070:5 1071:70000 1040:2.5 1010:1,2,3 1002:}",
      "    ZdDbAttribute #101 layer=SYMS DESC1 \"Schütz K1\"", "    ZdDbAttribute #102 layer=SYMS TAG1 \"-K1\"",
      "  ZdDbTable #110 layer=0 -> *T1 1001:OHM_TABLE_TYPE 1002:{ 1000:XREF 1002:}",
      "  ZdDbText #120 layer=NOTES \"Größe\"", "  ZdDbLine #130 layer=WIRES", "block *Paper_Space #1B",
      "  ZdDbCircle #140 layer=0", "block HCR1 #A0", "  ZdDbLine #A2 layer=0", "  ZdDbCircle #A3 layer=0",
      "block PANEL #B0", "  ZdDbBlockReference #B2 layer=0 -> HCR1 1001:KVA_WD_FP 1002:{ 1000:1 1002:}",
      "    ZdDbAttribute #B3 layer=0 TAG1 \"-K9\"", "block *T1 #C0", "layout Layout1 tab 1 *Paper_Space",
      "layout Model tab 0 *Model_Space"}},
    {"ac1032_utf8.dxf",
     {"AC1032 ANSI_1252", "block *Model_Space #1F",
      "  ZdDbBlockReference #200 layer=Gerät -> MOTOR 1001:KVA_WD_FP 1002:{ 1000:Ω µF 1002:}",
      "    ZdDbAttribute #201 layer=Gerät DESC1 \"Motor 5 kW – Ω\"", "    ZdDbAttribute #202 layer=Gerät TAG1 \"ΩM1\"",
      "  ZdDbText #210 layer=0 \"Größe \u2126\"", "block *Paper_Space #1B", "  ZdDbMText #220 layer=0",
      "block MOTOR #50", "  ZdDbCircle #52 layer=0", "layout Layout1 tab 1 *Paper_Space",
      "layout Model tab 0 *Model_Space"}},
    {"layouts_crlf.dxf",
     {"AC1018 ANSI_1251", "block *Model_Space #1F", "  ZdDbText #101 layer=0 \"Щит 1\"", "block *Paper_Space #1B",
      "  ZdDbCircle #100 layer=0", "block *Paper_Space0 #40", "  ZdDbLine #41 layer=RAHMEN",
      "layout Layout2 tab 2 *Paper_Space0", "layout Layout1 tab 1 *Paper_Space", "layout Model tab 0 *Model_Space"}},
};

INSTANTIATE_TEST_SUITE_P(Fixtures, DxfFixtureTest, ::testing::ValuesIn(kFixtures),
                         [](const auto& test) { return fs::path(test.param.file).stem().string(); });

TEST(DxfDrawingTest, EntityTypesNameClassesBothWays) {
  // Entity type, class name, and the type written for the class (empty: no class is made).
  const std::tuple<std::string, std::u16string, std::string> cases[] = {
      {"INSERT", u"ZdDbBlockReference", "INSERT"},
      {"3DFACE", u"ZdDbFace", "3DFACE"},
      {"AECC_COGO-POINT", u"ZdDbAecc_cogo-point", "AECC_COGO-POINT"},
      {"circle", u"ZdDbCircle", "CIRCLE"},
      {"", u"", ""},
      {"A B", u"", ""},
      {std::string("A\0", 2), u"", ""},
      {"G\xC3\x84T", u"", ""},
  };
  for (const auto& [type, className, writtenType] : cases) {
    SCOPED_TRACE(type);
    EXPECT_EQ(dxfClassNameOf(type), className);
    const ZdRxClass* cls = dxfEntityClassOf(type);
    ASSERT_EQ(cls == nullptr, writtenType.empty());
    if (!cls) continue;
    EXPECT_EQ(dxfTypeOf(*cls), writtenType);
    EXPECT_TRUE(cls->isDerivedFrom(ZdDbEntity::desc()));
  }
}

// --- writing and reading again -----------------------------------------------------------

struct RoundTripCase {
  const char* file;
  const char* version;
};

void PrintTo(const RoundTripCase& c, std::ostream* os) { *os << c.file << " as " << c.version; }

class DxfRoundTripTest : public ::testing::TestWithParam<RoundTripCase> {};

// The groups of a kept text but those the database models (handles,
// owners, layers, spaces, names, texts and xdata are compared above).
void appendUnmodelled(std::string_view kept, std::vector<std::string>& lines) {
  DxfTagReader reader(kept);
  for (DxfTag tag; reader.next(tag);) {
    const bool modelled =
        tag.code == 5 || tag.code == 8 || tag.code == 67 || tag.code == 1 || tag.code == 2 || tag.code == 3 ||
        tag.code == 330 || tag.code == 350 || tag.code >= 1000 ||
        (tag.code == 9 && (tag.value == "$ACADVER" || tag.value == "$DWGCODEPAGE" || tag.value == "$HANDSEED"));
    if (!modelled) lines.push_back(std::to_string(tag.code) + " " + std::string(tag.value));
  }
}

// What a drawing keeps of its file beside its entities: header, classes,
// tables, objects, and the groups of block records, blocks and layouts.
std::vector<std::string> keptParts(const ZdDbDatabase& db) {
  std::vector<std::string> lines;
  const ZdDbDatabase::KeptDxfParts& parts = db.keptDxfParts();
  for (const std::string_view part : {parts.header, parts.classes, parts.rootDictionary}) appendUnmodelled(part, lines);
  for (const auto& [name, raw] : parts.tables) appendUnmodelled(raw, lines);
  for (const std::string_view object : parts.objects) appendUnmodelled(object, lines);
  for (const ZdDbObjectId id : db.blockTableRecordIds()) {
    const auto* block = static_cast<const ZdDbBlockTableRecord*>(db.objectAt(id));
    appendUnmodelled(block->keptDxfGroups(), lines);
    appendUnmodelled(block->keptDxfBlockGroups(), lines);
  }
  std::unique_ptr<ZdDbDictionaryIterator> layout(
      static_cast<const ZdDbDictionary*>(db.objectAt(db.layoutDictionaryId()))->newIterator());
  for (; !layout->done(); layout->next()) appendUnmodelled(db.objectAt(layout->objectId())->keptDxfGroups(), lines);
  return lines;
}

// The groups each entity keeps beside what the database models, by handle.
std::map<std::uint64_t, std::vector<std::string>> keptGroups(const ZdDbDatabase& db) {
  std::map<std::uint64_t, std::vector<std::string>> groups;
  for (const ZdDbObjectId blockId : db.blockTableRecordIds()) {
    std::vector<ZdDbObjectId> ids = static_cast<const ZdDbBlockTableRecord*>(db.objectAt(blockId))->entityIds();
    for (std::size_t at = 0; at < ids.size(); ++at) {
      const ZdDbObject* object = db.objectAt(ids[at]);
      if (const auto* reference = dynamic_cast<const ZdDbBlockReference*>(object))
        ids.insert(ids.end(), reference->attributeIds().begin(), reference->attributeIds().end());
      appendUnmodelled(object->keptDxfGroups(), groups[object->objectHandle().value()]);
    }
  }
  return groups;
}

TEST_P(DxfRoundTripTest, KeepsWhatTheReaderKeeps) {
  const std::string version = GetParam().version;
  ZdDbDatabase first, second;
  ASSERT_EQ(readFixture(GetParam().file, first), Zeda::eOk);
  std::string text;
  ASSERT_EQ(writeDxfDrawing(first, version, text), Zeda::eOk);
  ASSERT_EQ(readDxfDrawing(text, second), Zeda::eOk);
  // R12 has no block record table and no layouts: those come back as a new drawing's.
  const bool r12 = version == "AC1009";
  const Shown shown{true, !r12, !r12};
  std::vector<std::string> expected = describe(first, shown);
  expected.front() = version + " " + U8(first.codePage());
  expectLines(describe(second, shown), expected);
  EXPECT_GE(second.handseed().value(), first.handseed().value());
  // No group that the database does not model is lost: in the file's own
  // version every object keeps them all, and in any version a second round
  // keeps what the first wrote.
  ZdDbDatabase third;
  std::string again;
  ASSERT_EQ(writeDxfDrawing(second, version, again), Zeda::eOk);
  ASSERT_EQ(readDxfDrawing(again, third), Zeda::eOk);
  EXPECT_EQ(keptGroups(third), keptGroups(second));
  EXPECT_EQ(keptParts(third), keptParts(second));
  if (version == U8(first.dwgVersion())) {
    EXPECT_EQ(keptGroups(second), keptGroups(first));
    EXPECT_EQ(keptParts(second), keptParts(first));
    EXPECT_FALSE(keptGroups(first).empty());
  }
  if (!r12) return;
  const std::vector<std::string> lines = describe(second);
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines[lines.size() - 2], "layout Model tab 0 *Model_Space");
  EXPECT_EQ(lines.back(), "layout Layout1 tab 1 *Paper_Space");
}

// Each fixture in its own version, and the richest one down to R12 and up to the newest.
const RoundTripCase kRoundTrips[] = {
    {"r12.dxf", "AC1009"},         {"ac1015_ansi.dxf", "AC1015"},  {"ac1015_ansi.dxf", "AC1009"},
    {"ac1032_utf8.dxf", "AC1032"}, {"layouts_crlf.dxf", "AC1018"},
};

INSTANTIATE_TEST_SUITE_P(FixturesAndVersions, DxfRoundTripTest, ::testing::ValuesIn(kRoundTrips), [](const auto& test) {
  return fs::path(test.param.file).stem().string() + "_" + test.param.version;
});

// A drawing made in code with xdata of every kind, written to a file named in
// Windows form and read back from it.
TEST(DxfDrawingTest, FileRoundTripKeepsXDataOfEveryKind) {
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  ZdDbBlockReference* reference = build.insertBlock(u"COIL", {{u"TAG1", u"-K1"}, {u"DESC1", u"Line\nbreak"}});
  static const char binary[] = {'\x00', '\x7F', '\xFF'};
  const double point[] = {-1.5, 1e-300, 7};
  ZdValueNode* chain =
      zdutBuildList(XD_APPNAME, u"KVA_ALL", XD_CONTROL, u"{", XD_STRING, u"Ω", XD_HANDLE, u"1F", XD_REAL, 0.1, XD_SHORT,
                    -32768, XD_LONG, 2147483647, XD_CONTROL, u"}", XD_POINT, point, XD_BINARY, 3, binary, 0);
  ASSERT_NE(chain, nullptr);
  ASSERT_EQ(reference->setXData(chain), Zeda::eOk);
  zdutRelRb(chain);
  build.addEntity(u"ZdDbSpline", db.paperSpaceId())->setLayer(u"Ränder");

  const TempFolder folder;
  const std::u16string windowsName = folder.windows("round trip.dxf");
  for (const char* version : {"AC1015", "AC1032"}) {
    SCOPED_TRACE(version);
    ASSERT_EQ(db.dxfOut(windowsName.c_str(), U16(version)), Zeda::eOk);
    ZdDbDatabase again;
    ASSERT_EQ(again.readDwgFile(windowsName.c_str()), Zeda::eOk);
    std::vector<std::string> expected = describe(db);
    expected.front() = std::string(version) + " ANSI_1252";
    expectLines(describe(again), expected);
  }
}

TEST(DxfDrawingTest, WritesTextInTheEncodingOfTheVersion) {
  ZdDbDatabase db;
  ASSERT_EQ(readFixture("ac1032_utf8.dxf", db), Zeda::eOk);
  // Version, and a text the file holds and one it doesn't.
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {"AC1032", "Motor 5 kW \xE2\x80\x93 \xCE\xA9", "\\U+03A9"},  // UTF-8, no escapes needed
      {"AC1015", "Motor 5 kW \x96 \\U+03A9", "\xCE\xA9"},          // ANSI_1252 has the dash but no omega
      {"AC1009", "Gr\xF6\xDF\x65 \\U+2126", "BLOCK_RECORD"},       // R12: no block record table
  };
  for (const auto& [version, present, absent] : cases) {
    SCOPED_TRACE(version);
    std::string text;
    ASSERT_EQ(writeDxfDrawing(db, version, text), Zeda::eOk);
    EXPECT_NE(text.find(present), std::string::npos);
    EXPECT_EQ(text.find(absent), std::string::npos);
    EXPECT_NE(text.find(std::string("$ACADVER\r\n  1\r\n") + version), std::string::npos);
  }
}

TEST(DxfDrawingTest, WriteFailuresLeaveTheFileAlone) {
  ZdDbDatabase db;
  const TempFolder folder;
  folder.makeFile("kept.dxf", "before");
  const std::u16string name = U16(folder.posix("kept.dxf"));
  // What goes wrong, the file and version, whether the layouts can't be walked, the status.
  const std::tuple<const char*, std::u16string, std::u16string, bool, Zeda::ErrorStatus> cases[] = {
      {"unknown version", name, u"AC1099", false, Zeda::eInvalidInput},
      {"layouts can't be walked", name, u"AC1015", true, Zeda::eOutOfMemory},
      {"missing folder", U16(folder.posix("no/x.dxf")), u"AC1015", false, Zeda::eFileAccessErr},
  };
  for (const auto& [what, file, version, failIterator, status] : cases) {
    SCOPED_TRACE(what);
    if (failIterator) zd_testing::failNextObjectIterator();
    EXPECT_EQ(db.dxfOut(file.c_str(), version), status);
    zd_testing::clearDatabaseFaults();
    EXPECT_EQ(folder.read("kept.dxf"), "before");
  }
  EXPECT_EQ(db.dxfOut(nullptr), Zeda::eInvalidInput);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.posix()), {}), 1) << "no copy left behind";
  EXPECT_EQ(db.dxfOut(name.c_str()), Zeda::eOk);
  EXPECT_NE(folder.read("kept.dxf"), "before");
}

// --- what the reader accepts and what it refuses -----------------------------------------

// A small drawing for the cases below to change: a reference with an
// attribute and xdata in model space.
const std::string kBase =
    "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1015\n  0\nENDSEC\n"
    "  0\nSECTION\n  2\nENTITIES\n"
    "  0\nINSERT\n  5\n2A\n  8\nSYMS\n 66\n1\n  2\nCOIL\n1001\nKVA_WD_FP\n1070\n5\n"
    "  0\nATTRIB\n  5\n2B\n  8\nSYMS\n  1\n-K1\n  2\nTAG1\n"
    "  0\nSEQEND\n"
    "  0\nENDSEC\n  0\nEOF\n";

// `text` with the first `from` replaced; a case whose `from` is missing is a
// mistake in the table, which stops the program.
std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  if (at == std::string::npos) throw std::invalid_argument("not in the text: " + from);
  return text.replace(at, from.size(), to);
}

struct MalformedCase {
  const char* what;
  std::string text;          // written to a file; ignored for a missing file
  std::string problem = "";  // "LINE: what was expected"; empty: not checked
  Zeda::ErrorStatus status = Zeda::eBadDxfFile;
};

std::vector<MalformedCase> malformedCases() {
  const std::string fixtureText = fileBytes(fixture("ac1015_ansi.dxf"));
  return {
      {"empty file", ""},
      {"truncated in a section", fixtureText.substr(0, fixtureText.size() / 2)},
      {"missing EOF", replaced(kBase, "  0\nEOF\n", ""), "43: ends before EOF"},
      {"missing ENDSEC", replaced(kBase, "  0\nENDSEC\n  0\nEOF", "  0\nEOF")},
      {"binary DXF", std::string("AutoCAD Binary DXF\r\n\x1a\0\0\0SECTION\0", 30)},
      {"section without a name", replaced(kBase, "  2\nENTITIES\n", "")},
      {"version not a version", replaced(kBase, "AC1015", "R14")},
      {"handle not hexadecimal", replaced(kBase, "2A", "XYZ"), "17: value of group 5 is not a handle"},
      {"attributes without SEQEND", replaced(kBase, "  0\nSEQEND\n", ""), "39: SEQEND after the attributes expected"},
      {"no xdata code after 1001", replaced(kBase, "1070\n5\n", "1070\n5\n  1\nx\n")},
      {"16-bit xdata out of range", replaced(kBase, "1070\n5\n", "1070\n40000\n")},
      {"xdata point without y", replaced(kBase, "1070\n5\n", "1010\n1.0\n1030\n3.0\n")},
      {"entity type in lower case", replaced(kBase, "  0\nINSERT\n", "  0\nINSERt\n"),
       "15: entity type in upper case expected, not \"INSERt\""},
      {"66 not a number", replaced(kBase, " 66\n1\n", " 66\none\n"), "21: value of group 66 is not an integer"},
      {"MINSERT count not a number", replaced(kBase, "  2\nCOIL\n", "  2\nCOIL\n 70\n2x\n"),
       "25: value of group 70 is not an integer"},
      {"block record without a name",
       replaced(kBase, "  0\nSECTION\n  2\nENTITIES\n",
                "  0\nSECTION\n  2\nTABLES\n  0\nTABLE\n  2\nBLOCK_RECORD\n"
                "  0\nBLOCK_RECORD\n  2\n\n  0\nENDTAB\n  0\nENDSEC\n"
                "  0\nSECTION\n  2\nENTITIES\n"),
       "19: block name (group 2) expected"},
      {"missing file", "", "", Zeda::eFileNotFound},
  };
}

void PrintTo(const MalformedCase& c, std::ostream* os) { *os << c.what; }

class DxfMalformedTest : public ::testing::TestWithParam<MalformedCase> {};

TEST_P(DxfMalformedTest, FailsAndLeavesTheDatabaseAsItWas) {
  const MalformedCase& c = GetParam();
  ZdDbDatabase db;
  ZdDbDrawingBuilder build(db);
  ZdDbDrawingBuilder::setOptionXData(*build.insertBlock(u"HCR1", {{u"TAG1", u"-K7"}}), u"KVA_WD_FP", u"1");
  const std::vector<std::string> before = describe(db);
  const ZdDbHandle seed = db.handseed();
  const TempFolder folder;
  const bool missing = c.status == Zeda::eFileNotFound;
  const std::string path = folder.posix(missing ? "missing.dxf" : "in.dxf");
  if (!missing) folder.makeFile("in.dxf", c.text);
  DxfReadReport report;
  EXPECT_EQ(readDxfDrawingFile(path, db, {}, &report), c.status);
  if (!c.problem.empty()) {
    EXPECT_EQ(std::to_string(report.line) + ": " + report.problem, c.problem);
  }
  EXPECT_EQ(db.readDwgFile(U16(path).c_str()), c.status);
  expectLines(describe(db), before);
  EXPECT_EQ(db.handseed(), seed);
}

INSTANTIATE_TEST_SUITE_P(Cases, DxfMalformedTest, ::testing::ValuesIn(malformedCases()),
                         [](const auto& test) { return TestName(test.param.what); });

// Forms the reader takes as the base drawing: each reads to the same facts.
TEST(DxfDrawingTest, AcceptsLooseFormsOfTheSameDrawing) {
  const std::pair<const char*, std::string> cases[] = {
      {"blanks around group codes", replaced(replaced(kBase, " 66\n", "\t66  \n"), "1070\n", "  1070\n")},
      {"anything after EOF", kBase + "  0\nGARBAGE\nno tags here\x01"},
      {"empty and missing handles", replaced(replaced(kBase, "  5\n2A\n", "  5\n\n"), "  5\n2B\n", "")},
  };
  for (const auto& [what, text] : cases) {
    SCOPED_TRACE(what);
    ZdDbDatabase db;
    ASSERT_EQ(readDxfDrawing(text, db), Zeda::eOk);
    expectLines(describe(db, {false, false, false}),
                {"AC1015 ANSI_1252", "block *Model_Space",
                 "  ZdDbBlockReference layer=SYMS -> undefined COIL 1001:KVA_WD_FP 1070:5",
                 "    ZdDbAttribute layer=SYMS TAG1 \"-K1\"", "block *Paper_Space"});
  }
}

// Whole drawings as other programs write them, read plainly or in recover
// mode: what the database then says, with layouts, and the repairs listed.
struct DrawingCase {
  const char* what;
  std::string text;
  std::vector<std::string> expected;  // without handles, and before the two layouts every such drawing has
  std::vector<std::string> repairs = {};
  // Read in recover mode when set: "LINE: what was expected" without it.
  std::string refusal = "";
};

// A file's lines given as words: each blank ends a line.
std::string dxf(std::string words) {
  std::replace(words.begin(), words.end(), ' ', '\n');
  return words + "\n";
}

const std::string kMInsertR12 =
    dxf("0 SECTION 2 BLOCKS 0 BLOCK 2 K 70 0 0 ENDBLK 0 ENDSEC 0 SECTION 2 ENTITIES 0 INSERT 8 0 2 K 0 INSERT 8 0 2 K "
        "70 3 71 2 44 5.0 0 INSERT 8 0 2 NONE 0 ENDSEC 0 EOF");
const std::string kMInsertR2000 =
    dxf("0 SECTION 2 HEADER 9 $ACADVER 1 AC1015 0 ENDSEC 0 SECTION 2 ENTITIES 0 INSERT 5 30 100 AcDbEntity 8 0 100 "
        "AcDbBlockReference 2 K 0 INSERT 5 31 100 AcDbEntity 8 0 100 AcDbMInsertBlock 2 K 70 1 71 4 0 ENDSEC 0 SECTION "
        "2 BLOCKS 0 BLOCK 2 K 0 ENDBLK 0 ENDSEC 0 EOF");
const std::string kEmptyLayoutsR13 =
    dxf("0 SECTION 2 HEADER 9 $ACADVER 1 AC1012 0 ENDSEC 0 SECTION 2 OBJECTS 0 DICTIONARY 5 C 100 AcDbDictionary 3 "
        "ACAD_LAYOUT 350 1A 0 DICTIONARY 5 1A 330 C 100 AcDbDictionary 0 ENDSEC 0 EOF");
const std::string kDamaged =
    dxf("0 SECTION 2 TABLES 0 LAYER 2 0 0 ENDTAB 0 SECTION 2 BLOCKS 0 BLOCK 2 B 0 LINE 8 0 0 ENDSEC 0 SECTION 2 "
        "ENTITIES 0 INSERT 2 B 0 ATTRIB 2 T 1 v 0 CIRCLE 8 0 x1 oops");
// A file that stops in the middle of a line, in its classes.
const std::string kClassesCutMidLine =
    dxf("0 SECTION 2 HEADER 9 $ACADVER 1 AC1015 0 ENDSEC 0 SECTION 2 CLASSES 0 CLASS 1 WIDGET 2") + "AcDb";

std::vector<DrawingCase> drawingCases() {
  return {
      {"MINSERT in R12 beside plain INSERTs",
       kMInsertR12,
       {"AC1009 ANSI_1252", "block *Model_Space", "  ZdDbBlockReference layer=0 -> K",
        "  ZdDbMInsertBlock layer=0 -> K", "  ZdDbBlockReference layer=0 -> undefined NONE", "block *Paper_Space",
        "block K"}},
      {"MINSERT in R2000 by its subclass",
       kMInsertR2000,
       {"AC1015 ANSI_1252", "block *Model_Space", "  ZdDbBlockReference layer=0 -> K",
        "  ZdDbMInsertBlock layer=0 -> K", "block *Paper_Space", "block K"}},
      {"R13 empty layout dictionary",
       kEmptyLayoutsR13,
       {"AC1012 ANSI_1252", "block *Model_Space", "block *Paper_Space"}},
      {"damaged drawing recovered",
       kDamaged,
       {"AC1009 ANSI_1252", "block *Model_Space", "  ZdDbBlockReference layer=0 -> B",
        "    ZdDbAttribute layer=0 T \"v\"", "  ZdDbCircle layer=0", "block *Paper_Space", "block B",
        "  ZdDbLine layer=0"},
       {"5: TABLE head added before \"LAYER\"", "11: ENDSEC of section TABLES added", "23: ENDBLK of block \"B\" added",
        "39: SEQEND added after the attributes", "43: the rest of the file dropped (group code expected)",
        "43: ENDSEC of section ENTITIES added", "43: EOF added"},
       "5: TABLE expected, not \"LAYER\""},
      {"file cut in the middle of a line recovered",
       kClassesCutMidLine,
       {"AC1015 ANSI_1252", "block *Model_Space", "block *Paper_Space"},
       {"21: ENDSEC of section CLASSES added", "21: EOF added"},
       "21: ENDSEC of section CLASSES expected"},
  };
}

void PrintTo(const DrawingCase& c, std::ostream* os) { *os << c.what; }

class DxfDrawingCaseTest : public ::testing::TestWithParam<DrawingCase> {};

TEST_P(DxfDrawingCaseTest, ReadsWhatTheFileSaysAndWritesItBack) {
  const DrawingCase& c = GetParam();
  ZdDbDatabase db;
  DxfReadReport report;
  const bool recover = !c.refusal.empty();
  if (recover) {  // refused without recover mode, at the first damage
    EXPECT_EQ(readDxfDrawing(c.text, db, {}, &report), Zeda::eBadDxfFile);
    EXPECT_EQ(std::to_string(report.line) + ": " + report.problem, c.refusal);
  }
  ASSERT_EQ(readDxfDrawing(c.text, db, {recover}, &report), Zeda::eOk) << report.line << ": " << report.problem;
  const Shown noHandles{false, false, true};
  std::vector<std::string> expected = c.expected;
  expected.insert(expected.end(), {"layout Model tab 0 *Model_Space", "layout Layout1 tab 1 *Paper_Space"});
  expectLines(describe(db, noHandles), expected);
  EXPECT_EQ(report.repairs, c.repairs);
  // Written in its own version and read again, it is the same drawing.
  std::string text;
  ZdDbDatabase again;
  ASSERT_EQ(writeDxfDrawing(db, U8(db.dwgVersion()), text), Zeda::eOk);
  ASSERT_EQ(readDxfDrawing(text, again, {}, &report), Zeda::eOk) << report.line << ": " << report.problem << "\n"
                                                                 << text;
  expectLines(describe(again, noHandles), expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, DxfDrawingCaseTest, ::testing::ValuesIn(drawingCases()),
                         [](const auto& test) { return TestName(test.param.what); });

// Xdata is decoded when it is first asked for, not when the file is read:
// with every value allocation failing the read still succeeds; each
// allocation then failing in turn gives no xdata, until a call that can
// allocate gives all of it; nothing is left behind with the database.
TEST(DxfDrawingTest, AllocationFailuresLeaveNothingBehind) {
  ZdDbDatabase db;
  zd_testing::failValueAllocationAfter(0);
  const Zeda::ErrorStatus read = readFixture("ac1015_ansi.dxf", db);
  zd_testing::failValueAllocationAfter(-1);
  ASSERT_EQ(read, Zeda::eOk);
  const ZdDbObject* reference = db.objectAt(db.getObjectId(ZdDbHandle(0x100)));
  ASSERT_NE(reference, nullptr);
  EXPECT_EQ(reference->ownerId(), db.modelSpaceId());
  EXPECT_EQ(db.objectAt(db.getObjectId(ZdDbHandle(0x101)))->ownerId(), reference->objectId());
  int failures = 0;
  ZdValueNode* chain = nullptr;
  for (long okCalls = 0; okCalls < 200 && !chain; ++okCalls, ++failures) {
    zd_testing::failValueAllocationAfter(okCalls);
    chain = reference->xData();
    zd_testing::failValueAllocationAfter(-1);
  }
  EXPECT_GT(failures, 10);
  EXPECT_EQ(xdataText(chain),
            " 1001:KVA_WD_FP 1002:{ 1000:1 1002:} 1001:KVA_WD_XREF_COIL 1002:{ 1000:X 1070:5 1071:70000 1040:2.5 "
            "1010:1,2,3 1002:}");
  zdutRelRb(chain);
}

// The classes of types that DXF defines are the process's; those of other
// applications' types belong to the drawing that holds them, so reading ever
// new type names does not keep ever more classes.
TEST(DxfDrawingTest, InventedTypesHaveClassesOfTheirDrawing) {
  const std::string text = replaced(kBase, "  0\nENDSEC\n  0\nEOF", "  0\nLINE\n  0\nWIDGET\n  0\nENDSEC\n  0\nEOF");
  ZdDbDatabase first, second;
  ASSERT_EQ(readDxfDrawing(text, first), Zeda::eOk);
  ASSERT_EQ(readDxfDrawing(text, second), Zeda::eOk);
  auto classOf = [](const ZdDbDatabase& db, std::size_t at) {
    return db.objectAt(static_cast<const ZdDbBlockTableRecord*>(db.objectAt(db.modelSpaceId()))->entityIds().at(at))
        ->isA();
  };
  EXPECT_EQ(classOf(first, 1), classOf(second, 1));
  EXPECT_EQ(classOf(first, 1), dxfEntityClassOf("LINE"));
  EXPECT_NE(classOf(first, 2), classOf(second, 2));
  EXPECT_EQ(std::u16string(classOf(first, 2)->name()), u"ZdDbWidget");
  EXPECT_TRUE(classOf(first, 2)->isDerivedFrom(ZdDbEntity::desc()));
}

}  // namespace
