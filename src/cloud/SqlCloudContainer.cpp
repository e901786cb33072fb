#include "cloud/SqlCloudContainer.h"

#include "cloud/CloudConnection.h"

using namespace Qt::StringLiterals;

class SqlCloudContainer::Request
{
public:
    virtual ~Request() = default;
    virtual bool needsConnection() const = 0;
    /// Does the work in the connection's transaction; false when that failed.
    virtual bool perform(CloudConnection &connection) = 0;
    virtual void fail(const QString &reason) = 0;
    /// Hands the result over.
    virtual void answer() = 0;
};

template <typename Result>
class SqlCloudContainer::RequestFor : public Request
{
public:
    using Work = std::function<CloudAnswer<Result>(CloudConnection &)>;
    using Handler = std::function<void(CloudAnswer<Result>)>;

    enum class Need { Connection, Nothing };

    RequestFor(Work toDo, Handler toCall, Need ofConnection = Need::Connection)
        : work(std::move(toDo))
        , handler(std::move(toCall))
        , need(ofConnection)
    {
    }

    bool needsConnection() const override { return need == Need::Connection; }

    bool perform(CloudConnection &connection) override
    {
        result = work(connection);
        return !std::holds_alternative<CloudError>(result);
    }
    void fail(const QString &reason) override { result = CloudError{reason}; }
    void answer() override { handler(std::move(result)); }

private:
    Work work;
    Handler handler;
    Need need;
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
    return changed.wait_for(lock, limit, [this] { return queue.empty() && !isBusy; });
}

void SqlCloudContainer::accountStatus(std::function<void(CloudAnswer<CloudAccount>)> handler)
{
    send(std::make_unique<RequestFor<CloudAccount>>(
        [](CloudConnection &connection) -> CloudAnswer<CloudAccount> { return connection.account(); },
        std::move(handler), RequestFor<CloudAccount>::Need::Nothing));
}

void SqlCloudContainer::performQuery(const CloudQuery &query,
                                     std::function<void(CloudAnswer<std::vector<CloudRecord>>)> handler)
{
    send(std::make_unique<RequestFor<std::vector<CloudRecord>>>(
        [query](CloudConnection &connection) { return connection.find(query); }, std::move(handler)));
}

void SqlCloudContainer::saveRecord(const CloudRecord &record,
                                   std::function<void(CloudAnswer<CloudRecord>)> handler)
{
    send(std::make_unique<RequestFor<CloudRecord>>(
        [record](CloudConnection &connection) { return connection.save(record); }, std::move(handler)));
}

void SqlCloudContainer::deleteRecord(const CloudRecordID &id,
                                     std::function<void(CloudAnswer<CloudRecordID>)> handler)
{
    send(std::make_unique<RequestFor<CloudRecordID>>(
        [id](CloudConnection &connection) { return connection.remove(id); }, std::move(handler)));
}

void SqlCloudContainer::send(std::unique_ptr<Request> request)
{
    const std::lock_guard lock(mutex);
    queue.push_back(std::move(request));
    if (queue.size() == 1)
        changed.notify_all(); // the thread sleeps only over an empty queue
}

void SqlCloudContainer::drainQueue(const std::stop_token &stop)
{
    CloudConnection connection(home, type);
    for (Requests requests = takeRequests(stop); !requests.empty(); requests = takeRequests(stop)) {
        if (stop.stop_requested())
            failAll(requests, u"the program ends"_s);
        else
            perform(connection, requests);
        for (const std::unique_ptr<Request> &request : requests)
            request->answer();
    }
}

SqlCloudContainer::Requests SqlCloudContainer::takeRequests(const std::stop_token &stop)
{
    constexpr size_t mostTogether = 1000;
    std::unique_lock lock(mutex);
    isBusy = false;
    changed.notify_all();
    changed.wait(lock, stop, [this] { return !queue.empty(); });
    Requests taken;
    while (!queue.empty() && taken.size() < mostTogether) {
        taken.push_back(std::move(queue.front()));
        queue.pop_front();
    }
    isBusy = !taken.empty();
    return taken;
}

void SqlCloudContainer::failAll(std::span<const std::unique_ptr<Request>> requests, const QString &reason)
{
    for (const std::unique_ptr<Request> &request : requests)
        request->fail(reason);
}

void SqlCloudContainer::perform(CloudConnection &connection,
                                std::span<const std::unique_ptr<Request>> requests)
{
    if (!begin(connection)) {
        for (const std::unique_ptr<Request> &request : requests)
            if (request->needsConnection())
                request->fail(connection.problem());
            else
                request->perform(connection);
        return;
    }
    if (performTogether(connection, requests))
        return;
    if (!connection.isAlive()) {
        failAll(requests, u"the connection was lost"_s);
        return;
    }
    if (requests.size() == 1)
        return;
    // One of them spoiled the transaction for all; the halves find out which.
    perform(connection, requests.first(requests.size() / 2));
    perform(connection, requests.subspan(requests.size() / 2));
}

bool SqlCloudContainer::begin(CloudConnection &connection)
{
    if (!connection.open())
        return false;
    if (connection.begin())
        return true;
    if (connection.isAlive())
        return false; // another program keeps the database to itself
    // It was lost while nothing was to be done.
    connection.close();
    return connection.open() && connection.begin();
}

bool SqlCloudContainer::performTogether(CloudConnection &connection,
                                        std::span<const std::unique_ptr<Request>> requests)
{
    for (const std::unique_ptr<Request> &request : requests)
        if (!request->perform(connection)) {
            connection.rollback();
            return false;
        }
    if (connection.commit())
        return true;
    connection.rollback();
    failAll(requests, u"the transaction could not be committed"_s);
    return false;
}
