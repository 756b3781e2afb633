// Writes the bundled sample acquisitions made with the image section builder:
//   make_samples FOLDER     (usually the repository's samples/ folder)
// Times are written in UTC, so the files are the same on every machine; a test checks that
// the files in samples/ are what this program writes.

#include "SampleAcquisitions.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>
#include <cstdlib>
#include <ctime>

int main(int argc, char** argv)
{
    setenv("TZ", "UTC", 1);
    tzset();
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: make_samples FOLDER\n");
        return 2;
    }
    if (!OvSamples::writeAcquisitions(arguments.at(1), OvSamples::bundledAcquisitions())) {
        std::fprintf(stderr, "make_samples: cannot write below %s\n", argv[1]);
        return 1;
    }
    return 0;
}
