#include "zd/dxf/DxfDrawingReader.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "win/fs/PathMapping.h"
#include "zd/dxf/DxfEntityClasses.h"
#include "zd/dxf/DxfTags.h"
#include "zd/dxf/DxfTextCodec.h"
#include "zd/dxf/DxfValues.h"
#include "zd/dxf/DxfXData.h"
#include "zd/ZdCodes.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbText.h"

namespace {

using Tags = std::span<const DxfTag>;

// One record of the file: a 0 tag (its type) and the tags up to the next 0 tag.
struct Record {
  std::string_view type;
  Tags tags;
};

// The fields of an entity that the database keeps.
struct EntityFields {
  std::optional<std::uint64_t> handle;
  std::optional<std::uint64_t> owner;  // the first 330 outside a 102 group
  std::string_view layer = "0";
  bool paperSpace = false;             // 67 = 1
  std::optional<std::string_view> name;  // the first 2
  std::string_view text;               // the first 1
  bool followers = false;              // 66 = 1: attributes or vertices follow
  Tags xdata;                          // from the first 1001 on
};

struct LayoutFields {
  std::string_view name;
  std::int32_t tabOrder = 0;
  std::optional<std::uint64_t> block;
};

struct DictionaryFields {
  std::uint64_t handle = 0;
  std::vector<std::pair<std::string_view, std::uint64_t>> entries;  // name, handle, in file order
};

bool splitRecords(const std::vector<DxfTag>& tags, std::vector<Record>& records) {
  if (tags.empty() || tags.front().code != 0) return false;
  const Tags all(tags);
  std::size_t start = 0;
  for (std::size_t at = 1; at <= tags.size(); ++at) {
    if (at < tags.size() && tags[at].code != 0) continue;
    records.push_back({tags[start].value, all.subspan(start + 1, at - start - 1)});
    start = at;
  }
  return true;
}

// Reads an entity's fields; false for a value that does not parse.
bool readEntityFields(Tags tags, EntityFields& fields) {
  bool inGroup = false;
  for (std::size_t at = 0; at < tags.size(); ++at) {
    const DxfTag& tag = tags[at];
    switch (tag.code) {
      case 102: inGroup = !tag.value.empty() && tag.value.front() == '{'; break;
      case 5:
        if (!(fields.handle = parseDxfHandle(tag.value))) return false;
        break;
      case 330:
        if (!inGroup && !fields.owner) fields.owner = parseDxfHandle(tag.value);
        break;
      case 8: fields.layer = tag.value; break;
      case 2:
        if (!fields.name) fields.name = tag.value;
        break;
      case 1:
        if (fields.text.empty()) fields.text = tag.value;
        break;
      case 66:
      case 67: {
        const auto flag = parseDxfInteger(tag.value);
        if (!flag) return false;
        (tag.code == 66 ? fields.followers : fields.paperSpace) = *flag == 1;
        break;
      }
      case XD_APPNAME: fields.xdata = tags.subspan(at); return true;
      default: break;
    }
  }
  return true;
}

// A LAYOUT object: its name and block record are the ones of its AcDbLayout part.
bool readLayoutFields(Tags tags, LayoutFields& layout) {
  bool inLayoutPart = false;
  for (const DxfTag& tag : tags) {
    if (tag.code == 100) inLayoutPart = tag.value == "AcDbLayout";
    if (tag.code == 1 && (inLayoutPart || layout.name.empty())) layout.name = tag.value;
    if (tag.code == 71) {
      const auto tab = parseDxfInteger(tag.value);
      if (!tab || *tab < INT32_MIN || *tab > INT32_MAX) return false;
      layout.tabOrder = static_cast<std::int32_t>(*tab);
    }
    if (tag.code == 340 || (tag.code == 330 && inLayoutPart)) layout.block = parseDxfHandle(tag.value);
  }
  return true;
}

bool readDictionaryFields(Tags tags, DictionaryFields& dictionary) {
  std::optional<std::string_view> name;
  for (const DxfTag& tag : tags) {
    if (tag.code == 5) {
      const auto handle = parseDxfHandle(tag.value);
      if (!handle) return false;
      dictionary.handle = *handle;
    }
    if (tag.code == 3) name = tag.value;
    if ((tag.code == 350 || tag.code == 360) && name) {
      if (const auto handle = parseDxfHandle(tag.value)) dictionary.entries.emplace_back(*name, *handle);
      name.reset();
    }
  }
  return true;
}

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

// Reads the records of one DXF text into an empty database of its own.
class DxfLoader {
 public:
  DxfLoader(ZdDbDatabase& database, std::vector<Record> records)
      : mDatabase(database), mRecords(std::move(records)), mCodec(codecOf("AC1009", "ANSI_1252")) {}

