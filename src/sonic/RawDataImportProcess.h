#pragma once
// The raw-data import as a job of the background processing: each step reads the next
// hundredth of the file, and a stop keeps the stations read so far (they join the
// document as the import's traces, as at the end of the file).

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "sonic/BackgroundProcess.h"
#include "sonic/RawByteSource.h"
#include "sonic/RawDataImport.h"

#include <functional>
#include <memory>
#include <string>

namespace ba {

class CRawDataImportProcess final : public CProcess {
public:
    static constexpr std::size_t kSteps = 100;

    // `done` is told the outcome once the traces have joined the document.
    CRawDataImportProcess(CBoreAnalystDoc& doc, std::unique_ptr<IRawByteSource> source, std::string fileName,
                          IMessageSink& sink, std::function<void(const RawDataImportResult&)> done = {});

    std::string JobName() const override { return "Import Raw Data"; }
    std::size_t StationCount() const override { return kSteps; }
    void ComputeStation(std::size_t i) override;
    const RawDataImportResult& Result() const { return m_result; }

protected:
    void Finish(std::size_t stations) override;

private:
    std::unique_ptr<IRawByteSource> m_source;
    CRawDataImportSteps m_steps;
    std::function<void(const RawDataImportResult&)> m_done;
    bool m_more = true;
    RawDataImportResult m_result;
};

} // namespace ba
