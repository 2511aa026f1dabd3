#pragma once
// One borehole's data set: its traces (in order of addition, which is also the drawing and
// file order), the four plot tracks, the plot header and the plot settings; saved to and
// opened from ".bal" files.

#include "app/LicenceCheck.h"
#include "app/MessageSink.h"
#include "model/Header.h"
#include "model/Trace.h"
#include "model/Track.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
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
inline constexpr std::string_view kUnlicensedSaveMessage = "Error: Unlicesed installation.  Saving disabled.";

enum class SaveOutcome {
    Written,          // the file was written
    RefusedByLicence, // the licence check refused; nothing was written
    Failed,           // writing failed; the file on disk is as it was
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

    // Takes ownership, records the kind, points the trace at its track and registers it
    // with the header. Returns the trace.
    CTrace& AddTrace(std::unique_ptr<CTrace> trace);
    // The first trace whose name equals `name`, or null.
    CTrace* FindTrace(std::string_view name);
    const CTrace* FindTrace(std::string_view name) const;
    // Index of the first trace named `name`, or -1.
    std::ptrdiff_t FindTraceIndex(std::string_view name) const;
    void RemoveTrace(std::size_t i);

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
    bool IsModified() const { return m_modified; }
    void SetModified(bool modified = true) { m_modified = modified; }

    // Views register to be told when the document changes.
    using ViewUpdater = std::function<void()>;
    void AddViewUpdater(ViewUpdater updater) { m_viewUpdaters.push_back(std::move(updater)); }
    void UpdateAllViews() const;

    // Saves to `path`, gated by the licence check. A refusal reports the licence message
    // and writes nothing; a failed write reports why and leaves the file on disk as it
    // was. Unless the write failed, the document then takes `path` as its path and title
    // and updates its views (the shell treats a refusal as a handled save).
    SaveOutcome OnSaveDocument(const std::filesystem::path& path, IMessageSink& sink,
                               const ILicenceCheck& licence = DefaultLicenceCheck());

private:
    struct Entry {
        std::uint32_t kind = 0;
        std::unique_ptr<CTrace> trace; // null for an entry of an unknown kind
    };

    void BuildTracks();
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
    bool m_modified = false;
    std::vector<ViewUpdater> m_viewUpdaters;
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
