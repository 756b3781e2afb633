#include "PLBrowseInfo.h"
#include "PLInfoItem.h"
#include "ParserLibrary.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

TEST(InfoItem, HoldsAnOwnedCopyOfItsString)
{
    CPLInfoItem item;
    EXPECT_EQ(item.GetString(), nullptr);

    char text[] = "luminescent";
    item.SetString(text);
    text[0] = 'X'; // the item keeps its own copy
    EXPECT_STREQ(item.GetString(), "luminescent");

    CPLInfoItem copy(item);
    item = "photographic";
    EXPECT_STREQ(copy.GetString(), "luminescent");
    EXPECT_STREQ(item.GetString(), "photographic");

    item = "";
    EXPECT_STREQ(item.GetString(), ""); // empty, not null
    item.SetString(nullptr);
    EXPECT_EQ(item.GetString(), nullptr);
}

TEST(BrowseInfo, KeepsItsType)
{
    EXPECT_EQ(CPLBrowseInfo().getType(), 0);
    EXPECT_EQ(CPLBrowseInfo(3).getType(), 3);
}

TEST(ParserLibrary, ReportsTheVersionItWasBuiltAs)
{
    EXPECT_EQ(fnParserLibrary(), OVPARSER_VERSION_NUMBER);
    EXPECT_EQ(CParserLibrary::version(), L1(OVPARSER_VERSION_STRING));
}
