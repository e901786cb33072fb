#include "messaging/ViewControllerSettings.h"

#include "gateway/GatewayRequest.h"
#include "gateway/MessagingSettings.h"
#include "platform/Preferences.h"
#include "ui_ViewControllerSettings.h"
#include "widgets/Alert.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

using namespace Qt::StringLiterals;

/// The decimal number at the beginning of the text, after any blanks; 0 when there is none. What is beyond 32
/// bits becomes the nearest number within.
static int integerValue(const QString &text)
{
    const long value = std::strtol(text.toLatin1().constData(), nullptr, 10);
    using Limits = std::numeric_limits<int>;
    return int(std::clamp<long>(value, Limits::min(), Limits::max()));
}

ViewControllerSettings::ViewControllerSettings(Preferences &userPreferences, QWidget *parent)
    : Screen(parent)
    , ui(std::make_unique<Ui::ViewControllerSettings>())
    , preferences(userPreferences)
{
    ui->setupUi(this);
    connectActions();
}

ViewControllerSettings::~ViewControllerSettings() = default;

void ViewControllerSettings::connectActions()
{
    connect(ui->saveButton, &QPushButton::clicked, this, [this] { setSettings(ui->saveButton); });
    connect(ui->resetButton, &QPushButton::clicked, this, [this] { resetToOriginal(ui->resetButton); });
    connect(ui->revealButton, &QToolButton::toggled, this, &ViewControllerSettings::revealSecret);
}

void ViewControllerSettings::revealSecret(bool reveal)
{
    ui->passPhrase->setEchoMode(reveal ? QLineEdit::Normal : QLineEdit::Password);
}

void ViewControllerSettings::viewWillAppear()
{
    const auto fill = [this](QLineEdit *field, const QString &key) {
        field->setText(preferences.text(key).value_or(QString()));
    };
    fill(ui->secureID, messagingKey::accountId);
    fill(ui->passPhrase, messagingKey::secret);
    fill(ui->sendingPhoneNo, messagingKey::sendingPhoneNo);
    fill(ui->messageTitle, messagingKey::messageTitle);
    fill(ui->testPhoneNo, messagingKey::testPhoneNo);
    fill(ui->messageFooter, messagingKey::messageFooter);
    ui->sendSMS->setChecked(preferences.boolean(messagingKey::notifications));
    ui->overwritePhoneNo->setChecked(preferences.boolean(messagingKey::overwrite));
    ui->delayMS->setText(QString::number(preferences.integer(messagingKey::delay)));
}

/// Whether messages can be sent with what is in these fields; else the one that is wrong is marked.
static bool areUsable(MarkedField &accountId, MarkedField &secret)
{
    const bool isAccountUsable = fitIntoAddress(accountId.text(), {});
    if (isAccountUsable && fitIntoAddress({}, secret.text()))
        return true;
    MarkedField &wrong = isAccountUsable ? secret : accountId;
    wrong.mark(u"Not saved: the %1 has a character that the gateway does not take, such as a blank, @, / or "
               "%. Please copy it once more from the gateway's console."_s.arg(
                   isAccountUsable ? u"secret"_s : u"account identifier"_s));
    return false;
}

void ViewControllerSettings::setSettings(QObject *)
{
    for (QLineEdit *field : {ui->secureID, ui->passPhrase})
        field->setText(field->text().trimmed()); // blanks that came with a copy
    if (!areUsable(*ui->secureID, *ui->passPhrase))
        return;
    if (!saveControls())
        alertMessage(this, u"The settings hold until the program ends: they could not be written to its "
                           "preferences file."_s);
    close();
}

bool ViewControllerSettings::saveControls()
{
    return preferences.store({{messagingKey::secret, ui->passPhrase->text()},
                              {messagingKey::accountId, ui->secureID->text()},
                              {messagingKey::sendingPhoneNo, ui->sendingPhoneNo->text()},
                              {messagingKey::notifications, ui->sendSMS->isChecked()},
                              {messagingKey::messageTitle, ui->messageTitle->text()},
                              {messagingKey::testPhoneNo, ui->testPhoneNo->text()},
                              {messagingKey::overwrite, ui->overwritePhoneNo->isChecked()},
                              {messagingKey::messageFooter, ui->messageFooter->text()},
                              {messagingKey::delay, integerValue(ui->delayMS->text())}});
}

void ViewControllerSettings::resetToOriginal(QObject *)
{
    for (QLineEdit *field : QList<QLineEdit *>{ui->secureID, ui->passPhrase, ui->sendingPhoneNo})
        field->clear();
    ui->sendSMS->setChecked(false);
    ui->overwritePhoneNo->setChecked(false);
    for (QLineEdit *field : {ui->messageTitle, ui->testPhoneNo, ui->messageFooter})
        field->clear();
    ui->delayMS->setText(u"0"_s);
}
