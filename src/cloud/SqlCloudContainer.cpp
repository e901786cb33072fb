#include "cloud/SqlCloudContainer.h"

#include "cloud/CloudConnection.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Reason = CloudError::Reason;

class SqlCloudContainer::Request
{
public:
    enum class Kind { Account, Query, Change };

    Request(Kind ofRequest, std::stop_token toStop)
        : kind(ofRequest)
        , stop(std::move(toStop))
    {
    }
    virtual ~Request() = default;

    bool isChange() const { return kind == Kind::Change; }
    /// Does the work in the connection's transaction; false when that failed.
    bool perform(CloudConnection &connection)
    {
        if (!stop.stop_requested())
            return work(connection);
        fail({Reason::Stopped});
        return true;
    }
    /// Sets the result without a transaction: what the account is can still be told.
    void performWithout(CloudConnection &connection, const CloudError &reason)
    {
        if (kind == Kind::Account)
            work(connection);
        else
            fail(reason);
    }
    virtual bool hasFailedFor(Reason reason) const = 0;
    /// Hands the result over.
    virtual void answer() = 0;

protected:
    virtual bool work(CloudConnection &connection) = 0;
    virtual void fail(const CloudError &reason) = 0;

private:
    Kind kind;
    std::stop_token stop;
};

template <typename Result>
class SqlCloudContainer::RequestFor : public Request
{
public:
    using Work = std::function<CloudAnswer<Result>(CloudConnection &)>;
    using Handler = std::function<void(CloudAnswer<Result>)>;

    RequestFor(Kind ofRequest, const std::stop_token &toStop, Work toDo, Handler toCall)
        : Request(ofRequest, toStop)
        , doWork(std::move(toDo))
        , handler(std::move(toCall))
    {
    }

    bool hasFailedFor(Reason reason) const override
    {
        const auto *error = std::get_if<CloudError>(&result);
        return error && error->reason == reason;
    }
    void answer() override { handler(std::move(result)); }

protected:
    bool work(CloudConnection &connection) override
    {
        result = doWork(connection);
        return !std::holds_alternative<CloudError>(result);
    }
    void fail(const CloudError &reason) override { result = reason; }

private:
    Work doWork;
    Handler handler;
    CloudAnswer<Result> result = CloudError{};
};

SqlCloudContainer::SqlCloudContainer(const CloudHome &cloudHome, const CloudRecordType &recordType)
    : home(cloudHome)
    , type(recordType)
    , thread([this](const std::stop_token &stop) { drainQueue(stop); })
{
}

SqlCloudContainer::~SqlCloudContainer() = default;

bool SqlCloudContainer::finish(std::chrono::nanoseconds limit)
{
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, limit, [this] { return changes.empty() && questions.empty() && !isBusy; });
}

void SqlCloudContainer::accountStatus(std::function<void(CloudAnswer<CloudAccount>)> handler)
{
    send(std::make_unique<RequestFor<CloudAccount>>(
        Request::Kind::Account, std::stop_token(),
        [](const CloudConnection &connection) { return connection.account(); }, std::move(handler)));
}

void SqlCloudContainer::performQuery(const CloudQuery &query, const std::stop_token &stop,
                                     std::function<void(CloudAnswer<std::vector<CloudRecord>>)> handler)
{
    send(std::make_unique<RequestFor<std::vector<CloudRecord>>>(
        Request::Kind::Query, stop, [query](CloudConnection &connection) { return connection.find(query); },
        std::move(handler)));
}

void SqlCloudContainer::saveRecord(const CloudRecord &record, const std::stop_token &stop,
                                   std::function<void(CloudAnswer<CloudRecord>)> handler)
{
    send(std::make_unique<RequestFor<CloudRecord>>(
        Request::Kind::Change, stop,
        [record](CloudConnection &connection) { return connection.save(record); }, std::move(handler)));
}

void SqlCloudContainer::deleteRecord(const CloudRecordID &id,
                                     std::function<void(CloudAnswer<CloudRecordID>)> handler)
{
    send(std::make_unique<RequestFor<CloudRecordID>>(
        Request::Kind::Change, std::stop_token(),
        [id](CloudConnection &connection) { return connection.remove(id); }, std::move(handler)));
}

void SqlCloudContainer::send(std::unique_ptr<Request> request)
{
    const std::lock_guard lock(mutex);
    const bool mayThreadSleep = changes.empty() && questions.empty();
    (request->isChange() ? changes : questions).push_back(std::move(request));
    if (mayThreadSleep)
        changed.notify_all();
}

