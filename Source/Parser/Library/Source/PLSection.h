#ifndef PLSECTION_H
#define PLSECTION_H

#include "PLLoadWarning.h"
#include "ovparser_global.h"

#include <QList>
#include <QPair>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>
#include <QStringView>

// One section of a sectioned text file: the section key and name from its header line
//
//     *** <key>:<tab><name>
//
// and its body as an ordered list of entries. A body line "key:<tab>value" is a key/value
// entry; any other line is a comment entry, kept in place so that comments survive a load
// and a save. Comment entries are keyed "CommentLine <n>" (n counting from 0 per load) and
// hold the line's text, made to start with "#" (an empty line holds an empty text).
//
// Keys are case-insensitive: a key matches an entry when their lower-case forms are equal,
// and the entry keeps the spelling in which it was first added, for output. A value may carry an
// inline comment after a "#": the plain getters (getValue(), the typed getters, operator[],
// getValueList()) drop it and trim what is left, the raw getters keep it; the section name
// follows the same rule in getSectionName().
//
// Operations return an int status from PLStatus.h (PL_SUCCESS, 0, on success) and write
// their results only on success; a section that fails an operation is left unchanged.
// Nothing is thrown. A section is not safe for use from several threads at once; copies
// share their data until one of them is changed.
//
// A loaded body is kept as one text, and entries refer to their key and value in it, so
// loading makes no string per line; the strings that the getters return are made when they
// are asked for.
class CPLSectionData;

class OVPARSER_EXPORT CPLSection
{
public:
    CPLSection();
    CPLSection(const QString& sectionKey, const QString& sectionName);
    CPLSection(const CPLSection& other);
    CPLSection& operator=(const CPLSection& other);
    virtual ~CPLSection();

    // Removes every entry; the key and name stay.
    void clearKeyValuePairs();

    // Parses body text (the lines after the header line) into entries, added after any
    // entries already present. The text is trimmed and read line by line up to its first
    // NUL; a line that holds a colon with no "#" at or before it is a key/value entry, the
    // key and value being the trimmed texts before and after the colon. Every other line is a
    // comment entry. A key that the body repeats stands twice, in both places with the value
    // of its last line. Afterwards saveSectionData() writes as many entries as this body had
    // lines.
    //
    // One quirk is kept on purpose: the colon's offset in the untrimmed line is used as the
    // cut in the trimmed line, so a line that begins with blanks is cut at a shifted place.
    // The files are written without leading blanks.
    void loadSectionData(const QString& text);
    void loadSectionData(QStringView text);

    // Replaces `text` with the section in its file form: the header "*** <key>:\t<name>"
    // ended by CR LF (no name after the tab when the name is empty), then each entry ended
    // by LF alone ("key:\tvalue", or a comment entry's text alone), then one empty line
    // (LF). Values are written as stored, inline comments included.
    void saveSectionData(QString& text) const;

    // The name, without its inline comment unless `raw` is set. 31 for a null pointer.
    int getSectionName(QString* name, bool raw = false) const;
    // Stores the name as given, a "#" comment included. Always 0.
    int setSectionName(const QString& name);
    // 31 for a null pointer.
    int getSectionKey(QString* key) const;
    // 31 for a null string; an empty, non-null string is accepted.
    int setSectionKey(const QString& key);

