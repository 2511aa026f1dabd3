#pragma once
// Small documents and helpers shared by the desktop application tests.

#include "app/ShellServices.h"
#include "model/BoreAnalystDoc.h"

#include <QString>
#include <QStringList>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>

namespace ba::test {

struct SampleSpec {
    float depth;
    float value;
};

// A line trace of `units` with the given samples (depths in metres), added to `doc`.
CTrace& AddLineTrace(CBoreAnalystDoc& doc, const std::string& name, const std::string& units,
                     std::initializer_list<SampleSpec> samples, std::int32_t track = 0);

// A document with two line traces, "GR" (API) in the left track and "RES" (OHM-M) in the
// right, from 100 m to 110 m.
std::unique_ptr<CBoreAnalystDoc> MakeTwoTraceDocument();

// Gives `doc` (with at least one trace) an unsaved change: trace 0 renamed "Changed".
void MakeUnsavedChange(CBoreAnalystDoc& doc);

// Services for a main frame under test: messages to `sink`, no dialogs of their own.
ShellServices RecordingServices(IMessageSink& sink, const ILicenceCheck* licence = nullptr);

QString ToQString(const std::filesystem::path& path);
// The texts a sink collected, in order.
QStringList Texts(const CollectingMessageSink& sink);
std::string FixturePath(const std::string& relative);

// Qt Test keeps settings of its own when test mode is on; this also pins the style so
// that layouts do not depend on the machine.
void PrepareApplicationForTests();

} // namespace ba::test
