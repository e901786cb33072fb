#pragma once

#include "cloud/CloudConnection.h"
#include "cloud/CloudDatabase.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <span>
#include <thread>

class MainThreadQueue;

/// The cloud over an SQL database. Requests go into a queue, which a thread of its own drains: what stands in
/// the queue together is done in one transaction and answered when that is committed.
class SqlCloudContainer : public CloudContainer, private CloudDatabase
{
public:
    /// \param type  has to outlive the container
    SqlCloudContainer(const CloudHome &home, const CloudRecordType &type);
    /// Answers what is still in the queue with an error. Waits for the request the thread is at.
    ~SqlCloudContainer() override;

    void accountStatus(std::function<void(CloudAnswer<CloudAccount>)> handler) override;
    CloudDatabase &privateCloudDatabase() override { return *this; }
    QString description() const override { return home.description(); }

    /// Waits, on the main thread, until every request has been answered, also those that follow from the
    /// answers; false when that takes longer than the limit.
    /// \param answers  where the handlers put what they do on the main thread
    bool finish(std::chrono::nanoseconds limit, MainThreadQueue &answers);

private:
    class Request;
    template <typename Result>
    class RequestFor;
    using Requests = std::vector<std::unique_ptr<Request>>;

    void performQuery(const CloudQuery &query,
                      std::function<void(CloudAnswer<std::vector<CloudRecord>>)> handler) override;
    void saveRecord(const CloudRecord &record,
                    std::function<void(CloudAnswer<CloudRecord>)> handler) override;
    void deleteRecord(const CloudRecordID &id,
                      std::function<void(CloudAnswer<CloudRecordID>)> handler) override;

    void send(std::unique_ptr<Request> request);
    void drainQueue();
    Requests takeRequests();
    static void perform(CloudConnection &connection, std::span<const std::unique_ptr<Request>> requests);
    /// Begins a transaction, on a connection that is opened, or opened again, when need be.
    static bool begin(CloudConnection &connection);
    static bool performTogether(CloudConnection &connection,
                                std::span<const std::unique_ptr<Request>> requests);

    CloudHome home;
    const CloudRecordType &type;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::unique_ptr<Request>> queue;
    bool isBusy = false;
    bool isStopping = false;
    std::thread thread; ///< last: starts when everything else is there
};
