// The project update from drawings written by hand: which symbols become
// which records (conventions), what the engine makes of them, what is
// reported, and the exact edit of a drawing's text.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DxfSnippets.h"
#include "project/AttributeTextEdit.h"
#include "project/ProjectUpdate.h"
#include "project/UpdateReport.h"
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
                  {"B2", "VNONC1", -0.5,
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
      {0xC1, "already in"},     // a second coil K1
      {0, ""},                  // S4.dxf can't be read: named by its line
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

struct EditCase {
  const char* name;
  std::string version, codePage, eol;
  std::string oldBytes, newBytes;  // the value as the file holds it
  std::u16string oldValue, newValue;
};

// Only the value's bytes change, in the file's code page and with its line ends.
TEST(AttributeTextEdit, ReplacesTheValueBytesAndNothingElse) {
  const EditCase cases[] = {
      {"R12, code page, CRLF", "AC1009", "ANSI_1252", "\r\n", "", "\xC4" "1", u"", u"\u00C41"},
      {"2007, UTF-8", "AC1021", "", "\n", "x", "\xC3\x84" "1", u"x", u"\u00C41"},
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
