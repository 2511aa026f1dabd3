#pragma once
// The box of a processing dialog that loads and saves named models from the repository: the
// stored models with a Load button, and a name and description with a Save button. The
// dialog says what loading and saving mean; the box only gathers and shows.

#include <QGroupBox>

#include <string>
#include <vector>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace ba {

class CModelBox final : public QGroupBox {
    Q_OBJECT
public:
    // `nameLabel` and `saveLabel` are the dialog's own captions for the name row and the
    // Save button.
    CModelBox(const QString& nameLabel, const QString& saveLabel, QWidget* parent);

    // Lists `names`, choosing `select` (nothing when empty), without telling anyone.
    void ShowNames(const std::vector<std::string>& names, const QString& select);

    QComboBox* Combo() const { return m_combo; }
    QPushButton* LoadButton() const { return m_load; }
    QLineEdit* NameEdit() const { return m_name; }
    QLineEdit* DescriptionEdit() const { return m_description; }
    QPushButton* SaveButton() const { return m_save; }

signals:
    void LoadRequested();
    void SaveRequested();

private:
    QComboBox* m_combo = nullptr;
    QPushButton* m_load = nullptr;
    QLineEdit* m_name = nullptr;
    QLineEdit* m_description = nullptr;
    QPushButton* m_save = nullptr;
};

} // namespace ba
