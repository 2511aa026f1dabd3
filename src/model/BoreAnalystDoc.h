#pragma once
// One borehole's data set: its traces (in order of addition, which is also the drawing and
// file order), the four plot tracks, the plot header and the plot settings; saved to and
// opened from ".bal" files.

#include "base/MessageSink.h"
#include "model/DocumentChange.h"
#include "model/DocumentHistory.h"
#include "model/Header.h"
#include "model/Trace.h"
#include "model/Track.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

class CArchiveReader;
class CArchiveWriter;

inline constexpr std::string_view kDocumentSignature = "BoreAnalyst Document V.1.0";
inline constexpr std::string_view kDefaultDocumentTitle = "BoreAnalyst1";
inline constexpr std::string_view kTraceClipboardFormat = "BoreAnalystTraceData";

enum class SaveOutcome {
    Written, // the file was written
    Failed,  // writing failed; the file on disk is as it was
};

class CBoreAnalystDoc {
public:
    CBoreAnalystDoc();
    ~CBoreAnalystDoc();
    CBoreAnalystDoc(const CBoreAnalystDoc&) = delete;
    CBoreAnalystDoc& operator=(const CBoreAnalystDoc&) = delete;

    // --- traces
    std::size_t TraceCount() const { return m_traceEntries.size(); }
    CTrace& Trace(std::size_t i) { return *m_entries[m_traceEntries.at(i)].trace; }
    const CTrace& Trace(std::size_t i) const { return *m_entries[m_traceEntries.at(i)].trace; }
    std::uint32_t TraceKindCode(std::size_t i) const { return m_entries[m_traceEntries.at(i)].kind; }

    // Builds a document nobody sees yet (readers, generators, test fixtures): takes
    // ownership, records the kind, points the trace at its track and registers it with the
    // header; no history, no views. An open document is changed only through Apply.
    CTrace& AddTrace(std::unique_ptr<CTrace> trace);
    // The first trace whose name equals `name`, or null.
    CTrace* FindTrace(std::string_view name);
    const CTrace* FindTrace(std::string_view name) const;
    // Index of the first trace named `name`, or -1.
    std::ptrdiff_t FindTraceIndex(std::string_view name) const;
    // The trace index of `trace`, or -1 when the document does not hold it.
    std::ptrdiff_t IndexOfTrace(const CTrace& trace) const;

    // The kind code of every entry in file order, entries of unknown kinds included.
    std::vector<std::uint32_t> EntryKinds() const;

    // --- tracks and header
    std::size_t TrackCount() const { return m_tracks.size(); }
    CTrack& Track(std::size_t i) { return *m_tracks.at(i); }
    const CTrack& Track(std::size_t i) const { return *m_tracks.at(i); }
    // The track a track index names, or null when there is none.
    CTrack* TrackAt(std::int32_t index);
    const CTrack* TrackAt(std::int32_t index) const;
    CTrack& AddTrack(std::string name, const CRect32& area);
    CHeader& Header() { return *m_header; }
    const CHeader& Header() const { return *m_header; }

    // --- plot settings
    float VerticalScale() const { return m_verticalScale; }
    // Like AddTrace, for building a document nobody sees yet.
    void SetVerticalScale(float value) { m_verticalScale = value; }
    std::int32_t PlotWidth() const { return m_plotWidth; }
    std::int32_t PlotHeight() const { return m_plotHeight; }
    const CRect32& HeaderRect() const { return m_headerRect; }
    std::int32_t TrackGridValue() const { return m_trackGrid; }
    std::int32_t TrackTop() const { return m_trackTop; }
    // S0..S6.
    std::int32_t Setting(std::size_t i) const { return m_settings.at(i); }
    void SetSetting(std::size_t i, std::int32_t value) { m_settings.at(i) = value; }
    const std::array<std::int32_t, 7>& Settings() const { return m_settings; }

    // A document is time-indexed when its first trace's depth unit is a time unit.
    bool IsTimeIndexed() const;

    // --- file
    void Serialize(CArchiveWriter& ar) const;
    // Reads a whole document; throws ArchiveException. `sink` receives recoverable quirks,
    // each naming `source` (the file).
    void Deserialize(CArchiveReader& ar, IMessageSink& sink, std::string_view source);

    const std::filesystem::path& PathName() const { return m_pathName; }
    // The title shown for the document: "BoreAnalyst1" until it has a file (the shell may
    // number further new documents), then the file's name without its extension.
    const std::string& DocumentTitle() const { return m_title; }
    void SetDocumentTitle(std::string title) { m_title = std::move(title); }
    void SetPathName(const std::filesystem::path& path);
    // The document holds changes that its file does not: it stands away from the point of
    // its history where it was last opened or saved.
    bool IsModified() const { return m_history.IsAwayFromSaved(); }

