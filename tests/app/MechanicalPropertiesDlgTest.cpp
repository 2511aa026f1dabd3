// The mechanical properties dialog driven through its controls: the trace lists, the
// output checks, OK adding the derived traces or refusing with the core's messages, and
// the Process menu command that opens it over the active document.

#include "AppTestSupport.h"
#include "DialogDriving.h"

#include "app/DocumentWindow.h"
#include "app/MainFrame.h"
#include "model/LineTrace.h"
#include "view/MechanicalPropertiesDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace ba;
using namespace ba::test;

namespace {

// Vp 5000 m/s, Vs 2000 m/s given in feet per second, density 2.3 g/cc at three stations;
// the shear value of the last station is missing.
std::unique_ptr<CBoreAnalystDoc> MakeSonicDocument()
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    AddLineTrace(*doc, "VP", "m/s", {{100.0f, 5000.0f}, {101.0f, 5000.0f}, {102.0f, 5000.0f}});
    AddLineTrace(*doc, "VS", "ft/s", {{100.0f, 6561.68f}, {101.0f, 6561.68f}, {102.0f, kNullValue}});
    AddLineTrace(*doc, "RHO", "g/cc", {{100.0f, 2.3f}, {101.0f, 2.3f}, {102.0f, 2.3f}}, 1);
    return doc;
}

void Choose(QComboBox& combo, const QString& name)
{
    const int index = combo.findText(name);
    QVERIFY2(index >= 0, qPrintable(name));
    combo.setCurrentIndex(index);
}

enum OutputBits { kBulk = 1, kLambdaMu = 2, kPoisson = 4, kVpVs = 8, kYoung = 16, kRatios = 32 };

void CheckOutputs(CMechanicalPropertiesDlg& dialog, int outputs)
{
    const std::pair<QCheckBox*, int> boxes[] = {{dialog.BulkModulusCheck(), kBulk},
                                                {dialog.LambdaMuCheck(), kLambdaMu},
                                                {dialog.PoissonRatioCheck(), kPoisson},
                                                {dialog.VpVsCheck(), kVpVs},
                                                {dialog.YoungModulusCheck(), kYoung},
                                                {dialog.RatiosCheck(), kRatios}};
    for (const auto& [box, bit] : boxes) {
        if (outputs & bit) box->click();
    }
}

const CLineTrace* Output(const CBoreAnalystDoc& doc, const char* name)
{
    return dynamic_cast<const CLineTrace*>(doc.FindTrace(name));
}

} // namespace

class MechanicalPropertiesDlgTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { PrepareApplicationForTests(); }

    void listsOfferNoTraceThenTheLineTraces()
    {
        auto doc = MakeSonicDocument();
        CollectingMessageSink sink;
        CMechanicalPropertiesDlg dialog(*doc, sink);
        for (QComboBox* combo : {dialog.CompressionalCombo(), dialog.ShearCombo(), dialog.DensityCombo()}) {
            QCOMPARE(ComboItems(*combo), QStringList({"", "VP", "VS", "RHO"}));
            QCOMPARE(combo->currentIndex(), -1);
        }
        QCOMPARE(dialog.BulkModulusCheck()->text(), QStringLiteral("&Bulk Modulus"));
        QVERIFY(!dialog.BulkModulusCheck()->isChecked());
    }

    void okAddsEveryRequestedProperty()
    {
        auto doc = MakeSonicDocument();
        int redraws = 0;
        doc->AddViewUpdater([&redraws] { ++redraws; });
        CollectingMessageSink sink;
        CMechanicalPropertiesDlg dialog(*doc, sink);
        Choose(*dialog.CompressionalCombo(), "VP");
        Choose(*dialog.ShearCombo(), "VS");
        Choose(*dialog.DensityCombo(), "RHO");
        CheckOutputs(dialog, kBulk | kLambdaMu | kPoisson | kVpVs | kYoung | kRatios);
        dialog.OkButton()->click();

        QCOMPARE(Texts(sink), QStringList());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(doc->TraceCount(), std::size_t(3 + 9));
        QVERIFY(doc->IsModified());
        QCOMPARE(redraws, 1);

        struct Expected {
            const char* name;
            const char* units;
            double value;
            bool usesVp;
        };
        const Expected expected[] = {
            {"Bulk Modulus", "GPa", 45.2333, true},
            {"Lambda", "GPa", 39.1, true},
            {"Shear Modulus - Mu", "GPa", 9.2, false},
            {"Mu/Lambda", "", 4.0 / 17.0, true},
            {"Rho/Lambda", "us^2/m^2", 1.0 / 17.0, true},
            {"Rho/Mu", "us^2/m^2", 0.25, false},
            {"Poisson's Ratio", "", 17.0 / 42.0, true},
            {"Vp/Vs", "", 2.5, true},
            {"Young's Modulus", "GPa", 59.0 * 17.0 / 21.0 * 2.3, true},
        };
        for (const Expected& e : expected) {
            const CLineTrace* trace = Output(*doc, e.name);
            QVERIFY2(trace, e.name);
            QCOMPARE(trace->Units(), std::string(e.units));
            QCOMPARE(trace->SampleCount(), std::size_t(3));
            for (std::size_t i = 0; i < 2; ++i) {
                QVERIFY2(std::abs(trace->Value(i) - e.value) <= 1e-4 * std::abs(e.value), e.name);
            }
            // The last station has no shear velocity: that makes Vp null, while Vs keeps
            // the value of the station before.
            if (e.usesVp) QCOMPARE(trace->Value(2), kNullValue);
            else QVERIFY2(std::abs(trace->Value(2) - e.value) <= 1e-4 * std::abs(e.value), e.name);
        }
    }

    void okRefusesIncompleteChoices_data()
    {
        QTest::addColumn<int>("outputs");
        QTest::addColumn<QString>("compressional");
        QTest::addColumn<QString>("shear");
        QTest::addColumn<QString>("density");
        QTest::addColumn<QStringList>("messages");
        QTest::newRow("moduli with no traces")
            << int(kBulk) << "" << "" << ""
            << QStringList{"Error: No compressional velocity trace selected.",
                           "Error: No shear velocity trace selected.", "Error: No density trace selected."};
        QTest::newRow("Young's modulus without density")
            << int(kYoung) << "VP" << "VS" << "" << QStringList{"Error: No density trace selected."};
        QTest::newRow("Vp/Vs without compressional")
            << int(kVpVs) << "" << "VS" << "" << QStringList{"Error: No compressional velocity trace selected."};
        QTest::newRow("Poisson's ratio from a density as compressional")
            << int(kPoisson) << "RHO" << "VS" << ""
            << QStringList{"Error: Compressional velocity trace units must be of type velocity."};
        QTest::newRow("shear trace not a velocity")
            << int(kVpVs) << "VP" << "RHO" << ""
            << QStringList{"Error: Shear velocity trace units must be of type velocity."};
    }

    void okRefusesIncompleteChoices()
    {
        QFETCH(int, outputs);
        QFETCH(QString, compressional);
        QFETCH(QString, shear);
        QFETCH(QString, density);
        QFETCH(QStringList, messages);
        auto doc = MakeSonicDocument();
        CollectingMessageSink sink;
        CMechanicalPropertiesDlg dialog(*doc, sink);
        Choose(*dialog.CompressionalCombo(), compressional);
        Choose(*dialog.ShearCombo(), shear);
        Choose(*dialog.DensityCombo(), density);
        CheckOutputs(dialog, outputs);
        dialog.OkButton()->click();

        QCOMPARE(Texts(sink), messages);
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(doc->TraceCount(), std::size_t(3));
        QVERIFY(!doc->IsModified());
    }

    void processMenuOpensTheDialogOverTheActiveDocument()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        QAction* command = FindMenuAction(frame, QStringLiteral("&Mechanical Properties..."));
        QVERIFY(command);
        QVERIFY(!command->isEnabled());
        CDocumentWindow* window = frame.AddDocument(MakeSonicDocument());
        QVERIFY(command->isEnabled());

        WhenModalDialogOpens<CMechanicalPropertiesDlg>([](CMechanicalPropertiesDlg& dialog) {
            dialog.VpVsCheck()->click();
            dialog.OkButton()->click(); // nothing chosen: refused, stays open
            QVERIFY(dialog.isVisible());
            Choose(*dialog.CompressionalCombo(), "VP");
            Choose(*dialog.ShearCombo(), "VS");
            dialog.OkButton()->click();
        });
        command->trigger();

        QCOMPARE(Texts(sink), QStringList({"Error: No compressional velocity trace selected.",
                                           "Error: No shear velocity trace selected."}));
        const CBoreAnalystDoc& doc = window->Document();
        QCOMPARE(doc.TraceCount(), std::size_t(4));
        QVERIFY(Output(doc, "Vp/Vs"));
        // The document's views were told: the window title now shows the unsaved change.
        QCOMPARE(window->windowTitle(), QStringLiteral("BoreAnalyst1*"));
    }
};

QTEST_MAIN(MechanicalPropertiesDlgTest)
#include "MechanicalPropertiesDlgTest.moc"