  Zeda::ErrorStatus load() {
    while (mAt < mRecords.size() && mRecords[mAt].type == "SECTION") {
      if (const Zeda::ErrorStatus status = readSection(); status != Zeda::eOk) return status;
    }
    if (mAt >= mRecords.size() || mRecords[mAt].type != "EOF") return Zeda::eBadDxfFile;
    return finish();
  }

 private:
  Zeda::ErrorStatus readSection() {
    const Record& section = mRecords[mAt++];
    if (section.tags.empty() || section.tags.front().code != 2) return Zeda::eBadDxfFile;
    const std::string_view name = section.tags.front().value;
    Zeda::ErrorStatus status = Zeda::eOk;
    if (name == "HEADER") status = readHeader(section.tags.subspan(1));
    else if (name == "TABLES") status = readTables();
    else if (name == "BLOCKS") status = readBlocks();
    else if (name == "ENTITIES") status = readEntities({});
    else if (name == "OBJECTS") status = readObjects();
    else skipTo("ENDSEC");
    if (status != Zeda::eOk) return status;
    return atType("ENDSEC") ? (++mAt, Zeda::eOk) : Zeda::eBadDxfFile;
  }

  bool atType(std::string_view type) const { return mAt < mRecords.size() && mRecords[mAt].type == type; }
  bool atSectionEnd() const { return mAt >= mRecords.size() || atType("ENDSEC") || atType("EOF"); }
  void skipTo(std::string_view type) {
    while (!atSectionEnd() && !atType(type)) ++mAt;
  }
  std::u16string decode(std::string_view raw) const { return mCodec.decode(raw); }

  // --- header -------------------------------------------------------------------

  Zeda::ErrorStatus readHeader(Tags tags) {
    std::string_view variable;
    for (const DxfTag& tag : tags) {
      if (tag.code == 9) variable = tag.value;
      else if (variable == "$ACADVER" && tag.code == 1) mVersion = tag.value;
      else if (variable == "$DWGCODEPAGE" && tag.code == 3) mCodePage = tag.value;
      else if (variable == "$HANDSEED" && tag.code == 5) mHandseed = parseDxfHandle(tag.value).value_or(0);
    }
    if (!isAcadVersion(mVersion)) return Zeda::eBadDxfFile;
    mCodec = codecOf(mVersion, mCodePage);
    return Zeda::eOk;
  }

  // --- tables: the block records, with their handles -------------------------------

  Zeda::ErrorStatus readTables() {
    while (atType("TABLE")) {
      EntityFields table;
      if (!readEntityFields(mRecords[mAt++].tags, table)) return Zeda::eBadDxfFile;
      const bool blockRecords = table.name == "BLOCK_RECORD";
      if (blockRecords && table.handle) mDatabase.setObjectHandle(mDatabase.blockTableId(), ZdDbHandle(*table.handle));
      for (; !atSectionEnd() && !atType("ENDTAB"); ++mAt) {
        if (blockRecords && !readBlockRecord(mRecords[mAt])) return Zeda::eBadDxfFile;
      }
      if (!atType("ENDTAB")) return Zeda::eBadDxfFile;
      ++mAt;
    }
    return Zeda::eOk;
  }

  bool readBlockRecord(const Record& record) {
    EntityFields fields;
    if (record.type != "BLOCK_RECORD" || !readEntityFields(record.tags, fields) || !fields.name) return false;
    const ZdDbObjectId id = blockRecord(*fields.name);
    if (fields.handle) mDatabase.setObjectHandle(id, ZdDbHandle(*fields.handle));
    return true;
  }

  // The record of a block name (made when missing); names looked up once.
  ZdDbObjectId blockRecord(std::string_view rawName) {
    const auto known = mBlocksByName.find(std::string(rawName));
    if (known != mBlocksByName.end()) return known->second;
    const ZdDbObjectId id = mDatabase.blockTableRecordId(decode(blockNameOf(rawName)), true);
    mBlocksByName.emplace(rawName, id);
    return id;
  }

  // --- blocks and entities -----------------------------------------------------------

  Zeda::ErrorStatus readBlocks() {
    while (atType("BLOCK")) {
      EntityFields block;
      if (!readEntityFields(mRecords[mAt++].tags, block) || !block.name || block.name->empty()) return Zeda::eBadDxfFile;
      const Zeda::ErrorStatus status = readEntities(blockRecord(*block.name));
      if (status != Zeda::eOk) return status;
      if (!atType("ENDBLK")) return Zeda::eBadDxfFile;
      ++mAt;
    }
    return Zeda::eOk;
  }

  // Reads entities into `block` (null: each into the space its owner or code
  // 67 names) up to the end of the section or of the block.
  Zeda::ErrorStatus readEntities(ZdDbObjectId block) {
    while (!atSectionEnd() && !atType("ENDBLK")) {
      if (const Zeda::ErrorStatus status = readEntity(block); status != Zeda::eOk) return status;
    }
    return Zeda::eOk;
  }

