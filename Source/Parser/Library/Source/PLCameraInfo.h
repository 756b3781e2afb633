#ifndef PLCAMERAINFO_H
#define PLCAMERAINFO_H

#include "PLClickInfo.h"
#include "ovparser_global.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

class QSettings;

// The keys of the instrument configuration file, "CameraInfo.txt": each constant holds the
// key as the file spells it. Instrument keys are lines of the main section, "Camera System
// Info" (PLConstants::CAMERAINFO_SECTION_KEY). Several names say one thing and the key
// another, on purpose: the files carry these keys, so the literals are kept.

// Motor driver numbers.
extern OVPARSER_EXPORT const QString LENS_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString LENS_FSTOP_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString FILTER_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString FILTER2_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER2_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString SHELF_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString SHELF_X_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString SHELF_Y_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString EX_FILTER_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_SLIDE_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString TURNTABLE_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString XR_FILTER_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString MIRROR_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString MIRROR_ROTATION_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_X_MOTOR_DRIVER_NUMBER_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_Y_MOTOR_DRIVER_NUMBER_KEY;

// Motor speeds, F, R, S and H. The mirror rotation's speed constants name the keys "Mirror Rotation
// Motor Driver Number F" to "... H", which the instrument files hold; lookups by them use those.
extern OVPARSER_EXPORT const QString LENS_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString LENS_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString LENS_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString LENS_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString LENS_FSTOP_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString LENS_FSTOP_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString LENS_FSTOP_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString LENS_FSTOP_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString FILTER_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString FILTER_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString FILTER_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString FILTER_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString SHELF_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString SHELF_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString SHELF_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString SHELF_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString SHELF_X_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString SHELF_X_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString SHELF_X_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString SHELF_X_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString SHELF_Y_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString SHELF_Y_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString SHELF_Y_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString SHELF_Y_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString EX_FILTER_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString EX_FILTER_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString EX_FILTER_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString EX_FILTER_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_SLIDE_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_SLIDE_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_SLIDE_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_SLIDE_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString TURNTABLE_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString TURNTABLE_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString TURNTABLE_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString TURNTABLE_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString XR_FILTER_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString XR_FILTER_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString XR_FILTER_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString XR_FILTER_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString MIRROR_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString MIRROR_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString MIRROR_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString MIRROR_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_X_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_X_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_X_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_X_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_Y_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_Y_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_Y_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_Y_MOTOR_SPEED_H_KEY;
extern OVPARSER_EXPORT const QString MIRROR_ROTATION_MOTOR_SPEED_F_KEY;
extern OVPARSER_EXPORT const QString MIRROR_ROTATION_MOTOR_SPEED_R_KEY;
extern OVPARSER_EXPORT const QString MIRROR_ROTATION_MOTOR_SPEED_S_KEY;
extern OVPARSER_EXPORT const QString MIRROR_ROTATION_MOTOR_SPEED_H_KEY;

// Soft limits.
extern OVPARSER_EXPORT const QString SHELF_POSITION_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString LENS_POSITION_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString LENS_FSTOP_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString EX_FILTER_POSITION_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER_POSITION_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString FILTER_POSITION_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_X_MOTOR_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_Y_MOTOR_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString MIRROR_MOTOR_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString X_SHELF_MOTOR_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString Y_SHELF_MOTOR_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_SLIDE_POSITION_SOFT_LIMIT_KEY;
extern OVPARSER_EXPORT const QString TURNTABLE_SOFT_LIMIT_KEY;

