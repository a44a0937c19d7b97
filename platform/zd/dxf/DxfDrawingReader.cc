#include "zd/dxf/DxfDrawingReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "win/fs/PathMapping.h"
#include "zd/ZdCodes.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbText.h"
#include "zd/dxf/DxfEntityClasses.h"
#include "zd/dxf/DxfTags.h"
#include "zd/dxf/DxfTextCodec.h"
#include "zd/dxf/DxfValues.h"
#include "zd/dxf/DxfXData.h"

namespace {

using Tags = std::span<const DxfTag>;

// What an object takes of a file at the least, about: its type, handle,
// owner, layer and subclass groups. Sizes the handle table up front.
constexpr std::size_t kBytesPerObjectAtLeast = 128;

// One record of the file: a 0 tag (its type) and the tags up to the next 0
// tag. `body` is the raw text of those tags.
struct Record {
  std::string_view type;
  int line = 0;
  std::vector<DxfTag> tags;
  std::string_view body;
};

// Walks the records of a text one at a time; nothing after EOF is read.
class RecordReader {
 public:
  explicit RecordReader(std::string_view text) : mTags(text) {
    mHasNext = mTags.next(mNext);
    advance();
  }

  const Record& current() const noexcept { return mCurrent; }
  bool atEnd() const noexcept { return mAtEnd; }
  // A tag fault that ended the records early; empty when none.
  const std::string& problem() const noexcept { return mTags.problem(); }
  int problemLine() const noexcept { return mTags.problemLine(); }
  // The line after the last record read.
  int endLine() const noexcept { return mEndLine; }
  // Where the last record read ends in the text: before a tag fault, never after it.
  std::size_t endOffset() const noexcept { return mEndOffset; }

  void advance() {
    mCurrent.tags.clear();
    if (!mHasNext || mCurrent.type == "EOF") {
      mAtEnd = true;
      mCurrent.type = {};
      mCurrent.body = {};
      return;
    }
    mCurrent.type = mNext.value;
    mCurrent.line = mNext.line;
    const std::string_view text = mTags.text();
    const std::size_t begin = mTags.offset();
    std::size_t end = begin;
    mEndLine = mNext.line + 2;
    mHasNext = false;
    if (mCurrent.type != "EOF") {
      for (DxfTag tag; mTags.next(tag); end = mTags.offset()) {
        if (tag.code == 0) {
          mNext = tag;
          mHasNext = true;
          break;
        }
        mCurrent.tags.push_back(tag);
        mEndLine = tag.line + 2;
      }
      // At the end of the text the record ends there; at a fault, before it.
      if (!mHasNext && mTags.problem().empty()) end = mTags.offset();
    }
    mCurrent.body = text.substr(begin, end - begin);
    mEndOffset = end;
  }

 private:
  DxfTagReader mTags;
  DxfTag mNext;
  bool mHasNext = false;
  bool mAtEnd = false;
  Record mCurrent;
  int mEndLine = 1;
  std::size_t mEndOffset = 0;
};

// The fields of an entity that the database keeps.
struct EntityFields {
  std::optional<std::uint64_t> handle;
  std::optional<std::uint64_t> owner;  // the first 330 outside a 102 group
  std::string_view layer = "0";
  bool paperSpace = false;               // 67 = 1
  std::optional<std::string_view> name;  // the first 2
  std::string_view text;                 // the first 1
  bool multiple = false;                 // subclass AcDbMInsertBlock
  std::int64_t columns = 1, rows = 1;    // 70, 71 of an INSERT
  Tags xdata;                            // from the first 1001 on
};

struct LayoutFields {
  std::string_view kept;  // the record's groups
  std::string_view name;
  std::int32_t tabOrder = 0;
  std::optional<std::uint64_t> block;
};

struct DictionaryFields {
  std::string_view text;  // the whole record
  std::uint64_t handle = 0;
  std::vector<std::pair<std::string_view, std::uint64_t>> entries;  // name, handle, in file order
};

bool isAcadVersion(std::string_view version) {
  return version.size() == 6 && version.substr(0, 2) == "AC" &&
         version.substr(2).find_first_not_of("0123456789") == std::string_view::npos;
}

// The block name a file gives, with R12's names of model and paper space.
std::string_view blockNameOf(std::string_view name) {
  if (name == "$MODEL_SPACE") return "*Model_Space";
  if (name == "$PAPER_SPACE") return "*Paper_Space";
  return name;
}

// The codec of a file; ANSI_1252 for a code page this build can't convert
// (and UTF-8 should even that be missing).
DxfTextCodec codecOf(std::string_view version, std::string_view codePage) {
  if (auto codec = DxfTextCodec::forDrawing(version, codePage)) return *codec;
  return DxfTextCodec::forDrawing(version, "ANSI_1252").value_or(DxfTextCodec::utf8());
}

// Where the group code line of a tag starts, given where its value starts:
// the line before. REQUIRES: the value is in a text, after its code line.
const char* codeLineOf(const char* value, std::string_view text) {
  const char* const begin = text.data();
  const char* at = value;
  if (at != begin && at[-1] == '\n') --at;
  if (at != begin && at[-1] == '\r') --at;
  while (at != begin && at[-1] != '\n' && at[-1] != '\r') --at;
  return at;
}

// A record's whole text, from its 0 group to its end; from `start` to the end of `last`.
std::string_view wholeText(const Record& record, std::string_view text) {
  const char* start = codeLineOf(record.type.data(), text);
  return {start, static_cast<std::size_t>(record.body.data() + record.body.size() - start)};
}
std::string_view textFrom(const char* start, const Record& last) {
  return {start, static_cast<std::size_t>(last.body.data() + last.body.size() - start)};
}

std::string quoted(std::string_view text) {
  std::string out(1, '"');
  out.append(text).push_back('"');
  return out;
}

// Reads the records of one DXF text into an empty database of its own.
class DxfLoader {
 public:
  DxfLoader(ZdDbDatabase& database, std::string_view text, const DxfReadOptions& options, DxfReadReport& report)
      : mDatabase(database),
        mText(text),
        mRecords(text),
        mOptions(options),
        mReport(report),
        mCodec(DxfTextCodec::utf8()) {}

