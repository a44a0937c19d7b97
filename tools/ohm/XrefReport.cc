#include "XrefReport.h"

#include <map>
#include <memory>

#include "CommandError.h"
#include "Drawing.h"
#include "ohmutils/dwg/OhmDwgUtils.h"
#include "ohmutils/xref/OhmUtXrefEntityFactory.h"
#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"
#include "ohmutils/xref/OhmUtXrefTableRows.h"
#include "zd/db/ZdDbDrawingBuilder.h"

namespace {

using Contacts = std::vector<ContactRecord>;

// The attributes a text entity fills, in the order they are printed.
constexpr const char16_t* kXrefTags[] = {u"XREF", u"XREFNO", u"XREFNC"};

void FillTexts(OhmUtXrefTextEntity& entity, const ZdDbBlockReference& block, const Contacts& contacts,
               EntityReport& report) {
  for (const char16_t* tag : kXrefTags) {
    if (!OhmDwgUtils::getAttributeValue(&block, tag)) continue;
    std::u16string joined;
    bool first = true;
    for (const ContactRecord& contact : contacts) {
      std::u16string text;
      if (!entity.getXrefText(tag, contact.occurrence, text)) continue;
      if (!first) joined += entity.getSeparator();
      joined += text;
      first = false;
    }
    report.attributes.emplace_back(tag, joined);
  }
}

void FillLines(OhmUtXrefGraphicEntity& entity, const Contacts& contacts, EntityReport& report) {
  for (const ContactRecord& contact : contacts) {
    const OhmDsComponentOcc& occ = contact.occurrence;
    std::u16string text, ncText;
    if (entity.isFullFormCContact(occ)) {
      if (!entity.getUnformattedXrefTextForFullFormCContact(occ, text, ncText)) continue;
      report.lines.push_back({contact.label, text});
      report.lines.push_back({contact.label, ncText});
    } else if (entity.isPartialFormCContact(occ)) {
      if (entity.getUnformattedXrefTextForPartialFormCContact(occ, text)) report.lines.push_back({contact.label, text});
    } else if (entity.getUnformattedXrefText(occ, text)) {
      report.lines.push_back({contact.label, text});
    }
  }
}

void FillTable(OhmUtXrefTableEntity& entity, const Contacts& contacts, const EntitySpec& spec, EntityReport& report) {
  report.titles = OhmUtXrefTableRows::getTitles(entity);
  for (const ContactRecord& contact : contacts) {
    for (auto& cells : OhmUtXrefTableRows::getRows(entity, contact.occurrence)) {
      report.rows.push_back({contact.label, std::move(cells)});
    }
  }
  for (std::size_t r = 0; r < spec.rows.size(); ++r) {
    RowMatch match{r + 1, {}};
    for (const ContactRecord& contact : contacts) {
      if (entity.isCompOccMatchingRow(contact.occurrence, spec.rows[r])) match.contacts.push_back(contact.label);
    }
    report.matches.push_back(std::move(match));
  }
}

// The factory's object for the block and what it gives for the coil's contacts.
void Present(const ZdDbBlockReference& block, const Contacts& contacts, const EntitySpec& spec,
             OhmNoRxUtilsSettingOverride& settings, EntityReport& report) {
  std::unique_ptr<OhmUtXrefEntity> entity(OhmUtXrefEntityFactory::getXrefEntity(&block, settings));
  if (!entity) {
    report.error = "the entity asks for no presentation: its style option is neither \"0\", \"1\" nor \"2\"";
    return;
  }
  entity->setHostDwgPath(spec.hostDrawing);
  report.style = entity->getStyle();
  if (auto* table = dynamic_cast<OhmUtXrefTableEntity*>(entity.get())) return FillTable(*table, contacts, spec, report);
  if (auto* graphic = dynamic_cast<OhmUtXrefGraphicEntity*>(entity.get())) return FillLines(*graphic, contacts, report);
  if (auto* text = dynamic_cast<OhmUtXrefTextEntity*>(entity.get())) FillTexts(*text, block, contacts, report);
}

void PresentGuarded(const ZdDbBlockReference& block, const Contacts& contacts, const EntitySpec& spec,
                    OhmNoRxUtilsSettingOverride& settings, EntityReport& report) {
  try {
    Present(block, contacts, spec, settings, report);
  } catch (const std::exception& error) {
    report.error = std::string("the cross-reference failed: ") + error.what();
  }
}

// Reads each drawing once.
class Drawings {
 public:
  ZdDbDatabase& get(const std::string& file) {
    std::unique_ptr<ZdDbDatabase>& database = mByFile[file];
    if (!database) database = ReadDrawing(file);
    return *database;
  }

 private:
  std::map<std::string, std::unique_ptr<ZdDbDatabase>> mByFile;
};

void RunFromDrawing(const EntitySpec& spec, Drawings& drawings, const Contacts& contacts,
                    OhmNoRxUtilsSettingOverride& settings, EntityReport& report) {
  OpenedObject opened(drawings.get(spec.drawingFile), spec.handle, spec.drawingFile);
  const auto* block = dynamic_cast<const ZdDbBlockReference*>(&opened.object());
  if (!block) {
    FailBadInput(spec.drawingFile + ": the object with handle " + HandleText(opened.object()) +
                 " is no block reference");
  }
  PresentGuarded(*block, contacts, spec, settings, report);
}

void RunInline(const EntitySpec& spec, const Contacts& contacts, OhmNoRxUtilsSettingOverride& settings,
               EntityReport& report) {
  ZdDbDatabase scratch;
  ZdDbDrawingBuilder builder(scratch);
  ZdDbDrawingBuilder::Attributes attributes;
  for (const std::u16string& tag : spec.attributes) attributes.push_back({tag, u""});
  ZdDbBlockReference* block = builder.insertBlock(u"XREF_COIL", attributes);
  for (const auto& [app, value] : spec.xdata) ZdDbDrawingBuilder::setOptionXData(*block, app, value);
  PresentGuarded(*block, contacts, spec, settings, report);
}

}  // namespace

std::vector<EntityReport> RunXref(const Project& project) {
  Drawings drawings;
  std::vector<EntityReport> reports;
  for (const EntitySpec& spec : project.entities) {
    OhmNoRxUtilsSettingOverride settings(project.settings);
    EntityReport& report = reports.emplace_back();
    report.name = spec.name;
    const Contacts& contacts = project.coils.at(spec.coil);
    if (spec.drawingFile.empty()) {
      RunInline(spec, contacts, settings, report);
    } else {
      RunFromDrawing(spec, drawings, contacts, settings, report);
    }
  }
  return reports;
}

const char* StyleName(OhmUtXrefEntity::Style style) {
  switch (style) {
    case OhmUtXrefEntity::StyleText:
      return "text";
    case OhmUtXrefEntity::StyleGraphic:
      return "graphic";
    case OhmUtXrefEntity::StyleTable:
      return "table";
    default:
      return "none";
  }
}
