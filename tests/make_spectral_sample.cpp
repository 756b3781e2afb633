// Writes the spectral-analysis sample: make_spectral_sample samples/spectral/SpectralAnalysis.xml

#include "PLStatus.h"
#include "SpectralSample.h"

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FILE.xml\n", argv[0]);
        return 2;
    }
    const int status = writeSpectralSample(QString::fromLocal8Bit(argv[1]));
    if (status != PL_SUCCESS)
        std::fprintf(stderr, "%s: cannot write the file (status %d)\n", argv[1], status);
    return status == PL_SUCCESS ? 0 : 1;
}
