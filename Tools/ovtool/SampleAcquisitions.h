#ifndef OVTOOL_SAMPLEACQUISITIONS_H
#define OVTOOL_SAMPLEACQUISITIONS_H

// Synthetic acquisitions made with the image section builder: the bundled samples (a
// fluorescent acquisition with a grid, an x-ray acquisition) and the many acquisitions of
// the browse benchmark. Dates and times are written in the local time zone; the bundled
// samples are made with TZ=UTC (make_samples sets it).

#include "PLClickInfo.h"
#include "PLImageTypes.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <ctime>

namespace OvSamples {

struct Acquisition
{
    QString folder; // the acquisition's folder name, which is its click number
    QByteArray clickInfo; // its ClickInfo.txt
};

// The bundled acquisitions, in samples/ order.
QVector<Acquisition> bundledAcquisitions();

// An acquisition for bulk data: `index` varies the click number, time stamp, binning and
// exposure, and odd indexes are x-ray acquisitions without a luminescent image.
Acquisition generatedAcquisition(int index);

// The building blocks of the acquisitions. addHeading(): the click number section and the
// "User Input" section with the first labels of the default set given in order.
// addImage(): the image section of `type` built from `setup`, with the image file's name and
// folder (the click number). photographSetup(): a setup of the samples' instrument taken at
// `stamp`.
void addHeading(CPLClickInfo& document, const QString& clickNumber, const QString& userId,
                const QStringList& labels);
void addImage(CPLClickInfo& document, const QString& folder, tag_eimagetype type,
              const sIASetupInfo& setup, const QString& imageFile, const QString& userId);
sIASetupInfo photographSetup(std::time_t stamp);

// Writes each acquisition as FOLDER/<folder>/ClickInfo.txt; false when a file cannot be
// written.
bool writeAcquisitions(const QString& folder, const QVector<Acquisition>& acquisitions);

} // namespace OvSamples

#endif // OVTOOL_SAMPLEACQUISITIONS_H
