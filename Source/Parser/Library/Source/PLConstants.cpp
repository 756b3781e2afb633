#include "PLConstants.h"

// Every value below is written into or matched against data files exactly as it stands here;
// odd spellings, capitals and trailing blanks are part of the file vocabulary.

namespace PLConstants {

// Product, company and platform names.
const QString PARENT_FOLDER = QStringLiteral("/../");
const QString OLD_PROJECTPATH_FOLDER = QStringLiteral("Tessaly Life Sciences");
const QString COMPANY_NAME = QStringLiteral("Pellion");
const QString OLD_COMPANY_NAME = QStringLiteral("Morvex");
const QString OLD_APPLICATION_NAME = QStringLiteral("Orvane 3D Analysis");
const QString APPLICATION_NAME = QStringLiteral("Orvane");
const QString DEFAULT_TAG_NAME = QStringLiteral("Orvane");
const QString MAC_APPLICATION_SUPPORT_PATH = QStringLiteral("/Library/Application Support");
// Must stay after MAC_APPLICATION_SUPPORT_PATH: constants of one file are initialised in the
// order of their definitions.
const QString MAC_APPLICATION_REGISTRY_PATH = MAC_APPLICATION_SUPPORT_PATH
    + QStringLiteral("/Pellion/Orvane/com.tessaly-life-sciences.Orvane.plist");

// Text-file syntax and fixed values.
const QString STR_NEWLINE = QStringLiteral("\r\n");
const QString SECTIONKEY_PREFIX = QStringLiteral("*** ");
const QString COMPLETE_PREFERENCEUSERINPUT_KEY = QStringLiteral("*** User Input:\t(User Profile)");
const QString TEXTFILE_EXTENSION = QStringLiteral(".txt");
const QString STRING_YES = QStringLiteral("Yes");
const QString STRING_NO = QStringLiteral("No");
const QString GRAPHCONTROLS_SECTION_VALUE = QStringLiteral("");
const QString CT_ACQUISITION_SECTION_VALUE = QStringLiteral("");
const QString RESTORE_RESULTS_SECTION_VALUE = QStringLiteral("");
const QString RAWDATA_VALUE = QStringLiteral("RawData");
const QString SINGLECLICKANALYSIS_VALUE = QStringLiteral("SingleClickAnalysis");
const QString ACCUM_KINETIC_OPERN = QStringLiteral("Accumulated");
const QString SINGLE_CLICK_KINETIC = QStringLiteral("SingleClick");
const QString FLUORESCENT_LUMINESCENT_TAG = QStringLiteral("fluorescent");

// Names of the sectioned text files.
const QString CLICKINFO_FILENAME = QStringLiteral("ClickInfo.txt");
const QString ANALYZED_CLICKINFO_FILENAME = QStringLiteral("AnalyzedClickInfo.txt");
const QString SEQUENCEINFO_FILENAME = QStringLiteral("SequenceInfo.txt");
const QString LABELDATASET_FILENAME = QStringLiteral("UserLabelNames.txt");
const QString BKGSUMMARY_TXT_FILENAME = QStringLiteral("BkgSummary.txt");
const QString SLINDEX_TXT_FILENAME = QStringLiteral("SLindex.txt");
const QString FLINDEX_TXT_FILENAME = QStringLiteral("FLindex.txt");
const QString BKGINFO_TXT_FILENAME = QStringLiteral("BkgInfo.txt");

// Names of the TIFF images (the upper-case ".TIF" names are deliberate).
const QString BLEMISH_TIF_FILENAME = QStringLiteral("Blemish.tif");
const QString BLEMISH_PHOTO_TIF_FILENAME = QStringLiteral("Blemish-photo.tif");
const QString READBIASMEAN_TIF_FILENAME = QStringLiteral("ReadBiasMean.tif");
const QString READBIASSIGMA_TIF_FILENAME = QStringLiteral("ReadBiasSigma.tif");
const QString DARKCHARGEIMAGE_TIF_FILENAME = QStringLiteral("DarkChargeImage.tif");
const QString READBIAS_TIF_FILENAME = QStringLiteral("readbias.tif");
const QString READSIGMA_TIF_FILENAME = QStringLiteral("readsigma.tif");
const QString BACKGROUND_TIF_FILENAME = QStringLiteral("background.tif");
const QString STUCTURE_REFERENCE_TIF_FILENAME = QStringLiteral("reference.tif");
const QString STRUCTURE_TIF_FILENAME = QStringLiteral("structure.tif");
const QString LUMINESCENT_TIF_FILENAME = QStringLiteral("luminescent.tif");
const QString FLUORESCENT_REFERENCE_TIF_FILENAME = QStringLiteral("fluorescentreference.tif");
const QString ADAPTIVEFLRBKG_TIF_FILENAME = QStringLiteral("FluorescentAdptBkg.TIF");
const QString MIRROR_ROI_PHOTO_MASK_TIF_FILENAME = QStringLiteral("MirrorROIPhotoMask.TIF");
const QString LUMINESCENT_A_TIF = QStringLiteral("luminescentA.TIF");
const QString LUMINESCENT_B_TIF = QStringLiteral("luminescentB.TIF");

// Folder names and folder-name prefixes.
const QString USERPREFERENCES_FOLDERNAME = QStringLiteral("profiles");
const QString DARKCHARGE_FOLDER = QStringLiteral("Background");
const QString SLREFERENCE_FOLDER = QStringLiteral("SLReference");
const QString FLREFERENCE_FOLDER = QStringLiteral("FLReference");
const QString AUTOBACKGROUND_FOLDER = QStringLiteral("Auto Background");
const QString EMFILTERS = QStringLiteral("emfilters");
const QString CAMERA_INFO_EXTENSION_FOLDER = QStringLiteral("config");
const QString AOICORRDB_FOLDER = QStringLiteral("AOICorrDB");
const QString BLEMISH_FOLDER = QStringLiteral("Blemish");
const QString ORGAN_FOLDER = QStringLiteral("organs");
const QString DATABASE_FOLDER = QStringLiteral("database");
const QString LICENSE_FOLDER = QStringLiteral("License");
const QString LOG_FOLDER = QStringLiteral("log");
const QString K2_FOLDER = QStringLiteral("K2TempFolder");
const QString PHOTODENSITY_MAP_FOLDER = QStringLiteral("PhotoDensityMap");
const QString DARKCHARGE_ALT_PATH = QStringLiteral("Darkcharge Path");
const QString OV_USER_STAT_FOLDER = QStringLiteral("Usage");
const QString ROIFOLDERIDENTIFIER = QStringLiteral("ROIs for ");

// Section names.
const QString USERPASS_SECTION_KEY = QStringLiteral("User Password");
const QString GRAPHCONTROLS_SECTION_KEY = QStringLiteral("Graph Controls");
const QString USERLABELSET_SECTION_KEY = QStringLiteral("User Label Name Set");
const QString USERINPUT_SECTION_KEY = QStringLiteral("User Input");
const QString ANALYSISUSERINPUT_SECTION_KEY = QStringLiteral("Analysis User Input");
const QString CAMERAINFO_SECTION_KEY = QStringLiteral("Camera System Info");
const QString CAMERA_INFO_EXTENSION_SECTION_KEY = QStringLiteral("Extension Info");
const QString KINETICINFO_SECTION_KEY = QStringLiteral("Kinetic Info");
const QString INFUSIONINFO_SECTION_KEY = QStringLiteral("Infusion Info");
const QString ROI_SECTION_KEY = QStringLiteral("ROIs");
const QString KINROI_SECTION_KEY = QStringLiteral("Kinetic ROIs");
const QString TAG_SECTION_KEY = QStringLiteral("Tags");
const QString COMMENT_SECTION_KEY = QStringLiteral("Comments");
const QString CT_ACQUISITION_SECTION_KEY = QStringLiteral("CT Acquisition Parameters");
const QString RESTORE_RESULTS_SECTION_KEY = QStringLiteral("Restore Results");
const QString SEQUENCEINFO_KEY = QStringLiteral("Sequence");
const QString EMPTY_SEQUENCE_KEY = QStringLiteral("Empty Sequence");
const QString USERLABELSET_DEFAULT_SECTIONNAME = QStringLiteral("Orvane Universal");
const QString OLD_USERLABELSET_DEFAULT_SECTIONNAME = QStringLiteral("Morvex Universal");
const QString LUMINESCENT_IMAGE_SECTION = QStringLiteral("luminescent image");
const QString PHOTOGRAPH_IMAGE_SECTION = QStringLiteral("photographic image");
const QString XRAY_IMAGE_SECTION = QStringLiteral("x-ray image");
const QString STRUCTURE_IMAGE_SECTION = QStringLiteral("structure image");
const QString READBIAS_IMAGE_SECTION = QStringLiteral("readbias image");
const QString READSIGMA_IMAGE_SECTION = QStringLiteral("readsigma image");
const QString ADAPTIVE_FLUORESCENT_BKG_IMAGE_SECTION
    = QStringLiteral("Adaptive Fluorescent Bkg Image");
const QString BLEMISH_IMAGE_SECTION = QStringLiteral("blemish image");
const QString LUMINESCENT_A_SECTION_KEY = QStringLiteral("luminescent A image");
const QString LUMINESCENT_B_SECTION_KEY = QStringLiteral("luminescent B image");

// Keys of the acquisition and sequence sections.
const QString USERID_KEY = QStringLiteral("User ID");
const QString CLICKNUMBER_KEY = QStringLiteral("ClickNumber");
const QString CLICKINFO_BROWSEKEY = QStringLiteral("Click Number");
const QString CLICKINFOTYPE_KEY = QStringLiteral("ClickInfoType");
const QString ORVANEVERSION_KEY = QStringLiteral("Orvane Version");
const QString ACQUIREDFROMFILE_KEY = QStringLiteral("Acquired From File");
const QString MODIFIEDFROMFILE_KEY = QStringLiteral("Modified Since Saved");
const QString RECALIBRATION_COUNT_KEY = QStringLiteral("Recalibration Count");
const QString READ_BIAS_LEVEL_KEY = QStringLiteral("Read Bias Level");
const QString READ_BIAS_LOWER_LIMIT_KEY = QStringLiteral("Read Bias Lower Limit");
const QString READ_BIAS_UPPER_LIMIT_KEY = QStringLiteral("Read Bias Upper Limit");
const QString DARK_CHARGE_LIMIT_KEY = QStringLiteral("Dark Charge Outlier Limit");
const QString PHOTO_IMG_SATURATION_LEVEL = QStringLiteral("Photo Image Saturation Level");
const QString UAC_FIRMWARE_VERSION_KEY = QStringLiteral("UAC Firmware Version");
const QString USERINPUT_MUST_KEY = QStringLiteral("Displayed Key Choices");
const QString CHOSENLABELNAME_KEY = QStringLiteral("Chosen User Label Name Set");
const QString DEFAULTCALIBRATION_KEY = QStringLiteral("Preferred calibration");
const QString DISPLAYTYPE_KEY = QStringLiteral("Display Type");
const QString IGORWAVE_KEY = QStringLiteral("Igor Wave Note");
const QString COMMENTLINE_KEY = QStringLiteral("CommentLine ");
const QString ROIFILESECTIONTAGINUSERFILE = QStringLiteral("ROI File ");
const QString IMAGINGMODE_KEY = QStringLiteral("Imaging Mode");
const QString MOUSE_SPINNER_ANGLE = QStringLiteral("MVI-2 Angle");
const QString SEQUENCEINFO_CLICK_NUMBERS_KEY = QStringLiteral("ClickNumbers");
const QString SEQUENCEINFO_USERINPUT_KEY = QStringLiteral("User Input");
const QString SEQUENCEINFO_USER_LABEL_NAME_SET_KEY = QStringLiteral("User Label Name Set");
const QString SEQUENCEINFO_CLICKNUMBERKEY = QStringLiteral("ClickNumber");
const QString SEQUENCEINFO_BROWSEKEY = QStringLiteral("Sequence ID");
const QString CLICKNUMBER_INDEX_KEY = QStringLiteral("ClickNumber Index");
const QString CLICKNUMBER_IN_SEQUENCE_KEY = QStringLiteral("ClickNumbers in Sequence");

// Keys written by image processing and analysis.
const QString IMAGE_SUBTYPE_KEY = QStringLiteral("Image Subtype");
const QString FLUORESCENCE_LEVEL_KEY = QStringLiteral("Fluorescence level");
const QString FLUORESCENCE_LEVEL_STRING_KEY = QStringLiteral("Fluorescence level string");
const QString KINETIC_OPERN_KEY = QStringLiteral("Kinetic Operation");
const QString KINETIC_IMAGE_KEY = QStringLiteral("Kinetic ClickNumber");
const QString IMAGEMATH_RESULT_KEY = QStringLiteral("Image Math Operation");
const QString IMAGEMATH_K_KEY = QStringLiteral("Image Math k");
const QString IMAGEMATH_A_CLICK_KEY = QStringLiteral("Image Math A ClickNumber");
const QString IMAGEMATH_B_CLICK_KEY = QStringLiteral("Image Math B ClickNumber");
const QString IMAGEMATH_PHOTO_CLICK_KEY = QStringLiteral("Image Math Photo ClickNumber");
const QString FOLDER_ON_DISK_KEY = QStringLiteral("Folder On Disk");
const QString SATURATED_KEY = QStringLiteral("Saturated");
const QString CCD_CORRECTED_KEY = QStringLiteral("CCD Corrected");
const QString BACKGROUND_CORRECTED_KEY = QStringLiteral("Background Corrected");
const QString FLAT_FIELD_CORRECTED_KEY = QStringLiteral("Flat Field Corrected");
const QString IS_ROTATED_KEY = QStringLiteral("isRotated");
const QString SPEC_UNMIX_SEQUENCE_KEY = QStringLiteral("Spectral Unmix Seq Dataset");
const QString SPEC_UNMIX_CONC_NAME = QStringLiteral("Unmixed Concentration");
const QString TISSUE_PROPERTIES = QStringLiteral("Tissue Properties ");
const QString SOURCE_MODEL = QStringLiteral("Source Model ");
const QString NORMALIZATION_MINIMAL_COUNTS = QStringLiteral("Minimal Counts For Normalization");
const QString RAW_BINNING_TRANSMISSION = QStringLiteral("Raw Binning");
const QString BACKGROUND_CLICK_KEY = QStringLiteral("Background Click");

// Imaging modes.
const QString IM_HIGHRESOLUTION = QStringLiteral("High Resolution");
const QString IM_LARGEANIMAL = QStringLiteral("Large Animal");
const QString IM_MOUSE = QStringLiteral("Mouse");
const QString IM_PHANTOM = QStringLiteral("Phantom-XFM");
const QString IM_WELL_PLATE = QStringLiteral("Well Plate");
const QString IM_OTHER = QStringLiteral("Other");
const QString IM_SPECIMEN = QStringLiteral("Specimen");

// 3D objects, probes and fiducial positions.
const QString _3DMESH = QStringLiteral("3DMesh");
const QString _3DVOLUME = QStringLiteral("3DVolume");
const QString _3DSOURCE = QStringLiteral("3DSource");
const QString _3DSURFACE = QStringLiteral("Generic Surface");
const QString _3DORGANS = QStringLiteral("Organ Surface");
const QString _3DCB_OBJECTS = QStringLiteral("Clipboard Pasted Objects");
const QString PROBE_QDOT_INFO = QStringLiteral("Qdot info");
const QString PROBE_INPUT_EX_EM = QStringLiteral("Input Ex/Em");
const QString FIDUCIAL_POSITION_FRONT = QStringLiteral("Fiducial Position Front");
const QString FIDUCIAL_POSITION_MIDDLE_FRONT = QStringLiteral("Fiducial Position Middle Front");
const QString FIDUCIAL_POSITION_MIDDLE = QStringLiteral("Fiducial Position Middle");
const QString FIDUCIAL_POSITION_MIDDLE_BACK = QStringLiteral("Fiducial Position Middle Back");
const QString FIDUCIAL_POSITION_BACK = QStringLiteral("Fiducial Position Back");

// User preference settings: optical properties, reconstruction and automatic ROI placement.
const QString USER_PREFERENCE_SETTINGS_OPT_PROPS_SECTIONS = QStringLiteral("Optical Properties");
const QString USER_PREFERENCE_SETTINGS_DLIT_SECTION = QStringLiteral("DLIT");
const QString USER_PREFERENCE_SETTINGS_SPIM_SECTION = QStringLiteral("SpIM");
const QString USER_PREFERENCE_SETTINGS_TISSUE_PROPS_KEY = QStringLiteral("Tissue Properties");
const QString USER_PREFERENCE_SETTINGS_BIOLUMIN_SPECTRUM_KEY
    = QStringLiteral("Bioluminescent Spectrum");
const QString USER_PREFERENCE_SETTINGS_FLUOR_SPECTRUM_KEY = QStringLiteral("Fluorescent Spectrum");
const QString USER_PREFERENCE_SETTINGS_SRC_SPECTRUM_KEY = QStringLiteral("Source Spectrum");
const QString USER_PREFERENCE_SETTINGS_OPT_PLOT_SECTIONS = QStringLiteral("Plot Section");
const QString USER_PREFERENCE_SETTINGS_IOR_KEY = QStringLiteral("Index of Refraction");
const QString USER_PREFERENCE_SETTINGS_DLIT_PREFS_SECTIONS = QStringLiteral("DLIT Params");
const QString USER_PREFERENCE_SETTINGS_DLIT_ANGLE_LIMIT_KEY = QStringLiteral("Angle Limit");
const QString USER_PREFERENCE_SETTINGS_DLIT_N_SURF_LOWER_KEY = QStringLiteral("N Surface Lower");
const QString USER_PREFERENCE_SETTINGS_DLIT_VS_KEY = QStringLiteral("Starting Voxel Size");
const QString USER_PREFERENCE_SETTINGS_DLIT_UNIFORM_SURF_SAMPLE_KEY
    = QStringLiteral("Uniform Surface Sampling");
const QString USER_PREFERENCE_SETTINGS_DLIT_PATH_AVG_SIZE_KEY = QStringLiteral("Path Avg Size");
const QString USER_PREFERENCE_SETTINGS_DLIT_SMOOTH_MESH_KEY = QStringLiteral("Smooth Mesh Surface");
const QString USER_PREFERENCE_SETTINGS_DLIT_IOR_KEY = QStringLiteral("Index of Refraction");
const QString USER_PERFERENCE_SETTINGS_AF_ON = QStringLiteral("Auto Fluorescence");
const QString USER_PREFS_MEAS_AUTO_ROI_SECTIONS = QStringLiteral("Measurement Auto ROI Settings");
const QString USER_PREFS_SUBJ_AUTO_ROI_SECTIONS = QStringLiteral("Subject Auto ROI Settings");
const QString USER_PREFS_MEAS_AUTO_ROI_ROIEDGE_KEY = QStringLiteral("ROI Edge");
const QString USER_PREFS_MEAS_AUTO_ROI_LOWERLIMIT_KEY = QStringLiteral("Lower Limit");
const QString USER_PREFS_MEAS_AUTO_ROI_MINROISIZE_KEY = QStringLiteral("Min ROI Size");
const QString USER_PREFS_SUBJ_AUTO_ROI_CUTOFF_PARAM_KEY = QStringLiteral("Cutoff Param");
const QString USER_PREFS_SUBJ_AUTO_ROI_SCALEFACTOR_KEY = QStringLiteral("Scale Factor");
const QString USER_PREFS_SUBJ_AUTO_ROI_SMALL_LIMIT_A_KEY = QStringLiteral("Small ROI Limit A");
const QString USER_PREFS_SUBJ_AUTO_ROI_SMALL_LIMIT_B_KEY = QStringLiteral("Small ROI Limit B");
const QString USER_PREFS_SUBJ_AUTO_ROI_THRESH_METHOD_KEY = QStringLiteral("Threshold Method");

// User preference settings: data-management server and camera settings.
const QString USER_PREFERENCE_SETTINGS_VAULTLINE_PREFS_SECTION = QStringLiteral("Vaultline");
const QString USER_PREFERENCE_SETTINGS_VAULTLINE_SERVER = QStringLiteral("Server");
const QString USER_PREFERENCE_SETTINGS_VAULTLINE_USER = QStringLiteral("User");
const QString USER_PREFERENCE_SETTINGS_VAULTLINE_PWD = QStringLiteral("Pwd");
const QString USER_PREFERENCE_SETTINGS_VAULTLINE_USE_PROXY = QStringLiteral("Use Proxy");
const QString USER_PREFERENCE_SETTINGS_VAULTLINE_PROXY_SERVER = QStringLiteral("Proxy Server");
const QString USER_PREFERENCE_SETTINGS_VAULTLINE_PROXY_PORT = QStringLiteral("Proxy Port");
const QString USER_PREFERENCE_SETTINGS_VAULTLINE_INTEGRATION
    = QStringLiteral("Vaultline Integration");
const QString USER_PREFERENCE_SETTINGS_CAMERA_SETTINGS_SECTION = QStringLiteral("Camera Settings");
const QString USER_PREFERENCE_SETTINGS_PHOTO_EXPOSURE = QStringLiteral("Photo Exposure");
const QString USER_PREFERENCE_SETTINGS_LUMIN_EXPOSURE = QStringLiteral("Lumin Exposure");
const QString USER_PREFERENCE_SETTINGS_FLUOR_EXPOSURE = QStringLiteral("Fluor Exposure");
const QString USER_PREFERENCE_SETTINGS_LUMIN_EXPOSURE_TIME_UNIT
    = QStringLiteral("Lumin Exposure Time Unit");
const QString USER_PREFERENCE_SETTINGS_FLUOR_EXPOSURE_TIME_UNIT
    = QStringLiteral("Fluor Exposure Time Unit");
const QString USER_PREFERENCE_SETTINGS_CAMERA_BINNING_CHOICE = QStringLiteral("Binning Choice");
const QString USER_PREFERENCE_SETTINGS_PHOTO_BINNING = QStringLiteral("Photo Binning");
const QString USER_PREFERENCE_SETTINGS_PHOTO_BINNING_TYPE = QStringLiteral("Photo Binning Type");
const QString USER_PREFERENCE_SETTINGS_LUMIN_BINNING = QStringLiteral("Lumin Binning");
const QString USER_PREFERENCE_SETTINGS_LUMIN_BINNING_TYPE = QStringLiteral("Lumin Binning Type");
const QString USER_PREFERENCE_SETTINGS_XRAY_BINNING = QStringLiteral("X-ray Binning");
const QString USER_PREFERENCE_SETTINGS_XRAY_BINNING_TYPE = QStringLiteral("X-ray Binning Type");

// User preference settings: display and automatic exposure.
const QString USER_PREFERENCE_SETTINGS_3DVIEW_PREFS_SECTION = QStringLiteral("3D View Preferences");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_BG_COLOR_TYPE
    = QStringLiteral("3D View Background Color Type");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_BG_SOLID_COLOR
    = QStringLiteral("3D View Background Solid Color");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_BG_GRADIENT_TOP_COLOR
    = QStringLiteral("3D View Background Gradient Top Color");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_BG_GRADIENT_BOTTOM_COLOR
    = QStringLiteral("3D View Background Gradient Bottom Color");
const QString USER_PREFERENCE_SETTINGS_LUMIN_COLOR_TABLE = QStringLiteral("Lumin Color Table");
const QString USER_PREFERENCE_SETTINGS_FLUOR_COLOR_TABLE = QStringLiteral("Fluor Color table");
const QString USER_PREFERENCE_SETTINGS_LUMIN_REVERSE = QStringLiteral("Lumin Reverse Checkbox");
const QString USER_PREFERENCE_SETTINGS_FLUOR_REVERSE = QStringLiteral("Fluor Reverse Checkbox");
const QString USER_PREFERENCE_SETTINGS_LOADTIME_PALETTE
    = QStringLiteral("Use Palette Settings during Load Time");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_LUMIN_ROI_LINE_COLOR
    = QStringLiteral("Lumin ROI Line Color");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_FLUOR_ROI_LINE_COLOR
    = QStringLiteral("Fluor ROI Line Color");
const QString USER_PREFERENCE_SETTINGS_3DVOLUME_COLOR_TABLE
    = QStringLiteral("3DVolume Color Table");
const QString USER_PREFERENCE_SETTINGS_3DVOLUME_REVERSE
    = QStringLiteral("3DVolume Reverse CheckBox");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_PRESET_BG_COLOR_TYPE
    = QStringLiteral("3D View Background preset color Type");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_PRESET_BG_COLOR
    = QStringLiteral("3D View Background preset color");
const QString USER_PREFERENCE_SETTINGS_2DVIEW_BG_SOLID_COLOR
    = QStringLiteral("2D View Background solid color");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_TEXT_COLOR = QStringLiteral("3D View Text Color");
const QString USER_PREFERENCE_SETTINGS_2DVIEW_TEXT_COLOR = QStringLiteral("2D View Text Color");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_SURFACE_COLOR = QStringLiteral("3D Surface Color");
const QString USER_PREFERENCE_SETTINGS_2DVIEW_TEXT_SIZE = QStringLiteral("2D Text Size");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_TEXT_SIZE = QStringLiteral("3D Text Size");
const QString USER_PREFERENCE_SETTINGS_3DVIEW_CT_TARGET_TYPE = QStringLiteral("CT Target Type");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_SECTION
    = QStringLiteral("Auto Exposure Preferences");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_PREFERECNCE1 = QStringLiteral("Preference1");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_PREFERECNCE2 = QStringLiteral("Preference2");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_PREFERECNCE3 = QStringLiteral("Preference3");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_EXPOSURE_MIN = QStringLiteral("Exposure Min");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_EXPOSURE_MAX = QStringLiteral("Exposure Max");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_FSTOP_MIN = QStringLiteral("F/Stop Min");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_FSTOP_MIN_XFOV24
    = QStringLiteral("F/Stop Min GEIZID");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_FSTOP_MAX = QStringLiteral("F/Stop Max");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_BINNING_MIN = QStringLiteral("Binning Min");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_BINNING_MAX = QStringLiteral("Binning Max");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_LUMIN_TARGET_MAX_COUNT
    = QStringLiteral("Luminescent Target Maximum Count");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_EPI_FLUOR_TARGET_MAX_COUNT
    = QStringLiteral("EPI-Fluorescent Target Maximum Count");
const QString USER_PREFERENCE_SETTINGS_AUTO_EXPOSURE_TRANS_FLUOR_TARGET_MAX_COUNT
    = QStringLiteral("TRANS-Fluorescent Target Maximum Count");

// Arrays. Positions are meaningful; other code indexes into them.

const QString strUserLabelSetKeys[16] = {
    QStringLiteral("User"),
    QStringLiteral("Group"),
    QStringLiteral("Experiment"),
    QStringLiteral("Comment1"),
    QStringLiteral("Comment2"),
    QStringLiteral("Time Point"),
    QStringLiteral("Animal Number"),
    QStringLiteral("Animal Strain"),
    QStringLiteral("Animal Model"),
    QStringLiteral("Sex"),
    QStringLiteral("View"),
    QStringLiteral("Cell Line"),
    QStringLiteral("Reporter"),
    QStringLiteral("Treatment"),
    QStringLiteral("Luc Injection Time"),
    QStringLiteral("IACUC Number"),
};

const QString strIntensityCalibrationValues[4] = {
    QStringLiteral("counts"),
    QStringLiteral("Radiance (Photons)"),
    QStringLiteral("Radiant Efficiency"),
    QStringLiteral("efficiency"),
};

const QString strImagingParams[8] = {
    QStringLiteral("Exposure Time"),
    QStringLiteral("Binning Factor"),
    QStringLiteral("Excitation filter"),
    QStringLiteral("Emission filter"),
    QStringLiteral("f Number"),
    QStringLiteral("Field of View"),
    QStringLiteral("EM Gain"),
    QStringLiteral("MVI-2 Angle"),
};

const QString strDayKeys[7] = {
    QStringLiteral("Sunday"),
    QStringLiteral("Monday"),
    QStringLiteral("Tuesday"),
    QStringLiteral("Wednesday"),
    QStringLiteral("Thursday"),
    QStringLiteral("Friday"),
    QStringLiteral("Saturday"),
};

const QString strMonthKeys[12] = {
    QStringLiteral("January"),
    QStringLiteral("February"),
    QStringLiteral("March"),
    QStringLiteral("April"),
    QStringLiteral("May"),
    QStringLiteral("June"),
    QStringLiteral("July"),
    QStringLiteral("August"),
    QStringLiteral("September"),
    QStringLiteral("October"),
    QStringLiteral("November"),
    QStringLiteral("December"),
};

const QString strMonthDisplayKeys[12] = {
    QStringLiteral("01"),
    QStringLiteral("02"),
    QStringLiteral("03"),
    QStringLiteral("04"),
    QStringLiteral("05"),
    QStringLiteral("06"),
    QStringLiteral("07"),
    QStringLiteral("08"),
    QStringLiteral("09"),
    QStringLiteral("10"),
    QStringLiteral("11"),
    QStringLiteral("12"),
};

const QString strSeqGraphSectionKeys[9] = {
    QStringLiteral("Brightness"),
    QStringLiteral("Gamma"),
    QStringLiteral("Color Range Mode"),
    QStringLiteral("Color Table Min"),
    QStringLiteral("Color Table Max"),
    QStringLiteral("Color Table"),
    QStringLiteral("Reversed"),
    QStringLiteral("ColorTableIsLog"),
    QStringLiteral("Intensity Calibration"),
};

const QString strROISectionValues[14] = {
    QStringLiteral("zColorIndex"),
    QStringLiteral("ROI Type"),
    QStringLiteral("ColorTable"),
    QStringLiteral("LineSize"),
    QStringLiteral("Locked"),
    QStringLiteral("PositionLocked"),
    QStringLiteral("Shape"),
    QStringLiteral("Xc"),
    QStringLiteral("Yc"),
    QStringLiteral("Width"),
    QStringLiteral("Height"),
    QStringLiteral("Angle"),
    QStringLiteral("Label"),
    QStringLiteral("cm per pixel"),
};

// "readbsigma image" and "Blemish Image" are deliberate; see the header.
const QString strClickPalleteSection[19] = {
    QStringLiteral("User Label Name Set"),
    QStringLiteral("luminescent image"),
    QStringLiteral("photographic image"),
    QStringLiteral("readbias image"),
    QStringLiteral("darkcharge image"),
    QStringLiteral("saved luminescent corrected image"),
    QStringLiteral("structure image"),
    QStringLiteral("reference image"),
    QStringLiteral("background click"),
    QStringLiteral("Camera System Info"),
    QStringLiteral("readbsigma image"),
    QStringLiteral("readbiasonly image"),
    QStringLiteral("fluorescent bkg image"),
    QStringLiteral("fluorescent reference image"),
    QStringLiteral("x-ray image"),
    QStringLiteral("Kinetic Info"),
    QStringLiteral("Infusion Info"),
    QStringLiteral("3D Scene Setting"),
    QStringLiteral("Blemish Image"),
};

// strGraphSectionKeys[i] takes strGraphSectionValues[i] as its default.
const QString strGraphSectionKeys[17] = {
    QStringLiteral("Overlay"),
    QStringLiteral("Reversed"),
    QStringLiteral("Color Table"),
    QStringLiteral("ColorTableIsLog"),
    QStringLiteral("Intensity Calibration"),
    QStringLiteral("Calibration Value Per Count"),
    QStringLiteral("Brightness"),
    QStringLiteral("Gamma"),
    QStringLiteral("Alpha Blend"),
    QStringLiteral("Rotation"),
    QStringLiteral("Background"),
    QStringLiteral("Cosmic"),
    QStringLiteral("Flat Field"),
    QStringLiteral("Color Table Min"),
    QStringLiteral("Color Table Max"),
    QStringLiteral("Raw Color Table Min"),
    QStringLiteral("Raw Color Table Max"),
};

const QString strGraphSectionValues[17] = {
    QStringLiteral("Overlay"),
    QStringLiteral("1"),
    QStringLiteral("Rainbow"),
    QStringLiteral("0"),
    QStringLiteral("counts"),
    QStringLiteral("1"),
    QStringLiteral("100"),
    QStringLiteral("1.5"),
    QStringLiteral("0.5"),
    QStringLiteral("0"),
    QStringLiteral("1"),
    QStringLiteral("1"),
    QStringLiteral("1"),
    QStringLiteral("-1"),
    QStringLiteral("-1"),
    QStringLiteral("-1"),
    QStringLiteral("-1"),
};

// Column title, then the acquisition key that fills the column.
const QString strBrowseImage_NameKeyPairs[24] = {
    QStringLiteral("Date and Time"),     QStringLiteral("Acquisition Seconds"),
    QStringLiteral("Binning"),           QStringLiteral("Binning Factor"),
    QStringLiteral("Exposure"),          QStringLiteral("Luminescent Exposure (Seconds)"),
    QStringLiteral("Field of View"),     QStringLiteral("Field of View"),
    QStringLiteral("f-Stop"),            QStringLiteral("f Number"),
    QStringLiteral("Image Angle"),       QStringLiteral("Imaging Angle"),
    QStringLiteral("EX Filter"),         QStringLiteral("Excitation filter"),
    QStringLiteral("EM Filter"),         QStringLiteral("Filter"),
    QStringLiteral("File Name"),         QStringLiteral("FileName"),
    QStringLiteral("Path"),              QStringLiteral("PathName"),
    QStringLiteral("Illumination Mode"), QStringLiteral("Image Subtype"),
    QStringLiteral("EM Gain"),           QStringLiteral("EM Gain"),
};

const QString strClickInfoKeys[58] = {
    QStringLiteral("Acquisition Date"),
    QStringLiteral("Acquisition Time"),
    QStringLiteral("Acquisition Seconds"),
    QStringLiteral("Image Units"),
    QStringLiteral("Read Bias Level"),
    QStringLiteral("Field of View"),
    QStringLiteral("f Number"),
    QStringLiteral("Pixel Width"),
    QStringLiteral("Pixel Height"),
    QStringLiteral("Binning Factor"),
    QStringLiteral("Cosmic"),
    QStringLiteral("Data Multiplier"),
    QStringLiteral("Imaging Angle"),
    QStringLiteral("Error Wave"),
    QStringLiteral("Filter Position"),
    QStringLiteral("Filter"),
    QStringLiteral("Exposure Time Sec"),
    QStringLiteral("Emission filter"),
    QStringLiteral("Excitation filter"),
    QStringLiteral("Subject size"),
    QStringLiteral("Luminescent Exposure (Seconds)"),
    QStringLiteral("Luminescent Exposure Units"),
    QStringLiteral("Demand Temperature"),
    QStringLiteral("Measured Temperature"),
    QStringLiteral("Background Exposure (Seconds)"),
    QStringLiteral("Background Corrected"),
    QStringLiteral("Flat Field Corrected"),
    QStringLiteral("Image Subtype"),
    QStringLiteral("Fluorescence level"),
    QStringLiteral("Fluorescence level string"),
    QStringLiteral("MV stage distance"),
    QStringLiteral("Structured Light Little L"),
    QStringLiteral("Structure frequency"),
    QStringLiteral("Object radius"),
    QStringLiteral("Height Reference"),
    QStringLiteral("Height Reference Pixel X"),
    QStringLiteral("Height Reference Pixel Y"),
    QStringLiteral("FL Grid Name"),
    QStringLiteral("FL Grid Position"),
    QStringLiteral("FL X motor position"),
    QStringLiteral("FL Y motor position"),
    QStringLiteral("FL x-spot"),
    QStringLiteral("FL y-spot"),
    QStringLiteral("Fluorescent Illumination Mode"),
    QStringLiteral("QA motor number"),
    QStringLiteral("QA motor position"),
    QStringLiteral("QA light voltage"),
    QStringLiteral("EM Gain"),
    QStringLiteral("X-ray tube voltage"),
    QStringLiteral("X-ray tube plate current"),
    QStringLiteral("X-ray tube filter"),
    QStringLiteral("X-ray absorption conversion"),
    QStringLiteral("x-ray serial number"),
    QStringLiteral("x-ray firmware version"),
    QStringLiteral("Saturated"),
    QStringLiteral("Large animal x-rayed"),
    QStringLiteral("Imaging Mode"),
    QStringLiteral("AOI Probe"),
};

const QString strCTSectionKeys[39] = {
    QStringLiteral("Exposure (ms)"),
    QStringLiteral("Total projections"),
    QStringLiteral("Voltage"),
    QStringLiteral("Current"),
    QStringLiteral("Binning"),
    QStringLiteral("XRay Filter"),
    QStringLiteral("Reconstructed Width-Depth Dimension"),
    QStringLiteral("Reconstructed Height Dimension"),
    QStringLiteral("Center Column"),
    QStringLiteral("Center Row"),
    QStringLiteral("Minimum Z"),
    QStringLiteral("Maximum Z"),
    QStringLiteral("Voxel size Z"),
    QStringLiteral("Voxel size XY"),
    QStringLiteral("Rotation Axis Tilt"),
    QStringLiteral("Noise Floor Percent"),
    QStringLiteral("Center To Source"),
    QStringLiteral("Center To Screen"),
    QStringLiteral("Angle Increment"),
    QStringLiteral("Pixel Size"),
    QStringLiteral("X Pixel Dimension"),
    QStringLiteral("Y Pixel Dimension"),
    QStringLiteral("X Pixel Start"),
    QStringLiteral("Y Pixel Start"),
    QStringLiteral("Projection Width"),
    QStringLiteral("Projection Height"),
    QStringLiteral("CT Scaling Factor"),
    QStringLiteral("Target Volume Width"),
    QStringLiteral("Target Volume Height"),
    QStringLiteral("Target Volume Depth"),
    QStringLiteral("Reconstructed Volume Min"),
    QStringLiteral("Reconstructed Volume Max"),
    QStringLiteral("CT Mode"),
    QStringLiteral("Hounsfield Calibration Air"),
    QStringLiteral("Hounsfield Calibration Water"),
    QStringLiteral("CT Grey Scale Min"),
    QStringLiteral("CT Grey Scale Max"),
    QStringLiteral("CT Reference Click Used"),
    QStringLiteral("CT Defect Map Click Used"),
};

} // namespace PLConstants