// Data-acquisition channels and ports. The bottom illumination toggle is the key "Bottom Fiber
// Toggle Channel".
extern OVPARSER_EXPORT const QString MOTOR_BOARD_HARDWARE_RESET_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString FIBER_SOURCE_TOGGLE_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString FIBER_SOURCE_INTENSITY_CONTROL_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString SHELF_POT_MONITOR_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString COLDFINGER_HEATER_RESISTOR_MONITOR_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString LIGHTS_VOLTAGE_MONITOR_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString DARKBOX_LIGHTS_ON_CONTROL_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString DARKBOX_DOOR_ENTRY_LED_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString DARKBOX_DOOR_OPEN_MONITOR_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString LED_SOURCE_SELECTOR_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString LIGHTS_CONTROL_SELECTOR_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString LIGHTS_CONTROL_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString LED_VOLTAGE_MONITOR_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString LIGHTS_INNER_ON_CONTROL_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString LIGHTS_OUTER_ON_CONTROL_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString LASER_ON_CONTROL_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString GALVO_ON_CONTROL_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString BOTTOM_ILLUMINATION_TOGGLE_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString DARKBOX_DOOR_MAG_LOCK_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString INIT_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString COMMAND_OUT_CONTROL_PORT_KEY;
extern OVPARSER_EXPORT const QString ADDITIONAL_COMMAND_OUT_CONTROL_PORT_KEY;
extern OVPARSER_EXPORT const QString COMMAND_IN_CONTROL_PORT_KEY;
extern OVPARSER_EXPORT const QString HIGH_SPEED_NI_DEVICE_KEY;
extern OVPARSER_EXPORT const QString LIGHTS_CONTROL_POLARITY_KEY;
extern OVPARSER_EXPORT const QString NIDAQ_CARD_INSTALLED_KEY;
extern OVPARSER_EXPORT const QString SHELF_POT_X_MONITOR_NI_CHANNEL_KEY;
extern OVPARSER_EXPORT const QString SHELF_POT_Y_MONITOR_NI_CHANNEL_KEY;

// Filter wheels.
extern OVPARSER_EXPORT const QString EX_FILTER_WHEEL_ROTATION_STEPS_KEY;
extern OVPARSER_EXPORT const QString EX_FILTER_POSITIONS_PER_WHEEL_KEY;
extern OVPARSER_EXPORT const QString EX_FILTER_POSITION_1_STEPS_KEY;
extern OVPARSER_EXPORT const QString FILTER_WHEEL_ROTATION_STEPS_KEY;
extern OVPARSER_EXPORT const QString FILTER_POSITIONS_PER_WHEEL_KEY;
extern OVPARSER_EXPORT const QString FILTER_POSITION_1_STEPS_KEY;
extern OVPARSER_EXPORT const QString FILTER2_WHEEL_ROTATION_STEPS_KEY;
extern OVPARSER_EXPORT const QString FILTER2_POSITION_1_STEPS_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER_WHEEL_ROTATION_STEPS_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER_POSITIONS_PER_WHEEL_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER_POSITION_1_STEPS_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER2_WHEEL_ROTATION_STEPS_KEY;
extern OVPARSER_EXPORT const QString EM_FILTER2_POSITION_1_STEPS_KEY;
extern OVPARSER_EXPORT const QString XR_FILTER_WHEEL_ROTATION_STEPS_KEY;
extern OVPARSER_EXPORT const QString XR_FILTER_POSITIONS_PER_WHEEL_KEY;
extern OVPARSER_EXPORT const QString XR_FILTER_POSITION_1_STEPS_KEY;
extern OVPARSER_EXPORT const QString FILTER_WHEEL_MOVES_WITHOUT_HOMING_KEY;

