#ifndef PLSEQUENCEINFO_H
#define PLSEQUENCEINFO_H

#include "PLClickInfo.h"
#include "ovparser_global.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <functional>

class CPLFileEditor;

// What CPLSequenceInfo::verify() found in a sequence folder. Each list is in sequence order
// (click numbers) or in name order (unlisted folders).
struct OVPARSER_EXPORT CPLSequenceCheck
{
    // Listed click numbers with no folder of that name in the sequence folder.
    QStringList missingFolders;
    // Listed click numbers whose folder is there but holds no "ClickInfo.txt".
    QStringList missingClickInfo;
    // Subfolders of the sequence folder that hold a "ClickInfo.txt" and that the sequence
    // does not list: acquisitions taken with the others but left out of the sequence.
    QStringList unlisted;

    // True when every listed acquisition is there and nothing is left out.
    bool isComplete() const
    {
        return missingFolders.isEmpty() && missingClickInfo.isEmpty() && unlisted.isEmpty();
    }
};

// A sequence of acquisitions, "SequenceInfo.txt": the clicks taken together as one
// experiment (the emission filters of a spectral series, the time points of a kinetic study),
// in their order. The file stands in a sequence folder that holds one folder per acquisition,
// named after its click number and holding its "ClickInfo.txt":
//
//     SQ20261106101500/
//         SequenceInfo.txt
//         SQ20261106101500_001/ClickInfo.txt
//         SQ20261106101500_002/ClickInfo.txt
//
// The file is a plain sectioned text file:
//
//     *** Sequence:<tab>SQ20261106101500
//     ClickNumbers in Sequence:<tab>2
//     ClickNumber 1:<tab>SQ20261106101500_001
//     ClickNumber 2:<tab>SQ20261106101500_002
//
//     *** User Input:<tab>Orvane Universal
//     User:<tab>Katrin Lenz
//     Experiment:<tab>EXP-0431 spectral series
//
//     *** User Label Name Set:<tab>Orvane Universal
//     User:<tab>
//     Experiment:<tab>
//
//     *** Restore Results:<tab>
//     Active Click:<tab>SQ20261106101500_002
//
// - "Sequence" (PLConstants::SEQUENCEINFO_KEY): its section name is the sequence ID. The
//   click numbers are the values of the keys "ClickNumber <n>", n a whole number from 1,
//   taken in the order of n (lines with the same n in file order); a line with an empty
//   value is skipped, an inline "# comment" is not part of the click number. Any other line
//   of the section (comments, keys of one's own) is kept. "ClickNumbers in Sequence" gives
//   the number of clicks for a person reading the file; it is written, not read. A sequence
//   with no clicks says so in the line "ClickNumbers:<tab>Empty Sequence".
// - "User Input": what the user entered for the sequence, one label per line, the section
//   named after its label set; "User Label Name Set": that set's labels, each with an empty
//   value, the section named after the set.
// - "Restore Results" (its name empty): what the application keeps to restore the results it
//   showed; its keys and values are the application's own.
//
// Load (load()) is the library's loader (CPLClickInfo::loadClickInfo()): a file written by
// hand may hold comments, CR LF or LF line ends, blank lines, repeated keys (a repeated
// "ClickNumber <n>" key lists its click once, with the value of its last line) and sections of
// its own, which are kept; what it holds that a save does not write back is in
// getLoadWarnings(). A file this class wrote, and any file that loads without warnings, saves
// back to the same bytes. A document loaded from a file keeps the file's bytes and edits them
// in place (CPLFileEditor), so that a save writes every other byte as it stood (CR LF line
// ends, blank lines, free text, comments): an edit of the click numbers changes only the count
// and the click lines ("ClickNumber <n>" lines whose n is still listed get their new click
// number, with any inline comment kept, and a line that holds its click already stays as it
// is; the others are removed; new ones are added at the end of the section); a user input
// value or a restore result changes its own line (a new restore result is added at the end of
// its section). A click line written twice is never edited (see moveClickNumber()). An edit
// the file's bytes cannot take in place (a label written twice, a new ID, a new user input with
// setUserInput(), the document made with createFromAcquisitions() or changed through the
// CPLClickInfo functions) makes the next save write the whole file in the form shown above: the
// sequence section with the count, the click lines numbered from 1 in order (inline comments of the
// old click lines not kept), then the section's other lines as they were; a line that would no
// longer read as it did (a key beginning with "***", which a load warns of) is kept as a comment. A
// save over the file loaded has the checks of CPLClickInfo::saveClickInfo(): it refuses to
// overwrite a change made to the file since (PL_FILE_CHANGED), and, when it writes the whole file,
// to drop what the load did not take in (PL_LOAD_INCOMPLETE: a click line repeated with another
// value, say).
//
// Click numbers are matched exactly, as folder names are. A click number, ID, label or value
// must stand in its line as given (no line break, no "#", no blanks at either end, Latin-1;
// a click number, label or ID no colon): 31 otherwise. Operations return a status from
// PLStatus.h and write their results only on success; a failed edit changes nothing.
class OVPARSER_EXPORT CPLSequenceInfo : public CPLClickInfo
{
public:
    CPLSequenceInfo();
    ~CPLSequenceInfo() override;

