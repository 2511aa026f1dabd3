#pragma once
// Helpers for tests that drive the processing dialogs through their controls and through
// the main frame's menu.

#include "AppTestSupport.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QTimer>
#include <QtTest>

#include <filesystem>
#include <functional>

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

} // namespace ba::test
