#include "model/BoreAnalystDoc.h"

#include "base/FileIO.h"
#include "model/Archive.h"
#include "model/DocumentChanges.h"
#include "model/ImageTrace.h"
#include "model/LineTrace.h"
#include "model/TraceClasses.h"

#include <algorithm>

namespace ba {
namespace {

struct TrackLayout {
    const char* name;
    std::int32_t left;
    std::int32_t right;
    std::int32_t t1;
    std::int32_t t3;
};

// The four columns every document has: a left track, the depth column gap from 250 to
// 300, a full right track, and two half tracks that together cover the right track.
constexpr TrackLayout kTrackLayouts[] = {
    {"Left Track", 0, 250, 1, 1},
    {"Right Track", 300, 800, 1, 3},
    {"RLeft Track", 300, 550, 0, 2},
    {"RRight Track", 550, 800, 0, 2},
};

std::string Quoted(const std::filesystem::path& path) { return "\"" + path.string() + "\""; }

} // namespace

CBoreAnalystDoc::CBoreAnalystDoc() : m_header(std::make_unique<CHeader>())
{
    m_header->SetArea(m_headerRect);
    BuildTracks();
}

CBoreAnalystDoc::~CBoreAnalystDoc() = default;

void CBoreAnalystDoc::BuildTracks()
{
    for (const auto& layout : kTrackLayouts) {
        CTrack& track = AddTrack(layout.name, CRect32{layout.left, m_trackTop, layout.right, -m_plotHeight});
        track.SetSetting(0, layout.t1);
        track.SetSetting(1, 0);
        track.SetSetting(2, layout.t3);
        track.SetSetting(3, m_trackGrid);
        track.SetSetting(4, 4);
        track.SetSetting(5, 4);
    }
}

CTrack& CBoreAnalystDoc::AddTrack(std::string name, const CRect32& area)
{
    m_tracks.push_back(std::make_unique<CTrack>(std::move(name), area, std::array<std::int32_t, 6>{}));
    return *m_tracks.back();
}

CTrack* CBoreAnalystDoc::TrackAt(std::int32_t index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= m_tracks.size()) return nullptr;
    return m_tracks[static_cast<std::size_t>(index)].get();
}

const CTrack* CBoreAnalystDoc::TrackAt(std::int32_t index) const
{
    return const_cast<CBoreAnalystDoc*>(this)->TrackAt(index);
}

void CBoreAnalystDoc::RebuildTraceIndex()
{
    m_traceEntries.clear();
    for (std::size_t e = 0; e < m_entries.size(); ++e) {
        if (m_entries[e].trace) m_traceEntries.push_back(e);
    }
}

CTrace& CBoreAnalystDoc::AddTrace(std::unique_ptr<CTrace> trace)
{
    CTrace& added = *trace;
    added.SetTrack(TrackAt(added.TrackIndex()));
    m_entries.push_back(Entry{static_cast<std::uint32_t>(added.Kind()), std::move(trace)});
    m_traceEntries.push_back(m_entries.size() - 1);
    m_header->RegisterTrace(&added);
    return added;
}

std::ptrdiff_t CBoreAnalystDoc::IndexOfTrace(const CTrace& trace) const
{
    for (std::size_t i = 0; i < TraceCount(); ++i) {
        if (&Trace(i) == &trace) return static_cast<std::ptrdiff_t>(i);
    }
    return -1;
}

// --- changes --------------------------------------------------------------------------

void CBoreAnalystDoc::InsertEntry(std::size_t entry, std::unique_ptr<CTrace> trace)
{
    trace->SetTrack(TrackAt(trace->TrackIndex()));
    const auto kind = static_cast<std::uint32_t>(trace->Kind());
    m_entries.insert(m_entries.begin() + static_cast<std::ptrdiff_t>(std::min(entry, m_entries.size())),
                     Entry{kind, std::move(trace)});
    RebuildTraceIndex();
    RebuildLegend();
}

std::unique_ptr<CTrace> CBoreAnalystDoc::TakeTrace(std::size_t i, std::size_t& entry)
{
    entry = m_traceEntries.at(i);
    std::unique_ptr<CTrace> taken = std::move(m_entries[entry].trace);
    m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(entry));
    RebuildTraceIndex();
    RebuildLegend();
    return taken;
}

