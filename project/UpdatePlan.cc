#include "project/UpdatePlan.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <memory>
#include <stdexcept>
#include <thread>
#include <unordered_map>
#include <vector>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "ohmutils/xref/OhmCfgSetting.h"
#include "ohmutils/xref/OhmDsComponentOcc.h"
#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"
#include "ohmutils/xref/OhmUtXrefEntityFactory.h"
#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"
#include "ohmutils/xref/OhmUtXrefTableRows.h"
#include "ohmutils/xref/OhmUtXrefTextEntity.h"
#include "project/UpdateReport.h"
#include "win/Utf8.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

constexpr const char16_t* kCoilTags[] = {u"XREF", u"XREFNO", u"XREFNC"};

struct Placed {
  std::u16string sheet, reference;
};

Placed PlaceText(const SymbolPlace& place, int firstSheet) {
  Placed placed{Utf8ToUtf16(std::to_string(firstSheet + place.sheetInDrawing)), place.reference};
  if (placed.reference.empty()) {
    std::string line = std::to_string(place.gridLine);
    if (line.size() < 2) line.insert(0, 2 - line.size(), '0');
    placed.reference = placed.sheet + Utf8ToUtf16(line);
  }
  return placed;
}

std::string Narrow(const std::u16string& text) { return Utf16ToUtf8(text); }

bool KnownKind(const std::u16string& kind) { return kind == u"NO" || kind == u"NC" || kind == u"NONC"; }

// Fills `occ` with a contact's record as the engine takes it.
void FillOccurrence(OhmDsComponentOcc& occ, const ContactSymbol& contact, const DrawingComponents& drawing,
                    const Placed& placed) {
  occ.mType = contact.occurrenceType;
  occ.mOccID.mDwgPath = drawing.path;
  occ.mProperties[u"CONTACT"] = contact.kind;
  occ.mProperties[u"REF"] = placed.reference;
  occ.mSheetProperties[u"SHEET"] = placed.sheet;
  occ.mSheetProperties[u"SHEETDWGNAME"] = drawing.name;
  for (const auto& [code, term] : contact.pins) {
    OhmDsComponentPinOcc pin;
    pin.mProperties[u"TERMCODE"] = code;
    pin.mProperties[u"TERM"] = term;
    occ.mPins.push_back(std::move(pin));
  }
}

struct CoilAt {
  std::size_t drawing = 0;
  const CoilSymbol* coil = nullptr;
  Placed placed;
};

// A contact that takes part, with what its record is built from. Records
// are built by the worker that presents the contact's coil and dropped with
// it, so the project never holds all of them.
struct ContactAt {
  ContactPlace place;
  const ContactSymbol* contact = nullptr;
  Placed placed;
};

// The records of one coil's contacts, in the order of `contacts`.
using Occurrences = std::deque<OhmDsComponentOcc>;  // a deque: records have no move

const std::vector<ContactAt> kNoContacts;

// What one coil gives: its plan, the changes of its attributes, its problems.
struct CoilOutcome {
  CoilPlan plan;
  std::vector<AttributeChange> changes;
  std::vector<ProjectProblem> problems;
};

// Works out coils' presentations, one at a time; one per thread.
class CoilPresenter {
 public:
  CoilPresenter(const std::vector<DrawingComponents>& drawings, const OhmNoRxUtilsSettingOverride::SettingMap& settings)
      : mDrawings(drawings), mSettings(settings) {}

  CoilOutcome present(const CoilAt& at, const std::vector<ContactAt>& contacts) {
    CoilOutcome outcome;
    CoilPlan& plan = outcome.plan;
    plan.drawing = at.drawing;
    plan.handle = at.coil->handle;
    plan.tag = at.coil->tag;
    plan.sheet = at.placed.sheet;
    plan.reference = at.placed.reference;
    for (const ContactAt& contact : contacts) plan.contacts.push_back(contact.place);
    Occurrences occurrences;
    for (const ContactAt& contact : contacts) {
      FillOccurrence(occurrences.emplace_back(), *contact.contact, mDrawings[contact.place.drawing], contact.placed);
    }
    try {
      presentGuarded(at, contacts, occurrences, outcome);
    } catch (const std::exception& error) {
      plan.error = std::string("the cross-reference failed: ") + error.what();
    }
    if (!plan.error.empty()) outcome.problems.push_back({at.drawing, plan.handle, 0, plan.error});
    return outcome;
  }