// Stage, lens and mirror geometry.
extern OVPARSER_EXPORT const QString SHELF_STEPS_PER_MM_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_SLIDE_STEPS_PER_MM_KEY;
extern OVPARSER_EXPORT const QString SCINTILLATOR_SETUP_OFFSET_KEY;
extern OVPARSER_EXPORT const QString SHELF_POSITION_LOAD_STEPS_KEY;
extern OVPARSER_EXPORT const QString LENS_FSTOP_8_STEPS_KEY;
extern OVPARSER_EXPORT const QString MIRROR_STEPS_PER_REVOLUTION_KEY;
extern OVPARSER_EXPORT const QString MIRROR_MOTOR_STEPS_PER_DEGREE_KEY;
extern OVPARSER_EXPORT const QString MIRROR_OFFSET_DEGREES_KEY;
extern OVPARSER_EXPORT const QString MULTIVIEW_KEEPAWAY_ANGLE_KEY;
extern OVPARSER_EXPORT const QString XMOTOR_CENTER_KEY;
extern OVPARSER_EXPORT const QString YMOTOR_CENTER_KEY;
extern OVPARSER_EXPORT const QString XMOTOR_STEPS_PER_CM_KEY;
extern OVPARSER_EXPORT const QString YMOTOR_STEPS_PER_CM_KEY;
extern OVPARSER_EXPORT const QString MAX_STAGE_DISTANCE_CM_KEY;
extern OVPARSER_EXPORT const QString MIN_STAGE_DISTANCE_CM_KEY;
extern OVPARSER_EXPORT const QString MV_STAGE_DISTANCE_KEY;
extern OVPARSER_EXPORT const QString FULL_SCALE_MOTOR_COUNTS_X_KEY;
extern OVPARSER_EXPORT const QString FULL_SCALE_MOTOR_COUNTS_Y_KEY;
extern OVPARSER_EXPORT const QString SHELF_X_POT_HOME_KEY;
extern OVPARSER_EXPORT const QString SHELF_X_POT_CENTER_KEY;
extern OVPARSER_EXPORT const QString SHELF_X_POT_EXTREME_KEY;
extern OVPARSER_EXPORT const QString SHELF_Y_POT_HOME_KEY;
extern OVPARSER_EXPORT const QString SHELF_Y_POT_CENTER_KEY;
extern OVPARSER_EXPORT const QString SHELF_Y_POT_EXTREME_KEY;
extern OVPARSER_EXPORT const QString TURNTABLE_STEPS_PER_REVOLUTION_KEY;
extern OVPARSER_EXPORT const QString TURNTABLE_STEPS_PER_DEGREE_KEY;
extern OVPARSER_EXPORT const QString TURNTABLE_ZERO_DEGREE_STEPS_KEY;
extern OVPARSER_EXPORT const QString BACKLASH_STEPS_KEY;

// CT and x-ray.
extern OVPARSER_EXPORT const QString CT_SHELF_POSITION_STEPS_KEY;
extern OVPARSER_EXPORT const QString ALIGNMENT_SHELF_POSITION_STEPS_KEY;
extern OVPARSER_EXPORT const QString CENTER_TO_SOURCE_KEY;
extern OVPARSER_EXPORT const QString CENTER_TO_DETECTOR_KEY;
extern OVPARSER_EXPORT const QString CT_SCALING_FACTOR_KEY;
extern OVPARSER_EXPORT const QString CT_DETECTOR_SATURATION_VALUE_KEY;
extern OVPARSER_EXPORT const QString GIGE_DETECTOR_IP_ADDRESS_KEY;
extern OVPARSER_EXPORT const QString CT_REFERENCE_USABILITY_DAYS_KEY;
extern OVPARSER_EXPORT const QString XRAY_CONTROLLER_COM_PORT_KEY;
extern OVPARSER_EXPORT const QString XRAY_ZOOM_LENS_MOTOR_STEPS_KEY;
extern OVPARSER_EXPORT const QString LARGE_ANIMAL_XRAYED_KEY;
extern OVPARSER_EXPORT const QString LARGE_ANIMAL_POSITION_KEY;

// Acquisition defaults. MINIMUM_CONTRAST_LEVEL is the key "Minimum Contrast Ratio".
extern OVPARSER_EXPORT const QString IMAGE_TRANSPOSE_KEY;
extern OVPARSER_EXPORT const QString IMAGE_ROTATION_KEY;
extern OVPARSER_EXPORT const QString PHOTOGRAPHIC_FSTOP_KEY;
extern OVPARSER_EXPORT const QString LUMINESCENT_FSTOP_KEY;
extern OVPARSER_EXPORT const QString PHOTOGRAPHIC_BINNING_KEY;
extern OVPARSER_EXPORT const QString LUMINESCENT_BINNING_KEY;
extern OVPARSER_EXPORT const QString LIGHTING_SATURATION_COUNTS_KEY;
extern OVPARSER_EXPORT const QString MINIMUM_CONTRAST_LEVEL;
extern OVPARSER_EXPORT const QString MINIMUM_PHOTO_LEVEL_KEY;
extern OVPARSER_EXPORT const QString PHOTO_EXPOSURE_FOV_KEY;

