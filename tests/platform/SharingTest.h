#pragma once

#include <QObject>

class SharingTest : public QObject
{
    Q_OBJECT

private slots:
    void mailIsHandedToTheMailProgram_data();
    void mailIsHandedToTheMailProgram();
    void aFileThatCannotBeWrittenIsToldOf();
};
