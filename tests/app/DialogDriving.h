#pragma once
// Helpers for tests that drive the processing dialogs through their controls and through
// the main frame's menu.

#include "AppTestSupport.h"
#include "settings/SettingsStore.h"
#include "support/TempDir.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QTimer>
#include <QtTest>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ba::test {

inline QStringList ComboItems(const QComboBox& combo)
{
    QStringList items;
    for (int i = 0; i < combo.count(); ++i) items << combo.itemText(i);
    return items;
}

inline QAction* FindMenuAction(QWidget& frame, const QString& text)
{
    for (QAction* action : frame.findChildren<QAction*>()) {
        if (action->text() == text) return action;
    }
    return nullptr;
}

// Runs `drive` on the modal dialog of type T as soon as the frame opens it.
template <typename T>
void WhenModalDialogOpens(std::function<void(T&)> drive)
{
    QTimer::singleShot(0, [drive] {
        auto* dialog = qobject_cast<T*>(QApplication::activeModalWidget());
        if (!dialog) {
            QFAIL("the expected dialog did not open");
            return;
        }
        drive(*dialog);
    });
}

// Points the model repository at a database file of the test's own for its lifetime.
class RepositoryFileForTest {
public:
    explicit RepositoryFileForTest(const std::filesystem::path& path)
    {
        qputenv("BA_REPOSITORY", ToQString(path).toLocal8Bit());
    }
    ~RepositoryFileForTest() { qunsetenv("BA_REPOSITORY"); }
    RepositoryFileForTest(const RepositoryFileForTest&) = delete;
    RepositoryFileForTest& operator=(const RepositoryFileForTest&) = delete;
};

// Points the platform settings store at a file of the test's own; Read gives a value of
// the dialog key `key`.
class SettingsFileForTest {
public:
    explicit SettingsFileForTest(std::string_view key) : m_key(key), m_path(m_dir.Path("settings.json"))
    {
        qputenv("BA_SETTINGS_FILE", ToQString(m_path).toLocal8Bit());
    }
    ~SettingsFileForTest() { qunsetenv("BA_SETTINGS_FILE"); }
    SettingsFileForTest(const SettingsFileForTest&) = delete;
    SettingsFileForTest& operator=(const SettingsFileForTest&) = delete;
    const std::filesystem::path& Path() const { return m_path; }
    std::optional<std::string> Read(const std::string& name) const
    {
        return MakeFileSettingsStore(m_path)->Read(SettingsRoot::LocalMachine, m_key + name);
    }

private:
    std::string m_key;
    TempDir m_dir;
    std::filesystem::path m_path;
};

} // namespace ba::test
