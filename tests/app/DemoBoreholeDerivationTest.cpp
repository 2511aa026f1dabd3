// The demo borehole BA-1 as a user meets it: its committed logs opened in the main frame,
// density porosity derived with Process > Common Logs and Poisson's ratio and Young's
// modulus with Process > Mechanical Properties, each result checked bed by bed against
// values worked out by hand from the bed's density and slownesses in data/demo/README.md.

#include "AppTestSupport.h"
#include "DialogDriving.h"

#include "app/DocumentWindow.h"
#include "app/MainFrame.h"
#include "model/LineTrace.h"
#include "support/TempDir.h"
#include "view/CommonLogsDlg.h"
#include "view/MechanicalPropertiesDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace ba;
using namespace ba::test;

namespace {

// The demo logs and how the demo script names them.
struct DemoLog {
    const char* name;
    const char* units;
    const char* file;
    std::int32_t track;
};
const DemoLog kDemoLogs[] = {
    {"GR", "API", "gamma_ray.csv", 0},     {"RES", "ohm·m", "resistivity.csv", 0},
    {"CALI", "mm", "caliper.csv", 0},      {"RHOB", "g/cc", "density.csv", 1},
    {"DTC", "us/ft", "dt_compressional.csv", 1}, {"DTS", "us/ft", "dt_shear.csv", 1},
};
constexpr std::size_t kDemoSampleCount = 1401; // 10.0 m to 150.0 m every 0.1 m

// Reads one demo log into a line trace: lines starting with '#' are comments, the first
// other line is the header, then one "depth,value" pair a line. Returns the reason and
// place of the first bad line instead when the file is not of that form.
std::string ReadDemoLog(const std::filesystem::path& path, CLineTrace& trace)
{
    std::ifstream in(path);
    if (!in) return path.string() + ": cannot be opened";
    std::string line;
    bool headerSeen = false;
    for (int lineNumber = 1; std::getline(in, line); ++lineNumber) {
        if (line.empty() || line.front() == '#') continue;
        if (!headerSeen) {
            headerSeen = true;
            continue;
        }
        const auto comma = line.find(',');
        float depth = 0.0f;
        float value = 0.0f;
        const char* end = line.data() + line.size();
        const auto depthRead = std::from_chars(line.data(), line.data() + std::min(comma, line.size()), depth);
        const auto valueRead = comma == std::string::npos ? std::from_chars_result{end, std::errc::invalid_argument}
                                                          : std::from_chars(line.data() + comma + 1, end, value);
        if (comma == std::string::npos || depthRead.ec != std::errc() || depthRead.ptr != line.data() + comma ||
            valueRead.ec != std::errc() || valueRead.ptr != end) {
            return path.string() + ":" + std::to_string(lineNumber) + ": not a depth,value pair: " + line;
        }
        trace.AppendSample(depth, value);
    }
    return {};
}

// Borehole BA-1 as the demo script builds it from the committed logs.
std::unique_ptr<CBoreAnalystDoc> MakeDemoBorehole(std::string& problem)
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    for (const DemoLog& log : kDemoLogs) {
        auto trace = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, log.name, log.units);
        trace->SetDepthUnit(kDepthMetres);
        trace->SetTrackIndex(log.track);
        problem = ReadDemoLog(std::filesystem::path(BA_DEMO_DATA_DIR) / log.file, *trace);
        if (!problem.empty()) return nullptr;
        doc->AddTrace(std::move(trace));
    }
    return doc;
}

const CLineTrace* LineTrace(const CBoreAnalystDoc& doc, const char* name)
{
    return dynamic_cast<const CLineTrace*>(doc.FindTrace(name));
}

void Choose(QComboBox& combo, const QString& name)
{
    const int index = combo.findText(name);
    QVERIFY2(index >= 0, qPrintable(name));
    combo.setCurrentIndex(index);
}

// Replaces an edit's text the way a user does: select all, then type.
void Type(QLineEdit& edit, const QString& text)
{
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, text);
}

