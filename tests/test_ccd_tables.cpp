// The camera tables: CCD widths, binning triples and their names, the CCD map flag and the
// field-of-view name of a shelf position.

#include "PLCCDTables.h"
#include "PLClickInfo.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace {

// (high sensitivity, medium, high resolution)
using Triple = std::array<int, 3>;

Triple binnings(const char* model, const char* imageType, const char* system = "",
                const char* ccd = "")
{
    Triple t { 0, 0, 0 };
    getCCDBinningsForImageType(L1(model), L1(system), L1(ccd), L1(imageType), t[0], t[1], t[2]);
    return t;
}

const Triple PHOTO_FIRST { -1, 4, 2 }, PHOTO_OTHER { -1, 2, 1 }, XRAY { -1, 2, 1 };
const Triple FIRST { 8, 4, 2 }, SECOND { 16, 8, 4 }, OTHER { 10, 5, 2 };

} // namespace

TEST(CCDTables, PixelsByModelSystemAndCCDType)
{
    const struct
    {
        const char *model, *system, *ccd;
        double pixels;
    } cases[] = {
        { "DZ930-BV", "", "", 2048 },
        { "dz930 ds934r", "", "", 2048 }, // the first rule that holds decides
        { "DS934R dz436", "", "", 1024 },
        { "dz436", "", "", 1920 },
        { "EEV 1920", "", "", 1920 },
        { "Andor eev", "", "", 1024 }, // "Andor" keeps "eev" from deciding
        { "andor eev", "", "", 1024 }, // "andor" at the start: 1024 by the "dw434" test
        { "dz436 Andor", "", "", 1920 },
        { "SITE 1k", "", "", 1024 },
        { "Andor iXon", "", "", 1024 },
        // The Sophia CCD sets its width by system type, whatever the model.
        { "dz930", "KORA 200", "Sophia 2048B", 1920 },
        { "ds934r", "kora 200", "sophia", 1920 },
        { "site", "KORA 50", "Sophia", 2048 },
        { "dz436", "KORA 200 KORA 50", "Sophia", 2048 }, // the second test wins
        { "ds934r", "KORA 100", "Sophia", 1024 },
        { "ds934r", "KORA 200", "", 1024 },
        { "ds934r", "KORA 200", "EMCCD", 1024 },
    };
    for (const auto& c : cases) {
        QString model = L1(c.model);
        EXPECT_EQ(getCCDPixels(model, L1(c.system), L1(c.ccd)), c.pixels)
            << c.model << " / " << c.system << " / " << c.ccd;
        EXPECT_EQ(model, L1(c.model));
    }
}

TEST(CCDTables, BinningsByModelAndImageTypeName)
{
    const struct
    {
        const char *model, *imageType;
        Triple expected;
    } cases[] = {
        { "ds934r", "Photograph", PHOTO_FIRST },
        { "SITE", "structure", PHOTO_FIRST },
        { "dz930", "Photograph", PHOTO_OTHER },
        { "unknown", "Structure", PHOTO_OTHER },
        { "dw434", "X-Ray", XRAY },
        { "du88", "X-RAY", XRAY },
        { "andor", "Luminescent", FIRST },
        { "site", "photographic image", FIRST }, // image types are compared whole
        { "eev", "Luminescent", SECOND },
        { "dz936r", "FL Reference", SECOND },
        { "du88", "Luminescent", OTHER },
        { "Andor iXon", "Luminescent", OTHER }, // models are compared whole
    };
    for (const auto& c : cases)
        EXPECT_EQ(binnings(c.model, c.imageType), c.expected) << c.model << " / " << c.imageType;
    // The system type and CCD type leave the triple alone.
    EXPECT_EQ(binnings("ds934r", "Photograph", "KORA 200", "Sophia"), PHOTO_FIRST);
    EXPECT_EQ(binnings("du88", "Luminescent", "KORA 50", "Sophia"), OTHER);
}

TEST(CCDTables, BinningsByImageTypeValue)
{
    const struct
    {
        const char* model;
        Triple photographic, other;
    } models[] = { { "ds934r", PHOTO_FIRST, FIRST },
                   { "DZ930", PHOTO_OTHER, SECOND },
                   { "du88", PHOTO_OTHER, OTHER } };
    for (const auto& m : models) {
        for (int value = 0; value <= PL_IMAGETYPE_COUNT; ++value) {
            const auto type = tag_eimagetype(value);
            const Triple expected = type == IMAGETYPE_PHOTOGRAPH || type == IMAGETYPE_STRUCTURE
                ? m.photographic
                : type == IMAGETYPE_XRAY ? XRAY
                                         : m.other;
            float f[3] = { 0, 0, 0 };
            getCCDBinningsForImageType(L1(m.model), QString(), QString(), type, f[0], f[1], f[2]);
            EXPECT_EQ((Triple { int(f[0]), int(f[1]), int(f[2]) }), expected)
                << m.model << " type " << value;
        }
    }
}

