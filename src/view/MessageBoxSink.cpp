#include "view/MessageBoxSink.h"

#include <QApplication>
#include <QMessageBox>
#include <QString>

namespace ba {

void CMessageBoxSink::Report(const Message& message)
{
    const QString title = QApplication::applicationDisplayName();
    const QString text = QString::fromStdString(message.text);
    switch (message.severity) {
    case Severity::Error:
    case Severity::Warning:
        QMessageBox::warning(m_parent, title, text);
        return;
    case Severity::Note:
    case Severity::Info:
        QMessageBox::information(m_parent, title, text);
        return;
    }
}

} // namespace ba