// The instrument, its extensions and its options. XFOV24_AVAILABLE is the key "GEIZID" (the lens
// of the 24 cm field of view); LARGE_ANIMAL_CAPABLE is "Motor Steps for x-ray2 position c".
extern OVPARSER_EXPORT const QString SYSTEM_CONFIGURATION_KEY;
extern OVPARSER_EXPORT const QString CAMERAINFO_EXTENSION_NAME_KEY;
extern OVPARSER_EXPORT const QString CAMERAINFO_EXTENSION_CONFLICT_KEY;
extern OVPARSER_EXPORT const QString CAMERA_CCD_TEMPERATURE_KEY;
extern OVPARSER_EXPORT const QString ENABLE_CAMERA_COOLER_KEY;
extern OVPARSER_EXPORT const QString CAMERA_BIN_FILE_KEY;
extern OVPARSER_EXPORT const QString CAMERA_SET_FILE_KEY;
extern OVPARSER_EXPORT const QString CAMERA_STR_FILE_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENT_LAMP_HIGH_VOLTAGE_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENT_LAMP_LOW_VOLTAGE_KEY;
extern OVPARSER_EXPORT const QString FLUORESCENCE_KIT_INSTALLED_KEY;
extern OVPARSER_EXPORT const QString XFOV24_AVAILABLE;
extern OVPARSER_EXPORT const QString LARGE_ANIMAL_CAPABLE;
extern OVPARSER_EXPORT const QString REMOVABLE_FILTER_WHEEL_CAPABLE_KEY;
extern OVPARSER_EXPORT const QString ZOOM_LENS_SUPPORT_KEY;
extern OVPARSER_EXPORT const QString VIC_SUPPORT_KEY;
extern OVPARSER_EXPORT const QString VIC_CALIBRATION_FACTOR_KEY;
extern OVPARSER_EXPORT const QString MOUSE_IMAGING_SHUTTLE_ENABLED_KEY;
extern OVPARSER_EXPORT const QString SIDE_VIEW_MIRROR_ENABLED_KEY;
extern OVPARSER_EXPORT const QString MOTOR_BOARD_TYPE_KEY;
extern OVPARSER_EXPORT const QString MOUSE_TRAY_ENABLED_KEY;

// Folders and files of the instrument's configuration folder.
extern OVPARSER_EXPORT const QString CAMERA_INFO_TEXTFILE;
extern OVPARSER_EXPORT const QString CT_PARAMETER_FOLDER;
extern OVPARSER_EXPORT const QString XRAY_REFERENCE_FOLDER;
extern OVPARSER_EXPORT const QString XRAY_INDEX_FILE;
extern OVPARSER_EXPORT const QString XRAY_REF_INFO_FILE;
extern OVPARSER_EXPORT const QString XRAY_DEF_MAP_INDEX_FILE;
extern OVPARSER_EXPORT const QString XRAY_DEF_MAP_INFO_FILE;
extern OVPARSER_EXPORT const QString UI_STATUS_CONFIG_FILE;
// The instrument types, in this order: "KORA 50", "KORA 100", "KORA 200". A "System
// Configuration" value names the first of them that it contains, in any case.
extern OVPARSER_EXPORT const QStringList KORA_SYSTEM_TYPES;

// Status codes of loadCameraInfoExtensions() besides those of PLStatus.h: 11 an extension file
// cannot be read (a folder, a link that leads nowhere or in a loop), 64 it is a FIFO, socket or
// device, 24 a section or key an extension must hold is missing, 19 an extension without a
// name, 30 a conflict (also two
// extensions of one name), 47 a type mismatch (also an extension that sets "System
// Configuration" to another type).
// No base "CameraInfo.txt" to check the extensions against.
constexpr int PL_CAMERA_BASE_FILE_MISSING = 2;
// The base file's "System Configuration" names no instrument type of KORA_SYSTEM_TYPES.
constexpr int PL_CAMERA_SYSTEM_TYPE_UNKNOWN = 28;
// An extension names another instrument type than the base file, or sets the instrument's
// "System Configuration" to another type than the base file's.
constexpr int PL_CAMERA_SYSTEM_TYPE_MISMATCH = 47;
// An extension conflicts with one loaded before it, or has the name of one loaded before it.
constexpr int PL_CAMERA_EXTENSION_CONFLICT = 30;

// One configuration extension that a load merged: its "Extension name" and its file.
struct OVPARSER_EXPORT CPLCameraExtension
{
    QString name;
    QString file;
};

