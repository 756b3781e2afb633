#ifndef PLOPTPROPINFO_H
#define PLOPTPROPINFO_H

#include "PLClickInfo.h"
#include "ovparser_global.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

// One value read from the preference settings: the file's value, or the default when the key
// is absent or its text does not read as the type asked for.
template<typename T> struct CPLOptPropValue
{
    T value {};
    // The key stands in its section (whatever its text).
    bool present = false;
    // The key stands in its section and its text reads as T; false means `value` is the
    // default.
    bool valid = false;
};

// The optical properties of the tissue and the light source, as the model of light
// propagation takes them.
struct CPLOpticalProperties
{
    CPLOptPropValue<QString> tissueProperties;
    CPLOptPropValue<QString> bioluminescentSpectrum;
    CPLOptPropValue<QString> fluorescentSpectrum;
    CPLOptPropValue<QString> sourceSpectrum;
    CPLOptPropValue<double> indexOfRefraction;
};

// The parameters of a 3D source reconstruction.
struct CPLReconstructionParameters
{
    CPLOptPropValue<double> angleLimit;
    CPLOptPropValue<int> surfaceLowerCount;
    CPLOptPropValue<double> startingVoxelSize;
    CPLOptPropValue<bool> uniformSurfaceSampling;
    CPLOptPropValue<int> pathAverageSize;
    CPLOptPropValue<bool> smoothMeshSurface;
    CPLOptPropValue<double> indexOfRefraction;
    CPLOptPropValue<bool> autoFluorescence;
};

// How ROIs are placed automatically on a measurement (the signal) and on the subject.
struct CPLMeasurementAutoRoi
{
    CPLOptPropValue<double> roiEdge;
    CPLOptPropValue<double> lowerLimit;
    CPLOptPropValue<int> minRoiSize;
};

struct CPLSubjectAutoRoi
{
    CPLOptPropValue<double> cutoffParam;
    CPLOptPropValue<double> scaleFactor;
    CPLOptPropValue<int> smallRoiLimitA;
    CPLOptPropValue<int> smallRoiLimitB;
    CPLOptPropValue<QString> thresholdMethod;
};

