#pragma once

#include "platform/FileWatch.h"
#include "tools/PictureFile.h"
#include "tools/PictureHistory.h"
#include "tools/WhiteboardLine.h"
#include "widgets/FileReport.h"
#include "widgets/Screen.h"

#include <memory>
#include <optional>

class ColorPanel;

namespace Ui {
class ViewControllerWhiteboard;
}

/// The whiteboard: a canvas above a band of buttons. Every stroke is merged into the picture file
/// `zandulistwhiteboard.png` in the process's working directory as soon as it is drawn.
class ViewControllerWhiteboard : public Screen
{
    Q_OBJECT

public:
    using Line = WhiteboardLine;
    struct Services
    {
        WhiteboardPen &pen;
        ColorPanel &colorPanel;
        QString stateFolder; ///< where an unfinished write is kept
    };

    explicit ViewControllerWhiteboard(const Services &services, QWidget *parent = nullptr);
    ~ViewControllerWhiteboard() override;

    /// Writes what the canvas shows. Where nothing was drawn since the picture was read or written, it stays
    /// as it is to the pixel, also when it is of another display's resolution.
    /// False when the file could not be written, which is told; the next save then does it with all strokes.
    bool savePicture();

public slots:
    void selectColor(QObject *sender);
    void eraser(QObject *sender);
    void drawLine(QObject *sender);
    void revertToImage(QObject *sender);
    void deleteImage(QObject *sender);
    void shareImage(QObject *sender);
    /// Takes the last step back, also in the picture file.
    void undo(QObject *sender);
    void redo(QObject *sender);

protected:
    bool viewShouldClose() override;
    void viewDidAppear() override;
    void viewWillDisappear() override;
    void viewDidDisappear() override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void connectActions();
    void viewDidLoad();

    QRect canvas() const;
    QImage capture() const;
    void mergeStroke();
    void addStep(const QString &name, const QImage &before);
    void beforeStep();
    bool store(const QImage &image);
    Unsaved unsaved();
    void showPictureFile();
    bool followFile();
    void clearBoard();
    void replaceDrawingLayer();
    void addDrawingLayer();

    std::unique_ptr<Ui::ViewControllerWhiteboard> ui;
    FileReport report;
    WhiteboardPen &pen;
    ColorPanel &colorPanel;
    QString stateFolder;
    std::optional<PictureFile> fileManager; ///< once the screen is shown
    QString path;                           ///< the folder of the picture
    Line *line = nullptr;
    bool isChanged = false; ///< since the picture was read or captured
    PictureHistory steps;   ///< since the screen came up, or others have written the file
    std::unique_ptr<FileWatch> watch;
};
