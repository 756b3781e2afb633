#include "Commands.h"
#include "Tool.h"

#include "PLCCDTables.h"
#include "PLCameraInfo.h"
#include "PLConstants.h"
#include "PLPaths.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <iterator>

namespace {

const QString NOTES = QStringLiteral(
    "Loads the instrument configuration as the application does at start-up: the\n"
    "\"CameraInfo.txt\" with the extensions of its \"config\" folder (in name order), and\n"
    "the accessory states from the per-machine settings store (organisation \"Pellion\",\n"
    "application \"Orvane\", group \"Current_Version\"; with OVPARSER_DATA_DIR set, the file\n"
    "\"$OVPARSER_DATA_DIR/User Settings/Orvane.conf\" instead). A refused extension is\n"
    "shown with its message: the instrument then runs on its base file alone.\n"
    "Binnings are listed per image type: large (high sensitivity), medium and small\n"
    "(high resolution) factors with their names; \"-\" where none is offered.\n"
    "With --keys, every key of the merged \"Camera System Info\" section is listed with\n"
    "its value and the FILE:LINE of the section header it was read under.\n"
    "The exit status is 4 when the configuration is not usable (no main section, or a\n"
    "\"System Configuration\" that names no KORA type).\n");

const QString MAIN = PLConstants::CAMERAINFO_SECTION_KEY;

struct State
{
    const char* label;
    bool (CPLCameraInfo::*get)() const;
};

// The hardware states, in the order of the document's table.
const State HARDWARE[] = {
    { "USB I/O board", &CPLCameraInfo::hasUSBIOBoard },
    { "UAC board", &CPLCameraInfo::hasUACBoard },
    { "Multi-view imager", &CPLCameraInfo::hasMultiViewImager },
    { "Chip reader", &CPLCameraInfo::hasChipReader },
    { "X-ray controller", &CPLCameraInfo::hasXrayController },
    { "Omega controller", &CPLCameraInfo::hasOmegaController },
    { "cni32", &CPLCameraInfo::hasCNI32 },
    { "Output 1", &CPLCameraInfo::isOutput1Enabled },
    { "Output 2", &CPLCameraInfo::isOutput2Enabled },
    { "Filter2 wheel", &CPLCameraInfo::hasFilter2 },
    { "EM filter2 wheel", &CPLCameraInfo::hasEMFilter2 },
    { "Fluorescence kit", &CPLCameraInfo::hasFluorescenceKit },
    { "Fluorescence X motor", &CPLCameraInfo::hasFluorescenceXMotor },
    { "Fluorescence Y motor", &CPLCameraInfo::hasFluorescenceYMotor },
    { "Rotation stage", &CPLCameraInfo::hasRotationStage },
    { "Mouse imaging shuttle", &CPLCameraInfo::isMouseImagingShuttleEnabled },
    { "Side view mirror", &CPLCameraInfo::isSideViewMirrorEnabled },
    { "DU88 camera", &CPLCameraInfo::isDU88Camera },
    { "EMCCD camera", &CPLCameraInfo::isEMCCDCamera },
    { "Sophia CCD", &CPLCameraInfo::isSophiaCamera },
    { "Electronics tray 30052", &CPLCameraInfo::isElectronicsTray30052 },
};

QString yesNo(bool state)
{
    return state ? QStringLiteral("yes") : QStringLiteral("no");
}

// Everything the command shows, gathered once for the text and the JSON forms.
struct Report
{
    QList<QPair<QString, QString>> instrument;
    struct Binning
    {
        QString imageType;
        int factors[3];
        QString names[3];
    };
    QList<Binning> binnings;
    QList<QPair<QString, QString>> fieldsOfView; // letter, shelf position
    QList<QPair<QString, QString>> accessories;
    QList<QPair<QString, QString>> hardware;
};

QString mainValue(const CPLCameraInfo& camera, const QString& key)
{
    QString value;
    camera.getValue(MAIN, key, &value);
    return value;
}

Report gather(CPLCameraInfo& camera)
{
    Report report;
    QString model = mainValue(camera, QStringLiteral("Camera Model"));
    const QString system = camera.getSystemType();
    const QString ccd = mainValue(camera, QStringLiteral("Camera CCD Type"));
    report.instrument = {
        { QStringLiteral("System type"), system },
        { QStringLiteral("Camera model"), model },
        { QStringLiteral("CCD type"), ccd },
        { QStringLiteral("CCD width"), QString::number(getCCDPixels(model, system, ccd)) },
    };
    for (const QString& imageType : OVSGlobalConstants::g_strImages) {
        Report::Binning binning { imageType, {}, {} };
        getCCDBinningsForImageType(model, system, ccd, imageType, binning.factors[0],
                                   binning.factors[1], binning.factors[2]);
        for (int i = 0; i < 3; ++i) {
            if (binning.factors[i] > 0)
                binning.names[i] = getValueToCCDBinningCode(float(binning.factors[i]), model,
                                                            system, ccd, imageType, 3);
        }
        report.binnings.append(binning);
    }
    QStringList keys;
    camera.getKeylistFromKeyAndSubkey(QStringLiteral("Shelf Position"), QStringLiteral("FOV"),
                                      &keys);
    for (const QString& key : qAsConst(keys)) {
        double position = 0;
        QByteArray letter;
        camera.getValue(MAIN, key, &position);
        if (getFOVName(&camera, position, letter))
            report.fieldsOfView.append(
                { QString::fromLatin1(letter).trimmed(), mainValue(camera, key) });
    }
    report.accessories = {
        { QStringLiteral("GEIZID lens available"), yesNo(camera.isXFOV24Available()) },
        { QStringLiteral("GEIZID lens attached"), yesNo(camera.isXFOV24Attached()) },
        { QStringLiteral("Large animal capable"), yesNo(camera.isLargeAnimalCapable()) },
        { QStringLiteral("Large animal selected"), yesNo(camera.isLargeAnimalSelected()) },
        { QStringLiteral("Removable filter wheel"), yesNo(camera.isRemovableFilterWheelCapable()) },
        { QStringLiteral("Current filter wheel"), camera.getCurrentFilterWheelName() },
        { QStringLiteral("Zoom lens supported"), yesNo(camera.isZoomLensSupported()) },
        { QStringLiteral("Zoom lens attached"), yesNo(camera.isZoomLensAttached()) },
        { QStringLiteral("VIC supported"), yesNo(camera.isVICSupported()) },
    };
    for (const State& state : HARDWARE)
        report.hardware.append({ QLatin1String(state.label), yesNo((camera.*state.get)()) });
    report.hardware.append(
        { QStringLiteral("Lights control polarity"), camera.getLightsControlPolarity() });
    report.hardware.append(
        { QStringLiteral("Stage offset"), QString::number(double(camera.getStageOffset())) });
    report.hardware.append(
        { QStringLiteral("Mirror x-offset"), QString::number(double(camera.getMirrorXOffset())) });
    report.hardware.append(
        { QStringLiteral("Mirror angle"), QString::number(double(camera.getMirrorAngle())) });
    return report;
}

void printPairs(QTextStream& out, const QList<QPair<QString, QString>>& pairs)
{
    int width = 0;
    for (const auto& pair : pairs)
        width = std::max(width, pair.first.size());
    for (const auto& pair : pairs)
        out << QLatin1String("  ") << pair.first.leftJustified(width + 2) << pair.second
            << QLatin1Char('\n');
}

void printText(const CPLCameraInfo& camera, const Report& report, bool valid)
{
    QTextStream& out = standardOutput();
    out << QStringLiteral("Instrument %1\n").arg(camera.getFilePath());
    printPairs(out, report.instrument);
    out << QStringLiteral("\nBinnings (large / medium / small)\n");
    for (const Report::Binning& binning : report.binnings) {
        out << QLatin1String("  ") << binning.imageType.leftJustified(22);
        for (int i = 0; i < 3; ++i) {
            const QString cell = binning.factors[i] > 0
                ? QStringLiteral("%1 %2").arg(binning.factors[i]).arg(binning.names[i])
                : QStringLiteral("-");
            out << (i < 2 ? cell.leftJustified(26) : cell);
        }
        out << QLatin1Char('\n');
    }
    out << QStringLiteral("\nFields of view\n");
    for (const auto& view : report.fieldsOfView)
        out << QStringLiteral("  %1  %2\n").arg(view.first, view.second);
    out << QStringLiteral("\nExtensions\n");
    for (const CPLCameraExtension& extension : camera.getLoadedExtensions())
        out << QStringLiteral("  %1  %2\n").arg(extension.name, extension.file);
    const CPLCameraExtensionFailure failure = camera.getExtensionFailure();
    if (failure.status != PL_SUCCESS)
        out << QStringLiteral("  refused: %1\n").arg(failure.message);
    else if (camera.getLoadedExtensions().isEmpty())
        out << QStringLiteral("  none\n");
    out << QStringLiteral("\nAccessories\n");
    printPairs(out, report.accessories);
    out << QStringLiteral("\nHardware\n");
    printPairs(out, report.hardware);
    out << QStringLiteral("\nChecks\n");
    for (const QString& message : camera.getValidationMessages())
        out << QLatin1String("  ") << message << QLatin1Char('\n');
    if (valid && camera.getValidationMessages().isEmpty())
        out << QStringLiteral("  all passed\n");
}

QJsonObject pairsObject(const QList<QPair<QString, QString>>& pairs)
{
    QJsonObject object;
    for (const auto& pair : pairs)
        object.insert(pair.first, pair.second);
    return object;
}

void printJson(const CPLCameraInfo& camera, const Report& report, bool valid)
{
    QJsonArray binnings;
    for (const Report::Binning& binning : report.binnings) {
        QJsonArray factors;
        for (int i = 0; i < 3; ++i)
            factors.append(QJsonObject { { QStringLiteral("factor"), binning.factors[i] },
                                         { QStringLiteral("name"), binning.names[i] } });
        binnings.append(QJsonObject { { QStringLiteral("imageType"), binning.imageType },
                                      { QStringLiteral("large"), factors.at(0) },
                                      { QStringLiteral("medium"), factors.at(1) },
                                      { QStringLiteral("small"), factors.at(2) } });
    }
    QJsonArray extensions;
    for (const CPLCameraExtension& extension : camera.getLoadedExtensions())
        extensions.append(QJsonObject { { QStringLiteral("name"), extension.name },
                                        { QStringLiteral("file"), extension.file } });
    const CPLCameraExtensionFailure failure = camera.getExtensionFailure();
    QJsonObject root {
        { QStringLiteral("file"), camera.getFilePath() },
        { QStringLiteral("valid"), valid },
        { QStringLiteral("instrument"), pairsObject(report.instrument) },
        { QStringLiteral("binnings"), binnings },
        { QStringLiteral("fieldsOfView"), pairsObject(report.fieldsOfView) },
        { QStringLiteral("extensions"), extensions },
        { QStringLiteral("accessories"), pairsObject(report.accessories) },
        { QStringLiteral("hardware"), pairsObject(report.hardware) },
        { QStringLiteral("checks"), QJsonArray::fromStringList(camera.getValidationMessages()) },
    };
    if (failure.status != PL_SUCCESS)
        root.insert(QStringLiteral("refusedExtension"),
                    QJsonObject { { QStringLiteral("file"), failure.file },
                                  { QStringLiteral("status"), failure.status },
                                  { QStringLiteral("message"), failure.message } });
    writeOutputBytes(QJsonDocument(root).toJson(QJsonDocument::Indented));
}

void printKeys(const CPLCameraInfo& camera)
{
    const CPLSection* main = camera.getCameraInfoSection();
    QStringList keys;
    if (main)
        main->getKeyList(&keys);
    QList<QPair<QString, QString>> rows;
    for (const QString& key : qAsConst(keys))
        rows.append({ key,
                      QStringLiteral("%1  %2").arg((*main)[key],
                                                   camera.getKeyOrigin(MAIN, key).toString()) });
    printPairs(standardOutput(), rows);
}

} // namespace

