// libFuzzer entry point; the checks live in FuzzChecks.cpp, shared with the regression test.

#include "FuzzChecks.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    OvFuzz::silenceMessages();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string failure = OvFuzz::checkSpectral(data, size);
    if (!failure.empty()) {
        std::fprintf(stderr, "fuzz_spectral: %s\n", failure.c_str());
        std::abort();
    }
    return 0;
}
