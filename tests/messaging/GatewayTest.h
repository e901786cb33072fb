#pragma once

#include <QObject>

class GatewayTest : public QObject
{
    Q_OBJECT

private slots:
    void requestAsTheGatewaySeesIt();
    void longMessagesAreCut_data();
    void longMessagesAreCut();
    void answersAreWrittenDownAndNothingIsRepeated_data();
    void answersAreWrittenDownAndNothingIsRepeated();
    void gatewaysThatCannotBeTrustedOrReached_data();
    void gatewaysThatCannotBeTrustedOrReached();
    void accountsThatMakeNoAddress_data();
    void accountsThatMakeNoAddress();
    void systemsCertificatesAreTrusted();
    void slowAnswersEnd();
    void connectionsAreUsedWhileTheyAreFresh();
    void requestsOverlapUpToALimit();
    void closing();
};
