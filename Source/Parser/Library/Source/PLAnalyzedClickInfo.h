#ifndef PLANALYZEDCLICKINFO_H
#define PLANALYZEDCLICKINFO_H

#include "PLClickInfo.h"
#include "ovparser_global.h"

#include <QString>

// The analysis results of one click, "AnalyzedClickInfo.txt": what analysis made the click's
// images (image math on two acquisitions, a kinetic accumulation, a spectral unmixing, the
// analysis of a single click) and how its images were corrected. The file stands in the
// result's folder, beside or instead of a "ClickInfo.txt", and has the same sectioned form:
//
//     *** ClickNumber:<tab>KL20261105101544_001_IM01
//     ClickInfoType:<tab>ImageMath
//     Acquired From File:<tab>No
//     Modified Since Saved:<tab>No
//
//     *** Analysis Results:<tab>
//     Folder On Disk:<tab>KL20261105101544_001_IM01
//     Image Math Operation:<tab>A-k*B
//     Image Math k:<tab>0.85
//     Image Math A ClickNumber:<tab>KL20261105101544_001
//     Image Math B ClickNumber:<tab>KL20261104142207_001
//     Image Math Photo ClickNumber:<tab>KL20261105101544_001
//     Background Click:<tab>BK20261101080000_001
//     Saturated:<tab>No
//     Background Corrected:<tab>Yes
//
// The click's kind is the "ClickInfoType" of its "ClickNumber" section; every analysis key
// stands in the "Analysis Results" section, in the order the setters first wrote them. The
// analysis keys have their own section so that CPLClickInfo::loadAnalyzedClickInfo(), which
// adds to an acquisition's ClickInfo the sections it lacks, brings them all (the acquisition's
// own "ClickNumber" section stays, with its "ClickInfoType").
//
// What each value is:
// - the kinds (ClickInfoType): "RawData" (an acquired click), "SingleClickAnalysis",
//   "ImageMath", "Kinetic", "SpectralUnmix"; any other text reads as Kind::Other;
// - the image-math operation is the formula as the user chose it, text on the operands A and
//   B and the factor k ("A-B", "A/B", "A-k*B"); k is a real number; the A, B and photograph
//   operands are click numbers;
// - the kinetic operation is "Accumulated" or "SingleClick", the kinetic click number the
//   click the kinetic series was read from;
// - the unmixing dataset is the sequence ID of the spectral sequence unmixed, the concentration
//   name the unmixed component this click's image shows ("Tumor", "Autofluorescence");
// - the background click is the click number of the dark background subtracted, the folder
//   on disk the folder the result was saved in (a name, or a path relative to the sequence);
// - the correction flags are written "Yes" or "No" and read as "Yes"/"No", "1"/"0",
//   "True"/"False" or "On"/"Off", in any case.
//
// Statuses: 0; 16 for a null result pointer; 49 when the section of a value is absent (no
// "ClickNumber" section for the kind, no "Analysis Results" section); 24 when the key is
// absent; 31 for a value whose text is no value of its type (a k of "high", a flag "maybe",
// a kinetic operation "Sum"), for a kind or operation outside the enums, and for text that
// cannot stand in the file (CPLSection::breaksFile()); 33 for an empty click number. A setter
// adds its key, and the "Analysis Results" section, when absent. Loading and saving are
// CPLClickInfo's: a file the library wrote loads and saves back to the same bytes.
class OVPARSER_EXPORT CPLAnalyzedClickInfo : public CPLClickInfo
{
public:
    enum class Kind { RawData, SingleClickAnalysis, ImageMath, Kinetic, SpectralUnmix, Other };
    enum class KineticOperation { Accumulated, SingleClick };
    enum class Correction {
        Saturated,
        CcdCorrected,
        BackgroundCorrected,
        FlatFieldCorrected,
        Rotated
    };

    struct ImageMath
    {
        QString operation;
        double k = 1.0;
        QString aClickNumber;
        QString bClickNumber;
        QString photoClickNumber;
    };

    // The section of the analysis keys: "Analysis Results".
    static const QString ANALYSIS_SECTION_KEY;

    CPLAnalyzedClickInfo();
    ~CPLAnalyzedClickInfo() override;

    // The kind's text as "ClickInfoType" holds it, and back (Other for any other text, and
    // for Kind::Other an empty text).
    static QString kindText(Kind kind);
    static Kind kindFromText(const QString& text);

    // Loads "AnalyzedClickInfo.txt" from an acquisition folder, or the file at `path`, as
    // loadClickInfo() does (the document is cleared first). 19 for an empty path.
    int load(const QString& path);
    // Saves to `path`, a folder (into its "AnalyzedClickInfo.txt") or a file, with
    // saveClickInfo(). 19 for an empty path.
    int save(const QString& path) const;
    // Starts a new result: clears the document and gives it its "ClickNumber" section
    // (addTiffClickNumberSection(), not acquired from file, not modified) with this kind.
    // 33 for an empty click number, 31 for Kind::Other.
    int create(const QString& clickNumber, Kind kind);

    // The kind; 49 without a "ClickNumber" section, 24 without "ClickInfoType". Any other text
    // gives Kind::Other and 0 (getKindText() says which).
    int getKind(Kind* kind) const;
    int getKindText(QString* text) const;
    int setKind(Kind kind);

    // The image-math keys: the operation must be present (24 otherwise); k, when absent,
    // reads 1 and, when present, must be a number (31); absent operands read empty.
    int getImageMath(ImageMath* imageMath) const;
    // Writes the operation, k and the operands given (an empty operand is not written). 19 for
    // an empty operation.
    int setImageMath(const ImageMath& imageMath);

    int getKinetic(KineticOperation* operation, QString* clickNumber) const;
    int setKinetic(KineticOperation operation, const QString& clickNumber);

    int getSpectralUnmixing(QString* dataset, QString* concentrationName) const;
    int setSpectralUnmixing(const QString& dataset, const QString& concentrationName);

    int getBackgroundClick(QString* clickNumber) const;
    int setBackgroundClick(const QString& clickNumber);
    int getFolderOnDisk(QString* folder) const;
    int setFolderOnDisk(const QString& folder);

    int getCorrection(Correction correction, bool* isSet) const;
    int setCorrection(Correction correction, bool isSet);
    // The key of a correction flag ("Saturated", "CCD Corrected", ...); empty outside the enum.
    static QString correctionKey(Correction correction);

private:
    // The value of an analysis key, trimmed, without inline comment.
    int getAnalysisValue(const QString& key, QString* value) const;
    // Sets an analysis key, adding it (and the section) when absent.
    int setAnalysisValue(const QString& key, const QString& value);
};

#endif // PLANALYZEDCLICKINFO_H
