#ifndef PLPATHS_H
#define PLPATHS_H

// The application's folders: where the instrument's configuration, its extensions, emission
// filter wheels, CT parameters and x-ray references, and the user's settings live.
//
// The tree, for the organisation PLConstants::COMPANY_NAME and the application "Orvane":
//
//   program data folder      QStandardPaths::GenericDataLocation/<company>/Orvane
//                            (~/.local/share/Pellion/Orvane on Linux)
//     Instrument/            the instrument configuration folder: "CameraInfo.txt",
//       config/              its configuration extensions ("*.cfg"),
//       emfilters/           its emission filter wheels ("*.xem"),
//       CT Parameters/       CT reconstruction parameters,
//       XRReference/         x-ray reference images
//       Background/          the library of dark backgrounds ("BkgSummary.txt")
//   user's settings folder   QStandardPaths::GenericConfigLocation/<company>/Orvane
//                            (~/.config/Pellion/Orvane on Linux)
//
// QStandardPaths::setTestModeEnabled(true) moves both into the test folders Qt gives. The
// environment variable OVPARSER_DATA_DIR, when set and not empty, moves the whole tree: the
// program data folder is then that folder itself, and the user's settings folder its
// subfolder "User Settings" (the per-machine accessory states of the instrument are then kept
// in "User Settings/Orvane.conf" too, see CPLCameraInfo). A user works on a copy of an
// instrument's folders by pointing it at the copy; the tests point it at a temporary folder.
//
// Paths use "/" as separator and have no trailing "/". Nothing here is created unless asked.

#include "ovparser_global.h"

#include <QString>

class CPLCameraInfo;

// The folders getOVPath() knows.
enum OV_PATH_TAGS {
    OV_PATH_PROGRAM_DATA, // the program data folder
    OV_PATH_INSTRUMENT_CONFIG, // the instrument configuration folder, "CameraInfo.txt"'s
    OV_PATH_CAMERA_EXTENSIONS, // its "config" folder
    OV_PATH_EMISSION_FILTERS, // its "emfilters" folder
    OV_PATH_CT_PARAMETERS, // its "CT Parameters" folder
    OV_PATH_XRAY_REFERENCE, // its "XRReference" folder
    OV_PATH_USER_SETTINGS, // the user's settings folder
    OV_PATH_BACKGROUND_LIBRARY, // the instrument's "Background" folder, its dark backgrounds
};

// The environment variable that moves the whole tree.
constexpr char OV_DATA_DIR_VARIABLE[] = "OVPARSER_DATA_DIR";

// The folder of `tag`. The instrument's folders (OV_PATH_INSTRUMENT_CONFIG to
// OV_PATH_XRAY_REFERENCE, and OV_PATH_BACKGROUND_LIBRARY) are taken beside the configuration
// file of `cameraInfo` when it is given and was loaded from a file (the folder holding its
// "CameraInfo.txt"), so that a configuration folder copied anywhere is used as a whole;
// otherwise from the tree above.
// With `create`, the folder and its parents are made when missing (see createFolder()); the
// path is returned either way, and an empty string for a tag outside OV_PATH_TAGS.
OVPARSER_EXPORT QString getOVPath(OV_PATH_TAGS tag, bool create = false,
                                  CPLCameraInfo* cameraInfo = nullptr);

// The program data folder: getOVPath(OV_PATH_PROGRAM_DATA).
OVPARSER_EXPORT QString getProgramDataPath();

// Makes a folder and its missing parents. Returns 0 when the folder exists afterwards (it may
// have existed before), 19 for an empty path, 11 when it cannot be made (a file stands in
// its place, a parent is not writable).
OVPARSER_EXPORT int createFolder(const QString& folderPath);

// The folder a file or folder stands in: the path, cleaned ("a//b/./c/" reads "a/b/c"), up to
// its last "/". "a/b/c.txt" gives "a/b", "/c.txt" gives "/", and a bare name "c.txt" gives
// "." (the current folder). A path that cleans to the current folder ("." or "a/..") gives
// "..", and one that cleans to a parent (".." or "../..") one more "..". An empty path gives
// an empty path; "/" gives "/".
OVPARSER_EXPORT QString getParentPath(const QString& path);

// The file a path names where a folder may stand for its file: `path` itself, or, when `path`
// is a folder, the file `fileName` in it (the folder's path cleaned, then "/" and the name).
// "acq" gives "acq/ClickInfo.txt" for an acquisition folder; "acq/ClickInfo.txt" stays as it
// is, and so does a path that does not exist.
OVPARSER_EXPORT QString getFilePathInFolder(const QString& path, const QString& fileName);

// The path of the file `fileName` in the folder of `tag`, as getOVPath(tag, false,
// cameraInfo) gives it; the folder itself for an empty name, an empty string for a tag
// outside OV_PATH_TAGS.
OVPARSER_EXPORT QString getCompleteFilePath(OV_PATH_TAGS tag, const QString& fileName,
                                            CPLCameraInfo* cameraInfo = nullptr);

#endif // PLPATHS_H
