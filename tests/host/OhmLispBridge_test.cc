// The Lisp bridge: requests node by node, every reply shape, the user-break
// state, and the calls that must not be made.
#include "ohmutils/host/OhmLispBridge.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/u16.h"
#include "zd/ZdCodes.h"
#include "zd/ZdValueNode_testing.h"
#include "zd/app/ZdDocManager.h"
#include "zd/lisp/ZdLisp.h"
#include "zd/lisp/ZdLisp_testing.h"

namespace {

// One request or reply node as a test compares it.
struct Node {
  short type;
  std::u16string text;  // RTSTR
  int number = 0;       // RTSHORT
  friend bool operator==(const Node&, const Node&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Node& n) {
    return out << n.type << "(" << U8(n.text) << n.number << ")";
  }
};

Node S(const char16_t* text) { return {RTSTR, text}; }
Node Short(int value) { return {RTSHORT, u"", value}; }
const Node LB{RTLB, u""}, LE{RTLE, u""}, NIL{RTNIL, u""}, T{RTT, u""};

std::vector<Node> NodesOf(const ZdValueNode* chain) {
  std::vector<Node> nodes;
  for (; chain; chain = chain->rbnext) {
    Node node{chain->restype, u""};
    if (chain->restype == RTSTR && chain->resval.rstring) node.text = chain->resval.rstring;
    if (chain->restype == RTSHORT) node.number = chain->resval.rint;
    nodes.push_back(node);
  }
  return nodes;
}

// A reply chain made from nodes; a string node with text "<null>" gets a null string.
ZdValueNode* Chain(const std::vector<Node>& nodes) {
  ZdValueNode* head = nullptr;
  ZdValueNode** tail = &head;
  for (const Node& node : nodes) {
    *tail = zdutNewRb(node.type);
    if (node.type == RTSTR && node.text != u"<null>") (*tail)->resval.rstring = zdutNewString(node.text.c_str());
    if (node.type == RTSHORT) (*tail)->resval.rint = static_cast<short>(node.number);
    tail = &(*tail)->rbnext;
  }
  return head;
}

const char16_t* const kLockCheck = u"wdupda_chkdwglockstatus_internal";
const char16_t* const kUnlock = u"c:ohm_upd_unlock_dwgs";
const char16_t* const kLookup = u"wd_fio_does_file_exist";
const char16_t* const kVerify = u"wd_mdb2_WFRM2ALL_verify";

// The shapes a reply can take, from the host's side.
enum class Shape { StatusError, NoReply, Nil, Strings };

// Replaces the host's Lisp functions the bridge calls with one that records
// its arguments and answers as told.
class LispBridge : public ::testing::Test {
 protected:
  void SetUp() override {
    zd_testing::resetLisp();
    mDocument = zdDocManagerPtr()->addDocument(u"\\tmp\\bridge.dwg", nullptr);
    for (const char16_t* name : {kLockCheck, kUnlock, kLookup, kVerify})
      zd_testing::defineLispFunction(name, Recorder());
  }
  void TearDown() override {
    if (mDocument) zdDocManagerPtr()->closeDocument(mDocument);
    zd_testing::resetLisp();
  }

  ZdLispFunction Recorder() {
    return [this](const ZdValueNode* args, ZdValueNode** reply) {
      mArgs = NodesOf(args);
      mBreakDisabledInCall = zdedIsUsrbrkDisabled();
      *reply = mReply.empty() ? nullptr : Chain(mReply);
      return mStatus;
    };
  }
  void Answer(std::vector<Node> reply, int status = RTNORM) {
    mReply = std::move(reply);
    mStatus = status;
  }
  void AnswerWith(Shape shape) {
    const std::vector<Node> strings{S(u"c:/a/b.dwg"), S(u"C:\\c.dwg")};
    switch (shape) {
      case Shape::StatusError:
        return Answer(strings, RTERROR);
      case Shape::NoReply:
        return Answer({}, RTNORM);
      case Shape::Nil:
        return Answer({NIL}, RTNORM);
      case Shape::Strings:
        return Answer(strings, RTNORM);
    }
  }
  void NoDocument() {
    zdDocManagerPtr()->closeDocument(mDocument);
    mDocument = nullptr;
  }

