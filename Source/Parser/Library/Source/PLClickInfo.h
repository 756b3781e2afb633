#ifndef PLCLICKINFO_H
#define PLCLICKINFO_H

#include "PLImageTypes.h"
#include "PLLoadWarning.h"
#include "PLSectionedDocument.h"
#include "ovparser_global.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <memory>

struct stat;
class CPLDecodedText;
class CPLLoadCheck;
class CPLSection;

// The metadata of one acquisition, "ClickInfo.txt", and the base of every document stored as
// a sectioned text file.
//
// The document owns one CPLSection per section, found by its section key in any case, and
// keeps the keys in the order the sections were added, which is the order of saving. It
// also keeps the lines that stood before the first section header of the file it loaded
// (written back first) and the acquisition's click number, the name of its "ClickNumber"
// section.
//
// The sections themselves, their order, their origins and the load warnings are kept by the
// base, CPLSectionedDocument, whose public functions (isSectionPresent(), operator[],
// getSectionCount(), getSectionKeys(), getLoadWarnings()) are part of this document's API.
//
// Text is Latin-1 in both directions. Operations return an int status from PLStatus.h and
// write their results only on success; nothing is thrown. A document is not safe for use
// from several threads at once. Documents cannot be copied.
class OVPARSER_EXPORT CPLClickInfo : public CPLSectionedDocument
{
public:
    CPLClickInfo();
    ~CPLClickInfo() override;

    // Makes one section from its text (header line and body) and adds it under `sectionKey`.
    // While loadTextBuffer() runs, the text it passes refers to the text being loaded
    // (QString::fromRawData()) and is valid during the call only: an override that keeps it
    // must copy it.
    // The name is the trimmed text after the header's colon (when the header holds a colon
    // and no "#" at or before it); the body, the lines after the header, is parsed by the
    // section. When a section with this key is present, the text is ignored and 0 returned:
    // the first section with a key wins. Otherwise returns the status of addSection().
    virtual int loadSectionData(const QString& text, const QString& sectionKey);
    // Adds a section made elsewhere, taking ownership of it: 16 for a null section, 33 for
    // an empty section key, 31 for a section key or name that cannot stand in a header line
    // (CPLSection::breaksFile(): a line break, a NUL, a character outside Latin-1, and in the
    // key a colon, a "#" or white space at either end; the name is judged as a value). When a
    // section with that key is already present, returns 0 and takes nothing; the caller keeps (and
    // deletes) the section it passed.
    virtual int addSection(CPLSection* section);
    // Adds a new empty section at the end, owned by the document, and returns it; null when
    // addSection() does not take it (a key that is empty or already present).
    CPLSection* addNewSection(const QString& sectionKey, const QString& sectionName);
    // Deletes the section with this key; 0 also when it is absent.
    virtual int removeSection(const QString& sectionKey);
    // Cuts a text into sections and loads each with loadSectionData(). A header line is
    // split at "*** " (or "***") and its first colon; the key is the trimmed text between.
    // Returns 5 for a header with no prefix, no colon after the prefix or a "#" at or before
    // the colon, and 33 for an empty key or a "ClickNumber" section without a click number;
    // loading stops there and keeps the sections read so far. The text is read up to its
    // first NUL. Sections already present keep their content (see loadClickInfo()). 78 and 65
    // as loadClickInfo().
    virtual int loadTextBuffer(const QString& text);
    // Removes every section (through removeSection()) and empties the click number and the
    // leading lines.
    virtual void clearData();

