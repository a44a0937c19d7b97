// The ohm tool as a person or a script uses it: run as a process, its
// standard output compared with the example's expected output, its exit
// status and its messages checked for bad usage and bad input.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/ChildProcess.h"
#include "support/ScopedEnv.h"
#include "win/WinError.h"
#include "win/registry/Registry.h"
#include "win/registry/Registry_testing.h"

namespace {

const std::string kExample = OHM_EXAMPLES_DIR "/relay";
const std::string kByHand = OHM_EXAMPLES_DIR "/xref_by_hand";

RunResult Ohm(const std::vector<std::string>& args) { return RunProgram(OHM_TOOL, args); }

// The example's commands and the output its README shows; a kind by its
// number lists what the same kind by its name does. JSON output is compared
// as JSON.
TEST(OhmTool, ExampleCommandsPrintTheExpectedOutput) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"update", "--dry-run", kExample}, kExample + "/expected/update.txt"},
      {{"classify", kExample + "/CTRL01.dxf"}, kExample + "/expected/classify-ctrl01.txt"},
      {{"classify", kExample + "/CTRL02.dxf", "--kind", "Tag2"}, kExample + "/expected/classify-ctrl02-tag2.txt"},
      {{"classify", kExample + "/CTRL02.dxf", "--kind", "3"}, kExample + "/expected/classify-ctrl02-tag2.txt"},
      {{"layouts", kExample + "/CTRL02.dxf"}, kExample + "/expected/layouts-ctrl02.txt"},
      {{"xdata", kExample + "/CTRL01.dxf", "2D"}, kExample + "/expected/xdata-graphic.txt"},
      {{"xref", kByHand + "/project.json"}, kByHand + "/expected/xref.txt"},
      {{"xref", "--json", kByHand + "/project.json"}, kByHand + "/expected/xref.json"},
      {{"update", "--dry-run", "--json", kExample}, kExample + "/expected/update.json"},
  };
  for (const auto& [args, expected] : cases) {
    SCOPED_TRACE(expected);
    const RunResult result = Ohm(args);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    if (expected.ends_with(".json")) {
      EXPECT_EQ(nlohmann::json::parse(result.out, nullptr, false), nlohmann::json::parse(ReadFile(expected)));
    } else {
      EXPECT_EQ(result.out, ReadFile(expected));
    }
  }
}

TEST(OhmTool, ExampleDrawingsAreWhatTheWriterMakes) {
  TempFolder folder;
  ASSERT_EQ(RunProgram(OHM_MAKE_DRAWINGS, {folder.posix()}).status, 0);
  for (const char* name : {"CTRL01.dxf", "CTRL02.dxf"})
    EXPECT_EQ(ReadFile(folder.posix(name)), ReadFile(kExample + "/" + name)) << name;
}

// A run and how it must end: its status, and text expected within its
// standard output (or, with `wholeOut`, as all of it) and error ("" for
// none). A failed run prints nothing.
struct StatusCase {
  const char* what;
  std::vector<std::string> args;
  int status;
  std::string inOut;
  std::string inErr;
};

void ExpectRun(const StatusCase& c, bool wholeOut = false) {
  SCOPED_TRACE(c.what);
  const RunResult result = Ohm(c.args);
  EXPECT_EQ(result.status, c.status) << result.err;
  EXPECT_NE(result.out.find(c.inOut), std::string::npos) << result.out;
  EXPECT_NE(result.err.find(c.inErr), std::string::npos) << result.err;
  if (wholeOut || c.status != 0) {
    EXPECT_EQ(result.out, wholeOut ? c.inOut : "");
  }
}

