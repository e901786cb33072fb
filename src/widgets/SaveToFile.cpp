#include "widgets/SaveToFile.h"

#include "widgets/Alert.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

/// The file that the user chooses; empty for none.
static QString chosenPath(QWidget &window, const QString &suggestedPath, const QString &kinds)
{
    QFileDialog dialog(&window, u"Save to File"_s, QFileInfo(suggestedPath).path(), kinds);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QFileInfo(suggestedPath).suffix());
    dialog.selectFile(QFileInfo(suggestedPath).fileName());
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().constFirst() : QString();
}

bool saveToFile(QWidget &window, const QString &suggestedPath, const QString &kinds,
                const QByteArray &content)
{
    const QString path = chosenPath(window, suggestedPath, kinds);
    if (path.isEmpty())
        return false;
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit())
        return true;
    alertMessage(&window, u"The file \"%1\" could not be written. %2"_s.arg(path, file.errorString()));
    return false;
}