namespace OVSGlobalConstants {

const QString g_strImageSections[13] = {
    QStringLiteral("photographic image"),
    QStringLiteral("luminescent image"),
    QStringLiteral("readbias image"),
    QStringLiteral("readsigma image"),
    QStringLiteral("darkcharge image"),
    QStringLiteral("readbiasonly image"),
    QStringLiteral("reference image"),
    QStringLiteral("structure image"),
    QStringLiteral("fluorescent bkg image"),
    QStringLiteral("fluorescent reference image"),
    QStringLiteral("luminescent A image"),
    QStringLiteral("luminescent B image"),
    QStringLiteral("x-ray image"),
};

const QString g_strImages[17] = {
    QStringLiteral("Photograph"),
    QStringLiteral("Luminescent"),
    QStringLiteral("Read Bias"),
    QStringLiteral("Read Sigma"),
    QStringLiteral("Background"),
    QStringLiteral("Bias"),
    QStringLiteral("Reference"),
    QStringLiteral("Structure"),
    QStringLiteral("Fluorescent Bkg"),
    QStringLiteral("FL Reference"),
    QStringLiteral("Luminescent A"),
    QStringLiteral("Luminescent B"),
    QStringLiteral("X-Ray"),
    QStringLiteral("Overlay"),
    QStringLiteral("Saturation Map"),
    QStringLiteral("Height Map"),
    QStringLiteral("Photo Mask"),
};

const QString g_strClickInfoSections[6] = {
    QStringLiteral("ClickNumber"),
    QStringLiteral("User Input"),
    QStringLiteral("Analysis User Input"),
    QStringLiteral("User Label Name Set"),
    QStringLiteral("Camera System Info"),
    QStringLiteral("Graph Controls"),
};

const QString g_str3DViz[1] = {
    QStringLiteral("3D View"),
};

const QString g_strColorTable[11] = {
    QStringLiteral("Grays"),
    QStringLiteral("Rainbow"),
    QStringLiteral("YellowHot"),
    QStringLiteral("BlueHot"),
    QStringLiteral("BlueRedGreen"),
    QStringLiteral("PlanetEarth"),
    QStringLiteral("Terrain"),
    QStringLiteral("Rainbow2"),
    QStringLiteral("Red"),
    QStringLiteral("Green"),
    QStringLiteral("Blue"),
};

const QString g_strVolumeColorTable[13] = {
    QStringLiteral("Grays"),
    QStringLiteral("Red"),
    QStringLiteral("Green"),
    QStringLiteral("Blue"),
    QStringLiteral("Cyan"),
    QStringLiteral("Yellow"),
    QStringLiteral("Magenta"),
    QStringLiteral("Orange"),
    QStringLiteral("BlueYellow"),
    QStringLiteral("EosB"),
    QStringLiteral("GreenPink"),
    QStringLiteral("Rainbow"),
    QStringLiteral("Jet"),
};

const QString g_strDisplayUnit[4] = {
    QStringLiteral("Counts"),
    QStringLiteral("Radiance (Photons)"),
    QStringLiteral("Radiant Efficiency"),
    QStringLiteral("Efficiency"),
};

const QString g_strCountsUnit[5] = {
    QStringLiteral("Total Count"),
    QStringLiteral("Average Count"),
    QStringLiteral("Stdev Count"),
    QStringLiteral("Min Count"),
    QStringLiteral("Max Count"),
};

const QString g_strPhotonUnit[5] = {
    QStringLiteral("Total Flux"),
    QStringLiteral("Average Radiance"),
    QStringLiteral("Stdev Radiance"),
    QStringLiteral("Min Radiance"),
    QStringLiteral("Max Radiance"),
};

const QString g_strEfficiencyUnit[5] = {
    QStringLiteral("Total Efficiency"),
    QStringLiteral("Average Efficiency"),
    QStringLiteral("Stdev Efficiency"),
    QStringLiteral("Min Efficiency"),
    QStringLiteral("Max Efficiency"),
};

const QString g_strPresetColors[3] = {
    QStringLiteral("Midnight"),
    QStringLiteral("Daylight"),
    QStringLiteral("Dusk"),
};

const QString g_strCTTargetTYPES[2] = {
    QStringLiteral("Animal"),
    QStringLiteral("Metal"),
};

// Eight tabs before the declaration and eight before the closing brace.
const QString g_strTabStyleSheet[1] = {
    QStringLiteral("QTabBar::tab:selected {\t\t\t\t\t\t\t\tbackground-color: rgb(62,153,246);"
                   "\t\t\t\t\t\t\t\t}"),
};

} // namespace OVSGlobalConstants
