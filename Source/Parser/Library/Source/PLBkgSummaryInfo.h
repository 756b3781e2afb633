#ifndef PLBKGSUMMARYINFO_H
#define PLBKGSUMMARYINFO_H

#include "PLClickInfo.h"
#include "ovparser_global.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

class CPLSection;

// How far, in degrees Celsius, the CCD temperature of a stored background may lie from the
// acquisition's for the background to fit it, when the caller gives no tolerance.
constexpr double PL_BKG_TEMPERATURE_TOLERANCE = 2.0;

// One stored background: the settings it fits and where its image lies. The numbers are read
// from the text of the summary; text that is not a number makes the entry unusable (see
// CPLBkgSummaryInfo).
struct OVPARSER_EXPORT sBkgEntry
{
    QString m_strId; // the entry ID: the section key, also the name of its folder
    bool m_bFluorescent = false; // "Image Subtype": "fluorescent", else "luminescent"
    int m_iBinning = 0; // "Binning Factor", above 0
    double m_dExposure = 0.0; // "Luminescent Exposure (Seconds)", 0 or more
    double m_dFNumber = 0.0; // "f Number"; 0 when the entry has none
    QString m_strFieldOfView; // "Field of View", as written ("C", "12.5")
    double m_dTemperature = 0.0; // "Measured Temperature", degrees Celsius
    // "Acquisition Seconds" (whole seconds since 1904); invalid when the entry has none.
    QDateTime m_Acquired;
    QString m_strPathName; // "PathName": the folder of the background, from the library
    QString m_strFileName; // "FileName": its image in that folder, "background.tif"

    bool operator==(const sBkgEntry& other) const;
    bool operator!=(const sBkgEntry& other) const { return !(*this == other); }
};

// The instrument's library of dark backgrounds, the images that luminescent and fluorescent
// acquisitions are corrected with. The library is a folder, the instrument's "Background"
// folder (getOVPath(OV_PATH_BACKGROUND_LIBRARY)), that holds
//
//     BkgSummary.txt        every stored background, one section each (this document)
//     SLindex.txt           the luminescent entries, one line each
//     FLindex.txt           the fluorescent entries, one line each
//     SL0001/BkgInfo.txt    one folder per background: the entry's section again,
//     SL0001/background.tif  and the image
//
// BkgSummary.txt holds one section per entry; its section key is the entry ID (which also
// names the entry's folder) and its name repeats it. The keys are those of an acquisition's
// image section where they mean the same:
//
//     *** SL0001:<tab>SL0001
//     Image Subtype:<tab>luminescent                  ("luminescent" or "fluorescent")
//     Binning Factor:<tab>4
//     Luminescent Exposure (Seconds):<tab>60           (the exposure the background covers)
//     f Number:<tab>1
//     Field of View:<tab>C
//     Measured Temperature:<tab>-90                    (the CCD, degrees Celsius)
//     Acquisition Date:<tab>Sunday, November 1, 2026
//     Acquisition Time:<tab>08:00:00
//     Acquisition Seconds:<tab>3876278400              (whole seconds since 1904)
//     PathName:<tab>SL0001
//     FileName:<tab>background.tif
//
// A section is a usable entry when it has an image subtype of those two words (in any case),
// a whole binning factor above 0, an exposure of 0 or more, a field of view and a
// temperature; the f-number, date, time, seconds and file are optional (without "PathName"
// and "FileName" the image is "background.tif" in the folder named after the ID, as addEntry()
// writes it). Any other section (a hand-written note, an entry with a number that does not
// read) is kept and saved as it stands, but not listed, matched or indexed; the load says so
// in getLibraryWarnings(). So is a section that repeats the ID of a section before it (a
// note about that entry, say): it is kept where it stood and saved back there, and the
// library warning names its line and the entry's ("FILE:LINE: section "SL0001" repeats the
// ID of the entry on line 2; ..."); getSectionKeys() lists it under "<ID>\n<line>", a key no
// file can hold, and removeEntry() removes it with the entry.
// Comments, CR LF line ends and repeated keys load as in any sectioned document, with their
// load warnings (getLoadWarnings()).
//
// Each index holds one section, "Background Index", named after its family, with one line
// per entry of that family in the summary's order, the entry ID and its image, from the
// library folder:
//
//     *** Background Index:<tab>luminescent
//     SL0001:<tab>SL0001/background.tif
//     SL0002:<tab>SL0002/background.tif
//
// The summary is the authority; the indexes are derived from it. save() writes the summary
// and rewrites both indexes, all three or none; load() reads the summary and compares each index with what the
// summary gives: an index that is missing, does not load, lists an entry the summary does
// not hold (or holds in the other family), lacks one, gives another image or another order
// is reported in getLibraryWarnings(), one line per disagreement, and the load still
// succeeds. Saving the library puts the indexes right.
//
// Finding the background for an acquisition (findBackground()): the acquisition's
// "luminescent image" section gives the family ("Image Subtype" "fluorescent", else
// luminescent), the binning, the field of view (compared as numbers when both read as
// numbers, else as text in any case), the exposure and the CCD temperature ("Measured
// Temperature", else "Demand Temperature"; with neither, temperature is not checked). A
// usable entry fits when its family, binning and field of view are the same, its exposure
// is not shorter than the acquisition's and its temperature lies within the tolerance
// (inclusive). Of the entries that fit, the one with the shortest exposure is chosen; among
// equal exposures the newest (an entry without a date is older than any with one), and then
// the first in the summary. The f-number is not compared: a dark background is taken with
// the shutter closed. When nothing fits, the reason names the last test that some entry
// passed:
//
//     no fluorescent background in the library
//     no luminescent background with binning 8
//     no luminescent background with binning 4 and field of view B
//     no exposure >= 120 s for binning 4 field of view C (the longest is 60 s)
//     temperature -70.0 C differs by more than 2.0 C from every candidate (closest -90.0 C)
//
// One pass over the entries: matching N entries takes time in proportion to N.
//
// Operations return a status from PLStatus.h and write results only on success (the reason
// of findBackground() is written on failure). Loading and saving the summary are those of
// CPLClickInfo: a summary the library wrote loads and saves back to the same bytes.
class OVPARSER_EXPORT CPLBkgSummaryInfo : public CPLClickInfo
{
public:
    enum Family { Luminescent, Fluorescent };

