#pragma once

#include <QMessageBox>

/// A modal alert of warning style, wide enough for a sentence on one line. Texts are shown as they are.
class Alert : public QMessageBox
{
public:
    Alert(QWidget *parent, const QString &text, const QString &informativeText);
};

/// Shows the message in an alert with the single button "OK"; returns when it is dismissed.
void alertMessage(QWidget *parent, const QString &message);
