#include "PLSection.h"
#include "PLSettingsFileWrapper.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

namespace {

// A settings text with one section per key, each with the given menu-name value (none when
// the value is null) and a file name.
QString settingsText(const QStringList& keys, const QStringList& menuNames = {})
{
    QString text;
    for (int i = 0; i < keys.size(); ++i) {
        text += L1("*** ") + keys[i] + L1(":\tname ") + QString::number(i) + L1("\r\n");
        if (!menuNames.value(i).isNull())
            text += L1("MenuName:\t") + menuNames[i] + L1("\n");
        text += L1("FileName:\tf") + QString::number(i) + L1(".xml\n\n");
    }
    return text;
}

TEST(SettingsWrapper, NextAvailableSectionName)
{
    const struct
    {
        QStringList keys;
        const char* next;
    } cases[] = {
        { { L1("ROI File 1"), L1("ROI File 2"), L1("ROI File 4") }, "ROI File 3" },
        { {}, "ROI File 1" },
        { { L1("ROI File 2") }, "ROI File 1" },
        { { L1("ROI File 3"), L1("ROI File 1"), L1("ROI File 2") }, "ROI File 4" },
        // 1, 1, 2: equal neighbours are not skipped, so the walk stops at the second 1.
        { { L1("ROI File 1"), L1("ROI File 01"), L1("ROI File 2") }, "ROI File 2" },
        // No number after the base, another tag, or no base: not counted.
        { { L1("ROI File 1"), L1("ROI File x"), L1("Other 2"), L1("roi file 2") }, "ROI File 2" },
        { { L1("Old ROI File 1") }, "ROI File 2" },
        { { L1("ROI File 1"), L1("ROI File 2147483647") }, "ROI File 2" },
    };
    for (const auto& c : cases) {
        CPLSettingsFileWrapper settings(L1("ROI File"));
        ASSERT_EQ(settings.loadTextBuffer(settingsText(c.keys)), PL_SUCCESS);
        EXPECT_EQ(settings.getNextAvailableSectionName(), L1(c.next))
            << c.keys.join(L1("|")).toStdString();
    }
    CPLSettingsFileWrapper settings;
    settings.loadTextBuffer(
        settingsText({ L1("ROI File 1"), L1("Preset 1"), L1("Preset 2"), L1("ROI File 2") }));
    EXPECT_EQ(settings.getNextAvailableSectionName(L1("Preset")), L1("Preset 3"));
    EXPECT_DEATH(settings.getNextAvailableSectionName(),
                 "m_strSectionNameTag.isEmpty\\(\\) == false");
}

TEST(SettingsWrapper, NextAutoMenuName)
{
    const struct
    {
        QStringList menuNames;
        const char* next;
    } cases[] = {
        { { L1("Setting1"), L1("Setting2") }, "Setting3" },
        { { L1("Setting2") }, "Setting1" },
        { {}, "Setting1" },
        { { L1("Setting1"), L1("Setting1"), L1("Setting3") }, "Setting2" },
        { { L1("My Setting1"), L1("Setting2x"), L1("setting2"), QString() }, "Setting2" },
    };
    for (const auto& c : cases) {
        QStringList keys;
        for (int i = 0; i < c.menuNames.size(); ++i)
            keys.append(L1("ROI File ") + QString::number(i + 1));
        CPLSettingsFileWrapper settings(L1("ROI File"), L1("Setting"));
        ASSERT_EQ(settings.loadTextBuffer(settingsText(keys, c.menuNames)), PL_SUCCESS);
        EXPECT_EQ(settings.getNextAutoMenuName(), L1(c.next))
            << c.menuNames.join(L1("|")).toStdString();
    }
    // Section names as menu names are read without their inline comment here.
    CPLSettingsFileWrapper named(L1("ROI File"), L1("name "));
    named.setUseSectionNameForMenuName(true);
    named.loadTextBuffer(L1("*** ROI File 1:\tname 1 # first\r\n\n*** Other:\tname 2\r\n\n"));
    EXPECT_EQ(named.getNextAutoMenuName(), L1("name 2"));
    EXPECT_EQ(named.getNextAutoMenuName(L1("Other")), L1("name 1"));
    CPLSettingsFileWrapper noTag(L1("ROI File"));
    EXPECT_DEATH(noTag.getNextAutoMenuName(), "m_strAutoMenuNameTag.isEmpty\\(\\) == false");
}

TEST(SettingsWrapper, FolderModeListsTextFilesInAnyCase)
{
    QTemporaryDir dir;
    const QString folder = dir.filePath(L1("Presets"));
    ASSERT_TRUE(QDir().mkpath(folder + L1("/Custom-Dir.txt")));
    for (const char* name : { "Custom-Alpha.TXT", "Custom-Beta.txt", "Custom-Notes.md",
                              "Standard.txt", "My Custom-Gamma.Txt", "Customtxt" })
        writeBytes(folder + L1("/") + L1(name), "*** A:\tb\r\n\n");

    CPLSettingsFileWrapper settings;
    settings.setLoadMode(CPLSettingsFileWrapper::LM_FOLDER);
    EXPECT_EQ(settings.load(), PL_EMPTY_KEY);
    settings.setFolderPath(folder + L1("/missing"));
    EXPECT_EQ(settings.load(), PL_FOLDER_MISSING);
    EXPECT_EQ(settings.getMenuNames(QString()), QStringList());
    settings.setFolderPath(folder + L1("/"));
    EXPECT_EQ(settings.load(), PL_SUCCESS);

    EXPECT_EQ(settings.getMenuNames(L1("Custom")), (QStringList { L1("-Alpha"), L1("-Beta") }));
    EXPECT_EQ(settings.getMenuNames(QString()),
              (QStringList { L1("Custom-Alpha"), L1("Custom-Beta"), L1("My Custom-Gamma"),
                             L1("Standard") }));
    EXPECT_EQ(settings.getMenuNames(L1("custom")), QStringList()) << "the prefix is case-sensitive";
    EXPECT_EQ(settings.getMenuNames(), QStringList()) << "lists sections, not files";

    const struct
    {
        const char* menuName;
        const char* filter;
        const char* file;
    } lookups[] = {
        { "alpha", "Custom", "Presets/Custom-Alpha.TXT" },
        // The filter may stand anywhere in the name here.
        { "GAMMA", "Custom", "Presets/My Custom-Gamma.Txt" },
        { "Standard", "", "Presets/Standard.txt" },
        { "Notes", "Custom", "" },
        { "-Alpha", "Custom", "" },
    };
    for (const auto& l : lookups)
        EXPECT_EQ(settings.getFileNameForMenuName(L1(l.menuName), L1(l.filter)), L1(l.file))
            << l.menuName;
}

const QString kMenus = L1("*** ROI File 1:\tKidney # left\r\nMenuName:\tABC\nFileName:\ta.xml\n\n"
                          "*** ROI File 2:\tliver\r\nMenuName:\tabc\n\n"
                          "*** Preset 1:\tPreset\r\nMenuName:\tKidney\nFileName:\tp.xml\n\n"
                          "*** ROI File 3:\t  \r\nMenuName:\t  \nFileName:\tblank.xml\n\n");

TEST(SettingsWrapper, MenuNamesFromValuesOrSectionNames)
{
    CPLSettingsFileWrapper settings(L1("ROI File"));
    ASSERT_EQ(settings.loadTextBuffer(kMenus), PL_SUCCESS);
    EXPECT_EQ(settings.getSections(L1("2")).size(), 1);
    EXPECT_EQ(settings.getMenuNames(), (QStringList { L1("ABC"), L1("abc") }));
    EXPECT_EQ(settings.getSectionByMenuName(L1("abc")), settings[1]) << "exact without names";
    EXPECT_EQ(settings.getSectionByMenuName(L1("Abc")), nullptr);
    EXPECT_EQ(settings.getFileNameForMenuName(L1("abc"), L1("ignored")), L1("a.xml"));
    EXPECT_EQ(settings.getFileNameForMenuName(L1("Kidney"), QString()), QString());
    EXPECT_FALSE(settings.isUnique(L1("aBc")));

    EXPECT_EQ(settings.setFileNameForMenuName(L1("Kidney"), L1("k.xml")), PL_KEY_NOT_FOUND);
    // The first match has the key, the last does not: the last status counts.
    EXPECT_EQ(settings.setFileNameForMenuName(L1("ABC"), L1("b.xml")), PL_KEY_NOT_FOUND);
    EXPECT_EQ(settings.getFileNameForMenuName(L1("abc"), QString()), L1("b.xml"));

    settings.setUseSectionNameForMenuName(true);
    EXPECT_EQ(settings.getMenuNames(), (QStringList { L1("Kidney # left"), L1("liver") }));
    EXPECT_EQ(settings.getSectionByMenuName(L1("LIVER")), settings[1]);
    EXPECT_EQ(settings.getSectionByMenuName(L1("kidney")), nullptr) << "the raw name is compared";
    EXPECT_EQ(settings.getFileNameForMenuName(L1("kidney # LEFT"), QString()), L1("b.xml"));
    EXPECT_EQ(settings.setFileNameForMenuName(L1("Kidney # left"), L1("c.xml")), PL_SUCCESS);

    CPLSettingsFileWrapper empty(L1("ROI File"));
    EXPECT_EQ(empty.setFileNameForMenuName(L1("a"), L1("b")), PL_NOTHING_TO_WORK_ON);
    EXPECT_TRUE(empty.isUnique(L1("a")));
    settings.setLoadMode(CPLSettingsFileWrapper::LOAD_MODE(7));
    EXPECT_EQ(settings.getMenuNames(L1("ROI")), QStringList());
    EXPECT_EQ(settings.load(L1("ignored")), PL_SUCCESS);
}

TEST(SettingsWrapper, AddingLoadingAndSaving)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(L1("ROISettings.txt"));
    CPLSettingsFileWrapper settings(L1("ROI File"));
    EXPECT_EQ(settings.load(), PL_EMPTY_KEY);
    EXPECT_EQ(settings.load(file), PL_FILE_OPEN_FAILED);
    writeBytes(file, "*** ROI File 2:\t\r\nMenuName:\tLiver\n\n");
    ASSERT_EQ(settings.load(file), PL_SUCCESS);
    EXPECT_EQ(settings.getSettingsFileName(), file);

