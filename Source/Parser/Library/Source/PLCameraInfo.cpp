#include "PLCameraInfo.h"

#include "PLConstants.h"
#include "PLDecodedText_p.h"
#include "PLFileReader_p.h"
#include "PLLineGrammar_p.h"
#include "PLLogging_p.h"
#include "PLPaths.h"
#include "PLScanner_p.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <QDir>
#include <QFileInfo>
#include <QPair>
#include <QScopeGuard>
#include <QSettings>

#include <algorithm>
#include <iterator>
#include <memory>

// Motor driver numbers.
const QString LENS_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("Lens Motor Driver Number");
const QString LENS_FSTOP_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("Lens fstop Motor Driver Number");
const QString FILTER_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("Filter Motor Driver Number");
const QString EM_FILTER_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("EM Filter Motor Driver Number");
const QString FILTER2_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("Filter2 Motor Driver Number");
const QString EM_FILTER2_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("EM Filter2 Motor Driver Number");
const QString SHELF_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("Shelf Motor Driver Number");
const QString SHELF_X_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("Shelf x-Motor Driver Number");
const QString SHELF_Y_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("Shelf y-Motor Driver Number");
const QString EX_FILTER_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("EX Filter Motor Driver Number");
const QString SCINTILLATOR_MOTOR_DRIVER_NUMBER_KEY
    = QStringLiteral("Scintillator Motor Driver Number");
const QString SCINTILLATOR_SLIDE_MOTOR_DRIVER_NUMBER_KEY
    = QStringLiteral("Scintillator Slide Motor Driver Number");
const QString TURNTABLE_MOTOR_DRIVER_NUMBER_KEY
    = QStringLiteral("Rotation Stage Motor Driver Number");
const QString XR_FILTER_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("XR Filter Motor Driver Number");
const QString MIRROR_MOTOR_DRIVER_NUMBER_KEY = QStringLiteral("Mirror Motor Driver Number");
const QString MIRROR_ROTATION_MOTOR_DRIVER_NUMBER_KEY
    = QStringLiteral("Mirror Rotation Motor Driver Number");
const QString FLUORESCENCE_X_MOTOR_DRIVER_NUMBER_KEY
    = QStringLiteral("Fluorescence X Motor Driver Number");
const QString FLUORESCENCE_Y_MOTOR_DRIVER_NUMBER_KEY
    = QStringLiteral("Fluorescence Y Motor Driver Number");

// Motor speeds, F, R, S and H.
const QString LENS_MOTOR_SPEED_F_KEY = QStringLiteral("Lens Motor Speed F");
const QString LENS_MOTOR_SPEED_R_KEY = QStringLiteral("Lens Motor Speed R");
const QString LENS_MOTOR_SPEED_S_KEY = QStringLiteral("Lens Motor Speed S");
const QString LENS_MOTOR_SPEED_H_KEY = QStringLiteral("Lens Motor Speed H");
const QString LENS_FSTOP_MOTOR_SPEED_F_KEY = QStringLiteral("Lens fstop Motor Speed F");
const QString LENS_FSTOP_MOTOR_SPEED_R_KEY = QStringLiteral("Lens fstop Motor Speed R");
const QString LENS_FSTOP_MOTOR_SPEED_S_KEY = QStringLiteral("Lens fstop Motor Speed S");
const QString LENS_FSTOP_MOTOR_SPEED_H_KEY = QStringLiteral("Lens fstop Motor Speed H");
const QString FILTER_MOTOR_SPEED_F_KEY = QStringLiteral("Filter Motor Speed F");
const QString FILTER_MOTOR_SPEED_R_KEY = QStringLiteral("Filter Motor Speed R");
const QString FILTER_MOTOR_SPEED_S_KEY = QStringLiteral("Filter Motor Speed S");
const QString FILTER_MOTOR_SPEED_H_KEY = QStringLiteral("Filter Motor Speed H");
const QString EM_FILTER_MOTOR_SPEED_F_KEY = QStringLiteral("EM Filter Motor Speed F");
const QString EM_FILTER_MOTOR_SPEED_R_KEY = QStringLiteral("EM Filter Motor Speed R");
const QString EM_FILTER_MOTOR_SPEED_S_KEY = QStringLiteral("EM Filter Motor Speed S");
const QString EM_FILTER_MOTOR_SPEED_H_KEY = QStringLiteral("EM Filter Motor Speed H");
const QString SHELF_MOTOR_SPEED_F_KEY = QStringLiteral("Shelf Motor Speed F");
const QString SHELF_MOTOR_SPEED_R_KEY = QStringLiteral("Shelf Motor Speed R");
const QString SHELF_MOTOR_SPEED_S_KEY = QStringLiteral("Shelf Motor Speed S");
const QString SHELF_MOTOR_SPEED_H_KEY = QStringLiteral("Shelf Motor Speed H");
const QString SHELF_X_MOTOR_SPEED_F_KEY = QStringLiteral("Shelf x-Motor Speed F");
const QString SHELF_X_MOTOR_SPEED_R_KEY = QStringLiteral("Shelf x-Motor Speed R");
const QString SHELF_X_MOTOR_SPEED_S_KEY = QStringLiteral("Shelf x-Motor Speed S");
const QString SHELF_X_MOTOR_SPEED_H_KEY = QStringLiteral("Shelf x-Motor Speed H");
const QString SHELF_Y_MOTOR_SPEED_F_KEY = QStringLiteral("Shelf y-Motor Speed F");
const QString SHELF_Y_MOTOR_SPEED_R_KEY = QStringLiteral("Shelf y-Motor Speed R");
const QString SHELF_Y_MOTOR_SPEED_S_KEY = QStringLiteral("Shelf y-Motor Speed S");
const QString SHELF_Y_MOTOR_SPEED_H_KEY = QStringLiteral("Shelf y-Motor Speed H");
const QString EX_FILTER_MOTOR_SPEED_F_KEY = QStringLiteral("EX Filter Motor Speed F");
const QString EX_FILTER_MOTOR_SPEED_R_KEY = QStringLiteral("EX Filter Motor Speed R");
const QString EX_FILTER_MOTOR_SPEED_S_KEY = QStringLiteral("EX Filter Motor Speed S");
const QString EX_FILTER_MOTOR_SPEED_H_KEY = QStringLiteral("EX Filter Motor Speed H");
const QString SCINTILLATOR_MOTOR_SPEED_F_KEY = QStringLiteral("Scintillator Motor Speed F");
const QString SCINTILLATOR_MOTOR_SPEED_R_KEY = QStringLiteral("Scintillator Motor Speed R");
const QString SCINTILLATOR_MOTOR_SPEED_S_KEY = QStringLiteral("Scintillator Motor Speed S");
const QString SCINTILLATOR_MOTOR_SPEED_H_KEY = QStringLiteral("Scintillator Motor Speed H");
const QString SCINTILLATOR_SLIDE_MOTOR_SPEED_F_KEY
    = QStringLiteral("Scintillator Slide Motor Speed F");
const QString SCINTILLATOR_SLIDE_MOTOR_SPEED_R_KEY
    = QStringLiteral("Scintillator Slide Motor Speed R");
const QString SCINTILLATOR_SLIDE_MOTOR_SPEED_S_KEY
    = QStringLiteral("Scintillator Slide Motor Speed S");
const QString SCINTILLATOR_SLIDE_MOTOR_SPEED_H_KEY
    = QStringLiteral("Scintillator Slide Motor Speed H");
