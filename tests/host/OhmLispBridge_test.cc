// The Lisp bridge: requests node by node, every reply shape, the user-break
// state, and the calls that must not be made.
#include "ohmutils/host/OhmLispBridge.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "LispCalls.h"
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

// Replaces the host's Lisp functions the bridge calls with one that records
// its arguments and answers as told.
class LispBridge : public ::testing::Test {
 protected:
  void SetUp() override {
    zd_testing::resetLisp();
    mDocument = zdDocManagerPtr()->addDocument(u"\\tmp\\bridge.dwg", nullptr);
    for (const char16_t* name : {kLockCheck, kUnlock, kLookup, kVerify})
      zd_testing::defineLispFunction(name, [this](const ZdValueNode* args, ZdValueNode** reply) {
        mArgs = NodesOf(args);
        mBreakDisabledInCall = zdedIsUsrbrkDisabled();
        *reply = mReply.empty() ? nullptr : Chain(mReply);
        return mStatus;
      });
  }
  void TearDown() override {
    if (mDocument) zdDocManagerPtr()->closeDocument(mDocument);
    zd_testing::resetLisp();
  }
  void Answer(std::vector<Node> reply, int status = RTNORM) {
    mReply = std::move(reply);
    mStatus = status;
  }

  ZdApDocument* mDocument = nullptr;
  std::vector<Node> mArgs;
  std::vector<Node> mReply{NIL};
  int mStatus = RTNORM;
  bool mBreakDisabledInCall = false;
};

// Each request node by node, and whether the call forbade the user's break
// for its duration (guarded) and left it allowed after.
TEST_F(LispBridge, RequestsAreBuiltNodeByNodeAndGuardedAsAsked) {
  long breakChanges = 0;
  auto expectSent = [&](const char* what, const std::u16string& name, const std::vector<Node>& args, bool guarded) {
    EXPECT_EQ(zd_testing::lastInvokedName(), name) << what;
    EXPECT_EQ(mArgs, args) << what;
    EXPECT_EQ(mBreakDisabledInCall, guarded) << what;
    EXPECT_FALSE(zdedIsUsrbrkDisabled()) << what;
    EXPECT_EQ(zd_testing::usrbrkChangeCount() - std::exchange(breakChanges, zd_testing::usrbrkChangeCount()),
              guarded ? 2 : 0)
        << what;
    mArgs = {Node{0, u"not called"}};
  };
  Availability({u"C:\\d\\a.dwg", u"b.dwg"}, true, false, true);
  expectSent("availability 1 0 1", u" wdupda_chkdwglockstatus_internal",
             {LB, S(u"C:\\d\\a.dwg"), S(u"b.dwg"), LE, Short(1), NIL, T, NIL}, true);
  LockCheck({u"a.dwg", u"b.dwg"}, true, true, true);
  expectSent("lock check 1 1", kLockCheck, {LB, S(u"a.dwg"), S(u"b.dwg"), LE, Short(1), NIL, T, NIL}, true);
  LockCheck({u"a.dwg"}, false, false, false);
  expectSent("lock check 0 0", kLockCheck, {LB, S(u"a.dwg"), LE, NIL, NIL, NIL, NIL}, false);
  Unlock({u"a.dwg", u"b.dwg"});
  expectSent("unlock array", kUnlock, {LB, S(u"a.dwg"), S(u"b.dwg"), LE}, true);
  UnlockList({u"a.dwg"}, false);
  expectSent("unlock list", kUnlock, {LB, S(u"a.dwg"), LE}, false);
  Lookup(u"wd.env");
  expectSent("file look-up", kLookup, {NIL, S(u"wd.env")}, false);
  RefreshWFRM2ALL();
  expectSent("wire record check", kVerify, {}, false);
}

TEST_F(LispBridge, RepliesOfEveryShape) {
  const Files in{u"C:\\in\\x.dwg"}, stale{u"stale"};
  const Files backslashed{u"c:\\a\\b.dwg", u"C:\\c.dwg"}, asWritten{u"c:/a/b.dwg", u"C:\\c.dwg"};
  const std::vector<Node> strings{S(u"c:/a/b.dwg"), S(u"C:\\c.dwg")};
  // Availability, lock check, unlock of an array, unlock of a list, the wire record check.
  auto all = [&] {
    return std::vector<Outcome>{Availability(in, true, false, false),
                                LockCheck(in, true, false, true),
                                Unlock(in),
                                UnlockList(in, true),
                                {RefreshWFRM2ALL(), {}}};
  };
  using Outcomes = std::vector<Outcome>;
  Answer(strings, RTERROR);
  EXPECT_EQ(all(), (Outcomes{{false, in}, {false, stale}, {false, in}, {false, in}, {false, {}}})) << "status error";
  Answer({});
  EXPECT_EQ(all(), (Outcomes{{false, in}, {false, stale}, {false, in}, {false, in}, {true, {}}})) << "no reply";
  Answer({NIL});
  EXPECT_EQ(all(), (Outcomes{{false, in}, {false, {}}, {true, in}, {true, in}, {true, {}}})) << "nil";
  Answer(strings);
  EXPECT_EQ(all(), (Outcomes{{true, backslashed}, {true, asWritten}, {false, backslashed}, {false, in}, {true, {}}}))
      << "strings";
}

