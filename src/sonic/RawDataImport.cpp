#include "sonic/RawDataImport.h"

#include "model/BoreAnalystDoc.h"
#include "model/DocumentChanges.h"
#include "model/SonicTrace.h"
#include "sonic/SonicRecord.h"
#include "sonic/SonicRow.h"
#include "sonic/SonicStationRows.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace ba {
namespace {

// A control record marks a time-digitised recording with 1 in byte 8 and 3 in byte 12;
// bytes 16 to 19 then hold the time step as a count of milliseconds.
constexpr std::size_t kControlKindByte = 8;
constexpr std::size_t kControlModeByte = 12;
constexpr std::size_t kTimeStepByte = 16;
constexpr std::uint8_t kTimeDigitisingKind = 1;
constexpr std::uint8_t kTimeDigitisingMode = 3;

// A TX frequency byte above this (kHz), a stack interval byte above kMaxStackInterval (ms)
// or a holdoff word above kMaxHoldoff (10 us), or any of them 0, marks a CLP probe with
// the FWS upgrade, whose records do not carry these values.
constexpr std::uint8_t kMaxTxFrequency = 30;
constexpr std::uint8_t kMaxStackInterval = 250;
constexpr std::int32_t kMaxHoldoff = 250;
constexpr std::int32_t kFwsTxFrequency = 20;

// The time step in minutes from its four bytes, byte by byte with the factors 256^i / 60000
// rounded as the recording software rounds them.
float TimeStepMinutes(const RawRecord& record)
{
    const double minutes = record.Byte(kTimeStepByte) * 1.6666667e-05 + record.Byte(kTimeStepByte + 1) * 0.0042666667 +
                           record.Byte(kTimeStepByte + 2) * 1.0922667 + record.Byte(kTimeStepByte + 3) * 279.62027;
    return static_cast<float>(minutes);
}

} // namespace

class RawDataImporter {
public:
    RawDataImporter(CBoreAnalystDoc& doc, std::string_view fileName, IMessageSink& sink)
        : m_doc(doc), m_fileName(fileName), m_sink(sink)
    {
    }

    void Open(IRawByteSource& source, std::size_t chunkBytes)
    {
        m_total = source.SizeHint();
        m_reader = std::make_unique<RawRecordReader>(source, chunkBytes);
    }
    std::uint64_t TotalBytes() const { return m_total; }
    std::uint64_t BytesRead() const { return m_result.bytesRead; }

    // Reads whole records until at least `bytes` are read or nothing is left; says whether
    // more remains. A fault is reported and ends the reading.
    bool ReadTo(std::uint64_t bytes)
    {
        if (m_ended) return false;
        try {
            RawRecord record;
            while (m_result.bytesRead < bytes) {
                if (!m_reader->Next(record)) {
                    m_result.complete = true;
                    m_ended = true;
                    return false;
                }
                ++m_result.records;
                Handle(record);
                m_result.bytesRead = m_reader->BytesConsumed();
            }
            return true;
        } catch (const RawRecordError& e) {
            m_sink.Error("Error: \"" + m_fileName + "\" record " + std::to_string(e.Record()) + " (byte offset " +
                         std::to_string(e.Offset()) + "): " + e.what() + ".");
        } catch (const RawInputError& e) {
            m_sink.Error("Error: \"" + m_fileName + "\" after byte " + std::to_string(m_reader->BytesConsumed()) +
                         ": " + e.what() + ".");
        }
        m_ended = true;
        return false;
    }

    // Hands the traces to the document; `stopped` when the reading was stopped before the end.
    RawDataImportResult Finish(bool stopped)
    {
        m_result.cancelled = stopped && !m_ended;
        m_result.opened = true;
        for (std::size_t r = 0; r < m_traces.size(); ++r) m_rows[r].MoveInto(*m_traces[r]);
        if (!m_traces.empty()) {
            std::vector<std::unique_ptr<CTrace>> traces(std::make_move_iterator(m_traces.begin()),
                                                        std::make_move_iterator(m_traces.end()));
            m_traces.clear();
            m_doc.Apply(MakeAddTracesChange("Import " + std::filesystem::path(m_fileName).filename().string(),
                                            std::move(traces)));
        }
        return m_result;
    }

private:
    void Handle(const RawRecord& record)
    {
        switch (record.Type()) {
        case kRawControlRecord: HandleControl(record); break;
        case kRawDataRecord:
            if (IsSonicWaveformRecord(record)) HandleWaveforms(record);
            break;
        default: break; // other records of the logger are not sonic data
        }
    }

