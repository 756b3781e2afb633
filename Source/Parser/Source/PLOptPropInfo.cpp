#include "PLOptPropInfo.h"

#include "PLConstants.h"
#include "PLFileEditor.h"
#include "PLFileReader_p.h"
#include "PLFileWriter_p.h"
#include "PLPaths.h"
#include "PLSection.h"
#include "PLStatus.h"
#include "PLValueText_p.h"

#include <memory>

using namespace PLConstants;

namespace {

using ValueType = CPLOptPropInfo::ValueType;

struct SettingRow
{
    const QString* section;
    const QString* key;
    ValueType type;
    const char* defaultText;
};

// One row per CPLOptPropInfo::Setting, in its order.
const SettingRow SETTING_ROWS[] = {
    { &USER_PREFERENCE_SETTINGS_OPT_PROPS_SECTIONS, &USER_PREFERENCE_SETTINGS_TISSUE_PROPS_KEY,
      ValueType::Text, "Muscle" },
    { &USER_PREFERENCE_SETTINGS_OPT_PROPS_SECTIONS, &USER_PREFERENCE_SETTINGS_BIOLUMIN_SPECTRUM_KEY,
      ValueType::Text, "Firefly" },
    { &USER_PREFERENCE_SETTINGS_OPT_PROPS_SECTIONS, &USER_PREFERENCE_SETTINGS_FLUOR_SPECTRUM_KEY,
      ValueType::Text, "ICG" },
    { &USER_PREFERENCE_SETTINGS_OPT_PROPS_SECTIONS, &USER_PREFERENCE_SETTINGS_SRC_SPECTRUM_KEY,
      ValueType::Text, "Firefly" },
    { &USER_PREFERENCE_SETTINGS_OPT_PROPS_SECTIONS, &USER_PREFERENCE_SETTINGS_IOR_KEY,
      ValueType::Real, "1.4" },
    { &USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS, &USER_PREFERENCE_SETTINGS_DLIT_ANGLE_LIMIT_KEY,
      ValueType::Real, "70" },
    { &USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS,
      &USER_PREFERENCE_SETTINGS_DLIT_N_SURF_LOWER_KEY, ValueType::Integer, "200" },
    { &USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS, &USER_PREFERENCE_SETTINGS_DLIT_VS_KEY,
      ValueType::Real, "2" },
    { &USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS,
      &USER_PREFERENCE_SETTINGS_DLIT_UNIFORM_SURF_SAMPLE_KEY, ValueType::Flag, "1" },
    { &USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS,
      &USER_PREFERENCE_SETTINGS_DLIT_PATH_AVG_SIZE_KEY, ValueType::Integer, "3" },
    { &USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS, &USER_PREFERENCE_SETTINGS_DLIT_SMOOTH_MESH_KEY,
      ValueType::Flag, "1" },
    { &USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS, &USER_PREFERENCE_SETTINGS_DLIT_IOR_KEY,
      ValueType::Real, "1.4" },
    { &USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS, &USER_PERFERENCE_SETTINGS_AF_ON,
      ValueType::Flag, "0" },
    { &USER_PREFS_MEAS_AUTO_ROI_SECTIONS, &USER_PREFS_MEAS_AUTO_ROI_ROIEDGE_KEY, ValueType::Real,
      "10" },
    { &USER_PREFS_MEAS_AUTO_ROI_SECTIONS, &USER_PREFS_MEAS_AUTO_ROI_LOWERLIMIT_KEY, ValueType::Real,
      "5" },
    { &USER_PREFS_MEAS_AUTO_ROI_SECTIONS, &USER_PREFS_MEAS_AUTO_ROI_MINROISIZE_KEY,
      ValueType::Integer, "10" },
    { &USER_PREFS_SUBJ_AUTO_ROI_SECTIONS, &USER_PREFS_SUBJ_AUTO_ROI_CUTOFF_PARAM_KEY,
      ValueType::Real, "0.5" },
    { &USER_PREFS_SUBJ_AUTO_ROI_SECTIONS, &USER_PREFS_SUBJ_AUTO_ROI_SCALEFACTOR_KEY,
      ValueType::Real, "1" },
    { &USER_PREFS_SUBJ_AUTO_ROI_SECTIONS, &USER_PREFS_SUBJ_AUTO_ROI_SMALL_LIMIT_A_KEY,
      ValueType::Integer, "100" },
    { &USER_PREFS_SUBJ_AUTO_ROI_SECTIONS, &USER_PREFS_SUBJ_AUTO_ROI_SMALL_LIMIT_B_KEY,
      ValueType::Integer, "50" },
    { &USER_PREFS_SUBJ_AUTO_ROI_SECTIONS, &USER_PREFS_SUBJ_AUTO_ROI_THRESH_METHOD_KEY,
      ValueType::Text, "Auto" },
};
static_assert(sizeof(SETTING_ROWS) / sizeof(SETTING_ROWS[0]) == CPLOptPropInfo::SettingCount,
              "one row per setting");

// The one conversion from a value's text to each type; false when the text is not one. An
// empty text is no value of any type.
bool readText(const QString& text, QString* value)
{
    *value = text;
    return !text.isEmpty();
}

bool readText(const QString& text, int* value)
{
    bool ok = false;
    const int number = text.toInt(&ok, 10);
    if (ok)
        *value = number;
    return ok;
}

bool readText(const QString& text, double* value)
{
    return PLText::readNumber(text, value);
}

bool readText(const QString& text, bool* value)
{
    return PLText::readFlag(text, value);
}

QString writeText(const QString& value)
{
    return value.trimmed();
}

QString writeText(int value)
{
    return QString::number(value);
}

QString writeText(double value)
{
    return PLText::roundTripText(value);
}

QString writeText(bool value)
{
    return QString(QLatin1Char(value ? '1' : '0'));
}

template<typename T> bool readsAs(const QString& text)
{
    T value {};
    return readText(text, &value);
}

bool readsAs(ValueType type, const QString& text)
{
    switch (type) {
    case ValueType::Text:
        return readsAs<QString>(text);
    case ValueType::Integer:
        return readsAs<int>(text);
    case ValueType::Real:
        return readsAs<double>(text);
    case ValueType::Flag:
        return readsAs<bool>(text);
    }
    return false;
}

bool isValidSetting(CPLOptPropInfo::Setting setting)
{
    return setting >= 0 && setting < CPLOptPropInfo::SettingCount;
}

} // namespace