    // Loads a file: reads it whole as Latin-1, skips a UTF-8 byte order mark, trims it, turns
    // CR LF and lone CR into LF, keeps the lines before the first line whose first token is
    // exactly "***" as leading lines (trimmed), and cuts the text into sections with
    // loadTextBuffer(). A path ending in ".dcm", in any case, is a DICOM file: its last
    // complete metadata copy is loaded, as saveClickInfo() appends it (loadClickInfoDcm()).
    // Only a regular file is read (a symbolic link is followed). Returns 11 when the file
    // cannot be opened or read, a directory too (getLastSystemError() says why), 64 for a
    // FIFO, device or socket (never opened for reading), 63 for a file (or DICOM metadata)
    // larger than PL_MAX_FILE_SIZE, 78 for a text of more lines or sections than a document
    // holds (PL_MAX_LINES, PL_MAX_SECTIONS; getLastLimitText() gives the count), counted
    // before any section is built, 65 when memory runs out, else the status of
    // loadTextBuffer(). A load that runs out of memory leaves the document empty (sections
    // present before it included) and usable. After a successful load getFileSectionCount() gives
    // the number of sections and getLoadWarnings() what saving would not write back as it was read;
    // then, when `appendUserSections` is set, appendUserSpecificSections(false) is called and its
    // status returned.
    //
    // Loading does not clear the document: a section already present keeps its content and
    // its place, and the file's section with the same key is ignored. The leading lines are
    // replaced by those of the file.
    int loadClickInfo(const QString& filePath, bool appendUserSections = false);
    // Loads `size` bytes already read (standard input, say) as loadClickInfo() loads the bytes
    // of a text file; `sourceName` names them in load warnings and messages ("FILE:LINE:").
    // Returns 16 for null data, 31 for a negative size, 63 for more than PL_MAX_FILE_SIZE
    // bytes, 78 or 65 as loadClickInfo(), else the status of loadTextBuffer().
    int loadClickInfoBytes(const char* data, qint64 size, const QString& sourceName);

    // Loads one image's acquisition from a folder of acquisitions (a sequence folder holds
    // one subfolder per click). The candidates are `folder` itself and then its subfolders
    // in name order; each is read from `fileName` ("ClickInfo.txt" when empty). A candidate
    // counts when its file loads and holds the image section of `imageType` (the name at
    // that position of OVSGlobalConstants::g_strImageSections, 0 to 12); the one at
    // position `index` (from 0) among those is loaded into this document.
    // Returns 48 for an image type outside 0 to 12 or a negative index, 24 when fewer
    // candidates hold that image, else the status of loadClickInfo() on the chosen file.
    int loadClickInfo(const QString& folder, const QString& fileName, int imageType, int index);

    // Loads the analysis results of an acquisition, "AnalyzedClickInfo.txt", and adds every
    // section of it that this document lacks, in the file's order; sections this document
    // already holds are kept as they are. `path` is the acquisition folder or the file
    // itself. Returns the load status of the file (11, 5, 33), or 31 when both documents
    // have click numbers and they differ (the analysis belongs to another acquisition; then
    // nothing is added).
    int loadAnalyzedClickInfo(const QString& path);

    // Loads the metadata that a save to a ".dcm" path appended to a DICOM file, from the
    // file's bytes: `length` bytes at `buffer`, which may hold NUL bytes. The metadata is the
    // text after the buffer's last NUL byte (the image data before it always holds NULs;
    // the metadata never does), from its first section header on: the bytes before that
    // header end the image data, so leading lines are not recovered. Each save appends a new
    // copy; the last copy is loaded, the one beginning at the last header that repeats the
    // first header's key, as loadClickInfoBytes() loads bytes. Returns 16 for a null buffer,
    // 31 for a negative length, 33 when the buffer holds no section header after its last
    // NUL, else the status of loadClickInfoBytes().
    int loadClickInfoDcm(const char* buffer, qint64 length);

