#ifndef PLCONSTANTS_H
#define PLCONSTANTS_H

// The vocabulary of the data files: every file name, folder name, section name, key and fixed
// value that the library writes or looks for. The same words are written into and matched
// against files that other programs read, so each value is kept byte for byte, including case,
// inner and trailing blanks and the odd spellings noted below; none of them is to be corrected.
//
// The constants are defined once in the library and initialised when it is loaded; they never
// change. Array positions are meaningful: other code indexes into the arrays by position.

#include "ovparser_global.h"

#include <QString>

namespace PLConstants {

// Product, company and platform names.
extern OVPARSER_EXPORT const QString PARENT_FOLDER;
extern OVPARSER_EXPORT const QString OLD_PROJECTPATH_FOLDER;
extern OVPARSER_EXPORT const QString COMPANY_NAME;
extern OVPARSER_EXPORT const QString OLD_COMPANY_NAME;
extern OVPARSER_EXPORT const QString OLD_APPLICATION_NAME;
extern OVPARSER_EXPORT const QString APPLICATION_NAME;
extern OVPARSER_EXPORT const QString DEFAULT_TAG_NAME;
extern OVPARSER_EXPORT const QString MAC_APPLICATION_SUPPORT_PATH;
// MAC_APPLICATION_SUPPORT_PATH followed directly (no separator added) by the path of the
// application's property list below it.
extern OVPARSER_EXPORT const QString MAC_APPLICATION_REGISTRY_PATH;

// Text-file syntax and fixed values.
// Line end written between lines: carriage return, line feed.
extern OVPARSER_EXPORT const QString STR_NEWLINE;
// Opens every section header line: three asterisks and one blank.
extern OVPARSER_EXPORT const QString SECTIONKEY_PREFIX;
// A complete user-input section header line; a tab separates the key from the name.
extern OVPARSER_EXPORT const QString COMPLETE_PREFERENCEUSERINPUT_KEY;
extern OVPARSER_EXPORT const QString TEXTFILE_EXTENSION;
extern OVPARSER_EXPORT const QString STRING_YES;
extern OVPARSER_EXPORT const QString STRING_NO;
// Section names of these three sections are empty: their header has nothing after the colon.
extern OVPARSER_EXPORT const QString GRAPHCONTROLS_SECTION_VALUE;
extern OVPARSER_EXPORT const QString CT_ACQUISITION_SECTION_VALUE;
extern OVPARSER_EXPORT const QString RESTORE_RESULTS_SECTION_VALUE;
extern OVPARSER_EXPORT const QString RAWDATA_VALUE;
extern OVPARSER_EXPORT const QString SINGLECLICKANALYSIS_VALUE;
extern OVPARSER_EXPORT const QString ACCUM_KINETIC_OPERN;
extern OVPARSER_EXPORT const QString SINGLE_CLICK_KINETIC;
extern OVPARSER_EXPORT const QString FLUORESCENT_LUMINESCENT_TAG;

// Names of the sectioned text files.
extern OVPARSER_EXPORT const QString CLICKINFO_FILENAME;
extern OVPARSER_EXPORT const QString ANALYZED_CLICKINFO_FILENAME;
extern OVPARSER_EXPORT const QString SEQUENCEINFO_FILENAME;
extern OVPARSER_EXPORT const QString LABELDATASET_FILENAME;
extern OVPARSER_EXPORT const QString BKGSUMMARY_TXT_FILENAME;
extern OVPARSER_EXPORT const QString SLINDEX_TXT_FILENAME;
extern OVPARSER_EXPORT const QString FLINDEX_TXT_FILENAME;
extern OVPARSER_EXPORT const QString BKGINFO_TXT_FILENAME;

// Names of the TIFF images in an acquisition or calibration folder. Some extensions are
// upper-case ".TIF"; that is deliberate and must be kept.
extern OVPARSER_EXPORT const QString BLEMISH_TIF_FILENAME;
extern OVPARSER_EXPORT const QString BLEMISH_PHOTO_TIF_FILENAME;
extern OVPARSER_EXPORT const QString READBIASMEAN_TIF_FILENAME;
extern OVPARSER_EXPORT const QString READBIASSIGMA_TIF_FILENAME;
extern OVPARSER_EXPORT const QString DARKCHARGEIMAGE_TIF_FILENAME;
extern OVPARSER_EXPORT const QString READBIAS_TIF_FILENAME;
extern OVPARSER_EXPORT const QString READSIGMA_TIF_FILENAME;
extern OVPARSER_EXPORT const QString BACKGROUND_TIF_FILENAME;
// The constant's name lacks the R of "STRUCTURE" on purpose; keep it.
extern OVPARSER_EXPORT const QString STUCTURE_REFERENCE_TIF_FILENAME;
extern OVPARSER_EXPORT const QString STRUCTURE_TIF_FILENAME;
extern OVPARSER_EXPORT const QString LUMINESCENT_TIF_FILENAME;
extern OVPARSER_EXPORT const QString FLUORESCENT_REFERENCE_TIF_FILENAME;
// Upper-case ".TIF" (deliberate).
extern OVPARSER_EXPORT const QString ADAPTIVEFLRBKG_TIF_FILENAME;
extern OVPARSER_EXPORT const QString MIRROR_ROI_PHOTO_MASK_TIF_FILENAME;
extern OVPARSER_EXPORT const QString LUMINESCENT_A_TIF;
extern OVPARSER_EXPORT const QString LUMINESCENT_B_TIF;

// Folder names and folder-name prefixes.
extern OVPARSER_EXPORT const QString USERPREFERENCES_FOLDERNAME;
extern OVPARSER_EXPORT const QString DARKCHARGE_FOLDER;
extern OVPARSER_EXPORT const QString SLREFERENCE_FOLDER;
extern OVPARSER_EXPORT const QString FLREFERENCE_FOLDER;
extern OVPARSER_EXPORT const QString AUTOBACKGROUND_FOLDER;
extern OVPARSER_EXPORT const QString EMFILTERS;
extern OVPARSER_EXPORT const QString CAMERA_INFO_EXTENSION_FOLDER;
extern OVPARSER_EXPORT const QString AOICORRDB_FOLDER;
extern OVPARSER_EXPORT const QString BLEMISH_FOLDER;
extern OVPARSER_EXPORT const QString ORGAN_FOLDER;
extern OVPARSER_EXPORT const QString DATABASE_FOLDER;
extern OVPARSER_EXPORT const QString LICENSE_FOLDER;
extern OVPARSER_EXPORT const QString LOG_FOLDER;
extern OVPARSER_EXPORT const QString K2_FOLDER;
extern OVPARSER_EXPORT const QString PHOTODENSITY_MAP_FOLDER;
extern OVPARSER_EXPORT const QString DARKCHARGE_ALT_PATH;
extern OVPARSER_EXPORT const QString OV_USER_STAT_FOLDER;
// "ROIs for " (trailing blank belongs to the value).
extern OVPARSER_EXPORT const QString ROIFOLDERIDENTIFIER;

// Section names, written after the "*** " prefix of a section header line.
extern OVPARSER_EXPORT const QString USERPASS_SECTION_KEY;
extern OVPARSER_EXPORT const QString GRAPHCONTROLS_SECTION_KEY;
extern OVPARSER_EXPORT const QString USERLABELSET_SECTION_KEY;
extern OVPARSER_EXPORT const QString USERINPUT_SECTION_KEY;
extern OVPARSER_EXPORT const QString ANALYSISUSERINPUT_SECTION_KEY;
extern OVPARSER_EXPORT const QString CAMERAINFO_SECTION_KEY;
extern OVPARSER_EXPORT const QString CAMERA_INFO_EXTENSION_SECTION_KEY;
extern OVPARSER_EXPORT const QString KINETICINFO_SECTION_KEY;
extern OVPARSER_EXPORT const QString INFUSIONINFO_SECTION_KEY;
extern OVPARSER_EXPORT const QString ROI_SECTION_KEY;
extern OVPARSER_EXPORT const QString KINROI_SECTION_KEY;
extern OVPARSER_EXPORT const QString TAG_SECTION_KEY;
extern OVPARSER_EXPORT const QString COMMENT_SECTION_KEY;
extern OVPARSER_EXPORT const QString CT_ACQUISITION_SECTION_KEY;
extern OVPARSER_EXPORT const QString RESTORE_RESULTS_SECTION_KEY;
extern OVPARSER_EXPORT const QString SEQUENCEINFO_KEY;
extern OVPARSER_EXPORT const QString EMPTY_SEQUENCE_KEY;
extern OVPARSER_EXPORT const QString USERLABELSET_DEFAULT_SECTIONNAME;
extern OVPARSER_EXPORT const QString OLD_USERLABELSET_DEFAULT_SECTIONNAME;
extern OVPARSER_EXPORT const QString LUMINESCENT_IMAGE_SECTION;
extern OVPARSER_EXPORT const QString PHOTOGRAPH_IMAGE_SECTION;
extern OVPARSER_EXPORT const QString XRAY_IMAGE_SECTION;
extern OVPARSER_EXPORT const QString STRUCTURE_IMAGE_SECTION;
extern OVPARSER_EXPORT const QString READBIAS_IMAGE_SECTION;
extern OVPARSER_EXPORT const QString READSIGMA_IMAGE_SECTION;
extern OVPARSER_EXPORT const QString ADAPTIVE_FLUORESCENT_BKG_IMAGE_SECTION;
extern OVPARSER_EXPORT const QString BLEMISH_IMAGE_SECTION;
extern OVPARSER_EXPORT const QString LUMINESCENT_A_SECTION_KEY;
extern OVPARSER_EXPORT const QString LUMINESCENT_B_SECTION_KEY;

// Keys of the acquisition and sequence sections.
extern OVPARSER_EXPORT const QString USERID_KEY;
extern OVPARSER_EXPORT const QString CLICKNUMBER_KEY;
extern OVPARSER_EXPORT const QString CLICKINFO_BROWSEKEY;
extern OVPARSER_EXPORT const QString CLICKINFOTYPE_KEY;
extern OVPARSER_EXPORT const QString ORVANEVERSION_KEY;
extern OVPARSER_EXPORT const QString ACQUIREDFROMFILE_KEY;
extern OVPARSER_EXPORT const QString MODIFIEDFROMFILE_KEY;
extern OVPARSER_EXPORT const QString RECALIBRATION_COUNT_KEY;
extern OVPARSER_EXPORT const QString READ_BIAS_LEVEL_KEY;
extern OVPARSER_EXPORT const QString READ_BIAS_LOWER_LIMIT_KEY;
extern OVPARSER_EXPORT const QString READ_BIAS_UPPER_LIMIT_KEY;
extern OVPARSER_EXPORT const QString DARK_CHARGE_LIMIT_KEY;
extern OVPARSER_EXPORT const QString PHOTO_IMG_SATURATION_LEVEL;
extern OVPARSER_EXPORT const QString UAC_FIRMWARE_VERSION_KEY;
extern OVPARSER_EXPORT const QString USERINPUT_MUST_KEY;
extern OVPARSER_EXPORT const QString CHOSENLABELNAME_KEY;
extern OVPARSER_EXPORT const QString DEFAULTCALIBRATION_KEY;
extern OVPARSER_EXPORT const QString DISPLAYTYPE_KEY;
extern OVPARSER_EXPORT const QString IGORWAVE_KEY;
// "CommentLine " (trailing blank belongs to the value).
extern OVPARSER_EXPORT const QString COMMENTLINE_KEY;
// "ROI File " (trailing blank belongs to the value).
extern OVPARSER_EXPORT const QString ROIFILESECTIONTAGINUSERFILE;
extern OVPARSER_EXPORT const QString IMAGINGMODE_KEY;
extern OVPARSER_EXPORT const QString MOUSE_SPINNER_ANGLE;
// Plural "ClickNumbers"; SEQUENCEINFO_CLICKNUMBERKEY below is the singular "ClickNumber".
extern OVPARSER_EXPORT const QString SEQUENCEINFO_CLICK_NUMBERS_KEY;
extern OVPARSER_EXPORT const QString SEQUENCEINFO_USERINPUT_KEY;
extern OVPARSER_EXPORT const QString SEQUENCEINFO_USER_LABEL_NAME_SET_KEY;
extern OVPARSER_EXPORT const QString SEQUENCEINFO_CLICKNUMBERKEY;
extern OVPARSER_EXPORT const QString SEQUENCEINFO_BROWSEKEY;
extern OVPARSER_EXPORT const QString CLICKNUMBER_INDEX_KEY;
extern OVPARSER_EXPORT const QString CLICKNUMBER_IN_SEQUENCE_KEY;

// Keys written by image processing and analysis.
extern OVPARSER_EXPORT const QString IMAGE_SUBTYPE_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_LEVEL_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_LEVEL_STRING_KEY;
extern OVPARSER_EXPORT const QString KINETIC_OPERN_KEY;
extern OVPARSER_EXPORT const QString KINETIC_IMAGE_KEY;
extern OVPARSER_EXPORT const QString IMAGEMATH_RESULT_KEY;
extern OVPARSER_EXPORT const QString IMAGEMATH_K_KEY;
extern OVPARSER_EXPORT const QString IMAGEMATH_A_CLICK_KEY;
extern OVPARSER_EXPORT const QString IMAGEMATH_B_CLICK_KEY;
extern OVPARSER_EXPORT const QString IMAGEMATH_PHOTO_CLICK_KEY;
extern OVPARSER_EXPORT const QString FOLDER_ON_DISK_KEY;
extern OVPARSER_EXPORT const QString SATURATED_KEY;
extern OVPARSER_EXPORT const QString CCD_CORRECTED_KEY;
extern OVPARSER_EXPORT const QString BACKGROUND_CORRECTED_KEY;
extern OVPARSER_EXPORT const QString FLAT_FIELD_CORRECTED_KEY;
extern OVPARSER_EXPORT const QString IS_ROTATED_KEY;
extern OVPARSER_EXPORT const QString SPEC_UNMIX_SEQUENCE_KEY;
extern OVPARSER_EXPORT const QString SPEC_UNMIX_CONC_NAME;
// "Tissue Properties " (trailing blank belongs to the value).
extern OVPARSER_EXPORT const QString TISSUE_PROPERTIES;
// "Source Model " (trailing blank belongs to the value).
extern OVPARSER_EXPORT const QString SOURCE_MODEL;
extern OVPARSER_EXPORT const QString NORMALIZATION_MINIMAL_COUNTS;
extern OVPARSER_EXPORT const QString RAW_BINNING_TRANSMISSION;
extern OVPARSER_EXPORT const QString BACKGROUND_CLICK_KEY;

// Imaging modes, the values of the IMAGINGMODE_KEY key.
extern OVPARSER_EXPORT const QString IM_HIGHRESOLUTION;
extern OVPARSER_EXPORT const QString IM_LARGEANIMAL;
extern OVPARSER_EXPORT const QString IM_MOUSE;
extern OVPARSER_EXPORT const QString IM_PHANTOM;
extern OVPARSER_EXPORT const QString IM_WELL_PLATE;
extern OVPARSER_EXPORT const QString IM_OTHER;
extern OVPARSER_EXPORT const QString IM_SPECIMEN;

// 3D objects, probes and fiducial positions.
extern OVPARSER_EXPORT const QString _3DMESH;
extern OVPARSER_EXPORT const QString _3DVOLUME;
extern OVPARSER_EXPORT const QString _3DSOURCE;
extern OVPARSER_EXPORT const QString _3DSURFACE;
extern OVPARSER_EXPORT const QString _3DORGANS;
extern OVPARSER_EXPORT const QString _3DCB_OBJECTS;
extern OVPARSER_EXPORT const QString PROBE_QDOT_INFO;
extern OVPARSER_EXPORT const QString PROBE_INPUT_EX_EM;
extern OVPARSER_EXPORT const QString FIDUCIAL_POSITION_FRONT;
extern OVPARSER_EXPORT const QString FIDUCIAL_POSITION_MIDDLE_FRONT;
extern OVPARSER_EXPORT const QString FIDUCIAL_POSITION_MIDDLE;
extern OVPARSER_EXPORT const QString FIDUCIAL_POSITION_MIDDLE_BACK;
extern OVPARSER_EXPORT const QString FIDUCIAL_POSITION_BACK;

// User preference settings: sections and keys of optical properties, reconstruction and
// automatic ROI placement.
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_OPT_PROPS_SECTIONS;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_DLIT_SECTION;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_SPIM_SECTION;
// "Tissue Properties" without a trailing blank, unlike TISSUE_PROPERTIES (deliberate).
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_TISSUE_PROPS_KEY;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_BIOLUMIN_SPECTRUM_KEY;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_FLUOR_SPECTRUM_KEY;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_SRC_SPECTRUM_KEY;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_OPT_PLOT_SECTIONS;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_IOR_KEY;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_DLIT_ANGLE_LIMIT_KEY;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_DLIT_N_SURF_LOWER_KEY;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_DLIT_VS_KEY;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_DLIT_UNIFORM_SURF_SAMPLE_KEY;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_DLIT_PATH_AVG_SIZE_KEY;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_DLIT_SMOOTH_MESH_KEY;
// Intentionally the same text as USER_PREFERENCE_SETTINGS_IOR_KEY.
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_DLIT_IOR_KEY;
// The constant's name is misspelt ("PERFERENCE") on purpose; keep it.
extern OVPARSER_EXPORT const QString USER_PERFERENCE_SETTINGS_AF_ON;
extern OVPARSER_EXPORT const QString USER_PREFS_MEAS_AUTO_ROI_SECTIONS;
extern OVPARSER_EXPORT const QString USER_PREFS_SUBJ_AUTO_ROI_SECTIONS;
extern OVPARSER_EXPORT const QString USER_PREFS_MEAS_AUTO_ROI_ROIEDGE_KEY;
extern OVPARSER_EXPORT const QString USER_PREFS_MEAS_AUTO_ROI_LOWERLIMIT_KEY;
extern OVPARSER_EXPORT const QString USER_PREFS_MEAS_AUTO_ROI_MINROISIZE_KEY;
extern OVPARSER_EXPORT const QString USER_PREFS_SUBJ_AUTO_ROI_CUTOFF_PARAM_KEY;
extern OVPARSER_EXPORT const QString USER_PREFS_SUBJ_AUTO_ROI_SCALEFACTOR_KEY;
extern OVPARSER_EXPORT const QString USER_PREFS_SUBJ_AUTO_ROI_SMALL_LIMIT_A_KEY;
extern OVPARSER_EXPORT const QString USER_PREFS_SUBJ_AUTO_ROI_SMALL_LIMIT_B_KEY;
extern OVPARSER_EXPORT const QString USER_PREFS_SUBJ_AUTO_ROI_THRESH_METHOD_KEY;

// User preference settings: data-management server and camera settings.
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_VAULTLINE_PREFS_SECTION;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_VAULTLINE_SERVER;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_VAULTLINE_USER;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_VAULTLINE_PWD;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_VAULTLINE_USE_PROXY;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_VAULTLINE_PROXY_SERVER;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_VAULTLINE_PROXY_PORT;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_VAULTLINE_INTEGRATION;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_CAMERA_SETTINGS_SECTION;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_PHOTO_EXPOSURE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_LUMIN_EXPOSURE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_FLUOR_EXPOSURE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_LUMIN_EXPOSURE_TIME_UNIT;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_FLUOR_EXPOSURE_TIME_UNIT;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_CAMERA_BINNING_CHOICE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_PHOTO_BINNING;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_PHOTO_BINNING_TYPE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_LUMIN_BINNING;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_LUMIN_BINNING_TYPE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_XRAY_BINNING;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_XRAY_BINNING_TYPE;

// User preference settings: display and automatic exposure.
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_PREFS_SECTION;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_BG_COLOR_TYPE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_BG_SOLID_COLOR;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_BG_GRADIENT_TOP_COLOR;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_BG_GRADIENT_BOTTOM_COLOR;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_LUMIN_COLOR_TABLE;
// "Fluor Color table" with a lower-case "table" (deliberate, must not be corrected).
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_FLUOR_COLOR_TABLE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_LUMIN_REVERSE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_FLUOR_REVERSE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_LOADTIME_PALETTE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_LUMIN_ROI_LINE_COLOR;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_FLUOR_ROI_LINE_COLOR;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVOLUME_COLOR_TABLE;
// "3DVolume Reverse CheckBox" with a capital B, unlike the "Checkbox" keys above (deliberate).
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVOLUME_REVERSE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_PRESET_BG_COLOR_TYPE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_PRESET_BG_COLOR;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_2DVIEW_BG_SOLID_COLOR;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_TEXT_COLOR;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_2DVIEW_TEXT_COLOR;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_SURFACE_COLOR;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_2DVIEW_TEXT_SIZE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_TEXT_SIZE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_3DVIEW_CT_TARGET_TYPE;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_SECTION;
// The names are misspelt ("PREFERECNCE") on purpose; keep them.
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_PREFERECNCE1;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_PREFERECNCE2;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_PREFERECNCE3;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_EXPOSURE_MIN;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_EXPOSURE_MAX;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_FSTOP_MIN;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_FSTOP_MIN_XFOV24;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_FSTOP_MAX;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_BINNING_MIN;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_BINNING_MAX;
extern OVPARSER_EXPORT const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_LUMIN_TARGET_MAX_COUNT;
extern OVPARSER_EXPORT const QString
    USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_EPI_FLUOR_TARGET_MAX_COUNT;
extern OVPARSER_EXPORT const QString
    USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_TRANS_FLUOR_TARGET_MAX_COUNT;

// Keys of the user label name set.
extern OVPARSER_EXPORT const QString strUserLabelSetKeys[16];
// Intensity calibration values, as written for the "Intensity Calibration" key.
extern OVPARSER_EXPORT const QString strIntensityCalibrationValues[4];
// Keys of the imaging parameters of an acquisition.
extern OVPARSER_EXPORT const QString strImagingParams[8];
// Weekday names, indexed by the zero-based weekday of a calendar time (Sunday is 0).
extern OVPARSER_EXPORT const QString strDayKeys[7];
// Month names and two-digit month numbers, indexed by the zero-based month (January is 0).
extern OVPARSER_EXPORT const QString strMonthKeys[12];
extern OVPARSER_EXPORT const QString strMonthDisplayKeys[12];
// Graph control keys of a sequence.
extern OVPARSER_EXPORT const QString strSeqGraphSectionKeys[9];
// Keys of one ROI entry of an ROI section.
extern OVPARSER_EXPORT const QString strROISectionValues[14];
// Sections of a ClickInfo document that carry the palette and image settings. The array's name
// and the element "readbsigma image" are misspelt on purpose, and "Blemish Image" is capitalised
// unlike BLEMISH_IMAGE_SECTION; none of these is to be corrected.
extern OVPARSER_EXPORT const QString strClickPalleteSection[19];
// Keys of the "Graph Controls" section and, at the same position, the default value of each.
extern OVPARSER_EXPORT const QString strGraphSectionKeys[17];
extern OVPARSER_EXPORT const QString strGraphSectionValues[17];
// Twelve pairs: an even position holds a column title shown when browsing acquisitions, the
// following odd position the acquisition key whose value fills the column. "Field of View" and
// "EM Gain" appear as both title and key (deliberate).
extern OVPARSER_EXPORT const QString strBrowseImage_NameKeyPairs[24];
// Acquisition keys of a ClickInfo document.
extern OVPARSER_EXPORT const QString strClickInfoKeys[58];
// Keys of the "CT Acquisition Parameters" section.
extern OVPARSER_EXPORT const QString strCTSectionKeys[39];

} // namespace PLConstants

