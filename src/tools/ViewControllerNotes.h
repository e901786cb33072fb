#pragma once

#include "platform/FileWatch.h"
#include "platform/TextFile.h"
#include "widgets/FileReport.h"
#include "widgets/Screen.h"

#include <QPointer>
#include <QTextDocument>

#include <memory>
#include <optional>

class QTimer;

namespace Ui {
class ViewControllerNotes;
}

/// The notes pad: one plain text that is kept in `zandunotes.txt` while it is typed.
class ViewControllerNotes : public Screen
{
    Q_OBJECT

public:
    struct Folders
    {
        QString documents; ///< where the notes are; empty when there is no such folder
        QString state;     ///< where an unfinished write is kept
    };

    explicit ViewControllerNotes(const Folders &folders, QWidget *parent = nullptr);
    ~ViewControllerNotes() override;

public slots:
    void tick(QObject *sender);

protected:
    bool viewShouldClose() override;
    void viewDidAppear() override;
    void viewWillDisappear() override;
    void viewDidDisappear() override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void connectActions();
    void viewDidLoad();

    bool loadNotes();
    bool followFile();
    bool writeNotes();
    bool saveNotes();
    QByteArray content();
    Unsaved unsaved();

    void showFindBar();
    void hideFindBar();
    void find(QTextDocument::FindFlags direction);

    std::unique_ptr<Ui::ViewControllerNotes> ui;
    std::optional<TextFile> file;
    FileReport report;
    QStringList unread; ///< what was told of what could not be read
    QPointer<QTimer> timer;
    QByteArray saved;         ///< what the last save wrote
    int savedRevision = -1;   ///< of the document then
    int filedRevision = -1;   ///< of the document when it was last read or successfully written
    bool isLeftAlone = false; ///< the file, as long as nothing is typed: others have made it what it is
    std::unique_ptr<FileWatch> watch;
};