  ZdApDocument* mDocument = nullptr;
  std::vector<Node> mArgs;
  std::vector<Node> mReply{NIL};
  int mStatus = RTNORM;
  bool mBreakDisabledInCall = false;
};

CStringArray Array(std::initializer_list<const char16_t*> items) {
  CStringArray array;
  for (const char16_t* item : items) array.Add(item);
  return array;
}

std::vector<std::u16string> Items(const CStringArray& array) {
  std::vector<std::u16string> items;
  for (INT_PTR i = 0; i < array.GetSize(); ++i) items.push_back(array[i].str());
  return items;
}

void Fill(CStringList& list, std::initializer_list<const char16_t*> items) {
  for (const char16_t* item : items) list.AddTail(item);
}

std::vector<std::u16string> Items(const CStringList& list) {
  std::vector<std::u16string> items;
  for (POSITION pos = list.GetHeadPosition(); pos;) items.push_back(list.GetNext(pos).str());
  return items;
}

// --- requests, node by node ---------------------------------------------------

struct RequestCase {
  const char* label;
  std::function<void()> call;
  std::u16string name;
  std::vector<Node> args;
};

TEST_F(LispBridge, RequestsAreBuiltNodeByNode) {
  const std::vector<RequestCase> cases{
      {"availability, flags 1 0 1",
       [] {
         CStringArray files = Array({u"C:\\d\\a.dwg", u"C:\\d\\b.dwg"});
         OhmCheckFilesAvailability(files, true, false, true);
       },
       u" wdupda_chkdwglockstatus_internal",
       {LB, S(u"C:\\d\\a.dwg"), S(u"C:\\d\\b.dwg"), LE, Short(1), NIL, T, NIL}},
      {"availability of no files, flags 0 1 0",
       [] {
         CStringArray files;
         OhmCheckFilesAvailability(files, false, true, false);
       },
       u" wdupda_chkdwglockstatus_internal",
       {LB, LE, Short(0), T, NIL, NIL}},
      {"check and lock, lock and second flag",
       [] {
         CStringList files, reply;
         Fill(files, {u"a.dwg", u"b.dwg"});
         LispCheckFileLockStatusAndLock(files, true, true, reply, true);
       },
       kLockCheck,
       {LB, S(u"a.dwg"), S(u"b.dwg"), LE, Short(1), NIL, T, NIL}},
      {"check without lock",
       [] {
         CStringList files, reply;
         Fill(files, {u"a.dwg"});
         LispCheckFileLockStatusAndLock(files, false, false, reply, false);
       },
       kLockCheck,
       {LB, S(u"a.dwg"), LE, NIL, NIL, NIL, NIL}},
      {"unlock array",
       [] {
         CStringArray files = Array({u"a.dwg", u"b.dwg"});
         OhmUnlockFiles(files);
       },
       kUnlock,
       {LB, S(u"a.dwg"), S(u"b.dwg"), LE}},
      {"unlock list",
       [] {
         CStringList files;
         Fill(files, {u"a.dwg"});
         LispUpdUnlockFiles(files, false);
       },
       kUnlock,
       {LB, S(u"a.dwg"), LE}},
      {"file look-up",
       [] {
         CString found;
         LispDoesFileExist(u"wd.env", found);
       },
       kLookup,
       {NIL, S(u"wd.env")}},
      {"wire record check", [] { RefreshWFRM2ALL(); }, kVerify, {}},
  };
  for (const RequestCase& c : cases) {
    SCOPED_TRACE(c.label);
    mArgs = {Node{0, u"not called"}};
    c.call();
    EXPECT_EQ(zd_testing::lastInvokedName(), c.name);
    EXPECT_EQ(mArgs, c.args);
  }
}

// --- replies of every shape -----------------------------------------------------

struct Outcome {
  bool result;
  std::vector<std::u16string> files;
};

struct ReplyCase {
  const char* label;
  std::function<Outcome()> call;
  Outcome statusError, noReply, nil, strings;
};

TEST_F(LispBridge, RepliesOfEveryShape) {
  const std::vector<std::u16string> in{u"C:\\in\\x.dwg"};
  const std::vector<std::u16string> backslashed{u"c:\\a\\b.dwg", u"C:\\c.dwg"};
  const std::vector<std::u16string> asWritten{u"c:/a/b.dwg", u"C:\\c.dwg"};
  const std::vector<std::u16string> stale{u"stale"};
  const std::vector<ReplyCase> cases{
      {"OhmCheckFilesAvailability",
       [] {
         CStringArray files = Array({u"C:\\in\\x.dwg"});
         const bool result = OhmCheckFilesAvailability(files, true, false, false);
         return Outcome{result, Items(files)};
       },
       {false, in},
       {false, in},
       {false, in},
       {true, backslashed}},
      {"LispCheckFileLockStatusAndLock",
       [] {
         CStringList files, reply;
         Fill(files, {u"C:\\in\\x.dwg"});
         Fill(reply, {u"stale"});
         const bool result = LispCheckFileLockStatusAndLock(files, true, false, reply, true);
         return Outcome{result, Items(reply)};
       },
       {false, stale},
       {false, stale},
       {false, {}},
       {true, asWritten}},
      {"OhmUnlockFiles",
       [] {
         CStringArray files = Array({u"C:\\in\\x.dwg"});
         const bool result = OhmUnlockFiles(files);
         return Outcome{result, Items(files)};
       },
       {false, in},
       {false, in},
       {true, in},
       {false, backslashed}},
      {"LispUpdUnlockFiles",
       [] {
         CStringList files;
         Fill(files, {u"C:\\in\\x.dwg"});
         const bool result = LispUpdUnlockFiles(files, true);
         return Outcome{result, Items(files)};
       },
       {false, in},
       {false, in},
       {true, in},
       {false, in}},
  };
  for (const ReplyCase& c : cases) {
    const std::pair<Shape, const Outcome*> shapes[] = {{Shape::StatusError, &c.statusError},
                                                       {Shape::NoReply, &c.noReply},
                                                       {Shape::Nil, &c.nil},
                                                       {Shape::Strings, &c.strings}};
    for (const auto& [shape, expected] : shapes) {
      SCOPED_TRACE(std::string(c.label) + ", reply shape " + std::to_string(static_cast<int>(shape)));
      AnswerWith(shape);
      const Outcome outcome = c.call();
      EXPECT_EQ(outcome.result, expected->result);
      EXPECT_EQ(outcome.files, expected->files);
    }
  }
}

TEST_F(LispBridge, AvailabilitySkipsListMarkersButTheLockCheckStopsAtThem) {
  Answer({LB, S(u"a/x.dwg"), LE, S(u"b.dwg")});
  CStringArray files = Array({u"in.dwg"});
  EXPECT_TRUE(OhmCheckFilesAvailability(files, true, true, true));
  EXPECT_EQ(Items(files), (std::vector<std::u16string>{u"a\\x.dwg", u"b.dwg"}));

  CStringList list, reply;
  Fill(list, {u"in.dwg"});
  Fill(reply, {u"old"});
  EXPECT_FALSE(LispCheckFileLockStatusAndLock(list, true, false, reply, true));
  EXPECT_TRUE(reply.IsEmpty());

  Answer({S(u"a.dwg"), S(u"<null>"), S(u"b.dwg"), NIL, S(u"c.dwg")});
  EXPECT_TRUE(LispCheckFileLockStatusAndLock(list, true, false, reply, true));
  EXPECT_EQ(Items(reply), (std::vector<std::u16string>{u"a.dwg", u"b.dwg"}));
}

TEST_F(LispBridge, FailedInvokeStatusReadsAsFailure) {
  zd_testing::failNextInvoke(RTCAN);
  CStringArray files = Array({u"x.dwg"});
  EXPECT_FALSE(OhmCheckFilesAvailability(files, true, false, false));
  EXPECT_EQ(Items(files), (std::vector<std::u16string>{u"x.dwg"}));
  zd_testing::failNextInvoke(RTERROR);
  EXPECT_FALSE(RefreshWFRM2ALL());
  zd_testing::failNextInvoke(RTERROR);
  CString found(u"kept");
  EXPECT_FALSE(LispDoesFileExist(u"x.dwg", found));
  EXPECT_EQ(found, u"kept");
}

// --- calls that must not be made ----------------------------------------------------

TEST_F(LispBridge, EmptyListsAndPathsCallNothing) {
  CStringList empty, reply;
  Fill(reply, {u"kept"});
  CString found(u"kept");
  EXPECT_FALSE(LispCheckFileLockStatusAndLock(empty, true, true, reply, true));
  EXPECT_FALSE(LispUpdUnlockFiles(empty, true));
  EXPECT_FALSE(LispDoesFileExist(u"", found));
  EXPECT_EQ(zd_testing::lispCallCount(), 0);
  EXPECT_EQ(Items(reply), (std::vector<std::u16string>{u"kept"}));
  EXPECT_EQ(found, u"kept");
}

TEST_F(LispBridge, WithoutCurrentDocumentTheDocumentBoundCallsGiveFalse) {
  NoDocument();
  CStringList files, reply;
  Fill(files, {u"a.dwg"});
  EXPECT_FALSE(LispCheckFileLockStatusAndLock(files, true, false, reply, true));
  EXPECT_FALSE(RefreshWFRM2ALL());
  EXPECT_EQ(zd_testing::lispCallCount(), 0);
  // The unlock doesn't need a document.
  EXPECT_TRUE(LispUpdUnlockFiles(files, false));
  EXPECT_EQ(zd_testing::lispCallCount(), 1);
}

TEST_F(LispBridge, RequestThatCannotBeBuiltIsNotSent) {
  CStringArray files = Array({u"a.dwg", u"b.dwg"});
  for (long okAllocations : {0L, 1L, 3L, 5L}) {
    SCOPED_TRACE(okAllocations);
    zd_testing::failValueAllocationAfter(okAllocations);
    EXPECT_FALSE(OhmCheckFilesAvailability(files, true, false, false));
    zd_testing::failValueAllocationAfter(okAllocations);
    EXPECT_FALSE(OhmUnlockFiles(files));
    zd_testing::failValueAllocationAfter(-1);
  }
  zd_testing::failValueAllocationAfter(0);
  EXPECT_TRUE(RefreshWFRM2ALL());  // a request that can't be built isn't a failure here
  zd_testing::failValueAllocationAfter(-1);
  EXPECT_EQ(zd_testing::lispCallCount(), 0);
  EXPECT_EQ(Items(files), (std::vector<std::u16string>{u"a.dwg", u"b.dwg"}));
}

// --- user break ---------------------------------------------------------------------

TEST_F(LispBridge, GuardedCallForbidsUserBreakAndRestoresIt) {
  CStringArray files = Array({u"a.dwg"});
  OhmUnlockFiles(files);
  EXPECT_TRUE(mBreakDisabledInCall);
  EXPECT_FALSE(zdedIsUsrbrkDisabled());
  EXPECT_EQ(zd_testing::usrbrkChangeCount(), 2);
}

TEST_F(LispBridge, GuardedCallLeavesAnAlreadyForbiddenBreakAlone) {
  zdedDisableUsrbrk();
  const long changes = zd_testing::usrbrkChangeCount();
  ZdValueNode* request = Chain({S(kVerify)});
  ZdValueNode* reply = nullptr;
  EXPECT_EQ(Ohm_zdedInvoke(request, &reply), RTNORM);
  EXPECT_TRUE(mBreakDisabledInCall);
  EXPECT_TRUE(zdedIsUsrbrkDisabled());
  EXPECT_EQ(zd_testing::usrbrkChangeCount(), changes);
  zdutRelRb(request);
  zdutRelRb(reply);
}

TEST_F(LispBridge, UnguardedCallsLeaveTheBreakStateUntouched) {
  CStringList files, reply;
  Fill(files, {u"a.dwg"});
  Answer({S(u"a.dwg")});
  EXPECT_TRUE(LispCheckFileLockStatusAndLock(files, true, false, reply, false));
  EXPECT_FALSE(mBreakDisabledInCall);
  Answer({NIL});
  EXPECT_TRUE(LispUpdUnlockFiles(files, false));
  EXPECT_FALSE(mBreakDisabledInCall);
  CString found;
  LispDoesFileExist(u"a.dwg", found);
  RefreshWFRM2ALL();
  EXPECT_FALSE(mBreakDisabledInCall);
  EXPECT_EQ(zd_testing::usrbrkChangeCount(), 0);
}

// --- file look-up -----------------------------------------------------------------------

TEST_F(LispBridge, FileLookupTellsAnswerFromFind) {
  CString found(u"untouched");
  Answer({NIL});
  EXPECT_TRUE(LispDoesFileExist(u"x.dwg", found));
  EXPECT_EQ(found, u"untouched");
  Answer({S(u"C:\\lib\\x.dwg")});
  EXPECT_TRUE(LispDoesFileExist(u"x.dwg", found));
  EXPECT_EQ(found, u"C:\\lib\\x.dwg");
}

TEST_F(LispBridge, FileLookupWrapperCopiesOnlyWhatFits) {
  char16_t buffer[13];
  std::fill(std::begin(buffer), std::end(buffer), u'#');
  Answer({S(u"C:\\lib\\x.dwg")});  // 12 units
  EXPECT_FALSE(LispDoesFileExistWrapper(u"x.dwg", buffer, 12));
  EXPECT_EQ(buffer[0], u'#');
  EXPECT_TRUE(LispDoesFileExistWrapper(u"x.dwg", buffer, 13));
  EXPECT_EQ(std::u16string(buffer), u"C:\\lib\\x.dwg");
  Answer({NIL});
  EXPECT_TRUE(LispDoesFileExistWrapper(u"x.dwg", buffer, 13));
  EXPECT_EQ(std::u16string(buffer), u"");
  Answer({}, RTERROR);
  buffer[0] = u'#';
  EXPECT_FALSE(LispDoesFileExistWrapper(u"x.dwg", buffer, 13));
  EXPECT_EQ(buffer[0], u'#');
}

}  // namespace
