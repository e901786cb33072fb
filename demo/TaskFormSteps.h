#pragma once

#include <QDate>
#include <QString>

class Desktop;
class ExpectedList;
class MainWindowHandle;
class QComboBox;
class QDialog;
class Stage;

/// The steps in which a task is added, changed and shared.
class TaskFormSteps
{
public:
    TaskFormSteps(Stage &stage, const MainWindowHandle &main, ExpectedList &expected, Desktop &desktop,
                  QDate today);

    void addTask(const QString &client, const QString &teamMember);
    void editTask();
    /// \param path  the file that the text is saved to
    void shareTask(const QString &path);

private:
    static void pick(QDialog &form, const QString &box, const QString &entry);
    void refuseDate(QDialog &form);

    Stage &stage;
    const MainWindowHandle &main;
    ExpectedList &expected;
    Desktop &desktop;
    QDate today;
    QString name;
};