    // Writes the document: each leading line followed by LF, each section in order (see
    // CPLSection::saveSectionData()), then two LF. A path ending in ".dcm" (in any case) is
    // appended to, so that the metadata follows the image data of a DICOM file; any other
    // path is replaced as a whole. The file's lock "<file>.lock" is held meanwhile, with a
    // lock on the file itself (the file alone is locked where no lock file can be created: a
    // read-only folder, a name too long); a lock file that no process holds, left by an
    // editor that ended, is taken over with a warning. The new content replaces the file
    // through the lock file and a rename where that keeps the file what it was (one link, its
    // owner, group, mode and extended attributes, its ACL among them), and is written in
    // place otherwise (a hard link, a read-only folder, a file that is a mount point); a
    // symbolic link is followed. An append is all or nothing where the file can be replaced
    // (the old bytes are copied, by reflink where the file system offers one, the copy
    // appended, the whole renamed into place); where the copy is appended in place, a copy
    // cut off by a crash is recognised by the next load, which falls back to the last
    // complete one with a warning. A failed save leaves the old file intact. Returns 11 when
    // the file or its lock cannot be created or opened, or the file may not be written (mode
    // 0444, say: "Permission denied"), 31 when it cannot be written completely (a write,
    // sync, close or rename refused: see getLastSystemError()), 64 for a FIFO, device or
    // socket, 66 when another editor holds the lock, 65 when memory runs out.
    //
    // Over the file the document was loaded from (the same path, a symbolic link to it or
    // another hard link of it), a save first makes sure it loses nothing: it returns 77
    // (PL_LOAD_INCOMPLETE), the file untouched, when the load did not take in all the file
    // holds (see getLoadIncompleteReason()); and it returns 76 (PL_FILE_CHANGED), the file
    // untouched, when someone else changed, replaced or removed the file since it was loaded
    // or last saved by this document, checked under the file's lock, so that no other
    // program's or editor's update is overwritten: load it again and repeat the edit. Saving
    // to any other path is not checked so. A document whose section key, section
    // name, key, value or comment line could not be written and read back the same (a key
    // holding a colon, a "#" or a line break, a key beginning with "***" after blanks, a
    // comment line that is not a comment: what a load keeps of a line it could not read as
    // written, see getLoadWarnings()) is not written at all: 31, with the offending entry in
    // the log (category "ovparser.save").
    int saveClickInfo(const QString& filePath) const;
    // The text that saveClickInfo() writes.
    QString getClickInfoData() const;

    // Makes sure the document holds the sections a user edits on an acquisition: a "User
    // Input" section named after the default label set ("Orvane Universal") with an empty
    // value for each of its sixteen labels, when there is none; a "Graph Controls" section
    // with the display defaults, when there is none, or the defaults of the keys it lacks
    // when there is one (present values are kept). With `withAnalysisSection` it also calls
    // appendAnalysisUserInputSection(). New sections are added at the end. Returns 0.
    int appendUserSpecificSections(bool withAnalysisSection);
    // Adds an "Analysis User Input" section when there is none: a copy of the "User Input"
    // section's name and entries, or, without one, the default label set's labels with empty
    // values. A section already present is kept. Returns 0.
    int appendAnalysisUserInputSection();

