#include "project/UpdatePlan.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <vector>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "ohmutils/xref/OhmCfgSetting.h"
#include "ohmutils/xref/OhmDsComponentOcc.h"
#include "ohmutils/xref/OhmDsPropertyKeys.h"
#include "ohmutils/xref/OhmNoRxUtilsXrefTextFormat.h"
#include "ohmutils/xref/OhmUtXrefEntityFactory.h"
#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"
#include "ohmutils/xref/OhmUtXrefTableRows.h"
#include "ohmutils/xref/OhmUtXrefTextEntity.h"
#include "project/TagIndex.h"
#include "project/UpdateReport.h"
#include "win/Utf8.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

constexpr const char16_t* kCoilTags[] = {u"XREF", u"XREFNO", u"XREFNC"};

// `number` in decimal, after what `text` holds.
void AppendDecimal(std::u16string& text, std::int64_t number) {
  char digits[24];
  char* end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
  text.append(digits, end);
}

std::u16string DecimalText(std::int64_t number) {
  std::u16string text;
  AppendDecimal(text, number);
  return text;
}

// A symbol's line reference, in `text`: its own, or its sheet's text
// followed by its line on the grid in two digits.
void AssignReference(std::u16string& text, const SymbolPlace& place, const DrawingComponents& drawing,
                     std::u16string_view sheet) {
  if (!place.reference.empty()) return void(text.assign(drawing.text(place.reference)));
  text.assign(sheet);
  if (place.gridLine >= 0 && place.gridLine < 10) text += u'0';
  AppendDecimal(text, place.gridLine);
}

std::string Narrow(std::u16string_view text) { return Utf16ToUtf8(text); }

bool KnownKind(std::u16string_view kind) { return kind == u"NO" || kind == u"NC" || kind == u"NONC"; }

// A contact that takes part in its coil's presentation, by its number in the
// project: the contacts of every drawing before its own, then its index in its drawing.
using ContactNumber = std::uint32_t;

// Where the contacts of each drawing start in the project's numbering, with the total at the end.
std::vector<ContactNumber> FirstContacts(const std::vector<DrawingComponents>& drawings) {
  std::vector<ContactNumber> first{0};
  for (const DrawingComponents& drawing : drawings) {
    first.push_back(first.back() + static_cast<ContactNumber>(drawing.contacts.size()));
  }
  return first;
}

const ContactSymbol& SymbolOf(const ContactPlace& place, const std::vector<DrawingComponents>& drawings) {
  return drawings[place.drawing].contacts[place.contact];
}

// A contact's record as the engine takes it, kept to be filled again for
// contact after contact: its keys are set once, and the places of their
// values kept, so that refilling it looks nothing up and allocates nothing
// once its strings have grown.
class ContactRecord {
 public:
  ContactRecord()
      : mKind(mOcc.mProperties[OhmDsKeys::CONTACT]),
        mReference(mOcc.mProperties[OhmDsKeys::REF]),
        mSheet(mOcc.mSheetProperties[OhmDsKeys::SHEET]),
        mSheetName(mOcc.mSheetProperties[OhmDsKeys::SHEETDWGNAME]) {}
  ContactRecord(const ContactRecord&) = delete;
  ContactRecord& operator=(const ContactRecord&) = delete;

  const OhmDsComponentOcc& occurrence() const { return mOcc; }

  // Kind and reference, e.g. "NO 104", as presentations name the contact.
  std::u16string label() const {
    std::u16string label(ShownKind(mKind));
    label += u' ';
    return label += mReference;
  }

  void fill(const ContactPlace& place, const ContactSymbol& source, const DrawingComponents& drawing) {
    mOcc.mType = source.occurrenceType;
    if (mDrawing != &drawing) {  // the contacts of coils one after another often lie in one drawing
      mOcc.mOccID.mDwgPath = drawing.path;
      mSheetName = drawing.name;
      mDrawing = &drawing;
    }
    Refill(mKind, drawing.text(source.kind));
    mSheet.clear();
    AppendDecimal(mSheet, place.sheet);
    AssignReference(mReference, source.place, drawing, mSheet);
    const std::span<const PooledPin> pins = drawing.pinsOf(source);
    if (mOcc.mPins.size() != pins.size()) setPinCount(pins.size());
    for (std::size_t i = 0; i < pins.size(); ++i) {
      Refill(*mPins[i].first, drawing.text(pins[i].code));
      Refill(*mPins[i].second, drawing.text(pins[i].term));
    }
  }

