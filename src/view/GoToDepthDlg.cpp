#include "view/GoToDepthDlg.h"

#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QVBoxLayout>

namespace ba {

namespace {
// Deeper than any borehole, in any display unit the document may use.
constexpr double kDepthLimit = 1.0e7;
} // namespace

CGoToDepthDlg::CGoToDepthDlg(double currentDepth, const QString& unitName, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Go To Depth"));
    m_depth = new QDoubleSpinBox(this);
    m_depth->setObjectName("depth");
    m_depth->setRange(-kDepthLimit, kDepthLimit);
    m_depth->setDecimals(3);
    m_depth->setSuffix(QStringLiteral(" ") + unitName);
    m_depth->setValue(currentDepth);
    m_depth->selectAll();

    auto* form = new QFormLayout;
    form->addRow(tr("&Depth at the top of the plot:"), m_depth);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

double CGoToDepthDlg::Depth() const { return m_depth->value(); }

} // namespace ba
