#pragma once
// The dialog of a trace utility (Edit > Trace Utilities): the utility's form shown as
// widgets, a list of the document's traces for each trace field, an edit for each number
// or text, a list for each choice and a box for each flag. The form, its labels, which
// fields matter and every check and message are the core's (utilities/TraceUtilityForms);
// this dialog gathers the entries, and OK applies the change the core builds from them or
// stays open after its message.

#include "base/MessageSink.h"
#include "utilities/TraceUtilityForms.h"

#include <QDialog>

#include <cstddef>
#include <optional>
#include <vector>

class QLabel;
class QPushButton;

namespace ba {

class CBoreAnalystDoc;

class CTraceUtilityDlg final : public QDialog {
    Q_OBJECT
public:
    // `preferredTrace` (the trace selected in the view, say) starts in the first trace field.
    CTraceUtilityDlg(CBoreAnalystDoc& doc, TraceUtility utility, IMessageSink& sink,
                     std::optional<std::size_t> preferredTrace = std::nullopt, QWidget* parent = nullptr);

    std::size_t FieldCount() const { return m_widgets.size(); }
    // The widget of field i: a QComboBox for a trace or a choice, a QLineEdit for a number
    // or a text, a QCheckBox for a flag.
    QWidget* FieldWidget(std::size_t i) const { return m_widgets.at(i); }
    // The label beside field i; null for a flag, which carries its own text.
    QLabel* FieldLabel(std::size_t i) const { return m_labels.at(i); }
    QPushButton* OkButton() const { return m_ok; }

public slots:
    void accept() override;

private:
    QWidget* MakeFieldWidget(const FormField& field, const FieldEntry& entry);
    std::vector<FieldEntry> Entries() const;
    // Labels follow the depth unit of the chosen trace; fields of other choices grey out.
    void Refresh();

    CBoreAnalystDoc& m_doc;
    TraceUtility m_utility;
    IMessageSink& m_sink;
    TraceUtilityForm m_form;
    std::vector<QWidget*> m_widgets;
    std::vector<QLabel*> m_labels;
    QPushButton* m_ok = nullptr;
};

} // namespace ba
