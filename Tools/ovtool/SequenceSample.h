#ifndef OVTOOL_SEQUENCESAMPLE_H
#define OVTOOL_SEQUENCESAMPLE_H

// The bundled sequence: a spectral series of one subject through the emission filters 580,
// 620, 660 and 700 nm, four acquisitions built with the image section builder, each in its
// folder named after its click number, and the "SequenceInfo.txt" the library writes for them.

#include "SampleAcquisitions.h"

#include <QString>
#include <QVector>

namespace OvSamples {

// The sequence's ID, which names its folder below samples/sequence/.
QString sequenceSampleID();
// The four acquisitions in sequence order.
QVector<Acquisition> sequenceAcquisitions();
// Writes FOLDER/<sequence ID>/ with the acquisitions and their SequenceInfo.txt; the status
// of the library's create or save (PLStatus.h), or 11 when an acquisition cannot be written.
int writeSequenceSample(const QString& folder);

} // namespace OvSamples

#endif // OVTOOL_SEQUENCESAMPLE_H
