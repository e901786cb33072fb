#include "tools/ViewControllerNotes.h"

#include "model/Appearance.h"
#include "platform/Diagnostics.h"
#include "ui_ViewControllerNotes.h"

#include <QFileInfo>
#include <QKeyEvent>
#include <QScrollBar>
#include <QShortcut>
#include <QTimer>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

ViewControllerNotes::ViewControllerNotes(const Folders &folders, QWidget *parent)
    : Screen(parent, Qt::Window)
    , ui(setUpForm<Ui::ViewControllerNotes>(*this))
    , report(*ui->mainLayout, [this] { return unsaved(); })
{
    if (!folders.documents.isEmpty())
        file.emplace(folders.documents + u"/zandunotes.txt"_s, folders.state);
    ui->findBar->hide();
    connectActions();
    viewDidLoad();
    if (!file)
        return;
    watch = std::make_unique<FileWatch>(file->path());
    connect(watch.get(), &FileWatch::mayHaveChanged, this, &ViewControllerNotes::followFile);
}

ViewControllerNotes::~ViewControllerNotes() = default;

void ViewControllerNotes::connectActions()
{
    const auto onKeys = [this](QKeySequence::StandardKey keys, auto action) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
    };
    onKeys(QKeySequence::Find, [this] { showFindBar(); });
    onKeys(QKeySequence::FindNext, [this] { find({}); });
    onKeys(QKeySequence::FindPrevious, [this] { find(QTextDocument::FindBackward); });
    onKeys(QKeySequence::Close, [this] { close(); });
    connect(ui->findField, &QLineEdit::textEdited, ui->findResult, &QLabel::clear);
    connect(ui->findField, &QLineEdit::returnPressed, this, [this] { find({}); });
    connect(ui->findNextButton, &QPushButton::clicked, this, [this] { find({}); });
    connect(ui->findPreviousButton, &QPushButton::clicked, this,
            [this] { find(QTextDocument::FindBackward); });
    connect(ui->closeFindButton, &QToolButton::clicked, this, &ViewControllerNotes::hideFindBar);
}

/// Escape closes the find bar only, not the notes, whose undo steps would be gone.
void ViewControllerNotes::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        hideFindBar();
    else
        Screen::keyPressEvent(event);
}

void ViewControllerNotes::viewDidLoad()
{
    loadNotes();
    ui->textEdit->moveCursor(QTextCursor::End);
}

/// Until the notes are shown again the text keeps its colour, and so do the ground and the selection that it
/// is read against.
void ViewControllerNotes::viewDidAppear()
{
    QPalette colors = ui->textEdit->palette();
    for (const QPalette::ColorRole role : {QPalette::Base, QPalette::Highlight, QPalette::HighlightedText})
        colors.setColor(role, palette().color(role));
    ui->textEdit->setPalette(colors);
    ui->textEdit->setTextColor(appearanceTextColor());
    if (timer)
        return;
    timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this] { tick(timer); });
    timer->start(std::chrono::seconds(30));
}

void ViewControllerNotes::viewWillDisappear()
{
    if (!timer)
        return;
    timer->stop();
    timer->deleteLater();
    timer.clear();
}

void ViewControllerNotes::viewDidDisappear()
{
    saveNotes();
}

void ViewControllerNotes::tick(QObject *)
{
    saveNotes();
    diagnostics::line("Saved File");
}

/// False when there was no text to be had from the file.
bool ViewControllerNotes::loadNotes()
{
    if (!file)
        return false;
    const std::optional<QString> text = file->read();
    const bool isNoText = !text && file->readProblem().isEmpty() && QFileInfo::exists(file->path());
    report.withdrawNews(unread);
    unread.clear();
    if (isNoText)
        unread.append(
            u"%1 could not be read as text. It is copied before it is overwritten."_s.arg(file->path()));
    else if (!text && !file->readProblem().isEmpty())
        unread.append(
            u"%1 cannot be read: %2. It is shown as soon as it can be read, unless you type meanwhile."_s.arg(
                file->path(), file->readProblem()));
    report.tell(true, unread, file->takeCopyPath());
    if (text)
        ui->textEdit->setText(*text);
    if (!isNoText)
        filedRevision = ui->textEdit->document()->revision();
    if (text)
        diagnostics::line("Read File", *text);
    else
        diagnostics::line("Error");
    return text.has_value();
}