    // The sections of a newly acquired image (PLClickInfoImageSections.cpp).
    //
    // Adds the section that describes an image of `type`, built from `setup`: its key and
    // name are `sectionName`, and it holds, in this order, the acquisition date, time and
    // seconds (in 1904-based seconds) of the setup's time stamp with "Pixel Width" and
    // "Pixel Height" 1; for IMAGETYPE_FIXED_STAMP the same five keys again with the fixed
    // stamp "13/12/2022", "12:40", "23" (the section then holds each twice, and both read the
    // fixed value); "Imaging Angle" for an angled view (PL_VIEWMODE_ANGLED); then the keys
    // of the type: the luminescent family (1, 9, 17) its exposure, optics, filters, the
    // fluorescence keys of a fluorescent setup and the "FL Grid" keys when a grid is used,
    // then "Error Wave", the normalisation keys (type 9 only), the temperatures and
    // "Cosmic", "Background Corrected" and "Flat Field Corrected" ("1" for type 17, "0" for
    // 1 and 9); the photograph (0) and the bias image (5) the binning, read bias,
    // temperatures and multiplier (the photograph first "Side View Mirror Enabled" when the
    // mirror is used); the structure (7), fluorescent background (8), x-ray (12, with its
    // "Imaging Mode"; "Large animal x-rayed" is not written) and fixed-stamp (19) images
    // their own keys; every other type nothing more. sIASetupInfo says which field feeds
    // which key; numbers are written in plain decimal.
    //
    // The section is added at the end, except a calibration image (types 2, 3, 4), which
    // goes before a "readbiasonly image" section when there is one, so that calibration
    // sections stay together. When a section of that name is present, `replace` replaces it
    // in its place; without `replace` the document is left as it is and 31 returned.
    // Returns 48 for a type outside 0 to 19, 16 for a null setup, 33 for an empty name, 31
    // for a name that cannot stand in a header line (a "#", a colon, a line break: an image
    // file named "lum#1.TIF"), with the document unchanged in each case; else 0.
    int addTiffImageSection(const QString& sectionName, tag_eimagetype type,
                            const sIASetupInfo* setup, bool replace);
    // Adds the section of the image file at `imagePath` as addTiffImageSection() does, and
    // returns its status: the section name is the file name, the text after the path's last
    // "/". When the section is added and the document has a "User Input" section, its "User
    // ID" is set to `userId` (the key is added when the section lacks it).
    int addImageSection(const QString& imagePath, const QString& userId, tag_eimagetype type,
                        const sIASetupInfo* setup, bool replace);
    // Gives the acquisition of an image of `type` its "User Input" section, when it has
    // none: named after the default label set ("Orvane Universal"), with an empty value for
    // each label of PLConstants::strUserLabelSetKeys; then sets its "User ID" to `userId`
    // (added after the labels when absent). Labels already entered are kept. Calibration
    // images (types 2, 3, 4) are taken by the instrument, not for a user: they add nothing.
    // Returns 48 for a type outside 0 to 19, else 0.
    int addTiffUserSection(tag_eimagetype type, const QString& userId);
    // Gives the document its "ClickNumber" section, first in the order, named `clickNumber`
    // (trimmed), and makes that the document's click number. The section holds
    // "ClickInfoType" "RawData", "Acquired From File" and "Modified Since Saved", "Yes" or
    // "No" after the two flags. A section already present is renamed and those three keys
    // set (added when absent); its other keys are kept. Returns 33 for an empty click
    // number (nothing changed), else 0.
    int addTiffClickNumberSection(bool acquiredFromFile, bool modifiedSinceSaved,
                                  const QString& clickNumber);

    // The number of sections right after the last successful load from a file.
    int getFileSectionCount() const;
    // The lines that stood before the first section header of the loaded file.
    QStringList getLeadingLines() const;
    // The 1-based line (of the file, or of the text given to loadTextBuffer()) at which the
    // last load stopped with 5 or 33; 0 when it did not stop at a line.
    int getLastErrorLine() const;
    // What a save over the file the document was last loaded from would lose because the load
    // did not take it in, as one line per cause naming the file and line: a NUL byte that
    // ends the text, a section left out because its key repeats an earlier one's (or merged
    // into it), a key that a section holds on lines with different values (a save writes the
    // last value on each), a DICOM metadata copy that was cut off, a load that stopped at a
    // malformed line. Empty when the load took in everything, after clearData(), and for a
    // document not loaded from a file. While it is not empty, saveClickInfo() refuses to
    // write over that file (PL_LOAD_INCOMPLETE); saving elsewhere is allowed.
    QStringList getLoadIncompleteReason() const;