    void HandleControl(const RawRecord& record)
    {
        if (record.Length() <= kControlModeByte || record.Byte(kControlKindByte) != kTimeDigitisingKind ||
            record.Byte(kControlModeByte) != kTimeDigitisingMode) {
            return;
        }
        if (m_result.timeDigitised) return;
        if (record.Length() < kTimeStepByte + 4) {
            throw RawRecordError(record.number, record.offset + record.Length(),
                                 "the time-digitising control record is " + std::to_string(record.Length()) +
                                     " bytes long, too short for its time step (bytes 16 to 19)");
        }
        m_result.timeDigitised = true;
        m_timeStep = TimeStepMinutes(record);
        m_sink.Note(std::string(kTimeDigitizingNote));
        m_stationCounter = 0;
    }

    void HandleWaveforms(const RawRecord& record)
    {
        DecodeSonicRecord(record, m_record); // refuses a damaged record before anything is changed
        ++m_result.waveformRecords;
        if (!m_tracesMade) MakeTraces(m_record.blocks.size());

        std::string toolType(kClpToolType);
        const bool fwsBytes = m_record.txFrequencyByte == 0 || m_record.txFrequencyByte > kMaxTxFrequency ||
                              m_record.txStackIntervalByte == 0 || m_record.txStackIntervalByte > kMaxStackInterval;
        if (fwsBytes) toolType = kClpFwsToolType;
        const bool fws = toolType == kClpFwsToolType;
        const std::int32_t txFrequency = fws ? kFwsTxFrequency : m_record.txFrequencyByte;
        const std::int32_t txStackInterval = fws ? 0 : m_record.txStackIntervalByte;
        const float depth = StationDepth(record);

        const std::size_t receivers = std::min(m_record.blocks.size(), m_traces.size());
        for (std::size_t r = 0; r < receivers; ++r) {
            const SonicBlock& block = m_record.blocks[r];
            CSonicTrace& trace = *m_traces[r];
            SonicAcquisition& acq = trace.Acquisition();
            acq.txFrequency = txFrequency;
            acq.txStackInterval = txStackInterval;
            acq.txMode = 0;
            acq.txNumStacks = block.txNumStacks;
            acq.rxMode = block.rxMode;
            acq.rxSampleRate1 = block.sampleRate1;
            acq.rxSampleRate2 = block.sampleRate2;
            acq.rxNumSamples1 = block.n1;
            acq.rxGain = std::int32_t{1} << block.gainExponent;

            const bool useRate2 = Rate2SamplesUsable(block);
            if (!useRate2 && !m_rate2Reported) {
                m_sink.Error(std::string(kRate2MultipleMessage));
                m_rate2Reported = true;
            }
            acq.rxNumSamples2 = useRate2 ? block.n2 : 0;

            SonicStationRows& rows = m_rows[r];
            const SonicStationRows::Place place = rows.PlaceFor(depth);
            if (place == SonicStationRows::Place::Dropped) {
                ++m_result.stationsDropped;
            } else {
                ImageRow row;
                BuildSonicRow(block, useRate2, row);
                rows.Add(place, depth, std::move(row));
                ++m_result.stationsKept;
            }

            if (block.holdoff == 0 || block.holdoff > kMaxHoldoff) toolType = kClpFwsToolType;
            acq.rxHoldoff = toolType == kClpFwsToolType ? 0 : block.holdoff;
            trace.SetToolType(toolType);
            const float start = static_cast<float>(10 * acq.rxHoldoff);
            const float window = static_cast<float>(acq.rxSampleRate2 * acq.rxNumSamples2 +
                                                    acq.rxSampleRate1 * acq.rxNumSamples1);
            trace.SetScale(start, start + window);
        }
        if (m_result.timeDigitised) ++m_stationCounter;
    }