// Why the extensions of the last load were not merged: the status of
// loadCameraInfoExtensions(), the extension file it refused (empty when the failure was not
// one file's) and the message. Status 0 when they were merged or there were none.
struct OVPARSER_EXPORT CPLCameraExtensionFailure
{
    int status = 0;
    QString file;
    QString message;
};

// The instrument configuration: "CameraInfo.txt" merged with the configuration extensions of
// its "config" folder (one "*.cfg" file per installed option), and the accessory states
// derived from both and from the per-machine settings store.
//
// Loading (load()). The file is read whole as Latin-1 (as every file of the library), a UTF-8
// byte order mark skipped, trimmed, CR LF and lone CR turned into LF. Lines before any
// section header belong to the main section: when the text holds no "*** Camera System
// Info:" line (in any case) that header and a line feed are put at its start. The
// extensions (loadCameraInfoExtensions(), folder "<the file's folder>/config") are merged
// into the text before it is cut into sections:
//   - when the base text has no "*** " at all, after it, following an empty line;
//   - otherwise, followed by a line feed, at the place where the first "*** " stood in the
//     text before the main header was put at its start. That place is not moved by the
//     header put in front: in a file that holds other sections but no main section, the
//     extension text lands that many characters (24) before its first header, inside the
//     lines before it. Files with a main section header, the files instruments carry, are
//     not concerned.
// A failed extension check merges none of them: the base file loads alone, and
// getExtensionFailure() says why.
//
// Repeated sections merge. Extension text stands before the base file's sections, so each
// extension's "Camera System Info" and the base file's own repeat one key. In this document
// a section whose key is already present is merged into it: its keys that the present
// section lacks are added, in their order; where both hold a key the earlier value stands,
// so an installed option's setting overrides the base file's. No key of the base file is
// lost (outside the unmoved-place case above). Where each section and each merged key was
// read from is kept (getSectionOrigin(), getKeyOrigin()), and load warnings name the file
// and line they concern. addTextBuffer() and loadappend() merge the other way: the new
// text's values replace the present ones (keys only in the present section stay), and its
// new sections are added at the end.
//
// Extensions (loadCameraInfoExtensions()). Each extension file holds an "Extension Info"
// section ("Extension name", "System Configuration", "Conflicts with extensions", a comma
// separated list of names) and a "Camera System Info" section with the keys it adds, and may
// hold sections of its own. The "Extension Info" section is bookkeeping: it is cut out of
// the text merged, and the extensions merged are listed by getLoadedExtensions() instead.
// The files are taken in name order, so that of two conflicting extensions the same one is
// refused on every machine.
//
// Accessory states (loadCameraInfo(), the setters). The per-machine settings store is
// QSettings of organisation PLConstants::COMPANY_NAME and application "Orvane", group
// "Current_Version" (with OVPARSER_DATA_DIR set, the file "User Settings/Orvane.conf" of that
// folder instead, see PLPaths.h). Keys: "XFOV24" (bool, false) the GEIZID lens attached,
// "Zoom" (bool, false) the zoom lens attached, "filterWheel" (text, "standard.xem") the
// emission filter wheel in place, and "LargeAnimal" (bool, false) the large-animal stage
// selected. setXFOV24Attached(), setZoomLensAttached(), setCurrentFilterWheelName() and
// setLargeAnimalState() store the state in the document and write that key, so that the
// next load reads it back; setVICChecked() holds for the document only.
//
// The states loadCameraInfo() derives (a value "yes", in that case only, is true; a missing
// key leaves a state false, 0 or empty):
//
//   key (section "Camera System Info")   getter                        rule
//   "GEIZID"                             isXFOV24Available()           "yes"
//     settings "XFOV24"                  isXFOV24Attached()            when available
//   "Motor Steps for x-ray2 position c"  isLargeAnimalCapable()        holds a value
//     settings "LargeAnimal"             isLargeAnimalSelected()       when capable
//   "Removable Filter Wheel Capable"     isRemovableFilterWheelCapable()  "yes"
//     settings "filterWheel"             getCurrentFilterWheelName()   when capable
//   "Zoom Lens Support"                  isZoomLensSupported()         "yes"
//     settings "Zoom"                    isZoomLensAttached()          when supported
//   "VIC Support"                        isVICSupported()              "yes"
//   "Electronics Tray Part Number"       getElectronicsTrayPartNumber()  the value
//                                        isElectronicsTray30052()      the value is "30052"
//   "USB I/O BOARD"                      hasUSBIOBoard()               "yes"
//   "UAC BOARD"                          hasUACBoard()                 "yes"
//   "Multi-View Imager"                  hasMultiViewImager()          "yes"
//   "Chip-Reader"                        hasChipReader()               "yes"
//   "Xray Controller"                    hasXrayController()           "yes"
//   "Omega controller installed"         hasOmegaController()          "yes"
//   "cni32"                              hasCNI32()                    "yes"
//   "output 1", "output 2"               isOutput1Enabled(), isOutput2Enabled()  "yes"
//   "Filter2 Motor Driver Number"        hasFilter2()                  a number above 0
//   "EM Filter2 Motor Driver Number"     hasEMFilter2()                a number above 0
//   "Fluorescence kit installed"         hasFluorescenceKit()          "yes"
//   "Fluorescence X Motor Driver Number" hasFluorescenceXMotor()       a number above 0
//   "Fluorescence Y Motor Driver Number" hasFluorescenceYMotor()       a number above 0
//   "Rotation Stage Motor Driver Number" hasRotationStage()            a number above 0
//   "Mouse Imaging Shuttle Enabled"      isMouseImagingShuttleEnabled()  "yes"
//   "Side View Mirror Enabled"           isSideViewMirrorEnabled()     "yes"
//   "Lights Control Polarity"            getLightsControlPolarity()    the value
//   "Camera CCD Type"                    isDU88Camera(), isEMCCDCamera(), isSophiaCamera()
//                                        the value contains "DU88", "EMCCD", "Sophia" (any case)
//   "Stage offset", "Mirror x-offset",   getStageOffset(), getMirrorXOffset(),
//   "Mirror angle"                       getMirrorAngle()              read as floats
//   "System Configuration"               getSystemType()               the KORA type named
// (A motor driver number of 0 means that no such motor is fitted.)
//
// A document is not safe for use from several threads at once.
class OVPARSER_EXPORT CPLCameraInfo : public CPLClickInfo
{
public:
    CPLCameraInfo();
    ~CPLCameraInfo() override;

