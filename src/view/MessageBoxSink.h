#pragma once
// Shows each core message as a modal message box with its exact text: errors and warnings
// with the warning icon, notes and information with the information icon.

#include "base/MessageSink.h"

class QWidget;

namespace ba {

class CMessageBoxSink final : public IMessageSink {
public:
    explicit CMessageBoxSink(QWidget* parent) : m_parent(parent) {}
    void Report(const Message& message) override;
    void SetParent(QWidget* parent) { m_parent = parent; }

private:
    QWidget* m_parent;
};

} // namespace ba