int runCamera(const QStringList& arguments)
{
    const QString command = QStringLiteral("camera");
    CommandLine commandLine(
        command,
        QStringLiteral("Shows an instrument configuration: system type, camera and CCD, the\n"
                       "binnings of each image type, the fields of view, the extensions,\n"
                       "the accessory and hardware states, and what the checks found."));
    commandLine.addArgument(QStringLiteral("PATH"),
                            QStringLiteral("An instrument configuration folder, or its "
                                           "\"CameraInfo.txt\"."));
    commandLine.addOption(QStringLiteral("json"), QStringLiteral("Prints JSON."));
    commandLine.addOption(QStringLiteral("keys"),
                          QStringLiteral("Lists the keys of the merged main section and where "
                                         "each was read from."));
    commandLine.setNotes(NOTES);
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = getFilePathInFolder(commandLine.argument(0), CAMERA_INFO_TEXTFILE);
    CPLCameraInfo camera;
    const int status = camera.load(path);
    if (status != PL_SUCCESS)
        return fail(exitStatusOf(status, Step::Read), path,
                    withSystemReason(getStatusText(status)));
    const bool valid = camera.loadCameraInfo(path);
    for (const CPLLoadWarning& warning : camera.getLoadWarningList())
        warn(warning.toString());
    if (commandLine.isSet(QStringLiteral("keys"))) {
        printKeys(camera);
    } else {
        const Report report = gather(camera);
        if (commandLine.isSet(QStringLiteral("json")))
            printJson(camera, report, valid);
        else
            printText(camera, report, valid);
    }
    return valid ? ExitSuccess : ExitMalformed;
}