  const DxfTextCodec& codec() const noexcept { return mCodec; }

  Zeda::ErrorStatus load() {
    if (!mRecords.problem().empty() && mRecords.atEnd()) return fail(mRecords.problemLine(), mRecords.problem());
    while (at("SECTION")) {
      if (const Zeda::ErrorStatus status = readSection(); status != Zeda::eOk) return status;
    }
    if (!at("EOF")) {
      if (!mRecords.atEnd()) return fail(current().line, "SECTION or EOF expected, not " + quoted(current().type));
      if (const Zeda::ErrorStatus status = missing("ends before EOF", "EOF added"); status != Zeda::eOk) return status;
    }
    return finish();
  }

 private:
  const Record& current() const { return mRecords.current(); }
  bool at(std::string_view type) const { return !mRecords.atEnd() && current().type == type; }
  bool atSectionEnd() const { return mRecords.atEnd() || at("ENDSEC") || at("EOF") || at("SECTION"); }
  void advance() { mRecords.advance(); }
  std::u16string decode(std::string_view raw) const { return mCodec.decode(raw); }
  // Entities come in runs on one layer: the last name decoded serves again.
  const std::u16string& layerName(std::string_view raw) {
    if (raw != mLastLayerRaw || mLastLayer.empty()) {
      mLastLayerRaw = raw;
      mLastLayer = decode(raw);
    }
    return mLastLayer;
  }

  // A refusal; a tag fault met so far is named instead, as what follows it
  // is only its consequence.
  Zeda::ErrorStatus fail(int line, std::string problem) {
    const bool tagFault = !mRecords.problem().empty();
    mReport.line = tagFault ? mRecords.problemLine() : line;
    mReport.problem = tagFault ? mRecords.problem() : std::move(problem);
    return Zeda::eBadDxfFile;
  }

  // Something the file lacks where the reader stands: refused, or in recover
  // mode listed as repaired. A tag fault that cut the records short is named first.
  Zeda::ErrorStatus missing(const std::string& problem, const std::string& repair) {
    const bool cutShort = mRecords.atEnd() && !mRecords.problem().empty();
    const int line = cutShort ? mRecords.problemLine() : mRecords.atEnd() ? mRecords.endLine() : current().line;
    if (!mOptions.recover) return cutShort ? fail(line, mRecords.problem()) : fail(line, problem);
    if (cutShort && !mReportedCut) {
      mReportedCut = true;
      mReport.repairs.push_back(std::to_string(line) + ": the rest of the file dropped (" + mRecords.problem() + ")");
    }
    mReport.repairs.push_back(std::to_string(line) + ": " + repair);
    return Zeda::eOk;
  }

  Zeda::ErrorStatus badValue(const DxfTag& tag, std::string_view what) {
    return fail(tag.line, "value of group " + std::to_string(tag.code) + " is not " + std::string(what));
  }

  // Reads the value of an integer group, reporting a bad one.
  bool integerOf(const DxfTag& tag, std::int64_t& value) {
    const auto number = parseDxfInteger(tag.value);
    if (!number) return badValue(tag, "an integer"), false;
    value = *number;
    return true;
  }

