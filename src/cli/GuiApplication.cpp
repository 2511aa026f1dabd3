#include "cli/GuiApplication.h"

#include <QGuiApplication>

namespace ba::cli {
namespace {

// Qt's messages go to standard error as usual, except its note that the per-user runtime
// folder is unset: the offscreen platform never uses that folder, and on servers and in
// containers the note would follow every plot.
QtMessageHandler g_defaultQtHandler = nullptr;

void FilterQtMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (message.startsWith(QStringLiteral("QStandardPaths: XDG_RUNTIME_DIR not set"))) return;
    if (g_defaultQtHandler != nullptr) g_defaultQtHandler(type, context, message);
}

} // namespace

void EnsureGuiApplication()
{
    if (QGuiApplication::instance() != nullptr) return;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    g_defaultQtHandler = qInstallMessageHandler(FilterQtMessage);
    static int argc = 1;
    static char name[] = "boreanalyst-cli";
    static char* argv[] = {name, nullptr};
    static QGuiApplication app(argc, argv);
}

} // namespace ba::cli
