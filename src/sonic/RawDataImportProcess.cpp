#include "sonic/RawDataImportProcess.h"

#include <utility>

namespace ba {

CRawDataImportProcess::CRawDataImportProcess(CBoreAnalystDoc& doc, std::unique_ptr<IRawByteSource> source,
                                             std::string fileName, IMessageSink& sink,
                                             std::function<void(const RawDataImportResult&)> done)
    : m_source(std::move(source)), m_steps(doc, *m_source, fileName, sink), m_done(std::move(done))
{
}

void CRawDataImportProcess::ComputeStation(std::size_t i)
{
    if (!m_more) return; // the file ended early, or a fault ended the reading
    const std::uint64_t total = m_steps.TotalBytes();
    // The last step reads to the end whatever the size said; so does every step of a source
    // of unknown size.
    const std::uint64_t target = i + 1 >= kSteps || total == 0 ? kWholeFile : total / kSteps * (i + 1);
    m_more = m_steps.ReadTo(target);
}

void CRawDataImportProcess::Finish(std::size_t stations)
{
    m_result = m_steps.Finish(stations < kSteps && m_more);
    if (m_done) m_done(m_result);
}

} // namespace ba
