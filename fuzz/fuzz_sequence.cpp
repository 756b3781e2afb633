// libFuzzer entry points; the checks live in FuzzChecks.cpp, shared with the regression test.

#include "FuzzChecks.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    OvFuzz::silenceMessages();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    return OvFuzz::runTarget("fuzz_sequence", OvFuzz::checkSequence, data, size);
}
