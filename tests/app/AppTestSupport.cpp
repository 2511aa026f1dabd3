#include "AppTestSupport.h"

#include "model/DocumentChanges.h"
#include "model/LineTrace.h"

#include <QApplication>
#include <QSettings>
#include <QStandardPaths>

namespace ba::test {

CTrace& AddLineTrace(CBoreAnalystDoc& doc, const std::string& name, const std::string& units,
                     std::initializer_list<SampleSpec> samples, std::int32_t track)
{
    auto trace = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, name, units);
    trace->SetDepthUnit(kDepthMetres);
    trace->SetTrackIndex(track);
    for (const SampleSpec& s : samples) trace->AppendSample(s.depth, s.value);
    return doc.AddTrace(std::move(trace));
}

void MakeUnsavedChange(CBoreAnalystDoc& doc)
{
    TraceAppearance renamed = CaptureAppearance(doc.Trace(0));
    renamed.name = "Changed";
    doc.Apply(MakeTraceAppearanceChange("Rename", 0, renamed));
}

std::unique_ptr<CBoreAnalystDoc> MakeTwoTraceDocument()
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    AddLineTrace(*doc, "GR", "API", {{100.0f, 10.0f}, {105.0f, 50.0f}, {110.0f, 90.0f}}, 0);
    AddLineTrace(*doc, "RES", "OHM-M", {{100.0f, 1.0f}, {105.0f, kNullValue}, {110.0f, 3.0f}}, 1);
    return doc;
}

ShellServices RecordingServices(IMessageSink& sink, const ILicenceCheck* licence)
{
    ShellServices services;
    services.sink = &sink;
    services.licence = licence;
    return services;
}

QString ToQString(const std::filesystem::path& path) { return QString::fromStdU16String(path.u16string()); }

QStringList Texts(const CollectingMessageSink& sink)
{
    QStringList texts;
    for (const auto& text : sink.Texts()) texts << QString::fromStdString(text);
    return texts;
}

std::string FixturePath(const std::string& relative) { return std::string(BA_TEST_DATA_DIR) + "/" + relative; }

void PrepareApplicationForTests()
{
    QStandardPaths::setTestModeEnabled(true);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setOrganizationName(QStringLiteral("Quartzline Geodata"));
    QApplication::setApplicationName(QStringLiteral("BoreAnalyst"));
    QSettings(QStringLiteral("Quartzline Geodata"), QStringLiteral("BoreAnalyst")).clear();
}

} // namespace ba::test
