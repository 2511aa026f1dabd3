#include "view/ImagePropertiesDlg.h"

#include "model/ImagePropertiesModel.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include <array>

namespace ba {
namespace {

constexpr std::array<const char*, 4> kTrackNames{"Left", "Right", "RLeft", "RRight"};
// The minimum and maximum are free numbers of either sign (times in microseconds for a
// sonic trace); the spin boxes only need a range that holds every sensible one.
constexpr double kScaleLimit = 1.0e9;

QDoubleSpinBox* MakeScaleEdit(QWidget* parent, const char* name)
{
    auto* edit = new QDoubleSpinBox(parent);
    edit->setObjectName(name);
    edit->setRange(-kScaleLimit, kScaleLimit);
    edit->setDecimals(4);
    return edit;
}

} // namespace

CImagePropertiesDlg::CImagePropertiesDlg(CBoreAnalystDoc& doc, CImageTrace& trace, IMessageSink& sink,
                                         QWidget* parent)
    : CImagePropertiesDlg(doc, trace, sink, false, parent)
{
}

CImagePropertiesDlg::CImagePropertiesDlg(CBoreAnalystDoc& doc, CImageTrace& trace, IMessageSink& sink,
                                         bool withAcquisition, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_trace(trace), m_sink(sink)
{
    setWindowTitle(QStringLiteral("Trace 1"));
    Build(withAcquisition);
    LoadFromTrace();
}

void CImagePropertiesDlg::Build(bool withAcquisition)
{
    auto* grid = new QGridLayout;
    m_name = new QLineEdit(this);
    m_name->setObjectName("name");
    grid->addWidget(new QLabel(QStringLiteral("Trace Name"), this), 0, 0);
    grid->addWidget(m_name, 0, 1, 1, 3);

    m_minimum = MakeScaleEdit(this, "minimum");
    m_maximum = MakeScaleEdit(this, "maximum");
    grid->addWidget(new QLabel(QStringLiteral("Minimum Value"), this), 1, 0);
    grid->addWidget(m_minimum, 1, 1);
    grid->addWidget(new QLabel(QStringLiteral("Maximum Value"), this), 1, 2);
    grid->addWidget(m_maximum, 1, 3);
    grid->addWidget(new QLabel(QStringLiteral("(0.0)"), this), 2, 1);
    grid->addWidget(new QLabel(QStringLiteral("(100.0)"), this), 2, 3);

    m_units = new QLineEdit(this);
    m_units->setObjectName("units");
    grid->addWidget(new QLabel(QStringLiteral("Units"), this), 3, 0);
    grid->addWidget(m_units, 3, 1);

    auto* trackBox = new QGroupBox(QStringLiteral("Track Assignment"), this);
    auto* trackLayout = new QHBoxLayout(trackBox);
    m_track = new QButtonGroup(this);
    for (std::size_t i = 0; i < kTrackNames.size(); ++i) {
        auto* button = new QRadioButton(QString::fromLatin1(kTrackNames[i]), trackBox);
        m_track->addButton(button, static_cast<int>(i));
        trackLayout->addWidget(button);
    }
    grid->addWidget(trackBox, 4, 0, 1, 4);

    m_hide = new QCheckBox(QStringLiteral("Hide Log"), this);
    m_hide->setObjectName("hide");
    grid->addWidget(m_hide, 5, 0, 1, 2);

    m_multiplier = new QLineEdit(this);
    m_multiplier->setObjectName("multiplier");
    grid->addWidget(new QLabel(QStringLiteral("Intensity Multiplier"), this), 6, 0);
    grid->addWidget(m_multiplier, 6, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    if (withAcquisition) {
        m_acquisition = new QLabel(QString::fromLatin1(kInitialAcquisitionText.data(),
                                                       static_cast<qsizetype>(kInitialAcquisitionText.size())),
                                   this);
        m_acquisition->setObjectName("acquisition");
        m_acquisition->setTextFormat(Qt::PlainText);
        m_acquisition->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        layout->addWidget(m_acquisition);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &CImagePropertiesDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CImagePropertiesDlg::reject);
    layout->addWidget(buttons);
}

void CImagePropertiesDlg::LoadFromTrace()
{
    const ImagePageValues values = ImagePageValuesOf(m_trace);
    m_name->setText(QString::fromStdString(values.name));
    m_minimum->setValue(values.minimum);
    m_maximum->setValue(values.maximum);
    m_units->setText(QString::fromStdString(values.units));
    // A stored track index outside the four leaves every button clear until one is picked.
    if (QAbstractButton* button = m_track->button(values.trackIndex)) button->setChecked(true);
    m_hide->setChecked(values.hidden);
    m_multiplier->setText(QString::number(values.intensityMultiplier));
    if (m_acquisition != nullptr) m_acquisition->setText(QString::fromStdString(values.acquisitionText));
    m_numericLocked = values.numericFieldsLocked;
    m_minimum->setReadOnly(m_numericLocked);
    m_maximum->setReadOnly(m_numericLocked);
    m_multiplier->setReadOnly(m_numericLocked);
}

bool CImagePropertiesDlg::ApplyToTrace()
{
    ImagePropertyEdit edit;
    edit.common.name = m_name->text().toStdString();
    edit.common.units = m_units->text().toStdString();
    edit.common.hidden = m_hide->isChecked();
    if (m_track->checkedId() >= 0) edit.common.trackIndex = m_track->checkedId();
    // Read-only fields are shown, not entered: they are not sent back.
    if (!m_numericLocked) {
        edit.common.scaleLeft = static_cast<float>(m_minimum->value());
        edit.common.scaleRight = static_cast<float>(m_maximum->value());
        const std::optional<std::int32_t> multiplier = ParseIntensityMultiplier(m_multiplier->text().toStdString(), m_sink);
        if (!multiplier) return false;
        edit.intensityMultiplier = *multiplier;
    }
    return ApplyImageProperties(m_doc, m_trace, edit, m_sink);
}

void CImagePropertiesDlg::accept()
{
    if (ApplyToTrace()) QDialog::accept();
}

} // namespace ba
