#include "tools/ViewControllerWhiteboard.h"

#include "platform/Diagnostics.h"
#include "tools/PictureStep.h"
#include "ui_ViewControllerWhiteboard.h"
#include "widgets/Palettes.h"

#include <QDir>
#include <QKeyEvent>
#include <QScreen>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

constexpr int bandHeight = 60;

ViewControllerWhiteboard::ViewControllerWhiteboard(const Services &services, QWidget *parent)
    : Screen(parent, Qt::Window)
    , ui(setUpForm<Ui::ViewControllerWhiteboard>(*this))
    , report(*ui->bannerRows, [this] { return unsaved(); })
    , pen(services.pen)
    , colorPanel(services.colorPanel)
    , stateFolder(services.stateFolder)
{
    // White in light and dark, and so are the buttons' surroundings.
    QPalette palette = palettes::light();
    palette.setColor(QPalette::Window, Qt::white);
    setPalette(palette);
    auto *aboveCanvas = new QVBoxLayout(this);
    aboveCanvas->setContentsMargins({});
    aboveCanvas->addWidget(ui->banners);
    aboveCanvas->addStretch();
    ui->color->setPanel(colorPanel);
    connectActions();
    viewDidLoad();
}

ViewControllerWhiteboard::~ViewControllerWhiteboard() = default;

void ViewControllerWhiteboard::connectActions()
{
    const auto onClick = [this](QAbstractButton *button,
                                void (ViewControllerWhiteboard::*action)(QObject *)) {
        connect(button, &QAbstractButton::clicked, this, [this, button, action] { (this->*action)(button); });
    };
    onClick(ui->eraserButton, &ViewControllerWhiteboard::eraser);
    onClick(ui->lineButton, &ViewControllerWhiteboard::drawLine);
    onClick(ui->revertButton, &ViewControllerWhiteboard::revertToImage);
    onClick(ui->deleteButton, &ViewControllerWhiteboard::deleteImage);
    onClick(ui->shareButton, &ViewControllerWhiteboard::shareImage);
    onClick(ui->undoButton, &ViewControllerWhiteboard::undo);
    onClick(ui->redoButton, &ViewControllerWhiteboard::redo);
    connect(&steps, &QUndoStack::canUndoChanged, ui->undoButton, &QWidget::setEnabled);
    connect(&steps, &QUndoStack::canRedoChanged, ui->redoButton, &QWidget::setEnabled);
    connect(&steps, &QUndoStack::undoTextChanged, this,
            [this](const QString &step) { ui->undoButton->setToolTip((u"Undo "_s + step).trimmed()); });
    connect(&steps, &QUndoStack::redoTextChanged, this,
            [this](const QString &step) { ui->redoButton->setToolTip((u"Redo "_s + step).trimmed()); });
    // A key that is held down takes one step back: who looks at the board sees it too late to let go.
    const auto onKeyOnce = [this](QKeySequence::StandardKey key, const auto &action) {
        auto *shortcut = new QShortcut(key, this);
        shortcut->setAutoRepeat(false);
        connect(shortcut, &QShortcut::activated, this, action);
    };
    onKeyOnce(QKeySequence::Undo, [this] { undo(ui->undoButton); });
    onKeyOnce(QKeySequence::Redo, [this] { redo(ui->redoButton); });
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QDialog::close);
    connect(ui->color, &ColorWell::colorChosen, this, [this] { selectColor(ui->color); });
}

/// Escape does not close the whiteboard in the middle of a stroke, as it would a dialog.
void ViewControllerWhiteboard::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape)
        Screen::keyPressEvent(event);
}

void ViewControllerWhiteboard::resizeEvent(QResizeEvent *event)
{
    Screen::resizeEvent(event);
    ui->whiteboard->setGeometry(canvas());
    ui->band->setGeometry(0, height() - bandHeight, width(), bandHeight);
    if (line)
        line->setGeometry(canvas());
}

QRect ViewControllerWhiteboard::canvas() const
{
    return {0, 0, width(), height() - bandHeight};
}

void ViewControllerWhiteboard::viewDidLoad()
{
    addDrawingLayer();
    ui->color->setColor(pen.lineColor);
}

void ViewControllerWhiteboard::viewDidAppear()
{
    path = QDir::currentPath();
    fileManager.emplace(path + u"/zandulistwhiteboard.png"_s, stateFolder);
    const QImage before = ui->whiteboard->picture();
    showPictureFile();
    if (ui->whiteboard->picture() != before)
        steps.clear();
    watch = std::make_unique<FileWatch>(fileManager->path());
    connect(watch.get(), &FileWatch::mayHaveChanged, this, &ViewControllerWhiteboard::followFile);
    // As large as it was made, unless the display is too small for its buttons.
    const QSize frame(0, style()->pixelMetric(QStyle::PM_TitleBarHeight)); // the real one comes later
    setFixedSize(size().boundedTo(screen()->availableSize() - frame));
}

