#ifndef SPECTRALSAMPLE_H
#define SPECTRALSAMPLE_H

// The spectral-analysis sample of samples/spectral/: synthetic values of a sequence of four
// clicks through filters of 560 to 620 nm with two ROIs, and the way it is written.

#include "PLSpectralWrapper.h"

#include <QString>

// The fixed "Date.Time" of the sample.
inline QString spectralSampleDateTime()
{
    return QStringLiteral("14:22:07, Wed Nov 4 2026");
}

// The sample's values.
_tagSSpectralDocument spectralSampleDocument();

// Writes the sample to `path` with the set operations; returns their status.
int writeSpectralSample(const QString& path);

#endif // SPECTRALSAMPLE_H