 private:
  // The coil rebuilt in a scratch drawing (its block, attributes and xdata),
  // so that the factory sees what it would see in the coil's own drawing.
  void presentGuarded(const CoilAt& at, const std::vector<ContactAt>& contacts, const Occurrences& occurrences,
                      CoilOutcome& outcome) {
    CoilPlan& plan = outcome.plan;
    ZdDbBlockReference* block = scratchBuilder().insertBlock(at.coil->blockName, at.coil->attributes);
    if (at.coil->xdata) block->setXData(at.coil->xdata.get());
    OhmNoRxUtilsSettingOverride settings(mSettings);
    std::unique_ptr<OhmUtXrefEntity> entity(OhmUtXrefEntityFactory::getXrefEntity(block, settings));
    if (!entity) {
      plan.error = "the coil asks for no presentation: its style option is neither \"0\", \"1\" nor \"2\"";
      return;
    }
    entity->setHostDwgPath(mDrawings[at.drawing].path);
    plan.style = entity->getStyle();
    if (auto* table = dynamic_cast<OhmUtXrefTableEntity*>(entity.get())) {
      return fillTable(*table, contacts, occurrences, plan);
    }
    if (auto* graphic = dynamic_cast<OhmUtXrefGraphicEntity*>(entity.get())) {
      return fillLines(*graphic, contacts, occurrences, plan);
    }
    if (auto* text = dynamic_cast<OhmUtXrefTextEntity*>(entity.get()))
      fillTexts(*text, at, occurrences, outcome.changes);
  }

  static void fillTexts(const OhmUtXrefTextEntity& entity, const CoilAt& at, const Occurrences& occurrences,
                        std::vector<AttributeChange>& changes) {
    for (const auto& [tag, old] : at.coil->attributes) {
      bool wanted = false;
      for (const char16_t* name : kCoilTags) wanted = wanted || tag == name;
      if (!wanted) continue;
      std::u16string joined;
      bool first = true;
      for (const OhmDsComponentOcc& occurrence : occurrences) {
        std::u16string text;
        if (!entity.getXrefText(tag, occurrence, text)) continue;
        if (!first) joined += entity.getSeparator();
        joined += text;
        first = false;
      }
      if (joined != old) changes.push_back({at.drawing, at.coil->handle, tag, old, joined});
    }
  }

  static void fillLines(OhmUtXrefGraphicEntity& entity, const std::vector<ContactAt>& contacts,
                        const Occurrences& occurrences, CoilPlan& plan) {
    for (std::size_t i = 0; i < contacts.size(); ++i) {
      const ContactAt& contact = contacts[i];
      const OhmDsComponentOcc& occ = occurrences[i];
      std::u16string text, ncText;
      if (entity.isFullFormCContact(occ)) {
        if (!entity.getUnformattedXrefTextForFullFormCContact(occ, text, ncText)) continue;
        plan.lines.emplace_back(contact.place.label, text);
        plan.lines.emplace_back(contact.place.label, ncText);
      } else if (entity.isPartialFormCContact(occ)) {
        if (entity.getUnformattedXrefTextForPartialFormCContact(occ, text))
          plan.lines.emplace_back(contact.place.label, text);
      } else if (entity.getUnformattedXrefText(occ, text)) {
        plan.lines.emplace_back(contact.place.label, text);
      }
    }
  }

  static void fillTable(OhmUtXrefTableEntity& entity, const std::vector<ContactAt>& contacts,
                        const Occurrences& occurrences, CoilPlan& plan) {
    plan.titles = OhmUtXrefTableRows::getTitles(entity);
    for (std::size_t i = 0; i < contacts.size(); ++i) {
      for (auto& cells : OhmUtXrefTableRows::getRows(entity, occurrences[i])) {
        plan.rows.emplace_back(contacts[i].place.label, std::move(cells));
      }
    }
  }