  // A handle group; an empty value (as writers of files without handles
  // emit) is no handle.
  bool handleOf(const DxfTag& tag, std::optional<std::uint64_t>& handle) {
    if (tag.value.find_first_not_of(' ') == std::string_view::npos) return true;
    handle = parseDxfHandle(tag.value);
    return handle ? true : (badValue(tag, "a handle"), false);
  }

  // --- sections ---------------------------------------------------------------------

  Zeda::ErrorStatus readSection() {
    const int line = current().line;
    std::string_view name;
    if (!current().tags.empty() && current().tags.front().code == 2) name = current().tags.front().value;
    if (name.empty()) return fail(line, "section name (group 2) expected");
    Zeda::ErrorStatus status = Zeda::eOk;
    if (name == "HEADER") {
      status = readHeader(Tags(current().tags).subspan(1));
      keptParts().header = current().tags.size() > 1
                               ? textFrom(codeLineOf(current().tags[1].value.data(), mText), current())
                               : std::string_view();
    }
    const char* const sectionStart = current().body.data() + current().body.size();
    // A file without a header is R12 in ANSI_1252; its codec is made once it is needed.
    if (!mCodecChosen) mCodec = codecOf(mVersion, mCodePage);
    mCodecChosen = true;
    advance();
    if (status != Zeda::eOk) return status;
    if (name == "TABLES")
      status = readTables();
    else if (name == "BLOCKS")
      status = readBlocks();
    else if (name == "ENTITIES")
      status = readEntities({});
    else if (name == "OBJECTS")
      status = readObjects();
    else
      while (!atSectionEnd()) advance();
    if (name == "CLASSES" && status == Zeda::eOk)
      keptParts().classes = std::string_view(sectionStart, classesEnd(sectionStart));
    if (status != Zeda::eOk) return status;
    if (at("ENDSEC")) return advance(), Zeda::eOk;
    if (!atSectionEnd()) return fail(current().line, "ENDSEC expected, not " + quoted(current().type));
    return missing("ENDSEC of section " + std::string(name) + " expected",
                   "ENDSEC of section " + std::string(name) + " added");
  }

  ZdDbDatabase::KeptDxfParts& keptParts() { return mDatabase.keptDxfParts(); }

  // Where the records of a section that started at `start` end: at the
  // record the reader stands on, or where the last one read ended.
  std::size_t classesEnd(const char* start) const {
    if (mRecords.atEnd()) return static_cast<std::size_t>(mText.data() + mRecords.endOffset() - start);
    return static_cast<std::size_t>(codeLineOf(current().type.data(), mText) - start);
  }

  Zeda::ErrorStatus readHeader(Tags tags) {
    std::string_view variable;
    const DxfTag* versionTag = nullptr;
    for (const DxfTag& tag : tags) {
      if (tag.code == 9) {
        variable = tag.value;
      } else if (variable == "$ACADVER" && tag.code == 1) {
        mVersion = tag.value;
        versionTag = &tag;
      } else if (variable == "$DWGCODEPAGE" && tag.code == 3) {
        mCodePage = tag.value;
      } else if (variable == "$HANDSEED" && tag.code == 5) {
        std::optional<std::uint64_t> seed;
        if (!handleOf(tag, seed)) return Zeda::eBadDxfFile;
        mHandseed = seed.value_or(0);
      }
    }
    if (versionTag && !isAcadVersion(mVersion)) return badValue(*versionTag, "a version (AC1009 ...)");
    mCodec = codecOf(mVersion, mCodePage);
    mCodecChosen = true;
    // Handles that the file does not give come after every one it gives.
    mDatabase.raiseHandseed(ZdDbHandle(mHandseed));
    return Zeda::eOk;
  }

  // --- entity fields ------------------------------------------------------------------

  bool readEntityFields(Tags tags, EntityFields& fields, bool isInsert) {
    bool inGroup = false;
    for (std::size_t at = 0; at < tags.size(); ++at) {
      const DxfTag& tag = tags[at];
      std::int64_t number = 0;
      switch (tag.code) {
        case 102:
          inGroup = !tag.value.empty() && tag.value.front() == '{';
          break;
        case 5:
          if (!handleOf(tag, fields.handle)) return false;
          break;
        case 330:
          if (!inGroup && !fields.owner) fields.owner = parseDxfHandle(tag.value);
          break;
        case 8:
          fields.layer = tag.value;
          break;
        case 2:
          if (!fields.name) fields.name = tag.value;
          break;
        case 1:
          if (fields.text.empty()) fields.text = tag.value;
          break;
        case 100:
          fields.multiple = fields.multiple || tag.value == "AcDbMInsertBlock";
          break;
        case 66:
        case 67:
          if (!integerOf(tag, number)) return false;
          if (tag.code == 67) fields.paperSpace = number == 1;
          break;
        case 70:
        case 71:
          if (!isInsert) break;
          if (!integerOf(tag, number)) return false;
          (tag.code == 70 ? fields.columns : fields.rows) = number;
          break;
        case XD_APPNAME:
          fields.xdata = tags.subspan(at);
          return true;
        default:
          break;
      }
    }
    return true;
  }