TEST(CCDTables, BinningNamesByValueAndStyle)
{
    const auto code = [](float value, const char* model, const char* imageType, int style) {
        return getValueToCCDBinningCode(value, L1(model), QString(), QString(), L1(imageType),
                                        style);
    };
    // Each style's names for the factors (8, 4, 2); styles 1 and 2 name them alike.
    const struct
    {
        int style;
        const char *small, *large, *medium;
    } styles[] = {
        { 0, "HR", "HS", "M" },
        { 1, "Small (Hi Res)", "Large (Hi Sens)", "Med." },
        { 2, "Small (Hi Res)", "Large (Hi Sens)", "Med." },
        { 3, "Small (Hi Resolution)", "Large (Hi Sensitivity)", "Medium" },
    };
    for (const auto& s : styles) {
        EXPECT_EQ(code(2, "ds934r", "Luminescent", s.style), L1(s.small)) << s.style;
        EXPECT_EQ(code(8, "ds934r", "Luminescent", s.style), L1(s.large)) << s.style;
        EXPECT_EQ(code(4, "ds934r", "Luminescent", s.style), L1(s.medium)) << s.style;
    }
    const struct
    {
        float value;
        const char *model, *imageType;
        int style;
        const char* name;
    } cases[] = {
        // The same value names another binning in another triple.
        { 2, "dz930", "Photograph", 0, "M" },
        { 1, "dz930", "X-Ray", 0, "HR" },
        { 16, "dz436", "Luminescent", 0, "HS" },
        // -1 stands for "no high-sensitivity binning" and matches that slot.
        { -1, "dz930", "Photograph", 0, "HS" },
        // Equal to no factor: exact comparison, no rounding.
        { 16, "ds934r", "Luminescent", 0, "" },
        { 2.0000002f, "ds934r", "Luminescent", 3, "" },
        // A style without names gives nothing for a value that matches nothing.
        { 3, "ds934r", "Luminescent", 4, "" },
    };
    for (const auto& c : cases)
        EXPECT_EQ(code(c.value, c.model, c.imageType, c.style), L1(c.name))
            << c.value << " " << c.model << " / " << c.imageType << " style " << c.style;
}

TEST(CCDTablesDeathTest, MatchingValueWithAStyleWithoutNames)
{
    EXPECT_DEATH(
        getValueToCCDBinningCode(8, L1("ds934r"), QString(), QString(), L1("Luminescent"), 4),
        "position < names.size\\(\\)");
}

TEST(CCDTables, CCDMapData)
{
    const struct
    {
        const char* text;
        bool expected;
    } cases[] = {
        { "*** Camera System Info:\tKORA 200\nCCDmap:\tdefects.map\n", true },
        { "*** Camera System Info:\t\nccdmap:\t\n", true },
        { "*** Camera System Info:\t\nCCD map:\tdefects.map\n# CCDmap\n", false },
        { "*** User Input:\t\nCCDmap:\tdefects.map\n", false },
    };
    for (const auto& c : cases) {
        CPLClickInfo doc;
        ASSERT_EQ(doc.loadTextBuffer(L1(c.text)), PL_SUCCESS);
        EXPECT_EQ(hasCCDMapData(doc), c.expected) << c.text;
    }
}

TEST(CCDTables, FieldOfViewNameByShelfPosition)
{
    CPLClickInfo doc;
    ASSERT_EQ(doc.loadTextBuffer(L1("*** Camera System Info:\tKORA 200\n"
                                    "Lens Shelf Position E FOV:\t7\n"
                                    "Shelf Position F:\t8\n"
                                    "Shelf Position FOV wide:\t9\n"
                                    "Shelf Position A FOV:\t0\n"
                                    "Shelf Position B FOV:\t12.5\n"
                                    "Shelf Position Q FOV:\t12.5\n"
                                    "Shelf Position FOV C zoom:\t-4.25\n"
                                    "shelf position d fov:\t30\n"
                                    "Shelf Position Z FOV:\t9\n")),
              PL_SUCCESS);
    // The name found for a position, "" for none.
    const struct
    {
        double position;
        const char* name;
    } cases[] = {
        { 0, " A" },
        // At the edge of the tolerance, and just past it.
        { 0.00001, " A" },
        { -0.00001, " A" },
        { 0.000011, "" },
        // The first key in order wins; a letter after "FOV" counts; keys match in any case.
        { 12.5, " B" },
        { -4.25, " C" },
        { 30, " d" },
        // A key without a letter is passed over.
        { 9, " Z" },
        // "Shelf Position" not at the start, no "FOV", no key at that position, no number.
        { 7, "" },
        { 8, "" },
        { 1, "" },
        { std::numeric_limits<double>::quiet_NaN(), "" },
    };
    for (const auto& c : cases) {
        QByteArray name("kept");
        EXPECT_EQ(getFOVName(&doc, c.position, name), *c.name != 0) << c.position;
        EXPECT_EQ(name, QByteArray(*c.name ? c.name : "kept")) << c.position;
    }

    CPLClickInfo other;
    ASSERT_EQ(other.loadTextBuffer(L1("*** User Input:\t\nShelf Position A FOV:\t0\n")),
              PL_SUCCESS);
    QByteArray name("kept");
    EXPECT_FALSE(getFOVName(&other, 0, name));
    EXPECT_FALSE(getFOVName(nullptr, 0, name));
    EXPECT_EQ(name, QByteArray("kept"));
}