    // The load warnings: every way in which what the last load read differs from what saving
    // writes, one warning per kind and section with its first line and the number of lines of that
    // kind (CPLLoadWarning), in the order of their lines: besides what a section finds in its body
    // (CPLSection::getLoadWarnings()), a byte order mark, line ends other than CR LF after a
    // header and LF after any other line, section headers not in the written form, blank
    // lines and white space that saving drops or adds (at the ends of the file and of each
    // section), blanks around leading lines, a section whose key repeats an earlier one (it is
    // left out), a leading line that is also a section header (it is written twice), and a
    // NUL byte (the text ends there). Line ends, the byte order mark and the ends of the file
    // are judged only for a load of bytes (loadClickInfo(), loadClickInfoBytes()), not for
    // text given to loadTextBuffer(). Empty exactly when saving writes back the bytes read.
    // Each is also logged in the category "ovparser.load" (the first hundred of a load).
    // getLoadWarnings() gives each as its text ("FILE:LINE: section "KEY": ..."), and
    // getLoadWarningList() the warnings themselves (both CPLSectionedDocument). A document
    // whose sections merge (CPLSectionedDocument::RepeatedSectionRule) warns of a repeated
    // section only when both stand in the same file.

    // The click number. getClickNumber() returns 16 for a null pointer.
    int getClickNumber(QString* clickNumber) const;
    int setClickNumber(const QString& clickNumber);
    // Takes the click number from a "ClickNumber" section's text: the trimmed text between
    // its first colon and its first line feed. Returns 33 when that is empty.
    int loadClickNumber(const QString& sectionText);

    // Finds one value in ClickInfo text without building sections: the first line, read in
    // pieces of at most 200 characters, that holds `key` followed by a colon (in any case,
    // anywhere in the line, in any section), skipping empty lines and lines that begin with
    // "#". The value is the trimmed text after the colon. The result is emptied first.
    // Returns 16 for a null buffer or pointer or an empty key, 24 when no line holds the key,
    // 63 for a buffer longer than PL_MAX_FILE_SIZE.
    static int obtainValueFromClickInfoFile(const char* buffer, const QString& key, QString* value);
    // The same on a file, read whole. Returns 11 when it cannot be read, 63 or 64 as
    // loadClickInfo() does.
    static int obtainValueFromClickInfoFile(const QString& filePath, const QString& key,
                                            QString* value);

