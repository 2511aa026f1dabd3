#pragma once
// The unit conversion dialog: a trace list, a list of the units its unit type offers and
// a status line. The checks and the conversion itself are CUnitConversion's; this dialog
// only gathers the choices and passes its messages on.

#include "base/MessageSink.h"
#include "units/UnitConversion.h"

#include <QDialog>

class QComboBox;
class QLabel;

namespace ba {

class CBoreAnalystDoc;

class CUnitConversionDlg final : public QDialog {
    Q_OBJECT
public:
    // Lists the document's line traces, in document order.
    CUnitConversionDlg(CBoreAnalystDoc& doc, IMessageSink& sink, QWidget* parent = nullptr);

    QComboBox* TraceCombo() const { return m_traces; }
    QComboBox* NewUnitsCombo() const { return m_newUnits; }
    QLabel* StatusLabel() const { return m_status; }

public slots:
    void accept() override;

private:
    void OnTraceChosen(int index);
    void OnNewUnitChosen(int index);

    CBoreAnalystDoc& m_doc;
    IMessageSink& m_sink;
    CUnitConversion m_conversion;
    QComboBox* m_traces = nullptr;
    QComboBox* m_newUnits = nullptr;
    QLabel* m_status = nullptr;
};

} // namespace ba