    // Adds an entry for `key` when none exists (in any case), then stores the value under
    // it, replacing an earlier value; the entry keeps its first spelling and place.
    // 19 for an empty key.
    int addKeyValue(const QString& key, const QString& value);
    // The value without its inline comment, trimmed. 16 for a null pointer or an empty key,
    // 24 when the key is absent.
    int getValue(const QString& key, QString* value) const;
    // The value as stored. 16 for a null pointer, 24 when the key is absent.
    int getRawValue(const QString& key, QString* value) const;
    // Changes an existing value; never adds an entry (24 when the key is absent). A new
    // value holding a "#" is stored as given. Otherwise an inline comment of the old value
    // is kept: the stored value becomes the new value, a tab and the old value from its "#".
    // 31 for a value that breaksFile() refuses; the text stored in a comment entry is judged
    // as a comment (TextRole::Comment), since it is written as a line of its own.
    int setValue(const QString& key, const QString& value);
    // Stores the value as given, judged as by setValue(). 24 when the key is absent.
    int setRawValue(const QString& key, const QString& value);
    // Whether an entry with this key exists, in any case; comment entries count.
    bool isKeyPresent(const QString& key) const;
    // getValue(), or a null string when that fails.
    QString operator[](const QString& key) const;
    // The value (as by getValue()) of the key/value entry at this position, counting
    // key/value entries only. A position from the number of key/value entries up to the
    // number of all entries names the entry at that index of all entries (a comment entry,
    // for instance); a position outside all entries gives a null string.
    QString operator[](int position) const;
    // The key of the entry at `position`, in its first spelling, with the positions of
    // operator[](int). 31 when the position is not below the number of all entries, 16 for
    // a null pointer.
    int getKey(int position, QString* key) const;

    // The number of key/value entries (comment entries not counted). 16 for a null pointer.
    int getKeyValuePairCount(int* count) const;
    int count() const;
    // The keys of the key/value entries in order, in their first spelling. 16 for null.
    int getKeyList(QStringList* keys) const;
    // The values of the key/value entries in order, as by getValue() and getRawValue().
    // 16 for a null pointer.
    int getValueList(QStringList* values) const;
    int getRawValueList(QStringList* values) const;
    // Appends to `keys` (not emptied first) every key/value key that begins with `key` and,
    // when `subkey` is not null, also contains `subkey`, both without regard to case.
    // 16 for an empty key or a null pointer.
    int getKeylistFromKeyAndSubkey(const QString& key, const QString& subkey,
                                   QStringList* keys) const;
    // The angle of the rotating animal holder: "MVI-2 Angle" when present, else the older
    // "MuVI Angle". Returns the status of the read (24 with neither key).
    int getMVIAngle(double* angle) const;

    // Typed values. A getter reads the text as getValue() does and converts it; text that is
    // not a number (of that type) reads as 0, with status 0. A setter formats the number and
    // calls setValue(), so it fails with 24 for an absent key and keeps an inline comment.
    // Integers are written in decimal, floating-point numbers with six decimals ("%f"),
    // never in exponent form.
    int getValue(const QString& key, int* value) const;
    int getValue(const QString& key, long* value) const;
    int getValue(const QString& key, short* value) const;
    int getValue(const QString& key, float* value) const;
    int getValue(const QString& key, double* value) const;
    int setValue(const QString& key, int value);
    int setValue(const QString& key, long value);
    int setValue(const QString& key, short value);
    int setValue(const QString& key, float value);
    int setValue(const QString& key, double value);

    // Every entry's key in file order, comment entries ("CommentLine <n>") included; the
    // text of a comment entry is its raw value.
    QStringList getEntryKeys() const;
    // Whether a key names a comment entry: it contains "CommentLine ", in any case.
    static bool isCommentKey(const QString& key);

