#pragma once
// The property page of an image or spectrum trace: name, minimum and maximum of the
// scale, units, track, hide, and the intensity multiplier the image is drawn with. The
// sonic page (SonicPropertiesDlg.h) adds the acquisition text. The page only gathers and
// shows; the checks and the writes are ApplyImageProperties's (model/ImagePropertiesModel.h).

#include "base/MessageSink.h"

#include <QDialog>

class QButtonGroup;
class QCheckBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;

namespace ba {

class CBoreAnalystDoc;
class CImageTrace;

class CImagePropertiesDlg : public QDialog {
    Q_OBJECT
public:
    CImagePropertiesDlg(CBoreAnalystDoc& doc, CImageTrace& trace, IMessageSink& sink, QWidget* parent = nullptr);

    // The controls, for the shell's keyboard handling and for tests.
    QLineEdit* NameEdit() const { return m_name; }
    QDoubleSpinBox* MinimumEdit() const { return m_minimum; }
    QDoubleSpinBox* MaximumEdit() const { return m_maximum; }
    QLineEdit* UnitsEdit() const { return m_units; }
    QButtonGroup* TrackButtons() const { return m_track; } // ids 0 Left, 1 Right, 2 RLeft, 3 RRight
    QCheckBox* HideCheck() const { return m_hide; }
    QLineEdit* MultiplierEdit() const { return m_multiplier; }
    // Null on the plain image page.
    QLabel* AcquisitionLabel() const { return m_acquisition; }

    // Checks the entries and writes them into the trace. Returns false, changing
    // nothing, when an entry is refused (the sink has been told why).
    bool ApplyToTrace();

public slots:
    void accept() override;

protected:
    // `withAcquisition` adds the acquisition text below the controls.
    CImagePropertiesDlg(CBoreAnalystDoc& doc, CImageTrace& trace, IMessageSink& sink, bool withAcquisition,
                        QWidget* parent);

private:
    void Build(bool withAcquisition);
    void LoadFromTrace();

    CBoreAnalystDoc& m_doc;
    CImageTrace& m_trace;
    IMessageSink& m_sink;
    bool m_numericLocked = false;
    QLineEdit* m_name = nullptr;
    QDoubleSpinBox* m_minimum = nullptr;
    QDoubleSpinBox* m_maximum = nullptr;
    QLineEdit* m_units = nullptr;
    QButtonGroup* m_track = nullptr;
    QCheckBox* m_hide = nullptr;
    QLineEdit* m_multiplier = nullptr;
    QLabel* m_acquisition = nullptr;
};

} // namespace ba