    // Typed access by section key and value key: 49 when the section is absent, else the
    // status of the CPLSection operation of the same name and type (so setting never adds a
    // key, and inline comments are handled as the section handles them).
    int getValue(const QString& sectionKey, const QString& key, QString* value) const;
    int getValue(const QString& sectionKey, const QString& key, int* value) const;
    int getValue(const QString& sectionKey, const QString& key, long* value) const;
    int getValue(const QString& sectionKey, const QString& key, short* value) const;
    int getValue(const QString& sectionKey, const QString& key, float* value) const;
    int getValue(const QString& sectionKey, const QString& key, double* value) const;
    int setValue(const QString& sectionKey, const QString& key, const QString& value);
    int setValue(const QString& sectionKey, const QString& key, int value);
    int setValue(const QString& sectionKey, const QString& key, long value);
    int setValue(const QString& sectionKey, const QString& key, short value);
    int setValue(const QString& sectionKey, const QString& key, float value);
    int setValue(const QString& sectionKey, const QString& key, double value);

protected:
    // Makes a section from its text (header line and body) under `sectionKey`, without adding
    // it: what loadSectionData() adds. Notes what its body gave to warn of.
    std::unique_ptr<CPLSection> parseSection(const QString& text, const QString& sectionKey);
    // Hands a section to addSection() and releases it from `section` when the document took
    // it; otherwise `section` still owns it. Returns the status of addSection().
    int adoptSection(std::unique_ptr<CPLSection>& section);
    // Adds a "User Input" section named after the default label set, with an empty value for
    // each of its labels, when there is none. 0, or 33 when it cannot be added.
    int addDefaultUserInputSection();
    // Sets what getFileSectionCount() gives, for a derived document's own load.
    void setFileSectionCount(int count) { m_iFileSectionCount = count; }
    // Loads the file at `filePath` as loadClickInfo(filePath, false) does, and gives the
    // bytes that were read (of a DICOM file, its metadata) in *bytes.
    int loadFile(const QString& filePath, QByteArray* bytes);
    // Writes `bytes` to `filePath` as saveClickInfo() writes the document's text, with the
    // same checks over the file the document was loaded from (PL_LOAD_INCOMPLETE,
    // PL_FILE_CHANGED): for a document that keeps the bytes of its file.
    // `wholeFile` tells that `bytes` are the file's own bytes, edited in place: then nothing
    // the load left out is lost, and only the check for changes applies. `others` are files
    // saved together with it, all or nothing, each given by its path and whole new content.
    int saveFileBytes(const QString& filePath, const QByteArray& bytes, bool wholeFile,
                      const QList<QPair<QString, QByteArray>>& others = {}) const;
    // saveClickInfo(), together with `others`, all or nothing (a document whose file has
    // companions: the background library's indexes).
    int saveClickInfoWith(const QString& filePath,
                          const QList<QPair<QString, QByteArray>>& others) const;
    // Replaces the sections by copies of those of `from`, in its order, and the load warnings
    // by `warnings`: for a document whose file's bytes were edited in place (CPLFileEditor)
    // and loaded again by the editor as `from`.
    void adoptSections(const CPLClickInfo& from, const QList<CPLLoadWarning>& warnings);

private:
    friend class CPLFileEditor; // loads the metadata of a DICOM file as loadClickInfo() does
    // Cuts text (up to `length`, its first NUL) into sections, telling `check` of each.
    int loadSections(const QChar* data, qint64 length, CPLLoadCheck& check);
    // Loads decoded bytes: leading lines, then sections through loadTextBuffer().
    int loadDecoded(const CPLDecodedText& decoded, const QString& sourceName);
    // Loads the last metadata copy of a DICOM file's bytes; `filePath` names it.
    int loadDicomMetadata(const char* data, qint64 size, const QString& filePath);
    void logLoadWarnings() const;
    // Ends a load with `status`: one that ran out of memory (PL_OUT_OF_MEMORY) leaves the
    // document empty, with no section half built, and usable for another load.
    int emptiedUnlessLoaded(int status);
    // Line `textLine` of the text being loaded as a line of the file it came from.
    CPLTextLocation locationOf(int textLine) const;

    // What a save over the file loaded from must know of it (PLFileStamp_p.h).
    struct LoadedFile;
    // Remembers the file at `filePath`, read as `bytes` with `status` its fstat(2) before the
    // read, after a load of it that returned `loadStatus`.
    void rememberLoadedFile(const QString& filePath, const struct stat& status,
                            const QByteArray& bytes, int loadStatus);
    // What getLoadIncompleteReason() gives after a load of `filePath` that returned
    // `loadStatus`.
    QStringList lossesOfLoad(int loadStatus, const QString& filePath) const;
    // The first section key, name, key, value or comment line that cannot be written and read
    // back the same, in words naming its section; empty when there is none.
    QString unwritableEntry() const;

    QString m_strClickNumber;
    mutable std::unique_ptr<LoadedFile> m_pLoadedFile;
    int m_iFileSectionCount = 0;
    QStringList m_LeadingLines;
    int m_iLastErrorLine = 0;
    // The text that loadTextBuffer() is cutting into sections, while it does, and the number
    // of body lines of the block it hands to loadSectionData().
    QString m_strTextBeingLoaded;
    int m_iBodyLines = 0;

    // While a load of bytes runs: its check, the name of what it reads, and the line breaks
    // trimmed off the front of the bytes; and the warnings of the section just made.
    CPLLoadCheck* m_pLoadCheck = nullptr;
    QString m_strLoadSource;
    int m_iLinesBefore = 0;
    QList<CPLLoadWarning> m_SectionWarnings;

    template<typename T>
    int getTyped(const QString& sectionKey, const QString& key, T* value) const;
    template<typename T>
    int setTyped(const QString& sectionKey, const QString& key, const T& value);
};

#endif // PLCLICKINFO_H