 private:
  // Sets `value` to `text` unless it holds it already, as it mostly does: a
  // contact's kind and pins are often those of the contact before, and
  // comparing a few units costs less than the general assignment.
  static void Refill(std::u16string& value, std::u16string_view text) {
    if (value != text) value.assign(text.data(), text.size());
  }

  void setPinCount(std::size_t count) {
    mOcc.mPins.resize(count);  // may move the pins: their places are taken again
    mPins.clear();
    for (OhmDsComponentPinOcc& pin : mOcc.mPins)
      mPins.emplace_back(&pin.mProperties[OhmDsKeys::TERMCODE], &pin.mProperties[OhmDsKeys::TERM]);
  }

  OhmDsComponentOcc mOcc;
  std::u16string& mKind;
  std::u16string& mReference;
  std::u16string& mSheet;
  std::u16string& mSheetName;
  std::vector<std::pair<std::u16string*, std::u16string*>> mPins;  // TERMCODE, TERM of each pin
  const DrawingComponents* mDrawing = nullptr;                     // whose path and name the record holds
};

bool IsCoilXrefTag(std::u16string_view tag) {
  return std::any_of(std::begin(kCoilTags), std::end(kCoilTags), [&](const char16_t* name) { return tag == name; });
}

// How many of the coil's attributes the text presentation fills: at most so many changes.
std::size_t XrefAttributeCount(const CoilSymbol& coil, const DrawingComponents& drawing) {
  const std::span<const PooledAttribute> attributes = drawing.attributesOf(coil);
  return static_cast<std::size_t>(std::count_if(attributes.begin(), attributes.end(), [&](const PooledAttribute& a) {
    return IsCoilXrefTag(drawing.text(a.tag));
  }));
}

// Where a coil's presentation goes: its plan, which takes the places of its
// contacts, and room for the changes of its attributes in the plan's
// changes, one place for each it could change. Small: the planner holds one
// for each coil until every coil is presented, when its result is largest.
struct CoilWork {
  const CoilSymbol* coil = nullptr;
  std::uint32_t drawing = 0;  // the coil's
  std::uint32_t firstChange = 0;
  std::uint32_t changed = 0;  // set by the presenter: how many of those places it filled
};

// Works out coils' presentations, one at a time; one per thread. The records
// of a coil's contacts are built in records kept from the coil before, so the
// project never holds all of them and a coil costs no allocation of its own.
class CoilPresenter {
 public:
  // `changes` has the room that the coils' works name; `firstContacts` numbers the contacts.
  CoilPresenter(const std::vector<DrawingComponents>& drawings, const std::vector<int>& firstSheets,
                const std::vector<ContactNumber>& firstContacts, AttributeChange* changes,
                const OhmNoRxUtilsSettingOverride::SettingMap& settings)
      : mDrawings(drawings),
        mFirstSheets(firstSheets),
        mFirstContacts(firstContacts),
        mChanges(changes),
        mSettings(settings) {}

  // The room of the new values of the changes this presenter made.
  TextRoom takeNewValues() { return std::move(mNewValues); }

  // Fills `plan`, which has the coil's place, with its contacts (`sources`, in project order) and its presentation.
  void present(CoilWork& work, CoilPlan& plan, std::span<const ContactNumber> sources) {
    plan.contacts.reserve(sources.size());
    while (mRecords.size() < sources.size()) mRecords.emplace_back();
    locate(sources);
    for (std::size_t i = 0; i < sources.size(); ++i) {
      const auto [d, contact] = mLocated[i];
      const auto index = static_cast<std::uint32_t>(contact - mDrawings[d].contacts.data());
      plan.contacts.push_back(
          {static_cast<std::uint32_t>(d), index, contact->handle, mFirstSheets[d] + contact->place.sheetInDrawing});
      mRecords[i].fill(plan.contacts.back(), *contact, mDrawings[d]);
    }
    try {
      presentGuarded(work, plan);
    } catch (const std::exception& error) {
      plan.error = std::string("the cross-reference failed: ") + error.what();
    }
  }