const QString TURNTABLE_MOTOR_SPEED_F_KEY = QStringLiteral("Rotation Stage Motor Speed F");
const QString TURNTABLE_MOTOR_SPEED_R_KEY = QStringLiteral("Rotation Stage Motor Speed R");
const QString TURNTABLE_MOTOR_SPEED_S_KEY = QStringLiteral("Rotation Stage Motor Speed S");
const QString TURNTABLE_MOTOR_SPEED_H_KEY = QStringLiteral("Rotation Stage Motor Speed H");
const QString XR_FILTER_MOTOR_SPEED_F_KEY = QStringLiteral("XR Filter Motor Speed F");
const QString XR_FILTER_MOTOR_SPEED_R_KEY = QStringLiteral("XR Filter Motor Speed R");
const QString XR_FILTER_MOTOR_SPEED_S_KEY = QStringLiteral("XR Filter Motor Speed S");
const QString XR_FILTER_MOTOR_SPEED_H_KEY = QStringLiteral("XR Filter Motor Speed H");
const QString MIRROR_MOTOR_SPEED_F_KEY = QStringLiteral("Mirror Motor Speed F");
const QString MIRROR_MOTOR_SPEED_R_KEY = QStringLiteral("Mirror Motor Speed R");
const QString MIRROR_MOTOR_SPEED_S_KEY = QStringLiteral("Mirror Motor Speed S");
const QString MIRROR_MOTOR_SPEED_H_KEY = QStringLiteral("Mirror Motor Speed H");
const QString FLUORESCENCE_X_MOTOR_SPEED_F_KEY = QStringLiteral("Fluorescence X motor Speed F");
const QString FLUORESCENCE_X_MOTOR_SPEED_R_KEY = QStringLiteral("Fluorescence X motor Speed R");
const QString FLUORESCENCE_X_MOTOR_SPEED_S_KEY = QStringLiteral("Fluorescence X motor Speed S");
const QString FLUORESCENCE_X_MOTOR_SPEED_H_KEY = QStringLiteral("Fluorescence X motor Speed H");
const QString FLUORESCENCE_Y_MOTOR_SPEED_F_KEY = QStringLiteral("Fluorescence Y motor Speed F");
const QString FLUORESCENCE_Y_MOTOR_SPEED_R_KEY = QStringLiteral("Fluorescence Y motor Speed R");
const QString FLUORESCENCE_Y_MOTOR_SPEED_S_KEY = QStringLiteral("Fluorescence Y motor Speed S");
const QString FLUORESCENCE_Y_MOTOR_SPEED_H_KEY = QStringLiteral("Fluorescence Y motor Speed H");
const QString MIRROR_ROTATION_MOTOR_SPEED_F_KEY
    = QStringLiteral("Mirror Rotation Motor Driver Number F");
const QString MIRROR_ROTATION_MOTOR_SPEED_R_KEY
    = QStringLiteral("Mirror Rotation Motor Driver Number R");
const QString MIRROR_ROTATION_MOTOR_SPEED_S_KEY
    = QStringLiteral("Mirror Rotation Motor Driver Number S");
const QString MIRROR_ROTATION_MOTOR_SPEED_H_KEY
    = QStringLiteral("Mirror Rotation Motor Driver Number H");

// Soft limits.
const QString SHELF_POSITION_SOFT_LIMIT_KEY = QStringLiteral("Shelf Position Soft Limit");
const QString LENS_POSITION_SOFT_LIMIT_KEY = QStringLiteral("Lens Position Soft Limit");
const QString LENS_FSTOP_SOFT_LIMIT_KEY = QStringLiteral("Lens fstop Soft Limit");
const QString EX_FILTER_POSITION_SOFT_LIMIT_KEY = QStringLiteral("EX Filter Position Soft Limit");
const QString EM_FILTER_POSITION_SOFT_LIMIT_KEY = QStringLiteral("EM Filter Position Soft Limit");
const QString FILTER_POSITION_SOFT_LIMIT_KEY = QStringLiteral("Filter Position Soft Limit");
const QString FLUORESCENCE_X_MOTOR_SOFT_LIMIT_KEY
    = QStringLiteral("Fluorescence X motor Soft Limit");
const QString FLUORESCENCE_Y_MOTOR_SOFT_LIMIT_KEY
    = QStringLiteral("Fluorescence Y motor Soft Limit");
const QString MIRROR_MOTOR_SOFT_LIMIT_KEY = QStringLiteral("Mirror Motor Soft Limit");
const QString X_SHELF_MOTOR_SOFT_LIMIT_KEY = QStringLiteral("x-Shelf Motor Soft Limit");
const QString Y_SHELF_MOTOR_SOFT_LIMIT_KEY = QStringLiteral("y-Shelf Motor Soft Limit");
const QString SCINTILLATOR_SOFT_LIMIT_KEY = QStringLiteral("Scintillator Soft Limit");
const QString SCINTILLATOR_SLIDE_POSITION_SOFT_LIMIT_KEY
    = QStringLiteral("Scintillator Slide Position Soft Limit");
const QString TURNTABLE_SOFT_LIMIT_KEY = QStringLiteral("Rotation Stage Soft Limit");

// Data-acquisition channels and ports.
const QString MOTOR_BOARD_HARDWARE_RESET_NI_CHANNEL_KEY
    = QStringLiteral("Motor Board Hardware Reset NI Channel");
const QString FIBER_SOURCE_TOGGLE_NI_CHANNEL_KEY = QStringLiteral("Fiber Source Toggle NI Channel");
const QString FIBER_SOURCE_INTENSITY_CONTROL_NI_CHANNEL_KEY
    = QStringLiteral("Fiber Source Intensity Control NI Channel");
const QString SHELF_POT_MONITOR_NI_CHANNEL_KEY = QStringLiteral("Shelf Pot Monitor NI Channel");
const QString COLDFINGER_HEATER_RESISTOR_MONITOR_NI_CHANNEL_KEY
    = QStringLiteral("Coldfinger Heater Resistor Monitor NI Channel");
const QString LIGHTS_VOLTAGE_MONITOR_NI_CHANNEL_KEY
    = QStringLiteral("Lights Voltage Monitor NI Channel");
const QString DARKBOX_LIGHTS_ON_CONTROL_NI_CHANNEL_KEY
    = QStringLiteral("Darkbox Lights On Control NI Channel");
const QString DARKBOX_DOOR_ENTRY_LED_NI_CHANNEL_KEY
    = QStringLiteral("Darkbox Door Entry LED NI Channel");
const QString DARKBOX_DOOR_OPEN_MONITOR_NI_CHANNEL_KEY
    = QStringLiteral("Darkbox Door Open Monitor NI Channel");
const QString LED_SOURCE_SELECTOR_NI_CHANNEL_KEY = QStringLiteral("LED Source Selector NI Channel");
const QString LIGHTS_CONTROL_SELECTOR_NI_CHANNEL_KEY
    = QStringLiteral("Lights Control Selector NI Channel");
const QString LIGHTS_CONTROL_CHANNEL_KEY = QStringLiteral("Lights Control Channel");
const QString LED_VOLTAGE_MONITOR_NI_CHANNEL_KEY = QStringLiteral("LED Voltage Monitor NI Channel");
const QString LIGHTS_INNER_ON_CONTROL_NI_CHANNEL_KEY
    = QStringLiteral("Lights Inner On Control NI Channel");
const QString LIGHTS_OUTER_ON_CONTROL_NI_CHANNEL_KEY
    = QStringLiteral("Lights Outer On Control NI Channel");
const QString LASER_ON_CONTROL_NI_CHANNEL_KEY = QStringLiteral("Laser On Control NI Channel");
const QString GALVO_ON_CONTROL_NI_CHANNEL_KEY = QStringLiteral("Galvo On Control NI Channel");
const QString BOTTOM_ILLUMINATION_TOGGLE_NI_CHANNEL_KEY
    = QStringLiteral("Bottom Fiber Toggle Channel");
