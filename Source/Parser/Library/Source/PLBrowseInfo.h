#ifndef PLBROWSEINFO_H
#define PLBROWSEINFO_H

#include "ovparser_global.h"

// The type of an entry shown when browsing acquisitions; 0 for a new entry.
class OVPARSER_EXPORT CPLBrowseInfo
{
public:
    CPLBrowseInfo();
    explicit CPLBrowseInfo(int type);
    virtual ~CPLBrowseInfo();

    int getType() const;
    void setType(int type);

private:
    int m_iType = 0;
};

#endif // PLBROWSEINFO_H
