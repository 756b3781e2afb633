#ifndef PLSPECTRALNAMES_P_H
#define PLSPECTRALNAMES_P_H

// Internal header, not installed: the element ids and attribute names of the
// spectral-analysis document, shared by its writing and its reading.

#include "PLSpectralWrapper.h"

#include <QLatin1String>
#include <QString>

namespace PLSpectral {

enum ElementId {
    Root = 0,
    Attributes,
    ClickInfo,
    Click,
    FilterProperties,
    ClickROI,
    ROIProperties,
    ROIMeasurements,
    Results,
    ResultsFlux,
    ResultsDepth,
    PlotResults,
    PlotValues,
    FitResults,
    FitValues,
    LinearFitValues,
};

// "Attributes"
const QLatin1String DATE_TIME("Date.Time");
const QLatin1String SEQUENCE_ID("SequenceID");
const QLatin1String NUMBER_OF_CLICKS("No.Of.Clicks");
const QLatin1String ACTIVE_IMAGE("Active.Image");
const QLatin1String TISSUE_PROPERTY("Tissue.Property");
const QLatin1String SOURCE_MODEL("Source.Model");
const QLatin1String INDEX_OF_REFRACTION("Index.of.Refraction");
// "ClickInfo", "ClickInfo.Click", "Click.Filter.Properties"
const QLatin1String TOTAL_CLICKS("Total.Clicks");
const QLatin1String CLICK_NUMBER("Click.Number");
const QLatin1String IMAGE_WAVELENGTH("Image.Wavelength");
const QLatin1String CENTRAL_WAVELENGTH("Central.Wavelength");
const QLatin1String BAND_WIDTH("Band.Width");
const QLatin1String AVG_TRANSMISSION("Avg.Transmission");
// "Click.ROI", "Click.ROI.Properties", "Click.ROI.Measurements"
const QLatin1String ROI("ROI");
const QLatin1String ROI_LABEL("ROI.Label");
const QLatin1String ROI_SHAPE("ROI.Shape");
const QLatin1String XC("Xc");
const QLatin1String YC("Yc");
const QLatin1String ANGLE("Angle");
const QLatin1String WIDTH("Width");
const QLatin1String HEIGHT("Height");
const QLatin1String ROI_PIXELS("ROI.Pixels");
const QLatin1String AREA("Area");
const QLatin1String CM_PER_PIXEL("CmPerPixel");
const QLatin1String ROI_TYPE("ROI.Type");
const QLatin1String LOCK_POSITION("Lock.Position");
const QLatin1String LOCK_SIZE("Lock.Size");
const QLatin1String BKG_ROI("Bkg.ROI");
const QLatin1String BKG_ASSOCIATION("Bkg.Association");
const QLatin1String FRACTIONAL_PEAK("Fractional.Peak");
const QLatin1String CONTOUR_DIRECTIONS("Contour.Directions");
const QLatin1String CONTOUR_START_X("Contour.StartX");
const QLatin1String CONTOUR_START_Y("Contour.StartY");
const QLatin1String CONTOUR_PEAK_X("Contour.PeakX");
const QLatin1String CONTOUR_PEAK_Y("Contour.PeakY");
const QLatin1String CONTOUR_X_DELTA("Contour.XDelta");
const QLatin1String CONTOUR_Y_DELTA("Contour.YDelta");
const QLatin1String FILTER_LABEL("Filter.Label");
const QLatin1String TOTAL_FLUX("Total.Flux");
const QLatin1String AVERAGE_RADIANCE("Average.Radiance");
// "Results", "Results.Flux", "Results.Depth"
const QLatin1String FLUX_STD_DEV("Flux.Std.Dev");
const QLatin1String FLUX_UNITS("Flux.Units");
const QLatin1String AVERAGE_DEPTH("Average.Depth");
const QLatin1String DEPTH_STD_DEV("Depth.Std.Dev");
const QLatin1String DEPTH_UNITS("Depth.Units");
// "Plot.Results", "Plot.Values", "Fit.Results", "Fit.Values", "Linear.Fit.Values"
const QLatin1String TOTAL_PLOT_VALUES("Total.Plot.Values");
const QLatin1String INTENSITY("Intensity");
const QLatin1String WAVE_LENGTH("Wave.Length");
const QLatin1String TOTAL_FIT_VALUES("Total.Fit.Values");
const QLatin1String ATTENUATION("Attenuation");
const QLatin1String FIT_VALUE("Fit.Value");
const QLatin1String HORIZONTAL_ERROR("Horizontal.Error");
const QLatin1String VERTICAL_ERROR("Vertical.Error");
const QLatin1String LINEAR_FIT_A("Linear.fit.value.A");
const QLatin1String LINEAR_FIT_B("Linear.fit.value.B");

// The suffix of wavelengths.
const QLatin1String NANOMETRES("nm");

// The name of an element, from gsElementInfo.
inline QString elementName(ElementId id)
{
    return QString::fromLatin1(gsElementInfo[id].szElementName);
}

} // namespace PLSpectral

#endif // PLSPECTRALNAMES_P_H
