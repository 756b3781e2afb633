#ifndef PLCASEINSENSITIVEKEY_H
#define PLCASEINSENSITIVEKEY_H

#include "ovparser_global.h"

#include <QString>

// A text used as a hash key without regard to case: two keys are equal when their lower-case
// forms (QString::toLower()) are equal, and equal keys hash alike. The key keeps the text as
// given, so a map keyed by it remembers the first spelling of each key. Latin-1 text, the
// text of the files, is compared and hashed character by character without building the
// lower-case form; other text falls back to QString::toLower().
class OVPARSER_EXPORT CPLCaseInsensitiveKey
{
public:
    CPLCaseInsensitiveKey() = default;
    // Implicit, so that a map keyed by it can be asked with a QString.
    CPLCaseInsensitiveKey(const QString& text)
        : m_strText(text)
    {
    }

    const QString& text() const { return m_strText; }
    bool operator==(const CPLCaseInsensitiveKey& other) const;
    bool operator!=(const CPLCaseInsensitiveKey& other) const { return !(*this == other); }

private:
    QString m_strText;
};

OVPARSER_EXPORT uint qHash(const CPLCaseInsensitiveKey& key, uint seed = 0);

#endif // PLCASEINSENSITIVEKEY_H