    // Reads the configuration file at `filePath` with its extensions (see the class comment)
    // and cuts it into sections. Returns 11 when the file cannot be read (63 too large, 64
    // not a regular file, 65 out of memory), leaving the document as it was; otherwise the
    // document is cleared first and the status of loadTextBuffer() returned (5 malformed
    // header, 33 empty key). On success getFileSectionCount() gives the number of sections.
    int load(const QString& filePath);
    // load(), then the checks and the derived states of the class comment, in order: the main
    // section and its "System Configuration" naming a KORA type (else false, with the
    // message "Invalid camera information, while loading camera info."), GEIZID, large
    // animal, removable filter wheel (its file must stand in the "emfilters" folder beside the
    // configuration file, else "Loading Removable filter wheel information file failed." and
    // "The Emission Filter Wheel Information file PATH does not exist."), zoom lens ("The
    // Zoom Lens is supported. The Shelf position information for the zoom lens is missing in
    // the camerainfo file" without "Shelf Position Z FOV"), and the hardware options. A failed
    // load gives "Loading camera information failed." and false. The messages are logged
    // (category "ovparser.camera", debug level, with this source file and function) and
    // kept: getValidationMessages(). True when the configuration is usable.
    bool loadCameraInfo(const QString& filePath);
    // Cuts further section text into the document: a section already present takes the new
    // text's keys, its values replacing present ones and keys only in the present section
    // staying; other sections are added at the end. Returns the status of loadTextBuffer().
    int addTextBuffer(const QString& text);
    // Reads another sectioned file as load() reads (without extensions) and adds it as
    // addTextBuffer() does, without clearing the document. Returns 11 (63, 64, 65) when it
    // cannot be read, else the status of addTextBuffer().
    int loadappend(const QString& filePath);

