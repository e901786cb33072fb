#include "widgets/SaveToFile.h"

#include "widgets/Alert.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

bool saveToFile(QWidget &window, const QString &suggestedPath, const QString &kinds,
                const QByteArray &content)
{
    QFileDialog dialog(&window, u"Save to File"_s, QFileInfo(suggestedPath).path(), kinds);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QFileInfo(suggestedPath).suffix());
    dialog.selectFile(QFileInfo(suggestedPath).fileName());
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const QString path = dialog.selectedFiles().constFirst();
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit())
        return true;
    alertMessage(&window, u"The file \"%1\" could not be written. %2"_s.arg(path, file.errorString()));
    return false;
}