const QString CPLOptPropInfo::FILE_NAME = QStringLiteral("UserPreferences.txt");

CPLOptPropInfo::CPLOptPropInfo()
    : m_strLoadedText(getClickInfoData())
{
}

CPLOptPropInfo::~CPLOptPropInfo() = default;

CPLOptPropInfo::SettingInfo CPLOptPropInfo::settingInfo(Setting setting)
{
    if (!isValidSetting(setting))
        return { QString(), QString(), ValueType::Text, QString() };
    const SettingRow& row = SETTING_ROWS[setting];
    return { *row.section, *row.key, row.type, QLatin1String(row.defaultText) };
}

QString CPLOptPropInfo::defaultFilePath()
{
    return getCompleteFilePath(OV_PATH_USER_SETTINGS, FILE_NAME);
}

int CPLOptPropInfo::load()
{
    return load(defaultFilePath());
}

int CPLOptPropInfo::load(const QString& filePath)
{
    m_strError.clear();
    if (filePath.isEmpty())
        return PL_EMPTY_KEY;
    if (PLFile::isDicomPath(filePath))
        return PL_INVALID_ARGUMENT;
    QByteArray bytes;
    int status = PLFile::readFile(filePath, &bytes);
    if (status == PL_SUCCESS)
        status = loadFrom(bytes, filePath);
    else
        loadFrom(QByteArray(), QString());
    if (status == PL_SUCCESS) {
        m_strFilePath = filePath;
        m_FileBytes = bytes;
    }
    return status;
}

int CPLOptPropInfo::loadBytes(const QByteArray& bytes, const QString& sourceName)
{
    m_strError.clear();
    const int status = loadFrom(bytes, sourceName);
    if (status == PL_SUCCESS && !sourceName.isEmpty()) {
        m_strFilePath = sourceName;
        m_FileBytes = bytes;
    }
    return status;
}

int CPLOptPropInfo::loadFrom(const QByteArray& bytes, const QString& sourceName)
{
    clearData();
    const int status = loadClickInfoBytes(bytes.constData(), bytes.size(), sourceName);
    if (status != PL_SUCCESS) {
        clearData();
        m_Bytes.clear();
    } else {
        m_Bytes = bytes;
    }
    m_strLoadedText = getClickInfoData();
    return status;
}

QString CPLOptPropInfo::filePath() const
{
    return m_strFilePath;
}

