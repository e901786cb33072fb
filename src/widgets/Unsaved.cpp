#include "widgets/Unsaved.h"

#include "widgets/Alert.h"
#include "widgets/Banner.h"
#include "widgets/SaveToFile.h"

#include <QFileInfo>
#include <QPushButton>

using namespace Qt::StringLiterals;

static const QString tryAgainText = u"&Try Again"_s;
static const QString saveCopyText = u"Save a &Copy As…"_s;
static const QString allFiles = u"All files (*)"_s;

static QString sentenceOf(const Unsaved &unsaved)
{
    if (!unsaved.sentence.isEmpty())
        return unsaved.sentence;
    return u"%1 could not be saved to %2: %3."_s.arg(unsaved.what, unsaved.path, unsaved.reason());
}

/// Beside the file, which a copy must not replace.
static QString copyPath(const Unsaved &unsaved)
{
    const QFileInfo file(unsaved.path);
    const QString suffix = unsaved.copySuffix.isEmpty() ? file.suffix() : unsaved.copySuffix;
    return file.path() + u'/' + file.completeBaseName() + u"-copy."_s + suffix;
}

void Unsaved::tell(Banner &banner) const
{
    const auto saveCopy = [&banner, unsaved = *this] {
        saveToFile(*banner.window(), copyPath(unsaved), allFiles, unsaved.content());
    };
    banner.tell(sentenceOf(*this) + u" What was changed is kept while this window is open."_s,
                {{tryAgainText, tryAgain}, {saveCopyText, saveCopy}});
}

bool Unsaved::mayBeLeft(QWidget &window, const QString &goOn) const
{
    for (;;) {
        Alert alert(&window, sentenceOf(*this),
                    u"What has been changed since it was last saved may be lost."_s);
        const QPushButton *again = alert.addButton(tryAgainText, QMessageBox::AcceptRole);
        const QPushButton *copy = alert.addButton(saveCopyText, QMessageBox::ActionRole);
        const QPushButton *leave = alert.addButton(goOn, QMessageBox::DestructiveRole);
        QPushButton *cancel = alert.addButton(QMessageBox::Cancel);
        alert.setDefaultButton(cancel);
        alert.setEscapeButton(cancel);
        alert.exec();
        const QAbstractButton *chosen = alert.clickedButton();
        if (chosen == leave || (chosen == again && tryAgain()) ||
            (chosen == copy && saveToFile(window, copyPath(*this), allFiles, content())))
            return true;
        if (chosen != again)
            return false;
    }
}