TEST(OhmTool, ExitStatusesAndMessages) {
  TempFolder folder;
  // An INSERT whose xdata is its application's name alone.
  folder.makeFile("alone.dxf",
                  "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nK\n0\nENDBLK\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
                  "0\nINSERT\n5\nA3\n2\nK\n1001\nKVA_WD_FP\n0\nENDSEC\n0\nEOF\n");
  folder.makeFile("cut.dxf", "0\nSECTION\n2\nENTITIES\n0\nINSERT\n2\nNOWHERE\n");
  folder.makeFile("not.dxf", "this is no drawing\n");
  folder.makeFile("bad.dxf", "0\nSECTION\n2\nENTITIES\n0\nINSERT\n2\nB\n 70\nx\n0\nENDSEC\n0\nEOF\n");
  const std::string ctrl01 = kExample + "/CTRL01.dxf", cut = folder.posix("cut.dxf");
  const std::vector<std::string> recover = {"classify", cut, "--recover"};
  const std::vector<StatusCase> cases = {
      {"version", {"--version"}, 0, "ohm ", ""},
      {"bad usage", {}, 2, "", "subcommand"},
      {"missing project", {"xref", folder.posix("none.json")}, 2, "", "none.json: can't read"},
      {"missing drawing", {"layouts", folder.posix("none.dxf")}, 2, "", "none.dxf: no such file"},
      {"a folder", {"layouts", folder.posix("")}, 2, "", ": is a folder, not a drawing"},
      {"a folder as project", {"xref", folder.posix("")}, 2, "", ": is a folder, not a project file"},
      {"not a drawing", {"classify", folder.posix("not.dxf")}, 2, "", "not.dxf:1: group code expected"},
      {"damaged drawing", {"classify", cut}, 2, "", "cut.dxf:9: ENDSEC of section ENTITIES expected"},
      {"bad value", {"xdata", folder.posix("bad.dxf"), "1"}, 2, "", "bad.dxf:9: value of group 70 is not an integer"},
      {"damaged drawing recovered", recover, 0, "NOWHERE", "cut.dxf:9: EOF added (repaired)"},
      {"undefined block", recover, 0, "", "warning: block \"NOWHERE\" is referred to but never defined"},
      {"xdata of a name alone", {"classify", folder.posix("alone.dxf")}, 0, "A3\tmodel\tK\tFP\n", ""},
      {"xdata of a name alone kept", {"xdata", folder.posix("alone.dxf"), "A3"}, 0, "1001\tKVA_WD_FP\n", ""},
      {"bad kind", {"classify", ctrl01, "--kind", "Coil"}, 2, "", "\"Coil\" is no kind"},
      {"kind by number", {"classify", ctrl01, "--kind", "99"}, 2, "", "is no kind"},
      {"bad handle", {"xdata", ctrl01, "XYZ"}, 2, "", "\"XYZ\" is no handle"},
      {"unknown handle", {"xdata", ctrl01, "FFFF"}, 2, "", "no object with handle FFFF"},
      {"no xdata of that application", {"xdata", ctrl01, "2C", "NOAPP"}, 1, "", "has no xdata of NOAPP"},
  };
  for (const StatusCase& c : cases) ExpectRun(c);
}

// A project file that isn't JSON, or doesn't follow the schema, names the
// place and what was expected; the shell sees status 2 and nothing on
// standard output.
struct ProjectCase {
  std::string text;
  const char* at;  // where the message points: the last place of this in the text; null: its start
  const char* message;
};

