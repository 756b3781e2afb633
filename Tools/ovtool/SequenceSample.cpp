#include "SequenceSample.h"

#include "PLConstants.h"
#include "PLSection.h"
#include "PLSequenceInfo.h"
#include "PLStatus.h"

#include <QDir>

namespace OvSamples {

namespace {

// 2026-11-06 10:15:00 UTC; the filters are changed in 70 s.
constexpr std::time_t SEQUENCE_START = 1793960100;
constexpr std::time_t FILTER_CHANGE = 70;

Acquisition filterAcquisition(int index, const QString& emissionFilter)
{
    const QString clickNumber
        = sequenceSampleID() + QStringLiteral("_%1").arg(index + 1, 3, 10, QLatin1Char('0'));
    const std::time_t stamp = SEQUENCE_START + FILTER_CHANGE * index;
    const QString userId = QStringLiteral("klenz");
    CPLClickInfo document;
    addHeading(document, clickNumber, userId,
               { QStringLiteral("Katrin Lenz"), QStringLiteral("Tumor Models Core"),
                 QStringLiteral("EXP-0431 4T1-luc2 spectral series"),
                 QStringLiteral("Emission 580 to 700 nm") });
    addImage(document, clickNumber, IMAGETYPE_PHOTOGRAPH, photographSetup(stamp - 12),
             QStringLiteral("photograph.TIF"), userId);
    sIASetupInfo setup = photographSetup(stamp);
    setup.m_strBinningFactor = QStringLiteral("8");
    setup.m_strExposure = QStringLiteral("30");
    setup.m_strEMGain = QStringLiteral("0");
    setup.m_strFNumber = QStringLiteral("1");
    setup.m_strFieldOfView = QStringLiteral("12.5");
    setup.m_strExcitationFilter = QStringLiteral("Block");
    setup.m_strEmissionFilter = emissionFilter;
    setup.m_strFilterPosition = QString::number(index + 2);
    addImage(document, clickNumber, IMAGETYPE_LUMINESCENT, setup, QStringLiteral("luminescent.TIF"),
             userId);
    // The filter wheel's name for the filter in place, which browsing shows as "EM Filter".
    document[OVSGlobalConstants::g_strImageSections[IMAGETYPE_LUMINESCENT]]->addKeyValue(
        PLConstants::strBrowseImage_NameKeyPairs[15], emissionFilter);
    return { clickNumber, document.getClickInfoData().toLatin1() };
}

} // namespace

QString sequenceSampleID()
{
    return QStringLiteral("SQ20261106101500");
}

QVector<Acquisition> sequenceAcquisitions()
{
    QVector<Acquisition> acquisitions;
    const char* filters[] = { "580", "620", "660", "700" };
    for (int i = 0; i < 4; ++i)
        acquisitions.append(filterAcquisition(i, QLatin1String(filters[i])));
    return acquisitions;
}

int writeSequenceSample(const QString& folder)
{
    const QDir dir(QDir(folder).filePath(sequenceSampleID()));
    const QVector<Acquisition> acquisitions = sequenceAcquisitions();
    if (!writeAcquisitions(dir.path(), acquisitions))
        return PL_FILE_OPEN_FAILED;
    QStringList folders;
    for (const Acquisition& acquisition : acquisitions)
        folders.append(dir.filePath(acquisition.folder));
    CPLSequenceInfo sequence;
    if (const int status = sequence.createFromAcquisitions(folders))
        return status;
    return sequence.save(dir.path());
}

} // namespace OvSamples