// A bed of the formation model with its noise-free density (g/cc) and slownesses (us/ft).
struct Bed {
    const char* name;
    float top;
    float base;
    double density;
    double dtc;
    double dts;
};
const Bed kBeds[] = {
    {"limestone", 38.5f, 55.0f, 2.58, 60.0, 110.0},
    {"oil sandstone", 104.0f, 121.0f, 2.28, 88.0, 150.0},
    {"dolomite", 121.0f, 150.0f, 2.80, 48.0, 86.0},
};
// Values ramp over 0.3 m either side of a boundary; stations closer than this are skipped.
constexpr float kShoulder = 0.35f;
// How far a logged value can be from the bed's own: the generator's noise is at most 1.5
// times its factor (0.012 g/cc, 1.0 us/ft, 2.0 us/ft), and the files round to 0.0005 g/cc
// and 0.05 us/ft.
constexpr double kDensitySpread = 0.018 + 0.0005;
constexpr double kDtcSpread = 1.5 + 0.05;
constexpr double kDtsSpread = 3.0 + 0.05;
// Single-precision arithmetic in the program.
constexpr double kFloatSlack = 1e-5;

constexpr double kWaterDensity = 1.0;
constexpr double kSandstoneMatrixDensity = 2.65;

double DensityPorosity(double density)
{
    return (kSandstoneMatrixDensity - density) / (kSandstoneMatrixDensity - kWaterDensity);
}

// Poisson's ratio from the ratio of the velocities, which is the ratio DTS/DTC.
double PoissonRatio(double vpOverVs)
{
    const double r2 = vpOverVs * vpOverVs;
    return (r2 - 2.0) / (2.0 * (r2 - 1.0));
}

// The program's Young's modulus (GPa): ρ·(Vp² − 2Vs²)(3Vp² − 4Vs²)/(Vp² − Vs²), velocities
// in m/s from slownesses in us/ft; this is the program's own form, not the textbook one.
double YoungModulus(double density, double dtc, double dts)
{
    const double vp = 0.3048e6 / dtc;
    const double vs = 0.3048e6 / dts;
    const double vp2 = vp * vp;
    const double vs2 = vs * vs;
    return density * (vp2 - 2.0 * vs2) * (3.0 * vp2 - 4.0 * vs2) / (vp2 - vs2) * 1e-6;
}

struct Range {
    double low;
    double high;
    bool Holds(double value, double slack) const { return value >= low - slack && value <= high + slack; }
};

// Over the box of noisy inputs the modulus grows with density and shear slowness and falls
// with compressional slowness, so its corners hold the extremes.
Range YoungModulusRange(const Bed& bed)
{
    Range range{1e300, -1e300};
    for (double density : {bed.density - kDensitySpread, bed.density + kDensitySpread}) {
        for (double dtc : {bed.dtc - kDtcSpread, bed.dtc + kDtcSpread}) {
            for (double dts : {bed.dts - kDtsSpread, bed.dts + kDtsSpread}) {
                const double e = YoungModulus(density, dtc, dts);
                range.low = std::min(range.low, e);
                range.high = std::max(range.high, e);
            }
        }
    }
    return range;
}

} // namespace

class DemoBoreholeDerivationTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { PrepareApplicationForTests(); }

    void demoBoreholeGainsPorosityAndElasticModuli()
    {
        TempDir scratch;
        RepositoryFileForTest repository(scratch.Path("BARepository.mdb"));
        std::string problem;
        auto demo = MakeDemoBorehole(problem);
        QVERIFY2(demo, problem.c_str());
        QCOMPARE(LineTrace(*demo, "RHOB")->SampleCount(), kDemoSampleCount);

        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* window = frame.AddDocument(std::move(demo));
        const CBoreAnalystDoc& doc = window->Document();

        QAction* commonLogs = FindMenuAction(frame, QStringLiteral("&Common Logs..."));
        QVERIFY(commonLogs && commonLogs->isEnabled());
        WhenModalDialogOpens<CCommonLogsDlg>([](CCommonLogsDlg& dialog) {
            dialog.EquationList()->setCurrentRow(11); // "Porosity: From density log"
            Choose(*dialog.LogCombo(0), "RHOB");
            Type(*dialog.CoefficientEdit(0), "1.0");  // RHOf
            Type(*dialog.CoefficientEdit(1), "2.65"); // RHOma
            Type(*dialog.OutputNameEdit(), "PHID");
            dialog.OkButton()->click();
        });
        commonLogs->trigger();

        QAction* mechanical = FindMenuAction(frame, QStringLiteral("&Mechanical Properties..."));
        QVERIFY(mechanical && mechanical->isEnabled());
        WhenModalDialogOpens<CMechanicalPropertiesDlg>([](CMechanicalPropertiesDlg& dialog) {
            Choose(*dialog.CompressionalCombo(), "DTC");
            Choose(*dialog.ShearCombo(), "DTS");
            Choose(*dialog.DensityCombo(), "RHOB");
            dialog.PoissonRatioCheck()->click();
            dialog.YoungModulusCheck()->click();
            dialog.OkButton()->click();
        });
        mechanical->trigger();

        QCOMPARE(Texts(sink), QStringList());
        QCOMPARE(doc.TraceCount(), std::size_t(std::size(kDemoLogs) + 3));
        const CLineTrace* density = LineTrace(doc, "RHOB");
        const CLineTrace* porosity = LineTrace(doc, "PHID");
        const CLineTrace* poisson = LineTrace(doc, "Poisson's Ratio");
        const CLineTrace* young = LineTrace(doc, "Young's Modulus");
        QVERIFY(porosity && poisson && young);
        QCOMPARE(porosity->Units(), std::string("P.U."));
        QCOMPARE(young->Units(), std::string("GPa"));
        for (const CLineTrace* derived : {porosity, poisson, young}) {
            QCOMPARE(derived->SampleCount(), kDemoSampleCount);
            for (std::size_t i = 0; i < kDemoSampleCount; i += 100) {
                QCOMPARE(derived->StoredDepth(i), density->StoredDepth(i));
            }
        }

        for (const Bed& bed : kBeds) {
            const Range porosityRange{DensityPorosity(bed.density + kDensitySpread),
                                      DensityPorosity(bed.density - kDensitySpread)};
            const Range poissonRange{PoissonRatio((bed.dts - kDtsSpread) / (bed.dtc + kDtcSpread)),
                                     PoissonRatio((bed.dts + kDtsSpread) / (bed.dtc - kDtcSpread))};
            const Range youngRange = YoungModulusRange(bed);
            std::size_t stations = 0;
            for (std::size_t i = 0; i < kDemoSampleCount; ++i) {
                const float depth = density->StoredDepth(i);
                if (depth < bed.top + kShoulder || depth > bed.base - kShoulder) continue;
                ++stations;
                const QString where = QStringLiteral("%1 at %2 m").arg(bed.name).arg(depth);
                QVERIFY2(porosityRange.Holds(porosity->Value(i), kFloatSlack),
                         qPrintable(where + QStringLiteral(": PHID %1").arg(porosity->Value(i))));
                QVERIFY2(poissonRange.Holds(poisson->Value(i), kFloatSlack),
                         qPrintable(where + QStringLiteral(": Poisson's ratio %1").arg(poisson->Value(i))));
                QVERIFY2(youngRange.Holds(young->Value(i), kFloatSlack * youngRange.high),
                         qPrintable(where + QStringLiteral(": Young's modulus %1").arg(young->Value(i))));
            }
            QVERIFY2(stations > 100, bed.name);
        }
        QCOMPARE(window->windowTitle(), QStringLiteral("BoreAnalyst1*"));
    }
};

QTEST_MAIN(DemoBoreholeDerivationTest)
#include "DemoBoreholeDerivationTest.moc"
