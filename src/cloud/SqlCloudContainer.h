#pragma once

#include "cloud/CloudDatabase.h"
#include "cloud/CloudHome.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <span>
#include <thread>

class CloudConnection;

/// The cloud over an SQL database. Requests go into a queue, which a thread of its own drains: what stands in
/// the queue together is done in one transaction and answered when that is committed.
class SqlCloudContainer : public CloudContainer, private CloudDatabase
{
public:
    /// \param type  has to outlive the container
    SqlCloudContainer(const CloudHome &home, const CloudRecordType &type);
    /// Waits for the requests that the thread is at.
    ~SqlCloudContainer() override;

    void accountStatus(std::function<void(CloudAnswer<CloudAccount>)> handler) override;
    CloudDatabase &privateCloudDatabase() override { return *this; }
    QString description() const override { return home.description(); }
    bool finish(std::chrono::nanoseconds limit) override;

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
    void drainQueue(const std::stop_token &stop);
    Requests takeRequests(const std::stop_token &stop);
    static void failAll(std::span<const std::unique_ptr<Request>> requests, const QString &reason);
    static void perform(CloudConnection &connection, std::span<const std::unique_ptr<Request>> requests);
    /// Begins a transaction, on a connection that is opened, or opened again, when need be.
    static bool begin(CloudConnection &connection);
    static bool performTogether(CloudConnection &connection,
                                std::span<const std::unique_ptr<Request>> requests);

    CloudHome home;
    const CloudRecordType &type;
    std::mutex mutex;
    std::condition_variable_any changed;
    std::deque<std::unique_ptr<Request>> queue;
    bool isBusy = false;
    std::jthread thread; ///< last: starts after everything that it uses, and ends before
};
