#include "widgets/SharingServicePicker.h"

#include "platform/Folders.h"
#include "widgets/Alert.h"
#include "widgets/SaveToFile.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QImage>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QUrl>

#include <memory>

using namespace Qt::StringLiterals;

/// The address that opens a new mail with this subject and body (RFC 6068).
static QString mailAddress(const QString &subject, QString body)
{
    const auto encoded = [](const QString &text) {
        return QString::fromLatin1(QUrl::toPercentEncoding(text));
    };
    return u"mailto:?subject="_s + encoded(subject) + u"&body="_s + encoded(body.replace(u'\n', u"\r\n"_s));
}

SharingServicePicker::SharingServicePicker(const SharedItems &sharedItems)
    : items(sharedItems)
{
}

void SharingServicePicker::show(QWidget &anchor, Qt::Edge edge, QWidget &window) const
{
    auto *menu = new QMenu(&window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const SharingServicePicker &picker = *this;
    QWidget *host = &window;
    // The menu outlives the picker, so its entries have their own.
    QObject::connect(menu->addAction(u"&Copy"_s), &QAction::triggered, host, [picker] { picker.copy(); });
    QObject::connect(menu->addAction(u"&Mail…"_s), &QAction::triggered, host,
                     [picker, host] { picker.mail(host); });
    QObject::connect(menu->addAction(u"&Save to File…"_s), &QAction::triggered, host,
                     [picker, host] { picker.save(host); });
    // A button that sends on mouse-down does not hear of the release, which goes to the menu.
    if (auto *button = qobject_cast<QAbstractButton *>(&anchor))
        QObject::connect(menu, &QMenu::aboutToHide, button, [button] { button->setDown(false); });
    menu->popup(anchor.mapToGlobal(edge == Qt::LeftEdge ? QPoint(-menu->sizeHint().width(), 0)
                                                        : QPoint(0, anchor.height())));
}

void SharingServicePicker::copy() const
{
    auto content = std::make_unique<QMimeData>();
    content->setText(items.text);
    if (!items.picture.isEmpty())
        content->setImageData(QImage::fromData(items.picture, "PNG"));
    QApplication::clipboard()->setMimeData(content.release());
}

void SharingServicePicker::mail(QWidget *window) const
{
    // A process of our own, since QDesktopServices does not tell when it finds no mail program. Files, not
    // pipes: the mail program outlives the process that starts it, and would write into a closed pipe.
    auto *process = new QProcess;
    auto *messages = new QTemporaryFile(process);
    const auto fail = [process, window = QPointer(window)](const QString &reason) {
        process->deleteLater();
        alertMessage(window, u"The mail program could not be opened. "_s + reason);
    };
    QObject::connect(process, &QProcess::errorOccurred, qApp, [process, fail](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            fail(u"xdg-email: "_s + process->errorString());
    });
    QObject::connect(process, &QProcess::finished, qApp, [process, messages, fail](int exitCode) {
        if (exitCode == 0)
            process->deleteLater();
        else
            fail(u"xdg-email: %1 %2"_s.arg(exitCode).arg(
                QString::fromLocal8Bit(messages->readAll()).trimmed()));
    });
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    if (messages->open())
        process->setStandardErrorFile(messages->fileName());
    QStringList arguments;
    if (!items.pictureFile.isEmpty())
        arguments << u"--attach"_s << items.pictureFile;
    process->start(u"xdg-email"_s, arguments << mailAddress(items.title, items.text));
}

void SharingServicePicker::save(QWidget *window) const
{
    const QString kinds = items.picture.isEmpty() ? u"Text files (*.txt);;All files (*)"_s
                                                  : u"PNG pictures (*.png);;All files (*)"_s;
    saveToFile(*window, suggestedPath(), kinds,
               items.picture.isEmpty() ? items.text.toUtf8() : items.picture);
}

QString SharingServicePicker::suggestedPath() const
{
    constexpr int longestName = 60;
    static const QRegularExpression unfit(u"[/\\\\:*?\"<>|\\x00-\\x1f]+"_s);
    const QString name = QString(items.title).replace(unfit, u" "_s).left(longestName).trimmed();
    return QDir(folders::documents())
        .filePath((name.isEmpty() ? u"Task"_s : name) + (items.picture.isEmpty() ? u".txt"_s : u".png"_s));
}
