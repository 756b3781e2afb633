#include "PLImageTypes.h"

#include "PLAssert_p.h"
#include "PLConstants.h"

QString getImageTypeString(tag_eimagetype type)
{
    PL_ASSERT(type >= IMAGETYPE_PHOTOGRAPH && type <= IMAGETYPE_SATURATION_MAP_2);
    switch (type) {
    case IMAGETYPE_LUMINESCENT_CORRECTED:
        return OVSGlobalConstants::g_strImages[IMAGETYPE_LUMINESCENT];
    case IMAGETYPE_SATURATION_MAP_2:
        return OVSGlobalConstants::g_strImages[IMAGETYPE_SATURATION_MAP];
    default:
        return OVSGlobalConstants::g_strImages[type];
    }
}

sIASetupInfo::sIASetupInfo()
    : m_tTimeStamp(std::time(nullptr))
{
}

sIASetupInfo::~sIASetupInfo() = default;
