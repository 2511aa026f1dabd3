#pragma once
// The property page of a sonic trace: the image page's controls (the minimum and maximum
// are the recorded time window in microseconds) and the acquisition properties of the
// tool. For the tools whose rows are not waveforms the time window and the multiplier
// are shown read-only.

#include "view/ImagePropertiesDlg.h"

namespace ba {

class CSonicTrace;

class CSonicPropertiesDlg final : public CImagePropertiesDlg {
    Q_OBJECT
public:
    CSonicPropertiesDlg(CBoreAnalystDoc& doc, CSonicTrace& trace, IMessageSink& sink, QWidget* parent = nullptr);
};

} // namespace ba