/// Shows what another program has written, unless there is something here that is not in the file yet: then
/// both are kept when that is written. True when there is nothing to be written.
bool ViewControllerNotes::followFile()
{
    if (ui->textEdit->document()->revision() != filedRevision)
        return false;
    if (!file->readProblem().isEmpty()) {
        file->read();
        if (!file->readProblem().isEmpty())
            return true;
    } else if (!file->isChangedByOthers()) {
        return isLeftAlone;
    }
    const int anchor = ui->textEdit->textCursor().anchor();
    const int place = ui->textEdit->textCursor().position();
    const int scrolled = ui->textEdit->verticalScrollBar()->value();
    isLeftAlone = !loadNotes();
    filedRevision = ui->textEdit->document()->revision();
    const int end = ui->textEdit->document()->characterCount() - 1;
    QTextCursor cursor = ui->textEdit->textCursor();
    cursor.setPosition(std::min(anchor, end));
    cursor.setPosition(std::min(place, end), QTextCursor::KeepAnchor);
    ui->textEdit->setTextCursor(cursor);
    ui->textEdit->verticalScrollBar()->setValue(scrolled);
    return true;
}

/// The text as it is to be in the file.
QByteArray ViewControllerNotes::content()
{
    const int revision = ui->textEdit->document()->revision();
    if (std::exchange(savedRevision, revision) != revision)
        saved = ui->textEdit->text().toUtf8();
    return saved;
}

/// Writes the notes, and tells what has become of their file.
bool ViewControllerNotes::writeNotes()
{
    if (followFile())
        return true;
    const bool isWritten = file->write(content());
    if (isWritten) {
        filedRevision = ui->textEdit->document()->revision();
        isLeftAlone = false;
    }
    report.tell(isWritten, {}, file->takeCopyPath());
    return isWritten;
}

Unsaved ViewControllerNotes::unsaved()
{
    return {.what = u"The notes"_s,
            .path = file->path(),
            .reason = [this] { return file->errorString(); },
            .tryAgain = [this] { return writeNotes(); },
            .content =
                [this] {
                    return content();
                }};
}

/// Notes that cannot be saved stay open, unless the user lets them go.
bool ViewControllerNotes::viewShouldClose()
{
    const bool isUnchanged = ui->textEdit->document()->revision() == filedRevision;
    return !file || isUnchanged || report.mayClose(u"&Close Without Saving"_s);
}

bool ViewControllerNotes::saveNotes()
{
    if (!file)
        return true;
    if (!writeNotes()) {
        diagnostics::line("Error");
        return false;
    }
    diagnostics::line("Write File", saved);
    return true;
}

void ViewControllerNotes::showFindBar()
{
    ui->findBar->show();
    ui->findField->setFocus();
    ui->findField->selectAll();
}

void ViewControllerNotes::hideFindBar()
{
    ui->findBar->hide();
    ui->textEdit->setFocus();
}

/// Selects the next place of the text that is looked for, beyond the end again from the start.
void ViewControllerNotes::find(QTextDocument::FindFlags direction)
{
    const QString wanted = ui->findField->text();
    if (wanted.isEmpty()) {
        showFindBar();
        return;
    }
    bool isFound = ui->textEdit->find(wanted, direction);
    if (!isFound) {
        const QTextCursor place = ui->textEdit->textCursor();
        ui->textEdit->moveCursor(direction ? QTextCursor::End : QTextCursor::Start);
        isFound = ui->textEdit->find(wanted, direction);
        if (!isFound) {
            ui->textEdit->setTextCursor(place);
            ui->findBar->show(); // which says so
        }
    }
    ui->findResult->setText(isFound ? QString() : u"Not found"_s);
}
