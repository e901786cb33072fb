#include "tools/ViewControllerWhiteboard.h"

#include "app/UIUtil.h"
#include "model/TaskShareText.h"
#include "platform/Diagnostics.h"
#include "ui_ViewControllerWhiteboard.h"
#include "widgets/Palettes.h"
#include "widgets/SharingServicePicker.h"

#include <QDir>
#include <QIcon>
#include <QKeyEvent>
#include <QScreen>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int bandHeight = 60;
const QString pictureName = u"zandulistwhiteboard.png"_s;
constexpr Color white{1.0, 1.0, 1.0, 1.0};

} // namespace

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
    fileManager.emplace(path + u'/' + pictureName, stateFolder);
    showPictureFile();
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
    QStringList news;
    ui->whiteboard->setPicture(fileManager->read(news));
    isChanged = false;
    report.tell(true, news, fileManager->takeCopyPath());
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
        report.withdrawNews();
    }
    return newer.has_value();
}

bool ViewControllerWhiteboard::savePicture()
{
    if (followFile())
        return true;
    const QImage image = capture();
    const bool isWritten = fileManager->write(image);
    // What the file now holds, without reading it back; and where it could not be written, the stroke is not
    // lost.
    ui->whiteboard->setPicture(image);
    isChanged = false;
    report.tell(isWritten, {}, fileManager->takeCopyPath());
    return isWritten;
}

Unsaved ViewControllerWhiteboard::unsaved()
{
    return {.what = u"The whiteboard"_s,
            .path = fileManager->path(),
            .reason = [this] { return fileManager->errorString(); },
            .tryAgain = [this] { return savePicture(); },
            .content =
                [this] {
                    return PictureFile::encoded(capture());
                }};
}

/// A picture that cannot be saved stays open, unless the user lets it go.
bool ViewControllerWhiteboard::viewShouldClose()
{
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
    line->hide();
    line->setParent(nullptr);
    line->deleteLater();
    addDrawingLayer();
}

void ViewControllerWhiteboard::addDrawingLayer()
{
    line = new Line(pen, *this);
    connect(line, &Line::extended, this, [this] { isChanged = true; });
    connect(line, &Line::finished, this, &ViewControllerWhiteboard::savePicture);
    line->setGeometry(canvas());
    line->stackUnder(ui->banners);
    line->show();
}

void ViewControllerWhiteboard::selectColor(QObject *)
{
    diagnostics::line("Select Color");
    pen.lineColor = ui->color->color();
    pen.lineWidth = 5.0;
    colorPanel.orderOut();
    ui->color->deactivate();
    const Color &color = pen.lineColor;
    diagnostics::line("Select Color",
                      u"%1 %2 %3 %4"_s.arg(color.red).arg(color.green).arg(color.blue).arg(color.alpha));
}

void ViewControllerWhiteboard::eraser(QObject *)
{
    ui->color->setColor(white);
    pen.lineColor = ui->color->color();
    pen.lineWidth = 10.0;
}

void ViewControllerWhiteboard::drawLine(QObject *)
{
    diagnostics::line("Line Pressed");
    pen.straightLineMode = !pen.straightLineMode;
    const bool isStraight = pen.straightLineMode;
    line->setCursor(isStraight ? Qt::CrossCursor : Qt::ArrowCursor);
    ui->lineButton->setIcon(
        QIcon(isStraight ? u":/icons/AppLineIcon.svg"_s : u":/icons/AppLineCurveIcon.svg"_s));
    ui->lineButton->setToolTip(isStraight ? u"STRAIGHT LINE"_s : u"DRAW"_s);
}

void ViewControllerWhiteboard::revertToImage(QObject *)
{
    clearBoard();
    diagnostics::line("Revert Image");
    const QImage newest = fileManager->unfiled();
    if (newest.isNull()) {
        showPictureFile();
        return;
    }
    ui->whiteboard->setPicture(newest);
    isChanged = false;
}

void ViewControllerWhiteboard::deleteImage(QObject *)
{
    if (!util().askYesNo(u"Are you sure you want to erase the Whiteboard ?"_s, QString()))
        return;
    diagnostics::line("Ok Pressed!");
    diagnostics::line("Delete Image");
    clearBoard();
    isChanged = true;
}

void ViewControllerWhiteboard::shareImage(QObject *)
{
    const bool isWritten = savePicture();
    colorPanel.orderOut();
    ui->color->deactivate();
    const QByteArray bytes = fileManager->content();
    const bool isPicture = !PictureFile::decoded(bytes).isNull();
    const SharingServicePicker picker(
        {.title = u"Whiteboard"_s,
         .text = u"Whiteboard\n"_s + shareFooter(),
         .picture = isPicture ? bytes : QByteArray(),
         .pictureFile = isPicture && isWritten ? fileManager->path() : QString()});
    picker.show(*ui->shareButton, Qt::BottomEdge, parentWidget() ? *parentWidget() : *this);
    if (isWritten)
        close(); // else it stays, with what it holds
}