  Zeda::ErrorStatus readEntity(ZdDbObjectId block) {
    const Record& record = mRecords[mAt++];
    EntityFields fields;
    if (!readEntityFields(record.tags, fields)) return Zeda::eBadDxfFile;
    std::unique_ptr<ZdDbEntity> entity = makeEntity(record.type, fields);
    if (!entity) return Zeda::eBadDxfFile;
    entity->setLayer(decode(fields.layer));
    const bool isInsert = entity->isKindOf(ZdDbBlockReference::desc());
    const ZdDbObjectId id = mDatabase.appendEntity(block.isNull() ? spaceOf(fields) : block, std::move(entity));
    if (const Zeda::ErrorStatus status = keepHandleAndXData(id, fields); status != Zeda::eOk) return status;
    if (!fields.followers) return Zeda::eOk;
    return isInsert ? readAttributes(id) : skipVertices();
  }

  // A new entity of the record's type; null for a type that only follows
  // another or a text that names no type.
  std::unique_ptr<ZdDbEntity> makeEntity(std::string_view type, const EntityFields& fields) {
    if (type == "INSERT" || type == "ACAD_TABLE") {
      if (type == "INSERT" && (!fields.name || fields.name->empty())) return nullptr;
      auto reference = type == "INSERT" ? std::make_unique<ZdDbBlockReference>() : std::make_unique<ZdDbTable>();
      if (fields.name && !fields.name->empty()) reference->setBlockTableRecord(blockRecord(*fields.name));
      return reference;
    }
    if (type == "TEXT") {
      auto text = std::make_unique<ZdDbText>();
      text->setTextString(decode(fields.text));
      return text;
    }
    if (type == "ATTRIB" || type == "SEQEND" || type == "VERTEX" || type == "BLOCK" || type == "SECTION" ||
        type == "EOF")
      return nullptr;
    const ZdRxClass* cls = dxfEntityClassOf(type);
    return cls ? std::make_unique<ZdDbEntity>(cls) : nullptr;
  }

  ZdDbObjectId spaceOf(const EntityFields& fields) const {
    if (fields.owner) {
      const ZdDbObjectId owner = mDatabase.getObjectId(ZdDbHandle(*fields.owner));
      if (dynamic_cast<const ZdDbBlockTableRecord*>(mDatabase.objectAt(owner))) return owner;
    }
    return fields.paperSpace ? mDatabase.paperSpaceId() : mDatabase.modelSpaceId();
  }

  Zeda::ErrorStatus keepHandleAndXData(ZdDbObjectId id, const EntityFields& fields) {
    if (fields.handle) mDatabase.setObjectHandle(id, ZdDbHandle(*fields.handle));
    if (fields.xdata.empty()) return Zeda::eOk;
    ZdValueNode* chain = nullptr;
    Zeda::ErrorStatus status = readDxfXData(fields.xdata, mCodec, chain);
    if (status == Zeda::eOk) status = mDatabase.objectAt(id)->setXData(chain);
    zdutRelRb(chain);
    return status;
  }

  // The ATTRIB records after an INSERT, up to and with its SEQEND.
  Zeda::ErrorStatus readAttributes(ZdDbObjectId referenceId) {
    auto* reference = static_cast<ZdDbBlockReference*>(mDatabase.objectAt(referenceId));
    for (; atType("ATTRIB"); ++mAt) {
      EntityFields fields;
      if (!readEntityFields(mRecords[mAt].tags, fields)) return Zeda::eBadDxfFile;
      auto attribute = std::make_unique<ZdDbAttribute>();
      attribute->setTag(decode(fields.name.value_or("")));
      attribute->setTextString(decode(fields.text));
      attribute->setLayer(decode(fields.layer));
      const ZdDbObjectId id = mDatabase.addObject(std::move(attribute), referenceId);
      reference->appendAttributeId(id);
      if (const Zeda::ErrorStatus status = keepHandleAndXData(id, fields); status != Zeda::eOk) return status;
    }
    return atType("SEQEND") ? (++mAt, Zeda::eOk) : Zeda::eBadDxfFile;
  }

  // The VERTEX records of an old-style polyline, up to and with its SEQEND.
  Zeda::ErrorStatus skipVertices() {
    while (atType("VERTEX")) ++mAt;
    return atType("SEQEND") ? (++mAt, Zeda::eOk) : Zeda::eBadDxfFile;
  }

  // --- objects: the layout dictionary ----------------------------------------------------