const QString DARKBOX_DOOR_MAG_LOCK_CHANNEL_KEY = QStringLiteral("Darkbox Door Mag Lock Channel");
const QString INIT_NI_CHANNEL_KEY = QStringLiteral("Init NI Channel");
const QString COMMAND_OUT_CONTROL_PORT_KEY = QStringLiteral("Command Out Control Port");
const QString ADDITIONAL_COMMAND_OUT_CONTROL_PORT_KEY
    = QStringLiteral("Additional Command Out Control Port");
const QString COMMAND_IN_CONTROL_PORT_KEY = QStringLiteral("Command In Control Port");
const QString HIGH_SPEED_NI_DEVICE_KEY = QStringLiteral("High Speed NI Device");
const QString LIGHTS_CONTROL_POLARITY_KEY = QStringLiteral("Lights Control Polarity");
const QString NIDAQ_CARD_INSTALLED_KEY = QStringLiteral("NIDAQ Card Installed");
const QString SHELF_POT_X_MONITOR_NI_CHANNEL_KEY = QStringLiteral("Shelf Pot x-Monitor NI Channel");
const QString SHELF_POT_Y_MONITOR_NI_CHANNEL_KEY = QStringLiteral("Shelf Pot y-Monitor NI Channel");

// Filter wheels.
const QString EX_FILTER_WHEEL_ROTATION_STEPS_KEY = QStringLiteral("EX Filter Wheel Rotation Steps");
const QString EX_FILTER_POSITIONS_PER_WHEEL_KEY
    = QStringLiteral("EX Filter Wheel Positions per Wheel");
const QString EX_FILTER_POSITION_1_STEPS_KEY = QStringLiteral("EX Filter Wheel Position 1 Steps");
const QString FILTER_WHEEL_ROTATION_STEPS_KEY = QStringLiteral("Filter Wheel Rotation Steps");
const QString FILTER_POSITIONS_PER_WHEEL_KEY = QStringLiteral("Filter Wheel Positions Per Wheel");
const QString FILTER_POSITION_1_STEPS_KEY = QStringLiteral("Filter Wheel Position 1 Steps");
const QString FILTER2_WHEEL_ROTATION_STEPS_KEY = QStringLiteral("Filter2 Wheel Rotation Steps");
const QString FILTER2_POSITION_1_STEPS_KEY = QStringLiteral("Filter2 Wheel Position 1 Steps");
const QString EM_FILTER_WHEEL_ROTATION_STEPS_KEY = QStringLiteral("EM Filter Wheel Rotation Steps");
const QString EM_FILTER_POSITIONS_PER_WHEEL_KEY
    = QStringLiteral("EM Filter Wheel Positions Per Wheel");
const QString EM_FILTER_POSITION_1_STEPS_KEY = QStringLiteral("EM Filter Wheel Position 1 Steps");
const QString EM_FILTER2_WHEEL_ROTATION_STEPS_KEY
    = QStringLiteral("EM Filter2 Wheel Rotation Steps");
const QString EM_FILTER2_POSITION_1_STEPS_KEY = QStringLiteral("EM Filter2 Wheel Position 1 Steps");
const QString XR_FILTER_WHEEL_ROTATION_STEPS_KEY = QStringLiteral("XR Filter Wheel Rotation Steps");
const QString XR_FILTER_POSITIONS_PER_WHEEL_KEY
    = QStringLiteral("XR Filter Wheel Positions per Wheel");
const QString XR_FILTER_POSITION_1_STEPS_KEY = QStringLiteral("XR Filter Wheel Position 1 Steps");
const QString FILTER_WHEEL_MOVES_WITHOUT_HOMING_KEY
    = QStringLiteral("Filter Wheel Moves Without Homing");

// Stage, lens and mirror geometry.
const QString SHELF_STEPS_PER_MM_KEY = QStringLiteral("Shelf Steps per mm");
const QString SCINTILLATOR_SLIDE_STEPS_PER_MM_KEY
    = QStringLiteral("Scintillator Slide Steps per mm");
const QString SCINTILLATOR_SETUP_OFFSET_KEY = QStringLiteral("Scintillator Setup offset");
const QString SHELF_POSITION_LOAD_STEPS_KEY = QStringLiteral("Shelf Position Load steps");
const QString LENS_FSTOP_8_STEPS_KEY = QStringLiteral("Lens fstop 8 steps");
const QString MIRROR_STEPS_PER_REVOLUTION_KEY = QStringLiteral("Mirror Steps per revolution");
const QString MIRROR_MOTOR_STEPS_PER_DEGREE_KEY = QStringLiteral("Mirror Motor Steps per degree");
const QString MIRROR_OFFSET_DEGREES_KEY = QStringLiteral("Mirror Offset degrees");
const QString MULTIVIEW_KEEPAWAY_ANGLE_KEY = QStringLiteral("Multiview keepaway angle");
const QString XMOTOR_CENTER_KEY = QStringLiteral("Xmotor Center");
const QString YMOTOR_CENTER_KEY = QStringLiteral("Ymotor Center");
const QString XMOTOR_STEPS_PER_CM_KEY = QStringLiteral("Xmotor Steps per cm");
const QString YMOTOR_STEPS_PER_CM_KEY = QStringLiteral("Ymotor Steps per cm");
const QString MAX_STAGE_DISTANCE_CM_KEY = QStringLiteral("Max Stage Distance cm");
const QString MIN_STAGE_DISTANCE_CM_KEY = QStringLiteral("Min Stage Distance cm");
const QString MV_STAGE_DISTANCE_KEY = QStringLiteral("MV Stage Distance");
const QString FULL_SCALE_MOTOR_COUNTS_X_KEY = QStringLiteral("Full Scale Motor Counts x");
const QString FULL_SCALE_MOTOR_COUNTS_Y_KEY = QStringLiteral("Full Scale Motor Counts y");
const QString SHELF_X_POT_HOME_KEY = QStringLiteral("Shelf x-Pot Home");
const QString SHELF_X_POT_CENTER_KEY = QStringLiteral("Shelf x-Pot center");
const QString SHELF_X_POT_EXTREME_KEY = QStringLiteral("Shelf x-Pot Extreme");
const QString SHELF_Y_POT_HOME_KEY = QStringLiteral("Shelf y-Pot Home");
const QString SHELF_Y_POT_CENTER_KEY = QStringLiteral("Shelf y-Pot center");
const QString SHELF_Y_POT_EXTREME_KEY = QStringLiteral("Shelf y-Pot Extreme");
const QString TURNTABLE_STEPS_PER_REVOLUTION_KEY
    = QStringLiteral("Rotation stage steps per revolution");
const QString TURNTABLE_STEPS_PER_DEGREE_KEY = QStringLiteral("Rotation stage steps per degree");
const QString TURNTABLE_ZERO_DEGREE_STEPS_KEY = QStringLiteral("Rotation stage zero degree steps");
const QString BACKLASH_STEPS_KEY = QStringLiteral("Backlash steps");

