#include "SpectralSample.h"

#include "PLStatus.h"

#include <cmath>

namespace {

const int FILTERS[] = { 560, 580, 600, 620 };
const char* const ROI_LABELS[] = { "Left flank", "Right flank" };

_tagsROIProperties roiProperties(int roi)
{
    _tagsROIProperties p;
    p.strROIName = QStringLiteral("ROI %1").arg(roi + 1);
    p.strROIShape = roi == 0 ? QStringLiteral("Ellipse") : QStringLiteral("Contour");
    p.dXc = 312.5 + 190 * roi;
    p.dYc = 428.25 - 12 * roi;
    p.dAngle = roi == 0 ? 0 : 17.5;
    p.dWidth = 84 + 6 * roi;
    p.dHeight = 61.5;
    p.nROIPixels = 4056 + 517 * roi;
    p.dArea = p.nROIPixels * 0.0169 * 0.0169;
    p.dCmPerPixel = 0.0169;
    p.strROIType = QStringLiteral("Measurement");
    p.strLockPosition = QStringLiteral("No");
    p.strLockSize = roi == 0 ? QStringLiteral("Yes") : QStringLiteral("No");
    p.strBkgROI = QStringLiteral("No");
    p.strBkgAssociation = QStringLiteral("BKG 1");
    p.dFractionalPeak = roi == 0 ? 0 : 0.35;
    p.strContourDirections = roi == 0 ? QString() : QStringLiteral("NESW");
    p.dContourStartX = roi == 0 ? 0 : 470.0;
    p.dContourStartY = roi == 0 ? 0 : 401.0;
    p.dContourPeakX = roi == 0 ? 0 : 503.4;
    p.dContourPeakY = roi == 0 ? 0 : 415.8;
    p.nContourXDelta = roi == 0 ? 0 : 2;
    p.nContourYDelta = roi == 0 ? 0 : -1;
    return p;
}

// Total flux through a filter: a source spectrum attenuated by tissue at a depth that
// differs per ROI.
double flux(int roi, int wavelength)
{
    const double depth = 2.6 + 0.9 * roi;
    const double attenuation = 1.9 * std::exp(-(wavelength - 560) / 38.0);
    return 4.2e8 * std::exp(-attenuation * depth) * (1 + 0.004 * (wavelength - 560));
}

_tagSClickInfo click(int index)
{
    const int wavelength = FILTERS[index];
    _tagSClickInfo c;
    c.strClickNumber
        = QStringLiteral("KL20261104142207_%1").arg(index + 1, 3, 10, QLatin1Char('0'));
    c.strWavelength = QString::number(wavelength);
    c.filter = { wavelength, 20, float(0.82 - 0.015 * index) };
    for (int roi = 0; roi < 2; ++roi) {
        c.rois.append({ QString::fromLatin1(ROI_LABELS[roi]), roiProperties(roi) });
        const double total = flux(roi, wavelength);
        c.measurements.append(
            { QStringLiteral("%1nm").arg(wavelength), total, total / (4056 + 517 * roi) / 2.9e-4 });
    }
    return c;
}

} // namespace

_tagSSpectralDocument spectralSampleDocument()
{
    _tagSSpectralDocument d;
    d.attributes = { spectralSampleDateTime(),
                     QStringLiteral("KL20261104142207_SEQ"),
                     4,
                     QStringLiteral("KL20261104142207_001"),
                     QStringLiteral("Mouse Tissue"),
                     QStringLiteral("Firefly"),
                     1.4f };
    d.nTotalClicks = 4;
    for (int index = 0; index < 4; ++index)
        d.clicks.append(click(index));
    for (int roi = 0; roi < 2; ++roi) {
        const QString label = QString::fromLatin1(ROI_LABELS[roi]);
        d.results.append({ QStringLiteral("ROI %1").arg(roi + 1), 1.37e9 - 2.1e8 * roi,
                           4.6e7 + 1.1e7 * roi, QStringLiteral("photons/sec"), 2.6 + 0.9 * roi,
                           0.21 + 0.05 * roi, QStringLiteral("mm") });
        _tagSPlotResults plot { label, 10, {} };
        for (int i = 0; i < 10; ++i) {
            const double wavelength = 560 + 60.0 * i / 9;
            plot.values.append({ flux(roi, int(wavelength)) / 1e8, wavelength });
        }
        d.plots.append(plot);
        _tagSFitResults fit { label, 4, {} };
        for (const int wavelength : FILTERS) {
            const double attenuation = 1.9 * std::exp(-(wavelength - 560) / 38.0);
            const double logIntensity = std::log(flux(roi, wavelength));
            fit.values.append({ logIntensity, attenuation, 19.86 - (2.6 + 0.9 * roi) * attenuation,
                                0.012 * attenuation, 0.035 });
        }
        d.fits.append(fit);
    }
    d.linearFit = { -2.6043, 19.8561 };
    return d;
}

int writeSpectralSample(const QString& path)
{
    CPLSpectralWrapper wrapper;
    const int status = wrapper.createSpectralXMLFile(path);
    return status == PL_SUCCESS ? wrapper.writeSpectralDocument(spectralSampleDocument()) : status;
}
