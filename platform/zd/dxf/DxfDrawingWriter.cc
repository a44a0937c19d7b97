// Writing a database as an ASCII DXF file: R12 (AC1009) in its own simple
// form, R13 (AC1012) and later with handles, owners, subclass markers, the
// block record table and the layout dictionary. Geometry is not kept by the
// database, so entities stand at the origin; what the reader keeps (handles,
// classes, block names, attributes, xdata, layouts, spaces) comes back.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <set>

#include "win/fs/FileReplace.h"
#include "win/fs/PathMapping.h"
#include "zd/ZdCodes.h"
#include "zd/db/ZdDbBlockReference.h"
#include "zd/db/ZdDbDatabase.h"
#include "zd/db/ZdDbText.h"
#include "zd/dxf/DxfDrawingWriter.h"
#include "zd/dxf/DxfEntityClasses.h"
#include "zd/dxf/DxfTags.h"
#include "zd/dxf/DxfTextCodec.h"
#include "zd/dxf/DxfValues.h"
#include "zd/dxf/DxfXData.h"

namespace {

constexpr std::array<std::string_view, 9> kVersions{"AC1009", "AC1012", "AC1014", "AC1015", "AC1018",
                                                    "AC1021", "AC1024", "AC1027", "AC1032"};

bool isKnownVersion(std::string_view version) {
  return std::find(kVersions.begin(), kVersions.end(), version) != kVersions.end();
}

std::string asciiOf(std::u16string_view text) {
  std::string ascii;
  for (const char16_t unit : text) ascii += unit < 0x80 ? static_cast<char>(unit) : '?';
  return ascii;
}

// The codec a file of that version and code page is written with; the code
// page falls back to ANSI_1252 when this build can't convert it.
DxfTextCodec writerCodec(std::string_view version, std::string_view codePage) {
  if (auto codec = DxfTextCodec::forDrawing(version, codePage)) return *codec;
  return DxfTextCodec::forDrawing(version, "ANSI_1252").value_or(DxfTextCodec::utf8());
}

void appendPoint(std::string& out, int code) {
  for (int axis = 0; axis < 3; ++axis) appendDxfTag(out, code + 10 * axis, "0.0");
}

class DxfWriter {
 public:
  DxfWriter(const ZdDbDatabase& database, std::string version)
      : mDatabase(database),
        mVersion(std::move(version)),
        mCodePage(database.codePage().empty() ? "ANSI_1252" : asciiOf(database.codePage())),
        mCodec(writerCodec(mVersion, mCodePage)),
        mNextHandle(database.handseed().value()) {
    if (!mCodec.codePage().empty()) mCodePage = mCodec.codePage();
  }

  // The whole file; false when the layout dictionary can't be walked.
  bool write(std::string& file) {
    std::string blocks, entities, objects;
    writeBlocks(blocks);
    writeSpaces(entities);
    if (!isR12() && !writeObjects(objects)) return false;
    std::string tables;
    writeTables(tables);  // after the rest: it lists the xdata applications met there
    mHandseedText = formatDxfHandle(mNextHandle);
    writeHeader(file);
    if (keepsParts() && !mDatabase.keptDxfParts().classes.empty())
      appendSection(file, "CLASSES", mDatabase.keptDxfParts().classes);
    appendSection(file, "TABLES", tables);
    appendSection(file, "BLOCKS", blocks);
    appendSection(file, "ENTITIES", entities);
    if (!isR12()) appendSection(file, "OBJECTS", objects);
    appendDxfTag(file, 0, "EOF");
    return true;
  }

 private:
  bool isR12() const { return mVersion == "AC1009"; }
  std::uint64_t newHandle() { return mNextHandle++; }
  std::string text(std::u16string_view value) const { return encodeDxfText(mCodec, value); }
  static std::string handleOf(const ZdDbObject* object) {
    return formatDxfHandle(object ? object->objectHandle().value() : 0);
  }

  template <typename Object>
  const Object* live(ZdDbObjectId id) const {
    const auto* object = dynamic_cast<const Object*>(mDatabase.objectAt(id));
    return object && !object->isErased() ? object : nullptr;
  }