// CT and x-ray.
const QString CT_SHELF_POSITION_STEPS_KEY = QStringLiteral("CT Shelf Position steps");
const QString ALIGNMENT_SHELF_POSITION_STEPS_KEY = QStringLiteral("Alignment Shelf Position steps");
const QString CENTER_TO_SOURCE_KEY = QStringLiteral("Center to Source");
const QString CENTER_TO_DETECTOR_KEY = QStringLiteral("Center to Detector");
const QString CT_SCALING_FACTOR_KEY = QStringLiteral("CT Scaling Factor");
const QString CT_DETECTOR_SATURATION_VALUE_KEY = QStringLiteral("CT Detector Saturation value");
const QString GIGE_DETECTOR_IP_ADDRESS_KEY = QStringLiteral("GigE Detector IP Address");
const QString CT_REFERENCE_USABILITY_DAYS_KEY = QStringLiteral("CT Reference Usability Days");
const QString XRAY_CONTROLLER_COM_PORT_KEY = QStringLiteral("Xray controller com port");
const QString XRAY_ZOOM_LENS_MOTOR_STEPS_KEY = QStringLiteral("x-ray zoom lens motor steps");
const QString LARGE_ANIMAL_XRAYED_KEY = QStringLiteral("Large animal x-rayed");
const QString LARGE_ANIMAL_POSITION_KEY = QStringLiteral("Large animal position");

// Acquisition defaults.
const QString IMAGE_TRANSPOSE_KEY = QStringLiteral("Image Transpose");
const QString IMAGE_ROTATION_KEY = QStringLiteral("Image Rotation");
const QString PHOTOGRAPHIC_FSTOP_KEY = QStringLiteral("Photographic fstop");
const QString LUMINESCENT_FSTOP_KEY = QStringLiteral("Luminescent fstop");
const QString PHOTOGRAPHIC_BINNING_KEY = QStringLiteral("Photographic binning");
const QString LUMINESCENT_BINNING_KEY = QStringLiteral("Luminescent binning");
const QString LIGHTING_SATURATION_COUNTS_KEY = QStringLiteral("Lighting Saturation Counts");
const QString MINIMUM_CONTRAST_LEVEL = QStringLiteral("Minimum Contrast Ratio");
const QString MINIMUM_PHOTO_LEVEL_KEY = QStringLiteral("Minimum Photo Level");
const QString PHOTO_EXPOSURE_FOV_KEY = QStringLiteral("Photo Exposure FOV");

// The instrument, its extensions and its options.
const QString SYSTEM_CONFIGURATION_KEY = QStringLiteral("System Configuration");
const QString CAMERAINFO_EXTENSION_NAME_KEY = QStringLiteral("Extension name");
const QString CAMERAINFO_EXTENSION_CONFLICT_KEY = QStringLiteral("Conflicts with extensions");
const QString CAMERA_CCD_TEMPERATURE_KEY = QStringLiteral("Camera CCD Temperature");
const QString ENABLE_CAMERA_COOLER_KEY = QStringLiteral("Enable Camera Cooler");
const QString CAMERA_BIN_FILE_KEY = QStringLiteral("Camera bin File");
const QString CAMERA_SET_FILE_KEY = QStringLiteral("Camera set File");
const QString CAMERA_STR_FILE_KEY = QStringLiteral("Camera str File");
const QString FLUORESCENT_LAMP_HIGH_VOLTAGE_KEY = QStringLiteral("Fluorescent lamp high voltage");
const QString FLUORESCENT_LAMP_LOW_VOLTAGE_KEY = QStringLiteral("Fluorescent lamp low voltage");
const QString FLUORESCENCE_KIT_INSTALLED_KEY = QStringLiteral("Fluorescence kit installed");
const QString XFOV24_AVAILABLE = QStringLiteral("GEIZID");
const QString LARGE_ANIMAL_CAPABLE = QStringLiteral("Motor Steps for x-ray2 position c");
const QString REMOVABLE_FILTER_WHEEL_CAPABLE_KEY = QStringLiteral("Removable Filter Wheel Capable");
const QString ZOOM_LENS_SUPPORT_KEY = QStringLiteral("Zoom Lens Support");
const QString VIC_SUPPORT_KEY = QStringLiteral("VIC Support");
const QString VIC_CALIBRATION_FACTOR_KEY = QStringLiteral("VIC Calibration Factor");
const QString MOUSE_IMAGING_SHUTTLE_ENABLED_KEY = QStringLiteral("Mouse Imaging Shuttle Enabled");
const QString SIDE_VIEW_MIRROR_ENABLED_KEY = QStringLiteral("Side View Mirror Enabled");
const QString MOTOR_BOARD_TYPE_KEY = QStringLiteral("Motor Board Type");
const QString MOUSE_TRAY_ENABLED_KEY = QStringLiteral("Mouse Tray Enabled");

// Folders and files of the instrument's configuration folder.
const QString CAMERA_INFO_TEXTFILE = QStringLiteral("CameraInfo.txt");
const QString CT_PARAMETER_FOLDER = QStringLiteral("CT Parameters");
const QString XRAY_REFERENCE_FOLDER = QStringLiteral("XRReference");
const QString XRAY_INDEX_FILE = QStringLiteral("XRayIndex.txt");
const QString XRAY_REF_INFO_FILE = QStringLiteral("XrayRefInfo.txt");
const QString XRAY_DEF_MAP_INDEX_FILE = QStringLiteral("XrayDefMapIndex.txt");
const QString XRAY_DEF_MAP_INFO_FILE = QStringLiteral("XrayDefMapInfo.txt");
const QString UI_STATUS_CONFIG_FILE = QStringLiteral("UI_Status.txt");

const QStringList KORA_SYSTEM_TYPES
    = { QStringLiteral("KORA 50"), QStringLiteral("KORA 100"), QStringLiteral("KORA 200") };

