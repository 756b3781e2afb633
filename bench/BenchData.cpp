#include "BenchData.h"

#include "PLClickInfo.h"
#include "PLSection.h"

#include <QFile>
#include <QSettings>
#include <QStringList>

#include <cstdio>
#include <cstdlib>

namespace OvBench {

namespace {

const char* const SECTION_KEYS[] = {
    "ClickNumber",       "User Input",         "Camera System Info",    "Graph Controls",
    "luminescent image", "photographic image", "readbias image",        "readsigma image",
    "darkcharge image",  "reference image",    "fluorescent bkg image", "structure image",
    "Acquisition Setup", "Stage Settings",     "Analysis User Input",
};
constexpr int SECTION_COUNT = int(sizeof(SECTION_KEYS) / sizeof(SECTION_KEYS[0]));
constexpr int KEYS_PER_SECTION = 30;

const char* const KEYS[] = {
    "Acquisition Date", "Acquisition Time", "Image Units",  "Read Bias Level", "Field of View",
    "f Number",         "Pixel Width",      "Pixel Height", "Binning Factor",  "Cosmic",
    "Data Multiplier",  "Imaging Angle",    "Error Wave",   "Filter Position", "Exposure Time",
    "Emission filter",  "Excitation",       "Subject size", "Stage Position",  "Demand Temp",
    "Measured Temp",    "EM Gain",          "Lamp Level",   "Shutter",         "Overlay",
    "Color Table",      "Brightness",       "Gamma",        "Alpha Blend",     "Rotation",
    "Background",       "Flat Field",       "User",         "Group",           "Experiment",
    "Comment1",
};
constexpr int KEY_COUNT = int(sizeof(KEYS) / sizeof(KEYS[0]));
static_assert(KEY_COUNT >= KEYS_PER_SECTION, "keys of one section must be distinct");

const char* const WORDS[] = { "Open", "Block", "counts", "Rainbow", "Dorsal", "Yes", "No", "GFP" };

// The value of key `k` of section `s` of copy `c`: numbers, words and times, fixed by position.
QByteArray valueFor(int c, int s, int k)
{
    const unsigned h = unsigned(c) * 2654435761u + unsigned(s) * 131u + unsigned(k) * 17u;
    char text[48];
    switch (k % 5) {
    case 0:
        std::snprintf(text, sizeof text, "%u", h % 5000u);
        break;
    case 1:
        std::snprintf(text, sizeof text, "%.6f", double(h % 100000u) / 1000.0);
        break;
    case 2:
        std::snprintf(text, sizeof text, "%s", WORDS[h % 8u]);
        break;
    case 3:
        std::snprintf(text, sizeof text, "%02u:%02u:%02u", h % 24u, h % 60u, (h / 7u) % 60u);
        break;
    default:
        std::snprintf(text, sizeof text, "%d", -int(h % 100u));
        break;
    }
    return QByteArray(text);
}

QByteArray rawText(int copies)
{
    QByteArray text;
    for (int c = 0; c < copies; ++c) {
        const QByteArray suffix = c == 0 ? QByteArray() : ' ' + QByteArray::number(c);
        for (int s = 0; s < SECTION_COUNT; ++s) {
            const QByteArray key = SECTION_KEYS[s] + suffix;
            const QByteArray name = s == 0 ? "KL20261104142207_001" : QByteArray(SECTION_KEYS[s]);
            text += "*** " + key + ":\t" + name + "\r\n";
            if (s % 3 == 0)
                text += "# recorded by the instrument at acquisition\n";
            for (int k = 0; k < KEYS_PER_SECTION; ++k) {
                // The last section's keys occur nowhere else, so a search for one of them
                // has to read the whole text.
                if (s == SECTION_COUNT - 1)
                    text += "Analysis ";
                text += KEYS[(s * 7 + k) % KEY_COUNT];
                text += ":\t" + valueFor(c, s, k);
                if ((s + k) % 11 == 0)
                    text += "\t# set by hand";
                text += '\n';
                if (k == 15 && s % 4 == 1)
                    text += "# values below were calibrated\n";
            }
            text += '\n';
        }
    }
    return text + "\n\n";
}

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "benchmark set-up failed: %s\n", what);
    std::exit(1);
}

} // namespace

QByteArray clickInfoText(int copies)
{
    const QByteArray raw = rawText(copies);
    CPLClickInfo document;
    if (document.loadTextBuffer(QString::fromLatin1(raw)) != 0)
        fail("the generated ClickInfo text does not load");
    const QByteArray written = document.getClickInfoData().toLatin1();
    if (written != raw)
        std::fprintf(stderr,
                     "note: the library writes the generated text differently "
                     "(%d bytes generated, %d written); the written form is used\n",
                     raw.size(), written.size());
    return written;
}

int copiesForSize(qint64 bytes)
{
    static const qint64 single = rawText(1).size();
    return int(qMax<qint64>(1, (bytes + single / 2) / single));
}

QVector<EntryRef> entriesOf(const QByteArray& text)
{
    CPLClickInfo document;
    if (document.loadTextBuffer(QString::fromLatin1(text)) != 0)
        fail("a benchmark text does not load");
    QVector<EntryRef> entries;
    const QStringList sectionKeys = document.getSectionKeys();
    for (const QString& sectionKey : sectionKeys) {
        QStringList keys;
        document[sectionKey]->getKeyList(&keys);
        for (const QString& key : qAsConst(keys))
            entries.append({ sectionKey, key });
    }
    return entries;
}

const QTemporaryDir& scratchDir()
{
    static const QTemporaryDir dir;
    if (!dir.isValid())
        fail("no temporary folder");
    return dir;
}

QString writeScratchFile(const QString& name, const QByteArray& bytes)
{
    const QString path = scratchDir().filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        fail("cannot write an input file");
    return path;
}

QString writeIniFile(const QString& name, const QByteArray& clickInfo)
{
    CPLClickInfo document;
    if (document.loadTextBuffer(QString::fromLatin1(clickInfo)) != 0)
        fail("a benchmark text does not load");
    const QString path = scratchDir().filePath(name);
    QFile::remove(path);
    {
        QSettings ini(path, QSettings::IniFormat);
        for (const EntryRef& entry : entriesOf(clickInfo)) {
            QString value;
            document[entry.first]->getRawValue(entry.second, &value);
            ini.setValue(entry.first + QLatin1Char('/') + entry.second, value);
        }
        ini.sync();
        if (ini.status() != QSettings::NoError)
            fail("cannot write the INI file");
    }
    return path;
}

const Inputs& inputs()
{
    static const Inputs shared = [] {
        Inputs in;
        in.typical = clickInfoText(1);
        in.typicalPath = writeScratchFile(QStringLiteral("ClickInfo.txt"), in.typical);
        in.typicalEntries = entriesOf(in.typical);
        in.typicalIniPath = writeIniFile(QStringLiteral("ClickInfo.ini"), in.typical);
        in.lastKey = in.typicalEntries.at(in.typicalEntries.size() - 2).second;
        return in;
    }();
    return shared;
}

} // namespace OvBench