  // --- tables: the block records, with their handles -------------------------------

  Zeda::ErrorStatus readTables() {
    while (!atSectionEnd()) {
      bool blockRecords = false;
      const char* const start = codeLineOf(current().type.data(), mText);
      std::string tableName;
      if (at("TABLE")) {
        EntityFields table;
        if (!readEntityFields(current().tags, table, false)) return Zeda::eBadDxfFile;
        blockRecords = table.name == "BLOCK_RECORD";
        tableName = std::string(table.name.value_or(""));
        if (blockRecords && table.handle)
          mDatabase.setObjectHandle(mDatabase.blockTableId(), ZdDbHandle(*table.handle));
        advance();
      } else {
        const std::string type(current().type);
        if (const auto status =
                missing("TABLE expected, not " + quoted(type), "TABLE head added before " + quoted(type));
            status != Zeda::eOk)
          return status;
        blockRecords = type == "BLOCK_RECORD";
      }
      for (; !atSectionEnd() && !at("ENDTAB") && !at("TABLE"); advance()) {
        if (blockRecords && !readBlockRecord(current())) return Zeda::eBadDxfFile;
      }
      if (at("ENDTAB")) {
        // A table the file has in full is kept as it is; the block records
        // and the applications are made again from the database.
        const bool made = blockRecords || tableName == "APPID" || tableName.empty();
        keptParts().tables.emplace_back(tableName, made ? std::string_view() : textFrom(start, current()));
        advance();
      } else if (const auto status = missing("ENDTAB expected", "ENDTAB added"); status != Zeda::eOk) {
        return status;
      }
    }
    return Zeda::eOk;
  }

  bool readBlockRecord(const Record& record) {
    if (record.type != "BLOCK_RECORD")
      return fail(record.line, "BLOCK_RECORD expected, not " + quoted(record.type)), false;
    EntityFields fields;
    if (!readEntityFields(record.tags, fields, false)) return false;
    if (!fields.name || fields.name->empty()) return fail(record.line, "block name (group 2) expected"), false;
    mDatabase.objectAt(defineBlock(*fields.name, fields.handle))->setKeptDxfGroups(record.body);
    return true;
  }

  // The record of a block the file defines (made when new).
  ZdDbObjectId defineBlock(std::string_view rawName, std::optional<std::uint64_t> handle) {
    const auto known = mBlocksByName.find(rawName);
    if (known != mBlocksByName.end()) {
      if (handle) mDatabase.setObjectHandle(known->second, ZdDbHandle(*handle));
      return known->second;
    }
    const ZdDbObjectId id = mDatabase.blockTableRecordId(decode(blockNameOf(rawName)), true);
    if (handle) mDatabase.setObjectHandle(id, ZdDbHandle(*handle));
    mBlocksByName.emplace(rawName, id);
    return id;
  }

  // --- blocks and entities -----------------------------------------------------------

  Zeda::ErrorStatus readBlocks() {
    while (at("BLOCK")) {
      EntityFields block;
      const int line = current().line;
      if (!readEntityFields(current().tags, block, false)) return Zeda::eBadDxfFile;
      if (!block.name || block.name->empty()) return fail(line, "block name (group 2) expected");
      const ZdDbObjectId id = defineBlock(*block.name, std::nullopt);
      static_cast<ZdDbBlockTableRecord*>(mDatabase.objectAt(id))->setKeptDxfBlockGroups(current().body);
      advance();
      if (const Zeda::ErrorStatus status = readEntities(id); status != Zeda::eOk) return status;
      if (at("ENDBLK")) {
        advance();
      } else if (const auto status = missing("ENDBLK of block " + quoted(*block.name) + " expected",
                                             "ENDBLK of block " + quoted(*block.name) + " added");
                 status != Zeda::eOk) {
        return status;
      }
    }
    if (!atSectionEnd()) return fail(current().line, "BLOCK expected, not " + quoted(current().type));
    return Zeda::eOk;
  }

  // Reads entities into `block` (null: each into the space its owner or code
  // 67 names) up to the end of the section or of the block.
  Zeda::ErrorStatus readEntities(ZdDbObjectId block) {
    while (!atSectionEnd() && !at("ENDBLK") && !at("BLOCK")) {
      if (const Zeda::ErrorStatus status = readEntity(block); status != Zeda::eOk) return status;
    }
    return Zeda::eOk;
  }