namespace OVSGlobalConstants {

// Section names of the images of an acquisition; the position is the numeric image type.
extern OVPARSER_EXPORT const QString g_strImageSections[13];
// Display names of the images; the position is the numeric image type.
extern OVPARSER_EXPORT const QString g_strImages[17];
// Principal sections of a ClickInfo document.
extern OVPARSER_EXPORT const QString g_strClickInfoSections[6];
// Name of the 3D view.
extern OVPARSER_EXPORT const QString g_str3DViz[1];
// Names of the colour tables of 2D images.
extern OVPARSER_EXPORT const QString g_strColorTable[11];
// Names of the colour tables of 3D volumes.
extern OVPARSER_EXPORT const QString g_strVolumeColorTable[13];
// Names of the intensity display units.
extern OVPARSER_EXPORT const QString g_strDisplayUnit[4];
// Measurement column names for counts, photons and efficiency.
extern OVPARSER_EXPORT const QString g_strCountsUnit[5];
extern OVPARSER_EXPORT const QString g_strPhotonUnit[5];
extern OVPARSER_EXPORT const QString g_strEfficiencyUnit[5];
// Preset background colours of the 3D view.
extern OVPARSER_EXPORT const QString g_strPresetColors[3];
// Target types of a CT reconstruction.
extern OVPARSER_EXPORT const QString g_strCTTargetTYPES[2];
// Style sheet of a selected tab; the runs of eight tabs belong to the text.
extern OVPARSER_EXPORT const QString g_strTabStyleSheet[1];

} // namespace OVSGlobalConstants

#endif // PLCONSTANTS_H