TEST(OhmTool, BadProjectFilesNameLineColumnAndWhatWasExpected) {
  const std::string head = R"({"hostDrawing": "C:\\A.DWG", "coils": {"K1": [{"drawing": "C:\\A.DWG"}]})";
  const std::string entity = head + R"(, "entities": [{"name": "e", "coil": "K1", )";
  const std::vector<ProjectCase> cases = {
      {"{\n  \"hostDrawing\": \"x\",\n  \"coils\": {}\n  \"entities\": []\n}\n", "\": [",
       "syntax error while parsing object"},
      {"[1, 2]", nullptr, "expected a project object, found array"},
      {"{}", nullptr, "expected a member \"hostDrawing\""},
      {R"({"hostDrawing": 7})", "7", "expected a string, found number"},
      {head + "}", nullptr, "expected a member \"entities\""},
      {entity + R"("xdata": {"A": 1}}]})", "1}", "expected a string, found number"},
      {R"({"hostDrawing": "x", "coils": {"K1": [{"drawing": "d", "type": "8"}]}, "entities": []})", "\"8\"",
       "expected an integer, found string"},
      {head + R"(, "entities": [], "extra": 1})", "\"extra\"", "unknown member \"extra\"; expected one of"},
      {head + R"(, "settings": {"WD_NOPE": "1"}, "entities": []})", "\"WD_NOPE\"", "expected an option number"},
      {head + R"(, "settings": {"14": 1}, "entities": []})", "1}", "expected a string, found number"},
      {entity + R"("xdata": {}, "drawing": "a.dxf"}]})", "{\"name\"", "expected either \"drawing\" and \"handle\""},
      {entity + R"("drawing": "a.dxf", "handle": "0"}]})", "\"0\"", "expected a handle"},
      {entity + R"("drawing": "a.dxf"}]})", "{\"name\"", "expected a member \"handle\""},
      {entity + R"("handle": "1F"}]})", "\"1F\"", "expected a \"drawing\" beside the \"handle\""},
      {entity + R"("xdata": {}, "rows": [["a", 2]]}]})", "2]", "expected a string, found number"},
      {head + R"(, "entities": [{"name": "e", "coil": "K9", "xdata": {}}]})", "\"K9\"", "expected the name of a coil"},
      {R"({"hostDrawing": "x", "coils": {"K1": [{"drawing": "d", "pins": {}}]}, "entities": []})", "{}}",
       "expected an array of pin objects, found object"},
      {R"({"hostDrawing": "x", "coils": {"K1": [{"drawing": "d", "type": 4294967304}]}, "entities": []})", "4294967304",
       "expected an integer from -2147483648 to 2147483647, found 4294967304"},
      {R"({"hostDrawing": "x", "coils": {"K1": [{"drawing": "d", "type": 1e400}]}, "entities": []})", "1e400",
       "number 1e400 is too large"},
      {R"({"hostDrawing": "x", "coils": {}, "entities": [], "coils": {}})", "\"coils\"",
       "member \"coils\" is named twice in one object"},
      // Escaped quotes and backslashes inside names: a quote after an even run of backslashes closes the name.
      {R"({"hostDrawing": "x", "coils": {"K\"\\": [], "K\\": [], "K\"\\": []}, "entities": []})", R"("K\"\\")",
       R"(member "K\"\\" is named twice in one object)"},
  };
  TempFolder folder;
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const ProjectCase& c = cases[i];
    SCOPED_TRACE(c.text);
    const std::string name = "p" + std::to_string(i) + ".json";
    folder.makeFile(name, c.text);
    const std::size_t at = c.at ? c.text.rfind(c.at) : 0;
    const std::size_t lineStart = at == 0 ? 0 : c.text.rfind('\n', at - 1) + 1;  // 0 when on line 1
    const auto line = std::count(c.text.begin(), c.text.begin() + static_cast<std::ptrdiff_t>(at), '\n') + 1;
    const std::string place = std::to_string(line) + ":" + std::to_string(at - lineStart + 1) + ": ";
    ExpectRun({c.message, {"xref", folder.posix(name)}, 2, "", folder.posix(name) + ":" + place + c.message});
  }
}

// Entities that can't be worked out fail alone: the others are printed and
// the run ends with status 1.
TEST(OhmTool, FailedEntitiesGiveStatusOneAndTheOthersArePrinted) {
  TempFolder folder;
  folder.makeFile("p.json", R"({
    "hostDrawing": "C:\\A.DWG",
    "settings": {"14": "%S.%N"},
    "coils": {"K1": [{"drawing": "C:\\A.DWG", "properties": {"CONTACT": "NO", "REF": "1"},
                      "sheetProperties": {"SHEET": "2"}, "pins": [{"TERMCODE": "x", "TERM": "13"}]}]},
    "entities": [
      {"name": "no style", "coil": "K1", "xdata": {"KVA_WD_XREF_STYLE": "7"}},
      {"name": "bad pin", "coil": "K1", "xdata": {"KVA_WD_XREF_STYLE": "1"}},
      {"name": "text", "coil": "K1", "xdata": {"KVA_WD_XREF_STYLE": "0"}, "attributes": ["XREFNO"]}
    ]})");
  const RunResult result = Ohm({"xref", folder.posix("p.json")});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out,
            "entity \"no style\" (none)\n"
            "  error: the entity asks for no presentation: its style option is neither \"0\", \"1\" nor \"2\"\n"
            "entity \"bad pin\" (graphic)\n"
            "  error: the cross-reference failed: invalid stoi argument\n"
            "entity \"text\" (text)\n"
            "  XREFNO: \"2.1\"\n");
  EXPECT_NE(result.err.find("entity \"bad pin\": the cross-reference failed"), std::string::npos) << result.err;
}

