#include "app/UIUtil.h"

#include "platform/Diagnostics.h"
#include "widgets/Alert.h"
#include "widgets/TimePicker.h"

#include <QApplication>
#include <QFileInfo>
#include <QPushButton>
#include <QStringEncoder>

using namespace Qt::StringLiterals;

QPointer<SoundPlayer> player;

/// The number of bytes the text takes in UTF-8.
static qsizetype utf8Size(QStringView text)
{
    qsizetype bytes = 0;
    for (const QChar unit : text)
        bytes += unit < u'\u0080' ? 1 : unit < u'\u0800' || unit.isSurrogate() ? 2 : 3;
    return bytes;
}

UIUtil &util()
{
    static UIUtil instance;
    return instance;
}

void UIUtil::prepareSound() const
{
    const QFileInfo sound(u"bundle:ding.mp3"_s);
    if (!sound.exists())
        return;
    auto *candidate = new SoundPlayer(sound.filePath());
    candidate->setParent(qApp);
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, candidate, &QObject::deleteLater);
    QObject::connect(candidate, &SoundPlayer::failed, qApp, [candidate](const QString &reason) {
        diagnostics::line("Sound player not available:", reason);
        candidate->deleteLater();
    });
    QObject::connect(candidate, &SoundPlayer::prepared, qApp, [candidate] {
        if (player)
            player->deleteLater();
        player = candidate;
    });
    candidate->prepareToPlay();
}

bool UIUtil::askYesNo(const QString &question, const QString &informativeText, const QString &details) const
{
    Alert alert(QApplication::activeWindow(), question, informativeText);
    alert.setDetailedText(details);
    const QPushButton *yes = alert.addButton(u"Yes"_s, QMessageBox::YesRole);
    QPushButton *no = alert.addButton(u"No"_s, QMessageBox::NoRole);
    alert.setEscapeButton(no);
    alert.setDefaultButton(no); // what is asked cannot be taken back
    alert.exec();
    return alert.clickedButton() == yes;
}

QString UIUtil::truncateAtLineBreak(const QString &text) const
{
    qsizetype feed = text.indexOf(u'\n');
    while (feed > 0 && text[feed - 1] == u'\r')
        feed = text.indexOf(u'\n', feed + 1);
    const bool found = feed >= 0;
    const QStringView line = found ? QStringView(text).first(feed) : QStringView(text);
    diagnostics::line("Index Truncate:", utf8Size(line), "End Index:", utf8Size(text));
    const QString result = found ? line.toString() + u"..."_s : text;
    diagnostics::line(result);
    return result;
}

int UIUtil::getHour(const TimePicker &picker) const
{
    return picker.time().hour();
}

int UIUtil::getMinute(const TimePicker &picker) const
{
    return picker.time().minute();
}

void UIUtil::setTime(TimePicker &picker, qint64 hour, qint64 minute) const
{
    constexpr int minutesOfDay = 24 * 60;
    const int minutes = int((hour % 24) * 60 + minute % minutesOfDay);
    picker.setTime(QTime(0, 0).addSecs(minutes * 60));
}

int UIUtil::compareDays(Instant a, Instant b, const Calendar &calendar) const
{
    const QDate dayA = calendar.dayOf(a);
    const QDate dayB = calendar.dayOf(b);
    return int(dayA < dayB) - int(dayB < dayA);
}

bool UIUtil::isSameDayOrEarlier(Instant a, Instant b, const Calendar &calendar) const
{
    const int order = compareDays(a, b, calendar);
    diagnostics::line(order > 0 ? "ASCENDING" : order == 0 ? "SAME" : "DESCENDING");
    return order >= 0;
}

QString UIUtil::formatTime(qint64 hour, qint64 minute) const
{
    diagnostics::line("Hour:", hour, " Min:", minute);
    const qint64 shown = hour > 12 ? hour - 12 : hour == 0 ? 12 : hour;
    return clockTime(shown, minute) + (hour < 12 ? "AM"_L1 : "PM"_L1);
}