std::unique_ptr<CTrace> CBoreAnalystDoc::SwapTrace(std::size_t i, std::unique_ptr<CTrace> trace)
{
    Entry& entry = m_entries[m_traceEntries.at(i)];
    trace->SetTrack(TrackAt(trace->TrackIndex()));
    entry.kind = static_cast<std::uint32_t>(trace->Kind());
    std::swap(entry.trace, trace);
    RebuildLegend();
    return trace;
}

void CBoreAnalystDoc::RebuildLegend()
{
    m_header->ClearRegistrations();
    for (std::size_t i = 0; i < TraceCount(); ++i) m_header->RegisterTrace(&Trace(i));
}

void CBoreAnalystDoc::Apply(std::unique_ptr<CDocumentChange> change)
{
    change->Redo(*this);
    if (m_group) {
        m_group->parts.push_back(std::move(change));
        return;
    }
    m_history.Push(std::move(change));
    UpdateAllViews();
}

void CBoreAnalystDoc::BeginChangeGroup(std::string description)
{
    if (!m_group) m_group = ChangeGroup{std::move(description), {}, 0};
    ++m_group->depth;
}

void CBoreAnalystDoc::EndChangeGroup()
{
    if (!m_group || --m_group->depth > 0) return;
    ChangeGroup group = std::move(*m_group);
    m_group.reset();
    if (group.parts.empty()) return;
    m_history.Push(MakeCompositeChange(std::move(group.description), std::move(group.parts)));
    UpdateAllViews();
}

void CBoreAnalystDoc::AbandonChangeGroup()
{
    if (!m_group || --m_group->depth > 0) return;
    ChangeGroup group = std::move(*m_group);
    m_group.reset();
    for (auto part = group.parts.rbegin(); part != group.parts.rend(); ++part) (*part)->Undo(*this);
    if (!group.parts.empty()) UpdateAllViews();
}

void CBoreAnalystDoc::Undo()
{
    m_history.StepBack().Undo(*this);
    UpdateAllViews();
}

void CBoreAnalystDoc::Redo()
{
    m_history.StepForward().Redo(*this);
    UpdateAllViews();
}

void CBoreAnalystDoc::ReturnTo(std::size_t position)
{
    if (position > m_history.Size() || position == m_history.Position()) return;
    while (m_history.Position() > position) m_history.StepBack().Undo(*this);
    while (m_history.Position() < position) m_history.StepForward().Redo(*this);
    UpdateAllViews();
}

std::ptrdiff_t CBoreAnalystDoc::FindTraceIndex(std::string_view name) const
{
    for (std::size_t i = 0; i < TraceCount(); ++i) {
        if (Trace(i).Name() == name) return static_cast<std::ptrdiff_t>(i);
    }
    return -1;
}

CTrace* CBoreAnalystDoc::FindTrace(std::string_view name)
{
    const auto i = FindTraceIndex(name);
    return i < 0 ? nullptr : &Trace(static_cast<std::size_t>(i));
}

const CTrace* CBoreAnalystDoc::FindTrace(std::string_view name) const
{
    const auto i = FindTraceIndex(name);
    return i < 0 ? nullptr : &Trace(static_cast<std::size_t>(i));
}

std::vector<std::uint32_t> CBoreAnalystDoc::EntryKinds() const
{
    std::vector<std::uint32_t> kinds;
    kinds.reserve(m_entries.size());
    for (const auto& e : m_entries) kinds.push_back(e.kind);
    return kinds;
}

bool CBoreAnalystDoc::IsTimeIndexed() const
{
    return TraceCount() > 0 && Trace(0).IsTimeAxis();
}

void CBoreAnalystDoc::SetPathName(const std::filesystem::path& path)
{
    m_pathName = path;
    m_title = path.stem().string();
}

void CBoreAnalystDoc::UpdateAllViews() const
{
    for (const auto& update : m_viewUpdaters) update();
}

// --- file format ----------------------------------------------------------------------

