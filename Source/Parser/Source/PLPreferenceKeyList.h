#ifndef PLPREFERENCEKEYLIST_H
#define PLPREFERENCEKEYLIST_H

#include "ovparser_global.h"

#include <QString>
#include <QStringList>

class CPLLabelDataSet;
class QFile;

// One user preference: an ordered list of values, for instance the recent entries of one
// label. Values may repeat; addValue() refuses an empty value, loadData() keeps empty fields.
// In text a key is its values, each followed by ";": "mouse1;mouse2;".
//
// Operations return a status from PLStatus.h (0 on success) and write results only on
// success; nothing is thrown.
class OVPARSER_EXPORT CPLPreferenceKey
{
public:
    CPLPreferenceKey();
    // A copy of the other key's values; empty when `other` is null.
    explicit CPLPreferenceKey(CPLPreferenceKey* other);
    CPLPreferenceKey(const CPLPreferenceKey&) = default;
    CPLPreferenceKey& operator=(const CPLPreferenceKey&) = default;
    virtual ~CPLPreferenceKey();
    // Replaces the values by a copy of the other's; a null `other` empties them.
    CPLPreferenceKey& operator=(CPLPreferenceKey* other);

    // Appends the value. 48 for an empty value.
    int addValue(const QString& value);
    // Removes every value equal to `value`. 48 when there was none.
    int deleteValue(const QString& value);
    void clearValues();
    // Stores the address of the key's own value list (not a copy), valid while the key
    // lives. 16 for a null pointer.
    int getCompleteData(QStringList** values);
    // The value at `index`. 48 for a null pointer or an index not below the count.
    int getValue(unsigned int index, QString* value) const;
    // Replaces the value at `index`. 48 for an index not below the count.
    int setValue(const QString& value, unsigned int index);
    // The value at `index`, or a null string outside the list.
    QString operator[](unsigned int index) const;
    // The number of values. 16 for a null pointer.
    int getCount(int* count) const;
    // Exchanges the value at `index` with the one before it. 48 for index 0 or an index not
    // below the count.
    int moveUp(unsigned int index);
    // Exchanges the value at `index` with the one after it. 48 when `index + 1` is not below
    // the count.
    int moveDown(unsigned int index);
    // Every value followed by ";" ("a;b;" for a and b, empty for no values). 16 for null.
    int getSaveBuffer(QString* text) const;
    // Replaces the values by the fields of `data` that a ";" ends: "x;;y;" gives x, an empty
    // value and y; text after the last ";" is ignored, so "a;b" gives a alone. Returns 0.
    int loadData(const QString& data);

private:
    QStringList m_Values;
};

// A fixed number of preference keys, one slot per label of a label-name set
// (CPLLabelDataSet); a slot may be empty (null). Its text form is one section:
//
//     *** User Label Name Set:<tab><set name><CR LF>
//     <label of slot 0>:<tab><values of the key, each followed by ";"><CR LF>
//     ...
//     <CR LF>
//
// Every line ends with CR LF and an empty line ends the section; an empty slot has no line.
// The list owns its keys. If the slots or a key cannot be allocated, a critical message
// "Unable To Allocate Memory for Operation " is logged and the list goes on without them: a
// list whose slots could not be allocated has none.
class OVPARSER_EXPORT CPLPreferenceKeyList
{
public:
    // `count` slots, each with an empty key; none for a count below 1.
    explicit CPLPreferenceKeyList(int count);
    // As many slots as `other`, each with a copy of the other's key in that slot (an empty
    // key where the other's slot is empty); no slots when `other` is null.
    explicit CPLPreferenceKeyList(CPLPreferenceKeyList* other);
    CPLPreferenceKeyList(const CPLPreferenceKeyList&) = delete;
    CPLPreferenceKeyList& operator=(const CPLPreferenceKeyList&) = delete;
    // Deletes the keys from the last slot to the first.
    virtual ~CPLPreferenceKeyList();
    // Takes over the other's slot count and gives each slot a copy of the other's key in it
    // (CPLPreferenceKey::operator=). The slots are not reallocated: the other list must not
    // have more slots than this one was made with (a programming error that stops the
    // program). Keys of slots beyond the new count are deleted. A null `other`, or this list
    // itself, changes nothing. The loaded-key count becomes 0.
    CPLPreferenceKeyList& operator=(CPLPreferenceKeyList* other);

    // The key in the slot, or null outside the slots.
    CPLPreferenceKey* operator[](int index) const;
    // 48 for an index outside the slots or a null pointer.
    int getKey(int index, CPLPreferenceKey** key) const;
    // Deletes the slot's key and stores `key`, taking ownership. 48 for an index outside the
    // slots or a null key.
    int setKey(int index, CPLPreferenceKey* key);
    // The number of slots.
    int getCount() const;
    // The number of keys that the last loadData() created.
    int getLoadedKeyCount() const;

    // Loads the body of a saved section. For slot i (up to the slot count and the number of
    // names), the first occurrence of `keyNames[i]` followed by ":" in `data` (case matters)
    // is the slot's line; the text after the next ":" up to the line's end, trimmed, is the
    // key's text (CPLPreferenceKey::loadData()). A slot whose name is absent or whose text is
    // empty keeps its key; any other slot gets a new key. 19 for a null `keyNames`.
    int loadData(const QString& data, QStringList* keyNames);
    // The section text (see the class comment) for the chosen set of `labels`: its name,
    // through updateLabelSetName(), and the label of each slot by position. 19 for a null
    // argument; a failure of labels->getLabelData() is returned as it is.
    int saveData(CPLLabelDataSet* labels, QString* text) const;
    // The same text in Latin-1, written to `file`, which must be open, in one write; the file
    // is neither opened nor closed. 31 when the write is short.
    int saveData(QFile& file, CPLLabelDataSet* labels) const;

private:
    // Allocates `count` slots with an empty key in each; logs a failure at `line` of
    // `function`.
    void allocate(int count, int line, const char* function);
    // A new empty key, or null (logged) when it cannot be allocated.
    static CPLPreferenceKey* newKey(int line, const char* function);
    static void logAllocationFailure(int line, const char* function);

    CPLPreferenceKey** m_ppKeys = nullptr;
    int m_iLoadedKeyCount = 0;
    int m_iCount = 0;
    // The slots allocated; operator=() may lower the count below it.
    int m_iCapacity = 0;
};

#endif // PLPREFERENCEKEYLIST_H
