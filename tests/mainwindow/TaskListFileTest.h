#pragma once

#include "mainwindow/TaskListFile.h"
#include "model/TaskManager.h"
#include "platform/Preferences.h"

#include <QObject>
#include <QTemporaryDir>

#include <memory>

class TaskListFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void writesTheRow();
    void realNumbers_data();
    void realNumbers();
    void dates_data();
    void dates();
    void textsKeepTheirSeparators();
    void randomListsComeBack();
    void olderRows_data();
    void olderRows();
    void skippedRows_data();
    void skippedRows();
    void damagedFileIsCopiedBeforeTheNextWrite();
    void colorsStayLightInTheFile();
    void appearanceKeepsSearchAndSelection();
    void appearanceKeepsTheListThatCannotBeRead();
    void failuresAreToldAndLoseNothing();
    void sampleModel();

private:
    QString filePath() const { return home->filePath(QStringLiteral("Documents/zandulist.txt")); }
    void reopen();
    void setDark(bool dark);

    std::unique_ptr<QTemporaryDir> home;
    Preferences preferences{QStringLiteral("/nonexistent/preferences.ini")};
    std::unique_ptr<TaskManager> manager;
    std::unique_ptr<TaskListFile> file;
};