    // --- changes
    // Carries `change` out and makes it the newest entry of the history (undone entries are
    // dropped); the document counts as modified and its views are told once.
    void Apply(std::unique_ptr<CDocumentChange> change);
    const CDocumentHistory& History() const { return m_history; }
    bool CanUndo() const { return m_history.CanUndo(); }
    bool CanRedo() const { return m_history.CanRedo(); }
    void Undo();
    void Redo();
    // Undoes or redoes entries until `position` of them are applied; the views are told once.
    void ReturnTo(std::size_t position);
    // Between these two, applied changes are gathered into one history entry (undone and
    // redone as one, the views told once at the end) — for an operation whose later steps
    // read what its earlier ones did. Groups may nest; the outermost description is kept.
    // Abandoning undoes what the group applied so far and records nothing.
    void BeginChangeGroup(std::string description);
    void EndChangeGroup();
    void AbandonChangeGroup();

    // Views register to be told when the document changes (a change applied, undone or
    // redone, or the document saved under a new name).
    using ViewUpdater = std::function<void()>;
    void AddViewUpdater(ViewUpdater updater) { m_viewUpdaters.push_back(std::move(updater)); }

    // Writes the document to `path`; a failed write reports why and leaves the file on disk
    // as it was. A written document takes `path` as its path and title, counts as saved and
    // tells its views. Whether saving is allowed at all is the save command's question
    // (the licence check).
    SaveOutcome OnSaveDocument(const std::filesystem::path& path, IMessageSink& sink);

private:
    // The changes of DocumentChanges.cpp edit the trace list through CDocumentEditor.
    friend class CDocumentEditor;

    struct Entry {
        std::uint32_t kind = 0;
        std::unique_ptr<CTrace> trace; // null for an entry of an unknown kind
    };

    void BuildTracks();
    void UpdateAllViews() const;
    // Inserts a trace as entry `entry` of the file order (at most the entry count).
    void InsertEntry(std::size_t entry, std::unique_ptr<CTrace> trace);
    // Takes trace i out of the document; its entry index is returned in `entry`.
    std::unique_ptr<CTrace> TakeTrace(std::size_t i, std::size_t& entry);
    // Puts `trace` in the place of trace i and returns the trace that was there.
    std::unique_ptr<CTrace> SwapTrace(std::size_t i, std::unique_ptr<CTrace> trace);
    void RebuildLegend();
    void RebuildTraceIndex();
    void ReadTraceEntry(CArchiveReader& ar, std::size_t entry, std::size_t count, IMessageSink& sink,
                        std::string_view source);

    std::vector<Entry> m_entries;
    std::vector<std::size_t> m_traceEntries; // trace index -> entry index
    std::vector<std::unique_ptr<CTrack>> m_tracks;
    std::unique_ptr<CHeader> m_header;
    float m_verticalScale = 10.0f;
    std::int32_t m_plotWidth = 850;
    std::int32_t m_plotHeight = 1100;
    CRect32 m_headerRect{0, 0, 800, -61};
    std::int32_t m_trackGrid = 100;
    std::int32_t m_trackTop = -60;
    std::array<std::int32_t, 7> m_settings{0, 0, 1, 0, 0, 0, 0};

    std::filesystem::path m_pathName;
    std::string m_title = std::string(kDefaultDocumentTitle);
    CDocumentHistory m_history;
    struct ChangeGroup {
        std::string description;
        std::vector<std::unique_ptr<CDocumentChange>> parts;
        int depth = 0;
    };
    std::optional<ChangeGroup> m_group;
    std::vector<ViewUpdater> m_viewUpdaters;
};

// Gathers the changes applied while it lives into one history entry; without Commit the
// group is abandoned (what it applied is undone).
class CChangeGroup {
public:
    CChangeGroup(CBoreAnalystDoc& doc, std::string description) : m_doc(doc)
    {
        m_doc.BeginChangeGroup(std::move(description));
    }
    ~CChangeGroup()
    {
        if (!m_committed) m_doc.AbandonChangeGroup();
    }
    CChangeGroup(const CChangeGroup&) = delete;
    CChangeGroup& operator=(const CChangeGroup&) = delete;
    void Commit()
    {
        m_committed = true;
        m_doc.EndChangeGroup();
    }

private:
    CBoreAnalystDoc& m_doc;
    bool m_committed = false;
};

// Encodes a whole document file.
std::vector<std::uint8_t> WriteDocumentBytes(const CBoreAnalystDoc& doc);

// Decodes a whole document file; throws ArchiveException. Quirks go to `sink`, naming `source`.
std::unique_ptr<CBoreAnalystDoc> ReadDocumentBytes(std::span<const std::uint8_t> bytes, IMessageSink& sink,
                                                   std::string_view source);

// Opens a ".bal" file. On failure reports a message naming the file, the place and what is
// wrong, and returns null.
std::unique_ptr<CBoreAnalystDoc> OpenDocument(const std::filesystem::path& path, IMessageSink& sink);

} // namespace ba