    // Finds, checks and joins the extension files ("*.cfg", in name order) of
    // `extensionFolder`. The base file whose instrument type they must match is the
    // "CameraInfo.txt" of the folder above `extensionFolder` when there is one (a
    // configuration folder copied anywhere is checked against its own base file), else the
    // one of the instrument configuration folder (getOVPath(OV_PATH_INSTRUMENT_CONFIG)).
    // Returns 0 with `output` the text to merge (empty when the folder does not exist or
    // holds no extension), and getLoadedExtensions() the extensions in it. On the first
    // failure, returns its status with `output` the message ("%1" the extension's file name):
    // Every entry named "*.cfg" counts (not only regular files), so that none is left out
    // without a word.
    //   11  "Loading cameraInfo extension '%1' failed: File open failed", and ": a folder" or
    //       ": a symbolic link that leads to no file" for those
    //   64  "Loading cameraInfo extension '%1' failed: not a regular file (...)" for a FIFO,
    //       socket or device (never opened, so nothing waits for a writer)
    //   24  "Loading cameraInfo extension '%1' failed: '%2' section not present" (the
    //       section, "Extension Info" or "Camera System Info"), or "... '%2' key/value not
    //       present" (the key)
    //   19  "Loading cameraInfo extension '%1' failed: its 'Extension name' is empty" (an
    //       extension's name is what a conflict names)
    //   47  "Loading cameraInfo extension '%1' failed: written for '%2', not for this
    //       instrument, '%3'" (the extension's and the base file's system configuration)
    //   47  "Loading cameraInfo extension '%1' failed: it sets 'System Configuration' to
    //       '%2', not this instrument, '%3'" (a key line of that key outside its "Extension
    //       Info", in any section, names another type: merged, it would change the type)
    //   30  "Loading cameraInfo extension '%1' failed: Conflicts with already loaded
    //       extensions." (a name of its "Conflicts with extensions", compared whole and
    //       with case, is an extension taken before it; an empty list, or an empty place in
    //       it, names none)
    //   30  "Loading cameraInfo extension '%1' failed: an extension named '%2' is loaded
    //       already, from '%3'" (its "Extension name", compared whole and with case)
    //   2   "Loading cameraInfo extensions failed: no base file 'PATH' to check them
    //       against" (the folder holds extensions)
    //   28  "Loading cameraInfo extensions failed: the base file 'PATH' names no instrument
    //       type (KORA 50, KORA 100, KORA 200)"
    //   5, 33, 63, 64, 65  "Loading cameraInfo extension '%1' failed: " and the status text,
    //       for an extension file that is malformed or cannot be loaded.
    int loadCameraInfoExtensions(const QString& extensionFolder, QString& output);

    // The main section, "Camera System Info", or null. The document keeps ownership.
    CPLSection* getCameraInfoSection() const;
    // Append to `keys`, in the main section's order, its keys that begin with `prefix` (with
    // case): all of them; those that also contain "steps" (lower case: the "Lens fstop 8
    // steps" family); those that also contain `subkey` (with case) when it is not empty.
    // Each returns 16 for a null list, 49 without a main section, else 0.
    int getKeyListWithSameKey(const QString& prefix, QStringList* keys) const;
    int getLensFStopStepList(const QString& prefix, QStringList* keys) const;
    int getKeylistFromKeyAndSubkey(const QString& prefix, const QString& subkey,
                                   QStringList* keys) const;

    // The file the document was loaded from by load(); empty before.
    QString getFilePath() const;
    // The extensions the last load merged, in the order merged.
    QList<CPLCameraExtension> getLoadedExtensions() const;
    // Why the last load merged no extension; status 0 when nothing failed.
    CPLCameraExtensionFailure getExtensionFailure() const;
    // The messages of the last loadCameraInfo(), in order.
    QStringList getValidationMessages() const;

    // Accessory states (see the class comment).
    bool isXFOV24Available() const;
    bool isXFOV24Attached() const;
    // Whether "Motor Steps for x-ray2 position c" holds a value; notes it in the document.
    bool isLargeAnimalCapable();
    // Whether the large-animal stage is selected: never when the instrument is not capable.
    bool isLargeAnimalSelected();
    // Selects or deselects the large-animal stage (selected only when capable) and stores the
    // state under "LargeAnimal".
    void setLargeAnimalState(bool selected);
    void setXFOV24Attached(bool attached);
    void setZoomLensAttached(bool attached);
    void setVICChecked(bool checked);
    void setCurrentFilterWheelName(QString& name);
    bool isZoomLensSupported() const;
    bool isZoomLensAttached() const;
    bool isVICSupported() const;
    bool isVICChecked() const;
    bool isRemovableFilterWheelCapable() const;
    QString getCurrentFilterWheelName() const;

