#pragma once

class QString;
class QWidget;

/// Shows the message in a modal alert of warning style with the single button "OK"; returns when it is dismissed.
void alertMessage(QWidget *parent, const QString &message);