// The optical-property, reconstruction and auto-ROI part of a user's preference settings
// file, "UserPreferences.txt" in the user's settings folder (getOVPath(OV_PATH_USER_SETTINGS)).
// The file is a sectioned text file that the user's other preferences share (camera settings,
// display, ...); this document reads all of it and knows these sections:
//
//     *** Optical Properties:<tab>
//     Tissue Properties:<tab>Muscle
//     Bioluminescent Spectrum:<tab>Firefly
//     Fluorescent Spectrum:<tab>ICG
//     Source Spectrum:<tab>Firefly
//     Index of Refraction:<tab>1.4
//
//     *** Plot Section:<tab>
//     (the optical-property plot's own keys, read as they stand: getPlotSettings())
//
//     *** DLIT Params:<tab>
//     Angle Limit:<tab>70
//     N Surface Lower:<tab>200
//     Starting Voxel Size:<tab>2
//     Uniform Surface Sampling:<tab>1
//     Path Avg Size:<tab>3
//     Smooth Mesh Surface:<tab>1
//     Index of Refraction:<tab>1.4
//     Auto Fluorescence:<tab>0
//
//     *** DLIT:<tab>              *** SpIM:<tab>
//     (any "DLIT Params" key, for that reconstruction only)
//
//     *** Measurement Auto ROI Settings:<tab>
//     ROI Edge:<tab>10
//     Lower Limit:<tab>5
//     Min ROI Size:<tab>10
//
//     *** Subject Auto ROI Settings:<tab>
//     Cutoff Param:<tab>0.5
//     Scale Factor:<tab>1
//     Small ROI Limit A:<tab>100
//     Small ROI Limit B:<tab>50
//     Threshold Method:<tab>Auto
//
// The values above are the defaults the named getters use (settingInfo()). What a value is:
// - the tissue properties and the three spectra are names, text as the user chose it from the
//   application's lists ("Muscle", "Skin", "Firefly", "ICG"); they are not checked against a
//   list here, since the lists grow with the application's data;
// - indexes of refraction, the angle limit (degrees from the surface normal), the starting
//   voxel size (mm), the ROI edge (percent of the peak at which an ROI's edge is drawn), the
//   lower limit (the lowest peak considered, in the image's units), the cutoff parameter and
//   the scale factor are real numbers, written with a "." ("1.37");
// - "N Surface Lower", "Path Avg Size", "Min ROI Size" (pixels) and the small-ROI limits
//   (pixels) are integers;
// - "Uniform Surface Sampling", "Smooth Mesh Surface" and "Auto Fluorescence" are flags: a
//   flag reads "1", "Yes", "True" or "On" as set and "0", "No", "False" or "Off" as not, in
//   any case, and is written "1" or "0";
// - the threshold method is a name ("Auto", "Manual").
// A value keeps its inline comment in the file ("1.4 # water"); getters read it without.
// Text that does not read as the type (a real "1,4", an integer "12abc", a flag "maybe")
// gives the default with `present` set and `valid` not, so that a mistyped preference never
// turns into a zero.
//
// The reconstruction sections: "DLIT Params" holds the parameters both reconstructions share;
// a key in "DLIT" or "SpIM" applies to that reconstruction only and wins over the shared one.
//
// Editing keeps the user's file: the document holds the file's bytes, and every setter edits
// them with CPLFileEditor, so that only the edited line changes (comments, blank lines, CR LF
// or LF line ends, other sections stay byte for byte). A key the section lacks is added after
// the section's last line; a section the file lacks is added at the end of the file. The
// sections are then read again from the edited bytes. save() writes the bytes held: a file
// that was loaded and not edited is written back as it was read, warnings or none. (A
// section changed through the CPLClickInfo functions instead, which cannot keep bytes, makes
// save() write the canonical form with saveClickInfo().) Setting the same value twice, or
// the value a key holds, leaves the bytes as they are.
//
// Statuses: 0; 11, 63, 64, 65 reading a file; 5, 33 for text that does not load (see
// CPLClickInfo::loadTextBuffer()); 19 for an empty path, section or key; 31 for a value, key
// or section that cannot stand in the file (CPLSection::breaksFile()), for a value that does
// not read as the setting's type, for a DICOM path, and for write failures; 48 for a setting
// outside the list; 66 when another editor holds the file's lock; 67 for a key that its
// section holds on more than one line (it is never edited).
class OVPARSER_EXPORT CPLOptPropInfo : public CPLClickInfo
{
public:
    // The settings this document names, in the order of the file layout above.
    enum Setting {
        TissueProperties,
        BioluminescentSpectrum,
        FluorescentSpectrum,
        SourceSpectrum,
        IndexOfRefraction,
        AngleLimit,
        SurfaceLowerCount,
        StartingVoxelSize,
        UniformSurfaceSampling,
        PathAverageSize,
        SmoothMeshSurface,
        ReconstructionIndexOfRefraction,
        AutoFluorescence,
        RoiEdge,
        LowerLimit,
        MinRoiSize,
        CutoffParam,
        ScaleFactor,
        SmallRoiLimitA,
        SmallRoiLimitB,
        ThresholdMethod,
        SettingCount
    };
    enum class ValueType { Text, Integer, Real, Flag };
    // Which reconstruction a "DLIT Params" setting is read for: Shared reads "DLIT Params"
    // only; Dlit and Spim read their own section first. Other settings ignore it.
    enum Reconstruction { Shared, Dlit, Spim };

    struct SettingInfo
    {
        QString section;
        QString key;
        ValueType type;
        // The default, in the text form the file holds.
        QString defaultText;
    };

    CPLOptPropInfo();
    ~CPLOptPropInfo() override;

    // The section, key, type and default of a setting; empty texts outside the list.
    static SettingInfo settingInfo(Setting setting);
    // The default file: "UserPreferences.txt" in the user's settings folder.
    static QString defaultFilePath();
    static const QString FILE_NAME;