  static void appendSection(std::string& out, std::string_view name, std::string_view body) {
    appendDxfTag(out, 0, "SECTION");
    appendDxfTag(out, 2, name);
    out += body;
    appendDxfTag(out, 0, "ENDSEC");
  }

  // Type, handle, owner and (R13 on) the entity subclass marker of an object.
  void appendStart(std::string& out, std::string_view type, std::uint64_t handle, std::uint64_t owner,
                   std::string_view subclass) const {
    appendDxfTag(out, 0, type);
    if (handle != 0) appendDxfTag(out, 5, formatDxfHandle(handle));
    if (isR12()) return;
    appendDxfTag(out, 330, formatDxfHandle(owner));
    if (!subclass.empty()) appendDxfTag(out, 100, subclass);
  }

  void writeHeader(std::string& out) const {
    const std::string_view kept = keepsParts() ? mDatabase.keptDxfParts().header : std::string_view();
    std::string header;
    // The file's variables as they were, with those the database models in place.
    std::set<std::string_view> written;
    std::string_view variable;
    DxfTagReader reader(kept);
    for (DxfTag tag; reader.next(tag) && tag.code != 0;) {
      if (tag.code == 9) variable = tag.value;
      const std::string_view value = tag.code == 9 ? std::string_view() : modelledHeaderValue(variable, tag.code);
      if (!value.empty()) written.insert(variable);
      appendDxfTag(header, tag.code, value.empty() ? tag.value : value);
    }
    for (const auto& [name, code] :
         {std::pair<std::string_view, int>{"$ACADVER", 1}, {"$DWGCODEPAGE", 3}, {"$HANDSEED", 5}}) {
      if (written.count(name)) continue;
      appendDxfTag(header, 9, name);
      appendDxfTag(header, code, modelledHeaderValue(name, code));
    }
    if (isR12() && kept.empty()) {
      appendDxfTag(header, 9, "$HANDLING");
      appendDxfTag(header, 70, "1");
    }
    appendSection(out, "HEADER", header);
  }

  // The value of a header variable that the database models; empty for others.
  std::string_view modelledHeaderValue(std::string_view variable, int code) const {
    if (variable == "$ACADVER" && code == 1) return mVersion;
    if (variable == "$DWGCODEPAGE" && code == 3) return mCodePage;
    if (variable == "$HANDSEED" && code == 5) return mHandseedText;
    return {};
  }

  // --- tables: block records (R13 on) and the applications of the xdata -----------

  // The file's tables where they stood, as they were, but the block records
  // and the applications, which are made from the database.
  void writeTables(std::string& out) {
    bool blockRecords = isR12(), applications = false;
    if (keepsParts()) {
      for (const auto& [name, raw] : mDatabase.keptDxfParts().tables) {
        if (name == "BLOCK_RECORD" && !blockRecords) {
          writeBlockRecordTable(out);
          blockRecords = true;
        } else if (name == "APPID" && !applications) {
          writeApplicationTable(out);
          applications = true;
        } else if (name != "BLOCK_RECORD" && name != "APPID") {
          out.append(raw);
        }
      }
    }
    if (!blockRecords) writeBlockRecordTable(out);
    if (!applications) writeApplicationTable(out);
  }

  void appendTableStart(std::string& out, std::string_view name, std::uint64_t handle, std::size_t count) const {
    appendStart(out, "TABLE", handle, 0, "");
    appendDxfTag(out, 2, name);
    if (isR12()) return;
    appendDxfTag(out, 100, "AcDbSymbolTable");
    appendDxfTag(out, 70, std::to_string(count));
  }

  void writeBlockRecordTable(std::string& out) const {
    const ZdDbObject* table = mDatabase.objectAt(mDatabase.blockTableId());
    const std::uint64_t tableHandle = table->objectHandle().value();
    appendTableStart(out, "BLOCK_RECORD", tableHandle, mDatabase.blockTableRecordIds().size());
    for (const ZdDbObjectId id : mDatabase.blockTableRecordIds()) {
      const auto* record = live<ZdDbBlockTableRecord>(id);
      if (!record) continue;
      if (keepsGroupsOf(*record)) {
        writeKeptRecord(out, "BLOCK_RECORD", record->objectHandle().value(), record->keptDxfGroups(), tableHandle,
                        text(record->name()));
        continue;
      }
      appendStart(out, "BLOCK_RECORD", record->objectHandle().value(), tableHandle, "AcDbSymbolTableRecord");
      appendDxfTag(out, 100, "AcDbBlockTableRecord");
      appendDxfTag(out, 2, text(record->name()));
    }
    appendDxfTag(out, 0, "ENDTAB");
  }