    // The instrument's hardware, as loadCameraInfo() derived it (see the class comment).
    QString getSystemType() const;
    QString getElectronicsTrayPartNumber() const;
    bool isElectronicsTray30052() const;
    bool hasUSBIOBoard() const;
    bool hasUACBoard() const;
    bool hasMultiViewImager() const;
    bool hasChipReader() const;
    bool hasXrayController() const;
    bool hasOmegaController() const;
    bool hasCNI32() const;
    bool isOutput1Enabled() const;
    bool isOutput2Enabled() const;
    bool hasFilter2() const;
    bool hasEMFilter2() const;
    bool hasFluorescenceKit() const;
    bool hasFluorescenceXMotor() const;
    bool hasFluorescenceYMotor() const;
    bool hasRotationStage() const;
    bool isMouseImagingShuttleEnabled() const;
    bool isSideViewMirrorEnabled() const;
    QString getLightsControlPolarity() const;
    bool isDU88Camera() const;
    bool isEMCCDCamera() const;
    bool isSophiaCamera() const;
    float getStageOffset() const;
    float getMirrorXOffset() const;
    float getMirrorAngle() const;

private:
    // The hardware options, one flag each, in the order of the class comment's table.
    enum Option {
        USBIOBoard,
        UACBoard,
        MultiViewImager,
        ChipReader,
        XrayController,
        OmegaController,
        CNI32,
        Output1,
        Output2,
        Filter2,
        EMFilter2,
        FluorescenceKit,
        FluorescenceXMotor,
        FluorescenceYMotor,
        RotationStage,
        MouseImagingShuttle,
        SideViewMirror,
        DU88Camera,
        EMCCDCamera,
        SophiaCamera,
        OptionCount
    };

    // One piece of the text load() cuts: where its lines came from.
    struct Piece
    {
        QString text;
        QString file;
        int fileLine;
    };

    // Inserts `inserted` at character `index` of the text the pieces make, splitting the
    // piece that holds it.
    static void insertPieces(QVector<Piece>& pieces, int index, const QVector<Piece>& inserted);
    // Cuts the text of the pieces into sections, telling each line by the file it came from,
    // with `rule` for sections already present.
    int loadPieces(const QVector<Piece>& pieces, RepeatedSectionRule rule);
    // Checks one extension file against the instrument type and the names taken before it
    // (its name is added); on success m_ExtensionPieces holds its text to merge.
    int checkExtension(const QString& path, const QString& systemType, QStringList& names,
                       QString* failure);
    int failExtensions(int status, const QString& file, const QString& message, QString& output);
    int selectKeys(const QString& prefix, const QString& part, QStringList* keys) const;
    void resetStates();
    void deriveHardware();
    void validationMessage(const QString& message);
    // A value of the main section without its inline comment; empty when absent.
    QString mainValue(const QString& key) const;
    bool mainValueIsYes(const QString& key) const;

    QString m_strCurrentFilterWheel;
    bool m_bLargeAnimalCapable = false;
    bool m_bLargeAnimalSelected = false;
    bool m_bXFOV24Available = false;
    bool m_bXFOV24Attached = false;
    bool m_bZoomLensSupported = false;
    bool m_bZoomLensAttached = false;
    bool m_bVICSupported = false;
    bool m_bVICChecked = false;
    bool m_bRemovableFilterWheel = false;
    bool m_Options[OptionCount] = {};
    QString m_strSystemType;
    QString m_strElectronicsTray;
    QString m_strLightsPolarity;
    float m_fStageOffset = 0;
    float m_fMirrorXOffset = 0;
    float m_fMirrorAngle = 0;

    QString m_strFilePath;
    QList<CPLCameraExtension> m_LoadedExtensions;
    CPLCameraExtensionFailure m_ExtensionFailure;
    // The pieces of the extension text that loadCameraInfoExtensions() joined last.
    QVector<Piece> m_ExtensionPieces;
    QStringList m_ValidationMessages;
};

#endif // PLCAMERAINFO_H