  // The drawing the coils are rebuilt in: one for many coils, since making a
  // database costs more than the coil; renewed now and then to bound its size.
  ZdDbDrawingBuilder& scratchBuilder() {
    constexpr int kCoilsPerScratch = 1024;
    if (!mScratch || mScratchCoils++ == kCoilsPerScratch) {
      mBuilder.reset();
      mScratch = std::make_unique<ZdDbDatabase>();
      mBuilder = std::make_unique<ZdDbDrawingBuilder>(*mScratch);
      mScratchCoils = 1;
    }
    return *mBuilder;
  }

  const std::vector<DrawingComponents>& mDrawings;
  const OhmNoRxUtilsSettingOverride::SettingMap& mSettings;
  std::unique_ptr<ZdDbDatabase> mScratch;
  std::unique_ptr<ZdDbDrawingBuilder> mBuilder;
  int mScratchCoils = 0;
};

class Planner {
 public:
  Planner(const std::vector<DrawingComponents>& drawings, const OhmNoRxUtilsSettingOverride::SettingMap& settings,
          unsigned workers)
      : mDrawings(drawings), mSettings(settings), mWorkers(std::max(1u, workers)) {}

  UpdatePlan run() {
    numberSheets();
    for (std::size_t d = 0; d < mDrawings.size(); ++d) {
      for (const DrawingProblem& problem : mDrawings[d].problems) {
        mPlan.problems.push_back({d, problem.handle, problem.line, problem.message});
      }
      for (const CoilSymbol& coil : mDrawings[d].coils) indexCoil(d, coil);
    }
    for (std::size_t d = 0; d < mDrawings.size(); ++d) {
      for (const ContactSymbol& contact : mDrawings[d].contacts) gatherContact(d, contact);
    }
    presentCoils();
    for (std::size_t d = 0; d < mDrawings.size(); ++d) {
      for (const ContactSymbol& contact : mDrawings[d].contacts) planContactXref(d, contact);
    }
    std::stable_sort(mPlan.changes.begin(), mPlan.changes.end(),
                     [](const AttributeChange& a, const AttributeChange& b) { return a.drawing < b.drawing; });
    return std::move(mPlan);
  }

 private:
  // The coils' presentations, `mWorkers` at a time, gathered in coil order.
  void presentCoils() {
    std::vector<CoilOutcome> outcomes(mCoilOrder.size());
    std::atomic<std::size_t> next{0};
    auto work = [&] {
      CoilPresenter presenter(mDrawings, mSettings);
      for (std::size_t i = next++; i < outcomes.size(); i = next++) {
        const CoilAt& at = mCoils.at(mCoilOrder[i]);
        const auto contacts = mContacts.find(at.coil->tag);
        outcomes[i] = presenter.present(at, contacts == mContacts.end() ? kNoContacts : contacts->second);
      }
    };
    std::vector<std::thread> threads;
    for (unsigned w = 1; w < std::min<std::size_t>(mWorkers, outcomes.size()); ++w) threads.emplace_back(work);
    work();
    for (std::thread& thread : threads) thread.join();
    for (CoilOutcome& outcome : outcomes) {
      mPlan.coils.push_back(std::move(outcome.plan));
      for (AttributeChange& change : outcome.changes) mPlan.changes.push_back(std::move(change));
      for (ProjectProblem& problem : outcome.problems) mPlan.problems.push_back(std::move(problem));
    }
  }

  void numberSheets() {
    int next = 1;
    for (const DrawingComponents& drawing : mDrawings) {
      mFirstSheet.push_back(next);
      next += drawing.sheets;
    }
  }

  void indexCoil(std::size_t d, const CoilSymbol& coil) {
    const auto [it, added] = mCoils.emplace(coil.tag, CoilAt{d, &coil, PlaceText(coil.place, mFirstSheet[d])});
    if (added) {
      mCoilOrder.push_back(coil.tag);
      return;
    }
    const CoilAt& first = it->second;
    mPlan.problems.push_back({d, coil.handle, 0,
                              "coil " + Narrow(coil.tag) + " is already in " + mDrawings[first.drawing].file +
                                  " (handle " + HandleText(first.coil->handle) + "); this one is left as it is"});
  }