    CPLBkgSummaryInfo();
    ~CPLBkgSummaryInfo() override;

    // Loads the library in `folder`: the summary (the document is cleared first), then both
    // indexes, compared with it. Returns 16 for an empty path, 62 when the folder does not
    // exist, else the status of loading BkgSummary.txt (11 when it is missing); index
    // disagreements do not fail the load.
    int load(const QString& folder);
    // Writes BkgSummary.txt, SLindex.txt and FLindex.txt into `folder`, all or nothing: the
    // three are locked and written first, and only then put in place; on any failure every
    // file is left byte for byte as it was, and the status of the first failure is returned
    // (those of saveClickInfo()). 16 for an empty path, 62 when the folder does not exist.
    int save(const QString& folder) const;

    // The summary alone, as a file: loadClickInfo() after clearing the document, then the
    // check of its sections (getLibraryWarnings()); saveClickInfo().
    int loadSummary(const QString& filePath);
    int saveSummary(const QString& filePath) const;

    // The text of the index of `family` as save() writes it.
    QString getIndexData(Family family) const;
    // Writes the index of `family` to `filePath`; the status of saveClickInfo().
    int saveIndex(Family family, const QString& filePath) const;
    // Compares the index file at `filePath` with what the summary gives for `family`, and
    // appends one line per disagreement to `disagreements`. 16 for a null pointer; 0 when
    // the comparison was made, a missing or unreadable index being one disagreement.
    int checkIndex(Family family, const QString& filePath, QStringList* disagreements) const;

    // What the last load found about the library beyond the line grammar: sections that
    // are not usable entries ("FILE:LINE: section "KEY": not a background entry: ...") and
    // index disagreements ("FOLDER/SLindex.txt: ..."). Empty after a clean load.
    QStringList getLibraryWarnings() const;

    // Every usable entry, in the summary's order. 16 for a null pointer.
    int getEntries(QList<sBkgEntry>* entries) const;
    // The usable entry with this ID (in any case). 16 for a null pointer, 24 when there is
    // none, 31 when the section is there but is not a usable entry.
    int getEntry(const QString& id, sBkgEntry* entry) const;