void ViewControllerWhiteboard::viewWillDisappear()
{
    savePicture();
}

void ViewControllerWhiteboard::viewDidDisappear()
{
    colorPanel.orderOut();
    ui->color->deactivate();
}

/// Shows the picture as it is in its file; nothing when there is none.
void ViewControllerWhiteboard::showPictureFile()
{
    report.withdrawNews(fileManager->complaint());
    ui->whiteboard->setPicture(fileManager->read());
    isChanged = false;
    report.tell(true, fileManager->complaint(), fileManager->takeCopyPath());
}

QImage ViewControllerWhiteboard::capture() const
{
    if (!isChanged && !ui->whiteboard->picture().isNull())
        return ui->whiteboard->picture();
    return ui->whiteboard->capture(*line);
}

/// Shows what another program has written, unless there is something here that is not in the file yet: then
/// both are kept when that is written. True when there is nothing to be written.
bool ViewControllerWhiteboard::followFile()
{
    if (isChanged || !fileManager->unfiled().isNull())
        return false;
    const std::optional<QImage> newer = fileManager->readNewer();
    if (newer && !newer->isNull()) {
        clearBoard();
        ui->whiteboard->setPicture(*newer);
        steps.clear(); // they are none of that picture's
        report.withdrawNews(fileManager->complaint());
    }
    return newer.has_value();
}

bool ViewControllerWhiteboard::savePicture()
{
    return followFile() || store(capture());
}

bool ViewControllerWhiteboard::store(const QImage &image)
{
    const bool isWritten = fileManager->write(image);
    // What the file now holds, without reading it back; and where it could not be written, the stroke is not
    // lost.
    ui->whiteboard->setPicture(image);
    isChanged = false;
    report.tell(isWritten, {}, fileManager->takeCopyPath());
    return isWritten;
}

void ViewControllerWhiteboard::mergeStroke()
{
    const QImage before = ui->whiteboard->picture();
    const bool isStroke = isChanged;
    savePicture();
    if (isStroke)
        addStep(u"Stroke"_s, before);
}

/// \param before  what was shown; what is shown now is the step's outcome
void ViewControllerWhiteboard::addStep(const QString &name, const QImage &before)
{
    const auto show = [this](const QImage &picture) {
        replaceDrawingLayer();
        store(picture);
    };
    const QImage &after = ui->whiteboard->picture();
    if (auto step = std::make_unique<PictureStep>(name, before, after, *ui->whiteboard, show);
        !step->isEmpty())
        steps.add(std::move(step));
}

Unsaved ViewControllerWhiteboard::unsaved()
{
    return {.what = u"The whiteboard"_s,
            .path = fileManager->path(),
            .reason = [this] { return fileManager->errorString(); },
            .tryAgain =
                [this] {
                    line->finish();
                    return savePicture();
                },
            .content =
                [this] {
                    return PictureFile::encoded(capture());
                }};
}

/// A picture that cannot be saved stays open, unless the user lets it go.
bool ViewControllerWhiteboard::viewShouldClose()
{
    line->finish(); // a stroke that is being drawn is a step like others
    const bool isUnchanged = !fileManager || (!isChanged && fileManager->isFiled());
    return isUnchanged || report.mayClose(u"&Close Without Saving"_s);
}

void ViewControllerWhiteboard::clearBoard()
{
    ui->whiteboard->setPicture(QImage());
    const QList<QWidget *> children = findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    diagnostics::line("Subviews:", std::ranges::count(children, false, &QWidget::isWindow));
    replaceDrawingLayer();
}

void ViewControllerWhiteboard::replaceDrawingLayer()
{
    const bool hadFocus = line->hasFocus();
    line->hide();
    line->setParent(nullptr);
    line->deleteLater();
    addDrawingLayer();
    if (hadFocus)
        line->setFocus();
}

void ViewControllerWhiteboard::addDrawingLayer()
{
    line = new Line(pen, *this);
    connect(line, &Line::extended, this, [this] { isChanged = true; });
    connect(line, &Line::finished, this, &ViewControllerWhiteboard::mergeStroke);
    line->setGeometry(canvas());
    line->stackUnder(ui->banners);
    line->show();
}
