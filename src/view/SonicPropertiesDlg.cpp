#include "view/SonicPropertiesDlg.h"

#include "model/SonicTrace.h"

namespace ba {

CSonicPropertiesDlg::CSonicPropertiesDlg(CBoreAnalystDoc& doc, CSonicTrace& trace, IMessageSink& sink,
                                         QWidget* parent)
    : CImagePropertiesDlg(doc, trace, sink, true, parent)
{
}

} // namespace ba
