#include "PLInfoItem.h"

CPLInfoItem::CPLInfoItem() = default;

CPLInfoItem::CPLInfoItem(const char* string)
{
    SetString(string);
}

CPLInfoItem::CPLInfoItem(const CPLInfoItem& other) = default;
CPLInfoItem& CPLInfoItem::operator=(const CPLInfoItem& other) = default;

CPLInfoItem& CPLInfoItem::operator=(const char* string)
{
    SetString(string);
    return *this;
}

CPLInfoItem::~CPLInfoItem() = default;

const char* CPLInfoItem::GetString() const
{
    return m_String.isNull() ? nullptr : m_String.constData();
}

void CPLInfoItem::SetString(const char* string)
{
    // QByteArray(const char*) of an empty string is empty but not null, so "" is held.
    m_String = string ? QByteArray(string) : QByteArray();
}
