// ohm update as a person runs it, on drawings written by hand: what it
// writes and leaves, with other processes holding locks and with the update
// itself killed midway.
#include <signal.h>

#include <gtest/gtest.h>
#include <chrono>
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
  const std::vector<std::string> before = Lines(folder.read("p/A.dxf") + folder.read("p/B.dxf"));
  EXPECT_EQ(Wait(Spawn(OHM_TOOL, folder, {"update", folder.posix("p"), "--report", folder.posix("r.html")})), 1);
  EXPECT_NE(folder.read("err").find("C.dxf:"), std::string::npos);
  EXPECT_NE(folder.read("r.html").find("K\xC3\x84"), std::string::npos);
  // Line by line: the three values are new, every other line is the file's own, CRs included.
  const std::vector<std::string> after = Lines(folder.read("p/A.dxf") + folder.read("p/B.dxf"));
  ASSERT_EQ(before.size(), after.size());
  std::vector<std::string> changed;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (before[i] != after[i]) changed.push_back(after[i]);
  }
  EXPECT_EQ(changed, (std::vector<std::string>{" 1.103;%%u B:2.204%%u\r", "%%u B:2.204%%u\r", " A:1.101"}));
  EXPECT_EQ(Wait(Spawn(OHM_TOOL, folder, {"update", folder.posix("p")})), 1);
  EXPECT_NE(folder.read("out").find("0 change(s); 0 drawing(s) written"), std::string::npos);
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
      << folder.read("err");
  EXPECT_EQ(Lines(folder.read("out")), (std::vector<std::string>{
                                           "B.dxf B1 XREF: \"\" -> \" A:2.201\"",
                                           "A.dxf A1 XREF: \"\" -> \"%%u B:1.103%%u;2-202\"",
                                           "A.dxf A1 XREFNC: \"stale\" -> \"%%u B:1.103%%u\"",
                                           "3 change(s); dry run, nothing written",
                                       }));
}

TEST(OhmUpdate, ADrawingLockedByAnotherProcessIsLeftAndReported) {
  TempFolder folder, holderOutput;
  MakeProject(folder);
  const std::string a = folder.read("p/A.dxf");
  const pid_t holder = Spawn(OHM_TOOL, holderOutput, {"lock", folder.posix("p/A.dxf"), "--run", "sleep 30"});
  ASSERT_TRUE(WaitForText(holderOutput.posix("out"), "locked"));
  EXPECT_EQ(Wait(Spawn(OHM_TOOL, folder, {"update", folder.posix("p")})), 1);
  ::kill(holder, SIGTERM);
  Wait(holder);
  EXPECT_NE(folder.read("err").find("A.dxf: the drawing is locked by another process"), std::string::npos);
  EXPECT_EQ(folder.read("p/A.dxf"), a);
  EXPECT_NE(folder.read("p/B.dxf").find(" A:1.101"), std::string::npos);
}

// Killed at random moments, the update leaves each drawing as it was or wholly updated.
TEST(OhmUpdate, KilledMidwayLeavesEachDrawingOldOrNew) {
  TempFolder folder;
  MakeProject(folder);
  const std::string oldA = folder.read("p/A.dxf"), oldB = folder.read("p/B.dxf");
  Wait(Spawn(OHM_TOOL, folder, {"update", folder.posix("p")}));
  const std::string newA = folder.read("p/A.dxf"), newB = folder.read("p/B.dxf");
  std::mt19937 random(7);
  int untouched = 0, updated = 0;
  for (int round = 0; round < 40; ++round) {
    folder.makeFile("p/A.dxf", oldA);
    folder.makeFile("p/B.dxf", oldB);
    const pid_t update = Spawn(OHM_TOOL, folder, {"update", folder.posix("p")});
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
    ::kill(update, SIGKILL);
    Wait(update);
    const std::string a = folder.read("p/A.dxf"), b = folder.read("p/B.dxf");
    ASSERT_TRUE(a == oldA || a == newA) << "round " << round;
    ASSERT_TRUE(b == oldB || b == newB) << "round " << round;
    (a == oldA ? untouched : updated)++;
  }
  RecordProperty("untouched", untouched);
  RecordProperty("updated", updated);
}

}  // namespace