void SqlCloudContainer::drainQueue(const std::stop_token &stop)
{
    CloudConnection connection(home, type);
    while (waitForRequests(stop)) {
        Requests done;
        if (stop.stop_requested()) {
            done = takeAll();
            failAll(connection, done, {Reason::Stopped});
        } else if (begin(connection)) {
            done = performSome(connection);
        } else { // nor would the next ones fare better
            done = takeAll();
            failAll(connection, done, connection.problem());
        }
        for (const std::unique_ptr<Request> &request : done)
            request->answer();
    }
}

/// False when there are none, and the thread is to end.
bool SqlCloudContainer::waitForRequests(const std::stop_token &stop)
{
    std::unique_lock lock(mutex);
    isBusy = false;
    changed.notify_all();
    isBusy = changed.wait(lock, stop, [this] { return !changes.empty() || !questions.empty(); });
    return isBusy;
}

/// Null when there is none.
std::unique_ptr<SqlCloudContainer::Request> SqlCloudContainer::takeRequest()
{
    const std::lock_guard lock(mutex);
    std::deque<std::unique_ptr<Request>> &queue = changes.empty() ? questions : changes;
    if (queue.empty())
        return nullptr;
    std::unique_ptr<Request> request = std::move(queue.front());
    queue.pop_front();
    return request;
}

SqlCloudContainer::Requests SqlCloudContainer::takeAll()
{
    Requests all;
    while (std::unique_ptr<Request> request = takeRequest())
        all.push_back(std::move(request));
    return all;
}

/// Performs what one transaction is to hold: little enough that not much is lost with it, and enough that it
/// is worth its cost.
SqlCloudContainer::Requests SqlCloudContainer::performSome(CloudConnection &connection)
{
    constexpr int mostChanges = 100;
    constexpr size_t mostRequests = 1000;
    const QDeadlineTimer deadline(250ms);
    Requests requests;
    int changesDone = 0;
    while (std::unique_ptr<Request> request = takeRequest()) {
        const bool isDone = request->perform(connection);
        changesDone += request->isChange();
        requests.push_back(std::move(request));
        if (!isDone) {
            connection.rollback();
            if (requests.back()->hasFailedFor(Reason::Busy)) // each of the others might wait as long
                std::ranges::move(takeAll(), std::back_inserter(requests));
            recover(connection, requests);
            return requests;
        }
        if (changesDone == mostChanges || requests.size() == mostRequests || deadline.hasExpired())
            break;
    }
    if (!commit(connection, requests))
        recover(connection, requests);
    return requests;
}

void SqlCloudContainer::failAll(CloudConnection &connection, SomeRequests requests, const CloudError &reason)
{
    for (const std::unique_ptr<Request> &request : requests)
        request->performWithout(connection, reason);
}

/// False when there is no connection any more.
bool SqlCloudContainer::perform(CloudConnection &connection, SomeRequests requests)
{
    if (begin(connection))
        return performTogether(connection, requests) || recover(connection, requests);
    failAll(connection, requests, connection.problem());
    return false;
}

bool SqlCloudContainer::begin(CloudConnection &connection)
{
    if (!connection.open())
        return false;
    if (connection.begin())
        return true;
    if (connection.problem().reason == Reason::Busy)
        return false;
    // It was lost while nothing was to be done.
    connection.close();
    return connection.open() && connection.begin();
}

bool SqlCloudContainer::performTogether(CloudConnection &connection, SomeRequests requests)
{
    for (const std::unique_ptr<Request> &request : requests)
        if (!request->perform(connection)) {
            connection.rollback();
            return false;
        }
    return commit(connection, requests);
}

bool SqlCloudContainer::commit(CloudConnection &connection, SomeRequests requests)
{
    if (connection.commit())
        return true;
    const CloudError problem = connection.problem();
    connection.rollback();
    failAll(connection, requests, problem);
    return false;
}

/// Goes on after a transaction that has failed as a whole and been rolled back; false when there is no
/// connection any more.
bool SqlCloudContainer::recover(CloudConnection &connection, SomeRequests requests)
{
    const auto isOneBusy = [](const std::unique_ptr<Request> &request) {
        return request->hasFailedFor(Reason::Busy);
    };
    if (!connection.isAlive()) {
        connection.close();
        failAll(connection, requests, {Reason::Lost});
        return false;
    }
    if (std::ranges::any_of(requests, isOneBusy)) {
        failAll(connection, requests, {Reason::Busy});
        return true;
    }
    if (requests.size() == 1)
        return true;
    // One of them spoiled the transaction for all; the halves find out which.
    const SomeRequests rest = requests.subspan(requests.size() / 2);
    if (perform(connection, requests.first(requests.size() / 2)))
        return perform(connection, rest);
    failAll(connection, rest, {Reason::Lost});
    return false;
}