  void writeApplicationTable(std::string& out) {
    mApplications.insert("ACAD");
    const std::uint64_t tableHandle = isR12() ? 0 : newHandle();
    appendTableStart(out, "APPID", tableHandle, mApplications.size());
    for (const std::string& name : mApplications) {
      appendStart(out, "APPID", isR12() ? 0 : newHandle(), tableHandle, "AcDbSymbolTableRecord");
      if (!isR12()) appendDxfTag(out, 100, "AcDbRegAppTableRecord");
      appendDxfTag(out, 2, name);
      appendDxfTag(out, 70, "0");
    }
    appendDxfTag(out, 0, "ENDTAB");
  }

  // --- blocks and entities -------------------------------------------------------------

  std::string blockName(const ZdDbBlockTableRecord& record) const {
    if (isR12() && record.objectId() == mDatabase.modelSpaceId()) return "$MODEL_SPACE";
    if (isR12() && record.objectId() == mDatabase.paperSpaceId()) return "$PAPER_SPACE";
    return text(record.name());
  }

  bool isSpace(ZdDbObjectId id) const { return id == mDatabase.modelSpaceId() || id == mDatabase.paperSpaceId(); }

  // Every block; those of model and paper space are empty here, their
  // entities go to the ENTITIES section.
  void writeBlocks(std::string& out) {
    for (const ZdDbObjectId id : mDatabase.blockTableRecordIds()) {
      const auto* record = live<ZdDbBlockTableRecord>(id);
      if (!record) continue;
      const std::uint64_t handle = record->objectHandle().value();
      if (keepsParts() && !record->keptDxfBlockGroups().empty()) {
        writeKeptRecord(out, "BLOCK", isR12() ? 0 : newHandle(), record->keptDxfBlockGroups(), handle,
                        blockName(*record));
      } else {
        appendStart(out, "BLOCK", isR12() ? 0 : newHandle(), handle, "AcDbEntity");
        appendDxfTag(out, 8, "0");
        if (!isR12()) appendDxfTag(out, 100, "AcDbBlockBegin");
        appendDxfTag(out, 2, blockName(*record));
        appendDxfTag(out, 70, "0");
        appendPoint(out, 10);
        appendDxfTag(out, 3, blockName(*record));
      }
      if (!isSpace(id)) writeEntitiesOf(out, *record, false);
      appendStart(out, "ENDBLK", isR12() ? 0 : newHandle(), handle, "AcDbEntity");
      appendDxfTag(out, 8, "0");
      if (!isR12()) appendDxfTag(out, 100, "AcDbBlockEnd");
    }
  }

  void writeSpaces(std::string& out) {
    if (const auto* model = live<ZdDbBlockTableRecord>(mDatabase.modelSpaceId())) writeEntitiesOf(out, *model, false);
    if (const auto* paper = live<ZdDbBlockTableRecord>(mDatabase.paperSpaceId())) writeEntitiesOf(out, *paper, true);
  }

  void writeEntitiesOf(std::string& out, const ZdDbBlockTableRecord& record, bool paperSpace) {
    for (const ZdDbObjectId id : record.entityIds()) {
      if (const auto* entity = live<ZdDbEntity>(id)) writeEntity(out, *entity, record, paperSpace);
    }
  }

  void appendEntityStart(std::string& out, const ZdDbEntity& entity, std::string_view type, std::uint64_t owner,
                         bool paperSpace) const {
    appendStart(out, type, entity.objectHandle().value(), owner, "AcDbEntity");
    if (paperSpace) appendDxfTag(out, 67, "1");
    appendDxfTag(out, 8, text(entity.layer()));
  }