 private:
  // A contact of the coil being presented: its drawing and its record.
  struct Located {
    std::size_t drawing;
    const ContactSymbol* contact;
  };

  // Finds the drawing and record of each of the coil's contacts, once, into
  // mLocated; and asks for their records, then their pins, each all at once:
  // they lie anywhere in the project's records, and fetching them one by
  // one, as they are used, would wait for each in turn.
  void locate(std::span<const ContactNumber> sources) {
    mLocated.clear();
    for (const ContactNumber source : sources) {
      const std::size_t d = drawingOf(source);
      const ContactSymbol* contact = mDrawings[d].contacts.data() + (source - mFirstContacts[d]);
      mLocated.push_back({d, contact});
      const auto* record = reinterpret_cast<const char*>(contact);
      for (std::size_t line = 0; line < sizeof(ContactSymbol); line += 64) __builtin_prefetch(record + line);
    }
    for (const Located& located : mLocated)
      __builtin_prefetch(mDrawings[located.drawing].pins.data() + located.contact->pins.first);
  }

  // The drawing of a contact: the last whose first contact is not beyond it (drawings without contacts share theirs).
  std::size_t drawingOf(ContactNumber contact) const {
    const auto after = std::upper_bound(mFirstContacts.begin(), mFirstContacts.end(), contact);
    return static_cast<std::size_t>(after - mFirstContacts.begin()) - 1;
  }

  void presentGuarded(CoilWork& work, CoilPlan& plan) {
    std::unique_ptr<OhmUtXrefEntity> own;
    OhmUtXrefEntity* entity = nullptr;
    if (work.coil->xdata) {
      own = makeEntity(*work.coil, mDrawings[work.drawing], mOverride);
      entity = own.get();
    } else {
      if (!mPlainMade) mPlain = makeEntity(*work.coil, mDrawings[work.drawing], mPlainOverride);
      mPlainMade = true;
      entity = mPlain.get();
    }
    if (!entity) {
      plan.error = "the coil asks for no presentation: its style option is neither \"0\", \"1\" nor \"2\"";
      return;
    }
    entity->setHostDwgPath(mDrawings[plan.drawing].path);
    plan.style = entity->getStyle();
    if (auto* table = dynamic_cast<OhmUtXrefTableEntity*>(entity)) return fillTable(*table, plan);
    if (auto* graphic = dynamic_cast<OhmUtXrefGraphicEntity*>(entity)) return fillLines(*graphic, plan);
    if (auto* text = dynamic_cast<OhmUtXrefTextEntity*>(entity)) fillTexts(*text, work, plan);
  }

  // The coil's presentation, as the factory makes it for the coil rebuilt in
  // a scratch drawing (its block, attributes and xdata), so that the factory
  // sees what it would see in the coil's own drawing; over `settings`, which
  // it lays the coil's overrides on.
  std::unique_ptr<OhmUtXrefEntity> makeEntity(const CoilSymbol& coil, const DrawingComponents& drawing,
                                              OhmNoRxUtilsSettingOverride& settings) {
    ZdDbDrawingBuilder::Attributes attributes;
    for (const PooledAttribute& attribute : drawing.attributesOf(coil))
      attributes.emplace_back(drawing.text(attribute.tag), drawing.text(attribute.value));
    ZdDbBlockReference* block = scratchBuilder().insertBlock(std::u16string(drawing.text(coil.blockName)), attributes);
    if (coil.xdata) block->setXData(coil.xdata.get());
    settings.clearOverride();
    return std::unique_ptr<OhmUtXrefEntity>(OhmUtXrefEntityFactory::getXrefEntity(block, settings));
  }

  void fillTexts(const OhmUtXrefTextEntity& entity, CoilWork& work, const CoilPlan& plan) {
    const std::u16string separator = entity.getSeparator();
    const DrawingComponents& drawing = mDrawings[work.drawing];
    for (const PooledAttribute& attribute : drawing.attributesOf(*work.coil)) {
      if (!IsCoilXrefTag(drawing.text(attribute.tag))) continue;
      const std::u16string tag(drawing.text(attribute.tag));  // a few units: no allocation
      const std::u16string_view old = drawing.text(attribute.value);
      mJoined.clear();
      bool first = true;
      for (std::size_t i = 0; i < plan.contacts.size(); ++i) {
        if (!entity.getXrefText(tag, mRecords[i].occurrence(), mText)) continue;
        if (!first) mJoined += separator;
        mJoined += mText;
        first = false;
      }
      if (mJoined != old) {
        mChanges[work.firstChange + work.changed++] = {plan.drawing, work.coil->handle, drawing.text(attribute.tag), old,
                                                       mNewValues.keep(mJoined)};
      }
    }
  }

