// ohm update as a person runs it, on drawings written by hand: what it
// writes and leaves, with other processes holding locks and with the update
// itself killed midway.
#include <signal.h>

#include <gtest/gtest.h>
#include <chrono>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/ChildProcess.h"
#include "support/DxfSnippet.h"
#include "support/TempFolder.h"

namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// Two sheets in two encodings and line ends, and a third drawing that is cut short.
void MakeProject(const TempFolder& folder) {
  const std::string latinK1 = "K\xC4\x31", utf8K1 = "K\xC3\x84\x31";  // "KÄ1"
  folder.makeFile("p/A.dxf", DxfSnippet("AC1009", "ANSI_1252",
                                        {{"A1", "HCR1", -1, {{"TAG1", latinK1}, {"XREF", ""}, {"XREFNC", "stale"}}},
                                         {"A2", "HNO1", -3, {{"TAG2", latinK1}, {"TERM01", "13"}, {"TERM02", "14"}}}},
                                        "\r\n"));
  folder.makeFile(
      "p/B.dxf",
      DxfSnippet("AC1021", "",
                 {{"B1", "HNC1", -4, {{"TAG2", utf8K1}, {"TERM01", "21"}, {"TERM02", "22"}, {"XREF", ""}}}}));
  folder.makeFile("p/C.dxf", "0\nSECTION\n2\nENTITIES\n0\nINSERT\n");
}

TEST(OhmUpdate, WritesOnlyTheValuesReportsTheBadDrawingAndASecondRunChangesNothing) {
  TempFolder folder;
  MakeProject(folder);
  const std::string a = ReadFile(folder.posix("p/A.dxf")), b = ReadFile(folder.posix("p/B.dxf"));
  EXPECT_EQ(Wait(Spawn(OHM_TOOL, folder, {"update", folder.posix("p"), "--report", folder.posix("r.html")})), 1);
  EXPECT_NE(ReadFile(folder.posix("err")).find("C.dxf:"), std::string::npos);
  EXPECT_NE(ReadFile(folder.posix("r.html")).find("K\xC3\x84"), std::string::npos);
  // Line by line: the three values are new, every other line is the file's own, CRs included.
  const std::vector<std::string> before = Lines(a + b),
                                 after = Lines(ReadFile(folder.posix("p/A.dxf")) + ReadFile(folder.posix("p/B.dxf")));
  ASSERT_EQ(before.size(), after.size());
  std::vector<std::string> changed;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (before[i] != after[i]) changed.push_back(after[i]);
  }
  const std::vector<std::string> expected = {" 1.103;%%u B:2.204%%u\r", "%%u B:2.204%%u\r", " A:1.101"};
  EXPECT_EQ(changed, expected);
  EXPECT_EQ(Wait(Spawn(OHM_TOOL, folder, {"update", folder.posix("p")})), 1);
  EXPECT_NE(ReadFile(folder.posix("out")).find("0 change(s); 0 drawing(s) written"), std::string::npos);
}

// A project file puts B before A, formats references of the same drawing its
// own way and lays lines 2 units apart from line 1; C, not listed, isn't read.
TEST(OhmUpdate, AProjectFileGivesSheetOrderSettingsAndConventions) {
  TempFolder folder;
  MakeProject(folder);
  folder.makeFile("p/project.json", R"({"drawings": ["B.dxf", "A.dxf"],
      "settings": {"WD_XREF_FORMAT": "%S-%N"},
      "conventions": {"grid": {"top": 0, "spacing": 2, "first": 1}}})");
  EXPECT_EQ(Wait(Spawn(OHM_TOOL, folder, {"update", "--dry-run", folder.posix("p/project.json")})), 0)
      << ReadFile(folder.posix("err"));
  const std::vector<std::string> expected = {
      "B.dxf B1 XREF: \"\" -> \" A:2.201\"",
      "A.dxf A1 XREF: \"\" -> \"%%u B:1.103%%u;2-202\"",
      "A.dxf A1 XREFNC: \"stale\" -> \"%%u B:1.103%%u\"",
      "3 change(s); dry run, nothing written",
  };
  EXPECT_EQ(Lines(ReadFile(folder.posix("out"))), expected);
}

TEST(OhmUpdate, ADrawingLockedByAnotherProcessIsLeftAndReported) {
  TempFolder folder, holderOutput;
  MakeProject(folder);
  const std::string a = ReadFile(folder.posix("p/A.dxf"));
  const pid_t holder = Spawn(OHM_TOOL, holderOutput, {"lock", folder.posix("p/A.dxf"), "--run", "sleep 30"});
  for (int i = 0; i < 500 && ReadFile(holderOutput.posix("out")).find("locked") == std::string::npos; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_EQ(Wait(Spawn(OHM_TOOL, folder, {"update", folder.posix("p")})), 1);
  ::kill(holder, SIGTERM);
  Wait(holder);
  EXPECT_NE(ReadFile(folder.posix("err")).find("A.dxf: the drawing is locked by another process"), std::string::npos);
  EXPECT_EQ(ReadFile(folder.posix("p/A.dxf")), a);
  EXPECT_NE(ReadFile(folder.posix("p/B.dxf")).find(" A:1.101"), std::string::npos);
}

// Killed at random moments, the update leaves each drawing as it was or wholly updated.
TEST(OhmUpdate, KilledMidwayLeavesEachDrawingOldOrNew) {
  TempFolder folder;
  MakeProject(folder);
  const std::string oldA = ReadFile(folder.posix("p/A.dxf")), oldB = ReadFile(folder.posix("p/B.dxf"));
  Wait(Spawn(OHM_TOOL, folder, {"update", folder.posix("p")}));
  const std::string newA = ReadFile(folder.posix("p/A.dxf")), newB = ReadFile(folder.posix("p/B.dxf"));
  std::mt19937 random(7);
  int untouched = 0, updated = 0;
  for (int round = 0; round < 40; ++round) {
    folder.makeFile("p/A.dxf", oldA);
    folder.makeFile("p/B.dxf", oldB);
    const pid_t update = Spawn(OHM_TOOL, folder, {"update", folder.posix("p")});
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
    ::kill(update, SIGKILL);
    Wait(update);
    const std::string a = ReadFile(folder.posix("p/A.dxf")), b = ReadFile(folder.posix("p/B.dxf"));
    ASSERT_TRUE(a == oldA || a == newA) << "round " << round;
    ASSERT_TRUE(b == oldB || b == newB) << "round " << round;
    (a == oldA ? untouched : updated)++;
  }
  RecordProperty("untouched", untouched);
  RecordProperty("updated", updated);
}

}  // namespace