    // The part a text is to play in a section's lines. A section name is a name that is read
    // without its inline comment (a sequence ID, a label set's name), so a "#" would cut it; a
    // name stored with its comment, as a document's (setSectionName()), is judged as a value.
    // A comment is the text of a comment entry ("CommentLine <n>"), written as a line of its own.
    enum class TextRole { SectionKey, SectionName, Key, Value, Comment };
    // What keeps a text from being written in a section's lines as `role` and read back the
    // same; TextFault::None when nothing does. Checked in this order:
    // - every role: a line break (CR or LF: it ends the line), a NUL (it ends the text), a
    //   character outside Latin-1 (files are Latin-1);
    // - section keys and keys: emptiness, a colon (it ends them);
    // - section keys, keys and section names: a "#" (it starts a comment);
    // - keys, which begin a line: HeaderStart, the line would read as a section header (its
    //   first token begins with "***", after any blanks and tabs: PLGrammar::isHeaderLine());
    //   CommentKey, "CommentLine " in any case (the entry would be written as a comment line);
    //   ShiftedKey, any other white space in front (a line that begins with white space is cut
    //   at a shifted place, so the key would read back otherwise: " A" as "A:");
    // - comments, which begin a line too: NotComment, text that does not begin with "#" once
    //   trimmed (it would read as free text, a key line or a header); an empty comment is an
    //   empty line;
    // - last, every role: white space at either end (reading trims it).
    // A "#" in a value or a section name starts its inline comment. A value and a section name
    // never begin a line: the key and the header's prefix stand before them.
    // New faults are added at the end.
    enum class TextFault {
        None,
        LineBreak,
        Nul,
        NotLatin1,
        Empty,
        Colon,
        Hash,
        HeaderStart,
        CommentKey,
        OuterWhiteSpace,
        ShiftedKey,
        NotComment
    };
    static TextFault textFault(const QString& text, TextRole role);
    // Whether writing `text` as `role` would change the lines of the file or lose text: any
    // fault of textFault() but emptiness (which each operation judges) and, in a value, a
    // section name or a comment, white space at either end (which reading trims, and nothing
    // else). White space at either end of a key or a section key is a fault: the key would
    // not be found as given once read back. The setters, adders and builders refuse such text
    // with 31 and change nothing, so that no sequence of calls writes a file that does not
    // load back: a value "x\nUser:\tsomeone" never adds a key, a key " *** X" never a section.
    static bool breaksFile(const QString& text, TextRole role);
    static QString textFaultText(const QString& text, TextRole role);

    // What the last load (loadSectionData()) read that saveSectionData() will not write back
    // as it stood, one warning per kind with its first line and the number of lines of that
    // kind, lines counted from the first line of the text given: lines that begin with blanks
    // (their key is cut at a shifted place), other separators than a colon and a tab, blanks
    // around a key, a value or a comment, text lines that are written back as comments, keys
    // that a body repeats (every line is written with the last value), keys that begin with
    // "***" (their line would read back as a section header; a body can begin so after white
    // space that does not separate tokens, such as a vertical tab), keys that contain
    // "CommentLine " (such an entry is written back as its value alone), and a NUL byte (the
    // body ends there). The warnings carry the section key, no file. Line ends and blank lines
    // around the body are the document's to judge.
    QList<CPLLoadWarning> getLoadWarnings() const;

    // The value of each entry, in file order, comment entries included (their text), as by
    // getValue() or, with `raw`, getRawValue(): except that an entry whose key the section
    // holds more than once gives the value of its own line, not the last one, until the key
    // is set again. A reader that shows what a file holds uses this.
    QStringList getEntryValues(bool raw) const;
    // The same one entry at a time, for a reader that goes through a large section without a
    // list of all its texts: the number of entries, comment entries included, and the key and
    // value of the entry at `index` in file order, as in the lists above (null outside).
    int getEntryCount() const;
    QString getEntryKey(int index) const;
    QString getEntryValue(int index, bool raw) const;

private:
    friend class CPLClickInfo;
    friend class CPLSectionedDocument;
    // Appends a key/value entry as a load read it, unchecked (its key may be empty, or hold
    // what addKeyValue() refuses): a merge takes the entries of another loaded section.
    void appendLoadedEntry(const QString& key, const QString& value);
    // Loads the body that stands from `from` to `to` in `text`, sharing `text` rather than
    // copying it when the section holds no text yet (a document passes the whole text it
    // loads, which all its sections then share). `expectedLines`, when known, is the number of
    // lines of the body, so that room for its entries is made once; `mayHoldNul` is false for
    // text already cut at its first NUL.
    void loadBody(const QString& text, int from, int to, int expectedLines, bool mayHoldNul);
    // The key and name of a header line that a document loads, unchecked: they stand in it.
    void setLoadedHeader(const QString& key, const QString& name);
    template<typename T> int getNumber(const QString& key, T* value) const;
    // Notes a line of a load that saving will not write back as it stood.
    void noteLineFault(int fault, int line, QStringView key);
    void noteRepeatedKey(int firstEntry, int linesTrimmed, int line);
    // Stores the text of setValue() or setRawValue() in the slot of `key`, when it can stand.
    int setStored(const QString& key, int slot, const QString& stored);

    QSharedDataPointer<CPLSectionData> d;
};

#endif // PLSECTION_H
