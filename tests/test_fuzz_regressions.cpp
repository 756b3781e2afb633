// Replays every input kept under data/fuzz-regressions/<target>/ through the checks of that
// fuzz target (fuzz/FuzzChecks.cpp), without libFuzzer: each input that once broke a check or
// crashed the library must now pass. One test per target, whose failures name the input.
// (The inputs are listed when the test runs, not when it is built, so that an added or
// renamed file can never leave a stale test behind that passes without running.)

#include "FuzzChecks.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace {

using Check = std::string (*)(const uint8_t*, size_t);

struct Target
{
    const char* name;
    Check check;
};

void PrintTo(const Target& target, std::ostream* out)
{
    *out << target.name;
}

class FuzzRegression : public testing::TestWithParam<Target>
{
};

TEST_P(FuzzRegression, SavedInputsPassTheTargetChecks)
{
    const QDir folder(QStringLiteral(OVPARSER_TEST_DATA "/fuzz-regressions/")
                      + QString::fromLatin1(GetParam().name));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    // The inputs are malformed on purpose: the library's log of them is not wanted here.
    OvFuzz::silenceMessages();
    // The replay proves nothing when the inputs are not where it looks for them.
    ASSERT_FALSE(names.isEmpty()) << "no inputs in " << folder.path().toStdString();

    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
        const QByteArray bytes = file.readAll();
        const std::string failure = GetParam().check(
            reinterpret_cast<const uint8_t*>(bytes.constData()), static_cast<size_t>(bytes.size()));
        EXPECT_EQ(failure, std::string()) << "input " << file.fileName().toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Targets, FuzzRegression,
    testing::Values(Target { "fuzz_scanner", OvFuzz::checkScanner },
                    Target { "fuzz_clickinfo", OvFuzz::checkClickInfo },
                    Target { "fuzz_editor", OvFuzz::checkEditor },
                    Target { "fuzz_obtain_value", OvFuzz::checkObtainValue },
                    Target { "fuzz_preference_keys", OvFuzz::checkPreferenceKeys },
                    Target { "fuzz_settings", OvFuzz::checkSettings },
                    Target { "fuzz_spectral", OvFuzz::checkSpectral },
                    Target { "fuzz_camera", OvFuzz::checkCamera },
                    Target { "fuzz_bkg", OvFuzz::checkBkg },
                    Target { "fuzz_optprop", OvFuzz::checkOptProp },
                    Target { "fuzz_analysis", OvFuzz::checkAnalysis },
                    Target { "fuzz_sequence", OvFuzz::checkSequence }),
    [](const testing::TestParamInfo<Target>& info) { return std::string(info.param.name); });

// Checks that rejected well-formed text would make every replay above fail for the wrong
// reason, and a fuzzer report worthless.
TEST(FuzzChecks, AcceptWellFormedInput)
{
    const QByteArray text("*** ClickNumber:\tKL1\r\nBinning Factor:\t8\n\n\n\n");
    const auto* data = reinterpret_cast<const uint8_t*>(text.constData());
    EXPECT_EQ(OvFuzz::checkScanner(data, size_t(text.size())), std::string());
    EXPECT_EQ(OvFuzz::checkClickInfo(data, size_t(text.size())), std::string());
    const QByteArray lookup = "binning factor\n" + text;
    EXPECT_EQ(OvFuzz::checkObtainValue(reinterpret_cast<const uint8_t*>(lookup.constData()),
                                       size_t(lookup.size())),
              std::string());
}

} // namespace
