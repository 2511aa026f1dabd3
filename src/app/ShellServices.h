#pragma once
// What the main frame asks of the world outside it: where messages go, whether saving is
// licensed, which file the user picks and whether unsaved changes are kept. The desktop
// uses message boxes and file dialogs; tests put recorders and fixed answers in their
// place, so no window ever blocks a test.

#include "base/LicenceCheck.h"
#include "base/MessageSink.h"

#include <QMessageBox>
#include <QString>

#include <functional>

namespace ba {

struct FileDialogRequest {
    enum class Mode { Open, Save };
    Mode mode = Mode::Open;
    QString caption;
    QString filter;          // Qt filter text: "LAS Data Files (*.las);;All Files (*.*)"
    QString defaultName;     // the suggested file name of a save dialog
    QString defaultSuffix;   // appended when the user types a name without one
};

struct ShellServices {
    // Null: every message is shown as a message box over the main frame.
    IMessageSink* sink = nullptr;
    // Null: the installation's default check.
    const ILicenceCheck* licence = nullptr;
    // Returns the chosen path, or an empty string when the user cancels. Null: file dialogs.
    std::function<QString(const FileDialogRequest&)> chooseFile;
    // Asked before a modified document closes; answers Save, Discard or Cancel. Null: a
    // question box.
    std::function<QMessageBox::StandardButton(const QString& documentTitle)> askSaveChanges;
    // Asks a Yes/No question (a paste whose vertical axis differs from the document's);
    // true means Yes. Null: a question box with the warning icon.
    std::function<bool(const QString& question)> askYesNo;
};

} // namespace ba
