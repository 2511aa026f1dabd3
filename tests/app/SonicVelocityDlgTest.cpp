// The sonic velocity dialog as a user drives it from Process > Sonic Velocity..., its
// remembered settings, the job under the progress dialog, and the coherence map that
// follows the cursor.

#include "AppTestSupport.h"
#include "DialogDriving.h"
#include "app/DocumentWindow.h"
#include "app/JobRunner.h"
#include "app/MainFrame.h"
#include "model/LineTrace.h"
#include "view/CoherenceMapView.h"
#include "view/LogPlotView.h"
#include "view/SonicVelocityDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QDoubleSpinBox>
#include <QPushButton>
#include <QtTest>

namespace ba {

using namespace ba::test;

class SonicVelocityDlgTest : public QObject {
    Q_OBJECT

private slots:
    void dialogRemembersItsSettingsAndRunsTheJobUnderTheProgressDialog()
    {
        SettingsFileForTest settings(kSonicDialogKey);
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        QVERIFY(frame.ImportRawDataFile(QStringLiteral(BA_TEST_DATA_DIR "/cli/data/sonic_3rx.rd")));
        QList<int> seen;
        connect(&frame.Jobs(), &CJobRunner::Progressed, &frame, [&](int percent) { seen.append(percent); });

        WhenModalDialogOpens<CSonicVelocityDlg>([&](CSonicVelocityDlg& dialog) {
            QCOMPARE(ComboItems(*dialog.ReceiverCombo(0)),
                     (QStringList{QStringLiteral("(none)"), QStringLiteral("RX 1"), QStringLiteral("RX 2"),
                                  QStringLiteral("RX 3")}));
            QCOMPARE(dialog.ReceiverCombo(2)->currentText(), QStringLiteral("RX 3"));
            QCOMPARE(dialog.ReceiverCombo(3)->currentText(), QStringLiteral("(none)"));
            QCOMPARE(dialog.OffsetBox(1)->value(), 4.0);
            // The slowest slowness keeps its meaning when the unit changes.
            dialog.UnitsCombo()->setCurrentIndex(1);
            QCOMPARE(dialog.MaxSlownessBox()->value(), 984.3);
            dialog.UnitsCombo()->setCurrentIndex(0);
            QCOMPARE(dialog.MaxSlownessBox()->value(), 300.0);
            dialog.WindowBox()->setValue(150.0);
            dialog.PickCheck(2)->setChecked(false);
            dialog.SaveAsDefaultButton()->click();
            dialog.WindowBox()->setValue(90.0);
            dialog.RestoreDefaultsButton()->click();
            QCOMPARE(dialog.WindowBox()->value(), 150.0);
            QVERIFY(!dialog.PickCheck(2)->isChecked());
            dialog.accept();
        });
        QVERIFY(frame.ComputeSonicVelocities());
        QCOMPARE(settings.Read("WindowLength"), std::optional<std::string>("150"));
        QCOMPARE(settings.Read("Pick3"), std::optional<std::string>("0"));
        QCOMPARE(settings.Read("Offset3"), std::optional<std::string>("5"));
        QCOMPARE(seen.front(), 0);
        QCOMPARE(seen.back(), 100);
        QVERIFY(frame.isEnabled());

        CDocumentWindow& window = *frame.ActiveDocumentWindow();
        const CBoreAnalystDoc& doc = window.Document();
        const auto* dtc = dynamic_cast<const CLineTrace*>(doc.FindTrace("DTC"));
        QVERIFY(dtc != nullptr);
        for (std::size_t i = 0; i < dtc->SampleCount(); ++i) QCOMPARE(dtc->Value(i), 60.0f);
        QVERIFY(doc.FindTrace("DTS") != nullptr);
        QVERIFY(doc.FindTrace("DTST") == nullptr);
        QVERIFY(doc.FindTrace("STC") != nullptr);
        QVERIFY2(sink.messages.empty(), qPrintable(Texts(sink).join('\n')));

        // The coherence map follows the cursor once it is shown, with the settings just run.
        frame.CoherenceDock().show();
        emit window.View().cursorDepthChanged(99.6);
        const auto& picture = frame.CoherenceView().Picture();
        QVERIFY(picture.has_value());
        QVERIFY(picture->picks.compressional && picture->picks.shear);
        QCOMPARE(picture->picks.compressional->slowness, 60.0);
        QCOMPARE(picture->picks.shear->slowness, 110.0);
        QCOMPARE(picture->map.slowness.size(), std::size_t(261));
        emit window.View().cursorDepthChanged(150.0);
        QVERIFY(!frame.CoherenceView().Picture().has_value());
        QCOMPARE(frame.CoherenceView().Notice(), QStringLiteral("No station at 150.000."));
    }

    void aReceiverPastTheLargestOffsetLeavesTooFewAndNothingRuns()
    {
        SettingsFileForTest settings(kSonicDialogKey);
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        QVERIFY(frame.ImportRawDataFile(QStringLiteral(BA_TEST_DATA_DIR "/cli/data/sonic_3rx.rd")));
        const std::size_t traces = frame.ActiveDocumentWindow()->Document().TraceCount();
        WhenModalDialogOpens<CSonicVelocityDlg>([&](CSonicVelocityDlg& dialog) {
            dialog.findChild<QDoubleSpinBox*>("maxOffset")->setValue(3.5);
            dialog.accept(); // refused: the dialog stays open
            QVERIFY(dialog.isVisible());
            dialog.reject();
        });
        QVERIFY(!frame.ComputeSonicVelocities());
        QCOMPARE(frame.ActiveDocumentWindow()->Document().TraceCount(), traces);
        QCOMPARE(Texts(sink), (QStringList{QStringLiteral("Error: of the 3 receivers chosen, 1 is within the largest "
                                                          "offset of 3.5 ft; sonic velocities need two or more.")}));
    }
};

} // namespace ba

QTEST_MAIN(ba::SonicVelocityDlgTest)
#include "SonicVelocityDlgTest.moc"
