#ifndef PLINFOITEM_H
#define PLINFOITEM_H

#include "ovparser_global.h"

#include <QByteArray>

// One owned C string. A new item holds none (GetString() returns null); setting it copies
// the string given, and copies of an item copy the string.
class OVPARSER_EXPORT CPLInfoItem
{
public:
    CPLInfoItem();
    explicit CPLInfoItem(const char* string);
    CPLInfoItem(const CPLInfoItem& other);
    CPLInfoItem& operator=(const CPLInfoItem& other);
    CPLInfoItem& operator=(const char* string);
    virtual ~CPLInfoItem();

    // The string held, NUL-terminated, or null when none is held. Valid until the item is
    // changed or destroyed.
    const char* GetString() const;
    // Copies `string` (up to its NUL); a null pointer makes the item hold none.
    void SetString(const char* string);

private:
    QByteArray m_String; // null when no string is held
};

#endif // PLINFOITEM_H