  void writeEntity(std::string& out, const ZdDbEntity& entity, const ZdDbBlockTableRecord& owner, bool paperSpace) {
    const std::string type = dxfTypeOf(*entity.isA());
    const auto* reference = dynamic_cast<const ZdDbBlockReference*>(&entity);
    if (keepsGroupsOf(entity)) {
      Patch patch{owner.objectHandle().value(), paperSpace, std::nullopt, std::nullopt};
      if (reference && !reference->isKindOf(ZdDbTable::desc())) patch.name = referencedName(*reference);
      if (const auto* single = dynamic_cast<const ZdDbText*>(&entity)) patch.text = text(single->textStringConst());
      writePatched(out, entity, type, patch);
      if (reference) writeAttributesOf(out, *reference, paperSpace);
      return;
    }
    appendEntityStart(out, entity, type, owner.objectHandle().value(), paperSpace);
    if (reference) {
      writeReference(out, *reference, paperSpace);
      return;
    }
    if (const auto* single = dynamic_cast<const ZdDbText*>(&entity)) writeTextBody(out, *single);
    writeXData(out, entity);
  }

  void writeTextBody(std::string& out, const ZdDbText& single) const {
    if (!isR12()) appendDxfTag(out, 100, "AcDbText");
    appendPoint(out, 10);
    appendDxfTag(out, 40, "1.0");
    appendDxfTag(out, 1, text(single.textStringConst()));
  }

  // An INSERT with its attributes and SEQEND, or a table.
  void writeReference(std::string& out, const ZdDbBlockReference& reference, bool paperSpace) {
    const bool isTable = reference.isKindOf(ZdDbTable::desc());
    const std::vector<const ZdDbAttribute*> attributes = liveAttributes(reference);
    const auto* multiple = dynamic_cast<const ZdDbMInsertBlock*>(&reference);
    if (!isR12()) appendDxfTag(out, 100, multiple ? "AcDbMInsertBlock" : "AcDbBlockReference");
    if (!attributes.empty()) appendDxfTag(out, 66, "1");
    if (const std::string name = referencedName(reference); !name.empty()) appendDxfTag(out, 2, name);
    appendPoint(out, 10);
    if (multiple) {
      appendDxfTag(out, 70, std::to_string(multiple->columns()));
      appendDxfTag(out, 71, std::to_string(multiple->rows()));
    }
    if (isTable && !isR12()) appendDxfTag(out, 100, "AcDbTable");
    writeXData(out, reference);
    writeAttributesOf(out, reference, paperSpace);
  }

  // The block name an INSERT gives: its record's, or the name of a block the drawing never defines.
  std::string referencedName(const ZdDbBlockReference& reference) const {
    if (const auto* block = live<ZdDbBlockTableRecord>(reference.blockTableRecord())) return blockName(*block);
    return text(reference.undefinedBlockName());
  }

  // A reference's attributes and their SEQEND; nothing for a table or a reference without any.
  std::vector<const ZdDbAttribute*> liveAttributes(const ZdDbBlockReference& reference) const {
    std::vector<const ZdDbAttribute*> attributes;
    if (reference.isKindOf(ZdDbTable::desc())) return attributes;
    for (const ZdDbObjectId id : reference.attributeIds())
      if (const auto* attribute = live<ZdDbAttribute>(id)) attributes.push_back(attribute);
    return attributes;
  }

  void writeAttributesOf(std::string& out, const ZdDbBlockReference& reference, bool paperSpace) {
    const std::vector<const ZdDbAttribute*> attributes = liveAttributes(reference);
    if (attributes.empty()) return;
    const std::uint64_t owner = reference.objectHandle().value();
    for (const ZdDbAttribute* attribute : attributes) writeAttribute(out, *attribute, owner, paperSpace);
    appendStart(out, "SEQEND", newHandle(), owner, "AcDbEntity");
    if (paperSpace) appendDxfTag(out, 67, "1");
    appendDxfTag(out, 8, text(reference.layer()));
  }