    EXPECT_EQ(settings.addSection(L1("Kidney")), PL_SUCCESS);
    EXPECT_EQ(settings.addSection(L1("ROI File"), L1("Spleen"), L1("spleen.xml")), PL_SUCCESS);
    settings.setUseSectionNameForMenuName(true);
    EXPECT_EQ(settings.addSection(L1("Preset"), L1("Lungs")), PL_SUCCESS);
    EXPECT_EQ(settings.deleteSection(L1("ROI File 1")), PL_INVALID_ARGUMENT);
    EXPECT_EQ(settings.deleteSection(0), PL_INVALID_ARGUMENT);
    EXPECT_EQ(settings.save(QString()), PL_EMPTY_KEY);
    ASSERT_EQ(settings.save(), PL_SUCCESS);
    EXPECT_EQ(readBytes(file),
              "*** ROI File 2:\t\r\nMenuName:\tLiver\n\n"
              "*** ROI File 1:\t\r\nMenuName:\tKidney\n\n"
              "*** ROI File 3:\t\r\nMenuName:\tSpleen\nFileName:\tspleen.xml\n\n"
              "*** Preset 1:\tLungs\r\n\n"
              "\n\n");

    CPLSettingsFileWrapper copy;
    QList<CPLSection*> sections { settings[0], settings[3], settings[0] };
    EXPECT_EQ(copy.initFromROISections(sections), PL_SUCCESS);
    EXPECT_EQ(copy.getSectionKeys(), QStringList { L1("ROI File 2") });
    EXPECT_EQ(copy.initFromSections(sections), PL_SUCCESS);
    EXPECT_EQ(copy.getSectionKeys(), (QStringList { L1("ROI File 2"), L1("Preset 1") }));
    EXPECT_NE(copy[1], settings[3]);
    QList<CPLSection*> withNull { nullptr };
    EXPECT_EQ(copy.initFromSections(withNull), PL_NULL_ARGUMENT);

    CPLSettingsFileWrapper untagged;
    EXPECT_DEATH(untagged.addSection(L1("x")), "m_strSectionNameTag.isEmpty\\(\\) == false");
}

TEST(SettingsWrapper, KeyNamesIgnoreEmptyValues)
{
    CPLSettingsFileWrapper settings;
    settings.setMenuNameTag(QString());
    settings.setFileNameTag(QString());
    settings.loadTextBuffer(L1("*** A:\t\r\nMenuName:\tm\nFileName:\tf\nTitle:\tt\nPath:\tp\n\n"));
    EXPECT_EQ(settings.getFileNameForMenuName(L1("M"), QString()), L1("f"));
    settings.setMenuNameTag(L1("Title"));
    settings.setFileNameTag(L1("Path"));
    EXPECT_EQ(settings.getFileNameForMenuName(L1("T"), QString()), L1("p"));
}

} // namespace
