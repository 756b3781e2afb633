#ifndef PLCASEINSENSITIVEKEY_H
#define PLCASEINSENSITIVEKEY_H

#include "ovparser_global.h"

#include <QString>
#include <QStringView>

// A text used as a hash key without regard to case: two keys are equal when their lower-case
// forms (QString::toLower()) are equal, and equal keys hash alike. A key keeps the text as
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
    // A key that only refers to `text`, for looking up a map without copying the text: it
    // must not outlive the text, nor be stored in a map.
    static CPLCaseInsensitiveKey lookup(QStringView text)
    {
        CPLCaseInsensitiveKey key;
        key.m_lookupText = text;
        key.m_bLookup = true;
        return key;
    }

    QStringView text() const { return m_bLookup ? m_lookupText : QStringView(m_strText); }
    bool operator==(const CPLCaseInsensitiveKey& other) const;
    bool operator!=(const CPLCaseInsensitiveKey& other) const { return !(*this == other); }

private:
    QString m_strText;
    QStringView m_lookupText;
    bool m_bLookup = false;
};

OVPARSER_EXPORT uint qHash(const CPLCaseInsensitiveKey& key, uint seed = 0);

#endif // PLCASEINSENSITIVEKEY_H
