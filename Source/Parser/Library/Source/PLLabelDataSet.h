#ifndef PLLABELDATASET_H
#define PLLABELDATASET_H

#include "PLClickInfo.h"
#include "ovparser_global.h"

#include <QString>
#include <QStringList>

class CPLSection;

// The set name to write for `setName`: the old name of the default set, "Morvex Universal",
// becomes the current one, "Orvane Universal"; every other name is returned as it is.
OVPARSER_EXPORT QString updateLabelSetName(const QString& setName);

// The user's label-name sets, "UserLabelNames.txt": named lists of the labels that a user
// fills in for each acquisition ("User", "Group", "Experiment", ...). Each set is one section
// whose header names the set and whose lines are its labels, in order, each a key with an
// empty value:
//
//     *** User Label Name Set:<tab>Experiment
//     Subject:<tab>
//     View:<tab>
//
// All sets share the section key "User Label Name Set" and differ by section name, the set
// name. Set names are matched in any case; when the file holds two sets of the same name, the
// first one is kept. A set named "Morvex Universal", the old name of the default set, is read
// as "Orvane Universal" and saved under that name. Other sections of the file are loaded and
// saved as any sectioned document does.
//
// One set is chosen at a time; getLabelName(), getLabelData(), getCount() and operator[]
// answer for it. The default set, "Orvane Universal", is chosen first. It is always
// available: when the document holds no set of that name, it has the sixteen labels of
// PLConstants::strUserLabelSetKeys.
//
// Loading and saving are those of CPLClickInfo (loadClickInfo(), saveClickInfo()): a file the
// library wrote loads and saves back to the same bytes. Operations return a status from
// PLStatus.h and write results only on success.
class OVPARSER_EXPORT CPLLabelDataSet : public CPLClickInfo
{
public:
    CPLLabelDataSet();
    ~CPLLabelDataSet() override;

    // Loads the file (loadClickInfo()); the chosen set stays chosen.
    int load(const QString& filePath);
    // Saves the document (saveClickInfo()).
    int save(const QString& filePath) const;

    // The names of the sets the document holds, in file order.
    QStringList getLabelSetNames() const;
    // Whether a set of this name (in any case, after updateLabelSetName()) is available: held
    // by the document, or the default set.
    bool hasLabelSet(const QString& setName) const;
    // Chooses the set of this name (in any case; an old default name is mapped). 19 for an
    // empty name, 24 when no such set is available; the choice is then unchanged.
    int selectLabelSet(const QString& setName);

    // Adds a set at the end, or replaces the labels of the set of that name. 19 for an empty
    // name or label, 31 for a name or label that cannot stand in the file as given (a line
    // break, a character outside Latin-1, surrounding white space, a "#"; a label is a key
    // and also must not hold a colon: CPLSection::textFault()), or for a label given twice.
    // Nothing is changed on failure.
    int addLabelSet(const QString& setName, const QStringList& labels);
    // Removes the set of this name; 24 when the document holds none.
    int removeLabelSet(const QString& setName);

    // The chosen set's name, as written in the file. 16 for a null pointer.
    int getLabelName(QString* setName) const;
    // The chosen set's labels in order. 16 for a null pointer, 24 when the chosen set is no
    // longer held (it was removed, or the document cleared).
    int getLabelData(QStringList* labels) const;
    // The number of labels of the chosen set; 0 when it is not held.
    int getCount() const;
    // The label at `position` of the chosen set, or a null string outside it.
    QString operator[](int position) const;
    using CPLClickInfo::operator[];

    // Loads a set's section under a key of its own, so that sets sharing the section key are
    // all kept: the document holds it under "User Label Name Set:<set name>" (what
    // getSectionKeys() lists and operator[](QString) finds), and writes it with its own
    // header. Other sections load as in CPLClickInfo.
    int loadSectionData(const QString& text, const QString& sectionKey) override;

private:
    // The section of the set of this name, or null.
    CPLSection* setSection(const QString& setName) const;
    // Registers a set's section (its key USERLABELSET_SECTION_KEY) under its set name, and
    // returns it.
    CPLSection* insertSet(std::unique_ptr<CPLSection> section, const QString& setName);

    QString m_strChosenSet;
};

#endif // PLLABELDATASET_H