// Locks belong to the process that takes them: `lock --run` holds them while
// its command runs, where another ohm sees them taken; afterwards they are
// free again, and an unrelated process can't release them.
TEST(OhmTool, LocksLastWhileTheCommandRuns) {
  TempFolder folder;
  folder.makeFile("a.dxf");
  folder.makeFile("b.dxf");
  const std::string a = folder.posix("a.dxf"), b = folder.posix("b.dxf"), missing = folder.posix("c.dxf");
  const std::string inner = std::string(OHM_TOOL) + " lock --check " + a + " " + b + "; exit 3";
  const std::vector<StatusCase> steps = {
      {"held while the command runs, which gives the status",
       {"lock", a, b, "--run", inner},
       3,
       a + "\tlocked\n" + b + "\tlocked\n" + a + "\tnot available\n" + b + "\tnot available\n",
       ""},
      {"free afterwards", {"lock", "--check", a, b}, 0, a + "\tavailable\n" + b + "\tavailable\n", ""},
      {"the command runs only when every drawing is had",
       {"lock", a, missing, "--run", "exit 0"},
       1,
       a + "\tlocked\n" + missing + "\tnot available\n",
       ""},
      {"not released by another process", {"unlock", a}, 1, a + "\tnot held by this process\n", ""},
  };
  for (const StatusCase& c : steps) ExpectRun(c, true);
}

// Settings through both stores, each step one row: the registry store of a
// temporary folder, and an App.config file there.
TEST(OhmTool, SettingsOfBothStores) {
  TempFolder folder;
  const ScopedEnv store("OHM_REGISTRY_STORE", folder.posix("registry.db"));
  win_testing::useRegistryStore(folder.posix("registry.db"));
  folder.makeFile("cfg/App.config",
                  "<?xml version=\"1.0\"?>\n<!-- kept -->\n<Settings>\n  <Setting Name=\"SchSortOrder\">\n"
                  "    <Property Name=\"Order\" Value=\"1\"/>\n  </Setting>\n</Settings>\n");
  folder.makeFile("bad/App.config", "<Settings>");
  const std::string cfg = folder.posix("cfg"), bad = folder.posix("bad");
  const std::vector<StatusCase> steps = {
      {"reg set", {"reg", "set", "Paths", "Lib", "\\proj\\lib"}, 0, "", ""},
      {"reg get", {"reg", "get", "paths", "LIB"}, 0, "\\proj\\lib\n", ""},
      {"reg get missing", {"reg", "get", "Paths", "Nope"}, 1, "", "no setting Paths\\Nope"},
      {"reg get with a value", {"reg", "get", "Paths", "Lib", "x"}, 2, "", "get takes no VALUE"},
      {"config get", {"config", "get", "SchSortOrder", "Order", "--folder", cfg}, 0, "1\n", ""},
      {"config set by number", {"config", "set", "3", "Order", "7", "--folder", cfg}, 0, "", ""},
      {"config get after set", {"config", "get", "SchSortOrder", "Order", "--folder", cfg}, 0, "7\n", ""},
      {"config bad type", {"config", "get", "Nope", "Order", "--folder", cfg}, 2, "", "is no setting type"},
      {"config set without value", {"config", "set", "3", "Order", "--folder", cfg}, 2, "", "set needs a VALUE"},
      {"config broken file", {"config", "get", "3", "Order", "--folder", bad}, 2, "", "not well-formed"},
      {"config text XML can't hold", {"config", "set", "3", "Order", "a\x1B", "--folder", cfg}, 2, "", "U+001B"},
      {"config value not UTF-8", {"config", "set", "3", "Order", "\xC3", "--folder", cfg}, 2, "", "not valid UTF-8"},
      {"reg name not UTF-8", {"reg", "get", "Paths", "\xFF"}, 2, "", "NAME is not valid UTF-8"},
      {"reg value too long", {"reg", "set", "Paths", "Long", std::string(1999, 'x')}, 2, "", "at most 1998"},
      {"reg value at the limit", {"reg", "set", "Paths", "Long", std::string(1998, 'x')}, 0, "", ""},
      {"reg value stored too long", {"reg", "get", "Paths", "Longer"}, 1, "", "too long to read"},
  };
  // A value that another writer stored in the registry store, beyond what the library reads.
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, u"Software\\Ohm\\Zeda\\R1\\Settings\\Paths", 0, nullptr, 0,
                            KEY_ALL_ACCESS, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  const std::u16string longer(2100, u'y');
  EXPECT_EQ(RegSetValueExW(key, u"Longer", 0, REG_SZ, reinterpret_cast<const BYTE*>(longer.c_str()), 2 * 2101), 0);
  RegCloseKey(key);
  for (const StatusCase& c : steps) ExpectRun(c, true);
  const std::string saved = ReadFile(cfg + "/App.config");
  EXPECT_NE(saved.find("<!-- kept -->"), std::string::npos);
  EXPECT_EQ(saved.find("\x1B"), std::string::npos);
}

}  // namespace
