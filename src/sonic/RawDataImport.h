#pragma once
// Imports the sonic waveforms of a Mount Sopris logger raw-data file (".rd", CLP probe)
// into a document.
//
// The file is a sequence of records (see RawRecordReader.h). Control records can mark the
// recording as time-digitised and give its time step; data records whose block id is 32
// carry one waveform per receiver (see SonicRecord.h). The first such record creates one
// sonic trace per receiver, "RX 1", "RX 2", ..., scale 0 to 100, units "us", which are
// added to the document at once, after its existing traces; every later waveform record
// offers one station to each of them. Every other record (other record types, data
// records of other blocks) is passed over.
//
// Stations: in a depth log the record depth less 0.578 (metres, the fixed offset of the
// sonic receivers); in a time-digitised log the station counter times the time step, in
// minutes. A station shallower than all held goes in front, deeper than all behind,
// otherwise it is dropped. The traces' depth unit is metres, or minutes when time
// digitising was seen before the first waveform record.
//
// Into an existing document: the traces are always added, whatever the document already
// holds (a depth-indexed file into a time-indexed document included); names may repeat
// those of earlier imports. The document's title is not changed.
//
// Faults: a record cut off by the end of the file, a record length below 8, and a sonic
// record too short for the receivers and samples it announces end the import with a
// message naming the file, the record, its byte offset and the fault. What was imported
// before that record stays in the document, as it does when the progress callback stops
// the import.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "sonic/RawByteSource.h"
#include "sonic/RawRecordReader.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <string_view>

namespace ba {

inline constexpr std::string_view kTimeDigitizingNote = "Note: Time digitizing detected.";
inline constexpr std::string_view kRate2MultipleMessage =
    "Error: Waveform sample rate 2 must be an integer multiple if rate 1.  Samples at rate 2 ignored.";
inline constexpr std::string_view kClpToolType = "2SAA-1000";
inline constexpr std::string_view kClpFwsToolType = "Mount Sopris CLP w/ FWS upgrade";
// Distance from the recorded depth to the sonic receivers, subtracted from every depth-log station.
inline constexpr double kSonicDepthOffset = 0.578;

struct RawDataImportOptions {
    // Called now and then with the fraction of the file read (0..1); returning false stops
    // the import, keeping what was imported so far.
    std::function<bool(double)> progress;
    std::uint64_t progressIntervalBytes = std::uint64_t{4} << 20; // bytes read between two calls
    std::size_t chunkBytes = RawRecordReader::kDefaultChunkBytes;
};

struct RawDataImportResult {
    bool opened = false;    // the file could be opened (a source in memory always is)
    bool complete = false;  // read to the end of the file without a fault
    bool cancelled = false; // the progress callback stopped the import
    bool timeDigitised = false;
    std::size_t records = 0;         // whole records read
    std::size_t waveformRecords = 0; // of them, sonic waveform records
    std::size_t tracesAdded = 0;
    std::size_t stationsKept = 0;    // rows added, over all traces
    std::size_t stationsDropped = 0; // rows dropped, over all traces
    std::uint64_t bytesRead = 0;     // bytes of the whole records read
};

// Opens the file at `path` for reading, or reports why it cannot be opened.
std::unique_ptr<IRawByteSource> OpenRawDataFile(const std::filesystem::path& path, IMessageSink& sink);

// Imports the file at `path`. A file that cannot be opened is reported and changes nothing.
RawDataImportResult ImportRawData(CBoreAnalystDoc& doc, const std::filesystem::path& path, IMessageSink& sink,
                                  const RawDataImportOptions& options = {});

// The same from any source of bytes; `fileName` names it in messages.
RawDataImportResult ImportRawData(CBoreAnalystDoc& doc, IRawByteSource& source, std::string_view fileName,
                                  IMessageSink& sink, const RawDataImportOptions& options = {});

inline constexpr std::uint64_t kWholeFile = std::numeric_limits<std::uint64_t>::max();

class RawDataImporter;

// The same import a slice at a time, for a job that reads the file in steps: ReadTo as often
// as wanted, then Finish once, which adds the traces to the document (what was read so far,
// when the reading was stopped or ended by a fault).
class CRawDataImportSteps {
public:
    CRawDataImportSteps(CBoreAnalystDoc& doc, IRawByteSource& source, std::string_view fileName, IMessageSink& sink,
                        std::size_t chunkBytes = RawRecordReader::kDefaultChunkBytes);
    ~CRawDataImportSteps();
    CRawDataImportSteps(const CRawDataImportSteps&) = delete;
    CRawDataImportSteps& operator=(const CRawDataImportSteps&) = delete;

    std::uint64_t TotalBytes() const; // the source's size, 0 when unknown
    std::uint64_t BytesRead() const;
    // Reads whole records until at least `bytes` are read; false once nothing is left to
    // read (the end of the file, or a fault, which is reported).
    bool ReadTo(std::uint64_t bytes);
    // `stopped`: the reading was stopped before the file ended.
    RawDataImportResult Finish(bool stopped);

private:
    std::unique_ptr<RawDataImporter> m_importer;
};

} // namespace ba