  void gatherContact(std::size_t d, const ContactSymbol& contact) {
    auto problem = [&](const std::string& message) { mPlan.problems.push_back({d, contact.handle, 0, message}); };
    if (!mCoils.count(contact.coilTag))
      return problem("contact of coil " + Narrow(contact.coilTag) + ", which is nowhere");
    if (!KnownKind(contact.kind)) {
      return problem("contact of coil " + Narrow(contact.coilTag) + " of unknown kind \"" + Narrow(contact.kind) +
                     "\" (block " + Narrow(contact.blockName) + ")");
    }
    if (contact.pins.empty()) return problem("contact of coil " + Narrow(contact.coilTag) + " without pins");
    const Placed placed = PlaceText(contact.place, mFirstSheet[d]);
    const std::u16string kindName = contact.kind == u"NONC" ? u"Form C" : contact.kind;
    ContactPlace place{
        d, contact.handle, contact.kind, placed.sheet, placed.reference, kindName + u" " + placed.reference};
    mContacts[contact.coilTag].push_back({std::move(place), &contact, placed});
  }

  // A contact's XREF attribute names the place of its coil, as the coil's
  // references name the contacts: the project's formats, seen from the
  // contact's drawing.
  void planContactXref(std::size_t d, const ContactSymbol& contact) {
    if (!contact.xref) return;
    const auto coil = mCoils.find(contact.coilTag);
    if (coil == mCoils.end()) return;
    const CoilAt& at = coil->second;
    OhmNoRxUtilsXrefTextFormat::RefData data;
    data.mDwgPath = mDrawings[at.drawing].path;
    data.mSheet = at.placed.sheet;
    data.mRef = at.placed.reference;
    data.mSheetDwgName = mDrawings[at.drawing].name;
    const OhmNoRxUtilsXrefTextFormat::Option option{setting(OhmCfgSetting::WD_XREF_FORMAT),
                                                    setting(OhmCfgSetting::WD_XREF_ALTFORMAT), false};
    std::u16string text;
    OhmNoRxUtilsXrefTextFormat::getXrefText(option, mDrawings[d].path, data, text);
    if (text != *contact.xref) mPlan.changes.push_back({d, contact.handle, u"XREF", *contact.xref, text});
  }

  std::u16string setting(OhmCfgSetting::WD_M_ATTRIB option) const {
    const auto found = mSettings.find(option);
    return found == mSettings.end() ? std::u16string() : found->second;
  }

  const std::vector<DrawingComponents>& mDrawings;
  const OhmNoRxUtilsSettingOverride::SettingMap& mSettings;
  std::vector<int> mFirstSheet;
  std::unordered_map<std::u16string, CoilAt> mCoils;  // mCoilOrder gives their order
  std::vector<std::u16string> mCoilOrder;
  std::unordered_map<std::u16string, std::vector<ContactAt>> mContacts;
  unsigned mWorkers;
  UpdatePlan mPlan;
};

}  // namespace

UpdatePlan PlanUpdate(const std::vector<DrawingComponents>& drawings,
                      const OhmNoRxUtilsSettingOverride::SettingMap& settings, unsigned workers) {
  return Planner(drawings, settings, workers).run();
}

OhmNoRxUtilsSettingOverride::SettingMap DefaultProjectSettings() {
  return {
      {OhmCfgSetting::WD_XREF_FORMAT, u" %S.%N"},
      {OhmCfgSetting::WD_XREF_ALTFORMAT, u" %D:%S.%N"},
      {OhmCfgSetting::WD_XREF_STYLE, u"0"},
      {OhmCfgSetting::WD_XREF_TXTBTWN, u";"},
      {OhmCfgSetting::WD_XREF_GRAPHIC, u"0"},
      {OhmCfgSetting::WD_XREF_GRAPHICSTYLE, u"0"},
      {OhmCfgSetting::WD_XREF_CONTACTMAP, u""},
      {OhmCfgSetting::WD_XREF_TBLINDEX, u"1,2,3,5,6"},
      {OhmCfgSetting::WD_XREF_TBLFLDNAMS, u"Aux,From,Symbol,To,Aux 2,Reference,Sheet,Sheet drawing,Drawing,Path"},
  };
}
