#include "app/TraceClipboardBridge.h"

#include <QMimeData>
#include <QString>

namespace ba {

namespace {

QString BareName()
{
    return QString::fromLatin1(kTraceClipboardFormat.data(), static_cast<qsizetype>(kTraceClipboardFormat.size()));
}
QString WrappedName() { return QString::fromLatin1(kWrappedTraceClipboardFormat); }

} // namespace

bool HasTraceBlock(const QMimeData* data)
{
    return data != nullptr && (data->hasFormat(BareName()) || data->hasFormat(WrappedName()));
}

std::optional<QByteArray> ReadTraceBlock(const QMimeData* data)
{
    if (data == nullptr) return std::nullopt;
    for (const QString& name : {BareName(), WrappedName()}) {
        if (data->hasFormat(name)) return data->data(name);
    }
    return std::nullopt;
}

QMimeData* MakeTraceMimeData(std::span<const std::uint8_t> block)
{
    auto* data = new QMimeData;
    data->setData(BareName(), QByteArray(reinterpret_cast<const char*>(block.data()),
                                         static_cast<qsizetype>(block.size())));
    return data;
}

} // namespace ba
