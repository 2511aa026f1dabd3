#include "view/ModelBox.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

namespace ba {

CModelBox::CModelBox(const QString& nameLabel, const QString& saveLabel, QWidget* parent)
    : QGroupBox(tr("Model"), parent)
{
    m_combo = new QComboBox(this);
    m_combo->setObjectName("models");
    m_load = new QPushButton(tr("&Load"), this);
    m_load->setObjectName("loadModel");
    m_load->setAutoDefault(false);
    m_name = new QLineEdit(this);
    m_name->setObjectName("modelName");
    m_description = new QLineEdit(this);
    m_description->setObjectName("modelDescription");
    m_save = new QPushButton(saveLabel, this);
    m_save->setObjectName("saveModel");
    m_save->setAutoDefault(false);

    auto* loadRow = new QHBoxLayout;
    loadRow->addWidget(m_combo, 1);
    loadRow->addWidget(m_load);
    auto* form = new QFormLayout(this);
    form->addRow(tr("Stored &models:"), loadRow);
    form->addRow(nameLabel, m_name);
    form->addRow(tr("&Description:"), m_description);
    form->addRow(QString(), m_save);

    connect(m_load, &QPushButton::clicked, this, &CModelBox::LoadRequested);
    connect(m_save, &QPushButton::clicked, this, &CModelBox::SaveRequested);
}

void CModelBox::ShowNames(const std::vector<std::string>& names, const QString& select)
{
    const QSignalBlocker quiet(m_combo);
    m_combo->clear();
    for (const std::string& name : names) m_combo->addItem(QString::fromStdString(name));
    m_combo->setCurrentIndex(select.isEmpty() ? -1 : m_combo->findText(select));
}

} // namespace ba