  Zeda::ErrorStatus readObjects() {
    for (; !atSectionEnd(); ++mAt) {
      const Record& record = mRecords[mAt];
      if (record.type == "DICTIONARY") {
        DictionaryFields dictionary;
        if (!readDictionaryFields(record.tags, dictionary)) return Zeda::eBadDxfFile;
        mDictionaries.push_back(std::move(dictionary));
      } else if (record.type == "LAYOUT") {
        EntityFields object;
        LayoutFields layout;
        if (!readEntityFields(record.tags, object) || !readLayoutFields(record.tags, layout)) return Zeda::eBadDxfFile;
        if (object.handle) mLayouts[*object.handle] = layout;
      }
    }
    return Zeda::eOk;
  }

  const DictionaryFields* dictionary(std::uint64_t handle) const {
    for (const DictionaryFields& candidate : mDictionaries)
      if (candidate.handle == handle) return &candidate;
    return nullptr;
  }

  // The ACAD_LAYOUT dictionary of the named object dictionary (the first one).
  const DictionaryFields* layoutDictionary() const {
    if (mDictionaries.empty()) return nullptr;
    for (const auto& [name, handle] : mDictionaries.front().entries)
      if (name == "ACAD_LAYOUT") return dictionary(handle);
    return nullptr;
  }

  void addLayouts(const DictionaryFields& layouts) {
    mDatabase.setObjectHandle(mDatabase.layoutDictionaryId(), ZdDbHandle(layouts.handle));
    for (const auto& [entryName, handle] : layouts.entries) {
      const auto layout = mLayouts.find(handle);
      if (layout == mLayouts.end()) continue;
      const std::string_view name = layout->second.name.empty() ? entryName : layout->second.name;
      ZdDbObjectId block;
      if (layout->second.block) block = mDatabase.getObjectId(ZdDbHandle(*layout->second.block));
      if (!dynamic_cast<const ZdDbBlockTableRecord*>(mDatabase.objectAt(block))) block = ZdDbObjectId();
      mDatabase.setObjectHandle(mDatabase.addLayout(decode(name), layout->second.tabOrder, block), ZdDbHandle(handle));
    }
  }

  Zeda::ErrorStatus finish() {
    if (const DictionaryFields* layouts = layoutDictionary()) {
      addLayouts(*layouts);
    } else {
      // A drawing without layouts (R12): the tabs every drawing has.
      mDatabase.addLayout(u"Model", 0, mDatabase.modelSpaceId());
      mDatabase.addLayout(u"Layout1", 1, mDatabase.paperSpaceId());
    }
    mDatabase.setDwgVersion(decode(mVersion));
    mDatabase.setCodePage(decode(mCodePage));
    mDatabase.raiseHandseed(ZdDbHandle(mHandseed));
    return Zeda::eOk;
  }

  ZdDbDatabase& mDatabase;
  std::vector<Record> mRecords;
  std::size_t mAt = 0;
  DxfTextCodec mCodec;
  std::string_view mVersion = "AC1009";  // what a file without a header is
  std::string_view mCodePage = "ANSI_1252";
  std::uint64_t mHandseed = 0;
  std::unordered_map<std::string, ZdDbObjectId> mBlocksByName;
  std::vector<DictionaryFields> mDictionaries;
  std::map<std::uint64_t, LayoutFields> mLayouts;
};

// The bytes of a file; eFileNotFound or eFileAccessErr when they can't be had.
Zeda::ErrorStatus readFileBytes(const std::string& path, std::string& bytes) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return errno == ENOENT || errno == ENOTDIR ? Zeda::eFileNotFound : Zeda::eFileAccessErr;
  char buffer[1 << 16];
  ssize_t count = 0;
  while ((count = ::read(fd, buffer, sizeof buffer)) > 0) bytes.append(buffer, static_cast<std::size_t>(count));
  ::close(fd);
  return count < 0 ? Zeda::eFileAccessErr : Zeda::eOk;
}

}  // namespace

Zeda::ErrorStatus readDxfDrawing(std::string_view text, ZdDbDatabase& database) {
  std::vector<DxfTag> tags;
  int errorLine = 0;
  std::vector<Record> records;
  if (readDxfTags(text, tags, errorLine) != DxfTagStatus::Ok || !splitRecords(tags, records)) return Zeda::eBadDxfFile;
  ZdDbDatabase loaded(false, true);
  const Zeda::ErrorStatus status = DxfLoader(loaded, std::move(records)).load();
  if (status == Zeda::eOk) database.swapContents(loaded);
  return status;
}

Zeda::ErrorStatus ZdDbDatabase::readDwgFile(const char16_t* fileName, int, bool, const char16_t*) {
  const std::optional<std::string> path = fileName ? WindowsPathToPosix(fileName) : std::nullopt;
  if (!path) return Zeda::eFileNotFound;
  std::string bytes;
  const Zeda::ErrorStatus status = readFileBytes(*path, bytes);
  return status == Zeda::eOk ? readDxfDrawing(bytes, *this) : status;
}
