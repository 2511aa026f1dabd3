// The trace property sheet and the unit conversion dialog, driven through their controls,
// and both opened from the main frame with the frame's message sink; how the plot draws a
// trace the sheet has hidden.

#include "AppTestSupport.h"
#include "DialogDriving.h"

#include "app/DocumentWindow.h"
#include "app/MainFrame.h"
#include "model/LineTrace.h"
#include "view/LogPlotRenderer.h"
#include "view/TracePropertiesDlg.h"
#include "view/UnitConversionDlg.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QSpinBox>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

using namespace ba;
using namespace ba::test;

namespace {

CLineTrace& LineTrace(CBoreAnalystDoc& doc, std::size_t i) { return dynamic_cast<CLineTrace&>(doc.Trace(i)); }

// Whether any pixel of `area` (clipped to the image) has `colour`.
bool AreaHasColour(const QImage& image, const QRectF& area, QRgb colour)
{
    const QRect pixels = area.toAlignedRect().intersected(image.rect());
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            if (image.pixel(x, y) == colour) return true;
        }
    }
    return false;
}

} // namespace

class DialogTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { PrepareApplicationForTests(); }

    void propertySheetShowsTheTrace()
    {
        auto doc = MakeTwoTraceDocument();
        CLineTrace& gr = LineTrace(*doc, 0);
        gr.ChangePen(2, kPenDot, 4);
        gr.SetScale(-5.0f, 150.0f);
        CollectingMessageSink sink;
        CTracePropertiesDlg dialog(*doc, gr, sink);
        QCOMPARE(dialog.NameEdit()->text(), QStringLiteral("GR"));
        QCOMPARE(dialog.UnitsEdit()->text(), QStringLiteral("API"));
        QCOMPARE(dialog.ScaleLeftEdit()->value(), -5.0);
        QCOMPARE(dialog.ScaleRightEdit()->value(), 150.0);
        QCOMPARE(ComboItems(*dialog.TrackCombo()), QStringList({"Left Track", "Right Track", "RLeft Track", "RRight Track"}));
        QCOMPARE(dialog.TrackCombo()->currentIndex(), 0);
        QCOMPARE(dialog.PenWidthEdit()->value(), 2);
        QCOMPARE(dialog.PenStyleCombo()->currentText(), QStringLiteral("Dot"));
        QCOMPARE(dialog.ColourCombo()->currentText(), QStringLiteral("Magenta"));
        QCOMPARE(dialog.ColourCombo()->count(), 7);
        QVERIFY(!dialog.HiddenCheck()->isChecked());
    }

    void propertySheetEditsTheTrace()
    {
        auto doc = MakeTwoTraceDocument();
        int redraws = 0;
        doc->AddViewUpdater([&redraws] { ++redraws; });
        CollectingMessageSink sink;
        CLineTrace& gr = LineTrace(*doc, 0);
        CTracePropertiesDlg dialog(*doc, gr, sink);
        dialog.NameEdit()->clear();
        QTest::keyClicks(dialog.NameEdit(), "Gamma Ray");
        dialog.UnitsEdit()->setText("gAPI");
        dialog.ScaleLeftEdit()->setValue(0.0);
        dialog.ScaleRightEdit()->setValue(200.0);
        dialog.TrackCombo()->setCurrentIndex(2);
        dialog.PenWidthEdit()->setValue(3);
        dialog.PenStyleCombo()->setCurrentIndex(kPenDash);
        dialog.ColourCombo()->setCurrentIndex(3);
        dialog.HiddenCheck()->setChecked(true);
        dialog.accept();

        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QVERIFY(sink.messages.empty());
        QCOMPARE(gr.Name(), std::string("Gamma Ray"));
        QCOMPARE(gr.Units(), std::string("gAPI"));
        QCOMPARE(gr.ScaleLeft(), 0.0f);
        QCOMPARE(gr.ScaleRight(), 200.0f);
        QCOMPARE(gr.TrackIndex(), 2);
        QCOMPARE(gr.Track(), &doc->Track(2));
        QCOMPARE(gr.PenWidth(), 3);
        QCOMPARE(gr.PenStyle(), std::int32_t(kPenDash));
        QCOMPARE(gr.ColourIndex(), 3);
        QCOMPARE(gr.Colour(), LineColourFromIndex(3));
        QVERIFY(gr.Flag(kHiddenTraceFlag));
        QVERIFY(doc->IsModified());
        QCOMPARE(redraws, 1);
    }

    void propertySheetRefusesBadEntries_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<double>("left");
        QTest::addColumn<double>("right");
        QTest::addColumn<QString>("message");
        QTest::newRow("blank name") << "   " << 0.0 << 100.0 << "Error: The trace name must not be empty.";
        QTest::newRow("equal scale ends") << "GR" << 50.0 << 50.0
                                          << "Error: The left and right scale values must differ.";
    }

    void propertySheetRefusesBadEntries()
    {
        QFETCH(QString, name);
        QFETCH(double, left);
        QFETCH(double, right);
        QFETCH(QString, message);
        auto doc = MakeTwoTraceDocument();
        CollectingMessageSink sink;
        CLineTrace& gr = LineTrace(*doc, 0);
        CTracePropertiesDlg dialog(*doc, gr, sink);
        dialog.NameEdit()->setText(name);
        dialog.ScaleLeftEdit()->setValue(left);
        dialog.ScaleRightEdit()->setValue(right);
        dialog.PenWidthEdit()->setValue(5);
        dialog.accept();
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(Texts(sink), QStringList{message});
        QCOMPARE(gr.Name(), std::string("GR"));
        QCOMPARE(gr.PenWidth(), 1);
        QVERIFY(!doc->IsModified());
    }

    void unitConversionConvertsTheChosenTrace()
    {
        auto doc = std::make_unique<CBoreAnalystDoc>();
        AddLineTrace(*doc, "GR", "API", {{1.0f, 20.0f}});
        AddLineTrace(*doc, "VEL", "FEET/SECOND", {{1.0f, 1000.0f}, {2.0f, 2500.0f}, {3.0f, kNullValue}});
        CollectingMessageSink sink;
        CUnitConversionDlg dialog(*doc, sink);
        QCOMPARE(ComboItems(*dialog.TraceCombo()), QStringList({"GR", "VEL"}));
        QCOMPARE(dialog.StatusLabel()->text(), QStringLiteral("Units: Unknown; Type: Unknown"));

        dialog.TraceCombo()->setCurrentIndex(1);
        QCOMPARE(dialog.StatusLabel()->text(), QStringLiteral("Units: ft/s; Type: Velocity-Slowness"));
        QCOMPARE(ComboItems(*dialog.NewUnitsCombo()), QStringList({"ft/s", "m/s", "ft/min", "m/min", "us/ft", "us/m"}));
        QCOMPARE(dialog.NewUnitsCombo()->currentIndex(), -1);

        dialog.NewUnitsCombo()->setCurrentIndex(1);
        dialog.accept();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QVERIFY(sink.messages.empty());
        const CLineTrace& vel = LineTrace(*doc, 1);
        QCOMPARE(vel.Units(), std::string("m/s"));
        QCOMPARE(vel.Value(0), static_cast<float>(1000.0 * double(0.3048f)));
        QCOMPARE(vel.Value(1), static_cast<float>(2500.0 * double(0.3048f)));
        // Null samples are converted like any other number.
        QCOMPARE(vel.Value(2), static_cast<float>(double(kNullValue) * double(0.3048f)));
        QCOMPARE(LineTrace(*doc, 0).Value(0), 20.0f);
        QVERIFY(doc->IsModified());
    }

    void unitConversionKeepsTheDialogOpenUntilEverythingIsChosen_data()
    {
        QTest::addColumn<int>("trace");
        QTest::addColumn<QStringList>("messages");
        QTest::newRow("nothing chosen") << -1
                                        << QStringList({"Error: You must select a trace.",
                                                        "Error: You must select the new units."});
        QTest::newRow("no new units") << 0 << QStringList({"Error: You must select the new units."});
        QTest::newRow("unknown units offer none") << 1 << QStringList({"Error: You must select the new units."});
    }

    void unitConversionKeepsTheDialogOpenUntilEverythingIsChosen()
    {
        QFETCH(int, trace);
        QFETCH(QStringList, messages);
        auto doc = std::make_unique<CBoreAnalystDoc>();
        AddLineTrace(*doc, "DEPTH2", "M", {{1.0f, 3.0f}});
        AddLineTrace(*doc, "ODD", "furlongs", {{1.0f, 4.0f}});
        CollectingMessageSink sink;
        CUnitConversionDlg dialog(*doc, sink);
        dialog.TraceCombo()->setCurrentIndex(trace);
        dialog.accept();
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(Texts(sink), messages);
        QCOMPARE(LineTrace(*doc, 0).Value(0), 3.0f);
        QVERIFY(!doc->IsModified());
    }

    void frameOpensTheUnitConversionWithItsSink()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* window = frame.AddDocument(MakeTwoTraceDocument());
        WhenModalDialogOpens<CUnitConversionDlg>([](CUnitConversionDlg& dialog) {
            dialog.TraceCombo()->setCurrentIndex(0);
            dialog.accept(); // no new unit chosen: refused, stays open
            dialog.reject();
        });
        QVERIFY(!frame.ConvertUnits());
        QCOMPARE(Texts(sink), QStringList{"Error: You must select the new units."});
        QCOMPARE(window->Document().Trace(0).Units(), std::string("API"));
    }

    // The check box of the sheet sets flag 0; the plot then leaves the curve out but keeps
    // the legend box, without its line sample.
    void hiddenTraceKeepsItsLegendButLosesItsCurve_data()
    {
        QTest::addColumn<bool>("hidden");
        QTest::newRow("shown") << false;
        QTest::newRow("hidden") << true;
    }

    void hiddenTraceKeepsItsLegendButLosesItsCurve()
    {
        QFETCH(bool, hidden);
        const QRgb red = qRgb(255, 0, 0);
        const QRgb green = qRgb(0, 255, 0);
        CBoreAnalystDoc doc;
        for (const auto& [name, colourIndex] : {std::pair{"GR", 1}, std::pair{"CAL", 2}}) {
            auto trace = std::make_unique<CLineTrace>(1, kPenSolid, colourIndex, 0.0f, 100.0f, name, "API");
            trace->SetTrackIndex(0);
            for (float d = 100.0f; d <= 200.0f; d += 1.0f) trace->AppendSample(d, colourIndex == 1 ? 30.0f : 70.0f);
            doc.AddTrace(std::move(trace));
        }
        doc.Trace(0).SetFlag(kHiddenTraceFlag, hidden);

        PlotViewport viewport;
        viewport.topDepth = 100.0f;
        viewport.verticalScale = 10.0f;
        viewport.pixelSize = QSize(850, 1100);
        viewport.dotsPerCentimetre = 37.8;
        const CLogPlotRenderer renderer;
        const PlotLayout layout = renderer.Layout(doc, viewport);
        QImage image(viewport.pixelSize, QImage::Format_RGB32);
        {
            QPainter painter(&image);
            renderer.Paint(painter, doc, viewport);
        }

        QCOMPARE(AreaHasColour(image, layout.tracks[0], red), !hidden);
        QVERIFY(AreaHasColour(image, layout.tracks[0], green));
        const auto legend = std::find_if(layout.legends.begin(), layout.legends.end(),
                                         [&](const LegendBox& box) { return box.trace == &doc.Trace(0); });
        QVERIFY(legend != layout.legends.end());
        QCOMPARE(AreaHasColour(image, legend->box, red), !hidden);
        QVERIFY(AreaHasColour(image, legend->box, qRgb(0, 0, 0))); // the name and scale are still drawn
        const QPoint inLegend = legend->box.center().toPoint();
        QCOMPARE(renderer.TraceAtLegend(doc, viewport, inLegend), &doc.Trace(0));
    }

    void framesPropertySheetRetitlesAndRedraws()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* window = frame.AddDocument(MakeTwoTraceDocument());
        WhenModalDialogOpens<CTracePropertiesDlg>([](CTracePropertiesDlg& dialog) {
            dialog.NameEdit()->setText("RT");
            dialog.accept();
        });
        QVERIFY(frame.EditTraceProperties(window->Document().Trace(1)));
        QCOMPARE(window->Document().Trace(1).Name(), std::string("RT"));
        QCOMPARE(window->windowTitle(), QStringLiteral("BoreAnalyst1*"));
        QVERIFY(sink.messages.empty());
    }
};

QTEST_MAIN(DialogTest)
#include "DialogTest.moc"