  void writeAttribute(std::string& out, const ZdDbAttribute& attribute, std::uint64_t owner, bool paperSpace) {
    if (keepsGroupsOf(attribute)) {
      writePatched(out, attribute, "ATTRIB",
                   {owner, paperSpace, text(attribute.tagConst() ? attribute.tagConst() : u""),
                    text(attribute.textStringConst())});
      return;
    }
    appendEntityStart(out, attribute, "ATTRIB", owner, paperSpace);
    writeTextBody(out, attribute);
    if (!isR12()) appendDxfTag(out, 100, "AcDbAttribute");
    appendDxfTag(out, 2, text(attribute.tagConst() ? attribute.tagConst() : u""));
    appendDxfTag(out, 70, "0");
    writeXData(out, attribute);
  }

  void writeXData(std::string& out, const ZdDbObject& object) {
    ZdValueNode* chain = object.xData();
    for (const ZdValueNode* node = chain; node; node = node->rbnext)
      if (node->restype == XD_APPNAME && node->resval.rstring) mApplications.insert(text(node->resval.rstring));
    appendDxfXData(out, chain, mCodec);
    zdutRelRb(chain);
  }

  // --- records of the file read, written again with what the database models ----------

  // The values the database models, in place of the file's.
  struct Patch {
    std::uint64_t owner;
    bool paperSpace;
    std::optional<std::string> name;  // group 2: block name or attribute tag
    std::optional<std::string> text;  // group 1
  };

  // Whether an object came from a file of the version being written, so its
  // kept groups are written again as they were.
  bool keepsGroupsOf(const ZdDbObject& object) const {
    return !object.keptDxfGroups().empty() && mVersion == asciiOf(mDatabase.dwgVersion());
  }

  // Appends the groups of `kept` up to its first 0 group, except the
  // handle, a group code 5, which the caller writes, and xdata. `replace`
  // sees each other group first and returns true when it appended it itself
  // (or chose to leave it out). The offset of that 0 group, or the size.
  template <typename Replace>
  static std::size_t appendKeptGroups(std::string& out, std::string_view kept, Replace&& replace) {
    DxfTagReader reader(kept);
    std::size_t before = reader.offset();
    for (DxfTag tag; reader.next(tag); before = reader.offset()) {
      if (tag.code == 0) return before;
      if (tag.code == 5 || tag.code >= 1000) continue;
      if (!replace(tag)) appendDxfTag(out, tag.code, tag.value);
    }
    return reader.problem().empty() ? kept.size() : before;
  }

  // The record of an entity from its kept groups: its handle first, the
  // file's groups in their order with the modelled ones (owner, layer,
  // space, name, text) replaced, then the xdata; records that followed it
  // in the file (a polyline's vertices) come after, as they were.
  void writePatched(std::string& out, const ZdDbEntity& object, std::string_view type, const Patch& patch) {
    const std::string_view kept = object.keptDxfGroups();
    bool hasLayer = false, hasSpace = false, hasName = false, hasText = false;
    DxfTagReader scan(kept);
    for (DxfTag tag; scan.next(tag) && tag.code != 0;) {
      hasLayer = hasLayer || tag.code == 8;
      hasSpace = hasSpace || tag.code == 67;
      hasName = hasName || tag.code == 2;
      hasText = hasText || tag.code == 1;
    }
    appendDxfTag(out, 0, type);
    if (!object.objectHandle().isNull()) appendDxfTag(out, 5, formatDxfHandle(object.objectHandle().value()));
    if (!hasLayer) appendDxfTag(out, 8, text(object.layer()));
    if (patch.paperSpace && !hasSpace) appendDxfTag(out, 67, "1");
    bool inGroup = false, ownerDone = false, layerDone = false, nameDone = false, textDone = false;
    const std::size_t rest = appendKeptGroups(out, kept, [&](const DxfTag& tag) {
      if (tag.code == 102) inGroup = !tag.value.empty() && tag.value.front() == '{';
      if (tag.code == 330 && !inGroup && !ownerDone) {
        ownerDone = true;
        appendDxfTag(out, 330, formatDxfHandle(patch.owner));
      } else if (tag.code == 8 && !layerDone) {
        layerDone = true;
        appendDxfTag(out, 8, text(object.layer()));
      } else if (tag.code == 67) {
        appendDxfTag(out, 67, patch.paperSpace ? "1" : "0");
      } else if (tag.code == 2 && patch.name && !nameDone) {
        nameDone = true;
        appendDxfTag(out, 2, *patch.name);
      } else if (tag.code == 1 && patch.text && !textDone) {
        textDone = true;
        appendDxfTag(out, 1, *patch.text);
      } else {
        return false;
      }
      return true;
    });
    if (patch.name && !hasName) appendDxfTag(out, 2, *patch.name);
    if (patch.text && !hasText) appendDxfTag(out, 1, *patch.text);
    writeXData(out, object);
    out.append(kept.substr(rest));
  }

