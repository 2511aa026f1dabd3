#include "view/TraceUtilityDlg.h"

#include "model/BoreAnalystDoc.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <string>

namespace ba {
namespace {

QString Q(const std::string& text) { return QString::fromStdString(text); }

bool IsTraceField(FormFieldKind kind) { return kind == FormFieldKind::LineTrace || kind == FormFieldKind::AnyTrace; }

QString LabelText(const FormField& field) { return Q(field.label) + QLatin1Char(':'); }

} // namespace

CTraceUtilityDlg::CTraceUtilityDlg(CBoreAnalystDoc& doc, TraceUtility utility, IMessageSink& sink,
                                   std::optional<std::size_t> preferredTrace, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_utility(utility), m_sink(sink), m_form(DescribeTraceUtility(utility, doc))
{
    setWindowTitle(Q(m_form.title));
    const std::vector<FieldEntry> initial = InitialEntries(m_form, doc, preferredTrace);

    auto* summary = new QLabel(Q(m_form.summary), this);
    summary->setObjectName("summary");
    summary->setWordWrap(true);
    auto* form = new QFormLayout;
    for (std::size_t i = 0; i < m_form.fields.size(); ++i) {
        const FormField& field = m_form.fields[i];
        QWidget* widget = MakeFieldWidget(field, initial[i]);
        m_widgets.push_back(widget);
        if (field.kind == FormFieldKind::Flag) {
            m_labels.push_back(nullptr);
            form->addRow(QString(), widget);
            continue;
        }
        auto* label = new QLabel(LabelText(field), this);
        label->setBuddy(widget);
        m_labels.push_back(label);
        form->addRow(label, widget);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(summary);
    layout->addSpacing(6);
    layout->addLayout(form);
    layout->addStretch(1);
    layout->addWidget(buttons);
    setMinimumWidth(420);

    connect(buttons, &QDialogButtonBox::accepted, this, &CTraceUtilityDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CTraceUtilityDlg::reject);
    Refresh();
}

QWidget* CTraceUtilityDlg::MakeFieldWidget(const FormField& field, const FieldEntry& entry)
{
    const QString name = Q(field.name);
    if (IsTraceField(field.kind) || field.kind == FormFieldKind::Choice) {
        auto* combo = new QComboBox(this);
        combo->setObjectName(name);
        if (field.kind == FormFieldKind::Choice) {
            for (const std::string& choice : field.choices) combo->addItem(Q(choice));
            combo->setCurrentIndex(static_cast<int>(entry.index));
        } else {
            // Each item carries its trace's index in the document: a line-trace list skips the others.
            for (const std::size_t index : TraceFieldChoices(m_doc, field.kind)) {
                combo->addItem(Q(m_doc.Trace(index).Name()), QVariant::fromValue(static_cast<qlonglong>(index)));
            }
            combo->setCurrentIndex(combo->findData(QVariant::fromValue(static_cast<qlonglong>(entry.index))));
        }
        connect(combo, &QComboBox::currentIndexChanged, this, &CTraceUtilityDlg::Refresh);
        return combo;
    }
    if (field.kind == FormFieldKind::Flag) {
        auto* check = new QCheckBox(Q(field.label), this);
        check->setObjectName(name);
        check->setChecked(entry.on);
        return check;
    }
    auto* edit = new QLineEdit(Q(entry.text), this);
    edit->setObjectName(name);
    edit->setPlaceholderText(Q(field.placeholder));
    return edit;
}

std::vector<FieldEntry> CTraceUtilityDlg::Entries() const
{
    std::vector<FieldEntry> entries(m_widgets.size());
    for (std::size_t i = 0; i < m_widgets.size(); ++i) {
        const FormFieldKind kind = m_form.fields[i].kind;
        FieldEntry& entry = entries[i];
        if (const auto* combo = qobject_cast<const QComboBox*>(m_widgets[i])) {
            if (kind == FormFieldKind::Choice) entry.index = combo->currentIndex();
            else if (combo->currentIndex() >= 0) entry.index = combo->currentData().value<qlonglong>();
        } else if (const auto* check = qobject_cast<const QCheckBox*>(m_widgets[i])) {
            entry.on = check->isChecked();
        } else if (const auto* edit = qobject_cast<const QLineEdit*>(m_widgets[i])) {
            entry.text = edit->text().toStdString();
        }
    }
    return entries;
}

void CTraceUtilityDlg::Refresh()
{
    const std::vector<FieldEntry> entries = Entries();
    m_form = DescribeTraceUtility(m_utility, m_doc, entries);
    for (std::size_t i = 0; i < m_widgets.size(); ++i) {
        const bool inUse = FieldInUse(m_form, entries, i);
        m_widgets[i]->setEnabled(inUse);
        if (m_labels[i]) {
            m_labels[i]->setText(LabelText(m_form.fields[i]));
            m_labels[i]->setEnabled(inUse);
        }
    }
}

void CTraceUtilityDlg::accept()
{
    auto change = MakeTraceUtilityChange(m_utility, m_doc, Entries(), m_sink);
    if (!change) return; // the reason has gone to the sink; the entries stay for correcting
    m_doc.Apply(std::move(change));
    QDialog::accept();
}

} // namespace ba