    // Loads "SequenceInfo.txt" from `path`, a sequence folder, or the file itself. The
    // document is cleared first. Returns the status of loadClickInfo() (11 for a folder
    // without the file, 5, 33, 63, 64, 65).
    int load(const QString& path);
    // Saves the document to `path`, a sequence folder (into its "SequenceInfo.txt") or a
    // file, with the library's save (saveClickInfo(): its statuses 11, 31, 64, 65, 66).
    int save(const QString& path) const;
    // The file that load() and save() use for `path`: `path`/SequenceInfo.txt for a folder,
    // `path` otherwise.
    static QString sequenceFilePath(const QString& path);

    // The sequence ID, the name of the "Sequence" section. 16 for a null pointer, 49 without
    // a sequence section.
    int getSequenceID(QString* sequenceID) const;
    // Names the sequence; adds the sequence section (with no clicks, after the sections
    // present) when there is none. 19 for an empty ID, 31 for one that cannot stand in the
    // header (a colon is allowed in a name, a "#" or line break is not).
    int setSequenceID(const QString& sequenceID);

    // The click numbers in order. 16 for a null pointer, 49 without a sequence section.
    int getClickNumbers(QStringList* clickNumbers) const;
    // The number of click numbers; 0 without a sequence section.
    int getClickNumberCount() const;
    // The position (from 0) of a click number. 16 for a null pointer, 19 for an empty click
    // number, 24 when the sequence does not list it (49 without a sequence section).
    int findClickNumber(const QString& clickNumber, int* position) const;
    // Inserts a click number at `position` (0 to the count; -1 for the end). 49 without a
    // sequence section (setSequenceID() first), 19 for an empty click number, 31 for one that
    // cannot stand as a value or folder name (a colon, "/", "#", a line break, outer blanks),
    // 70 when the sequence lists it already, 48 for a position outside the list.
    int addClickNumber(const QString& clickNumber, int position = -1);
    // Removes a click number. 19 for an empty one, 24 when not listed, 49 without a section.
    // A click number that a file written by hand lists twice is removed where it stands first
    // (its lowest n); the other stays.
    int removeClickNumber(const QString& clickNumber);
    // Moves the click number at `from` to `to` (both from 0, below the count): the others
    // keep their order. 48 for a position outside the list, 49 without a sequence section.
    //
    // The three edits of the click numbers return 67 (PL_KEY_REPEATED), nothing changed,
    // while the sequence section holds a click line twice ("ClickNumber 2" on two lines of a
    // file written by hand): an edit would keep only one of them. The message, in the
    // category "ovparser.save", names both lines; the file must be mended by hand.
    int moveClickNumber(int from, int to);

    // What the user entered: the labels of "User Input" and their values, in order.
    // 16 for a null pointer, 49 without a "User Input" section.
    int getUserInput(QList<QPair<QString, QString>>* labelsAndValues) const;
    // One label's value. 16, 49, 24 when the section has no such label.
    int getUserInputValue(const QString& label, QString* value) const;
    // Changes one label's value (never adds a label). 49, 24 for a label not in the section,
    // 31 for a value that cannot stand in its line.
    int setUserInputValue(const QString& label, const QString& value);
    // Replaces the user input and its label set: "User Input" named `labelSetName` with the
    // labels and values given, and "User Label Name Set" of that name with the labels. Each
    // section keeps its place; a new one goes at the end. 19 for an empty set name or label,
    // 31 for text that cannot stand in its line or a label given twice (in any case).
    int setUserInput(const QString& labelSetName,
                     const QList<QPair<QString, QString>>& labelsAndValues);
    // The label set: its name (the name of "User Label Name Set"; without that section, the
    // name of "User Input", which is named after its label set) and its labels in order.
    // 16 for a null pointer, 49 without either section (the labels: without the first).
    int getLabelSetName(QString* labelSetName) const;
    int getLabelSetLabels(QStringList* labels) const;