  void fillLines(OhmUtXrefGraphicEntity& entity, CoilPlan& plan) {
    for (std::size_t i = 0; i < plan.contacts.size(); ++i) {
      const std::u16string label = mRecords[i].label();
      const OhmDsComponentOcc& occ = mRecords[i].occurrence();
      std::u16string text, ncText;
      if (entity.isFullFormCContact(occ)) {
        if (!entity.getUnformattedXrefTextForFullFormCContact(occ, text, ncText)) continue;
        plan.lines.emplace_back(label, text);
        plan.lines.emplace_back(label, ncText);
      } else if (entity.isPartialFormCContact(occ)) {
        if (entity.getUnformattedXrefTextForPartialFormCContact(occ, text)) plan.lines.emplace_back(label, text);
      } else if (entity.getUnformattedXrefText(occ, text)) {
        plan.lines.emplace_back(label, text);
      }
    }
  }

  void fillTable(OhmUtXrefTableEntity& entity, CoilPlan& plan) {
    plan.titles = OhmUtXrefTableRows::getTitles(entity);
    for (std::size_t i = 0; i < plan.contacts.size(); ++i) {
      for (auto& cells : OhmUtXrefTableRows::getRows(entity, mRecords[i].occurrence())) {
        plan.rows.emplace_back(mRecords[i].label(), std::move(cells));
      }
    }
  }

  // The drawing the coils are rebuilt in: one for many coils, since making a
  // database costs more than the coil; renewed often enough that it stays
  // well below the size of a drawing (its coils are most of what planning
  // holds beyond its result).
  ZdDbDrawingBuilder& scratchBuilder() {
    constexpr int kCoilsPerScratch = 128;
    if (!mScratch || mScratchCoils++ == kCoilsPerScratch) {
      mBuilder.reset();
      mScratch = std::make_unique<ZdDbDatabase>();
      mBuilder = std::make_unique<ZdDbDrawingBuilder>(*mScratch);
      mScratchCoils = 1;
    }
    return *mBuilder;
  }

  const std::vector<DrawingComponents>& mDrawings;
  const std::vector<int>& mFirstSheets;
  const std::vector<ContactNumber>& mFirstContacts;
  AttributeChange* mChanges;
  const OhmNoRxUtilsSettingOverride::SettingMap& mSettings;
  // The project's settings, with the overrides of the coil being presented.
  OhmNoRxUtilsSettingOverride mOverride{mSettings};
  // The presentation of every coil without xdata: the factory reads nothing
  // else of a coil, so theirs depends on the settings alone, and is made once.
  OhmNoRxUtilsSettingOverride mPlainOverride{mSettings};
  std::unique_ptr<OhmUtXrefEntity> mPlain;  // null when such coils ask for none
  bool mPlainMade = false;
  std::deque<ContactRecord> mRecords;  // the first ones hold the coil's contacts; a deque: records stay put
  std::vector<Located> mLocated;       // the coil's contacts, in the order of its sources
  std::u16string mJoined, mText;
  TextRoom mNewValues;
  std::unique_ptr<ZdDbDatabase> mScratch;
  std::unique_ptr<ZdDbDrawingBuilder> mBuilder;
  int mScratchCoils = 0;
};

// What the planner holds for a run of coils until they are presented: each
// one's work and the contacts that take part in it, in project order. The
// coils are presented a batch at a time and each batch is dropped after, so
// that its room goes to the result, which grows most while the coils are
// presented; the project's coils are never all held twice.
struct CoilBatch {
  static constexpr std::size_t kCoils = 4096;  // but the last batch's
  std::vector<CoilWork> work;
  // The contacts of the batch's coil i are sources[firstSource[i]] up to sources[firstSource[i + 1]].
  std::vector<std::uint32_t> firstSource;
  std::vector<ContactNumber> sources;

