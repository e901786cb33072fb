#include "cloud/CloudTransfer.h"

#include "cloud/CloudErrand.h"

using namespace Qt::StringLiterals;

static QString fetchOutcome(const CloudTransfer &transfer)
{
    if (transfer.isEmptyFetch())
        return u"There are no tasks in the cloud."_s;
    if (!transfer.error)
        return {};
    if (transfer.stop.stop_requested())
        return u"Stopped: nothing was fetched from the cloud."_s;
    return u"Nothing was fetched from the cloud, since %1."_s.arg(transfer.error->plainWords());
}

static QString copyOutcome(const CloudTransfer &transfer)
{
    if (transfer.hasSucceeded)
        return transfer.done == 1 ? u"1 task was copied to the cloud."_s
                                  : u"%1 tasks were copied to the cloud."_s.arg(transfer.done);
    const QString part = u"%1 of %2 tasks were copied to the cloud"_s.arg(transfer.done).arg(transfer.tasks);
    if (transfer.stop.stop_requested())
        return u"Stopped: %1."_s.arg(part);
    if (!transfer.error)
        return {};
    const QString reason = transfer.error->plainWords();
    return transfer.done == 0 ? u"Nothing was copied to the cloud, since %1."_s.arg(reason)
                              : u"%1; the others were not, since %2."_s.arg(part, reason);
}

void CloudTransfer::note(const CloudErrand &errand)
{
    hasAccount &= errand.hasAccount;
    if (!error)
        error = errand.error;
    hasSucceeded = errand.saved;
}

/// What counts is whether the task is in the cloud: the account's state may have changed since.
void CloudTransfer::noteCopied(const QString &key, const CloudErrand &errand)
{
    if (errand.error)
        ++failed;
    else if (deletedKeys.contains(key))
        --tasks;
    else
        ++done;
    note(errand);
}

QString CloudTransfer::message(const QString &accountProblem) const
{
    QStringList told{outcome(), deleteProblem};
    told.removeAll(QString());
    if (told.isEmpty() || isEmptyFetch())
        return {};
    if (!hasAccount)
        told.prepend(accountProblem);
    return told.join(u' ');
}

QString CloudTransfer::outcome() const
{
    if (!hasAccount && done == 0 && error && error->isOfAccount())
        return {};
    return direction == Direction::ToCloud ? copyOutcome(*this) : fetchOutcome(*this);
}