  Zeda::ErrorStatus readEntity(ZdDbObjectId block) {
    const Record& record = current();
    const bool isInsert = record.type == "INSERT", isPolyline = record.type == "POLYLINE";
    EntityFields fields;
    if (!readEntityFields(record.tags, fields, isInsert)) return Zeda::eBadDxfFile;
    std::unique_ptr<ZdDbEntity> entity = makeEntity(record, fields);
    if (!entity) return Zeda::eBadDxfFile;
    entity->setLayer(layerName(fields.layer));
    entity->setKeptDxfGroups(record.body);
    const ZdDbHandle handle(fields.handle.value_or(0));
    ZdDbEntity& added = *entity;
    const ZdDbObjectId id = mDatabase.appendEntity(block.isNull() ? spaceOf(fields) : block, std::move(entity), handle);
    if (id.isNull()) return fail(record.line, "the entity has no block to stand in");
    if (const Zeda::ErrorStatus status = keepHandleAndXData(added, fields); status != Zeda::eOk) return status;
    if (isInsert && fields.name) mPendingReferences.emplace_back(id, *fields.name);
    advance();
    if (isInsert) return readAttributes(id);
    if (isPolyline) return readVertices(id);
    return Zeda::eOk;
  }

  // A new entity of the record's type; null (with the fault) for a type that
  // only follows another or a text that names no type.
  std::unique_ptr<ZdDbEntity> makeEntity(const Record& record, const EntityFields& fields) {
    const std::string_view type = record.type;
    if (type == "INSERT") {
      if (!fields.name || fields.name->empty()) return fail(record.line, "block name (group 2) expected"), nullptr;
      if (!fields.multiple && fields.columns <= 1 && fields.rows <= 1) return std::make_unique<ZdDbBlockReference>();
      if (fields.columns < 1 || fields.rows < 1 || fields.columns > 32767 || fields.rows > 32767)
        return fail(record.line, "row and column counts (groups 70, 71) from 1 to 32767 expected"), nullptr;
      return std::make_unique<ZdDbMInsertBlock>(static_cast<int>(fields.columns), static_cast<int>(fields.rows));
    }
    if (type == "ACAD_TABLE") {
      auto table = std::make_unique<ZdDbTable>();
      if (fields.name && !fields.name->empty()) {
        if (const auto known = mBlocksByName.find(*fields.name); known != mBlocksByName.end())
          table->setBlockTableRecord(known->second);
      }
      return table;
    }
    if (type == "TEXT") {
      auto text = std::make_unique<ZdDbText>();
      text->setTextString(decode(fields.text));
      return text;
    }
    if (type == "ATTRIB" || type == "SEQEND" || type == "VERTEX" || type == "BLOCK" || type == "ENDBLK")
      return fail(record.line, quoted(type) + " stands where an entity was expected"), nullptr;
    // Types are upper case: "Insert" would come back as an INSERT it never was.
    if (std::any_of(type.begin(), type.end(), [](char c) { return c >= 'a' && c <= 'z'; }))
      return fail(record.line, "entity type in upper case expected, not " + quoted(type)), nullptr;
    // The classes of other applications' types belong to this drawing alone.
    const ZdRxClass* cls = isStandardDxfEntityType(type) ? dxfEntityClassOf(type)
                           : isDxfTypeName(type) ? mDatabase.classNamed(dxfClassNameOf(type), ZdDbEntity::desc())
                                                 : nullptr;
    if (!cls) return fail(record.line, "entity type expected, not " + quoted(type)), nullptr;
    return std::make_unique<ZdDbEntity>(cls);
  }

  ZdDbObjectId spaceOf(const EntityFields& fields) {
    if (fields.owner) {
      // Entities come in runs of one owner: the last one found serves again.
      if (*fields.owner == mLastOwnerHandle) return mLastOwner;
      const ZdDbObjectId owner = mDatabase.getObjectId(ZdDbHandle(*fields.owner));
      if (dynamic_cast<const ZdDbBlockTableRecord*>(mDatabase.objectAt(owner))) {
        mLastOwnerHandle = *fields.owner;
        return mLastOwner = owner;
      }
    }
    return fields.paperSpace ? mDatabase.paperSpaceId() : mDatabase.modelSpaceId();
  }

  // The handle the file gives (when another object took it first) and the xdata.
  Zeda::ErrorStatus keepHandleAndXData(ZdDbObject& object, const EntityFields& fields) {
    if (fields.handle && object.objectHandle().value() != *fields.handle)
      mDatabase.setObjectHandle(object.objectId(), ZdDbHandle(*fields.handle));
    if (fields.xdata.empty()) return Zeda::eOk;
    if (const DxfTag* bad = findBadDxfXData(fields.xdata))
      return fail(bad->line, "extended data value of group " + std::to_string(bad->code) + " expected");
    // From the 1001's group code line to the end of the record.
    const std::string_view text = mRecords.current().body;
    const char* const end = text.data() + text.size();
    const char* start = codeLineOf(fields.xdata.front().value.data(), mText);
    object.setXDataAsRead(std::string_view(start, static_cast<std::size_t>(end - start)));
    return Zeda::eOk;
  }