    // Adds an entry at the end of the summary. An empty ID is replaced by the next free one
    // of its family, "SL" or "FL" and four digits ("SL0007" after "SL0006"); an empty
    // PathName by the ID, an empty FileName by "background.tif". The date and time are
    // written as `m_Acquired` shows them in its own time zone; an invalid date writes no
    // date keys. Numbers are written in plain decimal ("60", "0.5", "-90"). `id`, when not
    // null, receives the ID used. Returns 19 for an empty field of view; 48 for a binning
    // below 1, a negative exposure or f-number, or a number that is not finite; 31 for an ID,
    // field of view, path or file name that cannot stand in the file as given
    // (CPLSection::textFault(), a "/" or ".." in the ID), or an ID already present. Nothing
    // is changed on failure.
    int addEntry(const sBkgEntry& entry, QString* id = nullptr);
    // Removes the section with this ID, and the sections that repeat the ID (the background's
    // folder is left on disk). 19 for an empty ID, 24 when there is none.
    int removeEntry(const QString& id);

    // The background for the acquisition described by `acquisition`'s "luminescent image"
    // section, or by `imageSection` itself (see the class comment for the rule). `tolerance`
    // is in degrees Celsius. Returns 0 and the entry; 73 when no entry fits; 49 when the
    // acquisition has no luminescent image section; 24 when the image section lacks the
    // binning, exposure or field of view; 31 when one of them does not read as a number of
    // its kind; 48 for a negative or non-finite tolerance; 16 for a null entry pointer. On
    // 73, 49, 24 and 31, `reason` (when not null) receives why, as one phrase.
    int findBackground(const CPLClickInfo& acquisition, sBkgEntry* entry, QString* reason = nullptr,
                       double tolerance = PL_BKG_TEMPERATURE_TOLERANCE) const;
    int findBackground(const CPLSection& imageSection, sBkgEntry* entry, QString* reason = nullptr,
                       double tolerance = PL_BKG_TEMPERATURE_TOLERANCE) const;

    // The usable entries taken more than `days` whole days before `reference` (an entry
    // exactly `days` days old is not listed), and every entry without a date, oldest first
    // (those without a date first, then in the summary's order among equals). 16 for a null
    // pointer, 48 for a negative number of days, 31 for an invalid reference.
    int getEntriesOlderThan(int days, const QDateTime& reference, QList<sBkgEntry>* entries) const;

    // Writes "BkgInfo.txt" into the entry's folder (its PathName) under `libraryFolder`,
    // making the folder when missing: the entry's section as the summary holds it, its
    // comments and inline comments included. 24 when there is no
    // usable entry of this ID, 11 when the folder cannot be made, else the status of the save.
    int saveBkgInfo(const QString& libraryFolder, const QString& id) const;
    // Reads a "BkgInfo.txt": its first section as an entry. 16 for a null pointer, the load
    // status of the file, 33 when it holds no section, 31 when that section is not a usable
    // entry.
    static int loadBkgInfo(const QString& filePath, sBkgEntry* entry);

    void clearData() override;

private:
    // Checks every section after a load, notes those that are not usable entries, and
    // returns the usable ones (what getEntries() gives), so that a load reads each once.
    QList<sBkgEntry> checkSections();
    // Notes in the library warnings every section that a load kept apart because an earlier
    // section has its ID (CPLSectionedDocument::KeepApart).
    void noteRepeatedSections();
    // Whether the section kept under `mapKey` repeats an earlier section's ID.
    static bool isRepeat(const QString& mapKey, const CPLSection& section);
    // Calls `take` with each usable entry, in the summary's order; a section that repeats an
    // earlier section's ID is none.
    template<typename Take> void forEachEntry(Take take) const;
    // checkIndex() against the usable entries already read.
    void compareIndex(Family family, const QString& filePath, const QList<sBkgEntry>& entries,
                      QStringList* disagreements) const;
    QString indexPath(const QString& folder, Family family) const;
    // Gives an empty document the index section of `family`, from the usable entries.
    static void buildIndex(Family family, const QList<sBkgEntry>& entries, CPLClickInfo* index);

    QStringList m_LibraryWarnings;
};

#endif // PLBKGSUMMARYINFO_H
