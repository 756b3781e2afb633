#ifndef BACKGROUNDSAMPLE_H
#define BACKGROUNDSAMPLE_H

// The background library sample of samples/background/: a dozen synthetic dark backgrounds,
// luminescent and fluorescent, of several binnings, exposures, fields of view, temperatures
// and dates (fixed, in UTC), so that the files are the same on every machine.

#include "PLBkgSummaryInfo.h"

#include <QList>
#include <QString>

// The sample's entries, in the order of the summary.
QList<sBkgEntry> backgroundSampleEntries();

// Writes the library into `folder` (made when missing): the summary, both indexes and each
// entry's "BkgInfo.txt". Returns the first status that is not 0.
int writeBackgroundSample(const QString& folder);

#endif // BACKGROUNDSAMPLE_H