namespace {

// The source and function the checks of loadCameraInfo() name in their messages.
const char SOURCE_TAG[] = "Source/Parser/Library/Source/PLCameraInfo";
const char LOAD_FUNCTION_TAG[] = "bool CPLCameraInfo::loadCameraInfo(QString)";

// The per-machine settings store of the accessory states.
const QString SETTINGS_APPLICATION = QStringLiteral("Orvane");
const QString SETTINGS_FILE = QStringLiteral("Orvane.conf");
const QString SETTINGS_GROUP = QStringLiteral("Current_Version");
const QString XFOV24_SETTING = QStringLiteral("XFOV24");
const QString FILTER_WHEEL_SETTING = QStringLiteral("filterWheel");
const QString ZOOM_SETTING = QStringLiteral("Zoom");
const QString LARGE_ANIMAL_SETTING = QStringLiteral("LargeAnimal");
const QString DEFAULT_FILTER_WHEEL = QStringLiteral("standard.xem");

// Keys that only the checks read.
const QString CAMERA_CCD_TYPE_KEY = QStringLiteral("Camera CCD Type");
const QString SHELF_POSITION_Z_FOV_KEY = QStringLiteral("Shelf Position Z FOV");
const QString ELECTRONICS_TRAY_PART_NUMBER_KEY = QStringLiteral("Electronics Tray Part Number");
const QString ELECTRONICS_TRAY_30052 = QStringLiteral("30052");
const QString USB_IO_BOARD_KEY = QStringLiteral("USB I/O BOARD");
const QString UAC_BOARD_KEY = QStringLiteral("UAC BOARD");
const QString MULTI_VIEW_IMAGER_KEY = QStringLiteral("Multi-View Imager");
const QString CHIP_READER_KEY = QStringLiteral("Chip-Reader");
const QString XRAY_CONTROLLER_KEY = QStringLiteral("Xray Controller");
const QString OMEGA_CONTROLLER_KEY = QStringLiteral("Omega controller installed");
const QString CNI32_KEY = QStringLiteral("cni32");
const QString OUTPUT_1_KEY = QStringLiteral("output 1");
const QString OUTPUT_2_KEY = QStringLiteral("output 2");
const QString STAGE_OFFSET_KEY = QStringLiteral("Stage offset");
const QString MIRROR_X_OFFSET_KEY = QStringLiteral("Mirror x-offset");
const QString MIRROR_ANGLE_KEY = QStringLiteral("Mirror angle");
const QString DU88_CCD = QStringLiteral("DU88");
const QString EMCCD_CCD = QStringLiteral("EMCCD");
const QString SOPHIA_CCD = QStringLiteral("Sophia");
const QString STEPS = QStringLiteral("steps");
// The value of a key that is true; every other value is false.
const QString YES_VALUE = QStringLiteral("yes");

// The text of a file as the loader reads it, and the line of the file its first line is.
int readText(const QString& path, QString* text, int* firstLine)
{
    QByteArray bytes;
    const int status = PLFile::readFile(path, &bytes);
    if (status != PL_SUCCESS)
        return status;
    return PL_GUARDED({
        const CPLDecodedText decoded(bytes.constData(), bytes.size());
        *text = decoded.text();
        *firstLine = decoded.linesBefore() + 1;
        return PL_SUCCESS;
    });
}

// The member of KORA_SYSTEM_TYPES that `value` names (contains, in any case); empty for none.
QString systemTypeIn(const QString& value)
{
    for (const QString& type : KORA_SYSTEM_TYPES) {
        if (value.contains(type, Qt::CaseInsensitive))
            return type;
    }
    return QString();
}

// The instrument type of a configuration text: the rest of the first line holding "System
// Configuration" (with case), without the key, trimmed.
QString systemTypeOfText(const QString& text)
{
    const int at = text.indexOf(SYSTEM_CONFIGURATION_KEY);
    if (at < 0)
        return QString();
    const int lf = text.indexOf(QLatin1Char('\n'), at);
    return systemTypeIn(text.mid(at + SYSTEM_CONFIGURATION_KEY.size(),
                                 lf < 0 ? -1 : lf - at - SYSTEM_CONFIGURATION_KEY.size())
                            .trimmed());
}

// The values of every key line of `key` (in any case) in `text`, whatever its section, in
// order: what a merge of the text could take.
QStringList keyValues(const QString& text, const QString& key)
{
    QStringList values;
    for (const QStringRef& line : text.splitRef(QLatin1Char('\n'))) {
        const QStringRef trimmed = line.trimmed();
        const QStringRef rest = trimmed.mid(key.size()).trimmed();
        if (trimmed.startsWith(key, Qt::CaseInsensitive) && rest.startsWith(QLatin1Char(':')))
            values.append(rest.mid(1).trimmed().toString());
    }
    return values;
}

// The block (header line to the next header) of the first section of `text` whose key is
// `sectionKey`, in any case: [begin, end). begin == end when there is none.
QPair<int, int> sectionBlock(const QString& text, const QString& sectionKey)
{
    const auto* data = text.constData();
    const qint64 length = text.size();
    qint64 position = 0;
    PLScan::SectionRange range;
    while (position < length && PLScan::nextSection(data, length, position, range)) {
        const qint64 headerEnd = qMin(PLScan::lineEnd(data, length, range.begin) - 1, length);
        PLGrammar::Header<QChar> parts;
        if (PLGrammar::parseHeader(PLText::Span<QChar> { data + range.begin, data + headerEnd },
                                   &parts)
            && QStringView(parts.key.begin, parts.key.size())
                    .compare(sectionKey, Qt::CaseInsensitive)
                == 0)
            return { int(range.begin), int(qMin(range.end, length)) };
    }
    return { 0, 0 };
}

int lineCount(QStringView text)
{
    return int(text.count(QLatin1Char('\n')));
}

QString rightTrimmed(const QString& text)
{
    int end = text.size();
    while (end > 0 && text.at(end - 1).isSpace())
        --end;
    return text.left(end);
}

// The per-machine settings store, in the group of the accessory states.
std::unique_ptr<QSettings> accessorySettings()
{
    auto settings = qEnvironmentVariableIsEmpty(OV_DATA_DIR_VARIABLE)
        ? std::make_unique<QSettings>(PLConstants::COMPANY_NAME, SETTINGS_APPLICATION)
        : std::make_unique<QSettings>(getOVPath(OV_PATH_USER_SETTINGS) + QLatin1Char('/')
                                          + SETTINGS_FILE,
                                      QSettings::IniFormat);
    settings->beginGroup(SETTINGS_GROUP);
    return settings;
}

void storeSetting(const QString& key, const QVariant& value)
{
    auto settings = accessorySettings();
    settings->setValue(key, value);
    settings->sync();
    if (settings->status() != QSettings::NoError)
        qCWarning(lcOvCamera, "%s: the accessory state \"%s\" could not be stored",
                  qUtf8Printable(settings->fileName()), qUtf8Printable(key));
}

} // namespace

CPLCameraInfo::CPLCameraInfo()
    : m_strCurrentFilterWheel(DEFAULT_FILTER_WHEEL)
{
    setRepeatedSectionRule(AddMissingKeys);
}

CPLCameraInfo::~CPLCameraInfo() = default;

int CPLCameraInfo::load(const QString& filePath)
{
    QString text;
    int firstLine = 1;
    const int read = readText(filePath, &text, &firstLine);
    if (read != PL_SUCCESS)
        return read;
    clearData();
    m_strFilePath = filePath;

    const int firstHeader = text.indexOf(PLConstants::SECTIONKEY_PREFIX);
    QVector<Piece> pieces { { text, filePath, firstLine } };
    // Key lines before any header belong to the main section.
    const QString mainHeader
        = PLConstants::SECTIONKEY_PREFIX + PLConstants::CAMERAINFO_SECTION_KEY + QLatin1Char(':');
    if (!text.contains(mainHeader, Qt::CaseInsensitive))
        pieces.prepend({ mainHeader + QLatin1Char('\n'), filePath, firstLine });

    const QString folder = filePath.left(filePath.lastIndexOf(QLatin1Char('/')) + 1)
        + PLConstants::CAMERA_INFO_EXTENSION_FOLDER;
    QString extensionText;
    if (loadCameraInfoExtensions(folder, extensionText) == PL_SUCCESS && !extensionText.isEmpty()) {
        if (firstHeader < 0) {
            pieces.append({ QStringLiteral("\n\n"), QString(), 0 });
            pieces += m_ExtensionPieces;
        } else {
            // At the place of the first header in the text as read, not moved by a main
            // header put in front of it.
            QVector<Piece> inserted = m_ExtensionPieces;
            inserted.append({ QStringLiteral("\n"), QString(), 0 });
            insertPieces(pieces, firstHeader, inserted);
        }
    }
    const int status = loadPieces(pieces, AddMissingKeys);
    if (status == PL_SUCCESS)
        setFileSectionCount(sectionCount());
    return status;
}

void CPLCameraInfo::insertPieces(QVector<Piece>& pieces, int index, const QVector<Piece>& inserted)
{
    int offset = 0;
    for (int i = 0; i < pieces.size(); ++i) {
        const Piece piece = pieces.at(i);
        if (index > offset + piece.text.size()) {
            offset += piece.text.size();
            continue;
        }
        const QString before = piece.text.left(index - offset);
        const int afterLine = piece.fileLine > 0 ? piece.fileLine + lineCount(before) : 0;
        pieces[i].text = before;
        pieces.insert(i + 1, { piece.text.mid(index - offset), piece.file, afterLine });
        for (int j = 0; j < inserted.size(); ++j)
            pieces.insert(i + 1 + j, inserted.at(j));
        return;
    }
    pieces += inserted;
}