  // The ATTRIB records after an INSERT (with or without its 66 group), up to
  // and with its SEQEND.
  Zeda::ErrorStatus readAttributes(ZdDbObjectId referenceId) {
    if (!at("ATTRIB")) {
      if (at("SEQEND")) advance();  // a 66 without attributes
      return Zeda::eOk;
    }
    auto* reference = static_cast<ZdDbBlockReference*>(mDatabase.objectAt(referenceId));
    for (; at("ATTRIB"); advance()) {
      EntityFields fields;
      if (!readEntityFields(current().tags, fields, false)) return Zeda::eBadDxfFile;
      auto attribute = std::make_unique<ZdDbAttribute>();
      attribute->setTag(decode(fields.name.value_or("")));
      attribute->setTextString(decode(fields.text));
      attribute->setLayer(layerName(fields.layer));
      attribute->setKeptDxfGroups(current().body);
      ZdDbAttribute& added = *attribute;
      reference->appendAttributeId(
          mDatabase.addObject(std::move(attribute), referenceId, ZdDbHandle(fields.handle.value_or(0))));
      if (const Zeda::ErrorStatus status = keepHandleAndXData(added, fields); status != Zeda::eOk) return status;
    }
    if (at("SEQEND")) return advance(), Zeda::eOk;
    return missing("SEQEND after the attributes expected", "SEQEND added after the attributes");
  }

  // The VERTEX records of an old-style polyline (with or without its 66
  // group), up to and with its SEQEND. They stay in the polyline's kept groups.
  Zeda::ErrorStatus readVertices(ZdDbObjectId polylineId) {
    if (!at("VERTEX") && !at("SEQEND")) return Zeda::eOk;
    ZdDbObject* polyline = mDatabase.objectAt(polylineId);
    const std::string_view kept = polyline->keptDxfGroups();
    const char* end = kept.data() + kept.size();
    bool sequenceEnded = false;
    for (; !sequenceEnded && (at("VERTEX") || at("SEQEND")); advance()) {
      sequenceEnded = at("SEQEND");
      end = current().body.data() + current().body.size();
    }
    // Without their SEQEND the vertices are not kept: a polyline written
    // again must read again.
    if (!sequenceEnded) return missing("SEQEND after the vertices expected", "SEQEND added after the vertices");
    polyline->setKeptDxfGroups(std::string_view(kept.data(), static_cast<std::size_t>(end - kept.data())));
    return Zeda::eOk;
  }

  // --- objects: the layout dictionary ----------------------------------------------------

  Zeda::ErrorStatus readObjects() {
    for (; !atSectionEnd(); advance()) {
      const Record& record = current();
      if (record.type == "DICTIONARY") {
        DictionaryFields dictionary;
        if (!readDictionaryFields(record.tags, dictionary)) return Zeda::eBadDxfFile;
        dictionary.text = wholeText(record, mText);
        mDictionaries.push_back(std::move(dictionary));
      } else if (record.type == "LAYOUT") {
        EntityFields object;
        LayoutFields layout;
        if (!readEntityFields(record.tags, object, false) || !readLayoutFields(record.tags, layout))
          return Zeda::eBadDxfFile;
        layout.kept = record.body;
        if (object.handle) mLayouts[*object.handle] = layout;
      } else {
        keptParts().objects.push_back(wholeText(record, mText));
      }
    }
    return Zeda::eOk;
  }

  // A LAYOUT object: its name and block record are the ones of its AcDbLayout part.
  bool readLayoutFields(Tags tags, LayoutFields& layout) {
    bool inLayoutPart = false;
    for (const DxfTag& tag : tags) {
      if (tag.code == 100) inLayoutPart = tag.value == "AcDbLayout";
      if (tag.code == 1 && (inLayoutPart || layout.name.empty())) layout.name = tag.value;
      if (tag.code == 71) {
        std::int64_t tab = 0;
        if (!integerOf(tag, tab)) return false;
        if (tab < INT32_MIN || tab > INT32_MAX) return badValue(tag, "a 32-bit integer"), false;
        layout.tabOrder = static_cast<std::int32_t>(tab);
      }
      if (tag.code == 340 || (tag.code == 330 && inLayoutPart)) layout.block = parseDxfHandle(tag.value);
    }
    return true;
  }

