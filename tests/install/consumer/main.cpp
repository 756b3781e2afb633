#include "PLClickInfo.h"
#include "PLStatus.h"

#include <cstdio>

int main()
{
    CPLClickInfo info;
    QString value;
    if (info.loadTextBuffer(
            QStringLiteral("*** ClickNumber:\tKL1\r\nBinning Factor:\t8\t# by hand\n\n"))
            != PL_SUCCESS
        || info.getValue(QStringLiteral("ClickNumber"), QStringLiteral("Binning Factor"), &value)
            != PL_SUCCESS)
        return 1;
    std::printf("Binning Factor: %s\n", qPrintable(value));
    return 0;
}
