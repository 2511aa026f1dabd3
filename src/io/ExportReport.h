#pragma once
// How the exports report a file that cannot be created or written.

#include "base/MessageSink.h"
#include "io/ExportFileWriter.h"

#include <string>

namespace ba {

inline void ReportExportFileError(const ExportFileError& error, IMessageSink& sink)
{
    if (error.Which() == ExportFileError::Stage::Create) {
        sink.Error("Error: unable to create file.");
        sink.Note(std::string("Note: ") + error.what() + ".");
    } else {
        sink.Error(std::string("File I/O Error: ") + error.what() + ".");
    }
}

} // namespace ba