void CBoreAnalystDoc::Serialize(CArchiveWriter& ar) const
{
    for (const char c : kDocumentSignature) ar.WriteByte(static_cast<std::uint8_t>(c));
    ar.WriteInt32(m_plotWidth);
    ar.WriteInt32(m_plotHeight);
    ar.WriteInt32(m_settings[0]);
    ar.WriteInt32(m_settings[1]);
    ar.WriteInt32(m_settings[2]);
    ar.WriteInt32(m_trackGrid);
    ar.WriteInt32(m_trackTop);
    ar.WriteInt32(m_settings[3]);
    ar.WriteInt32(m_settings[0]); // S0 a second time; a reader keeps this copy
    ar.WriteInt32(m_settings[4]);
    ar.WriteInt32(m_settings[5]);
    ar.WriteInt32(m_settings[6]);
    ar.WriteFloat(m_verticalScale);
    ar.WriteInt32(static_cast<std::int32_t>(m_entries.size()));
    for (const auto& entry : m_entries) {
        ar.WriteInt32(static_cast<std::int32_t>(entry.kind));
        if (!entry.trace) continue; // an entry of an unknown kind carries no object
        if (ar.BeginObject(entry.trace.get(), entry.trace->ClassName(), 1)) entry.trace->Serialize(ar);
    }
    m_header->Serialize(ar);
}

void CBoreAnalystDoc::ReadTraceEntry(CArchiveReader& ar, std::size_t e, std::size_t count, IMessageSink& sink,
                                     std::string_view source)
{
    ar.SetContext("trace entry " + std::to_string(e + 1) + " of " + std::to_string(count));
    const std::size_t kindOffset = ar.Offset();
    const auto kind = static_cast<std::uint32_t>(ar.ReadInt32());
    const TraceClassInfo* expected = TraceClassForKind(kind);
    if (expected == nullptr) {
        // Kinds this program does not know carry no object; the entry is kept as it is.
        m_entries.push_back(Entry{kind, nullptr});
        sink.Warning("Warning: \"" + std::string(source) + "\": trace entry " + std::to_string(e + 1) + " has the unknown kind code " +
                     std::to_string(kind) + " (byte offset " +
                     std::to_string(kindOffset) + "); it holds no trace and was skipped.");
        return;
    }

    const ObjectRecord record = ar.ReadObjectHeader();
    if (record.kind != ObjectRecord::Kind::NewObject) {
        ar.FailAt(ArchiveFault::BadIndex, record.offset,
                  record.kind == ObjectRecord::Kind::Null
                      ? "a null object where a " + std::string(expected->className) + " was expected"
                      : "a reference to object " + std::to_string(record.index) + " read before where a new " +
                            std::string(expected->className) + " was expected");
    }
    const TraceClassInfo* found = TraceClassForName(record.className);
    if (found == nullptr) {
        ar.FailAt(ArchiveFault::BadClass, record.offset,
                  "the class \"" + record.className + "\" is not a trace class");
    }
    if (found != expected) {
        ar.FailAt(ArchiveFault::BadClass, record.offset,
                  "kind code " + std::to_string(kind) + " announces a " + std::string(expected->className) +
                      " but the object is a " + record.className);
    }
    if (record.schema != 1) {
        ar.FailAt(ArchiveFault::BadSchema, record.offset,
                  "the class " + record.className + " has schema " + std::to_string(record.schema) +
                      "; only schema 1 is known");
    }
    std::unique_ptr<CTrace> trace = expected->create();
    trace->Deserialize(ar);
    // Traces recorded together follow one another with the same depths: one copy serves.
    if (!m_entries.empty() && m_entries.back().trace) trace->ShareDepthsIfSame(*m_entries.back().trace);
    CTrace& added = *trace;
    added.SetTrack(TrackAt(added.TrackIndex()));
    m_entries.push_back(Entry{kind, std::move(trace)});
    if (const auto* line = dynamic_cast<const CLineTrace*>(&added);
        line != nullptr && line->Values().Size() != line->SampleCount()) {
        // Kept as read, so that saving writes back what was there.
        sink.Warning("Warning: \"" + std::string(source) + "\": trace \"" + added.Name() + "\" has " +
                     std::to_string(line->SampleCount()) + " depths but " + std::to_string(line->Values().Size()) +
                     " values; depths without a value read as null and values without a depth are not used.");
    }
    if (const auto* image = dynamic_cast<const CImageTrace*>(&added);
        image != nullptr && image->RowCount() != image->SampleCount()) {
        // Kept as read, like the line trace case above.
        sink.Warning("Warning: \"" + std::string(source) + "\": trace \"" + added.Name() + "\" has " +
                     std::to_string(image->SampleCount()) + " depths but " + std::to_string(image->RowCount()) +
                     " rows; it is kept as read.");
    }
    if (added.Track() == nullptr) {
        sink.Warning("Warning: \"" + std::string(source) + "\": trace \"" + added.Name() + "\" names track " + std::to_string(added.TrackIndex()) +
                     ", which does not exist; it is not drawn until it is given a track.");
    }
}