    float StationDepth(const RawRecord& record) const
    {
        if (m_result.timeDigitised) {
            return static_cast<float>(static_cast<double>(m_stationCounter) * static_cast<double>(m_timeStep));
        }
        return static_cast<float>(static_cast<double>(record.Depth()) - kSonicDepthOffset);
    }

    void MakeTraces(std::size_t receivers)
    {
        m_tracesMade = true;
        for (std::size_t r = 0; r < receivers; ++r) {
            char name[16];
            std::snprintf(name, sizeof name, "RX %1i", static_cast<int>(r + 1));
            auto trace = std::make_unique<CSonicTrace>(name, 0.0f, 100.0f, "us");
            trace->SetDepthUnit(m_result.timeDigitised ? kTimeMinutes : kDepthMetres);
            m_traces.push_back(std::move(trace));
        }
        m_rows.resize(receivers);
        m_result.tracesAdded = receivers;
    }

    CBoreAnalystDoc& m_doc;
    std::string m_fileName;
    IMessageSink& m_sink;
    std::unique_ptr<RawRecordReader> m_reader;
    std::uint64_t m_total = 0;
    bool m_ended = false; // the file ended, or a fault ended the reading
    RawDataImportResult m_result;
    SonicRecord m_record;
    bool m_tracesMade = false;
    std::vector<std::unique_ptr<CSonicTrace>> m_traces; // join the document when the import ends
    std::vector<SonicStationRows> m_rows;
    bool m_rate2Reported = false;
    float m_timeStep = 0.0f;
    std::int64_t m_stationCounter = 0;
};

std::unique_ptr<IRawByteSource> OpenRawDataFile(const std::filesystem::path& path, IMessageSink& sink)
{
    std::string reason;
    auto source = RawFileSource::Open(path, reason);
    if (!source) sink.Error("Error: \"" + path.string() + "\": the raw-data file cannot be opened (" + reason + ").");
    return source;
}

RawDataImportResult ImportRawData(CBoreAnalystDoc& doc, const std::filesystem::path& path, IMessageSink& sink,
                                  const RawDataImportOptions& options)
{
    const auto source = OpenRawDataFile(path, sink);
    if (!source) return {};
    return ImportRawData(doc, *source, path.string(), sink, options);
}

RawDataImportResult ImportRawData(CBoreAnalystDoc& doc, IRawByteSource& source, std::string_view fileName,
                                  IMessageSink& sink, const RawDataImportOptions& options)
{
    CRawDataImportSteps steps(doc, source, fileName, sink, options.chunkBytes);
    const std::uint64_t total = steps.TotalBytes();
    const std::uint64_t interval = std::max<std::uint64_t>(options.progressIntervalBytes, 1);
    bool stopped = false;
    for (std::uint64_t target = interval; steps.ReadTo(options.progress ? target : kWholeFile); target += interval) {
        const double fraction = total > 0 ? static_cast<double>(steps.BytesRead()) / static_cast<double>(total) : 0.0;
        if (!options.progress(std::min(fraction, 1.0))) {
            stopped = true;
            break;
        }
    }
    const RawDataImportResult result = steps.Finish(stopped);
    if (result.complete && options.progress) options.progress(1.0);
    return result;
}

CRawDataImportSteps::CRawDataImportSteps(CBoreAnalystDoc& doc, IRawByteSource& source, std::string_view fileName,
                                         IMessageSink& sink, std::size_t chunkBytes)
    : m_importer(std::make_unique<RawDataImporter>(doc, fileName, sink))
{
    m_importer->Open(source, chunkBytes);
}

CRawDataImportSteps::~CRawDataImportSteps() = default;

std::uint64_t CRawDataImportSteps::TotalBytes() const { return m_importer->TotalBytes(); }
std::uint64_t CRawDataImportSteps::BytesRead() const { return m_importer->BytesRead(); }
bool CRawDataImportSteps::ReadTo(std::uint64_t bytes) { return m_importer->ReadTo(bytes); }
RawDataImportResult CRawDataImportSteps::Finish(bool stopped) { return m_importer->Finish(stopped); }

} // namespace ba