  bool readDictionaryFields(Tags tags, DictionaryFields& dictionary) {
    std::optional<std::string_view> name;
    for (const DxfTag& tag : tags) {
      if (tag.code == 5) {
        std::optional<std::uint64_t> handle;
        if (!handleOf(tag, handle)) return false;
        dictionary.handle = handle.value_or(0);
      }
      if (tag.code == 3) name = tag.value;
      if ((tag.code == 350 || tag.code == 360) && name) {
        if (const auto handle = parseDxfHandle(tag.value)) dictionary.entries.emplace_back(*name, *handle);
        name.reset();
      }
    }
    return true;
  }

  const DictionaryFields* dictionary(std::uint64_t handle) const {
    for (const DictionaryFields& candidate : mDictionaries)
      if (handle != 0 && candidate.handle == handle) return &candidate;
    return nullptr;
  }

  // The ACAD_LAYOUT dictionary of the named object dictionary (the first one).
  const DictionaryFields* layoutDictionary() const {
    if (mDictionaries.empty()) return nullptr;
    for (const auto& [name, handle] : mDictionaries.front().entries)
      if (name == "ACAD_LAYOUT") return dictionary(handle);
    return nullptr;
  }

  // The layouts of the dictionary that the file has objects of; false when none.
  bool addLayouts(const DictionaryFields& layouts) {
    mDatabase.setObjectHandle(mDatabase.layoutDictionaryId(), ZdDbHandle(layouts.handle));
    bool any = false;
    for (const auto& [entryName, handle] : layouts.entries) {
      const auto layout = mLayouts.find(handle);
      if (layout == mLayouts.end()) continue;
      const std::string_view name = layout->second.name.empty() ? entryName : layout->second.name;
      ZdDbObjectId block;
      if (layout->second.block) block = mDatabase.getObjectId(ZdDbHandle(*layout->second.block));
      if (!dynamic_cast<const ZdDbBlockTableRecord*>(mDatabase.objectAt(block))) block = ZdDbObjectId();
      const ZdDbObjectId id = mDatabase.addLayout(decode(name), layout->second.tabOrder, block);
      mDatabase.setObjectHandle(id, ZdDbHandle(handle));
      mDatabase.objectAt(id)->setKeptDxfGroups(layout->second.kept);
      any = true;
    }
    return any;
  }

  // The named object dictionary is kept to be written again with the
  // layouts' entry; every other dictionary but the layouts' as it is.
  void keepOtherDictionaries(const DictionaryFields* layouts) {
    for (std::size_t at = 0; at < mDictionaries.size(); ++at) {
      if (&mDictionaries[at] == layouts) continue;
      if (at == 0)
        keptParts().rootDictionary = mDictionaries[at].text;
      else
        keptParts().objects.push_back(mDictionaries[at].text);
    }
  }

  // Each INSERT's block: the record of that name, or none (with the name
  // kept) when the file never defines it.
  void resolveReferences() {
    for (const auto& [id, rawName] : mPendingReferences) {
      auto* reference = static_cast<ZdDbBlockReference*>(mDatabase.objectAt(id));
      if (const auto known = mBlocksByName.find(rawName); known != mBlocksByName.end()) {
        reference->setBlockTableRecord(known->second);
        continue;
      }
      const std::u16string name = decode(blockNameOf(rawName));
      const ZdDbObjectId block = mDatabase.blockTableRecordId(name);
      if (!block.isNull()) {
        reference->setBlockTableRecord(block);
        continue;
      }
      reference->setUndefinedBlockName(name);
      if (std::find(mReport.undefinedBlocks.begin(), mReport.undefinedBlocks.end(), rawName) ==
          mReport.undefinedBlocks.end())
        mReport.undefinedBlocks.emplace_back(rawName);
    }
  }

  Zeda::ErrorStatus finish() {
    resolveReferences();
    // One rule for every version: a drawing whose layout dictionary names no
    // layout (R12 has none, R13 and R14 an empty one) has the tabs every
    // drawing has.
    const DictionaryFields* layouts = layoutDictionary();
    keepOtherDictionaries(layouts);
    if (!layouts || !addLayouts(*layouts)) {
      mDatabase.addLayout(u"Model", 0, mDatabase.modelSpaceId());
      mDatabase.addLayout(u"Layout1", 1, mDatabase.paperSpaceId());
    }
    mDatabase.setDwgVersion(decode(mVersion));
    mDatabase.setCodePage(decode(mCodePage));
    return Zeda::eOk;
  }

