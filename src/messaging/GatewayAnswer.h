#pragma once

#include <QString>

struct GatewayRequest;

/// What the gateway has answered, or why there is no answer, as it may stand in a diagnostic line: without
/// the authorisation and the secret, which a gateway may send back, and with its control characters written
/// out, which a terminal would obey. A short secret is taken out even where it stands by chance.
QString lineText(const QString &answer, const GatewayRequest &request);
