#include "PLPaths.h"

#include "PLCameraInfo.h"
#include "PLConstants.h"
#include "PLStatus.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

const QString APPLICATION_NAME = QStringLiteral("Orvane");
const QString INSTRUMENT_FOLDER = QStringLiteral("Instrument");
const QString USER_SETTINGS_FOLDER = QStringLiteral("User Settings");

// The tree's root given by the environment, or empty.
QString dataDirOverride()
{
    return QDir::cleanPath(QString::fromLocal8Bit(qgetenv(OV_DATA_DIR_VARIABLE)));
}

QString applicationFolder(QStandardPaths::StandardLocation location)
{
    return QDir::cleanPath(QStandardPaths::writableLocation(location) + QLatin1Char('/')
                           + PLConstants::COMPANY_NAME + QLatin1Char('/') + APPLICATION_NAME);
}

QString userSettingsFolder()
{
    const QString root = dataDirOverride();
    return root.isEmpty() ? applicationFolder(QStandardPaths::GenericConfigLocation)
                          : root + QLatin1Char('/') + USER_SETTINGS_FOLDER;
}

// The folder holding "CameraInfo.txt": beside a loaded document's file, else in the tree.
QString instrumentFolder(const CPLCameraInfo* cameraInfo)
{
    if (cameraInfo && !cameraInfo->getFilePath().isEmpty())
        return getParentPath(cameraInfo->getFilePath());
    return getProgramDataPath() + QLatin1Char('/') + INSTRUMENT_FOLDER;
}

QString pathOf(OV_PATH_TAGS tag, const CPLCameraInfo* cameraInfo)
{
    const auto inInstrument = [cameraInfo](const QString& name) -> QString {
        return instrumentFolder(cameraInfo) + QLatin1Char('/') + name;
    };
    switch (tag) {
    case OV_PATH_PROGRAM_DATA:
        return getProgramDataPath();
    case OV_PATH_INSTRUMENT_CONFIG:
        return instrumentFolder(cameraInfo);
    case OV_PATH_CAMERA_EXTENSIONS:
        return inInstrument(PLConstants::CAMERA_INFO_EXTENSION_FOLDER);
    case OV_PATH_EMISSION_FILTERS:
        return inInstrument(PLConstants::EMFILTERS);
    case OV_PATH_CT_PARAMETERS:
        return inInstrument(CT_PARAMETER_FOLDER);
    case OV_PATH_XRAY_REFERENCE:
        return inInstrument(XRAY_REFERENCE_FOLDER);
    case OV_PATH_USER_SETTINGS:
        return userSettingsFolder();
    case OV_PATH_BACKGROUND_LIBRARY:
        return inInstrument(PLConstants::DARKCHARGE_FOLDER);
    }
    return QString();
}

} // namespace

QString getOVPath(OV_PATH_TAGS tag, bool create, CPLCameraInfo* cameraInfo)
{
    const QString path = pathOf(tag, cameraInfo);
    if (create && !path.isEmpty())
        createFolder(path);
    return path;
}

QString getProgramDataPath()
{
    const QString root = dataDirOverride();
    return root.isEmpty() ? applicationFolder(QStandardPaths::GenericDataLocation) : root;
}

int createFolder(const QString& folderPath)
{
    if (folderPath.isEmpty())
        return PL_EMPTY_KEY;
    return QDir().mkpath(folderPath) && QFileInfo(folderPath).isDir() ? PL_SUCCESS
                                                                      : PL_FILE_OPEN_FAILED;
}

QString getParentPath(const QString& path)
{
    if (path.isEmpty())
        return QString();
    const QString clean = QDir::cleanPath(path);
    // The current folder's parent, and a parent of parents, are one more step up: after
    // cleaning, ".." can only stand at the front. Above the root is the root.
    if (clean == QLatin1String("."))
        return QStringLiteral("..");
    if (clean == QLatin1String("..") || clean.endsWith(QLatin1String("/..")))
        return clean.startsWith(QLatin1Char('/')) ? QStringLiteral("/")
                                                  : clean + QLatin1String("/..");
    const int slash = clean.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return QStringLiteral(".");
    return slash == 0 ? QStringLiteral("/") : clean.left(slash);
}

QString getFilePathInFolder(const QString& path, const QString& fileName)
{
    return QFileInfo(path).isDir() ? QDir::cleanPath(path) + QLatin1Char('/') + fileName : path;
}

QString getCompleteFilePath(OV_PATH_TAGS tag, const QString& fileName, CPLCameraInfo* cameraInfo)
{
    const QString folder = pathOf(tag, cameraInfo);
    if (folder.isEmpty() || fileName.isEmpty())
        return folder;
    return folder + QLatin1Char('/') + fileName;
}