    // load(defaultFilePath()).
    int load();
    // Reads the file and loads it as CPLClickInfo::loadClickInfoBytes() does, replacing what
    // the document held; remembers the path for save(). 19 for an empty path, 31 for a DICOM
    // path (".dcm"), else the status of reading or loading; on failure the document is empty.
    int load(const QString& filePath);
    // Loads bytes already read; `sourceName` names them in messages and becomes the path
    // save() writes to (when not empty).
    int loadBytes(const QByteArray& bytes, const QString& sourceName);
    // The path of the file loaded (or last saved), empty when none.
    QString filePath() const;
    // The bytes save() writes.
    QByteArray fileBytes() const;

    // save(filePath()).
    int save();
    // Writes the bytes held to `filePath` through the library's save policy (lock, atomic
    // replace), or saveClickInfo() when sections were changed through CPLClickInfo. 19 for an
    // empty path, 31 for a DICOM path; on success the path is remembered. Saving to the file
    // the document was read from (filePath()) first checks, under the file's lock, that the
    // file still holds what was read: 76 (PL_FILE_CHANGED), the file left as it stands, when
    // another program or editor changed it meanwhile, so that no update is lost silently;
    // load it again and repeat the edit.
    int save(const QString& filePath);

    // The value of a key as T (QString, int, double or bool), or `defaultValue`: see the class
    // comment for what each type reads.
    template<typename T>
    CPLOptPropValue<T> getTypedValue(const QString& sectionKey, const QString& key,
                                     const T& defaultValue) const;
    // A named setting with its default; for a "DLIT Params" setting, as read for
    // `reconstruction`. T is QString for every setting (the text, trimmed, without inline
    // comment), or the setting's type.
    template<typename T>
    CPLOptPropValue<T> getSetting(Setting setting, Reconstruction reconstruction = Shared) const;

    CPLOpticalProperties getOpticalProperties() const;
    CPLReconstructionParameters getReconstructionParameters(Reconstruction reconstruction) const;
    CPLMeasurementAutoRoi getMeasurementAutoRoi() const;
    CPLSubjectAutoRoi getSubjectAutoRoi() const;
    // The key/value entries of the "Plot Section" in file order (values without inline
    // comments); none when the file lacks the section.
    QList<QPair<QString, QString>> getPlotSettings() const;

    // Sets a key's value in the bytes held (the value trimmed): the key's line changes and
    // nothing else, or the key is added (with its section when absent). Statuses as above.
    int setPreference(const QString& sectionKey, const QString& key, const QString& value);
    // Sets a named setting, in "DLIT Params" or, for Dlit or Spim, in that reconstruction's
    // own section. T is QString (text that must read as the setting's type, 31 otherwise),
    // or int, double, bool: numbers are written in the shortest form that reads back the same
    // ("1.37", "200"), flags "1" or "0". 48 for a setting outside the list.
    template<typename T>
    int setSetting(Setting setting, const T& value, Reconstruction reconstruction = Shared);

    // The last failure of an edit or a save in words, naming the file and line; empty when
    // the last one succeeded.
    QString errorString() const;

private:
    // Loads `bytes` as the document, named `sourceName`; keeps them on success.
    int loadFrom(const QByteArray& bytes, const QString& sourceName);
    // Takes the sections of the edited bytes, as the editor loaded them.
    void adoptEdit(const CPLClickInfo& edited, const QList<CPLLoadWarning>& warnings,
                   const QByteArray& bytes);
    // The section a setting is read from for `reconstruction`: its reconstruction's own when
    // that holds the key, else the setting's.
    QString sectionFor(const SettingInfo& info, Reconstruction reconstruction,
                       bool forWriting) const;
    // The name the editor and the messages use for the bytes held.
    QString sourceName() const;

    QByteArray m_Bytes;
    // What the file at m_strFilePath held when it was read or last saved.
    QByteArray m_FileBytes;
    QString m_strFilePath;
    QString m_strError;
    // The canonical text of the sections as the bytes held load: when the sections differ
    // from it, they were changed through CPLClickInfo.
    QString m_strLoadedText;
};

#endif // PLOPTPROPINFO_H
