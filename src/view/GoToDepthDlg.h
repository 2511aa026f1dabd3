#pragma once
// Asks for the depth to show at the top of the log plot.

#include <QDialog>

class QDoubleSpinBox;

namespace ba {

class CGoToDepthDlg final : public QDialog {
    Q_OBJECT
public:
    // `unitName` is the document's display depth unit ("m", "ft", ...).
    CGoToDepthDlg(double currentDepth, const QString& unitName, QWidget* parent = nullptr);

    double Depth() const;
    QDoubleSpinBox* DepthEdit() const { return m_depth; }

private:
    QDoubleSpinBox* m_depth = nullptr;
};

} // namespace ba
