#include "app/UIUtil.h"
#include "model/TaskShareText.h"
#include "platform/Diagnostics.h"
#include "tools/ViewControllerWhiteboard.h"
#include "ui_ViewControllerWhiteboard.h"
#include "widgets/SharingServicePicker.h"

#include <QIcon>

using namespace Qt::StringLiterals;

constexpr Color white{1.0, 1.0, 1.0, 1.0};

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
    const QImage before = ui->whiteboard->picture();
    const bool isOthers = fileManager->isChangedByOthers();
    clearBoard();
    diagnostics::line("Revert Image");
    if (const QImage newest = fileManager->unfiled(); newest.isNull())
        showPictureFile();
    else
        ui->whiteboard->setPicture(newest);
    isChanged = false;
    if (isOthers)
        steps.clear();
    else
        addStep(u"Revert"_s, before);
}

void ViewControllerWhiteboard::deleteImage(QObject *)
{
    if (!util().askYesNo(u"Are you sure you want to erase the Whiteboard ?"_s, QString()))
        return;
    diagnostics::line("Ok Pressed!");
    diagnostics::line("Delete Image");
    const QImage before = ui->whiteboard->picture();
    clearBoard();
    isChanged = true;
    addStep(u"Erase All"_s, before);
}

void ViewControllerWhiteboard::shareImage(QObject *)
{
    line->finish();
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

/// A stroke that is being drawn is the last step, and no step is taken on a picture that others have written.
void ViewControllerWhiteboard::beforeStep()
{
    line->finish();
    followFile();
}

void ViewControllerWhiteboard::undo(QObject *)
{
    beforeStep();
    steps.undo();
}

void ViewControllerWhiteboard::redo(QObject *)
{
    beforeStep();
    steps.redo();
}
