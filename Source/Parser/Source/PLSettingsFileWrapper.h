#ifndef PLSETTINGSFILEWRAPPER_H
#define PLSETTINGSFILEWRAPPER_H

#include "PLClickInfo.h"
#include "ovparser_global.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

class CPLSection;

// A user's named settings entries (saved analysis or ROI settings, say) as a menu offers them.
// An entry has a menu name, what the user sees, and may point to a file. Two ways to keep them:
//
// - file mode (LM_FILE, the default): every entry is a section of one sectioned text file,
//   with its menu name under the menu-name key ("MenuName") and its file under the file-name
//   key ("FileName"), or, when section names are used as menu names, its section name as menu
//   name:
//
//       *** ROI File 1:<tab>
//       MenuName:<tab>Kidney left
//       FileName:<tab>kidney-left.xml
//
//   Only sections whose key contains the section-name tag ("ROI File", say) belong to the
//   wrapper; with an empty tag every section does. New sections are named after the tag: the
//   tag, a blank and the first free number ("ROI File 3").
// - folder mode (LM_FOLDER): every file of a folder whose extension is "txt", in any case, is
//   one entry; its menu name comes from the file name. The folder is read at every query.
//
// A required key name left empty (the menu-name key, say) is a programming error and stops the
// program. Operations return a status from PLStatus.h and write results only on success.
class OVPARSER_EXPORT CPLSettingsFileWrapper : public CPLClickInfo
{
public:
    // 32 bits wide; a value other than these two loads nothing and lists nothing.
    enum LOAD_MODE : qint32 { LM_FOLDER = 0, LM_FILE = 1 };

    CPLSettingsFileWrapper();
    explicit CPLSettingsFileWrapper(const QString& sectionNameTag);
    CPLSettingsFileWrapper(const QString& sectionNameTag, const QString& autoMenuNameTag);
    ~CPLSettingsFileWrapper() override;

    // The section-name tag and the folder path are stored also when empty; the other setters
    // ignore an empty argument.
    void setSectionNameTag(const QString& tag);
    void setSettingsFileName(const QString& fileName);
    void setMenuNameTag(const QString& tag);
    void setFileNameTag(const QString& tag);
    void setAutoMenuNameTag(const QString& tag);
    void setUseSectionNameForMenuName(bool use);
    void setFolderPath(const QString& folderPath);
    void setLoadMode(LOAD_MODE mode);
    const QString& getSectionNameTag() const;
    const QString& getMenuNameTag() const;
    const QString& getFileNameTag() const;
    const QString& getAutoMenuNameTag() const;
    const QString& getSettingsFileName() const;
    bool isUsingSectionNameForMenuName() const;
    QString getFolderPath() const;
    LOAD_MODE getLoadMode() const;

    // load(getSettingsFileName()).
    int load();
    // File mode: loads the file (loadClickInfo()) and, on success, remembers its name; 19 for
    // an empty name, else the load's status. Folder mode: checks the folder, reading nothing;
    // 19 for an empty folder path, 62 when the folder does not exist. Any other mode: 0.
    int load(const QString& fileName);
    // save(getSettingsFileName()).
    int save();
    // Saves the sections (saveClickInfo()) in any mode, without remembering the name. 19 for
    // an empty name.
    int save(const QString& fileName);

    // The wrapper's sections in order: those whose key contains the section-name tag (case
    // matters; every section when the tag is empty) and, with a filter, also the filter.
    QList<CPLSection*> getSections();
    QList<CPLSection*> getSections(const QString& filter);

    // The menu names of getSections() that are not blank, whatever the mode.
    QStringList getMenuNames();
    // Folder mode: the file names (sorted by name) that begin with `filter` (case matters)
    // and have the extension "txt" in any case, without the extension and without the
    // filter's length of characters at the front: "Custom-Alpha.TXT" with filter "Custom"
    // gives "-Alpha". File mode: the menu names of getSections(filter) that are not blank.
    // Any other mode, or a missing folder: none.
    QStringList getMenuNames(const QString& filter);
    // The entries getMenuNames(filter) lists, each with its file: in folder mode the file's
    // name in the folder, in file mode the value under the file-name key (empty without one).
    QList<QPair<QString, QString>> getMenuEntries(const QString& filter);