int CPLCameraInfo::loadPieces(const QVector<Piece>& pieces, RepeatedSectionRule rule)
{
    QString text;
    int line = 1;
    for (const Piece& piece : pieces) {
        if (piece.fileLine > 0)
            addTextSource(line, piece.file, piece.fileLine);
        text += piece.text;
        line += lineCount(piece.text);
    }
    setRepeatedSectionRule(rule);
    const auto restore = qScopeGuard([this] {
        setRepeatedSectionRule(AddMissingKeys);
        clearTextSources();
    });
    return loadTextBuffer(text);
}

int CPLCameraInfo::addTextBuffer(const QString& text)
{
    return loadPieces({ { text, QString(), 0 } }, ReplaceValues);
}

int CPLCameraInfo::loadappend(const QString& filePath)
{
    QString text;
    int firstLine = 1;
    const int read = readText(filePath, &text, &firstLine);
    return read != PL_SUCCESS ? read : loadPieces({ { text, filePath, firstLine } }, ReplaceValues);
}

int CPLCameraInfo::failExtensions(int status, const QString& file, const QString& message,
                                  QString& output)
{
    m_LoadedExtensions.clear();
    m_ExtensionPieces.clear();
    m_ExtensionFailure = { status, file, message };
    output = message;
    qCWarning(lcOvCamera).noquote() << message;
    return status;
}

int CPLCameraInfo::loadCameraInfoExtensions(const QString& extensionFolder, QString& output)
{
    m_LoadedExtensions.clear();
    m_ExtensionPieces.clear();
    m_ExtensionFailure = {};
    output.clear();
    const QDir folder(extensionFolder);
    // Every entry so named: one that is no readable file (a folder, a FIFO, a link that leads
    // nowhere) is refused as an unreadable one is, never left out without a word.
    const QStringList files = folder.exists()
        ? folder.entryList({ QStringLiteral("*.cfg") },
                           QDir::Files | QDir::Dirs | QDir::System | QDir::NoDotAndDotDot,
                           QDir::Name)
        : QStringList();
    if (files.isEmpty())
        return PL_SUCCESS;

    const QString beside = QDir::cleanPath(getParentPath(folder.absolutePath()) + QLatin1Char('/')
                                           + CAMERA_INFO_TEXTFILE);
    const QString basePath = QFileInfo::exists(beside)
        ? beside
        : getCompleteFilePath(OV_PATH_INSTRUMENT_CONFIG, CAMERA_INFO_TEXTFILE);
    QString baseText;
    int baseLine = 1;
    if (readText(basePath, &baseText, &baseLine) != PL_SUCCESS)
        return failExtensions(PL_CAMERA_BASE_FILE_MISSING, QString(),
                              QStringLiteral("Loading cameraInfo extensions failed: no base file "
                                             "'%1' to check them against")
                                  .arg(basePath),
                              output);
    const QString systemType = systemTypeOfText(baseText);
    if (systemType.isEmpty())
        return failExtensions(PL_CAMERA_SYSTEM_TYPE_UNKNOWN, QString(),
                              QStringLiteral("Loading cameraInfo extensions failed: the base "
                                             "file '%1' names no instrument type (%2)")
                                  .arg(basePath, KORA_SYSTEM_TYPES.join(QLatin1String(", "))),
                              output);

    QStringList names;
    QVector<Piece> pieces;
    for (const QString& name : files) {
        const QString path = extensionFolder + QLatin1Char('/') + name;
        QString failure;
        const int status = checkExtension(path, systemType, names, &failure);
        if (status != PL_SUCCESS)
            return failExtensions(
                status, path,
                QStringLiteral("Loading cameraInfo extension '%1' failed: %2").arg(name, failure),
                output);
        if (!pieces.isEmpty())
            pieces.append({ QStringLiteral("\n"), QString(), 0 });
        pieces += m_ExtensionPieces;
        m_LoadedExtensions.append({ names.last(), path });
    }
    m_ExtensionPieces = pieces;
    for (const Piece& piece : qAsConst(pieces))
        output += piece.text;
    return PL_SUCCESS;
}

int CPLCameraInfo::checkExtension(const QString& path, const QString& systemType,
                                  QStringList& names, QString* failure)
{
    const QFileInfo entry(path);
    if (entry.isDir() || (entry.isSymLink() && !entry.exists())) {
        *failure = entry.isDir()
            ? QStringLiteral("File open failed: a folder")
            : QStringLiteral("File open failed: a symbolic link that leads to no file");
        return PL_FILE_OPEN_FAILED;
    }
    QString text;
    int firstLine = 1;
    // A FIFO, socket or device is refused before it is opened (PL_NOT_REGULAR_FILE).
    int status = readText(path, &text, &firstLine);
    // A load reads text up to its first NUL: so is the extension's text merged, which must
    // not end the text of the base file after it.
    const int nul = text.indexOf(QChar(0));
    if (nul >= 0)
        text.truncate(nul);
    CPLClickInfo extension;
    if (status == PL_SUCCESS)
        status = extension.loadTextBuffer(text);
    if (status == PL_FILE_OPEN_FAILED) {
        *failure = QStringLiteral("File open failed");
        return status;
    }
    if (status != PL_SUCCESS) {
        *failure = getStatusText(status);
        return status;
    }
    const auto missing = [failure](const QString& what, const char* kind) {
        *failure = QStringLiteral("'%1' %2 not present").arg(what, QLatin1String(kind));
        return PL_KEY_NOT_FOUND;
    };
    const CPLSection* info = extension[PLConstants::CAMERA_INFO_EXTENSION_SECTION_KEY];
    if (!info)
        return missing(PLConstants::CAMERA_INFO_EXTENSION_SECTION_KEY, "section");
    QString values[3];
    const QString* keys[3] = { &CAMERAINFO_EXTENSION_NAME_KEY, &SYSTEM_CONFIGURATION_KEY,
                               &CAMERAINFO_EXTENSION_CONFLICT_KEY };
    for (int i = 0; i < 3; ++i) {
        if (info->getValue(*keys[i], &values[i]) != PL_SUCCESS)
            return missing(*keys[i], "key/value");
    }
    // A name is what a conflict names: an extension without one could not be told apart.
    if (values[0].trimmed().isEmpty()) {
        *failure = QStringLiteral("its '%1' is empty").arg(CAMERAINFO_EXTENSION_NAME_KEY);
        return PL_EMPTY_KEY;
    }
    if (systemTypeIn(values[1]) != systemType) {
        *failure = QStringLiteral("written for '%1', not for this instrument, '%2'")
                       .arg(values[1], systemType);
        return PL_CAMERA_SYSTEM_TYPE_MISMATCH;
    }
    if (!extension.isSectionPresent(PLConstants::CAMERAINFO_SECTION_KEY))
        return missing(PLConstants::CAMERAINFO_SECTION_KEY, "section");
    // An empty list, or an empty place in it ("A,", "A,,B"), names no extension.
    const QStringList conflicts = values[2].split(QLatin1Char(','));
    for (const QString& conflict : conflicts) {
        if (!conflict.trimmed().isEmpty() && names.contains(conflict.trimmed())) {
            *failure = QStringLiteral("Conflicts with already loaded extensions.");
            return PL_CAMERA_EXTENSION_CONFLICT;
        }
    }
    // Two extensions of one name would both be merged: the second is a conflict too.
    if (names.contains(values[0].trimmed())) {
        *failure
            = QStringLiteral("an extension named '%1' is loaded already, from '%2'")
                  .arg(values[0].trimmed(),
                       QFileInfo(m_LoadedExtensions.at(names.indexOf(values[0].trimmed())).file)
                           .fileName());
        return PL_CAMERA_EXTENSION_CONFLICT;
    }

    // The text merged: the file's, without its bookkeeping section, ending with a line feed.
    const QPair<int, int> block
        = sectionBlock(text, PLConstants::CAMERA_INFO_EXTENSION_SECTION_KEY);
    const QString before = text.left(block.first);
    const QString after = rightTrimmed(text.mid(block.second));
    // What it merges must not make the instrument another type than the one checked.
    for (const QString& merged : { before, after }) {
        for (const QString& configuration : keyValues(merged, SYSTEM_CONFIGURATION_KEY)) {
            if (systemTypeIn(configuration) != systemType) {
                *failure = QStringLiteral("it sets '%1' to '%2', not this instrument, '%3'")
                               .arg(SYSTEM_CONFIGURATION_KEY, configuration, systemType);
                return PL_CAMERA_SYSTEM_TYPE_MISMATCH;
            }
        }
    }
    names.append(values[0].trimmed());
    m_ExtensionPieces.clear();
    if (!after.isEmpty()) {
        m_ExtensionPieces.append({ before, path, firstLine });
        m_ExtensionPieces.append({ after + QLatin1Char('\n'), path,
                                   firstLine + lineCount(QStringView(text).left(block.second)) });
    } else {
        m_ExtensionPieces.append({ rightTrimmed(before) + QLatin1Char('\n'), path, firstLine });
    }
    return PL_SUCCESS;
}

