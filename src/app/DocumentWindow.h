#pragma once
// The child frame of one document: a sub-window of the main frame's document area that
// owns the document and shows it in a log plot view. Its title is the document's title,
// with "*" while there are unsaved changes; closing asks the main frame first.

#include "model/BoreAnalystDoc.h"
#include "sonic/SonicVelocity.h"

#include <QMdiSubWindow>

#include <functional>
#include <memory>
#include <optional>

namespace ba {

class CLogPlotView;

class CDocumentWindow final : public QMdiSubWindow {
    Q_OBJECT
public:
    explicit CDocumentWindow(std::unique_ptr<CBoreAnalystDoc> doc, QWidget* parent = nullptr);

    CBoreAnalystDoc& Document() { return *m_doc; }
    CLogPlotView& View() { return *m_view; }

    // Asked when the window is about to close; false keeps it open.
    void SetCloseGuard(std::function<bool(CDocumentWindow&)> guard) { m_closeGuard = std::move(guard); }

    // The settings of the last sonic velocity run on this document, for its QC view.
    const std::optional<SonicVelocitySettings>& SonicSettings() const { return m_sonicSettings; }
    void SetSonicSettings(const SonicVelocitySettings& settings) { m_sonicSettings = settings; }

    // Refreshes the title and the view after the document changed, then says so.
    void DocumentChanged();
    QString TitleText() const;

signals:
    void documentChanged();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    std::unique_ptr<CBoreAnalystDoc> m_doc;
    CLogPlotView* m_view = nullptr;
    std::function<bool(CDocumentWindow&)> m_closeGuard;
    std::optional<SonicVelocitySettings> m_sonicSettings;
};

} // namespace ba
