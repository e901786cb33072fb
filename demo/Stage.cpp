#include "Stage.h"

#include "Hand.h"

#include <QApplication>
#include <QWidget>

#include <chrono>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

static void say(const QString &line)
{
    std::fputs(qPrintable(line + u'\n'), stdout);
    std::fflush(stdout);
}

Stage::Stage(const QString &pictureFolder)
    : pictures(pictureFolder)
{
    require(pictures.mkpath(u"."_s), pictureFolder + u": cannot be made"_s);
    const QStringList earlier = pictures.entryList({u"[0-9][0-9]-*.png"_s}, QDir::Files);
    for (const QString &name : earlier)
        require(pictures.remove(name), name + u": cannot be removed"_s);

    // A dialog that nobody answers would keep the tour waiting for ever, and no exception gets out of its
    // event loop.
    stepLimit.setSingleShot(true);
    stepLimit.setInterval(std::chrono::minutes(3));
    QObject::connect(&stepLimit, &QTimer::timeout, &stepLimit, [this] {
        const QWidget *dialog = QApplication::activeModalWidget();
        fail(dialog ? u"the step hangs in a dialog: "_s + dialog->windowTitle()
                    : u"the step takes too long"_s);
        std::_Exit(EXIT_FAILURE);
    });
}

void Stage::step(const QString &title)
{
    stepTitle = title;
    ++stepCount;
    stepLimit.start();
    say(u"%1 %2"_s.arg(stepCount, 2, 10, QLatin1Char('0')).arg(title));
}

void Stage::check(bool holds, const QString &what)
{
    ++checkCount;
    require(holds, what);
}

void Stage::picture(QWidget &widget, const QString &name)
{
    hand::settle();
    require(widget.isVisible(), name + u": nothing to be seen"_s);
    keepPicture(widget.grab(), name);
}

void Stage::keepPicture(const QPixmap &picture, const QString &name)
{
    const QString fileName = u"%1-%2.png"_s.arg(++pictureCount, 2, 10, QLatin1Char('0')).arg(name);
    require(picture.save(pictures.filePath(fileName)), fileName + u": cannot be written"_s);
}

void Stage::finish()
{
    stepLimit.stop();
    say(u"tour: %1 steps, %2 checks, %3 pictures"_s.arg(stepCount).arg(checkCount).arg(pictureCount));
}

void Stage::fail(const QString &reason)
{
    stepLimit.stop();
    say(u"tour: FAILED in step %1, %2\n    %3"_s.arg(QString::number(stepCount), stepTitle, reason));
}