  std::span<const ContactNumber> sourcesOf(std::size_t coil) const {
    return {sources.data() + firstSource[coil], firstSource[coil + 1] - firstSource[coil]};
  }
};

// Puts `changes` in drawing order, keeping the order within a drawing, in
// place: a stable sort would copy them all once more.
void OrderByDrawing(std::vector<AttributeChange>& changes, std::size_t drawings) {
  const auto byDrawing = [](const AttributeChange& a, const AttributeChange& b) { return a.drawing < b.drawing; };
  if (std::is_sorted(changes.begin(), changes.end(), byDrawing)) return;
  std::vector<std::size_t> next(drawings + 1, 0);
  for (const AttributeChange& change : changes) ++next[change.drawing + 1];
  for (std::size_t d = 1; d <= drawings; ++d) next[d] += next[d - 1];
  std::vector<std::size_t> target(changes.size());
  for (std::size_t i = 0; i < changes.size(); ++i) target[i] = next[changes[i].drawing]++;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    while (target[i] != i) {
      std::swap(changes[i], changes[target[i]]);
      std::swap(target[i], target[target[i]]);
    }
  }
}

// Builds the plan in place: each coil's plan and each contact's place are
// made once, where the result keeps them, so that the planning needs little
// memory beyond what it returns.
class Planner {
 public:
  Planner(const std::vector<DrawingComponents>& drawings, const OhmNoRxUtilsSettingOverride::SettingMap& settings,
          unsigned workers)
      : mDrawings(drawings), mSettings(settings), mWorkers(std::max(1u, workers)) {}

  UpdatePlan run() {
    numberSheets();
    std::size_t coils = 0;
    for (const DrawingComponents& drawing : mDrawings) coils += drawing.coils.size();
    mPlan.coils.reserve(coils);
    mBatches.reserve(coils / CoilBatch::kCoils + 1);
    mCoils = TagIndex(coils);
    for (std::size_t d = 0; d < mDrawings.size(); ++d) {
      for (const DrawingProblem& problem : mDrawings[d].problems) {
        mPlan.problems.push_back({d, problem.handle, problem.line, problem.message});
      }
      for (const CoilSymbol& coil : mDrawings[d].coils) indexCoil(d, coil);
    }
    gatherContacts();
    mCoils = TagIndex();  // no use from here on
    presentCoils();
    mPlan.changes.insert(mPlan.changes.end(), mContactChanges.begin(), mContactChanges.end());
    mPlan.newValues.push_back(std::move(mContactValues));
    OrderByDrawing(mPlan.changes, mDrawings.size());
    return std::move(mPlan);
  }

 private:
  // The coils' presentations, batch after batch, each batch dropped once presented.
  void presentCoils() {
    std::size_t room = 0;
    for (CoilBatch& batch : mBatches) {
      for (CoilWork& work : batch.work) {
        work.firstChange = static_cast<std::uint32_t>(room);
        room += XrefAttributeCount(*work.coil, mDrawings[work.drawing]);
      }
    }
    // Reserved at once, so that the contacts' changes fit after the coils' places.
    mPlan.changes.reserve(room + mContactChanges.size());
    mPlan.changes.resize(room);
    std::size_t kept = 0;
    for (std::size_t b = 0; b < mBatches.size(); ++b) {
      presentBatch(mBatches[b], b * CoilBatch::kCoils);
      kept = keepChangesMade(mBatches[b], kept);
      mBatches[b] = CoilBatch();  // its room goes to the coils after
    }
    mPlan.changes.resize(kept);
    for (const CoilPlan& plan : mPlan.coils) {
      if (!plan.error.empty()) mPlan.problems.push_back({plan.drawing, plan.handle, 0, plan.error});
    }
  }

