#include "PLLabelDataSet.h"
#include "PLPreferenceKeyList.h"
#include "PLStatus.h"
#include "TestUtil.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <climits>
#include <fstream>
#include <memory>
#include <sys/resource.h>
#include <unistd.h>

// Under AddressSanitizer a failed nothrow allocation must return null, as it does without.
#if defined(__SANITIZE_ADDRESS__)
extern "C" __attribute__((visibility("default"), used)) const char* __asan_default_options()
{
    return "allocator_may_return_null=1";
}
#endif

namespace {

QStringList valuesOf(CPLPreferenceKey& key)
{
    QStringList* values = nullptr;
    EXPECT_EQ(key.getCompleteData(&values), PL_SUCCESS);
    return values ? *values : QStringList();
}

CPLPreferenceKey keyWith(const QStringList& values)
{
    CPLPreferenceKey key;
    for (const QString& value : values)
        EXPECT_EQ(key.addValue(value), PL_SUCCESS);
    return key;
}

TEST(PreferenceKey, EditsAndBounds)
{
    CPLPreferenceKey key = keyWith({ L1("a"), L1("b"), L1("c") });
    EXPECT_EQ(key.moveUp(0), PL_OUT_OF_RANGE);
    EXPECT_EQ(key.moveUp(3), PL_OUT_OF_RANGE);
    EXPECT_EQ(key.moveUp(2), PL_SUCCESS);
    EXPECT_EQ(key.moveDown(2), PL_OUT_OF_RANGE);
    EXPECT_EQ(key.moveDown(UINT_MAX), PL_OUT_OF_RANGE);
    EXPECT_EQ(key.moveDown(0), PL_SUCCESS);
    EXPECT_EQ(valuesOf(key), (QStringList { L1("c"), L1("a"), L1("b") }));

    EXPECT_EQ(key.addValue(QString()), PL_OUT_OF_RANGE);
    EXPECT_EQ(key.addValue(L1("a")), PL_SUCCESS);
    EXPECT_EQ(key.deleteValue(L1("a")), PL_SUCCESS) << "removes both";
    EXPECT_EQ(key.deleteValue(L1("a")), PL_OUT_OF_RANGE);
    EXPECT_EQ(key.setValue(L1("x"), 2), PL_OUT_OF_RANGE);
    EXPECT_EQ(key.setValue(L1("x"), 1), PL_SUCCESS);

    QString value = L1("unchanged");
    EXPECT_EQ(key.getValue(2, &value), PL_OUT_OF_RANGE);
    EXPECT_EQ(key.getValue(0, nullptr), PL_OUT_OF_RANGE);
    EXPECT_EQ(value, L1("unchanged"));
    EXPECT_EQ(key[1], L1("x"));
    EXPECT_TRUE(key[2].isNull());
    EXPECT_EQ(key.getCount(nullptr), PL_NULL_ARGUMENT);

    // The complete data is the key's own list.
    QStringList* values = nullptr;
    EXPECT_EQ(key.getCompleteData(nullptr), PL_NULL_ARGUMENT);
    key.getCompleteData(&values);
    values->append(L1("y"));
    EXPECT_EQ(key[2], L1("y"));
    EXPECT_EQ(CPLPreferenceKey().moveDown(0), PL_OUT_OF_RANGE);
}

TEST(PreferenceKey, TextFormAndCopies)
{
    const struct
    {
        const char* data;
        QStringList values;
        const char* saved;
    } cases[] = {
        { "x;;y;", { L1("x"), QString(), L1("y") }, "x;;y;" },
        { "a;b", { L1("a") }, "a;" },
        { ";", { QString() }, ";" },
    };
    for (const auto& c : cases) {
        CPLPreferenceKey key = keyWith({ L1("old") });
        EXPECT_EQ(key.loadData(L1(c.data)), PL_SUCCESS);
        EXPECT_EQ(valuesOf(key), c.values) << c.data;
        QString saved = L1("junk");
        EXPECT_EQ(key.getSaveBuffer(&saved), PL_SUCCESS);
        EXPECT_EQ(saved, L1(c.saved));
    }
    EXPECT_EQ(CPLPreferenceKey().getSaveBuffer(nullptr), PL_NULL_ARGUMENT);

    CPLPreferenceKey original = keyWith({ L1("m1"), L1("m2") });
    CPLPreferenceKey copy(&original);
    EXPECT_EQ(valuesOf(copy), (QStringList { L1("m1"), L1("m2") }));
    EXPECT_EQ(valuesOf(copy = nullptr), QStringList());
    EXPECT_EQ(valuesOf(copy = &original), valuesOf(original));
    EXPECT_EQ(valuesOf(*std::make_unique<CPLPreferenceKey>(nullptr)), QStringList());
}

const QByteArray kExperimentSection = "*** User Label Name Set:\tExperiment\r\n"
                                      "Subject:\tmouse1;mouse2;\r\n"
                                      "View:\tDorsal;\r\n"
                                      "\r\n";

TEST(PreferenceKeyList, SavesTheSectionByteForByteAndLoadsItBack)
{
    CPLLabelDataSet labels;
    ASSERT_EQ(labels.addLabelSet(L1("Experiment"), { L1("Subject"), L1("View") }), PL_SUCCESS);
    ASSERT_EQ(labels.selectLabelSet(L1("Experiment")), PL_SUCCESS);
    CPLPreferenceKeyList list(2);
    list[0]->addValue(L1("mouse1"));
    list[0]->addValue(L1("mouse2"));
    list[1]->addValue(L1("Dorsal"));
    QString text;
    EXPECT_EQ(list.saveData(&labels, &text), PL_SUCCESS);
    EXPECT_EQ(text.toLatin1(), kExperimentSection);

    QStringList names { L1("Subject"), L1("View") };
    CPLPreferenceKeyList loaded(2);
    EXPECT_EQ(loaded.loadData(text, &names), PL_SUCCESS);
    EXPECT_EQ(loaded.getLoadedKeyCount(), 2);
    QString again;
    loaded.saveData(&labels, &again);
    EXPECT_EQ(again, text);

    // Through a file: Latin-1, in place, and the file stays open.
    QTemporaryDir dir;
    QFile file(dir.filePath(L1("prefs.txt")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("before\n");
    list[1]->setValue(QString::fromLatin1("Dors\xe9"), 0);
    EXPECT_EQ(list.saveData(file, &labels), PL_SUCCESS);
    EXPECT_TRUE(file.isOpen());
    file.close();
    EXPECT_EQ(readBytes(file.fileName()),
              "before\n" + QByteArray(kExperimentSection).replace("Dorsal", "Dors\xe9"));

    // Without labels, without a text, or when the chosen set is gone: nothing is saved.
    EXPECT_EQ(list.saveData(nullptr, &text), PL_EMPTY_KEY);
    EXPECT_EQ(list.saveData(&labels, nullptr), PL_EMPTY_KEY);
    labels.removeLabelSet(L1("Experiment"));
    EXPECT_EQ(list.saveData(&labels, &text), PL_KEY_NOT_FOUND);
    EXPECT_EQ(text.toLatin1(), kExperimentSection);
}

TEST(PreferenceKeyList, LoadKeepsSlotsWithoutText)
{
    CPLPreferenceKeyList list(3);
    QStringList names { L1("Subject"), L1("View"), L1("Sex") };
    // "Name:" and a tab only, or an absent name, leave the slot as it was; case matters.
    EXPECT_EQ(list.loadData(L1("Subject:\t\r\nVIEW:\tx;\r\nsex:\ty;\r\n"), &names), PL_SUCCESS);
    EXPECT_EQ(list.getLoadedKeyCount(), 0);
    EXPECT_EQ(list.loadData(L1("Sex:\tf;\r\n"), nullptr), PL_EMPTY_KEY);
    EXPECT_EQ(list.loadData(L1("Sex:\tf;m;\r\n"), &names), PL_SUCCESS);
    EXPECT_EQ(valuesOf(*list[2]), (QStringList { L1("f"), L1("m") }));
    EXPECT_EQ(list.getLoadedKeyCount(), 1);
    names.removeLast();
    EXPECT_EQ(list.loadData(L1("Sex:\tm;\r\n"), &names), PL_SUCCESS) << "no name, no load";
    EXPECT_EQ(valuesOf(*list[2]), (QStringList { L1("f"), L1("m") }));
}

TEST(PreferenceKeyList, SlotsCopiesAndAssignment)
{
    CPLPreferenceKeyList list(2);
    CPLPreferenceKey* key = nullptr;
    for (int index : { -1, 2 })
        EXPECT_EQ(list.getKey(index, &key), PL_OUT_OF_RANGE);
    EXPECT_EQ(list.getKey(0, nullptr), PL_OUT_OF_RANGE);
    EXPECT_EQ(list.getKey(1, &key), PL_SUCCESS);
    EXPECT_EQ(key, list[1]);
    EXPECT_EQ(list[2], nullptr);
    EXPECT_EQ(list.setKey(0, nullptr), PL_OUT_OF_RANGE);
    auto* replacement = new CPLPreferenceKey;
    replacement->addValue(L1("r"));
    EXPECT_EQ(list.setKey(0, replacement), PL_SUCCESS);
    EXPECT_EQ(CPLPreferenceKeyList(-3).getCount(), 0);

    CPLPreferenceKeyList copy(&list);
    EXPECT_EQ(copy.getCount(), 2);
    EXPECT_NE(copy[0], list[0]);
    EXPECT_EQ(valuesOf(*copy[0]), (QStringList { L1("r") }));
    EXPECT_EQ(CPLPreferenceKeyList(nullptr).getCount(), 0);

    // Assignment takes the smaller count; keys are copied, not shared.
    CPLPreferenceKeyList wide(3);
    QStringList names { L1("A") };
    wide.loadData(L1("A:\tv;"), &names);
    EXPECT_EQ(wide.getLoadedKeyCount(), 1);
    wide = &list;
    EXPECT_EQ(wide.getCount(), 2);
    EXPECT_EQ(wide.getLoadedKeyCount(), 0);
    list[0]->addValue(L1("s"));
    EXPECT_EQ(valuesOf(*wide[0]), (QStringList { L1("r") }));
    CPLPreferenceKeyList more(3);
    EXPECT_DEATH(list = &more, "other->m_iCount <= m_iCapacity");
}

// Messages logged while the test runs, as "type file function: message".
QStringList g_logged;

void keepMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    g_logged.append(QStringLiteral("%1 %2 %3: %4")
                        .arg(type)
                        .arg(L1(context.file), L1(context.function), message));
}

TEST(PreferenceKeyList, AllocationFailureIsLoggedAndConstructionGoesOn)
{
    CPLPreferenceKeyList source(1000000);
    // The address space in use now and a little more: a large allocation fails at once,
    // without the machine running out of memory.
    rlimit old {};
    ASSERT_EQ(getrlimit(RLIMIT_AS, &old), 0);
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    rlimit limit = old;
    limit.rlim_cur = rlim_t(pages) * rlim_t(sysconf(_SC_PAGESIZE)) + (rlim_t(4) << 20);
    g_logged.clear();
    qInstallMessageHandler(keepMessage);
    ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
    // INT_MAX slots need 16 GiB; the copy's 8 MB of slots fail as well.
    const CPLPreferenceKeyList huge(INT_MAX);
    const CPLPreferenceKeyList copy(&source);
    setrlimit(RLIMIT_AS, &old);
    qInstallMessageHandler(nullptr);
    EXPECT_EQ(huge.getCount(), 0);
    EXPECT_EQ(huge[0], nullptr);
    EXPECT_EQ(copy.getCount(), 0);
    // Critical, from where the application's log readers know it.
    const QString where
        = QString::number(QtCriticalMsg) + L1(" Source/Parser/Source/PLPreferenceKeyList ");
    const QString message = L1(": Unable To Allocate Memory for Operation ");
    EXPECT_EQ(g_logged,
              (QStringList {
                  where + L1("CPLPreferenceKeyList::CPLPreferenceKeyList(int)") + message,
                  where + L1("CPLPreferenceKeyList::CPLPreferenceKeyList(CPLPreferenceKeyList *)")
                      + message }));
}

} // namespace