  // A symbol table record or block start from its kept groups: type and
  // handle, the owner (the first 330 outside a 102 group) and the name (the
  // first 2, and a 3 that repeats it) replaced.
  void writeKeptRecord(std::string& out, std::string_view type, std::uint64_t handle, std::string_view kept,
                       std::uint64_t owner, const std::string& name) const {
    appendDxfTag(out, 0, type);
    if (handle != 0) appendDxfTag(out, 5, formatDxfHandle(handle));
    bool inGroup = false, ownerDone = false, nameDone = false;
    appendKeptGroups(out, kept, [&](const DxfTag& tag) {
      if (tag.code == 102) inGroup = !tag.value.empty() && tag.value.front() == '{';
      if (tag.code == 330 && !inGroup && !ownerDone) {
        ownerDone = true;
        appendDxfTag(out, 330, formatDxfHandle(owner));
        return true;
      }
      if ((tag.code == 2 && !nameDone) || tag.code == 3) {
        nameDone = nameDone || tag.code == 2;
        appendDxfTag(out, tag.code, name);
        return true;
      }
      return false;
    });
  }

  // Whether the parts of the file no object stands for are written back.
  bool keepsParts() const { return mVersion == asciiOf(mDatabase.dwgVersion()); }

  // --- objects: the named object dictionary and the layouts ------------------------------

  bool writeObjects(std::string& out) {
    const auto* layouts = live<ZdDbDictionary>(mDatabase.layoutDictionaryId());
    if (!layouts) return false;
    const std::uint64_t layoutsHandle = layouts->objectHandle().value();
    const std::uint64_t namedObjects = writeNamedObjects(out, layoutsHandle);
    appendStart(out, "DICTIONARY", layoutsHandle, namedObjects, "AcDbDictionary");
    appendDxfTag(out, 281, "1");
    std::vector<const ZdDbLayout*> entries;
    ZdDbDictionaryIterator* iterator = layouts->newIterator();
    if (!iterator) return false;
    for (; !iterator->done(); iterator->next()) {
      const auto* layout = live<ZdDbLayout>(iterator->objectId());
      if (!layout) continue;
      appendDxfTag(out, 3, text(iterator->name()));
      appendDxfTag(out, 350, handleOf(layout));
      entries.push_back(layout);
    }
    delete iterator;
    for (const ZdDbLayout* layout : entries) writeLayout(out, *layout, layoutsHandle);
    if (keepsParts())
      for (const std::string_view object : mDatabase.keptDxfParts().objects) out.append(object);
    return true;
  }

  // The named object dictionary: the file's, with the entry ACAD_LAYOUT
  // naming the layouts' dictionary, or a new one with that entry alone. Its handle.
  std::uint64_t writeNamedObjects(std::string& out, std::uint64_t layoutsHandle) {
    const std::string_view kept = keepsParts() ? mDatabase.keptDxfParts().rootDictionary : std::string_view();
    DxfTagReader reader(kept);
    DxfTag type, handle;
    if (reader.next(type) && reader.next(handle) && handle.code == 5) {
      const auto own = parseDxfHandle(handle.value);
      if (own) {
        appendDxfTag(out, 0, "DICTIONARY");
        appendDxfTag(out, 5, handle.value);
        bool layoutEntry = false;
        appendKeptGroups(out, kept.substr(reader.offset()), [&](const DxfTag& tag) {
          if ((tag.code == 350 || tag.code == 360) && layoutEntry)
            appendDxfTag(out, tag.code, formatDxfHandle(layoutsHandle));
          if (tag.code == 3) layoutEntry = tag.value == "ACAD_LAYOUT";
          return (tag.code == 350 || tag.code == 360) && layoutEntry;
        });
        return *own;
      }
    }
    const std::uint64_t namedObjects = newHandle();
    appendStart(out, "DICTIONARY", namedObjects, 0, "AcDbDictionary");
    appendDxfTag(out, 281, "1");
    appendDxfTag(out, 3, "ACAD_LAYOUT");
    appendDxfTag(out, 350, formatDxfHandle(layoutsHandle));
    return namedObjects;
  }