QByteArray CPLOptPropInfo::fileBytes() const
{
    const QString text = getClickInfoData();
    return text == m_strLoadedText ? m_Bytes : text.toLatin1();
}

QString CPLOptPropInfo::sourceName() const
{
    return m_strFilePath.isEmpty() ? FILE_NAME : m_strFilePath;
}

int CPLOptPropInfo::save()
{
    return save(m_strFilePath);
}

int CPLOptPropInfo::save(const QString& filePath)
{
    m_strError.clear();
    if (filePath.isEmpty())
        return PL_EMPTY_KEY;
    if (PLFile::isDicomPath(filePath))
        return PL_INVALID_ARGUMENT;
    const QByteArray bytes = fileBytes();
    const int status = filePath == m_strFilePath
        ? PLFile::saveFileIfUnchanged(filePath, bytes, m_FileBytes)
        : PLFile::saveFile(filePath, bytes);
    if (status != PL_SUCCESS) {
        m_strError = filePath + QLatin1String(": ") + getStatusText(status);
        return status;
    }
    m_Bytes = bytes;
    m_FileBytes = bytes;
    m_strLoadedText = getClickInfoData();
    m_strFilePath = filePath;
    return PL_SUCCESS;
}

QString CPLOptPropInfo::errorString() const
{
    return m_strError;
}

template<typename T>
CPLOptPropValue<T> CPLOptPropInfo::getTypedValue(const QString& sectionKey, const QString& key,
                                                 const T& defaultValue) const
{
    CPLOptPropValue<T> result;
    result.value = defaultValue;
    const CPLSection* section = (*this)[sectionKey];
    QString text;
    if (section == nullptr || CPLSection::isCommentKey(key)
        || section->getValue(key, &text) != PL_SUCCESS)
        return result;
    result.present = true;
    result.valid = readText(text, &result.value);
    if (!result.valid)
        result.value = defaultValue;
    return result;
}

QString CPLOptPropInfo::sectionFor(const SettingInfo& info, Reconstruction reconstruction,
                                   bool forWriting) const
{
    if (reconstruction == Shared || info.section != USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS)
        return info.section;
    const QString& own = reconstruction == Dlit ? USER_PREFERENCE_SETTINGS_DLIT_SECTION
                                                : USER_PREFERENCE_SETTINGS_SPIM_SECTION;
    if (forWriting)
        return own;
    const CPLSection* section = (*this)[own];
    QString text;
    return section != nullptr && section->getValue(info.key, &text) == PL_SUCCESS ? own
                                                                                  : info.section;
}

template<typename T>
CPLOptPropValue<T> CPLOptPropInfo::getSetting(Setting setting, Reconstruction reconstruction) const
{
    if (!isValidSetting(setting))
        return {};
    const SettingInfo info = settingInfo(setting);
    T defaultValue {};
    readText(info.defaultText, &defaultValue);
    return getTypedValue(sectionFor(info, reconstruction, false), info.key, defaultValue);
}

CPLOpticalProperties CPLOptPropInfo::getOpticalProperties() const
{
    CPLOpticalProperties properties;
    properties.tissueProperties = getSetting<QString>(TissueProperties);
    properties.bioluminescentSpectrum = getSetting<QString>(BioluminescentSpectrum);
    properties.fluorescentSpectrum = getSetting<QString>(FluorescentSpectrum);
    properties.sourceSpectrum = getSetting<QString>(SourceSpectrum);
    properties.indexOfRefraction = getSetting<double>(IndexOfRefraction);
    return properties;
}

CPLReconstructionParameters
CPLOptPropInfo::getReconstructionParameters(Reconstruction reconstruction) const
{
    CPLReconstructionParameters parameters;
    parameters.angleLimit = getSetting<double>(AngleLimit, reconstruction);
    parameters.surfaceLowerCount = getSetting<int>(SurfaceLowerCount, reconstruction);
    parameters.startingVoxelSize = getSetting<double>(StartingVoxelSize, reconstruction);
    parameters.uniformSurfaceSampling = getSetting<bool>(UniformSurfaceSampling, reconstruction);
    parameters.pathAverageSize = getSetting<int>(PathAverageSize, reconstruction);
    parameters.smoothMeshSurface = getSetting<bool>(SmoothMeshSurface, reconstruction);
    parameters.indexOfRefraction
        = getSetting<double>(ReconstructionIndexOfRefraction, reconstruction);
    parameters.autoFluorescence = getSetting<bool>(AutoFluorescence, reconstruction);
    return parameters;
}

