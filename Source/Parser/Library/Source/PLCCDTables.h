#ifndef PLCCDTABLES_H
#define PLCCDTABLES_H

// The instrument tables of the camera: the width of the CCD, the binning factors offered for
// an image type and their display names, whether an acquisition carries a CCD defect map, and
// the field-of-view letter of a shelf position. Each is a pure function of its arguments (and
// of the ClickInfo document it is given).
//
// The camera model is the model text of the instrument ("DZ936R-BV", "Andor iXon"), the
// system type its "System Configuration" ("KORA 200"), the CCD type its "Camera CCD Type"
// ("Sophia 2048B"). Image types are named as in OVSGlobalConstants::g_strImages.

#include "PLImageTypes.h"
#include "ovparser_global.h"

#include <QByteArray>
#include <QString>

class CPLClickInfo;

// The width of the CCD in pixels. The camera model is searched without regard to case, and
// the first rule that holds gives the width:
//   1. the model contains "dz930" or "dz936r": 2048;
//   2. it contains "ds934r": 1024;
//   3. it contains "dz436", or contains "eev" but not "Andor": 1920;
//   4. it contains "site": 1024;
//   5. otherwise 1024 when "andor" (in this case) does not stand at the start of the model,
//      else 1024 when "dw434" (in this case) does not stand there, else 1024 when the model
//      contains "du88", else 1300. The second test always holds once the first has failed, so
//      every model that gets here is 1024 wide: "Andor eev" and "andor eev" among them.
// Then the CCD type may override that width: when it contains "Sophia", a system type that
// contains "KORA 200" gives 1920, and one that contains "KORA 50" gives 2048, the second
// winning when both are contained. The CCD type and the system type are searched without
// regard to case; an empty CCD type, or one without "Sophia", keeps the width of the model.
// The model is only read.
OVPARSER_EXPORT double getCCDPixels(QString& cameraModel, const QString& systemType,
                                    const QString& ccdType);

// The three binning factors offered for an image type: `highSensitivity` (the large factor),
// `medium` and `highResolution` (the small factor); -1 as the high-sensitivity factor means
// that none is offered. The camera model and the image type are compared whole, without regard
// to case. The first group of models is "site", "andor", "dw434", "ds934r"; the second
// "eev", "dz436", "dz930", "dz936r". The factors are, by the first rule that holds:
//   1. image type "Photograph" or "Structure": (-1, 4, 2) for a first-group model, else
//      (-1, 2, 1);
//   2. image type "X-Ray": (-1, 2, 1);
//   3. a first-group model: (8, 4, 2);
//   4. a second-group model: (16, 8, 4);
//   5. any other model: (10, 5, 2).
// The system type and the CCD type do not change the factors. All three outputs are always
// written.
OVPARSER_EXPORT void getCCDBinningsForImageType(const QString& cameraModel,
                                                const QString& systemType, const QString& ccdType,
                                                const QString& imageType, int& highSensitivity,
                                                int& medium, int& highResolution);

// The same factors for an image type given as a tag_eimagetype, as floats. The type stands
// for its shown name (getImageTypeString()), so that:
//   IMAGETYPE_PHOTOGRAPH and IMAGETYPE_STRUCTURE give the photographic factors of rule 1;
//   IMAGETYPE_XRAY gives (-1, 2, 1);
//   every other type, IMAGETYPE_LUMINESCENT_CORRECTED and IMAGETYPE_SATURATION_MAP_2 among
//   them, gives the factors of the model's group (rules 3 to 5); so does IMAGETYPE_FIXED_STAMP,
//   which has no name, and any value outside the enumeration.
// The factors are therefore always among 1, 2, 4, 5, 8, 10 and 16, with -1 for no
// high-sensitivity factor. All three outputs are always written.
OVPARSER_EXPORT void getCCDBinningsForImageType(const QString& cameraModel,
                                                const QString& systemType, const QString& ccdType,
                                                tag_eimagetype imageType, float& highSensitivity,
                                                float& medium, float& highResolution);

// The display name of a binning factor: the factors of the image type come from
// getCCDBinningsForImageType() (integer form, with the same four texts), and `value` is
// compared exactly with each of them, as floats, in the order high resolution, high
// sensitivity, medium; the first equal one names the binning. The names by `style`:
//   0: "HR", "HS", "M";
//   1 and 2 (the same names): "Small (Hi Res)", "Large (Hi Sens)", "Med.";
//   3: "Small (Hi Resolution)", "Large (Hi Sensitivity)", "Medium".
// Any other style has no names. A value equal to none of the factors gives an empty string,
// whatever the style; one equal to a factor under a style without names is a programming
// error that stops the program. A value of -1 equals the high-sensitivity factor of a type
// that offers none and gets its name; callers never pass it.
OVPARSER_EXPORT QString getValueToCCDBinningCode(float value, const QString& cameraModel,
                                                 const QString& systemType, const QString& ccdType,
                                                 const QString& imageType, int style);

// Whether the acquisition carries a CCD defect map: true exactly when its "Camera System
// Info" section holds a "CCDmap" key (in any case) whose value reads as text, an empty value
// included; false without that section or key.
OVPARSER_EXPORT bool hasCCDMapData(CPLClickInfo& clickInfo);

// The field-of-view name of a shelf position. The keys of the "Camera System Info" section
// that begin with "Shelf Position" and contain "FOV" (both in any case) are read in order;
// the first whose value, read as a number (text that is not a number reads as 0), lies
// within 0.00001 of `shelfPosition` (a difference of exactly 0.00001 still matches) and
// whose key holds a single word character between two white-space characters names the
// field of view: `name` is set to the two characters that begin there, the white space and
// the letter, in Latin-1 (" Z" for "Shelf Position Z FOV"). A key whose value matches but
// that holds no such letter is passed over. Returns whether a name was found; `name` is
// changed only then. A null document or one without the section gives false, and so does a
// shelf position that is not a number.
OVPARSER_EXPORT bool getFOVName(CPLClickInfo* clickInfo, double shelfPosition, QByteArray& name);

#endif // PLCCDTABLES_H