  void writeLayout(std::string& out, const ZdDbLayout& layout, std::uint64_t owner) const {
    if (keepsGroupsOf(layout)) {
      writeKeptLayout(out, layout, owner);
      return;
    }
    appendStart(out, "LAYOUT", layout.objectHandle().value(), owner, "AcDbPlotSettings");
    appendDxfTag(out, 1, "");
    appendDxfTag(out, 100, "AcDbLayout");
    appendDxfTag(out, 1, text(layout.layoutName()));
    appendDxfTag(out, 70, "1");
    appendDxfTag(out, 71, std::to_string(layout.getTabOrder()));
    if (const auto* block = live<ZdDbBlockTableRecord>(layout.getBlockTableRecordId()))
      appendDxfTag(out, 330, handleOf(block));
  }

  // A layout from its kept groups, with its owner, and in its AcDbLayout
  // part its name (1), tab order (71) and block record (330) replaced.
  void writeKeptLayout(std::string& out, const ZdDbLayout& layout, std::uint64_t owner) const {
    appendDxfTag(out, 0, "LAYOUT");
    appendDxfTag(out, 5, handleOf(&layout));
    bool inGroup = false, ownerDone = false, inLayoutPart = false;
    const auto* block = live<ZdDbBlockTableRecord>(layout.getBlockTableRecordId());
    appendKeptGroups(out, layout.keptDxfGroups(), [&](const DxfTag& tag) {
      if (tag.code == 102) inGroup = !tag.value.empty() && tag.value.front() == '{';
      if (tag.code == 100) inLayoutPart = tag.value == "AcDbLayout";
      if (tag.code == 330 && !inGroup && !ownerDone) {
        ownerDone = true;
        appendDxfTag(out, 330, formatDxfHandle(owner));
      } else if (inLayoutPart && tag.code == 1) {
        appendDxfTag(out, 1, text(layout.layoutName()));
      } else if (inLayoutPart && tag.code == 71) {
        appendDxfTag(out, 71, std::to_string(layout.getTabOrder()));
      } else if (inLayoutPart && tag.code == 330) {
        if (block) appendDxfTag(out, 330, handleOf(block));
      } else {
        return false;
      }
      return true;
    });
  }

  const ZdDbDatabase& mDatabase;
  std::string mVersion;
  std::string mCodePage;
  DxfTextCodec mCodec;
  std::uint64_t mNextHandle;            // for the file's own objects: blocks' ends, tables, SEQEND
  std::string mHandseedText;            // the header's $HANDSEED, once the rest is written
  std::set<std::string> mApplications;  // xdata application names, raw
};

}  // namespace

Zeda::ErrorStatus writeDxfDrawing(const ZdDbDatabase& database, std::string_view version, std::string& text) {
  if (!isKnownVersion(version)) return Zeda::eInvalidInput;
  std::string bytes;
  if (!DxfWriter(database, std::string(version)).write(bytes)) return Zeda::eOutOfMemory;
  text = std::move(bytes);
  return Zeda::eOk;
}

Zeda::ErrorStatus ZdDbDatabase::dxfOut(const char16_t* fileName, const std::u16string& version) const {
  if (!fileName) return Zeda::eInvalidInput;
  std::string bytes;
  const Zeda::ErrorStatus status = writeDxfDrawing(*this, asciiOf(version.empty() ? mVersion : version), bytes);
  if (status != Zeda::eOk) return status;
  const std::optional<std::string> path = WindowsPathToPosix(fileName);
  return path && ReplaceFileContents(*path, bytes) == 0 ? Zeda::eOk : Zeda::eFileAccessErr;
}