    // The keys of "Restore Results" in order; none without the section.
    QStringList getRestoreResultKeys() const;
    // One restore result. 16 for a null pointer, 49 without the section, 24 without the key.
    int getRestoreResult(const QString& key, QString* value) const;
    // Sets a restore result, adding the key (and the section, with its empty name, at the
    // end) when absent. 19 for an empty key, 31 for a key or value that cannot stand in its
    // line.
    int setRestoreResult(const QString& key, const QString& value);
    // Removes a restore result. 49 without the section, 24 without the key.
    int removeRestoreResult(const QString& key);

    // Checks the sequence against `folder`, the sequence folder: each listed click's folder
    // `folder`/<click number> and its "ClickInfo.txt", and the subfolders holding a
    // "ClickInfo.txt" that the sequence does not list. 16 for a null result, 62 when the
    // folder does not exist, 49 without a sequence section; `check` then is unchanged.
    int verify(const QString& folder, CPLSequenceCheck* check) const;

    // Makes this document the sequence of the acquisitions in `acquisitionFolders`, in that
    // order: each folder's "ClickInfo.txt" gives its click number. The user input is a copy
    // of the first acquisition's "User Input" section (its labels and values), and the label
    // set is named after that section's name and holds its labels; when the first
    // acquisition has no "User Input", the sequence has none either. The sequence ID is
    // `sequenceID`, or when that is empty the first click number up to its last "_"
    // ("SQ20261106101500" of "SQ20261106101500_001"; the whole click number without "_").
    // The document ends with an empty "Restore Results" section. Returns 33 for no folders;
    // the load status of a ClickInfo.txt that does not load (11, 5, 33...); 71 when a folder
    // is not named after the click number its ClickInfo.txt holds (verify() would not find
    // it); 70 for a click number given twice; 31 for a click number or ID that cannot stand
    // in the file. `failedFolder`, when given, is set to the folder a failure is about. On
    // failure the document is unchanged.
    int createFromAcquisitions(const QStringList& acquisitionFolders,
                               const QString& sequenceID = QString(),
                               QString* failedFolder = nullptr);

    // The default sequence ID for a first click number: the text before its last "_", or the
    // whole click number when it has none or the "_" comes first.
    static QString defaultSequenceID(const QString& firstClickNumber);

    // Empties the document and forgets the file's bytes.
    void clearData() override;

private:
    // Writes the sequence section again with these click numbers, keeping its other lines.
    void rewriteClickNumbers(const QStringList& clickNumbers);
    // Makes these the click numbers: in the file's bytes where they are kept and can take the
    // edit, else by rewriting the section. PL_KEY_REPEATED, nothing changed, while the section
    // holds a click line twice (see repeatedClickLine()).
    int setClickNumbers(const QStringList& clickNumbers);
    // A click line ("ClickNumber <n>", the count or the empty-sequence line) that the sequence
    // section holds on more than one line, in words naming its lines where the load saw them;
    // empty when there is none.
    QString repeatedClickLine() const;
    // Runs `edit` on the file's bytes kept (CPLFileEditor) and takes what they load as then.
    // Returns the editor's status; PL_NOTHING_TO_WORK_ON when no bytes are kept. Nothing
    // changes on failure.
    int editKeptBytes(const std::function<int(CPLFileEditor&)>& edit);
    // Whether a failed edit of the kept bytes is one that the sections can still take (the
    // next save then writes the whole file): the bytes are not kept, or the editor refused a
    // line it cannot edit alone (a repeated key).
    static bool canEditSectionsInstead(int editStatus);
    void dropKeptBytes();

    // The file's bytes, as edited in place since the load, while m_bKeepsBytes; the text of
    // the sections they loaded as, to tell a change made through CPLClickInfo.
    QByteArray m_KeptBytes;
    QString m_strKeptText;
    QString m_strKeptPath;
    bool m_bKeepsBytes = false;
};

#endif // PLSEQUENCEINFO_H
