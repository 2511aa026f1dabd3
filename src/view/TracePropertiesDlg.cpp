#include "view/TracePropertiesDlg.h"

#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

#include <array>
#include <cfloat>

namespace ba {

namespace {

// In the order of the pen style codes.
constexpr std::array<const char*, 6> kPenStyleNames{"Solid", "Dash", "Dot", "Dash Dot", "Dash Dot Dot", "None"};
// In the order of the line colour table.
constexpr std::array<const char*, kLineColourCount> kColourNames{"Black", "Red", "Green", "Blue",
                                                                "Magenta", "Cyan", "Yellow"};

// Scale ends are free numbers of either sign; the spin boxes only need a range that
// holds every float a plot scale could sensibly use.
constexpr double kScaleLimit = 1.0e9;

QDoubleSpinBox* MakeScaleEdit(QWidget* parent)
{
    auto* edit = new QDoubleSpinBox(parent);
    edit->setRange(-kScaleLimit, kScaleLimit);
    edit->setDecimals(4);
    return edit;
}

} // namespace

CTracePropertiesDlg::CTracePropertiesDlg(CBoreAnalystDoc& doc, CTrace& trace, IMessageSink& sink, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_trace(trace), m_sink(sink)
{
    setWindowTitle(tr("Trace Properties - %1").arg(QString::fromStdString(trace.Name())));
    m_pages = new QTabWidget(this);
    m_pages->addTab(BuildGeneralPage(), tr("General"));
    m_pages->addTab(BuildScalePage(), tr("Scale"));
    m_pages->addTab(BuildPenPage(), tr("Pen"));
    // Only line traces draw with a pen.
    m_pages->setTabEnabled(2, dynamic_cast<CLineTrace*>(&trace) != nullptr);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &CTracePropertiesDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CTracePropertiesDlg::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pages);
    layout->addWidget(buttons);
    LoadFromTrace();
}

QWidget* CTracePropertiesDlg::BuildGeneralPage()
{
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    m_name = new QLineEdit(page);
    m_name->setObjectName("name");
    m_units = new QLineEdit(page);
    m_units->setObjectName("units");
    m_hidden = new QCheckBox(tr("Hide this trace"), page);
    m_hidden->setObjectName("hidden");
    form->addRow(tr("&Name:"), m_name);
    form->addRow(tr("&Units:"), m_units);
    form->addRow(QString(), m_hidden);
    return page;
}

QWidget* CTracePropertiesDlg::BuildScalePage()
{
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    m_scaleLeft = MakeScaleEdit(page);
    m_scaleLeft->setObjectName("scaleLeft");
    m_scaleRight = MakeScaleEdit(page);
    m_scaleRight->setObjectName("scaleRight");
    m_track = new QComboBox(page);
    m_track->setObjectName("track");
    for (std::size_t i = 0; i < m_doc.TrackCount(); ++i) m_track->addItem(QString::fromStdString(m_doc.Track(i).Name()));
    form->addRow(tr("&Left:"), m_scaleLeft);
    form->addRow(tr("&Right:"), m_scaleRight);
    form->addRow(tr("&Track:"), m_track);
    return page;
}

QWidget* CTracePropertiesDlg::BuildPenPage()
{
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    m_penWidth = new QSpinBox(page);
    m_penWidth->setObjectName("penWidth");
    m_penWidth->setRange(kMinPenWidth, kMaxPenWidth);
    m_penStyle = new QComboBox(page);
    m_penStyle->setObjectName("penStyle");
    for (const char* name : kPenStyleNames) m_penStyle->addItem(tr(name));
    m_colour = new QComboBox(page);
    m_colour->setObjectName("colour");
    for (std::int32_t i = 0; i < kLineColourCount; ++i) {
        const std::uint32_t ref = LineColourFromIndex(i); // 0x00BBGGRR
        QPixmap swatch(16, 16);
        swatch.fill(QColor(int(ref & 0xFF), int((ref >> 8) & 0xFF), int((ref >> 16) & 0xFF)));
        m_colour->addItem(QIcon(swatch), tr(kColourNames[static_cast<std::size_t>(i)]));
    }
    form->addRow(tr("&Width:"), m_penWidth);
    form->addRow(tr("&Style:"), m_penStyle);
    form->addRow(tr("&Colour:"), m_colour);
    return page;
}

void CTracePropertiesDlg::LoadFromTrace()
{
    m_name->setText(QString::fromStdString(m_trace.Name()));
    m_units->setText(QString::fromStdString(m_trace.Units()));
    m_hidden->setChecked(m_trace.Flag(kHiddenTraceFlag));
    m_scaleLeft->setValue(m_trace.ScaleLeft());
    m_scaleRight->setValue(m_trace.ScaleRight());
    const std::int32_t track = m_trace.TrackIndex();
    m_track->setCurrentIndex(track >= 0 && std::size_t(track) < m_doc.TrackCount() ? track : -1);
    if (const auto* line = dynamic_cast<const CLineTrace*>(&m_trace)) {
        m_penWidth->setValue(line->PenWidth());
        const std::int32_t style = line->PenStyle();
        m_penStyle->setCurrentIndex(style >= 0 && style < m_penStyle->count() ? style : -1);
        const std::int32_t colour = line->ColourIndex();
        m_colour->setCurrentIndex(colour >= 0 && colour < kLineColourCount ? colour : -1);
    }
}

bool CTracePropertiesDlg::ApplyToTrace()
{
    TracePropertyEdit edit;
    edit.name = m_name->text().toStdString();
    edit.units = m_units->text().toStdString();
    edit.hidden = m_hidden->isChecked();
    edit.scaleLeft = static_cast<float>(m_scaleLeft->value());
    edit.scaleRight = static_cast<float>(m_scaleRight->value());
    // A trace whose stored track index names no track keeps it until the user picks one.
    if (m_track->currentIndex() >= 0) edit.trackIndex = m_track->currentIndex();
    if (dynamic_cast<const CLineTrace*>(&m_trace) != nullptr) {
        edit.penWidth = m_penWidth->value();
        if (m_penStyle->currentIndex() >= 0) edit.penStyle = m_penStyle->currentIndex();
        if (m_colour->currentIndex() >= 0) edit.colourIndex = m_colour->currentIndex();
    }
    return ApplyTraceProperties(m_doc, m_trace, edit, m_sink);
}

void CTracePropertiesDlg::accept()
{
    if (ApplyToTrace()) QDialog::accept();
}

} // namespace ba