CPLSection* CPLCameraInfo::getCameraInfoSection() const
{
    return (*this)[PLConstants::CAMERAINFO_SECTION_KEY];
}

int CPLCameraInfo::selectKeys(const QString& prefix, const QString& part, QStringList* keys) const
{
    if (!keys)
        return PL_NULL_ARGUMENT;
    const CPLSection* main = getCameraInfoSection();
    if (!main)
        return PL_SECTION_NOT_PRESENT;
    QStringList all;
    main->getKeyList(&all);
    for (const QString& key : qAsConst(all)) {
        if (key.startsWith(prefix) && (part.isEmpty() || key.contains(part)))
            keys->append(key);
    }
    return PL_SUCCESS;
}

int CPLCameraInfo::getKeyListWithSameKey(const QString& prefix, QStringList* keys) const
{
    return selectKeys(prefix, QString(), keys);
}

int CPLCameraInfo::getLensFStopStepList(const QString& prefix, QStringList* keys) const
{
    return selectKeys(prefix, STEPS, keys);
}

int CPLCameraInfo::getKeylistFromKeyAndSubkey(const QString& prefix, const QString& subkey,
                                              QStringList* keys) const
{
    return selectKeys(prefix, subkey, keys);
}

QString CPLCameraInfo::mainValue(const QString& key) const
{
    QString value;
    const CPLSection* main = getCameraInfoSection();
    return main && main->getValue(key, &value) == PL_SUCCESS ? value : QString();
}

bool CPLCameraInfo::mainValueIsYes(const QString& key) const
{
    return mainValue(key) == YES_VALUE;
}

void CPLCameraInfo::validationMessage(const QString& message)
{
    m_ValidationMessages.append(message);
    QMessageLogger(SOURCE_TAG, __LINE__, LOAD_FUNCTION_TAG, lcOvCamera().categoryName())
            .debug(lcOvCamera)
            .noquote()
        << message;
}

bool CPLCameraInfo::loadCameraInfo(const QString& filePath)
{
    m_ValidationMessages.clear();
    resetStates();
    if (load(filePath) != PL_SUCCESS) {
        validationMessage(QStringLiteral("Loading camera information failed."));
        return false;
    }
    m_strSystemType = systemTypeIn(mainValue(SYSTEM_CONFIGURATION_KEY));
    if (m_strSystemType.isEmpty()) {
        validationMessage(QStringLiteral("Invalid camera information, while loading camera info."));
        return false;
    }
    const auto settings = accessorySettings();
    m_bXFOV24Available = mainValueIsYes(XFOV24_AVAILABLE);
    m_bXFOV24Attached = m_bXFOV24Available && settings->value(XFOV24_SETTING, false).toBool();

    m_bLargeAnimalSelected = settings->value(LARGE_ANIMAL_SETTING, false).toBool();
    isLargeAnimalSelected();

    m_bRemovableFilterWheel = mainValueIsYes(REMOVABLE_FILTER_WHEEL_CAPABLE_KEY);
    if (m_bRemovableFilterWheel) {
        m_strCurrentFilterWheel
            = settings->value(FILTER_WHEEL_SETTING, DEFAULT_FILTER_WHEEL).toString();
        const QString wheel
            = getCompleteFilePath(OV_PATH_EMISSION_FILTERS, m_strCurrentFilterWheel, this);
        if (!QFileInfo(wheel).isFile()) {
            validationMessage(
                QStringLiteral("Loading Removable filter wheel information file failed."));
            validationMessage(
                QStringLiteral("The Emission Filter Wheel Information file %1 does not exist.")
                    .arg(wheel));
        }
    }

    m_bZoomLensSupported = mainValueIsYes(ZOOM_LENS_SUPPORT_KEY);
    if (m_bZoomLensSupported) {
        if (!getCameraInfoSection()->isKeyPresent(SHELF_POSITION_Z_FOV_KEY))
            validationMessage(QStringLiteral(
                "The Zoom Lens is supported. The Shelf position information for the zoom lens is "
                "missing in the camerainfo file"));
        m_bZoomLensAttached = settings->value(ZOOM_SETTING, false).toBool();
    }
    m_bVICSupported = mainValueIsYes(VIC_SUPPORT_KEY);
    deriveHardware();
    return true;
}

void CPLCameraInfo::resetStates()
{
    m_strCurrentFilterWheel = DEFAULT_FILTER_WHEEL;
    m_bLargeAnimalCapable = m_bLargeAnimalSelected = false;
    m_bXFOV24Available = m_bXFOV24Attached = false;
    m_bZoomLensSupported = m_bZoomLensAttached = false;
    m_bVICSupported = m_bVICChecked = m_bRemovableFilterWheel = false;
    std::fill(std::begin(m_Options), std::end(m_Options), false);
    m_strSystemType.clear();
    m_strElectronicsTray.clear();
    m_strLightsPolarity.clear();
    m_fStageOffset = m_fMirrorXOffset = m_fMirrorAngle = 0;
}