TEST_F(LispBridge, AvailabilitySkipsListMarkersButTheLockCheckStopsAtThem) {
  Answer({LB, S(u"a/x.dwg"), LE, S(u"b.dwg")});
  EXPECT_EQ(Availability({u"in.dwg"}, true, true, true), (Outcome{true, {u"a\\x.dwg", u"b.dwg"}}));
  EXPECT_EQ(LockCheck({u"in.dwg"}, true, false, true), (Outcome{false, {}}));
  Answer({S(u"a.dwg"), S(u"<null>"), S(u"b.dwg"), NIL, S(u"c.dwg")});
  EXPECT_EQ(LockCheck({u"in.dwg"}, true, false, true), (Outcome{true, {u"a.dwg", u"b.dwg"}}));
}

// --- calls that must not be made ----------------------------------------------------

TEST_F(LispBridge, EmptyListsAndPathsCallNothing) {
  EXPECT_EQ(LockCheck({}, true, true, true, {u"kept"}), (Outcome{false, {u"kept"}}));
  EXPECT_FALSE(UnlockList({}, true).result);
  EXPECT_EQ(Lookup(u""), (Outcome{false, {u"kept"}}));
  EXPECT_EQ(zd_testing::lispCallCount(), 0);
}

TEST_F(LispBridge, WithoutCurrentDocumentTheDocumentBoundCallsGiveFalse) {
  zdDocManagerPtr()->closeDocument(std::exchange(mDocument, nullptr));
  EXPECT_FALSE(LockCheck({u"a.dwg"}, true, false, true).result);
  EXPECT_FALSE(RefreshWFRM2ALL());
  EXPECT_EQ(zd_testing::lispCallCount(), 0);
  EXPECT_TRUE(UnlockList({u"a.dwg"}, false).result) << "the unlock doesn't need a document";
  EXPECT_EQ(zd_testing::lispCallCount(), 1);
}

TEST_F(LispBridge, RequestThatCannotBeBuiltIsNotSent) {
  for (long okAllocations : {0L, 1L, 3L, 5L}) {
    SCOPED_TRACE(okAllocations);
    zd_testing::failValueAllocationAfter(okAllocations);
    EXPECT_EQ(Availability({u"a.dwg", u"b.dwg"}, true, false, false), (Outcome{false, {u"a.dwg", u"b.dwg"}}));
    zd_testing::failValueAllocationAfter(-1);
  }
  zd_testing::failValueAllocationAfter(0);
  EXPECT_TRUE(RefreshWFRM2ALL()) << "a request that can't be built isn't a failure here";
  zd_testing::failValueAllocationAfter(-1);
  EXPECT_EQ(zd_testing::lispCallCount(), 0);
}

// --- user break ---------------------------------------------------------------------

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

// --- file look-up -----------------------------------------------------------------------

TEST_F(LispBridge, FileLookupTellsAnswerFromFindAndItsWrapperCopiesOnlyWhatFits) {
  Answer({NIL});
  EXPECT_EQ(Lookup(u"x.dwg"), (Outcome{true, {u"kept"}}));
  char16_t buffer[13] = u"#";
  EXPECT_TRUE(LispDoesFileExistWrapper(u"x.dwg", buffer, 13));
  EXPECT_EQ(std::u16string(buffer), u"");

  Answer({S(u"C:\\lib\\x.dwg")});  // 12 units
  EXPECT_EQ(Lookup(u"x.dwg"), (Outcome{true, {u"C:\\lib\\x.dwg"}}));
  buffer[0] = u'#';
  EXPECT_FALSE(LispDoesFileExistWrapper(u"x.dwg", buffer, 12));
  EXPECT_EQ(buffer[0], u'#');
  EXPECT_TRUE(LispDoesFileExistWrapper(u"x.dwg", buffer, 13));
  EXPECT_EQ(std::u16string(buffer), u"C:\\lib\\x.dwg");

  Answer({}, RTERROR);
  buffer[0] = u'#';
  EXPECT_FALSE(LispDoesFileExistWrapper(u"x.dwg", buffer, 13));
  EXPECT_EQ(buffer[0], u'#');
}

}  // namespace