  ZdDbDatabase& mDatabase;
  std::string_view mText;
  RecordReader mRecords;
  const DxfReadOptions& mOptions;
  DxfReadReport& mReport;
  bool mReportedCut = false;
  DxfTextCodec mCodec;
  bool mCodecChosen = false;
  std::string_view mVersion = "AC1009";  // what a file without a header is
  std::string_view mCodePage = "ANSI_1252";
  std::uint64_t mHandseed = 0;
  std::uint64_t mLastOwnerHandle = 0;
  ZdDbObjectId mLastOwner;
  std::string_view mLastLayerRaw;
  std::u16string mLastLayer;
  std::map<std::string_view, ZdDbObjectId> mBlocksByName;
  std::vector<std::pair<ZdDbObjectId, std::string_view>> mPendingReferences;
  std::vector<DictionaryFields> mDictionaries;
  std::map<std::uint64_t, LayoutFields> mLayouts;
};

// The value chain of xdata as a file holds it; null when it can't be made.
ZdValueNode* decodeXData(std::string_view raw, const DxfTextCodec& codec) {
  DxfTagReader reader(raw);
  std::vector<DxfTag> tags;
  for (DxfTag tag; reader.next(tag);) tags.push_back(tag);
  ZdValueNode* chain = nullptr;
  return readDxfXData(tags, codec, chain) == Zeda::eOk ? chain : nullptr;
}

// The bytes of a file; eFileNotFound or eFileAccessErr when they can't be had.
Zeda::ErrorStatus readFileBytes(const std::string& path, std::string& bytes, DxfReadReport& report) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return errno == ENOENT || errno == ENOTDIR ? Zeda::eFileNotFound : Zeda::eFileAccessErr;
  struct stat info {};
  if (::fstat(fd, &info) == 0 && S_ISDIR(info.st_mode)) {
    ::close(fd);
    report.problem = "is a folder, not a drawing";
    return Zeda::eFileAccessErr;
  }
  // Straight into the string, sized by the file; what a file that grows
  // meanwhile has more is appended.
  std::size_t size = 0;
  bytes.resize(info.st_size > 0 ? static_cast<std::size_t>(info.st_size) : 0);
  ssize_t count = 0;
  while (size < bytes.size() && (count = ::read(fd, bytes.data() + size, bytes.size() - size)) > 0)
    size += static_cast<std::size_t>(count);
  bytes.resize(size);
  char more[1 << 12];
  while (count >= 0 && (count = ::read(fd, more, sizeof more)) > 0) bytes.append(more, static_cast<std::size_t>(count));
  ::close(fd);
  return count < 0 ? Zeda::eFileAccessErr : Zeda::eOk;
}

}  // namespace

Zeda::ErrorStatus readDxfDrawingText(std::string text, ZdDbDatabase& database, const DxfReadOptions& options,
                                     DxfReadReport* report) {
  DxfReadReport local;
  DxfReadReport& out = report ? *report : local;
  out = {};
  if (isBinaryDxf(text)) {
    out.line = 1;
    out.problem = "a binary DXF file, not an ASCII one";
    return Zeda::eBadDxfFile;
  }
  // A damaged file may stop in the middle of a line; that line ends, so that
  // what is kept of the last record read is whole lines, which a drawing
  // written from it can be followed by. A whole file ends with EOF instead.
  if (options.recover && !text.empty() && text.back() != '\n') text.push_back('\n');
  ZdDbDatabase loaded(false, true);
  const std::string& kept = loaded.keepSourceText(std::move(text));
  if (kept.find_first_not_of(" \t\r\n") == std::string::npos) {
    out.line = 1;
    out.problem = "the file is empty";
    return Zeda::eBadDxfFile;
  }
  loaded.reserveObjects(kept.size() / kBytesPerObjectAtLeast);
  DxfLoader loader(loaded, kept, options, out);
  const Zeda::ErrorStatus status = loader.load();
  if (status != Zeda::eOk) return status;
  loaded.setXDataDecoder([codec = loader.codec()](std::string_view raw) { return decodeXData(raw, codec); });
  database.swapContents(loaded);
  return Zeda::eOk;
}

Zeda::ErrorStatus readDxfDrawing(std::string_view text, ZdDbDatabase& database, const DxfReadOptions& options,
                                 DxfReadReport* report) {
  return readDxfDrawingText(std::string(text), database, options, report);
}

Zeda::ErrorStatus readDxfDrawingFile(const std::string& path, ZdDbDatabase& database, const DxfReadOptions& options,
                                     DxfReadReport* report) {
  DxfReadReport local;
  DxfReadReport& out = report ? *report : local;
  out = {};
  std::string bytes;
  const Zeda::ErrorStatus status = readFileBytes(path, bytes, out);
  return status == Zeda::eOk ? readDxfDrawingText(std::move(bytes), database, options, &out) : status;
}

Zeda::ErrorStatus ZdDbDatabase::readDwgFile(const char16_t* fileName, int, bool, const char16_t*) {
  const std::optional<std::string> path = fileName ? WindowsPathToPosix(fileName) : std::nullopt;
  if (!path) return Zeda::eFileNotFound;
  return readDxfDrawingFile(*path, *this);
}