void CBoreAnalystDoc::Deserialize(CArchiveReader& ar, IMessageSink& sink, std::string_view source)
{
    ar.SetContext("the signature");
    const auto signature = ar.Remaining() >= kDocumentSignature.size()
                               ? ar.ReadBytes(kDocumentSignature.size())
                               : std::span<const std::uint8_t>{};
    if (signature.size() != kDocumentSignature.size() ||
        std::string_view(reinterpret_cast<const char*>(signature.data()), signature.size()) != kDocumentSignature) {
        ar.FailAt(ArchiveFault::BadSchema, 0,
                  "the file does not begin with \"" + std::string(kDocumentSignature) +
                      "\", so it is not a BoreAnalyst document");
    }

    ar.SetContext("the document settings");
    m_plotWidth = ar.ReadInt32();
    m_plotHeight = ar.ReadInt32();
    m_settings[0] = ar.ReadInt32();
    m_settings[1] = ar.ReadInt32();
    m_settings[2] = ar.ReadInt32();
    m_trackGrid = ar.ReadInt32();
    m_trackTop = ar.ReadInt32();
    m_settings[3] = ar.ReadInt32();
    m_settings[0] = ar.ReadInt32(); // the second copy of S0 is the one that stays
    m_settings[4] = ar.ReadInt32();
    m_settings[5] = ar.ReadInt32();
    m_settings[6] = ar.ReadInt32();
    m_verticalScale = ar.ReadFloat();

    ar.SetContext("the trace list");
    // Every entry takes at least its four-byte kind code.
    const std::size_t count = ar.ReadElementCount("the trace entries", 4);
    m_entries.clear();
    m_entries.reserve(count);
    for (std::size_t e = 0; e < count; ++e) ReadTraceEntry(ar, e, count, sink, source);
    RebuildTraceIndex();

    ar.SetContext("the header");
    m_header->Deserialize(ar);
    RebuildLegend();
    ar.SetContext({});
}

std::vector<std::uint8_t> WriteDocumentBytes(const CBoreAnalystDoc& doc)
{
    CArchiveWriter ar;
    std::size_t estimate = 256;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) estimate += 128 + doc.Trace(i).SampleCount() * 8;
    ar.Reserve(estimate);
    doc.Serialize(ar);
    return ar.TakeBytes();
}

std::unique_ptr<CBoreAnalystDoc> ReadDocumentBytes(std::span<const std::uint8_t> bytes, IMessageSink& sink,
                                                   std::string_view source)
{
    CArchiveReader ar(bytes);
    auto doc = std::make_unique<CBoreAnalystDoc>();
    doc->Deserialize(ar, sink, source);
    if (ar.Remaining() > 0) {
        sink.Warning("Warning: \"" + std::string(source) + "\": " + std::to_string(ar.Remaining()) + " bytes after the end of the document (byte offset " +
                     std::to_string(ar.Offset()) + ") were ignored.");
    }
    return doc;
}

std::unique_ptr<CBoreAnalystDoc> OpenDocument(const std::filesystem::path& path, IMessageSink& sink)
{
    std::vector<std::uint8_t> bytes;
    try {
        bytes = ReadWholeFile(path);
    } catch (const FileError& e) {
        sink.Error("Error: cannot open " + Quoted(path) + ": " + e.what() + ".");
        return nullptr;
    }
    // Quirks found while reading are reported only once the whole file is known to be good.
    CollectingMessageSink quirks;
    std::unique_ptr<CBoreAnalystDoc> doc;
    try {
        doc = ReadDocumentBytes(bytes, quirks, path.string());
    } catch (const ArchiveException& e) {
        sink.Error("Error: cannot open " + Quoted(path) + ": " + e.what() + ".");
        return nullptr;
    }
    for (const auto& m : quirks.messages) sink.Report(m);
    doc->SetPathName(path);
    return doc;
}

SaveOutcome CBoreAnalystDoc::OnSaveDocument(const std::filesystem::path& path, IMessageSink& sink)
{
    try {
        WriteFileAtomically(path, WriteDocumentBytes(*this));
    } catch (const FileError& e) {
        sink.Error("Error: cannot save " + Quoted(path) + ": " + e.what() + ".");
        return SaveOutcome::Failed;
    }
    m_history.MarkSaved();
    SetPathName(path);
    UpdateAllViews();
    return SaveOutcome::Written;
}

} // namespace ba