    // The file of an entry, or an empty string. Folder mode: the first file (sorted by name)
    // whose name contains `filter` anywhere (unlike getMenuNames(), where it is a prefix),
    // has the extension "txt" in any case, and whose name without the extension, from after
    // its first "-" on (whole when it has none), equals `menuName` in any case; the result is
    // the folder's last path component, "/" and the file name: "Presets/A-Mine.txt". File
    // mode (the filter is not used): the value under the file-name key of the first section
    // of getSections() that has one and whose menu name equals `menuName` in any case.
    QString getFileNameForMenuName(const QString& menuName, QString filter);
    // Sets the file-name value of every section whose menu name equals `menuName` in any
    // case. 33 when the wrapper has no sections, 24 when none matched, else the status of the
    // last change (24 for a section without a file-name key).
    int setFileNameForMenuName(const QString& menuName, const QString& fileName);
    // Whether no section has this menu name, in any case.
    bool isUnique(const QString& menuName);
    // The first section of getSections() with this menu name: in any case when section names
    // are menu names, else exactly as stored. Null when none.
    CPLSection* getSectionByMenuName(const QString& menuName);

    // The next free section name for the section-name tag, which must not be empty.
    QString getNextAvailableSectionName();
    // The next free section name for `base` among getSections(base).
    QString getNextAvailableSectionName(const QString& base);
    // `base`, a blank and the first missing number of the sections' keys: for each key that
    // contains `base` (case matters), the text one character after it read as a decimal
    // number. The numbers are walked in ascending order from 1: the first that is not one
    // more than the one before it gives that, else the last plus one. ROI File 1, 2 and 4 give
    // "ROI File 3"; none gives "ROI File 1"; 1, 1, 2 give 2 (equal neighbours are not skipped).
    QString getNextAvailableSectionName_core(QList<CPLSection*>& sections, const QString& base);
    // The next free automatic menu name among getSections() or getSections(filter).
    QString getNextAutoMenuName();
    QString getNextAutoMenuName(const QString& filter);
    // The auto-menu-name tag directly followed by the first free number: for each menu name
    // (a section name here read without its inline comment) that contains the tag, the text
    // right after it read as a decimal number. 1 when 1 is not taken, else the first number
    // after a taken one that is not taken itself: "Setting1", "Setting2" give "Setting3". The
    // menu-name and auto-menu-name tags must not be empty.
    QString getNextAutoMenuName_core(QList<CPLSection*>& sections);

    // A new section with the menu name; it has no key, so addSection(CPLSection*) gives it the
    // next available section name. The section-name tag and menu-name key must not be empty.
    int addSection(const QString& menuName);
    // A new section named getNextAvailableSectionName(base) with the menu name (as section
    // name when section names are menu names, else under the menu-name key).
    int addSection(const QString& sectionNameBase, const QString& menuName);
    // The same, always with both the menu-name and the file-name keys.
    int addSection(const QString& sectionNameBase, const QString& menuName,
                   const QString& fileName);
    // Adds a section as CPLClickInfo does; a section without a key first gets the next
    // available section name, when the section-name tag is set.
    int addSection(CPLSection* section) override;
    // Removing entries is not supported: always 31, nothing is deleted.
    int deleteSection(const QString& sectionKey);
    int deleteSection(int position);

    // Adds a copy of each section of the list, in order (existing sections stay). Stops at
    // the first failure with its status (16 for a null entry).
    int initFromSections(QList<CPLSection*>& sections);
    // The same for the sections whose key contains "ROI File", in any case.
    int initFromROISections(QList<CPLSection*>& sections);

private:
    // A section's menu name; false when it has none. `rawName` keeps the inline comment of a
    // section name used as menu name.
    bool menuNameOf(const CPLSection* section, bool rawName, QString* menuName) const;
    // The sections whose menu name equals `menuName` in any case.
    QList<CPLSection*> sectionsWithMenuName(const QString& menuName);
    // The same among `sections`.
    QList<CPLSection*> sectionsWithMenuName(QList<CPLSection*> sections,
                                            const QString& menuName) const;
    // The file names of the folder that have the extension "txt" in any case, sorted by name;
    // none when the folder does not exist.
    QStringList textFilesOfFolder() const;
    // The entries of getMenuEntries() in folder and in file mode.
    QList<QPair<QString, QString>> folderEntries(const QString& filter) const;
    QList<QPair<QString, QString>> sectionEntries(const QString& filter);
    static QStringList menuNamesOf(const QList<QPair<QString, QString>>& entries);
    int copySections(const QList<CPLSection*>& sections, bool roiOnly);

    QString m_strSectionNameTag;
    QString m_strSettingsFileName;
    QString m_strMenuNameTag;
    QString m_strFileNameTag;
    QString m_strAutoMenuNameTag;
    LOAD_MODE m_eLoadMode = LM_FILE;
    QString m_strFolderPath;
    bool m_bUseSectionNameForMenuName = false;
};

#endif // PLSETTINGSFILEWRAPPER_H
