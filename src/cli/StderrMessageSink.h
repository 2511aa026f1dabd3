#pragma once
// The command-line tool's message sink: each message goes to standard error as one line,
// exactly as worded (the core's texts already begin with "Error:" or "Warning:").

#include "base/MessageSink.h"

#include <ostream>

namespace ba::cli {

class StderrMessageSink final : public IMessageSink {
public:
    explicit StderrMessageSink(std::ostream& err) : m_err(err) {}
    void Report(const Message& message) override { m_err << message.text << '\n' << std::flush; }

private:
    std::ostream& m_err;
};

} // namespace ba::cli
