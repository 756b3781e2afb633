#include "SampleAcquisitions.h"

#include "PLClickInfo.h"
#include "PLConstants.h"
#include "PLImageTypes.h"
#include "PLSection.h"

#include <QDir>
#include <QFile>

namespace OvSamples {

namespace {

const QString FILE_NAME_KEY = PLConstants::strBrowseImage_NameKeyPairs[17];
const QString PATH_NAME_KEY = PLConstants::strBrowseImage_NameKeyPairs[19];

const QString& sectionOf(tag_eimagetype type)
{
    return OVSGlobalConstants::g_strImageSections[type];
}

QByteArray bytesOf(const CPLClickInfo& document)
{
    return document.getClickInfoData().toLatin1();
}

Acquisition fluorescentGrid(const QString& clickNumber, std::time_t stamp, const QString& binning,
                            const QString& exposure)
{
    const QString userId = QStringLiteral("amuir");
    CPLClickInfo document;
    addHeading(document, clickNumber, userId,
               { QStringLiteral("Alba Muir"), QStringLiteral("Imaging Core"),
                 QStringLiteral("EXP-0419 GFP grid scan"), QStringLiteral("Trans-illumination") });
    addImage(document, clickNumber, IMAGETYPE_PHOTOGRAPH, photographSetup(stamp - 14),
             QStringLiteral("photograph.TIF"), userId);
    sIASetupInfo setup = photographSetup(stamp);
    setup.m_strBinningFactor = binning;
    setup.m_strExposure = exposure;
    setup.m_strEMGain = QStringLiteral("0");
    setup.m_strFNumber = QStringLiteral("2");
    setup.m_strFieldOfView = QStringLiteral("13.4");
    setup.m_strReadBiasLevel = QStringLiteral("611");
    setup.m_strExcitationFilter = QStringLiteral("465");
    setup.m_strEmissionFilter = QStringLiteral("520");
    setup.m_strFilterPosition = QStringLiteral("3");
    setup.m_strFluorescenceLevel = QStringLiteral("High");
    setup.m_strFluorescenceLevelString = QStringLiteral("High");
    setup.m_bFluorescent = true;
    setup.m_bFluorescenceGrid = true;
    setup.m_strGridName = QStringLiteral("Grid 5x5");
    setup.m_ptGridPosition = { 2, 4 };
    setup.m_strXMotorPosition = QStringLiteral("1250");
    setup.m_strYMotorPosition = QStringLiteral("-310");
    setup.m_ptSpot = { 11, 13 };
    addImage(document, clickNumber, IMAGETYPE_LUMINESCENT, setup, QStringLiteral("luminescent.TIF"),
             userId);
    return { clickNumber, bytesOf(document) };
}

Acquisition xray(const QString& clickNumber, std::time_t stamp, const QString& binning)
{
    const QString userId = QStringLiteral("klenz");
    CPLClickInfo document;
    addHeading(document, clickNumber, userId,
               { QStringLiteral("Katrin Lenz"), QStringLiteral("Tumor Models Core"),
                 QStringLiteral("EXP-0412 4T1-luc2 flank growth"), QStringLiteral("Bone check") });
    sIASetupInfo photograph = photographSetup(stamp - 9);
    photograph.m_strBinningFactor = binning;
    addImage(document, clickNumber, IMAGETYPE_PHOTOGRAPH, photograph,
             QStringLiteral("photograph.TIF"), userId);
    sIASetupInfo setup = photographSetup(stamp);
    setup.m_strBinningFactor = binning;
    setup.m_strFNumber = QStringLiteral("8");
    setup.m_strFieldOfView = QStringLiteral("24");
    setup.m_strXrayTubeVoltage = QStringLiteral("35");
    setup.m_strXrayTubePlateCurrent = QStringLiteral("0.2");
    setup.m_strXrayTubeFilter = QStringLiteral("in");
    setup.m_strExposureTimeSec = QStringLiteral("5");
    setup.m_iImagingMode = PL_IMAGINGMODE_HIGHRESOLUTION;
    addImage(document, clickNumber, IMAGETYPE_XRAY, setup, QStringLiteral("xray.TIF"), userId);
    return { clickNumber, bytesOf(document) };
}

} // namespace

// An image section and the image file it describes.
void addImage(CPLClickInfo& document, const QString& folder, tag_eimagetype type,
              const sIASetupInfo& setup, const QString& imageFile, const QString& userId)
{
    document.addImageSection(folder + QLatin1Char('/') + sectionOf(type), userId, type, &setup,
                             false);
    CPLSection* section = document[sectionOf(type)];
    section->addKeyValue(FILE_NAME_KEY, imageFile);
    section->addKeyValue(PATH_NAME_KEY, folder);
}

// The common start of an acquisition: its click number and the user's labels.
void addHeading(CPLClickInfo& document, const QString& clickNumber, const QString& userId,
                const QStringList& labels)
{
    document.addTiffClickNumberSection(false, false, clickNumber);
    document.addTiffUserSection(IMAGETYPE_LUMINESCENT, userId);
    for (int i = 0; i < labels.size(); ++i)
        document.setValue(PLConstants::USERINPUT_SECTION_KEY, PLConstants::strUserLabelSetKeys[i],
                          labels.at(i));
}

sIASetupInfo photographSetup(std::time_t stamp)
{
    sIASetupInfo setup;
    setup.m_tTimeStamp = stamp;
    setup.m_strBinningFactor = QStringLiteral("2");
    setup.m_strReadBiasLevel = QStringLiteral("608");
    setup.m_strDemandTemperature = QStringLiteral("-90");
    setup.m_strMeasuredTemperature = QStringLiteral("-89.9");
    return setup;
}

QVector<Acquisition> bundledAcquisitions()
{
    // 2026-11-05 09:30:12 and 10:15:44 UTC.
    return { fluorescentGrid(QStringLiteral("AM20261105093012_001"), 1793871012,
                             QStringLiteral("4"), QStringLiteral("0.5")),
             xray(QStringLiteral("KL20261105101544_001"), 1793873744, QStringLiteral("4")) };
}

Acquisition generatedAcquisition(int index)
{
    const std::time_t stamp = 1793871012 + std::time_t(index) * 97;
    const QString clickNumber = QStringLiteral("GN%1_001").arg(index, 8, 10, QLatin1Char('0'));
    const QString binning = QString::number(1 << (index % 4));
    if (index % 2)
        return xray(clickNumber, stamp, binning);
    return fluorescentGrid(clickNumber, stamp, binning, QString::number(0.25 * (index % 40)));
}

bool writeAcquisitions(const QString& folder, const QVector<Acquisition>& acquisitions)
{
    for (const Acquisition& acquisition : acquisitions) {
        const QDir dir(QDir(folder).filePath(acquisition.folder));
        QFile file(dir.filePath(PLConstants::CLICKINFO_FILENAME));
        if (!dir.mkpath(QStringLiteral(".")) || !file.open(QIODevice::WriteOnly)
            || file.write(acquisition.clickInfo) != acquisition.clickInfo.size())
            return false;
    }
    return true;
}

} // namespace OvSamples
