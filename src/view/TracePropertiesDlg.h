#pragma once
// The property sheet of one trace: name and units, scale ends, track, pen (width, style,
// colour) and whether the trace is hidden. OK checks the entries, writes them into the
// trace and marks the document modified; a refused entry is reported and the sheet stays
// open.
//
// Hidden traces: a hidden trace keeps its data but is not drawn; the state is kept in
// the trace's flag 0 (stored with the trace in the document file).

#include "base/MessageSink.h"
#include "model/TraceProperties.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLineEdit;
class QSpinBox;
class QTabWidget;

namespace ba {

class CBoreAnalystDoc;
class CTrace;


class CTracePropertiesDlg final : public QDialog {
    Q_OBJECT
public:
    CTracePropertiesDlg(CBoreAnalystDoc& doc, CTrace& trace, IMessageSink& sink, QWidget* parent = nullptr);

    // The pages' controls, for the shell's keyboard handling and for tests.
    QTabWidget* Pages() const { return m_pages; }
    QLineEdit* NameEdit() const { return m_name; }
    QLineEdit* UnitsEdit() const { return m_units; }
    QDoubleSpinBox* ScaleLeftEdit() const { return m_scaleLeft; }
    QDoubleSpinBox* ScaleRightEdit() const { return m_scaleRight; }
    QComboBox* TrackCombo() const { return m_track; }
    QSpinBox* PenWidthEdit() const { return m_penWidth; }
    QComboBox* PenStyleCombo() const { return m_penStyle; }
    QComboBox* ColourCombo() const { return m_colour; }
    QCheckBox* HiddenCheck() const { return m_hidden; }

    // Checks the entries and writes them into the trace. Returns false, changing
    // nothing, when an entry is refused.
    bool ApplyToTrace();

public slots:
    void accept() override;

private:
    QWidget* BuildGeneralPage();
    QWidget* BuildScalePage();
    QWidget* BuildPenPage();
    void LoadFromTrace();

    CBoreAnalystDoc& m_doc;
    CTrace& m_trace;
    IMessageSink& m_sink;
    QTabWidget* m_pages = nullptr;
    QLineEdit* m_name = nullptr;
    QLineEdit* m_units = nullptr;
    QCheckBox* m_hidden = nullptr;
    QDoubleSpinBox* m_scaleLeft = nullptr;
    QDoubleSpinBox* m_scaleRight = nullptr;
    QComboBox* m_track = nullptr;
    QSpinBox* m_penWidth = nullptr;
    QComboBox* m_penStyle = nullptr;
    QComboBox* m_colour = nullptr;
};

} // namespace ba