CPLMeasurementAutoRoi CPLOptPropInfo::getMeasurementAutoRoi() const
{
    CPLMeasurementAutoRoi roi;
    roi.roiEdge = getSetting<double>(RoiEdge);
    roi.lowerLimit = getSetting<double>(LowerLimit);
    roi.minRoiSize = getSetting<int>(MinRoiSize);
    return roi;
}

CPLSubjectAutoRoi CPLOptPropInfo::getSubjectAutoRoi() const
{
    CPLSubjectAutoRoi roi;
    roi.cutoffParam = getSetting<double>(CutoffParam);
    roi.scaleFactor = getSetting<double>(ScaleFactor);
    roi.smallRoiLimitA = getSetting<int>(SmallRoiLimitA);
    roi.smallRoiLimitB = getSetting<int>(SmallRoiLimitB);
    roi.thresholdMethod = getSetting<QString>(ThresholdMethod);
    return roi;
}

QList<QPair<QString, QString>> CPLOptPropInfo::getPlotSettings() const
{
    QList<QPair<QString, QString>> entries;
    const CPLSection* section = (*this)[USER_PREFERENCE_SETTINGS_OPT_PLOT_SECTIONS];
    QStringList keys;
    QStringList values;
    if (section == nullptr || section->getKeyList(&keys) != PL_SUCCESS
        || section->getValueList(&values) != PL_SUCCESS)
        return entries;
    for (int i = 0; i < keys.size() && i < values.size(); ++i)
        entries.append(qMakePair(keys.at(i), values.at(i)));
    return entries;
}

int CPLOptPropInfo::setPreference(const QString& sectionKey, const QString& key,
                                  const QString& value)
{
    m_strError.clear();
    if (sectionKey.isEmpty() || key.isEmpty())
        return PL_EMPTY_KEY;
    CPLFileEditor editor(sourceName());
    const QByteArray bytes = fileBytes();
    int status = editor.openBytes(bytes);
    const QString text = value.trimmed();
    if (status == PL_SUCCESS)
        status = editor.setValue(sectionKey, key, text);
    if (status == PL_SECTION_NOT_PRESENT || status == PL_KEY_NOT_FOUND)
        status = editor.addKeyValue(sectionKey, key, text);
    if (status != PL_SUCCESS) {
        m_strError = editor.errorString();
        return status;
    }
    const QByteArray edited = editor.editedBytes();
    if (edited != bytes || bytes != m_Bytes)
        adoptEdit(editor.document(), editor.loadWarnings(), edited);
    return PL_SUCCESS;
}

void CPLOptPropInfo::adoptEdit(const CPLClickInfo& edited, const QList<CPLLoadWarning>& warnings,
                               const QByteArray& bytes)
{
    // The editor has loaded the edited bytes already: take its sections rather than load
    // (and log) the file again. An edit never changes the lines before the first section.
    adoptSections(edited, warnings);
    m_Bytes = bytes;
    m_strLoadedText = getClickInfoData();
}

template<typename T>
int CPLOptPropInfo::setSetting(Setting setting, const T& value, Reconstruction reconstruction)
{
    if (!isValidSetting(setting))
        return PL_OUT_OF_RANGE;
    const SettingInfo info = settingInfo(setting);
    const QString text = writeText(value);
    if (!readsAs(info.type, text)) {
        m_strError = QLatin1String("the value \"") + text + QLatin1String("\" of \"") + info.key
            + QLatin1String("\" is not of the setting's type");
        return PL_INVALID_ARGUMENT;
    }
    return setPreference(sectionFor(info, reconstruction, true), info.key, text);
}

// The types the typed access is made for.
#define PL_OPTPROP_INSTANTIATE(T)                                                                  \
    template OVPARSER_EXPORT CPLOptPropValue<T> CPLOptPropInfo::getTypedValue<T>(                  \
        const QString&, const QString&, const T&) const;                                           \
    template OVPARSER_EXPORT CPLOptPropValue<T> CPLOptPropInfo::getSetting<T>(                     \
        Setting, Reconstruction) const;                                                            \
    template OVPARSER_EXPORT int CPLOptPropInfo::setSetting<T>(Setting, const T&, Reconstruction);

PL_OPTPROP_INSTANTIATE(QString)
PL_OPTPROP_INSTANTIATE(int)
PL_OPTPROP_INSTANTIATE(double)
PL_OPTPROP_INSTANTIATE(bool)