void CPLCameraInfo::deriveHardware()
{
    enum Test { Yes, DriverFitted, CCDType };
    struct Rule
    {
        Option option;
        const QString& key;
        Test test;
        const QString* ccdType;
    };
    static const Rule rules[] = {
        { USBIOBoard, USB_IO_BOARD_KEY, Yes, nullptr },
        { UACBoard, UAC_BOARD_KEY, Yes, nullptr },
        { MultiViewImager, MULTI_VIEW_IMAGER_KEY, Yes, nullptr },
        { ChipReader, CHIP_READER_KEY, Yes, nullptr },
        { XrayController, XRAY_CONTROLLER_KEY, Yes, nullptr },
        { OmegaController, OMEGA_CONTROLLER_KEY, Yes, nullptr },
        { CNI32, CNI32_KEY, Yes, nullptr },
        { Output1, OUTPUT_1_KEY, Yes, nullptr },
        { Output2, OUTPUT_2_KEY, Yes, nullptr },
        { Filter2, FILTER2_MOTOR_DRIVER_NUMBER_KEY, DriverFitted, nullptr },
        { EMFilter2, EM_FILTER2_MOTOR_DRIVER_NUMBER_KEY, DriverFitted, nullptr },
        { FluorescenceKit, FLUORESCENCE_KIT_INSTALLED_KEY, Yes, nullptr },
        { FluorescenceXMotor, FLUORESCENCE_X_MOTOR_DRIVER_NUMBER_KEY, DriverFitted, nullptr },
        { FluorescenceYMotor, FLUORESCENCE_Y_MOTOR_DRIVER_NUMBER_KEY, DriverFitted, nullptr },
        { RotationStage, TURNTABLE_MOTOR_DRIVER_NUMBER_KEY, DriverFitted, nullptr },
        { MouseImagingShuttle, MOUSE_IMAGING_SHUTTLE_ENABLED_KEY, Yes, nullptr },
        { SideViewMirror, SIDE_VIEW_MIRROR_ENABLED_KEY, Yes, nullptr },
        { DU88Camera, CAMERA_CCD_TYPE_KEY, CCDType, &DU88_CCD },
        { EMCCDCamera, CAMERA_CCD_TYPE_KEY, CCDType, &EMCCD_CCD },
        { SophiaCamera, CAMERA_CCD_TYPE_KEY, CCDType, &SOPHIA_CCD },
    };
    for (const Rule& rule : rules) {
        const QString value = mainValue(rule.key);
        switch (rule.test) {
        case Yes:
            m_Options[rule.option] = value == YES_VALUE;
            break;
        case DriverFitted:
            m_Options[rule.option] = value.toInt() > 0;
            break;
        case CCDType:
            m_Options[rule.option] = value.contains(*rule.ccdType, Qt::CaseInsensitive);
            break;
        }
    }
    m_strElectronicsTray = mainValue(ELECTRONICS_TRAY_PART_NUMBER_KEY);
    m_strLightsPolarity = mainValue(LIGHTS_CONTROL_POLARITY_KEY);
    const CPLSection* main = getCameraInfoSection();
    main->getValue(STAGE_OFFSET_KEY, &m_fStageOffset);
    main->getValue(MIRROR_X_OFFSET_KEY, &m_fMirrorXOffset);
    main->getValue(MIRROR_ANGLE_KEY, &m_fMirrorAngle);
}

QString CPLCameraInfo::getFilePath() const
{
    return m_strFilePath;
}
QList<CPLCameraExtension> CPLCameraInfo::getLoadedExtensions() const
{
    return m_LoadedExtensions;
}
CPLCameraExtensionFailure CPLCameraInfo::getExtensionFailure() const
{
    return m_ExtensionFailure;
}
QStringList CPLCameraInfo::getValidationMessages() const
{
    return m_ValidationMessages;
}

bool CPLCameraInfo::isXFOV24Available() const
{
    return m_bXFOV24Available;
}
bool CPLCameraInfo::isXFOV24Attached() const
{
    return m_bXFOV24Attached;
}

bool CPLCameraInfo::isLargeAnimalCapable()
{
    m_bLargeAnimalCapable = !mainValue(LARGE_ANIMAL_CAPABLE).isEmpty();
    return m_bLargeAnimalCapable;
}

bool CPLCameraInfo::isLargeAnimalSelected()
{
    m_bLargeAnimalSelected = m_bLargeAnimalSelected && isLargeAnimalCapable();
    return m_bLargeAnimalSelected;
}

void CPLCameraInfo::setLargeAnimalState(bool selected)
{
    m_bLargeAnimalSelected = selected && isLargeAnimalCapable();
    storeSetting(LARGE_ANIMAL_SETTING, m_bLargeAnimalSelected);
}

void CPLCameraInfo::setXFOV24Attached(bool attached)
{
    m_bXFOV24Attached = attached;
    storeSetting(XFOV24_SETTING, attached);
}

void CPLCameraInfo::setZoomLensAttached(bool attached)
{
    m_bZoomLensAttached = attached;
    storeSetting(ZOOM_SETTING, attached);
}

void CPLCameraInfo::setVICChecked(bool checked)
{
    m_bVICChecked = checked;
}

void CPLCameraInfo::setCurrentFilterWheelName(QString& name)
{
    m_strCurrentFilterWheel = name;
    storeSetting(FILTER_WHEEL_SETTING, name);
}

bool CPLCameraInfo::isZoomLensSupported() const
{
    return m_bZoomLensSupported;
}
bool CPLCameraInfo::isZoomLensAttached() const
{
    return m_bZoomLensAttached;
}
bool CPLCameraInfo::isVICSupported() const
{
    return m_bVICSupported;
}
bool CPLCameraInfo::isVICChecked() const
{
    return m_bVICChecked;
}
bool CPLCameraInfo::isRemovableFilterWheelCapable() const
{
    return m_bRemovableFilterWheel;
}
QString CPLCameraInfo::getCurrentFilterWheelName() const
{
    return m_strCurrentFilterWheel;
}
QString CPLCameraInfo::getSystemType() const
{
    return m_strSystemType;
}
QString CPLCameraInfo::getElectronicsTrayPartNumber() const
{
    return m_strElectronicsTray;
}
bool CPLCameraInfo::isElectronicsTray30052() const
{
    return m_strElectronicsTray == ELECTRONICS_TRAY_30052;
}
bool CPLCameraInfo::hasUSBIOBoard() const
{
    return m_Options[USBIOBoard];
}
bool CPLCameraInfo::hasUACBoard() const
{
    return m_Options[UACBoard];
}
bool CPLCameraInfo::hasMultiViewImager() const
{
    return m_Options[MultiViewImager];
}
bool CPLCameraInfo::hasChipReader() const
{
    return m_Options[ChipReader];
}
bool CPLCameraInfo::hasXrayController() const
{
    return m_Options[XrayController];
}
bool CPLCameraInfo::hasOmegaController() const
{
    return m_Options[OmegaController];
}
bool CPLCameraInfo::hasCNI32() const
{
    return m_Options[CNI32];
}
bool CPLCameraInfo::isOutput1Enabled() const
{
    return m_Options[Output1];
}
bool CPLCameraInfo::isOutput2Enabled() const
{
    return m_Options[Output2];
}
bool CPLCameraInfo::hasFilter2() const
{
    return m_Options[Filter2];
}
bool CPLCameraInfo::hasEMFilter2() const
{
    return m_Options[EMFilter2];
}
bool CPLCameraInfo::hasFluorescenceKit() const
{
    return m_Options[FluorescenceKit];
}
bool CPLCameraInfo::hasFluorescenceXMotor() const
{
    return m_Options[FluorescenceXMotor];
}
bool CPLCameraInfo::hasFluorescenceYMotor() const
{
    return m_Options[FluorescenceYMotor];
}
bool CPLCameraInfo::hasRotationStage() const
{
    return m_Options[RotationStage];
}
bool CPLCameraInfo::isMouseImagingShuttleEnabled() const
{
    return m_Options[MouseImagingShuttle];
}
bool CPLCameraInfo::isSideViewMirrorEnabled() const
{
    return m_Options[SideViewMirror];
}
QString CPLCameraInfo::getLightsControlPolarity() const
{
    return m_strLightsPolarity;
}
bool CPLCameraInfo::isDU88Camera() const
{
    return m_Options[DU88Camera];
}
bool CPLCameraInfo::isEMCCDCamera() const
{
    return m_Options[EMCCDCamera];
}
bool CPLCameraInfo::isSophiaCamera() const
{
    return m_Options[SophiaCamera];
}
float CPLCameraInfo::getStageOffset() const
{
    return m_fStageOffset;
}
float CPLCameraInfo::getMirrorXOffset() const
{
    return m_fMirrorXOffset;
}
float CPLCameraInfo::getMirrorAngle() const
{
    return m_fMirrorAngle;
}
