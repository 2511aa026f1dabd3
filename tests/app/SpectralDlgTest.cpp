// The spectral processing dialog and its spectrum view over a synthetic spectral gamma
// log: what they show is what the spectral core computes; OK runs the core's checks and
// remembers the settings in the settings file of the platform store.

#include "AppTestSupport.h"
#include "DialogDriving.h"

#include "app/DocumentWindow.h"
#include "app/MainFrame.h"
#include "spectral/SpectrumSynth.h"
#include "support/TempDir.h"
#include "view/SpectralDlg.h"
#include "view/SpectrumView.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>
#include <QSlider>
#include <QTimer>
#include <QtTest>

#include <functional>
#include <memory>

using namespace ba;
using namespace ba::test;

namespace {

QString Q(const std::string& text) { return QString::fromStdString(text); }

constexpr std::size_t kSpectra = 40;

// A line trace, then a 40-spectrum log of one-second spectra every 0.1 m from 100 m.
std::unique_ptr<CBoreAnalystDoc> MakeSpectralDocument()
{
    auto doc = MakeTwoTraceDocument();
    synth::LogOptions options;
    options.spectra = kSpectra;
    doc->AddTrace(synth::MakeSpectralLog("NGS", options));
    return doc;
}

const CSpectralTrace& SpectralTrace(const CBoreAnalystDoc& doc)
{
    return dynamic_cast<const CSpectralTrace&>(doc.Trace(2));
}

void MoveMouse(QWidget& widget, QPointF at)
{
    QMouseEvent move(QEvent::MouseMove, at, widget.mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &move);
}

} // namespace

class SpectralDlgTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { PrepareApplicationForTests(); }

    void showsTheSummedSpectrumOfTheChosenSample()
    {
        const auto doc = MakeSpectralDocument();
        const CSpectralTrace& trace = SpectralTrace(*doc);
        SettingsFileForTest settings(kSpectralDialogKey);
        const auto store = MakeDefaultSettingsStore();
        CollectingMessageSink sink;
        CSpectralDlg dialog(*doc, *store, sink);
        dialog.resize(800, 700);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));

        QCOMPARE(dialog.TraceCombo()->count(), 1); // the line traces are not offered
        QCOMPARE(dialog.TraceCombo()->currentText(), QStringLiteral("NGS"));
        QCOMPARE(dialog.Model().SelectedTrace(), std::optional<std::size_t>(2));
        QCOMPARE(dialog.SampleSlider()->maximum(), int(kSpectra - 1));

        dialog.TimeSumEdit()->setValue(5.0);
        dialog.SampleSlider()->setValue(12);
        const SummedSpectrum expected = SumSpectraAround(trace, 12, SummingTarget{.timeSum = 5.0});
        QCOMPARE(dialog.Summed().cps, expected.cps);
        QCOMPARE(dialog.Summed().spectraSummed, expected.spectraSummed);
        const CSpectrumView& view = *dialog.View();
        const EnergyRange range = dialog.Model().EnergyRangeAt(trace, 12);
        QCOMPARE(view.ChannelCaption(), QStringLiteral("Num Chans: 1024"));
        QCOMPARE(view.EnergyCaption(), Q(EnergyRangeCaption(range)));
        QCOMPARE(view.MaxValueCaption(), Q(MaxValueCaption(MaxCountRate(expected.cps))));
        QCOMPARE(dialog.StatusLabel()->text(), Q(SpectrumStatusLine(trace, 12)));
        QCOMPARE(dialog.DepthLabel()->text(), QStringLiteral("Depth: %1").arg(double(trace.Depth(12)), 0, 'f', 3));

        // A longer sum takes in more spectra.
        dialog.TimeSumEdit()->setValue(20.0);
        QVERIFY(dialog.Summed().spectraSummed > expected.spectraSummed);

        // The read-out names the channel under the mouse and its energy.
        const SpectrumPlotArea area = dialog.View()->PlotArea();
        const double x = ChannelX(area, 1024, 203.5);
        MoveMouse(*dialog.View(), QPointF(x, (area.top + area.bottom) / 2));
        QCOMPARE(view.CursorText(), Q(CursorReadout(BinEnergy(range, 1024, 203), 203)));
        MoveMouse(*dialog.View(), QPointF(x, area.bottom + 5));
        QCOMPARE(view.CursorText(), QString());

        // The curve is drawn inside the plot area.
        QImage image(dialog.View()->size(), QImage::Format_RGB32);
        dialog.View()->render(&image);
        bool curveDrawn = false;
        for (int y = int(area.top); y < int(area.bottom) && !curveDrawn; ++y) {
            for (int px = int(area.left) + 1; px < int(area.right) && !curveDrawn; ++px) {
                curveDrawn = image.pixel(px, y) == qRgb(0, 0, 160);
            }
        }
        QVERIFY(curveDrawn);
        QVERIFY2(sink.messages.empty(), qPrintable(Texts(sink).join('\n')));
    }

    void plotSettingsReachTheView()
    {
        const auto doc = MakeSpectralDocument();
        SettingsFileForTest settings(kSpectralDialogKey);
        const auto store = MakeDefaultSettingsStore();
        CollectingMessageSink sink;
        CSpectralDlg dialog(*doc, *store, sink);
        dialog.AutomaticCheck()->setChecked(false);
        dialog.LogPlotCheck()->setChecked(true);
        dialog.PlottingScaleEdit()->setValue(250.0);
        dialog.DecadesEdit()->setValue(3);
        const SpectrumScale shown = dialog.View()->ShownScale();
        QVERIFY(shown.logarithmic);
        QCOMPARE(shown.plottingScale, 250.0);
        QCOMPARE(shown.decades, 3);
        dialog.AutomaticCheck()->setChecked(true);
        QCOMPARE(dialog.View()->ShownScale().plottingScale, double(MaxCountRate(dialog.Summed().cps)));
    }

    void applyingTheCalibrationsMovesTheEnergyScale()
    {
        const auto doc = MakeSpectralDocument();
        const CSpectralTrace& trace = SpectralTrace(*doc);
        SettingsFileForTest settings(kSpectralDialogKey);
        const auto store = MakeDefaultSettingsStore();
        CollectingMessageSink sink;
        CSpectralDlg dialog(*doc, *store, sink);
        QCOMPARE(dialog.Model().Coefficients(), EnergyCoefficients{}); // nothing remembered yet

        dialog.FirstCalibration().binOne->setValue(200.0);
        dialog.SecondCalibration().x->setValue(45.0);
        QVERIFY(dialog.ApplyCalibration());
        const CalibrationState first{200.0, 609.0, 871.0, 2614.0, 20.0};
        const CalibrationState second{199.0, 609.0, 853.0, 2614.0, 45.0};
        CollectingMessageSink coreSink;
        const auto coefficients = DeriveEnergyCoefficients(first, second, coreSink);
        QVERIFY(coefficients);
        QCOMPARE(dialog.Model().Coefficients(), *coefficients);
        const EnergyRange range = ComputeEnergyRange(*coefficients, 1024, trace.Temperature(0));
        QCOMPARE(dialog.View()->EnergyCaption(), Q(EnergyRangeCaption(range)));

        // Against total time instead of temperature.
        dialog.TimeTempCalCheck()->setChecked(true);
        QCOMPARE(dialog.View()->EnergyCaption(),
                 Q(EnergyRangeCaption(ComputeEnergyRange(*coefficients, 1024, trace.TotalTime(0)))));

        // Two peaks on one bin: refused with the core's message, the scale kept.
        dialog.FirstCalibration().binTwo->setValue(200.0);
        QVERIFY(!dialog.ApplyCalibration());
        QCOMPARE(dialog.Model().Coefficients(), *coefficients);
        QCOMPARE(sink.messages.size(), std::size_t(1));
    }

    void okChecksThenRemembers_data()
    {
        QTest::addColumn<bool>("withSpectrum");
        QTest::addColumn<bool>("logPlot");
        QTest::addColumn<double>("plottingScale");
        QTest::addColumn<QString>("message"); // empty: accepted

        QTest::newRow("no spectrum trace") << false << false << 100.0
                                           << "Error: you must select a spectrum trace.";
        QTest::newRow("log below 10")
            << true << true << 9.99 << "Error: plotting scale must be 10 or greater when plotting logarithmically.";
        QTest::newRow("linear below 0.01")
            << true << false << 0.0 << "Error: plotting scale must be 0.01 or greater when plotting linearly.";
        QTest::newRow("log at 10") << true << true << 10.0 << "";
        QTest::newRow("linear at 0.01") << true << false << 0.01 << "";
    }

    void okChecksThenRemembers()
    {
        QFETCH(bool, withSpectrum);
        QFETCH(bool, logPlot);
        QFETCH(double, plottingScale);
        QFETCH(QString, message);
        SettingsFileForTest settings(kSpectralDialogKey);
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        frame.AddDocument(withSpectrum ? MakeSpectralDocument() : MakeTwoTraceDocument());
        bool stayedOpen = false;
        WhenModalDialogOpens<CSpectralDlg>([&](CSpectralDlg& dialog) {
            dialog.LogPlotCheck()->setChecked(logPlot);
            dialog.PlottingScaleEdit()->setValue(plottingScale);
            dialog.TimeSumEdit()->setValue(12.5);
            dialog.accept();
            stayedOpen = dialog.isVisible();
            if (stayedOpen) dialog.reject();
        });
        const bool accepted = frame.ProcessSpectra();

        QCOMPARE(accepted, message.isEmpty());
        QCOMPARE(stayedOpen, !message.isEmpty());
        QCOMPARE(Texts(sink), message.isEmpty() ? QStringList() : QStringList{message});
        if (!message.isEmpty()) {
            QVERIFY(!std::filesystem::exists(settings.Path()));
            return;
        }
        QCOMPARE(settings.Read("LogPlot"), std::optional<std::string>(logPlot ? "1" : "0"));
        QCOMPARE(settings.Read("PlottingScale"), std::optional<std::string>(SettingText(plottingScale)));
        QCOMPARE(settings.Read("TimeSum"), std::optional<std::string>("12.5"));

        // The next opening starts from what was remembered.
        WhenModalDialogOpens<CSpectralDlg>([&](CSpectralDlg& dialog) {
            QCOMPARE(dialog.LogPlotCheck()->isChecked(), logPlot);
            QCOMPARE(dialog.PlottingScaleEdit()->value(), plottingScale);
            QCOMPARE(dialog.TimeSumEdit()->value(), 12.5);
            dialog.reject();
        });
        QVERIFY(!frame.ProcessSpectra());
    }
};

QTEST_MAIN(SpectralDlgTest)
#include "SpectralDlgTest.moc"