  // The presentations of the batch's coils, `mWorkers` at a time, each in
  // its own places; `first` is the index of the batch's first coil.
  void presentBatch(CoilBatch& batch, std::size_t first) {
    const std::size_t count = batch.work.size();
    std::atomic<std::size_t> next{0};
    std::mutex keeping;
    auto run = [&] {
      CoilPresenter presenter(mDrawings, mFirstSheet, mFirstContact, mPlan.changes.data(), mSettings);
      for (std::size_t i = next++; i < count; i = next++) {
        presenter.present(batch.work[i], mPlan.coils[first + i], batch.sourcesOf(i));
      }
      std::lock_guard lock(keeping);
      mPlan.newValues.push_back(presenter.takeNewValues());
    };
    std::vector<std::thread> threads;
    for (unsigned w = 1; w < std::min<std::size_t>(mWorkers, count); ++w) threads.emplace_back(run);
    run();
    for (std::thread& thread : threads) thread.join();
  }

  // Moves the changes the batch's coils made to follow the `kept` changes of
  // the coils before, closing up the places they left empty; the number kept
  // now. The places of the coils after lie beyond, untouched.
  std::size_t keepChangesMade(const CoilBatch& batch, std::size_t kept) {
    for (const CoilWork& work : batch.work) {
      for (std::size_t i = 0; i < work.changed; ++i) {
        AttributeChange* change = mPlan.changes.data() + work.firstChange + i;
        if (change != mPlan.changes.data() + kept) mPlan.changes[kept] = std::move(*change);
        ++kept;
      }
    }
    return kept;
  }

  void numberSheets() {
    int next = 1;
    for (const DrawingComponents& drawing : mDrawings) {
      mFirstSheet.push_back(next);
      next += drawing.sheets;
    }
  }

  void indexCoil(std::size_t d, const CoilSymbol& coil) {
    const DrawingComponents& drawing = mDrawings[d];
    const std::u16string_view tag = drawing.text(coil.tag);
    const auto [number, added] = mCoils.add(tag);
    if (added) {  // the number is mPlan.coils.size(): coils are numbered as they are added
      CoilPlan& plan = mPlan.coils.emplace_back();
      plan.drawing = d;
      plan.handle = coil.handle;
      plan.tag = tag;
      plan.sheet = DecimalText(mFirstSheet[d] + coil.place.sheetInDrawing);
      AssignReference(plan.reference, coil.place, drawing, plan.sheet);
      if (mBatches.empty() || mBatches.back().work.size() == CoilBatch::kCoils) {
        mBatches.emplace_back().work.reserve(CoilBatch::kCoils);
      }
      mBatches.back().work.push_back({&coil, static_cast<std::uint32_t>(d)});
      return;
    }
    const CoilPlan& first = mPlan.coils[number];
    mPlan.problems.push_back({d, coil.handle, 0,
                              "coil " + Narrow(tag) + " is already in " + mDrawings[first.drawing].file + " (handle " +
                                  HandleText(first.handle) + "); this one is left as it is"});
  }

  // Each contact that takes part goes to its coil's part of its batch's
  // sources; the contacts are counted first, so that the parts are laid out end to end.
  void gatherContacts() {
    constexpr std::uint32_t kLeftOut = UINT32_MAX;
    std::vector<std::uint32_t> coilOf;  // by contact number
    coilOf.reserve(mFirstContact.back());
    const std::size_t coils = mPlan.coils.size();
    std::vector<std::uint32_t> counts(coils, 0);
    for (std::size_t d = 0; d < mDrawings.size(); ++d) {
      for (const ContactSymbol& contact : mDrawings[d].contacts) {
        const std::size_t coil = coilTakingPart(d, contact);
        coilOf.push_back(coil < coils ? static_cast<std::uint32_t>(coil) : kLeftOut);
        if (coil < coils) ++counts[coil];
      }
    }
    std::vector<std::uint32_t>& place = counts;  // where the next contact of each coil goes in its batch
    for (std::size_t b = 0; b < mBatches.size(); ++b) layOut(mBatches[b], place.data() + b * CoilBatch::kCoils);
    for (ContactNumber contact = 0; contact < coilOf.size(); ++contact) {
      const std::uint32_t coil = coilOf[contact];
      if (coil != kLeftOut) mBatches[coil / CoilBatch::kCoils].sources[place[coil]++] = contact;
    }
  }

