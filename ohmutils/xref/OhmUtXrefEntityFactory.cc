#include "ohmutils/xref/OhmUtXrefEntityFactory.h"

#include <memory>

#include "ohmutils/dwg/OhmDwgUtils.h"
#include "ohmutils/xref/OhmUtXrefGraphicEntity.h"
#include "ohmutils/xref/OhmUtXrefTableEntity.h"

bool OhmUtXrefEntityFactory::getPinList(const ZdDbEntity* entity, std::u16string& pinList) {
  return OhmDwgUtils::getOhmEntityXData(entity, u"KVA_WD_PINLIST", pinList);
}

// The style is decided before this entity's overrides are applied, so option
// 60 here is whatever the option set holds now, an earlier entity's override
// included.
OhmUtXrefEntity* OhmUtXrefEntityFactory::getXrefEntity(const ZdDbEntity* entity,
                                                       OhmNoRxUtilsSettingOverride& settingOverride) {
  if (!entity) return nullptr;
  std::u16string styleText;
  if (!OhmDwgUtils::getOhmEntityXData(entity, u"KVA_WD_XREF_STYLE", styleText) || styleText.empty()) {
    styleText.clear();
    settingOverride.getSettingValue(OhmCfgSetting::WD_XREF_STYLE, styleText);
  }
  std::u16string pinList;
  getPinList(entity, pinList);
  std::unique_ptr<OhmUtXrefEntity> object;
  switch (OhmUtXrefEntity::getXrefEntityStyle(styleText)) {
    case OhmUtXrefEntity::StyleText:
      object = std::make_unique<OhmUtXrefTextEntity>(settingOverride);
      break;
    case OhmUtXrefEntity::StyleGraphic:
      object = std::make_unique<OhmUtXrefGraphicEntity>(settingOverride, pinList);
      break;
    case OhmUtXrefEntity::StyleTable:
      object = std::make_unique<OhmUtXrefTableEntity>(settingOverride, pinList);
      break;
    case OhmUtXrefEntity::StyleNone:
      return nullptr;
  }
  object->applyEntityOverrides(entity);
  return object.release();
}

OhmUtXrefTextEntity* OhmUtXrefEntityFactory::getXrefTextEntity(const ZdDbEntity* entity,
                                                               OhmNoRxUtilsSettingOverride& settingOverride) {
  if (!entity) return nullptr;
  auto object = std::make_unique<OhmUtXrefTextEntity>(settingOverride);
  object->applyEntityOverrides(entity);
  return object.release();
}
