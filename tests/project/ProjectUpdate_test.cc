// The project update from drawings written by hand: which symbols become
// which records (conventions), what the engine makes of them, what is
// reported, and the exact edit of a drawing's text.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "project/AttributeTextEdit.h"
#include "project/ProjectUpdate.h"
#include "project/UpdateReport.h"
#include "support/DxfSnippet.h"
#include "support/TempFolder.h"
#include "win/Utf8.h"

namespace {

// Sheet 1: coil K1 at line 2 (grid spacing 1 from y = 0) and a NO contact
// whose REF attribute wins over its place; sheet 2: an NC contact on line 7
// and a Form C contact named by its block, with an XREF attribute.
std::vector<std::string> TwoSheets() {
  return {
      DxfSnippet("AC1009", "ANSI_1252",
                 {{"A1", "HCR1", -2.5, {{"TAG1", "K1"}, {"XREF", ""}, {"XREFNO", "old"}, {"XREFNC", ""}}},
                  {"A2", "HNO1", -9.0, {{"TAG2", "K1"}, {"REF", "104"}, {"TERM01", "13"}, {"TERM02", "14"}}}}),
      DxfSnippet("AC1009", "ANSI_1252",
                 {{"B1", "HNC1", -7.2, {{"TAG2", "K1"}, {"TERM01", "21"}, {"TERM02", "22"}}},
                  {"B2",
                   "VNONC1",
                   -0.5,
                   {{"TAG2", "K1"}, {"TERM01", "11"}, {"TERM02", "14"}, {"TERM03", "12"}, {"XREF", ""}}}}),
  };
}

ProjectUpdateResult Plan(TempFolder& folder, const std::vector<std::string>& drawings) {
  for (std::size_t i = 0; i < drawings.size(); ++i) folder.makeFile("S" + std::to_string(i + 1) + ".dxf", drawings[i]);
  return UpdateProject(DescribeFolder(folder.posix()), {});
}

std::string Value(const ProjectUpdateResult& result, std::uint64_t handle, const std::u16string& tag) {
  for (const AttributeChange& change : result.plan.changes) {
    if (change.handle == handle && change.tag == tag) return Utf16ToUtf8(change.newValue);
  }
  return "(unchanged)";
}

TEST(ProjectUpdate, SymbolsBecomeRecordsByTheConventions) {
  TempFolder folder;
  const ProjectUpdateResult result = Plan(folder, TwoSheets());
  EXPECT_TRUE(result.plan.problems.empty());
  const std::pair<std::u16string, std::string> coil[] = {
      {u"XREF", " 1.104;%%u S2:2.207%%u; S2:2.200"},
      {u"XREFNO", " 1.104; S2:2.200"},
      {u"XREFNC", "%%u S2:2.207%%u;%%u S2:2.200%%u"},
  };
  for (const auto& [tag, text] : coil) EXPECT_EQ(Value(result, 0xA1, tag), text) << Utf16ToUtf8(tag);
  EXPECT_EQ(Value(result, 0xB2, u"XREF"), " S1:1.102");  // the contact names its coil's place
  ASSERT_EQ(result.plan.coils.size(), 1u);
  // The places read their texts from the drawings' records: a given
  // reference, or the sheet and the line on the grid.
  const std::vector<std::string> places[] = {
      {"A2", "NO", "1", "104"}, {"B1", "NC", "2", "207"}, {"B2", "NONC", "2", "200"}};
  const std::vector<ContactPlace>& contacts = result.plan.coils[0].contacts;
  ASSERT_EQ(contacts.size(), std::size(places));
  for (std::size_t i = 0; i < contacts.size(); ++i) {
    const std::vector<std::string> shown = {
        HandleText(contacts[i].handle), Utf16ToUtf8(contacts[i].kind(result.drawings)),
        Utf16ToUtf8(contacts[i].sheetText()), Utf16ToUtf8(contacts[i].reference(result.drawings))};
    EXPECT_EQ(shown, places[i]);
  }
  EXPECT_NE(HtmlReport(result).find("<td>Form C</td>"), std::string::npos);
}

TEST(ProjectUpdate, ProblemsAreReportedWithTheirPlaceAndTheRestIsWorkedOut) {
  TempFolder folder;
  std::vector<std::string> drawings = TwoSheets();
  drawings.push_back(DxfSnippet("AC1009", "",
                                {{"C1", "HCR1", 0, {{"TAG1", "K1"}, {"XREF", ""}}},
                                 {"C2", "HNO1", 0, {{"TAG2", "K9"}, {"TERM01", "1"}}},
                                 {"C3", "HXX1", 0, {{"TAG2", "K1"}, {"TERM01", "1"}}},
                                 {"C4", "HNO1", 0, {{"TAG2", "K1"}}}}));
  drawings.push_back("0\nSECTION\n2\nENTITIES\n0\nINSERT\n");
  const ProjectUpdateResult result = Plan(folder, drawings);
  const std::vector<std::pair<std::uint64_t, std::string>> expected = {
      {0xC1, "already in"},  // a second coil K1
      {0, ""},               // S4.dxf can't be read: named by its line
      {0xC2, "which is nowhere"},
      {0xC3, "unknown kind"},
      {0xC4, "without pins"},
  };
  ASSERT_EQ(result.plan.problems.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const ProjectProblem& problem = result.plan.problems[i];
    EXPECT_EQ(problem.handle, expected[i].first) << problem.message;
    EXPECT_NE(problem.message.find(expected[i].second), std::string::npos) << problem.message;
  }
  EXPECT_GT(result.plan.problems[1].line, 0);
  EXPECT_EQ(Value(result, 0xA1, u"XREFNO"), " 1.104; S2:2.200");  // the bad contacts take no part
}

// Every tag that can make a symbol a coil or a contact is looked at, in any
// case, and only those: a coil by "TAG" with CFD1 xdata and a contact by
// "TAG_" are found (and reported, since the conventions find no tag on them);
// terminals and wire numbers are not.
TEST(ProjectUpdate, EveryTagThatMarksACoilOrContactIsFound) {
  std::string drawing = DxfSnippet("AC1009", "",
                                   {{"A1", "HCR1", -1.5, {{"tag1", "K1"}}},
                                    {"A2", "HCR1", -2.5, {{"Tag", "K2"}}},
                                    {"A3", "HNO1", -3.5, {{"tag_x", "K1"}, {"TERM01", "1"}}},
                                    {"A4", "HT0001", -4.5, {{"TAGSTRIP", "X1"}, {"TERM", "1"}}},
                                    {"A5", "HWIRENO", -5.5, {{"WIRENO", "100"}}}});
  const std::size_t attributes = drawing.find("0\nATTRIB\n", drawing.find("5\nA2\n"));
  drawing.insert(attributes, "1001\nCFD1\n1000\n1\n");
  TempFolder folder;
  folder.makeFile("S1.dxf", drawing);
  const ProjectUpdateResult result = UpdateProject(DescribeFolder(folder.posix()), {});
  ASSERT_EQ(result.drawings.size(), 1u);
  EXPECT_EQ(result.drawings[0].coils.size(), 1u);
  const std::pair<std::uint64_t, std::string> expected[] = {{0xA2, "a coil without a tag"},
                                                            {0xA3, "a contact that names no coil"}};
  ASSERT_EQ(result.plan.problems.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(result.plan.problems[i].handle, expected[i].first);
    EXPECT_EQ(result.plan.problems[i].message, expected[i].second);
  }
}

// Changes come drawing by drawing, in each the coils' before the contacts',
// however the coils and their contacts lie across the drawings.
TEST(ProjectUpdate, ChangesComeInDrawingOrder) {
  TempFolder folder;
  const ProjectUpdateResult result =
      Plan(folder, {DxfSnippet("AC1009", "",
                               {{"A1", "HNO1", -1.5, {{"TAG2", "K2"}, {"TERM01", "1"}, {"XREF", ""}}},
                                {"A2", "HCR1", -2.5, {{"TAG1", "K1"}, {"XREF", ""}}}}),
                    DxfSnippet("AC1009", "",
                               {{"B1", "HCR1", -1.5, {{"TAG1", "K2"}, {"XREF", ""}}},
                                {"B2", "HNO1", -2.5, {{"TAG2", "K1"}, {"TERM01", "1"}, {"XREF", ""}}}})});
  std::vector<std::uint64_t> handles;
  for (const AttributeChange& change : result.plan.changes) handles.push_back(change.handle);
  EXPECT_EQ(handles, (std::vector<std::uint64_t>{0xA2, 0xA1, 0xB1, 0xB2}));
}

// A coil's own options (xdata) hold for it alone: the coils before and after
// it keep the project's, on one worker and on two.
TEST(ProjectUpdate, ACoilsOwnOptionsHoldForItAlone) {
  std::string drawing = DxfSnippet("AC1009", "",
                                   {{"A1", "HCR1", -1.5, {{"TAG1", "K1"}, {"XREF", ""}}},
                                    {"A2", "HCR1", -2.5, {{"TAG1", "K2"}, {"XREF", ""}}},
                                    {"A3", "HCR1", -3.5, {{"TAG1", "K3"}, {"XREF", ""}}},
                                    {"A4", "HNO1", -4.5, {{"TAG2", "K1"}, {"TERM01", "1"}}},
                                    {"A5", "HNO1", -5.5, {{"TAG2", "K2"}, {"TERM01", "1"}}},
                                    {"A6", "HNO1", -6.5, {{"TAG2", "K3"}, {"TERM01", "1"}}}});
  const std::string ownFormat = "1001\nKVA_WD_XREF_FORMAT\n1002\n{\n1000\n<%N>\n1002\n}\n0\nATTRIB\n";
  const std::size_t attributes = drawing.find("0\nATTRIB\n", drawing.find("5\nA2\n"));
  drawing.replace(attributes, std::string("0\nATTRIB\n").size(), ownFormat);
  for (unsigned workers : {1u, 2u}) {
    TempFolder folder;
    folder.makeFile("S1.dxf", drawing);
    UpdateOptions options;
    options.workers = workers;
    const ProjectUpdateResult result = UpdateProject(DescribeFolder(folder.posix()), options);
    EXPECT_TRUE(result.plan.problems.empty());
    EXPECT_EQ(Value(result, 0xA1, u"XREF"), " 1.104") << workers;
    EXPECT_EQ(Value(result, 0xA2, u"XREF"), "<105>") << workers;
    EXPECT_EQ(Value(result, 0xA3, u"XREF"), " 1.106") << workers;
  }
}

// Thousands of coils, planned a run at a time: each coil, on either side of
// where one run ends and the next begins, shows its own contact, on one
// worker and on two; coils without contacts change nothing.
TEST(ProjectUpdate, EveryCoilOfALargeProjectShowsItsOwnContacts) {
  constexpr int kCoils = 9000;
  const int withContacts[] = {0, 4095, 4096, 4097, 8191, 8192, kCoils - 1};
  std::vector<SnippetInsert> inserts;  // handles beyond those the snippet gives attributes
  auto hex = [](int number) {
    char text[16];
    std::snprintf(text, sizeof text, "%X", number);
    return std::string(text);
  };
  for (int i : withContacts) {
    inserts.push_back({hex(0x200000 + i),
                       "HNO1",
                       -1.5,
                       {{"TAG2", "K" + std::to_string(i)}, {"REF", std::to_string(i)}, {"TERM01", "1"}}});
  }
  for (int i = 0; i < kCoils; ++i)
    inserts.push_back({hex(0x100000 + i), "HCR1", -2.5, {{"TAG1", "K" + std::to_string(i)}, {"XREF", ""}}});
  TempFolder folder;
  folder.makeFile("S1.dxf", DxfSnippet("AC1009", "", inserts));
  for (unsigned workers : {1u, 2u}) {
    UpdateOptions options;
    options.workers = workers;
    const ProjectUpdateResult result = UpdateProject(DescribeFolder(folder.posix()), options);
    EXPECT_TRUE(result.plan.problems.empty()) << workers;
    EXPECT_EQ(result.plan.changes.size(), std::size(withContacts)) << workers;
    for (int i : withContacts) EXPECT_EQ(Value(result, 0x100000 + i, u"XREF"), " 1." + std::to_string(i)) << workers;
  }
}

TEST(ProjectUpdate, ReadingOnSeveralThreadsGivesTheSameRecordsInProjectOrder) {
  TempFolder folder;
  std::vector<std::string> drawings;
  for (int i = 0; i < 12; ++i) drawings.push_back(TwoSheets()[i % 2]);
  for (std::size_t i = 0; i < drawings.size(); ++i) folder.makeFile("S" + std::to_string(i + 10) + ".dxf", drawings[i]);
  const ProjectDescription project = DescribeFolder(folder.posix());
  const auto one = ReadProjectComponents(project, {false, false, 1, {}});
  const auto four = ReadProjectComponents(project, {false, false, 4, {}});
  ASSERT_EQ(one.size(), four.size());
  for (std::size_t i = 0; i < one.size(); ++i) {
    EXPECT_EQ(one[i].file, four[i].file);
    EXPECT_EQ(one[i].contacts.size(), four[i].contacts.size());
    EXPECT_EQ(one[i].coils.size(), four[i].coils.size());
  }
}

struct ConventionCase {
  const char* name;
  void (*change)(ProjectConventions&);
  std::vector<std::pair<std::string, std::string>> contact;  // its attributes besides TAG2
  std::string coilXref;                                      // the coil's new XREF
  std::size_t problems;
};

void Defaults(ProjectConventions&) {}

// One coil and one HNO1 contact at y = -9: each convention moves what the coil shows.
TEST(ProjectUpdate, EachConventionTakesItsPartOfTheContactRecord) {
  const std::vector<std::pair<std::string, std::string>> pins = {{"TERM01", "13"}, {"TERM02", "14"}};
  const ConventionCase cases[] = {
      {"line 9 of the default grid", Defaults, pins, " 1.109", 0},
      {"a grid from 10 by 5, first line 1",
       [](ProjectConventions& c) {
         c.grid = {10.0, 5.0, 1};
       },
       pins, " 1.104", 0},
      {"a reference attribute",
       [](ProjectConventions& c) { c.referenceAttribute = u"LOC"; },
       {{"LOC", "777"}, {"REF", "555"}, {"TERM01", "1"}},
       " 1.777",
       0},
      {"the kind attribute over the block name", Defaults, {{"CONTACT", "nc"}, {"TERM01", "1"}}, "%%u 1.109%%u", 0},
      {"another kind attribute",
       [](ProjectConventions& c) { c.kindAttribute = u"KIND"; },
       {{"KIND", "NC"}, {"CONTACT", "NO"}, {"TERM01", "1"}},
       "%%u 1.109%%u",
       0},
      {"another pin prefix", [](ProjectConventions& c) { c.pinPrefix = u"PIN"; }, {{"PIN1", "13"}}, " 1.109", 0},
      {"pins not by the prefix", Defaults, {{"PIN1", "13"}, {"TERM", "13"}, {"TERMX", "14"}}, "(unchanged)", 1},
      {"a class that a plain XREF refuses", [](ProjectConventions& c) { c.occurrenceType = 12; }, pins, "(unchanged)",
       0},
  };
  for (const ConventionCase& c : cases) {
    SCOPED_TRACE(c.name);
    TempFolder folder;
    std::vector<std::pair<std::string, std::string>> contact = {{"TAG2", "K1"}};
    contact.insert(contact.end(), c.contact.begin(), c.contact.end());
    folder.makeFile("S1.dxf",
                    DxfSnippet("AC1009", "",
                               {{"A1", "HCR1", -2.5, {{"TAG1", "K1"}, {"XREF", ""}}}, {"A2", "HNO1", -9.0, contact}}));
    ProjectDescription project = DescribeFolder(folder.posix());
    c.change(project.conventions);
    const ProjectUpdateResult result = UpdateProject(project, {});
    EXPECT_EQ(Value(result, 0xA1, u"XREF"), c.coilXref);
    EXPECT_EQ(result.plan.problems.size(), c.problems);
  }
}

TEST(UpdateReport, NamesAreEscapedAndEveryContactHasItsRow) {
  TempFolder folder;
  const ProjectUpdateResult result =
      Plan(folder, {DxfSnippet("AC1009", "",
                               {{"A1", "HCR1", -1, {{"TAG1", "K<1>&"}, {"XREF", ""}}},
                                {"A2", "HNC1", -3, {{"TAG2", "K<1>&"}, {"TERM01", "1"}}},
                                {"A3", "HNO1", -4, {{"TAG2", "K<1>&"}, {"TERM01", "1"}}},
                                {"A4", "HNO1", -5, {{"TAG2", "nowhere"}, {"TERM01", "1"}}}})});
  const std::string html = HtmlReport(result);
  const char* wanted[] = {"<h2>K&lt;1&gt;&amp;</h2>", "<td>103</td><td>NC</td>", "<td>104</td><td>NO</td>",
                          "<td>handle A4</td><td>contact of coil nowhere, which is nowhere</td>"};
  for (const char* text : wanted) EXPECT_NE(html.find(text), std::string::npos) << text;
  EXPECT_EQ(html.find("K<1>"), std::string::npos);
}

struct EditCase {
  const char* name;
  std::string version, codePage, eol;
  std::string oldBytes, newBytes;  // the value as the file holds it
  std::u16string oldValue, newValue;
};

// Only the value's bytes change, in the file's code page and with its line ends.
TEST(AttributeTextEdit, ReplacesTheValueBytesAndNothingElse) {
  const EditCase cases[] = {
      {"R12, code page, CRLF", "AC1009", "ANSI_1252", "\r\n", "",
       "\xC4"
       "1",
       u"", u"\u00C41"},
      {"2007, UTF-8", "AC1021", "", "\n", "x",
       "\xC3\x84"
       "1",
       u"x", u"\u00C41"},
      {"escape for what the page can't hold", "AC1015", "ANSI_1252", "\n", "", "\\U+4E2D", u"", u"\u4E2D"},
  };
  for (const EditCase& c : cases) {
    SCOPED_TRACE(c.name);
    const auto drawing = [&](const std::string& value) {
      return DxfSnippet(c.version, c.codePage, {{"2F", "HCR1", 0, {{"TAG1", "K1"}, {"XREF", value}}}}, c.eol);
    };
    const EditedText edited = EditAttributeValues(drawing(c.oldBytes), {{0x2F, u"xref", c.oldValue, c.newValue}});
    EXPECT_EQ(edited.problem, "");
    EXPECT_EQ(edited.text, drawing(c.newBytes));
  }
}

TEST(AttributeTextEdit, ChangesNothingWhenTheFileIsNotWhatWasRead) {
  const std::string drawing = DxfSnippet("AC1009", "", {{"2F", "HCR1", 0, {{"TAG1", "K1"}, {"XREF", "now"}}}});
  const std::pair<AttributeTextEdit, const char*> cases[] = {
      {{0x2F, u"XREF", u"then", u"new"}, "changed since"},
      {{0x30, u"XREF", u"now", u"new"}, "not in the file"},
      {{0x2F, u"XREFNO", u"now", u"new"}, "not in the file"},
  };
  for (const auto& [edit, problem] : cases) {
    const EditedText edited = EditAttributeValues(drawing, {edit});
    EXPECT_EQ(edited.text, "");
    EXPECT_NE(edited.problem.find(problem), std::string::npos) << edited.problem;
  }
}

}  // namespace