  // Makes room for the batch's contacts, given how many each of its coils
  // has; turns those counts into the place of each coil's first contact.
  static void layOut(CoilBatch& batch, std::uint32_t* counts) {
    batch.firstSource.assign(batch.work.size() + 1, 0);
    for (std::size_t i = 0; i < batch.work.size(); ++i) {
      batch.firstSource[i + 1] = batch.firstSource[i] + counts[i];
      counts[i] = batch.firstSource[i];
    }
    batch.sources.resize(batch.firstSource.back());
  }

  // The index of the contact's coil when the contact takes part; else its
  // problem, and no coil. Plans the contact's XREF attribute on the way.
  std::size_t coilTakingPart(std::size_t d, const ContactSymbol& contact) {
    auto problem = [&](const std::string& message) {
      mPlan.problems.push_back({d, contact.handle, 0, message});
      return SIZE_MAX;
    };
    const DrawingComponents& drawing = mDrawings[d];
    const std::u16string_view coilTag = drawing.text(contact.coilTag);
    const std::optional<std::uint32_t> coil = mCoils.find(coilTag);
    if (!coil) return problem("contact of coil " + Narrow(coilTag) + ", which is nowhere");
    planContactXref(d, contact, mPlan.coils[*coil]);
    if (!KnownKind(drawing.text(contact.kind))) {
      return problem("contact of coil " + Narrow(coilTag) + " of unknown kind \"" + Narrow(drawing.text(contact.kind)) +
                     "\" (block " + Narrow(drawing.text(contact.blockName)) + ")");
    }
    if (contact.pins.count == 0) return problem("contact of coil " + Narrow(coilTag) + " without pins");
    return *coil;
  }

  // A contact's XREF attribute names the place of its coil, as the coil's
  // references name the contacts: the project's formats, seen from the
  // contact's drawing.
  void planContactXref(std::size_t d, const ContactSymbol& contact, const CoilPlan& plan) {
    if (!contact.hasXref) return;
    OhmNoRxUtilsXrefTextFormat::RefData data;
    data.mDwgPath = mDrawings[plan.drawing].path;
    data.mSheet = plan.sheet;
    data.mRef = plan.reference;
    data.mSheetDwgName = mDrawings[plan.drawing].name;
    std::u16string text;
    OhmNoRxUtilsXrefTextFormat::getXrefText(mContactXrefFormats, mDrawings[d].path, data, text);
    const std::u16string_view old = mDrawings[d].text(contact.xref);
    if (text != old) mContactChanges.push_back({d, contact.handle, u"XREF", old, mContactValues.keep(text)});
  }

  std::u16string setting(OhmCfgSetting::WD_M_ATTRIB option) const {
    const auto found = mSettings.find(option);
    return found == mSettings.end() ? std::u16string() : found->second;
  }

  const std::vector<DrawingComponents>& mDrawings;
  const OhmNoRxUtilsSettingOverride::SettingMap& mSettings;
  std::vector<int> mFirstSheet;
  std::vector<ContactNumber> mFirstContact = FirstContacts(mDrawings);
  // The formats of the contacts' XREF attributes, the same for every contact.
  const OhmNoRxUtilsXrefTextFormat::Option mContactXrefFormats{setting(OhmCfgSetting::WD_XREF_FORMAT),
                                                               setting(OhmCfgSetting::WD_XREF_ALTFORMAT), false};
  // The coils by tag (views into the drawings' text pools, which outlive the
  // planner and do not change while it works), as their index in mPlan.coils.
  TagIndex mCoils;
  std::vector<CoilBatch> mBatches;               // coil i is the (i % kCoils)th of batch i / kCoils
  std::vector<AttributeChange> mContactChanges;  // in project order; they follow the coils' changes
  TextRoom mContactValues;                       // their new values
  unsigned mWorkers;
  UpdatePlan mPlan;
};

}  // namespace

std::u16string_view ContactPlace::kind(const std::vector<DrawingComponents>& drawings) const {
  return drawings[drawing].text(SymbolOf(*this, drawings).kind);
}

std::u16string_view ShownKind(std::u16string_view kind) { return kind == u"NONC" ? u"Form C" : kind; }

std::u16string ContactPlace::sheetText() const { return DecimalText(sheet); }

std::u16string ContactPlace::reference(const std::vector<DrawingComponents>& drawings) const {
  std::u16string text;
  AssignReference(text, SymbolOf(*this, drawings).place, drawings[drawing], sheetText());
  return text;
}

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
