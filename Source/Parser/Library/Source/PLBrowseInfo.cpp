#include "PLBrowseInfo.h"

CPLBrowseInfo::CPLBrowseInfo() = default;

CPLBrowseInfo::CPLBrowseInfo(int type)
    : m_iType(type)
{
}

CPLBrowseInfo::~CPLBrowseInfo() = default;

int CPLBrowseInfo::getType() const
{
    return m_iType;
}

void CPLBrowseInfo::setType(int type)
{
    m_iType = type;
}
