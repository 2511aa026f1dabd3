#pragma once
// Core code never shows a window: every message meant for the user (its exact text and
// severity) goes to a sink. The desktop app turns them into warning boxes, the
// command-line tool prints them to standard error, tests collect them.

#include <string>
#include <vector>

namespace ba {

enum class Severity { Error, Warning, Note, Info };

struct Message {
    Severity severity = Severity::Error;
    std::string text;
};

class IMessageSink {
public:
    virtual ~IMessageSink() = default;
    virtual void Report(const Message& message) = 0;

    void Error(std::string text) { Report({Severity::Error, std::move(text)}); }
    void Warning(std::string text) { Report({Severity::Warning, std::move(text)}); }
    void Note(std::string text) { Report({Severity::Note, std::move(text)}); }
    void Info(std::string text) { Report({Severity::Info, std::move(text)}); }
};

// Keeps every message in order; used by tests and by callers that decide later how to show them.
class CollectingMessageSink final : public IMessageSink {
public:
    void Report(const Message& message) override { messages.push_back(message); }
    std::vector<std::string> Texts() const
    {
        std::vector<std::string> texts;
        texts.reserve(messages.size());
        for (const auto& m : messages) texts.push_back(m.text);
        return texts;
    }
    std::vector<Message> messages;
};

// Discards everything; for callers that have nobody to tell.
class NullMessageSink final : public IMessageSink {
public:
    void Report(const Message&) override {}
};

} // namespace ba
